// dataset.cpp - dataset files: XML documents that name a data file for each address space.
// SPDX-License-Identifier: Apache-2.0
//
//   <AddressMap>
//     <Processor Name="cpu">
//       <AddressSpace Name="ram">
//         <AddressMap Path="boot.elf"/>
//
// Each inner AddressMap is a data file for the space "cpu.ram".
#include "CmdParseUtils/option_reader.h"

#include "XMLUtils/XMLUtils.h"

namespace memdata {

namespace {

constexpr int kEMPTY_TEXT = 17;

using NodeOwner = Tracked<BDSwitchDataType, delete_BD_switch_data_list>;

const char* text_of(const LNF_XML_Element* element, const char* name) {
    const char* value = element->Get_Attribute(name, nullptr);
    return value == nullptr ? "" : value;
}

int add_tag(BDSwitchDataType* node, const char* tag) {
    OwnedString name(StrDup(tag));
    ListAppender<StringLists> names(&node->tagNames);
    if (name == nullptr || names.append(name.get()) != 0) return 7;
    name.release();
    node->tagCount = 1;
    return 0;
}

int add_file(OptionReader* reader, const char* path, const char* tag) {
    if (*path == '\0') return reader->fail(kERROR_DATASET_MISSING_ELF_OR_MEM_FILE_NAME, tag);
    OwnedFileSpec spec(CreateFileSpec(path));
    NodeOwner node(spec == nullptr ? nullptr : create_BD_switch_data(spec.get()));
    if (node == nullptr) return 7;
    spec.release();
    if (int status = add_tag(node.get(), tag); status != 0) return status;
    *reader->bdEnd = node.release();
    reader->bdEnd = &(*reader->bdEnd)->next;
    return 0;
}

int add_space(OptionReader* reader, const LNF_XML_Element* processor, LNF_XML_Element* space) {
    const std::string tag = std::string(text_of(processor, "Name")) + "." + text_of(space, "Name");
    while (LNF_XML_Element* file = space->Get_Next_Child("AddressMap")) {
        if (int status = add_file(reader, text_of(file, "Path"), tag.c_str()); status != 0) return status;
    }
    return 0;
}

int add_processor(OptionReader* reader, LNF_XML_Element* processor) {
    while (LNF_XML_Element* space = processor->Get_Next_Child("AddressSpace")) {
        if (int status = add_space(reader, processor, space); status != 0) return status;
    }
    return 0;
}

int add_map(OptionReader* reader, LNF_XML_Element* map) {
    while (LNF_XML_Element* processor = map->Get_Next_Child("Processor")) {
        if (int status = add_processor(reader, processor); status != 0) return status;
    }
    return 0;
}

} // namespace

int readDataset(OptionReader* reader, fileSpecType* spec) {
    if (int status = reader->flush(); status != 0) return status; // macros given so far hold in the file
    LNF_XML document;
    const int status = document.ReadXML(spec, reader->options->macroDefines, 0);
    if (status == kEMPTY_TEXT)
        return PrintErrorLocation(
            reader->stream, kERROR_EMPTY_INPUT_FILE, status, reader->token, spec->fullName, "XML");
    if (status != 0) return status;
    while (LNF_XML_Element* map = document.Get_Next_Child("AddressMap")) {
        if (int added = add_map(reader, map); added != 0) return added;
    }
    return 0;
}

} // namespace memdata
