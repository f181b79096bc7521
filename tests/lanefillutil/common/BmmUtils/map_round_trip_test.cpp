// map_round_trip_test.cpp - map texts that are read, written annotated, and read again.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/annotated_map.h"
#include "BmmUtils/parser.h"
#include "BmmUtils/validation.h"
#include "DeviceTableUtils/device_lookup.h"
#include "DeviceTableUtils/memory_lookup.h"
#include "FileUtils/FileUtils.h"
#include "support/alerts.h"
#include "support/map_builder.h"
#include "support/map_dump.h"

#include <gtest/gtest.h>

#include <random>
#include <regex>
#include <sstream>

using namespace memdata::testing;

namespace {

struct Readings {
    int status = 0;
    std::string said;  // alerts of reading
    std::string model; // as dumpMapping shows it
    std::string text;  // annotated
};

// part: the device, null for none.
Readings read(const std::string& text, const char* part = nullptr) {
    Readings result;
    TestMap map;
    map->device = part == nullptr ? nullptr : get_device_record_by_name(part);
    CapturedAlerts alerts;
    std::string copy = text;
    result.status = open_and_parse_bmm_info(reinterpret_cast<unsigned char*>(copy.data()), map.get(), nullptr, nullptr);
    result.said = alerts.text();
    result.model = dumpMapping(map.get());
    fileIODescriptor* file = nullptr;
    EXPECT_EQ(OpenMemoryFile("map", kTEXT_WRITE, nullptr, 0, &file), 0);
    EXPECT_EQ(output_BMM_addressMapping(file, map.get()), 0);
    result.text.assign(GetFileStorageBase(file), GetFileLogicalSize(file));
    EXPECT_EQ(Close_File(&file), 0);
    return result;
}

void expectStable(const std::string& text, const char* part = nullptr) {
    const Readings first = read(text, part);
    ASSERT_EQ(first.status, 0) << first.said << text;
    EXPECT_EQ(first.said, "");
    const Readings second = read(first.text, part);
    ASSERT_EQ(second.status, 0) << second.said << first.text;
    EXPECT_EQ(second.said, "");
    EXPECT_EQ(second.model, first.model);
    EXPECT_EQ(second.text, first.text);
}

// The model without what depends on the order of statements: their number, and the chain of lanes with an INIT file,
// where each lane is filled by itself.
std::string withoutOrder(const std::string& model) {
    return std::regex_replace(model, std::regex(" statements \\d+|init .*\n"), "");
}

// Sound maps of every kind of statement that reads back as itself.
class MapMaker {
public:
    explicit MapMaker(unsigned seed, bool isForDevice = false) : random_(seed), isForDevice_(isForDevice) {}

    std::string make() {
        defineMemories_();
        for (u64 i = upTo_(2); i > 0; --i) template_();
        address_ = upTo_(3) * 0x1000;
        for (u64 i = upTo_(3); i > 0; --i) space_("ADDRESS_SPACE", false);
        for (u64 i = 1 + upTo_(2); i > 0; --i) map_();
        return text_.str();
    }
    // With instances of the templates behind it.
    std::string makeWithInstances() {
        make();
        if (templates_.empty()) template_();
        for (u64 i = 1 + upTo_(2); i > 0; --i) instance_();
        return text_.str();
    }

private:
    struct Kind {
        const char* name;
        u64 bits; // of a device, with parity where widths count it
        std::vector<u64> widths;
        bool isUsers;
    };
    struct Block {
        const Kind* kind;
        u64 laneCount, width, eccWidth;
        bool relative, ascending, eccFirst, withOverride;
    };

    u64 upTo_(u64 highest) { return std::uniform_int_distribution<u64>(0, highest)(random_); }
    bool chance_(u64 percent) { return upTo_(99) < percent; }
    template<class T>
    const T& oneOf_(const std::vector<T>& list) {
        return list[upTo_(list.size() - 1)];
    }

    void defineMemories_() {
        if (chance_(50)) return;
        text_ << "DEFINE_MEMORY_TYPE sram [0x100 * 2] 8 16;\n";
        kinds_.push_back({"sram", 0x200 * 8, {8, 16}, true});
    }

    void template_() {
        space_("ADDRESS_TEMPLATE", true);
        templates_.push_back("space" + std::to_string(spaceNumber_));
    }

    void instance_() {
        ++number_;
        text_ << "ADDRESS_INSTANCE " << oneOf_(templates_) << " inst" << number_ << " [" << upTo_(9) * 0x10000
              << "] top/i" << number_ << (chance_(50) ? "/" : "") << ";\n";
    }

    void map_() {
        static const std::vector<std::string> processors = {"PPC405", "KESTREL-LE", "ARM", "RISCV", "CONFIGPROM"};
        text_ << "ADDRESS_MAP map" << ++number_ << " " << oneOf_(processors) << " " << upTo_(9);
        if (chance_(50)) text_ << " top/cpu" << number_;
        text_ << "\n";
        address_ = upTo_(3) * 0x1000;
        for (u64 i = upTo_(3) + 1; i > 0; --i) space_("ADDRESS_SPACE", false);
        text_ << "END_ADDRESS_MAP;\n";
    }

    Block block_(bool relative) {
        Block block{};
        block.kind = &oneOf_(kinds_);
        block.width = oneOf_(block.kind->widths);
        block.laneCount = u64{1} << upTo_(block.width > 32 ? 0 : 2);
        block.eccWidth = chance_(20) ? upTo_(8) : 0;
        block.relative = relative;
        block.ascending = chance_(30);
        block.eccFirst = chance_(50);
        block.withOverride = chance_(10);
        return block;
    }

    // A memory whose size is that of its space. Its widths are shared by all its devices.
    void genericSpace_() {
        const bool words = chance_(30);
        const u64 width = words ? 8 : u64{8} << upTo_(2); // addresses of words are bytes of devices at 8 bits only
        const u64 laneCount = u64{1} << upTo_(1);
        const u64 blockCount = 1 + upTo_(2);
        const u64 size = laneCount * blockCount * (u64{64} << upTo_(4));
        text_ << "ADDRESS_SPACE space" << ++number_ << " MEMORY" << (words ? " WORD_ADDRESSING" : "") << " ["
              << address_ << ":" << address_ + size - 1 << "]\n";
        address_ += size;
        for (u64 block = 0; block < blockCount; ++block) {
            text_ << "BUS_BLOCK\n";
            for (u64 lane = laneCount; lane-- > 0;)
                text_ << "m" << ++number_ << " [" << lane * width + width - 1 << ":" << lane * width << "]"
                      << (chance_(20) ? " OUTPUT = m.mem" : "") << ";\n";
            text_ << "END_BUS_BLOCK;\n";
        }
        text_ << "END_ADDRESS_SPACE;\n";
    }

    void space_(const char* word, bool isTemplate) {
        if (!isTemplate && chance_(15)) return genericSpace_();
        const bool words = chance_(20);
        const bool relative = !isTemplate && chance_(20);
        const u64 rangeCount = chance_(30) ? 2 + upTo_(1) : 1;
        std::vector<Block> ranges;
        std::vector<u64> blockCounts;
        u64 size = 0;
        for (u64 i = 0; i < rangeCount; ++i) {
            const Block block = block_(relative);
            ranges.push_back(block);
            blockCounts.push_back(1 + upTo_(2));
            const u64 device = words ? block.kind->bits / block.width : block.kind->bits / 8;
            size += device * block.laneCount * blockCounts.back();
        }
        spaceNumber_ = ++number_;
        text_ << word << " space" << spaceNumber_ << (!isTemplate && chance_(10) ? "[3]" : "") << " "
              << (rangeCount > 1 ? "COMBINED" : ranges[0].kind->name);
        const bool combined = !isTemplate && chance_(20);
        if (combined && chance_(50)) text_ << " ECC_COMBINED_FOR_SIMULATION";
        if (words) text_ << (chance_(50) ? " INDEX_ADDRESSING" : " WORD_ADDRESSING");
        if (isTemplate)
            text_ << " [" << size << "]\n";
        else
            text_ << " [" << address_ << ":" << address_ + size - 1 << "]" << (chance_(30) ? " top/m" : "") << "\n";
        address_ += size;
        for (u64 i = 0; i < rangeCount; ++i) range_(ranges[i], blockCounts[i], rangeCount > 1);
        text_ << "END_" << word << ";\n";
    }

    void range_(const Block& block, u64 blockCount, bool named) {
        if (named) text_ << "ADDRESS_RANGE " << block.kind->name << "\n";
        for (u64 i = 0; i < blockCount; ++i) {
            text_ << "BUS_BLOCK\n";
            if (block.eccFirst) eccLane_(block);
            for (u64 lane = block.laneCount; lane-- > 0;) lane_(block, lane * block.width, block.width, "");
            if (!block.eccFirst) eccLane_(block);
            text_ << "END_BUS_BLOCK;\n";
        }
        if (named) text_ << "END_ADDRESS_RANGE;\n";
    }

    void eccLane_(const Block& block) {
        if (block.eccWidth != 0) lane_(block, block.laneCount * block.width, block.eccWidth, "ECCHSIAO32-7 ");
    }

    void lane_(const Block& block, u64 low, u64 width, const char* ecc) {
        text_ << (block.relative ? "*/" : "") << "u" << ++number_
              << (chance_(50)      ? "/ram"
                     : chance_(20) ? "[1].b"
                                   : "");
        if (block.withOverride) text_ << " " << kinds_[0].name;
        const u64 high = low + width - 1;
        text_ << " " << ecc << "[" << (block.ascending ? low : high) << ":" << (block.ascending ? high : low) << "]";
        if (chance_(10)) text_ << " [" << number_ << ":" << number_ * 3 << "]";
        if (chance_(10)) text_ << " INIT = i" << number_ << ".mem";
        if (chance_(10)) text_ << " OUTPUT = out/o" << number_ << ".mem";
        if (chance_(10)) text_ << " INPUT = i" << number_ << ".mem";
        if (chance_(40) && !block.kind->isUsers) location_(block.withOverride ? kinds_[0] : *block.kind);
        text_ << ";\n";
    }

    // A place of its own. On a device, two rows of half memories are one row of whole ones.
    void location_(const Kind& kind) {
        text_ << (chance_(50) ? " LOC" : " PLACED") << " = ";
        if (!isForDevice_) {
            text_ << "X" << number_ << "Y" << number_ + 1;
            return;
        }
        const u64 row = placeNumber_ / kDEVICE_COLUMNS;
        const u64 column = placeNumber_++ % kDEVICE_COLUMNS;
        text_ << "X" << column << "Y" << (kind.bits < 32768 ? row * 2 : row);
    }

    static constexpr u64 kDEVICE_COLUMNS = 10;

    std::mt19937 random_;
    std::ostringstream text_;
    bool isForDevice_;
    u64 number_ = 0;
    u64 spaceNumber_ = 0;
    u64 placeNumber_ = 0;
    u64 address_ = 0;
    std::vector<std::string> templates_;
    std::vector<Kind> kinds_ = {
        {"RAMB16", 16384, {1, 2, 4, 8, 16, 32}, false},
        {"RAMB18", 18432, {9, 18, 36}, false},
        {"RAMB36", 36864, {9, 18, 36, 72}, false},
    };
};

} // namespace

TEST(MapRoundTrip, GeneratedMapsReadBackAsThemselves) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE(seed);
        expectStable(MapMaker(seed).make());
        if (HasFailure()) return;
    }
}

TEST(MapRoundTrip, GeneratedMapsOfADeviceReadBackAsThemselves) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE(seed);
        expectStable(MapMaker(seed, true).make(), "tq7b1000");
        if (HasFailure()) return;
    }
}

// Instances come back as plain spaces, whose paths have lost their last "/"; from then on nothing changes.
TEST(MapRoundTrip, GeneratedMapsWithInstancesReadBackAsThemselvesWithoutThem) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE(seed);
        const Readings first = read(MapMaker(seed).makeWithInstances());
        ASSERT_EQ(first.status, 0) << first.said;
        std::string plain = std::regex_replace(first.model, std::regex("/\" of \"\\w+(\\[3\\])?\"\n"), "\"\n");
        EXPECT_NE(plain, first.model);
        const Readings second = read(first.text);
        ASSERT_EQ(second.status, 0) << second.said << first.text;
        EXPECT_EQ(withoutOrder(second.model), withoutOrder(plain));
        expectStable(first.text);
        if (HasFailure()) return;
    }
}

TEST(MapRoundTrip, AGenericMemoryReadsBackAsItself) {
    expectStable("ADDRESS_SPACE ext MEMORY [0x1000:0x17FF]\n"
                 "BUS_BLOCK a [15:8]; b [7:0]; END_BUS_BLOCK;\n"
                 "BUS_BLOCK c [15:8]; d [7:0] [3:9]; END_BUS_BLOCK;\n"
                 "END_ADDRESS_SPACE;\n");
}

TEST(MapRoundTrip, TemplatesOfOneSizeKeepTheirOrder) {
    expectStable("ADDRESS_TEMPLATE first RAMB16 [0x800] BUS_BLOCK a [7:0]; END_BUS_BLOCK; END_ADDRESS_TEMPLATE;\n"
                 "ADDRESS_TEMPLATE second RAMB16 [0x800] BUS_BLOCK b [7:0]; END_BUS_BLOCK; END_ADDRESS_TEMPLATE;\n");
}

TEST(MapRoundTrip, FileNamesOfSeveralWordsReadBack) {
    expectStable("ADDRESS_SPACE s RAMB16 [0:0x7FF] BUS_BLOCK\n"
                 "a [7:0] INIT = \"my data/a b.mem\" OUTPUT = \"x;y.mem\";\n"
                 "END_BUS_BLOCK; END_ADDRESS_SPACE;\n");
}

TEST(MapRoundTrip, CombinedWithOneRangeReadsBackAsASingleMemory) {
    const Readings first = read("ADDRESS_SPACE s COMBINED [0:0x7FF]\n"
                                "ADDRESS_RANGE RAMB16 BUS_BLOCK a [7:0]; END_BUS_BLOCK; END_ADDRESS_RANGE;\n"
                                "END_ADDRESS_SPACE;\n");
    ASSERT_EQ(first.status, 0) << first.said;
    EXPECT_NE(first.model.find("0x0-0x7FF combined\n"), first.model.npos);
    const Readings second = read(first.text);
    ASSERT_EQ(second.status, 0) << second.said;
    EXPECT_EQ(second.model.find("combined"), second.model.npos);
    EXPECT_EQ(second.text, first.text);
}

TEST(MapRoundTrip, AnInstanceReadsBackAsAPlainSpace) {
    const Readings first = read("ADDRESS_TEMPLATE t RAMB16 [0x800] BUS_BLOCK a [7:0]; END_BUS_BLOCK;\n"
                                "END_ADDRESS_TEMPLATE;\n"
                                "ADDRESS_INSTANCE t i [0x1000] top/u1;\n");
    ASSERT_EQ(first.status, 0) << first.said;
    const Readings second = read(first.text);
    ASSERT_EQ(second.status, 0) << second.said;
    EXPECT_NE(first.text.find("0X00000000000017FF] top/u1/\n"), first.text.npos);
    EXPECT_NE(second.text.find("0X00000000000017FF] top/u1\n"), second.text.npos);
    EXPECT_EQ(read(second.text).text, second.text);
    EXPECT_NE(second.model.find("top/u1/a[7:0][0:2047]"), second.model.npos);
}

TEST(MapRoundTrip, TheLanesOfALittleEndianMapKeepTheirWrittenOrder) {
    const char* text = "ADDRESS_MAP cpu ARM 0 ADDRESS_SPACE s RAMB16 [0:0x1FFF] BUS_BLOCK\n"
                       "b3 [31:24]; b2 [23:16]; b1 [15:8]; b0 [7:0];\n"
                       "END_BUS_BLOCK; END_ADDRESS_SPACE; END_ADDRESS_MAP;\n";
    expectStable(text);
    const std::string written = read(text).text;
    EXPECT_LT(written.find("b3 "), written.find("b0 "));
}
