// absent_modules.cpp - see absent_modules.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/absent_modules.h"

#include "SystemUtils/alerts.h"

namespace {

constexpr int kABSENT_STATUS = 3;

int absent(const char* what) {
    return PrintError(kERROR_MESSAGE_STRING, kABSENT_STATUS, memdata::formatted("This build cannot %s yet.", what));
}

} // namespace

int DoELFDumps(CmdStringOptionsType*) {
    return absent("dump data files");
}
