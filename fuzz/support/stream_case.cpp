// stream_case.cpp - see stream_case.h.
// SPDX-License-Identifier: Apache-2.0
#include "support/stream_case.h"

#include "support/bit_builder.h"

#include <cstdio>
#include <filesystem>
#include <random>

namespace memdata::fuzz {

using namespace memdata::testing;

namespace {

constexpr size_t kMOST_LANES = 7;
constexpr const char* kINPUT = "top.bit";

} // namespace

StreamCase::StreamCase(const uint8_t* data, size_t size)
    : recipe_(readRecipe({data, size})), map_(deviceNameOf(recipe_)) {
    const u8* choices = recipe_.choices;
    if (const size_t lanes = choices[StreamRecipe::LANES] % (kMOST_LANES + 1); lanes != 0) map_.addOfEveryKind(lanes);
    std::mt19937 random(choices[StreamRecipe::FILL]);
    for (size_t i = 0; i < map_.lanes().size(); ++i)
        if ((choices[StreamRecipe::EMPTY_LANES] >> i % 8 & 1) == 0) map_.fill(random, map_.lanes()[i].lane);
    stream_ = streamOf(recipe_, device());
}

Bytes StreamCase::fileOf(const Bytes& stream) const {
    Bytes file = recipe_.has(StreamRecipe::FENWICK) ? fenwickBitFile({.partName = deviceNameOf(recipe_)}, stream)
                                                    : t4kBitFile({.partName = deviceNameOf(recipe_)}, stream);
    if (recipe_.has(StreamRecipe::BYTES_BEHIND)) file.insert(file.end(), {0xAA, 0x99, 0x55});
    return file;
}

StreamModel StreamCase::replacementModel(u32 flags, StreamModel::Job job) const {
    StreamModel model{.device = device(),
        .job = job,
        .hasMap = !recipe_.has(StreamRecipe::NO_MAP),
        .allowsMultiFrame = (flags & 0x100) != 0,
        .contents = map_.contents()};
    model.walk(stream_);
    return model;
}

void StreamCase::requireReached(const StreamModel& model) const {
    if (map() == nullptr) return;
    size_t filled = 0;
    for (const PlacedLane& placed : map_.lanes()) {
        const bool hasData = placed.lane->laneState != 0;
        const bool isReached = hasData && filled < model.reached.size() && model.reached[filled] != 0;
        filled += hasData ? 1 : 0;
        require(placed.lane->isReplaced == isReached, "a lane is marked as replaced and is not, or the other way");
    }
}

InputFile::InputFile(Bytes bytes) : bytes_(std::move(bytes)), spec_(CreateFileSpec(kINPUT)) {
    std::FILE* file = std::fopen(kINPUT, "wb");
    require(file != nullptr && std::fwrite(bytes_.data(), 1, bytes_.size(), file) == bytes_.size() &&
                std::fclose(file) == 0,
        "the input can not be written");
}

InputFile::~InputFile() {
    require(takeFile(kINPUT) == bytes_, "a run changes its input");
}

std::optional<Bytes> takeFile(const char* name) {
    std::FILE* file = std::fopen(name, "rb");
    if (file == nullptr) return std::nullopt;
    Bytes bytes(std::filesystem::file_size(name));
    require(std::fread(bytes.data(), 1, bytes.size(), file) == bytes.size(), "an output can not be read");
    std::fclose(file);
    std::filesystem::remove(name);
    return bytes;
}

} // namespace memdata::fuzz
