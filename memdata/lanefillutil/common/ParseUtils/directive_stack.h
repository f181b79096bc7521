// directive_stack.h - the open conditionals and loops of a stream.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PARSE_UTILS_DIRECTIVE_STACK_H
#define MEMDATA_PARSE_UTILS_DIRECTIVE_STACK_H

#include "ParseUtils/preprocessor.h"

// Takes open directives off the stack until a #for or #while is on top, and puts them on another stack. Each of them is
// marked as dead, with its branch taken.
// Status 0, 7; 21 with an alert at the token when no loop is open: all are back then as they were.
//   unwound  of PP_Directive_Element, the innermost first in
int pop_nested_contexts(parse_stream* stream, StackType* unwound, const token_element* token);
// Puts them back. Status 0, 7.
int restore_unwound_PP_Stack(parse_stream* stream, StackType* unwound);

namespace memdata {

void deleteDirective(PP_Directive_Element* element);
using DirectiveOwner = Tracked<PP_Directive_Element, deleteDirective>;

// An element with a copy of the directive's token; null when memory is exhausted.
DirectiveOwner newDirective(const token_element* token);
// Opens a directive. Status 0, 7; 21 with an alert when too many are open.
int pushDirective(parse_stream* stream, DirectiveOwner element, bool active, bool branchTaken);
// The innermost open directive, null when none is.
PP_Directive_Element* topDirective(const parse_stream* stream);
DirectiveOwner popDirective(parse_stream* stream);

} // namespace memdata

#endif
