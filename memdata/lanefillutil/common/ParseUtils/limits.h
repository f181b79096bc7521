// limits.h - what a text may not exceed, with what is said when it does.
// SPDX-License-Identifier: Apache-2.0
//
// The limits are far above anything that is written by hand or by a tool; they keep a text that runs away (a file
// that includes itself, macros that double, a file that is no text) from taking the process with it, and end it within
// seconds. The alerts carry the place: file, line, and the chain of files and macros that led there.
#ifndef MEMDATA_PARSE_UTILS_LIMITS_H
#define MEMDATA_PARSE_UTILS_LIMITS_H

#include "SystemUtils/messages.h"

namespace memdata {

// Characters of one token, of a joined text too. Argument: the limit.
inline constexpr u32 kMAX_TOKEN_BYTES = u32{1} << 20;
inline constexpr Alert_message_type kERROR_TOKEN_TOO_LONG{0, "One word or text is longer than the limit of %ld bytes."};

// Files inside files. Arguments: the file, the limit.
inline constexpr u32 kMAX_INCLUDE_DEPTH = 200;
inline constexpr Alert_message_type kERROR_INCLUDES_TOO_DEEP{
    0, "File '%s' can not be included, the limit of %ld nested files is reached."};

// Macro bodies and rescanned texts inside each other. Arguments: the macro, the limit.
inline constexpr u32 kMAX_EXPANSION_DEPTH = 1000;
inline constexpr Alert_message_type kERROR_EXPANSIONS_TOO_DEEP{
    0, "Macro '%s' can not be expanded, the limit of %ld nested expansions is reached."};

// Text of macro bodies and rescans pushed while one stream is open. Arguments: the macro, the limit.
inline constexpr u64 kMAX_PUSHED_BYTES = u64{128} << 20;
inline constexpr Alert_message_type kERROR_TOO_MUCH_PUSHED_TEXT{
    0, "Macro '%s' can not be expanded, the limit of %ld bytes of macro text is reached."};

// Parentheses inside each other. Argument: the limit.
inline constexpr u32 kMAX_EXPRESSION_DEPTH = 1000;
inline constexpr Alert_message_type kERROR_EXPRESSION_TOO_DEEP{
    0, "The limit of %ld nested expression parentheses is reached."};

// Open conditionals and loops. Arguments: the directive, the limit.
inline constexpr u32 kMAX_DIRECTIVE_DEPTH = 1000;
inline constexpr Alert_message_type kERROR_DIRECTIVES_TOO_DEEP{
    0, "Directive '%s' can not be opened, the limit of %ld nested directives is reached."};

// Rounds of one loop. Arguments: the directive, the limit.
inline constexpr u64 kMAX_LOOP_ITERATIONS = 10'000'000;
inline constexpr Alert_message_type kERROR_TOO_MANY_ITERATIONS{
    0, "The loop of '%s' exceeded the limit of %ld iterations."};

// Text that loops go back over while one stream is open: keeps loops inside loops from running for ever, each below
// its own limit. Arguments: the directive, the limit.
inline constexpr u64 kMAX_REPEATED_BYTES = u64{256} << 20;
inline constexpr Alert_message_type kERROR_TOO_MUCH_REPEATED_TEXT{
    0, "The loop of '%s' can not go on, the limit of %lld bytes of repeated text is reached."};

// Tokens that loops go back over, and those of macro bodies and rescans, while one stream is open: what reading takes
// time for, however short the text. A loop that makes 400,000 blocks by a function stays below; one that runs away meets
// it in seconds. Arguments: the directive or the macro, the limit.
inline constexpr u64 kMAX_REPEATED_TOKENS = 50'000'000;
inline constexpr u64 kTOKENS_OF_A_JUMP = 4; // what going back counts by itself
inline constexpr Alert_message_type kERROR_TOO_MANY_REPEATED_TOKENS{
    0, "The loop of '%s' can not go on, the limit of %lld repeated tokens is reached."};
inline constexpr Alert_message_type kERROR_TOO_MANY_MACRO_TOKENS{
    0, "Macro '%s' can not be expanded, the limit of %lld repeated tokens is reached."};

} // namespace memdata

#endif
