// conditionals.cpp - #if and its kin.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/directive_line.h"
#include "ParseUtils/directives.h"
#include "ParseUtils/expressions.h"
#include "SystemUtils/alerts.h"

#include <utility>

using namespace memdata;

namespace {

int open_by_name(parse_stream* stream, token_element* token, bool whenDefined) {
    // In dead text nothing is opened, unlike with #if, on purpose: an #else or #endif that was meant for this
    // directive acts on the one around it. Old texts rely on it.
    if (!isTextLive(stream)) return 0;
    DirectiveOwner opened = newDirective(token);
    if (opened == nullptr) return 7;
    {
        const DirectiveModes line(stream, kLINE_MODES, kMODE_WHITESPACE | kMODE_COMMENTS);
        if (int status = nextMacroName(stream, token); status != 0) return status;
    }
    const bool condition = (lookup_macro_symbol(stream, false, token->text) != nullptr) == whenDefined;
    return pushDirective(stream, std::move(opened), condition, condition);
}

} // namespace

int get_conditional_expression(
    parse_stream* stream, token_element* token, const token_type* const* terminators, bool* condition) {
    const DirectiveModes line(stream, kLINE_MODES | kMODE_DEFINED, kMODE_NO_MACROS | kMODE_COMMENTS | kMODE_WHITESPACE);
    long double value = 0;
    const int status = Get_Expression_Value(stream, token, &value, terminators);
    if (status == 7) return status;
    if (status != 0) return expectedToken(stream, token, "valid conditional expression");
    *condition = value != 0;
    return 0;
}

int do_if_op(parse_stream* stream, token_element* token) {
    DirectiveOwner opened = newDirective(token);
    if (opened == nullptr) return 7;
    bool condition = false;
    if (isTextLive(stream)) {
        const int status = get_conditional_expression(stream, token, ifExpressionTerminators, &condition);
        if (status != 0) return status;
    }
    return pushDirective(stream, std::move(opened), condition, condition);
}

int do_ifdef_op(parse_stream* stream, token_element* token) {
    return open_by_name(stream, token, true);
}

int do_ifndef_op(parse_stream* stream, token_element* token) {
    return open_by_name(stream, token, false);
}

int do_elif_op(parse_stream* stream, token_element* token) {
    if (int status = test_matching_PP_directives(stream, stream->root->directiveStack, token); status != 0)
        return status;
    DirectiveOwner branch = newDirective(token);
    if (branch == nullptr) return 7;
    const bool wasTaken = topDirective(stream)->branchTaken;
    popDirective(stream);
    bool condition = false;
    if (!wasTaken && isTextLive(stream)) {
        const int status = get_conditional_expression(stream, token, ifExpressionTerminators, &condition);
        if (status != 0) return status;
    }
    return pushDirective(stream, std::move(branch), condition && isTextLive(stream), wasTaken || condition);
}

int do_else_op(parse_stream* stream, token_element* token) {
    if (int status = test_matching_PP_directives(stream, stream->root->directiveStack, token); status != 0)
        return status;
    DirectiveOwner branch = newDirective(token);
    if (branch == nullptr) return 7;
    // The branch before counts, not the whole chain, on purpose: after "#if 1", "#elif 0" the #else is live as well.
    const bool wasActive = topDirective(stream)->active;
    popDirective(stream);
    return pushDirective(stream, std::move(branch), !wasActive && isTextLive(stream), wasActive);
}

int do_endif_op(parse_stream* stream, token_element* token) {
    const int status = test_matching_PP_directives(stream, stream->root->directiveStack, token);
    if (status == 0) popDirective(stream);
    return status;
}
