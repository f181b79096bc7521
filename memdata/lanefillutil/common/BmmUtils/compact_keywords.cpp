// compact_keywords.cpp - the words of the compact language.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/compact_keywords.h"

constexpr keyword_row bmm_info_keywords[] = {
    // word, token, compares with case
    {"p", &kSADDRESS_MAP_KEYWORD, false},
    {"BMM_INFO_PROCESSOR", &kSADDRESS_MAP_KEYWORD, false},
    {"a", &kSADDRESS_SPACE_KEYWORD, false},
    {"BMM_INFO_ADDRESS_SPACE", &kSADDRESS_SPACE_KEYWORD, false},
    {"t", &kSADDRESS_TEMPLATE_KEYWORD, false},
    {"j", &kSADDRESS_JOIN_KEYWORD, false},
    {"n", &kSBMM_FILE_OUTPUT_NAME_KEYWORD, false},
    {"h", &kSHIERARCHY_LOCATION_KEYWORD, false},
    {"e", &kEREFERENCE_INFO_KEYWORD, false},
    {"f", &kFADDRESS_RANGE_KEYWORD, false},
    {"c", &kCOMPONENT_INFO_KEYWORD, false},
    {"BMM_INFO_MEMORY_DEVICE", &kCOMPONENT_INFO_KEYWORD, false},
    {"<<", &kCOMPONENT_INIT_AUTO_KEYWORD, false}, // ahead of "<", which begins it
    {"<", &kCOMPONENT_INIT_INPUT_KEYWORD, false},
    {">", &kCOMPONENT_INIT_OUTPUT_KEYWORD, false},
    {"byte", &kSBYTE_ADDRESSING_KEYWORD, false},
    {"word", &kSWORD_ADDRESSING_KEYWORD, false},
    {"index", &kSWORD_ADDRESSING_KEYWORD, false},
    {"m", &kSDEFINE_MEM_TYPE_KEYWORD, false},
    {"i", &kSADDRESS_INSTANCE_KEYWORD, false},
    {},
};

constinit token_set bmm_info_keyword_set{bmm_info_keywords};
