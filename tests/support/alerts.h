// alerts.h - catches in a test what the engine says on standard output.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_ALERTS_H
#define MEMDATA_TESTS_SUPPORT_ALERTS_H

#include "SystemUtils/alerts.h"

#include <cstdio>
#include <string>

namespace memdata::testing {

// While it lives, what the engine writes to its standard output (alerts, listings, debug lines) lands here
// and not on the process's own, which keeps carrying what the test framework says. The alert mask goes back
// to its old value at the end. Used inside an engine lifetime (SystemResources); scopes may nest.
//
//     CapturedAlerts alerts;
//     EXPECT_EQ(parse("x"), 14);
//     EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:11 - Unexpected symbol 'x', ';' expected.\n\n");
class CapturedAlerts {
public:
    CapturedAlerts() : CapturedAlerts(SavePrintAlerts()) {}
    explicit CapturedAlerts(u32 mask); // with these severities in force
    ~CapturedAlerts();
    CapturedAlerts& operator=(CapturedAlerts&&) = delete; // neither copied nor moved

    // Everything since the start or the last take().
    std::string text();
    // The same, and starts afresh.
    std::string take();

private:
    u32 oldMask_;
    std::FILE* oldStream_;
    std::FILE* stream_ = nullptr; // over characters_
    char* characters_ = nullptr;
    std::size_t size_ = 0;  // bytes in characters_ after a flush
    std::size_t taken_ = 0; // bytes handed out by take()
};

} // namespace memdata::testing

#endif
