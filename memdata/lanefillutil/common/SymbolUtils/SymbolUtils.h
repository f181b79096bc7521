// SymbolUtils.h - one hash table for many name spaces and scopes.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_SYMBOL_UTILS_H
#define MEMDATA_SYMBOL_UTILS_H

#include "platform/BasicTypes.h"

using SymbolReleaserType = void (*)(void*);

struct symbol_link;

struct symbol_entry {
    symbol_entry** owner; // the pointer that points at this entry
    symbol_entry* next;   // in its bucket
    symbol_link* link;    // in a scope, or null
    u32 space;
    u32 scope;
    void* value;
    SymbolReleaserType releaser; // may be null
    char name[1];                // the whole name stands here, terminated
};

struct symbol_link {
    symbol_link** owner;
    symbol_link* next;
    symbol_entry* entry;
};

struct symbol_table {
    u32 size;
    symbol_entry* buckets[1]; // size heads
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

u32 hash(const char* name, u32 size);
symbol_table* create_symbol_table(unsigned expectedSymbols);
void delete_symbol_table(symbol_table** table);
unsigned count_table_symbols(const symbol_table* table, u32 space, u32 scope);
symbol_context* create_symbol_space(symbol_table* table);
void delete_symbol_space(symbol_context** context);
symbol_context* push_trunk_symbol_scope(symbol_context** context);
symbol_context* push_branch_symbol_scope(symbol_context** context);
void pop_symbol_scope(symbol_context** context);
symbol_context* get_previous_symbol_scope(symbol_context* context);
symbol_context* get_global_symbol_scope(symbol_context* context);
symbol_entry* insert_symbol(
    const char* name, symbol_table* table, u32 space, u32 scope, void* value, SymbolReleaserType releaser);
symbol_entry* insert_context_symbol(
    const char* name, symbol_context* context, void* value, SymbolReleaserType releaser);
void delete_symbol(const char* name, symbol_table* table, u32 space, u32 scope);
void delete_context_symbol(const char* name, symbol_context* context);
void* extract_symbol(const char* name, symbol_table* table, u32 space, u32 scope);
void* extract_context_symbol(const char* name, symbol_context* context);
symbol_entry* lookup_symbol(const char* name, const symbol_table* table, u32 space, u32 scope);
symbol_entry* lookup_context_symbol(const char* name, bool localOnly, const symbol_context* context);
symbol_entry* enter_symbol(
    const char* name, symbol_table* table, u32 space, u32 scope, void* value, SymbolReleaserType releaser);
symbol_entry* enter_context_symbol(const char* name, symbol_context* context, void* value, SymbolReleaserType releaser);

#endif
