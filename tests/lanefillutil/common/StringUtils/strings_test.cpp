// strings_test.cpp - managed strings: layout, copies, joins, tokens, and who releases what.
// SPDX-License-Identifier: Apache-2.0
#include "string_test.h"

#include "support/allocation_faults.h"

#include <climits>
#include <cstring>
#include <functional>

namespace memdata::testing {
namespace {

class Strings : public StringTest {};

const MemoryBlockType* block_of(const char* s) {
    return reinterpret_cast<const MemoryBlockType*>(s - 16) - 1;
}

TEST_F(Strings, ANewStringIsEmptyWithTwentyFourBytesBesideItsCapacity) {
    const OwnedString s(StrNew("a name", 10));
    EXPECT_STREQ(s.get(), "");
    EXPECT_EQ(block_of(s.get())->size, 34u);
    EXPECT_STREQ(block_of(s.get())->description, "a name");
}

TEST_F(Strings, ANewStringIsZeroBehindItsCapacityToo) {
    const OwnedString s(StrNew("a name", 10));
    EXPECT_EQ(std::string(s.get(), 18), std::string(18, '\0'));
}

TEST_F(Strings, FlagsAndAttributeStandInFrontOfTheCharacters) {
    const OwnedString s(StrNew("a name", 10));
    int word = 0;
    StrSetAttribute(s.get(), &word);
    u32 flags[2];
    void* attribute;
    std::memcpy(flags, s.get() - 16, 8);
    std::memcpy(&attribute, s.get() - 8, 8);
    EXPECT_EQ(flags[0], 1u);
    EXPECT_EQ(flags[1], 0u);
    EXPECT_EQ(attribute, &word);
}

TEST_F(Strings, TheBlockOfAStringKnowsWhoMadeIt) {
    const OwnedString s(_StrNew("somewhere.cpp", 12, "a name", 1));
    EXPECT_STREQ(block_of(s.get())->sourceFile, "somewhere.cpp");
    EXPECT_EQ(block_of(s.get())->line, 12u);
}

TEST_F(Strings, ALengthBeyondTheMachineIsRefused) {
    const QuietAlerts quiet;
    EXPECT_EQ(StrNew("too much", ULONG_MAX), nullptr);
    EXPECT_EQ(StrNew("too much", ULONG_MAX - 23), nullptr);
}

TEST_F(Strings, DeletingNullReturnsZeroAndDoesNothing) {
    EXPECT_EQ(StrDelete(nullptr), 0);
}

TEST_F(Strings, DeletingAStringReturnsOneAndGivesItsBytesBack) {
    EXPECT_EQ(StrDelete(managed("text")), 1);
}

TEST_F(Strings, DeletingAStringTwiceIsReported) {
    const QuietAlerts quiet;
    char* s = managed("text");
    StrDelete(s);
    const u64 usage = getCurrentMemoryUsage();
    StrDelete(s);
    EXPECT_EQ(getCurrentMemoryUsage(), usage);
}

TEST_F(Strings, TheAttributeOfNullIsNull) {
    StrSetAttribute(nullptr, this);
    EXPECT_EQ(StrGetAttribute(nullptr), nullptr);
}

TEST_F(Strings, TheAttributeReadsBack) {
    const OwnedString s(managed("text"));
    EXPECT_EQ(StrGetAttribute(s.get()), nullptr);
    StrSetAttribute(s.get(), this);
    EXPECT_EQ(StrGetAttribute(s.get()), this);
}

TEST_F(Strings, ACopyHoldsTheTextAndNotTheAttribute) {
    const OwnedString s(managed("text"));
    StrSetAttribute(s.get(), this);
    const OwnedString copy(StrDup(s.get()));
    EXPECT_STREQ(copy.get(), "text");
    EXPECT_NE(copy.get(), s.get());
    EXPECT_EQ(StrGetAttribute(copy.get()), nullptr);
}

TEST_F(Strings, CopiesOfNullAreNull) {
    EXPECT_EQ(StrDup(nullptr), nullptr);
    EXPECT_EQ(StrNDup(nullptr, 3), nullptr);
    EXPECT_EQ(StrSubDup(nullptr, nullptr), nullptr);
}

TEST_F(Strings, StrNDupCopiesSoManyCharactersAtMost) {
    EXPECT_EQ(taken(StrNDup("abcdef", 3)), "abc");
    EXPECT_EQ(taken(StrNDup("abc", 30)), "abc");
    EXPECT_EQ(taken(StrNDup("abc", ULONG_MAX)), "abc");
    EXPECT_EQ(taken(StrNDup("abc", 0)), "");
}

TEST_F(Strings, StrNDupReadsNoFurtherThanItCopies) {
    const std::string open(3, 'x');
    const auto unterminated = std::make_unique<char[]>(3);
    open.copy(unterminated.get(), 3);
    EXPECT_EQ(taken(StrNDup(unterminated.get(), 3)), "xxx");
}

TEST_F(Strings, StrSubDupCopiesTheInclusiveSpan) {
    const char* text = "abcdef";
    EXPECT_EQ(taken(StrSubDup(text + 1, text + 3)), "bcd");
    EXPECT_EQ(taken(StrSubDup(text + 2, text + 2)), "c");
    EXPECT_EQ(taken(StrSubDup(text + 2, text + 1)), "");
}

TEST_F(Strings, JoinsThatReleaseNothing) {
    const OwnedString a(managed("ab"));
    const OwnedString b(managed("cdef"));
    EXPECT_EQ(taken(StrCat(a.get(), b.get())), "abcdef");
    EXPECT_EQ(taken(StrDupCat(a.get(), b.get())), "abcdef");
    EXPECT_EQ(taken(StrNCat(a.get(), b.get(), 2)), "abcd");
    EXPECT_EQ(taken(StrNCat(a.get(), b.get(), 20)), "abcdef");
}

TEST_F(Strings, StrNewCatReleasesBoth) {
    EXPECT_EQ(taken(StrNewCat(managed("ab"), managed("cd"))), "abcd");
}

TEST_F(Strings, StrNewCatOfAStringWithItselfReleasesItOnce) {
    char* s = managed("ab");
    EXPECT_EQ(taken(StrNewCat(s, s)), "abab");
}

TEST_F(Strings, StrPreCatReleasesTheSecond) {
    const OwnedString a(managed("ab"));
    EXPECT_EQ(taken(StrPreCat(a.get(), managed("cd"))), "abcd");
    EXPECT_EQ(taken(StrPreNCat(a.get(), managed("cdef"), 1)), "abc");
}

TEST_F(Strings, StrPostCatReleasesTheFirst) {
    const OwnedString b(managed("cdef"));
    EXPECT_EQ(taken(StrPostCat(managed("ab"), b.get())), "abcdef");
    EXPECT_EQ(taken(StrPostNCat(managed("ab"), b.get(), 1)), "abc");
}

TEST_F(Strings, ANullOperandOfAJoinReadsAsAnEmptyText) {
    EXPECT_EQ(taken(StrCat(nullptr, "b")), "b");
    EXPECT_EQ(taken(StrCat("a", nullptr)), "a");
    EXPECT_EQ(taken(StrCat(nullptr, nullptr)), "");
    EXPECT_EQ(taken(StrNCat("a", nullptr, 3)), "a");
    EXPECT_EQ(taken(StrNewCat(nullptr, nullptr)), "");
    EXPECT_EQ(taken(StrPreCat(nullptr, nullptr)), "");
    EXPECT_EQ(taken(StrPreNCat("a", nullptr, 3)), "a");
    EXPECT_EQ(taken(StrPostCat(nullptr, "b")), "b");
    EXPECT_EQ(taken(StrPostNCat(nullptr, "b", 3)), "b");
}

TEST_F(Strings, AnOperandMayPointIntoTheOneThatIsReleased) {
    char* s = managed("path/leaf");
    EXPECT_EQ(taken(StrPostCat(s, s + 4)), "path/leaf/leaf");
}

// Each run makes all that it needs and returns a status; when its n-th allocation fails it must end with nothing in
// use, so every operand that the function releases was released on the way out too.
struct FaultCase {
    const char* name;
    u64 allocationCount;
    std::function<char*()> make;
};

TEST_F(Strings, WhenMemoryRunsOutTheResultIsNullAndReleasedOperandsAreReleased) {
    const FaultCase cases[] = {
        {"StrNew", 1, [] { return StrNew("a name", 5); }},
        {"StrDup", 1, [] { return StrDup("ab"); }},
        {"StrNDup", 1, [] { return StrNDup("ab", 1); }},
        {"StrSubDup", 1,
            [] {
                static const char kTEXT[] = "ab";
                return StrSubDup(kTEXT, kTEXT);
            }},
        {"StrCat", 1, [] { return StrCat("ab", "cd"); }},
        {"StrNCat", 1, [] { return StrNCat("ab", "cd", 1); }},
        {"StrNewCat", 3,
            [] {
                OwnedString a(managed("ab"));
                OwnedString b(managed("cd"));
                return a && b ? StrNewCat(a.release(), b.release()) : nullptr;
            }},
        {"StrPreCat", 2,
            [] {
                char* b = managed("cd");
                return b ? StrPreCat("ab", b) : nullptr;
            }},
        {"StrPreNCat", 2,
            [] {
                char* b = managed("cd");
                return b ? StrPreNCat("ab", b, 1) : nullptr;
            }},
        {"StrPostCat", 2,
            [] {
                char* a = managed("ab");
                return a ? StrPostCat(a, "cd") : nullptr;
            }},
        {"StrPostNCat", 2,
            [] {
                char* a = managed("ab");
                return a ? StrPostNCat(a, "cd", 1) : nullptr;
            }},
        {"StrPrintf", 2,
            [] {
                char* s = managed("ab");
                return s ? StrPrintf(s, "%d", 1) : nullptr;
            }},
        {"NumToStr", 1, [] { return NumToStr(5, 10, nullptr); }},
        {"FloatToStr", 1, [] { return FloatToStr(5, 2, nullptr); }},
        {"digits_to_string", 1, [] { return digits_to_string(5, 0, 10, nullptr); }},
    };
    for (const FaultCase& c : cases) {
        const FaultSweep sweep = sweepAllocationFaults([&c] { return StrDelete(c.make()) == 1 ? 0 : 7; });
        EXPECT_EQ(sweep.failures, "") << c.name;
        EXPECT_EQ(sweep.allocationCount, c.allocationCount) << c.name;
    }
}

TEST_F(Strings, ARefusedAllocationRaisesTheFatalAlert) {
    ::testing::internal::CaptureStdout();
    failTrackedAllocation(1);
    EXPECT_EQ(StrDup("text"), nullptr);
    std::fflush(stdout);
    EXPECT_NE(::testing::internal::GetCapturedStdout().find("Out of memory allocating"), std::string::npos);
}

// Takes every token of a text; separators found are shown behind each, '$' for the end of the text.
std::string tokens(const char* text, const char* separators) {
    OwnedString copy(managed(text));
    std::string all;
    char* cursor = copy.get();
    char found = '\0';
    while (char* token = StrTok(&cursor, separators, &found))
        all += "[" + taken(token) + "]" + (found == '\0' ? '$' : found);
    return all;
}

TEST_F(Strings, StrTokGivesTheTextBeforeEachSeparator) {
    EXPECT_EQ(tokens("a/b.c", "/."), "[a]/[b].[c]$");
}

TEST_F(Strings, StrTokSkipsAllConsecutiveSeparatorsAndNamesTheFirst) {
    EXPECT_EQ(tokens("a/ //b", "/ "), "[a]/[b]$");
}

TEST_F(Strings, StrTokGivesAnEmptyTokenAtALeadingSeparator) {
    EXPECT_EQ(tokens("//a", "/"), "[]/[a]$");
}

TEST_F(Strings, StrTokEndsBehindTrailingSeparators) {
    EXPECT_EQ(tokens("a//", "/"), "[a]/");
}

TEST_F(Strings, StrTokWithoutSeparatorsGivesTheRest) {
    EXPECT_EQ(tokens("a/b", ""), "[a/b]$");
    EXPECT_EQ(tokens("a/b", nullptr), "[a/b]$");
}

TEST_F(Strings, StrTokAtAnEmptyTextIsNull) {
    char empty[] = "";
    char* cursor = empty;
    char found = 'x';
    EXPECT_EQ(StrTok(&cursor, "/", &found), nullptr);
    EXPECT_EQ(found, '\0');
    cursor = nullptr;
    EXPECT_EQ(StrTok(&cursor, "/", &found), nullptr);
    EXPECT_EQ(StrTok(nullptr, "/", nullptr), nullptr);
}

TEST_F(Strings, StrTokKeepsItsPlaceWhenMemoryRunsOut) {
    const QuietAlerts quiet;
    char text[] = "a/b";
    char* cursor = text;
    char found = 'x';
    failTrackedAllocation(1);
    EXPECT_EQ(StrTok(&cursor, "/", &found), nullptr);
    EXPECT_EQ(cursor, text);
    EXPECT_EQ(found, '\0');
}

TEST_F(Strings, StrCharReplaceWorksInPlace) {
    char text[] = "a\\b\\c";
    EXPECT_EQ(StrCharReplace(text, '\\', '/'), text);
    EXPECT_STREQ(text, "a/b/c");
    EXPECT_EQ(StrCharReplace(nullptr, 'a', 'b'), nullptr);
}

TEST_F(Strings, StrCharReplaceCutsAtEveryPlaceWhenItWritesNul) {
    char text[] = "a,b,c";
    StrCharReplace(text, ',', '\0');
    EXPECT_EQ(std::string(text, 5), std::string("a\0b\0c", 5));
}

struct LastCase {
    const char* haystack;
    const char* needle;
    int place; // -1: none
};

TEST_F(Strings, StrrstrFindsTheLastOccurrenceSteppingByTheNeedle) {
    constexpr LastCase kCASES[] = {
        {"a.b.c", ".", 3},
        {"abcabc", "abc", 3},
        {"abc", "x", -1},
        {"aaa", "aa", 0}, // the overlapping one at 1 is not seen
        {"aaaa", "aa", 2},
        {"", "a", -1},
        {"abc", "", 3}, // the end
        {"", "", 0},
    };
    for (const LastCase& c : kCASES) {
        const char* found = strrstr(c.haystack, c.needle);
        EXPECT_EQ(found, c.place < 0 ? nullptr : c.haystack + c.place) << c.haystack << " " << c.needle;
    }
    EXPECT_EQ(strrstr(nullptr, "a"), nullptr);
    EXPECT_EQ(strrstr("a", nullptr), nullptr);
}

TEST_F(Strings, AnOwnerReleasesWhatItHolds) {
    OwnedString owner(managed("first"));
    owner.reset(managed("second"));
    OwnedString other(std::move(owner));
    EXPECT_STREQ(other.get(), "second");
    *owner.out() = managed("third");
    owner = std::move(other);
    EXPECT_STREQ(owner.get(), "second");
    EXPECT_EQ(StrDelete(owner.release()), 1);
}

} // namespace
} // namespace memdata::testing
