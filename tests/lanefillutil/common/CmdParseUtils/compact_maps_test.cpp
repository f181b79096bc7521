// compact_maps_test.cpp - compact maps from the option text to the model, and to annotated maps.
// SPDX-License-Identifier: Apache-2.0
#include "option_test.h"

#include "BmmUtils/bmm_info.h"
#include "BmmUtils/compact_records.h"
#include "BmmUtils/parser.h"
#include "lanefillCore/driver.h"
#include "platform/HEXAll.h"
#include "support/map_builder.h"
#include "support/map_dump.h"

#include <random>

namespace memdata::testing {
namespace {

const std::string kRAM = "c ram u0 RAMB16 [7:0] [0:2047] c ram u1 RAMB16 [15:8] [0:2047] ";

class CompactMaps : public Options {
protected:
    // The model of an option text, which must be read without a word.
    std::string model(const std::string& text) {
        EXPECT_EQ(parse(text), 0) << text;
        EXPECT_EQ(FinalizeCmdStringOptions(&options), 0) << text;
        AddressMappingType* mapping = nullptr;
        EXPECT_EQ(open_bmm_addressMapping(&options, &mapping), 0) << text;
        EXPECT_EQ(alerts.take() + messages.text(), "") << text;
        std::string dump = mapping == nullptr ? "" : dumpMapping(mapping);
        close_bmm_addressMapping(&mapping);
        DeleteCmdStringOptions(&options);
        return dump;
    }
};

TEST_F(CompactMaps, WordsOfMfEndAtTheNextSwitch) {
    EXPECT_EQ(record("-mf m sram 16 8 -i -bf n out.bmm -u"),
        "map: s BMMInfo.bmm {DEFINE_MEMORY_TYPE sram [0x10] 8;\n\n}\n"
        "map: n out.bmm\n"
        "ignoreUnmapped\n"
        "updateAll\n");
}

TEST_F(CompactMaps, ANameAloneMakesNoMapText) {
    EXPECT_EQ(record("-mf n out.bmm"), "map: n out.bmm\n");
}

TEST_F(CompactMaps, TwoSwitchesShareComponentsAndReferences) {
    const std::string shared = record("-mf " + kRAM + "e ref f RAMB16 4096 8 ram -mf a mem top 0 16 e ref");
    delete_scratchBMMInfo();
    EXPECT_EQ(shared, record("-mf " + kRAM + "a mem top 0 16 f RAMB16 4096 8 ram"));
}

TEST_F(CompactMaps, AFailureIsThatOfTheSwitch) {
    EXPECT_EQ(failure("-mf a mem"), "3: ERROR:Lanefill:11 - Unexpected symbol 'end-of-file', 'COMPONENT_INFO 'c' "
                                    "instance name or '*' wild' expected.\n-mf a mem\n         ^");
    EXPECT_EQ(failure("-mf c * 0 RAMB16 [7:0] [0:2047]"),
        "3: ERROR:Lanefill:111 - Missing symbol. '*' found, 'address space name' expected.\n"
        "-mf c * 0 RAMB16 [7:0] [0:2047]\n"
        "      ^");
}

TEST_F(CompactMaps, ACompactMapReachesTheModelOfItsText) {
    EXPECT_EQ(model("-mf " + kRAM + "a mem top/cpu byte 0x1000 16 f RAMB16 4096 8 ram"),
        "mapping BMMInfo.bmm spaces 1 statements 1\n"
        "map \"\" PPC405 0\n"
        "  space mem 0x1000-0x1FFF path \"top/cpu\"\n"
        "    range RAMB16 0x1000-0x1FFF bus 16 lane 8 words 2048 devices 2\n"
        "      block 0x1000-0x1FFF\n"
        "        u1[15:8][0:2047]\n"
        "        u0[7:0][0:2047]\n");
}

TEST_F(CompactMaps, TheNameOfTheMappingIsThatOfN) {
    EXPECT_NE(model("-mf m sram 16 8 a mem top 0 8 f sram 16 8 u n named").find("mapping named.bmm spaces 1 "),
        std::string::npos);
}

TEST_F(CompactMaps, ProcessorsTemplatesAndJoinsReachTheModel) {
    const std::string dump = model("-mf " + kRAM +
                                   "t tmpl byte 2048 8 f RAMB16 2048 8 */one i tmpl inst 0x8000 top/one "
                                   "p cpu ARM 3 top/cpu a mem h mem top a mem * word 0 16 "
                                   "f RAMB16 1024 16 dev j both 0x10000 16 f RAMB16 4096 8 ram");
    EXPECT_NE(dump.find("map \"cpu\" ARM 3"), std::string::npos) << dump;
    EXPECT_NE(dump.find("space cpu.mem 0x0-0x3FF"), std::string::npos) << dump;
    EXPECT_NE(dump.find("space tmpl 0x8000-0x87FF"), std::string::npos) << dump;
    EXPECT_NE(dump.find("space both 0x10000-0x10FFF"), std::string::npos) << dump;
}

// Spaces of random shapes: the model has the sizes that were asked for.
TEST_F(CompactMaps, GeneratedDefinitionsReachTheModelInTheSizesAskedFor) {
    std::mt19937 random(4);
    const auto upTo = [&random](u64 highest) { return std::uniform_int_distribution<u64>(0, highest)(random); };
    for (int round = 0; round < 150; ++round) {
        std::string text = "-mf m sram 256 8 16 32 ";
        std::vector<std::string> expected;
        u64 base = 0;
        for (u64 space = 0; space <= upTo(2); ++space) {
            const std::string name = "s" + std::to_string(space);
            const bool isUsers = upTo(1) == 0;
            const u64 width = u64{8} << upTo(2);
            const u64 lanes = u64{1} << upTo(2);
            const u64 blocks = 1 + upTo(3);
            const bool isWord = upTo(2) == 0;
            const u64 deviceBytes = isUsers ? 256 : 2048;
            const u64 words = deviceBytes * 8 / width;
            const u64 bytes = deviceBytes * lanes * blocks;
            const char* memory = isUsers ? "sram" : "RAMB16";
            std::vector<std::string> components;
            for (u64 block = 0; block < blocks; ++block)
                for (u64 lane = 0; lane < lanes; ++lane)
                    components.push_back(formatted("c g_%s %s_%ld_%ld %s [%ld:%ld] [%ld:%ld] ", name, name, block, lane,
                        memory, lane * width + width - 1, lane * width, block * words, block * words + words - 1));
            // In any order, but for the blocks.
            std::ranges::shuffle(components, random);
            for (const std::string& component : components) text += component;
            const u64 busWidth = width * lanes;
            const u64 size = isWord ? bytes * 8 / width : bytes;
            text += formatted("a %s top/%s %s %ld %ld f %s %ld %ld g_%s ", name, name, isWord ? "word" : "byte", base,
                busWidth, memory, size, width, name);
            expected.push_back(formatted("space %s 0x%X-0x%X", name, base, base + size - 1));
            expected.push_back(formatted("range %s 0x%X-0x%X bus %ld lane %ld words %ld devices %ld", memory, base,
                base + size - 1, busWidth, width, words, lanes * blocks));
            base += 0x100000;
        }
        const std::string dump = model(text);
        for (const std::string& line : expected)
            ASSERT_NE(dump.find(line), std::string::npos) << line << "\n" << dump << text;
    }
}

TEST_F(CompactMaps, ARunWritesACompactMapAnnotated) {
    const TemporaryFolder folder;
    ASSERT_EQ(parse("-mf n out.bmm " + kRAM + "p cpu PPC405 0 a mem top 0 16 f RAMB16 4096 8 ram -o p " +
                    folder.file("out.bmm")),
        0);
    ASSERT_EQ(FinalizeCmdStringOptions(&options), 0);
    ASSERT_EQ(execute_command_line_options(&options), 0) << alerts.text();
    const std::string written = readFile(folder.file("out.bmm"));
    EXPECT_NE(written.find("ADDRESS_MAP cpu PPC405 0\n"), std::string::npos) << written;
    EXPECT_NE(written.find("u1 RAMB16 [15:8]"), std::string::npos) << written;
    EXPECT_NE(written.find("[0X0000000000000000:0X0000000000000FFF] top"), std::string::npos) << written;
    // What was written says the same.
    DeleteCmdStringOptions(&options);
    const std::string direct = model("-mf n out.bmm " + kRAM + "p cpu PPC405 0 a mem top 0 16 f RAMB16 4096 8 ram");
    const std::string again = model("-bm " + folder.file("out.bmm"));
    EXPECT_EQ(again.substr(again.find('\n')), direct.substr(direct.find('\n')));
}

class AutoSpace : public ::testing::Test {
protected:
    static BDSwitchDataType* node(const char* file) { return create_BD_switch_data(CreateFileSpec(file)); }
    int insert(const char* file, u64 start, u64 end) {
        delete_BD_switch_data_list(&list);
        list = node(file);
        return insert_auto_BMM_address_space(map.get(), start, end, list);
    }
    ~AutoSpace() override { delete_BD_switch_data_list(&list); }

    TestMap map;
    CapturedAlerts alerts;
    BDSwitchDataType* list = nullptr;
};

TEST_F(AutoSpace, ADataFileGetsASpaceOfItsOwn) {
    ASSERT_EQ(insert("dir/my code.v2.elf", 0x1000, 0x2FFF), 0) << alerts.text();
    EXPECT_EQ(dumpMapping(map.get()),
        "mapping test.bmm spaces 1 statements 3\n"
        "map \"my_code_v2_elf_0\" CONFIGPROM 0\n"
        "  space my_code_v2_elf_0.my_code_v2_elf_0 0x1000-0x2FFF path \"my_code_v2_elf_0_device\"\n"
        "    range memory_my_code_v2_elf_0 0x1000-0x2FFF bus 8 lane 8 words 8192 devices 1\n"
        "      block 0x1000-0x2FFF\n"
        "        my_code_v2_elf_0_device[7:0][0:8191]\n");
    EXPECT_EQ(map.get()->autoSpaceCount, 1U);
    EXPECT_EQ(list->tagCount, 1);
    EXPECT_STREQ(StrListGet(list->tagNames, 0), "my_code_v2_elf_0");
    EXPECT_EQ(scratchBMMInfo, nullptr);
}

TEST_F(AutoSpace, FurtherSpacesGetNamesAndNumbersOfTheirOwn) {
    ASSERT_EQ(insert("a.mem", 0, 15), 0) << alerts.text();
    ASSERT_EQ(insert("a.mem", 0, 15), 0) << alerts.text();
    EXPECT_EQ(listSpaces(map.get()), "a_mem_0: a_mem_0.a_mem_0\na_mem_1: a_mem_1.a_mem_1\n");
    EXPECT_EQ(map.get()->addressMaps->next->processorId, 1U);
}

TEST_F(AutoSpace, TheTagsOfASwitchGrow) {
    list = node("a.mem");
    list->tagCount = 1;
    ASSERT_EQ(StrListExtend(&list->tagNames, StrDup("x")), 0);
    ASSERT_EQ(insert_auto_BMM_address_space(map.get(), 0, 15, list), 0) << alerts.text();
    EXPECT_EQ(list->tagCount, 2);
    EXPECT_STREQ(StrListGet(list->tagNames, 1), "a_mem_0");
}

TEST_F(AutoSpace, AnEndAboveThirtyTwoBitsIsTheLastAddressOfThem) {
    ASSERT_EQ(insert("a.mem", 0xFFFFFFF0, 0x1FFFFFFFF), 0) << alerts.text();
    EXPECT_EQ(map.link("a_mem_0.a_mem_0")->space->endAddress, 0xFFFFFFFFU);
}

TEST_F(AutoSpace, AddressesBeyondThirtyTwoBitsAreRefused) {
    EXPECT_EQ(insert("a.mem", 0x100000000, 0x1000000FF), 3);
    EXPECT_EQ(alerts.take(),
        "\nERROR:Lanefill:86 - No address space can be made for 'a.mem': its addresses are not of 32 "
        "bits.\n\n");
    EXPECT_EQ(insert("a.mem", 16, 15), 3);
    EXPECT_EQ(map.get()->addressMapCount, 0U);
}

TEST_F(AutoSpace, WithoutADataFileNothingIsMade) {
    EXPECT_EQ(insert_auto_BMM_address_space(map.get(), 0, 15, nullptr), 3);
    EXPECT_EQ(alerts.take(), "\nERROR:Lanefill:86 - There is no data file to make an address space for.\n\n");
}

using OwnedSwitch = Tracked<BDSwitchDataType, delete_BD_switch_data_list>;

int insertIntoNewMapping() {
    try {
        const OwnedMapping mapping(create_addressMapping_element("t.bmm", nullptr, true, nullptr, nullptr));
        OwnedFileSpec file(CreateFileSpec("a.mem"));
        if (mapping == nullptr || file == nullptr) return 7;
        const OwnedSwitch data(create_BD_switch_data(file.get()));
        if (data == nullptr) return 7;
        file.release();
        return insert_auto_BMM_address_space(mapping.get(), 0, 15, data.get());
    } catch (const HEXAll&) {
        return 7; // lists throw where records give null
    }
}

// One in each lifetime: words of maps stay until its end.
TEST(AutoSpaceMemory, EveryAllocationMayFail) {
    u64 count = 1;
    for (u64 n = 0; n <= count; ++n) {
        {
            const SystemResources resources;
            const CapturedAlerts alerts(0);
            const u64 before = trackedAllocationCount();
            failTrackedAllocation(n);
            EXPECT_EQ(insertIntoNewMapping() == 0, n == 0) << n;
            failTrackedAllocation(0);
            if (n == 0) count = trackedAllocationCount() - before;
        }
        EXPECT_EQ(leakedBlockCount(), 0U) << n;
    }
    EXPECT_GT(count, 50U);
}

} // namespace
} // namespace memdata::testing
