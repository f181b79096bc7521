// names.cpp - the names in an address map.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/names.h"

#include "BmmUtils/syntax.h"
#include "ParseUtils/characters.h"
#include "ParseUtils/look_ahead.h"
#include "ParseUtils/scanner.h"
#include "StringUtils/StringUtils.h"

#include <cstring>
#include <string_view>

using namespace memdata;

namespace {

// A name ends at a blank, also inside macros.
constexpr u32 kNAME_MODES = kMODE_WHITESPACE | kMODE_LINE_ENDS | kMODE_MACRO_LAYOUT;
constexpr u32 kSUFFIX_MODES = kMODE_NO_DIRECTIVES | kMODE_LINE_ENDS | kMODE_WHITESPACE;

constexpr const char* kNAME_EXPECTED = "BRAM instance name";
constexpr const char* kPIECE_EXPECTED = "BRAM instance path name";
constexpr std::string_view kLEGACY_PROCESSOR = "kestrel_";
constexpr std::string_view kLEGACY_COMBINED = "_combined";

bool is_layout(const token_element* token) {
    return token->type == &kWHITESPACE_TOKEN || token->type == &kEND_OF_LINE;
}

bool is_separator(const token_element* token) {
    return token->type == &kDIVIDE || token->type == &kPERIOD;
}

// "*/" that was read without the words of instance paths is the end of a comment that was never opened.
bool is_relative_mark(const token_element* token) {
    return token->type == &kRELATIVE_INSTANCE_PATH_TOKEN || token->type == &kEND_C_COMMENT;
}

void append(std::string* name, const token_element* token) {
    name->append(token->text, token->length);
}

// Whether "[", a number or a word that stands for one, and "]" come next, with nothing between them.
bool bracket_follows(parse_stream* stream) {
    const token_element* next = look_ahead_stream_tokens(stream, 0);
    if (next == nullptr || next->type != &kLEFT_BRACKET) return false;
    next = look_ahead_stream_tokens(stream, 1);
    if (next == nullptr || (next->type != &kINTEGER_NUMBER && next->type != &kIDENTIFIER_TOKEN)) return false;
    next = look_ahead_stream_tokens(stream, 2);
    return next != nullptr && next->type == &kRIGHT_BRACKET;
}

// The piece in token and the brackets that touch it.
int append_piece(parse_stream* stream, token_element* token, std::string* name) {
    append(name, token);
    while (bracket_follows(stream)) {
        do {
            if (int status = get_next_token(stream, token); status != 0) return status;
            // A macro in the brackets may stand for anything.
            if (token->type == &kEND_OF_FILE || is_layout(token)) return refuseSymbol(stream, token, kPIECE_EXPECTED);
            append(name, token);
        } while (token->type != &kRIGHT_BRACKET);
    }
    return get_next_token(stream, token);
}

int pass_relative_marks(parse_stream* stream, token_element* token, bool* relative) {
    if (token->type != &kDIVIDE && !is_relative_mark(token)) return 0;
    *relative = true;
    while (is_separator(token) || is_relative_mark(token))
        if (int status = get_next_token(stream, token); status != 0) return status;
    return 0;
}

bool ends_path(const token_element* token) {
    return is_layout(token) || token->type == &kSEMICOLON || token->type == &kEND_OF_FILE;
}

int append_pieces(parse_stream* stream, token_element* token, bool isPath, std::string* name) {
    int status = append_piece(stream, token, name);
    while (status == 0 && is_separator(token)) {
        append(name, token);
        status = get_next_token(stream, token);
        if (status != 0 || (isPath && ends_path(token))) return status;
        if (token->type != &kINTEGER_NUMBER && !isNameWord(token)) return refuseSymbol(stream, token, kPIECE_EXPECTED);
        status = append_piece(stream, token, name);
    }
    return status;
}

int read_pieces(
    parse_stream* stream, token_element* token, bool haveFirst, bool isPath, bool* relative, std::string* name) {
    int status = 0;
    if (!haveFirst) {
        do status = get_next_token(stream, token);
        while (status == 0 && is_layout(token));
    }
    if (status == 0) status = pass_relative_marks(stream, token, relative);
    if (status != 0) return status;
    if (token->type == &kIDENTIFIER_TOKEN) return append_pieces(stream, token, isPath, name);
    return isNameWord(token) ? 0 : refuseSymbol(stream, token, kNAME_EXPECTED);
}

bool belongs_to_suffix(const token_element* token) {
    return token->type == &kLEFT_BRACKET || token->type == &kRIGHT_BRACKET || token->type == &kINTEGER_NUMBER ||
           token->type == &kPERIOD || token->type == &kIDENTIFIER_TOKEN;
}

// Blanks end the suffix. It may begin behind a macro that gave the name.
int read_suffix(parse_stream* stream, token_element* token, std::string* name) {
    const ParseModes modes(stream, kSUFFIX_MODES, true);
    int status = get_next_token(stream, token);
    if (status != 0 || token->type != &kLEFT_BRACKET) return status;
    while (status == 0 && belongs_to_suffix(token)) {
        append(name, token);
        status = get_next_token(stream, token);
    }
    return status;
}

} // namespace

void memdata::restoreKeyword(parse_stream* stream, token_element* token) {
    if (token->type != &kIDENTIFIER_TOKEN) return;
    const keyword_row* row = findKeyword(bmm_keyword_set, token->text, token->text + token->length, token->length);
    if (row == nullptr) return;
    token_element keyword{};
    keyword.type = row->type;
    if (!isNameWord(&keyword)) lookUpAgain(stream, token);
}

int memdata::readInstanceName(
    parse_stream* stream, token_element* token, bool haveFirst, bool isPath, bool* relative, std::string* name) {
    name->clear();
    *relative = false;
    KeywordOverlay overlay(stream, &instance_path_token_set);
    if (overlay.status() != 0) return overlay.status();
    // Directives may stand in front of a name. Where its first piece was read already, none can.
    overlay.setModes(kNAME_MODES | (haveFirst ? kMODE_NO_DIRECTIVES : 0), true);
    overlay.ignoreWords();
    if (int status = read_pieces(stream, token, haveFirst, isPath, relative, name); status != 0) return status;
    if (int status = overlay.close(); status != 0) return status;
    if (is_layout(token)) return get_next_token(stream, token);
    lookUpAgain(stream, token);
    return 0;
}

int parse_instance_name(parse_stream* stream, token_element* token, bool haveFirst, bool* relative, char** out) {
    std::string name;
    if (int status = readInstanceName(stream, token, haveFirst, false, relative, &name); status != 0) return status;
    *out = StrDup(name.c_str());
    return *out == nullptr ? 7 : 0;
}

int memdata::readObjectName(parse_stream* stream, token_element* token, const char* expected, std::string* name) {
    if (!isNameWord(token)) return refuseSymbol(stream, token, expected);
    name->assign(token->text, token->length);
    const int status = read_suffix(stream, token, name);
    return status == 0 && is_layout(token) ? get_next_token(stream, token) : status;
}

int memdata::readInstancePath(
    parse_stream* stream, token_element* token, bool haveFirst, const char* root, char** path) {
    std::string name;
    bool relative = false;
    if (int status = readInstanceName(stream, token, haveFirst, true, &relative, &name); status != 0) return status;
    if (root != nullptr) name.insert(0, std::string(root) + "/");
    OwnedString text(StrDup(name.c_str()));
    if (text == nullptr) return 7;
    *path = stripInstancePath(text.release());
    return *path == nullptr ? 7 : 0;
}

void memdata::rootInstanceName(const char* root, std::string* name) {
    if (root == nullptr || name->starts_with(root)) return;
    name->insert(0, std::string(root) + "/");
}

char* create_rootedObject_name(const char* name, const char* root) {
    if (root == nullptr) return StrDup(name);
    std::string prefix(root);
    for (char& c : prefix)
        if (c == '/') c = '_';
    const std::string_view text(name);
    return StrDup(text.starts_with(prefix) ? name : (prefix + "_" + name).c_str());
}

char* createLegecyInstancePath(const char* root, const char* name) {
    if (root == nullptr || name == nullptr) return nullptr;
    const std::string_view text(name);
    const size_t found = text.find(kLEGACY_PROCESSOR);
    if (found == std::string_view::npos) return nullptr;
    const size_t digit = found + kLEGACY_PROCESSOR.size();
    if (digit >= text.size() || !isOf(text[digit], kDIGIT_CHARACTER)) return nullptr;
    const std::string start = std::string(root) + "/";
    if (digit + 1 == text.size()) return StrDup((start + name).c_str());
    if (!text.ends_with(kLEGACY_COMBINED)) return nullptr;
    const std::string cut(text.substr(0, text.size() - kLEGACY_COMBINED.size()));
    return StrDup((start + cut + "/" + cut).c_str());
}

char* stripInstancePath(char* path) {
    if (path == nullptr) return nullptr;
    const OwnedString given(path);
    const size_t length = std::strlen(path);
    const bool hasSlash = length != 0 && path[length - 1] == '/';
    return StrNDup(path, hasSlash ? length - 1 : length);
}
