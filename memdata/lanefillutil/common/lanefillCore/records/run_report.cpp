// run_report.cpp - what the last run came to.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/records/run_report.h"

namespace memdata {

RunReport& runReport() {
    static RunReport report;
    return report;
}

} // namespace memdata
