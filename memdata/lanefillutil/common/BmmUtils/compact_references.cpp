// compact_references.cpp - ranges that are kept as words: named references, and the members of joins.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/annotated_text.h"
#include "BmmUtils/compact_parser.h"
#include "BmmUtils/syntax.h"
#include "ParseUtils/look_ahead.h"
#include "ParseUtils/scanner.h"
#include "SystemUtils/alerts.h"

using namespace memdata;

namespace {

constexpr const char* kREFERENCE_NAME = "REFERENCE_INFO 'e' reference name";
constexpr const char* kJOIN_NAME = "ADDRESS_SPACE 'j' address space join name";
constexpr const char* kJOIN_BASE = "ADDRESS_SPACE 'j' memory base address value";
constexpr const char* kJOIN_WIDTH = "ADDRESS_SPACE 'j' bus width size value";

// Blanks, line ends and comments part the words of an item, in macros too.
constexpr u32 kITEM_MODES =
    kMODE_WHITESPACE | kMODE_NO_DIRECTIVES | kMODE_LINE_ENDS | kMODE_COMMENTS | kMODE_MACRO_LAYOUT;

bool is_layout(const token_element* token) {
    return token->type == &kWHITESPACE_TOKEN || token->type == &kEND_OF_LINE || token->type == &kCOMMENT_BLOCK_TOKEN;
}

bool is_joint(const token_element* token) {
    return token->type == &kDIVIDE || token->type == &kPERIOD || token->type == &kRELATIVE_INSTANCE_PATH_TOKEN;
}

// Words were ignored, so that they come out as they are written.
bool is_terminator(const token_element* token) {
    if (token->type != &kIDENTIFIER_TOKEN) return One_Of_Tokens(token->type, ELAB_Terminators);
    const keyword_row* row = search_token_symbol_table(bmm_info_keywords, token->text, static_cast<int>(token->length));
    return row != nullptr && One_Of_Tokens(row->type, ELAB_Terminators);
}

// A word that is a piece of a path: "a/ram", "top/a".
bool is_piece(const InfoReader& in, bool followsJoint) {
    if (in.token->type != &kIDENTIFIER_TOKEN) return false;
    if (followsJoint) return true;
    const token_element* next = look_ahead_stream_tokens(in.stream, 0);
    return next != nullptr && is_joint(next);
}

// The words behind the item's first one.
int take_item_words(const InfoReader& in, std::string* text) {
    KeywordOverlay words(in.stream, &instance_path_token_set);
    if (words.status() != 0) return words.status();
    words.setModes(kITEM_MODES, true);
    words.ignoreWords();
    bool followsJoint = false;
    for (;;) {
        if (int status = get_next_token(in.stream, in.token); status != 0) return status;
        if (is_terminator(in.token) && !is_piece(in, followsJoint)) return words.close();
        followsJoint = is_joint(in.token);
        if (is_layout(in.token))
            *text += ' ';
        else
            text->append(in.token->text, in.token->length);
    }
}

reference_info* find_reference(const scratch_BMM_Info& scratch, const std::string& name) {
    symbol_entry* entry = lookup_context_symbol(name.c_str(), true, scratch.referenceNames);
    return entry == nullptr ? nullptr : static_cast<reference_info*>(entry->value);
}

// The join of a name, made on its first use.
join_info* join_of(scratch_BMM_Info* scratch, const std::string& name) {
    symbol_entry* entry = lookup_context_symbol(name.c_str(), true, scratch->mapInfoNames);
    if (entry != nullptr) return static_cast<join_info*>(entry->value);
    join_info* join = &scratch->joins.emplace_back();
    if (insert_context_symbol(name.c_str(), scratch->mapInfoNames, join, nullptr) != nullptr) return join;
    scratch->joins.pop_back();
    return nullptr;
}

int keep_reference(scratch_BMM_Info* scratch, reference_info reference) {
    reference_info* kept = &scratch->references.emplace_back(std::move(reference));
    if (insert_context_symbol(kept->name.c_str(), scratch->referenceNames, kept, nullptr) != nullptr) return 0;
    scratch->references.pop_back();
    return 7;
}

} // namespace

void add_elaboration_hierarchy(const scratch_BMM_Info& scratch, const std::string& definition, std::string* text) {
    const bool hasPath = scratch.hierarchyPath.find_first_not_of('/') != std::string::npos;
    *text += "h " + (scratch.currentSpaceName.empty() ? definition : scratch.currentSpaceName) + " " +
             (hasPath ? scratch.hierarchyPath : "/") + " ";
}

int parse_elaboration_info(
    const InfoReader& in, const std::string& definition, bool acceptsReferences, std::string* text) {
    while (in.token->type == &kFADDRESS_RANGE_KEYWORD ||
           (acceptsReferences && in.token->type == &kEREFERENCE_INFO_KEYWORD)) {
        std::string item;
        add_elaboration_hierarchy(*in.scratch, definition, &item);
        item += in.token->text;
        if (int status = take_item_words(in, &item); status != 0) return status;
        lookUpAgain(in.stream, in.token);
        item += ' ';
        if (int status = keepBytes(in, 2 * item.size()); status != 0) return status;
        collect_MF_info(&in.scratch->commandText, item.c_str(), " ");
        *text += item;
    }
    in.scratch->elaborationText += *text;
    return 0;
}

int parse_reference_info(const InfoReader& in) {
    reference_info reference;
    if (int status = nextWord(in); status != 0) return status;
    const token_element place = placeOf(in.token);
    if (int status = takeIdentifier(in, kREFERENCE_NAME, &reference.name); status != 0) return status;
    if (find_reference(*in.scratch, reference.name) != nullptr)
        return PrintErrorLocation(
            in.stream, kERROR_MF_REFERENCE_NAME_ALREADY_EXISTS, kSYNTAX_STATUS, &place, reference.name);
    const int status = parse_elaboration_info(in, reference.name, false, &reference.text);
    return status == 0 ? keep_reference(in.scratch, std::move(reference)) : status;
}

int lookup_reference_info(const InfoReader& in, const reference_info** reference) {
    if (in.token->type != &kIDENTIFIER_TOKEN) return refuseSymbol(in.stream, in.token, kREFERENCE_NAME);
    *reference = find_reference(*in.scratch, in.token->text);
    if (*reference != nullptr) return 0;
    return PrintErrorLocation(
        in.stream, kERROR_MF_REFERENCE_NAME_NOT_DEFINED, kSYNTAX_STATUS, in.token, in.token->text);
}

// A further statement of the same name adds ranges; the first one's base and width stay.
int parse_addressJoin_info(const InfoReader& in) {
    std::string name;
    InfoAddressing addressing{};
    u64 base = 0;
    u64 width = 0;
    join_range_info range;
    int status = nextWord(in);
    if (status == 0) status = takeIdentifier(in, kJOIN_NAME, &name);
    if (status == 0) status = parse_addressing_info_type(in, &addressing);
    if (status == 0) status = takeInteger(in, kJOIN_BASE, &base);
    if (status == 0) status = takeInteger(in, kJOIN_WIDTH, &width);
    if (status == 0) status = parse_elaboration_info(in, name, true, &range.text);
    if (status != 0) return status;
    join_info* join = join_of(in.scratch, name);
    if (join == nullptr) return 7;
    if (join->name.empty()) {
        join->name = name;
        join->words = addressing == InfoAddressing::kWORD ? "* word" : "* byte";
        join->base = base;
        join->width = width;
    }
    join->ranges.push_back(std::move(range));
    return 0;
}

std::string output_addressJoin_info(const scratch_BMM_Info& scratch) {
    std::string text;
    for (const join_info& join : scratch.joins) {
        text += " a " + join.name + " " + join.words + " " + addressText(join.base) + " " + std::to_string(join.width);
        for (const join_range_info& range : join.ranges) text += " " + range.text;
    }
    return text;
}
