// file_names.cpp - names of files as text: taken apart, translated, put together.
// SPDX-License-Identifier: Apache-2.0

#include "FileUtils/attributes.h"
#include "FileUtils/file_spec.h"
#include "StringUtils/StringUtils.h"
#include "SystemUtils/alerts.h"

#include <algorithm>

namespace {

struct FileNameParts {
    std::string_view volume, directory, baseName, extension;
};

FileNameParts splitFileName(std::string_view name) {
    FileNameParts parts;
    if (size_t colon = name.find(":/"); colon != name.npos) {
        parts.volume = name.substr(0, colon + 1);
        name.remove_prefix(colon + 1);
    }
    if (size_t slash = name.rfind('/'); slash != name.npos) {
        parts.directory = name.substr(0, slash + 1);
        name.remove_prefix(slash + 1);
    }
    parts.baseName = name;
    // "." and ".." are folders, not an extension's dot.
    if (size_t dot = name.rfind('.'); dot != name.npos && name != "." && name != "..") {
        parts.baseName = name.substr(0, dot);
        parts.extension = name.substr(dot + 1);
    }
    return parts;
}

std::string_view textOrEmpty(const char* text) {
    return text == nullptr ? std::string_view() : text;
}

std::string withSlash(std::string_view directory) {
    std::string path(directory);
    if (!path.empty() && path.back() != '/') path += '/';
    return path;
}

} // namespace

int SeparateFilePathAndName(const char* name, char** volume, char** directory, char** baseName, char** extension) {
    if (name == nullptr) return 3;
    const FileNameParts parts = splitFileName(name);
    const std::string_view texts[] = {parts.volume, parts.directory, parts.baseName, parts.extension};
    char** const outs[] = {volume, directory, baseName, extension};

    memdata::OwnedString strings[4];
    for (size_t i = 0; i < 4; ++i) {
        if (outs[i] == nullptr) continue;
        strings[i].reset(memdata::newString(texts[i]));
        if (strings[i] == nullptr) return 7;
    }
    for (size_t i = 0; i < 4; ++i) {
        if (outs[i] != nullptr) *outs[i] = strings[i].release();
    }
    return 0;
}

char* CopyAndTranslateFilePath(const char* volume, const char* directory) {
    std::string path(textOrEmpty(volume));
    path += textOrEmpty(directory);
    std::ranges::replace(path, '\\', '/');
    return memdata::newString(path);
}

char* CopyFileName(const char* name) {
    return name == nullptr ? nullptr : memdata::newString(name);
}

char* CatFileName(const char* directory, const char* name) {
    return memdata::newString(withSlash(textOrEmpty(directory)).append(textOrEmpty(name)));
}

int BuildNewFileName(const char* name, char** out, const char* directory, const char* defaultExtension,
    const char* suffix, u32 attributes) {
    if (name == nullptr || out == nullptr) return 3;
    const FileNameParts parts = splitFileName(name);

    std::string path = withSlash(textOrEmpty(directory));
    if (path.empty()) path.append(parts.volume).append(parts.directory);
    path.append(parts.baseName).append(textOrEmpty(suffix));

    const bool keeps = !parts.extension.empty() && (attributes & kKEEP_EXTENSION) != 0;
    const std::string_view extension = keeps ? parts.extension : textOrEmpty(defaultExtension);
    if (!extension.empty()) path.append(".").append(extension);

    memdata::OwnedString built(memdata::newString(path));
    if (built == nullptr) return 7;
    // Nothing is replaced in a name that had no extension. The comparison is exact: "MEM" is not "mem". On purpose
    // with the default, not with the extension that was chosen: who asks for both bits hears of a kept one too.
    if ((attributes & kWARN_EXTENSION_REPLACED) != 0 && !parts.extension.empty() &&
        parts.extension != textOrEmpty(defaultExtension))
        PrintWarning(kERROR_REPLACING_FILE_EXTENSION, 0, name, std::string(textOrEmpty(defaultExtension)),
            std::string(extension));
    *out = built.release();
    return 0;
}
