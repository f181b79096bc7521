// stream_dump_fuzz.cpp - a bit file as text, before and behind a replacement in it.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/bit_commands.h"
#include "SystemUtils/memory.h"
#include "support/stream_target.h"

#include <cstdlib>
#include <string>

using namespace memdata;
using namespace memdata::fuzz;

namespace {

constexpr const char* kOUTPUT = "out.dmp";
constexpr u32 kUSED_ONLY = 0x10;
constexpr u32 kSTREAM_ONLY = 0x20;
constexpr u32 kALL_FLAGS = 0x7F;
constexpr u8 kOF_REPLACED = 0x80; // among the choices: the stream behind a replacement is dumped

// Status, and the text where there is one.
int dump(const Bytes& file, u32 flags, AddressMappingType* map, std::string* text) {
    const InputFile bits(file);
    const OwnedFileSpec output(CreateFileSpec(kOUTPUT));
    const int status = DoBITDump(bits.spec(), output.get(), flags, map, nullptr);
    const std::optional<Bytes> told = takeFile(kOUTPUT);
    require(told.has_value() == (status == 0), "a failed dump leaves a text, or a good one leaves none");
    if (told) text->assign(told->begin(), told->end());
    return status;
}

// The number behind a phrase, which the text has from some place on.
u32 numberBehind(const std::string& text, const char* phrase, size_t* at) {
    *at = text.find(phrase, *at);
    require(*at != std::string::npos, "a dump leaves out a CRC word");
    *at += std::string_view(phrase).size();
    return static_cast<u32>(std::strtoul(text.c_str() + *at, nullptr, 16));
}

void requireCrcWords(const std::string& text, const std::vector<StreamModel::CrcWord>& words) {
    size_t at = 0;
    for (const StreamModel::CrcWord& word : words) {
        const size_t ofRegister = text.find(" CRC value. Calculated", at);
        const size_t ofBurst = text.find("Write of Auto CRC word ", at);
        at = std::min(ofRegister, ofBurst);
        require(at != std::string::npos, "a dump leaves out a CRC word");
        const u32 found = at == ofBurst ? numberBehind(text, "Auto CRC word ", &at)
                                        : static_cast<u32>(std::strtoul(text.c_str() + at - 10, nullptr, 16));
        const u32 right = numberBehind(text, "Calculated CRC value = ", &at);
        require(found == word.found && right == word.right, "a dump tells another CRC");
    }
    require(text.find("Calculated CRC value", at) == std::string::npos, "a dump tells a CRC word that is not there");
}

// The order in which a dump tells the data of a lane, byte by byte.
Bytes turned(const Bytes& data, u64 width) {
    Bytes out(data.size());
    for (size_t i = 0; i < data.size(); ++i) {
        const u8 byte = data[i];
        u32 swapped = byte;
        size_t to = i;
        for (u32 bit = 0; bit < 8 && width < 8; ++bit) { // units inside a byte, from the other end
            const u32 unit = static_cast<u32>(width);
            const u32 target = (8 / unit - 1 - bit / unit) * unit + bit % unit;
            swapped = (swapped & ~(1U << target)) | static_cast<u32>(byte >> bit & 1) << target;
        }
        if (width == 16 || width == 32) to = i ^ (width / 8 - 1);
        out[to] = static_cast<u8>(swapped);
    }
    return out;
}

// Bytes in hexadecimal from some place of a text on.
Bytes hexBehind(const std::string& text, size_t at, size_t count) {
    Bytes bytes;
    for (; bytes.size() < count && at + 1 < text.size(); at += 2) {
        if (text[at] == '\n') ++at;
        bytes.push_back(static_cast<u8>(std::strtoul(text.substr(at, 2).c_str(), nullptr, 16)));
    }
    return bytes;
}

// What the dump of a stream tells of a lane, wherever the stream holds it, is what a replacement has put there.
void requireContents(const StreamCase& asked, const std::string& text, const std::vector<u32>& told) {
    size_t filled = 0;
    for (const testing::PlacedLane& placed : asked.placed().lanes()) {
        const BitLaneType* lane = placed.lane;
        if (lane->laneState == 0) continue;
        const size_t bytes = lane->memory->type->dataBits / 8;
        const Bytes expected =
            turned(Bytes(lane->dataSliver, lane->dataSliver + bytes), lane->laneWidth - lane->parityWidth);
        const std::string title = "Design instance \"" + std::string(lane->name) + "\".\n\n";
        u32 count = 0;
        for (size_t at = text.find(title); at != std::string::npos; at = text.find(title, at), ++count) {
            at += title.size();
            require(hexBehind(text, at, bytes) == expected, "a dump tells other data than a replacement has put there");
        }
        require(count == (filled < told.size() ? told[filled] : 0), "a dump tells a memory too often or not at all");
        ++filled;
    }
}

void requireReplacedContents(const StreamCase& asked) {
    const StreamModel replaced = asked.replacementModel(0);
    if (asked.map() == nullptr || replaced.status != 0 || replaced.hasOpaqueWords) return;
    StreamModel told{
        .device = asked.device(), .job = StreamModel::DUMP, .hasMap = true, .contents = asked.placed().contents()};
    told.walk(replaced.copy);
    std::string text;
    require(dump(asked.fileOf(replaced.copy), kSTREAM_ONLY | kUSED_ONLY, asked.map(), &text) == told.status,
        "a dump of a replaced stream ends with another status");
    if (told.status == 0) requireContents(asked, text, told.reached);
}

void requireDump(const StreamCase& asked, u32 flags) {
    StreamModel model{.device = asked.device(), .job = StreamModel::DUMP};
    model.walk(asked.stream());
    std::string text;
    const int status = dump(asked.fileOf(asked.stream()), flags, asked.map(), &text);
    require(status == model.status, "a dump ends with another status");
    if (status == 0) requireCrcWords(text, model.crcWords);
}

} // namespace

void memdata::fuzz::testStream(const StreamCase& asked) {
    const u8 choice = asked.recipe().choices[StreamRecipe::DUMP_FLAGS];
    if ((choice & kOF_REPLACED) != 0)
        requireReplacedContents(asked);
    else
        requireDump(asked, choice & kALL_FLAGS);
}
