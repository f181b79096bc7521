// internal.h - what the files of this room share among themselves, and with the readers of maps.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_MODEL_INTERNAL_H
#define MEMDATA_BMM_UTILS_MODEL_INTERNAL_H

#include "BmmUtils/model/records.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/memory.h"

// Reports that an object could not be made, at the place that needed it; status 7. Operations that give a pointer
// do not report: the allocator has done it.
#define OUT_OF_MEMORY(objectWord, byteCount)                                                                           \
    PrintFatalError(kFATAL_OUT_OF_MEMORY, 7, objectWord, byteCount, getCurrentMemoryUsage())

namespace memdata {

// Severity argument of the catalogue messages of the engine's errors; the host words it.
inline constexpr u32 kENGINE_ERROR_MESSAGE = 1;

// Whether the numbered alert goes with its catalogue message.
bool legacyMessagesEnabled();

// Reports the name of a space or map that another one has. stream and token may be null. Status 3.
int reportTakenName(parse_stream* stream, const token_element* token, const char* name);

// Takes a name out of a scope if it stands there for this value. Null arguments do nothing.
void removeSymbolOf(const char* name, symbol_context* scope, const void* value);

// The memory type of the first range; null when there is none.
const MEMORYType* firstMemoryType(const AddressSpaceDefType* space);

// The element leaves the chain of lanes with an INIT file.
void leaveInitLanes(BitLaneGridElemType* element);

} // namespace memdata

#endif
