// scopes_test.cpp - name spaces and scopes over one symbol table.
// SPDX-License-Identifier: Apache-2.0
#include "SymbolUtils/SymbolUtils.h"

#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "support/alerts.h"
#include "support/allocation_faults.h"

#include <gtest/gtest.h>

#include <string>

namespace memdata::testing {
namespace {

std::string gReleased; // values in the order of their release

void* value(std::uintptr_t n) {
    return reinterpret_cast<void*>(n);
}

void note_release(void* v) {
    gReleased += std::to_string(reinterpret_cast<std::uintptr_t>(v)) + ' ';
}

class SymbolScopes : public ::testing::Test {
protected:
    SymbolScopes() { gReleased.clear(); }
    ~SymbolScopes() override {
        while (context_ != nullptr) delete_symbol_space(&context_);
        EXPECT_EQ(count_table_symbols(table_, 0, 0), 0u);
        delete_symbol_table(&table_);
        EXPECT_EQ(getCurrentMemoryUsage(), usageAtStart_);
    }
    symbol_entry* insert(const char* name, std::uintptr_t n) {
        return insert_context_symbol(name, context_, value(n), note_release);
    }
    // The value of a name as seen from the current scope, 0 when there is none.
    std::uintptr_t see(const char* name, bool localOnly = false) {
        const symbol_entry* entry = lookup_context_symbol(name, localOnly, context_);
        return entry == nullptr ? 0 : reinterpret_cast<std::uintptr_t>(entry->value);
    }
    // Values of the current scope's own symbols.
    std::string own() {
        std::string text;
        for (const symbol_link* link = context_->links; link != nullptr; link = link->next) {
            text += std::to_string(reinterpret_cast<std::uintptr_t>(link->entry->value)) + ' ';
            EXPECT_EQ(*link->owner, link);
            EXPECT_EQ(link->entry->link, link);
        }
        return text;
    }

    SystemResources system_;
    u64 usageAtStart_ = getCurrentMemoryUsage();
    symbol_table* table_ = create_symbol_table(100);
    symbol_context* context_ = create_symbol_space(table_);
};

TEST_F(SymbolScopes, ASpaceIsARootWithANewNumber) {
    EXPECT_EQ(context_->trunkParent, nullptr);
    EXPECT_EQ(context_->branchParent, nullptr);
    EXPECT_EQ(context_->links, nullptr);
    EXPECT_EQ(context_->table, table_);
    EXPECT_EQ(context_->space, 1u);
    symbol_context* other = create_symbol_space(table_);
    EXPECT_EQ(other->space, 2u);
    EXPECT_EQ(symbol_space_seed, 2u);
    delete_symbol_space(&other);
}

TEST_F(SymbolScopes, ATrunkChildSharesTableAndSpaceAndHasANewScope) {
    symbol_context* root = context_;
    EXPECT_EQ(push_trunk_symbol_scope(&context_), context_);
    EXPECT_NE(context_, root);
    EXPECT_EQ(context_->trunkParent, root);
    EXPECT_EQ(context_->table, table_);
    EXPECT_EQ(context_->space, root->space);
    EXPECT_NE(context_->scope, root->scope);
    EXPECT_EQ(context_->scope, symbol_scope_seed);
}

TEST_F(SymbolScopes, ABranchChildHasItsParentAsBranchOnly) {
    symbol_context* root = context_;
    EXPECT_EQ(push_branch_symbol_scope(&context_), context_);
    EXPECT_EQ(context_->trunkParent, nullptr);
    EXPECT_EQ(context_->branchParent, root);
    EXPECT_EQ(context_->space, root->space);
    EXPECT_NE(context_->scope, root->scope);
}

TEST_F(SymbolScopes, ATrunkChildSeesTheSymbolsOfItsParents) {
    insert("name", 1);
    push_trunk_symbol_scope(&context_);
    push_trunk_symbol_scope(&context_);
    EXPECT_EQ(see("name"), 1u);
    EXPECT_EQ(see("name", true), 0u);
    EXPECT_EQ(see("other"), 0u);
}

TEST_F(SymbolScopes, ABranchChildDoesNotSeeTheSymbolsOfItsParent) {
    insert("name", 1);
    push_branch_symbol_scope(&context_);
    EXPECT_EQ(see("name"), 0u);
    push_trunk_symbol_scope(&context_);
    EXPECT_EQ(see("name"), 0u);
}

TEST_F(SymbolScopes, AnInnerSymbolHidesTheOuterOneUntilItsScopeIsPopped) {
    insert("name", 1);
    push_trunk_symbol_scope(&context_);
    EXPECT_NE(insert("name", 2), nullptr);
    EXPECT_EQ(insert("name", 3), nullptr);
    EXPECT_EQ(see("name"), 2u);
    pop_symbol_scope(&context_);
    EXPECT_EQ(gReleased, "2 ");
    EXPECT_EQ(see("name"), 1u);
}

TEST_F(SymbolScopes, PoppingARootOrABranchIsANoOp) {
    symbol_context* root = context_;
    insert("name", 1);
    pop_symbol_scope(&context_);
    EXPECT_EQ(context_, root);
    symbol_context* branch = push_branch_symbol_scope(&context_);
    insert("name", 2);
    pop_symbol_scope(&context_);
    EXPECT_EQ(context_, branch);
    EXPECT_EQ(see("name"), 2u);
    EXPECT_EQ(gReleased, "");
}

TEST_F(SymbolScopes, ThePreviousScopeIsTheParentAndTheRootIsItsOwn) {
    symbol_context* root = context_;
    EXPECT_EQ(get_previous_symbol_scope(root), root);
    symbol_context* trunk = push_trunk_symbol_scope(&context_);
    EXPECT_EQ(get_previous_symbol_scope(trunk), root);
    symbol_context* branch = push_branch_symbol_scope(&context_);
    EXPECT_EQ(get_previous_symbol_scope(branch), trunk);
}

TEST_F(SymbolScopes, TheGlobalScopeIsTheEndOfTheTrunk) {
    symbol_context* root = context_;
    push_trunk_symbol_scope(&context_);
    symbol_context* trunk = push_trunk_symbol_scope(&context_);
    EXPECT_EQ(get_global_symbol_scope(trunk), root);
    symbol_context* branch = push_branch_symbol_scope(&context_);
    symbol_context* leaf = push_trunk_symbol_scope(&context_);
    EXPECT_EQ(get_global_symbol_scope(leaf), branch);
    EXPECT_EQ(get_global_symbol_scope(root), root);
}

TEST_F(SymbolScopes, AContextKnowsItsOwnSymbols) {
    insert("outer", 1);
    push_trunk_symbol_scope(&context_);
    insert("a", 2);
    insert("b", 3);
    insert("c", 4);
    EXPECT_EQ(own(), "4 3 2 ");
    delete_context_symbol("b", context_);
    EXPECT_EQ(own(), "4 2 ");
    EXPECT_EQ(extract_context_symbol("c", context_), value(4));
    EXPECT_EQ(own(), "2 ");
    EXPECT_EQ(gReleased, "3 ");
}

TEST_F(SymbolScopes, DeletingAndExtractingReachOnlyTheContextsOwnSymbols) {
    insert("name", 1);
    push_trunk_symbol_scope(&context_);
    delete_context_symbol("name", context_);
    EXPECT_EQ(extract_context_symbol("name", context_), nullptr);
    EXPECT_EQ(see("name"), 1u);
}

TEST_F(SymbolScopes, EnteringFindsOrInsertsInTheContextItself) {
    insert("name", 1);
    symbol_entry* outer = enter_context_symbol("name", context_, value(2), note_release);
    EXPECT_EQ(outer->value, value(1));
    push_trunk_symbol_scope(&context_);
    symbol_entry* inner = enter_context_symbol("name", context_, value(3), note_release);
    EXPECT_EQ(inner->value, value(3));
    EXPECT_EQ(enter_context_symbol("name", context_, value(4), note_release), inner);
    EXPECT_EQ(own(), "3 ");
}

TEST_F(SymbolScopes, DeletingASpaceDeletesTheTrunkUpToTheRootAndKeepsTheTable) {
    symbol_context* other = create_symbol_space(table_);
    insert_context_symbol("name", other, value(9), note_release);
    insert("a", 1);
    push_trunk_symbol_scope(&context_);
    insert("b", 2);
    push_trunk_symbol_scope(&context_);
    insert("c", 3);
    delete_symbol_space(&context_);
    EXPECT_EQ(context_, nullptr);
    EXPECT_EQ(gReleased, "3 2 1 ");
    EXPECT_EQ(count_table_symbols(table_, 0, 0), 1u);
    delete_symbol_space(&other);
}

TEST_F(SymbolScopes, DeletingABranchLeadsBackToItsParent) {
    insert("a", 1);
    symbol_context* root = context_;
    push_branch_symbol_scope(&context_);
    insert("b", 2);
    push_trunk_symbol_scope(&context_);
    insert("c", 3);
    delete_symbol_space(&context_);
    EXPECT_EQ(context_, root);
    EXPECT_EQ(gReleased, "3 2 ");
    EXPECT_EQ(see("a"), 1u);
}

TEST_F(SymbolScopes, DeletingTheTableEmptiesTheContexts) {
    insert("a", 1);
    delete_symbol_table(&table_);
    EXPECT_EQ(gReleased, "1 ");
    EXPECT_EQ(own(), "");
}

TEST_F(SymbolScopes, ADeepTrunkNeedsNoDeepStack) {
    insert("name", 1);
    for (int i = 0; i < 100000; ++i) ASSERT_NE(push_trunk_symbol_scope(&context_), nullptr);
    EXPECT_EQ(see("name"), 1u);
    delete_symbol_space(&context_);
    EXPECT_EQ(context_, nullptr);
    EXPECT_EQ(gReleased, "1 ");
}

TEST_F(SymbolScopes, NullContextsAreRefusedOrFindNothing) {
    CapturedAlerts alerts;
    symbol_context* none = nullptr;
    EXPECT_EQ(create_symbol_space(nullptr), nullptr);
    EXPECT_NE(alerts.take().find("INTERNAL_ERROR:Lanefill:86 - "), std::string::npos);
    for (symbol_context** context : {static_cast<symbol_context**>(nullptr), &none}) {
        EXPECT_EQ(push_trunk_symbol_scope(context), nullptr);
        EXPECT_NE(alerts.take().find("INTERNAL_ERROR:Lanefill:86 - "), std::string::npos);
        EXPECT_EQ(push_branch_symbol_scope(context), nullptr);
        EXPECT_NE(alerts.take().find("INTERNAL_ERROR:Lanefill:86 - "), std::string::npos);
        pop_symbol_scope(context);
        delete_symbol_space(context);
    }
    EXPECT_EQ(insert_context_symbol("name", nullptr, nullptr, nullptr), nullptr);
    EXPECT_NE(alerts.take().find("INTERNAL_ERROR:Lanefill:86 - "), std::string::npos);
    EXPECT_EQ(enter_context_symbol("name", nullptr, nullptr, nullptr), nullptr);
    EXPECT_NE(alerts.take().find("INTERNAL_ERROR:Lanefill:86 - "), std::string::npos);
    EXPECT_EQ(insert_context_symbol(nullptr, context_, nullptr, nullptr), nullptr);
    EXPECT_NE(alerts.take().find("INTERNAL_ERROR:Lanefill:86 - "), std::string::npos);
    EXPECT_EQ(lookup_context_symbol("name", false, nullptr), nullptr);
    EXPECT_EQ(lookup_context_symbol(nullptr, false, context_), nullptr);
    delete_context_symbol("name", nullptr);
    EXPECT_EQ(extract_context_symbol("name", nullptr), nullptr);
    EXPECT_EQ(get_previous_symbol_scope(nullptr), nullptr);
    EXPECT_EQ(get_global_symbol_scope(nullptr), nullptr);
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(SymbolScopes, EveryFailedAllocationIsANullAndLeavesTheValueWithItsCaller) {
    const FaultSweep sweep = sweepAllocationFaults([] {
        symbol_table* table = create_symbol_table(100);
        symbol_context* context = table == nullptr ? nullptr : create_symbol_space(table);
        int status = context == nullptr ? 7 : 0;
        if (status == 0 && push_trunk_symbol_scope(&context) == nullptr) status = 7;
        if (status == 0 && push_branch_symbol_scope(&context) == nullptr) status = 7;
        gReleased.clear();
        if (status == 0 && insert_context_symbol("a", context, value(1), note_release) == nullptr) {
            status = gReleased.empty() ? 7 : 0;
            if (count_table_symbols(table, 0, 0) != 0) status = 0;
        }
        while (context != nullptr) delete_symbol_space(&context);
        delete_symbol_table(&table);
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_EQ(sweep.faultCount, 5u); // table, three contexts, entry with its link
}

TEST(SymbolSeeds, StartAgainWithEachLifetimeOfTheEngine) {
    for (int round = 0; round < 2; ++round) {
        SystemResources system;
        symbol_table* table = create_symbol_table(10);
        symbol_context* context = create_symbol_space(table);
        EXPECT_EQ(context->space, 1u);
        push_trunk_symbol_scope(&context);
        EXPECT_EQ(context->scope, 1u);
    }
    EXPECT_EQ(symbol_space_seed, 0u);
    EXPECT_EQ(symbol_scope_seed, 0u);
}

} // namespace
} // namespace memdata::testing
