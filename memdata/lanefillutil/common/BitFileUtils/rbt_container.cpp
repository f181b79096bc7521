// rbt_container.cpp - the labelled lines of RBT texts, and the files.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/rbt_container.h"

#include "ParseUtils/characters.h"
#include "ParseUtils/scanner.h"
#include "StringUtils/StringUtils.h"
#include "SystemUtils/alerts.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <strings.h>

namespace {

using namespace memdata;

// Nothing in the text is meant for the preprocessor.
constexpr u32 kPLAIN_TEXT_MODES =
    kMODE_PLAIN_QUOTES | kMODE_RAW_BACKSLASH | kMODE_NO_MACROS | kMODE_NO_DIRECTIVES | kMODE_NO_JOINING;

constexpr const char* kFIRST_WORDS[] = {"Ombrel", "ASCII", "Bitstream"};

struct LabelType {
    const char* label;
    HeaderStringType BitFileHeaderType::*string;
};
constexpr LabelType kLABELS[] = {
    {"name", &BitFileHeaderType::designName},
    {"Part", &BitFileHeaderType::partName},
    {"Date", &BitFileHeaderType::dateTime},
    {"Bits", &BitFileHeaderType::bitCount},
};

int refuseFormat(const parse_stream* stream) {
    return PrintError(kERROR_UNKNOWN_OR_CORRUPTED_DATA_FILE_FORMAT, 2, get_stream_file_name(stream));
}

// Status 0, 2, 7. A word that cannot be read has been reported and is no mismatch: what is wrong shows at the labels.
int checkFirstWords(parse_stream* stream, token_element* token) {
    bool isEqual = true;
    for (const char* word : kFIRST_WORDS) {
        if (int status = get_next_token(stream, token); status != 0) return status == 7 ? 7 : 0;
        isEqual = isEqual && strcasecmp(token->text, word) == 0;
    }
    return isEqual ? 0 : refuseFormat(stream);
}

std::string_view withoutBlanks(std::string_view text) {
    while (!text.empty() && isOf(text.front(), kBLANK_CHARACTER)) text.remove_prefix(1);
    while (!text.empty() && isOf(text.back(), kBLANK_CHARACTER)) text.remove_suffix(1);
    return text;
}

// Taken from the text itself, since blanks and comment marks belong to the string. The line end stays.
std::string_view takeRestOfLine(parse_stream* stream) {
    const parse_stream* context = activeContext(stream);
    const u64 position = get_stream_position(stream);
    const std::string_view rest(context->textBegin + position, get_stream_size(stream) - position);
    const std::string_view line = rest.substr(0, std::min(rest.find_first_of("\n\r\xFF"), rest.size()));
    set_stream_position(stream, position + line.size());
    return withoutBlanks(line);
}

// Up to the label with its colon: kEND_OF_FILE in the token when it does not come.
int findLabel(parse_stream* stream, token_element* token, const char* label) {
    bool isBehindLabel = false;
    do {
        if (int status = get_next_token(stream, token); status != 0) return status;
        if (isBehindLabel && token->type == &kCOLON) return 0;
        isBehindLabel = strcasecmp(token->text, label) == 0;
    } while (token->type != &kEND_OF_FILE);
    return 0;
}

int openText(fileSpecType* fileSpec, parse_stream** stream) {
    const int status = open_parse_DiskFile(fileSpec, "rbt", nullptr, nullptr, nullptr, stream);
    return status == 17 ? PrintError(kERROR_EMPTY_INPUT_FILE, 17, fileSpec->fullName, "RBT") : status;
}

int readText(fileSpecType* fileSpec, BitFileHeaderType* header, fileIODescriptor** file) {
    StreamOwner stream;
    if (int status = openText(fileSpec, stream.out()); status != 0) return status;
    TokenOwner token(get_token_element());
    if (token == nullptr) return 7;
    if (int status = ReadRBTHeader(stream.get(), token.get(), header, file); status != 0) return status;
    // A comment that was left open has swallowed data.
    parse_stream* read = stream.release();
    return close_parse_stream(&read);
}

// The words of a text, first to last.
template<class Visit>
void forEachWord(std::string_view text, const Visit& visit) {
    for (text = withoutBlanks(text); !text.empty(); text = withoutBlanks(text)) {
        const size_t length = std::min(text.find_first_of(" \t\f"), text.size());
        visit(text.substr(0, length));
        text.remove_prefix(length);
    }
}

int setText(HeaderStringType* string, std::string_view text) {
    return setHeaderString(string, newString(text));
}

int splitDateTime(BitFileHeaderType* header) {
    std::string date;
    std::string time;
    forEachWord(headerText(header->dateTime), [&](std::string_view word) {
        if (time.empty() && word.find(':') != std::string_view::npos)
            time = word;
        else
            date.append(date.empty() ? "" : " ").append(word);
    });
    if (int status = setText(&header->date, date.empty() ? "unknown" : date); status != 0) return status;
    return setText(&header->time, time.empty() ? "00:00:00" : time);
}

} // namespace

int ReadLabeledString(parse_stream* stream, token_element* token, const char* label, HeaderStringType* string) {
    *string = {};
    ParseModes modes(stream, kPLAIN_TEXT_MODES, true);
    if (int status = findLabel(stream, token, label); status != 0) return status;
    if (token->type == &kEND_OF_FILE) return refuseFormat(stream);
    return setText(string, takeRestOfLine(stream));
}

int ReadRBTHeader(
    parse_stream* stream, token_element* token, BitFileHeaderType* header, fileIODescriptor** memoryFile) {
    *header = {};
    *memoryFile = nullptr;
    ParseModes modes(stream, kPLAIN_TEXT_MODES, true);
    if (int status = checkFirstWords(stream, token); status != 0) return status;
    for (const LabelType& row : kLABELS)
        if (int status = ReadLabeledString(stream, token, row.label, &(header->*row.string)); status != 0)
            return status;
    return OpenRBTData(stream, token, header, memoryFile);
}

int OpenRBTFile(fileSpecType* fileSpec, u32* dataLength, TarselDeviceType** device, BitFileHeaderType* header,
    fileIODescriptor** file) {
    if (fileSpec == nullptr || dataLength == nullptr || device == nullptr || header == nullptr || file == nullptr)
        return PrintError(kERROR_MESSAGE_STRING, 3, "An RBT file cannot be opened without its arguments.");
    *dataLength = 0;
    *device = nullptr;
    *header = {};
    *file = nullptr;

    Tracked<fileIODescriptor, abandonFile> opened;
    int status = readText(fileSpec, header, opened.out());
    if (status == 0) status = deviceOfHeader(header, fileSpec->fullName, device);
    if (status != 0) {
        DeleteBITHeader(header);
        return status;
    }
    *dataLength = header->dataLength;
    *file = opened.release();
    return 0;
}

int memdata::completeRBTHeader(BitFileHeaderType* header) {
    header->dialect = kT4K_DIALECT;
    header->fieldCount = 1;
    header->designTag = 'a';
    header->partTag = 'b';
    header->dateTag = 'c';
    header->timeTag = 'd';
    header->dataTag = 'e';
    if (int status = setText(&header->preamble, "\x0F\xF0\x0F\xF0\x0F\xF0\x0F\xF0"); status != 0) return status;
    if (header->designName.length == 0)
        if (int status = setText(&header->designName, "unknown"); status != 0) return status;
    return splitDateTime(header);
}
