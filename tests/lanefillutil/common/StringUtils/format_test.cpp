// format_test.cpp - the formatter: every conversion and flag, over typed arguments and over a va_list.
// SPDX-License-Identifier: Apache-2.0
#include "string_test.h"

#include <cmath>
#include <limits>
#include <memory>

namespace memdata::testing {
namespace {

class Format : public StringTest {};

struct IntegerCase {
    const char* format;
    i64 value;
    const char* text;
};

void check(std::span<const IntegerCase> cases) {
    for (const IntegerCase& c : cases) {
        EXPECT_EQ(formatted(c.format, c.value), c.text) << c.format << " of " << c.value;
        EXPECT_EQ(taken(StrPrintf(nullptr, c.format, c.value)), c.text) << c.format << " of " << c.value;
    }
}

TEST_F(Format, OfNothingIsAnEmptyManagedString) {
    const OwnedString s(StrPrintf(nullptr, ""));
    ASSERT_NE(s.get(), nullptr);
    EXPECT_STREQ(s.get(), "");
    EXPECT_EQ(StrGetAttribute(s.get()), nullptr);
    EXPECT_EQ(taken(StrPrintf(nullptr, nullptr)), "");
}

TEST_F(Format, AppendsToItsStringAndReleasesIt) {
    EXPECT_EQ(taken(StrPrintf(managed("ab"), "%d", 5)), "ab5");
    EXPECT_EQ(taken(appendFormat(managed("ab"), "%d", 5)), "ab5");
}

TEST_F(Format, AnArgumentMayBeTheStringThatIsReleased) {
    char* s = managed("ab");
    EXPECT_EQ(taken(StrPrintf(s, "<%s>", s)), "ab<ab>");
    s = managed("ab");
    EXPECT_EQ(taken(appendFormat(s, "<%s>", s)), "ab<ab>");
}

TEST_F(Format, LiteralTextIsCopied) {
    EXPECT_EQ(formatted("plain text"), "plain text");
}

TEST_F(Format, LiteralTextExpandsEscapes) {
    EXPECT_EQ(formatted("a\\nb\\t\\x41\\101\\\\c\\\"\\'"), "a\nb\tAA\\c\"'");
    EXPECT_EQ(taken(StrPrintf(nullptr, "a\\nb")), "a\nb");
}

TEST_F(Format, AnEscapedPercentSignIsText) {
    EXPECT_EQ(formatted("\\%d"), "%d");
}

TEST_F(Format, AnEscapedLineEndJoinsLines) {
    EXPECT_EQ(formatted("a\\\n\r\nb"), "ab");
}

TEST_F(Format, AnEscapedNulAddsNothing) {
    EXPECT_EQ(formatted("a\\0b"), "ab");
}

TEST_F(Format, ABackslashAtTheEndIsText) {
    EXPECT_EQ(formatted("a\\"), "a\\");
}

TEST_F(Format, TextsOfArgumentsAreNotExpanded) {
    EXPECT_EQ(formatted("%s", "C:\\new%d"), "C:\\new%d");
}

TEST_F(Format, PercentPrintsItselfAndTakesNothing) {
    EXPECT_EQ(formatted("100%% of %d", 5), "100% of 5");
    EXPECT_EQ(formatted("%-08l%%d", 5), "%5");
}

TEST_F(Format, SignedDecimal) {
    constexpr IntegerCase kCASES[] = {
        {"%d", 5, "5"},
        {"%d", -5, "-5"},
        {"%d", INT32_MIN, "-2147483648"},
        {"%5d", 42, "   42"},
        {"%5d", -42, "  -42"},
        {"%-5d|", 42, "42   |"},
        {"%05d", 42, "00042"},
        {"%05d", -42, "-0042"}, // zeros inside the sign
        {"%+d", 42, "+42"},
        {"%+d", -42, "-42"},
        {"%+d", 0, "+0"},
        {"% d", 42, " 42"},
        {"% d", -42, "-42"},
        {"%+ d", 42, "+42"},
        {"% +d", 42, "+42"},
        {"%+06d", 42, "+00042"},
        {"% 06d", 42, " 00042"},
        {"%.4d", 42, "0042"},
        {"%.4d", -42, "-0042"},
        {"%8.4d", 42, "    0042"},
        {"%-8.4d|", 42, "0042    |"},
        {"%08.4d", 42, "00000042"},
        {"%.0d", 0, "0"},
        {"%2d", 12345, "12345"},
        {"%10d", 1, "         1"}, // a zero inside a width is a digit
        {"%#d", 42, "42"},
    };
    check(kCASES);
}

TEST_F(Format, LeftJustifiedZerosFollowTheDigits) {
    constexpr IntegerCase kCASES[] = {{"%-05d", 42, "42000"}, {"%0-5d", -42, "-4200"}};
    check(kCASES);
}

TEST_F(Format, FlagsWidthAndLengthComeInAnyOrder) {
    constexpr IntegerCase kCASES[] = {
        {"%5-d|", 42, "42   |"}, {"%l5d", 42, "   42"}, {"%5+d", 42, "  +42"}, {"%8 0d", 42, " 0000042"},
        {"%l-5ld|", 1LL << 40, "1099511627776|"}, {"%5 8d", 42, "      42"}, // the last width counts
        {"%.3-6d|", 42, "000042|"}, // behind the point all digits belong to the precision
    };
    check(kCASES);
}

TEST_F(Format, UnsignedRadices) {
    constexpr IntegerCase kCASES[] = {
        {"%x", 0xabc, "ABC"}, // upper case for both letters
        {"%X", 0xabc, "ABC"},
        {"%08lX", 0, "00000000"},
        {"%02X", 0xA, "0A"},
        {"%o", 8, "10"},
        {"%O", 8, "10"},
        {"%b", 5, "101"},
        {"%B", 5, "101"},
        {"%x", -1, "FFFFFFFF"},
        {"%llx", -1, "FFFFFFFFFFFFFFFF"},
        {"%.4x", 0xAB, "00AB"},
        {"%-6X|", 0xAB, "AB    |"},
        {"%+x", 5, "5"}, // no sign position without a sign
        {"% x", 5, "5"},
    };
    check(kCASES);
}

TEST_F(Format, TheRadixPrefixStandsAheadOfTheZeros) {
    constexpr IntegerCase kCASES[] = {
        {"%#x", 255, "0xFF"},
        {"%#X", 255, "0xFF"},
        {"%#o", 8, "0o10"},
        {"%#b", 5, "0b101"},
        {"%#x", 0, "0x0"},
        {"%#8x", 255, "    0xFF"},
        {"%#08x", 255, "0x0000FF"},
        {"%#.4x", 255, "0x00FF"},
        {"%-#8x|", 255, "0xFF    |"},
    };
    check(kCASES);
}

TEST_F(Format, OneLengthLetterReadsThirtyTwoBits) {
    constexpr IntegerCase kCASES[] = {
        {"%lX", 0x123456789ABCDEF0, "9ABCDEF0"},
        {"%X", 0x123456789ABCDEF0, "9ABCDEF0"},
        {"%ld", 0x1FFFFFFFF, "-1"}, // sign-extended
        {"%ld", 0x100000005, "5"},
        {"%Ld", 0x100000005, "5"},
    };
    check(kCASES);
}

TEST_F(Format, TwoLengthLettersReadSixtyFourBits) {
    constexpr IntegerCase kCASES[] = {
        {"%llX", 0x123456789ABCDEF0, "123456789ABCDEF0"},
        {"%lLX", 0x123456789ABCDEF0, "123456789ABCDEF0"},
        {"%llllX", 0x123456789ABCDEF0, "123456789ABCDEF0"},
        {"%lld", INT64_MIN, "-9223372036854775808"},
        {"%lld", 0x100000005, "4294967301"},
        {"%llb", 1LL << 40, "10000000000000000000000000000000000000000"},
    };
    check(kCASES);
}

TEST_F(Format, AnUnsignedArgumentUnderDIsReadAsSigned) {
    EXPECT_EQ(formatted("%d", 0xFFFFFFFFU), "-1");
    EXPECT_EQ(formatted("%lld", UINT64_MAX), "-1");
    EXPECT_EQ(formatted("%lld", 0xFFFFFFFFU), "4294967295");
}

TEST_F(Format, WidthFromTheArguments) {
    EXPECT_EQ(formatted("%0*llX", 4, 0xABULL), "00AB");
    EXPECT_EQ(taken(StrPrintf(nullptr, "%0*llX", 4, 0xABULL)), "00AB");
    EXPECT_EQ(formatted("%*d|%-*d|", 5, 42, 5, 42), "   42|42   |");
    EXPECT_EQ(taken(StrPrintf(nullptr, "%*d|%-*d|", 5, 42, 5, 42)), "   42|42   |");
    EXPECT_EQ(formatted("%*d|", -5, 42), "42   |"); // a negative width justifies left
}

TEST_F(Format, PrecisionFromTheArguments) {
    EXPECT_EQ(formatted("%.*s|%.*d", 2, "abc", 3, 5), "ab|005");
    EXPECT_EQ(taken(StrPrintf(nullptr, "%.*s|%.*d", 2, "abc", 3, 5)), "ab|005");
    EXPECT_EQ(formatted("%.*s", -1, "abc"), "abc"); // a negative precision is none
    EXPECT_EQ(formatted("%*.*s", 5, 2, "abc"), "   ab");
}

TEST_F(Format, AStarThatIsNoIntegerIsTakenAndIgnored) {
    EXPECT_EQ(formatted("%*d", "wide", 5), "5");
    EXPECT_EQ(formatted("%.*d", 1.5, 5), "5");
}

TEST_F(Format, Characters) {
    EXPECT_EQ(formatted("%c%c", 'a', 98), "ab");
    EXPECT_EQ(taken(StrPrintf(nullptr, "%c%c", 'a', 98)), "ab");
    EXPECT_EQ(formatted("%3c|%-3c|", 'a', 'b'), "  a|b  |");
    EXPECT_EQ(formatted("%c", 0xE4), "\xE4");
}

TEST_F(Format, ACharacterOfMinusOneIsTheEndOfFile) {
    EXPECT_EQ(formatted("%c", -1), "EOF");
    EXPECT_EQ(taken(StrPrintf(nullptr, "%c", -1)), "EOF");
    EXPECT_EQ(formatted("%c", 0xFFFFFFFFU), "EOF");
    EXPECT_EQ(formatted("%5c", -1), "  EOF");
    EXPECT_EQ(formatted("%c", 255), "\xFF");
}

TEST_F(Format, ANulCharacterAddsNothing) {
    EXPECT_EQ(formatted("a%cb", 0), "ab");
}

TEST_F(Format, Texts) {
    EXPECT_EQ(formatted("<%s>", "abc"), "<abc>");
    EXPECT_EQ(taken(StrPrintf(nullptr, "<%s>", "abc")), "<abc>");
    EXPECT_EQ(formatted("<%5s>", "abc"), "<  abc>");
    EXPECT_EQ(formatted("<%-5s>", "abc"), "<abc  >");
    EXPECT_EQ(formatted("<%.2s>", "abc"), "<ab>");
    EXPECT_EQ(formatted("<%.0s>", "abc"), "<>");
    EXPECT_EQ(formatted("<%.s>", "abc"), "<>");
    EXPECT_EQ(formatted("<%5.2s>", "abc"), "<   ab>");
    EXPECT_EQ(formatted("<%05s>", "abc"), "<  abc>"); // zeros belong to numbers
    EXPECT_EQ(formatted("<%s>", std::string("abc")), "<abc>");
}

TEST_F(Format, ANullTextPrintsItsName) {
    EXPECT_EQ(formatted("%s", nullptr), "(null)");
    EXPECT_EQ(formatted("%s", static_cast<const char*>(nullptr)), "(null)");
    EXPECT_EQ(taken(StrPrintf(nullptr, "%s", static_cast<char*>(nullptr))), "(null)");
    EXPECT_EQ(formatted("%8s", nullptr), "  (null)");
}

TEST_F(Format, ACutTextIsReadNoFurther) {
    const auto unterminated = std::make_unique<char[]>(3);
    std::fill_n(unterminated.get(), 3, 'x');
    EXPECT_EQ(formatted("%.3s", static_cast<const char*>(unterminated.get())), "xxx");
}

TEST_F(Format, Floats) {
    EXPECT_EQ(formatted("%f", 3.25), "3.250000");
    EXPECT_EQ(formatted("%F", 3.25), "3.250000");
    EXPECT_EQ(formatted("%.1f", 3.25), "3.2");
    EXPECT_EQ(formatted("%.0f", 4096.0), "4096");
    EXPECT_EQ(formatted("%.f", 4.5), "4");
    EXPECT_EQ(formatted("%8.2f", 3.25), "    3.25");
    EXPECT_EQ(formatted("%-8.2f|", 3.25), "3.25    |");
    EXPECT_EQ(formatted("%08.2f", -3.25), "-0003.25");
    EXPECT_EQ(formatted("%+.1f", 3.25), "+3.2");
    EXPECT_EQ(formatted("% .1f", 3.25), " 3.2");
    EXPECT_EQ(formatted("%.02f", 3.25), "3.25");
    EXPECT_EQ(formatted("%.2f", 3.5f), "3.50");
}

TEST_F(Format, AFloatWithoutDigitsIsPaddedWithBlanks) {
    EXPECT_EQ(formatted("%06f", std::numeric_limits<double>::quiet_NaN()), "   nan");
    EXPECT_EQ(formatted("%06f", -std::numeric_limits<double>::infinity()), "  -inf");
}

TEST_F(Format, AVariadicFloatIsADoubleUnlessItIsLong) {
    EXPECT_EQ(taken(StrPrintf(nullptr, "%.2f %d", 3.25, 7)), "3.25 7");
    EXPECT_EQ(taken(StrPrintf(nullptr, "%.2lf %d", 3.25, 7)), "3.25 7");
    EXPECT_EQ(taken(StrPrintf(nullptr, "%.2Lf %d", 3.25L, 7)), "3.25 7");
    EXPECT_EQ(taken(StrPrintf(nullptr, "%.2llf %d", 3.25L, 7)), "3.25 7");
}

TEST_F(Format, VariadicArgumentsKeepTheirOrderThroughEveryKind) {
    EXPECT_EQ(taken(StrPrintf(nullptr, "%d %lld %s %.1f %c %lX %.*s %llx", -1, 1LL << 40, "two", 0.5, 'c', 0xFFL, 2,
                  "three", ~0ULL)),
        "-1 1099511627776 two 0.5 c FF th FFFFFFFFFFFFFFFF");
}

TEST_F(Format, AVariadicLongIsReadByItsLowHalf) {
    EXPECT_EQ(taken(StrPrintf(nullptr, "%ld %ld", -5L, 6L)), "-5 6");
}

TEST_F(Format, UnknownLettersArePassedOverUpToTheNextThatConverts) {
    EXPECT_EQ(formatted("%u files: %d", 5), " 5iles: ");    // its blank is a flag; the f of files converts
    EXPECT_EQ(formatted("%u apples: %d.", 5, 6), " 5: 6."); // the s of apples converts
    EXPECT_EQ(formatted("%hd", 5), "5");
    EXPECT_EQ(formatted("%zu = %X", 5, 6), "%X"); // a percent sign ends a conversion too
}

TEST_F(Format, NoPointerNoCountAndNoExponent) {
    for (const char* format : {"%p", "%n", "%e", "%g", "%u"}) EXPECT_EQ(formatted(format, 5), "") << format;
}

TEST_F(Format, AConversionCutOffByTheEndPrintsNothing) {
    for (const char* format : {"%", "%0", "%-08", "%l", "%ll", "%.", "%5.3", "%u", "%#+ ", "%*"})
        EXPECT_EQ(formatted((std::string("a") + format).c_str(), 5), "a") << format;
}

TEST_F(Format, AMissingArgumentPrintsNothing) {
    EXPECT_EQ(formatted("<%d|%s|%f|%c|%5x>"), "<||||>");
    EXPECT_EQ(formatted("<%d%*d>", 1), "<1>");
}

TEST_F(Format, MoreArgumentsThanConversionsAreLeft) {
    EXPECT_EQ(formatted("%d", 1, 2, "three"), "1");
}

TEST_F(Format, AnArgumentOfAnotherKindPrintsAsWhatItIs) {
    EXPECT_EQ(formatted("%s", 42), "42");
    EXPECT_EQ(formatted("%s", -42), "-42");
    EXPECT_EQ(formatted("%s", UINT64_MAX), "18446744073709551615");
    EXPECT_EQ(formatted("%5s", 42), "   42");
    EXPECT_EQ(formatted("%d", "text"), "text");
    EXPECT_EQ(formatted("%6x", "text"), "  text");
    EXPECT_EQ(formatted("%c", "text"), "text");
    EXPECT_EQ(formatted("%f", "text"), "text");
    EXPECT_EQ(formatted("%f", 42), "42");
    EXPECT_EQ(formatted("%d", 1.5), "1.500000");
    EXPECT_EQ(formatted("%s", 1.5), "1.500000");
}

TEST_F(Format, BooleansEnumerationsAndPointersAreIntegers) {
    enum class Colour : u8 { RED = 200 };
    EXPECT_EQ(formatted("%d %d", true, Colour::RED), "1 200");
    int here = 0;
    EXPECT_EQ(formatted("%llX", &here), formatted("%llX", reinterpret_cast<std::uintptr_t>(&here)));
}

TEST_F(Format, WidthAndPrecisionOfNumbersAreBounded) {
    constexpr size_t kMAX = kMAX_FIELD_CHARACTERS;
    EXPECT_EQ(formatted("%999999999999999999999d", 5).size(), kMAX);
    EXPECT_EQ(formatted("%*d", INT32_MAX, 5).size(), kMAX);
    EXPECT_EQ(formatted("%*d", INT32_MIN, 5).size(), kMAX);
    EXPECT_EQ(formatted("%.999999999999999999999d", 5).size(), kMAX);
    EXPECT_EQ(formatted("%.*f", INT32_MAX, 1.5).size(), kMAX + 2);
    EXPECT_EQ(formatted("%2000000s", "").size(), kMAX);
}

TEST_F(Format, LongTextsAreNotCutByTheBound) {
    const std::string text(3 * kMAX_FIELD_CHARACTERS, 'x');
    EXPECT_EQ(formatted("%s", text), text);
    EXPECT_EQ(formatted("%.9999999s", text), text);
    EXPECT_EQ(formatted("%.*s", INT32_MAX, text), text);
    EXPECT_EQ(formatted(text.c_str()), text);
}

TEST_F(Format, ManyConversionsInOneFormat) {
    std::string format;
    for (int i = 0; i < 10000; ++i) format += "%s,";
    EXPECT_EQ(formatted(format.c_str(), "a"), "a" + std::string(10000, ','));
}

} // namespace
} // namespace memdata::testing
