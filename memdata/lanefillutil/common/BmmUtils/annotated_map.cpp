// annotated_map.cpp - memory types, maps, templates and spaces of an annotated map.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/annotated_map.h"

#include "BmmUtils/annotated_parts.h"
#include "BmmUtils/data_header.h"
#include "BmmUtils/model/text.h"
#include "DeviceTableUtils/memory_lookup.h"
#include "FileUtils/opening.h"
#include "ParseUtils/tokens.h"
#include "StringUtils/StringUtils.h"

#include <cstring>
#include <vector>

namespace {

using namespace memdata;

constexpr unsigned kSTEP = 4; // blanks of one level

bool has_text(const char* text) {
    return text != nullptr && *text != '\0';
}

// Behind the name of the map.
const char* short_name(const AddressSpaceDefType* space) {
    const char* dot = std::strrchr(space->name, '.');
    return dot == nullptr ? space->name : dot + 1;
}

const char* memory_word(const AddressSpaceDefType* space) {
    if (space->rangeCount > 1) return "COMBINED";
    if (space->ranges != nullptr && space->ranges->memory != nullptr)
        return get_memory_type_string(space->ranges->memory->type);
    return space->memoryTypeToken == nullptr ? "COMBINED" : space->memoryTypeToken->text;
}

// An instance's path ends in "/"; others do not take it back.
std::string_view path_text(const AddressSpaceDefType* space) {
    std::string_view path = space->instancePath == nullptr ? "" : space->instancePath;
    if (space->templateSpace == nullptr && path.ends_with('/')) path.remove_suffix(1);
    return path;
}

// "Processor 'cpu' address space 'ram'" or "Address space 'ram'", of the two wordings given.
std::string title_beginning(
    const AddressMapType* map, const AddressSpaceDefType* space, const char* inMap, const char* alone) {
    std::string title;
    if (map->isNamed) title.append("Processor '").append(map->name).append("' ");
    return title.append(map->isNamed ? inMap : alone).append(" '").append(short_name(space)).append("' ");
}

std::string size_in_parentheses(const AddressSpaceDefType* space) {
    return " (" + sizeText(space->startAddress, space->endAddress, space->wordAddressing) + ").";
}

void put_memory(AnnotatedText& text, const MEMORYType* type, unsigned indent) {
    const u64 byteCount = type->dataBits / 8;
    putTitle(text, indent,
        "User defined memory device of " + addressText(byteCount) + " bytes (" + sizeText(0, byteCount - 1, false) +
            ").");
    text.line(indent) << "DEFINE_MEMORY_TYPE " << type->name << " [";
    text.address(byteCount) << "] " << type->widthsText << ";\n\n";
}

void put_memories(AnnotatedText& text, MEMORYLocType* list, unsigned indent) {
    for (const MEMORYLocType* memory = get_MEMORY_next_record(&list, true); memory != nullptr;
         memory = get_MEMORY_next_record(&list, false))
        if (memory->type != nullptr && (memory->type->sizeUnits & kGENERIC_MEMORY_CLASS) == 0)
            put_memory(text, memory->type, indent);
}

void put_template(AnnotatedText& text, const AddressMapType* map, const AddressSpaceDefType* space, unsigned indent) {
    const u64 size = space->endAddress + 1;
    putTitle(text, indent,
        title_beginning(map, space, "address space template", "Address space template") + addressText(size) +
            size_in_parentheses(space));
    text.line(indent) << "ADDRESS_TEMPLATE " << short_name(space) << " " << memory_word(space)
                      << (space->wordAddressing ? " WORD_ADDRESSING" : "") << " [";
    text.address(size) << "]\n";
    putRanges(text, space, indent + kSTEP);
    text.line(indent) << "END_ADDRESS_TEMPLATE;\n\n";
}

void put_space(AnnotatedText& text, const AddressMapType* map, const AddressSpaceDefType* space, unsigned indent) {
    putTitle(text, indent,
        title_beginning(map, space, "address space", "Address space") + addressText(space->startAddress) + ":" +
            addressText(space->endAddress) + size_in_parentheses(space));
    text.line(indent) << "ADDRESS_SPACE " << short_name(space) << " " << memory_word(space)
                      << (space->wordAddressing ? " WORD_ADDRESSING" : "")
                      << (space->eccCombinedForSimulation ? " ECC_COMBINED_FOR_SIMULATION" : "") << " [";
    text.address(space->startAddress) << ":";
    text.address(space->endAddress) << "]";
    const std::string_view path = path_text(space);
    text << (path.empty() ? "" : " ") << path << "\n";
    putRanges(text, space, indent + kSTEP);
    text.line(indent) << "END_ADDRESS_SPACE;\n\n";
}

using SpaceWriter = void (*)(AnnotatedText&, const AddressMapType*, const AddressSpaceDefType*, unsigned);

// In list order, but among spaces that end alike the newest, which stands first in the list, comes last.
void put_each_space(AnnotatedText& text, const AddressMapType* map, unsigned indent, SpaceWriter put) {
    std::vector<const AddressSpaceDefType*> alike;
    for (const AddressSpaceLinkType* link = map->addressSpaces; link != nullptr; link = link->next) {
        alike.push_back(link->space);
        if (link->next != nullptr && link->next->space->endAddress == link->space->endAddress) continue;
        for (auto space = alike.rbegin(); space != alike.rend(); ++space) put(text, map, *space, indent);
        alike.clear();
    }
}

void put_map(AnnotatedText& text, const AddressMapType* map) {
    if (!map->isNamed) return put_each_space(text, map, 0, put_space);
    putTitle(text, 0,
        std::string("Processor '") + map->name + "', ID " + std::to_string(map->processorId) + ", memory map.");
    text.line(0) << "ADDRESS_MAP " << map->name << " " << get_processorType_string(map->processorType) << " "
                 << u64{map->processorId};
    if (has_text(map->instancePath)) text << " " << map->instancePath;
    text << "\n";
    put_each_space(text, map, kSTEP, put_space);
    text << "END_ADDRESS_MAP;\n\n";
}

int write_file(fileIODescriptor* file, AddressMappingType* mapping) {
    int status = output_data_header(file, "//", "BMM LOC annotation file", nullptr, 0, nullptr, nullptr, nullptr);
    if (status == 0) status = outputByte(file, '\n');
    return status == 0 ? output_BMM_addressMapping(file, mapping) : status;
}

using OwnedFile = Tracked<fileIODescriptor, abandonFile>;

} // namespace

std::string memdata::sizeText(u64 start, u64 end, bool words) {
    const u64 size = end - start + 1;
    unsigned shift = 20;
    const char* prefix = "M";
    if (size < 1024) {
        shift = 0;
        prefix = "";
    } else if (size < 0x100000) {
        shift = 10;
        prefix = "K";
    } else if (size > 0x3FFFFFFF) {
        shift = 30;
        prefix = "G";
    }
    return std::to_string(size >> shift) + " " + prefix + (words ? "Wwords" : "Bytes");
}

void memdata::putTitle(AnnotatedText& text, unsigned indent, std::string_view title, bool twice) {
    constexpr std::string_view kBAR =
        "///////////////////////////////////////////////////////////////////////////////\n";
    static_assert(kBAR.size() == 79 + 1);
    text << "\n";
    text.line(indent) << kBAR;
    text.line(indent) << "//\n";
    for (int i = twice ? 0 : 1; i < 2; ++i) {
        text.line(indent) << "// " << title << "\n";
        text.line(indent) << "//\n";
    }
    text.line(indent) << kBAR << "\n";
}

int memdata::outputTitleComment(fileIODescriptor* file, unsigned indent, bool twoLines, std::string_view title) {
    if (file == nullptr) return 3;
    AnnotatedText text(file);
    putTitle(text, indent, title, twoLines);
    return text.flush();
}

char* create_space_size_string(u64 start, u64 end, bool words) {
    return StrDup(sizeText(start, end, words).c_str());
}

int output_pad_position(fileIODescriptor* file, unsigned indent) {
    if (file == nullptr) return 3;
    AnnotatedText text(file);
    text.line(indent);
    return text.flush();
}

int output_user_defined_memories(fileIODescriptor* file, MEMORYLocType* list, unsigned indent) {
    if (file == nullptr) return 3;
    AnnotatedText text(file);
    if (list != nullptr) put_memories(text, list, indent);
    return text.flush();
}

int output_BMM_addressTemplates(fileIODescriptor* file, AddressMapType* map, unsigned indent) {
    if (file == nullptr) return 3;
    AnnotatedText text(file);
    if (map != nullptr) put_each_space(text, map, indent, put_template);
    return text.flush();
}

int output_BMM_addressSpaces(fileIODescriptor* file, AddressMapType* map, unsigned indent) {
    if (file == nullptr) return 3;
    AnnotatedText text(file);
    if (map != nullptr) put_each_space(text, map, indent, put_space);
    return text.flush();
}

int output_BMM_addressMapping(fileIODescriptor* file, AddressMappingType* mapping) {
    if (file == nullptr) return 3;
    if (mapping == nullptr) return 0;
    AnnotatedText text(file);
    put_memories(text, get_MEMORY_extended_list(), 0);
    if (mapping->templateMap != nullptr) put_each_space(text, mapping->templateMap, 0, put_template);
    for (const AddressMapType* map = mapping->addressMaps; map != nullptr; map = map->next) put_map(text, map);
    return text.flush();
}

int output_BMM_file(fileSpecType* spec, AddressMappingType* mapping, const char* fileName) {
    if (mapping == nullptr) return 0;
    if (spec == nullptr) return 3;
    OwnedFileSpec ownName;
    if (spec->fullName != nullptr && std::strcmp(spec->fullName, "*") == 0) {
        ownName.reset(CreateFileSpec(mapping->bmmBaseName));
        if (ownName == nullptr) return 7;
        spec = ownName.get();
    }
    OwnedFile file;
    if (int status = OpenDiskFile(spec, "", "bmm", fileName, kTEXT_WRITE | kREFUSE_OVERWRITE, file.out()); status != 0)
        return status;
    if (int status = write_file(file.get(), mapping); status != 0) return status;

    fileIODescriptor* finished = file.release();
    const int status = Close_File(&finished);
    file.reset(finished); // kept by a close that failed
    return status;
}
