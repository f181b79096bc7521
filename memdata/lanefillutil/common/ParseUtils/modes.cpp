// modes.cpp - switching how a context is read, and putting it back.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/modes.h"

#include "ParseUtils/streams.h"
#include "SystemUtils/bits.h"

using memdata::activeContext;

void set_parse_modes(parse_stream* stream, stream_state* state, u32 mask, bool on) {
    parse_stream* context = activeContext(stream);
    if (state != nullptr) {
        if (!state->active) *state = {true, context, context->contextId, context->parseModes, 0};
        state->changedMask |= mask;
    }
    setModesMask(&context->parseModes, mask, on);
}

void restore_parse_modes(parse_stream* stream, stream_state* state) {
    parse_stream* context = activeContext(stream);
    if (state->active && state->context == context && state->contextId == context->contextId)
        context->parseModes = (context->parseModes & ~state->changedMask) | (state->savedModes & state->changedMask);
    *state = {};
}

bool test_parse_modes(const parse_stream* stream, u32 mask, bool on) {
    return testModesMask(activeContext(stream)->parseModes, mask, on);
}

u32 set_context_state(parse_stream* stream, u32 mask, bool on) {
    return setModesMask(&activeContext(stream)->contextState, mask, on);
}

bool test_context_state(const parse_stream* stream, u32 mask, bool on) {
    return testModesMask(activeContext(stream)->contextState, mask, on);
}

void restore_context_state(parse_stream* stream, u32 value, u32 mask) {
    u32& state = activeContext(stream)->contextState;
    state = (state & ~mask) | (value & mask);
}
