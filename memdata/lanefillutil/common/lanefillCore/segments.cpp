// segments.cpp - see segments.h.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/segments.h"

#include "BmmUtils/model/iteration.h"
#include "BmmUtils/model/selection.h"
#include "BmmUtils/model/transform_buffers.h"
#include "SystemUtils/alerts.h"
#include "lanefillCore/lanes/bus_blocks.h"
#include "lanefillCore/records/run_report.h"
#include "platform/HPAParamMgr.h"
#include "platform/file_image.h"

namespace {

constexpr int kNOTHING_MATCHES = 4;

using Section = DataFileSectionTypeX<unsigned long>;
using BootAddress = BootAddressTypeX<unsigned long>;
using StartAddress = StartAddressTypeX<unsigned long>;

bool legacyMessages() {
    return HPAParamMgr::getParamMgr().getValueAsBool("memdata.debugLegacyMessages");
}

void noteUnmapped(const char* fileName, long segmentIndex, const Section* section) {
    memdata::RunReport& report = memdata::runReport();
    if (report.unmappedSegments++ == 0)
        report.firstUnmapped = memdata::formatted("segment #%ld of '%s' (0x%llX to 0x%llX)", segmentIndex, fileName,
            section->address, section->address + section->size - 1);
}

void reportUnmapped(const AddressMappingType* mapping, long segmentIndex, const Section* section) {
    if (!legacyMessages()) return;
    PrintError(kERROR_CODE_SEGMENT_NOT_MAPPED, kNOTHING_MATCHES, segmentIndex, mapping->bmmBaseName, segmentIndex,
        section->address, section->address + section->size - 1);
}

int storeInSpace(const char* fileName, AddressSpaceLinkType* link, const BootAddress* boot,
    const BootAddress* fileStartup, StartAddress* start, StartAddress* nextStart, const Section* section,
    const Section* previous) {
    AddressSpaceDefType* space = link->space;
    TransformRangeType* range = insert_transform_range(
        fileName, &space->transformRanges, section->address, section->size, section->data, section->size, true);
    if (range == nullptr) return 7;
    // The range has a copy: the lanes need not find room beside both.
    if (section->isMapped) memdata::releaseMappedPages(section->data, section->size);
    memdata::populateTransformBuffers(space, section->size);
    insert_transform_start_address(start, section, previous, nextStart, range);
    int status = space->dataFiles == nullptr ? 0 : insert_data_filename(fileName, space->dataFiles);
    if (status == 0) status = set_map_boot_address(fileName, link, boot, fileStartup);
    if (status == 0) status = transform_segment_data(fileName, space, range->start, range->dataFirst, range->dataSize);
    return status;
}

} // namespace

int transform_segment(const char* fileName, AddressMappingType* mapping, const BootAddress* boot,
    const BootAddress* fileStartup, StartAddress* start, StartAddress* nextStart, bool ignoreUnmapped,
    long segmentIndex, const Section* section, const Section* previous) {
    if (section->size == 0) return 0;
    ++memdata::runReport().segments;
    if (section->size - 1 > UINT64_MAX - section->address)
        return PrintError(kERROR_MESSAGE_STRING, 7,
            memdata::formatted("Code segment #%ld of '%s' starts at 0x%08llX and has 0x%llX bytes,\n"
                               "    which end behind the last address, 0xFFFFFFFFFFFFFFFF.",
                segmentIndex, fileName, section->address, section->size));
    const u64 last = section->address + section->size - 1;

    AddressSpaceIteratorType iterator{};
    AddressSpaceLinkType* link =
        iterate_first_addressSpace(mapping, kFIRST_SPACE_OF_MAPPING, &iterator, 0, 0, 0, kALL_MEMORY_CLASSES);
    for (bool isMapped = false;; isMapped = true) {
        AddressSpaceLinkType* found = nullptr;
        int status = lookup_matching_addressSpace(
            mapping, static_cast<u64>(segmentIndex), section->address, last, link, &iterator, &found);
        if (status == kNOTHING_MATCHES) {
            if (!isMapped && !ignoreUnmapped) reportUnmapped(mapping, segmentIndex, section);
            if (!isMapped) noteUnmapped(fileName, segmentIndex, section);
            return 0; // on purpose no failure: a file may hold more than this map places
        }
        if (status == 0) status = storeInSpace(fileName, found, boot, fileStartup, start, nextStart, section, previous);
        if (status != 0) return status;
        link = iterate_next_addressSpace(kNEXT_SPACE_OF_MAPPING, &iterator);
    }
}

int set_map_boot_address(
    const char* fileName, AddressSpaceLinkType* link, const BootAddress* boot, const BootAddress* fileStartup) {
    AddressMapType* map = link->space->map != nullptr ? link->space->map : link->map;
    u64& kind = map->mapWord1;
    u64& address = map->mapWord2;
    if (kind == kBOOT_ADDRESS) return 0;
    if (boot->kind == kBOOT_ADDRESS) {
        kind = kBOOT_ADDRESS;
        address = boot->address;
    } else if (boot->kind == kBOOT_FROM_FILE) {
        if (fileStartup == nullptr) return PrintError(kERROR_BOOTING_FROM_NON_BOOTABLE_FILE, 18, fileName);
        kind = kBOOT_ADDRESS;
        address = fileStartup->address;
    } else if (fileStartup != nullptr) {
        kind = kBOOT_FROM_FILE;
        address = fileStartup->address;
    }
    return 0;
}

void insert_transform_start_address(StartAddress* start, const Section* section, const Section* previous,
    StartAddress* nextStart, TransformRangeType* range) {
    if (start->isSet) {
        range->hasStartAddress = true;
        range->startAddress = start->address;
        *nextStart = {true, start->address + section->size};
        start->isSet = false;
    } else if (nextStart->isSet) {
        const u64 previousEnd = previous->address + previous->size;
        const u64 gap = previousEnd > section->address ? 0 : section->address - previousEnd;
        range->hasStartAddress = true;
        range->startAddress = nextStart->address + gap;
        nextStart->address = range->startAddress + section->size;
    }
}
