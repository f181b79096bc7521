// index_test.cpp - tables that hold more symbols than they were made for.
// SPDX-License-Identifier: Apache-2.0
#include "SymbolUtils/SymbolUtils.h"

#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "support/alerts.h"
#include "support/allocation_faults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace memdata::testing {
namespace {

constexpr u32 kBUCKETS = 11;
constexpr u32 kSPACE = 100; // above those of contexts

std::string name_of(u32 number) {
    return "top/ram_" + std::to_string(number) + "/lane";
}

void* value(std::uintptr_t n) {
    return reinterpret_cast<void*>(n);
}

struct ModelSymbol {
    std::string name;
    u32 space, scope;
    std::uintptr_t value;
};

// What a table of one long chain would hold, and find.
class ModelTable {
public:
    bool insert(const ModelSymbol& symbol) {
        if (find(symbol.name, symbol.space, symbol.scope) != 0) return false;
        symbols_.push_back(symbol);
        return true;
    }
    std::uintptr_t find(const std::string& name, u32 space, u32 scope) const {
        const auto at = place(name, space, scope);
        return at == symbols_.end() ? 0 : at->value;
    }
    std::uintptr_t extract(const std::string& name, u32 space, u32 scope) {
        const auto at = place(name, space, scope);
        if (at == symbols_.end()) return 0;
        const std::uintptr_t found = at->value;
        symbols_.erase(at);
        return found;
    }
    const std::vector<ModelSymbol>& symbols() const { return symbols_; }

private:
    std::vector<ModelSymbol>::const_iterator place(const std::string& name, u32 space, u32 scope) const {
        return std::ranges::find_if(symbols_, [&](const ModelSymbol& symbol) {
            return symbol.name == name && (space == 0 || (symbol.space == space && symbol.scope == scope));
        });
    }
    std::vector<ModelSymbol> symbols_;
};

class CrowdedTable : public ::testing::Test {
protected:
    ~CrowdedTable() override {
        delete_symbol_table(&table_);
        EXPECT_EQ(getCurrentMemoryUsage(), usageAtStart_);
    }
    symbol_entry* insert(u32 number, u32 space = kSPACE, u32 scope = 0) {
        return insert_symbol(name_of(number).c_str(), table_, space, scope, value(number), nullptr);
    }
    std::uintptr_t find(u32 number, u32 space = kSPACE, u32 scope = 0) {
        const symbol_entry* entry = lookup_symbol(name_of(number).c_str(), table_, space, scope);
        return entry == nullptr ? 0 : reinterpret_cast<std::uintptr_t>(entry->value);
    }
    void fill(u32 count) {
        for (u32 number = 1; number <= count; ++number) ASSERT_NE(insert(number), nullptr) << number;
    }
    // Values of a chain in its order.
    std::vector<std::uintptr_t> chain(u32 bucket) {
        std::vector<std::uintptr_t> values;
        for (const symbol_entry* entry = *(table_->buckets + bucket); entry != nullptr; entry = entry->next) {
            values.push_back(reinterpret_cast<std::uintptr_t>(entry->value));
            EXPECT_EQ(*entry->owner, entry);
        }
        return values;
    }

    SystemResources system_;
    u64 usageAtStart_ = getCurrentMemoryUsage();
    symbol_table* table_ = create_symbol_table(26);
};

TEST_F(CrowdedTable, KeepsItsSize) {
    fill(1000);
    EXPECT_EQ(table_->size, kBUCKETS);
}

TEST_F(CrowdedTable, FindsEverySymbolAndNoOther) {
    fill(1000);
    for (u32 number = 1; number <= 1000; ++number) EXPECT_EQ(find(number), number);
    EXPECT_EQ(find(1001), 0u);
    EXPECT_EQ(find(1, kSPACE, 1), 0u);
    EXPECT_EQ(find(1, 2), 0u);
    EXPECT_EQ(count_table_symbols(table_, kSPACE, 0), 1000u);
}

TEST_F(CrowdedTable, RefusesASecondSymbolInOneScopeAndTakesItInAnother) {
    fill(1000);
    EXPECT_EQ(insert(7), nullptr);
    EXPECT_NE(insert(7, kSPACE, 4), nullptr);
    EXPECT_NE(insert(7, 2, 4), nullptr);
    EXPECT_EQ(insert(7, 2, 4), nullptr);
    EXPECT_EQ(insert(7, 0, 0), nullptr) << "without a space the name alone counts";
    EXPECT_EQ(count_table_symbols(table_, 0, 0), 1002u);
}

TEST_F(CrowdedTable, KeepsChainsInTheirOrderOfInsertion) {
    fill(500);
    std::vector<std::vector<std::uintptr_t>> chains(kBUCKETS);
    for (u32 number = 1; number <= 500; ++number) chains[hash(name_of(number).c_str(), kBUCKETS)].push_back(number);
    for (u32 bucket = 0; bucket < kBUCKETS; ++bucket) EXPECT_EQ(chain(bucket), chains[bucket]) << bucket;
}

TEST_F(CrowdedTable, AppendsBehindAChainWhoseLastSymbolsHaveGone) {
    fill(500);
    const u32 bucket = hash(name_of(1).c_str(), kBUCKETS);
    while (chain(bucket).size() > 1)
        ASSERT_EQ(extract_symbol(name_of(static_cast<u32>(chain(bucket).back())).c_str(), table_, kSPACE, 0),
            value(chain(bucket).back()));
    insert(1, kSPACE, 9);
    EXPECT_EQ(chain(bucket), (std::vector<std::uintptr_t>{1, 1}));
    delete_symbol(name_of(1).c_str(), table_, kSPACE, 9);
    delete_symbol(name_of(1).c_str(), table_, kSPACE, 0);
    EXPECT_EQ(chain(bucket), std::vector<std::uintptr_t>{});
    insert(1);
    EXPECT_EQ(chain(bucket), std::vector<std::uintptr_t>{1});
}

TEST_F(CrowdedTable, BehavesAsOneChainWould) {
    std::mt19937 generator(1);
    const auto below = [&generator](u32 bound) { return static_cast<u32>(generator() % bound); };
    ModelTable model;
    for (u32 step = 1; step <= 6000; ++step) {
        const std::string name = name_of(below(150));
        const u32 space = below(3);
        const u32 scope = below(3);
        switch (below(4)) {
        case 0:
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(extract_symbol(name.c_str(), table_, space, scope)),
                model.extract(name, space, scope));
            break;
        case 1: {
            const symbol_entry* entry = lookup_symbol(name.c_str(), table_, space, scope);
            EXPECT_EQ(
                entry == nullptr ? 0 : reinterpret_cast<std::uintptr_t>(entry->value), model.find(name, space, scope));
            break;
        }
        default:
            EXPECT_EQ(insert_symbol(name.c_str(), table_, space, scope, value(step), nullptr) != nullptr,
                model.insert({name, space, scope, step}));
        }
    }
    EXPECT_GT(model.symbols().size(), 10 * kBUCKETS);
    std::vector<std::vector<std::uintptr_t>> chains(kBUCKETS);
    for (const ModelSymbol& symbol : model.symbols())
        chains[hash(symbol.name.c_str(), kBUCKETS)].push_back(symbol.value);
    for (u32 bucket = 0; bucket < kBUCKETS; ++bucket) EXPECT_EQ(chain(bucket), chains[bucket]) << bucket;
}

TEST_F(CrowdedTable, AScopeTakesItsSymbolsAlongAndLeavesTheOthers) {
    fill(100);
    symbol_context* context = create_symbol_space(table_);
    push_trunk_symbol_scope(&context);
    for (u32 number = 1; number <= 100; ++number)
        ASSERT_NE(insert_context_symbol(name_of(number).c_str(), context, value(number), nullptr), nullptr);
    pop_symbol_scope(&context);
    EXPECT_EQ(count_table_symbols(table_, 0, 0), 100u);
    EXPECT_EQ(lookup_context_symbol(name_of(5).c_str(), false, context), nullptr);
    EXPECT_EQ(find(5), 5u);
    delete_symbol_space(&context);
}

TEST_F(CrowdedTable, EveryFailedAllocationIsANullAndLeavesATableThatWorks) {
    constexpr u32 kNAMES = 200;
    const FaultSweep sweep = sweepAllocationFaults([] {
        symbol_table* table = create_symbol_table(26);
        if (table == nullptr) return 7;
        int status = 0;
        u32 entered = 0;
        for (u32 number = 0; number < kNAMES && status == 0; ++number) {
            if (insert_symbol(name_of(number).c_str(), table, 1, 0, nullptr, nullptr) == nullptr)
                status = 7;
            else
                ++entered;
        }
        // The fault has passed: the table takes the rest, and has all.
        for (u32 number = entered; number < kNAMES; ++number)
            if (insert_symbol(name_of(number).c_str(), table, 1, 0, nullptr, nullptr) == nullptr) status = 3;
        for (u32 number = 0; number < kNAMES; ++number)
            if (lookup_symbol(name_of(number).c_str(), table, 1, 0) == nullptr) status = 3;
        delete_symbol_table(&table);
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_EQ(sweep.faultCount, 205u); // table, entries, ends of chains, 64, 128 and 256 slots
}

} // namespace
} // namespace memdata::testing
