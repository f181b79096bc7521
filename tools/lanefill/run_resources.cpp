// run_resources.cpp - see run_resources.h.
// SPDX-License-Identifier: Apache-2.0
#include "run_resources.h"

#include "SystemUtils/process_end.h"
#include "hosts/standalone/standalone_host.h"

namespace memdata {
namespace {

constexpr const char* kRELEASE_PARAMETER = "lanefill.releaseRecords";

} // namespace

RunResources::RunResources() {
    if (!standaloneHost().parameters().getValueAsBool(kRELEASE_PARAMETER)) leaveRecordsToProcessEnd();
}

void registerRunParameters() {
    standaloneHost().parameters().registerBoolParam(kRELEASE_PARAMETER,
        "Parameter to release the records of a run one by one before the tool ends, for leak checkers. Default is false.",
        false);
}

} // namespace memdata
