// compact_ranges.cpp - the ranges of compact spaces, down to their bus blocks.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/compact_parser.h"
#include "BmmUtils/model/text.h"
#include "BmmUtils/syntax.h"
#include "ParseUtils/scanner.h"
#include "SystemUtils/alerts.h"

using namespace memdata;

namespace {

constexpr const char* kRANGE_WORD = "ADDRESS_SPACE 's' keyword";
constexpr const char* kMEMORY_NAME = "ADDRESS_SPACE 's' memory type name";
constexpr const char* kMEMORY_TYPE = "ADDRESS_SPACE 's' memory type not defined";
constexpr const char* kRANGE_SIZE = "ADDRESS_SPACE 's' range byte size value";
constexpr const char* kRANGE_WIDTH = "ADDRESS_SPACE 's' address range bus width size value";

// The text of a reference, on top of a stream. It is read to its own end, and stands as its words came out when they
// were kept: nothing in it expands again.
class Replay {
public:
    Replay(parse_stream* stream, const std::string& text) {
        status_ = push_parse_MemoryFile_stream(
            "reference.txt", text.data(), text.size(), stream, 0, nullptr, nullptr, &context_);
        if (status_ == 0)
            set_parse_modes(stream, nullptr, kMODE_NO_AUTO_POP | kMODE_NO_MACROS | kMODE_NO_DIRECTIVES, true);
    }
    ~Replay() { close(); }
    Replay& operator=(Replay&&) = delete; // neither copied nor moved

    int status() const { return status_; }
    int close() { return context_ == nullptr ? 0 : close_parse_stream(&context_); }

private:
    parse_stream* context_ = nullptr;
    int status_;
};

int check_range_word(const InfoReader& in) {
    const bool isRange = isOfClass(in.token->type, kEADDRESS_RANGE_TOKEN);
    return isRange ? 0 : refuseSymbol(in.stream, in.token, kRANGE_WORD);
}

// Ranges, and the hierarchies that kept items stand behind.
int parse_items(const InfoReader& in, InfoAddressing addressing, u64 busWidth, bool acceptsHierarchies, u64* total,
    address_range_list* list) {
    for (;;) {
        int status = 0;
        if (in.token->type == &kFADDRESS_RANGE_KEYWORD)
            status = parse_addressRange_info_data(in, addressing, busWidth, total, list);
        else if (in.token->type == &kEREFERENCE_INFO_KEYWORD)
            status = parse_addressRange_info_reference(in, addressing, busWidth, total, list);
        else if (in.token->type == &kSHIERARCHY_LOCATION_KEYWORD && acceptsHierarchies)
            status = parse_hierarchy_info(in);
        else
            return 0;
        if (status != 0) return status;
    }
}

int replay(const InfoReader& in, const std::string& text, InfoAddressing addressing, u64 busWidth, u64* total,
    address_range_list* list) {
    const std::string name = in.scratch->currentSpaceName;
    const std::string path = in.scratch->hierarchyPath;
    Replay items(in.stream, text);
    int status = items.status();
    if (status == 0) status = get_next_token(in.stream, in.token);
    if (status == 0) status = parse_items(in, addressing, busWidth, true, total, list);
    if (status == 0 && in.token->type != &kEND_OF_FILE) status = check_range_word(in);
    if (status == 0) status = items.close();
    if (status != 0) return status;
    in.scratch->currentSpaceName = name; // what the items were told in holds for them alone
    in.scratch->hierarchyPath = path;
    return get_next_token(in.stream, in.token);
}

// The lanes of a range are those of a group, or one device.
int find_places(const InfoReader& in, const token_element* place, const address_range_info& range,
    component_ref_info* single, std::vector<component_place_info>* places) {
    const symbol_entry* entry = lookup_context_symbol(range.instanceName.c_str(), true, in.scratch->componentNames);
    if (entry != nullptr)
        return expand_component_references(
            in, place, *static_cast<const component_group_info*>(entry->value), range.busWidth, places);
    single->instanceName = range.instanceName;
    if (!range.isRelative) single->path = in.scratch->hierarchyPath;
    single->bitFirst = range.laneWidth - 1;
    places->push_back({single, 0});
    return 0;
}

// Check lanes come on top of those that make the bus, one set for each block.
int check_count(const InfoReader& in, const token_element* place, const address_range_info& range, u64 blocks,
    const std::vector<component_place_info>& places) {
    u64 expected = range.lanesPerBlock * blocks;
    for (const component_place_info& at : places)
        if (at.component->eccType != kECC_NONE && at.block < blocks) ++expected;
    if (places.size() == expected) return 0;
    const std::string wanted = std::to_string(expected);
    const std::string found = std::to_string(places.size());
    if (places.size() < expected)
        return PrintErrorLocation(in.stream, kERROR_MESSAGE_STRING, kSYNTAX_STATUS, place,
            formatted("\nSetting the bit lane failed. Expecting %s BRAMS only processed %s.\n", wanted, found));
    return PrintErrorLocation(in.stream, kERROR_MESSAGE_STRING, kSYNTAX_STATUS, place,
        formatted("\nCreation of the bit lane failed. Expecting %s BRAMS found a total of %s BRAMS. Improperly "
                  "specified number of BRAM components, check the BMG core. Typically, this occurs because ECC has "
                  "been specified.\n",
            wanted, found));
}

void put_file(std::string* text, const char* word, const std::string& file) {
    if (!file.empty()) *text += word + file;
}

std::string lane_text(const component_ref_info& component, bool isRelative) {
    std::string text = "\t\t";
    if (isRelative) text += "*/";
    text += expand_component_instance_names(component);
    if (component.eccType != kECC_NONE) text += std::string(" ") + get_ECCAlgorithmType_string(component.eccType);
    text += construct_bitLane_bitRange_string(component);
    put_file(&text, " INIT = ", component.initFile);
    put_file(&text, " INPUT = ", component.inputFile);
    put_file(&text, " OUTPUT = ", component.outputFile);
    return text + ";\n";
}

// What `f` says besides its memory. bytes: of the range; under word addressing its size counts words of a lane.
int parse_sizes(
    const InfoReader& in, InfoAddressing addressing, u64 busWidth, address_range_info* range, u64* size, u64* bytes) {
    if (in.token->type == &kINTEGER_NUMBER && in.token->value < 1)
        return refuseSymbol(in.stream, in.token, kRANGE_SIZE);
    if (int status = takeInteger(in, kRANGE_SIZE, size); status != 0) return status;
    if (int status = checkInteger(in, kRANGE_WIDTH, &range->laneWidth); status != 0) return status;
    if (range->laneWidth == 0 || busWidth % range->laneWidth != 0)
        return refuseSymbol(in.stream, in.token, kRANGE_WIDTH);
    range->busWidth = busWidth;
    range->lanesPerBlock = busWidth / range->laneWidth;
    *bytes = *size;
    if (addressing != InfoAddressing::kWORD) return 0;
    u64 bits = 0;
    if (__builtin_mul_overflow(*size, range->laneWidth, &bits)) return refuseSymbol(in.stream, in.token, kRANGE_WIDTH);
    *bytes = bits / 8;
    return 0;
}

u64 block_count(u64 bytes, u64 deviceBytes, u64 lanes) {
    u64 blockBytes = 0;
    return __builtin_mul_overflow(deviceBytes, lanes, &blockBytes) ? 0 : bytes / blockBytes;
}

} // namespace

int parse_addressRange_info(
    const InfoReader& in, InfoAddressing addressing, u64 busWidth, u64* total, address_range_list* list) {
    if (!in.isJoinText)
        if (int status = check_range_word(in); status != 0) return status;
    if (int status = parse_items(in, addressing, busWidth, in.isJoinText, total, list); status != 0) return status;
    return list->empty() ? check_range_word(in) : 0;
}

int parse_addressRange_info_data(
    const InfoReader& in, InfoAddressing addressing, u64 busWidth, u64* total, address_range_list* list) {
    address_range_info range;
    u64 deviceBytes = 0;
    u64 size = 0;
    u64 bytes = 0;
    const token_element place = placeOf(in.token);
    int status = nextWord(in);
    if (status == 0) status = parse_info_memory_type(in, kMEMORY_NAME, kMEMORY_TYPE, &range.memory, &deviceBytes);
    if (status == 0) status = parse_sizes(in, addressing, busWidth, &range, &size, &bytes);
    if (status == 0 && size > UINT64_MAX - *total) status = refuseSymbol(in.stream, in.token, kRANGE_SIZE);
    if (status == 0) status = takeInstanceName(in, false, &range.isRelative, &range.instanceName);
    if (status != 0) return status;
    *total += size;
    status = keepBytes(in, sizeof range + range.memory.size() + range.instanceName.size());
    if (status != 0) return status;
    const u64 blocks = block_count(bytes, deviceBytes, range.lanesPerBlock);
    if (int built = construct_info_busBlocks(in, &place, &range, blocks); built != 0) return built;
    list->push_back(std::move(range));
    return 0;
}

int parse_addressRange_info_reference(
    const InfoReader& in, InfoAddressing addressing, u64 busWidth, u64* total, address_range_list* list) {
    if (int status = nextWord(in); status != 0) return status;
    const reference_info* reference = nullptr;
    if (int status = lookup_reference_info(in, &reference); status != 0) return status;
    collect_MF_info(&in.scratch->commandText, in.token->text, " ");
    return replay(in, reference->text, addressing, busWidth, total, list);
}

int construct_info_busBlocks(const InfoReader& in, const token_element* place, address_range_info* range, u64 blocks) {
    component_ref_info single;
    std::vector<component_place_info> places;
    if (int status = find_places(in, place, *range, &single, &places); status != 0) return status;
    if (int status = check_count(in, place, *range, blocks, places); status != 0) return status;
    auto at = places.begin();
    for (u64 block = 0; block < blocks; ++block) {
        const size_t start = range->text.size();
        range->text += "\tBUS_BLOCK\n";
        for (; at != places.end() && at->block == block; ++at)
            range->text += lane_text(*at->component, range->isRelative);
        range->text += "\tEND_BUS_BLOCK;\n";
        if (int status = keepBytes(in, range->text.size() - start); status != 0) return status;
    }
    return 0;
}

void output_addressRange_info(std::string* text, const address_range_list& list) {
    for (const address_range_info& range : list)
        *text += list.size() == 1 ? range.text
                                  : "ADDRESS_RANGE " + range.memory + "\n" + range.text + "END_ADDRESS_RANGE;\n";
}
