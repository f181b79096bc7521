// file_copier.cpp - see file_copier.h.
// SPDX-License-Identifier: Apache-2.0
#include "platform/file_copier.h"

#include "platform/held_signals.h"

#include <algorithm>
#include <exception>
#include <new>
#include <sched.h>
#include <unistd.h>

namespace memdata {
namespace {

constexpr u64 kBLOCK_BYTES = 256 * 1024; // stays in the processor's cache

bool writeAt(int descriptor, const char* bytes, u64 count, u64 offset) {
    while (count > 0) {
        const ssize_t put = ::pwrite(descriptor, bytes, static_cast<size_t>(count), static_cast<off_t>(offset));
        if (put <= 0) return false;
        bytes += put;
        count -= static_cast<u64>(put);
        offset += static_cast<u64>(put);
    }
    return true;
}

} // namespace

FileCopier::FileCopier(int from, int to, u64 byteCount)
    : from_(from), to_(to), byteCount_(byteCount), block_(new (std::nothrow) char[kBLOCK_BYTES]) {
    if (block_ == nullptr) return;
    const AllSignalsHeld held;
    try {
        thread_ = std::thread(&FileCopier::copy_, this);
    } catch (const std::exception&) { // no thread, no copy
    }
}

FileCopier::~FileCopier() {
    isStopped_ = true;
    if (thread_.joinable()) thread_.join();
    ::close(from_);
    ::close(to_);
}

int FileCopier::wholeCopy() {
    if (thread_.joinable()) thread_.join();
    return isWhole_ ? to_ : -1;
}

void FileCopier::copy_() {
    u64 done = 0;
    while (done < byteCount_ && !isStopped_) {
        const u64 wanted = std::min(kBLOCK_BYTES, byteCount_ - done);
        const ssize_t got = ::pread(from_, block_.get(), static_cast<size_t>(wanted), static_cast<off_t>(done));
        if (got <= 0 || !writeAt(to_, block_.get(), static_cast<u64>(got), done)) return;
        done += static_cast<u64>(got);
    }
    isWhole_ = done == byteCount_;
}

bool hasSecondProcessor() {
    cpu_set_t processors;
    return ::sched_getaffinity(0, sizeof processors, &processors) == 0 && CPU_COUNT(&processors) > 1;
}

} // namespace memdata
