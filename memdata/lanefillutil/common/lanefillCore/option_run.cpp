// option_run.cpp - see option_run.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/option_run.h"

#include "CmdParseUtils/CmdParseUtils.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/memory.h"
#include "lanefillCore/driver.h"
#include "platform/run_inputs.h"

#include <new>

namespace memdata {

namespace {

constexpr int kHELP_WANTED = -1;

int carry_out(const char* text, ProgressSinkType progress, CmdStringOptionsType* options, OptionRun* run) {
    const RunInputs inputs; // option files are none of its outputs
    run->switchCount = -1;  // no program name ahead of the switches
    int status = ParseCmdStringOptions(text, options, &run->switchCount);
    if (status == 0) status = FinalizeCmdStringOptions(options);
    if (options->progress == nullptr) options->progress = progress;
    return status == 0 ? execute_command_line_options(options) : status;
}

} // namespace

OptionRun runOptions(const char* text, ProgressSinkType progress) {
    OptionRun run;
    OwnedOptions options;
    try {
        run.status = carry_out(text, progress, options.get(), &run);
        if (run.status == kHELP_WANTED) run.help = helpText(options.get()->helpTopics);
    } catch (const std::bad_alloc&) { // from texts of the standard library; tracked memory reports by itself
        run.status = PrintFatalError(kFATAL_OUT_OF_MEMORY, 7, "an option text", 0, getCurrentMemoryUsage());
    }
    return run;
}

} // namespace memdata
