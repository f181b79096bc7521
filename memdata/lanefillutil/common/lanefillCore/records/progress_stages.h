// progress_stages.h - the stages of a run, and how far the one at work has come.
//
// A stage is a piece of work that a user would name: a file that is read, the MEM files of a folder. It counts units of
// its own, bytes mostly. Code inside of it tells what it has done every few hundred kilobytes or once a file, never for
// each word: this costs a comparison, unless a percent is full. Without a stage it means nothing.
//
// Percents of a stage rise, each is told at most once, 100 by the end of a stage that has finished. They go to the sink
// in force, which may ask for the end of the run, or to the host where there is none. The host hears of the start too.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_RECORDS_PROGRESS_STAGES_H
#define MEMDATA_LANEFILL_CORE_RECORDS_PROGRESS_STAGES_H

#include "lanefillCore/records/progress.h"
#include "platform/BasicTypes.h"

#include <string>

namespace memdata {

inline constexpr int kPROGRESS_ENDED_STATUS = 15; // the sink has asked for the end

// While this lives, stages tell the sink, or the host when it is null.
class ScopedProgressSink {
public:
    explicit ScopedProgressSink(ProgressSinkType sink);
    ~ScopedProgressSink();
    ScopedProgressSink& operator=(ScopedProgressSink&&) = delete; // neither copied nor moved

private:
    ProgressSinkType old_;
    bool oldEnded_;
};

// One stage is at work at a time: a stage inside of another takes its place while it lives.
class ProgressStage {
public:
    // text: what is done, with its dots: "Reading 'app.mem'..."
    ProgressStage(std::string text, u64 totalUnits);
    ~ProgressStage();
    ProgressStage& operator=(ProgressStage&&) = delete; // neither copied nor moved

    // All of it is done. Status as advanceProgress.
    int finish();

private:
    friend class ProgressPart;
    friend int advanceProgress(u64 units);
    friend int reachProgress(u64 units);

    int tell_();
    int report_(int percent);
    u64 unitsAt_(int percent) const;

    std::string text_;
    u64 total_;
    u64 at_ = 0;
    u64 partEnd_;
    u64 nextTold_ = 0; // units of the percent that comes next
    int told_ = 0;     // percent
    ProgressStage* outer_;
};

// A part of the stage at work that is to be so many of its units, whatever is counted inside of it. One at a time.
class ProgressPart {
public:
    explicit ProgressPart(u64 units);
    ProgressPart& operator=(ProgressPart&&) = delete; // neither copied nor moved

    // The part is done. Status as advanceProgress.
    int finish();

private:
    ProgressStage* stage_; // null without one
    u64 end_ = 0;
};

// So many more units of the stage at work are done. Status: 0; 15 once the sink has asked for the end.
int advanceProgress(u64 units);
// The stage at work has come to so many units.
int reachProgress(u64 units);
// Whether the sink has asked for the end: 0 or 15.
int progressStatus();

} // namespace memdata

#endif
