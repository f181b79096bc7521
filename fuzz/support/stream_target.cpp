// stream_target.cpp - see stream_target.h. A part of each such program: what libFuzzer looks for by name is not looked for
// in libraries.
// SPDX-License-Identifier: Apache-2.0
#include "support/stream_target.h"

using namespace memdata::fuzz;

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned seed) {
    return mutateStream(data, size, maxSize, seed);
}

extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t* one, size_t oneSize, const uint8_t* other, size_t otherSize,
    uint8_t* out, size_t maxSize, unsigned seed) {
    return crossStreams(one, oneSize, other, otherSize, out, maxSize, seed);
}

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const EngineRun run;
    testStream(StreamCase(data, size));
    return 0;
}
