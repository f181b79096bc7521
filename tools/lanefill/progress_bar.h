// progress_bar.h - one line on a terminal that shows how far a long run has come.
// SPDX-License-Identifier: Apache-2.0
#ifndef LANEFILL_PROGRESS_BAR_H
#define LANEFILL_PROGRESS_BAR_H

#include "hosts/standalone/progress_display.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace memdata {

// What a bar asks of the terminal that it is on.
struct BarTerminal {
    std::function<std::chrono::milliseconds()> now;
    std::function<int()> columns; // of the line; 0 where no bar may be drawn at the moment
    std::function<void(std::string_view)> write;
};

// "[########............]  40% Reading 'app.mem'...", in one line that is drawn over and over. It comes when a run has
// taken its time already, and it changes so often that it can be followed.
class ProgressBar : public ProgressDisplay {
public:
    // delay: from now on, until which a run counts as short
    ProgressBar(BarTerminal terminal, std::chrono::milliseconds delay);
    ~ProgressBar() override { ProgressBar::clear(); }
    ProgressBar& operator=(ProgressBar&&) = delete; // neither copied nor moved

    void show(std::string_view stage, int percent) override;
    void clear() override;

private:
    BarTerminal terminal_;
    std::chrono::milliseconds next_; // before it nothing is drawn
    std::string shown_;              // the line as it stands; empty when there is none
};

// The line for a terminal of so many columns, one shorter than these; empty when not even the percent has room. Signs of
// names that would not print as themselves stand as "?".
std::string barLine(std::string_view stage, int percent, int columns);

// The bar of a run of the tool, on standard error when that is a terminal which can draw one and the user wants it: it
// shows what the standalone host hears as long as this lives.
class ShownProgress {
public:
    ShownProgress();
    ~ShownProgress();
    ShownProgress& operator=(ShownProgress&&) = delete; // neither copied nor moved

private:
    std::optional<ProgressBar> bar_;
};

// Tells the standalone host of the parameters that choose the bar.
void registerProgressParameters();

} // namespace memdata

#endif
