// compact_keywords.h - the words of the compact language.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_COMPACT_KEYWORDS_H
#define MEMDATA_BMM_UTILS_COMPACT_KEYWORDS_H

#include "ParseUtils/keyword_sets.h"

// The root of the language; words of one letter would otherwise be those of other languages.
inline constexpr token_type kBMM_INFO_KEYWORD_TOKEN{nullptr, 0, 0, 0};

inline constexpr token_type kSBLOCK_STRUCTURE_TOKEN{&kBMM_INFO_KEYWORD_TOKEN, 1, 0, 4};
inline constexpr token_type kSADDRESS_MAP_KEYWORD{&kSBLOCK_STRUCTURE_TOKEN, 2, 0, 0};
inline constexpr token_type kSADDRESS_SPACE_KEYWORD{&kSBLOCK_STRUCTURE_TOKEN, 2, 1, 0};
inline constexpr token_type kSADDRESS_TEMPLATE_KEYWORD{&kSBLOCK_STRUCTURE_TOKEN, 2, 2, 0};
inline constexpr token_type kSADDRESS_JOIN_KEYWORD{&kSBLOCK_STRUCTURE_TOKEN, 2, 3, 0};

inline constexpr token_type kSADDRESS_MODIFIER_TOKEN{&kBMM_INFO_KEYWORD_TOKEN, 1, 1, 2};
inline constexpr token_type kSBYTE_ADDRESSING_KEYWORD{&kSADDRESS_MODIFIER_TOKEN, 2, 0, 0};
inline constexpr token_type kSWORD_ADDRESSING_KEYWORD{&kSADDRESS_MODIFIER_TOKEN, 2, 1, 0};

inline constexpr token_type kSLINE_STRUCTURE_TOKEN{&kBMM_INFO_KEYWORD_TOKEN, 1, 2, 2};
inline constexpr token_type kSDEFINE_MEM_TYPE_KEYWORD{&kSLINE_STRUCTURE_TOKEN, 2, 0, 0};
inline constexpr token_type kSADDRESS_INSTANCE_KEYWORD{&kSLINE_STRUCTURE_TOKEN, 2, 1, 0};

inline constexpr token_type kEADDRESS_RANGE_TOKEN{&kBMM_INFO_KEYWORD_TOKEN, 1, 3, 2};
inline constexpr token_type kEREFERENCE_INFO_KEYWORD{&kEADDRESS_RANGE_TOKEN, 2, 0, 0};
inline constexpr token_type kFADDRESS_RANGE_KEYWORD{&kEADDRESS_RANGE_TOKEN, 2, 1, 0};

inline constexpr token_type kSMISCELLANEOUS_INFO_TOKEN{&kBMM_INFO_KEYWORD_TOKEN, 1, 4, 3};
inline constexpr token_type kSBMM_FILE_OUTPUT_NAME_KEYWORD{&kSMISCELLANEOUS_INFO_TOKEN, 2, 0, 0};
inline constexpr token_type kSHIERARCHY_LOCATION_KEYWORD{&kSMISCELLANEOUS_INFO_TOKEN, 2, 1, 0};
inline constexpr token_type kCOMPONENT_INFO_KEYWORD{&kSMISCELLANEOUS_INFO_TOKEN, 2, 2, 0};

// Files of a component.
inline constexpr token_type kCOMPONENT_INIT_TOKEN{&kBMM_INFO_KEYWORD_TOKEN, 1, 5, 3};
inline constexpr token_type kCOMPONENT_INIT_AUTO_KEYWORD{&kCOMPONENT_INIT_TOKEN, 2, 0, 0};
inline constexpr token_type kCOMPONENT_INIT_INPUT_KEYWORD{&kCOMPONENT_INIT_TOKEN, 2, 1, 0};
inline constexpr token_type kCOMPONENT_INIT_OUTPUT_KEYWORD{&kCOMPONENT_INIT_TOKEN, 2, 2, 0};

// The table, ended by a row without a word, and the set over it.
extern const keyword_row bmm_info_keywords[];
extern token_set bmm_info_keyword_set;

// What ends the language: the end of the text, or the next switch.
inline constexpr const token_type* MF_EOFTerminators[] = {&kEND_OF_FILE_OP, &kCMD_LINE_SWITCH, nullptr};

// What ends a range whose words are kept for later.
inline constexpr const token_type* ELAB_Terminators[] = {&kEND_OF_FILE_OP, &kCMD_LINE_SWITCH, &kSBLOCK_STRUCTURE_TOKEN,
    &kEADDRESS_RANGE_TOKEN, &kSLINE_STRUCTURE_TOKEN, &kSADDRESS_MODIFIER_TOKEN, &kSMISCELLANEOUS_INFO_TOKEN, nullptr};

#endif
