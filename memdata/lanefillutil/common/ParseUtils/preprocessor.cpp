// preprocessor.cpp - directives and macros: the tokens pass as they are.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/preprocessor.h"

#include "ParseUtils/scanner.h"

StrList gPP_include_path_list = nullptr;

void register_parsing_include_search_paths(StrList paths) {
    gPP_include_path_list = paths;
}

int internal_get_next_token(parse_stream* stream, token_element* token) {
    return parse_filtered_token(stream, token);
}

int test_matching_PP_directives(parse_stream*, StackType*, const token_element*) {
    return 0;
}
