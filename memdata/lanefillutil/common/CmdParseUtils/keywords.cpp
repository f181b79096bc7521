// keywords.cpp - the keyword tables of the command.
// SPDX-License-Identifier: Apache-2.0
#include "CmdParseUtils/keywords.h"

namespace {

// The first row that the text begins with wins: longer switches stand ahead of those that they begin with.
constexpr keyword_row kSWITCHES[] = {
    {"-bd", &kBD_SWITCH, true},
    {"-md", &kBD_SWITCH, true},
    {"-bx", &kBX_SWITCH, true},
    {"-bf", &kMF_SWITCH, true},
    {"-mf", &kMF_SWITCH, true},
    {"-bm", &kBM_SWITCH, true},
    {"-mm", &kBM_SWITCH, true},
    {"-bt", &kBT_SWITCH, true},
    {"-log", &kLOG_SWITCH, true},
    {"-mx", &kMX_SWITCH, true},
    {"-dataset", &kDATASET_SWITCH, true},
    {"-d", &kDUMP_SWITCH, true},
    {"-fill", &kFILL_SWITCH, true},
    {"-f", &kF_SWITCH, true},
    {"-h", &kH_SWITCH, true},
    {"-image", &kIMAGE_SWITCH, true},
    {"-bytewidth", &kBYTEWIDTH_SWITCH, true},
    {"-i", &kIGNORE_SWITCH, true},
    {"-a", &kAUTO_INIT_SWITCH, true},
    {"-o", &kO_SWITCH, true},
    {"-pp", &kPP_SWITCH, true},
    {"-pg", &kPG_SWITCH, true},
    {"-p", &kP_SWITCH, true},
    {"-q", &kQ_SWITCH, true},
    {"-u", &kU_SWITCH, true},
    {"-workflow", &kWORKFLOW_SWITCH, true},
    {"-w", &kW_SWITCH, true},
    {"-I", &kINCLUDE_SWITCH, true},
    {"-D", &kDEFINE_SWITCH, true},
    {"-msgc", &kMSGC_SWITCH, true},
    {"-msg", &kMSG_SWITCH, true},
    {"-encrypt", &kKEY_SWITCH, true},
    {"-split", &kSPLIT_SWITCH, true},
    {},
};

constexpr keyword_row kON_OFF_WORDS[] = {
    {"on", &kON_KEYWORD, false},
    {"yes", &kON_KEYWORD, false},
    {"true", &kON_KEYWORD, false},
    {"off", &kOFF_KEYWORD, false},
    {"no", &kOFF_KEYWORD, false},
    {"false", &kOFF_KEYWORD, false},
    {},
};

constexpr keyword_row kBD_WORDS[] = {
    {"tag", &kTAG_KEYWORD, false},
    {"boot", &kBOOT_KEYWORD, false},
    {"start", &kSTART_KEYWORD, false},
    {},
};

constexpr keyword_row kBM_WORDS[] = {
    {"root", &kROOT_KEYWORD, false},
    {},
};

// One extension for each format, the one that it is written with.
constexpr keyword_row kOUTPUT_FORMATS[] = {
    {"txt", &kOUTPUT_FORMAT_KEYWORD, false},
    {"xml", &kOUTPUT_FORMAT_KEYWORD, false},
    {"nky", &kOUTPUT_FORMAT_KEYWORD, false},
    {"dmp", &kOUTPUT_FORMAT_KEYWORD, false},
    {"bmm", &kOUTPUT_FORMAT_KEYWORD, false},
    {"log", &kOUTPUT_FORMAT_KEYWORD, false},
    {"msg", &kOUTPUT_FORMAT_KEYWORD, false},
    {"c", &kOUTPUT_FORMAT_KEYWORD, false},
    {"ucf", &kOUTPUT_FORMAT_KEYWORD, false},
    {"vhd", &kOUTPUT_FORMAT_KEYWORD, false},
    {"v", &kOUTPUT_FORMAT_KEYWORD, false},
    {"mem", &kOUTPUT_FORMAT_KEYWORD, false},
    {"bit", &kOUTPUT_FORMAT_KEYWORD, false},
    {"rbt", &kOUTPUT_FORMAT_KEYWORD, false},
    {"elf", &kOUTPUT_FORMAT_KEYWORD, false},
    {"drf", &kOUTPUT_FORMAT_KEYWORD, false},
    {"bif", &kOUTPUT_FORMAT_KEYWORD, false},
    {"int", &kOUTPUT_FORMAT_KEYWORD, false},
    {"inb", &kOUTPUT_FORMAT_KEYWORD, false},
    {"bin", &kOUTPUT_FORMAT_KEYWORD, false},
    {"img", &kOUTPUT_FORMAT_KEYWORD, false},
    {"mif", &kOUTPUT_FORMAT_KEYWORD, false},
    {"coe", &kOUTPUT_FORMAT_KEYWORD, false},
    {"dat", &kOUTPUT_FORMAT_KEYWORD, false},
    {"hex", &kOUTPUT_FORMAT_KEYWORD, false},
    {"mcs", &kOUTPUT_FORMAT_KEYWORD, false},
    {"exo", &kOUTPUT_FORMAT_KEYWORD, false},
    {},
};

constexpr keyword_row kINTSTYLE_WORDS[] = {
    {"silent", &kSILENT_KEYWORD, false},
    {"vek", &kVEK_KEYWORD, false},
    {"tollflow", &kTOLLFLOW_KEYWORD, false},
    {},
};

constexpr keyword_row kKEY_WORDS[] = {
    {"efuse", &kEFUSE_KEYWORD, false},
    {"bbram", &kBBRAM_KEYWORD, false},
    {"Key0", &kKEY0_KEYWORD, false},
    {"HMAC", &kHMAC_KEYWORD, false},
    {"StartCBC", &kSTARTCBC_KEYWORD, false},
    {},
};

} // namespace

constinit token_set cmd_line_keyword_set{kSWITCHES};
constinit token_set on_off_modifier_keywords{kON_OFF_WORDS};
constinit token_set bd_modifier_keywords{kBD_WORDS};
constinit token_set bm_modifier_keywords{kBM_WORDS};
constinit token_set output_format_keywords{kOUTPUT_FORMATS};
constinit token_set intstyle_modifier_keywords{kINTSTYLE_WORDS};
constinit token_set key_modifier_keywords{kKEY_WORDS};
