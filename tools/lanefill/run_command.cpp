// run_command.cpp - see run_command.h.
// SPDX-License-Identifier: Apache-2.0
#include "run_command.h"

#include "SystemUtils/lifetime.h"
#include "console.h"
#include "lanefillCore/option_run.h"
#include "lanefillCore/records/run_report.h"
#include "option_string.h"
#include "progress_bar.h"
#include "run_resources.h"

#include <cstdio>
#include <new>

namespace memdata {
namespace {

constexpr int kMESSAGES_WRITTEN = -2;
constexpr int kEXHAUSTED_STATUS = 7;

// What a run that succeeded did not do.
void tellWhatWasLeft() {
    const RunReport& report = runReport();
    if (report.jobs == 0) {
        printError("nothing was asked for: name an address map (-bm) with data files (-bd) or outputs (-o); "
                   "'lanefill --help' shows examples");
        return;
    }
    if (report.segments != 0 && report.unmappedSegments == report.segments) {
        printError("no data was translated: no ADDRESS_SPACE holds " + report.firstUnmapped +
                   (report.segments > 1 ? ", nor any other segment" : ""));
        return;
    }
    if (report.unmappedSegments != 0 && !report.ignoresUnmapped)
        printError(std::to_string(report.unmappedSegments) + " of " + std::to_string(report.segments) +
                   " segments are in no ADDRESS_SPACE and were left out, first " + report.firstUnmapped +
                   " (-i: leave them out without a word)");
    if (report.segments != 0 && !report.namesOutput)
        printError("the data was translated, but nothing was written: -bx FOLDER writes MEM files, -o p FILE the map, "
                   "-bt FILE with -o b FILE a bit file");
}

int execute(const std::string& text) {
    if (int status = RegisterSystemCommand(("lanefill " + text).c_str()); status != 0) return finishPrinting(status);
    OptionRun run;
    {
        const ShownProgress bar;
        run = runOptions(text.c_str());
    }
    if (run.status == kHELP_WANTED) return print(run.help);
    if (run.status == 0) tellWhatWasLeft();
    return finishPrinting(exitStatusOf(run.status));
}

} // namespace

int runOptionWords(std::span<char* const> words) {
    try {
        std::string text;
        if (int status = optionTextOf(words, &text); status != 0) return status;
        const RunResources resources;
        if (resources.status() != 0) return finishPrinting(resources.status());
        return execute(text);
    } catch (const std::bad_alloc&) {
        return reportExhaustedMemory();
    }
}

int optionTextOf(std::span<char* const> words, std::string* text) {
    std::string refused;
    if (joinOptionWords(words, text, &refused)) return 0;
    printError("a file name with a line end or a byte 0xFF cannot be passed on: rename '" + refused + "'");
    return 1;
}

int exitStatusOf(int status) {
    if (status == 0 || status == kMESSAGES_WRITTEN) return 0;
    return status >= 1 && status <= 255 ? status : 1;
}

int reportExhaustedMemory() {
    // Without a word to the host, which may be what there was no memory for.
    std::fputs("lanefill: memory is exhausted\n", stderr);
    return kEXHAUSTED_STATUS;
}

} // namespace memdata
