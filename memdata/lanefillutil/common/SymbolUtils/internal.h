// internal.h - what the table and its scopes share inside SymbolUtils.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_SYMBOL_UTILS_INTERNAL_H
#define MEMDATA_SYMBOL_UTILS_INTERNAL_H

#include "SymbolUtils/SymbolUtils.h"

namespace memdata {

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
