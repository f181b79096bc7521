// help_topics.cpp - see help_topics.h.
// SPDX-License-Identifier: Apache-2.0
#include "CmdParseUtils/help_topics.h"

#include <algorithm>
#include <strings.h>

namespace memdata {

namespace {

constexpr HelpTopic kTOPICS[] = {
#define HELP_TOPIC(name, alias, syntax, summary, meaning, example) {name, alias, syntax, summary, meaning, example},
#include "CmdParseUtils/help_topics.def"
#undef HELP_TOPIC
};

constexpr size_t kSYNTAX_COLUMN = 28;

bool same_but_for_case(std::string_view a, std::string_view b) {
    return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

template<class Compare>
const HelpTopic* find_topic(std::string_view word, Compare same) {
    if (word.empty()) return nullptr;
    const auto* topic = std::ranges::find_if(
        kTOPICS, [&](const HelpTopic& row) { return same(row.name, word) || same(row.alias, word); });
    return topic == std::end(kTOPICS) ? nullptr : topic;
}

std::string indented(std::string_view text) {
    std::string lines = "  ";
    for (const char c : text) {
        lines += c;
        if (c == '\n') lines += "  ";
    }
    return lines + "\n";
}

} // namespace

std::span<const HelpTopic> allHelpTopics() {
    return kTOPICS;
}

const HelpTopic* findHelpTopic(std::string_view word) {
    if (word.starts_with('-')) word.remove_prefix(1);
    const HelpTopic* topic = find_topic(word, std::equal_to<std::string_view>());
    return topic != nullptr ? topic : find_topic(word, same_but_for_case);
}

std::string helpOverview() {
    std::string text;
    for (const HelpTopic& topic : kTOPICS) {
        std::string line = "  " + std::string(topic.syntax);
        // A long syntax has its summary on the next line.
        if (line.size() >= kSYNTAX_COLUMN) line += "\n";
        const size_t last = line.rfind('\n');
        const size_t column = last == std::string::npos ? line.size() : line.size() - last - 1;
        line.append(kSYNTAX_COLUMN - column, ' ');
        text.append(line).append(topic.summary).append("\n");
    }
    return text;
}

std::string helpText(const HelpTopic& topic) {
    std::string text(topic.syntax);
    text += "\n";
    if (!topic.alias.empty()) text += indented("-" + std::string(topic.alias) + " is the same.");
    text += indented(topic.meaning);
    text += "  Example: " + std::string(topic.example) + "\n";
    return text;
}

std::string helpText(StrList topics) {
    const unsigned long count = StrListCount(topics);
    if (count == 0) return helpOverview();
    std::string text;
    for (unsigned long i = 0; i < count; ++i) {
        const char* word = StrListGet(topics, i);
        const HelpTopic* topic = findHelpTopic(word);
        if (i != 0) text += "\n";
        text += topic != nullptr ? helpText(*topic) : "There is no help about '" + std::string(word) + "'.\n";
    }
    return text;
}

} // namespace memdata
