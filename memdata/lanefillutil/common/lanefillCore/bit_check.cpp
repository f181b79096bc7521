// bit_check.cpp - see bit_check.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/bit_check.h"

#include "BitFileUtils/bit_commands.h"
#include "BitFileUtils/stream_state.h"
#include "BmmUtils/model/iteration.h"
#include "BmmUtils/validation.h"
#include "CmdParseUtils/CmdParseUtils.h"
#include "SystemUtils/alerts.h"
#include "lanefillCore/data_files.h"
#include "lanefillCore/driver.h"

#include <algorithm>

namespace memdata {

namespace {

constexpr int kMISSING_FILE_STATUS = 14;

// What a user calls the place of a lane's word: its address in the space where that counts bytes.
std::string placeText(const AddressSpaceDefType& space, const BusBlockType& block, u64 word) {
    std::string index = formatted("word 0x%llX", word);
    if (space.wordAddressing || block.busWidth % 8 != 0) return index;
    return formatted("address 0x%llX (%s)", block.startAddress + word * (block.busWidth / 8), index);
}

std::string differenceLine(
    const AddressSpaceDefType& space, const BusBlockType& block, const LaneDifference& difference) {
    const BitLaneType& lane = *difference.lane;
    return formatted("%s [%lld:%lld] in '%s': %s%s: expected 0x%llX, found 0x%llX\n", lane.name, lane.bitHigh,
        lane.bitLow, space.name, placeText(space, block, difference.word), difference.inParity ? " parity" : "",
        difference.expected, difference.found);
}

std::string counted(u64 count, const char* one, const char* several) {
    return formatted("%lld %s", count, count == 1 ? one : several);
}

struct Tally {
    u64 unlocated = 0; // lanes with data and without a location
    u64 missing = 0;   // located, and not in the stream
};

// Lines for what is not as it should be, in the order of the map.
std::string laneLines(const AddressMappingType* mapping, const MemoryCheck& memories, Tally* tally) {
    std::string text;
    visitLanes(
        mapping, [&](const AddressSpaceDefType& space, const BusBlockType& block, const BitLaneGridElemType& element) {
            const BitLaneType* lane = element.lane;
            const auto difference = std::ranges::find(memories.differences, lane, &LaneDifference::lane);
            if (difference != memories.differences.end()) text += differenceLine(space, block, *difference);
            if (lane->laneState == 0 || lane->isReplaced) return;
            ++(lane->locKind == kLOC_KIND_NONE ? tally->unlocated : tally->missing);
            text += formatted("%s in '%s': %s\n", lane->name, space.name,
                lane->locKind == kLOC_KIND_NONE ? "has no location in the map" : "its memory is not in the bit file");
        });
    return text;
}

int require(bool isThere, const char* what) {
    if (isThere) return 0;
    return PrintError(kERROR_MESSAGE_STRING, kMISSING_FILE_STATUS, formatted("A check needs %s.", what));
}

void report(const AddressMappingType* mapping, const StreamCheck& found, BitCheckRun* run) {
    Tally tally;
    run->isCompared = true;
    run->report = laneLines(mapping, found.memories, &tally);
    if (found.wrongCrcWords != 0)
        run->report += formatted("%lld of %s wrong, the first ends %ld bytes into the stream\n", found.wrongCrcWords,
            counted(found.crcWords, "CRC word is", "CRC words are"), found.firstWrongCrc);
    const u64 differing = found.memories.differences.size();
    run->report +=
        formatted("%s compared, %lld differ", counted(found.memories.comparedLanes, "memory", "memories"), differing);
    if (tally.missing + tally.unlocated != 0)
        run->report += formatted(", %lld not found", tally.missing + tally.unlocated);
    run->report +=
        formatted("; %s, %lld wrong\n", counted(found.crcWords, "CRC word", "CRC words"), found.wrongCrcWords);
    const bool isEqual = differing == 0 && found.wrongCrcWords == 0 && tally.missing + tally.unlocated == 0;
    run->status = isEqual ? 0 : kBIT_FILE_DIFFERS;
}

int check(CmdStringOptionsType* options, BitCheckRun* run) {
    if (int status = require(options->bitFile != nullptr, "a bit file (-bt)"); status != 0) return status;
    if (int status = require(options->bmmFiles != nullptr, "an address map (-bm)"); status != 0) return status;
    if (int status = require(options->bdList != nullptr, "data files (-bd)"); status != 0) return status;
    Tracked<AddressMappingType, close_bmm_addressMapping> mapping;
    if (int status = open_bmm_addressMapping(options, mapping.out()); status != 0) return status;
    bool is64Bit = false;
    int status = transform_data_files(options, mapping.get(), is64Bit, options->macroDefines, options->progress);
    StreamCheck found;
    if (status == 0) status = checkBitFile(options->bitFile, mapping.get(), &found);
    if (status == 0) report(mapping.get(), found, run);
    return status != 0 ? status : run->status;
}

} // namespace

BitCheckRun runBitCheck(const char* text) {
    BitCheckRun run;
    OwnedOptions options;
    try {
        int count = -1; // no program name ahead of the switches
        run.status = ParseCmdStringOptions(text, options.get(), &count);
        if (run.status == 0) run.status = FinalizeCmdStringOptions(options.get());
        if (run.status == 0) run.status = check(options.get(), &run);
    } catch (const std::bad_alloc&) { // from texts of the standard library; tracked memory reports by itself
        run = {};
        run.status = PrintFatalError(kFATAL_OUT_OF_MEMORY, 7, "a check", 0, getCurrentMemoryUsage());
    }
    return run;
}

} // namespace memdata
