// preprocess_test.h - preprocesses texts of tests.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_PREPROCESS_TEST_H
#define MEMDATA_TESTS_PREPROCESS_TEST_H

#include "ParseUtils/ParseUtils.h"
#include "SystemUtils/lifetime.h"
#include "support/alerts.h"
#include "support/parse.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace memdata::testing {

class PreprocessTest : public ::testing::Test {
protected:
    PreprocessTest() { RegisterSystemToolName("Lanefill"); }

    // The texts of all tokens, with blanks between; "status N" when it fails.
    static std::string read(std::string_view text) {
        TextReader reader(text);
        return joined(reader, reader.token());
    }
    static std::string joined(parse_stream* stream, token_element* token) {
        std::string all;
        for (;;) {
            const int status = get_next_token(stream, token);
            if (status == 0 && token->type == &kEND_OF_FILE) return all;
            if (!all.empty()) all += ' ';
            if (status != 0) return all + "status " + std::to_string(status);
            all += std::string(token->text, token->length);
        }
    }
    // What is said while a text is read to its end and closed; ends with the status of the failure.
    static std::string alertsOf(std::string_view text) {
        CapturedAlerts alerts;
        TextReader reader(text);
        std::string tokens = joined(reader, reader.token());
        const int closed = reader.close();
        const size_t failure = tokens.rfind("status ");
        if (failure != std::string::npos) return alerts.text() + tokens.substr(failure);
        return alerts.text() + "status " + std::to_string(closed);
    }
    // An alert about the only line of a text, with the caret so many columns in.
    static std::string alertAt(const std::string& message, const std::string& line, size_t column, u32 number = 1) {
        return "\nERROR:Lanefill:" + message + "\n   Line #" + std::to_string(number) + ", File \"text.bmm\".\n" +
               line + "\n" + std::string(column, ' ') + "^\n\n";
    }

    SystemResources resources_;
};

} // namespace memdata::testing

#endif
