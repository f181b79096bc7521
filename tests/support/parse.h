// parse.h - reads texts in tests and words the tokens that come out.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_PARSE_H
#define MEMDATA_TESTS_SUPPORT_PARSE_H

#include "ParseUtils/ParseUtils.h"
#include "SystemUtils/lifetime.h"

#include <string>
#include <string_view>

namespace memdata::testing {

// The name of a kind without its "k": "INTEGER_NUMBER". "other" for kinds of other languages, "none" for null.
std::string kindName(const token_type* type);

// "INTEGER_NUMBER(12)". Line feeds, NUL and 0xFF in texts show as \n, \0 and \xFF.
std::string tokenText(const token_element& token);

// A stream over a text in memory, read to its end or token by token. Used inside an engine lifetime.
//
//     TextReader text("a 1<<2");
//     EXPECT_EQ(text.all(), "IDENTIFIER_TOKEN(a) INTEGER_NUMBER(1) LESS_THAN(<) LESS_THAN(<) INTEGER_NUMBER(2)");
class TextReader {
public:
    // The text is copied to memory of its exact size, so that a sanitizer sees every read behind it. It shows as
    // the file named name in alerts.
    explicit TextReader(std::string_view text, token_set* keywords = nullptr, const char* name = "text.bmm");
    ~TextReader() { close(); }
    TextReader& operator=(TextReader&&) = delete; // neither copied nor moved

    operator parse_stream*() { return stream_; } // NOLINT(google-explicit-constructor)
    parse_stream* operator->() { return stream_; }
    token_element* token() { return token_.get(); }
    int openStatus() const { return openStatus_; }

    TextReader& modes(u32 mask, bool on = true);
    TextReader& base(u32 numberBase);

    // The next token as text; "status N" when reading fails.
    std::string next();
    // All tokens up to the end of the text, which is not shown, with blanks between; ends with "status N" when
    // reading fails.
    std::string all();
    int close();

private:
    std::string_view copy(std::string_view text);

    char* text_ = nullptr;
    parse_stream* stream_ = nullptr;
    int openStatus_ = 0;
    TokenOwner token_;
};

} // namespace memdata::testing

#endif
