// option_run.h - a whole run from an option text: read, carried out, released.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_OPTION_RUN_H
#define MEMDATA_LANEFILL_CORE_OPTION_RUN_H

#include "lanefillCore/records/progress.h"

#include <string>

namespace memdata {

struct OptionRun {
    // 0; -1 help was asked for, -2 a message file was written, nothing was carried out; else that of the step that
    // failed, which has raised its alert.
    int status = 0;
    int switchCount = 0; // that were read; 0: nothing was asked for
    std::string help;    // with status -1: the texts of the topics
};

// Reads an option text, all of whose words are switches, and carries it out. Inside an engine lifetime; headers of
// outputs show the command that was given to RegisterSystemCommand. Alerts and the log that the text asks for end with
// the run; the alert mask and the permission to overwrite stay as it left them until the lifetime ends.
//   progress  takes the progress of the run when the text does not ask for it itself; may be null
OptionRun runOptions(const char* text, ProgressSinkType progress = nullptr);

} // namespace memdata

#endif
