// stream_replace_fuzz.cpp - a bit file, copied with other contents of its memories.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/bit_commands.h"
#include "SystemUtils/memory.h"
#include "support/stream_target.h"

using namespace memdata;
using namespace memdata::fuzz;

namespace {

constexpr const char* kOUTPUT = "out.bit";

int replace(const Bytes& file, u32 flags, AddressMappingType* map) {
    const InputFile bits(file);
    const OwnedFileSpec output(CreateFileSpec(kOUTPUT));
    return DoBITReplacement(bits.spec(), output.get(), flags, map, nullptr, nullptr);
}

} // namespace

void memdata::fuzz::testStream(const StreamCase& asked) {
    const StreamModel model = asked.replacementModel(asked.replacementFlags());
    const int status = replace(asked.fileOf(asked.stream()), asked.replacementFlags(), asked.map());
    require(status == model.status, "a replacement ends with another status");
    const std::optional<Bytes> copy = takeFile(kOUTPUT);
    require(copy.has_value() == (status == 0), "a failed run leaves an output, or a good one leaves none");
    if (!copy) return;
    const Bytes expected = asked.fileOf(model.copy);
    require(copy->size() == expected.size(), "a replacement changes the length of the file");
    require(copy == expected, "a replacement changes other bytes than those of memories and CRC words");
    asked.requireReached(model);
}
