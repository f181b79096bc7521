// main.cpp - the command line tool: its own words, sub-commands, and runs of the engine.
// SPDX-License-Identifier: Apache-2.0
#include "check_command.h"
#include "console.h"
#include "devices_command.h"
#include "help_command.h"
#include "hosts/standalone/standalone_host.h"
#include "map_command.h"
#include "platform/watched_mapping.h"
#include "progress_bar.h"
#include "run_command.h"
#include "run_resources.h"

#include <new>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace {

using memdata::printError;
using memdata::StandaloneParameters;

constexpr int kUSAGE = 1;

int setParameter(std::string_view assignment) {
    const size_t equals = assignment.find('=');
    const std::string name(assignment.substr(0, equals));
    const std::string_view value = equals == assignment.npos ? "" : assignment.substr(equals + 1);
    switch (memdata::standaloneHost().parameters().setValueFromText(name, value)) {
    case StandaloneParameters::kUNKNOWN_NAME:
        printError("there is no parameter '" + name + "'; 'lanefill --params' lists them");
        return kUSAGE;
    case StandaloneParameters::kNO_BOOLEAN:
        printError("--param takes NAME=on or NAME=off, not '" + std::string(assignment) + "'");
        return kUSAGE;
    case StandaloneParameters::kSET:
        break;
    }
    return 0;
}

// Takes the tool's own words out. A status of -1: go on with the others.
int takeOwnWords(std::span<char* const> words, std::vector<char*>& others) {
    constexpr std::string_view kASSIGNED = "--param=";
    for (size_t i = 0; i < words.size(); ++i) {
        const std::string_view word = words[i];
        int status = 0;
        if (word == "--help") return memdata::runHelpCommand({});
        if (word == "--version") return memdata::printVersion();
        if (word == "--params") return memdata::printParameters();
        if (word == "--param" || word.starts_with(kASSIGNED)) {
            const bool isNext = word == "--param";
            if (isNext && i + 1 == words.size()) {
                printError("--param takes NAME=on or NAME=off");
                return kUSAGE;
            }
            status = setParameter(isNext ? words[++i] : word.substr(kASSIGNED.size()));
        } else if (word.starts_with("--") && word.size() > 2) {
            printError("there is no option '" + std::string(word) + "'; 'lanefill --help' lists all");
            status = kUSAGE;
        } else {
            others.push_back(words[i]);
        }
        if (status != 0) return status;
    }
    return -1;
}

// Whether the words are those of a sub-command, which they are then given to.
bool runSubCommand(std::span<char* const> words, int* status) {
    const std::string_view command = words.front();
    if (command == "devices")
        *status = memdata::runDevicesCommand(words.subspan(1));
    else if (command == "map")
        *status = memdata::runMapCommand(words.subspan(1));
    else if (command == "check")
        *status = memdata::runCheckCommand(words.subspan(1));
    else if (command == "help")
        *status = memdata::runHelpCommand(words.subspan(1));
    else
        return false;
    return true;
}

int run(std::span<char* const> words) {
    memdata::registerProgressParameters();
    memdata::registerRunParameters();
    if (words.empty()) return memdata::printIntroduction();
    int status = 0;
    if (runSubCommand(words, &status)) return status; // its words are its own
    std::vector<char*> others;
    if (status = takeOwnWords(words, others); status >= 0) return status;
    if (others.empty()) return memdata::printIntroduction();
    if (runSubCommand(others, &status)) return status;
    if (others.front()[0] != '-') {
        printError("'" + std::string(others.front()) +
                   "' is no sub-command; files follow a switch: -bm for an address map, -bd for a data file, -bt for a "
                   "bit file");
        return kUSAGE;
    }
    return memdata::runOptionWords(others);
}

} // namespace

int main(int count, char** arguments) {
    memdata::surviveLostPages();
    try {
        return run(std::span<char* const>(arguments, static_cast<size_t>(count)).subspan(count > 0 ? 1 : 0));
    } catch (const std::bad_alloc&) {
        return memdata::reportExhaustedMemory();
    }
}
