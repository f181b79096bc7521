// fast_lanes_test.cpp - the fast path gives what the plain one gives, over random shapes of blocks and segments.
//
// MEMDATA_TRANSFORM_SEED and MEMDATA_TRANSFORM_SHAPES in the environment replace the seed and the number of shapes.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/bus_blocks.h"
#include "lanefillCore/lanes/ecc_lanes.h"
#include "lanefillCore/lanes/fast_lanes.h"
#include "lanefillCore/lanes/lane_positions.h"
#include "lanefillCore/lanes/lane_words.h"
#include "support/map_builder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <list>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace memdata::testing {
namespace {

constexpr u64 kDEFAULT_SEED = 20240607;
constexpr u64 kDEFAULT_SHAPES = 100000;
constexpr u64 kSEGMENTS_A_SHAPE = 2;
constexpr u64 kBLOCK_WORDS = 12; // bus words of a block: small, so that ends of blocks are met often

u64 fromEnvironment(const char* name, u64 otherwise) {
    const char* text = std::getenv(name);
    return text == nullptr ? otherwise : std::strtoull(text, nullptr, 0);
}

class Dice {
public:
    explicit Dice(u64 seed) : random_(seed) {}
    u64 below(u64 limit) { return random_() % limit; }
    template<class T>
    T pick(std::initializer_list<T> values) {
        return values.begin()[below(values.size())];
    }
    bool oneIn(u64 n) { return below(n) == 0; }
    u8 byte() { return static_cast<u8>(random_()); }

private:
    std::mt19937_64 random_;
};

struct Shape {
    unsigned laneBits; // data bits of a lane
    unsigned parityBits;
    u64 laneCount;
    u64 blockCount;
    u32 ordering;
    u64 lanePitch;
    u32 eccType;
    std::vector<unsigned> eccWidths;
    bool leOrder;
    bool wordAddressing;
    u64 startAddress;
    bool shortDevice;    // the devices hold fewer words than the block counts
    bool shortParity;    // the same of their parity bits
    bool unlikeLane;     // the last data lane differs from the others
    unsigned unlikeBits; // its data bits
    unsigned unlikeParityBits;
    u32 unlikeOrdering;
    u64 blockWords = kBLOCK_WORDS;

    std::string text() const {
        std::ostringstream out;
        out << "lanes " << laneCount << " of " << laneBits << "+" << parityBits << ", blocks " << blockCount
            << ", ordering " << ordering << ", pitch " << lanePitch << ", ecc " << eccType << " in " << eccWidths.size()
            << ", le " << leOrder << ", words " << wordAddressing << ", start " << startAddress << ", short "
            << shortDevice << shortParity << ", unlike " << unlikeLane << " of " << unlikeBits << "+"
            << unlikeParityBits << " ordering " << unlikeOrdering << ", block words " << blockWords;
        return out.str();
    }
};

Shape randomShape(Dice& dice) {
    Shape shape{};
    shape.laneBits = dice.oneIn(4) ? dice.pick({1u, 2u, 4u, 7u, 9u, 12u, 24u, 40u}) : dice.pick({8u, 16u, 32u, 64u});
    shape.parityBits = dice.oneIn(3) ? dice.pick({1u, 2u, 4u, 8u, 3u}) : 0;
    shape.laneCount = dice.oneIn(4) ? 1 + dice.below(9) : dice.pick<u64>({1, 2, 4, 8, 16});
    shape.blockCount = 1 + dice.below(3);
    shape.ordering = dice.oneIn(4) ? kBIT_ORDERING_ASCENDING : kBIT_ORDERING_DESCENDING;
    shape.lanePitch = dice.oneIn(3) ? dice.pick<u64>({shape.laneBits, 16, 32, 64, 36}) : 0;
    shape.leOrder = dice.oneIn(3);
    shape.wordAddressing = shape.parityBits > 0 && dice.oneIn(2);
    shape.startAddress = dice.oneIn(2) ? 0 : dice.below(1u << 20) * 64;
    if (dice.oneIn(2)) {
        shape.eccType = static_cast<u32>(1 + dice.below(6));
        for (u64 lanes = 1 + dice.below(3); lanes > 0; --lanes) shape.eccWidths.push_back(dice.pick({4u, 7u, 8u, 9u}));
    }
    shape.shortDevice = dice.oneIn(8);
    shape.shortParity = dice.oneIn(8);
    if (dice.oneIn(64)) shape.blockWords = 10 * kBLOCK_WORDS;
    shape.unlikeLane = dice.oneIn(8);
    shape.unlikeBits = dice.oneIn(2) ? shape.laneBits : dice.pick({4u, 8u, 16u, 32u});
    shape.unlikeParityBits = dice.oneIn(2) ? shape.parityBits : dice.pick({0u, 1u, 2u, 4u});
    shape.unlikeOrdering = dice.oneIn(2) ? shape.ordering : kBIT_ORDERING_ASCENDING;
    return shape;
}

// The records of one space, made without the checks of a map: any shape is possible.
class Space {
public:
    explicit Space(const Shape& shape)
        : type_(memoryType(shape)), memory_{&type_, nullptr, nullptr, 0, nullptr}, space_{} {
        space_.startAddress = shape.startAddress;
        space_.leLaneOrderApplied = shape.leOrder;
        range_.wordAddressing = space_.wordAddressing = shape.wordAddressing;
        range_.memory = &memory_;
        range_.laneWidth = shape.laneBits + (shape.wordAddressing ? shape.parityBits : 0);
        range_.startAddress = shape.startAddress;
        const u64 busBits = shape.laneBits * shape.laneCount;
        const u64 blockBytes = std::max<u64>(1, shape.blockWords * busBits / 8);
        range_.blockByteSize = shape.wordAddressing ? shape.blockWords * shape.laneCount : blockBytes;
        range_.endAddress = shape.startAddress + range_.blockByteSize * shape.blockCount - 1;
        space_.endAddress = range_.endAddress;
        space_.ranges = &range_;
        for (u64 i = 0; i < shape.blockCount; ++i) addBlock(shape, i);
        for (auto& block : blocks_) blockPointers_.push_back(&block);
        range_.busBlocks = blockPointers_.data();
        range_.busBlockCount = shape.blockCount;
    }
    ~Space() {
        for (auto& lane : lanes_) {
            deleteChunkAccess(lane.dataChunks);
            deleteChunkAccess(lane.parityChunks);
            delete_transform_range_list(&lane.transformRanges);
        }
    }
    Space& operator=(Space&&) = delete; // neither copied nor moved

    AddressSpaceDefType* get() { return &space_; }
    u64 byteCount() const { return range_.endAddress - range_.startAddress + 1; }

    void fill(u64 seed) {
        Dice dice(seed);
        for (auto& buffer : buffers_)
            for (u8& byte : buffer) byte = dice.byte();
    }

    // Buffers, ranges, counts: everything that a caller can see of the lanes.
    std::string text() const {
        std::ostringstream out;
        for (const auto& buffer : buffers_)
            out.write(reinterpret_cast<const char*>(buffer.data()), static_cast<long>(buffer.size()));
        for (const auto& lane : lanes_) {
            out << "\nstate " << lane.laneState;
            for (const TransformRangeType* range = lane.transformRanges; range != nullptr; range = range->next) {
                appendRange(out, *range, lane.dataSliver);
                if (range->parityRange != nullptr) appendRange(out, *range->parityRange, lane.paritySliver);
            }
        }
        return out.str();
    }

private:
    static MEMORYType memoryType(const Shape& shape) {
        MEMORYType type{};
        const u64 words = shape.blockWords + 3; // a lane may begin a word later, and check lanes count for themselves
        type.dataBits = words * std::max<u64>(laneSlotBits(shape.laneBits), 16) / 8 * 8 + 64;
        const unsigned parityBits = std::max(shape.parityBits, shape.unlikeLane ? shape.unlikeParityBits : 0);
        type.parityBits = parityBits == 0 ? 0 : static_cast<u32>((words * parityBits + 15) / 8 * 8);
        type.hasParityWidths = parityBits > 0;
        if (shape.shortDevice) type.dataBits = shape.blockWords * laneSlotBits(shape.laneBits) / 16 * 8 + 8;
        if (shape.shortParity && parityBits > 0) type.parityBits = 8;
        return type;
    }

    static void appendRange(std::ostringstream& out, const TransformRangeType& range, const u8* sliver) {
        out << " [" << range.start << "+" << range.size << " " << range.dataFirst - sliver << ":"
            << range.dataLast - sliver << " " << range.dataSize << " " << range.bitCount << " bits " << range.firstBit
            << ":" << range.endBit << "]";
    }

    BitLaneGridElemType* newLane(const Shape& shape, unsigned width, unsigned parityWidth, u32 eccType) {
        lanes_.emplace_back();
        BitLaneType& lane = lanes_.back();
        lane.memory = &memory_;
        lane.addressSpace = &space_;
        buffers_.emplace_back(type_.dataBits / 8);
        lane.dataSliver = buffers_.back().data();
        if (type_.parityBits > 0) {
            buffers_.emplace_back(type_.parityBits / 8);
            lane.paritySliver = buffers_.back().data();
        }
        elements_.emplace_back();
        BitLaneGridElemType& element = elements_.back();
        element.lane = &lane;
        element.laneWidth = width + parityWidth;
        element.parityWidth = parityWidth;
        element.bitOrdering = shape.ordering;
        element.eccType = eccType;
        return &element;
    }

    void addBlock(const Shape& shape, u64 index) {
        blocks_.emplace_back();
        BusBlockType& block = blocks_.back();
        block.startAddress = range_.startAddress + index * range_.blockByteSize;
        block.endAddress = block.startAddress + range_.blockByteSize - 1;
        block.laneCount = shape.laneCount;
        block.lanePitch = shape.lanePitch;
        block.eccType = shape.eccType;
        block.eccLaneCount = shape.eccWidths.size();
        auto& data = arrays_.emplace_back();
        for (u64 i = 0; i < shape.laneCount; ++i) data.push_back(newLane(shape, shape.laneBits, shape.parityBits, 0));
        if (shape.unlikeLane) {
            data.back() = newLane(shape, shape.unlikeBits, shape.unlikeParityBits, 0);
            data.back()->bitOrdering = shape.unlikeOrdering;
        }
        block.lanes = data.data();
        auto& ecc = arrays_.emplace_back();
        for (const unsigned width : shape.eccWidths) {
            ecc.push_back(newLane(shape, width, 0, shape.eccType));
            block.eccBusWidth += width;
        }
        block.eccLanes = ecc.data();
    }

    MEMORYType type_;
    MEMORYLocType memory_;
    AddressSpaceDefType space_;
    AddressRangeDefType range_{};
    std::list<BusBlockType> blocks_;
    std::vector<BusBlockType*> blockPointers_;
    std::list<BitLaneType> lanes_;
    std::list<BitLaneGridElemType> elements_;
    std::list<std::vector<BitLaneGridElemType*>> arrays_;
    std::list<std::vector<u8>> buffers_;
};

// A source that stands inside a byte, as the rest of a segment does behind a block of odd lanes.
int restThrough(Space& space, u64 address, std::vector<u8>& bytes, u64 firstBit, TransformPath path) {
    AddressRangeDefType* range = space.get()->ranges;
    BufferChunkAccess source =
        BufferChunkAccess::OverWholeBuffer(bytes.data(), bytes.size() * 8, kDATA_ORDER, firstBit, 1);
    return transformBusBlock(
        "a.elf", range, range->busBlocks[0], address, &source, space.get()->leLaneOrderApplied, path);
}

std::string segmentsThrough(const Shape& shape, u64 seed, TransformPath path) {
    Space space(shape);
    space.fill(seed);
    Dice dice(seed + 1);
    for (u64 i = 0; i < kSEGMENTS_A_SHAPE; ++i) {
        const u64 address = shape.startAddress + (dice.oneIn(3) ? 0 : dice.below(space.byteCount()));
        std::vector<u8> bytes(1 + dice.below(2 * space.byteCount() + 8));
        for (u8& byte : bytes) byte = dice.byte();
        EXPECT_EQ(transformSegment("a.elf", space.get(), address, bytes.data(), bytes.size(), path), 0);
        if (dice.oneIn(4)) {
            EXPECT_EQ(restThrough(space, shape.startAddress, bytes, dice.below(8), path), 0);
        }
    }
    return space.text();
}

// Whether the blocks of a shape go by the fast path once their cursors are placed.
bool goesFast(const Shape& shape) {
    Space space(shape);
    u64 count = 0;
    u64 lane = 0;
    AddressRangeDefType* range = space.get()->ranges;
    BusBlockType* block = range->busBlocks[0];
    EXPECT_EQ(initialize_busBlock_transform_positions("a.elf", range, block, 0, &count, &lane), 0);
    EXPECT_EQ(initialize_busBlock_ECC_transform_positions("a.elf", range, block, 0, &count), 0);
    return hasFastShape(block);
}

TEST(FastLanes, GiveWhatThePlainFormGivesOverRandomShapes) {
    const SystemResources resources;
    const u64 seed = fromEnvironment("MEMDATA_TRANSFORM_SEED", kDEFAULT_SEED);
    const u64 shapes = fromEnvironment("MEMDATA_TRANSFORM_SHAPES", kDEFAULT_SHAPES);
    Dice dice(seed);
    u64 fastShapes = 0;
    for (u64 i = 0; i < shapes; ++i) {
        const Shape shape = randomShape(dice);
        const std::string fast = segmentsThrough(shape, seed + i, TransformPath::kBY_SHAPE);
        const std::string plain = segmentsThrough(shape, seed + i, TransformPath::kPLAIN);
        ASSERT_TRUE(fast == plain) << "shape " << i << " of seed " << seed << ": " << shape.text();
        if (goesFast(shape)) ++fastShapes;
    }
    EXPECT_GT(fastShapes, shapes / 5) << "too few shapes meet the fast path to prove anything";
}

// One block much larger than what the gathering takes at a time.
TEST(FastLanes, GiveWhatThePlainFormGivesOverLongRuns) {
    const SystemResources resources;
    for (const unsigned laneBits : {8u, 16u, 32u, 64u})
        for (const u64 laneCount : {1ul, 2ul, 3ul, 4ul, 8ul})
            for (const u32 ordering : {kBIT_ORDERING_ASCENDING, kBIT_ORDERING_DESCENDING}) {
                Shape shape{};
                shape.laneBits = laneBits;
                shape.laneCount = laneCount;
                shape.blockCount = 1;
                shape.blockWords = 5000;
                shape.ordering = ordering;
                EXPECT_TRUE(segmentsThrough(shape, 1, TransformPath::kBY_SHAPE) ==
                            segmentsThrough(shape, 1, TransformPath::kPLAIN))
                    << shape.text();
            }
}

// Check values of runs that are long enough to be taken from a table made for them.
TEST(FastLanes, GiveWhatThePlainFormGivesOverLongCheckedRuns) {
    const SystemResources resources;
    for (u32 eccType = 1; eccType <= 6; ++eccType)
        for (const unsigned laneBits : {8u, 16u, 32u, 64u})
            for (const u64 laneCount : {1ul, 2ul, 3ul, 4ul, 8ul, 16ul}) {
                if (laneCount * laneBits > 128) continue;
                for (const u32 ordering : {kBIT_ORDERING_ASCENDING, kBIT_ORDERING_DESCENDING})
                    for (const std::vector<unsigned>& eccWidths : {std::vector{8u}, {7u}, {5u, 12u}}) {
                        Shape shape{};
                        shape.laneBits = laneBits;
                        shape.laneCount = laneCount;
                        shape.blockCount = 1;
                        shape.blockWords = 600;
                        shape.ordering = ordering;
                        shape.eccType = eccType;
                        shape.eccWidths = eccWidths;
                        shape.leOrder = laneCount % 2 == 0;
                        EXPECT_TRUE(segmentsThrough(shape, laneCount, TransformPath::kBY_SHAPE) ==
                                    segmentsThrough(shape, laneCount, TransformPath::kPLAIN))
                            << shape.text();
                    }
            }
}

// The same of words that are no whole bytes, have parity bits or are too wide for a table; and check lanes whose words
// share a byte.
TEST(FastLanes, GiveWhatThePlainFormGivesOverLongCheckedRunsOfOddWords) {
    const SystemResources resources;
    for (const u32 eccType : {1u, 4u, 5u})
        for (const unsigned laneBits : {1u, 2u, 4u, 7u, 12u, 64u})
            for (const u64 laneCount : {2ul, 3ul, 9ul, 32ul})
                for (const unsigned parityBits : {0u, 1u, 4u})
                    for (const std::vector<unsigned>& eccWidths : {std::vector{7u}, {4u}, {4u, 1u, 9u}}) {
                        Shape shape{};
                        shape.laneBits = laneBits;
                        shape.parityBits = parityBits;
                        shape.laneCount = laneCount;
                        shape.blockCount = 1;
                        shape.blockWords = 140;
                        shape.ordering = laneCount % 2 == 0 ? kBIT_ORDERING_DESCENDING : kBIT_ORDERING_ASCENDING;
                        shape.eccType = eccType;
                        shape.eccWidths = eccWidths;
                        shape.leOrder = eccType == 4;
                        EXPECT_TRUE(segmentsThrough(shape, laneCount, TransformPath::kBY_SHAPE) ==
                                    segmentsThrough(shape, laneCount, TransformPath::kPLAIN))
                            << shape.text();
                    }
}

// Runs that are longer than the way between two reports of progress.
TEST(FastLanes, GiveWhatThePlainFormGivesOverSeveralSteps) {
    const SystemResources resources;
    struct Case {
        unsigned laneBits;
        unsigned parityBits;
        u32 eccType;
    };
    for (const Case& c : {Case{8, 0, 0}, Case{8, 1, 0}, Case{16, 0, 1}, Case{1, 0, 0}}) {
        Shape shape{};
        shape.laneBits = c.laneBits;
        shape.parityBits = c.parityBits;
        shape.laneCount = c.laneBits == 1 ? 8 : 2;
        shape.blockCount = 1;
        shape.blockWords = 300000;
        shape.eccType = c.eccType;
        if (c.eccType != 0) shape.eccWidths = {7};
        EXPECT_TRUE(
            segmentsThrough(shape, 1, TransformPath::kBY_SHAPE) == segmentsThrough(shape, 1, TransformPath::kPLAIN))
            << shape.text();
    }
}

// Words of less than a byte, from places inside a byte of the lanes and of the source too.
TEST(FastLanes, GiveWhatThePlainFormGivesOnNarrowLanes) {
    const SystemResources resources;
    for (const unsigned laneBits : {1u, 2u, 4u})
        for (const u64 laneCount : {1ul, 3ul, 8ul, 9ul, 32ul})
            for (const u32 ordering : {kBIT_ORDERING_ASCENDING, kBIT_ORDERING_DESCENDING})
                for (u64 seed = 1; seed <= 4; ++seed) {
                    Shape shape{};
                    shape.laneBits = laneBits;
                    shape.laneCount = laneCount;
                    shape.blockCount = 2;
                    shape.blockWords = seed % 2 == 0 ? 4000 : 203;
                    shape.ordering = ordering;
                    EXPECT_TRUE(segmentsThrough(shape, seed, TransformPath::kBY_SHAPE) ==
                                segmentsThrough(shape, seed, TransformPath::kPLAIN))
                        << shape.text() << ", seed " << seed;
                }
}

// A last lane of another width, with parity bits of its own and its bits in the other order.
TEST(FastLanes, GiveWhatThePlainFormGivesOnLanesThatDiffer) {
    const SystemResources resources;
    for (const unsigned laneBits : {1u, 4u, 8u, 12u, 32u})
        for (const unsigned unlikeBits : {1u, 7u, 8u, 16u})
            for (const unsigned unlikeParityBits : {0u, 1u, 8u})
                for (const u32 eccType : {0u, 4u}) {
                    Shape shape{};
                    shape.laneBits = laneBits;
                    shape.laneCount = 3;
                    shape.blockCount = 1;
                    shape.blockWords = 600;
                    shape.unlikeLane = true;
                    shape.unlikeBits = unlikeBits;
                    shape.unlikeParityBits = unlikeParityBits;
                    shape.unlikeOrdering = kBIT_ORDERING_ASCENDING;
                    shape.eccType = eccType;
                    if (eccType != 0) shape.eccWidths = {8};
                    EXPECT_TRUE(goesFast(shape)) << shape.text();
                    EXPECT_TRUE(segmentsThrough(shape, unlikeBits, TransformPath::kBY_SHAPE) ==
                                segmentsThrough(shape, unlikeBits, TransformPath::kPLAIN))
                        << shape.text();
                }
}

// A segment from the start of the only block on, as the plain form is told: each lane word by itself.
std::string wordsOneByOne(const Shape& shape, u64 seed, std::vector<u8> bytes) {
    Space space(shape);
    space.fill(seed);
    AddressRangeDefType* range = space.get()->ranges;
    BusBlockType* block = range->busBlocks[0];
    u64 count = 0;
    u64 lane = 0;
    EXPECT_EQ(initialize_busBlock_transform_positions("a.elf", range, block, 0, &count, &lane), 0);
    EXPECT_EQ(initialize_busBlock_ECC_transform_positions("a.elf", range, block, 0, &lane), 0);
    BufferChunkAccess source = BufferChunkAccess::OverWholeBuffer(bytes.data(), bytes.size() * 8, kDATA_ORDER, 0, 8);
    for (; count > 0 && source.GetNumberBufferBitsRemaining() > 0; count -= block->laneCount) {
        EndianConvert::UInt128 bus{0, 0};
        for (u64 i = 0; i < block->laneCount; ++i)
            if (source.GetNumberBufferBitsRemaining() > 0)
                transform_bitLane_value(block->lanes[i], 0, &source, &bus);
            else
                accumulateStoredWord(block->lanes[i], 0, &bus);
        transform_bus_access_ECC_value(block, shape.leOrder, bus);
    }
    return space.text();
}

// Blocks of such lanes take most of their words with fewer tests, also where the devices hold fewer than the block.
TEST(PlainForm, TakesWordsOfOneUnitAsOneByOne) {
    const SystemResources resources;
    for (const unsigned laneBits : {1u, 2u, 4u, 8u})
        for (const u64 laneCount : {1ul, 3ul, 8ul, 9ul, 32ul})
            for (const u32 ordering : {kBIT_ORDERING_ASCENDING, kBIT_ORDERING_DESCENDING})
                for (const u32 eccType : {0u, 1u, 5u})
                    for (const bool shortDevice : {false, true}) {
                        Shape shape{};
                        shape.laneBits = laneBits;
                        shape.laneCount = laneCount;
                        shape.blockCount = 1;
                        shape.blockWords = 96;
                        shape.ordering = ordering;
                        shape.eccType = eccType;
                        if (eccType != 0) shape.eccWidths = {7};
                        shape.leOrder = laneCount == 8;
                        shape.shortDevice = shortDevice;
                        Dice dice(laneBits);
                        std::vector<u8> bytes(laneBits * laneCount * 96 / 8 - 1); // ends inside the last bus word
                        for (u8& byte : bytes) byte = dice.byte();
                        Space space(shape);
                        space.fill(1);
                        EXPECT_EQ(transformSegment(
                                      "a.elf", space.get(), 0, bytes.data(), bytes.size(), TransformPath::kPLAIN),
                            0);
                        EXPECT_TRUE(space.text() == wordsOneByOne(shape, 1, bytes)) << shape.text();
                    }
}

// Words of three parity bits cross bytes, which only the plain form writes as it must.
TEST(FastLanes, LeaveParityThatCrossesBytesToThePlainForm) {
    const SystemResources resources;
    Shape shape{};
    shape.laneBits = 8;
    shape.laneCount = 4;
    shape.blockCount = 1;
    shape.parityBits = 2;
    EXPECT_TRUE(goesFast(shape));
    shape.parityBits = 3;
    EXPECT_FALSE(goesFast(shape));
}

TEST(FastLanes, GiveWhatThePlainFormGivesOnTheWidestBuses) {
    const SystemResources resources;
    for (const u64 laneCount : {256ul, 257ul, 2048ul, 2049ul}) {
        Shape shape{};
        shape.laneBits = 8;
        shape.laneCount = laneCount;
        shape.blockCount = 1;
        EXPECT_TRUE(
            segmentsThrough(shape, 1, TransformPath::kBY_SHAPE) == segmentsThrough(shape, 1, TransformPath::kPLAIN))
            << shape.text();
    }
}

} // namespace
} // namespace memdata::testing
