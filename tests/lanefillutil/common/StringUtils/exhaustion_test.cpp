// exhaustion_test.cpp - texts that outgrow the machine while they are built, ahead of any tracked block.
// SPDX-License-Identifier: Apache-2.0
#include "string_test.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <new>

namespace {

constexpr size_t kNO_LIMIT = SIZE_MAX;
size_t gAllocationLimit = kNO_LIMIT; // bytes; larger requests are refused

// Small requests go on, so that the alert can be worded.
class LimitedAllocations {
public:
    explicit LimitedAllocations(size_t limit) { gAllocationLimit = limit; }
    ~LimitedAllocations() { gAllocationLimit = kNO_LIMIT; }
    LimitedAllocations& operator=(LimitedAllocations&&) = delete; // neither copied nor moved
};

} // namespace

// The allocator of this whole test program; not inlined, or the compiler sees free() beside new.
[[gnu::noinline]] void* operator new(size_t size) {
    void* block = size > gAllocationLimit ? nullptr : std::malloc(size);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}
[[gnu::noinline]] void operator delete(void* block) noexcept {
    std::free(block);
}
[[gnu::noinline]] void operator delete(void* block, size_t) noexcept {
    std::free(block);
}

namespace memdata::testing {
namespace {

class Exhaustion : public StringTest {};

constexpr size_t kLIMIT = 100000;

TEST_F(Exhaustion, AFormattedTextThatCanNotGrowIsNullAfterTheAlert) {
    const std::string part(kLIMIT / 2, 'x');
    char* s = managed("ab");
    ::testing::internal::CaptureStdout();
    {
        const LimitedAllocations limited(kLIMIT);
        EXPECT_EQ(StrPrintf(s, "%s%s%s", part.c_str(), part.c_str(), part.c_str()), nullptr);
    }
    std::fflush(stdout);
    EXPECT_THAT(::testing::internal::GetCapturedStdout(),
        ::testing::HasSubstr("Out of memory allocating 'a formatted text' object of 50002 bytes."));
}

TEST_F(Exhaustion, AFloatWithTooManyDigitsIsNullAfterTheAlert) {
    const QuietAlerts quiet;
    const LimitedAllocations limited(kLIMIT);
    EXPECT_EQ(FloatToStr(1.5L, static_cast<int>(kMAX_FIELD_CHARACTERS), nullptr), nullptr);
}

} // namespace
} // namespace memdata::testing
