// bit_maker.h - bit files for any device, sound down to the CRC words, in every form that a stream may have.
//
//   BitRecipe recipe{.device = "td3c4"};
//   MadeBit made = makeBit(recipe);                       // frames random by recipe.seed
//   MemoryImages memory = memoryOf(made.device, made.stream, sitesOf(made.device)[0]);
//   Bytes file = bitFileOf(recipe, made.stream);          // t4k, Fenwick or RBT
//
// The engine's own ways of moving bits have no part in it, so that it can check them.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_BIT_MAKER_H
#define MEMDATA_TESTS_SUPPORT_BIT_MAKER_H

#include "support/bit_frames.h"
#include "support/bit_stream.h"

#include <optional>
#include <string>
#include <utility>

namespace memdata::testing {

enum class BitContainer : u8 { T4K, FENWICK, RBT };

struct BitRecipe {
    std::string device = "td3c4";
    u32 seed = 1; // of all frame bits
    BitContainer container = BitContainer::T4K;
    bool busWidthWords = true;                   // ahead of a sync word
    bool noOperations = true;                    // between packets
    bool pads = true;                            // zero words between packets, and behind the last
    bool separateBram = false;                   // block RAM in a burst of its own; always so in the first generation
    bool shortCounts = false;                    // bursts that are short enough have their count in the command word
    bool compressed = false;                     // a multi-frame write
    bool encrypted = false;                      // the control register says so
    bool crcBypassed = false;                    // the options register says so
    bool readRegisters = false;                  // reads between the writes
    bool closingCrc = true;                      // a CRC register write ahead of the end
    std::optional<bool> autoCrc = std::nullopt;  // behind bursts; without it where a CRC is never taken for a packet
    std::optional<u32> clbFrames = std::nullopt; // ahead of the block RAM; without it what the device's row says
    std::vector<std::pair<MemorySite, MemoryImages>> contents = {};
};

struct MadeBit {
    const TarselDeviceType* device = nullptr;
    Bytes stream;
};

// Throws std::invalid_argument for an unknown device, or one without memories.
MadeBit makeBit(const BitRecipe& recipe);

// The stream in the recipe's container.
Bytes bitFileOf(const BitRecipe& recipe, const Bytes& stream);

// A memory out of a stream; throws std::runtime_error when the stream does not hold its column.
MemoryImages memoryOf(const TarselDeviceType* device, const Bytes& stream, const MemorySite& site);
// The same, of a stream that is taken apart already.
MemoryImages memoryOf(const TarselDeviceType* device, const Bytes& stream, const std::vector<StreamPiece>& pieces,
    const MemorySite& site);

} // namespace memdata::testing

#endif
