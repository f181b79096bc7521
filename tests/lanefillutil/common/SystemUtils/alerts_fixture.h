// alerts_fixture.h - an engine lifetime in which alerts are raised, and one alert with its text.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SYSTEMUTILS_ALERTS_FIXTURE_H
#define MEMDATA_TESTS_SYSTEMUTILS_ALERTS_FIXTURE_H

#include "SystemUtils/alerts.h"
#include "SystemUtils/lifetime.h"

#include <gtest/gtest.h>
#include <string>

namespace memdata::testing {

inline constexpr u32 kALL_ALERTS = 127;
inline constexpr const char* kUNEXPECTED_X = "\nERROR:Lanefill:11 - Unexpected symbol 'x', 'y' expected.\n\n";

inline int print_unexpected_x() {
    return PrintError(kERROR_UNEXPECTED_SYMBOL_AND_EXPECTED, 14, "x", "y");
}

inline size_t count_of(const std::string& part, const std::string& text) {
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

// An engine lifetime, and a tool name that does not outlive its test.
class Alerts : public ::testing::Test {
protected:
    Alerts() { RegisterSystemToolName("Lanefill"); }
    ~Alerts() override { RegisterSystemToolName(oldToolName_.c_str()); }

private:
    SystemResources resources_;
    std::string oldToolName_ = GetSystemToolName();
};

} // namespace memdata::testing

#endif
