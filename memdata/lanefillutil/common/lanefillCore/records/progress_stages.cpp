// progress_stages.cpp - see progress_stages.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/records/progress_stages.h"

#include "platform/host.h"

#include <algorithm>
#include <utility>

namespace memdata {
namespace {

constexpr int kWHOLE = 100; // percent

// Of the one run at a time. Scopes and stages leave it as they found it.
struct ProgressState {
    ProgressSinkType sink = nullptr;
    ProgressStage* stage = nullptr; // the one at work
    bool isEnded = false;           // the sink has asked for it
};
ProgressState gProgress;

void askForEnd(unsigned) {
    gProgress.isEnded = true;
}

} // namespace

ScopedProgressSink::ScopedProgressSink(ProgressSinkType sink)
    : old_(std::exchange(gProgress.sink, sink)), oldEnded_(std::exchange(gProgress.isEnded, false)) {}

ScopedProgressSink::~ScopedProgressSink() {
    gProgress.sink = old_;
    gProgress.isEnded = oldEnded_;
}

ProgressStage::ProgressStage(std::string text, u64 totalUnits)
    : text_(std::move(text)), total_(totalUnits), partEnd_(totalUnits), outer_(std::exchange(gProgress.stage, this)) {
    nextTold_ = unitsAt_(1);
    if (gProgress.sink == nullptr) host().progress(text_, 0);
}

ProgressStage::~ProgressStage() {
    gProgress.stage = outer_;
}

// The first count of units at which a percentage is full, without a product that could overflow.
u64 ProgressStage::unitsAt_(int percent) const {
    const u64 part = static_cast<u64>(percent);
    return total_ / kWHOLE * part + (total_ % kWHOLE * part + kWHOLE - 1) / kWHOLE;
}

int ProgressStage::tell_() {
    at_ = std::min(at_, partEnd_);
    int percent = told_;
    while (percent < kWHOLE && unitsAt_(percent + 1) <= at_) ++percent;
    return percent == told_ ? progressStatus() : report_(percent);
}

int ProgressStage::report_(int percent) {
    told_ = percent;
    nextTold_ = percent < kWHOLE ? unitsAt_(percent + 1) : ~u64{0};
    if (gProgress.sink != nullptr)
        gProgress.sink(percent, text_.c_str(), askForEnd);
    else
        host().progress(text_, percent);
    return progressStatus();
}

int ProgressStage::finish() {
    at_ = partEnd_ = total_;
    return told_ == kWHOLE ? progressStatus() : report_(kWHOLE);
}

ProgressPart::ProgressPart(u64 units) : stage_(gProgress.stage) {
    if (stage_ == nullptr) return;
    stage_->at_ = std::min(stage_->at_, stage_->partEnd_);
    end_ = stage_->at_ + std::min(units, stage_->total_ - stage_->at_);
    stage_->partEnd_ = end_;
}

int ProgressPart::finish() {
    if (stage_ == nullptr) return progressStatus();
    const int status = reachProgress(end_);
    stage_->at_ = end_; // what was counted beyond the part does not count
    stage_->partEnd_ = stage_->total_;
    return status;
}

int advanceProgress(u64 units) {
    ProgressStage* stage = gProgress.stage;
    if (stage == nullptr) return 0;
    stage->at_ += std::min(units, ~u64{0} - stage->at_);
    return stage->at_ < stage->nextTold_ ? progressStatus() : stage->tell_();
}

int reachProgress(u64 units) {
    ProgressStage* stage = gProgress.stage;
    return stage == nullptr || units <= stage->at_ ? progressStatus() : advanceProgress(units - stage->at_);
}

int progressStatus() {
    return gProgress.isEnded ? kPROGRESS_ENDED_STATUS : 0;
}

} // namespace memdata
