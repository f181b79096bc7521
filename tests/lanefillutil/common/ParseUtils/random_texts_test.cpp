// random_texts_test.cpp - texts that nobody would write: they are read to their end, and nothing else happens.
// SPDX-License-Identifier: Apache-2.0
#include "support/alerts.h"
#include "support/parse.h"

#include <cstring>
#include <gtest/gtest.h>
#include <random>

using namespace memdata;
using memdata::testing::CapturedAlerts;
using memdata::testing::TextReader;

namespace {

constexpr const char* kPIECES[] = {"a", "x1", "0x1F", "0n2", "12", "-", ".", "..", "[", "]", ":", "\"", "'", "\\", "#",
    "##", "#if", "#{", "/", "*", "/*", "*/", "//", "\n", "\r", "\r\n", " ", "\t", "\f", "\xFF", "\xC3", "\x01", "<",
    "=", "~", "(", ")", "&&", "true", "RAM", "ram", "$", "_", "1.", "\\\n", "\\x4", "\\1", "0"};

constexpr token_type kTYPE{nullptr, 2, 0, 0};
constexpr keyword_row kROWS[] = {{"RAM", &kTYPE, false}, {"<<", &kTYPE, true}, {"$(", &kTYPE, true}, {}};
token_set gWords{kROWS};

class RandomTexts : public ::testing::Test {
protected:
    u32 below(u32 limit) { return static_cast<u32>(random_() % limit); }

    std::string text() {
        std::string text;
        for (u32 pieces = below(30); pieces != 0; --pieces) {
            const u32 piece = below(std::size(kPIECES) + 1);
            if (piece == std::size(kPIECES))
                text += '\0';
            else
                text += kPIECES[piece];
        }
        return text;
    }

    SystemResources resources_;
    std::mt19937 random_{20240229};
};

constexpr u32 kMODES = kMODE_PLAIN_QUOTES | kMODE_RAW_BACKSLASH | kMODE_WHITESPACE | kMODE_LINE_ENDS | kMODE_COMMENTS |
                       kMODE_NO_DIRECTIVES | kMODE_NO_JOINING | kMODE_MACRO_LAYOUT;

TEST_F(RandomTexts, TokensFollowEachOtherWithoutAGap) {
    CapturedAlerts alerts(0);
    for (int round = 0; round < 3000; ++round) {
        const std::string source = text();
        TextReader reader(source, &gWords);
        reader.modes(static_cast<u32>(random_()) & kMODES).base(below(3) == 0 ? 16 : 0);
        for (;;) {
            const char* position = reader->position;
            const int status = parse_token(reader, reader.token());
            ASSERT_TRUE(status == 0 || status == 3) << source;
            ASSERT_EQ(reader.token()->sourcePosition, position) << source;
            if (reader->position == reader->textEnd) break;
            ASSERT_GT(reader->position, position) << source;
        }
    }
}

TEST_F(RandomTexts, LinesAreCountedTheSameWithAndWithoutComments) {
    CapturedAlerts alerts(0);
    for (int round = 0; round < 2000; ++round) {
        const std::string source = text() + "\nlast";
        u32 lines[2];
        for (u32 i = 0; i < 2; ++i) {
            TextReader reader(source);
            reader.modes(
                kMODE_PLAIN_QUOTES | kMODE_RAW_BACKSLASH | kMODE_NO_DIRECTIVES | (i == 0 ? 0 : kMODE_COMMENTS));
            for (int tokens = 0; reader->position != reader->textEnd && tokens < 1000; ++tokens)
                ASSERT_EQ(parse_filtered_token(reader, reader.token()), 0) << source;
            lines[i] = reader->lineNumber;
        }
        ASSERT_EQ(lines[0], lines[1]) << source;
    }
}

TEST_F(RandomTexts, EveryUseOfAStreamEnds) {
    CapturedAlerts alerts(0);
    const std::string macro = "m \"n\" /* x */ #y";
    for (int round = 0; round < 3000; ++round) {
        const std::string source = text();
        TextReader reader(source, &gWords);
        reader.modes(static_cast<u32>(random_()) & kMODES);
        u32 pushed = 0;
        for (int step = 0; step < 60; ++step) {
            long status = 0;
            fileSpecType* spec = nullptr;
            long double value = 0;
            switch (below(9)) {
            case 0:
                one_token_look_ahead(reader, below(2) == 0, &status);
                break;
            case 1:
                look_ahead_stream_tokens(reader, below(4));
                break;
            case 2:
                if (reader.token()->type != nullptr) push_back_token(reader, reader.token());
                break;
            case 3:
                if (pushed < 5 && push_keyword_stream(reader, &file_path_token_set) == 0) ++pushed;
                break;
            case 4:
                push_parse_MemoryFile_stream(
                    "m", macro.data(), macro.size(), reader, below(2), nullptr, nullptr, nullptr);
                break;
            case 5:
                if (parse_file_pathname(reader, reader.token(), true, true, true, &spec) == 0) DeleteFileSpec(&spec);
                break;
            case 6:
                parse_to_EOL(reader, reader.token());
                break;
            case 7:
                Get_Expression_Value(reader, reader.token(), &value, EOLTerminators);
                break;
            default:
                get_next_token(reader, reader.token());
            }
        }
        reader.close();
    }
}

} // namespace
