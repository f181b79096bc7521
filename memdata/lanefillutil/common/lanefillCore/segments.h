// segments.h - one segment of a data file: the spaces that hold it, its place, the boot address.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_SEGMENTS_H
#define MEMDATA_LANEFILL_CORE_SEGMENTS_H

#include "BmmUtils/model/records.h"
#include "lanefillCore/records/data_file.h"

// Stores a segment in every space of the mapping that holds its address; each takes all of it. A segment that
// no space holds is passed over: status 0, with an alert when legacy messages are on and ignoreUnmapped is
// off. Status: 0; 7 without memory, or the segment begins in a space and ends outside of it, or ends behind
// the last address of all; 18 a boot request without a boot address.
int transform_segment(const char* fileName, AddressMappingType* mapping, const BootAddressTypeX<unsigned long>* boot,
    const BootAddressTypeX<unsigned long>* fileStartup, StartAddressTypeX<unsigned long>* start,
    StartAddressTypeX<unsigned long>* nextStart, bool ignoreUnmapped, long segmentIndex,
    const DataFileSectionTypeX<unsigned long>* section, const DataFileSectionTypeX<unsigned long>* previous);

// The boot state of the space's map: a request with a value, then one without, then the file's own address.
// The first request stays; among files without requests the last one wins. Status: 0; 18 a request without a
// value for a file without a boot address.
int set_map_boot_address(const char* fileName, AddressSpaceLinkType* link, const BootAddressTypeX<unsigned long>* boot,
    const BootAddressTypeX<unsigned long>* fileStartup);

// Records in the range where a segment asked to start: the first one at start, later ones with the gaps that
// they have in the file. start is used up; nextStart is the address behind the segment. It moves no bytes.
void insert_transform_start_address(StartAddressTypeX<unsigned long>* start,
    const DataFileSectionTypeX<unsigned long>* section, const DataFileSectionTypeX<unsigned long>* previous,
    StartAddressTypeX<unsigned long>* nextStart, TransformRangeType* range);

#endif
