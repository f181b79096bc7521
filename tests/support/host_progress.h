// host_progress.h - catches what the standalone host hears of the progress of runs, for tests.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_HOST_PROGRESS_H
#define MEMDATA_TESTS_SUPPORT_HOST_PROGRESS_H

#include "hosts/standalone/standalone_host.h"

#include <functional>

namespace memdata::testing {

// Shows progress in the place of a terminal while it lives.
class CapturedProgress : public ProgressDisplay {
public:
    explicit CapturedProgress(std::function<void(std::string_view stage, int percent)> told) : told_(std::move(told)) {
        standaloneHost().setProgressDisplay(this);
    }
    ~CapturedProgress() override { standaloneHost().setProgressDisplay(nullptr); }
    CapturedProgress& operator=(CapturedProgress&&) = delete; // neither copied nor moved

    void show(std::string_view stage, int percent) override { told_(stage, percent); }
    void clear() override { ++clearCount; }

    unsigned clearCount = 0;

private:
    std::function<void(std::string_view, int)> told_;
};

} // namespace memdata::testing

#endif
