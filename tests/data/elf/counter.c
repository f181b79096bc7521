/* counter.c - a small program with code, constants, initialised and cleared variables. */
/* SPDX-License-Identifier: Apache-2.0 */

static const unsigned char kSTEPS[] = {1, 1, 2, 3, 5, 8, 13, 21};
static const char kNAME[] = "memdata counter";

unsigned int gCount = 0xCAFE0001;
const char* gName = kNAME;
unsigned int gHistory[16];

__attribute__((section(".start"), used)) void _start(void) {
    for (unsigned int i = 0;; ++i) {
        gCount += kSTEPS[i % 8];
        gHistory[i % 16] = gCount ^ (unsigned int)gName[i % 8];
    }
}
