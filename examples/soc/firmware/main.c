// main.c - says hello on the serial port, with a checksum over its own code.
// SPDX-License-Identifier: Apache-2.0
#include <stdint.h>

static volatile uint32_t* const SERIAL_DATA = (volatile uint32_t*)0x10000000;

extern const uint8_t code_start[], code_end[]; // of the linker script

static const char kDIGITS[] = "0123456789ABCDEF";
static char greeting[] = "Hello from block RAM, checksum ________\n"; // changed below: it stands in .data
static uint32_t greetings;                                            // stands in .bss

static uint32_t checksum(const uint8_t* first, const uint8_t* end) {
    uint32_t a = 1, b = 0;
    for (; first != end; ++first) {
        a += *first;
        if (a >= 65521) a -= 65521; // no division: the processor has none
        b += a;
        if (b >= 65521) b -= 65521;
    }
    return b << 16 | a;
}

static void putHex(char* out, uint32_t value) {
    for (int digit = 7; digit >= 0; --digit, value >>= 4) out[digit] = kDIGITS[value & 15];
}

int main(void) {
    char* field = greeting;
    while (*field != '_') ++field;
    putHex(field, checksum(code_start, code_end));
    for (;;) {
        for (const char* c = greeting; *c != '\0'; ++c) *SERIAL_DATA = (uint8_t)*c;
        ++greetings;
    }
}
