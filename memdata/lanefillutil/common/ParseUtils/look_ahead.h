// look_ahead.h - tokens read early and tokens put back.
// SPDX-License-Identifier: Apache-2.0
//
// The queue belongs to the active context. parse_next_token takes from it before it reads on in the text.
#ifndef MEMDATA_PARSE_UTILS_LOOK_AHEAD_H
#define MEMDATA_PARSE_UTILS_LOOK_AHEAD_H

#include "ParseUtils/streams.h"

// Puts a copy of a token ahead of all others: it is the next one to be read. Status 0, 7.
int push_back_token(parse_stream* stream, const token_element* token);

// The next token that is neither whitespace nor, unless keepEndOfLine is set, a line end, as get_next_token would
// give it: directives before it are acted on, macros expanded. All that was read stays queued. The token is the
// queue's, good until the next read.
//   status  out: as get_next_token; without it, the next read gives the status back
// Null when the status is not 0.
const token_element* one_token_look_ahead(parse_stream* stream, bool keepEndOfLine, long* status);

// The n-th queued token, from 0, as parse_token gives it; reads on as far as needed. Null when a token could not
// be read; reading gives the status back when it comes there.
const token_element* look_ahead_stream_tokens(parse_stream* stream, unsigned n);

// Moves the oldest queued token into token. False when there is none.
bool retrive_next_queued_token(parse_stream* stream, token_element* token);
// Drops the oldest queued token.
void dequeue_look_ahead_token(parse_stream* stream);

#endif
