// failures.cpp - files that the system refuses: why, and how a user is told.
// SPDX-License-Identifier: Apache-2.0

#include "FileUtils/internal.h"
#include "FileUtils/opening.h"
#include "FileUtils/state.h"
#include "SystemUtils/alerts.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace {

using namespace memdata;

// Causes that the texts of the alerts cover.
constexpr int kTOLD_BY_OPENING[] = {ENOENT, ENOTDIR, EBUSY};
constexpr int kTOLD_BY_CREATING[] = {ENOENT, ENOTDIR, EACCES, EPERM, EROFS, EISDIR, ETXTBSY, EBUSY};

} // namespace

const char* memdata::causeText(int error) {
    const char* const text = strerrordesc_np(error);
    return text == nullptr ? "unknown error" : text;
}

int memdata::failReading(int error) {
    gFileState.openFailure = std::ranges::count(kTOLD_BY_OPENING, error) != 0 ? nullptr : causeText(error);
    return 1;
}

int memdata::failCreating(int error) {
    gFileState.openFailure = std::ranges::count(kTOLD_BY_CREATING, error) != 0 ? nullptr : causeText(error);
    return 1;
}

int memdata::reportCause(const char* name, bool writes) {
    const char* const cause = gFileState.openFailure;
    if (cause == nullptr) return 1;
    return PrintError(
        kERROR_MESSAGE_STRING, 1, formatted("File '%s' can not be %s: %s.", name, writes ? "created" : "read", cause));
}

int memdata::reportUnopened(const char* name, const std::string& cause) {
    PrintError(kERROR_OPENING_FILE, 1, name);
    const bool isTold = std::ranges::any_of(kTOLD_BY_OPENING, [&](int error) { return cause == causeText(error); });
    if (isTold || cause.empty()) return 1;
    return PrintError(kERROR_MESSAGE_STRING, 1, formatted("File '%s' can not be read: %s.", name, cause));
}
