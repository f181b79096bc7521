// help_command.h - what the tool says about itself.
// SPDX-License-Identifier: Apache-2.0
#ifndef LANEFILL_HELP_COMMAND_H
#define LANEFILL_HELP_COMMAND_H

#include <span>
#include <string>

namespace memdata {

// All print to standard output. Exit status: 0; 1 when it can not be written, or for an unknown topic.
int printIntroduction(); // ten lines, for a call without a word
int printVersion();
int printParameters(); // the host's, with defaults and descriptions

// Without words the whole help; else the topics of the words: switches with or without their dash, and sub-commands.
int runHelpCommand(std::span<char* const> words);
int printTopic(std::string topic); // one of them

} // namespace memdata

#endif
