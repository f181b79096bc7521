// progress.cpp - see progress.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/records/progress.h"

#include "FileUtils/descriptor.h"

int OutputProgress(int percent, const char* text, void (*)(unsigned)) {
    return PutNextLine(&StandardOut, "%s %ld%%\n", text, percent);
}
