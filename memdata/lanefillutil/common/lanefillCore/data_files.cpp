// data_files.cpp - see data_files.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/data_files.h"

#include "BmmUtils/model/creation.h"
#include "BmmUtils/model/selection.h"
#include "BmmUtils/model/text.h"
#include "SystemUtils/alerts.h"
#include "lanefillCore/data_file_readers.h"
#include "lanefillCore/records/progress_stages.h"
#include "lanefillCore/segments.h"
#include "platform/ComMsgMgr.h"

#include <memory>

namespace {

constexpr unsigned kTRANSLATION_FLAGS = 1; // of OpenDataFile
constexpr u32 kPLAIN_SEVERITY = 0;
constexpr int kNO_SPACE_STATUS = 4;
constexpr int kOTHER_PROCESSOR_STATUS = 23;

// Formats of files that hold a configuration, not software.
constexpr u32 kBIT_FORMAT = 14;
constexpr u32 kRBT_FORMAT = 15;
constexpr u32 kDATA_FORMATS[] = {13, 24, 23, 16, 17}; // MEM, COE, MIF, ELF, DRF

bool isDataFormat(u32 format) {
    for (const u32 known : kDATA_FORMATS)
        if (known == format) return true;
    return false;
}

const char* const* tagNames(const BDSwitchDataType* request) {
    return request->tagNames == nullptr || request->tagCount < 0 ? nullptr
                                                                 : reinterpret_cast<char**>(request->tagNames);
}

// A file that names no start of its own goes behind the one before it, once that had one.
void inheritStart(BDSwitchDataType* request, StartAddressTypeX<unsigned long>* nextStart) {
    if (!nextStart->isSet || request->start.isSet) return;
    request->start = *nextStart;
    nextStart->isSet = false;
}

unsigned long firstMapProcessors(const AddressMappingType* mapping) {
    return mapping == nullptr || mapping->addressMaps == nullptr ? 0 : mapping->addressMaps->processorType;
}

int bytesOfSections(LNF_DataFile* file, u64* byteCount) {
    *byteCount = 0;
    for (unsigned long i = 0; i < file->GetProgramSectionCount(); ++i) {
        DataFileSectionTypeX<unsigned long> section{};
        if (int status = file->GetProgramSectionData(i, &section); status != 0) return status;
        *byteCount += section.size;
    }
    return 0;
}

// The two failures that carry no alert of their own get one here: a run does not end without a word. Other failures
// with the same status have been reported where they arose.

int explainNoSpace(const LNF_DataFile* file, const AddressMappingType* mapping) {
    return PrintError(kERROR_MESSAGE_STRING, kNO_SPACE_STATUS,
        memdata::formatted(
            "Data file '%s' finds no ADDRESS_SPACE in '%s'.", file->GetDataFileName(), mapping->bmmBaseName));
}

// A map that names no processor has one all the same.
int explainOtherProcessor(const LNF_DataFile* file, const AddressMappingType* mapping, const AddressMapType* map) {
    const char* processor = get_processorType_string(map->processorType);
    return PrintError(kERROR_MESSAGE_STRING, kOTHER_PROCESSOR_STATUS,
        map->isNamed
            ? memdata::formatted("Data file '%s' was built for another processor than %s, that of ADDRESS_MAP '%s' "
                                 "in '%s'.",
                  file->GetDataFileName(), processor, map->name, mapping->bmmBaseName)
            : memdata::formatted("Data file '%s' was built for another processor than %s, which counts for the "
                                 "spaces outside of any ADDRESS_MAP in '%s'.",
                  file->GetDataFileName(), processor, mapping->bmmBaseName));
}

} // namespace

int transform_data_files(CmdStringOptionsType* options, AddressMappingType* mapping, bool& is64Bit,
    const char* macroDefines, ProgressSinkType progress) {
    const memdata::ScopedProgressSink sink(progress);
    memdata::DataFileWalk walk;
    for (BDSwitchDataType* request = options->bdList; request != nullptr; request = request->next) {
        LNF_DataFile* opened = nullptr;
        if (int status = open_data_file(request->dataFile, macroDefines, kTRANSLATION_FLAGS, &opened); status != 0)
            return status;
        const std::unique_ptr<LNF_DataFile> file(opened);
        is64Bit = file->getAddressWidth() == kADDRESS_WIDTH_64;
        const int status = memdata::translateDataFile(file.get(), request, mapping, options->ignoreUnmapped, &walk);
        if (status != 0) return status;
    }
    return 0;
}

namespace memdata {

int translateDataFile(LNF_DataFile* file, BDSwitchDataType* request, AddressMappingType* mapping, bool ignoreUnmapped,
    DataFileWalk* walk) {
    if (int status = insert_data_filename(file->GetDataFileName(), mapping->dataFiles); status != 0) return status;
    if (int status = prepare_data_file(file, request, mapping); status != 0) return status;
    if (file->GetProgramSectionCount() == 0) return 0;
    inheritStart(request, &walk->nextStart);

    OwnedMapping eligible;
    const char* const* names = tagNames(request);
    int status =
        filter_eligible_addressSpaces(mapping, request->tagCount, names, nullptr, 0, &walk->iterator, eligible.out());
    if (status == kNO_SPACE_STATUS && names == nullptr) return explainNoSpace(file, mapping);
    if (status != 0) return status;
    status = transform_data_file_segments(file, request, eligible.get(), &walk->nextStart, ignoreUnmapped);
    if (status == 0) return file->CheckUnchanged();
    const bool isOfOther = status == kOTHER_PROCESSOR_STATUS && eligible.get()->addressMaps != nullptr &&
                           file->IsMatchingProcessorType(firstMapProcessors(eligible.get())) == status;
    return isOfOther ? explainOtherProcessor(file, mapping, eligible.get()->addressMaps) : status;
}

} // namespace memdata

// The host's messages say what is wrong, the alerts with which file.
int open_data_file(fileSpecType* spec, const char* macroDefines, unsigned flags, LNF_DataFile** file) {
    *file = nullptr;
    if (spec->format == kBIT_FORMAT || spec->format == kRBT_FORMAT) {
        ComMsgMgr::sendMsg::eval("memdata", ComMsgMgr::kERROR, "@28-294@");
        return PrintError(kERROR_MESSAGE_STRING, 1,
            memdata::formatted("Data file '%s' is a bit file, which holds no software.", spec->fullName));
    }
    if (!isDataFormat(spec->format)) {
        ComMsgMgr::sendMsg::eval("memdata", ComMsgMgr::kERROR, "@28-295@");
        return PrintError(kERROR_UNKNOWN_DATA_FILE_EXTENSION, 1, spec->fullName);
    }
    LNF_DataFile* reader = nullptr;
    if (int status = memdata::newDataFileReader(spec, &reader); status != 0) return status;
    std::unique_ptr<LNF_DataFile> owned(reader);
    if (int status = owned->OpenDataFile(spec, macroDefines, flags); status != 0) return status;
    *file = owned.release();
    return 0;
}

int prepare_data_file(LNF_DataFile* file, BDSwitchDataType*, AddressMappingType* mapping) {
    if (file->GetProgramSectionCount() > 0) return 0;
    if (!mapping->isAutoGenerated) return PrintError(kERROR_DATA_FILE_WAS_EMPTY, 2, file->GetDataFileName());
    ComMsgMgr::sendMsg::eval("memdata", kPLAIN_SEVERITY, "@28-290@");
    return 0;
}

int transform_data_file_segments(LNF_DataFile* file, BDSwitchDataType* request, AddressMappingType* mapping,
    StartAddressTypeX<unsigned long>* nextStart, bool ignoreUnmapped) {
    if (int status = file->IsMatchingProcessorType(firstMapProcessors(mapping)); status != 0) return status;
    u64 byteCount = 0;
    if (int status = bytesOfSections(file, &byteCount); status != 0) return status;

    memdata::ProgressStage stage(memdata::formatted("Translating '%s'...", file->GetDataFileName()), byteCount);
    DataFileSectionTypeX<unsigned long> previous{};
    unsigned long index = 0;
    do {
        DataFileSectionTypeX<unsigned long> section{};
        int status = file->GetProgramSectionData(index, &section);
        memdata::ProgressPart part(section.size); // however many spaces take it
        if (status == 0)
            status =
                transform_segment(file->GetDataFileName(), mapping, &request->boot, file->GetDataFileStatupAddress(),
                    &request->start, nextStart, ignoreUnmapped, static_cast<long>(index), &section, &previous);
        if (status == 0) status = part.finish();
        if (status != 0) return status;
        previous = section;
    } while (++index < file->GetProgramSectionCount());
    return stage.finish();
}
