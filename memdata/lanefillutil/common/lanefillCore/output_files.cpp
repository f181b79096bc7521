// output_files.cpp - see output_files.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/output_files.h"

#include "BitFileUtils/bit_commands.h"
#include "BmmUtils/validation.h"
#include "SystemUtils/alerts.h"
#include "lanefillCore/mem_writer.h"
#include "lanefillCore/records/progress_stages.h"
#include "platform/ComMsgMgr.h"

namespace {

constexpr u32 kPLAIN_SEVERITY = 0; // goes to the host as it stands
constexpr int kOLD_FORM_STATUS = 14;

int rewriteBitFile(CmdStringOptionsType* options, AddressMappingType* mapping, ProgressSinkType progress) {
    if (int status = check_addressMapping_Locs(mapping); status != 0) return status;
    return DoBITReplacement(options->bitFile, options->outputBitFile, options->dumpMask, mapping, nullptr, progress);
}

// Kinds of files that were written once.
void tellFormerOutputs(const CmdStringOptionsType* options) {
    const auto tell = [](const fileSpecType* spec, const char* message) {
        if (spec != nullptr) ComMsgMgr::sendMsg::eval("memdata", kPLAIN_SEVERITY, message);
    };
    tell(options->outputUcfFile, "@28-293@");
    tell(options->outputVerilogFile, "@28-292@");
    tell(options->outputVhdlFile, "@28-291@");
}

} // namespace

int create_output_files(
    CmdStringOptionsType* options, AddressMappingType* mapping, bool is64Bit, ProgressSinkType progress) {
    if (options->bitFile != nullptr)
        if (int status = rewriteBitFile(options, mapping, progress); status != 0) return status;
    tellFormerOutputs(options);
    if (options->outputMemFile != nullptr) return PrintError(kERROR_USE_BX_OPTION_FOR_MEM_OUTPUT, kOLD_FORM_STATUS);

    const memdata::ScopedProgressSink sink(progress);
    return output_bitLane_mem_files(options->bxList, options->updateAll, is64Bit, mapping);
}
