// macros.cpp - macro records, and the scopes that hold them.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/macros.h"

#include "ParseUtils/directive_line.h"
#include "ParseUtils/directives.h"
#include "SystemUtils/alerts.h"

#include <utility>

using namespace memdata;

namespace {

// Enters a macro into a scope, which owns it then.
int insert_macro(symbol_context* scope, const char* name, MacroOwner macro) {
    if (insert_context_symbol(name, scope, macro.get(), delete_macro_element) == nullptr) return 7;
    macro.release();
    return 0;
}

int export_names(parse_stream* stream, token_element* token, bool toGlobal) {
    if (!isTextLive(stream)) return 0;
    const DirectiveModes line(stream, kLINE_MODES, kMODE_WHITESPACE | kMODE_COMMENTS);
    bool foundAny = false;
    for (;;) {
        if (int status = nextPlainToken(stream, token); status != 0) return status;
        if (endsLine(token)) break;
        if (token->type != &kIDENTIFIER_TOKEN) continue;
        bool found = false;
        if (int status = export_macro_symbol(stream, token, toGlobal, &found); status != 0) return status;
        foundAny = foundAny || found;
    }
    if (foundAny) return 0;
    return PrintErrorLocation(
        stream, kERROR_EOL_ENCOUNTERED_AND_EXPECTED, kPREPROCESS_FAILURE, token, "macro name expected");
}

} // namespace

MacroElementType* create_macro_element(unsigned kind, StrList parameters, unsigned count, char* body, unsigned length) {
    auto* macro = NEW_RECORD(MacroElementType);
    if (macro == nullptr) {
        StrListDelete(parameters);
        StrDelete(body);
        return nullptr;
    }
    macro->kind = kind;
    macro->parameters = parameters;
    macro->parameterCount = count;
    macro->body = body;
    macro->bodyLength = length;
    return macro;
}

void delete_macro_element(void* element) {
    auto* macro = static_cast<MacroElementType*>(element);
    if (macro == nullptr) return;
    if (macro->inExpansion) {
        macro->deleteWhenPopped = true; // its text is being read
        return;
    }
    StrListDelete(macro->parameters);
    StrDelete(macro->body);
    StrDelete(macro->quotedBody);
    releaseMemory(macro);
}

MacroElementType* lookup_macro_symbol(const parse_stream* stream, bool localOnly, const char* name) {
    const symbol_entry* entry = lookup_context_symbol(name, localOnly, stream->root->macroSymbols);
    return entry == nullptr ? nullptr : static_cast<MacroElementType*>(entry->value);
}

int insert_macro_symbol(parse_stream* stream, const char* name, unsigned kind, StrList parameters, unsigned count,
    char* body, unsigned length, MacroElementType** out) {
    MacroOwner macro(create_macro_element(kind, parameters, count, body, length));
    if (macro == nullptr) return 7;
    MacroElementType* inserted = macro.get();
    const int status = insert_macro(stream->root->macroSymbols, name, std::move(macro));
    if (status == 0 && out != nullptr) *out = inserted;
    return status;
}

int export_macro_symbol(parse_stream* stream, const token_element* name, bool toGlobal, bool* found) {
    symbol_context* scope = stream->root->macroSymbols;
    MacroOwner macro(static_cast<MacroElementType*>(extract_context_symbol(name->text, scope)));
    *found = macro != nullptr;
    if (macro == nullptr) return 0;
    symbol_context* target = toGlobal ? get_global_symbol_scope(scope) : get_previous_symbol_scope(scope);
    if (lookup_context_symbol(name->text, true, target) != nullptr)
        return PrintErrorLocation(stream, kERROR_ILLEGAL_IDENTIFIER, kPREPROCESS_FAILURE, name, name->text,
            "macro name already exists in previous scope");
    return insert_macro(target, name->text, std::move(macro));
}

int is_macro_defined(parse_stream* stream, token_element* token, bool* isDefined) {
    const DirectiveModes line(stream, kLINE_MODES, kMODE_WHITESPACE | kMODE_COMMENTS);
    if (int status = nextPlainToken(stream, token); status != 0) return status;
    const bool hasParenthesis = token->type == &kLEFT_PARENTHESIS;
    if (hasParenthesis) {
        if (int status = nextPlainToken(stream, token); status != 0) return status;
    }
    if (token->type != &kIDENTIFIER_TOKEN) return refuseToken(stream, token, "macro name expected");
    *isDefined = lookup_macro_symbol(stream, false, token->text) != nullptr;
    if (!hasParenthesis) return 0;
    if (int status = nextPlainToken(stream, token); status != 0) return status;
    return token->type == &kRIGHT_PARENTHESIS ? 0 : refuseToken(stream, token, "closing macro ')' expected");
}

int do_undef_op(parse_stream* stream, token_element* token) {
    if (!isTextLive(stream)) return 0;
    const DirectiveModes line(stream, kLINE_MODES, kMODE_WHITESPACE | kMODE_COMMENTS);
    if (int status = nextMacroName(stream, token); status != 0) return status;
    delete_context_symbol(token->text, stream->root->macroSymbols);
    return 0;
}

int do_export_op(parse_stream* stream, token_element* token) {
    return export_names(stream, token, false);
}

int do_global_op(parse_stream* stream, token_element* token) {
    return export_names(stream, token, true);
}
