// block_pool_test.cpp - small blocks cut from large pages, and the process that ends with its run.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/block_pool.h"

#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "SystemUtils/process_end.h"
#include "SystemUtils/state.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace memdata::testing {
namespace {

bool isZero(const void* block, size_t bytes) {
    const auto* at = static_cast<const u8*>(block);
    return std::all_of(at, at + bytes, [](u8 byte) { return byte == 0; });
}

TEST(BlockPool, ThatIsNotOpenHasNoBlocks) {
    BlockPool pool;
    EXPECT_EQ(pool.take(16), nullptr);
    EXPECT_FALSE(pool.holds(nullptr));
    pool.close();
}

TEST(BlockPool, GivesAlignedZeroBlocksOfEverySize) {
    BlockPool pool;
    pool.open();
    std::vector<u8*> blocks;
    for (size_t bytes = 1; bytes <= BlockPool::kLARGEST_BLOCK; ++bytes) {
        auto* const block = static_cast<u8*>(pool.take(bytes));
        ASSERT_NE(block, nullptr) << bytes;
        EXPECT_TRUE(pool.holds(block));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 16, 0U);
        EXPECT_TRUE(isZero(block, bytes)) << bytes;
        std::memset(block, static_cast<int>(bytes % 255 + 1), bytes);
        blocks.push_back(block);
    }
    for (size_t bytes = 1; bytes <= blocks.size(); ++bytes) {
        const u8* const block = blocks[bytes - 1];
        EXPECT_TRUE(std::all_of(block, block + bytes, [bytes](u8 byte) { return byte == bytes % 255 + 1; })) << bytes;
    }
    EXPECT_EQ(pool.take(0), nullptr);
    EXPECT_EQ(pool.take(BlockPool::kLARGEST_BLOCK + 1), nullptr);
    pool.close();
}

TEST(BlockPool, UsesAGivenBlockForTheNextOfItsSize) {
    BlockPool pool;
    pool.open();
    void* const first = pool.take(40);
    void* const second = pool.take(40);
    std::memset(first, 0xEE, 40);
    pool.give(first, 40);
    pool.give(second, 40);
    EXPECT_NE(pool.take(64), first);
    EXPECT_EQ(pool.take(48), second);
    void* const again = pool.take(33);
    EXPECT_EQ(again, first);
    EXPECT_TRUE(isZero(again, 33));
    pool.close();
}

TEST(BlockPool, HoldsItsOwnBlocksAlone) {
    BlockPool pool;
    pool.open();
    const int outside = 0;
    EXPECT_FALSE(pool.holds(&outside));
    EXPECT_FALSE(pool.holds(nullptr));
    void* const inside = pool.take(16);
    EXPECT_TRUE(pool.holds(inside));
    pool.close();
    EXPECT_FALSE(pool.holds(inside));
}

TEST(BlockPool, HoldsNothingWhereTheSystemHasNoSuchRange) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer itself takes more addresses";
#endif
    const auto openWithFewAddresses = [] {
        const rlimit limit{rlim_t{1} << 30, rlim_t{1} << 30};
        if (setrlimit(RLIMIT_AS, &limit) != 0) std::exit(2);
        BlockPool pool;
        pool.open();
        std::exit(pool.take(16) == nullptr && !pool.holds(&pool) ? 0 : 1);
    };
    EXPECT_EXIT(openWithFewAddresses(), ::testing::ExitedWithCode(0), "");
}

TEST(ProcessEnd, SmallTrackedBlocksComeFromThePool) {
    const SystemResources resources;
    expectProcessEnd();
    void* const small = getMemory("small", 100);
    void* const large = getMemory("large", 2000);
    EXPECT_TRUE(gSystemState.pool.holds(small));
    EXPECT_FALSE(gSystemState.pool.holds(large));
    EXPECT_TRUE(isZero(small, 100));
    releaseMemory(small);
    releaseMemory(large);
    void* const again = getMemory("again", 100);
    EXPECT_EQ(again, small);
    EXPECT_TRUE(isZero(again, 100));
    releaseMemory(again);
}

TEST(ProcessEnd, BlocksFromBeforeAreReleasedAsTheyWereMade) {
    const SystemResources resources;
    void* const before = getMemory("before", 100);
    expectProcessEnd();
    EXPECT_FALSE(gSystemState.pool.holds(before));
    releaseMemory(before);
    EXPECT_EQ(getCurrentMemoryUsage(), getMaxMemoryUsage() - 100);
}

TEST(ProcessEnd, NoSweepTakesWhatWasLeft) {
    void* left = nullptr;
    {
        const SystemResources resources;
        expectProcessEnd();
        EXPECT_TRUE(isProcessEndExpected());
        left = getMemory("left", 100);
        std::memset(left, 0x5A, 100);
    }
    EXPECT_FALSE(isProcessEndExpected());
    EXPECT_EQ(leakedBlockCount(), 0U);
    EXPECT_EQ(static_cast<u8*>(left)[99], 0x5A); // still there
    releaseMemory(left);
}

} // namespace
} // namespace memdata::testing
