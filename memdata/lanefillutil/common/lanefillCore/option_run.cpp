// option_run.cpp - see option_run.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/option_run.h"

#include "CmdParseUtils/CmdParseUtils.h"
#include "lanefillCore/driver.h"
#include "platform/run_inputs.h"

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
    CmdStringOptionsType options{};
    run.status = carry_out(text, progress, &options, &run);
    if (run.status == kHELP_WANTED) run.help = helpText(options.helpTopics);
    DeleteCmdStringOptions(&options);
    return run;
}

} // namespace memdata
