// streams.cpp - contexts: opened, and asked about their text.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/streams.h"

#include "ParseUtils/context_texts.h"
#include "ParseUtils/preprocessor.h"
#include "ParseUtils/state.h"
#include "SystemUtils/SystemUtils.h"

#include <algorithm>
#include <cstring>
#include <utility>

using memdata::activeContext;
using memdata::gParseState;
using memdata::kEND_OF_FILE_MARK;

namespace {

constexpr int kEMPTY_TEXT = 17;
constexpr unsigned kMACRO_TABLE_SIZE = 1000;
constexpr u64 kLINE_LOOK_BACK = 1024; // characters; alerts show a longer line from there on
constexpr u32 kSOURCE_FILE = kREAD_ACCESS | kTEXT_LF | kWHOLE_FILE_BUFFER; // 274

int close_context_record(parse_stream* context) {
    return close_parse_stream(&context);
}
using ContextOwner = memdata::Tracked<parse_stream, close_context_record>;

void begin_context(parse_stream* context) {
    context->contextId = ++gParseState.lastContextId;
    context->lineNumber = 1;
    context->lookAhead = &context->ownLookAhead;
}

parse_stream* new_context() {
    memdata::registerParseFinalizer();
    parse_stream* context = NEW_RECORD(parse_stream);
    if (context != nullptr) begin_context(context);
    return context;
}

bool is_one_buffer(const fileIODescriptor* file) {
    return (file->attributes & (kWHOLE_FILE_BUFFER | kMEMORY_STORAGE)) != 0 && GetFileStorageBase(file) != nullptr;
}

void attach_text(parse_stream* context, fileIODescriptor* file) {
    context->file = file;
    context->textId = context->contextId;
    context->textBegin = GetFileStorageBase(file);
    context->textEnd = context->textBegin + GetFileLogicalSize(file);
    context->position = context->lineStart = context->textBegin;
}

int status_of_text(const parse_stream* context) {
    const bool isEmpty = context->textBegin == context->textEnd || *context->textBegin == kEND_OF_FILE_MARK;
    return isEmpty ? kEMPTY_TEXT : 0;
}

int become_root(parse_stream* context, token_set* keywords) {
    context->root = context->current = context;
    context->isOnStack = true;
    context->keywords = keywords;
    context->pushedBytes = gParseState.usedPushedBytes;
    context->repeatedBytes = gParseState.usedRepeatedBytes;
    context->repeatedTokens = gParseState.usedRepeatedTokens;
    context->contextStack = Stack_Create();
    context->directiveStack = Stack_Create();
    context->macroTable = create_symbol_table(kMACRO_TABLE_SIZE);
    context->macroSymbols = context->macroTable == nullptr ? nullptr : create_symbol_space(context->macroTable);
    const bool isComplete =
        context->contextStack != nullptr && context->directiveStack != nullptr && context->macroSymbols != nullptr;
    return isComplete ? 0 : 7;
}

void become_child(parse_stream* context, parse_stream* below, token_set* keywords) {
    context->root = below->root;
    context->parent = below;
    context->keywords = keywords != nullptr ? keywords : below->keywords;
    context->parseModes = below->parseModes;
    context->numberBase = below->numberBase;
    context->noKeywordLookup = below->noKeywordLookup;
    context->directiveDepthAtOpen = Stack_Depth(below->root->directiveStack);
}

parse_stream* idle_overlay(parse_stream* root) {
    parse_stream* overlay = root->idleOverlays;
    if (overlay == nullptr) return nullptr;
    root->idleOverlays = overlay->parent;
    begin_context(overlay);
    return overlay;
}

// An overlay is a copy of what it covers, as a context of its own.
parse_stream* copy_context(const parse_stream* below, token_set* keywords) {
    parse_stream* context = idle_overlay(below->root);
    if (context == nullptr) context = new_context();
    if (context == nullptr) return nullptr;
    const u32 contextId = context->contextId;
    *context = *below;
    context->contextId = contextId;
    context->parent = const_cast<parse_stream*>(below); // given as an active context, which is not constant
    context->current = nullptr;
    context->contextStack = context->directiveStack = nullptr;
    context->macroSymbols = nullptr;
    context->macroTable = nullptr;
    context->idleContexts = context->idleOverlays = nullptr;
    context->isReusable = false;
    context->ownLookAhead = {};
    context->lastToken = nullptr;
    context->userData = nullptr;
    context->onPop = nullptr;
    context->isOnStack = false;
    if (keywords != nullptr) context->keywords = keywords;
    return context;
}

// A text without a character is held as one that begins with the end mark, for which there can be a file.
struct HeldText {
    char* data; // the file is read only: the text is not written to
    u64 length;
    bool isEmpty;
};

HeldText held_text(const char* text, u64 length) {
    static char emptyText[] = {kEND_OF_FILE_MARK, '\0'};
    if (text == nullptr || length == 0) return {emptyText, 1, true};
    return {const_cast<char*>(text), length, false};
}

// A child over a text, made of one that was popped before: the streams of macros come and go without the allocator.
int reuse_context(
    const char* name, const HeldText& text, token_set* keywords, parse_stream* parent, parse_stream** out) {
    parse_stream* below = activeContext(parent);
    parse_stream*& idle = parent->root->idleContexts;
    if (int status = memdata::reopenMemoryFile(idle->idleFile, name, text.data, text.length); status != 0)
        return status;
    parse_stream* context = std::exchange(idle, idle->parent);
    fileIODescriptor* file = context->idleFile;
    *context = {};
    begin_context(context);
    become_child(context, below, keywords);
    attach_text(context, file);
    *out = context;
    return status_of_text(context);
}

int open_over_file(fileIODescriptor* file, parse_stream* parent, token_set* keywords, parse_stream** out) {
    const int status = open_parse_stream(file, parent, keywords, out);
    if (status != 0 && status != kEMPTY_TEXT) Close_File(&file);
    return status;
}

int open_new_context(
    const char* name, const HeldText& text, token_set* keywords, parse_stream* parent, parse_stream** out) {
    fileIODescriptor* file = nullptr;
    if (int status = OpenMemoryFile(name, kSOURCE_FILE, text.data, text.length, &file); status != 0) return status;
    return open_over_file(file, parent, keywords, out);
}

int open_over_text(
    const char* name, const char* text, u64 length, token_set* keywords, parse_stream* parent, parse_stream** out) {
    const HeldText held = held_text(text, length);
    const bool reuses = parent != nullptr && parent->root->idleContexts != nullptr;
    const int status =
        reuses ? reuse_context(name, held, keywords, parent, out) : open_new_context(name, held, keywords, parent, out);
    if ((status != 0 && status != kEMPTY_TEXT) || *out == nullptr) return status;
    (*out)->isReusable = parent != nullptr;
    if (held.isEmpty) (*out)->textEnd = (*out)->textBegin;
    return status;
}

// What is to be read ahead of the context's own text stands above it.
int push_rescan(parse_stream* context, const char* rescanText) {
    if (rescanText == nullptr || *rescanText == '\0') return 0;
    if (!context->isOnStack)
        if (int status = push_parse_context(context); status != 0) return status;
    return push_parse_MemoryFile_stream(
        "rescan", rescanText, std::strlen(rescanText), context, kCONTEXT_RESCAN, nullptr, nullptr, nullptr);
}

int finish_opening(int status, ContextOwner context, const char* rescanText, parse_stream** out) {
    if (status != 0 && status != kEMPTY_TEXT) return status;
    if (int pushed = push_rescan(context.get(), rescanText); pushed != 0) return pushed;
    *out = context.release();
    return status;
}

// Looks for the file. One that is read on behalf of another text is reported where that text names it.
int open_source_file(fileSpecType* spec, const char* extension, const parse_stream* parent, fileIODescriptor** file) {
    const u32 attributes = kSOURCE_FILE | kKEEP_EXTENSION;
    if (parent == nullptr)
        return SearchAndOpenDiskReadFile(spec, extension, "", gPP_include_path_list, attributes, file);
    const int status =
        SearchAndOpenDiskReadFile(spec, extension, "", gPP_include_path_list, attributes | kQUIET_OPEN, file);
    if (status != 1) return status;
    parse_stream* active = activeContext(parent);
    PrintErrorLocation(active, kERROR_OPENING_FILE, 1, active->lastToken, spec->fullName);
    return memdata::reportCause(spec->fullName, false);
}

const parse_stream* queue_place(const parse_stream* context) {
    const token_element* head = context->lookAhead->head;
    return head != nullptr && head->textId == context->textId && head->sourcePosition != nullptr ? context : nullptr;
}

} // namespace

int open_parse_stream(fileIODescriptor* file, parse_stream* parent, token_set* keywords, parse_stream** out) {
    if (out == nullptr || (file == nullptr && parent == nullptr)) return 3;
    if (file != nullptr && !is_one_buffer(file)) return 3;
    parse_stream* below = parent == nullptr ? nullptr : activeContext(parent);
    ContextOwner context(file == nullptr ? copy_context(below, keywords) : new_context());
    if (context == nullptr) return 7;
    if (file == nullptr) {
        context->contextState |= kCONTEXT_OVERLAY;
    } else if (below != nullptr) {
        become_child(context.get(), below, keywords);
    } else if (int status = become_root(context.get(), keywords); status != 0) {
        return status;
    }
    if (file != nullptr) attach_text(context.get(), file);
    *out = context.release();
    return file == nullptr ? 0 : status_of_text(*out);
}

int open_parse_MemoryFile(const char* name, const char* text, u64 length, token_set* keywords, const char* rescanText,
    parse_stream* parent, parse_stream** out) {
    if (out == nullptr) return 3;
    ContextOwner context;
    const int status = open_over_text(name, text, length, keywords, parent, context.out());
    return finish_opening(status, std::move(context), rescanText, out);
}

int open_parse_DiskFile(fileSpecType* spec, const char* defaultExtension, token_set* keywords, const char* rescanText,
    parse_stream* parent, parse_stream** out) {
    if (spec == nullptr || out == nullptr) return 3;
    const char* extension = defaultExtension == nullptr ? "" : defaultExtension;
    if (*extension == '+') ++extension;
    if (spec->fullName == nullptr || *spec->fullName == '\0') return PrintError(kERROR_EMPTY_FILE_NAME, 1, extension);
    if (spec->fileData != nullptr && spec->fileDataSize != 0)
        return open_parse_MemoryFile(
            spec->fullName, spec->fileData, spec->fileDataSize, keywords, rescanText, parent, out);

    fileIODescriptor* file = nullptr;
    if (int status = open_source_file(spec, extension, parent, &file); status != 0) return status;
    ContextOwner context;
    // An empty file comes back without a handle.
    const int status = file != nullptr ? open_over_file(file, parent, keywords, context.out())
                                       : open_over_text(spec->fullName, "", 0, keywords, parent, context.out());
    if (file == nullptr && context.get() != nullptr) context->showsAsFile = true;
    return finish_opening(status, std::move(context), rescanText, out);
}

int push_parse_MemoryFile_stream(const char* name, const char* text, u64 length, parse_stream* stream, u32 state,
    void* userData, StreamPopFunctionType onPop, parse_stream** out) {
    ContextOwner context;
    const int status = open_over_text(name, text, length, nullptr, stream, context.out());
    if (status != 0 && status != kEMPTY_TEXT) return status;
    context->contextState = state | kCONTEXT_AUTO_POP;
    if (int pushed = push_parse_context(context.get()); pushed != 0) return pushed;
    context->userData = userData;
    context->onPop = onPop;
    parse_stream* pushed = context.release();
    if (out != nullptr) *out = pushed;
    return 0;
}

int push_keyword_stream(parse_stream* stream, token_set* keywords) {
    ContextOwner overlay;
    if (int status = open_parse_stream(nullptr, stream, keywords, overlay.out()); status != 0) return status;
    if (int status = push_parse_context(overlay.get()); status != 0) return status;
    overlay.release()->isReusable = true;
    return 0;
}

const char* get_stream_file_name(const parse_stream* stream) {
    return stream == nullptr ? "" : GetFileName(activeContext(stream)->file);
}

u64 get_stream_size(const parse_stream* stream) {
    const parse_stream* context = activeContext(stream);
    return static_cast<u64>(context->textEnd - context->textBegin);
}

u32 get_stream_line_number(const parse_stream* stream) {
    const parse_stream* context = activeContext(stream);
    return queue_place(context) != nullptr ? context->lookAhead->head->lineNumber : context->lineNumber;
}

void set_stream_line_number(parse_stream* stream, u32 lineNumber) {
    activeContext(stream)->lineNumber = lineNumber;
}

u64 get_stream_position(const parse_stream* stream) {
    const parse_stream* context = activeContext(stream);
    const char* place = queue_place(context) != nullptr ? context->lookAhead->head->sourcePosition : context->position;
    return static_cast<u64>(place - context->textBegin);
}

void set_stream_position(parse_stream* stream, u64 position) {
    parse_stream* context = activeContext(stream);
    memdata::clearTokens(context->lookAhead);
    context->pendingStatus = 0;
    context->position = context->textBegin + std::min(position, get_stream_size(stream));
    // Loops move back at every round, so the start of the line is not looked for far away.
    const char* line = context->position;
    const char* limit = line - std::min(get_stream_position(stream), kLINE_LOOK_BACK);
    while (line > limit && !memdata::isOf(line[-1], memdata::kLINE_END_CHARACTER)) --line;
    context->lineStart = line;
}

u32 get_stream_number_base(const parse_stream* stream) {
    return activeContext(stream)->numberBase;
}

u32 set_stream_number_base(parse_stream* stream, u32 base) {
    return std::exchange(activeContext(stream)->numberBase, base);
}

void attach_user_context_data(parse_stream* stream, void* data) {
    activeContext(stream)->userData = data;
}

void* retrive_user_context_data(const parse_stream* stream) {
    return activeContext(stream)->userData;
}

u32 get_comment_nest_level(const parse_stream* stream) {
    return activeContext(stream)->commentNestLevel;
}

void memdata::showAsFile(parse_stream* stream) {
    // Below a rescan text that may stand on top of it already.
    stream->showsAsFile = true;
}
