// alert_registry.cpp - enters the messages into the look-up table by number.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/alert_registry.h"

#include "ListingUtils/ListingUtils.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"

#include <algorithm>
#include <string>

const Alert_message_type* const* gAlertMessageArray = nullptr;
const Alert_message_type** gAlertMessageLookupArray = nullptr;

namespace {

constexpr u64 kENTRY_BYTES = sizeof(void*); // an entry points at its message

// Runs before the sweep of memory, which was registered ahead of it.
void finalize_alerts() {
    gAlertMessageLookupArray = nullptr;
    memdata::resetAlerts();
}

u32 highest_number() {
    u32 highest = 0;
    if (gAlertMessageArray == nullptr) return highest;
    for (auto message = gAlertMessageArray; *message != nullptr; ++message)
        highest = std::max(highest, (*message)->number);
    return highest;
}

void report_overloaded_number(u32 number) {
    const std::string text = std::string("INTERNAL_ERROR:") + GetSystemToolName() +
                             ":0 - Message number overloaded, '" + std::to_string(number) + "'.\n";
    OutputConsoleMessage(&StandardOut, text.c_str());
}

} // namespace

void InitializeSystemAlertMessages() {
    RegisterSystemFinalizationFunction(finalize_alerts);
    const u64 entryCount = u64{highest_number()} + 1;
    gAlertMessageLookupArray =
        static_cast<const Alert_message_type**>(getMemory("an alert message lookup array", entryCount * kENTRY_BYTES));
    if (gAlertMessageLookupArray == nullptr) return; // the allocator has reported it
    autoReleaseMemory(gAlertMessageLookupArray);
    if (gAlertMessageArray == nullptr) return;

    for (auto message = gAlertMessageArray; *message != nullptr; ++message) {
        const Alert_message_type*& entry = gAlertMessageLookupArray[(*message)->number];
        if (entry != nullptr)
            report_overloaded_number((*message)->number);
        else
            entry = *message;
    }
}
