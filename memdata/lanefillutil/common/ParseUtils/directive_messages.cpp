// directive_messages.cpp - directives that speak: #error, #warning, #info, and #emit, which does not.
// SPDX-License-Identifier: Apache-2.0
#include "FileUtils/FileUtils.h"
#include "ParseUtils/directive_line.h"
#include "ParseUtils/directives.h"
#include "SystemUtils/alerts.h"

using namespace memdata;

int output_directive_message(parse_stream* stream, token_element* token, bool expanded, char** text) {
    const u32 macros = expanded ? 0 : kMODE_NO_MACROS;
    const DirectiveModes line(stream, kLINE_MODES | macros, kMODE_NO_MACROS & ~macros);
    u32 length = 0;
    return strdup_to_token(stream, token, nullptr, messageTerminators, &length, text);
}

// An error that a text raises is said, and reading goes on.
int do_error_op(parse_stream* stream, token_element* token) {
    if (!isTextLive(stream)) return 0;
    const TokenOwner place(dup_token_element(token));
    OwnedString text;
    if (int status = output_directive_message(stream, token, false, text.out()); status != 0) return status;
    return PrintErrorLocation(stream, kERROR_MESSAGE_STRING, 0, place.get(), text.get());
}

int do_warning_op(parse_stream* stream, token_element* token) {
    if (!isTextLive(stream)) return 0;
    const TokenOwner place(dup_token_element(token));
    OwnedString text;
    if (int status = output_directive_message(stream, token, false, text.out()); status != 0) return status;
    return PrintWarningLocation(stream, kERROR_MESSAGE_STRING, 0, place.get(), text.get());
}

int do_info_op(parse_stream* stream, token_element* token) {
    if (!isTextLive(stream)) return 0;
    OwnedString text;
    if (int status = output_directive_message(stream, token, true, text.out()); status != 0) return status;
    PutNextLine(&StandardOut, "%s\n", text.get());
    return 0;
}

int do_emit_op(parse_stream* stream, token_element* token) {
    if (!isTextLive(stream)) return 0;
    OwnedString text;
    return output_directive_message(stream, token, true, text.out());
}
