// modes.h - how a context is being read: parse modes, context states, and savers that put them back.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PARSE_UTILS_MODES_H
#define MEMDATA_PARSE_UTILS_MODES_H

#include "platform/BasicTypes.h"

struct parse_stream;

// Bits of parse_stream::parseModes.
inline constexpr u32 kMODE_PLAIN_QUOTES = 1;    // quote characters are punctuation
inline constexpr u32 kMODE_RAW_BACKSLASH = 2;   // backslash is no escape; string text is kept as it stands
inline constexpr u32 kMODE_WHITESPACE = 4;      // kWHITESPACE_TOKEN is delivered
inline constexpr u32 kMODE_LINE_ENDS = 8;       // kEND_OF_LINE is delivered
inline constexpr u32 kMODE_COMMENTS = 16;       // comments are delivered as kCOMMENT_BLOCK_TOKEN
inline constexpr u32 kMODE_DEFINED = 32;        // `defined` is live
inline constexpr u32 kMODE_NO_MACROS = 64;      // macros are not expanded
inline constexpr u32 kMODE_NO_DIRECTIVES = 128; // directives are not acted on
inline constexpr u32 kMODE_NO_JOINING = 256;    // adjacent strings stay apart
inline constexpr u32 kMODE_DISCARD = 512;       // get_next_token drops tokens
inline constexpr u32 kMODE_NO_AUTO_POP = 1024;  // the end of a text is delivered in every context
inline constexpr u32 kMODE_MACRO_LAYOUT = 2048; // modes 4 and 8 hold inside macro bodies too
inline constexpr u32 kMODE_TRACE_DIRECTIVES = 0x1000000;
inline constexpr u32 kMODE_TRACE_MACROS = 0x2000000;
inline constexpr u32 kMODE_TRACE_TOKENS = 0x4000000;

// Bits of parse_stream::contextState.
inline constexpr u32 kCONTEXT_MACRO_BODY = 1;
inline constexpr u32 kCONTEXT_MACRO_DEFINITION = 2;
inline constexpr u32 kCONTEXT_FUNCTION_BODY = 4;
inline constexpr u32 kCONTEXT_AUTO_POP = 8; // popped at its end of text
inline constexpr u32 kCONTEXT_OVERLAY = 16; // keywords only, the text is that of the context below
inline constexpr u32 kCONTEXT_RESCAN = 32;

// What set_parse_modes changed in one context; starts as {}.
struct stream_state {
    bool active;
    parse_stream* context;
    u32 contextId;
    u32 savedModes;
    u32 changedMask;
};

// All of these act on the active context of the stream.

// Switches modes. The first use of a saver keeps the old modes, every use adds to what it will put back; without a
// saver (null) the change stays.
void set_parse_modes(parse_stream* stream, stream_state* state, u32 mask, bool on);
// Puts the changed modes back when the context that they were changed in is the active one; in any case the saver
// is unused afterwards.
void restore_parse_modes(parse_stream* stream, stream_state* state);
// With on: whether all modes of the mask are on; without: whether none is.
bool test_parse_modes(const parse_stream* stream, u32 mask, bool on);

// Switches state bits; the old state.
u32 set_context_state(parse_stream* stream, u32 mask, bool on);
bool test_context_state(const parse_stream* stream, u32 mask, bool on); // as test_parse_modes
// Puts the bits of the mask back to those of value, an old state.
void restore_context_state(parse_stream* stream, u32 value, u32 mask);

namespace memdata {

// A saver as a scope.
class ParseModes {
public:
    explicit ParseModes(parse_stream* stream) : stream_(stream) {}
    ParseModes(parse_stream* stream, u32 mask, bool on) : ParseModes(stream) { set(mask, on); }
    ~ParseModes() { restore(); }
    ParseModes& operator=(ParseModes&&) = delete; // neither copied nor moved

    void set(u32 mask, bool on) { set_parse_modes(stream_, &state_, mask, on); }
    void restore() { restore_parse_modes(stream_, &state_); }

private:
    parse_stream* stream_;
    stream_state state_{};
};

} // namespace memdata

#endif
