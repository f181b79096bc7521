// message_catalogue_test.cpp - every catalogue code has a text with its arguments placed, and prints as one line.
// SPDX-License-Identifier: Apache-2.0
#include "hosts/standalone/message_catalogue.h"

#include "platform/ComMsgMgr.h"
#include "support/host_messages.h"

#include <array>
#include <sys/socket.h>
#include <unistd.h>

namespace {

using memdata::CatalogueText;
using memdata::findCatalogueText;
using memdata::messageCatalogue;
using memdata::testing::CapturedMessages;

// The codes that the library sends, each with its arguments as it sends them.
struct SentCode {
    u32 number;
    const char* format;
};

constexpr SentCode kSENT_CODES[] = {
    {41, "%s%s"},
    {51, ""},
    {52, ""},
    {58, "%s"},
    {68, ""},
    {79, ""},
    {80, ""},
    {82, ""},
    {83, ""},
    {84, ""},
    {94, "%s"},
    {95, "%s"},
    {96, "%s"},
    {122, ""},
    {123, ""},
    {126, "%s"},
    {127, ""},
    {142, ""},
    {144, "%s"},
    {145, ""},
    {146, "%s"},
    {147, ""},
    {153, "%s"},
    {154, ""},
    {155, ""},
    {156, "%s"},
    {158, ""},
    {160, "%s%s"},
    {161, ""},
    {163, "%s"},
    {164, ""},
    {167, "%s%s%s%s%s"},
    {168, "%s%s%s%s%s"},
    {175, "%u"},
    {176, ""},
    {203, "%s"},
    {206, "%s"},
    {207, "%s%s%08lX%0x%ld%08lX%08lX"},
    {208, "%s%s"},
    {209, "%s"},
    {229, "%s"},
    {231, "%s"},
    {232, "%s%s%s%s%s"},
    {235, "%s%s"},
    {254, "%s%u%u"},
    {255, "%s%u%u"},
    {256, "%s"},
    {257, "%s"},
    {258, "%s"},
    {259, "%s"},
    {260, "%s"},
    {261, "%s%s"},
    {262, "%s"},
    {263, "%s"},
    {264, "%s"},
    {265, "%s%s"},
    {266, "%s%s"},
    {267, "%s"},
    {282, "%s"},
    {283, "%s"},
    {284, "%s"},
    {285, "%s"},
    {286, "%s"},
    {287, "%s"},
    {288, "%s"},
    {290, ""},
    {291, ""},
    {292, ""},
    {293, ""},
    {294, ""},
    {295, ""},
    {296, "%s"},
    {297, "%s"},
    {298, "%s"},
    {299, "%s"},
    {300, "%s%s"},
    {305, "%s"},
    {307, "%s%s"},
    {308, "%s"},
    {309, "%s%s%s"},
    {310, "%s%s"},
    {332, "%s"},
    {335, "%s"},
    {336, "%s"},
    {337, "%s%s"},
    {338, "%s"},
    {339, "%s%s"},
    {341, "%s%s"},
    {342, "%s%s"},
    {359, "%s"},
    {361, ""},
    {363, ""},
};

size_t countOf(std::string_view text, char wanted) {
    return static_cast<size_t>(std::ranges::count(text, wanted));
}

std::string place(size_t number) {
    return "{" + std::to_string(number) + "}";
}

// The line of the standalone host for one message.
template<class... Arguments>
std::string line(u32 severity, const char* format, const Arguments&... arguments) {
    CapturedMessages captured;
    ComMsgMgr::sendMsg::eval("memdata", severity, format, arguments...);
    return captured.lines();
}

// Standard error as a socket that keeps the bounds of writes.
class WritesToStandardError {
public:
    WritesToStandardError() : saved_(dup(STDERR_FILENO)) {
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_DGRAM, 0, ends_.data()), 0);
        dup2(ends_[1], STDERR_FILENO);
    }
    ~WritesToStandardError() {
        dup2(saved_, STDERR_FILENO);
        for (const int descriptor : {saved_, ends_[0], ends_[1]}) close(descriptor);
    }
    WritesToStandardError& operator=(WritesToStandardError&&) = delete; // neither copied nor moved

    // The next write; empty when there was none.
    std::string next() const {
        std::string text(100'000, '\0');
        const ssize_t count = recv(ends_[0], text.data(), text.size(), MSG_DONTWAIT);
        text.resize(count < 0 ? 0 : static_cast<size_t>(count));
        return text;
    }

private:
    int saved_;
    std::array<int, 2> ends_{};
};

} // namespace

TEST(MessageCatalogue, HoldsTheCodesThatTheLibrarySendsAndNoOthers) {
    std::vector<u32> expected;
    std::vector<u32> held;
    for (const SentCode& code : kSENT_CODES) expected.push_back(code.number);
    for (const CatalogueText& row : messageCatalogue()) held.push_back(row.number);
    EXPECT_EQ(held, expected);
    EXPECT_EQ(held.size(), 92U);
}

TEST(MessageCatalogue, KnowsTheArgumentsOfEachCode) {
    for (const SentCode& code : kSENT_CODES) {
        const CatalogueText* row = findCatalogueText(28, code.number);
        ASSERT_NE(row, nullptr) << code.number;
        EXPECT_STREQ(row->format, code.format) << code.number;
    }
}

TEST(MessageCatalogue, PlacesEachArgumentAndNoOther) {
    for (const CatalogueText& row : messageCatalogue()) {
        const std::string text = row.text;
        const size_t argumentCount = countOf(row.format, '%');
        for (size_t number = 1; number <= argumentCount; ++number)
            EXPECT_THAT(text, ::testing::HasSubstr(place(number))) << row.number;
        EXPECT_EQ(countOf(text, '{'), argumentCount) << row.number; // each once
        EXPECT_EQ(countOf(text, '}'), argumentCount) << row.number;
    }
}

// A full sentence at least, without marks of a format or of layout.
TEST(MessageCatalogue, TextsAreSentences) {
    for (const CatalogueText& row : messageCatalogue()) {
        const std::string text = row.text;
        EXPECT_GT(text.size(), 30U) << row.number;
        EXPECT_TRUE(text.ends_with('.') || text.ends_with('}')) << row.number;
        EXPECT_EQ(text.find_first_of("%\n\t@"), std::string::npos) << row.number;
        EXPECT_EQ(text.find("  "), std::string::npos) << row.number;
    }
}

TEST(MessageCatalogue, EachTextHasASeverityOfItsOwn) {
    for (const CatalogueText& row : messageCatalogue()) {
        const bool isMask = row.severity == ComMsgMgr::kSTATUS || row.severity == ComMsgMgr::kINFO ||
                            row.severity == ComMsgMgr::kWARNING || row.severity == ComMsgMgr::kCRITICAL_WARNING ||
                            row.severity == ComMsgMgr::kERROR;
        EXPECT_TRUE(isMask) << row.number;
    }
}

TEST(MessageLine, SeverityIsTheSendersMask) {
    EXPECT_THAT(line(0x2000000, "@28-290@"), ::testing::StartsWith("STATUS: [memdata 28-290] "));
    EXPECT_THAT(line(0x4000000, "@28-290@"), ::testing::StartsWith("INFO: [memdata 28-290] "));
    EXPECT_THAT(line(0x8000000, "@28-290@"), ::testing::StartsWith("WARNING: [memdata 28-290] "));
    EXPECT_THAT(line(0x10000000, "@28-290@"), ::testing::StartsWith("CRITICAL WARNING: [memdata 28-290] "));
    EXPECT_THAT(line(0x20000000, "@28-290@"), ::testing::StartsWith("ERROR: [memdata 28-290] "));
}

TEST(MessageLine, APlainNumberGivesTheSeverityOfTheCode) {
    EXPECT_THAT(line(0, "@28-290@"), ::testing::StartsWith("WARNING: "));
    EXPECT_THAT(line(1, "@28-203@%s", "tag"), ::testing::StartsWith("ERROR: "));
}

TEST(MessageLine, SaysWhatWasSentInItsPlaces) {
    EXPECT_EQ(line(ComMsgMgr::kERROR, "@28-207@%s%s%08lX%0x%ld%08lX%08lX", "top.bmm", "ram", u64{0x1000}, u64{0x1fff},
                  2L, u64{0x1800}, u64{0x27ff}),
        "ERROR: [memdata 28-207] In address map 'top.bmm', address space 'ram' holds 0x00001000 to 0x1fff, and segment "
        "2 of the data file, 0x00001800 to 0x000027FF, does not fit into it. Link the program for that range, or "
        "enlarge the address space.\n");
}

TEST(MessageLine, ArgumentsArePlacedWithAndWithoutTheirFormat) {
    const std::string named = "ERROR: [memdata 28-209] The name 'ram' is given to more than one address space or "
                              "address map. Give each of them a name of its own.\n";
    EXPECT_EQ(line(ComMsgMgr::kERROR, "@28-209@", "ram"), named);
    EXPECT_EQ(line(ComMsgMgr::kERROR, "@28-209@%s", "ram"), named);
}

TEST(MessageLine, ArgumentsWithoutAPlaceFollowTheText) {
    EXPECT_THAT(line(ComMsgMgr::kERROR, "@28-209@%s%s%d", "ram", "a.bmm", 7),
        ::testing::EndsWith("a name of its own. (a.bmm, 7)\n"));
}

TEST(MessageLine, APlaceWithoutAnArgumentSaysSo) {
    EXPECT_THAT(line(ComMsgMgr::kERROR, "@28-209@"), ::testing::HasSubstr("The name '(not given)' is given"));
}

TEST(MessageLine, AnArgumentThatLooksLikeAPlaceStaysText) {
    EXPECT_THAT(line(ComMsgMgr::kERROR, "@28-300@%s%s", "{2}", "a.bmm"), ::testing::HasSubstr("'{2}' in file 'a.bmm'"));
}

TEST(MessageLine, AnUnknownCodeShowsItsArguments) {
    EXPECT_EQ(line(ComMsgMgr::kWARNING, "@28-9999@%s%lx", "name", 255),
        "WARNING: [memdata 28-9999] There is no text for this message. (name, ff)\n");
    EXPECT_EQ(line(0, "@29-203@"), "WARNING: [memdata 29-203] There is no text for this message.\n");
}

TEST(MessageLine, ATextWithoutACodeIsShown) {
    EXPECT_EQ(line(ComMsgMgr::kINFO, "no code", 5), "INFO: [memdata] no code (5)\n");
}

TEST(MessageLine, ControlCharactersShowAsEscapes) {
    EXPECT_THAT(line(ComMsgMgr::kERROR, "@28-209@%s", "a\nb\x1B[2J\x7F\xC3\xA4"),
        ::testing::HasSubstr("'a\\nb\\x1B[2J\\x7F\xC3\xA4'"));
}

TEST(MessageLine, GoesToStandardErrorInOneWrite) {
    const std::string longName(20'000, 'n');
    const WritesToStandardError writes;
    ComMsgMgr::sendMsg::eval("memdata", ComMsgMgr::kERROR, "@28-203@%s", "tag");
    ComMsgMgr::sendMsg::eval("memdata", ComMsgMgr::kERROR, "@28-203@%s", longName);
    const std::string first = writes.next();
    const std::string second = writes.next();
    EXPECT_EQ(first, "ERROR: [memdata 28-203] No address space and no address map is named 'tag'. Check the tag given "
                     "with the data file against the names in the address map.\n");
    EXPECT_THAT(second, ::testing::HasSubstr(longName));
    EXPECT_TRUE(second.ends_with("\n"));
    EXPECT_EQ(writes.next(), "");
}
