// lane_parser.cpp - the bit lanes of a bus block.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/AddressMapModel.h"
#include "BmmUtils/model/internal.h"
#include "BmmUtils/parser.h"
#include "BmmUtils/stated_lane.h"
#include "DeviceTableUtils/cross_coordinates.h"
#include "DeviceTableUtils/memory_lookup.h"
#include "ParseUtils/file_path.h"
#include "ParseUtils/scanner.h"

#include <cstring>
#include <utility>

using namespace memdata;

namespace {

constexpr u64 kLEAST_WIDTH_WITH_PARITY = 5; // bits; narrower lanes leave the parity bits of their device unused

// Elements in the order of reading, while their block is being read.
struct LaneChainType {
    BitLaneGridElemType* head = nullptr;
    BitLaneGridElemType* tail = nullptr;
    u64 count = 0;
    u64 busWidth = 0;

    LaneChainType() = default;
    ~LaneChainType() {
        while (head != nullptr) delete_bitLane_grid_element(take());
    }
    LaneChainType& operator=(LaneChainType&&) = delete; // neither copied nor moved

    void put(BitLaneGridElemType* element) {
        (head == nullptr ? head : tail->next) = element;
        tail = element;
        ++count;
        busWidth += element->laneWidth;
    }
    BitLaneGridElemType* take() {
        BitLaneGridElemType* first = std::exchange(head, head->next);
        first->next = nullptr;
        return first;
    }
};

// What the statements of one block share.
struct BlockType {
    parse_stream* stream;
    token_element* token;
    const char* root;
    AddressMappingType* mapping;
    AddressSpaceDefType* space;
    AddressRangeDefType* range;
    u64 nextAddress;
};

// A name that was entered in its map ahead of the element that it will stand for: it is looked up only once.
class ReservedName {
public:
    ReservedName() = default;
    ~ReservedName() {
        if (entry_ != nullptr) delete_context_symbol(name_.c_str(), names_);
    }
    ReservedName& operator=(ReservedName&&) = delete; // neither copied nor moved

    // False when the name is taken, or there is no memory.
    bool enter(const std::string& name, symbol_context* names) {
        name_ = name;
        names_ = names;
        entry_ = insert_context_symbol(name.c_str(), names, nullptr, nullptr);
        return entry_ != nullptr;
    }
    void standFor(BitLaneGridElemType* element) { std::exchange(entry_, nullptr)->value = element; }

private:
    std::string name_;
    symbol_context* names_ = nullptr;
    symbol_entry* entry_ = nullptr;
};

// What one statement says.
struct LaneType : StatedLane {
    ReservedName entry;
    token_element locPlace{};
};

// The word behind BUS_BLOCK. Words are names there, but for the one that ends the block.
int read_first_word(const BlockType& block) {
    KeywordOverlay overlay(block.stream, &instance_path_token_set);
    if (overlay.status() != 0) return overlay.status();
    overlay.ignoreWords();
    if (int status = get_next_token(block.stream, block.token); status != 0) return status;
    if (block.token->type == &kIDENTIFIER_TOKEN && std::strcmp(block.token->text, "END_BUS_BLOCK") == 0)
        return refuseKeyword(block.stream, block.token, "BUS_BLOCK definition is empty");
    return overlay.close();
}

int read_name(const BlockType& block, LaneType* lane) {
    const token_element place = placeOf(block.token);
    if (int status = readInstanceName(block.stream, block.token, true, false, &lane->isRelative, &lane->name);
        status != 0)
        return status;
    rootInstanceName(block.root, &lane->name);
    symbol_context* names = block.space->map->instanceNames;
    if (lane->entry.enter(lane->name, names)) return 0;
    if (lookup_context_symbol(lane->name.c_str(), true, names) == nullptr)
        return OUT_OF_MEMORY("bitLane", sizeof(symbol_entry));
    return PrintErrorLocation(
        block.stream, kERROR_BRAM_INSTANCE_NAME_DUPLICATE, kSYNTAX_STATUS, &place, block.space->name);
}

// Maps that were written by the engine repeat the range's memory word on each lane.
bool names_range_memory(const BlockType& block) {
    return block.token->type != &kGENERIC_MEMORY_KEYWORD && block.range->memory->type->token == block.token->type;
}

int read_memory(const BlockType& block, LaneType* lane) {
    lane->memory = block.range->memory;
    if (!isOfClass(block.token->type, kMEMORY_TYPE_TOKEN)) return 0;
    if (!names_range_memory(block)) {
        lane->memory = get_MEMORY_type_from_token(block.mapping->device, block.token->type);
        if (lane->memory == nullptr)
            return unknownMemoryType(block.stream, block.token, block.mapping, block.token->text);
    }
    return get_next_token(block.stream, block.token);
}

int read_ecc(const BlockType& block, LaneType* lane) {
    if (!isOfClass(block.token->type, kBRAM_MODIFIER_TOKEN)) return 0;
    lane->eccType = get_ECC_type(block.token->text);
    return get_next_token(block.stream, block.token);
}

int read_bits(const BlockType& block, LaneType* lane) {
    const int status = parse_bitLane_range_nums(block.stream, block.token, &lane->bitLow, &lane->bitHigh);
    if (status == 0) lane->bitOrdering = get_bitLane_ordering(&lane->bitLow, &lane->bitHigh);
    return status;
}

int read_addresses(const BlockType& block, LaneType* lane) {
    if (block.token->type == &kLEFT_BRACKET)
        return parseNumberRange(block.stream, block.token, &lane->addressLow, &lane->addressHigh);
    defaultLaneAddresses(
        lane->memory, lane->bitHigh + 1 - lane->bitLow, block.nextAddress, &lane->addressLow, &lane->addressHigh);
    return 0;
}

int read_location(const BlockType& block, LaneType* lane) {
    if ((lane->memory->type->sizeUnits & kNON_BLOCK_RAM_CLASSES) != 0)
        return refuseKeyword(
            block.stream, block.token, "LOC/PLACED constraints aren't allowed in MEMORY defined ADDRESS_BLOCKs");
    lane->locKind = block.token->type == &kBRAM_LOCATION_KEYWORD ? kLOC_KIND_LOC : kLOC_KIND_PLACED;
    lane->locPlace = placeOf(block.token);
    return parse_BRAM_location(block.stream, block.token, &lane->locRow, &lane->locColumn);
}

int read_file(const BlockType& block, LaneType* lane) {
    OwnedFileSpec* file = &lane->init;
    if (block.token->type == &kMEM_INPUT_KEYWORD) file = &lane->input;
    if (block.token->type == &kMEM_OUTPUT_KEYWORD) file = &lane->output;
    return parse_filename_spec(block.stream, block.token, file->out());
}

int read_attributes(const BlockType& block, LaneType* lane) {
    for (;;) {
        int status = 0;
        if (isOfClass(block.token->type, kBRAM_LOCATION_TOKEN))
            status = read_location(block, lane);
        else if (isOfClass(block.token->type, kMEM_INITIALIZE_TOKEN))
            status = read_file(block, lane);
        else
            return 0;
        if (status != 0) return status;
    }
}

// The ";" and what follows it: "*/" begins the next lane's name there, and so do words that can be names.
int read_terminator(const BlockType& block) {
    KeywordOverlay overlay(block.stream, &instance_path_token_set);
    if (overlay.status() != 0) return overlay.status();
    overlay.ignoreWords();
    int status = parse_statement_terminator(block.stream, block.token);
    if (status == 0) status = overlay.close();
    if (status == 0) restoreKeyword(block.stream, block.token);
    return status;
}

bool begins_lane(const token_element* token) {
    return token->type == &kIDENTIFIER_TOKEN || token->type == &kMULTIPLY || token->type == &kEND_C_COMMENT ||
           token->type == &kRELATIVE_INSTANCE_PATH_TOKEN;
}

int read_lane(const BlockType& block, LaneType* lane) {
    int status = read_name(block, lane);
    if (status == 0) status = read_memory(block, lane);
    if (status == 0) status = read_ecc(block, lane);
    if (status == 0) status = read_bits(block, lane);
    if (status == 0) status = read_addresses(block, lane);
    if (status == 0) status = read_attributes(block, lane);
    return status == 0 ? read_terminator(block) : status;
}

int record_location(const BlockType& block, const LaneType& lane, BitLaneType* device) {
    if (!isLocatedBlockRam(lane)) return 0;
    ++block.range->locatedDeviceCount;
    return record_bitLane_LOC_constraint(block.stream, &lane.locPlace, block.mapping, device);
}

int take_lane(const BlockType& block, LaneChainType* data, LaneChainType* ecc, BusBlockType* out) {
    LaneType lane;
    OwnedLaneElement element;
    int status = read_lane(block, &lane);
    if (status == 0) status = makeLaneElement(&lane, block.space, &element);
    if (status == 0) status = record_location(block, lane, element->lane);
    if (status != 0) return status;
    lane.entry.standFor(element.get());
    const bool isEcc = lane.eccType != kECC_NONE;
    if (out->laneListOrder == kBitLaneListOrderNone)
        out->laneListOrder = isEcc ? kBitLaneListOrderEccFirst : kBitLaneListOrderDataFirst;
    (isEcc ? ecc : data)->put(element.release());
    return 0;
}

// Moves a chain into an array of its own.
int hand_over(LaneChainType* chain, BitLaneArrayType** lanes, u64* count) {
    if (chain->count == 0) return 0;
    *lanes = newBitLaneArray(chain->count);
    if (*lanes == nullptr) return OUT_OF_MEMORY("busBlock", chain->count * sizeof(void*));
    while (chain->head != nullptr) (*lanes)[(*count)++] = chain->take();
    return 0;
}

} // namespace

void memdata::defaultLaneAddresses(const MEMORYLocType* memory, u64 laneWidth, u64 nextAddress, u64* low, u64* high) {
    const MEMORYType* type = memory->type;
    const bool hasParity = type->hasParityWidths && laneWidth >= kLEAST_WIDTH_WITH_PARITY;
    const u64 deviceBits = type->dataBits + (hasParity ? type->parityBits : 0);
    const u64 depth = laneWidth == 0 ? 0 : deviceBits / laneWidth;
    const bool isKnown = depth != 0 && (type->sizeUnits & kGENERIC_MEMORY_CLASS) == 0;
    *low = isKnown ? nextAddress : 0;
    *high = isKnown ? nextAddress + depth - 1 : 0;
}

int parse_bitLane_range_nums(parse_stream* stream, token_element* token, u64* first, u64* second) {
    return parseNumberRange(stream, token, first, second);
}

u32 get_bitLane_ordering(u64* first, u64* second) {
    if (*second > *first) return kBIT_ORDERING_ASCENDING;
    std::swap(*first, *second);
    return kBIT_ORDERING_DESCENDING;
}

int parse_BRAM_location(parse_stream* stream, token_element* token, unsigned* row, unsigned* column) {
    if (int status = get_next_token(stream, token); status != 0) return status;
    if (token->type != &kEQUAL) return refuseSymbol(stream, token, "=");
    if (int status = get_next_token(stream, token); status != 0) return status;
    if (int status = parse_BRAM_location_string(stream, token, token->text, row, column); status != 0) return status;
    return get_next_token(stream, token);
}

int parse_filename_spec(parse_stream* stream, token_element* token, fileSpecType** out) {
    if (int status = get_next_token(stream, token); status != 0) return status;
    if (token->type != &kEQUAL) return refuseSymbol(stream, token, "=");
    const token_element place = placeOf(token);
    OwnedFileSpec file;
    if (int status = parse_file_pathname(stream, token, true, false, true, file.out()); status != 0) return status;
    if (*file->fullName == '\0')
        return PrintErrorLocation(stream, kERROR_EMPTY_FILE_NAME, kSYNTAX_STATUS, &place, "mem");
    *out = file.release();
    return 0;
}

int parse_bitLanes(parse_stream* stream, token_element* token, const char* root, AddressMappingType* mapping,
    AddressSpaceDefType* space, AddressRangeDefType* range, BusBlockType* block, u64 nextAddress) {
    const BlockType shared{stream, token, root, mapping, space, range, nextAddress};
    LaneChainType data;
    LaneChainType ecc;
    if (int status = read_first_word(shared); status != 0) return status;
    do {
        if (int status = take_lane(shared, &data, &ecc, block); status != 0) return status;
    } while (begins_lane(token));
    block->busWidth = data.busWidth;
    block->eccBusWidth = ecc.busWidth;
    if (ecc.head != nullptr) block->eccType = ecc.head->eccType;
    const int status = hand_over(&data, &block->lanes, &block->laneCount);
    return status == 0 ? hand_over(&ecc, &block->eccLanes, &block->eccLaneCount) : status;
}
