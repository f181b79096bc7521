// preprocess_file.cpp - the run that only preprocesses.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/preprocess_file.h"

#include "ParseUtils/scanner.h"
#include "SystemUtils/alerts.h"

#include <filesystem>
#include <system_error>
#include <utility>

using namespace memdata;

namespace {

constexpr int kEMPTY_TEXT = 17;
constexpr u32 kOUTPUT_ATTRIBUTES = kKEEP_EXTENSION | kTEXT_WRITE | kREFUSE_OVERWRITE;
constexpr u32 kLAYOUT_MODES = kMODE_WHITESPACE | kMODE_LINE_ENDS;

using FileOwner = Tracked<fileIODescriptor, abandonFile>;

bool is_switched_or_copied() {
    return !gOutputEnabled || (gJournalingEnabled && StandardLog != nullptr);
}

// Files take the bytes as they are. Standard output goes through its switches and the journal, where one is in use.
int write_text(fileIODescriptor* file, const char* text, u64 length) {
    if (file != &StandardOut) return outputBlock(file, text, length);
    return is_switched_or_copied() ? PutNextLine(file, "%s", text) : outputLine(file, text);
}

int write_token(fileIODescriptor* file, const token_element* token) {
    const bool isString = token->type == &kQUOTED_STRING_TOKEN;
    int status = isString ? write_text(file, "\"", 1) : 0;
    if (status == 0) status = write_text(file, token->text, token->length);
    if (status == 0 && isString) status = write_text(file, "\"", 1);
    if (status == 0 && token->type == &kCOMMENT_BLOCK_TOKEN) status = write_text(file, "\n", 1);
    return status;
}

int write_tokens(parse_stream* stream, fileIODescriptor* file) {
    const TokenOwner token(get_token_element());
    if (token == nullptr) return 7;
    for (;;) {
        if (int status = get_next_token(stream, token.get()); status != 0) return status;
        if (token->type == &kEND_OF_FILE) return 0;
        if (int status = write_token(file, token.get()); status != 0) return status;
    }
}

int preprocess_stream(StreamOwner stream, fileIODescriptor* file) {
    // The text that is read first stands above the file: both have the modes.
    stream->parseModes |= kLAYOUT_MODES;
    activeContext(stream.get())->parseModes |= kLAYOUT_MODES;
    if (int status = write_tokens(stream.get(), file); status != 0) return status;
    parse_stream* ended = stream.release();
    return close_parse_stream(&ended);
}

// Whether the finished output would take the place of the file that is being read, by whatever name or link.
bool would_replace(const parse_stream* stream, const fileSpecType* in, const fileIODescriptor* out) {
    if (out->targetName == nullptr || (in->fileData != nullptr && in->fileDataSize != 0)) return false;
    std::error_code missing; // then they are not the same
    return std::filesystem::equivalent(GetFileName(stream->file), out->targetName, missing);
}

} // namespace

int open_and_preprocess_file(fileSpecType* in, const char* extension, const char* rescanText, fileSpecType* out) {
    StreamOwner stream;
    const int opened = open_parse_DiskFile(in, extension, nullptr, rescanText, nullptr, stream.out());
    if (opened != 0 && opened != kEMPTY_TEXT) return opened;
    if (out == nullptr) return preprocess_stream(std::move(stream), &StandardOut);

    FileOwner file;
    if (int status = OpenDiskFile(out, "", extension, "", kOUTPUT_ATTRIBUTES, file.out()); status != 0) return status;
    if (would_replace(stream.get(), in, file.get()))
        return PrintError(kERROR_MESSAGE_STRING, 1,
            formatted("Output file '%s' would replace the file that it is made of.", GetFileName(file.get())));
    if (int status = preprocess_stream(std::move(stream), file.get()); status != 0) return status;
    fileIODescriptor* written = file.release();
    const int status = Close_File(&written);
    if (status != 0) abandonFile(&written);
    return status;
}
