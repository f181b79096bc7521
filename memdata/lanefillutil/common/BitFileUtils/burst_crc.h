// burst_crc.h - the CRC of a large burst, taken by a second thread behind the walk.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BIT_FILE_UTILS_BURST_CRC_H
#define MEMDATA_BIT_FILE_UTILS_BURST_CRC_H

#include "BitFileUtils/stream_state.h"
#include "FileUtils/copied_output.h"

#include <optional>

namespace memdata {

// From its making to its end the words of one burst are written. The thread reads them back from the output, which
// began as a copy of the input, so that words that nobody changes are not read by the walk at all. Other bursts, small
// ones, and all without a second processor: the walk's burstCrc stays null, and CRC_Data enters the words.
class BurstCrc {
public:
    BurstCrc(StreamWalk& walk, u32 commandWord, u64 wordCount);
    ~BurstCrc();
    BurstCrc& operator=(BurstCrc&&) = delete; // neither copied nor moved

    // The words that were written last are in the file, or on their way to it.
    void noteWritten() { follower_->noteWritten(); }
    // Passes over words that stand in the copy as they are, up to limit bytes; *count is 0 when they do not.
    int passWords(u64 limit, u64* count);
    // Behind the last word: waits for the thread and sets the running CRC. Status 0, or that of a failed output.
    int finish();

private:
    // Of the thread until it has finished.
    struct Crc {
        u32 address;
        u32 value;
    };
    static void enter_(void* crc, const u8* bytes, u64 count);

    StreamWalk& walk_;
    Crc crc_;
    std::optional<OutputFollower> follower_;
};

} // namespace memdata

#endif
