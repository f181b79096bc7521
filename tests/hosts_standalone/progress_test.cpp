// progress_test.cpp - what shows progress makes way for every other text.
// SPDX-License-Identifier: Apache-2.0
#include "FileUtils/FileUtils.h"
#include "SystemUtils/SystemUtils.h"
#include "platform/host.h"
#include "support/host_progress.h"

#include <gtest/gtest.h>

namespace memdata::testing {
namespace {

TEST(HostProgress, ReachesTheDisplay) {
    std::string told;
    const CapturedProgress display(
        [&](std::string_view stage, int percent) { told += std::string(stage) + std::to_string(percent); });
    host().progress("Reading ", 3);
    EXPECT_EQ(told, "Reading 3");
}

TEST(HostProgress, WithoutADisplayGoesNowhere) {
    host().progress("Reading", 3);
    host().beforeOutput();
}

TEST(HostProgress, ClearsAheadOfAMessage) {
    CapturedProgress display([](std::string_view, int) {});
    ::testing::internal::CaptureStderr();
    standaloneHost().message({});
    EXPECT_NE(::testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(display.clearCount, 1u);
}

TEST(HostProgress, ClearsAheadOfTextOnStandardOutput) {
    const SystemResources resources;
    CapturedProgress display([](std::string_view, int) {});
    ::testing::internal::CaptureStdout();
    PutNextLine(&StandardOut, "a line\n");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "a line\n");
    EXPECT_EQ(display.clearCount, 1u);
}

TEST(HostProgress, ClearsWhenADeviceIsOpenedAsOutput) {
    const SystemResources resources;
    CapturedProgress display([](std::string_view, int) {});
    fileIODescriptor* file = nullptr;
    ASSERT_EQ(Open_File("/dev/null", kWRITE_ACCESS, &file), 0);
    EXPECT_EQ(display.clearCount, 1u);
    Close_File(&file);
}

} // namespace
} // namespace memdata::testing
