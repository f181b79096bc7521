// map_switches.cpp - address maps: -bm, -mx, -mf.
// SPDX-License-Identifier: Apache-2.0
#include "CmdParseUtils/option_reader.h"

#include "BmmUtils/bmm_info.h"
#include "BmmUtils/names.h"

#include <cstring>

namespace memdata {

namespace {

constexpr const char* kXML_TEXT_NAME = "tempXMLFile.xml"; // under which a text in memory is spoken of
constexpr int kUNKNOWN_FORMAT = 10;
constexpr int kEMPTY_NAME = 1;
constexpr int kSYNTAX = 3;

struct MapFormatRow {
    u32 format;
    u32 subType;
};
constexpr MapFormatRow kMAP_FORMATS[] = {
    {3, kBMM_XML_FILE},  // "xml"
    {1, kBMM_TEXT_FILE}, // no extension
    {6, kBMM_TEXT_FILE}, // "bmm"
};

u32 sub_type_of(const fileSpecType* spec) {
    for (const MapFormatRow& row : kMAP_FORMATS)
        if (row.format == spec->format) return row.subType;
    return 0;
}

// The instance under which a map's instances are, as the spec's attribute.
int read_root(OptionReader* reader, fileSpecType* spec, bool strips) {
    std::string name;
    bool isRelative = false;
    const int status = readInstanceName(reader->stream, reader->token, false, true, &isRelative, &name);
    if (status != 0) return status;
    OwnedString root(newString(name));
    if (root != nullptr && strips) root.reset(stripInstancePath(root.release()));
    if (root == nullptr) return 7;
    StrDelete(static_cast<char*>(FileSpecGetAttribute(spec)));
    FileSpecSetAttribute(spec, root.release());
    return 0;
}

int read_roots(OptionReader* reader, fileSpecType* spec, bool strips) {
    while (!reader->atEnd()) {
        if (reader->token->type != &kROOT_KEYWORD)
            return reader->refuse(kERROR_BM_MISSING_TAG_OR_KEYWORD, kOPTION_FAILURE);
        if (int status = read_root(reader, spec, strips); status != 0) return status;
    }
    return 0;
}

// Keeps the map of a spec and reads its modifiers.
int add_map(OptionReader* reader, OwnedFileSpec* owner, u32 subType, bool strips) {
    fileSpecType* spec = owner->get();
    FileSpecSetSubType(spec, subType);
    if (int status = reader->bmmFiles.append(spec); status != 0) return status;
    owner->release();
    return read_roots(reader, spec, strips);
}

int add_map_file(OptionReader* reader, OwnedFileSpec* spec, const token_element* place) {
    const char* name = spec->get()->fullName;
    if (std::strcmp(name, "*") == 0) {
        reader->options->designBmm = true;
        return 0;
    }
    if (*name == '\0') return PrintErrorLocation(reader->stream, kERROR_EMPTY_FILE_NAME, kEMPTY_NAME, place, "bmm");
    const u32 subType = sub_type_of(spec->get());
    if (subType == 0)
        return PrintErrorLocation(reader->stream, kERROR_UNKNOWN_BMM_FILE_EXTENSION, kUNKNOWN_FORMAT, place, name);
    return add_map(reader, spec, subType, true);
}

} // namespace

int readMapSwitch(OptionReader* reader) {
    const TokenOwner place(dup_token_element(reader->token));
    if (place == nullptr) return 7;
    KeywordOverlay words(reader->stream, &bm_modifier_keywords);
    if (words.status() != 0) return words.status();
    OwnedFileSpec spec;
    int status = reader->path(spec.out(), kERROR_MISSING_BMM_FILE_NAME);
    if (status == 0) status = add_map_file(reader, &spec, place.get());
    return status == 0 ? words.close() : status;
}

int readXmlTextSwitch(OptionReader* reader) {
    constexpr const token_type* kTEXTS[] = {&kQUOTED_STRING_TOKEN, &kQUOTED_TEXT_TOKEN, nullptr};
    KeywordOverlay words(reader->stream, &bm_modifier_keywords);
    if (words.status() != 0) return words.status();
    if (int status = reader->next(); status != 0) return status;
    const token_element* token = reader->token;
    if (!One_Of_Tokens(token->type, kTEXTS))
        return reader->refuse(kERROR_UNEXPECTED_SYMBOL_AND_EXPECTED, kSYNTAX, "quoted XML string");
    OwnedFileSpec spec(CreateFileSpecWithFileData(kXML_TEXT_NAME, token->text, token->length));
    if (spec == nullptr) return 7;
    int status = reader->next();
    if (status == 0) status = add_map(reader, &spec, kBMM_XML_TEXT, false);
    return status == 0 ? words.close() : status;
}

int readInfoTextSwitch(OptionReader* reader) {
    if (int status = reader->flush(); status != 0) return status;
    const int status = parse_bmm_info(reader->stream, reader->token, reader->options);
    reader->look();
    return status;
}

} // namespace memdata
