// stream_case.h - what a recipe asks of a stream target: a device, a map with lanes on its memories, a stream, a bit file.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_FUZZ_SUPPORT_STREAM_CASE_H
#define MEMDATA_FUZZ_SUPPORT_STREAM_CASE_H

#include "FileUtils/file_spec.h"
#include "SystemUtils/memory.h"
#include "support/engine_run.h"
#include "support/placed_map.h"
#include "support/stream_model.h"
#include "support/stream_recipe.h"

#include <optional>

namespace memdata::fuzz {

// Lives inside an engine run.
class StreamCase {
public:
    StreamCase(const uint8_t* data, size_t size);

    const StreamRecipe& recipe() const { return recipe_; }
    TarselDeviceType* device() const { return map_.device(); }
    const Bytes& stream() const { return stream_; }
    const testing::PlacedMap& placed() const { return map_; }
    AddressMappingType* map() const { return recipe_.has(StreamRecipe::NO_MAP) ? nullptr : map_.get(); }
    u32 replacementFlags() const { return recipe_.has(StreamRecipe::ALLOW_MFWR) ? 0x100 : 0; }

    // The bit file of a stream, and bytes behind it where the recipe asks for them.
    Bytes fileOf(const Bytes& stream) const;
    // What a replacement does with the stream, or a comparison.
    StreamModel replacementModel(u32 flags, StreamModel::Job job = StreamModel::REPLACEMENT) const;

    // Aborts unless the engine has said of each lane with data what the model says.
    void requireReached(const StreamModel& model) const;

private:
    StreamRecipe recipe_;
    testing::PlacedMap map_;
    Bytes stream_;
};

// A bit file in the folder of the run, as long as this lives. Aborts when the run has changed it.
class InputFile {
public:
    explicit InputFile(Bytes bytes);
    ~InputFile();
    InputFile& operator=(InputFile&&) = delete; // neither copied nor moved

    fileSpecType* spec() const { return spec_.get(); }

private:
    Bytes bytes_;
    OwnedFileSpec spec_;
};

// The contents of a file of the run, which goes with it; nothing when there is none.
std::optional<Bytes> takeFile(const char* name);

} // namespace memdata::fuzz

#endif
