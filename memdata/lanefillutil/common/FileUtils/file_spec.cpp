// file_spec.cpp - records of file names, and lists of them.
// SPDX-License-Identifier: Apache-2.0

#include "FileUtils/file_spec.h"

#include "FileUtils/internal.h"
#include "StringUtils/StringUtils.h"
#include "SystemUtils/memory.h"
#include "platform/HEXAll.h"

#include <algorithm>
#include <cstring>

namespace {

using memdata::OwnedFileSpec;
using memdata::OwnedString;

constexpr unsigned long kENTRY_BYTES = sizeof(void*);                  // of a list
constexpr unsigned long kMAX_ENTRIES = (1ul << 32) / kENTRY_BYTES - 1; // what the size in a block's header can tell

u8 lastSeparator(const char* name) {
    const std::string_view text(name);
    const size_t place = text.find_last_of("/\\");
    return place == text.npos ? u8{0} : static_cast<u8>(text[place]);
}

// A tracked copy that is marked like the buffer of a whole file, so that parsers may read it in place.
char* copyFileData(const char* data, u64 size) {
    // A size that leaves no room for the mark asks for more than there can be: the allocator reports it.
    const u64 bytes = size > UINT64_MAX - memdata::kSPARE_BYTES ? UINT64_MAX : size + memdata::kSPARE_BYTES;
    char* copy = static_cast<char*>(getMemory("file data", bytes));
    if (copy == nullptr) return nullptr;
    std::memcpy(copy, data, size);
    copy[size] = memdata::kEND_BYTE;
    return copy;
}

void deleteFileData(fileSpecType* spec) {
    if (spec->fileDataSize != 0) releaseMemory(spec->fileData);
    spec->fileData = nullptr;
    spec->fileDataSize = 0;
}

bool copyString(char** out, const char* text) {
    *out = StrDup(text);
    return text == nullptr || *out != nullptr;
}

// Entries that a list has room for, its terminator not counted; from the header of its block.
unsigned long listCapacity(FileSpecList list) {
    const auto* block = reinterpret_cast<const MemoryBlockType*>(list) - 1;
    return block->size / kENTRY_BYTES - 1;
}

FileSpecList allocateList(unsigned long n) {
    if (n >= kMAX_ENTRIES) return nullptr;
    return static_cast<FileSpecList>(getMemory("FileSpecPtrArrayType", (n + 1) * kENTRY_BYTES));
}

} // namespace

int InitializeFileSpec(fileSpecType* spec, const char* name, const char* extension) {
    if (spec == nullptr || name == nullptr) return 3;
    OwnedString volume, directory, baseName, ownExtension;
    if (int status = SeparateFilePathAndName(name, volume.out(), directory.out(), baseName.out(), ownExtension.out());
        status != 0)
        return status;
    if (extension != nullptr && *extension != '\0') ownExtension.reset(StrDup(extension));
    if (ownExtension == nullptr) return 7;

    std::string whole = std::string(volume.get()) + directory.get() + baseName.get();
    if (*ownExtension.get() != '\0') whole.append(".").append(ownExtension.get());
    OwnedString fullName(memdata::newString(whole));
    if (fullName == nullptr) return 7;

    spec->separator = lastSeparator(name); // ahead of the old parts' end: the name may be one of them
    for (char** part : {&spec->fullName, &spec->volume, &spec->directory, &spec->baseName, &spec->extension})
        StrDelete(*part);
    spec->fullName = fullName.release();
    spec->volume = volume.release();
    spec->directory = directory.release();
    spec->baseName = baseName.release();
    spec->extension = ownExtension.release();
    SetFileSpecFormatType(spec);
    return 0;
}

fileSpecType* NewFileSpec() {
    return NEW_RECORD(fileSpecType);
}

fileSpecType* CreateFileSpec(const char* name) {
    if (name == nullptr) return nullptr;
    OwnedFileSpec spec(NewFileSpec());
    if (spec == nullptr || InitializeFileSpec(spec.get(), name, nullptr) != 0) return nullptr;
    return spec.release();
}

fileSpecType* DupFileSpec(const fileSpecType* spec) {
    if (spec == nullptr) return nullptr;
    OwnedFileSpec copy(NewFileSpec());
    if (copy == nullptr) return nullptr;
    const bool complete = copyString(&copy->fullName, spec->fullName) && copyString(&copy->volume, spec->volume) &&
                          copyString(&copy->directory, spec->directory) &&
                          copyString(&copy->baseName, spec->baseName) && copyString(&copy->extension, spec->extension);
    if (!complete || FileSpecSetFileData(copy.get(), spec->fileData, spec->fileDataSize) != 0) return nullptr;
    copy->separator = spec->separator;
    copy->format = spec->format;
    copy->subType = spec->subType;
    copy->attribute = spec->attribute;
    return copy.release();
}

void DeleteFileSpec(fileSpecType** spec) {
    if (spec == nullptr || *spec == nullptr) return;
    fileSpecType* old = *spec;
    *spec = nullptr;
    for (char* part : {old->fullName, old->volume, old->directory, old->baseName, old->extension}) StrDelete(part);
    deleteFileData(old);
    releaseMemory(old);
}

void FileSpecSetSubType(fileSpecType* spec, u32 subType) {
    if (spec != nullptr) spec->subType = subType;
}

u32 FileSpecGetSubType(const fileSpecType* spec) {
    return spec == nullptr ? 0 : spec->subType;
}

void FileSpecSetAttribute(fileSpecType* spec, void* attribute) {
    if (spec != nullptr) spec->attribute = attribute;
}

void* FileSpecGetAttribute(const fileSpecType* spec) {
    return spec == nullptr ? nullptr : spec->attribute;
}

int FileSpecSetFileData(fileSpecType* spec, const char* data, u64 size) {
    if (spec == nullptr || (data == nullptr && size != 0)) return 3;
    char* copy = nullptr;
    if (size != 0) {
        copy = copyFileData(data, size);
        if (copy == nullptr) return 7;
    }
    deleteFileData(spec);
    spec->fileData = copy;
    spec->fileDataSize = size;
    return 0;
}

fileSpecType* CreateFileSpecWithFileData(const char* name, const char* data, u64 size) {
    OwnedFileSpec spec(CreateFileSpec(name));
    if (spec == nullptr || FileSpecSetFileData(spec.get(), data, size) != 0) return nullptr;
    return spec.release();
}

char* FileSpecGetFileData(const fileSpecType* spec, u64* size) {
    if (size != nullptr) *size = spec == nullptr ? 0 : spec->fileDataSize;
    return spec == nullptr ? nullptr : spec->fileData;
}

FileSpecList FileSpecListNew(unsigned long n) {
    FileSpecList list = allocateList(n);
    if (list == nullptr) throw HEXInternalException("The application has run out of memory");
    return list;
}

void FileSpecListSet(FileSpecList list, unsigned long index, fileSpecType* spec) {
    if (list != nullptr && index < listCapacity(list)) (&(*list)[0])[index] = spec;
}

fileSpecType* FileSpecListGet(FileSpecList list, unsigned long index) {
    return list != nullptr && index < listCapacity(list) ? (&(*list)[0])[index] : nullptr;
}

unsigned long FileSpecListCount(FileSpecList list) {
    if (list == nullptr) return 0;
    fileSpecType** entry = &(*list)[0];
    unsigned long count = 0;
    while (entry[count] != nullptr) ++count;
    return count;
}

// Copies the whole list each time: quadratic on purpose, lists are short.
int FileSpecListExtend(FileSpecList* list, fileSpecType* spec) {
    if (list == nullptr || spec == nullptr) return 3;
    const unsigned long count = FileSpecListCount(*list);
    FileSpecList longer = allocateList(count + 1);
    if (longer == nullptr) return 7;
    if (*list != nullptr) {
        std::copy_n(&(**list)[0], count, &(*longer)[0]);
        releaseMemory(*list);
    }
    (&(*longer)[0])[count] = spec;
    *list = longer;
    return 0;
}

int FileSpecListRemove(FileSpecList* list, fileSpecType* spec) {
    if (list == nullptr || spec == nullptr) return 3;
    const unsigned long count = FileSpecListCount(*list);
    if (count == 0) return 4;
    fileSpecType** first = &(**list)[0];
    fileSpecType** found = std::find(first, first + count, spec);
    if (found == first + count) return 4;
    std::copy(found + 1, first + count + 1, found); // with the terminator
    return 0;
}

int FileSpecListDelete(FileSpecList list) {
    if (list == nullptr) return 0;
    // Not by its count: FileSpecListSet may have left holes.
    const unsigned long capacity = listCapacity(list);
    for (unsigned long i = 0; i < capacity; ++i) {
        fileSpecType* spec = FileSpecListGet(list, i);
        DeleteFileSpec(&spec);
    }
    releaseMemory(list);
    return 0;
}
