// progress_bar.cpp - see progress_bar.h.
// SPDX-License-Identifier: Apache-2.0
#include "progress_bar.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <unistd.h>

namespace memdata {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kQUIET_TIME = std::chrono::seconds(1);
constexpr int kBAR_WIDTH = 40;

struct BarState {
    Clock::time_point start;
    int shownPercent = -1; // nothing is shown
};
BarState gBarState;

int show(int percent, const char* text, void (*)(unsigned)) {
    percent = std::clamp(percent, 0, 100);
    if (percent == gBarState.shownPercent || Clock::now() - gBarState.start < kQUIET_TIME) return 0;
    gBarState.shownPercent = percent;
    const auto filled = static_cast<size_t>(percent * kBAR_WIDTH / 100);
    const std::string bar = std::string(filled, '#') + std::string(kBAR_WIDTH - filled, '.');
    std::fprintf(stderr, "\r[%s] %3d%% %s\x1B[K", bar.c_str(), percent, text == nullptr ? "" : text);
    std::fflush(stderr);
    return 0;
}

} // namespace

ProgressBar::ProgressBar() {
    gBarState = {Clock::now()};
}

ProgressSinkType ProgressBar::sink() const {
    return isatty(STDERR_FILENO) != 0 ? show : nullptr;
}

void ProgressBar::finish() {
    if (gBarState.shownPercent < 0) return;
    gBarState.shownPercent = -1;
    std::fputs("\r\x1B[K", stderr);
}

} // namespace memdata
