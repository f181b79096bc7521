// progress_display.h - what can show the progress of a run to a person.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_HOSTS_STANDALONE_PROGRESS_DISPLAY_H
#define MEMDATA_HOSTS_STANDALONE_PROGRESS_DISPLAY_H

#include <string_view>

namespace memdata {

class ProgressDisplay {
public:
    ProgressDisplay() = default;
    ProgressDisplay(const ProgressDisplay&) = delete;
    ProgressDisplay& operator=(const ProgressDisplay&) = delete;
    virtual ~ProgressDisplay() = default;

    virtual void show(std::string_view stage, int percent) = 0;
    // Something else is about to be written: what is shown has to go. Called often, also when nothing is shown.
    virtual void clear() = 0;
};

} // namespace memdata

#endif
