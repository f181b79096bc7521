// shown_progress.cpp - the bar of the tool: its terminal, and whether the user wants it.
// SPDX-License-Identifier: Apache-2.0
#include "hosts/standalone/standalone_host.h"
#include "progress_bar.h"

#include <cstdio>
#include <cstdlib>
#include <sys/ioctl.h>
#include <unistd.h>

namespace memdata {
namespace {

using std::chrono::milliseconds;

constexpr const char* kBAR_PARAMETER = "lanefill.progressBar";
constexpr const char* kDELAY_PARAMETER = "lanefill.progressBarDelay";
constexpr milliseconds kDELAY{1000};
constexpr int kUSUAL_COLUMNS = 80; // of terminals that do not tell

milliseconds now() {
    return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now().time_since_epoch());
}

// In the background the line belongs to somebody else.
bool isInBackground() {
    const pid_t foreground = tcgetpgrp(STDERR_FILENO);
    return foreground > 0 && foreground != getpgrp();
}

int columns() {
    if (isInBackground()) return 0;
    winsize size{};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUSUAL_COLUMNS;
}

// What went to standard output stands there before the line is drawn.
void write(std::string_view text) {
    std::fflush(stdout);
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

bool canDraw() {
    const std::string kind = variable("TERM");
    return isatty(STDERR_FILENO) != 0 && !kind.empty() && kind != "dumb";
}

} // namespace

void registerProgressParameters() {
    StandaloneParameters& parameters = standaloneHost().parameters();
    parameters.registerBoolParam(kBAR_PARAMETER,
        "Parameter to show a progress bar on a terminal when a run takes longer than a second. Default is true.", true);
    parameters.registerBoolParam(kDELAY_PARAMETER,
        "Parameter to let the progress bar wait for a second before it appears. Default is true.", true);
}

ShownProgress::ShownProgress() {
    const StandaloneParameters& parameters = standaloneHost().parameters();
    const bool isWanted = parameters.getValueIfExistAsBool(kBAR_PARAMETER, true) && variable("NO_PROGRESS").empty();
    if (!isWanted || !canDraw()) return;
    const bool waits = parameters.getValueIfExistAsBool(kDELAY_PARAMETER, true);
    bar_.emplace(BarTerminal{now, columns, write}, waits ? kDELAY : milliseconds(0));
    standaloneHost().setProgressDisplay(&*bar_);
}

ShownProgress::~ShownProgress() {
    if (!bar_) return;
    bar_->clear();
    standaloneHost().setProgressDisplay(nullptr);
}

} // namespace memdata
