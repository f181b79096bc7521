// table_test.cpp - the hash table of symbols.
// SPDX-License-Identifier: Apache-2.0
#include "SymbolUtils/SymbolUtils.h"

#include "SymbolUtils/table_sizes.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "support/alerts.h"
#include "support/allocation_faults.h"

#include <gtest/gtest.h>

#include <string>

namespace memdata::testing {
namespace {

constexpr u32 kALL_BITS = UINT32_MAX; // a table size that leaves a hash as it is, but for the largest

std::string gReleased; // values in the order of their release

void* value(std::uintptr_t n) {
    return reinterpret_cast<void*>(n);
}

void note_release(void* v) {
    gReleased += std::to_string(reinterpret_cast<std::uintptr_t>(v)) + ' ';
}

TEST(SymbolHash, OfAnEmptyNameIsZero) {
    EXPECT_EQ(hash("", 499), 0u);
    EXPECT_EQ(hash(nullptr, 499), 0u);
}

TEST(SymbolHash, FoldsTheTopFourBitsAtEachCharacter) {
    struct HashCase {
        const char* name;
        u32 size, hash;
    };
    constexpr HashCase kCASES[] = {
        {"a", 499, 97},
        {"ab", 4093, 1650},
        {"main", 4093, 2367},
        {"ADDRESS_SPACE", 11, 9},
        {"address_space_name", 4093, 2529},
        {"abcdefg", kALL_BITS, 121971559},
        {"abcdefgh", kALL_BITS, 72496744},
    };
    for (const HashCase& c : kCASES) EXPECT_EQ(hash(c.name, c.size), c.hash) << c.name;
}

TEST(SymbolHash, TakesCharactersAsSignedBytes) {
    EXPECT_EQ(hash("\xFF", kALL_BITS), 268435215u);
    EXPECT_EQ(hash("\x80"
                   "a",
                  kALL_BITS),
        268433297u);
    EXPECT_EQ(hash("\xE4", 4093), 4001u);
    EXPECT_EQ(hash("r\xC3\xA4m_0", 4093), 1214u);
}

TEST(SymbolTableSizes, AreOneAndTheOddPrimesBelow4096) {
    const auto isPrime = [](u32 number) {
        for (u32 factor = 2; factor * factor <= number; ++factor)
            if (number % factor == 0) return false;
        return true;
    };
    ASSERT_EQ(primes_under_4096.size(), 565u);
    size_t at = 0;
    for (u32 number = 1; number < 4096; number += 2) {
        if (!isPrime(number)) continue;
        EXPECT_EQ(primes_under_4096[at++], number);
    }
    EXPECT_EQ(at, 564u);
    EXPECT_EQ(primes_under_4096[564], 0u);
}

class SymbolTable : public ::testing::Test {
protected:
    SymbolTable() { gReleased.clear(); }
    ~SymbolTable() override {
        delete_symbol_table(&table_);
        EXPECT_EQ(getCurrentMemoryUsage(), usageAtStart_);
    }
    symbol_entry* insert(const char* name, std::uintptr_t n, u32 space = 0, u32 scope = 0) {
        return insert_symbol(name, table_, space, scope, value(n), note_release);
    }
    // The value of a name, 0 when there is none.
    std::uintptr_t find(const char* name, u32 space = 0, u32 scope = 0) {
        const symbol_entry* entry = lookup_symbol(name, table_, space, scope);
        return entry == nullptr ? 0 : reinterpret_cast<std::uintptr_t>(entry->value);
    }
    // Values of a chain in its order.
    std::string chain(u32 bucket) {
        std::string text;
        for (const symbol_entry* entry = *(table_->buckets + bucket); entry != nullptr; entry = entry->next) {
            text += std::to_string(reinterpret_cast<std::uintptr_t>(entry->value)) + ' ';
            EXPECT_EQ(*entry->owner, entry);
        }
        return text;
    }

    SystemResources system_;
    u64 usageAtStart_ = getCurrentMemoryUsage();
    symbol_table* table_ = create_symbol_table(26); // 11 buckets
};

TEST_F(SymbolTable, TakesTheLargestSizeBelowHalfTheExpectedSymbols) {
    struct SizeCase {
        unsigned expectedSymbols;
        u32 size;
    };
    constexpr SizeCase kCASES[] = {
        {0, 11},
        {1, 11},
        {26, 11},
        {27, 11},
        {28, 13},
        {100, 47},
        {1000, 499},
        {1001, 499},
        {8187, 4091},
        {8188, 4093},
        {8189, 4093},
        {1000000, 4093},
        {UINT32_MAX, 4093},
    };
    for (const SizeCase& c : kCASES) {
        symbol_table* table = create_symbol_table(c.expectedSymbols);
        EXPECT_EQ(table->size, c.size) << c.expectedSymbols;
        EXPECT_EQ(count_table_symbols(table, 0, 0), 0u);
        delete_symbol_table(&table);
        EXPECT_EQ(table, nullptr);
    }
}

TEST_F(SymbolTable, KeepsWhatAnEntryWasGiven) {
    const symbol_entry* entry = insert("name", 5, 2, 3);
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(std::string(entry->name), "name");
    EXPECT_EQ(entry->space, 2u);
    EXPECT_EQ(entry->scope, 3u);
    EXPECT_EQ(entry->value, value(5));
    EXPECT_EQ(entry->releaser, note_release);
    EXPECT_EQ(entry->link, nullptr);
}

TEST_F(SymbolTable, ASecondInsertionInOneScopeGivesNullAndKeepsTheFirstValue) {
    EXPECT_NE(insert("name", 1, 1, 1), nullptr);
    EXPECT_EQ(insert("name", 2, 1, 1), nullptr);
    EXPECT_EQ(find("name", 1, 1), 1u);
    EXPECT_EQ(count_table_symbols(table_, 0, 0), 1u);
    EXPECT_EQ(gReleased, "");
}

TEST_F(SymbolTable, OneNameMayStandInSeveralScopesAndSpaces) {
    insert("name", 1, 1, 0);
    insert("name", 2, 1, 1);
    insert("name", 3, 2, 1);
    EXPECT_EQ(find("name", 1, 0), 1u);
    EXPECT_EQ(find("name", 1, 1), 2u);
    EXPECT_EQ(find("name", 2, 1), 3u);
    EXPECT_EQ(find("name", 2, 0), 0u);
}

TEST_F(SymbolTable, WithoutASpaceTheNameAloneIdentifies) {
    insert("name", 1, 1, 4);
    insert("name", 2, 2, 5);
    EXPECT_EQ(find("name"), 1u) << "the first of the chain wins";
    EXPECT_EQ(find("name", 0, 5), 1u) << "the scope does not count either";
    EXPECT_EQ(insert("name", 3), nullptr);
    EXPECT_NE(insert("other", 3), nullptr);
    EXPECT_EQ(insert("other", 4, 0, 9), nullptr);
}

TEST_F(SymbolTable, AChainKeepsItsOrderOfInsertion) {
    ASSERT_EQ(hash("a", 11), hash("l", 11)); // 11 apart
    ASSERT_EQ(hash("a", 11), hash("w", 11));
    insert("a", 1);
    insert("l", 2);
    insert("w", 3);
    insert("a", 4, 7, 7);
    EXPECT_EQ(chain(hash("a", 11)), "1 2 3 4 ");
    delete_symbol("l", table_, 0, 0);
    EXPECT_EQ(chain(hash("a", 11)), "1 3 4 ");
    delete_symbol("a", table_, 0, 0);
    EXPECT_EQ(chain(hash("a", 11)), "3 4 ");
    delete_symbol("a", table_, 0, 0);
    insert("l", 5);
    EXPECT_EQ(chain(hash("a", 11)), "3 5 ");
}

TEST_F(SymbolTable, DeletingCallsTheReleaserOnTheValue) {
    insert("name", 6);
    insert_symbol("bare", table_, 0, 0, value(7), nullptr);
    delete_symbol("name", table_, 0, 0);
    delete_symbol("bare", table_, 0, 0);
    EXPECT_EQ(gReleased, "6 ");
    EXPECT_EQ(count_table_symbols(table_, 0, 0), 0u);
}

TEST_F(SymbolTable, DeletingAnUnknownNameChangesNothing) {
    insert("name", 6, 1, 1);
    delete_symbol("other", table_, 0, 0);
    delete_symbol("name", table_, 1, 2);
    EXPECT_EQ(gReleased, "");
    EXPECT_EQ(count_table_symbols(table_, 0, 0), 1u);
}

TEST_F(SymbolTable, ExtractingHandsTheValueBackUnreleased) {
    insert("name", 6);
    EXPECT_EQ(extract_symbol("name", table_, 0, 0), value(6));
    EXPECT_EQ(gReleased, "");
    EXPECT_EQ(find("name"), 0u);
    EXPECT_EQ(extract_symbol("name", table_, 0, 0), nullptr);
}

TEST_F(SymbolTable, EnteringFindsOrInserts) {
    symbol_entry* entry = enter_symbol("name", table_, 1, 1, value(1), note_release);
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(enter_symbol("name", table_, 1, 1, value(2), note_release), entry);
    EXPECT_EQ(find("name", 1, 1), 1u);
    EXPECT_NE(enter_symbol("name", table_, 1, 2, value(3), note_release), entry);
    EXPECT_EQ(count_table_symbols(table_, 0, 0), 2u);
}

TEST_F(SymbolTable, CountsAScopeOrWithoutASpaceAllEntries) {
    insert("a", 1, 1, 1);
    insert("b", 2, 1, 1);
    insert("a", 3, 1, 2);
    insert("a", 4, 2, 1);
    insert("z", 5);
    EXPECT_EQ(count_table_symbols(table_, 1, 1), 2u);
    EXPECT_EQ(count_table_symbols(table_, 1, 2), 1u);
    EXPECT_EQ(count_table_symbols(table_, 3, 1), 0u);
    EXPECT_EQ(count_table_symbols(table_, 0, 1), 5u);
}

TEST_F(SymbolTable, DeletingTheTableReleasesAllValues) {
    insert("a", 1); // buckets 9, 10, 0: released in their order
    insert("b", 2);
    insert("c", 3);
    delete_symbol_table(&table_);
    EXPECT_EQ(table_, nullptr);
    EXPECT_EQ(gReleased, "3 1 2 ");
}

TEST_F(SymbolTable, AnEmptyNameIsASymbolLikeAnother) {
    EXPECT_NE(insert("", 1), nullptr);
    EXPECT_EQ(insert("", 2), nullptr);
    EXPECT_EQ(find(""), 1u);
    EXPECT_EQ(extract_symbol("", table_, 0, 0), value(1));
}

TEST_F(SymbolTable, ALongNameIsKeptWhole) {
    const std::string name(100000, 'n');
    ASSERT_NE(insert(name.c_str(), 1), nullptr);
    EXPECT_EQ(find(name.c_str()), 1u);
    EXPECT_EQ(find((name + 'n').c_str()), 0u);
}

TEST_F(SymbolTable, ANullNameOrTableIsRefusedOnEntryAndFindsNothing) {
    CapturedAlerts alerts;
    EXPECT_EQ(insert(nullptr, 1), nullptr);
    EXPECT_NE(alerts.take().find("INTERNAL_ERROR:Lanefill:86 - "), std::string::npos);
    EXPECT_EQ(insert_symbol("name", nullptr, 0, 0, nullptr, nullptr), nullptr);
    EXPECT_NE(alerts.take().find("INTERNAL_ERROR:Lanefill:86 - "), std::string::npos);
    EXPECT_EQ(enter_symbol(nullptr, table_, 0, 0, nullptr, nullptr), nullptr);
    EXPECT_NE(alerts.take().find("INTERNAL_ERROR:Lanefill:86 - "), std::string::npos);
    EXPECT_EQ(lookup_symbol(nullptr, table_, 0, 0), nullptr);
    EXPECT_EQ(lookup_symbol("name", nullptr, 0, 0), nullptr);
    EXPECT_EQ(extract_symbol(nullptr, table_, 0, 0), nullptr);
    EXPECT_EQ(extract_symbol("name", nullptr, 0, 0), nullptr);
    delete_symbol(nullptr, table_, 0, 0);
    delete_symbol("name", nullptr, 0, 0);
    delete_symbol_table(nullptr);
    symbol_table* none = nullptr;
    delete_symbol_table(&none);
    EXPECT_EQ(count_table_symbols(nullptr, 0, 0), 0u);
    EXPECT_EQ(alerts.text(), "");
}

symbol_table* gNestedTable = nullptr;

void delete_nested(void*) {
    delete_symbol("nested", gNestedTable, 0, 0);
}

TEST_F(SymbolTable, AReleaserMayItselfDeleteSymbols) {
    gNestedTable = table_;
    insert_symbol("outer", table_, 0, 0, nullptr, delete_nested);
    insert("nested", 2);
    delete_symbol("outer", table_, 0, 0);
    EXPECT_EQ(gReleased, "2 ");
    EXPECT_EQ(count_table_symbols(table_, 0, 0), 0u);
}

TEST_F(SymbolTable, EveryFailedAllocationIsANull) {
    const FaultSweep sweep = sweepAllocationFaults([] {
        symbol_table* table = create_symbol_table(100);
        if (table == nullptr) return 7;
        int status = insert_symbol("a", table, 0, 0, nullptr, nullptr) == nullptr ? 7 : 0;
        if (status == 0 && enter_symbol("b", table, 0, 0, nullptr, nullptr) == nullptr) status = 7;
        delete_symbol_table(&table);
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_EQ(sweep.faultCount, 3u);
}

} // namespace
} // namespace memdata::testing
