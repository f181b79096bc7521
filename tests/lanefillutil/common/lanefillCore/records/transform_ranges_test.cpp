// transform_ranges_test.cpp - ranges of written data: found, linked in order, widened.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/records/transform_ranges.h"

#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "platform/file_image.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class Ranges : public ::testing::Test {
protected:
    ~Ranges() override {
        delete_transform_range_list(&list);
        EXPECT_EQ(getCurrentMemoryUsage(), bytesBefore_);
    }
    TransformRangeType* insert(const char* name, u64 start, u64 size) {
        return insert_transform_range(name, &list, start, size, bytes, size, true);
    }
    std::string text() const {
        std::string all;
        for (const TransformRangeType* range = list; range != nullptr; range = range->next)
            all += std::to_string(range->start) + "+" + std::to_string(range->size) + " " + range->name + "\n";
        return all;
    }

    memdata::SystemResources resources_;
    u64 bytesBefore_ = getCurrentMemoryUsage();
    TransformRangeType* list = nullptr;
    u8 bytes[16] = {0x11, 0x22, 0x33, 0x44};
};

} // namespace

TEST_F(Ranges, StandInOrderOfTheirStart) {
    for (const u64 start : {20ul, 10ul, 30ul, 25ul, 5ul}) insert("a", start, 1);
    EXPECT_EQ(text(), "5+1 a\n10+1 a\n20+1 a\n25+1 a\n30+1 a\n");
}

TEST_F(Ranges, OfEqualStartStandAheadOfOlderOnesExceptAtTheHead) {
    insert("a", 10, 1);
    insert("b", 10, 2);
    insert("c", 10, 3);
    EXPECT_EQ(text(), "10+1 a\n10+3 c\n10+2 b\n");
    insert("d", 20, 1);
    insert("e", 20, 2);
    EXPECT_EQ(text(), "10+1 a\n10+3 c\n10+2 b\n20+2 e\n20+1 d\n");
}

TEST_F(Ranges, AreFoundByStartAndSize) {
    TransformRangeType* first = insert("a", 10, 4);
    insert("b", 10, 8);
    EXPECT_EQ(lookup_transform_range(list, 10, 4), first);
    EXPECT_EQ(lookup_transform_range(list, 10, 5), nullptr);
    EXPECT_EQ(lookup_transform_range(list, 11, 4), nullptr);
    EXPECT_EQ(lookup_transform_range(nullptr, 10, 4), nullptr);
}

TEST_F(Ranges, ThatAreThereAreGivenAgainWithTheLaterData) {
    TransformRangeType* first = insert("a", 10, 2);
    bytes[0] = 0x99;
    EXPECT_EQ(insert("b", 10, 2), first);
    EXPECT_EQ(text(), "10+2 b\n");
    EXPECT_EQ(first->ownedData[0], 0x99);
}

TEST_F(Ranges, WithAStartAddressAreNotFound) {
    TransformRangeType* first = insert("a", 10, 2);
    first->hasStartAddress = true;
    EXPECT_EQ(lookup_transform_range(list, 10, 2), nullptr);
    EXPECT_NE(insert("b", 10, 2), first);
    EXPECT_EQ(text(), "10+2 a\n10+2 b\n");
}

TEST_F(Ranges, OfACopyHoldTheirOwnBytes) {
    const TransformRangeType* range = insert("a", 100, 4);
    EXPECT_EQ(range->end, 103u);
    EXPECT_NE(range->ownedData, bytes);
    EXPECT_EQ(range->dataFirst, range->ownedData);
    EXPECT_EQ(range->dataLast, range->ownedData + 3);
    EXPECT_EQ(range->dataSize, 4u);
    EXPECT_EQ(range->dataLast[0], 0x44);
    EXPECT_FALSE(range->hasStartAddress);
}

TEST_F(Ranges, OfALargeCopyShareThePagesOfAMappedFile) {
    const memdata::testing::TemporaryFolder folder;
    const std::string data((1 << 20) + 1, 'x');
    memdata::FileImage image;
    ASSERT_EQ(image.open(folder.write("a", data)), memdata::WholeFile::kREAD);
    const auto* mapped = reinterpret_cast<const u8*>(image.data());
    const TransformRangeType* range = insert_transform_range("a", &list, 10, 4, mapped + 1, data.size() - 1, true);
    ASSERT_NE(range, nullptr);
    EXPECT_NE(range->ownedPages, nullptr);
    EXPECT_EQ(range->dataFirst, range->ownedData);
    EXPECT_EQ(range->dataLast, range->ownedData + data.size() - 2);
    EXPECT_EQ(range->bitCount, 8 * (data.size() - 1));
    EXPECT_EQ(*range->dataLast, 'x');
    range->ownedData[0] = 'y';
    EXPECT_EQ(mapped[1], 'x');
}

TEST_F(Ranges, ChangeBetweenPagesOfAFileAndAPlainCopy) {
    const memdata::testing::TemporaryFolder folder;
    memdata::FileImage image;
    ASSERT_EQ(image.open(folder.write("a", std::string(1 << 20, 'x'))), memdata::WholeFile::kREAD);
    const auto* mapped = reinterpret_cast<const u8*>(image.data());
    TransformRangeType* range = insert("a", 10, 4);
    EXPECT_EQ(insert_transform_range("b", &list, 10, 4, mapped, 1 << 20, true), range);
    EXPECT_NE(range->ownedPages, nullptr);
    EXPECT_EQ(insert("c", 10, 4), range);
    EXPECT_EQ(range->ownedPages, nullptr);
    EXPECT_EQ(range->ownedData[3], 0x44);
}

TEST_F(Ranges, OfASmallCopyTakeNoPages) {
    const memdata::testing::TemporaryFolder folder;
    memdata::FileImage image;
    ASSERT_EQ(image.open(folder.write("a", std::string(1 << 20, 'x'))), memdata::WholeFile::kREAD);
    const auto* mapped = reinterpret_cast<const u8*>(image.data());
    const TransformRangeType* range = insert_transform_range("a", &list, 0, 9, mapped, (1 << 20) - 1, true);
    ASSERT_NE(range, nullptr);
    EXPECT_EQ(range->ownedPages, nullptr);
    EXPECT_EQ(*range->dataLast, 'x');
}

TEST_F(Ranges, WithoutACopyPointAtTheCallersBytes) {
    const TransformRangeType* range = insert_transform_range("a", &list, 0, 4, bytes + 1, 0, false);
    EXPECT_EQ(range->ownedData, nullptr);
    EXPECT_EQ(range->dataFirst, bytes + 1);
    EXPECT_EQ(range->dataSize, 0u);
}

TEST_F(Ranges, AreWidenedToTheByteUnderACursorAndSizedByTheDistance) {
    TransformRangeType* range = insert_transform_range("a", &list, 0, 16, bytes + 4, 0, false);
    BufferChunkAccess access(bytes, 128, 128, kBIT_LANE_ORDER, 4, 8);
    access.PutNextTransformChunk(20, 0);
    set_max_transform_buffer_addresses(&access, range);
    EXPECT_EQ(range->dataFirst, bytes + 4);
    EXPECT_EQ(range->dataLast, bytes + 6);
    EXPECT_EQ(range->dataSize, 2u); // the distance, not one more
    EXPECT_EQ(range->bitCount, 20u);
    const BufferChunkAccess lower(bytes, 128, 128, kBIT_LANE_ORDER, 1, 8);
    set_max_transform_buffer_addresses(&lower, range);
    EXPECT_EQ(range->dataFirst, bytes + 1);
    EXPECT_EQ(range->dataSize, 5u);
    EXPECT_EQ(range->bitCount, 20u);
}

TEST_F(Ranges, TakeInTheBitsThatCursorsHavePassed) {
    TransformRangeType* range = insert_transform_range("a", &list, 0, 16, bytes, 0, false);
    BufferChunkAccess access(bytes, 128, 128, kBIT_LANE_ORDER, 9, 4);
    set_max_transform_buffer_addresses(&access, range);
    EXPECT_EQ(range->firstBit, range->endBit); // nothing has passed
    access.PutNextTransformChunk(4, 0);
    access.PutNextTransformChunk(4, 0);
    set_max_transform_buffer_addresses(&access, range);
    EXPECT_EQ(range->firstBit, 36u);
    EXPECT_EQ(range->endBit, 44u);
    BufferChunkAccess lower(bytes, 128, 128, kBIT_LANE_ORDER, 2, 4);
    lower.PutNextTransformChunk(4, 0);
    set_max_transform_buffer_addresses(&lower, range);
    EXPECT_EQ(range->firstBit, 8u);
    EXPECT_EQ(range->endBit, 44u);
}
