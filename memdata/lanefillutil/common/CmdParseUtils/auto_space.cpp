// auto_space.cpp - an address map for a data file that no map tells of.
// SPDX-License-Identifier: Apache-2.0
//
// It is worded in the compact language and read as any option text, so it stands here and not with the maps.
#include "BmmUtils/annotated_text.h"
#include "BmmUtils/bmm_info.h"
#include "BmmUtils/compact_records.h"
#include "BmmUtils/model/creation.h"
#include "BmmUtils/parser.h"
#include "CmdParseUtils/CmdParseUtils.h"
#include "SystemUtils/alerts.h"

#include <algorithm>

using namespace memdata;

namespace {

constexpr int kREFUSED = 3;
constexpr u64 kADDRESSES_OF_32_BITS = 0x100000000;

// A record of its own, so that the caller's stays as it is.
struct OptionOwner {
    CmdStringOptionsType options{};

    OptionOwner() = default;
    ~OptionOwner() { DeleteCmdStringOptions(&options); }
    OptionOwner& operator=(OptionOwner&&) = delete; // neither copied nor moved
};

bool is_word_character(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

// The name and extension of the file, and the number of the space, as one word of the language.
std::string space_tag(const AddressMappingType* mapping, const fileSpecType* file) {
    const auto part = [](const char* text) { return text == nullptr ? "" : text; };
    std::string tag = formatted("%s_%s_%ld", part(file->baseName), part(file->extension), mapping->autoSpaceCount);
    std::ranges::replace_if(
        tag, [](char c) { return !is_word_character(c); }, '_');
    return tag;
}

// The lowest number from the count of maps on that no processor has.
u32 free_processor_id(const AddressMappingType* mapping) {
    u32 id = mapping->addressMapCount;
    for (const AddressMapType* map = mapping->addressMaps; map != nullptr;) {
        const bool isTaken = map->isNamed && map->processorId == id;
        if (isTaken) ++id;
        map = isTaken ? mapping->addressMaps : map->next;
    }
    return id;
}

std::string option_text(const std::string& tag, u64 start, u64 size, u32 id) {
    return formatted("-mf m memory_%s %s 8 c device_%s_range %s_device memory_%s [7:0] [0:%s] "
                     "p %s CONFIGPROM %s a %s %s_device %s 8 f memory_%s %s 8 device_%s_range",
        tag, addressText(size), tag, tag, tag, std::to_string(size - 1), tag, std::to_string(id), tag, tag,
        addressText(start), tag, addressText(size), tag);
}

int compile(const std::string& text, AddressMappingType* mapping) {
    OptionOwner owner;
    int count = -1;
    if (int status = ParseCmdStringOptions(text.c_str(), &owner.options, &count); status != 0) return status;
    const fileSpecType* compiled = FileSpecListGet(owner.options.bmmFiles, 0);
    return open_and_parse_bmm_info(
        reinterpret_cast<unsigned char*>(FileSpecGetFileData(compiled, nullptr)), mapping, nullptr, nullptr);
}

int add_tag(const std::string& tag, BDSwitchDataType* file) {
    char* name = StrDup(tag.c_str());
    if (name == nullptr) return 7;
    if (int status = StrListExtend(&file->tagNames, name); status != 0) return status;
    file->tagCount = file->tagCount < 0 ? 1 : file->tagCount + 1;
    return 0;
}

} // namespace

int insert_auto_BMM_address_space(
    AddressMappingType* mapping, unsigned long start, unsigned long end, BDSwitchDataType* file) {
    if (mapping == nullptr || file == nullptr || file->dataFile == nullptr)
        return PrintError(kERROR_MESSAGE_STRING, kREFUSED, "There is no data file to make an address space for.");
    const u64 last = std::min<u64>(end, kADDRESSES_OF_32_BITS - 1);
    if (start > last)
        return PrintError(kERROR_MESSAGE_STRING, kREFUSED,
            formatted(
                "No address space can be made for '%s': its addresses are not of 32 bits.", file->dataFile->fullName));
    const std::string tag = space_tag(mapping, file->dataFile);
    const std::string text = option_text(tag, start, last - start + 1, free_processor_id(mapping));
    ++mapping->autoSpaceCount;
    if (int status = add_tag(tag, file); status != 0) return status;
    // What other options have begun in the compact language goes on behind this.
    const bool hasBegun = scratchBMMInfo != nullptr;
    const int status = compile(text, mapping);
    if (!hasBegun) delete_scratchBMMInfo();
    return status;
}
