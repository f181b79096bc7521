// block_parser.cpp - address ranges and bus blocks.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/AddressMapModel.h"
#include "BmmUtils/model/internal.h"
#include "BmmUtils/parser.h"
#include "DeviceTableUtils/device_lookup.h"
#include "DeviceTableUtils/memory_lookup.h"
#include "ParseUtils/scanner.h"
#include "lanefillCore/records/progress_stages.h"

#include <vector>

using namespace memdata;

namespace {

// A range of one memory type, filled with the blocks from token on. The space owns it from the start.
int read_range(parse_stream* stream, token_element* token, const char* root, AddressMappingType* mapping,
    AddressSpaceDefType* space, const token_element* memoryWord, u64 start, u64 end) {
    MEMORYLocType* memory = get_MEMORY_type_from_token(mapping->device, memoryWord->type);
    if (memory == nullptr) return unknownMemoryType(stream, memoryWord, mapping, memoryWord->text);
    AddressRangeDefType* range = create_addressRange_element(memory, start, end);
    if (range == nullptr) return OUT_OF_MEMORY("addressRange", sizeof(AddressRangeDefType));
    insert_addressRange_element(space, range);
    const int status = parse_busBlocks(stream, token, root, mapping, space, range);
    space->deviceCount += range->deviceCount;
    return status;
}

int end_range(parse_stream* stream, token_element* token) {
    if (token->type != &kEND_ADDRESS_RANGE_KEYWORD)
        return refuseMissingKeyword(stream, token, kEND_ADDRESS_RANGE_KEYWORD);
    if (int status = get_next_token(stream, token); status != 0) return status;
    return parse_statement_terminator(stream, token);
}

// One ADDRESS_RANGE, from its keyword on.
int read_combined_range(parse_stream* stream, token_element* token, const char* root, AddressMappingType* mapping,
    AddressSpaceDefType* space) {
    if (int status = get_next_token(stream, token); status != 0) return status;
    if (!isOfClass(token->type, kMEMORY_TYPE_TOKEN))
        return refuseIllegalToken(stream, token,
            "memory type keyword (RAMB4, RAMB16, RAMB18, RAMB32, RAMB36, GRID, COMBINED, MEMORY) after ADDRESS_RANGE "
            "keyword");
    const TokenOwner memoryWord(dup_token_element(token));
    if (memoryWord == nullptr) return 7;
    int status = get_next_token(stream, token);
    if (status == 0 && token->type == &kEND_ADDRESS_RANGE_KEYWORD)
        status = refuseKeyword(stream, token, "ADDRESS_RANGE definition is empty");
    if (status == 0) status = read_range(stream, token, root, mapping, space, memoryWord.get(), 0, 0);
    return status == 0 ? end_range(stream, token) : status;
}

int end_block(parse_stream* stream, token_element* token, const BusBlockType* block) {
    if (token->type != &kEND_BUS_BLOCK_KEYWORD) return refuseMissingKeyword(stream, token, kEND_BUS_BLOCK_KEYWORD);
    if (block->laneCount == 0) return refuseKeyword(stream, token, "BUS_BLOCK definition is empty");
    if (int status = get_next_token(stream, token); status != 0) return status;
    return parse_statement_terminator(stream, token);
}

// One BUS_BLOCK, from its keyword on.
int read_block(parse_stream* stream, token_element* token, const char* root, AddressMappingType* mapping,
    AddressSpaceDefType* space, AddressRangeDefType* range, BusBlockType* block, u64 nextAddress) {
    if (token->type != &kBUS_BLOCK_KEYWORD)
        return refuseIllegalToken(stream, token, blockStructureWord(kBUS_BLOCK_KEYWORD));
    int status = parse_bitLanes(stream, token, root, mapping, space, range, block, nextAddress);
    if (status == 0) status = end_block(stream, token, block);
    if (status != 0) return status;
    block->hasRelativePaths = block->lanes[0]->lane->isRelativePath;
    range->deviceCount += block->laneCount + block->eccLaneCount;
    return 0;
}

// How far the text of the map itself has been read, whatever it includes.
u64 rootOffset(const parse_stream* stream) {
    return static_cast<u64>(stream->root->position - stream->root->textBegin);
}

int hand_over_blocks(std::vector<OwnedBlock>* blocks, AddressRangeDefType* range) {
    range->busBlocks = newBusBlockArray(blocks->size());
    if (range->busBlocks == nullptr) return OUT_OF_MEMORY("addressRange", blocks->size() * sizeof(void*));
    for (OwnedBlock& block : *blocks) range->busBlocks[range->busBlockCount++] = block.release();
    return 0;
}

} // namespace

int memdata::unknownMemoryType(
    parse_stream* stream, const token_element* token, const AddressMappingType* mapping, const char* word) {
    return PrintErrorLocation(stream, kERROR_UNKNOWN_MEMORY_TYPE_FOR_DEVICE, kSYNTAX_STATUS, token, word,
        mapping->device == nullptr ? "" : deviceName(mapping->device));
}

int parse_addressRanges(parse_stream* stream, token_element* token, const char* root, AddressMappingType* mapping,
    AddressSpaceDefType* space) {
    if (space->style == kAddressSpaceStyleCombined)
        return parse_addressRanges_combined(stream, token, root, mapping, space);
    return parse_addressRanges_legecy(stream, token, root, mapping, space);
}

int parse_addressRanges_legecy(parse_stream* stream, token_element* token, const char* root,
    AddressMappingType* mapping, AddressSpaceDefType* space) {
    if (token->type != &kBUS_BLOCK_KEYWORD)
        return refuseIllegalToken(stream, token, blockStructureWord(kBUS_BLOCK_KEYWORD));
    return read_range(
        stream, token, root, mapping, space, space->memoryTypeToken, space->startAddress, space->endAddress);
}

int parse_addressRanges_combined(parse_stream* stream, token_element* token, const char* root,
    AddressMappingType* mapping, AddressSpaceDefType* space) {
    if (token->type != &kADDRESS_RANGE_KEYWORD)
        return refuseIllegalToken(stream, token, blockStructureWord(kADDRESS_RANGE_KEYWORD));
    int status = 0;
    while (status == 0 && token->type == &kADDRESS_RANGE_KEYWORD)
        status = read_combined_range(stream, token, root, mapping, space);
    return status;
}

int parse_busBlocks(parse_stream* stream, token_element* token, const char* root, AddressMappingType* mapping,
    AddressSpaceDefType* space, AddressRangeDefType* range) {
    std::vector<OwnedBlock> blocks;
    u64 nextAddress = 0;
    do {
        OwnedBlock block(create_busBlock_element(0, 0));
        if (block == nullptr) return OUT_OF_MEMORY("busBlock", sizeof(BusBlockType));
        const int status = read_block(stream, token, root, mapping, space, range, block.get(), nextAddress);
        if (status != 0) return status;
        nextAddress = block->lanes[0]->addressHigh + 1;
        blocks.push_back(std::move(block));
        if (int ended = reachProgress(rootOffset(stream)); ended != 0) return ended;
    } while (token->type == &kBUS_BLOCK_KEYWORD);
    return hand_over_blocks(&blocks, range);
}
