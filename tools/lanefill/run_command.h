// run_command.h - one run of the engine from the words of a command line.
// SPDX-License-Identifier: Apache-2.0
#ifndef LANEFILL_RUN_COMMAND_H
#define LANEFILL_RUN_COMMAND_H

#include <span>

namespace memdata {

// Carries out the switches and gives the exit status: 0; the engine's status where it lies in 1 to 255; 1 for other
// failures. Help and message files exit with 0. What a run did not do although a user may have meant it is said in a
// line on standard error.
int runOptionWords(std::span<char* const> words);

} // namespace memdata

#endif
