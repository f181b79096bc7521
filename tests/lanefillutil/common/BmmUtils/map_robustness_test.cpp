// map_robustness_test.cpp - maps that are cut, spoilt, huge or out of memory, and random ones that must read the same.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/annotated_map.h"
#include "map_text.h"
#include "support/allocation_faults.h"
#include "support/temporary_folder.h"

#include <random>

using namespace memdata;
using namespace memdata::testing;

namespace {

// Something of everything, small.
const std::string kSMALL_MAP =
    "#define W 7\n"
    "DEFINE_MEMORY_TYPE MINE [2048] 8 16;\n"
    "ADDRESS_TEMPLATE t RAMB16 [2048]\nBUS_BLOCK\nu0 [W:0];\nEND_BUS_BLOCK;\nEND_ADDRESS_TEMPLATE;\n"
    "ADDRESS_INSTANCE t i [0x9000] top/i;\n"
    "ADDRESS_MAP cpu ARM 1 top/cpu\n"
    "ADDRESS_SPACE ram COMBINED [0x1000:0x27FF] top/ram\n"
    "ADDRESS_RANGE RAMB16\nBUS_BLOCK\n*/g[0].b[15:8] LOC = X0Y1 INIT = a.mem;\n*/g[1].b [7:0];\n"
    "*/e ECCH32-7 [22:16];\nEND_BUS_BLOCK;\nEND_ADDRESS_RANGE;\n"
    "ADDRESS_RANGE MINE\nBUS_BLOCK\n*/c [7:0] [0:2047] OUTPUT = \"b c.mem\";\nEND_BUS_BLOCK;\n"
    "END_ADDRESS_RANGE;\nEND_ADDRESS_SPACE;\nEND_ADDRESS_MAP;\n";

int readInto(AddressMappingType* mapping, const std::string& text) {
    parse_stream* stream = nullptr;
    int status =
        open_parse_MemoryFile("map.bmm", text.data(), text.size(), &bmm_keyword_set, nullptr, nullptr, &stream);
    if (stream == nullptr) return status;
    if (status == 0) status = parse_bmm_file(stream, nullptr, mapping);
    const int closed = close_parse_stream(&stream);
    return status == 0 ? closed : status;
}

TEST(CutMaps, EndWithAStatusAtEveryByte) {
    MapText whole;
    ASSERT_EQ(whole.read(kSMALL_MAP), 0) << whole.alerts();
    for (size_t n = 0; n < kSMALL_MAP.size() - 1; ++n) {
        MapText map;
        const int status = map.read(kSMALL_MAP.substr(0, n));
        // A cut between statements leaves a good map; any other one is reported.
        const std::string kept = kSMALL_MAP.substr(0, n);
        const bool isBetween = kept.find("DEFINE") == std::string::npos || kept[kept.find_last_not_of('\n')] == ';';
        if (status == 0)
            EXPECT_TRUE(isBetween) << kept;
        else
            EXPECT_TRUE(status == 17 || !map.alerts().empty() || !map.messages().empty()) << kept;
    }
}

TEST(SpoiltMaps, EndWithAStatusWhateverAByteIs) {
    std::mt19937 random(7);
    for (int i = 0; i < 500; ++i) {
        std::string text = kSMALL_MAP;
        text[random() % text.size()] = static_cast<char>(random());
        MapText map;
        const int status = map.read(text);
        EXPECT_TRUE(status == 0 || status == 3 || status == 17 || status == 21) << status << "\n" << text;
    }
}

TEST(MapsWithoutMemory, EndWithAStatusAndGiveAllBack) {
    const SystemResources resources;
    const CapturedAlerts alerts(0);
    // Without the type that it defines: the types of defined words stay until shut-down.
    std::string text = kSMALL_MAP;
    text.erase(text.find("DEFINE"), text.find("ADDRESS_TEMPLATE") - text.find("DEFINE"));
    text.replace(text.find("RANGE MINE") + 6, 4, "RAMB16");
    const auto run = [&text] {
        OwnedMapping mapping(create_addressMapping_element("map.bmm", nullptr, false, nullptr, nullptr));
        return mapping == nullptr ? 7 : readInto(mapping.get(), text);
    };
    // What is made once stays from here on: the pool of tokens, and what the first alert of a lifetime registers.
    failTrackedAllocation(1);
    EXPECT_EQ(run(), 7);
    failTrackedAllocation(0);
    for (int round = 0; round < 20; ++round) ASSERT_EQ(run(), 0);
    const FaultSweep sweep = sweepAllocationFaults(run);
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GT(sweep.faultCount, 100u);
}

TEST(LargeMaps, HaveBlocksAndLanesInAnyNumber) {
    constexpr u32 kBLOCKS = 20'000; // far more than a call stack would take
    std::string text = "ADDRESS_SPACE ram RAMB16 [0:" + std::to_string(u64{kBLOCKS} * 2048 - 1) + "]\n";
    for (u32 i = 0; i < kBLOCKS; ++i) text += "BUS_BLOCK u" + std::to_string(i) + " [7:0]; END_BUS_BLOCK;\n";
    MapText map;
    ASSERT_EQ(map.read(text + "END_ADDRESS_SPACE;\n"), 0) << map.alerts().substr(0, 500);
    EXPECT_EQ(map.space()->ranges->busBlockCount, kBLOCKS);
    EXPECT_EQ(map.space()->ranges->busBlocks[kBLOCKS - 1]->lanes[0]->addressLow, u64{kBLOCKS - 1} * 2048);
}

TEST(LargeMaps, RefuseTooManyLanesOfOneBlockAtItsChecks) {
    std::string text = "ADDRESS_SPACE ram RAMB16 [0:0x7FF]\nBUS_BLOCK\n";
    for (u32 i = 0; i < 20'000; ++i) text += "u" + std::to_string(i) + " [" + std::to_string(i) + "];\n";
    MapText map;
    EXPECT_EQ(map.read(text + "END_BUS_BLOCK;\nEND_ADDRESS_SPACE;\n"), 3);
    EXPECT_EQ(map->addressSpaceCount, 0u);
}

TEST(LargeMaps, RefuseDirectivesThatNestTooDeep) {
    std::string text;
    for (u32 i = 0; i < 2000; ++i) text += "#if 1\n";
    MapText map;
    EXPECT_EQ(map.read(text + byteSpace("ram", "u0")), 21);
    EXPECT_NE(map.alerts().find("the limit of 1000 nested directives is reached"), std::string::npos);
}

TEST(LargeMaps, RefuseExpressionsThatNestTooDeep) {
    MapText map;
    EXPECT_EQ(map.read("ADDRESS_SPACE ram RAMB16 [" + std::string(5000, '(') + "0:1]"), 3);
    EXPECT_NE(map.alerts().find("The limit of 1000 nested expression parentheses is reached."), std::string::npos);
}

// The annotated text of a mapping.
std::string written(MapText* map, const TemporaryFolder& folder) {
    OwnedFileSpec spec(CreateFileSpec(folder.file("out.bmm").c_str()));
    SetDefaultFileAttributes(kOVERWRITING_ALLOWED, true);
    SetDefaultFileAttributes(kOVERWRITING_REFUSED, false);
    EXPECT_EQ(output_BMM_file(spec.get(), map->get(), ""), 0);
    const std::string text = readFile(folder.file("out.bmm"));
    return text.substr(text.find("/////")); // the head tells the time
}

// A random map that passes the checks: bytes on RAMB16, one block or several, with what may stand on a lane.
std::string randomMap(std::mt19937* random) {
    const auto pick = [random](u32 count) { return static_cast<u32>((*random)() % count); };
    std::string text;
    u32 lane = 0;
    u64 address = 0;
    const u32 spaces = 1 + pick(4);
    for (u32 s = 0; s < spaces; ++s) {
        const u32 lanes = 1 + pick(4);
        const u32 blocks = 1 + pick(3);
        const bool isAscending = pick(2) == 0;
        const u64 bytes = u64{2048} * lanes * blocks;
        const bool isMap = pick(3) == 0;
        const bool isRelative = pick(4) == 0;
        if (isMap)
            text += "ADDRESS_MAP cpu" + std::to_string(s) + " ARM " + std::to_string(pick(9)) +
                    (pick(2) == 0 ? "" : " top/cpu") + "\n";
        text += "ADDRESS_SPACE s" + std::to_string(s) + " RAMB16 [" + std::to_string(address) + ":" +
                std::to_string(address + bytes - 1) + "]\n";
        for (u32 b = 0; b < blocks; ++b) {
            text += "BUS_BLOCK\n";
            for (u32 i = 0; i < lanes; ++i) {
                const u32 low = (lanes - 1 - i) * 8;
                const std::string bits = isAscending ? std::to_string(low) + ":" + std::to_string(low + 7)
                                                     : std::to_string(low + 7) + ":" + std::to_string(low);
                text += std::string(isRelative ? "*/" : "") + "top.u" + std::to_string(lane++) + "/r[" +
                        std::to_string(i) + "] [" + bits + "]";
                if (pick(3) == 0) text += " LOC = X" + std::to_string(pick(50)) + "Y" + std::to_string(lane);
                if (pick(4) == 0) text += " INIT = dir/f" + std::to_string(lane) + ".mem";
                text += ";\n";
            }
            text += "END_BUS_BLOCK;\n";
        }
        text += "END_ADDRESS_SPACE;\n";
        if (isMap) text += "END_ADDRESS_MAP;\n";
        address += bytes;
    }
    return text;
}

// What a mapping says, without the order in which lanes with an INIT file were read.
std::string spacesOf(const MapText& map) {
    const std::string dump = map.dump();
    return dump.substr(0, dump.find("\ninit "));
}

// The same text in another layout: blanks and comments between its tokens do not count.
std::string otherLayout(const std::string& text) {
    std::string other = "// laid out anew\n\n";
    for (char c : text) {
        if (c == '\n')
            other += " /* end of a line */\r\n\n\t";
        else if (c == ';')
            other += " ;";
        else
            other += c;
    }
    return other;
}

TEST(RandomMaps, ReadTheSameTwiceAndInAnotherLayout) {
    std::mt19937 random(2026);
    for (int i = 0; i < 100; ++i) {
        const std::string text = randomMap(&random);
        MapText first;
        MapText second;
        MapText third;
        ASSERT_EQ(first.read(text), 0) << text << first.alerts();
        ASSERT_EQ(second.read(text), 0);
        ASSERT_EQ(third.read(otherLayout(text)), 0) << text << third.alerts();
        EXPECT_EQ(first.dump(), second.dump());
        EXPECT_EQ(first.dump(), third.dump());
    }
}

TEST(RandomMaps, ReadBackFromTheirAnnotatedText) {
    std::mt19937 random(4711);
    const TemporaryFolder folder;
    for (int i = 0; i < 60; ++i) {
        MapText first;
        ASSERT_EQ(first.read(randomMap(&random)), 0) << first.alerts();
        const std::string text = written(&first, folder);
        MapText second;
        ASSERT_EQ(second.read(text), 0) << text << second.alerts();
        EXPECT_EQ(spacesOf(first), spacesOf(second)) << text;
        EXPECT_EQ(written(&second, folder), text);
    }
}

} // namespace
