// auto_data.cpp - see auto_data.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/auto_data.h"

#include "BmmUtils/model/transform_buffers.h"
#include "lanefillCore/data_files.h"
#include "lanefillCore/lanes/lane_positions.h"
#include "lanefillCore/lanes/lane_words.h"

#include <memory>

namespace {

constexpr unsigned kTRANSLATION_FLAGS = 1;
constexpr unsigned kSOURCE_UNIT_BITS = 8;
constexpr unsigned kNO_SWAP = 0;

// Addresses inside of a memory: bytes, with the parity bits where its lanes count them, or words.
u64 addressCount(const BitLaneGridElemType* element, bool wordAddressing) {
    const MEMORYType* type = element->lane->memory->type;
    const u64 bits = type->dataBits + (type->hasParityWidths ? type->parityBits : 0);
    const u64 unitBits = wordAddressing ? element->laneWidth : 8;
    return unitBits == 0 ? 0 : bits / unitBits;
}

int storeSection(
    const char* fileName, BitLaneGridElemType* element, const DataFileSectionTypeX<unsigned long>& section) {
    BitLaneType* lane = element->lane;
    const AddressSpaceDefType* space = lane->addressSpace;
    const bool wordAddressing = space->ranges != nullptr && space->ranges->wordAddressing;
    const u64 addresses = addressCount(element, wordAddressing);
    if (section.address >= addresses) return 0;
    u64 word = 0;
    u64 unusedCount = 0; // cut to whole words
    calculate_starting_bitLane_offset_positions(
        wordAddressing, 0, addresses - 1, 1, element->laneWidth, section.address, &word, &unusedCount);
    if (int status = initialize_bitLane_transform_positions(fileName, element, word, section.address); status != 0)
        return status;
    const BufferChunkAccess* cursor = lane->dataChunks;
    if (cursor == nullptr) return 7;

    BufferChunkAccess source =
        BufferChunkAccess::OverWholeBuffer(section.data, section.bitCount, kDATA_ORDER, 0, kSOURCE_UNIT_BITS);
    EndianConvert::UInt128 ignored{0, 0};
    const unsigned headBits =
        wordAddressing || element->parityWidth != 0 ? 0 : memdata::bitsIntoWord(element->laneWidth, section.address);
    if (headBits != 0) memdata::transformRestOfLaneValue(element, headBits, kNO_SWAP, &source, &ignored);
    // On purpose up to the memory's end, also behind the source: the words there keep what they hold.
    while (cursor->GetNumberBufferBitsRemaining() > 0) transform_bitLane_value(element, kNO_SWAP, &source, &ignored);
    return 0;
}

void dropCursors(BitLaneType* lane) {
    memdata::deleteChunkAccess(lane->dataChunks);
    memdata::deleteChunkAccess(lane->parityChunks);
    lane->dataChunks = lane->parityChunks = nullptr;
}

int fillFromInitFile(BitLaneGridElemType* element, const char* macroDefines) {
    BitLaneType* lane = element->lane;
    if (!allocate_addressSpace_transform_buffers(lane->addressSpace)) return 7;
    LNF_DataFile* opened = nullptr;
    if (int status = open_data_file(lane->initFile, macroDefines, kTRANSLATION_FLAGS, &opened); status != 0)
        return status;
    const std::unique_ptr<LNF_DataFile> file(opened);
    return memdata::fillLane(element, file.get());
}

} // namespace

namespace memdata {

int fillLane(BitLaneGridElemType* element, LNF_DataFile* file) {
    int status = 0;
    for (unsigned long i = 0; status == 0 && i < file->GetProgramSectionCount(); ++i) {
        DataFileSectionTypeX<unsigned long> section{};
        status = file->GetProgramSectionData(i, &section);
        if (status == 0) status = storeSection(file->GetDataFileName(), element, section);
        dropCursors(element->lane);
    }
    return status != 0 ? status : file->CheckUnchanged();
}

} // namespace memdata

int transform_auto_data_files(AddressMappingType* mapping, const char* macroDefines) {
    for (BitLaneGridElemType* element = mapping->initLanes; element != nullptr; element = element->lane->nextInitLane)
        if (int status = fillFromInitFile(element, macroDefines); status != 0) return status;
    return 0;
}
