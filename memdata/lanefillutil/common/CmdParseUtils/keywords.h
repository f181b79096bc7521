// keywords.h - the switches of the command and the words that modify them.
// SPDX-License-Identifier: Apache-2.0
//
// Switches are symbols: they match as prefixes of the text in the order of their table, case-sensitively, so that an
// argument can touch its switch ("-Dname=1", "-I/include").
#ifndef MEMDATA_CMD_PARSE_UTILS_KEYWORDS_H
#define MEMDATA_CMD_PARSE_UTILS_KEYWORDS_H

#include "ParseUtils/keyword_sets.h"

// Leaves of kCMD_LINE_SWITCH, in table order.
inline constexpr token_type kBD_SWITCH{&kCMD_LINE_SWITCH, 2, 0, 0};
inline constexpr token_type kBX_SWITCH{&kCMD_LINE_SWITCH, 2, 1, 0};
inline constexpr token_type kMF_SWITCH{&kCMD_LINE_SWITCH, 2, 2, 0};
inline constexpr token_type kBM_SWITCH{&kCMD_LINE_SWITCH, 2, 3, 0};
inline constexpr token_type kBT_SWITCH{&kCMD_LINE_SWITCH, 2, 4, 0};
inline constexpr token_type kLOG_SWITCH{&kCMD_LINE_SWITCH, 2, 5, 0};
inline constexpr token_type kMX_SWITCH{&kCMD_LINE_SWITCH, 2, 6, 0};
inline constexpr token_type kDATASET_SWITCH{&kCMD_LINE_SWITCH, 2, 7, 0};
inline constexpr token_type kDUMP_SWITCH{&kCMD_LINE_SWITCH, 2, 8, 0}; // -d
inline constexpr token_type kFILL_SWITCH{&kCMD_LINE_SWITCH, 2, 9, 0};
inline constexpr token_type kF_SWITCH{&kCMD_LINE_SWITCH, 2, 10, 0};
inline constexpr token_type kH_SWITCH{&kCMD_LINE_SWITCH, 2, 11, 0};
inline constexpr token_type kIMAGE_SWITCH{&kCMD_LINE_SWITCH, 2, 12, 0};
inline constexpr token_type kBYTEWIDTH_SWITCH{&kCMD_LINE_SWITCH, 2, 13, 0};
inline constexpr token_type kIGNORE_SWITCH{&kCMD_LINE_SWITCH, 2, 14, 0};    // -i
inline constexpr token_type kAUTO_INIT_SWITCH{&kCMD_LINE_SWITCH, 2, 15, 0}; // -a
inline constexpr token_type kO_SWITCH{&kCMD_LINE_SWITCH, 2, 16, 0};
inline constexpr token_type kPP_SWITCH{&kCMD_LINE_SWITCH, 2, 17, 0};
inline constexpr token_type kPG_SWITCH{&kCMD_LINE_SWITCH, 2, 18, 0};
inline constexpr token_type kP_SWITCH{&kCMD_LINE_SWITCH, 2, 19, 0};
inline constexpr token_type kQ_SWITCH{&kCMD_LINE_SWITCH, 2, 20, 0};
inline constexpr token_type kU_SWITCH{&kCMD_LINE_SWITCH, 2, 21, 0};
inline constexpr token_type kWORKFLOW_SWITCH{&kCMD_LINE_SWITCH, 2, 22, 0};
inline constexpr token_type kW_SWITCH{&kCMD_LINE_SWITCH, 2, 23, 0};
inline constexpr token_type kINCLUDE_SWITCH{&kCMD_LINE_SWITCH, 2, 24, 0}; // -I
inline constexpr token_type kDEFINE_SWITCH{&kCMD_LINE_SWITCH, 2, 25, 0};  // -D
inline constexpr token_type kMSGC_SWITCH{&kCMD_LINE_SWITCH, 2, 26, 0};
inline constexpr token_type kMSG_SWITCH{&kCMD_LINE_SWITCH, 2, 27, 0};
inline constexpr token_type kKEY_SWITCH{&kCMD_LINE_SWITCH, 2, 28, 0};
inline constexpr token_type kSPLIT_SWITCH{&kCMD_LINE_SWITCH, 2, 29, 0};
static_assert(kSPLIT_SWITCH.ordinal + 1 == kCMD_LINE_SWITCH.childCount);

// Classes of modifiers with their leaves.
inline constexpr token_type kON_OFF_MODIFIER{&kCMD_KEYWORD_TOKEN, 1, 1, 2};
inline constexpr token_type kON_KEYWORD{&kON_OFF_MODIFIER, 2, 0, 0};
inline constexpr token_type kOFF_KEYWORD{&kON_OFF_MODIFIER, 2, 1, 0};

inline constexpr token_type kBD_MODIFIER{&kCMD_KEYWORD_TOKEN, 1, 2, 3};
inline constexpr token_type kTAG_KEYWORD{&kBD_MODIFIER, 2, 0, 0};
inline constexpr token_type kBOOT_KEYWORD{&kBD_MODIFIER, 2, 1, 0};
inline constexpr token_type kSTART_KEYWORD{&kBD_MODIFIER, 2, 2, 0};

inline constexpr token_type kBM_MODIFIER{&kCMD_KEYWORD_TOKEN, 1, 3, 1};
inline constexpr token_type kROOT_KEYWORD{&kBM_MODIFIER, 2, 0, 0};

inline constexpr token_type kOUTPUT_FORMAT{&kCMD_KEYWORD_TOKEN, 1, 4, 1};
inline constexpr token_type kOUTPUT_FORMAT_KEYWORD{&kOUTPUT_FORMAT, 2, 0, 0}; // which one: by its text

inline constexpr token_type kINTSTYLE_MODIFIER{&kCMD_KEYWORD_TOKEN, 1, 5, 3};
inline constexpr token_type kSILENT_KEYWORD{&kINTSTYLE_MODIFIER, 2, 0, 0};
inline constexpr token_type kVEK_KEYWORD{&kINTSTYLE_MODIFIER, 2, 1, 0};
inline constexpr token_type kTOLLFLOW_KEYWORD{&kINTSTYLE_MODIFIER, 2, 2, 0};

inline constexpr token_type kKEY_MODIFIER{&kCMD_KEYWORD_TOKEN, 1, 6, 5};
inline constexpr token_type kEFUSE_KEYWORD{&kKEY_MODIFIER, 2, 0, 0};
inline constexpr token_type kBBRAM_KEYWORD{&kKEY_MODIFIER, 2, 1, 0};
inline constexpr token_type kKEY0_KEYWORD{&kKEY_MODIFIER, 2, 2, 0};
inline constexpr token_type kHMAC_KEYWORD{&kKEY_MODIFIER, 2, 3, 0};
inline constexpr token_type kSTARTCBC_KEYWORD{&kKEY_MODIFIER, 2, 4, 0};

extern token_set cmd_line_keyword_set;
extern token_set on_off_modifier_keywords;
extern token_set bd_modifier_keywords;
extern token_set bm_modifier_keywords;
extern token_set output_format_keywords;
extern token_set intstyle_modifier_keywords; // no switch uses it now
extern token_set key_modifier_keywords;      // no switch uses it now

// What ends an argument of several words: the next switch, or the end of the text.
inline constexpr const token_type* commandLineMacroTerminators[] = {&kCMD_LINE_SWITCH, &kEND_OF_FILE_OP, nullptr};
inline constexpr const token_type* byteWidthTerminationTokens[] = {&kCMD_LINE_SWITCH, &kEND_OF_FILE_OP, nullptr};

// Letters behind a blank are accepted and not named in the alert about others.
inline constexpr const char* kCMD_D_OPTIONS = "aAbBeErRfFuUpP";
inline constexpr const char* kCMD_Q_OPTIONS = "sSiIwWeE xXfFdD";
inline constexpr const char* kCMD_O_OPTIONS = "uUvVhHmMbBpPdDiIaA";

#endif
