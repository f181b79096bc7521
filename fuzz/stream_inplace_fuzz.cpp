// stream_inplace_fuzz.cpp - a configuration stream in memory, its memories replaced where it stands.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/bit_commands.h"
#include "support/stream_case.h"

#include <algorithm>

using namespace memdata;
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
    const StreamCase asked(data, size);
    const StreamModel model = asked.replacementModel(0);
    // Memory of the exact size, so that a sanitizer sees every access behind it.
    Bytes image(asked.stream().begin(), asked.stream().end());
    image.shrink_to_fit();
    const int status = DoInplaceBITReplacement(asked.device(), image.data(), image.size(), asked.map(), nullptr);
    if (image.empty()) return 0;
    require(status == model.status, "a replacement in place ends with another status");
    // Where the walk stopped, what lies ahead is done and the rest is as it was.
    Bytes expected = asked.stream();
    std::copy(model.copy.begin(), model.copy.end(), expected.begin());
    require(image == expected, "a replacement in place changes other bytes than those of memories and CRC words");
    asked.requireReached(model);
    return 0;
}
