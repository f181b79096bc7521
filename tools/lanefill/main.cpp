// main.cpp - the command line tool: picks the sub-command.
// SPDX-License-Identifier: Apache-2.0
#include "devices_command.h"

#include <span>
#include <string_view>

namespace {

constexpr const char* kHELP = "lanefill - puts software into the block RAMs of FPGA designs.\n"
                              "\n"
                              "  lanefill devices          the devices as a table (--all: with unlisted ones)\n"
                              "  lanefill devices tq7b100  one device, with a drawing of its memory columns\n"
                              "  lanefill devices --json   every record, array and decode table\n"
                              "  lanefill help             this text\n";

int printHelp() {
    if (std::fputs(kHELP, stdout) >= 0 && std::fflush(stdout) == 0) return 0;
    std::fputs("lanefill: standard output can not be written\n", stderr);
    return 1;
}

} // namespace

int main(int count, char** arguments) {
    const std::span<char* const> words(arguments, static_cast<size_t>(count));
    const std::string_view command = words.size() > 1 ? words[1] : "";
    if (command == "devices") return memdata::runDevicesCommand(words.subspan(2));
    if (command == "help" || command == "--help") return printHelp();
    std::fputs("lanefill: this build has no command line yet; 'lanefill help' tells what it can do\n", stderr);
    return 1;
}
