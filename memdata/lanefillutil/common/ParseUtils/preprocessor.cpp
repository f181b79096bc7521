// preprocessor.cpp - the loop between scanner and clients: directives are acted on, macros expanded, dead text dropped.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/preprocessor.h"

#include "ParseUtils/directive_line.h"
#include "ParseUtils/directives.h"
#include "ParseUtils/state.h"

#include <algorithm>
#include <iterator>

using namespace memdata;

StrList gPP_include_path_list = nullptr;

namespace {

struct DirectiveRow {
    const token_type* type;
    int (*run)(parse_stream* stream, token_element* token);
};

// In the order of the types in their class.
constexpr DirectiveRow kDIRECTIVES[] = {
    {&kPREPROCESS_IFNDEF_KEYWORD, do_ifndef_op},
    {&kPREPROCESS_IFDEF_KEYWORD, do_ifdef_op},
    {&kPREPROCESS_IF_KEYWORD, do_if_op},
    {&kPREPROCESS_ELIF_KEYWORD, do_elif_op},
    {&kPREPROCESS_ELSE_KEYWORD, do_else_op},
    {&kPREPROCESS_ENDIF_KEYWORD, do_endif_op},
    {&kPREPROCESS_INCLUDE_KEYWORD, do_include_op},
    {&kPREPROCESS_DEFINE_KEYWORD, do_define_op},
    {&kPREPROCESS_SET_KEYWORD, do_set_op},
    {&kPREPROCESS_UNDEF_KEYWORD, do_undef_op},
    {&kPREPROCESS_FOR_KEYWORD, do_for_op},
    {&kPREPROCESS_ENDFOR_KEYWORD, do_endfor_op},
    {&kPREPROCESS_WHILE_KEYWORD, do_while_op},
    {&kPREPROCESS_ENDWHILE_KEYWORD, do_endwhile_op},
    {&kPREPROCESS_SWITCH_KEYWORD, do_switch_op},
    {&kPREPROCESS_CASE_KEYWORD, do_switch_op},
    {&kPREPROCESS_DEFAULT_KEYWORD, do_switch_op},
    {&kPREPROCESS_ENDSWITCH_KEYWORD, do_switch_op},
    {&kPREPROCESS_CONTINUE_KEYWORD, do_continue_op},
    {&kPREPROCESS_BREAK_KEYWORD, do_break_op},
    {&kPREPROCESS_FUNCTION_KEYWORD, do_function_op},
    {&kPREPROCESS_ENDFUNCTION_KEYWORD, do_endfunction_op},
    {&kPREPROCESS_RETURN_KEYWORD, do_return_op},
    {&kPREPROCESS_ERROR_KEYWORD, do_error_op},
    {&kPREPROCESS_WARNING_KEYWORD, do_warning_op},
    {&kPREPROCESS_INFO_KEYWORD, do_info_op},
    {&kPREPROCESS_EMIT_KEYWORD, do_emit_op},
    {&kPREPROCESS_PRAGMA_KEYWORD, do_pragma_op},
    {&kPREPROCESS_EXPORT_KEYWORD, do_export_op},
    {&kPREPROCESS_GLOBAL_KEYWORD, do_global_op},
};
static_assert(std::size(kDIRECTIVES) == kPREPROCESS_TOKEN.childCount);
static_assert([] {
    for (u32 i = 0; i < std::size(kDIRECTIVES); ++i)
        if (kDIRECTIVES[i].type->ordinal != i) return false;
    return true;
}());

// These decide themselves whether they are shown: their condition holds or not.
bool opens_loop(const token_type* type) {
    return type == &kPREPROCESS_FOR_KEYWORD || type == &kPREPROCESS_WHILE_KEYWORD;
}

bool traces(const parse_stream* stream, u32 mode) {
    return (activeContext(stream)->parseModes & mode) != 0;
}

// A macro can stand only where words of texts and the marks of macro bodies are.
bool can_expand(const parse_stream* stream, const token_type* type) {
    return type == &kIDENTIFIER_TOKEN || isOfClass(type, kPREPROCESS_BUILTIN_TOKEN) ||
           (activeContext(stream)->contextState & (kCONTEXT_MACRO_BODY | kCONTEXT_RESCAN)) != 0;
}

enum class Outcome { kDELIVER, kREAD_ON };

int act_on_token(parse_stream* stream, token_element* token, Outcome* outcome) {
    *outcome = Outcome::kREAD_ON;
    const token_type* type = token->type;
    if (type == &kPREPROCESS_INLINE_MACRO_KEYWORD) return do_preprocess_op(stream, token);
    if (isOfClass(type, kPREPROCESS_TOKEN) && !traces(stream, kMODE_NO_DIRECTIVES))
        return do_preprocess_op(stream, token);
    // The end of the text is delivered in any case: nothing follows it.
    if (type != &kEND_OF_FILE && !isTextLive(stream)) return 0;
    int status = 0;
    if (can_expand(stream, type) && do_macro_expansion(stream, token, false, &status)) return status;
    *outcome = Outcome::kDELIVER;
    return status;
}

} // namespace

void register_parsing_include_search_paths(StrList paths) {
    registerParseFinalizer();
    gPP_include_path_list = paths;
}

int internal_get_next_token(parse_stream* stream, token_element* token) {
    for (;;) {
        if (int status = parse_filtered_token(stream, token); status != 0) return status;
        if (traces(stream, kMODE_TRACE_TOKENS)) output_preprocess_trace(stream, token, "Token", nullptr);
        Outcome outcome = Outcome::kDELIVER;
        const int status = act_on_token(stream, token, &outcome);
        if (status != 0 || outcome == Outcome::kDELIVER) return status;
    }
}

int do_preprocess_op(parse_stream* stream, token_element* token) {
    const NestedRead nested(stream);
    if (int status = nested.check(token, token->text); status != 0) return status;
    if (token->type == &kPREPROCESS_INLINE_MACRO_KEYWORD) return do_inline_macro_op(stream, token);
    const token_type* type = token->type;
    if (type->ordinal >= std::size(kDIRECTIVES)) return 0;
    if (traces(stream, kMODE_TRACE_DIRECTIVES) && isTextLive(stream) && !opens_loop(type))
        output_preprocess_trace(stream, token, "Directive", nullptr);

    parse_stream* context = activeContext(stream);
    const int status = kDIRECTIVES[type->ordinal].run(stream, token);
    if (status != 0 || type == &kPREPROCESS_INCLUDE_KEYWORD || endsLine(token)) return status;
    return skipLine(context, token);
}

// Reserved words.
int do_switch_op(parse_stream*, token_element*) {
    return 0;
}
