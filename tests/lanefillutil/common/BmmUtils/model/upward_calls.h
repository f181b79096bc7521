// upward_calls.h - what the model asks of the rooms above it, counted. The tests of the model run without those rooms.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_MODEL_UPWARD_CALLS_H
#define MEMDATA_TESTS_MODEL_UPWARD_CALLS_H

namespace memdata::testing {

struct UpwardCalls {
    int extendedTypesDeleted = 0; // calls of delete_MEMORY_extended_types
    int spacesFinished = 0;       // calls of finish_addressSpace_data
    int finishStatus = 0;         // what the next of those returns
};
extern UpwardCalls gUpwardCalls; // ModelTest starts each test with a new one

} // namespace memdata::testing

#endif
