// compact_scratch.cpp - the record of a run's compact texts: made, found, taken down.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/compact_records.h"

#include "SystemUtils/alerts.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"

#include <new>

namespace {

// Chains stay short up to tens of thousands of names; the table costs 32 kbytes while a -mf is being read.
constexpr unsigned kEXPECTED_NAMES = 8192;

// Process state, with scratchBMMInfo. Back to the start at shut-down.
struct CompactStateType {
    bool isFinalizerRegistered = false;
};
CompactStateType gCompactState;

void finalize_compact_state() {
    delete_scratchBMMInfo();
    gCompactState = {};
}

bool make_scopes(scratch_BMM_Info* scratch) {
    scratch->symbolTable = create_symbol_table(kEXPECTED_NAMES);
    if (scratch->symbolTable == nullptr) return false;
    for (symbol_context** scope :
        {&scratch->spaceInfoNames, &scratch->componentNames, &scratch->referenceNames, &scratch->mapInfoNames}) {
        *scope = create_symbol_space(scratch->symbolTable);
        if (*scope == nullptr) return false;
    }
    return true;
}

} // namespace

constinit scratch_BMM_Info* scratchBMMInfo = nullptr;

scratch_BMM_Info::~scratch_BMM_Info() {
    for (symbol_context** scope : {&spaceInfoNames, &componentNames, &referenceNames, &mapInfoNames})
        if (*scope != nullptr) delete_symbol_space(scope);
    delete_symbol_table(&symbolTable);
}

scratch_BMM_Info* get_scratchBMMInfo() {
    if (scratchBMMInfo != nullptr) return scratchBMMInfo;
    if (!gCompactState.isFinalizerRegistered) {
        if (RegisterSystemFinalizationFunction(finalize_compact_state) != 0) return nullptr;
        gCompactState.isFinalizerRegistered = true;
    }
    scratchBMMInfo = new (std::nothrow) scratch_BMM_Info;
    if (scratchBMMInfo == nullptr) {
        PrintFatalError(kFATAL_OUT_OF_MEMORY, 7, "scratch_BMM_Info", sizeof(scratch_BMM_Info), getCurrentMemoryUsage());
        return nullptr;
    }
    if (!make_scopes(scratchBMMInfo)) delete_scratchBMMInfo();
    return scratchBMMInfo;
}

void delete_scratchBMMInfo() {
    delete scratchBMMInfo;
    scratchBMMInfo = nullptr;
}

void collect_MF_info(std::string* report, const char* text, const char* separator) {
    *report += separator;
    *report += text;
}
