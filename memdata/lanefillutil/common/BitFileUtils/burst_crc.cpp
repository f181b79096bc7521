// burst_crc.cpp - see burst_crc.h.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/burst_crc.h"

#include "BitFileUtils/byte_primitives.h"
#include "BitFileUtils/progress.h"
#include "BitFileUtils/stream_crc.h"
#include "DeviceTableUtils/families.h"

namespace memdata {

BurstCrc::BurstCrc(StreamWalk& walk, u32 commandWord, u64 wordCount)
    : walk_(walk), crc_{walk.address(commandWord), gAccumulated_CRC} {
    if (!entersRunsOfWords(walk.device) || progressReportsEachByte() ||
        !isWorthFollowing(walk.output, wordCount * walk.family().configWordBytes))
        return;
    follower_.emplace(walk.output, enter_, &crc_);
    if (follower_->isRunning()) walk.burstCrc = this;
}

BurstCrc::~BurstCrc() {
    walk_.burstCrc = nullptr;
}

void BurstCrc::enter_(void* crc, const u8* bytes, u64 count) {
    Crc& running = *static_cast<Crc*>(crc);
    running.value = crcOfWords(running.value, running.address, bytes, count / sizeof(u32));
}

int BurstCrc::passWords(u64 limit, u64* count) {
    if (int status = passCopiedData(walk_.input, walk_.output, sizeof(u32), limit, count); status != 0) return status;
    noteWritten();
    return 0;
}

int BurstCrc::finish() {
    if (walk_.burstCrc == nullptr) return 0;
    if (int status = follower_->finish(); status != 0) return status;
    gAccumulated_CRC = crc_.value;
    return 0;
}

} // namespace memdata
