// file_follower.h - a file read by a thread of its own, behind the thread that writes it.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_FILE_FOLLOWER_H
#define MEMDATA_PLATFORM_FILE_FOLLOWER_H

#include "platform/BasicTypes.h"

#include <atomic>
#include <memory>
#include <thread>

namespace memdata {

// The thread reads what stands in the file into a buffer of its own and gives it to a function: it shares no buffer with
// the writer, touches no mapping and no tracked memory, and no signal reaches it. What the function works on belongs to
// the thread until finish.
class FileFollower {
public:
    // Called on the thread with the bytes in turn: kBLOCK_BYTES each time, and at the end what is left.
    using Taker = void (*)(void* state, const u8* bytes, u64 count);
    static constexpr u64 kBLOCK_BYTES = 128 * 1024; // stays in the processor's cache

    // The descriptor, which is read without a move of its position, is open as long as the follower lives.
    FileFollower(int descriptor, u64 begin, Taker taker, void* state);
    ~FileFollower();                                  // ends the thread, within a block
    FileFollower& operator=(FileFollower&&) = delete; // neither copied nor moved

    // Whether there is a thread: if not, nothing is read, and finish fails.
    bool isRunning() const { return thread_.joinable(); }
    // The bytes ahead of end stand in the file and stay as they are. An end that was passed already says nothing new.
    void follow(u64 end);
    // There are no more than those: waits until all were taken. Once. 0, or the errno of what went wrong.
    int finish();

private:
    static constexpr u64 kSTOPPED = ~u64{0};
    static constexpr u64 kFINISHED_BIT = u64{1} << 63; // of end_: nothing follows

    void run_();
    int take_(u64 count);
    void tell_(u64 end);

    int descriptor_;
    u64 at_; // of the thread until it is joined, as error_ and block_
    Taker taker_;
    void* state_;
    int error_ = 0;
    std::unique_ptr<u8[]> block_;
    std::atomic<u64> end_;
    std::thread thread_;
};

} // namespace memdata

#endif
