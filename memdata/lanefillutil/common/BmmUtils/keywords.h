// keywords.h - the words of address maps.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_KEYWORDS_H
#define MEMDATA_BMM_UTILS_KEYWORDS_H

#include "BmmUtils/model/memory_types.h"
#include "ParseUtils/keyword_sets.h"

// Frames of statements and blocks. ADDRESS_BLOCK and ADDRESS_SPACE are one token, and so are their ends.
inline constexpr token_type kBLOCK_STRUCTURE_TOKEN{&kBMM_KEYWORD_TOKEN, 1, 0, 10};
inline constexpr token_type kADDRESS_MAP_KEYWORD{&kBLOCK_STRUCTURE_TOKEN, 2, 0, 0};
inline constexpr token_type kEND_ADDRESS_MAP_KEYWORD{&kBLOCK_STRUCTURE_TOKEN, 2, 1, 0};
inline constexpr token_type kADDRESS_SPACE_KEYWORD{&kBLOCK_STRUCTURE_TOKEN, 2, 2, 0};
inline constexpr token_type kEND_ADDRESS_SPACE_KEYWORD{&kBLOCK_STRUCTURE_TOKEN, 2, 3, 0};
inline constexpr token_type kADDRESS_TEMPLATE_KEYWORD{&kBLOCK_STRUCTURE_TOKEN, 2, 4, 0};
inline constexpr token_type kEND_ADDRESS_TEMPLATE_KEYWORD{&kBLOCK_STRUCTURE_TOKEN, 2, 5, 0};
inline constexpr token_type kADDRESS_RANGE_KEYWORD{&kBLOCK_STRUCTURE_TOKEN, 2, 6, 0};
inline constexpr token_type kEND_ADDRESS_RANGE_KEYWORD{&kBLOCK_STRUCTURE_TOKEN, 2, 7, 0};
inline constexpr token_type kBUS_BLOCK_KEYWORD{&kBLOCK_STRUCTURE_TOKEN, 2, 8, 0};
inline constexpr token_type kEND_BUS_BLOCK_KEYWORD{&kBLOCK_STRUCTURE_TOKEN, 2, 9, 0};

// How addresses count. INDEX_ADDRESSING and WORD_ADDRESSING are one token.
inline constexpr token_type kADDRESS_MODIFIER_TOKEN{&kBMM_KEYWORD_TOKEN, 1, 1, 2};
inline constexpr token_type kBYTE_ADDRESSING_KEYWORD{&kADDRESS_MODIFIER_TOKEN, 2, 0, 0};
inline constexpr token_type kWORD_ADDRESSING_KEYWORD{&kADDRESS_MODIFIER_TOKEN, 2, 1, 0};

// Statements of one line.
inline constexpr token_type kLINE_STRUCTURE_TOKEN{&kBMM_KEYWORD_TOKEN, 1, 2, 2};
inline constexpr token_type kDEFINE_MEM_TYPE_KEYWORD{&kLINE_STRUCTURE_TOKEN, 2, 0, 0};
inline constexpr token_type kADDRESS_INSTANCE_KEYWORD{&kLINE_STRUCTURE_TOKEN, 2, 1, 0};

inline constexpr token_type kPROCESSOR_TYPE_TOKEN{&kBMM_KEYWORD_TOKEN, 1, 3, 8};
inline constexpr token_type kPROCESSOR_PPC405_KEYWORD{&kPROCESSOR_TYPE_TOKEN, 2, 0, 0};
inline constexpr token_type kPROCESSOR_PPC440_KEYWORD{&kPROCESSOR_TYPE_TOKEN, 2, 1, 0};
inline constexpr token_type kPROCESSOR_KESTREL_KEYWORD{&kPROCESSOR_TYPE_TOKEN, 2, 2, 0};
inline constexpr token_type kPROCESSOR_WRENLET_KEYWORD{&kPROCESSOR_TYPE_TOKEN, 2, 3, 0};
inline constexpr token_type kPROCESSOR_KESTREL_LE_KEYWORD{&kPROCESSOR_TYPE_TOKEN, 2, 4, 0};
inline constexpr token_type kPROCESSOR_ARM_KEYWORD{&kPROCESSOR_TYPE_TOKEN, 2, 5, 0};
inline constexpr token_type kPROCESSOR_CONFIGPROM_KEYWORD{&kPROCESSOR_TYPE_TOKEN, 2, 6, 0};
inline constexpr token_type kPROCESSOR_RISCV_KEYWORD{&kPROCESSOR_TYPE_TOKEN, 2, 7, 0};

// Where a device is.
inline constexpr token_type kBRAM_LOCATION_TOKEN{&kBMM_KEYWORD_TOKEN, 1, 4, 2};
inline constexpr token_type kBRAM_LOCATION_KEYWORD{&kBRAM_LOCATION_TOKEN, 2, 0, 0}; // LOC
inline constexpr token_type kBRAM_PLACED_KEYWORD{&kBRAM_LOCATION_TOKEN, 2, 1, 0};   // PLACED

// kMEMORY_TYPE_TOKEN, class 5, stands with the memory types.

// Codes of ECC lanes.
inline constexpr token_type kBRAM_MODIFIER_TOKEN{&kBMM_KEYWORD_TOKEN, 1, 6, 5};
inline constexpr token_type kBRAM_ECCH327_KEYWORD{&kBRAM_MODIFIER_TOKEN, 2, 0, 0};
inline constexpr token_type kBRAM_ECCH648_KEYWORD{&kBRAM_MODIFIER_TOKEN, 2, 1, 0};
inline constexpr token_type kBRAM_ECCHSIAO327_KEYWORD{&kBRAM_MODIFIER_TOKEN, 2, 2, 0};
inline constexpr token_type kBRAM_ECCHSIAO648_KEYWORD{&kBRAM_MODIFIER_TOKEN, 2, 3, 0};
inline constexpr token_type kBRAM_ECCHSIAO1289_KEYWORD{&kBRAM_MODIFIER_TOKEN, 2, 4, 0};

// Files of a device.
inline constexpr token_type kMEM_INITIALIZE_TOKEN{&kBMM_KEYWORD_TOKEN, 1, 7, 3};
inline constexpr token_type kMEM_INPUT_KEYWORD{&kMEM_INITIALIZE_TOKEN, 2, 0, 0};
inline constexpr token_type kMEM_OUTPUT_KEYWORD{&kMEM_INITIALIZE_TOKEN, 2, 1, 0};
inline constexpr token_type kMEM_INIT_KEYWORD{&kMEM_INITIALIZE_TOKEN, 2, 2, 0};

inline constexpr token_type kADDRESS_WORKFLOW_OP_TOKEN{&kBMM_KEYWORD_TOKEN, 1, 14, 1};
inline constexpr token_type kADDRESS_WORKFLOW_OP_KEYWORD{&kADDRESS_WORKFLOW_OP_TOKEN, 2, 0, 0};

inline constexpr token_type kADDRESS_ECC_SIMULATION_TOKEN{&kBMM_KEYWORD_TOKEN, 1, 15, 1};
inline constexpr token_type kADDRESS_ECC_SIMULATION_KEYWORD{&kADDRESS_ECC_SIMULATION_TOKEN, 2, 0, 0};

// The table, ended by a row without a word, and the set over it. Memory types that maps define are added to the set.
extern const keyword_row bmm_keywords[];
extern token_set bmm_keyword_set;

namespace memdata {

// The word by which a message names a token of kBLOCK_STRUCTURE_TOKEN: that of the row whose number is the token's
// ordinal. From the two words for spaces on, rows and ordinals differ, so that END_BUS_BLOCK reads
// "END_ADDRESS_RANGE"; the texts have always been so and stay so.
const char* blockStructureWord(const token_type& type);

// Whether a token can be a name: an identifier, or a keyword that names may be spelled like.
bool isNameWord(const token_element* token);

} // namespace memdata

#endif
