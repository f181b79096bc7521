// alerts.cpp - leads the engine's standard output into memory.
// SPDX-License-Identifier: Apache-2.0
#include "support/alerts.h"

#include "FileUtils/descriptor.h"

#include <cstdlib>
#include <stdexcept>

namespace memdata::testing {

CapturedAlerts::CapturedAlerts(u32 mask)
    : oldMask_(EnablePrintAlerts(mask)), oldStream_(StandardOut.stream), stream_(open_memstream(&characters_, &size_)) {
    if (stream_ == nullptr) throw std::runtime_error("no memory stream for captured alerts");
    StandardOut.stream = stream_;
}

CapturedAlerts::~CapturedAlerts() {
    StandardOut.stream = oldStream_;
    EnablePrintAlerts(oldMask_);
    std::fclose(stream_);
    std::free(characters_);
}

std::string CapturedAlerts::text() {
    std::fflush(stream_);
    return {characters_ + taken_, size_ - taken_};
}

std::string CapturedAlerts::take() {
    std::string all = text();
    taken_ = size_;
    return all;
}

} // namespace memdata::testing
