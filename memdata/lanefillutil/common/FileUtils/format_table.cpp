// format_table.cpp - which extension means which format.
// SPDX-License-Identifier: Apache-2.0

#include "FileUtils/file_spec.h"

#include <algorithm>
#include <iterator>
#include <strings.h>

namespace {

struct FileFormatType {
    const char* extension;
    u32 code;
};

// The first extension of a code is the one that it is written with.
constexpr FileFormatType kFILE_FORMATS[] = {
    {"", 1},
    {"txt", 2},
    {"xml", 3},
    {"nky", 4},
    {"dmp", 5},
    {"bmm", 6},
    {"log", 7},
    {"msg", 8},
    {"c", 9},
    {"ucf", 10},
    {"vhd", 11},
    {"v", 12},
    {"mem", 13},
    {"vmf", 13},
    {"vmem", 13},
    {"bit", 14},
    {"rbt", 15},
    {"elf", 16},
    {"drf", 17},
    {"bif", 18},
    {"int", 19},
    {"inb", 20},
    {"bin", 21},
    {"img", 22},
    {"mif", 23},
    {"coe", 24},
    {"dat", 25},
    {"hex", 26},
    {"mcs", 27},
    {"exo", 28},
};
static_assert(std::ranges::is_sorted(kFILE_FORMATS, {}, &FileFormatType::code));

} // namespace

u32 DecodeFileFormatType(const char* extension) {
    if (extension == nullptr) extension = "";
    for (const FileFormatType& format : kFILE_FORMATS) {
        if (strcasecmp(format.extension, extension) == 0) return format.code;
    }
    return 0;
}

const char* DecodeFileExtensionType(u32 format) {
    const auto* row = std::ranges::find(kFILE_FORMATS, format, &FileFormatType::code);
    return row == std::end(kFILE_FORMATS) ? nullptr : row->extension;
}

void SetFileSpecFormatType(fileSpecType* spec) {
    if (spec != nullptr) spec->format = DecodeFileFormatType(spec->extension);
}
