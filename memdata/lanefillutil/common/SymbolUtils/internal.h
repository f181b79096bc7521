// internal.h - what the table and its scopes share inside SymbolUtils.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_SYMBOL_UTILS_INTERNAL_H
#define MEMDATA_SYMBOL_UTILS_INTERNAL_H

#include "SymbolUtils/SymbolUtils.h"

#include <cstddef>

namespace memdata {

// The name reaches behind the record as it is declared.
inline const char* symbolName(const symbol_entry* entry) {
    return reinterpret_cast<const char*>(entry) + offsetof(symbol_entry, name);
}
// Whether an entry is what a name in a scope of a space stands for; in a space of 0 the name alone counts.
bool isSymbol(const symbol_entry* entry, const char* name, u32 space, u32 scope);

// Puts an entry at the head of its scope's list, through the link that it holds for this.
void enterSymbolLink(symbol_entry* entry, symbol_link** list);
// Takes the link of an entry out of its scope's list. The entry stays.
void leaveSymbolLink(symbol_link* link);
// Takes an entry out of its table and its scope, frees it, and gives its value back.
void* extractSymbolEntry(symbol_entry* entry);
// The same, and calls the entry's releaser on the value.
void deleteSymbolEntry(symbol_entry* entry);

} // namespace memdata

#endif
