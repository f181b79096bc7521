// progress_bar.h - one line on a terminal that shows how far a long run has come.
// SPDX-License-Identifier: Apache-2.0
#ifndef LANEFILL_PROGRESS_BAR_H
#define LANEFILL_PROGRESS_BAR_H

#include "lanefillCore/records/progress.h"

namespace memdata {

// For jobs over a second, and only when standard error is a terminal. One at a time.
class ProgressBar {
public:
    ProgressBar();
    ~ProgressBar() { finish(); }
    ProgressBar& operator=(ProgressBar&&) = delete; // neither copied nor moved

    // For the option record; null where no bar is to be shown.
    ProgressSinkType sink() const;
    // Takes the line away.
    void finish();
};

} // namespace memdata

#endif
