// macro_definitions.cpp - #define, #set, #function: names, formal parameters, bodies.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/directive_line.h"
#include "ParseUtils/directives.h"
#include "ParseUtils/expressions.h"
#include "ParseUtils/look_ahead.h"
#include "ParseUtils/numbers.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/containers.h"
#include "platform/HEXAll.h"

#include <cstring>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using namespace memdata;

namespace {

constexpr const char* kFUNCTION_END = "\n#return"; // running off the end of a function leaves it

void delete_list(std::remove_pointer_t<StrList>* list) {
    StrListDelete(list);
}
using ListOwner = Tracked<std::remove_pointer_t<StrList>, delete_list>;

int make_list(std::vector<OwnedString>* names, ListOwner* list) {
    if (names->empty()) return 0;
    try {
        list->reset(StrListNew(names->size()));
    } catch (const HEXInternalException&) {
        return 7;
    }
    for (size_t i = 0; i < names->size(); ++i) StrListSet(list->get(), i, (*names)[i].release());
    return 0;
}

// Names up to ")". A name may stand only once.
int read_names(parse_stream* stream, token_element* token, std::vector<OwnedString>* names) {
    std::set<std::string, std::less<>> known;
    for (;;) {
        if (int status = nextPlainToken(stream, token); status != 0) return status;
        if (token->type == &kRIGHT_PARENTHESIS && names->empty()) return 0;
        if (token->type != &kIDENTIFIER_TOKEN || !known.emplace(token->text).second)
            return refuseToken(stream, token, "formal parameter name expected");
        OwnedString name(StrDup(token->text)); // owned while the list grows
        if (name == nullptr) return 7;
        names->push_back(std::move(name));
        if (int status = nextPlainToken(stream, token); status != 0) return status;
        if (token->type == &kRIGHT_PARENTHESIS) return 0;
        if (token->type != &kCOMMA) return refuseToken(stream, token, "formal parameter name expected");
    }
}

bool has_body(const MacroElementType* macro, const char* body, u32 length) {
    return macro->bodyLength == length && std::memcmp(macro->body, body, length) == 0;
}

int report_redefinition(parse_stream* stream, const token_element* name, bool isSame) {
    if (isSame) return PrintWarningLocation(stream, kWARNING_DUPLICATE_MACRO_DEFINITION, 0, name, name->text);
    return PrintErrorLocation(stream, kERROR_ILLEAGAL_MACRO_REDEFINITION, kPREPROCESS_FAILURE, name, name->text);
}

// Whether a macro has parameters is seen at what touches its name.
int read_macro_form(parse_stream* stream, token_element* token, const token_element* name, unsigned* kind, bool isSet) {
    constexpr const char* kWRONG_TYPE = "illegal macro type for preprocessor directive";
    {
        const ParseModes blanks(stream, kMODE_WHITESPACE, true);
        if (int status = parse_filtered_token(stream, token); status != 0) return status;
    }
    const bool isSimple = token->type == &kWHITESPACE_TOKEN || endsLine(token);
    if (isSimple && *kind == kFUNCTION_MACRO)
        return PrintErrorLocation(
            stream, kERROR_UNEXPECTED_KEYWORD, kPREPROCESS_FAILURE, name, name->text, kWRONG_TYPE);
    if (isSimple) {
        *kind = kSIMPLE_MACRO;
        // The body that follows is empty.
        return token->type == &kEND_OF_LINE ? push_back_token(stream, token) : 0;
    }
    if (isSet) return refuseToken(stream, token, kWRONG_TYPE);
    return token->type == &kLEFT_PARENTHESIS ? 0 : refuseToken(stream, token, "illegal token after macro name");
}

// What a value text is made of.
enum class ValueForm { kTEXT, kNUMBER, kEXPRESSION };

ValueForm form_of(const parse_stream* stream, const char* text, u32 length, long double* value) {
    if (length == 0) return ValueForm::kTEXT;
    if (*text == '(') return ValueForm::kEXPRESSION;
    const u32 base = get_stream_number_base(stream);
    const u32 used = scanNumber(text, text + length, base, true, nullptr, nullptr, value);
    if (used == 0) return ValueForm::kTEXT;
    return used == length ? ValueForm::kNUMBER : ValueForm::kEXPRESSION;
}

// Evaluates a text: it is read ahead of the terminator, which the token holds and which ends the expression.
int evaluate(parse_stream* stream, token_element* token, OwnedString text, u32 length,
    const token_type* const* terminators, long double* value) {
    if (token->type == &kEND_OF_FILE) {
        if (int status = set_token_element(token, "\n", 1, true, &kEND_OF_LINE, 0); status != 0) return status;
    }
    if (int status = push_back_token(stream, token); status != 0) return status;
    if (int status = pushRescan(stream, std::move(text), length); status != 0) return status;
    const int status = Get_Expression_Value(stream, token, value, terminators);
    if (status == 0 || status == 7) return status;
    return expectedToken(stream, token, "valid expression");
}

// Reads the value of a #set. Numbers are evaluated, other text stays.
int read_value(
    parse_stream* stream, token_element* token, const token_type* const* terminators, OwnedString* body, u32* length) {
    const DirectiveModes expanding(stream, kLINE_MODES, kMODE_NO_MACROS | kMODE_WHITESPACE | kMODE_COMMENTS);
    if (int status = strdup_to_token(stream, token, nullptr, terminators, length, body->out()); status != 0)
        return status;
    long double value = 0;
    const ValueForm form = form_of(stream, body->get(), *length, &value);
    if (form == ValueForm::kTEXT) return 0;
    if (form == ValueForm::kEXPRESSION) {
        const int status = evaluate(stream, token, std::move(*body), *length, terminators, &value);
        if (status != 0) return status;
    }
    body->reset(appendFormat(nullptr, "%lld", signedFromValue(value)));
    if (body->get() == nullptr) return 7;
    *length = static_cast<u32>(std::strlen(body->get()));
    return 0;
}

int add_function_end(OwnedString* body, u32* length) {
    const std::string text = std::string(body->get(), *length) + kFUNCTION_END;
    body->reset(newString(text));
    *length = static_cast<u32>(text.size());
    return body->get() == nullptr ? 7 : 0;
}

} // namespace

int define_macro(parse_stream* stream, token_element* token, unsigned kind, const token_type* const* brackets,
    const token_type* const* terminators, bool isSet) {
    const DirectiveModes definition(
        stream, kLINE_MODES | kMODE_NO_MACROS, kMODE_WHITESPACE | kMODE_COMMENTS, kCONTEXT_MACRO_DEFINITION);
    if (int status = nextMacroName(stream, token); status != 0) return status;
    const TokenOwner name(dup_token_element(token));
    if (name == nullptr) return 7;
    if (int status = read_macro_form(stream, token, name.get(), &kind, isSet); status != 0) return status;
    return isSet ? set_macro(stream, token, name.get(), kind, terminators)
                 : create_macro_symbol_entry(stream, token, name.get(), kind, brackets, terminators);
}

int parse_macro_formal_parameters(parse_stream* stream, token_element* token, StrList* parameters, u32* count) {
    std::vector<OwnedString> names;
    if (int status = read_names(stream, token, &names); status != 0) return status;
    const auto nameCount = static_cast<u32>(names.size());
    ListOwner list;
    if (int status = make_list(&names, &list); status != 0) return status;
    *parameters = list.release();
    *count = nameCount;
    return 0;
}

int create_macro_symbol_entry(parse_stream* stream, token_element* token, const token_element* name, unsigned kind,
    const token_type* const* brackets, const token_type* const* terminators) {
    ListOwner parameters;
    u32 count = 0;
    if (kind != kSIMPLE_MACRO) {
        const int status = parse_macro_formal_parameters(stream, token, parameters.out(), &count);
        if (status != 0) return status;
    }
    OwnedString body;
    u32 length = 0;
    if (int status = strdup_to_token(stream, token, brackets, terminators, &length, body.out()); status != 0)
        return status;
    if (kind == kFUNCTION_MACRO) {
        if (token->type == &kEND_OF_FILE) return refuseToken(stream, token, "closing #endfunction expected");
        if (int status = add_function_end(&body, &length); status != 0) return status;
    }
    // The macro stays as it was in both cases.
    if (const MacroElementType* old = lookup_macro_symbol(stream, true, name->text); old != nullptr)
        return report_redefinition(stream, name, has_body(old, body.get(), length));
    return insert_macro_symbol(stream, name->text, kind, parameters.release(), count, body.release(), length, nullptr);
}

int set_macro(parse_stream* stream, token_element* token, const token_element* name, unsigned kind,
    const token_type* const* terminators) {
    constexpr const char* kONLY_SIMPLE = "illegal token after macro name. Only simple macro definitions are allowed";
    if (kind != kSIMPLE_MACRO) return refuseToken(stream, token, kONLY_SIMPLE);
    OwnedString body;
    u32 length = 0;
    if (int status = read_value(stream, token, terminators, &body, &length); status != 0) return status;
    MacroElementType* old = lookup_macro_symbol(stream, true, name->text);
    if (old != nullptr && old->kind != kSIMPLE_MACRO)
        return PrintErrorLocation(
            stream, kERROR_UNEXPECTED_KEYWORD, kPREPROCESS_FAILURE, name, name->text, kONLY_SIMPLE);
    if (old != nullptr && !old->inExpansion) {
        StrDelete(old->body);
        old->body = body.release();
        old->bodyLength = length;
        return 0;
    }
    // The text of a macro that is being read stays until its end.
    if (old != nullptr) delete_context_symbol(name->text, stream->root->macroSymbols);
    return insert_macro_symbol(stream, name->text, kSIMPLE_MACRO, nullptr, 0, body.release(), length, nullptr);
}

int do_define_op(parse_stream* stream, token_element* token) {
    if (!isTextLive(stream)) return 0;
    return define_macro(stream, token, kPARAMETER_MACRO, nullptr, macroTerminators, false);
}

int do_set_op(parse_stream* stream, token_element* token) {
    if (!isTextLive(stream)) return 0;
    return define_macro(stream, token, kSIMPLE_MACRO, nullptr, macroTerminators, true);
}

int do_function_op(parse_stream* stream, token_element* token) {
    if (!isTextLive(stream)) return 0;
    return define_macro(stream, token, kFUNCTION_MACRO, functionBrackets, functionTerminators, false);
}

// A definition reads its own closing line: this one has none before it.
int do_endfunction_op(parse_stream* stream, token_element* token) {
    if (!isTextLive(stream)) return 0;
    return PrintErrorLocation(stream, kERROR_UNMATCHED_PREPROCESS_AND_EXPECTED, kPREPROCESS_FAILURE, token, token->text,
        "a #function directive expected");
}

int do_return_op(parse_stream* stream, token_element* token) {
    if (!isTextLive(stream)) return 0;
    if (!test_context_state(stream, kCONTEXT_FUNCTION_BODY, true))
        return refuseToken(stream, token, "#return directives can only be used in function macros");
    // What the body has open ends with it.
    while (Stack_Depth(stream->root->directiveStack) > activeContext(stream)->directiveDepthAtOpen)
        popDirective(stream);
    set_stream_position(stream, get_stream_size(stream));
    return 0;
}
