// file_path.cpp - file names in a text.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/file_path.h"

#include "ParseUtils/preprocessor.h"
#include "ParseUtils/scanner.h"
#include "ParseUtils/scanner_parts.h"
#include "StringUtils/StringUtils.h"
#include "SystemUtils/SystemUtils.h"
#include "platform/ComMsgMgr.h"
#include "platform/HPAParamMgr.h"

#include <cstring>
#include <utility>

using memdata::OwnedString;

namespace {

constexpr int kNO_PATH = 1;
constexpr int kSYNTAX = 3;
// Inside macros too, so that a path reads there as it does elsewhere.
constexpr u32 kPATH_MODES =
    kMODE_RAW_BACKSLASH | kMODE_WHITESPACE | kMODE_LINE_ENDS | kMODE_NO_DIRECTIVES | kMODE_MACRO_LAYOUT;

constexpr const token_type* kNAMES[] = {&kNUMBER, &kIDENTIFIER_TOKEN, &kQUOTED_STRING_TOKEN, &kQUOTED_TEXT_TOKEN,
    &kUNARY_NEGATION, &kWILD_FILENAME_TOKEN, nullptr};
constexpr const token_type* kSEPARATORS[] = {&kPATH_SEPARATOR_TOKEN, &kWINDOWS_SEPARATOR_TOKEN, nullptr};
constexpr const token_type* kLAYOUT[] = {&kWHITESPACE_TOKEN, &kEND_OF_LINE, nullptr};

bool is_name(const token_element* token) {
    return One_Of_Tokens(token->type, kNAMES);
}

bool is_separator(const token_element* token) {
    return One_Of_Tokens(token->type, kSEPARATORS);
}

// The text of a path that is being read, with the last token that became part of it.
struct PathType {
    parse_stream* stream;
    token_element* token; // the next one
    OwnedString name;
    const token_type* last; // null at the start
};

// Appends text and reads the token behind it.
int append(PathType* path, const char* text) {
    path->name.reset(StrPostCat(path->name.release(), text));
    if (path->name == nullptr) return 7;
    path->last = path->token->type;
    return internal_get_next_token(path->stream, path->token);
}

// Appends the token. One with a zero byte would be cut where the name is kept as a C string.
int append_token(PathType* path) {
    const token_element* token = path->token;
    if (std::strlen(token->text) < token->length)
        return PrintErrorLocation(path->stream, kERROR_ILLEAGAL_FILE_NAME_SYMBOL, kSYNTAX, token, "\\0");
    return append(path, token->text);
}

int append_names(PathType* path) {
    int status = 0;
    while (status == 0 && (is_name(path->token) || path->token->type == &kFILE_ABOVE_DIR_TOKEN))
        status = append_token(path);
    return status;
}

bool is_quoted(const token_element* token) {
    return token->type == &kQUOTED_STRING_TOKEN || token->type == &kQUOTED_TEXT_TOKEN;
}

// Pieces in quotes of either kind that touch are one name, so that a name can hold both kinds.
int append_quoted(PathType* path) {
    int status = 0;
    while (status == 0 && is_quoted(path->token)) status = append_token(path);
    return status;
}

// The host's messages do not know the texts of line and file ends.
const char* readable_text(const token_element* token) {
    if (token->type == &kEND_OF_LINE) return "end-of-line";
    return token->type == &kEND_OF_FILE ? "end-of-file" : token->text;
}

} // namespace

int memdata::refusePathSymbol(parse_stream* stream, const token_element* token) {
    ComMsgMgr::sendMsg::eval("memdata", ComMsgMgr::kERROR, "@28-206@%s", readable_text(token));
    if (HPAParamMgr::getParamMgr().getValueIfExistAsBool("memdata.debugLegacyMessages", false))
        PrintErrorLocation(stream, kERROR_ILLEAGAL_FILE_OR_PATH_SYMBOL, kSYNTAX, token, token->text);
    return kSYNTAX;
}

namespace {

int append_beginning(PathType* path, bool quiet) {
    const token_type* type = path->token->type;
    if (is_separator(path->token)) return append(path, "/");
    if (type == &kPERIOD || type == &kFILE_ABOVE_DIR_TOKEN) return append_token(path);
    if (type == &kWINDOWS_ABSOLUTE_SERVER_TOKEN) {
        const int status = append(path, "//");
        return status == 0 && is_name(path->token) ? append_token(path) : status;
    }
    if (is_quoted(path->token)) return append_quoted(path);
    if (is_name(path->token)) {
        const int status = append_token(path);
        const bool isVolume = status == 0 && path->token->type == &kVOLUME_SEPARATOR_TOKEN;
        return isVolume ? append_token(path) : status;
    }
    return quiet ? kNO_PATH : memdata::refusePathSymbol(path->stream, path->token);
}

bool takes_names(const token_type* last) {
    return One_Of_Tokens(last, kSEPARATORS) || last == &kPERIOD || last == &kFILE_ABOVE_DIR_TOKEN;
}

int append_rest(PathType* path) {
    int status = takes_names(path->last) ? append_names(path) : 0;
    while (status == 0 && (is_separator(path->token) || path->token->type == &kPERIOD)) {
        status = append(path, is_separator(path->token) ? "/" : ".");
        if (status == 0) status = append_names(path);
    }
    return status;
}

// What a path may end with.
int check_end(const PathType& path) {
    const token_type* last = path.last;
    if (last == &kPERIOD) {
        if (path.name.get()[1] == '\0') return 0; // the folder "."
        return PrintErrorLocation(path.stream, kERROR_MISSING_FILE_EXTENSION, kSYNTAX, path.token, path.name.get());
    }
    if (One_Of_Tokens(last, kNAMES) || One_Of_Tokens(last, kSEPARATORS) || last == &kFILE_ABOVE_DIR_TOKEN) return 0;
    return PrintErrorLocation(path.stream, kERROR_ILLEAGAL_FILE_NAME_SYMBOL, kSYNTAX, path.token, path.token->text);
}

int read_path(PathType* path, bool skipFirst, bool quiet) {
    int status = 0;
    if (skipFirst) {
        do status = internal_get_next_token(path->stream, path->token);
        while (status == 0 && One_Of_Tokens(path->token->type, kLAYOUT));
    }
    if (status == 0) status = append_beginning(path, quiet);
    if (status == 0) status = append_rest(path);
    return status == 0 ? check_end(*path) : status;
}

// Reads the path under the words of paths. Other words count as names: a folder may be called as a keyword is.
int read_path_text(parse_stream* stream, token_element* token, bool skipFirst, bool quiet, OwnedString* name) {
    memdata::KeywordOverlay overlay(stream, &file_path_token_set);
    if (overlay.status() != 0) return overlay.status();
    overlay.setModes(kPATH_MODES, true);
    overlay.ignoreWords();
    PathType path{stream, token, OwnedString(), nullptr};
    if (int status = read_path(&path, skipFirst, quiet); status != 0) return status;
    *name = std::move(path.name);
    if (int status = overlay.close(); status != 0) return status;
    // A word that touches the path was read as a name.
    memdata::lookUpAgain(stream, token);
    return 0;
}

} // namespace

int parse_file_pathname(
    parse_stream* stream, token_element* token, bool skipFirst, bool quiet, bool eatTrailingSpace, fileSpecType** out) {
    memdata::OwnedFileSpec spec(NewFileSpec());
    if (spec == nullptr) return 7;
    OwnedString name;
    if (int status = read_path_text(stream, token, skipFirst, quiet, &name); status != 0) return status;
    if (eatTrailingSpace && One_Of_Tokens(token->type, kLAYOUT)) {
        if (int status = internal_get_next_token(stream, token); status != 0) return status;
    }
    if (int status = InitializeFileSpec(spec.get(), name.get(), nullptr); status != 0) return status;
    *out = spec.release();
    return 0;
}

int parse_file_path_beginning(
    parse_stream* stream, token_element* token, bool quiet, char** name, const token_type** last) {
    PathType path{stream, token, OwnedString(*name), *last};
    const int status = append_beginning(&path, quiet);
    *name = path.name.release();
    *last = path.last;
    return status;
}
