// stream_target.h - the frame of the targets that are fed with recipes of configuration streams.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_FUZZ_SUPPORT_STREAM_TARGET_H
#define MEMDATA_FUZZ_SUPPORT_STREAM_TARGET_H

#include "support/stream_case.h"

namespace memdata::fuzz {

// What such a target defines: one input, inside an engine run of its own.
void testStream(const StreamCase& asked);

// How libFuzzer changes its inputs: packets are added, taken away, exchanged and changed, so that most of them are
// streams that get far. As LLVMFuzzerCustomMutator and LLVMFuzzerCustomCrossOver.
size_t mutateStream(uint8_t* data, size_t size, size_t maxSize, unsigned seed);
size_t crossStreams(const uint8_t* one, size_t oneSize, const uint8_t* other, size_t otherSize, uint8_t* out,
    size_t maxSize, unsigned seed);

} // namespace memdata::fuzz

#endif
