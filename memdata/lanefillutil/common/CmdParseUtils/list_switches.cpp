// list_switches.cpp - switches that add to a list or a text: -D, -I, -workflow, -h.
// SPDX-License-Identifier: Apache-2.0
#include "CmdParseUtils/option_reader.h"

#include "ParseUtils/include_paths.h"
#include "ParseUtils/preprocessor.h"

#include <algorithm>

namespace memdata {

namespace {

constexpr int kSYNTAX = 3;
constexpr const token_type* kLAYOUT[] = {&kWHITESPACE_TOKEN, &kEND_OF_LINE, nullptr};

int add_word(OptionReader* reader, ListAppender<StringLists>* list) {
    OwnedString word(StrDup(reader->token->text));
    if (word == nullptr || list->append(word.get()) != 0) return 7;
    word.release();
    return 0;
}

int add_words(OptionReader* reader, ListAppender<StringLists>* list) {
    while (reader->token->type == &kIDENTIFIER_TOKEN) {
        if (int status = add_word(reader, list); status != 0) return status;
        if (int status = reader->next(); status != 0) return status;
    }
    return 0;
}

int parse_workflow_op_list(OptionReader* reader) {
    constexpr const char* kEXPECTED = "non identifier WORKFLOW_OPERATION type";
    if (reader->token->type == &kIDENTIFIER_TOKEN) {
        const int status = add_words(reader, &reader->workflowOps);
        if (status != 0 || reader->atEnd()) return status;
    }
    return reader->refuse(kERROR_UNEXPECTED_SYMBOL_AND_EXPECTED, kSYNTAX, kEXPECTED);
}

int next_beyond_layout(OptionReader* reader) {
    int status = reader->next();
    while (status == 0 && One_Of_Tokens(reader->token->type, kLAYOUT)) status = reader->next();
    return status;
}

// Texts stand in a definition as they were written; a line end would end it.
void append_written(std::string* value, const token_element* token) {
    const bool isString = token->type == &kQUOTED_STRING_TOKEN;
    const char* quote = isString ? "\"" : token->type == &kQUOTED_TEXT_TOKEN ? "'" : "";
    std::string text(token->text, token->length);
    std::ranges::replace_if(
        text, [](char c) { return c == '\n' || c == '\r'; }, ' ');
    value->append(quote).append(text).append(quote);
}

// Everything up to the next switch, without the blanks at its ends.
int read_value(OptionReader* reader, std::string* value) {
    if (int status = next_beyond_layout(reader); status != 0) return status;
    while (!One_Of_Tokens(reader->token->type, commandLineMacroTerminators)) {
        append_written(value, reader->token);
        if (int status = reader->next(); status != 0) return status;
    }
    value->erase(value->find_last_not_of(" \t\f") + 1);
    return 0;
}

int read_definition(OptionReader* reader) {
    if (int status = next_beyond_layout(reader); status != 0) return status;
    if (reader->token->type != &kIDENTIFIER_TOKEN)
        return reader->refuse(kERROR_UNEXPECTED_SYMBOL_AND_EXPECTED, kOPTION_FAILURE, "macro name");
    std::string line = "#define " + std::string(reader->token->text);
    if (int status = next_beyond_layout(reader); status != 0) return status;
    if (reader->token->type != &kEQUAL) return reader->refuse(kERROR_D_MISSING_EQUAL_SYMBOL, kOPTION_FAILURE);
    std::string value;
    if (int status = read_value(reader, &value); status != 0) return status;
    if (!value.empty()) line += " " + value;
    reader->macroDefines += line + "\n";
    return 0;
}

// Hands the paths of one switch over to the record.
int take_paths(OptionReader* reader, StrList paths) {
    for (unsigned long i = 0; StrListGet(paths, i) != nullptr; ++i) {
        if (int status = reader->includePaths.append(StrListGet(paths, i)); status != 0) return status;
        StrListSet(paths, i, nullptr);
    }
    return 0;
}

} // namespace

int readWorkflowSwitch(OptionReader* reader) {
    if (int status = reader->next(); status != 0) return status;
    return parse_workflow_op_list(reader);
}

int readHelpSwitch(OptionReader* reader) {
    if (int status = reader->next(); status != 0) return status;
    const int status = add_words(reader, &reader->helpTopics);
    return status == 0 ? kHELP_WANTED : status;
}

// The value is kept as it is written: macros in it are those of the maps and data files that will read it.
int readDefineSwitch(OptionReader* reader) {
    KeywordOverlay raw(reader->stream, &cmd_line_keyword_set);
    if (raw.status() != 0) return raw.status();
    raw.setModes(kMODE_NO_MACROS | kMODE_RAW_BACKSLASH | kMODE_WHITESPACE | kMODE_LINE_ENDS, true);
    const int status = read_definition(reader);
    return status == 0 ? raw.close() : status;
}

int readIncludeSwitch(OptionReader* reader) {
    StrList paths = nullptr;
    int status = compile_file_paths(reader->stream, reader->token, &paths);
    if (status == 0) status = take_paths(reader, paths);
    StrListDelete(paths);
    register_parsing_include_search_paths(reader->options->includePaths);
    return status;
}

} // namespace memdata
