// context_texts.h - what the files of this folder share about the text of a context.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PARSE_UTILS_CONTEXT_TEXTS_H
#define MEMDATA_PARSE_UTILS_CONTEXT_TEXTS_H

#include "ParseUtils/characters.h"
#include "ParseUtils/streams.h"

namespace memdata {

// Moves over the line end at the context's position: the next line begins behind it.
inline void passLineEnd(parse_stream* context) {
    context->position += lineEndLength(context->position, context->textEnd);
    context->lineStart = context->position;
    ++context->lineNumber;
}

// Puts the place of a token.
inline void markPlace(token_element* token, const parse_stream* context) {
    token->sourcePosition = context->position;
    token->lineStart = context->lineStart;
    token->lineNumber = context->lineNumber;
    token->textId = context->textId;
}

// The count that a token of the context's text belongs to: what was written once, or what macros repeat.
inline u64& scannedTokens(const parse_stream* context) {
    parse_stream* root = context->root;
    return context->expansionDepth == 0 ? root->fileTokens : root->repeatedTokens;
}

// The lowest context that reads the same text as this one, below its overlays.
inline const parse_stream* textOwner(const parse_stream* context) {
    while (context->parent != nullptr && context->parent->textId == context->textId) context = context->parent;
    return context;
}

// Remembers the kind and place of the last token of a context. Status 0, 7.
int noteLastToken(parse_stream* context, const token_element* token);

} // namespace memdata

#endif
