// macros.h - macros: defined, looked up, expanded.
// SPDX-License-Identifier: Apache-2.0
//
// Macros live in the scopes of the stream's root. A macro with parameters opens a scope for its arguments, which are
// macros themselves; what its body defines goes there too, and ends with it unless it is exported.
#ifndef MEMDATA_PARSE_UTILS_MACROS_H
#define MEMDATA_PARSE_UTILS_MACROS_H

#include "ParseUtils/streams.h"
#include "StringUtils/StringUtils.h"

enum MacroKind : u32 {
    kSIMPLE_MACRO = 1,
    kPARAMETER_MACRO = 2,
    kFUNCTION_MACRO = 3,
};

struct MacroElementType {
    u32 kind;              // of MacroKind
    bool inExpansion;      // a stream of this macro is open: it does not expand inside itself
    bool deleteWhenPopped; // nothing but that stream holds it
    StrList parameters;    // names of the formal parameters; null without any
    u32 parameterCount;
    char* body; // a managed string
    u32 bodyLength;
    char* quotedBody; // the body in double quotes while it is being stringized, else null
    u32 quotedLength; // bodyLength plus 2
};

// A macro that takes over parameters and body, also on failure. Null when memory is exhausted.
MacroElementType* create_macro_element(unsigned kind, StrList parameters, unsigned count, char* body, unsigned length);
// Deletes a macro; one that is in expansion goes when its stream is popped.
void delete_macro_element(void* macro);

// The macro of a name in the innermost scope, and in those around it unless localOnly; null for none.
MacroElementType* lookup_macro_symbol(const parse_stream* stream, bool localOnly, const char* name);
// Enters a new macro into the innermost scope. Takes over parameters and body, also on failure. out may be null.
// Status 0, 7.
int insert_macro_symbol(parse_stream* stream, const char* name, unsigned kind, StrList parameters, unsigned count,
    char* body, unsigned length, MacroElementType** out);
// Moves a macro from the innermost scope to the one around it, or to the outermost one.
//   found  out: there is such a macro
// Status 0; 21 with an alert when the name is taken there; the macro is gone then. 7.
int export_macro_symbol(parse_stream* stream, const token_element* name, bool toGlobal, bool* found);

// Reads a name, in parentheses or not, and looks it up.
int is_macro_defined(parse_stream* stream, token_element* token, bool* isDefined);

// Reads a definition from its name on.
//   kind         that a definition has when it has parameters
//   brackets     for the body, as for strdup_to_token
//   isSet        only simple macros; numbers are evaluated, an old body is replaced
int define_macro(parse_stream* stream, token_element* token, unsigned kind, const token_type* const* brackets,
    const token_type* const* terminators, bool isSet);
// The two ways on, from behind the name.
int create_macro_symbol_entry(parse_stream* stream, token_element* token, const token_element* name, unsigned kind,
    const token_type* const* brackets, const token_type* const* terminators);
int set_macro(parse_stream* stream, token_element* token, const token_element* name, unsigned kind,
    const token_type* const* terminators);
// Reads formal parameters behind "(" up to ")".
int parse_macro_formal_parameters(parse_stream* stream, token_element* token, StrList* parameters, u32* count);

// Expands what the token stands for: a built-in, a macro, and in macro bodies a stringized or pasted word.
//   quoted  the macro's text is put in double quotes
//   status  out
// True when a stream was pushed, from which reading goes on.
bool do_macro_expansion(parse_stream* stream, token_element* token, bool quoted, int* status);
bool do_builtin_macro(parse_stream* stream, token_element* token, int* status);
// Pushes the text of a macro. Nothing happens while it is in expansion.
//   token   is used for reading arguments
//   pushed  out
int push_macro_stream(const char* name, parse_stream* stream, token_element* token, MacroElementType* macro,
    bool quoted, bool deleteWhenPopped, bool* pushed);
// Reads the arguments of a macro from "(" to ")" and opens the scope that holds them. No scope is open when the status
// is not 0.
int parse_macro_arguments(parse_stream* stream, token_element* token, const MacroElementType* macro);

namespace memdata {

inline void deleteMacro(MacroElementType* macro) {
    delete_macro_element(macro);
}
using MacroOwner = Tracked<MacroElementType, deleteMacro>;

// Pushes a text that is read once, as a "rescan", and is released with it.
int pushRescan(parse_stream* stream, OwnedString text, u32 length);

} // namespace memdata

#endif
