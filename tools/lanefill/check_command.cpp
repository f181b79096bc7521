// check_command.cpp - see check_command.h.
// SPDX-License-Identifier: Apache-2.0
#include "check_command.h"

#include "console.h"
#include "help_command.h"
#include "lanefillCore/bit_check.h"
#include "option_string.h"
#include "progress_bar.h"
#include "run_command.h"
#include "run_resources.h"

#include <new>
#include <string>
#include <vector>

namespace memdata {

int runCheckCommand(std::span<char* const> words) {
    try {
        // A bit file ahead of the switches stands for itself.
        std::string bitSwitch = "-bt";
        std::vector<char*> options(words.begin(), words.end());
        if (!options.empty() && options.front()[0] != '-') options.insert(options.begin(), bitSwitch.data());
        if (options.empty()) {
            printError("check takes a bit file, a map and data: lanefill check new.bit -bm soc.bmm -bd app.elf");
            return 1;
        }
        std::string text;
        if (int status = optionTextOf(options, &text); status != 0) return status;
        const RunResources resources;
        if (resources.status() != 0) return finishPrinting(resources.status());
        const ShownProgress bar;
        const BitCheckRun run = runBitCheck(text.c_str());
        if (run.status == kHELP_WANTED) return printTopic("check");
        const int printed = run.isCompared ? print(run.report) : 0;
        return printed != 0 ? printed : exitStatusOf(run.status);
    } catch (const std::bad_alloc&) {
        return reportExhaustedMemory();
    }
}

} // namespace memdata
