// process_end.h - memory of a process that ends with its run.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_SYSTEM_UTILS_PROCESS_END_H
#define MEMDATA_SYSTEM_UTILS_PROCESS_END_H

namespace memdata {

// Until the last FinalizeSystemResources: small blocks come from a pool, and the records of a map, as blocks that nobody
// released, are left to the system, which takes all of them back at once. No sweep counts them then.
void expectProcessEnd();
bool isProcessEndExpected();

} // namespace memdata

#endif
