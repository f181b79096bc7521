// driver.cpp - see driver.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/driver.h"

#include "BitFileUtils/bit_commands.h"
#include "BitFileUtils/bit_container.h"
#include "BmmUtils/annotated_map.h"
#include "BmmUtils/model/creation.h"
#include "BmmUtils/parser.h"
#include "BmmUtils/validation.h"
#include "BmmUtils/xml_map.h"
#include "FileUtils/copied_output.h"
#include "ParseUtils/preprocess_file.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/process_end.h"
#include "lanefillCore/auto_data.h"
#include "lanefillCore/data_files.h"
#include "lanefillCore/elf_dumps.h"
#include "lanefillCore/output_files.h"
#include "lanefillCore/records/run_report.h"
#include "platform/run_inputs.h"

#include <new>

namespace {

using memdata::runReport;

constexpr u32 kRBT_FORMAT = 15;
constexpr const char* kUNNAMED_MAPPING = "Auto_Generated.bmm";

using OpenMapping = memdata::Tracked<AddressMappingType, close_bmm_addressMapping>;

// The file that gives the mapping its name: the one that is there for it, else the first.
const char* mappingName(const CmdStringOptionsType* options) {
    const unsigned long count = FileSpecListCount(options->bmmFiles);
    for (unsigned long i = 0; i < count; ++i)
        if (fileSpecType* spec = FileSpecListGet(options->bmmFiles, i); FileSpecGetSubType(spec) == kBMM_NAMING_FILE)
            return spec->fullName;
    return count == 0 ? kUNNAMED_MAPPING : FileSpecListGet(options->bmmFiles, 0)->fullName;
}

int readMap(const CmdStringOptionsType* options, fileSpecType* spec, AddressMappingType* mapping) {
    const auto* root = static_cast<const char*>(FileSpecGetAttribute(spec));
    switch (FileSpecGetSubType(spec)) {
    case kBMM_TEXT_FILE:
        return open_and_parse_bmm_file(spec, mapping, root, options->macroDefines, nullptr, nullptr);
    case kBMM_XML_FILE:
    case kBMM_XML_TEXT:
        return open_and_parse_bmm_XML(spec, mapping, root, options->macroDefines, nullptr, nullptr);
    case kBMM_INFO_TEXT:
        return open_and_parse_bmm_info(
            reinterpret_cast<unsigned char*>(FileSpecGetFileData(spec, nullptr)), mapping, nullptr, nullptr);
    default:
        return 0;
    }
}

// What an option record asks for.
struct Jobs {
    bool hasMaps;
    bool hasData;
    bool hasBitFile;
};

Jobs jobsOf(const CmdStringOptionsType* options) {
    return {FileSpecListCount(options->bmmFiles) > 0, options->bdList != nullptr, options->bitFile != nullptr};
}

// The jobs that need no address map. True when one of them was the whole run.
bool runWithoutMap(CmdStringOptionsType* options, const Jobs& jobs, int* status) {
    *status = 0;
    if (!jobs.hasMaps) {
        if (!jobs.hasData && options->preprocessFile != nullptr) {
            ++runReport().jobs;
            *status =
                open_and_preprocess_file(options->preprocessFile, "bmm", options->macroDefines, options->outputBmmFile);
            return true;
        }
        if (jobs.hasBitFile) return true;
    }
    if (!jobs.hasMaps || !jobs.hasBitFile) {
        if (options->imageFile != nullptr) return true;
        if (options->dumpEnabled) {
            ++runReport().jobs;
            *status = jobs.hasData ? DoELFDumps(options) : PrintError(kERROR_MISSING_DATA_FILE_NAME, 1);
            return true;
        }
    }
    return options->imageFile != nullptr || !jobs.hasMaps;
}

int dumpBitFile(CmdStringOptionsType* options, AddressMappingType* mapping) {
    if (int status = check_addressMapping_Locs(mapping); status != 0) return status;
    return DoBITDump(options->bitFile, options->dumpFile, options->dumpMask, mapping, nullptr);
}

int translate(CmdStringOptionsType* options, AddressMappingType* mapping) {
    bool is64Bit = false;
    if (int status = transform_data_files(options, mapping, is64Bit, options->macroDefines, options->progress);
        status != 0)
        return status;
    return create_output_files(options, mapping, is64Bit, options->progress);
}

int writeMaps(CmdStringOptionsType* options, AddressMappingType* mapping) {
    if (options->outputBmmFile != nullptr)
        if (int status = output_BMM_file(options->outputBmmFile, mapping, ""); status != 0) return status;
    if (options->outputXmlBmmFile != nullptr) return output_XML_BMM_file(options->outputXmlBmmFile, "", 0, mapping);
    return 0;
}

int runWithMap(CmdStringOptionsType* options, const Jobs& jobs, AddressMappingType* mapping) {
    const bool writesMaps = options->outputBmmFile != nullptr || options->outputXmlBmmFile != nullptr;
    if (options->dumpEnabled || options->autoInit || jobs.hasData || writesMaps) ++runReport().jobs;
    runReport().namesOutput = writesMaps || jobs.hasBitFile || options->bxList != nullptr;
    if (options->dumpEnabled && !jobs.hasData) return dumpBitFile(options, mapping);
    if (options->autoInit)
        if (int status = transform_auto_data_files(mapping, options->macroDefines); status != 0) return status;
    if (jobs.hasData)
        if (int status = translate(options, mapping); status != 0) return status;
    return writeMaps(options, mapping);
}

int execute(CmdStringOptionsType* options) {
    const Jobs jobs = jobsOf(options);
    int status = 0;
    if (runWithoutMap(options, jobs, &status)) return status;

    // A binary bit file is copied to its new name while maps and data are read.
    const bool copies = jobs.hasData && jobs.hasBitFile && options->bitFile->format != kRBT_FORMAT;
    const memdata::CopiedOutput copy(copies ? options->bitFile : nullptr, options->outputBitFile);

    OpenMapping mapping;
    status = open_bmm_addressMapping(options, mapping.out());
    if (status != 0) return status;
    status = runWithMap(options, jobs, mapping.get());

    mapping.reset(); // before the list that it was lent
    StrListDelete(options->workflowOps);
    options->workflowOps = nullptr;
    return status;
}

} // namespace

int execute_command_line_options(CmdStringOptionsType* options) {
    if (options == nullptr) return PrintError(kERROR_MESSAGE_STRING, 3, "There are no options to carry out.");
    const memdata::RunInputs inputs;
    runReport() = {};
    runReport().ignoresUnmapped = options->ignoreUnmapped != 0;
    try {
        return execute(options);
    } catch (const std::bad_alloc&) { // from texts of the standard library; tracked memory reports by itself
        return PrintFatalError(kFATAL_OUT_OF_MEMORY, 7, "text", 0, getCurrentMemoryUsage());
    }
}

int open_bmm_addressMapping(CmdStringOptionsType* options, AddressMappingType** mapping) {
    *mapping = nullptr;
    const unsigned long count = FileSpecListCount(options->bmmFiles);
    if (count == 0 && !options->designBmm)
        return options->dumpEnabled ? 0 : PrintError(kERROR_NO_BMM_FILES_SPECIFIED, 1);
    if (options->device == nullptr && options->bitFile != nullptr)
        if (int status = memdata::deviceOfBitFile(options->bitFile, &options->device); status != 0) return status;

    OpenMapping opened(create_addressMapping_element(
        mappingName(options), options->device, options->designBmm, options->workflowOps, nullptr));
    if (opened == nullptr) return 7;
    for (unsigned long i = 0; i < count; ++i)
        if (int status = readMap(options, FileSpecListGet(options->bmmFiles, i), opened.get()); status != 0)
            return status;
    *mapping = opened.release();
    return 0;
}

void close_bmm_addressMapping(AddressMappingType** mapping) {
    if (*mapping == nullptr) return;
    if (memdata::isProcessEndExpected())
        *mapping = nullptr;
    else
        delete_addressMapping(mapping);
}
