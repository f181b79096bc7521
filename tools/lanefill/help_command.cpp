// help_command.cpp - see help_command.h.
// SPDX-License-Identifier: Apache-2.0
#include "help_command.h"

#include "CmdParseUtils/help_topics.h"
#include "console.h"
#include "hosts/standalone/standalone_host.h"

#include <string>
#include <string_view>

namespace memdata {
namespace {

constexpr std::string_view kINTRODUCTION =
    "lanefill puts software into the block RAMs of FPGA designs.\n"
    "\n"
    "  lanefill -bm soc.bmm -bd app.elf -bx sim          MEM files for a simulator\n"
    "  lanefill -bm soc.bmm -bd app.elf -bt top.bit -o b new.bit\n"
    "                                                    the bit file with the new software\n"
    "  lanefill -bm soc.bmm -o p checked.bmm             check a map, write it annotated\n"
    "\n"
    "lanefill --help       all switches and sub-commands\n"
    "lanefill help bd      one switch in detail\n"
    "lanefill devices      the devices it knows\n";

constexpr std::string_view kCOMMANDS = "Sub-commands and options of the tool:\n"
                                       "  devices [NAME]            the devices, or one of them; --all, --json\n"
                                       "  map FILE [SWITCHES]       the memories of an address map as a table\n"
                                       "  check FILE.bit SWITCHES   compare a bit file with a map and data\n"
                                       "  help [TOPIC...]           this text, or a switch in detail\n"
                                       "  --param NAME=on|off       set a parameter for this run; --params lists them\n"
                                       "  --version, --help\n"
                                       "\n"
                                       "Switches, in any order:\n";

constexpr std::string_view kCLOSING =
    "\n"
    "The exit status is 0 when all was done, else that of the failure, which a message explains.\n"
    "Existing files are kept unless -w is given. 'lanefill help SWITCH' has the details.\n";

struct CommandTopic {
    std::string_view name;
    std::string_view text;
};
constexpr CommandTopic kCOMMAND_TOPICS[] = {
    {"check", "lanefill check FILE.bit -bm MAP -bd DATA...\n"
              "  Decodes the memories of a bit file and compares them with what the map and the data\n"
              "  say, and its CRC words with what they should be. Writes nothing. Exit status 0 when\n"
              "  all is equal, 4 with a line for each lane that differs.\n"
              "  Example: lanefill check new.bit -bm soc.bmm -bd app.elf\n"},
    {"devices", "lanefill devices [NAME | --all | --json]\n"
                "  The devices as a table, one of them with a drawing of its memory columns, or all\n"
                "  records, location arrays and decode tables as JSON. --all: unlisted ones too.\n"
                "  Example: lanefill devices tq7b100\n"},
    {"map", "lanefill map FILE [SWITCHES]\n"
            "  Reads an address map and prints its processors, spaces and memories as a table: the\n"
            "  bits of the bus that each memory has, its words, its location. -p names the device.\n"
            "  Example: lanefill map soc.bmm -p tq7b100\n"},
    {"param", "lanefill --param NAME=on|off ...\n"
              "  Sets a parameter of the host for this run. --params lists all of them.\n"
              "  Example: lanefill --param memdata.debugLegacyMessages=on -bm soc.bmm\n"},
    {"params", "lanefill --params\n"
               "  The parameters of the host with their defaults, and what each of them does.\n"
               "  Example: lanefill --params\n"},
    {"help", "lanefill help [TOPIC...], lanefill --help\n"
             "  The switches and sub-commands in a list, or some of them in detail. A topic is a\n"
             "  switch, with or without its dash, or a sub-command.\n"
             "  Example: lanefill help bx devices\n"},
    {"version", "lanefill --version\n"
                "  The version of the tool.\n"
                "  Example: lanefill --version\n"},
};

// Null for a word that is neither a sub-command nor a switch.
std::string topicText(std::string_view word) {
    while (word.starts_with('-')) word.remove_prefix(1);
    for (const CommandTopic& topic : kCOMMAND_TOPICS)
        if (topic.name == word) return std::string(topic.text);
    const HelpTopic* topic = findHelpTopic(word);
    return topic == nullptr ? std::string() : helpText(*topic);
}

} // namespace

int printIntroduction() {
    return print(kINTRODUCTION);
}

int printVersion() {
    return print("lanefill of " + standaloneHost().fullProduct() + "\n");
}

int printParameters() {
    std::string text;
    for (const StandaloneParameters::Parameter& parameter : standaloneHost().parameters().list())
        text +=
            parameter.name + "=" + (parameter.defaultValue ? "on" : "off") + "\n    " + parameter.description + "\n";
    return print(text);
}

int runHelpCommand(std::span<char* const> words) {
    std::string text;
    if (words.empty()) {
        text.append(kINTRODUCTION).append("\n").append(kCOMMANDS).append(helpOverview()).append(kCLOSING);
        return print(text);
    }
    int status = 0;
    for (const char* word : words) {
        const std::string topic = topicText(word);
        if (topic.empty()) {
            printError("there is no help about '" + std::string(word) + "'; 'lanefill help' lists all topics");
            status = 1;
        } else {
            text += (text.empty() ? "" : "\n") + topic;
        }
    }
    const int printed = print(text);
    return printed != 0 ? printed : status;
}

int printTopic(std::string topic) {
    char* const words[] = {topic.data()};
    return runHelpCommand(words);
}

} // namespace memdata
