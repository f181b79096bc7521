// allocation_faults.cpp - see allocation_faults.h.
// SPDX-License-Identifier: Apache-2.0
#include "support/allocation_faults.h"

#include "SystemUtils/alerts.h"
#include "SystemUtils/memory.h"
#include "platform/HEXAll.h"

#include <algorithm>

namespace memdata::testing {
namespace {

constexpr int kEXCEPTION_STATUS = 7;

int statusOf(const std::function<int()>& run) {
    try {
        return run();
    } catch (const HEXAll&) {
        return kEXCEPTION_STATUS;
    }
}

std::string numbered(u64 n, const std::string& what) {
    return "allocation " + std::to_string(n) + " failing: " + what + "\n";
}

} // namespace

FaultSweep sweepAllocationFaults(const std::function<int()>& run, u64 maxFaults) {
    FaultSweep sweep;
    const u32 alerts = EnablePrintAlerts(0);
    const u64 bytesBefore = getCurrentMemoryUsage();

    const u64 countBefore = trackedAllocationCount();
    if (const int status = statusOf(run); status != 0)
        sweep.failures += "the undisturbed run ended with status " + std::to_string(status) + "\n";
    sweep.allocationCount = trackedAllocationCount() - countBefore;

    const u64 faults = maxFaults == 0 ? sweep.allocationCount : std::min(maxFaults, sweep.allocationCount);
    for (u64 n = 1; n <= faults; ++n, ++sweep.faultCount) {
        failTrackedAllocation(n);
        const int status = statusOf(run);
        failTrackedAllocation(0);
        if (status == 0) sweep.failures += numbered(n, "the run ended with status 0");
        if (const u64 bytes = getCurrentMemoryUsage(); bytes != bytesBefore) {
            sweep.failures += numbered(n, std::to_string(static_cast<i64>(bytes - bytesBefore)) + " bytes stay in use");
            break;
        }
    }
    EnablePrintAlerts(alerts);
    return sweep;
}

} // namespace memdata::testing
