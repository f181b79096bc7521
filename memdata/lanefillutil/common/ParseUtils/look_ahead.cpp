// look_ahead.cpp - the queue of tokens that were read early or put back.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/look_ahead.h"

#include "ParseUtils/scanner.h"

#include <utility>

using namespace memdata;

namespace {

// Puts a queue of tokens ahead of those that are queued.
void put_ahead(TokenQueue* tokens, TokenQueue* queue) {
    if (tokens->depth == 0) return;
    tokens->tail->next = queue->head;
    if (queue->tail == nullptr) queue->tail = tokens->tail;
    queue->head = tokens->head;
    queue->depth += std::exchange(*tokens, {}).depth;
}

bool is_insignificant(const token_element* token, bool keepEndOfLine) {
    return token->type == &kWHITESPACE_TOKEN || (token->type == &kEND_OF_LINE && !keepEndOfLine);
}

} // namespace

int push_back_token(parse_stream* stream, const token_element* token) {
    token_element* copy = dup_token_element(token);
    if (copy == nullptr) return 7;
    stuffToken(activeContext(stream)->lookAhead, copy);
    return 0;
}

const token_element* one_token_look_ahead(parse_stream* stream, bool keepEndOfLine, long* status) {
    TokenQueue read;
    token_element* last = nullptr;
    int result = 0;
    do {
        TokenOwner token(get_token_element());
        result = token == nullptr ? 7 : get_next_token(stream, token.get());
        if (result != 0) break;
        last = token.get();
        putToken(&read, token.release());
    } while (is_insignificant(last, keepEndOfLine));
    // What was read stands in the context that is active now: its tokens come next.
    put_ahead(&read, activeContext(stream)->lookAhead);
    if (status != nullptr)
        *status = result;
    else
        activeContext(stream)->pendingStatus = result;
    return result == 0 ? last : nullptr;
}

const token_element* look_ahead_stream_tokens(parse_stream* stream, unsigned n) {
    parse_stream* context = activeContext(stream);
    TokenQueue* queue = context->lookAhead;
    while (queue->depth <= n) {
        if (context->pendingStatus != 0) return nullptr;
        TokenOwner token(get_token_element());
        context->pendingStatus = token == nullptr ? 7 : parse_token(stream, token.get());
        if (context->pendingStatus != 0) return nullptr;
        putToken(queue, token.release());
    }
    if (n == queue->depth - 1) return queue->tail;
    const token_element* token = queue->head;
    for (; n != 0; --n) token = token->next;
    return token;
}

bool retrive_next_queued_token(parse_stream* stream, token_element* token) {
    token_element* queued = takeToken(activeContext(stream)->lookAhead);
    if (queued == nullptr) return false;
    moveToken(token, queued);
    return true;
}

void dequeue_look_ahead_token(parse_stream* stream) {
    release_token_element(takeToken(activeContext(stream)->lookAhead));
}
