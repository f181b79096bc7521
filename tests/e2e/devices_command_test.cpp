// devices_command_test.cpp - lanefill devices, as a user runs it.
// SPDX-License-Identifier: Apache-2.0
#include "BRAMDecodeUtils/decode_tables.h"
#include "DeviceTableUtils/DeviceTableUtils.h"
#include "ParseUtils/token_types.h"
#include "SystemUtils/lifetime.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <gmock/gmock.h>
#include <rapidjson/document.h>
#include <string>
#include <sys/wait.h>

namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

struct Result {
    int status;
    std::string text; // standard output and standard error
};

Result run(const std::string& words) {
    const std::string command = std::string("\"") + MEMDATA_BUILD_DIR + "/lanefill\" 2>&1 " + words;
    Result result{-1, {}};
    std::FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return result;
    std::array<char, 65536> buffer;
    for (size_t count = 0; (count = fread(buffer.data(), 1, buffer.size(), pipe)) > 0;)
        result.text.append(buffer.data(), count);
    result.status = WEXITSTATUS(pclose(pipe));
    return result;
}

TEST(DevicesCommand, AloneItListsTheListedDevices) {
    const Result result = run("devices");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.text, StartsWith("device    family         block RAM "));
    EXPECT_THAT(result.text, HasSubstr("\ntq7b100   Tarsel-7       1680 RAMB16 or RAMB18, 840 RAMB32 or RAMB36 "));
    EXPECT_THAT(result.text, Not(HasSubstr("\ntq9a ")));
}

TEST(DevicesCommand, AllShowsUnlistedOnesToo) {
    const Result result = run("devices --all");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(std::ranges::count(result.text, '\n'), 186 + 3); // with the heading and the legend
    EXPECT_THAT(result.text, HasSubstr("\ntq9a "));
}

TEST(DevicesCommand, ANameShowsTheRecordAndDrawsItsColumns) {
    const Result result = run("devices q2p36-5");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.text, "tq2p36, family Tarsel-II PRO\n"
                           "\n"
                           "  names             tq2p36 q2p36\n"
                           "  block RAM         30 RAMB16 or RAMB18\n"
                           "  locations         9 rows, 4 columns of RAMB16\n"
                           "  configuration     4 columns of 9 RAMB16, 98304 bytes in all\n"
                           "  frame             3072 bits, padding at the head 96 bits\n"
                           "  block RAM offset  431 frames\n"
                           "  stream            0.26 MB\n"
                           "\n"
                           "  Y8                ####\n"
                           "  Y7                ####\n"
                           "  Y6                ####\n"
                           "  Y5                #..#\n"
                           "  Y4                #..#\n"
                           "  Y3                #..#\n"
                           "  Y2                ####\n"
                           "  Y1                ####\n"
                           "  Y0                ####\n"
                           "\n"
                           "  A character for each column, X0 to X3: # all RAMB16 are there, + some, . none.\n");
}

TEST(DevicesCommand, TheTableEndsInALegend) {
    EXPECT_THAT(run("devices").text,
        EndsWith("\n\nframe bits: behind a slash those of block RAM. stream: all frames, - not known.\n"
                 "lanefill devices NAME shows one device, lanefill devices --all unlisted ones too.\n"));
}

TEST(DevicesCommand, AnOffsetOf0IsTakenApart) {
    const std::string early = run("devices tq1a8").text;
    EXPECT_THAT(early, HasSubstr("  block RAM offset  none: each column is a burst of its own\n"));
    EXPECT_THAT(early, HasSubstr("  stream            length not known\n"));
    EXPECT_THAT(run("devices tq6c67").text,
        HasSubstr("  block RAM offset  not known: block RAM in bit files can not be replaced\n"));
}

TEST(DevicesCommand, FramesOfBlockRamAreNamedWhereTheyDiffer) {
    EXPECT_THAT(run("devices td6a24").text,
        HasSubstr("  frame             1040 bits, 288 in block RAM, padding at the head 144 bits\n"));
}

TEST(DevicesCommand, AGenericRecordTellsThatItsFiguresAreBorrowed) {
    EXPECT_THAT(run("devices tq7z99").text,
        HasSubstr(
            "  stands for        parts without a record of their own; all figures are those of tq7b100 and may not "
            "fit\n"));
    EXPECT_THAT(run("devices tq7b100").text, Not(HasSubstr("stands for")));
}

TEST(DevicesCommand, ADrawingOfAModernDeviceHasALinePerGroup) {
    EXPECT_THAT(run("devices tq7a24").text, EndsWith("  Y30 to 39         #####\n"
                                                     "  Y20 to 29         ##+##\n"
                                                     "  Y10 to 19         ##+##\n"
                                                     "  Y0 to 9           #####\n"
                                                     "\n"
                                                     "  A character for each column, X0 to X4: # all RAMB32 are there, "
                                                     "+ some, . none.\n"));
}

TEST(DevicesCommand, ADrawingShowsTheHolesOfADeviceWithAPhysicalArrayAlone) {
    EXPECT_THAT(run("devices td2e36").text, HasSubstr("  Y6                ####\n"
                                                      "  Y5                #.##\n"
                                                      "  Y4                #.##\n"
                                                      "  Y3                ####\n"));
}

TEST(DevicesCommand, EveryDeviceCanBeDrawn) {
    // The largest, the smallest, one column, pairs, a stack: no drawing is longer than a page.
    for (const char* name : {"tq7b1000", "td2a4", "td3c4", "td6a528", "tq7d286", "tq1e312", "tq9a"}) {
        const Result result = run(std::string("devices ") + name);
        EXPECT_EQ(result.status, 0) << name;
        EXPECT_LT(std::ranges::count(result.text, '\n'), 60) << name;
    }
}

TEST(DevicesCommand, AnUnknownDeviceIsRefused) {
    const Result result = run("devices zz9");
    EXPECT_EQ(result.status, 14);
    EXPECT_EQ(result.text, "lanefill: no device is called 'zz9'; lanefill devices --all lists them\n");
}

TEST(DevicesCommand, AnEmptyNameIsNoDevice) {
    const Result result = run("devices ''");
    EXPECT_EQ(result.status, 14);
    EXPECT_EQ(result.text, "lanefill: no device is called ''; lanefill devices --all lists them\n");
}

TEST(DevicesCommand, UnknownWordsAreRefused) {
    for (const char* words : {"devices --xml", "devices tq7a5 tq7a7", "devices --json --all"}) {
        const Result result = run(words);
        EXPECT_EQ(result.status, 1) << words;
        EXPECT_THAT(result.text, StartsWith("lanefill: devices: unknown word '")) << words;
    }
}

TEST(DevicesCommand, OutputThatCanNotBeWrittenIsAnError) {
    for (const char* words : {"devices", "devices --json"}) {
        const Result result = run(std::string(words) + " > /dev/full");
        EXPECT_EQ(result.status, 1) << words;
        EXPECT_EQ(result.text, "lanefill: devices: standard output can not be written\n");
    }
}

// JSON.

class DevicesJson : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        const auto start = std::chrono::steady_clock::now();
        const Result result = run("devices --json");
        seconds_ = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        status_ = result.status;
        json_.Parse(result.text.c_str(), result.text.size());
    }
    static const rapidjson::Value& device(const char* name) {
        for (const rapidjson::Value& at : json_["devices"].GetArray())
            if (at["names"][0].GetString() == std::string(name)) return at;
        throw std::runtime_error(name);
    }
    static std::string text(const rapidjson::Value& list) {
        std::string result;
        for (const rapidjson::Value& at : list.GetArray()) {
            if (at.IsString())
                result += at.GetString();
            else
                result += at.IsNull() ? "null" : std::to_string(at.GetInt64());
            result += " ";
        }
        return result;
    }

    static inline rapidjson::Document json_;
    static inline int status_;
    static inline double seconds_;
};

TEST_F(DevicesJson, ReadsAsJsonWithAllDevices) {
    EXPECT_EQ(status_, 0);
    ASSERT_FALSE(json_.HasParseError());
    EXPECT_EQ(json_["devices"].Size(), 185u);
    EXPECT_EQ(json_["decodeTables"].MemberCount(), 9u);
}

TEST_F(DevicesJson, IsWrittenInLessThanThreeSeconds) {
    EXPECT_LT(seconds_, 3.0);
}

TEST_F(DevicesJson, ADeviceHasItsKeysInOrder) {
    std::string keys;
    for (const auto& member : device("tq7a5").GetObject()) keys += std::string(member.name.GetString()) + " ";
    EXPECT_EQ(keys,
        "names isListed family logicalRows physicalRows logicalColumns physicalColumns columnMap framePadBits "
        "clbFrameBits bramFrameBits bramFrameOffset dieCount existenceMap memoryLocs ");
    keys.clear();
    for (const auto& member : device("tq7a5")["memoryLocs"][3]["type"].GetObject())
        keys += std::string(member.name.GetString()) + " ";
    EXPECT_EQ(keys, "name cellName token sizeUnits dataBits parityBits isBlockRam hasParityWidths hasInterleavedParity "
                    "frameCount frameSliceBits addressRows dataRowBits parityRows parityRowBits widthsText widths "
                    "parityWidths subRowFactor ");
}

TEST_F(DevicesJson, TheSmallestTarsel7DeviceReadsAsItIs) {
    const rapidjson::Value& at = device("tq7a5");
    EXPECT_EQ(at["family"].GetString(), std::string("Tarsel-7"));
    EXPECT_TRUE(at["isListed"].GetBool());
    EXPECT_EQ(at["bramFrameOffset"].GetUint(), 4096u);
    EXPECT_EQ(at["columnMap"][0].GetInt(), -2);
    EXPECT_TRUE(at["existenceMap"].IsNull());
    const rapidjson::Value& memory = at["memoryLocs"][3];
    EXPECT_EQ(memory["record"].GetString(), std::string("T6RAMB36_BRAM"));
    EXPECT_EQ(text(memory["type"]["widths"]), "1 2 4 9 18 36 72 ");
    EXPECT_EQ(text(memory["type"]["parityWidths"]), "0 0 0 1 2 4 8 ");
    EXPECT_EQ(text(memory["physicalLocs"][19]), "19 1 tarsel5_36DecodeTables 6464 ");
    EXPECT_EQ(text(memory["logicalLocs"][12]), "2 0 1 ");
    EXPECT_EQ(text(at["memoryLocs"][0]["physicalLocs"][1]), "21 0 T5_18UpperDecodeTable 0 ");
}

TEST_F(DevicesJson, HolesShowAsComplementsNullTablesAndMaps) {
    // X0Y20 to X0Y29 of tp7a11 take no frames; two of three groups lie above the centre.
    const rapidjson::Value& frames = device("tp7a11")["memoryLocs"][3];
    EXPECT_EQ(text(frames["physicalLocs"][30]), "-21 0 null 0 ");
    EXPECT_EQ(text(frames["logicalLocs"][20]), "0 3 -1 ");
    const rapidjson::Value& map = device("tq2p36")["existenceMap"];
    EXPECT_EQ(map.Size(), 36u);
    EXPECT_EQ(map[9 + 3].GetInt(), -1);
    EXPECT_TRUE(device("tq2p36")["memoryLocs"][0]["physicalLocs"].IsNull());
    EXPECT_TRUE(device("td2e36")["memoryLocs"][0]["logicalLocs"].IsNull());
}

void expectType(const rapidjson::Value& json, const MEMORYType& type) {
    EXPECT_EQ(json["name"].GetString(), std::string(type.name));
    EXPECT_EQ(json["cellName"].GetString(), std::string(type.cellName));
    EXPECT_EQ(json["token"].GetUint64(), type.token->ordinal);
    EXPECT_EQ(json["sizeUnits"].GetUint(), type.sizeUnits);
    EXPECT_EQ(json["dataBits"].GetUint64(), type.dataBits);
    EXPECT_EQ(json["parityBits"].GetUint(), type.parityBits);
    EXPECT_EQ(json["isBlockRam"].GetBool(), type.isBlockRam);
    EXPECT_EQ(json["hasParityWidths"].GetBool(), type.hasParityWidths);
    EXPECT_EQ(json["hasInterleavedParity"].GetBool(), type.hasInterleavedParity);
    EXPECT_EQ(json["frameCount"].GetUint64(), type.frameCount);
    EXPECT_EQ(json["frameSliceBits"].GetUint64(), type.frameSliceBits);
    EXPECT_EQ(json["addressRows"].GetUint64(), type.addressRows);
    EXPECT_EQ(json["dataRowBits"].GetUint(), type.dataRowBits);
    EXPECT_EQ(json["parityRows"].GetUint(), type.parityRows);
    EXPECT_EQ(json["parityRowBits"].GetUint(), type.parityRowBits);
    EXPECT_EQ(json["widthsText"].GetString(), std::string(type.widthsText));
    EXPECT_EQ(json["subRowFactor"].GetUint(), type.subRowFactor);
    ASSERT_EQ(json["parityWidths"].Size(), json["widths"].Size());
    for (rapidjson::SizeType i = 0; i < json["widths"].Size(); ++i) {
        EXPECT_EQ(json["widths"][i].GetUint(), type.widths[i]);
        EXPECT_EQ(json["parityWidths"][i].GetUint(), type.parityWidths[i]);
    }
    EXPECT_EQ(type.widths[json["widths"].Size()], 0u);
}

void expectArrays(const rapidjson::Value& json, const TarselDeviceType& device, const MEMORYLocType& memory) {
    ASSERT_EQ(json["physicalLocs"].IsNull(), memory.physicalLocs == nullptr);
    ASSERT_EQ(json["logicalLocs"].IsNull(), memory.logicalLocs == nullptr);
    if (memory.physicalLocs != nullptr) {
        const auto& list = json["physicalLocs"];
        ASSERT_EQ(list.Size(), memdata::physicalGridRows(&device, memory.type) * device.physicalColumns);
        for (rapidjson::SizeType i = 0; i < list.Size(); ++i) {
            const BRAMPhysLocDataType& element = memory.physicalLocs[i];
            const memdata::DecodeTable* table = memdata::decodeTableOf(element.decodeTable);
            ASSERT_EQ(list[i].Size(), 4u);
            ASSERT_EQ(list[i][0].GetInt(), element.logicalRow);
            ASSERT_EQ(list[i][1].GetInt(), element.logicalColumn);
            ASSERT_EQ(
                list[i][2].IsNull() ? "" : list[i][2].GetString(), std::string(table == nullptr ? "" : table->name));
            ASSERT_EQ(list[i][3].GetInt(), element.padBits);
        }
    }
    if (memory.logicalLocs != nullptr) {
        const auto& list = json["logicalLocs"];
        ASSERT_EQ(list.Size(), memdata::logicalGridRows(&device, memory.type) * device.logicalColumns);
        for (rapidjson::SizeType i = 0; i < list.Size(); ++i) {
            const BRAMLogLocDataType& element = memory.logicalLocs[i];
            ASSERT_EQ(list[i].Size(), 3u);
            ASSERT_EQ(list[i][0].GetInt(), element.physicalRow);
            ASSERT_EQ(list[i][1].GetInt(), element.physicalColumn);
            ASSERT_EQ(list[i][2].GetInt(), element.exists);
        }
    }
}

TEST_F(DevicesJson, EqualsTheRecordsOfTheLibrary) {
    const memdata::SystemResources resources;
    for (const rapidjson::Value& at : json_["devices"].GetArray()) {
        SCOPED_TRACE(at["names"][0].GetString());
        const TarselDeviceType* record = get_device_record_by_name(at["names"][0].GetString());
        ASSERT_NE(record, nullptr);
        for (rapidjson::SizeType i = 0; i < at["names"].Size(); ++i)
            EXPECT_STREQ(at["names"][i].GetString(), record->names[i]);
        EXPECT_EQ(record->names[at["names"].Size()], nullptr);
        EXPECT_EQ(at["isListed"].GetBool(), record->isListed != 0);
        EXPECT_EQ(at["family"].GetString(), std::string(record->family->name));
        EXPECT_EQ(at["logicalRows"].GetUint(), record->logicalRows);
        EXPECT_EQ(at["physicalRows"].GetUint(), record->physicalRows);
        EXPECT_EQ(at["logicalColumns"].GetUint(), record->logicalColumns);
        EXPECT_EQ(at["physicalColumns"].GetUint(), record->physicalColumns);
        EXPECT_EQ(at["framePadBits"].GetUint(), record->framePadBits);
        EXPECT_EQ(at["clbFrameBits"].GetUint(), record->clbFrameBits);
        EXPECT_EQ(at["bramFrameBits"].GetUint(), record->bramFrameBits);
        EXPECT_EQ(at["bramFrameOffset"].GetUint(), record->bramFrameOffset);
        EXPECT_EQ(at["dieCount"].GetUint(), record->dieCount);
        ASSERT_EQ(at["columnMap"].Size(), kCOLUMN_MAP_ENTRIES);
        for (rapidjson::SizeType i = 0; i < kCOLUMN_MAP_ENTRIES; ++i)
            EXPECT_EQ(at["columnMap"][i].GetInt(), record->columnMap[i]);
        ASSERT_EQ(at["existenceMap"].IsNull(), record->existenceMap == nullptr);
        if (record->existenceMap != nullptr) {
            ASSERT_EQ(at["existenceMap"].Size(), record->physicalRows * record->physicalColumns);
            for (rapidjson::SizeType i = 0; i < at["existenceMap"].Size(); ++i)
                EXPECT_EQ(at["existenceMap"][i].GetInt(), record->existenceMap[i]);
        }
        for (rapidjson::SizeType m = 0; m < at["memoryLocs"].Size(); ++m) {
            const rapidjson::Value& memory = at["memoryLocs"][m];
            const MEMORYLocType& loc = record->memoryLocs[m];
            ASSERT_NE(loc.type, nullptr);
            EXPECT_EQ(memory["record"].GetString(), std::string(memdata::memoryTypeRecordName(loc.type)));
            expectType(memory["type"], *loc.type);
            expectArrays(memory, *record, loc);
        }
        EXPECT_EQ(record->memoryLocs[at["memoryLocs"].Size()].type, nullptr);
    }
}

TEST_F(DevicesJson, EqualsTheDecodeTablesOfTheLibrary) {
    for (const memdata::DecodeTable& table : memdata::decodeTables()) {
        SCOPED_TRACE(table.name);
        const rapidjson::Value& rows = json_["decodeTables"][table.name]["rows"];
        const rapidjson::Value& bits = json_["decodeTables"][table.name]["bits"];
        ASSERT_EQ(rows.Size(), table.rows.size());
        for (rapidjson::SizeType r = 0; r < rows.Size(); ++r) {
            const TranslationTableType& row = table.rows[r];
            const memdata::BitArray& array = *memdata::bitArrayOf(row.bits);
            EXPECT_EQ(text(rows[r]), std::to_string(row.frame) + " " + std::to_string(row.dataBase) + " " +
                                         std::to_string(row.parityBase) + " " + array.name + " ");
            ASSERT_EQ(bits[array.name].Size(), array.bits.size());
            for (rapidjson::SizeType i = 0; i < array.bits.size(); ++i)
                ASSERT_EQ(bits[array.name][i].GetInt(), array.bits[i]);
        }
    }
}

TEST_F(DevicesJson, DecodeTablesGiveRowsAndTheirBits) {
    const rapidjson::Value& table = json_["decodeTables"]["tarsel2DecodeTables"];
    EXPECT_EQ(table["rows"].Size(), 64u);
    EXPECT_EQ(text(table["rows"][60]), "60 15360 1924 tarsel2BitDecodeTable ");
    EXPECT_EQ(table["bits"]["tarsel2BitDecodeTable"].Size(), 320u);
    EXPECT_EQ(table["bits"]["tarsel2BitDecodeTable"][171].GetInt(), -10001);
    EXPECT_EQ(json_["decodeTables"]["T5_18LowerDecodeTable"]["bits"].MemberCount(), 2u);
}

} // namespace
