// lifetime.h - start-up and shut-down of the engine, and the names under which it runs.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_SYSTEM_UTILS_LIFETIME_H
#define MEMDATA_SYSTEM_UTILS_LIFETIME_H

#include "platform/BasicTypes.h"

using SystemFinalizationFunctionType = void (*)();

int InitializeSystemResources();
int FinalizeSystemResources();
int RegisterSystemFinalizationFunction(SystemFinalizationFunctionType function);

int RegisterSystemCommand(const char* command);
const char* GetSystemCommand();
void RegisterSystemToolName(const char* name);
const char* GetSystemToolName();

namespace memdata {

// One engine lifetime as a scope: initialises on entry, finalises on exit.
class SystemResources {
public:
    SystemResources() { InitializeSystemResources(); }
    ~SystemResources() { FinalizeSystemResources(); }
    SystemResources& operator=(SystemResources&&) = delete; // neither copied nor moved
};

} // namespace memdata

#endif
