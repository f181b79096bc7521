// run_command.cpp - see run_command.h.
// SPDX-License-Identifier: Apache-2.0
#include "run_command.h"

#include "CmdParseUtils/CmdParseUtils.h"
#include "SystemUtils/lifetime.h"
#include "console.h"
#include "lanefillCore/lanefillCore.h"
#include "lanefillCore/records/run_report.h"
#include "option_string.h"
#include "platform/run_inputs.h"
#include "progress_bar.h"

#include <new>
#include <string>

namespace memdata {
namespace {

constexpr int kHELP_WANTED = -1;
constexpr int kMESSAGES_WRITTEN = -2;
constexpr int kEXHAUSTED_STATUS = 7;

int exitStatus(int status) {
    if (status == 0 || status == kMESSAGES_WRITTEN) return 0;
    return status >= 1 && status <= 255 ? status : 1;
}

// The option record, released on every way out.
class Options {
public:
    Options() = default;
    ~Options() { DeleteCmdStringOptions(&record_); }
    Options& operator=(Options&&) = delete; // neither copied nor moved
    CmdStringOptionsType* get() { return &record_; }
    CmdStringOptionsType* operator->() { return &record_; }

private:
    CmdStringOptionsType record_{};
};

int parse(const std::string& text, Options& options) {
    int count = -1; // no program name ahead of the switches
    const int status = ParseCmdStringOptions(text.c_str(), options.get(), &count);
    return status != 0 ? status : FinalizeCmdStringOptions(options.get());
}

// What a run that succeeded did not do.
void tellWhatWasLeft(Options& options) {
    const RunReport& report = runReport();
    if (report.jobs == 0) {
        printError("nothing was asked for: name an address map (-bm) with data files (-bd) or outputs (-o); "
                   "'lanefill --help' shows examples");
        return;
    }
    if (report.segments != 0 && report.unmappedSegments == report.segments)
        printError("no data was translated: no ADDRESS_SPACE holds " + report.firstUnmapped +
                   (report.segments > 1 ? ", nor any other segment" : ""));
    else if (report.unmappedSegments != 0 && options->ignoreUnmapped == 0)
        printError(std::to_string(report.unmappedSegments) + " of " + std::to_string(report.segments) +
                   " segments are in no ADDRESS_SPACE and were left out, first " + report.firstUnmapped +
                   " (-i: leave them out without a word)");
}

int execute(const std::string& text) {
    const RunInputs inputs; // option files too are no outputs
    Options options;
    RegisterSystemCommand(("lanefill " + text).c_str());
    int status = parse(text, options);
    if (status == kHELP_WANTED) return print(helpText(options->helpTopics));
    if (status != 0) return exitStatus(status);
    ProgressBar bar;
    if (options->progress == nullptr) options->progress = bar.sink();
    status = execute_command_line_options(options.get());
    bar.finish();
    if (status == 0) tellWhatWasLeft(options);
    return exitStatus(status);
}

} // namespace

int runOptionWords(std::span<char* const> words) {
    try {
        std::string text;
        std::string refused;
        if (!joinOptionWords(words, &text, &refused)) {
            printError("a file name with a line end or a byte 0xFF cannot be passed on: rename '" + refused + "'");
            return 1;
        }
        const SystemResources resources;
        return execute(text);
    } catch (const std::bad_alloc&) {
        printError("memory is exhausted");
        return kEXHAUSTED_STATUS;
    }
}

} // namespace memdata
