// streams.h - a text being read, and the stack of texts inside it: included files, macro bodies, keyword overlays.
// SPDX-License-Identifier: Apache-2.0
//
// The first context of a stack is its root, the handle that clients keep. Each operation takes any context of the
// stack and acts on the active one, root->current. A context with a file owns it and closes it when popped; texts in
// memory stay their owner's and must live until the context is popped. An overlay has no text of its own: it reads
// on in that of the context below, with further keywords.
//
// Texts need not be terminated. The scanner never reads behind the size of the file.
#ifndef MEMDATA_PARSE_UTILS_STREAMS_H
#define MEMDATA_PARSE_UTILS_STREAMS_H

#include "FileUtils/FileUtils.h"
#include "ParseUtils/keyword_sets.h"
#include "ParseUtils/modes.h"
#include "SymbolUtils/SymbolUtils.h"
#include "SystemUtils/containers.h"

using StreamPopFunctionType = long (*)(parse_stream* context);

struct parse_stream {
    fileIODescriptor* file;         // the text; an overlay has the one below
    u32 contextId;                  // from 1, never used again
    parse_stream* root;             // the first context
    parse_stream* parent;           // the context below; null in the root
    parse_stream* current;          // in the root: the active context
    token_element* lastToken;       // last token scanned in this context, without its text; null before the first
    memdata::TokenQueue* lookAhead; // tokens read early or put back; an overlay has the one below
    u32 contextState;               // kCONTEXT_... bits
    u32 parseModes;                 // kMODE_... bits
    u32 commentNestLevel;           // open comments in the text
    StackType* contextStack;        // in the root: the contexts below the active one
    StackType* directiveStack;      // in the root: PP_Directive_Element of open conditionals and loops
    u32 directiveDepthAtOpen;       // depth of directiveStack when this context began
    symbol_context* macroSymbols;   // in the root: the innermost macro scope
    const char* position;           // next character
    const char* lineStart;          // start of the line that holds it
    u32 lineNumber;                 // of that line, from 1
    token_set* keywords;            // null for none
    void* userData;                 // the client's
    u32 numberBase;                 // 0 means prefixes only
    StreamPopFunctionType onPop;    // called once when the context is popped; may be null
    bool noKeywordLookup;           // words are identifiers
    // From here on the record is this module's own.
    memdata::TokenQueue ownLookAhead;
    const char* textBegin;
    const char* textEnd;         // one behind the last character
    u32 textId;                  // contextId of the context that owns the text
    parse_stream* keywordsBelow; // nearest context below with another set; null at the end of the chain
    const char* bracketRun;      // a run of characters that can stand in brackets, looked through already ...
    const char* bracketRunEnd;   // ... and its end
    symbol_table* macroTable;    // in the root
    int pendingStatus;           // of a token that could not be read early; the next read gives it back
    u64 pushedBytes;             // in the root: text of macros and rescans so far
    u32 includeDepth;            // files below and with this one; 0 in the root
    u32 expansionDepth;          // macro bodies and rescans below and with this one
    u64 repeatedBytes;           // in the root: text that loops went back over so far
    u64 fileTokens;              // in the root: tokens scanned so far in texts other than macros and rescans
    u64 countedTokens;           // in the root: of these, up to where loops have counted them as repeated
    u64 repeatedTokens;          // in the root: tokens that loops went back over, and those of macros and rescans
    u32 nestedReads;             // in the root: tokens being read on behalf of tokens being read
    u32 openParentheses;         // in the root: of all expressions being evaluated
    u32 callLine;                // line in the context below at which this one was pushed
    const char* openComment;     // the outermost open comment: its place ...
    const char* openCommentLine; // ... the start of its line ...
    u32 openCommentLineNumber;   // ... and that line's number
    fileIODescriptor* idleFile;  // of a context that is idle or about to be: the file it was read through
    parse_stream* idleContexts;  // in the root: contexts over texts in memory to be used again, chained by parent
    parse_stream* idleOverlays;  // in the root: the same of overlays
    bool isReusable;             // goes to one of these two when it is popped
    bool showsAsFile;            // a text in memory whose alerts show file and line as a file on disk does
    bool isOnStack;
};

// Opens a context over a file, which the context owns from status 0 or 17 on. The file must be one buffer
// (kWHOLE_FILE_BUFFER) or a text in memory.
//   file      null opens an overlay on the active context of parent
//   parent    null opens a root. A child is not active until push_parse_context. It takes over keywords (when it is
//             given none), modes, number base and noKeywordLookup of the active context.
//   keywords  may be null
//   out       set with status 0 and 17
// Status 0; 17 the file holds no text; 3 both file and parent are null, or the file is not one buffer; 7.
int open_parse_stream(fileIODescriptor* file, parse_stream* parent, token_set* keywords, parse_stream** out);

// Opens a root, or a child that is not pushed yet, over length bytes at text.
//   rescanText  when not null it is read first: it is pushed at once as the memory stream "rescan", on a child that
//               is itself pushed for this
// Status as open_parse_stream.
int open_parse_MemoryFile(const char* name, const char* text, u64 length, token_set* keywords, const char* rescanText,
    parse_stream* parent, parse_stream** out);

// The same over a file on disk, looked for in the registered include folders too, or over the data that the
// specification holds.
//   defaultExtension  for a name without one; a leading "+" is passed over
// Status as open_parse_stream; 1 with kERROR_EMPTY_FILE_NAME, or kERROR_OPENING_FILE at the place of the parent when
// there is one.
int open_parse_DiskFile(fileSpecType* spec, const char* defaultExtension, token_set* keywords, const char* rescanText,
    parse_stream* parent, parse_stream** out);

// Pushes a child over a text in memory. When it is popped, onPop (may be null) is called with it, once, and can
// release what userData holds.
//   state  kCONTEXT_... bits; kCONTEXT_AUTO_POP is added
//   out    may be null
// Status 0, also for an empty text; 21 with an alert when a limit is reached; 7. onPop is not called when the status
// is not 0.
int push_parse_MemoryFile_stream(const char* name, const char* text, u64 length, parse_stream* stream, u32 state,
    void* userData, StreamPopFunctionType onPop, parse_stream** out);

// Pushes an overlay: from here on the words of the set are tried first. Status 0, 7.
int push_keyword_stream(parse_stream* stream, token_set* keywords);

// Makes an opened child the active context. Status 0; 3 null or already on the stack; 7; 21 with an alert when a
// limit of nesting is reached. The caller keeps the context unless the status is 0.
int push_parse_context(parse_stream* context);
// Takes the active context off the stack without closing it; null when the root is active. The caller owns it.
parse_stream* pop_parse_context(parse_stream* stream);

// Closes the active context and goes back to the one below: its modes go along, unless it has kCONTEXT_AUTO_POP, and
// its number base always; an overlay hands its place down. A root is closed with all that it shares. Status 0, that
// of onPop, or 21 when directives or comments were left open at the end of the text (with an alert).
int pop_parse_stream(parse_stream* stream);
// At the end of a text: pop_parse_stream, but an overlay over a text that ends too stays in force on what remains.
int auto_pop_parse_stream(parse_stream* stream);
// Closes a context, with all that are above it, and nulls the pointer; a context that was never pushed too. Null is
// accepted. Status as pop_parse_stream, the first that is not 0.
int close_parse_stream(parse_stream** stream);
// Ends the reading of the context's file: reports open directives and comments when its end was reached, drops
// queued tokens, closes the file. Status 0 or 21.
int close_parse_stream_file(parse_stream* context);

const char* get_stream_file_name(const parse_stream* stream); // "" for null
u64 get_stream_size(const parse_stream* stream);              // bytes of the text
u32 get_stream_line_number(const parse_stream* stream);
void set_stream_line_number(parse_stream* stream, u32 lineNumber);
// Offset of the next character in the text; of the first queued token when there is one.
u64 get_stream_position(const parse_stream* stream);
// Moves to an offset (clamped to the text) and drops queued tokens; the line number stays.
void set_stream_position(parse_stream* stream, u64 position);
u32 get_stream_number_base(const parse_stream* stream);
u32 set_stream_number_base(parse_stream* stream, u32 base); // the old one
void attach_user_context_data(parse_stream* stream, void* data);
void* retrive_user_context_data(const parse_stream* stream);
u32 get_comment_nest_level(const parse_stream* stream);

namespace memdata {

inline parse_stream* activeContext(const parse_stream* stream) {
    return stream->root->current;
}

// The alerts of a text in memory show file and line from now on, as those of a file on disk do: for texts that were
// read from a file. The name given at opening is shown.
void showAsFile(parse_stream* stream);

// Keywords that hold for a piece of a text, with the modes to read it in, as a scope. At its end the overlay is taken
// out from wherever it stands: a macro that the piece has opened can reach on behind the piece, and is then read on as
// if the overlay had never been there. (pop_parse_stream would close the macro.)
class KeywordOverlay {
public:
    KeywordOverlay(parse_stream* stream, token_set* keywords);
    ~KeywordOverlay() { close(); }
    KeywordOverlay& operator=(KeywordOverlay&&) = delete; // neither copied nor moved

    int status() const { return status_; } // of pushing: 0, 7
    // Directly after the start.
    void setModes(u32 mask, bool on);
    void ignoreWords(); // words are identifiers; symbols of keyword sets still count
    // The end ahead of the scope's. Status as pop_parse_stream.
    int close();

private:
    parse_stream* root_ = nullptr; // null when there is no overlay (any more)
    parse_stream* overlay_ = nullptr;
    u32 contextId_ = 0; // of the overlay, which can be closed already where memory was exhausted
    int status_;
    u32 changedModes_ = 0;
};

// Closes a stream; a status is lost, so failures are returned with close_parse_stream on the good way.
using StreamOwner = Tracked<parse_stream, close_parse_stream>;

} // namespace memdata

#endif
