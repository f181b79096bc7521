// alert_levels.cpp - what an alert shows of a parse stream: its levels, from the token outward.
// SPDX-License-Identifier: Apache-2.0
//
// A level is one text: a context with the overlays over it. Level 0 is the text that holds the token. When that one
// is closed already, the active text stands in, at the last token that was read there.
#include "ParseUtils/context_texts.h"
#include "ParseUtils/state.h"
#include "SystemUtils/alert_location.h"

#include <algorithm>

using namespace memdata;

namespace {

// One text on the stack and the line that counts in it.
struct TextLevelType {
    const parse_stream* owner; // null when there is none
    u32 line;
};

AlertLevel::Kind kind_of(const parse_stream* context) {
    if ((context->contextState & kCONTEXT_MACRO_BODY) != 0) return AlertLevel::kMACRO;
    if ((context->contextState & kCONTEXT_RESCAN) != 0) return AlertLevel::kMEMORY_TEXT;
    const bool isFile = context->showsAsFile || (context->file->attributes & kDISK_STORAGE) != 0;
    return isFile ? AlertLevel::kDISK_FILE : AlertLevel::kMEMORY_TEXT;
}

const parse_stream* context_of_token(const parse_stream* active, const token_element* token) {
    for (const parse_stream* context = active; context != nullptr; context = context->parent)
        if (token->textId != 0 && context->textId == token->textId) return context;
    return nullptr;
}

// The text outside of a level, at the line from which the level's text was pushed.
TextLevelType outer_level(const TextLevelType& level) {
    const parse_stream* below = level.owner->parent;
    if (below == nullptr) return {nullptr, 0};
    return {textOwner(below), level.owner->callLine};
}

// A line that ends in the text can be shown where it stands. Another one, the last of a text in memory that need not be
// terminated, is copied; so is one that ends at a NUL when the position is the end of the text, which nothing ends.
void show_line(const parse_stream* context, const char* lineStart, const char* position, AlertLevel* level) {
    const bool isUsable = lineStart != nullptr && position != nullptr;
    const bool atFileEnd = position == context->textEnd && level->kind == AlertLevel::kDISK_FILE;
    level->lineText = level->errorPosition = nullptr;
    // At the end of a file there is no line to show.
    if (!isUsable || atFileEnd) return;
    const bool endsInText = position != context->textEnd && std::any_of(lineStart, context->textEnd, [](char c) {
        return c == '\0' || c == kEND_OF_FILE_MARK || isOf(c, kLINE_END_CHARACTER);
    });
    level->lineText = lineStart;
    level->errorPosition = position;
    if (endsInText) return;
    gParseState.alertLine.assign(lineStart, context->textEnd);
    level->lineText = gParseState.alertLine.c_str();
    level->errorPosition = level->lineText + (position - lineStart);
}

} // namespace

bool memdata::alertLevel(const parse_stream* innermost, const token_element* token, u32 depth, AlertLevel* level) {
    if (innermost == nullptr || token == nullptr) return false;
    const parse_stream* active = activeContext(innermost);
    const parse_stream* holder = context_of_token(active, token);
    const token_element* place = token;
    if (holder == nullptr) {
        holder = active;
        place = active->lastToken;
    }
    TextLevelType text{textOwner(holder), place != nullptr ? place->lineNumber : holder->lineNumber};
    for (u32 i = 0; i < depth && text.owner != nullptr; ++i) text = outer_level(text);
    if (text.owner == nullptr) return false;

    *level = {};
    level->kind = kind_of(text.owner);
    level->name = GetFileName(text.owner->file);
    level->line = text.line;
    if (depth == 0 && place != nullptr) show_line(holder, place->lineStart, place->sourcePosition, level);
    return true;
}
