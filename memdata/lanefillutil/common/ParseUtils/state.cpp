// state.cpp - the process state of ParseUtils and its reset.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/state.h"

#include "ParseUtils/preprocessor.h"
#include "SystemUtils/lifetime.h"

namespace memdata {

ParseStateType gParseState;

namespace {

void finalize_parse_utils() {
    close_token_types();
    closeTokenPool();
    gParseState = {};
    gPP_include_path_list = nullptr;
}

} // namespace

void registerParseFinalizer() {
    if (gParseState.finalizerIsRegistered) return;
    gParseState.finalizerIsRegistered = RegisterSystemFinalizationFunction(finalize_parse_utils) == 0;
}

} // namespace memdata
