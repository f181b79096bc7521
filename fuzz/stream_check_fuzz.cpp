// stream_check_fuzz.cpp - the memories and CRC words of a bit file, compared with what they should be.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/bit_commands.h"
#include "BitFileUtils/stream_state.h"
#include "support/stream_target.h"

#include <numeric>

using namespace memdata;
using namespace memdata::fuzz;

namespace {

constexpr u32 kALLOW_MFWR = 0x100; // a comparison lets them through

} // namespace

void memdata::fuzz::testStream(const StreamCase& asked) {
    const StreamModel model = asked.replacementModel(kALLOW_MFWR, StreamModel::CHECK);
    StreamCheck check;
    {
        const InputFile bits(asked.fileOf(asked.stream()));
        require(
            checkBitFile(bits.spec(), asked.map(), &check) == model.status, "a comparison ends with another status");
    }
    const auto wrong = std::ranges::count_if(model.crcWords, [](const auto& word) { return !word.isRight; });
    require(check.crcWords == model.crcWords.size(), "a comparison counts other CRC words");
    require(check.wrongCrcWords == static_cast<u64>(wrong), "a comparison judges CRC words otherwise");
    require(check.memories.comparedLanes == std::accumulate(model.reached.begin(), model.reached.end(), u64{0}),
        "a comparison passes over memories");
    require(check.memories.differences.size() == model.differences, "a comparison finds other differences");
}
