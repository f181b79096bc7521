// symbol_tables.h - the words of the front end itself.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PARSE_UTILS_SYMBOL_TABLES_H
#define MEMDATA_PARSE_UTILS_SYMBOL_TABLES_H

#include "ParseUtils/keyword_sets.h"

namespace memdata {

// The order counts: the first row that matches the text wins, each over its own full length. ">" and "<" stand ahead
// of "<<=", ">>=", "<<" and ">>", on purpose: a shift in a text comes out as two tokens, and these four rows are
// reached only by keyword sets that list their words again. Old texts rely on it.
inline constexpr keyword_row kOPERATOR_SYMBOLS[] = {
    {"\xFF", &kEND_OF_FILE, true},
    {"\r\n", &kEND_OF_LINE, true},
    {"\n\r", &kEND_OF_LINE, true},
    {"\n", &kEND_OF_LINE, true},
    {"\r", &kEND_OF_LINE, true},
    {"//", &kC_PLUS_PLUS_COMMENT, true},
    {"/*", &kSTART_C_COMMENT, true},
    {"*/", &kEND_C_COMMENT, true},
    {"!~", &kSTRING_NOT_EQUAL, true},
    {"=~", &kSTRING_EQUAL, true},
    {">~", &kSTRING_GREATER_THAN_EQUAL_TO, true},
    {"<~", &kSTRING_LESS_THAN_EQUAL_TO, true},
    {"!=", &kNOT_EQUAL, true},
    {"!", &kLOGICAL_NOT, true},
    {"&&", &kLOGICAL_AND, true},
    {"||", &kLOGICAL_OR, true},
    {"==", &kLOGICAL_EQUAL, true},
    {">=", &kGREATER_THAN_EQUAL_TO, true},
    {">", &kGREATER_THAN, true},
    {"<=", &kLESS_THAN_EQUAL_TO, true},
    {"<", &kLESS_THAN, true},
    {"%=", &kMOD_EQUAL, true},
    {"&=", &kAND_EQUAL, true},
    {"*=", &kMULTIPLY_EQUAL, true},
    {"+=", &kPLUS_EQUAL, true},
    {"-=", &kMINUS_EQUAL, true},
    {"/=", &kDIVIDE_EQUAL, true},
    {"<<=", &kLEFT_SHIFT_EQUAL, true},
    {">>=", &kRIGHT_SHIFT_EQUAL, true},
    {"^=", &kXOR_EQUAL, true},
    {"|=", &kOR_EQUAL, true},
    {"=", &kEQUAL, true},
    {"<<", &kLEFT_SHIFT, true},
    {">>", &kRIGHT_SHIFT, true},
    {"++", &kPLUS_PLUS, true},
    {"--", &kMINUS_MINUS, true},
    {"->", &kPOINTER_INDIRECT, true},
    {"+", &kADDITION, true},
    {"-", &kMINUS, true},
    {"*", &kMULTIPLY, true},
    {"/", &kDIVIDE, true},
    {"%", &kMODULUS, true},
    {"&", &kAND, true},
    {"|", &kOR, true},
    {"^", &kXOR, true},
    {"~", &kUNARY_NEGATION, true},
    {"\"", &kSTRING_QUOTE, true},
    {"#", &kPOUND_SIGN, true},
    {"$", &kDOLLAR_SIGN, true},
    {"'", &kCHARACTER_QUOTE, true},
    {"(", &kLEFT_PARENTHESIS, true},
    {")", &kRIGHT_PARENTHESIS, true},
    {",", &kCOMMA, true},
    {"..", &kFILE_ABOVE_DIR_TOKEN, true},
    {".", &kPERIOD, true},
    {":", &kCOLON, true},
    {";", &kSEMICOLON, true},
    {"?", &kQUESTION_MARK, true},
    {"@", &kAT_SIGN, true},
    {"[", &kLEFT_BRACKET, true},
    {"\\", &kBACK_SLASH, true},
    {"]", &kRIGHT_BRACKET, true},
    {"`", &kTICK_MARK, true},
    {"{", &kLEFT_BRACES, true},
    {"}", &kRIGHT_BRACES, true},
    {},
};

inline constexpr keyword_row kBUILTIN_KEYWORDS[] = {
    {"defined", &kPREPROCESS_DEFINED_KEYWORD, true},
    {"true", &kPREPROCESS_TRUE_KEYWORD, false},
    {"false", &kPREPROCESS_FALSE_KEYWORD, false},
    {"__FILE__", &kPREPROCESS_FILE_KEYWORD, true},
    {"__LINE__", &kPREPROCESS_LINE_KEYWORD, true},
    {"__DATE__", &kPREPROCESS_DATE_KEYWORD, true},
    {"__TIME__", &kPREPROCESS_TIME_KEYWORD, true},
    {},
};

// What follows a "#".
inline constexpr keyword_row kPREPROCESS_KEYWORDS[] = {
    {"#", &kPREPROCESS_CONCAT_KEYWORD, true},
    {"{", &kPREPROCESS_INLINE_MACRO_KEYWORD, true},
    {"ifndef", &kPREPROCESS_IFNDEF_KEYWORD, true},
    {"ifdef", &kPREPROCESS_IFDEF_KEYWORD, true},
    {"if", &kPREPROCESS_IF_KEYWORD, true},
    {"elif", &kPREPROCESS_ELIF_KEYWORD, true},
    {"else", &kPREPROCESS_ELSE_KEYWORD, true},
    {"endif", &kPREPROCESS_ENDIF_KEYWORD, true},
    {"include", &kPREPROCESS_INCLUDE_KEYWORD, true},
    {"define", &kPREPROCESS_DEFINE_KEYWORD, true},
    {"set", &kPREPROCESS_SET_KEYWORD, true},
    {"undef", &kPREPROCESS_UNDEF_KEYWORD, true},
    {"for", &kPREPROCESS_FOR_KEYWORD, true},
    {"endfor", &kPREPROCESS_ENDFOR_KEYWORD, true},
    {"while", &kPREPROCESS_WHILE_KEYWORD, true},
    {"endwhile", &kPREPROCESS_ENDWHILE_KEYWORD, true},
    {"switch", &kPREPROCESS_SWITCH_KEYWORD, true},
    {"case", &kPREPROCESS_CASE_KEYWORD, true},
    {"default", &kPREPROCESS_DEFAULT_KEYWORD, true},
    {"endswitch", &kPREPROCESS_ENDSWITCH_KEYWORD, true},
    {"continue", &kPREPROCESS_CONTINUE_KEYWORD, true},
    {"break", &kPREPROCESS_BREAK_KEYWORD, true},
    {"function", &kPREPROCESS_FUNCTION_KEYWORD, true},
    {"endfunction", &kPREPROCESS_ENDFUNCTION_KEYWORD, true},
    {"return", &kPREPROCESS_RETURN_KEYWORD, true},
    {"error", &kPREPROCESS_ERROR_KEYWORD, true},
    {"warning", &kPREPROCESS_WARNING_KEYWORD, true},
    {"info", &kPREPROCESS_INFO_KEYWORD, true},
    {"emit", &kPREPROCESS_EMIT_KEYWORD, true},
    {"pragma", &kPREPROCESS_PRAGMA_KEYWORD, true},
    {"export", &kPREPROCESS_EXPORT_KEYWORD, true},
    {"global", &kPREPROCESS_GLOBAL_KEYWORD, true},
    {},
};

inline constexpr keyword_row kPRAGMA_KEYWORDS[] = {
    {"comments", &kPRAGMA_COMMENTS_KEYWORD, false},
    {"output", &kPRAGMA_OUTPUT_KEYWORD, false},
    {"trace", &kPRAGMA_TRACE_KEYWORD, false},
    {"enabled", &kPRAGMA_ENABLED_KEYWORD, false},
    {"disabled", &kPRAGMA_DISABLED_KEYWORD, false},
    {"directives", &kPRAGMA_DIRECTIVES_KEYWORD, false},
    {"macros", &kPRAGMA_MACROS_KEYWORD, false},
    {"tokens", &kPRAGMA_TOKENS_KEYWORD, false},
    {},
};

inline constexpr keyword_row kFILE_PATH_SYMBOLS[] = {
    {"/", &kPATH_SEPARATOR_TOKEN, true},
    {"\\\\", &kWINDOWS_ABSOLUTE_SERVER_TOKEN, true},
    {"\\", &kWINDOWS_SEPARATOR_TOKEN, true},
    {":", &kVOLUME_SEPARATOR_TOKEN, true},
    {"*", &kWILD_FILENAME_TOKEN, true},
    {},
};

inline constexpr keyword_row kINSTANCE_PATH_SYMBOLS[] = {
    {"*/", &kRELATIVE_INSTANCE_PATH_TOKEN, true},
    {},
};

// The operator row that the text begins with; null for none. Looks only at rows of the first character.
const keyword_row* operatorAt(const char* text, const char* end);

} // namespace memdata

#endif
