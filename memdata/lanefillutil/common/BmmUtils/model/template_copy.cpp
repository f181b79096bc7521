// template_copy.cpp - address spaces as copies of a template.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/template_copy.h"

#include "BmmUtils/model/creation.h"
#include "BmmUtils/model/internal.h"
#include "ParseUtils/tokens.h"

#include <cstring>

namespace {

constexpr u64 kPOINTER_BYTES = sizeof(void*); // of an entry in the arrays of blocks and lanes

// What all levels of a copy need.
struct CopyType {
    parse_stream* stream;
    token_element* token;
    const char* prefix;
    AddressMapType* map;
    AddressSpaceDefType* space; // the copy
};

int create_copied_space(const CopyType& copy, symbol_context* names, const AddressSpaceDefType* original,
    const char* name, u64 start, u64 end, bool wordAddressing, AddressSpaceDefType** out) {
    memdata::OwnedString path(StrDup(copy.prefix));
    memdata::TokenOwner memoryToken(dup_token_element(original->memoryTypeToken));
    if (path == nullptr || (memoryToken == nullptr && original->memoryTypeToken != nullptr))
        return OUT_OF_MEMORY("addressSpace", std::strlen(copy.prefix));
    const int status = create_addressSpace_element(copy.stream, names, copy.token, name, path.get(), nullptr, copy.map,
        start, end, memoryToken.get(), original->style, false, false, wordAddressing, out);
    if (status != 0) return status;
    path.release(); // the space owns them now
    memoryToken.release();
    return 0;
}

// A copy of a file specification; a null one is copied as such. False without memory.
bool copy_file_spec(const fileSpecType* original, memdata::OwnedFileSpec* out) {
    out->reset(DupFileSpec(original));
    return original == nullptr || *out;
}

// A lane under its new name, without a location, with copies of the file specifications.
int create_copied_lane(
    const CopyType& copy, const BitLaneGridElemType* original, const char* name, memdata::OwnedLaneElement* out) {
    const BitLaneType* lane = original->lane;
    memdata::OwnedFileSpec init, input, output;
    const bool copied = copy_file_spec(lane->initFile, &init) && copy_file_spec(lane->inputFile, &input) &&
                        copy_file_spec(lane->outputFile, &output);
    if (copied)
        out->reset(create_bitLane_grid_element(nullptr, name, lane->memory, false, original->bitLow, original->bitHigh,
            original->addressLow, original->addressHigh, original->bitOrdering, original->eccType, 0, 0, kLOC_KIND_NONE,
            copy.space, init.get(), input.get(), output.get()));
    if (*out == nullptr) return OUT_OF_MEMORY("bitLane", sizeof(BitLaneType) + std::strlen(name));
    init.release(); // the lane owns them now
    input.release();
    output.release();
    return 0;
}

int copy_lane(const CopyType& copy, const BitLaneGridElemType* original, BusBlockType* block) {
    if (original == nullptr || original->lane == nullptr) return 0;
    const memdata::OwnedString name(StrCat(copy.prefix, original->lane->name));
    if (name == nullptr) return OUT_OF_MEMORY("bitLane", std::strlen(original->lane->name));
    if (lookup_context_symbol(name.get(), true, copy.map->instanceNames) != nullptr)
        return PrintErrorLocation(copy.stream, kERROR_SPACE_INSTANCE_NAME_DUPLICATE, 3, copy.token, name.get(),
            copy.token == nullptr ? "" : copy.token->text);

    memdata::OwnedLaneElement element;
    if (int status = create_copied_lane(copy, original, name.get(), &element); status != 0) return status;
    if (enter_context_symbol(name.get(), copy.map->instanceNames, element.get(), nullptr) == nullptr)
        return OUT_OF_MEMORY("bitLane", sizeof(symbol_entry));
    block->busWidth += element->laneWidth;
    block->lanes[block->laneCount++] = element.release();
    return 0;
}

int copy_block(const CopyType& copy, const BusBlockType* original, AddressRangeDefType* range) {
    if (original == nullptr) return 0;
    memdata::OwnedBlock owned(create_busBlock_element(0, 0));
    if (owned == nullptr) return OUT_OF_MEMORY("busBlock", sizeof(BusBlockType));
    BusBlockType* block = range->busBlocks[range->busBlockCount++] = owned.release();
    block->lanes = memdata::newBitLaneArray(original->laneCount);
    if (block->lanes == nullptr) return OUT_OF_MEMORY("busBlock", original->laneCount * kPOINTER_BYTES);
    int status = 0;
    for (u64 i = 0; i < original->laneCount && status == 0; ++i) status = copy_lane(copy, original->lanes[i], block);
    if (block->laneCount != 0) block->laneListOrder = kBitLaneListOrderDataFirst; // there are no others
    range->deviceCount += block->laneCount;
    return status;
}

int copy_range(const CopyType& copy, const AddressRangeDefType* original) {
    AddressRangeDefType* range = create_addressRange_element(original->memory, 0, 0);
    if (range == nullptr) return OUT_OF_MEMORY("addressRange", sizeof(AddressRangeDefType));
    insert_addressRange_element(copy.space, range);
    range->busBlocks = memdata::newBusBlockArray(original->busBlockCount);
    if (range->busBlocks == nullptr) return OUT_OF_MEMORY("addressRange", original->busBlockCount * kPOINTER_BYTES);
    int status = 0;
    for (u64 i = 0; i < original->busBlockCount && status == 0; ++i)
        status = copy_block(copy, original->busBlocks[i], range);
    copy.space->deviceCount += range->deviceCount;
    return status;
}

} // namespace

int memdata::copyTemplateAs(parse_stream* stream, symbol_context* names, AddressMapType* map,
    AddressSpaceDefType* templateSpace, const char* name, token_element* token, u64 start, u64 end,
    const char* instancePrefix, bool wordAddressing, AddressSpaceDefType** out) {
    if (map == nullptr || templateSpace == nullptr || name == nullptr || out == nullptr) return 3;
    *out = nullptr;
    CopyType copy{stream, token, instancePrefix == nullptr ? "" : instancePrefix, map, nullptr};
    memdata::OwnedSpace space;
    if (int status = create_copied_space(copy, names, templateSpace, name, start, end, wordAddressing, space.out());
        status != 0)
        return status;
    copy.space = space.get();
    space->templateSpace = templateSpace;

    int status = 0;
    for (const AddressRangeDefType* range = templateSpace->ranges; range != nullptr && status == 0; range = range->next)
        status = copy_range(copy, range);
    if (status == 0) status = finish_addressSpace_data(space.get());
    if (status == 0) *out = space.release();
    return status;
}

int dup_addressSpace_element(parse_stream* stream, symbol_context* names, AddressMapType* map,
    AddressSpaceDefType* templateSpace, token_element* token, u64 start, u64 end, const char* instancePrefix,
    bool wordAddressing, AddressSpaceDefType** out) {
    return memdata::copyTemplateAs(stream, names, map, templateSpace,
        templateSpace == nullptr ? nullptr : templateSpace->name, token, start, end, instancePrefix, wordAddressing,
        out);
}
