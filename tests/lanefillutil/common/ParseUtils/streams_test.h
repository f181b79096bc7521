// streams_test.h - what the tests of parse streams share: two keyword sets with a word in common, and a fixture.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_PARSE_UTILS_STREAMS_TEST_H
#define MEMDATA_TESTS_PARSE_UTILS_STREAMS_TEST_H

#include "support/alerts.h"
#include "support/parse.h"

#include <cstring>
#include <gtest/gtest.h>

namespace memdata::testing {

inline constexpr token_type kA{nullptr, 2, 0, 0};
inline constexpr token_type kB{nullptr, 2, 1, 0};
inline constexpr keyword_row kROWS_A[] = {{"a", &kA, true}, {"x", &kA, true}, {}};
inline constexpr keyword_row kROWS_B[] = {{"b", &kB, true}, {"x", &kB, true}, {}};
inline token_set gSetA{kROWS_A};
inline token_set gSetB{kROWS_B};

// A letter for each token up to the end: A or B for a word of the sets, "-" for others, "!" where reading fails.
inline std::string kindsOf(TextReader& text) {
    std::string kinds;
    for (;;) {
        if (get_next_token(text, text.token()) != 0) return kinds + "!";
        const token_type* type = text.token()->type;
        if (type == &kEND_OF_FILE) return kinds;
        kinds += type == &kA ? 'A' : type == &kB ? 'B' : '-';
    }
}

class StreamTest : public ::testing::Test {
protected:
    StreamTest() { RegisterSystemToolName("Lanefill"); }

    static int pushText(parse_stream* stream, const char* text, u32 state = 0) {
        return push_parse_MemoryFile_stream("m", text, std::strlen(text), stream, state, nullptr, nullptr, nullptr);
    }

    SystemResources resources_;
};

} // namespace memdata::testing

#endif
