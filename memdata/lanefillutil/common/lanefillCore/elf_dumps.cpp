// elf_dumps.cpp - see elf_dumps.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/elf_dumps.h"

#include "FileUtils/opening.h"
#include "LNF_ELFDataFile/LNF_ELFDataFile.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/memory.h"
#include "platform/run_inputs.h"

#include <memory>

namespace {

using namespace memdata;

constexpr u32 kDUMP_FILE = kOUTPUT_FILE | kREFUSE_OVERWRITE;
constexpr int kNO_MEMORY_STATUS = 7;

using OpenFile = Tracked<fileIODescriptor, abandonFile>;

// Where the dumps go. A null file is not asked for.
struct DumpTargets {
    OpenFile listing;
    OpenFile mem;
    bool toStandardOut = false;

    fileIODescriptor* listingFile() const { return toStandardOut ? &StandardOut : listing.get(); }
};

int openTarget(fileSpecType* spec, const char* extension, OpenFile* file) {
    return spec == nullptr ? 0 : OpenDiskFile(spec, "", extension, "", kDUMP_FILE, file->out());
}

// Outputs are opened ahead of the files that are dumped: only now it is known whether they are one of them.
int checkTarget(const OpenFile& file) {
    const char* const name = GetFileName(file.get());
    if (file == nullptr || !isRunInput(name)) return 0;
    return PrintError(kERROR_MESSAGE_STRING, 1,
        formatted(
            "File '%s' is an input of this run and can not be its output too. Please name another output.", name));
}

int closeTarget(OpenFile* file) {
    fileIODescriptor* finished = file->release();
    const int status = finished == nullptr ? 0 : Close_File(&finished);
    file->reset(finished); // a file that could not be finished is still there, and goes
    return status;
}

int dumpOpened(fileIODescriptor* in, u32 mask, const DumpTargets& targets) {
    const std::unique_ptr<LNF_ELFDataFile> elf(new LNF_ELFDataFile);
    if (elf == nullptr) return 7;
    int status = elf->OpenDataFile(in);
    if (status == 0 && targets.listingFile() != nullptr) status = elf->DumpELF(targets.listingFile(), mask);
    if (status == 0 && targets.mem != nullptr) status = elf->DumpELFAsMEM(targets.mem.get(), mask);
    return status;
}

} // namespace

int DoELFDumps(CmdStringOptionsType* options) {
    if (options->bdList == nullptr) return PrintError(kERROR_MISSING_DATA_FILE_NAME, 1);
    const RunInputs inputs;
    DumpTargets targets;
    targets.toStandardOut = options->dumpFile == nullptr && options->outputMemFile == nullptr;
    int status = openTarget(options->outputMemFile, "mem", &targets.mem);
    if (status == 0) status = openTarget(options->dumpFile, "dmp", &targets.listing);
    bool isDumped = false;
    int missing = 0; // status of the first file that could not be opened; the others are dumped all the same
    for (BDSwitchDataType* node = options->bdList; status == 0 && node != nullptr; node = node->next) {
        OpenFile in;
        const int opened = OpenDiskFile(node->dataFile, "", "elf", "", kBINARY_READ_WHOLE, in.out());
        if (opened == kNO_MEMORY_STATUS) return opened;
        if (missing == 0) missing = opened;
        if (in == nullptr) continue;
        status = dumpOpened(in.get(), options->dumpMask, targets);
        isDumped = true;
    }
    for (const OpenFile* target : {&targets.mem, &targets.listing})
        if (status == 0) status = checkTarget(*target);
    if (status != 0) return status;
    if (!isDumped && missing != 0) return missing; // an old file is not replaced by nothing

    for (OpenFile* target : {&targets.mem, &targets.listing})
        if (int closed = closeTarget(target); status == 0) status = closed;
    return status != 0 ? status : missing;
}
