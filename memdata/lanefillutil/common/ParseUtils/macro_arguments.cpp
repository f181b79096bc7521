// macro_arguments.cpp - the arguments of a macro call.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/directive_line.h"
#include "ParseUtils/directives.h"

#include <utility>
#include <vector>

using namespace memdata;

namespace {

struct ArgumentType {
    OwnedString text;
    u32 length = 0;
};

int next_significant(parse_stream* stream, token_element* token) {
    int status = 0;
    do status = internal_get_next_token(stream, token);
    while (status == 0 && token->type == &kWHITESPACE_TOKEN);
    return status;
}

// Whether the argument that the token ends is where it has to be.
int check_argument(parse_stream* stream, const token_element* token, const ArgumentType& argument, bool isLast) {
    if (token->type == &kEND_OF_FILE) return refuseToken(stream, token, "closing macro ')' expected");
    if (argument.length == 0) return refuseToken(stream, token, "missing macro argument");
    if (!isLast && token->type == &kRIGHT_PARENTHESIS) return refuseToken(stream, token, "too few arguments for macro");
    if (isLast && token->type == &kCOMMA) return refuseToken(stream, token, "too many arguments for macro");
    return 0;
}

int read_arguments(
    parse_stream* stream, token_element* token, const MacroElementType* macro, std::vector<ArgumentType>* arguments) {
    if (macro->parameterCount == 0) {
        if (int status = next_significant(stream, token); status != 0) return status;
        return token->type == &kRIGHT_PARENTHESIS ? 0 : refuseToken(stream, token, "closing macro ')' expected");
    }
    for (u32 i = 0; i < macro->parameterCount; ++i) {
        ArgumentType& argument = arguments->emplace_back();
        int status = strdup_to_token(
            stream, token, parameterBrackets, parameterTerminators, &argument.length, argument.text.out());
        if (status == 0) status = check_argument(stream, token, argument, i + 1 == macro->parameterCount);
        if (status != 0) return status;
    }
    return 0;
}

// The scope is opened when all arguments are read: they belong to the text of the call.
int enter_arguments(parse_stream* stream, const MacroElementType* macro, std::vector<ArgumentType>* arguments) {
    symbol_context** scope = &stream->root->macroSymbols;
    if (push_trunk_symbol_scope(scope) == nullptr) return 7;
    for (u32 i = 0; i < arguments->size(); ++i) {
        ArgumentType& argument = (*arguments)[i];
        const int status = insert_macro_symbol(stream, StrListGet(macro->parameters, i), kSIMPLE_MACRO, nullptr, 0,
            argument.text.release(), argument.length, nullptr);
        if (status == 0) continue;
        pop_symbol_scope(scope);
        return status;
    }
    return 0;
}

} // namespace

int parse_macro_arguments(parse_stream* stream, token_element* token, const MacroElementType* macro) {
    if (int status = next_significant(stream, token); status != 0) return status;
    if (token->type != &kLEFT_PARENTHESIS) return refuseToken(stream, token, "opening macro '(' expected");
    std::vector<ArgumentType> arguments;
    if (int status = read_arguments(stream, token, macro, &arguments); status != 0) return status;
    return enter_arguments(stream, macro, &arguments);
}
