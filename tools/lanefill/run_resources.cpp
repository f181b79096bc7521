// run_resources.cpp - see run_resources.h.
// SPDX-License-Identifier: Apache-2.0
#include "run_resources.h"

#include "SystemUtils/process_end.h"
#include "hosts/standalone/standalone_host.h"

namespace memdata {
namespace {

constexpr const char* kPLAIN_PARAMETER = "lanefill.plainMemory";
#ifdef __SANITIZE_ADDRESS__
constexpr bool kIS_SANITIZED = true; // a pool would hide from the sanitizer where its blocks end
#else
constexpr bool kIS_SANITIZED = false;
#endif

} // namespace

RunResources::RunResources() {
    if (!standaloneHost().parameters().getValueAsBool(kPLAIN_PARAMETER)) expectProcessEnd();
}

void registerRunParameters() {
    standaloneHost().parameters().registerBoolParam(kPLAIN_PARAMETER,
        "Parameter to take each block of memory from the system and to release it before the tool ends, for memory "
        "checkers. Default is false.",
        kIS_SANITIZED);
}

} // namespace memdata
