// stream_replace_fuzz.cpp - a bit file, copied with other contents of its memories.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/bit_commands.h"
#include "SystemUtils/memory.h"
#include "support/stream_case.h"

using namespace memdata;
using namespace memdata::fuzz;

namespace {

constexpr const char* kOUTPUT = "out.bit";

int replace(const Bytes& file, u32 flags, AddressMappingType* map) {
    const InputFile bits(file);
    const Tracked<fileSpecType, DeleteFileSpec> input(CreateFileSpec(bits.name()));
    const Tracked<fileSpecType, DeleteFileSpec> output(CreateFileSpec(kOUTPUT));
    return DoBITReplacement(input.get(), output.get(), flags, map, nullptr, nullptr);
}

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
    const StreamModel model = asked.replacementModel(asked.replacementFlags());
    const int status = replace(asked.fileOf(asked.stream()), asked.replacementFlags(), asked.map());
    require(status == model.status, "a replacement ends with another status");
    const std::optional<Bytes> copy = takeFile(kOUTPUT);
    require(copy.has_value() == (status == 0), "a failed run leaves an output, or a good one leaves none");
    if (!copy) return 0;
    const Bytes expected = asked.fileOf(model.copy);
    require(copy->size() == expected.size(), "a replacement changes the length of the file");
    require(copy == expected, "a replacement changes other bytes than those of memories and CRC words");
    asked.requireReached(model);
    return 0;
}
