// tokens.h - token records and the pool that they come from.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PARSE_UTILS_TOKENS_H
#define MEMDATA_PARSE_UTILS_TOKENS_H

#include "ParseUtils/token_types.h"
#include "SystemUtils/memory.h"

// One token. Text is a managed string that the token owns. Tokens of the pool keep their text's memory for the
// next text, so that reading allocates nothing once the pool is warm: a text pointer is good until the token is
// set again, and a caller who needs it longer copies it.
struct token_element {
    const token_type* type;     // null in a blank token
    bool caseSensitive;         // in a keyword row: how the word compares
    char* text;                 // terminated; never null after set_token_element
    u32 length;                 // characters of text; text itself can hold NUL characters
    long double value;          // the number; a literal character's code; the ordinal of a run-time keyword
    u32 numberBase;             // radix in which a number was written
    const char* sourcePosition; // where in the text the token began; may be null
    const char* lineStart;      // start of the line that holds sourcePosition
    u32 lineNumber;             // of that line, from 1
    u32 validMark;              // the bytes "NkOt" while text is owned, else 0
    token_element* next;        // chains: run-time keywords, look-ahead queue, pool
    // From here on the record is this module's own.
    u32 textId;       // contextId of the context whose text holds sourcePosition; 0 for none
    char* buffer;     // memory that is kept for texts, or null; text equals it while in use
    u32 capacity;     // characters that buffer holds, without its terminator
    bool keepsBuffer; // set on tokens of the pool
};

// A blank token from the pool; null when memory is exhausted. Goes back with release_token_element.
token_element* get_token_element();
// Blanks the token and puts it back into the pool. Null is accepted.
void release_token_element(token_element* token);

// The same under the names of records that live long.
token_element* create_token_element();
void delete_token_element(token_element* token);

// Everything to zero and null; text is released by invalidate_token_element.
void blank_token_element(token_element* token);
// Drops the text. Texts are released only when the mark says that the token owns them, or when the mark is 0 and
// there is one.
void invalidate_token_element(token_element* token);

// Sets text, case flag, type and value; place and base stay. Status 0, or 7 when memory is exhausted, with a blank
// text of length 0 then.
//   text    length below 0: a managed string that the token takes over, also on failure
//           above 0: that many characters are copied; 0: the whole text is copied, null makes an empty one.
//           It may be the token's own text.
int set_token_element(
    token_element* token, const char* text, long length, bool caseSensitive, const token_type* type, long double value);

// Copies everything but the chain. Status as set_token_element.
int copy_token_element(token_element* to, const token_element* from);
// A copy from the pool; null for null and when memory is exhausted.
token_element* dup_token_element(const token_element* token);
// Appends b's text to a's and sets a's type. A token without a place takes b's. Status 0, 7, or 3 when the joined
// text would be longer than kMAX_TOKEN_BYTES; the caller reports that one.
int cat_token_element(token_element* a, const token_element* b, const token_type* type);

namespace memdata {

inline constexpr u32 kTOKEN_VALID_MARK = 0x744F6B4E; // "NkOt", low byte first

using TokenOwner = Tracked<token_element, release_token_element>;

// First in, first out, over tokens that it owns; chained through token_element::next. Allocates nothing.
struct TokenQueue {
    token_element* head = nullptr;
    token_element* tail = nullptr;
    u32 depth = 0;
};

void putToken(TokenQueue* queue, token_element* token);   // at the tail
void stuffToken(TokenQueue* queue, token_element* token); // ahead of the head
token_element* takeToken(TokenQueue* queue);              // the head, now the caller's; null when empty
void clearTokens(TokenQueue* queue);                      // releases all
// Moves a token without copying its text where both are of the pool, and releases the emptied one.
void moveToken(token_element* to, token_element* from);

} // namespace memdata

#endif
