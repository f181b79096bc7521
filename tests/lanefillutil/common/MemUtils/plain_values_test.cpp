// plain_values_test.cpp - runs of plain values give what the scanner gives, over random texts.
//
// MEMDATA_MEM_SEED and MEMDATA_MEM_TEXTS in the environment replace the seed and the number of texts.
// SPDX-License-Identifier: Apache-2.0
#include "mem_file_test.h"

#include "support/parse.h"

#include <array>
#include <cstdlib>
#include <random>
#include <span>

namespace memdata::testing {
namespace {

constexpr u64 kDEFAULT_SEED = 20240607;
constexpr u64 kDEFAULT_TEXTS = 10000;

u64 fromEnvironment(const char* name, u64 otherwise) {
    const char* text = std::getenv(name);
    return text == nullptr ? otherwise : std::strtoull(text, nullptr, 0);
}

struct Outcome {
    int status = 0;
    std::string sections;
    std::string said;
    u64 lowest = 0;
    u64 highest = 0;

    bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
    return out << "status " << outcome.status << ", " << outcome.sections << ", range " << outcome.lowest << " to "
               << outcome.highest << "\n"
               << outcome.said;
}

class PlainValues : public MemFileTest {
protected:
    // Reads a text in one of the two ways.
    Outcome outcomeOf(std::string_view text, u32 radix, ValueReading reading) {
        Outcome outcome;
        alerts.take();
        {
            TextReader stream(text, &mem_symbol_set, "data.mem");
            BlockOwner block;
            outcome.status = InitializeDataStructureBlock(text.size(), radix, block.out());
            if (outcome.status == 0) outcome.status = parseDataText(stream, block.get(), reading);
            for (DataSectionHdrType* section = block->firstSection; section != nullptr; section = section->next)
                if (section->access == nullptr) outcome.sections += sectionText(programSection(*section)) + " ";
            outcome.lowest = block->lowestAddress;
            outcome.highest = block->highestAddress;
        } // what is left open is reported when the stream is closed
        outcome.said = alerts.take();
        return outcome;
    }
    // Both ways; what they give when they agree.
    Outcome sameOutcome(const std::string& text, u32 radix) {
        const Outcome plain = outcomeOf(text, radix, ValueReading::kPLAIN_RUNS);
        const Outcome scanned = outcomeOf(text, radix, ValueReading::kTOKENS_ONLY);
        EXPECT_EQ(plain, scanned) << "radix " << radix << ", text:\n" << text;
        return plain;
    }
};

class TextMaker {
public:
    explicit TextMaker(u64 seed) : random_(seed) {}

    u64 below(u64 limit) { return random_() % limit; }
    u32 radix() { return below(3) == 0 ? 2 : 16; }

    // Mostly values; some texts are all of values, most have a few other things, some are full of them.
    std::string text(u32 radix) {
        static constexpr std::array<u64, 4> kODDITIES = {0, 2, 10, 40};
        const u64 oddities = kODDITIES[below(kODDITIES.size())]; // in a hundred
        const bool inVector = below(3) == 0;
        std::string text = inVector ? "memory_initialization_vector=" : "";
        for (u64 i = 1 + below(40); i != 0; --i) {
            text += below(100) < oddities ? oddity() : value(radix);
            text += separator(inVector);
        }
        if (inVector && below(8) != 0) text += ";";
        return text;
    }

private:
    template<size_t n>
    const char* pick(const char* const (&choices)[n]) {
        return choices[below(n)];
    }
    std::string value(u32 radix) {
        static constexpr std::array<u64, 8> kWIDTHS = {1, 2, 3, 8, 9, 16, 17, 70};
        u64 count = kWIDTHS[below(kWIDTHS.size())];
        if (below(2000) == 0) count = 70000;
        std::string digits;
        for (; count != 0; --count) digits += "0123456789ABCDEFabcdef"[below(radix == 2 ? 2 : 22)];
        return digits;
    }
    std::string separator(bool inVector) {
        if (inVector && below(3) == 0) return pick({",", ", ", " ,\n", "\n,"});
        if (below(60) == 0) return pick({"", ",", ";", ".", "-"});
        return pick({" ", "\n", "\r\n", "\n\r", "\t", "\f", "  \n\n ", "\r", "\r\r\n"});
    }
    std::string oddity() {
        static constexpr const char* kODD[] = {"@10", "@FFFFFFFE", "@ 7", "@100000000", "RADIX 2", "RADIX 16",
            "RADIX 10", "0x12", "0n1", "0b1", "12G", "1.5", "-3", "1-2", "12U", "zz", "// rest 1 2", "/* 1 2 */",
            "/* /* 3 */ */", "/* open", "*/", "\n#define V 1 0\n", "\n#define Z zz\n", "V", "V V", "Z", "\n#if 1\n",
            "\n#if 0\n", "\n#else\n", "\n#endif\n", "\n#for i 0; i < 3; i i+1\n 1 \n#endfor\n",
            "\n#pragma output disabled\n", "\n#pragma output enabled\n", "## rest", "\\\n", "\"a\"", "\"a\" \"b\" 1",
            "PACKED", "?", "\x80", "\xFF", "1[2]", "memory_initialization_vector=1,0;",
            "memory_initialization_radix=2;", "__LINE__", "\n#set N 1\n", "N"};
        return kODD[below(std::size(kODD))];
    }

    std::mt19937_64 random_;
};

TEST_F(PlainValues, RunsGiveWhatTheScannerGives) {
    const u64 seed = fromEnvironment("MEMDATA_MEM_SEED", kDEFAULT_SEED);
    const u64 count = fromEnvironment("MEMDATA_MEM_TEXTS", kDEFAULT_TEXTS);
    TextMaker maker(seed);
    u64 good = 0;
    for (u64 i = 0; i < count && !HasFailure(); ++i) {
        const u32 radix = maker.radix();
        SCOPED_TRACE(formatted("seed %lld, text %lld", seed, i));
        if (sameOutcome(maker.text(radix), radix).status == 0) ++good;
    }
    // Neither way may have refused nearly everything.
    EXPECT_GT(good, count / 4);
}

// Long texts are taken in steps. Wherever a step would end, in a value or in a line end, values and lines count on.
TEST_F(PlainValues, StepsOfALongTextAreNotSeen) {
    constexpr u64 kLINES = 160000;
    std::string lines;
    for (u64 i = 0; i < kLINES; ++i) lines += "11 22\r\n";
    for (size_t shift = 0; shift < 7; ++shift) {
        const std::string head = std::string(shift, ' ') + "@0\r\n";
        const Outcome bad = outcomeOf(head + lines + "zz\r\n", 16, ValueReading::kPLAIN_RUNS);
        EXPECT_NE(bad.said.find(formatted("Line #%lld,", kLINES + 2)), bad.said.npos) << bad.said;
        const Outcome good = outcomeOf(head + lines, 16, ValueReading::kPLAIN_RUNS);
        EXPECT_EQ(good.status, 0);
        EXPECT_EQ(good.highest, 2 * kLINES - 1);
    }
}

TEST_F(PlainValues, ATextCutAtEveryByteGivesTheSame) {
    const std::string text = "// head\n@10 12 3456\r\n789 /* note */ AB\n#define V 55\nV @20 RADIX 2 1010 1\nRADIX 16\n"
                             "memory_initialization_radix=16; memory_initialization_vector=\n01, 02\n03;\n@30 0x1";
    for (size_t n = 0; n <= text.size(); ++n) sameOutcome(text.substr(0, n), 16);
}

TEST_F(PlainValues, TheScannerAloneSpeaksBehindARunOfManyLines) {
    EXPECT_EQ(read("@0\n12 34\r\n56\n\r78\r9A\n\n\nBC zz"), "status 2\n"
                                                            "ERROR:Lanefill:11 - Unexpected symbol 'zz', 'valid data "
                                                            "value' expected.\n"
                                                            "   Line #8, File \"data.mem\".\n"
                                                            "BC zz\n"
                                                            "   ^\n\n");
}

TEST_F(PlainValues, ARunEndsAtTheLastAddressAndTheScannerReportsIt) {
    const std::string text = "@FFFFFFFC 12 34 56 78";
    EXPECT_EQ(sameOutcome(text, 16).sections, "FFFFFFFC:12345678 ");
    EXPECT_EQ(sameOutcome(text + "\n9 ABC", 16).status, 2);
}

TEST_F(PlainValues, ABinaryRunMayEndInTheMiddleOfTheLastByte) {
    EXPECT_EQ(sameOutcome("@FFFFFFFF 1 0 1 0101 0 ", 2).sections, "FFFFFFFF:AA ");
    EXPECT_EQ(sameOutcome("@FFFFFFFF 1 0 1 0101 0 1 ", 2).status, 2);
}

} // namespace
} // namespace memdata::testing
