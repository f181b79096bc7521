// file_follower.cpp - see file_follower.h.
// SPDX-License-Identifier: Apache-2.0
#include "platform/file_follower.h"

#include "platform/held_signals.h"

#include <algorithm>
#include <cerrno>
#include <exception>
#include <new>
#include <unistd.h>

namespace memdata {

FileFollower::FileFollower(int descriptor, u64 begin, Taker taker, void* state)
    : descriptor_(descriptor), at_(begin), taker_(taker), state_(state), block_(new (std::nothrow) u8[kBLOCK_BYTES]),
      end_(begin) {
    if (block_ == nullptr) return;
    const AllSignalsHeld held;
    try {
        thread_ = std::thread(&FileFollower::run_, this);
    } catch (const std::exception&) { // no thread, nothing is read
    }
}

FileFollower::~FileFollower() {
    if (!thread_.joinable()) return;
    tell_(kSTOPPED);
    thread_.join();
}

void FileFollower::tell_(u64 end) {
    end_.store(end, std::memory_order_release);
    end_.notify_one();
}

void FileFollower::follow(u64 end) {
    if (end > end_.load(std::memory_order_relaxed)) tell_(end);
}

int FileFollower::finish() {
    if (!thread_.joinable()) return ENOMEM;
    tell_(end_.load(std::memory_order_relaxed) | kFINISHED_BIT);
    thread_.join();
    return error_;
}

// Only whole blocks are taken until the end is known.
void FileFollower::run_() {
    for (;;) {
        const u64 told = end_.load(std::memory_order_acquire);
        if (told == kSTOPPED) return;
        const u64 ready = (told & ~kFINISHED_BIT) - at_;
        const bool isFinished = (told & kFINISHED_BIT) != 0;
        if (ready >= kBLOCK_BYTES || isFinished) {
            if (ready == 0) return;
            error_ = take_(std::min(ready, kBLOCK_BYTES));
            if (error_ != 0) return;
        } else {
            end_.wait(told, std::memory_order_acquire);
        }
    }
}

int FileFollower::take_(u64 count) {
    for (u64 held = 0; held < count;) {
        const ssize_t got = ::pread(
            descriptor_, block_.get() + held, static_cast<size_t>(count - held), static_cast<off_t>(at_ + held));
        if (got <= 0) return got < 0 ? errno : EIO; // what was written is not there
        held += static_cast<u64>(got);
    }
    taker_(state_, block_.get(), count);
    at_ += count;
    return 0;
}

} // namespace memdata
