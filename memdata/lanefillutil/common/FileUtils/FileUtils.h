// FileUtils.h - files over disk and memory, file names and their formats.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_FILE_UTILS_H
#define MEMDATA_FILE_UTILS_H

#include "FileUtils/attributes.h"
#include "FileUtils/descriptor.h"
#include "FileUtils/file_spec.h"
#include "FileUtils/journal.h"
#include "FileUtils/opening.h"

#endif
