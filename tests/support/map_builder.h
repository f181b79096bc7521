// map_builder.h - address maps for tests in a few readable lines.
//
//   TestMap map;                                                    // a root mapping, "test.bmm"
//   map.space("ram", 0x1000, "RAMB16", {"hi[15:8] lo[7:0]"});       // one block of two lanes, in the default map
//   map.map("cpu", "ARM", 1, "top/cpu");                            // spaces from here on stand in this map
//   map.space("mix", 0, {{"RAMB16", {"a[7:0]"}}, {"RAMB36", {"b[7:0]"}}}, {.wordAddressing = true});
//
// A block is a text of lanes, written as in a map file, "name[left:right]", in written order; "[low:high]" behind it
// gives the device words, which otherwise follow from the device. Words behind a lane say more about it:
//   ECCH32-7 ...          an ECC lane of this code        RAMB18 ...   another memory than the range's
//   INIT=f INPUT=f OUTPUT=f  files                        LOC=X3Y7, PLACED=R1C0   a location
//   */                    a relative path
//
// Spaces come out as the finishing step leaves them: sizes, addresses, parity widths and the lane order of
// little-endian processors are computed here, by themselves and without checks, so that unsound maps can be made
// too. A text that cannot be read throws std::invalid_argument: the test is wrong.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_MAP_BUILDER_H
#define MEMDATA_TESTS_SUPPORT_MAP_BUILDER_H

#include "BmmUtils/model/AddressMapModel.h"
#include "SystemUtils/lifetime.h"

#include <list>
#include <optional>
#include <string>
#include <vector>

namespace memdata::testing {

struct RangeText {
    std::string memory;
    std::vector<std::string> blocks;
};

struct SpaceOptions {
    bool wordAddressing = false;
    std::optional<u64> endAddress = std::nullopt; // inclusive; without it the space ends with its devices
    bool eccCombined = false;
    bool isTemplate = false; // the space goes to the template map
    const char* path = nullptr;
    std::optional<AddressSpaceStyleEnum> style = std::nullopt; // without it COMBINED for several ranges
    bool finished = true; // false: as a reader has filled it, nothing computed; endAddress must be given then
};

class TestMap {
public:
    explicit TestMap(const char* baseFile = "test.bmm", StrList workflowOps = nullptr);
    ~TestMap();
    TestMap& operator=(TestMap&&) = delete; // neither copied nor moved

    AddressMappingType* get() const { return mapping_; }
    AddressMappingType* operator->() const { return mapping_; }
    symbol_context* spaceNames() const { return mapping_->symbolSpaces->addressSpaceNames; }

    // A named map, or the default one for a null name. The processor as in a map file.
    AddressMapType* map(const char* name, const char* processor = "PPC405", u32 id = 0, const char* path = "");

    AddressSpaceDefType* space(const char* name, u64 start, const std::string& memory,
        const std::vector<std::string>& blocks, const SpaceOptions& options = {});
    AddressSpaceDefType* space(
        const char* name, u64 start, const std::vector<RangeText>& ranges, const SpaceOptions& options = {});

    // A memory of its own, 0x8000 class, or the generic 0x1000 class when it is called MEMORY.
    MEMORYLocType* define(const char* name, u64 bytes, const std::vector<u32>& widths);

    // By full name; the test ends when there is none.
    AddressSpaceLinkType* link(const char* spaceName) const;
    BitLaneGridElemType* lane(const char* laneName) const;

    // The mapping itself, before its time; TestMap is empty then.
    void destroy() { delete_addressMapping(&mapping_); }

private:
    struct Lanes;
    MEMORYLocType* memory_(const std::string& name);
    AddressMapType* currentMap_(bool isTemplate);
    void addRange_(AddressSpaceDefType* space, const RangeText& text);
    BusBlockType* makeBlock_(AddressSpaceDefType* space, MEMORYLocType* memory, const std::string& text, u64 next);

    SystemResources resources_;
    AddressMappingType* mapping_;
    AddressMapType* map_ = nullptr;
    std::list<MEMORYType> types_;
    std::list<std::string> names_;
    std::list<MEMORYLocType> memories_;
};

// Fills in what the finishing step computes: sizes, addresses, parity widths, the lane order of little-endian
// processors. No checks.
void layOut(AddressSpaceDefType* space);

} // namespace memdata::testing

#endif
