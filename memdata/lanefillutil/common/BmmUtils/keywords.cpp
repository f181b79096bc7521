// keywords.cpp - the words of address maps.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/keywords.h"

#include <iterator>
#include <string_view>

// The row number of a word is part of the texts of messages: see blockStructureWord.
constexpr keyword_row bmm_keywords[] = {
    // word, token, compares with case
    {"ADDRESS_MAP", &kADDRESS_MAP_KEYWORD, true},
    {"END_ADDRESS_MAP", &kEND_ADDRESS_MAP_KEYWORD, true},
    {"ADDRESS_BLOCK", &kADDRESS_SPACE_KEYWORD, true},
    {"END_ADDRESS_BLOCK", &kEND_ADDRESS_SPACE_KEYWORD, true},
    {"ADDRESS_TEMPLATE", &kADDRESS_TEMPLATE_KEYWORD, true},
    {"END_ADDRESS_TEMPLATE", &kEND_ADDRESS_TEMPLATE_KEYWORD, true},
    {"ADDRESS_SPACE", &kADDRESS_SPACE_KEYWORD, true},
    {"END_ADDRESS_SPACE", &kEND_ADDRESS_SPACE_KEYWORD, true},
    {"ADDRESS_RANGE", &kADDRESS_RANGE_KEYWORD, true},
    {"END_ADDRESS_RANGE", &kEND_ADDRESS_RANGE_KEYWORD, true},
    {"BUS_BLOCK", &kBUS_BLOCK_KEYWORD, true},
    {"END_BUS_BLOCK", &kEND_BUS_BLOCK_KEYWORD, true},
    {"BYTE_ADDRESSING", &kBYTE_ADDRESSING_KEYWORD, true},
    {"INDEX_ADDRESSING", &kWORD_ADDRESSING_KEYWORD, true},
    {"WORD_ADDRESSING", &kWORD_ADDRESSING_KEYWORD, true},
    {"DEFINE_MEMORY_TYPE", &kDEFINE_MEM_TYPE_KEYWORD, true},
    {"ADDRESS_INSTANCE", &kADDRESS_INSTANCE_KEYWORD, true},
    {"PPC405", &kPROCESSOR_PPC405_KEYWORD, false},
    {"PPC440", &kPROCESSOR_PPC440_KEYWORD, false},
    {"KESTREL", &kPROCESSOR_KESTREL_KEYWORD, false},
    {"WRENLET", &kPROCESSOR_WRENLET_KEYWORD, false},
    {"KESTREL-LE", &kPROCESSOR_KESTREL_LE_KEYWORD, false},
    {"ARM", &kPROCESSOR_ARM_KEYWORD, false},
    {"CONFIGPROM", &kPROCESSOR_CONFIGPROM_KEYWORD, false},
    {"RISCV", &kPROCESSOR_RISCV_KEYWORD, false},
    {"LOC", &kBRAM_LOCATION_KEYWORD, true},
    {"PLACED", &kBRAM_PLACED_KEYWORD, true},
    {"RAMB4", &kBRAM_RAMB4_KEYWORD, false},
    {"RAMB8", &kBRAM_RAMB8_KEYWORD, false},
    {"RAMB9", &kBRAM_RAMB9_KEYWORD, false},
    {"RAMB16", &kBRAM_RAMB16_KEYWORD, false},
    {"RAMB18", &kBRAM_RAMB18_KEYWORD, false},
    {"RAMB32", &kBRAM_RAMB32_KEYWORD, false},
    {"RAMB36", &kBRAM_RAMB36_KEYWORD, false},
    {"MEMORY", &kGENERIC_MEMORY_KEYWORD, false},
    {"GRID", &kGRID_MEMORY_KEYWORD, false},
    {"COMBINED", &kCOMBINED_MEMORY_KEYWORD, false},
    {"ECCH32-7", &kBRAM_ECCH327_KEYWORD, false},
    {"ECCH64-8", &kBRAM_ECCH648_KEYWORD, false},
    {"ECCHSIAO32-7", &kBRAM_ECCHSIAO327_KEYWORD, false},
    {"ECCHSIAO64-8", &kBRAM_ECCHSIAO648_KEYWORD, false},
    {"ECCHSIAO128-9", &kBRAM_ECCHSIAO1289_KEYWORD, false},
    {"INPUT", &kMEM_INPUT_KEYWORD, true},
    {"OUTPUT", &kMEM_OUTPUT_KEYWORD, true},
    {"INIT", &kMEM_INIT_KEYWORD, true},
    {"WORKFLOW_OPERATION", &kADDRESS_WORKFLOW_OP_KEYWORD, true},
    {"ECC_COMBINED_FOR_SIMULATION", &kADDRESS_ECC_SIMULATION_KEYWORD, true},
    {},
};
static_assert(std::size(bmm_keywords) == 48);
static_assert(bmm_keywords[17].word == std::string_view("PPC405"));
static_assert(bmm_keywords[46].word == std::string_view("ECC_COMBINED_FOR_SIMULATION"));

constinit token_set bmm_keyword_set{bmm_keywords};

const char* memdata::blockStructureWord(const token_type& type) {
    return bmm_keywords[type.ordinal].word;
}

bool memdata::isNameWord(const token_element* token) {
    return token->type == &kIDENTIFIER_TOKEN || isOfClass(token->type, kPROCESSOR_TYPE_TOKEN) ||
           isOfClass(token->type, kMEM_INITIALIZE_TOKEN) || isOfClass(token->type, kMEMORY_TYPE_TOKEN);
}
