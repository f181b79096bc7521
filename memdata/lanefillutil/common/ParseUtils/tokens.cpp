// tokens.cpp - token records, their texts and their pool.
// SPDX-License-Identifier: Apache-2.0
//
// Tokens are made a slab at a time and never go back to the allocator before shut-down: a released token waits in
// the pool, with the memory of its text. Reading therefore allocates nothing once the pool is warm.
#include "ParseUtils/tokens.h"

#include "ParseUtils/limits.h"
#include "ParseUtils/state.h"
#include "StringUtils/StringUtils.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace memdata {

constexpr u32 kSLAB_TOKENS = 32;

struct TokenSlab {
    TokenSlab* next;
    token_element tokens[kSLAB_TOKENS];
};

void closeTokenPool() {
    gParseState.tokenPoolStack = nullptr;
    while (TokenSlab* slab = gParseState.tokenSlabs) {
        for (token_element& token : slab->tokens) {
            invalidate_token_element(&token);
            StrDelete(token.buffer);
        }
        gParseState.tokenSlabs = slab->next;
        releaseMemory(slab);
    }
}

} // namespace memdata

using memdata::gParseState;
using memdata::kTOKEN_VALID_MARK;

namespace {

constexpr u32 kSMALLEST_BUFFER = 32; // characters with the terminator; holds nearly every word
constexpr u32 kKEPT_BUFFER = 4096;   // larger ones are not kept in the pool

bool fill_token_pool() {
    memdata::registerParseFinalizer();
    auto* slab = NEW_RECORD(memdata::TokenSlab);
    if (slab == nullptr) return false;
    slab->next = std::exchange(gParseState.tokenSlabs, slab);
    for (token_element& token : slab->tokens) {
        token.keepsBuffer = true;
        token.next = std::exchange(gParseState.tokenPoolStack, &token);
    }
    return true;
}

bool owns_text(const token_element* token) {
    return token->text != nullptr && (token->validMark == kTOKEN_VALID_MARK || token->validMark == 0);
}

// Releases a text that does not live in the kept buffer.
void drop_foreign_text(token_element* token) {
    if (owns_text(token) && token->text != token->buffer) StrDelete(token->text);
}

void take_text(token_element* token, char* text, u32 length) {
    token->text = text;
    token->length = length;
    token->validMark = kTOKEN_VALID_MARK;
}

// Room for length characters of which the token's text is to be made; null when memory is exhausted. The old text
// is still there, so that the new one may be made from it: it goes with settle_text.
char* room_for_text(token_element* token, u64 length) {
    if (token->keepsBuffer && token->buffer != nullptr && token->capacity >= length) return token->buffer;
    const u64 bytes = token->keepsBuffer ? std::bit_ceil(std::max<u64>(length + 1, kSMALLEST_BUFFER)) : length + 1;
    return StrNew("a token's text", bytes - 1);
}

void settle_text(token_element* token, char* room, u32 length) {
    room[length] = '\0';
    drop_foreign_text(token);
    if (token->keepsBuffer && room != token->buffer) {
        StrDelete(token->buffer);
        token->buffer = room;
        token->capacity = static_cast<u32>(std::bit_ceil(std::max<u64>(u64{length} + 1, kSMALLEST_BUFFER)) - 1);
    }
    take_text(token, room, length);
}

// Without memory a token keeps no text, unless it has a buffer for an empty one.
void fail_text(token_element* token) {
    invalidate_token_element(token);
    if (token->buffer != nullptr) {
        token->buffer[0] = '\0';
        take_text(token, token->buffer, 0);
    }
}

int copy_text(token_element* token, const char* text, u64 length) {
    // Nearly every text of a token of the pool fits the kept buffer.
    if (length <= token->capacity && token->text == token->buffer && token->buffer != nullptr) {
        std::memmove(token->buffer, text, length);
        token->buffer[length] = '\0';
        token->length = static_cast<u32>(length);
        return 0;
    }
    char* room = room_for_text(token, length);
    if (room == nullptr) {
        fail_text(token);
        return 7;
    }
    if (length != 0) std::memmove(room, text, length);
    settle_text(token, room, static_cast<u32>(length));
    return 0;
}

} // namespace

token_element* get_token_element() {
    if (gParseState.tokenPoolStack == nullptr && !fill_token_pool()) return nullptr;
    token_element* token = gParseState.tokenPoolStack;
    gParseState.tokenPoolStack = std::exchange(token->next, nullptr);
    return token;
}

void release_token_element(token_element* token) {
    if (token == nullptr) return;
    blank_token_element(token);
    // A token on a caller's own stack has no place in the pool.
    if (!token->keepsBuffer) return;
    if (token->capacity >= kKEPT_BUFFER) {
        StrDelete(std::exchange(token->buffer, nullptr));
        token->capacity = 0;
    }
    token->next = std::exchange(gParseState.tokenPoolStack, token);
}

token_element* create_token_element() {
    return get_token_element();
}

void delete_token_element(token_element* token) {
    release_token_element(token);
}

void blank_token_element(token_element* token) {
    if (token == nullptr) return;
    invalidate_token_element(token);
    char* buffer = token->buffer;
    const u32 capacity = token->capacity;
    const bool keepsBuffer = token->keepsBuffer;
    *token = {};
    token->buffer = buffer;
    token->capacity = capacity;
    token->keepsBuffer = keepsBuffer;
}

void invalidate_token_element(token_element* token) {
    if (token == nullptr) return;
    drop_foreign_text(token);
    token->text = nullptr;
    token->length = 0;
    token->validMark = 0;
}

int set_token_element(token_element* token, const char* text, long length, bool caseSensitive, const token_type* type,
    long double value) {
    token->caseSensitive = caseSensitive;
    token->type = type;
    token->value = value;
    if (text == nullptr) return copy_text(token, "", 0);
    if (length >= 0) return copy_text(token, text, length == 0 ? std::strlen(text) : static_cast<u64>(length));
    if (text != token->text) invalidate_token_element(token);
    // A text that is handed over was the caller's to change.
    take_text(token, const_cast<char*>(text), static_cast<u32>(std::strlen(text)));
    return 0;
}

int copy_token_element(token_element* to, const token_element* from) {
    if (to == from) return 0;
    to->type = from->type;
    to->caseSensitive = from->caseSensitive;
    to->value = from->value;
    to->numberBase = from->numberBase;
    to->sourcePosition = from->sourcePosition;
    to->lineStart = from->lineStart;
    to->lineNumber = from->lineNumber;
    to->textId = from->textId;
    if (from->text != nullptr) return copy_text(to, from->text, from->length);
    invalidate_token_element(to);
    return 0;
}

token_element* dup_token_element(const token_element* token) {
    if (token == nullptr) return nullptr;
    memdata::TokenOwner copy(get_token_element());
    if (copy == nullptr || copy_token_element(copy.get(), token) != 0) return nullptr;
    return copy.release();
}

int cat_token_element(token_element* a, const token_element* b, const token_type* type) {
    const u64 length = u64{a->length} + b->length;
    if (length > memdata::kMAX_TOKEN_BYTES) return 3;
    char* room = room_for_text(a, length);
    if (room == nullptr) return 7;
    const u32 oldLength = a->length;
    if (b->length != 0) std::memmove(room + oldLength, b->text, b->length);
    if (oldLength != 0 && room != a->text) std::memmove(room, a->text, oldLength);
    settle_text(a, room, static_cast<u32>(length));
    a->type = type;
    if (a->sourcePosition == nullptr) {
        a->sourcePosition = b->sourcePosition;
        a->lineStart = b->lineStart;
        a->lineNumber = b->lineNumber;
        a->textId = b->textId;
    }
    return 0;
}

namespace memdata {

void moveToken(token_element* to, token_element* from) {
    if (to->keepsBuffer && from->keepsBuffer) {
        std::swap(*to, *from);
        std::swap(to->next, from->next);
    } else {
        copy_token_element(to, from);
    }
    release_token_element(from);
}

void putToken(TokenQueue* queue, token_element* token) {
    token->next = nullptr;
    (queue->tail == nullptr ? queue->head : queue->tail->next) = token;
    queue->tail = token;
    ++queue->depth;
}

void stuffToken(TokenQueue* queue, token_element* token) {
    token->next = queue->head;
    queue->head = token;
    if (queue->tail == nullptr) queue->tail = token;
    ++queue->depth;
}

token_element* takeToken(TokenQueue* queue) {
    token_element* token = queue->head;
    if (token == nullptr) return nullptr;
    queue->head = std::exchange(token->next, nullptr);
    if (queue->head == nullptr) queue->tail = nullptr;
    --queue->depth;
    return token;
}

void clearTokens(TokenQueue* queue) {
    while (token_element* token = takeToken(queue)) release_token_element(token);
}

} // namespace memdata
