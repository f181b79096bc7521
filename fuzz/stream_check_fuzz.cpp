// stream_check_fuzz.cpp - the memories and CRC words of a bit file, compared with what they should be.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/bit_commands.h"
#include "BitFileUtils/stream_state.h"
#include "SystemUtils/memory.h"
#include "support/stream_case.h"

#include <numeric>

using namespace memdata;
using namespace memdata::fuzz;

namespace {

constexpr u32 kALLOW_MFWR = 0x100; // a comparison lets them through

} // namespace

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
    const StreamModel model = asked.replacementModel(kALLOW_MFWR, StreamModel::CHECK);
    StreamCheck check;
    {
        const InputFile bits(asked.fileOf(asked.stream()));
        const Tracked<fileSpecType, DeleteFileSpec> input(CreateFileSpec(bits.name()));
        require(
            checkBitFile(input.get(), asked.map(), &check) == model.status, "a comparison ends with another status");
    }
    const auto wrong = std::ranges::count_if(model.crcWords, [](const auto& word) { return !word.isRight; });
    require(check.crcWords == model.crcWords.size(), "a comparison counts other CRC words");
    require(check.wrongCrcWords == static_cast<u64>(wrong), "a comparison judges CRC words otherwise");
    require(check.memories.comparedLanes == std::accumulate(model.reached.begin(), model.reached.end(), u64{0}),
        "a comparison passes over memories");
    require(check.memories.differences.size() == model.differences, "a comparison finds other differences");
    return 0;
}
