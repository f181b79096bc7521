// state.h - all process state of ParseUtils. One thread, no locks. Back to these values in FinalizeSystemResources:
// two runs in one process give the result of two processes.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PARSE_UTILS_STATE_H
#define MEMDATA_PARSE_UTILS_STATE_H

#include "ParseUtils/keyword_sets.h"

#include <string>

namespace memdata {

struct TokenSlab;
struct RuntimeType;

struct ParseStateType {
    TokenSlab* tokenSlabs = nullptr;         // where the tokens of the pool live
    token_element* tokenPoolStack = nullptr; // tokens ready for use, the last released one first
    u32 lastContextId = 0;                   // of the newest parse_stream
    RuntimeType* runtimeTypes = nullptr;     // made by extend_token_symbol_set
    RuntimeWords* runtimeWords = nullptr;    // of all sets that have any
    std::string alertLine;                   // the source line that an alert is pointing into
    // What streams count as used of their limits from the start (limits.h): a run that must end soon sets these.
    u64 usedPushedBytes = 0;
    u64 usedRepeatedBytes = 0;
    u64 usedRepeatedTokens = 0;
    bool finalizerIsRegistered = false;
};

extern ParseStateType gParseState;

// Has the state reset at shut-down. Called ahead of its first use in a run.
void registerParseFinalizer();

// Releases the slabs and everything that their tokens own (tokens.cpp).
void closeTokenPool();

} // namespace memdata

#endif
