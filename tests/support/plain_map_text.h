// plain_map_text.h - maps of tests as texts in the forms that the engine reads.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_PLAIN_MAP_TEXT_H
#define MEMDATA_TESTS_SUPPORT_PLAIN_MAP_TEXT_H

#include "support/plain_map.h"

#include <random>
#include <string>

namespace memdata::testing {

// The language of maps. What can be said in several ways is said in one of them, by the dice.
std::string bmmText(const PlainMap& map, std::mt19937_64& dice);

// Maps of block RAM without a file of data and check words in one can be documents.
bool canBeXml(const PlainMap& map);
std::string xmlText(const PlainMap& map);

// The words behind -mf: maps of named processors whose lanes stand from the top bit down, all written alike.
bool canBeCompact(const PlainMap& map);
std::string compactText(const PlainMap& map);

// Where a lane is, in the words of its type.
std::string placeText(const PlainType& type, const PlainPlace& place);

} // namespace memdata::testing

#endif
