// scopes.cpp - name spaces and scopes over one symbol table.
// SPDX-License-Identifier: Apache-2.0
#include "SymbolUtils/SymbolUtils.h"

#include "SymbolUtils/internal.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"

u32 symbol_space_seed = 0;
u32 symbol_scope_seed = 0;

namespace {

bool gSeedResetRegistered = false;

// Numbers start again with the next lifetime of the engine, whose tables are all new.
void reset_seeds() {
    symbol_space_seed = 0;
    symbol_scope_seed = 0;
    gSeedResetRegistered = false;
}

// 0 means "any space" in a look-up and is never given out.
u32 next_number(u32* seed) {
    if (!gSeedResetRegistered) gSeedResetRegistered = RegisterSystemFinalizationFunction(reset_seeds) == 0;
    if (++*seed == 0) ++*seed;
    return *seed;
}

// A new scope of the same space. On status 0 of the allocation *context is the child, which is also returned.
symbol_context* push_scope(symbol_context** context, symbol_context* symbol_context::*parent) {
    if (context == nullptr || *context == nullptr) {
        PrintInternalError(kERROR_MESSAGE_STRING, 3, "A symbol scope was to be opened without a symbol space.");
        return nullptr;
    }
    symbol_context* child = NEW_RECORD(symbol_context);
    if (child == nullptr) return nullptr;
    child->*parent = *context;
    child->table = (*context)->table;
    child->space = (*context)->space;
    child->scope = next_number(&symbol_scope_seed);
    *context = child;
    return child;
}

void delete_context(symbol_context* context) {
    while (context->links != nullptr) memdata::deleteSymbolEntry(context->links->entry);
    releaseMemory(context);
}

} // namespace

symbol_context* create_symbol_space(symbol_table* table) {
    if (table == nullptr) {
        PrintInternalError(kERROR_MESSAGE_STRING, 3, "A symbol space was to be made without a symbol table.");
        return nullptr;
    }
    symbol_context* root = NEW_RECORD(symbol_context);
    if (root == nullptr) return nullptr;
    root->table = table;
    root->space = next_number(&symbol_space_seed);
    return root;
}

void delete_symbol_space(symbol_context** context) {
    if (context == nullptr) return;
    while (*context != nullptr) {
        symbol_context* old = *context;
        symbol_context* branchParent = old->branchParent;
        *context = old->trunkParent;
        delete_context(old);
        if (*context == nullptr) {
            *context = branchParent;
            return;
        }
    }
}

symbol_context* push_trunk_symbol_scope(symbol_context** context) {
    return push_scope(context, &symbol_context::trunkParent);
}

symbol_context* push_branch_symbol_scope(symbol_context** context) {
    return push_scope(context, &symbol_context::branchParent);
}

void pop_symbol_scope(symbol_context** context) {
    if (context == nullptr || *context == nullptr || (*context)->trunkParent == nullptr) return;
    symbol_context* old = *context;
    *context = old->trunkParent;
    delete_context(old);
}

symbol_context* get_previous_symbol_scope(symbol_context* context) {
    if (context == nullptr) return nullptr;
    if (context->trunkParent != nullptr) return context->trunkParent;
    return context->branchParent != nullptr ? context->branchParent : context;
}

symbol_context* get_global_symbol_scope(symbol_context* context) {
    while (context != nullptr && context->trunkParent != nullptr) context = context->trunkParent;
    return context;
}

symbol_entry* insert_context_symbol(
    const char* name, symbol_context* context, void* value, SymbolReleaserType releaser) {
    if (context == nullptr) {
        PrintInternalError(kERROR_MESSAGE_STRING, 3, "A symbol was to be entered without a symbol scope.");
        return nullptr;
    }
    symbol_entry* entry = insert_symbol(name, context->table, context->space, context->scope, value, releaser);
    if (entry != nullptr) memdata::enterSymbolLink(entry, &context->links);
    return entry;
}

void delete_context_symbol(const char* name, symbol_context* context) {
    if (context != nullptr) delete_symbol(name, context->table, context->space, context->scope);
}

void* extract_context_symbol(const char* name, symbol_context* context) {
    return context == nullptr ? nullptr : extract_symbol(name, context->table, context->space, context->scope);
}

symbol_entry* lookup_context_symbol(const char* name, bool localOnly, const symbol_context* context) {
    for (; context != nullptr; context = context->trunkParent) {
        symbol_entry* entry = lookup_symbol(name, context->table, context->space, context->scope);
        if (entry != nullptr || localOnly) return entry;
    }
    return nullptr;
}

symbol_entry* enter_context_symbol(
    const char* name, symbol_context* context, void* value, SymbolReleaserType releaser) {
    symbol_entry* entry = lookup_context_symbol(name, true, context);
    return entry != nullptr ? entry : insert_context_symbol(name, context, value, releaser);
}
