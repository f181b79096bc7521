// data_file_switches.cpp - data files and folders for MEM files, with their modifiers: -bd, -bx, -dataset.
// SPDX-License-Identifier: Apache-2.0
#include "CmdParseUtils/option_reader.h"

#include "ParseUtils/file_path.h"
#include "ParseUtils/numbers.h"

#include <cstdlib>
#include <string>

namespace memdata {

namespace {

constexpr int kNO_PATH = 1;
constexpr u32 kXML_FORMAT = 3;
constexpr const char* kSCOPED_TAGS = "OMBREL_LNV_SCOPEDADDRESSSPACE_TAGNAME"; // an environment variable

using NodeOwner = Tracked<BDSwitchDataType, delete_BD_switch_data_list>;

// Which modifiers have been given.
struct SeenModifiers {
    bool boot = false;
    bool start = false;
    bool tag = false;
};

// An integer behind a modifier, if there is one, cut to 32 bits.
int read_address(OptionReader* reader, bool* isGiven, unsigned long* address) {
    if (int status = reader->next(); status != 0) return status;
    *isGiven = reader->token->type == &kINTEGER_NUMBER;
    if (!*isGiven) return 0;
    *address = static_cast<u32>(unsignedFromValue(reader->token->value));
    return reader->next();
}

int read_boot(OptionReader* reader, BDSwitchDataType* node) {
    bool isGiven = false;
    if (int status = read_address(reader, &isGiven, &node->boot.address); status != 0) return status;
    node->boot.kind = isGiven ? kBOOT_ADDRESS : kBOOT_FROM_FILE;
    return 0;
}

// Without an integer the word is accepted and asks for nothing.
int read_start(OptionReader* reader, BDSwitchDataType* node) {
    return read_address(reader, &node->start.isSet, &node->start.address);
}

int append_piece(OptionReader* reader, std::string* name) {
    name->append(reader->token->text, reader->token->length);
    return reader->next();
}

// An identifier and, behind a ".", another one.
int read_scoped_name(OptionReader* reader, std::string* name) {
    int status = append_piece(reader, name);
    if (status != 0 || reader->token->type != &kPERIOD) return status;
    status = append_piece(reader, name);
    return status == 0 && reader->token->type == &kIDENTIFIER_TOKEN ? append_piece(reader, name) : status;
}

// Whether a token goes on with the name of a space: "." and brackets do; words and numbers only behind them, because
// two words in a row are two names.
bool continues_name(const token_element* token, const token_type* last) {
    constexpr const token_type* kMARKS[] = {&kPERIOD, &kLEFT_BRACKET, &kRIGHT_BRACKET, nullptr};
    constexpr const token_type* kPIECES[] = {&kIDENTIFIER_TOKEN, &kINTEGER_NUMBER, nullptr};
    if (One_Of_Tokens(token->type, kMARKS)) return true;
    return (last == &kPERIOD || last == &kLEFT_BRACKET) && One_Of_Tokens(token->type, kPIECES);
}

int read_path_name(OptionReader* reader, std::string* name) {
    const token_type* last = nullptr;
    int status = 0;
    do {
        last = reader->token->type;
        status = append_piece(reader, name);
    } while (status == 0 && continues_name(reader->token, last));
    return status;
}

int parse_next_tag_name(OptionReader* reader, std::string* name) {
    return std::getenv(kSCOPED_TAGS) != nullptr ? read_scoped_name(reader, name) : read_path_name(reader, name);
}

int read_tags(OptionReader* reader, BDSwitchDataType* node) {
    if (int status = reader->next(); status != 0) return status;
    if (reader->token->type != &kIDENTIFIER_TOKEN) return reader->fail(kERROR_BD_EXPECTED_TAG_SPACE_NAME);
    ListAppender<StringLists> names(&node->tagNames);
    for (node->tagCount = 0; reader->token->type == &kIDENTIFIER_TOKEN; ++node->tagCount) {
        std::string text;
        if (int status = parse_next_tag_name(reader, &text); status != 0) return status;
        OwnedString name(newString(text));
        if (name == nullptr || names.append(name.get()) != 0) return 7;
        name.release();
    }
    return 0;
}

int read_once(OptionReader* reader, BDSwitchDataType* node, bool* isSeen, const Alert_message_type& again,
    int (*read)(OptionReader*, BDSwitchDataType*)) {
    if (*isSeen) return reader->fail(again);
    *isSeen = true;
    return read(reader, node);
}

int read_modifiers(OptionReader* reader, BDSwitchDataType* node) {
    SeenModifiers seen;
    int status = 0;
    while (status == 0 && !reader->atEnd()) {
        const token_type* type = reader->token->type;
        if (type == &kBOOT_KEYWORD)
            status = read_once(reader, node, &seen.boot, kERROR_BD_MISSING_ONE_BOOT_SPECIFIER_ALLOWED, read_boot);
        else if (type == &kSTART_KEYWORD)
            status = read_once(reader, node, &seen.start, kERROR_BD_MISSING_ONE_START_ADDRESS_ALLOWED, read_start);
        else if (type == &kTAG_KEYWORD)
            status = read_once(reader, node, &seen.tag, kERROR_BD_MISSING_ONE_TAG_SPACE_NAME_ALLOWED, read_tags);
        else
            status = reader->refuse(kERROR_BD_MISSING_TAG_OR_KEYWORD, kOPTION_FAILURE);
    }
    return status;
}

void add_node(BDSwitchDataType*** end, NodeOwner* node) {
    **end = node->release();
    *end = &(**end)->next;
}

// Takes the file and reads its modifiers.
int add_file(OptionReader* reader, BDSwitchDataType*** end, OwnedFileSpec* spec) {
    NodeOwner node(create_BD_switch_data(spec->get()));
    if (node == nullptr) return 7;
    spec->release();
    if (int status = read_modifiers(reader, node.get()); status != 0) return status;
    add_node(end, &node);
    return 0;
}

int add_dataset(OptionReader* reader, OwnedFileSpec* spec) {
    DeleteFileSpec(&reader->options->datasetFile);
    reader->options->datasetFile = spec->release();
    return readDataset(reader, reader->options->datasetFile);
}

} // namespace

// The modifiers' words are in force while the path is read, which they do not disturb: the first of them is seen with
// the path's end.
int readDataFileSwitch(OptionReader* reader) {
    KeywordOverlay words(reader->stream, &bd_modifier_keywords);
    if (words.status() != 0) return words.status();
    OwnedFileSpec spec;
    if (int status = reader->path(spec.out(), kERROR_BD_MISSING_ELF_OR_MEM_FILE_NAME); status != 0) return status;
    const int status =
        spec->format == kXML_FORMAT ? add_dataset(reader, &spec) : add_file(reader, &reader->bdEnd, &spec);
    return status == 0 ? words.close() : status;
}

int readMemFolderSwitch(OptionReader* reader) {
    KeywordOverlay words(reader->stream, &bd_modifier_keywords);
    if (words.status() != 0) return words.status();
    OwnedFileSpec spec;
    int status = parse_file_pathname(reader->stream, reader->token, true, true, true, spec.out());
    if (status == kNO_PATH && reader->atEnd()) {
        spec.reset(CreateFileSpec("."));
        status = spec == nullptr ? 7 : 0;
    } else if (status == kNO_PATH) {
        status = refusePathSymbol(reader->stream, reader->token);
    }
    if (status == 0) status = add_file(reader, &reader->bxEnd, &spec);
    return status == 0 ? words.close() : status;
}

int readDatasetSwitch(OptionReader* reader) {
    OwnedFileSpec spec;
    if (int status = reader->path(spec.out()); status != 0) return status;
    return add_dataset(reader, &spec);
}

} // namespace memdata
