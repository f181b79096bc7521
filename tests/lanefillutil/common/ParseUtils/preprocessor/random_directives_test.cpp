// random_directives_test.cpp - directives and macros in an order that nobody would write: reading always ends.
// SPDX-License-Identifier: Apache-2.0
#include "preprocess_test.h"

#include <random>

namespace memdata::testing {
namespace {

constexpr const char* kPIECES[] = {"#if 1\n", "#if X\n", "#ifdef X\n", "#ifndef Y\n", "#elif Y > 1\n", "#else\n",
    "#endif\n", "#while X < 3\n", "#while 1\n", "#endwhile\n", "#for i 0; i < 3; i i+1\n", "#endfor\n", "#break\n",
    "#continue\n", "#return\n", "#define X 1\n", "#define Y X Y\n", "#define F(a) a##X #a\n",
    "#define G(a, b) F(a) b\n", "#function H(x)\n", "#endfunction\n", "#set X X+1\n", "#set Y (X*2)\n", "#undef X\n",
    "#undef F\n", "#export X Y\n", "#global X\n", "#{ X ", "}", "F(", "G(", "H(", ")", ",", "X", "Y", "i", "(", "##",
    "#", " ", "\n", "\"", "'", "/*", "*/", "//", "\\\n", "5", "defined(X)", "__LINE__", "true",
    "#pragma comments enabled\n", "#pragma output disabled\n", "#pragma output enabled\n", "#info X\n", "#emit F(1)\n",
    "#error e\n", "#include \"none\"\n", "#define U #undef U\nU\n", "#define S #set S 2\nS\n",
    "#define K #define K 3\nK\n", "#if F(", "#set X H(", "#include X\n", "#switch\n"};

TEST_F(PreprocessTest, RandomDirectivesEnd) {
    CapturedAlerts alerts(0);
    std::mt19937 random(7);
    for (int round = 0; round < 4000; ++round) {
        std::string text;
        for (u32 pieces = static_cast<u32>(random() % 40); pieces != 0; --pieces)
            text += kPIECES[random() % std::size(kPIECES)];
        TextReader reader(text);
        reader.modes(random() % 4 == 0 ? kMODE_WHITESPACE | kMODE_LINE_ENDS : 0);
        // Little is left of what loops and macros may use, so that they end soon.
        reader->pushedBytes = kMAX_PUSHED_BYTES - 20000;
        reader->repeatedBytes = kMAX_REPEATED_BYTES - 20000;
        reader->repeatedTokens = kMAX_REPEATED_TOKENS - 20000;
        joined(reader, reader.token());
        reader.close();
    }
    SUCCEED();
}

} // namespace
} // namespace memdata::testing
