// allocation_faults.h - repeats a run with its first, second, third ... tracked allocation failing.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_ALLOCATION_FAULTS_H
#define MEMDATA_TESTS_SUPPORT_ALLOCATION_FAULTS_H

#include "platform/BasicTypes.h"

#include <functional>
#include <string>

namespace memdata::testing {

struct FaultSweep {
    u64 allocationCount = 0; // that the undisturbed run makes
    u64 faultCount = 0;      // runs that were disturbed
    std::string failures;    // empty when each disturbed run ended with a status and gave all bytes back
};

// run makes everything that it needs, gives back everything that it made, and returns its status (an
// exception of the host's family counts as one). It must end with status 0 when nothing fails. Alerts of
// the disturbed runs are kept off the terminal. maxFaults bounds the sweep; 0 sweeps all allocations.
FaultSweep sweepAllocationFaults(const std::function<int()>& run, u64 maxFaults = 0);

} // namespace memdata::testing

#endif
