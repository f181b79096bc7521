// robustness_test.cpp - long, cut and damaged option texts, and exhausted memory.
// SPDX-License-Identifier: Apache-2.0
#include "option_test.h"
#include "support/allocation_faults.h"

#include <random>

namespace memdata::testing {
namespace {

constexpr size_t kMEBIBYTE = size_t{1} << 20;

// Nothing in it opens a file.
constexpr const char* kALL_SWITCHES =
    "-bm a/b.bmm root top/cpu[3].ram/ -mx '<x/>' -bd \"a b.elf\" boot 4 start 0x10 tag x y.z[0] -bx -bx out tag q "
    "-bt t.bit -image i.img -pp p.bmm -workflow w1 w2 -split mem -bytewidth 32 / (8 - 4) -fill 7 -p q5a20 -i -a on "
    "-u -o pb out -o i a.bin -q EXFDSIW -D A=1 + \"2\" -D B= -d abB -I inc;/more -pg -w off";

std::string repeated(const std::string& piece, size_t bytes) {
    std::string text;
    while (text.size() < bytes) text += piece;
    return text;
}

TEST_F(Options, AllSwitchesTogetherAreRead) {
    EXPECT_EQ(parse(kALL_SWITCHES), 0) << alerts.text();
    EXPECT_EQ(count, 25);
}

TEST_F(Options, EveryCutEndsWithAStatus) {
    const std::string whole = kALL_SWITCHES;
    for (size_t n = 0; n <= whole.size(); ++n) {
        const int status = parse(whole.substr(0, n));
        EXPECT_TRUE(status == 0 || status == 3 || status == 10 || status == 14) << n << ": " << status;
        if (status == 0) continue;
        EXPECT_NE(alerts.take() + messages.text(), "") << n;
        messages.clear();
        DeleteCmdStringOptions(&options);
    }
}

TEST_F(Options, DamagedTextsEndWithAStatus) {
    std::mt19937 random(8);
    for (int round = 0; round < 3000; ++round) {
        std::string text = kALL_SWITCHES;
        for (int change = 0; change < 3; ++change)
            text[random() % text.size()] = "-\"'#/()[]*.\\ \nabx0\xFF\x80"[random() % 20];
        parse(text);
        DeleteCmdStringOptions(&options);
    }
    EnablePrintAlerts(62);
    alerts.take();
    messages.clear();
    EXPECT_EQ(record("-i"), "ignoreUnmapped\n");
}

// Each grows one list or text. What takes more than linear time takes minutes at these lengths.
TEST_F(Options, LongTextsOfEverySwitchAreRead) {
    for (const char* piece : {"-i ", "-bx ", "-bx a ", "-o i a ", "-workflow a ", "-mx '' ", "-a on ", "-q E ", "-d a ",
             "-bytewidth 1 ", "-bt a ", "-bd a tag b boot 4 "})
        EXPECT_EQ(parse(repeated(piece, kMEBIBYTE / 16)), 0) << piece;
}

TEST_F(Options, TextsOfAMegabyteAreRead) {
    EXPECT_EQ(parse(repeated("-bm a -bd b -D A=1 -I c ", kMEBIBYTE)), 0);
    EXPECT_EQ(FileSpecListCount(options.bmmFiles), 43691U);
    EXPECT_EQ(StrListCount(options.includePaths), 43691U);
}

TEST_F(Options, OneSwitchWithAMegabyteOfArgumentsIsRead) {
    for (const char* start : {"-workflow ", "-bd a tag ", "-D A="})
        EXPECT_EQ(parse(start + repeated("ab ", kMEBIBYTE)), 0) << start;
    EXPECT_EQ(parse("-I a" + repeated(";b", kMEBIBYTE / 8)), 0);
    EXPECT_EQ(parse("-bytewidth 0" + repeated(" + 1", kMEBIBYTE / 8)), 0);
    EXPECT_EQ(parse("-h " + repeated("ab ", kMEBIBYTE)), -1);
    EXPECT_EQ(StrListCount(options.helpTopics), 349526U);
}

TEST_F(Options, WordsBeyondTheLimitAreRefused) {
    EXPECT_EQ(parse("-bt " + std::string(2 * kMEBIBYTE, 'a')), 3);
    EXPECT_EQ(parse("-q " + std::string(kMEBIBYTE, 'E')), 14);
}

TEST(OptionsWithoutMemory, EveryFailureGivesAStatusAndEverythingBack) {
    const SystemResources resources;
    CapturedAlerts alerts; // -q lets them through again
    const CapturedMessages messages;
    const auto run = [] {
        CmdStringOptionsType options{};
        int count = 0;
        const std::string text = formatted("lanefill %s", kALL_SWITCHES);
        const int status = ParseCmdStringOptions(text.c_str(), &options, &count);
        DeleteCmdStringOptions(&options);
        return status;
    };
    // The texts of pooled tokens grow to their final size.
    for (int i = 0; i < 20; ++i) EXPECT_EQ(run(), 0);
    const FaultSweep sweep = sweepAllocationFaults(run);
    EXPECT_GT(sweep.faultCount, 100U);
    EXPECT_EQ(sweep.failures, "");
}

TEST(OptionsInTwoRuns, AreTheSame) {
    std::string first;
    for (int run = 0; run < 2; ++run) {
        const SystemResources resources;
        CmdStringOptionsType options{};
        int count = -1;
        EXPECT_EQ(ParseCmdStringOptions(kALL_SWITCHES, &options, &count), 0);
        const std::string dump = dumpOptions(options);
        DeleteCmdStringOptions(&options);
        if (run == 0) first = dump;
        EXPECT_EQ(dump, first);
    }
}

} // namespace
} // namespace memdata::testing
