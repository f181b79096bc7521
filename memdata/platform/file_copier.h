// file_copier.h - a file copied by a thread of its own.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_FILE_COPIER_H
#define MEMDATA_PLATFORM_FILE_COPIER_H

#include "platform/BasicTypes.h"

#include <atomic>
#include <memory>
#include <thread>

namespace memdata {

// The thread knows nothing but two descriptors and a buffer: no state of the library, no tracked memory, no mapping, no
// signal reaches it. Whatever goes wrong there is no failure, but a copy that nobody gets.
class FileCopier {
public:
    // Copies byteCount bytes of one file to the same places of another. Both descriptors are the copier's from here on.
    FileCopier(int from, int to, u64 byteCount);
    ~FileCopier();                                // ends the thread, within a block
    FileCopier& operator=(FileCopier&&) = delete; // neither copied nor moved

    // Waits for the copy. The descriptor of the whole copy, at its start, which stays the copier's; -1 when there is none.
    int wholeCopy();

private:
    void copy_();

    int from_;
    int to_;
    u64 byteCount_;
    std::unique_ptr<char[]> block_;
    std::atomic<bool> isStopped_{false};
    bool isWhole_ = false; // of the thread, until it is joined
    std::thread thread_;
};

// Whether a second thread has a processor of its own.
bool hasSecondProcessor();

} // namespace memdata

#endif
