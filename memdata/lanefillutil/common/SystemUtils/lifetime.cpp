// lifetime.cpp - start-up and shut-down of the engine, and the names under which it runs.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/lifetime.h"

#include "FileUtils/descriptor.h"
#include "SystemUtils/alert_registry.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/memory.h"
#include "SystemUtils/state.h"

#include <cstring>

using memdata::gSystemState;
using memdata::kFINALIZATION_FUNCTION_LIMIT;

namespace {

// The sweep runs last, also when a module registered its function before the first start: it goes below all.
// RegisterSystemFinalizationFunction has kept one place for it.
void register_sweep() {
    for (u32 i = gSystemState.finalizationCount; i > 0; --i)
        gSystemState.finalization[i] = gSystemState.finalization[i - 1];
    gSystemState.finalization[0] = CheckMemoryLeaks;
    ++gSystemState.finalizationCount;
}

void release_command() {
    if (gSystemState.command != nullptr) releaseMemory(gSystemState.command);
    gSystemState.command = nullptr;
}

// Last registered first. Each is popped before its call.
void run_finalization_functions() {
    gSystemState.shuttingDown = true;
    while (gSystemState.finalizationCount > 0) gSystemState.finalization[--gSystemState.finalizationCount]();
    gSystemState.shuttingDown = false;
}

} // namespace

int InitializeSystemResources() {
    if (gSystemState.shuttingDown)
        return PrintInternalError(
            kERROR_MESSAGE_STRING, 3, "The system resources were asked for while they are being shut down.");
    if (gSystemState.startCount++ > 0) return 0;
    gMemoryBlockList = {nullptr, nullptr};
    register_sweep();
    InitializeSystemAlertMessages();
    InitializeFileIO();
    return gAlertMessageLookupArray == nullptr ? 7 : 0;
}

int FinalizeSystemResources() {
    if (gSystemState.startCount == 0) return 3;
    if (--gSystemState.startCount > 0) return 0;
    release_command();
    run_finalization_functions();
    memdata::resetSystemState();
    return 0;
}

int RegisterSystemFinalizationFunction(SystemFinalizationFunctionType function) {
    if (function == nullptr)
        return PrintInternalError(kERROR_MESSAGE_STRING, 3, "A finalization function to register was missing.");
    if (gSystemState.shuttingDown)
        return PrintInternalError(
            kERROR_MESSAGE_STRING, 3, "A finalization function was registered while the system is being shut down.");
    const u32 limit = kFINALIZATION_FUNCTION_LIMIT - (gSystemState.startCount == 0 ? 1 : 0); // a place for the sweep
    if (gSystemState.finalizationCount >= limit)
        return PrintInternalError(kERROR_MESSAGE_STRING, 7,
            memdata::formatted("More than %ld system finalization functions were registered.", limit));
    gSystemState.finalization[gSystemState.finalizationCount++] = function;
    return 0;
}

int RegisterSystemCommand(const char* command) {
    char* copy = nullptr;
    if (command != nullptr) {
        const size_t bytes = std::strlen(command) + 1;
        copy = static_cast<char*>(getMemory("a 'system command' string", bytes));
        if (copy == nullptr) return 7;
        std::memcpy(copy, command, bytes);
    }
    release_command();
    gSystemState.command = copy;
    return 0;
}

const char* GetSystemCommand() {
    return gSystemState.command;
}

void RegisterSystemToolName(const char* name) {
    if (name == nullptr) return;
    const size_t length = std::strlen(name);
    if (length > memdata::kTOOL_NAME_LIMIT) return;
    std::memmove(gSystemState.toolName, name, length + 1); // a caller may pass the name that it was given
}

const char* GetSystemToolName() {
    return gSystemState.toolName;
}
