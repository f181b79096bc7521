// source_names_test.cpp - nothing that is recorded depends on where the tree lies.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/containers.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"

#include <gtest/gtest.h>

namespace {

TEST(SourceNames, OfTestsAreRelativeToTheTree) {
    const memdata::SystemResources resources;
    void* block = getMemory("a block", 1);
    ASSERT_NE(block, nullptr);
    EXPECT_STREQ(gMemoryBlockList.tail->sourceFile, "tests/lanefillutil/common/SystemUtils/source_names_test.cpp");
    releaseMemory(block);
}

TEST(SourceNames, OfTheLibraryAreRelativeToTheTree) {
    const memdata::SystemResources resources;
    StackType* stack = Stack_Create();
    ASSERT_NE(stack, nullptr);
    EXPECT_STREQ(gMemoryBlockList.tail->sourceFile, "memdata/lanefillutil/common/SystemUtils/containers.cpp");
    Stack_Delete(&stack);
}

} // namespace
