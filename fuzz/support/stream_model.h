// stream_model.h - what must become of a configuration stream, worked out without the engine.
//
// A second walk over the stream, made of the plain parts that the tests make streams with: it says with which status a
// replacement or a dump ends, every byte of the copy, and every CRC word.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_FUZZ_SUPPORT_STREAM_MODEL_H
#define MEMDATA_FUZZ_SUPPORT_STREAM_MODEL_H

#include "DeviceTableUtils/records.h"
#include "support/bit_frames.h"
#include "support/damage.h"

#include <utility>
#include <vector>

namespace memdata::fuzz {

using memdata::testing::Bytes;
using memdata::testing::MemoryImages;
using memdata::testing::MemorySite;

struct StreamModel {
    // What is asked for.
    const TarselDeviceType* device;
    enum Job { REPLACEMENT, DUMP, CHECK } job = REPLACEMENT;
    bool hasMap = false;
    bool allowsMultiFrame = false;
    std::vector<std::pair<MemorySite, MemoryImages>> contents = {}; // of memories, in the order of the decode tables

    // What comes of it.
    struct CrcWord {
        u32 found;
        u32 right; // the whole sum
        bool isRight;
        bool operator==(const CrcWord&) const = default;
    };
    int status = 0;
    Bytes copy = {};                    // to the end, or to where the walk stopped
    std::vector<CrcWord> crcWords = {}; // in order, those of registers and of bursts
    std::vector<u32> reached = {};      // how often each of the contents was put into the stream, told, or compared
    u32 differences = 0;                // memories that hold something else than the contents say
    bool hasOpaqueWords = false;        // a replacement passed, or wrote, what a dump reads otherwise

    void walk(const Bytes& stream);
};

// A stream with all its CRC words put right, as far as it can be walked.
Bytes withRightCrcs(const TarselDeviceType* device, Bytes stream);

} // namespace memdata::fuzz

#endif
