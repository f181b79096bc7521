// bit_check_test.cpp - bit files compared with what a map and data say.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/bit_check.h"

#include "SystemUtils/lifetime.h"
#include "lanefillCore/option_run.h"
#include "support/alerts.h"
#include "support/bit_builder.h"
#include "support/bit_maker.h"
#include "support/host_messages.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

namespace memdata::testing {
namespace {

using ::testing::HasSubstr;

constexpr char kMAP[] = "ADDRESS_SPACE ram RAMB32 [0x1000:0x2FFF]\n"
                        "  BUS_BLOCK\n"
                        "    top/hi [15:8] LOC = X0Y3;\n"
                        "    top/lo [7:0] LOC = X0Y4;\n"
                        "  END_BUS_BLOCK;\n"
                        "END_ADDRESS_SPACE;\n";

class BitCheck : public ::testing::Test {
protected:
    BitCheck() {
        RegisterSystemToolName("Lanefill");
        map = folder.write("soc.bmm", kMAP);
        data = folder.write("app.mem", "@1000\n01 02 03 04 05 06\n");
        bit = folder.write("top.bit", textOf(bitFileOf(recipe, made.stream)));
        renewed = folder.file("new.bit");
    }
    void renew() {
        const std::string text =
            "-w on -bm \"" + map + "\" -bd \"" + data + "\" -bt \"" + bit + "\" -o b \"" + renewed + "\"";
        ASSERT_EQ(runOptions(text.c_str()).status, 0) << alerts.text();
    }
    BitCheckRun check(const std::string& file, const std::string& software) {
        return runBitCheck(("-bm \"" + map + "\" -bd \"" + software + "\" -bt \"" + file + "\"").c_str());
    }

    SystemResources resources;
    CapturedAlerts alerts;
    CapturedMessages messages;
    TemporaryFolder folder;
    BitRecipe recipe{.device = "tq7a5"};
    MadeBit made = makeBit(recipe);
    std::string map, data, bit, renewed;
};

TEST_F(BitCheck, AFileThatWasJustRewrittenIsEqual) {
    renew();
    const BitCheckRun run = check(renewed, data);
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.isCompared);
    EXPECT_THAT(run.report, ::testing::StartsWith("2 memories compared, 0 differ; "));
    EXPECT_THAT(run.report, HasSubstr(" CRC word, 0 wrong\n"));
}

TEST_F(BitCheck, OtherSoftwareDiffersFromItsFirstOtherWordOn) {
    renew();
    const BitCheckRun run = check(renewed, folder.write("other.mem", "@1000\n01 02 03 04 05 AA\n"));
    EXPECT_EQ(run.status, kBIT_FILE_DIFFERS);
    EXPECT_THAT(
        run.report, ::testing::StartsWith("top/lo [7:0] in 'ram': address 0x1004 (word 0x2): expected 0xAA, found 0x6\n"
                                          "2 memories compared, 1 differ; "));
}

TEST_F(BitCheck, AWrongCrcWordIsADifference) {
    renew();
    std::string spoilt = readFile(renewed);
    spoilt[spoilt.size() / 2] = static_cast<char>(spoilt[spoilt.size() / 2] ^ 1); // in the frames of logic
    const BitCheckRun run = check(folder.write("spoilt.bit", spoilt), data);
    EXPECT_EQ(run.status, kBIT_FILE_DIFFERS);
    EXPECT_THAT(run.report, HasSubstr("2 memories compared, 0 differ; "));
    EXPECT_THAT(run.report, HasSubstr("1 of 1 CRC word is wrong, the first ends "));
}

TEST_F(BitCheck, AMemoryWithoutALocationIsSaid) {
    renew();
    map = folder.write("half.bmm", "ADDRESS_SPACE ram RAMB32 [0x1000:0x2FFF]\n"
                                   "  BUS_BLOCK top/hi [15:8] LOC = X0Y3; top/lo [7:0]; END_BUS_BLOCK;\n"
                                   "END_ADDRESS_SPACE;\n");
    const BitCheckRun run = check(renewed, data);
    EXPECT_EQ(run.status, kBIT_FILE_DIFFERS);
    EXPECT_THAT(run.report, HasSubstr("top/lo in 'ram': has no location in the map\n"));
    EXPECT_THAT(run.report, HasSubstr("1 memory compared, 0 differ, 1 not found; "));
}

TEST_F(BitCheck, TellsWhatItNeeds) {
    EXPECT_EQ(runBitCheck("-q SIWE").status, 14);
    EXPECT_THAT(alerts.take(), HasSubstr("A check needs a bit file (-bt)."));
    EXPECT_EQ(runBitCheck(("-bt \"" + bit + "\"").c_str()).status, 14);
    EXPECT_THAT(alerts.take(), HasSubstr("A check needs an address map (-bm)."));
    EXPECT_EQ(runBitCheck(("-bt \"" + bit + "\" -bm \"" + map + "\"").c_str()).status, 14);
    EXPECT_THAT(alerts.take(), HasSubstr("A check needs data files (-bd)."));
}

TEST_F(BitCheck, WritesNothing) {
    renew();
    const std::string before = folder.listing();
    check(bit, data);
    EXPECT_EQ(folder.listing(), before);
}

} // namespace
} // namespace memdata::testing
