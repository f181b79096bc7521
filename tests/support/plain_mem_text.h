// plain_mem_text.h - MEM files of lanes: read as a simulator loads them, and what they have to say.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_PLAIN_MEM_TEXT_H
#define MEMDATA_TESTS_SUPPORT_PLAIN_MEM_TEXT_H

#include "support/plain_memory.h"

#include <map>
#include <string>

namespace memdata::testing {

// Address to digits; throws std::runtime_error where a simulator would complain.
using LoadedWords = std::map<u64, std::string>;
LoadedWords loadMemText(const std::string& text);

// The words of a lane, and of its check lane where both share the file.
LoadedWords wordsOf(const PlainLaneImage& lane, const PlainLaneImage* check);

// The records of a file, character by character, from the line feed ahead of the first.
std::string recordText(const PlainLaneImage& lane, const PlainLaneImage* check, bool is64Bit);

// The lines of a file ahead of its records, and from there on.
std::string headOf(const std::string& text);
std::string recordsOf(const std::string& text);

} // namespace memdata::testing

#endif
