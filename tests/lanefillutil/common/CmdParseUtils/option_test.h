// option_test.h - option texts read into a record, and the record as text.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_OPTION_TEST_H
#define MEMDATA_TESTS_OPTION_TEST_H

#include "CmdParseUtils/CmdParseUtils.h"
#include "FileUtils/FileUtils.h"
#include "SystemUtils/SystemUtils.h"
#include "support/alerts.h"
#include "support/host_messages.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <string>

namespace memdata::testing {

// All that a record says, a line for each field that is set; the text that was given and masks of 0 are left out.
std::string dumpOptions(const CmdStringOptionsType& options);

class Options : public ::testing::Test {
protected:
    ~Options() override { DeleteCmdStringOptions(&options); }

    // All words are switches.
    int parse(const std::string& text) {
        count = -1;
        return ParseCmdStringOptions(text.c_str(), &options, &count);
    }
    // The record after a text that must be read without a word.
    std::string record(const std::string& text) {
        EXPECT_EQ(parse(text), 0) << text;
        EXPECT_EQ(alerts.take() + messages.text(), "") << text;
        std::string dump = dumpOptions(options);
        DeleteCmdStringOptions(&options);
        return dump;
    }
    // "status: what was said", the blank lines around it left out.
    std::string failure(const std::string& text);

private:
    struct LeakCheck {
        ~LeakCheck() { EXPECT_EQ(leakedBlockCount(), 0U); }
    };
    LeakCheck leaks_; // after the lifetime
    SystemResources resources_;

protected:
    CapturedAlerts alerts;
    CapturedMessages messages;
    CmdStringOptionsType options{};
    int count = 0;
};

} // namespace memdata::testing

#endif
