// string_test.h - what the tests of strings share: a lifetime that must end without a byte in use.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_STRING_UTILS_STRING_TEST_H
#define MEMDATA_TESTS_STRING_UTILS_STRING_TEST_H

#include "StringUtils/StringUtils.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"

#include <gtest/gtest.h>
#include <string>

namespace memdata::testing {

// Every string that a test makes goes back before its end.
class StringTest : public ::testing::Test {
protected:
    StringTest() : usageAtStart_(getCurrentMemoryUsage()) {}
    ~StringTest() override {
        failTrackedAllocation(0);
        EXPECT_EQ(getCurrentMemoryUsage(), usageAtStart_) << "bytes stay in use";
    }

private:
    SystemResources system_;
    u64 usageAtStart_;
};

// The text of a managed string, which is released; "no string" for null.
inline std::string taken(char* s) {
    const OwnedString owner(s);
    return s == nullptr ? "no string" : s;
}

// A managed string to hand to functions that release it.
inline char* managed(const char* text) {
    return StrDup(text);
}

// Keeps the alerts of a test that provokes them off the terminal.
class QuietAlerts {
public:
    QuietAlerts() : saved_(SavePrintAlerts()) { EnablePrintAlerts(0); }
    ~QuietAlerts() { EnablePrintAlerts(saved_); }
    QuietAlerts& operator=(QuietAlerts&&) = delete; // neither copied nor moved

private:
    u32 saved_;
};

} // namespace memdata::testing

#endif
