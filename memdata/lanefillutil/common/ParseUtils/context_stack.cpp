// context_stack.cpp - the stack of contexts: pushed, popped, closed.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/context_texts.h"
#include "ParseUtils/limits.h"
#include "ParseUtils/preprocessor.h"
#include "ParseUtils/streams.h"
#include "SystemUtils/SystemUtils.h"

#include <utility>
#include <vector>

using memdata::activeContext;

namespace {

constexpr int kPREPROCESS_FAILURE = 21;
constexpr u32 kEXPANSION_STATES = kCONTEXT_MACRO_BODY | kCONTEXT_RESCAN;

bool is_overlay(const parse_stream* context) {
    return (context->contextState & kCONTEXT_OVERLAY) != 0;
}

bool is_expansion(const parse_stream* context) {
    return (context->contextState & kEXPANSION_STATES) != 0;
}

bool shares_text(const parse_stream* context) {
    return context->parent != nullptr && context->parent->textId == context->textId;
}

// The last token that was read in a context, its overlays counted with it; null before the first.
const token_element* last_token_of(const parse_stream* context) {
    while (context->lastToken == nullptr && shares_text(context)) context = context->parent;
    return context->lastToken;
}

template<class Limit>
int refuse(parse_stream* below, const parse_stream* context, const Alert_message_type& message, Limit limit) {
    return PrintErrorLocation(
        below, message, kPREPROCESS_FAILURE, last_token_of(below), GetFileName(context->file), limit);
}

// Takes the place above below in the counts of nesting and of text, or refuses.
int count_context(parse_stream* context, parse_stream* below) {
    context->includeDepth = below->includeDepth;
    context->expansionDepth = below->expansionDepth;
    if (is_overlay(context)) return 0;
    if (!is_expansion(context)) {
        if (++context->includeDepth > memdata::kMAX_INCLUDE_DEPTH)
            return refuse(below, context, memdata::kERROR_INCLUDES_TOO_DEEP, memdata::kMAX_INCLUDE_DEPTH);
        return 0;
    }
    if (++context->expansionDepth > memdata::kMAX_EXPANSION_DEPTH)
        return refuse(below, context, memdata::kERROR_EXPANSIONS_TOO_DEEP, memdata::kMAX_EXPANSION_DEPTH);
    const u64 bytes = static_cast<u64>(context->textEnd - context->textBegin);
    if (bytes > memdata::kMAX_PUSHED_BYTES - context->root->pushedBytes)
        return refuse(below, context, memdata::kERROR_TOO_MUCH_PUSHED_TEXT, memdata::kMAX_PUSHED_BYTES);
    if (context->root->repeatedTokens > memdata::kMAX_REPEATED_TOKENS)
        return refuse(below, context, memdata::kERROR_TOO_MANY_MACRO_TOKENS, memdata::kMAX_REPEATED_TOKENS);
    context->root->pushedBytes += bytes;
    return 0;
}

// Sets that repeat the one above need no second look.
parse_stream* next_keywords(const parse_stream* context) {
    parse_stream* below = context->parent;
    if (below == nullptr || below->keywords == nullptr) return nullptr;
    return below->keywords != context->keywords ? below : below->keywordsBelow;
}

int place_on_top(parse_stream* context) {
    parse_stream* root = context->root;
    if (int status = Stack_Push(root->contextStack, root->current, nullptr); status != 0) return status;
    context->parent = root->current;
    context->keywordsBelow = next_keywords(context);
    context->isOnStack = true;
    root->current = context;
    return 0;
}

void hand_down_place(parse_stream* overlay, parse_stream* below) {
    below->position = overlay->position;
    below->lineStart = overlay->lineStart;
    below->lineNumber = overlay->lineNumber;
    below->commentNestLevel = overlay->commentNestLevel;
    below->openComment = overlay->openComment;
    below->openCommentLine = overlay->openCommentLine;
    below->openCommentLineNumber = overlay->openCommentLineNumber;
    below->bracketRun = overlay->bracketRun;
    below->bracketRunEnd = overlay->bracketRunEnd;
    if (overlay->lastToken != nullptr) {
        release_token_element(below->lastToken);
        below->lastToken = std::exchange(overlay->lastToken, nullptr);
    }
}

// What the context below takes over from a context that has left the stack.
void hand_down(parse_stream* context) {
    parse_stream* below = context->parent;
    if (below == nullptr) return;
    if ((context->contextState & kCONTEXT_AUTO_POP) == 0) below->parseModes = context->parseModes;
    below->numberBase = context->numberBase;
    if (shares_text(context)) hand_down_place(context, below);
}

int run_pop_hook(parse_stream* context) {
    StreamPopFunctionType onPop = std::exchange(context->onPop, nullptr);
    return onPop == nullptr ? 0 : static_cast<int>(onPop(context));
}

void close_idle_contexts(parse_stream* root) {
    while (parse_stream* context = root->idleContexts) {
        root->idleContexts = context->parent;
        Close_File(&context->idleFile);
        releaseMemory(context);
    }
    while (parse_stream* overlay = root->idleOverlays) {
        root->idleOverlays = overlay->parent;
        releaseMemory(overlay);
    }
}

void close_shared_parts(parse_stream* root) {
    close_idle_contexts(root);
    close_token_symbol_set(root->keywords);
    Stack_Delete(&root->contextStack);
    Stack_Delete(&root->directiveStack);
    if (root->macroSymbols != nullptr) delete_symbol_space(&root->macroSymbols);
    if (root->macroTable != nullptr) delete_symbol_table(&root->macroTable);
}

int first_failure(int status, int next) {
    return status != 0 ? status : next;
}

// Ends a context that is not on the stack (any more).
int finish_context(parse_stream* context) {
    const int status = run_pop_hook(context);
    hand_down(context);
    if (context->root == context) close_shared_parts(context);
    release_token_element(context->lastToken);
    const bool isIdleOverlay = is_overlay(context) && context->isReusable;
    if (!isIdleOverlay && context->idleFile == nullptr) {
        releaseMemory(context);
    } else {
        parse_stream*& idle = isIdleOverlay ? context->root->idleOverlays : context->root->idleContexts;
        context->parent = std::exchange(idle, context);
    }
    return status;
}

int report_open_directives(parse_stream* context) {
    int status = 0;
    StackType* stack = context->root->directiveStack;
    while (Stack_Depth(stack) > context->directiveDepthAtOpen) {
        status = first_failure(status, test_matching_PP_directives(context, stack, context->lastToken));
        Stack_Pop(stack, true);
    }
    return status;
}

int report_open_comment(parse_stream* context) {
    if (context->commentNestLevel == 0) return 0;
    memdata::TokenOwner comment(get_token_element());
    if (comment == nullptr) return 7;
    comment->sourcePosition = context->openComment;
    comment->lineStart = context->openCommentLine;
    comment->lineNumber = context->openCommentLineNumber;
    comment->textId = context->textId;
    return PrintErrorLocation(context, kERROR_UNMATCHED_NESTED_C_COMMENT, kPREPROCESS_FAILURE, comment.get());
}

// Puts an overlay that was taken off the stack on what is active now. It stays the same context, so that a saver of
// its modes still finds it; the modes that were changed on it stay changed.
int put_overlay_back(parse_stream* overlay, u32 changedModes) {
    parse_stream* below = activeContext(overlay);
    overlay->file = below->file;
    overlay->lookAhead = below->lookAhead;
    overlay->contextState = below->contextState | kCONTEXT_OVERLAY;
    overlay->parseModes = below->parseModes ^ changedModes;
    overlay->numberBase = below->numberBase;
    overlay->directiveDepthAtOpen = below->directiveDepthAtOpen;
    overlay->position = below->position;
    overlay->lineStart = below->lineStart;
    overlay->lineNumber = below->lineNumber;
    overlay->commentNestLevel = below->commentNestLevel;
    overlay->openComment = below->openComment;
    overlay->openCommentLine = below->openCommentLine;
    overlay->openCommentLineNumber = below->openCommentLineNumber;
    overlay->textBegin = below->textBegin;
    overlay->textEnd = below->textEnd;
    overlay->textId = below->textId;
    overlay->bracketRun = below->bracketRun;
    overlay->bracketRunEnd = below->bracketRunEnd;
    overlay->showsAsFile = below->showsAsFile;
    return push_parse_context(overlay);
}

// What a context above an overlay has from it, it has from below it then.
void forget_overlay(parse_stream* context, const parse_stream* overlay, u32 changedModes) {
    const parse_stream* below = overlay->parent;
    context->parseModes = (context->parseModes & ~changedModes) | (below->parseModes & changedModes);
    if (context->keywords == overlay->keywords) context->keywords = below->keywords;
    context->noKeywordLookup = below->noKeywordLookup;
}

// Takes an overlay out of the stack; what stands above it closes the gap.
int withdraw_overlay(parse_stream* overlay, u32 changedModes) {
    parse_stream* root = overlay->root;
    std::vector<parse_stream*> above; // innermost first
    while (root->current != overlay) above.push_back(pop_parse_context(root));
    pop_parse_context(root);
    for (parse_stream* context : above) forget_overlay(context, overlay, changedModes);
    forget_overlay(overlay, overlay, changedModes);
    int status = finish_context(overlay);
    for (auto context = above.rbegin(); context != above.rend(); ++context) {
        const int placed = status == 0 ? place_on_top(*context) : status;
        if (placed != 0) close_parse_stream(&*context);
        status = first_failure(status, placed);
    }
    return status;
}

} // namespace

int push_parse_context(parse_stream* context) {
    if (context == nullptr || context->isOnStack) return 3;
    parse_stream* below = activeContext(context);
    if (int status = count_context(context, below); status != 0) return status;
    const token_element* call = last_token_of(below);
    context->callLine = call != nullptr ? call->lineNumber : below->lineNumber;
    return place_on_top(context);
}

parse_stream* pop_parse_context(parse_stream* stream) {
    parse_stream* root = stream->root;
    parse_stream* context = root->current;
    if (context == root) return nullptr;
    root->current = static_cast<parse_stream*>(Stack_Pop(root->contextStack, false));
    context->isOnStack = false;
    return context;
}

int pop_parse_stream(parse_stream* stream) {
    parse_stream* context = activeContext(stream);
    // While the context is active, so that alerts about its end show its place.
    const int status = shares_text(context) ? 0 : close_parse_stream_file(context);
    pop_parse_context(context);
    return first_failure(status, finish_context(context));
}

int auto_pop_parse_stream(parse_stream* stream) {
    parse_stream* overlay = activeContext(stream);
    if (!is_overlay(overlay) || (overlay->parent->contextState & kCONTEXT_AUTO_POP) == 0)
        return pop_parse_stream(stream);
    const u32 changedModes = overlay->parseModes ^ overlay->parent->parseModes;
    parse_stream* root = overlay->root;
    pop_parse_context(root);
    overlay->parent->numberBase = overlay->numberBase;
    hand_down_place(overlay, overlay->parent);
    // The context below can be an overlay again: as many as callers have pushed, whatever the text holds.
    int status = auto_pop_parse_stream(root);
    const int pushed = put_overlay_back(overlay, changedModes);
    if (pushed != 0) {
        overlay->parent = nullptr; // closed by now
        finish_context(overlay);
    }
    return first_failure(status, pushed);
}

int close_parse_stream(parse_stream** stream) {
    if (stream == nullptr || *stream == nullptr) return 0;
    parse_stream* context = std::exchange(*stream, nullptr);
    if (!context->isOnStack) {
        // Never pushed, or half made: its root may be gone.
        context->isReusable = false;
        int status = Close_File(&context->idleFile);
        if (!is_overlay(context)) status = close_parse_stream_file(context);
        context->parent = nullptr;
        return first_failure(status, finish_context(context));
    }
    parse_stream* root = context->root;
    int status = 0;
    while (root->current != context) status = first_failure(status, pop_parse_stream(root));
    return first_failure(status, pop_parse_stream(root));
}

int close_parse_stream_file(parse_stream* context) {
    int status = 0;
    if (context->lastToken != nullptr && context->lastToken->type == &kEND_OF_FILE)
        status = first_failure(report_open_directives(context), report_open_comment(context));
    memdata::clearTokens(context->lookAhead);
    release_token_element(std::exchange(context->lastToken, nullptr));
    if (context->isReusable && context->file != nullptr)
        context->idleFile = std::exchange(context->file, nullptr); // closed with the root
    else if (context->file != nullptr)
        status = first_failure(status, Close_File(&context->file));
    return status;
}

memdata::KeywordOverlay::KeywordOverlay(parse_stream* stream, token_set* keywords)
    : status_(push_keyword_stream(stream, keywords)) {
    if (status_ != 0) return;
    root_ = stream->root;
    overlay_ = activeContext(stream);
    contextId_ = overlay_->contextId;
}

void memdata::KeywordOverlay::setModes(u32 mask, bool on) {
    set_parse_modes(overlay_, nullptr, mask, on);
    changedModes_ |= mask;
}

void memdata::KeywordOverlay::ignoreWords() {
    overlay_->noKeywordLookup = true;
}

int memdata::KeywordOverlay::close() {
    parse_stream* root = std::exchange(root_, nullptr);
    if (root == nullptr) return 0;
    for (parse_stream* context = root->current; context != nullptr; context = context->parent)
        if (context->contextId == contextId_) return withdraw_overlay(context, changedModes_);
    return 0;
}

int memdata::noteLastToken(parse_stream* context, const token_element* token) {
    if (context->lastToken == nullptr) context->lastToken = get_token_element();
    token_element* last = context->lastToken;
    if (last == nullptr) return 7;
    last->type = token->type;
    last->sourcePosition = token->sourcePosition;
    last->lineStart = token->lineStart;
    last->lineNumber = token->lineNumber;
    last->textId = token->textId;
    return 0;
}
