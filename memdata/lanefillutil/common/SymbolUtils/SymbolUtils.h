// SymbolUtils.h - one hash table for many name spaces and scopes.
// SPDX-License-Identifier: Apache-2.0
//
// A symbol is a name in a scope of a space. Where a space of 0 is given the name alone counts: the first entry of its
// chain, whatever its space and scope. A value enters with its releaser, which deletion calls and extraction does
// not; while nothing was entered (null came back) the value stays with the caller. Null names, tables and contexts
// find nothing; where something would be entered they are refused with an internal error. Out of memory has been
// reported when null comes back.
//
// Order of deletion: scopes before the table that they share, branches before the scopes under which they stand.
#ifndef MEMDATA_SYMBOL_UTILS_H
#define MEMDATA_SYMBOL_UTILS_H

#include "platform/BasicTypes.h"

using SymbolReleaserType = void (*)(void*);

struct symbol_entry;
struct symbol_table;

struct symbol_link {
    symbol_link** owner;
    symbol_link* next;
    symbol_entry* entry;
};

struct symbol_entry {
    symbol_entry** owner; // the pointer that points at this entry
    symbol_entry* next;   // in its bucket
    symbol_link* link;    // in a scope, or null
    u32 space;
    u32 scope;
    void* value;
    SymbolReleaserType releaser; // may be null

    // Ours, ahead of the name, which takes the rest of the block.
    symbol_link ownLink; // what link points at
    symbol_table* table; // that holds the entry
    u32 slotHash;        // of name, space and scope; only while the table has an index

    char name[1]; // the whole name stands here, terminated
};

struct symbol_table {
    u32 size;
    symbol_entry* buckets[1]; // size heads; what the table keeps for itself stands behind them
};

struct symbol_context {
    symbol_link* links;
    symbol_context* trunkParent;
    symbol_context* branchParent;
    symbol_table* table;
    u32 space;
    u32 scope;
};

// The last numbers given to a space and to a scope; 0 before the first, and again after the last
// FinalizeSystemResources.
extern u32 symbol_space_seed;
extern u32 symbol_scope_seed;

// PJW hash over the characters as signed bytes, modulo size; 0 for an empty name, a null, and a size of 0.
u32 hash(const char* name, u32 size);

// A table that is never resized: its size is the largest entry of primes_under_4096 below max(expectedSymbols, 26) / 2,
// 4093 at most. Chains hold two symbols on average at the expected number, and grow with every further one. Beyond that
// number an index beside the chains leads to the symbols of a space, so that a symbol costs the same whatever their
// number; a search with a space of 0 walks its chain.
symbol_table* create_symbol_table(unsigned expectedSymbols);
// Deletes all symbols with their releasers, frees the table and nulls the pointer. Contexts over it end up empty.
void delete_symbol_table(symbol_table** table);
// Symbols of one scope; all entries of the table when space is 0.
unsigned count_table_symbols(const symbol_table* table, u32 space, u32 scope);

// A root scope of a new space, its scope number 0.
symbol_context* create_symbol_space(symbol_table* table);
// Deletes the scope, its symbols with their releasers, and so on along the trunk up to its end. The table stays.
// *context is then the parent of the branch that ended there, null after a root.
void delete_symbol_space(symbol_context** context);
// Both open a new scope of the same space under *context, store it there and return it; on null *context is as
// before. Look-ups in a trunk child see through to its parents, in a branch child they do not.
symbol_context* push_trunk_symbol_scope(symbol_context** context);
symbol_context* push_branch_symbol_scope(symbol_context** context);
// Deletes a trunk child with its symbols and goes back to its parent. Nothing happens on a root or a branch.
void pop_symbol_scope(symbol_context** context);
// The parent, by trunk or by branch; the context itself at the root.
symbol_context* get_previous_symbol_scope(symbol_context* context);
// The end of the trunk: the root, or the branch that stands by itself.
symbol_context* get_global_symbol_scope(symbol_context* context);

// Enters a name at the end of its chain. Null when the scope has it already (the first value stays), or out of memory.
symbol_entry* insert_symbol(
    const char* name, symbol_table* table, u32 space, u32 scope, void* value, SymbolReleaserType releaser);
// The same in the context's scope, which then knows the symbol as its own. Newest first in its list.
symbol_entry* insert_context_symbol(
    const char* name, symbol_context* context, void* value, SymbolReleaserType releaser);
// Removes a symbol and calls its releaser on the value. The operations on contexts reach the context's own symbols.
void delete_symbol(const char* name, symbol_table* table, u32 space, u32 scope);
void delete_context_symbol(const char* name, symbol_context* context);
// Removes a symbol and hands its value back, null when there is none.
void* extract_symbol(const char* name, symbol_table* table, u32 space, u32 scope);
void* extract_context_symbol(const char* name, symbol_context* context);
// The first match of the chain, or null.
symbol_entry* lookup_symbol(const char* name, const symbol_table* table, u32 space, u32 scope);
// Looks in the context, then in each of its trunk parents unless localOnly.
symbol_entry* lookup_context_symbol(const char* name, bool localOnly, const symbol_context* context);
// Looks the symbol up, and inserts it when there is none: the value is taken only then. In a context this looks at
// the context's own symbols.
symbol_entry* enter_symbol(
    const char* name, symbol_table* table, u32 space, u32 scope, void* value, SymbolReleaserType releaser);
symbol_entry* enter_context_symbol(const char* name, symbol_context* context, void* value, SymbolReleaserType releaser);

#endif
