// stream_recipe.h - inputs of the stream targets: a few bytes that say which packets a configuration stream has.
//
// Frames take thousands of bytes a burst; a fuzzer that has to keep them all changes nothing else. An input is therefore
// a recipe, and the stream is made of it:
//   offset  bytes  field
//        0      8  choices: device, form, lanes, fill, dump flags, cut (2, big-endian), lanes without data
//        8    8*N  packets: kind, detail, count (2, big-endian), value (4, big-endian)
//    8+8*N         what follows a packet of kind TAIL, or less than a packet: bytes of the stream as they stand
// Every input is a recipe: a number that is too large counts modulo what there is.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_FUZZ_SUPPORT_STREAM_RECIPE_H
#define MEMDATA_FUZZ_SUPPORT_STREAM_RECIPE_H

#include "DeviceTableUtils/records.h"
#include "support/damage.h"

#include <span>
#include <vector>

namespace memdata::fuzz {

using memdata::testing::Bytes;

enum class PacketKind : u8 {
    HEAD,          // words ahead of a sync word, the sync word, a fresh CRC
    SYNC,          // the sync word alone
    NO_OPERATION,  //
    PAD,           // zero words; count: how many, up to 8
    VALUE,         // value, of the size of a sync word; detail 1: two words of bus width with it
    WORD,          // value, as a word
    WRITE,         // a register; detail: address, count: words, value: the first of them
    READ,          // the same without words
    COMMAND,       // a write of the command register; value
    FRAME_ADDRESS, // detail: block type; count: column of the first generation; detail above 7: value as it stands
    BURST,         // frame data; detail: BurstDetail, count and value with it
    CRC_REGISTER,  // detail 0: the sum so far, else spoilt by value; count: words
    AUTO_CRC,      // detail 0: the sum so far, else spoilt by value
    NEXT_DIE,      // a write of the register that ends a die's segment
    REPEAT,        // the detail packets ahead once more, count times
    RAW,           // detail bytes of count and value
    TAIL,
    KIND_COUNT,
};

struct PacketRecord {
    PacketKind kind;
    u8 detail;
    u16 count;
    u32 value;
};

// Detail of a burst.
struct BurstDetail {
    enum Size : u8 { WORDS, FRAMES, COLUMN, COLUMNS, COLUMNS_PADDED, WHOLE, WHOLE_CUT, ABOUT_A_COLUMN };
    enum Lie : u8 { NONE = 0, MORE, LESS, ANY };
    bool multiFrame; // MFWR
    bool shortCount; // where it fits
    Size size;       // in bytes, changed by the count
    Lie lie;         // about the words that follow

    explicit BurstDetail(u8 detail)
        : multiFrame((detail & 1) != 0), shortCount((detail & 2) != 0), size(static_cast<Size>(detail >> 2 & 7)),
          lie((detail & 0x80) != 0 ? static_cast<Lie>(detail >> 5 & 3) : NONE) {}
};

struct StreamRecipe {
    enum Choice { DEVICE, FORM, LANES, FILL, DUMP_FLAGS, CUT_HIGH, CUT_LOW, EMPTY_LANES, CHOICE_COUNT };
    enum Form : u8 {
        FENWICK = 0x01,
        ALLOW_MFWR = 0x02,
        NO_MAP = 0x04,
        BYTES_BEHIND = 0x08,
        RIGHT_CRCS = 0x10, // all of them, whatever the packets say
    };

    u8 choices[CHOICE_COUNT] = {};
    std::vector<PacketRecord> packets;
    Bytes tail;

    bool has(Form form) const { return (choices[FORM] & form) != 0; }
};

StreamRecipe readRecipe(std::span<const u8> input);
Bytes writeRecipe(const StreamRecipe& recipe);

const char* deviceNameOf(const StreamRecipe& recipe);
inline constexpr size_t kRECIPE_DEVICES = 24;

// The stream of a recipe, in most cases up to 64 KB.
Bytes streamOf(const StreamRecipe& recipe, const TarselDeviceType* device);

// The addresses of the first generation's frame columns that hold block RAM; one 0 for other devices.
std::vector<u32> bramFrameColumns(const TarselDeviceType* device);

} // namespace memdata::fuzz

#endif
