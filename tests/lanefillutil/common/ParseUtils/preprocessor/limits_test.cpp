// limits_test.cpp - what a text may not exceed: at the limit it is read, beyond it an alert names limit and place.
// SPDX-License-Identifier: Apache-2.0
#include "preprocess_test.h"

#include "ParseUtils/directive_stack.h"
#include "ParseUtils/state.h"

namespace memdata::testing {
namespace {

class PreprocessLimits : public PreprocessTest {
protected:
    static std::string repeat(const std::string& text, u32 times) {
        std::string all;
        for (u32 i = 0; i < times; ++i) all += text;
        return all;
    }
    // M1 is M2, ... and the last one is "end".
    static std::string chain(u32 length) {
        std::string text;
        for (u32 i = 1; i < length; ++i) text += "#define M" + std::to_string(i) + " M" + std::to_string(i + 1) + "\n";
        return text + "#define M" + std::to_string(length) + " end\nM1\n";
    }
    static std::string firstLine(const std::string& said) { return said.substr(1, said.find('\n', 1) - 1); }
    // The text after which a stream was left with so much used up; tokens and alerts.
    static std::string readWith(std::string_view text, u64 parse_stream::*used, u64 amount) {
        CapturedAlerts alerts;
        TextReader reader(text);
        reader->*used = amount;
        const std::string tokens = joined(reader, reader.token());
        return tokens + alerts.text();
    }
};

TEST_F(PreprocessLimits, AThousandDirectivesMayBeOpen) {
    EXPECT_EQ(read(repeat("#if 1\n", 1000) + "x\n" + repeat("#endif\n", 1000)), "x");
    EXPECT_EQ(firstLine(alertsOf(repeat("#if 1\n", 1001))),
        "ERROR:Lanefill - Directive '#if' can not be opened, the limit of 1000 nested directives is reached.");
    EXPECT_EQ(firstLine(alertsOf("#if 0\n" + repeat("#while 1\n", 1000))),
        "ERROR:Lanefill - Directive '#while' can not be opened, the limit of 1000 nested directives is reached.");
}

TEST_F(PreprocessLimits, AThousandMacrosMayStandInsideEachOther) {
    EXPECT_EQ(read(chain(1000)), "end");
    EXPECT_EQ(firstLine(alertsOf(chain(1001))),
        "ERROR:Lanefill - Macro 'M1001' can not be expanded, the limit of 1000 nested expansions is reached.");
}

TEST_F(PreprocessLimits, AThousandCallsMayStandInArguments) {
    const std::string definition = "#define F(x) x\n";
    EXPECT_EQ(read(definition + repeat("F(", 1000) + "a" + repeat(")", 1000)), "a");
    EXPECT_EQ(firstLine(alertsOf(definition + repeat("F(", 1001) + "a" + repeat(")", 1001))),
        "ERROR:Lanefill - Macro 'F' can not be expanded, the limit of 1000 nested expansions is reached.");
}

TEST_F(PreprocessLimits, AThousandInlineMacrosMayStandInsideEachOther) {
    EXPECT_EQ(read(repeat("#{", 1000) + "a" + repeat("}", 1000)), "a");
    EXPECT_EQ(firstLine(alertsOf(repeat("#{", 1001) + "a" + repeat("}", 1001))),
        "ERROR:Lanefill - Macro '#{' can not be expanded, the limit of 1000 nested expansions is reached.");
}

TEST_F(PreprocessLimits, AThousandPastesMayFollowEachOther) {
    const std::string joinedWord = repeat("a##", 1000) + "a";
    EXPECT_EQ(read("#define P " + joinedWord + "\nP\n"), repeat("a", 1001));
    EXPECT_EQ(firstLine(alertsOf("#define P a##" + joinedWord + "\nP\n")),
        "ERROR:Lanefill - Macro 'a' can not be expanded, the limit of 1000 nested expansions is reached.");
}

TEST_F(PreprocessLimits, ConditionsInFunctionsShareTheirDepthOfParentheses) {
    // Each of two functions opens half of the parentheses while it evaluates a condition that calls the next one.
    const std::string half = repeat("(", 500);
    const std::string closed = repeat(")", 500);
    const std::string text = "#function TWO()\n#if " + half + "1" + closed +
                             "\n1\n#endif\n#endfunction\n#function ONE()\n"
                             "#if " +
                             half + "TWO()" + closed + "\nyes\n#endif\n#endfunction\n";
    EXPECT_EQ(read(text + "ONE()\n"), "yes");
    EXPECT_NE(alertsOf(text + "#if (ONE())\n").find("The limit of 1000 nested expression parentheses is reached."),
        std::string::npos);
}

TEST_F(PreprocessLimits, ALoopHasTenMillionRounds) {
    const auto readAfter = [](u64 rounds) {
        CapturedAlerts alerts;
        TextReader reader("#while 1\nx\n#endwhile\n");
        reader.next();
        topDirective(reader)->rounds = rounds;
        const std::string tokens = joined(reader, reader.token());
        return tokens + alerts.text();
    };
    EXPECT_EQ(readAfter(kMAX_LOOP_ITERATIONS - 1),
        "x status 21\nERROR:Lanefill - The loop of '#while' exceeded the limit of 10000000 iterations.\n"
        "   Line #1, File \"text.bmm\".\n#while 1\n^\n\n");
    EXPECT_EQ(readAfter(kMAX_LOOP_ITERATIONS).substr(0, 10), "status 21\n");
}

TEST_F(PreprocessLimits, MacrosPushSoMuchTextInOneRun) {
    const std::string text = "#define AB ab\nAB\n";
    EXPECT_EQ(readWith(text, &parse_stream::pushedBytes, kMAX_PUSHED_BYTES - 2), "ab");
    EXPECT_EQ(readWith(text, &parse_stream::pushedBytes, kMAX_PUSHED_BYTES - 1),
        "status 21\nERROR:Lanefill - Macro 'AB' can not be expanded, the limit of 134217728 bytes of macro text "
        "is reached.\n   Line #2, File \"text.bmm\".\nAB\n^\n\n");
}

TEST_F(PreprocessLimits, MacrosThatDoubleEnd) {
    std::string text;
    for (u32 i = 0; i < 40; ++i) {
        const std::string next = "D" + std::to_string(i + 1);
        text += "#define D" + std::to_string(i) + " " + next + " " + next + "\n";
    }
    EXPECT_NE(readWith(text + "D0\n", &parse_stream::pushedBytes, kMAX_PUSHED_BYTES - 10000).find("status 21"),
        std::string::npos);
}

TEST_F(PreprocessLimits, LoopsGoBackOverSoMuchText) {
    const std::string text = "#while N\n#undef N\n#set N 0\n#endwhile\nx\n";
    const u64 round = text.find("#endwhile") + 9 - 6; // from behind "#while" to behind "#endwhile"
    EXPECT_EQ(readWith("#set N 1\n" + text, &parse_stream::repeatedBytes, kMAX_REPEATED_BYTES - round), "x");
    EXPECT_EQ(readWith("#set N 1\n" + text, &parse_stream::repeatedBytes, kMAX_REPEATED_BYTES - round + 1),
        "status 21\nERROR:Lanefill - The loop of '#while' can not go on, the limit of 268435456 bytes of repeated "
        "text is reached.\n   Line #2, File \"text.bmm\".\n#while N\n^\n\n");
}

// Tokens of one round of a loop, of its condition and of what stands behind that, each way back with its own charge.
constexpr const char* kLOOP = "#for i 0; i < 2; i i+1\nx\n#endfor\n";

TEST_F(PreprocessLimits, LoopsGoBackOverSoManyTokens) {
    TextReader reader(kLOOP);
    EXPECT_EQ(joined(reader, reader.token()), "x x");
    const u64 used = reader->repeatedTokens;
    EXPECT_GT(used, 4 * kTOKENS_OF_A_JUMP + 2 * 10);
    EXPECT_LT(used, u64{100});
    EXPECT_EQ(readWith(kLOOP, &parse_stream::repeatedTokens, kMAX_REPEATED_TOKENS - used), "x x");
    EXPECT_EQ(readWith(kLOOP, &parse_stream::repeatedTokens, kMAX_REPEATED_TOKENS - used + 1),
        "x x status 21\nERROR:Lanefill - The loop of '#for' can not go on, the limit of " +
            std::to_string(kMAX_REPEATED_TOKENS) +
            " repeated tokens is reached.\n   Line #1, File \"text.bmm\".\n#for i 0; i < 2; i i+1\n^\n\n");
}

TEST_F(PreprocessLimits, TokensOfAnInnerLoopAreCountedOnce) {
    const auto usedBy = [](const std::string& text) {
        TextReader reader(text);
        joined(reader, reader.token());
        return reader->repeatedTokens;
    };
    const std::string inner = "#for j 0; j < 1000; j j+1\n#endfor\n";
    const u64 alone = usedBy(inner);
    const u64 nested = usedBy("#for i 0; i < 1; i i+1\n" + inner + "#endfor\n");
    EXPECT_GT(nested, alone);
    EXPECT_LT(nested, alone + 100);
}

TEST_F(PreprocessLimits, ATextWithoutLoopsAndMacrosRepeatsNothing) {
    TextReader reader("#if 1\na b c\n#else\nd\n#endif\n");
    EXPECT_EQ(joined(reader, reader.token()), "a b c");
    EXPECT_EQ(reader->repeatedTokens, 0U);
}

TEST_F(PreprocessLimits, AMacroIsRefusedWhenTooManyTokensWereRepeated) {
    const std::string text = "#define AB ab\nAB 1\n";
    EXPECT_EQ(readWith(text, &parse_stream::repeatedTokens, kMAX_REPEATED_TOKENS), "ab 1");
    const std::string refusal = "' can not be expanded, the limit of " + std::to_string(kMAX_REPEATED_TOKENS) +
                                " repeated tokens is reached.\n   Line #2, File \"text.bmm\".\n";
    EXPECT_EQ(readWith(text, &parse_stream::repeatedTokens, kMAX_REPEATED_TOKENS + 1),
        "status 21\nERROR:Lanefill - Macro 'AB" + refusal + "AB 1\n^\n\n");
    // A macro that is a number takes the place of its name without a stream.
    EXPECT_EQ(readWith("#define N 7\nN\n", &parse_stream::repeatedTokens, kMAX_REPEATED_TOKENS + 1),
        "status 21\nERROR:Lanefill - Macro 'N" + refusal + "N\n^\n\n");
}

TEST_F(PreprocessLimits, ATextThatALoopIncludesIsCounted) {
    const TemporaryFolder folder;
    folder.write("lanes.h", repeat("a ", 200));
    const std::string path = (folder.path() / "lanes.h").string();
    TextReader reader("#for i 0; i < 3; i i+1\n#include \"" + path + "\"\n#endfor\n");
    joined(reader, reader.token());
    EXPECT_GT(reader->repeatedTokens, 3 * 200U);
}

TEST_F(PreprocessLimits, ARunCanBeginWithMostOfItsLimitsUsed) {
    gParseState.usedPushedBytes = 11;
    gParseState.usedRepeatedBytes = 12;
    gParseState.usedRepeatedTokens = 13;
    TextReader reader("a");
    gParseState.usedPushedBytes = gParseState.usedRepeatedBytes = gParseState.usedRepeatedTokens = 0;
    EXPECT_EQ(reader->pushedBytes, 11U);
    EXPECT_EQ(reader->repeatedBytes, 12U);
    EXPECT_EQ(reader->repeatedTokens, 13U);
}

TEST_F(PreprocessLimits, AHundredThousandRoundsDoNotReadTheRestOfTheText) {
    // With the text behind the loop read again each time this would take hours.
    const std::string text = "#for i 0; i < 100000; i i+1\n#endfor\ni\n" + repeat("lane [7:0] ;\n", 100000);
    TextReader reader(text);
    EXPECT_EQ(reader.next(), "INTEGER_NUMBER(100000)");
    EXPECT_LT(reader->repeatedBytes, u64{100000} * 50);
}

class IncludeLimits : public PreprocessLimits {
protected:
    std::string path(const char* name) { return (folder_.path() / name).string(); }
    TemporaryFolder folder_;
};

TEST_F(IncludeLimits, AFileThatIncludesItselfEndsAtTwoHundred) {
    const std::string self = path("self.h");
    folder_.write("self.h", "#include \"" + self + "\"\n");
    const std::string said = alertsOf("#include \"" + self + "\"\n");
    EXPECT_EQ(firstLine(said),
        "ERROR:Lanefill - File '" + self + "' can not be included, the limit of 200 nested files is reached.");
    // The chain of including files: 200 times itself, and the first text.
    u32 locations = 0;
    for (size_t at = said.find("   Line #1, File"); at != std::string::npos; at = said.find("   Line #1, File", at + 1))
        ++locations;
    EXPECT_EQ(locations, 201U);
    EXPECT_TRUE(said.ends_with("status 21"));
}

TEST_F(IncludeLimits, TwoHundredFilesMayStandInsideEachOther) {
    for (u32 i = 1; i <= 200; ++i)
        folder_.write("f" + std::to_string(i) + ".h",
            i == 200 ? "last\n" : "#include \"" + path(("f" + std::to_string(i + 1)).c_str()) + ".h\"\n");
    EXPECT_EQ(read("#include \"" + path("f1.h") + "\"\n"), "last");
}

TEST_F(IncludeLimits, AFolderCanNotBeIncluded) {
    const std::string line = "#include \"" + folder_.path().string() + "\"";
    const std::string said = alertsOf(line + "\n");
    EXPECT_NE(said.find("can not be found, or is busy."), std::string::npos);
    EXPECT_NE(said.find("   Line #1, File \"text.bmm\".\n" + line), std::string::npos);
    EXPECT_TRUE(said.ends_with("status 1"));
}

} // namespace
} // namespace memdata::testing
