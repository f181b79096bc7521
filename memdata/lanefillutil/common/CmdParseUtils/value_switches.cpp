// value_switches.cpp - switches that take no argument or one value: -i, -u, -pg, -a, -w, -fill, -split, -bytewidth, -p.
// SPDX-License-Identifier: Apache-2.0
#include "CmdParseUtils/option_reader.h"

#include "DeviceTableUtils/device_lookup.h"
#include "FileUtils/opening.h"
#include "ParseUtils/expressions.h"
#include "ParseUtils/look_ahead.h"

namespace memdata {

namespace {

constexpr int kSYNTAX = 3;
constexpr u64 kMAX_BYTE = 255;

// `true` and `false` are macros of the language that stand for 1 and 0: the word is looked at before it is expanded.
// Another one is left for the next read.
int read_built_in(OptionReader* reader, bool* isFound, bool* value) {
    KeywordOverlay raw(reader->stream, &on_off_modifier_keywords);
    if (raw.status() != 0) return raw.status();
    raw.setModes(kMODE_NO_MACROS, true);
    if (int status = reader->next(); status != 0) return status;
    const token_type* type = reader->token->type;
    *isFound = type == &kPREPROCESS_TRUE_KEYWORD || type == &kPREPROCESS_FALSE_KEYWORD;
    if (*isFound)
        *value = type == &kPREPROCESS_TRUE_KEYWORD;
    else if (int status = push_back_token(reader->stream, reader->token); status != 0)
        return status;
    return raw.close();
}

// Without a word it is on.
int read_on_off(OptionReader* reader, bool* value) {
    bool isFound = false;
    *value = true;
    if (int status = read_built_in(reader, &isFound, value); status != 0) return status;
    KeywordOverlay words(reader->stream, &on_off_modifier_keywords);
    if (words.status() != 0) return words.status();
    if (int status = reader->next(); status != 0) return status;
    if (isFound || reader->atEnd()) return words.close();
    if (!isOfClass(reader->token->type, kON_OFF_MODIFIER))
        return reader->refuse(kERROR_ILLEGAL_ON_OFF_SPECIFIER, kOPTION_FAILURE);
    *value = reader->token->type == &kON_KEYWORD;
    if (int status = reader->next(); status != 0) return status;
    return words.close();
}

int read_flag(OptionReader* reader, bool* flag) {
    *flag = true;
    return reader->next();
}

bool is_byte(const token_element* token) {
    return token->type == &kINTEGER_NUMBER && token->value >= 0 && token->value <= kMAX_BYTE;
}

bool can_be_part_name(const token_element* token) {
    constexpr const token_type* kNAMES[] = {&kIDENTIFIER_TOKEN, &kQUOTED_STRING_TOKEN, &kNUMBER, nullptr};
    return One_Of_Tokens(token->type, kNAMES);
}

} // namespace

int readIgnoreSwitch(OptionReader* reader) {
    return read_flag(reader, &reader->options->ignoreUnmapped);
}

int readUpdateSwitch(OptionReader* reader) {
    return read_flag(reader, &reader->options->updateAll);
}

int readProgressSwitch(OptionReader* reader) {
    reader->options->progress = OutputProgress;
    return reader->next();
}

int readAutoInitSwitch(OptionReader* reader) {
    bool isOn = false;
    if (int status = read_on_off(reader, &isOn); status != 0) return status;
    reader->options->autoInit = isOn;
    return 0;
}

int readOverwriteSwitch(OptionReader* reader) {
    bool isOn = false;
    if (int status = read_on_off(reader, &isOn); status != 0) return status;
    SetDefaultFileAttributes(kOVERWRITING_ALLOWED, isOn);
    SetDefaultFileAttributes(kOVERWRITING_REFUSED, !isOn);
    return 0;
}

int readFillSwitch(OptionReader* reader) {
    reader->options->fillEnabled = true;
    if (int status = reader->next(); status != 0 || reader->atEnd()) return status;
    if (!is_byte(reader->token)) return reader->refuse(kERROR_ILLEGAL_FILL_BYTE_TYPE, kSYNTAX);
    reader->options->fillByte = static_cast<u64>(reader->token->value);
    return reader->next();
}

int readSplitSwitch(OptionReader* reader) {
    KeywordOverlay words(reader->stream, &output_format_keywords);
    if (words.status() != 0) return words.status();
    if (int status = reader->next(); status != 0) return status;
    if (reader->token->type != &kOUTPUT_FORMAT_KEYWORD)
        return reader->refuse(kERROR_ILLEGAL_OUTPUT_FORMAT_SPECIFIER, kOPTION_FAILURE);
    reader->options->splitFormat = DecodeFileFormatType(reader->token->text);
    if (int status = words.close(); status != 0) return status;
    return reader->next();
}

int readByteWidthSwitch(OptionReader* reader) {
    const int status =
        Get_Expression_Value(reader->stream, reader->token, &reader->options->byteWidth, byteWidthTerminationTokens);
    if (status != kSYNTAX) return status;
    return reader->refuse(kERROR_ILLEAGAL_TOKEN_AND_EXPECTED, kSYNTAX, "valid byte width expression");
}

// An unknown device only warns, and ends the parse all the same.
int readPartSwitch(OptionReader* reader) {
    if (int status = reader->next(); status != 0) return status;
    const token_element* token = reader->token;
    if (!can_be_part_name(token))
        return reader->refuse(kERROR_UNEXPECTED_SYMBOL_AND_EXPECTED, kOPTION_FAILURE, "part name");
    OwnedString name(StrDup(token->text));
    if (name == nullptr) return 7;
    CmdStringOptionsType* options = reader->options;
    StrDelete(options->partName);
    options->partName = name.release();
    options->device = get_device_record_by_name(options->partName);
    if (options->device == nullptr)
        return PrintWarningLocation(
            reader->stream, kERROR_UNSUPPORTED_FPGA_DEVICE_NAME, kOPTION_FAILURE, token, options->partName);
    return reader->next();
}

} // namespace memdata
