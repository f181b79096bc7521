// message_arguments_test.cpp - catalogue codes and the rendering of their arguments.
// SPDX-License-Identifier: Apache-2.0
#include "platform/message_arguments.h"

#include <climits>

namespace {

template<class... Arguments>
std::vector<std::string> render(const char* format, const Arguments&... arguments) {
    return memdata::renderedArguments(format, memdata::formatArguments(arguments...));
}

using Texts = std::vector<std::string>;

struct CodeCase {
    const char* message;
    u32 area, number;
    const char* rest;
};

constexpr CodeCase kCODES[] = {
    {"@28-207@%s%ld", 28, 207, "%s%ld"}, {"@28-41@", 28, 41, ""}, {"no code", 0, 0, "no code"}, {"", 0, 0, ""},
    {"@28-207", 0, 0, "@28-207"}, {"@28@%s", 0, 0, "@28@%s"}, {"@-1@", 0, 0, "@-1@"},
    {"@28-99999999999@", 0, 0, "@28-99999999999@"}, // wider than 32 bits
};

} // namespace

TEST(MessageCode, IsTakenOffTheFormat) {
    for (const CodeCase& c : kCODES) {
        u32 area = 1;
        u32 number = 1;
        EXPECT_EQ(memdata::takeMessageCode(c.message, &area, &number), c.rest) << c.message;
        EXPECT_EQ(area, c.area) << c.message;
        EXPECT_EQ(number, c.number) << c.message;
    }
}

TEST(MessageArguments, FollowTheirConversions) {
    EXPECT_EQ(
        render("%s%s%08lX%0x%ld%08lX%08lX", "map", "ram", u64{0x1000}, u64{0x1fff}, 3L, u64{0x2000}, u64{0xabcdef}),
        (Texts{"map", "ram", "00001000", "1fff", "3", "00002000", "00ABCDEF"}));
}

TEST(MessageArguments, UnsignedDecimalIsAConversionHere) {
    EXPECT_EQ(render("%s%u%u", "cell", 7U, UINT_MAX), (Texts{"cell", "7", "4294967295"}));
}

TEST(MessageArguments, AddressesKeepAllTheirBits) {
    EXPECT_EQ(render("%08lX%0x%u", u64{0x1'2345'6789}, UINT64_MAX, UINT64_MAX),
        (Texts{"123456789", "ffffffffffffffff", "18446744073709551615"}));
}

TEST(MessageArguments, ANegativeNumberInHexShowsTheWidthOfItsLength) {
    EXPECT_EQ(render("%x%lx%d", -1, -1, -1), (Texts{"ffffffff", "ffffffffffffffff", "-1"}));
}

TEST(MessageArguments, FieldsAreFilled) {
    EXPECT_EQ(render("%5d%-5d%05d%5s%c", 42, 42, -42, "ab", 'x'), (Texts{"   42", "42   ", "-0042", "   ab", "x"}));
}

TEST(MessageArguments, WithoutAConversionAreRenderedByTheirOwnKind) {
    EXPECT_EQ(render("", "text", 12, -3L, 0.5, std::string("string")), (Texts{"text", "12", "-3", "0.5", "string"}));
}

TEST(MessageArguments, OfAnotherKindThanTheirConversionAreRenderedByTheirOwn) {
    EXPECT_EQ(render("%d%s", "text", 12), (Texts{"text", "12"}));
}

TEST(MessageArguments, ANullTextShowsAsSuch) {
    EXPECT_EQ(render("%s%s", nullptr, static_cast<const char*>(nullptr)), (Texts{"(null)", "(null)"}));
}

TEST(MessageArguments, MissingOnesAreMissing) {
    EXPECT_EQ(render("%s%s", "one"), (Texts{"one"}));
}

TEST(MessageArguments, TextBetweenConversionsAndBrokenConversionsHarmNothing) {
    EXPECT_EQ(render("100%% of %s at %", "all", 1), (Texts{"all", "1"}));
    EXPECT_EQ(render("%9999999999d", 1)[0].size(), 64U);
}
