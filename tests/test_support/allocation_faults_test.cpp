// allocation_faults_test.cpp - the sweep sees a leak, and a failure that was swallowed.
// SPDX-License-Identifier: Apache-2.0
#include "support/allocation_faults.h"

#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"

#include <gtest/gtest.h>

namespace memdata::testing {
namespace {

// Makes two blocks and gives both back.
int careful() {
    void* first = getMemory("first", 8);
    if (first == nullptr) return 7;
    void* second = getMemory("second", 8);
    releaseMemory(first);
    if (second == nullptr) return 7;
    releaseMemory(second);
    return 0;
}

class AllocationFaults : public ::testing::Test {
protected:
    SystemResources system_;
};

TEST_F(AllocationFaults, DisturbEveryAllocationOnce) {
    const FaultSweep sweep = sweepAllocationFaults(careful);
    EXPECT_EQ(sweep.failures, "");
    EXPECT_EQ(sweep.allocationCount, 2u);
    EXPECT_EQ(sweep.faultCount, 2u);
}

TEST_F(AllocationFaults, ALeakOnTheWayOutIsSeen) {
    const FaultSweep sweep = sweepAllocationFaults([] {
        void* first = getMemory("first", 8);
        if (first == nullptr) return 7;
        void* second = getMemory("second", 8);
        if (second == nullptr) return 7; // first is lost
        releaseMemory(first);
        releaseMemory(second);
        return 0;
    });
    EXPECT_EQ(sweep.failures, "allocation 2 failing: 8 bytes stay in use\n");
}

TEST_F(AllocationFaults, ASwallowedFailureIsSeen) {
    const FaultSweep sweep = sweepAllocationFaults([] {
        if (void* block = getMemory("block", 8)) releaseMemory(block);
        return 0;
    });
    EXPECT_EQ(sweep.failures, "allocation 1 failing: the run ended with status 0\n");
}

TEST_F(AllocationFaults, ARunThatFailsUndisturbedIsSeen) {
    EXPECT_EQ(sweepAllocationFaults([] { return 3; }).failures, "the undisturbed run ended with status 3\n");
}

TEST_F(AllocationFaults, TheSweepCanBeBounded) {
    EXPECT_EQ(sweepAllocationFaults(careful, 1).faultCount, 1u);
}

} // namespace
} // namespace memdata::testing
