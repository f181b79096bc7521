// output_target.h - where the bytes of an output on disk go until it is closed.
//
// A regular file is replaced in one step: the bytes go to a temporary in the same folder, which takes the name at the
// end. The temporary has no name where the system allows that, so that even a killed run leaves nothing behind;
// elsewhere it is called ".memdata-PROCESS-COUNT.tmp". Everything else is written directly.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_FILE_UTILS_OUTPUT_TARGET_H
#define MEMDATA_FILE_UTILS_OUTPUT_TARGET_H

#include "FileUtils/descriptor.h"

#include <string>

namespace memdata {

// Sets stream, and targetName and temporaryName as needed. Status 0; 1 the system refused (not reported, the cause is
// kept for reportCause); 7.
int openOutputTarget(fileIODescriptor* file);
// A file without a name in the folder where an output of this name would stand, and that folder, links followed, with a
// slash. -1 when the name stands for anything but a regular file, new or old, or the system makes no such files. It may be
// read, too.
int openNamelessTemporary(const char* outputName, std::string* folder);
// Puts another nameless file of that folder, which stays the caller's, in place of the empty one that an open output is
// written to. False, and nothing has changed, when the output stands elsewhere or its temporary has a name.
bool exchangeTemporary(fileIODescriptor* file, int nameless, const std::string& folder);
// Closes the stream and gives the contents their name. False when the system refused (not reported, errno tells why).
bool commitOutputTarget(fileIODescriptor* file);
// Closes the stream and removes what is unfinished.
void dropOutputTarget(fileIODescriptor* file);
// Whether writing under this name would destroy a file, be it on disk or an output still open.
bool wouldOverwrite(const char* name);

} // namespace memdata

#endif
