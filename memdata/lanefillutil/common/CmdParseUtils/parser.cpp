// parser.cpp - option texts switch by switch.
// SPDX-License-Identifier: Apache-2.0
#include "CmdParseUtils/CmdParseUtils.h"
#include "CmdParseUtils/option_reader.h"

#include "BmmUtils/bmm_info.h"
#include "ParseUtils/file_path.h"
#include "ParseUtils/scanner.h"

#include <algorithm>
#include <cstring>

using namespace memdata;

namespace {

constexpr int kEMPTY_TEXT = 17; // no text is no switch, and no error

struct SwitchRow {
    const token_type* type;
    int (*read)(OptionReader* reader);
};

// -encrypt has no row on purpose: what fed it is gone, and it is refused like any word that is no switch.
constexpr SwitchRow kHANDLERS[] = {
    {&kBM_SWITCH, readMapSwitch},
    {&kMX_SWITCH, readXmlTextSwitch},
    {&kBT_SWITCH, readBitFileSwitch},
    {&kLOG_SWITCH, readLogSwitch},
    {&kF_SWITCH, readOptionFileSwitch},
    {&kBD_SWITCH, readDataFileSwitch},
    {&kIMAGE_SWITCH, readImageSwitch},
    {&kWORKFLOW_SWITCH, readWorkflowSwitch},
    {&kSPLIT_SWITCH, readSplitSwitch},
    {&kBYTEWIDTH_SWITCH, readByteWidthSwitch},
    {&kFILL_SWITCH, readFillSwitch},
    {&kBX_SWITCH, readMemFolderSwitch},
    {&kMF_SWITCH, readInfoTextSwitch},
    {&kP_SWITCH, readPartSwitch},
    {&kH_SWITCH, readHelpSwitch},
    {&kIGNORE_SWITCH, readIgnoreSwitch},
    {&kAUTO_INIT_SWITCH, readAutoInitSwitch},
    {&kU_SWITCH, readUpdateSwitch},
    {&kO_SWITCH, readOutputSwitch},
    {&kQ_SWITCH, readQuietSwitch},
    {&kDEFINE_SWITCH, readDefineSwitch},
    {&kDUMP_SWITCH, readDumpSwitch},
    {&kDATASET_SWITCH, readDatasetSwitch},
    {&kINCLUDE_SWITCH, readIncludeSwitch},
    {&kPG_SWITCH, readProgressSwitch},
    {&kPP_SWITCH, readPreprocessSwitch},
    {&kW_SWITCH, readOverwriteSwitch},
    {&kMSG_SWITCH, readMessageSwitch},
    {&kMSGC_SWITCH, readLocationSwitch},
};

int read_switches(OptionReader* reader) {
    while (reader->token->type != &kEND_OF_FILE) {
        const auto* row = std::ranges::find(kHANDLERS, reader->token->type, &SwitchRow::type);
        if (row == std::end(kHANDLERS))
            return reader->refuse(kERROR_UNEXPECTED_SYMBOL_AND_EXPECTED, kOPTION_FAILURE, "a command switch");
        ++*reader->count;
        if (int status = row->read(reader); status != 0) return status;
    }
    return 0;
}

int keep_text(CmdStringOptionsType* options, const char* text) {
    const std::string added = (options->cmdString == nullptr ? "" : " ") + std::string(text);
    options->cmdString = StrPostCat(options->cmdString, added.c_str());
    return options->cmdString == nullptr ? 7 : 0;
}

int read_first_token(parse_stream* stream, token_element* token) {
    set_parse_modes(stream, nullptr, kMODE_NO_JOINING, true);
    return get_next_token(stream, token);
}

int read_program_path(parse_stream* stream, token_element* token, CmdStringOptionsType* options) {
    set_parse_modes(stream, nullptr, kMODE_NO_JOINING, true);
    return parse_file_pathname(stream, token, true, false, true, &options->programFile);
}

// Closes the stream: what was left open in it is an error of its own.
int close_text(StreamOwner* stream, int status) {
    parse_stream* text = stream->release();
    const int closed = close_parse_stream(&text);
    return status == 0 ? closed : status;
}

} // namespace

void InitalizeCmdStringOptions(CmdStringOptionsType*) {}

int ParseCmdStringStream(parse_stream* stream, token_element* token, CmdStringOptionsType* options, int* count) {
    OptionReader reader(stream, token, options, count);
    const int status = read_switches(&reader);
    const int flushed = reader.flush();
    return status != 0 ? status : flushed;
}

int ParseCmdStringOptions(const char* text, CmdStringOptionsType* options, int* count) {
    const bool hasProgram = *count == 0 && options->programFile == nullptr;
    *count = 0;
    if (int status = keep_text(options, text); status != 0) return status;
    StreamOwner stream;
    const TokenOwner token(get_token_element());
    if (token == nullptr) return 7;
    int status = open_parse_MemoryFile(
        "cmdString", text, std::strlen(text), &cmd_line_keyword_set, nullptr, nullptr, stream.out());
    if (status == kEMPTY_TEXT) return 0;
    if (status != 0) return status;
    status = hasProgram ? read_program_path(stream.get(), token.get(), options)
                        : read_first_token(stream.get(), token.get());
    if (status == 0) status = ParseCmdStringStream(stream.get(), token.get(), options, count);
    return close_text(&stream, status);
}

int ParseCmdFile(CmdStringOptionsType* options, int* count) {
    StreamOwner stream;
    const TokenOwner token(get_token_element());
    if (token == nullptr) return 7;
    int status = open_parse_DiskFile(options->optionFile, "opt", &cmd_line_keyword_set, nullptr, nullptr, stream.out());
    if (status == kEMPTY_TEXT) return 0;
    if (status != 0) return status;
    status = read_first_token(stream.get(), token.get());
    if (status == 0) status = ParseCmdStringStream(stream.get(), token.get(), options, count);
    return close_text(&stream, status);
}

int FinalizeCmdStringOptions(CmdStringOptionsType* options) {
    return finalize_bmm_info(options);
}
