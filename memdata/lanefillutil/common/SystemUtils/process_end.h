// process_end.h - what a process that ends with its run does not need to release.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_SYSTEM_UTILS_PROCESS_END_H
#define MEMDATA_SYSTEM_UTILS_PROCESS_END_H

namespace memdata {

// Until the last FinalizeSystemResources: the records of a map, and blocks that nobody released, are left to the system,
// which takes all of them back at once. No sweep counts them then.
void leaveRecordsToProcessEnd();
bool leavesRecordsToProcessEnd();

} // namespace memdata

#endif
