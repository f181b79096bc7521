// golden_test.cpp - what preprocessing makes of small texts: the files *.golden beside this one.
//
// A file's options are the text that is read ahead of main.bmm, the run's first input. The expected text is all that
// goes to standard output: the preprocessed text, with messages, traces and alerts between.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/ParseUtils.h"
#include "SystemUtils/lifetime.h"
#include "support/alerts.h"
#include "support/golden.h"

#include <gtest/gtest.h>

using namespace memdata;
using namespace memdata::testing;

namespace {

GoldenResult preprocess(const GoldenFile& golden, const std::filesystem::path&) {
    const SystemResources resources;
    RegisterSystemToolName("Lanefill");
    CapturedAlerts output;
    const OwnedFileSpec in(CreateFileSpec("main"));
    const char* first = golden.options.empty() ? nullptr : golden.options.c_str();
    const int status = open_and_preprocess_file(in.get(), "bmm", first, nullptr);
    return {status, output.text()};
}

class PreprocessedText : public ::testing::TestWithParam<std::filesystem::path> {};

TEST_P(PreprocessedText, IsAsTheFileSays) {
    EXPECT_EQ(checkGolden(GetParam(), preprocess), "");
}

INSTANTIATE_TEST_SUITE_P(Files, PreprocessedText,
    ::testing::ValuesIn(goldenFiles("lanefillutil/common/ParseUtils/preprocessor")),
    [](const auto& file) { return goldenName(file.param); });

} // namespace
