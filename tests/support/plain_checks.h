// plain_checks.h - check bits of a bus word, bit by bit from the tables that define them.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_PLAIN_CHECKS_H
#define MEMDATA_TESTS_SUPPORT_PLAIN_CHECKS_H

#include "platform/BasicTypes.h"

namespace memdata::testing {

// The words of lanes of a bus, one behind the other, as far as 128 bits hold them.
struct PlainBusWord {
    u64 high = 0, low = 0;

    // Machine shifts count modulo 64: one of 64 bits does not shift.
    void append(unsigned width, u64 word);
};

// kind: 1 to 5, in the order of kPLAIN_CHECKS. reversed: the bytes of the word change places first.
u32 plainCheckBits(unsigned kind, bool reversed, PlainBusWord word);

} // namespace memdata::testing

#endif
