// option_reader.cpp - see option_reader.h.
// SPDX-License-Identifier: Apache-2.0
#include "CmdParseUtils/option_reader.h"

#include "ParseUtils/file_path.h"
#include "ParseUtils/scanner.h"

#include <utility>

namespace memdata {

namespace {

constexpr int kNO_PATH = 1;
constexpr const token_type* kENDS[] = {&kMINUS, &kCMD_LINE_SWITCH, &kEND_OF_FILE_OP, nullptr};

BDSwitchDataType** end_of(BDSwitchDataType** list) {
    while (*list != nullptr) list = &(*list)->next;
    return list;
}

} // namespace

OptionReader::OptionReader(parse_stream* text, token_element* next, CmdStringOptionsType* record, int* switches)
    : stream(text), token(next), options(record), count(switches), bmmFiles(&record->bmmFiles),
      outputImageFiles(&record->outputImageFiles), includePaths(&record->includePaths),
      workflowOps(&record->workflowOps), helpTopics(&record->helpTopics), bdEnd(end_of(&record->bdList)),
      bxEnd(end_of(&record->bxList)) {}

int OptionReader::next() {
    return get_next_token(stream, token);
}

bool OptionReader::atEnd() const {
    return One_Of_Tokens(token->type, kENDS);
}

int OptionReader::path(fileSpecType** spec) {
    OwnedFileSpec read;
    if (int status = parse_file_pathname(stream, token, true, false, true, read.out()); status != 0) return status;
    DeleteFileSpec(spec);
    *spec = read.release();
    return 0;
}

int OptionReader::path(fileSpecType** spec, const Alert_message_type& missing) {
    OwnedFileSpec read;
    const int status = parse_file_pathname(stream, token, true, true, true, read.out());
    if (status == kNO_PATH) return atEnd() ? fail(missing) : refusePathSymbol(stream, token);
    if (status != 0) return status;
    DeleteFileSpec(spec);
    *spec = read.release();
    return 0;
}

int OptionReader::flush() {
    if (macroDefines.empty()) return 0;
    const std::string lines = std::exchange(macroDefines, {});
    options->macroDefines = StrPostCat(options->macroDefines, lines.c_str());
    return options->macroDefines == nullptr ? 7 : 0;
}

void OptionReader::look() {
    bmmFiles.look();
    outputImageFiles.look();
    includePaths.look();
    workflowOps.look();
    helpTopics.look();
    bdEnd = end_of(bdEnd);
    bxEnd = end_of(bxEnd);
}

} // namespace memdata
