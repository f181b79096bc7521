// devices_command_test.cpp - lanefill devices, as a user runs it.
// SPDX-License-Identifier: Apache-2.0
#include "BRAMDecodeUtils/decode_tables.h"
#include "DeviceTableUtils/DeviceTableUtils.h"
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
    EXPECT_EQ(std::ranges::count(result.text, '\n'), 186); // with the heading
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
                           "  configuration     4 columns of 9, 98304 bytes in all\n"
                           "  frame             3072 bits, 96 of them padding at the head\n"
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

TEST_F(DevicesJson, EqualsTheRecordsOfTheLibrary) {
    const memdata::SystemResources resources;
    for (const rapidjson::Value& at : json_["devices"].GetArray()) {
        const TarselDeviceType* record = get_device_record_by_name(at["names"][0].GetString());
        ASSERT_NE(record, nullptr);
        EXPECT_EQ(at["clbFrameBits"].GetUint(), record->clbFrameBits);
        EXPECT_EQ(at["physicalColumns"].GetUint(), record->physicalColumns);
        EXPECT_EQ(at["columnMap"].Size(), 25u);
        for (rapidjson::SizeType m = 0; m < at["memoryLocs"].Size(); ++m) {
            const rapidjson::Value& memory = at["memoryLocs"][m];
            const MEMORYLocType& loc = record->memoryLocs[m];
            EXPECT_EQ(memory["record"].GetString(), std::string(memdata::memoryTypeRecordName(loc.type)));
            ASSERT_EQ(memory["physicalLocs"].IsNull(), loc.physicalLocs == nullptr);
            if (loc.physicalLocs == nullptr) continue;
            ASSERT_EQ(
                memory["physicalLocs"].Size(), memdata::physicalGridRows(record, loc.type) * record->physicalColumns);
            i64 sum = 0, expected = 0;
            for (rapidjson::SizeType i = 0; i < memory["physicalLocs"].Size(); ++i) {
                sum += memory["physicalLocs"][i][0].GetInt() * (i64{i} + 1) + memory["physicalLocs"][i][3].GetInt();
                expected += loc.physicalLocs[i].logicalRow * (i64{i} + 1) + loc.physicalLocs[i].padBits;
            }
            EXPECT_EQ(sum, expected);
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

// The tool.

TEST(Tool, WithoutACommandItSaysThatItHasNoCommandLine) {
    for (const char* words : {"", "-bm a.bmm", "frobnicate"}) {
        const Result result = run(words);
        EXPECT_EQ(result.status, 1) << words;
        EXPECT_EQ(result.text, "lanefill: this build has no command line yet; 'lanefill help' tells what it can do\n");
    }
}

TEST(Tool, HelpTellsWhatItCanDo) {
    const Result result = run("help");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.text, HasSubstr("lanefill devices "));
}

TEST(Tool, HelpThatCanNotBeWrittenIsAnError) {
    for (const char* words : {"help > /dev/full", "--help > /dev/full", "help >&-"}) {
        const Result result = run(words);
        EXPECT_EQ(result.status, 1) << words;
    }
    EXPECT_EQ(run("help > /dev/full").text, "lanefill: standard output can not be written\n");
}

} // namespace
