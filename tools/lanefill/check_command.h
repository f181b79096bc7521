// check_command.h - lanefill check: does a bit file hold what map and data say?
// SPDX-License-Identifier: Apache-2.0
#ifndef LANEFILL_CHECK_COMMAND_H
#define LANEFILL_CHECK_COMMAND_H

#include <span>

namespace memdata {

// Runs the sub-command on the words behind "check": a bit file and the switches of a run. Writes nothing. Exit status:
// 0 equal; 4 something differs, told on standard output; else as a run of the engine.
int runCheckCommand(std::span<char* const> words);

} // namespace memdata

#endif
