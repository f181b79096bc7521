// memory_pages_test.cpp - fresh memory that is taken at once.
// SPDX-License-Identifier: Apache-2.0
#include "platform/memory_pages.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace {

// Memory of the system that nobody has touched.
class FreshPages : public ::testing::Test {
protected:
    void SetUp() override {
        void* pages = mmap(nullptr, bytes_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        ASSERT_NE(pages, MAP_FAILED);
        data = static_cast<char*>(pages);
    }
    void TearDown() override { munmap(data, bytes_); }

    long resident() const {
        std::vector<unsigned char> pages(kPAGES);
        EXPECT_EQ(mincore(data, bytes_, pages.data()), 0);
        return std::count_if(pages.begin(), pages.end(), [](unsigned char page) { return (page & 1) != 0; });
    }

    static constexpr size_t kPAGES = 256;
    const size_t pageBytes = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    char* data = nullptr;

private:
    const size_t bytes_ = kPAGES * static_cast<size_t>(sysconf(_SC_PAGESIZE));
};

TEST_F(FreshPages, WholePagesInsideAreTakenAndNoByteChanges) {
    data[5 * pageBytes] = 'x';
    EXPECT_LT(resident(), 200);
    memdata::populatePages(data + 1, 201 * pageBytes - 1);
    EXPECT_EQ(data[5 * pageBytes], 'x');
    EXPECT_EQ(data[6 * pageBytes], '\0');
    const long taken = resident();
    if (taken < 100) GTEST_SKIP() << "this system gives memory page by page";
    EXPECT_GE(taken, 200);
    EXPECT_LT(taken, 250);
}

TEST_F(FreshPages, OfASmallBlockAreLeftToTheirFirstTouch) {
    memdata::populatePages(data, 3 * pageBytes);
    EXPECT_LT(resident(), 3);
}

TEST(ReservedPages, AreZeroAndTakeNoMemoryBefore) {
    constexpr u64 kBYTES = u64{1} << 30;
    auto* const bytes = static_cast<char*>(memdata::reservePages(kBYTES));
    ASSERT_NE(bytes, nullptr);
    memdata::preferLargePages(bytes, kBYTES);
    for (const u64 at : {u64{0}, kBYTES / 2, kBYTES - 1}) {
        EXPECT_EQ(bytes[at], 0);
        bytes[at] = 'x';
        EXPECT_EQ(bytes[at], 'x');
    }
    memdata::returnPages(bytes, kBYTES);
}

TEST(ReservedPages, OfMoreThanThereAreAddressesAreNone) {
    EXPECT_EQ(memdata::reservePages(u64{1} << 62), nullptr);
}

} // namespace
