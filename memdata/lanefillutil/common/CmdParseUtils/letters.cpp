// letters.cpp - arguments that are a word of letters: -o, -d, -q.
// SPDX-License-Identifier: Apache-2.0
#include "CmdParseUtils/letters.h"

#include <algorithm>
#include <bitset>
#include <string_view>

namespace memdata {

namespace {

using OutputField = fileSpecType* CmdStringOptionsType::*;

struct OutputRow {
    char letter; // lower case; the upper one means the same
    OutputField field;
    const char* name;
};
constexpr char kIMAGE_LETTER = 'i'; // of which there can be several
constexpr OutputRow kOUTPUTS[] = {
    {'a', &CmdStringOptionsType::outputXmlBmmFile, "Address Map"},
    {'b', &CmdStringOptionsType::outputBitFile, "BIT"},
    {'d', &CmdStringOptionsType::dumpFile, "DMP"},
    {'h', &CmdStringOptionsType::outputVhdlFile, "VHDL"},
    {'m', &CmdStringOptionsType::outputMemFile, "MEM"},
    {'p', &CmdStringOptionsType::outputBmmFile, "BMM"},
    {'u', &CmdStringOptionsType::outputUcfFile, "UCF"},
    {'v', &CmdStringOptionsType::outputVerilogFile, "Verilog"},
};

struct MaskRow {
    char letter; // lower case
    u32 bit;
};
constexpr MaskRow kDUMP_BITS[] = {{'a', 32}, {'b', 1}, {'e', 4}, {'f', 8}, {'p', 64}, {'r', 2}, {'u', 16}};
constexpr MaskRow kQUIET_BITS[] = {
    {'s', kSTATUS_ALERT},
    {'i', kINFO_ALERT},
    {'w', kWARNING_ALERT},
    {'e', kERROR_ALERT},
    {'x', kINTERNAL_ERROR_ALERT},
    {'f', kFATAL_ALERT},
    {'d', kDEBUG_ALERT},
};

bool is_upper(char letter) {
    return letter >= 'A' && letter <= 'Z';
}

char lower(char letter) {
    return is_upper(letter) ? static_cast<char>(letter - 'A' + 'a') : letter;
}

int set_output(OptionReader* reader, const token_element* token, char letter, const fileSpecType* spec) {
    OwnedFileSpec copy(DupFileSpec(spec));
    if (copy == nullptr) return 7;
    if (lower(letter) == kIMAGE_LETTER) {
        if (int status = reader->outputImageFiles.append(copy.get()); status != 0) return status;
        copy.release();
        return 0;
    }
    const auto* row = std::ranges::find(kOUTPUTS, lower(letter), &OutputRow::letter);
    fileSpecType** field = &(reader->options->*row->field);
    if (*field != nullptr)
        return PrintErrorLocation(
            reader->stream, kERROR_O_DUPLICATE_FILE_TYPE_SPECIFIER, kOPTION_FAILURE, token, row->name);
    *field = copy.release();
    return 0;
}

int set_dump_bit(OptionReader* reader, const token_element*, char letter, const fileSpecType*) {
    const u32 bit = std::ranges::find(kDUMP_BITS, lower(letter), &MaskRow::letter)->bit;
    u32* mask = &reader->options->dumpMask;
    // A and B keep their own bit and clear all others, where other capitals clear theirs: required so.
    if (letter == 'A' || letter == 'B')
        *mask &= bit;
    else
        *mask = is_upper(letter) ? *mask & ~bit : *mask | bit;
    return 0;
}

// A bit that is set means that alerts of the severity are printed.
int set_quiet_bit(OptionReader* reader, const token_element*, char letter, const fileSpecType*) {
    const u32 bit = std::ranges::find(kQUIET_BITS, lower(letter), &MaskRow::letter)->bit;
    u32* mask = &reader->options->quietMask;
    *mask = is_upper(letter) ? *mask | bit : *mask & ~bit;
    return 0;
}

bool names_letters(const token_element* token) {
    return token->length != 0;
}

} // namespace

int check_char_options(OptionReader* reader, const token_element* token, const char* switchName, const char* letters,
    const fileSpecType* spec, LetterSetter setter) {
    const std::string_view allowed(letters);
    std::bitset<256> seen;
    for (const char letter : std::string_view(token->text, token->length)) {
        if (allowed.find(letter) == std::string_view::npos || letter == ' ') {
            const std::string named(allowed.substr(0, allowed.find(' ')));
            return PrintErrorLocation(reader->stream, kERROR_ILLEAGAL_CHAR_SPECIFIER, kOPTION_FAILURE, token,
                switchName, letter, named.c_str());
        }
        if (seen.test(static_cast<u8>(letter)))
            return PrintErrorLocation(
                reader->stream, kERROR_DUPLICATE_CHAR_SPECIFIER, kOPTION_FAILURE, token, switchName, letter);
        seen.set(static_cast<u8>(letter));
        if (int status = setter(reader, token, letter, spec); status != 0) return status;
    }
    return 0;
}

int readOutputSwitch(OptionReader* reader) {
    if (int status = reader->next(); status != 0) return status;
    if (reader->atEnd() || !names_letters(reader->token)) return reader->fail(kERROR_O_MISSING_TYPE_SPECIFIER);
    const TokenOwner letters(dup_token_element(reader->token));
    if (letters == nullptr) return 7;
    OwnedFileSpec spec;
    if (int status = reader->path(spec.out(), kERROR_O_MISSING_FILE_NAME); status != 0) return status;
    return check_char_options(reader, letters.get(), "o", kCMD_O_OPTIONS, spec.get(), set_output);
}

int readDumpSwitch(OptionReader* reader) {
    reader->options->dumpEnabled = true;
    if (int status = reader->next(); status != 0) return status;
    if (reader->token->type != &kIDENTIFIER_TOKEN) return 0;
    const int status = check_char_options(reader, reader->token, "d", kCMD_D_OPTIONS, nullptr, set_dump_bit);
    return status == 0 ? reader->next() : status;
}

int readQuietSwitch(OptionReader* reader) {
    if (int status = reader->next(); status != 0) return status;
    if (reader->token->type != &kIDENTIFIER_TOKEN) return 0;
    const int status = check_char_options(reader, reader->token, "q", kCMD_Q_OPTIONS, nullptr, set_quiet_bit);
    if (status != 0) return status;
    EnablePrintAlerts(reader->options->quietMask);
    return reader->next();
}

} // namespace memdata
