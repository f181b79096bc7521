// workflow_parser.cpp - the operations that a map file is for.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/parser.h"
#include "ParseUtils/scanner.h"

int parse_workflow_op_list(parse_stream* stream, token_element* token, StrList* operations) {
    for (;;) {
        if (token->type != &kIDENTIFIER_TOKEN)
            return memdata::refuseSymbol(stream, token, "non identifier WORKFLOW_OPERATION type");
        char* name = StrDup(token->text);
        if (name == nullptr) return 7;
        StrListExtend(operations, name);
        int status = get_next_token(stream, token);
        if (status != 0 || token->type != &kCOMMA) return status;
        status = get_next_token(stream, token);
        if (status != 0) return status;
    }
}

int parse_workflow_op_definition(parse_stream* stream, token_element* token, StrList* operations) {
    if (int status = parse_workflow_op_list(stream, token, operations); status != 0) return status;
    return parse_statement_terminator(stream, token);
}

bool compare_workflow_operations(StrList accepted, StrList operations) {
    const unsigned long count = StrListCount(operations);
    for (unsigned long i = 0; i < count; ++i)
        if (StrListFind(accepted, StrListGet(operations, i)) != nullptr) return true;
    return false;
}
