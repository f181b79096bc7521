// map_command.h - lanefill map: the memories of an address map as a table for people.
// SPDX-License-Identifier: Apache-2.0
#ifndef LANEFILL_MAP_COMMAND_H
#define LANEFILL_MAP_COMMAND_H

#include <span>
#include <string>

struct AddressMappingType;

namespace memdata {

// Runs the sub-command on the words behind "map": an address map and switches of a run, such as -p and -I. Writes
// nothing. Exit status: 0; else as a run of the engine that reads the map.
int runMapCommand(std::span<char* const> words);

// Processors, spaces and, a line each, lanes with their bits, words and places, in the order of the map.
std::string mapTable(const AddressMappingType* mapping);

} // namespace memdata

#endif
