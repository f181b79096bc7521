// mem_file_names.cpp - see mem_file_names.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/mem_file_names.h"

#include "StringUtils/format.h"
#include "SystemUtils/alerts.h"

#include <sys/stat.h>

namespace memdata {
namespace {

constexpr int kREFUSED = 1;

bool hasName(const fileSpecType* spec) {
    return spec != nullptr && spec->fullName != nullptr && *spec->fullName != '\0';
}

} // namespace

// Only regular files can be destroyed by writing to them.
std::optional<WrittenMemFiles::Identity> WrittenMemFiles::identityOf_(const char* name) {
    struct stat facts {};
    if (stat(name, &facts) != 0 || !S_ISREG(facts.st_mode)) return std::nullopt;
    return Identity(facts.st_dev, facts.st_ino);
}

int WrittenMemFiles::allows(const char* name, const BitLaneType* lane) const {
    const auto identity = identityOf_(name);
    const auto written = identity ? files_.find(*identity) : files_.end();
    if (written == files_.end() || written->second == lane) return 0;
    return PrintError(kERROR_MESSAGE_STRING, kREFUSED,
        formatted("Output file '%s' was already written for another bit lane in this run.", name));
}

void WrittenMemFiles::add(const char* name, const BitLaneType* lane) {
    if (const auto identity = identityOf_(name)) files_[*identity] = lane;
}

std::string DefaultMemNames::next(const char* space, bool isEcc, u64 index) {
    std::string name;
    do name = formatted(isEcc ? "%s_ecc_%lld.mem" : "%s_%lld.mem", space, index++);
    while (!given_.insert(name).second);
    return name;
}

const char* namedMemFile(const BitLaneType* lane) {
    for (const fileSpecType* spec : {lane->initFile, lane->outputFile, lane->inputFile})
        if (hasName(spec)) return spec->fullName;
    return nullptr;
}

std::string nameInFolder(const std::string& folder, const std::string& name) {
    if (name.starts_with('/') || folder.empty()) return name;
    return folder.ends_with('/') ? folder + name : folder + "/" + name;
}

} // namespace memdata
