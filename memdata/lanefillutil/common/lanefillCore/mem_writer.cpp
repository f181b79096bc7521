// mem_writer.cpp - see mem_writer.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/mem_writer.h"

#include "BmmUtils/data_header.h"
#include "BmmUtils/model/creation.h"
#include "BmmUtils/model/selection.h"
#include "FileUtils/opening.h"
#include "SystemUtils/alerts.h"
#include "lanefillCore/lane_records.h"
#include "lanefillCore/records/progress_stages.h"

#include <algorithm>
#include <cstdlib>

namespace {

using namespace memdata;

constexpr const char* kPREFIX = "//";
constexpr const char* kTITLE = "Mem file initialization records";
constexpr const char* kCOMBINED_TITLE = "Mem file initialization records - for combined data and ECC";
constexpr const char* kSINGLE_FILE_VARIABLE = "OMBREL_LNV_SINGLEMEMFILE";
constexpr u32 kMEM_FILE = kOUTPUT_FILE | kREFUSE_OVERWRITE;
constexpr u64 kFILE_WORK = 64 * 1024; // bits that take as long as a file to open and finish
constexpr int kNO_SPACE_STATUS = 4;
constexpr int kNO_PARTNER_STATUS = 22;

using OpenFile = Tracked<fileIODescriptor, abandonFile>;

// What goes into one file: a lane, and a check lane beside it or null.
struct LaneFile {
    BitLaneArrayType* lanes;
    u64 index;
    BitLaneGridElemType* partner;
    const char* title;

    BitLaneGridElemType* element() const { return lanes[index]; }
};

// What a file counts in the progress of its folder, about as long as its bits take: those that were written to its
// lanes, and the file itself.
u64 workOf(const BitLaneGridElemType* element) {
    u64 bits = 0;
    if (element == nullptr) return bits;
    for (const TransformRangeType* range = element->lane->transformRanges; range != nullptr; range = range->next)
        bits += range->endBit - range->firstBit;
    return bits;
}

// A lane that the map names no file for takes the default name as its INPUT file.
int nameLane(const MemFilePlace& place, BitLaneType* lane, u64 index, bool isEcc) {
    if (namedMemFile(lane) != nullptr) return 0;
    OwnedFileSpec spec(CreateFileSpec(place.names->next(place.space->name, isEcc, index).c_str()));
    if (spec == nullptr) return 7;
    DeleteFileSpec(&lane->inputFile);
    lane->inputFile = spec.release();
    return 0;
}

int writeLaneFile(const MemFilePlace& place, const LaneFile& what, fileIODescriptor* file) {
    const BitLaneGridElemType* element = what.element();
    int status = output_data_header(
        file, kPREFIX, what.title, what.lanes, what.index, place.space->name, place.range, place.mapping);
    if (status != 0) return status;
    if (what.partner == nullptr) return outputLaneRecords(file, element, place.is64Bit);
    return outputCombinedRecords(file, place.range, place.block, element, what.partner, place.is64Bit);
}

int outputLaneFile(const MemFilePlace& place, const LaneFile& what) {
    const BitLaneType* lane = what.element()->lane;
    OwnedFileSpec spec(CreateFileSpec(nameInFolder(place.folder, namedMemFile(lane)).c_str()));
    if (spec == nullptr) return 7;
    ProgressPart part(kFILE_WORK + workOf(what.element()) + workOf(what.partner));
    OpenFile file;
    if (int status = OpenDiskFile(spec.get(), "", "mem", "", kMEM_FILE, file.out()); status != 0) return status;
    const std::string name = GetFileName(file.get());
    if (int status = place.files->allows(name.c_str(), lane); status != 0) return status;
    if (int status = writeLaneFile(place, what, file.get()); status != 0) return status;

    fileIODescriptor* finished = file.release();
    const int status = Close_File(&finished);
    file.reset(finished); // a file that could not be finished is still there, and goes
    if (status != 0) return status;
    place.files->add(name.c_str(), lane);
    return part.finish();
}

int refuseSingleFile(const MemFilePlace& place) {
    const bool hasLanes = place.block->laneCount != 0;
    return PrintError(kERROR_MESSAGE_STRING, kNO_PARTNER_STATUS,
        formatted("A bus block of address space '%s' has no %s bit lanes.\n"
                  "    MEM files of combined data and ECC need both.",
            place.space->name, hasLanes ? "ECC" : "data"));
}

bool hasData(const AddressRangeDefType* range) {
    return range->transformBuffer != nullptr;
}

bool isCombined(const AddressSpaceDefType* space) {
    return space->eccCombinedForSimulation || std::getenv(kSINGLE_FILE_VARIABLE) != nullptr;
}

int outputBlockFiles(const MemFilePlace& place, u64 firstIndex, u64 firstEccIndex) {
    const BusBlockType* block = place.block;
    if (isCombined(place.space)) {
        if (block->laneCount == 0 || block->eccLaneCount == 0) return refuseSingleFile(place);
        return output_combined_bitLane_mem_file(place, firstIndex, firstEccIndex);
    }
    const int status = output_bitLane_mem_file(place, block->lanes, block->laneCount, firstIndex, false);
    if (status != 0 || block->eccLaneCount == 0) return status;
    return output_bitLane_mem_file(place, block->eccLanes, block->eccLaneCount, firstEccIndex, true);
}

u64 workOf(BitLaneArrayType* lanes, u64 count) {
    u64 work = 0;
    for (u64 i = 0; i < count; ++i) work += workOf(lanes[i]);
    return work;
}

// The files of a block, as outputBlockFiles writes them.
u64 workOf(const AddressSpaceDefType* space, const BusBlockType* block) {
    const u64 files =
        isCombined(space) ? std::max(block->laneCount, block->eccLaneCount) : block->laneCount + block->eccLaneCount;
    return files * kFILE_WORK + workOf(block->lanes, block->laneCount) + workOf(block->eccLanes, block->eccLaneCount);
}

u64 workOf(const AddressMappingType* mapping, bool updateAll) {
    u64 work = 0;
    for (const AddressMapType* map = mapping->addressMaps; map != nullptr; map = map->next)
        for (const AddressSpaceLinkType* link = map->addressSpaces; link != nullptr; link = link->next)
            for (const AddressRangeDefType* range = link->space->ranges; range != nullptr; range = range->next)
                for (u64 i = 0; (updateAll || hasData(range)) && i < range->busBlockCount; ++i)
                    if (range->busBlocks[i] != nullptr) work += workOf(link->space, range->busBlocks[i]);
    return work;
}

// Indexes of default names run on over all blocks of a space.
int outputSpaceFiles(MemFilePlace place, bool updateAll) {
    u64 index = 0;
    u64 eccIndex = 0;
    for (const AddressRangeDefType* range = place.space->ranges; range != nullptr; range = range->next) {
        for (u64 i = 0; i < range->busBlockCount; ++i) {
            place.range = range;
            place.block = range->busBlocks[i];
            if (place.block == nullptr) continue;
            if (updateAll || hasData(range))
                if (int status = outputBlockFiles(place, index, eccIndex); status != 0) return status;
            index += place.block->laneCount;
            eccIndex += place.block->eccLaneCount;
        }
    }
    return 0;
}

int outputMappingFiles(MemFilePlace place, bool updateAll) {
    ProgressStage stage(formatted("Writing MEM files to '%s'...", place.folder), workOf(place.mapping, updateAll));
    for (const AddressMapType* map = place.mapping->addressMaps; map != nullptr; map = map->next)
        for (const AddressSpaceLinkType* link = map->addressSpaces; link != nullptr; link = link->next) {
            place.space = link->space;
            if (int status = outputSpaceFiles(place, updateAll); status != 0) return status;
        }
    return stage.finish();
}

std::string folderOf(const BDSwitchDataType* node) {
    const fileSpecType* spec = node->dataFile;
    const bool named = spec != nullptr && spec->fullName != nullptr && *spec->fullName != '\0';
    return named ? spec->fullName : ".";
}

const char* const* tagNames(const BDSwitchDataType* node) {
    return node->tagNames == nullptr || node->tagCount < 0 ? nullptr : reinterpret_cast<char**>(node->tagNames);
}

} // namespace

int output_bitLane_mem_file(
    const memdata::MemFilePlace& place, BitLaneArrayType* lanes, u64 count, u64 firstIndex, bool isEcc) {
    for (u64 i = 0; i < count; ++i) {
        if (lanes[i] == nullptr) continue;
        int status = nameLane(place, lanes[i]->lane, firstIndex + i, isEcc);
        if (status == 0) status = outputLaneFile(place, {lanes, i, nullptr, kTITLE});
        if (status != 0) return status;
    }
    return 0;
}

int output_combined_bitLane_mem_file(const memdata::MemFilePlace& place, u64 firstIndex, u64 firstEccIndex) {
    const BusBlockType* block = place.block;
    const u64 pairs = std::min(block->laneCount, block->eccLaneCount);
    for (u64 i = 0; i < pairs; ++i) {
        if (block->lanes[i] == nullptr) continue;
        int status = nameLane(place, block->lanes[i]->lane, firstIndex + i, false);
        if (status == 0) status = outputLaneFile(place, {block->lanes, i, block->eccLanes[i], kCOMBINED_TITLE});
        if (status != 0) return status;
    }
    int status =
        output_bitLane_mem_file(place, block->lanes + pairs, block->laneCount - pairs, firstIndex + pairs, false);
    if (status == 0)
        status = output_bitLane_mem_file(
            place, block->eccLanes + pairs, block->eccLaneCount - pairs, firstEccIndex + pairs, true);
    return status;
}

int output_bitLane_mem_files(BDSwitchDataType* bxList, bool updateAll, bool is64Bit, AddressMappingType* mapping) {
    using namespace memdata;
    AddressSpaceIteratorType iterator{-1, 0, 0, nullptr, nullptr, 0};
    DefaultMemNames names;
    WrittenMemFiles files;
    for (const BDSwitchDataType* node = bxList; node != nullptr; node = node->next) {
        OwnedMapping eligible;
        int status = filter_eligible_addressSpaces(
            mapping, node->tagCount, tagNames(node), nullptr, 0, &iterator, eligible.out());
        const std::string folder = folderOf(node);
        if (status == kNO_SPACE_STATUS)
            return PrintError(kERROR_MESSAGE_STRING, status,
                formatted("Output folder '%s' finds no ADDRESS_SPACE in '%s'.", folder, mapping->bmmBaseName));
        if (status == 0)
            status = outputMappingFiles(
                {folder.c_str(), is64Bit, eligible.get(), nullptr, nullptr, nullptr, &files, &names}, updateAll);
        if (status != 0) return status;
    }
    return 0;
}
