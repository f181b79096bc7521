// help_topics.h - what can be said about each switch, for whoever prints help.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_CMD_PARSE_UTILS_HELP_TOPICS_H
#define MEMDATA_CMD_PARSE_UTILS_HELP_TOPICS_H

#include "StringUtils/StringUtils.h"

#include <span>
#include <string>
#include <string_view>

namespace memdata {

struct HelpTopic {
    std::string_view name;    // of the switch, without its dash
    std::string_view alias;   // another name; may be empty
    std::string_view syntax;  // one line
    std::string_view summary; // one line, no full stop
    std::string_view meaning; // lines
    std::string_view example; // one line, as it would stand behind the program's name
};

std::span<const HelpTopic> allHelpTopics(); // in reading order

// The topic of a word: a name or an alias, with or without its dash. Case counts where two topics differ by it ("d" and
// "D"), and is ignored otherwise. Null when there is none.
const HelpTopic* findHelpTopic(std::string_view word);

// All switches, a line each.
std::string helpOverview();
// Syntax, meaning and example.
std::string helpText(const HelpTopic& topic);
// What -h asks for: the texts of the topics, or the overview without any. A word that is no topic says so.
std::string helpText(StrList topics);

} // namespace memdata

#endif
