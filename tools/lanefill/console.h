// console.h - what the tool itself says: results on standard output, remarks on standard error.
// SPDX-License-Identifier: Apache-2.0
#ifndef LANEFILL_CONSOLE_H
#define LANEFILL_CONSOLE_H

#include <string_view>

namespace memdata {

// The text as it is. Exit status: 0, or 1 with a remark when standard output can not be written.
int print(std::string_view text);

// Behind work that printed by itself: its status, or 1 with a remark when it succeeded and its output was lost.
int finishPrinting(int status);

// "lanefill: text" in a line of its own.
void printError(std::string_view text);

} // namespace memdata

#endif
