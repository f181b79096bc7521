// map_files.cpp - opens the texts of address maps for the parser.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/parser.h"
#include "FileUtils/opening.h"
#include "ParseUtils/streams.h"
#include "SystemUtils/alerts.h"
#include "lanefillCore/records/progress_stages.h"
#include "platform/whole_file.h"

#include <cstring>
#include <string>

using namespace memdata;

namespace {

constexpr int kEMPTY_INPUT = 17;
constexpr int kCANNOT_OPEN = 1;

bool has_text(const char* text) {
    return text != nullptr && *text != '\0';
}

// What a run can tell a map by: a file that was never reached says nothing.
bool holds_nothing(const AddressMappingType* mapping) {
    return mapping->statementCount == 0 && StrListCount(mapping->workflowOperations) == 0;
}

WholeFile read_file(const fileSpecType* spec, std::string* text, std::string* reason) {
    WholeFile result = readWholeFile(spec->fullName, text, reason);
    if (result == WholeFile::kCANNOT_OPEN && !has_text(spec->extension))
        result = readWholeFile(std::string(spec->fullName) + ".bmm", text, reason);
    return result;
}

int read_map_text(fileSpecType* spec, std::string* text) {
    u64 size = 0;
    if (const char* data = FileSpecGetFileData(spec, &size); data != nullptr) {
        text->assign(data, size);
        return 0;
    }
    std::string reason;
    const WholeFile result = read_file(spec, text, &reason);
    if (result == WholeFile::kREAD) return 0;
    if (result == WholeFile::kCANNOT_OPEN) return reportUnopened(spec->fullName, reason);
    return PrintError(
        kERROR_MESSAGE_STRING, kCANNOT_OPEN, formatted("File '%s' can not be read: %s", spec->fullName, reason));
}

// A status of reading stays that of the stream's end only when nothing failed ahead of it.
int parse_open_stream(StreamOwner stream, const char* root, AddressMappingType* mapping) {
    if (!stream->isOnStack)
        if (int status = push_parse_context(stream.get()); status != 0) return status;
    const int status = parse_bmm_file(stream.get(), root, mapping);
    parse_stream* context = stream.release();
    const int closed = close_parse_stream(&context);
    return status != 0 ? status : closed;
}

// Status 17 for a text that holds nothing; its opener words the alert.
int parse_text(const char* name, const char* text, u64 length, bool isFile, AddressMappingType* mapping,
    const char* root, const char* rescanText, parse_stream* parent) {
    StreamOwner stream;
    int status = open_parse_MemoryFile(name, text, length, &bmm_keyword_set, rescanText, parent, stream.out());
    if (status != 0) return status;
    if (isFile) showAsFile(stream.get());
    status = parse_open_stream(std::move(stream), root, mapping);
    // A failure ahead of the first statement is one all the same.
    return status == 0 && holds_nothing(mapping) ? kEMPTY_INPUT : status;
}

} // namespace

int open_and_parse_bmm_file(fileSpecType* spec, AddressMappingType* mapping, const char* root, const char* rescanText,
    parse_stream* parent, parse_stream** out) {
    if (out != nullptr) *out = nullptr;
    if (spec == nullptr || !has_text(spec->fullName)) return PrintError(kERROR_EMPTY_FILE_NAME, kCANNOT_OPEN, "bmm");
    std::string text;
    if (int status = read_map_text(spec, &text); status != 0) return status;
    ProgressStage stage(formatted("Reading '%s'...", spec->fullName), text.size());
    int status = parse_text(spec->fullName, text.data(), text.size(), true, mapping, root, rescanText, parent);
    if (status == 0) status = stage.finish();
    if (status != kEMPTY_INPUT) return status;
    return PrintWarning(kERROR_EMPTY_INPUT_FILE, kEMPTY_INPUT, spec->fullName, "BMM");
}

int open_and_parse_bmm_info(
    unsigned char* text, AddressMappingType* mapping, parse_stream* parent, parse_stream** out) {
    constexpr const char* kNAME = "BMMInfo.bmm";
    if (out != nullptr) *out = nullptr;
    const char* characters = text == nullptr ? "" : reinterpret_cast<const char*>(text);
    PrintDebug("BMM Info results.\n\n%s", characters);
    const int status = parse_text(kNAME, characters, std::strlen(characters), false, mapping, nullptr, nullptr, parent);
    if (status != kEMPTY_INPUT) return status;
    return PrintError(kERROR_EMPTY_INPUT_FILE, kEMPTY_INPUT, kNAME, "BMM");
}
