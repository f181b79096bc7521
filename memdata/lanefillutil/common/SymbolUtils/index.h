// index.h - the way to a symbol of a table that holds more of them than it was made for.
// SPDX-License-Identifier: Apache-2.0
//
// A table keeps its size, so chains grow with the number of symbols, and a step along a chain is a cache miss. A table
// that holds more symbols than it was made for gets an index beside its chains: growing slots over name, space
// and scope, and the ends of the chains. The chains stay what they are, in contents and order; smaller tables pay
// nothing.
#ifndef MEMDATA_SYMBOL_UTILS_INDEX_H
#define MEMDATA_SYMBOL_UTILS_INDEX_H

#include "SymbolUtils/SymbolUtils.h"

namespace memdata {

// With the hash beside it, an entry is read only when it is the one that is looked for.
struct SymbolSlotType {
    symbol_entry* entry; // null in a free slot
    u32 hash;            // of name, space and scope, as in symbol_entry::slotHash
};

// Stands behind the last bucket head of a table.
struct SymbolIndexType {
    u32 symbolCount;       // of the whole table
    u32 slotCount;         // a power of two, at least twice symbolCount; 0 while there is no index
    SymbolSlotType* slots; // an entry stands in the first slot from its hash on that was free
    symbol_entry*** ends;  // per bucket: the null that ends its chain
};

// Bytes of a table record with its index's.
size_t symbolTableBytes(u32 size);
SymbolIndexType* indexOf(symbol_table* table);

// Ahead of one more symbol: begins or widens the index where it is time to. False when there is no memory.
bool makeRoomInIndex(symbol_table* table);
// The hash of a symbol in an index, whose slot is asked for: in a large one it is far away.
u32 beginIndexSearch(const SymbolIndexType* index, const char* name, u32 space, u32 scope);
// The entry of a name in a scope of a space, which is not 0; null for none. Only while there is an index.
symbol_entry* findIndexed(const SymbolIndexType* index, u32 slotHash, const char* name, u32 space, u32 scope);
// Counts an entry that was put at the end of the chain of a bucket, and enters it, by its slotHash, where there is an
// index.
void enterInIndex(symbol_table* table, symbol_entry* entry, u32 bucket);
// Ahead of taking an entry out of its chain.
void removeFromIndex(symbol_entry* entry);
// The table is as before its first makeRoomInIndex, but for the count.
void dropIndex(symbol_table* table);

} // namespace memdata

#endif
