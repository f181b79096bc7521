// compact_language.cpp - the compact language of -mf: its statements in a row, and what is left at the end.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/bmm_info.h"
#include "BmmUtils/compact_parser.h"
#include "BmmUtils/syntax.h"
#include "ParseUtils/file_path.h"
#include "ParseUtils/scanner.h"
#include "SystemUtils/alerts.h"

#include <algorithm>
#include <utility>

using namespace memdata;

namespace {

constexpr const char* kMAP_TEXT_NAME = "BMMInfo.bmm";
constexpr int kNO_PATH = 1;

// The letters of an older language, on purpose: the text has always been so.
constexpr const char* kSTATEMENTS = "BMM info keyword - m, i, c, r, t, p, j, a, s, or f";

int add_map(const InfoReader& in, OwnedFileSpec* spec, u32 subType) {
    FileSpecSetSubType(spec->get(), subType);
    const int status = in.bmmFiles->append(spec->get());
    if (status == 0) spec->release();
    return status;
}

// n: the name of the mapping.
int parse_output_name(const InfoReader& in) {
    collect_MF_info(&in.scratch->commandText, in.token->text, " ");
    OwnedFileSpec spec;
    const int status = parse_file_pathname(in.stream, in.token, true, true, true, spec.out());
    if (status == kNO_PATH) {
        if (!One_Of_Tokens(in.token->type, MF_EOFTerminators)) return refusePathSymbol(in.stream, in.token);
        return PrintErrorLocation(in.stream, kERROR_MF_BMM_FILE_NAME, kSYNTAX_STATUS, in.token);
    }
    if (status != 0) return status;
    collect_MF_info(&in.scratch->commandText, spec->fullName, " ");
    return add_map(in, &spec, kBMM_NAMING_FILE);
}

int parse_queued_space(const InfoReader& in) {
    return parse_addressSpace_info(in, nullptr);
}

struct StatementRow {
    const token_type* type;
    int (*parse)(const InfoReader& in);
};

constexpr StatementRow kPARSERS[] = {
    {&kSBMM_FILE_OUTPUT_NAME_KEYWORD, parse_output_name},
    {&kSDEFINE_MEM_TYPE_KEYWORD, parse_memory_type_info},
    {&kSADDRESS_INSTANCE_KEYWORD, parse_addressSpace_Instance_info},
    {&kCOMPONENT_INFO_KEYWORD, parse_component_info},
    {&kEREFERENCE_INFO_KEYWORD, parse_reference_info},
    {&kSHIERARCHY_LOCATION_KEYWORD, parse_hierarchy_info},
    {&kSADDRESS_TEMPLATE_KEYWORD, parse_addressTemplate_info},
    {&kSADDRESS_SPACE_KEYWORD, parse_queued_space},
    {&kSADDRESS_MAP_KEYWORD, parse_addressMap_info},
    {&kSADDRESS_JOIN_KEYWORD, parse_addressJoin_info},
};

int parse_statements(const InfoReader& in) {
    while (!One_Of_Tokens(in.token->type, MF_EOFTerminators)) {
        const auto* row = std::ranges::find(kPARSERS, in.token->type, &StatementRow::type);
        if (row == std::end(kPARSERS)) return refuseSymbol(in.stream, in.token, kSTATEMENTS);
        if (int status = row->parse(in); status != 0) return status;
    }
    return 0;
}

int parse_words(const InfoReader& in) {
    KeywordOverlay words(in.stream, &bmm_info_keyword_set);
    if (words.status() != 0) return words.status();
    int status = get_next_token(in.stream, in.token);
    if (status == 0) status = parse_statements(in);
    return status == 0 ? words.close() : status;
}

// What was compiled becomes a map of the options.
int hand_over(const InfoReader& in) {
    dequeue_addressSpace_info(in.scratch);
    if (int status = dequeue_addressMap_info(in.scratch); status != 0) return status;
    const std::string said = std::exchange(in.scratch->commandText, {});
    const std::string text = std::exchange(in.scratch->text, {});
    if (text.empty()) return 0;
    PrintDebug("Words of -mf.\n\n%s", said);
    PrintDebug("Compiled -mf command.\n\n%s", text);
    OwnedFileSpec spec(CreateFileSpecWithFileData(kMAP_TEXT_NAME, text.data(), text.size()));
    return spec == nullptr ? 7 : add_map(in, &spec, kBMM_INFO_TEXT);
}

int compile(parse_stream* stream, token_element* token, CmdStringOptionsType* options, bool isJoinText) {
    scratch_BMM_Info* scratch = get_scratchBMMInfo();
    if (scratch == nullptr) return 7;
    ListAppender<FileSpecLists> bmmFiles(&options->bmmFiles);
    const InfoReader in{stream, token, scratch, options, &bmmFiles, isJoinText};
    int status = parse_words(in);
    if (status == 0) status = hand_over(in);
    if (status != 0) delete_scratchBMMInfo();
    return status;
}

// The joins are statements that nobody wrote; they are read as such.
int compile_joins(CmdStringOptionsType* options) {
    const std::string text = output_addressJoin_info(*scratchBMMInfo);
    if (text.empty()) return 0;
    scratchBMMInfo->currentSpaceName.clear();
    scratchBMMInfo->hierarchyPath.clear();
    StreamOwner stream;
    const TokenOwner token(get_token_element());
    if (token == nullptr) return 7;
    int status = open_parse_MemoryFile(
        "joinInfo", text.data(), text.size(), &bmm_info_keyword_set, nullptr, nullptr, stream.out());
    if (status != 0) return status;
    // Macros and directives were acted on when the words were first read.
    set_parse_modes(stream.get(), nullptr, kMODE_NO_MACROS | kMODE_NO_DIRECTIVES, true);
    status = compile(stream.get(), token.get(), options, true);
    parse_stream* joins = stream.release();
    const int closed = close_parse_stream(&joins);
    return status != 0 ? status : closed;
}

int keep_elaborations(const std::string& text, CmdStringOptionsType* options) {
    if (text.empty()) return 0;
    options->bmmInfoText = StrPostCat(options->bmmInfoText, text.c_str());
    return options->bmmInfoText == nullptr ? 7 : 0;
}

} // namespace

int parse_bmm_info(parse_stream* stream, token_element* token, CmdStringOptionsType* options) {
    return compile(stream, token, options, false);
}

int finalize_bmm_info(CmdStringOptionsType* options) {
    if (scratchBMMInfo == nullptr) return 0;
    const std::string elaborations = scratchBMMInfo->elaborationText;
    int status = compile_joins(options);
    delete_scratchBMMInfo();
    if (status == 0) status = keep_elaborations(elaborations, options);
    return status;
}
