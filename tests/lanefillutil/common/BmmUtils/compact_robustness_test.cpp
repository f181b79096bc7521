// compact_robustness_test.cpp - compact texts that are cut, damaged, long, or made to harm.
// SPDX-License-Identifier: Apache-2.0
#include "compact_test.h"

#include "support/allocation_faults.h"
#include "support/damage.h"

#include <random>

namespace memdata::testing {
namespace {

// Every statement and every item.
constexpr const char* kWHOLE =
    "n out.bmm m sram 1024 8 16 h ram top/u1 c ** * sram ECCH32-7 [7:0] [0:1] "
    "c g u0 RAMB16 [7:0] [0:2047] < i.mem << \"a b.mem\" > x/o.mem c g u1 RAMB16 [15:8] [0:2047] "
    "e ref f RAMB16 4096 8 g f sram 1024 16 */dev h ram / t tmpl byte 4096 16 f RAMB16 4096 8 g "
    "i tmpl one 0x8000 top/x p cpu ARM 0 top/cpu a mem h x y/ a own * word 0 16 f sram 512 16 dev "
    "a mem top/mem byte 0x4000 16 e ref f RAMB16 2048 16 u9 "
    "j both byte 0 16 f RAMB16 4096 8 g e ref j both 0 16 f sram 1024 16 z ";

std::string repeated(const std::string& piece, size_t count) {
    std::string text;
    for (size_t i = 0; i < count; ++i) text += piece;
    return text;
}

TEST_F(Compact, AllStatementsTogetherCompile) {
    const std::string maps = compiled(kWHOLE);
    for (const char* piece : {"DEFINE_MEMORY_TYPE sram", "ADDRESS_TEMPLATE tmpl", "ADDRESS_INSTANCE tmpl",
             "ADDRESS_MAP cpu", "ADDRESS_SPACE own", "ADDRESS_SPACE mem", "ADDRESS_SPACE both"})
        EXPECT_NE(maps.find(piece), std::string::npos) << piece << "\n" << maps;
}

TEST_F(Compact, EveryCutEndsWithAStatus) {
    const std::string whole = kWHOLE;
    for (size_t n = 0; n <= whole.size(); ++n) {
        int status = compile(whole.substr(0, n));
        if (status == 0) status = finalize_bmm_info(&options);
        EXPECT_TRUE(status == 0 || status == 3 || status == 10) << n << ": " << status;
        if (status != 0) {
            EXPECT_NE(alerts.take() + messages.text(), "") << n;
        }
        alerts.take();
        messages.clear();
        DeleteCmdStringOptions(&options);
        EXPECT_EQ(scratchBMMInfo, nullptr) << n;
    }
}

TEST_F(Compact, DamagedTextsEndWithAStatus) {
    std::mt19937 random(8);
    const std::string noise = "acefhijmnpt*/<>[]():;.\"'#-019 \n\xFF\x80";
    for (int round = 0; round < 3000; ++round) {
        std::string text = kWHOLE;
        for (int change = 0; change < 3; ++change) text[random() % text.size()] = noise[random() % noise.size()];
        if (compile(text) == 0) finalize_bmm_info(&options);
        DeleteCmdStringOptions(&options);
    }
    alerts.take();
    messages.clear();
    EXPECT_EQ(compiled("i tmpl one 0 top"), "ADDRESS_INSTANCE tmpl one [0x0] top;\n\n");
}

TEST_F(Compact, WordsInAnyOrderEndWithAStatus) {
    std::mt19937 random(9);
    const char* words[] = {"a", "c", "e", "f", "h", "i", "j", "m", "n", "p", "t", "*", "x", "y", "RAMB16", "byte",
        "word", "0", "8", "2048", "[7:0]", "[0:2047]", "<", "<<", ">", "/", "top/u", "*/u", "ECCH32-7", "ARM", "#",
        "\n"};
    for (int round = 0; round < 3000; ++round) {
        std::string text;
        for (int word = 0; word < 40; ++word) text += std::string(words[random() % std::size(words)]) + " ";
        if (compile(text) == 0) finalize_bmm_info(&options);
        DeleteCmdStringOptions(&options);
        delete_scratchBMMInfo();
    }
}

TEST_F(Compact, EveryAllocationMayFail) {
    const auto run = [this] {
        int status = compile(kWHOLE);
        if (status == 0) status = finalize_bmm_info(&options);
        DeleteCmdStringOptions(&options);
        delete_scratchBMMInfo();
        delete_MEMORY_extended_types();
        return status;
    };
    EXPECT_EQ(run(), 0); // fills the pools, which stay
    const FaultSweep sweep = sweepAllocationFaults(run);
    EXPECT_GT(sweep.faultCount, 100U);
    EXPECT_EQ(sweep.failures, "");
}

// Each would take minutes if its time grew faster than its length.
TEST_F(Compact, LongTextsCompile) {
    constexpr size_t kCOUNT = 8000;
    std::string many;
    for (size_t i = 0; i < kCOUNT; ++i) {
        const std::string n = std::to_string(i);
        many += "c g u" + n + " RAMB16 [7:0] [0:0] c g" + n + " v" + n + " RAMB16 [7:0] [0:0] e r" + n +
                " f RAMB16 2048 8 g" + n + " ";
    }
    EXPECT_EQ(compile(many + "a mem top 0 8 f RAMB16 " + std::to_string(2048 * kCOUNT) + " 8 g"), 0) << alerts.take();
    EXPECT_EQ(
        compile("p cpu ARM 0 a mem " + repeated("a mem ", kCOUNT) + "a mem top 0 8 " + repeated("e r7 ", kCOUNT)), 0);
    EXPECT_EQ(compile("j both 0 8 " + repeated("f RAMB16 2048 8 u ", kCOUNT)), 0);
    EXPECT_EQ(compile(repeated("m ram 16 8 i x o 0 q h x y/z t q 2048 8 f RAMB16 2048 8 u n o ", kCOUNT)), 0)
        << alerts.take();
    EXPECT_EQ(
        compile("h x " + repeated("y/", kCOUNT) + "z c " + std::string(kCOUNT, '*') + " u RAMB16 [0:0] [0:0]"), 0);
}

TEST_F(Compact, ARangeBeyondAllDevicesIsRefusedAtOnce) {
    for (const char* size : {"0xFFFFFFFFFFFFFFFF", "0x8000000000000000"})
        EXPECT_NE(failure("a mem top 0 8 f RAMB16 " + std::string(size) + " 8 u").find("only processed 1."),
            std::string::npos);
    EXPECT_NE(failure("a mem top 0 0xFFFFFFFF f RAMB16 2048 1 u").find("Expecting 0 BRAMS found a total of 1 BRAMS."),
        std::string::npos);
}

// A name of a mebibyte makes lanes of a mebibyte.
TEST_F(Compact, CompiledTextIsLimited) {
    const std::string name(u64{1} << 19, 'u');
    ASSERT_EQ(compile("c g " + name + " RAMB16 [7:0] [0:0]"), 0);
    const u64 before = scratchBMMInfo->keptBytes;
    ASSERT_EQ(compile("t one 2048 8 f RAMB16 2048 8 g"), 0);
    const u64 step = scratchBMMInfo->keptBytes - before;
    const u64 room = (kMAX_COMPACT_BYTES - scratchBMMInfo->keptBytes) / step;
    const std::string fits = repeated("t one 2048 8 f RAMB16 2048 8 g ", room);
    ASSERT_EQ(compile(fits), 0);
    // The rest of the room to the byte, and one more.
    const u64 rest = kMAX_COMPACT_BYTES - scratchBMMInfo->keptBytes;
    const std::string empty = "ADDRESS_INSTANCE x y [0x0] ;\n\n";
    EXPECT_EQ(compile("i x y 0 " + repeated("v/", (rest - empty.size()) / 2 - 1) +
                      std::string(2 + (rest - empty.size()) % 2, 'v')),
        0);
    EXPECT_EQ(scratchBMMInfo->keptBytes, kMAX_COMPACT_BYTES);
    alerts.take();
    const std::string one = "p x ARM 0 a y";
    EXPECT_EQ(compile(one), 3);
    EXPECT_EQ(alerts.take(),
        "\nERROR:Lanefill - The address maps of '-mf' exceed the limit of 67108864 bytes of compiled text.\n"
        "   Line #1, File \"text.bmm\".\n" +
            one + "\n          ^\n\n");
}

TEST_F(Compact, UsesOfAReferenceAreLimited) {
    // 500 uses of 500 ranges of long names.
    const std::string name(1000, 'u');
    const std::string text =
        "e r " + repeated("f RAMB16 2048 8 " + name + " ", 500) + "t x 2048 8 " + repeated("e r ", 500);
    EXPECT_NE(failure(text).find("exceed the limit of 67108864 bytes of compiled text."), std::string::npos);
}

} // namespace
} // namespace memdata::testing
