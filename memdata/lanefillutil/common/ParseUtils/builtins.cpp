// builtins.cpp - macros that are always there.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/directive_line.h"
#include "ParseUtils/directives.h"

#include <cstring>
#include <ctime>
#include <utility>

using namespace memdata;

namespace {

constexpr size_t kTIME_BYTES = 13;

std::tm local_now() {
    const std::time_t seconds = std::time(nullptr);
    std::tm local{};
    localtime_r(&seconds, &local);
    return local;
}

int date_value(parse_stream*, token_element*, OwnedString* text) {
    char date[kTIME_BYTES] = {};
    const std::tm local = local_now();
    std::strftime(date, sizeof date, "%b %d %Y", &local);
    text->reset(StrDup(date));
    return 0;
}

int time_value(parse_stream*, token_element*, OwnedString* text) {
    char time[kTIME_BYTES] = {};
    const std::tm local = local_now();
    std::strftime(time, sizeof time, "%I:%M:%S %p", &local);
    text->reset(StrDup(time));
    return 0;
}

int truth(bool value, OwnedString* text) {
    text->reset(StrDup(value ? "1" : "0"));
    return 0;
}

int defined_value(parse_stream* stream, token_element* token, OwnedString* text) {
    bool isDefined = false;
    if (int status = is_macro_defined(stream, token, &isDefined); status != 0) return status;
    return truth(isDefined, text);
}

int line_value(parse_stream* stream, token_element*, OwnedString* text) {
    text->reset(appendFormat(nullptr, "%ld", get_stream_line_number(stream)));
    return 0;
}

struct BuiltinRow {
    const token_type* type;
    int (*value)(parse_stream* stream, token_element* token, OwnedString* text); // no text: memory is exhausted
};

constexpr BuiltinRow kBUILTINS[] = {
    {&kPREPROCESS_DEFINED_KEYWORD, defined_value},
    {&kPREPROCESS_TRUE_KEYWORD, [](parse_stream*, token_element*, OwnedString* text) { return truth(true, text); }},
    {&kPREPROCESS_FALSE_KEYWORD, [](parse_stream*, token_element*, OwnedString* text) { return truth(false, text); }},
    {&kPREPROCESS_FILE_KEYWORD,
        [](parse_stream* stream, token_element*, OwnedString* text) {
            text->reset(StrDup(get_stream_file_name(stream)));
            return 0;
        }},
    {&kPREPROCESS_LINE_KEYWORD, line_value},
    {&kPREPROCESS_DATE_KEYWORD, date_value},
    {&kPREPROCESS_TIME_KEYWORD, time_value},
};

const BuiltinRow* builtin_row(const token_type* type) {
    for (const BuiltinRow& row : kBUILTINS)
        if (row.type == type) return &row;
    return nullptr;
}

} // namespace

bool do_builtin_macro(parse_stream* stream, token_element* token, int* status) {
    const BuiltinRow* row = builtin_row(token->type);
    if (row == nullptr) return false;
    if (token->type == &kPREPROCESS_DEFINED_KEYWORD && !test_parse_modes(stream, kMODE_DEFINED, true)) return false;
    OwnedString text;
    *status = row->value(stream, token, &text);
    if (*status != 0) return false;
    if (text == nullptr) {
        *status = 7;
        return false;
    }
    const auto length = static_cast<u32>(std::strlen(text.get()));
    *status = pushRescan(stream, std::move(text), length);
    return *status == 0;
}
