// model_fixture.h - a test of the address-map model: nothing may be left in use at its end.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_MODEL_FIXTURE_H
#define MEMDATA_TESTS_MODEL_FIXTURE_H

#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "support/map_builder.h"
#include "support/map_dump.h"
#include "upward_calls.h"

#include <cstring>
#include <gtest/gtest.h>

namespace memdata::testing {

// Bytes in use, without those that the pool of tokens keeps for the next token.
inline u64 bytesInUse() {
    u64 bytes = 0;
    for (const MemoryBlockType* block = gMemoryBlockList.head; block != nullptr; block = block->next)
        if (std::strstr(block->sourceFile, "ParseUtils") == nullptr) bytes += block->size;
    return bytes;
}

class ModelTest : public ::testing::Test {
protected:
    ModelTest() { gUpwardCalls = {}; }
    ~ModelTest() override { EXPECT_EQ(bytesInUse(), bytesBefore_); }

private:
    SystemResources resources_; // outlives those of the maps, so that nothing is swept ahead of the comparison
    u64 bytesBefore_ = bytesInUse();
};

// A space of one block in the default map: enough where only names and addresses matter.
inline AddressSpaceDefType* plainSpace(
    TestMap& map, const char* name, u64 start, u64 end, const char* memory = "RAMB16") {
    return map.space(name, start, memory, {std::string(name) + "_lane[7:0]"}, {.endAddress = end});
}

} // namespace memdata::testing

#endif
