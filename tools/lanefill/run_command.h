// run_command.h - one run of the engine from the words of a command line.
// SPDX-License-Identifier: Apache-2.0
#ifndef LANEFILL_RUN_COMMAND_H
#define LANEFILL_RUN_COMMAND_H

#include <span>
#include <string>

namespace memdata {

// The engine's status for a text of options with -h.
constexpr int kHELP_WANTED = -1;

// Carries out the switches and gives the exit status. Help and message files exit with 0. What a run did not do although
// a user may have meant it is said in a line on standard error.
int runOptionWords(std::span<char* const> words);

// What sub-commands over the engine share: words to an option text (status 1 with a remark for a name that none can
// hold), the engine's status to that of the process (itself where it lies in 1 to 255, else 1), and the end of memory.
int optionTextOf(std::span<char* const> words, std::string* text);
int exitStatusOf(int status);
int reportExhaustedMemory();

} // namespace memdata

#endif
