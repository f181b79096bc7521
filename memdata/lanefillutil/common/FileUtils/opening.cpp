// opening.cpp - files on disk: opened, looked for, deleted, renamed.
// SPDX-License-Identifier: Apache-2.0

#include "FileUtils/opening.h"

#include "FileUtils/internal.h"
#include "FileUtils/output_target.h"
#include "FileUtils/state.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/memory.h"
#include "platform/run_inputs.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace memdata;

constexpr u64 kSTAT_BLOCK_BYTES = 512;

// Status 0; 1 it can not be read (not reported); 7 no memory. An empty file is open afterwards and holds nothing.
int openForReading(fileIODescriptor* file) {
    const int descriptor = open(file->name, O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0) return failReading(errno);
    noteRunInput(descriptor);
    file->stream = fdopen(descriptor, "rb");
    if (file->stream == nullptr) {
        failReading(errno);
        close(descriptor);
        return 1;
    }
    struct stat facts {};
    if (fstat(descriptor, &facts) != 0) return failReading(errno);
    if (S_ISDIR(facts.st_mode)) return failReading(EISDIR);
    file->physicalSize = static_cast<u64>(facts.st_blocks) * kSTAT_BLOCK_BYTES;
    // A size of 0 says nothing: files that the kernel makes up have it too.
    const bool sizeIsKnown = S_ISREG(facts.st_mode) && facts.st_size > 0;
    const int status = primeDiskInput(file, static_cast<u64>(facts.st_size), sizeIsKnown);
    return status == 0 ? 0 : status == kNO_MEMORY ? 7 : 1;
}

int openForWriting(fileIODescriptor* file) {
    if (!resizeBuffer(file, kBUFFER_BYTES)) return 7;
    file->mover = moveDiskOutput;
    return openOutputTarget(file);
}

int reportOpening(int status, const char* name, u32 attributes) {
    if (status != 1 || (attributes & kQUIET_OPEN) != 0) return status;
    const bool writes = (attributes & kWRITE_ACCESS) != 0;
    PrintError(writes ? kERROR_CREATING_FILE : kERROR_OPENING_FILE, 1, name);
    return reportCause(name, writes);
}

int refuseInput(const char* name) {
    return PrintError(kERROR_MESSAGE_STRING, 1,
        formatted(
            "File '%s' is an input of this run and can not be its output too. Please name another output.", name));
}

bool refusesOverwriting(u32 attributes) {
    constexpr u32 kBOTH = kREFUSE_OVERWRITE | kWRITE_ACCESS;
    return (gDefaultFileAttributes & kOVERWRITING_REFUSED) != 0 && (attributes & kBOTH) == kBOTH;
}

// Where the search looks in one folder: first with the directories that the name has itself.
int openInFolder(fileSpecType* spec, const char* folder, const char* defaultExtension, const char* suffix,
    u32 attributes, fileIODescriptor** file) {
    if (spec->directory != nullptr && *spec->directory != '\0' && *spec->directory != '/') {
        OwnedString deeper(CatFileName(folder, spec->directory));
        if (deeper == nullptr) return 7;
        const int status = OpenDiskFile(spec, deeper.get(), defaultExtension, suffix, attributes, file);
        if (status != 1) return status;
    }
    return OpenDiskFile(spec, folder, defaultExtension, suffix, attributes, file);
}

} // namespace

u32 SetDefaultFileAttributes(u32 bits, bool set) {
    const u32 old = gDefaultFileAttributes;
    gDefaultFileAttributes = set ? old | bits : old & ~bits;
    return old;
}

int Open_File(const char* name, u32 attributes, fileIODescriptor** file) {
    if (file == nullptr) return 3;
    *file = nullptr;
    if (name == nullptr) return 3;
    attributes |= gDefaultFileAttributes | kDISK_STORAGE;

    Tracked<fileIODescriptor, abandonFile> created(newDescriptor(name, attributes));
    if (created == nullptr) return 7;
    const bool writes = (attributes & kWRITE_ACCESS) != 0;
    if (writes && isRunInput(name)) return refuseInput(name);
    gFileState.openFailure = nullptr;
    const int status = writes ? openForWriting(created.get()) : openForReading(created.get());
    if (status != 0) return reportOpening(status, name, attributes);
    if (!writes && created->bufferEnd == 0) return 0; // nothing to read: the caller sees a null handle

    created->isOpen = 1;
    *file = created.release();
    return 0;
}

int OpenDiskFile(fileSpecType* spec, const char* directory, const char* defaultExtension, const char* suffix,
    u32 attributes, fileIODescriptor** file) {
    if (file == nullptr) return 3;
    *file = nullptr;
    if (spec == nullptr) return 3;
    if (spec->fullName == nullptr || *spec->fullName == '\0') {
        if ((attributes & kQUIET_OPEN) != 0) return 1;
        return PrintError(kERROR_EMPTY_FILE_NAME, 1, defaultExtension);
    }
    const bool reads = (attributes & kWRITE_ACCESS) == 0;
    // An input keeps its extension by itself: of that there is nothing to warn about.
    const u32 naming = reads ? (attributes | kKEEP_EXTENSION) & ~kWARN_EXTENSION_REPLACED : attributes;
    OwnedString built;
    if (int status = BuildNewFileName(spec->fullName, built.out(), directory, defaultExtension, suffix, naming);
        status != 0)
        return status;
    gFileState.outputFileNameBuffer = built.get();
    // A copy: the alerts below may open a file themselves.
    const std::string name = gFileState.outputFileNameBuffer;

    if (refusesOverwriting(attributes) && wouldOverwrite(name.c_str()))
        return PrintError(kERROR_OVERWRITING_FILE, 1, name);
    return Open_File(name.c_str(), attributes, file);
}

int SearchAndOpenDiskReadFile(fileSpecType* spec, const char* defaultExtension, const char* suffix, StrList searchPaths,
    u32 attributes, fileIODescriptor** file) {
    if (file == nullptr) return 3;
    *file = nullptr;
    if (spec == nullptr) return 3;
    const u32 quiet = attributes | kQUIET_OPEN;
    int status = OpenDiskFile(spec, nullptr, defaultExtension, suffix, quiet, file);
    const char* cause = gFileState.openFailure; // of a file that is there tells more than that of one that is not
    const unsigned long count = StrListCount(searchPaths);
    for (unsigned long i = 0; status == 1 && i < count; ++i) {
        status = openInFolder(spec, StrListGet(searchPaths, i), defaultExtension, suffix, quiet, file);
        if (cause == nullptr) cause = gFileState.openFailure;
    }
    gFileState.openFailure = cause;
    return reportOpening(status, spec->fullName, attributes);
}

int Delete_File(const char* name) {
    return name != nullptr && unlink(name) == 0 ? 0 : 1;
}

int Rename_File(const char* from, const char* to) {
    return from != nullptr && to != nullptr && std::rename(from, to) == 0 ? 0 : 1;
}
