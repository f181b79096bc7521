// lazy_locations_test.cpp - arrays of locations that are made when they are first read.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/lazy_locations.h"

#include <cstring>

namespace {

constexpr int kELEMENTS[] = {10, 20, 30};
constexpr u32 kDEVICE = 7;
int gMakings = 0;

const int* makeElements(u32 device) {
    ++gMakings;
    return device == kDEVICE ? kELEMENTS : nullptr;
}

class LazyLocations : public ::testing::Test {
protected:
    LazyLocations() { gMakings = 0; }

    memdata::LazyLocations<int> field{makeElements, kDEVICE};
};

TEST_F(LazyLocations, ThatThereIsAnArrayIsKnownWithoutMakingIt) {
    EXPECT_TRUE(field != nullptr);
    EXPECT_FALSE(field == nullptr);
    EXPECT_EQ(gMakings, 0);
}

TEST_F(LazyLocations, TheFirstReadingMakesTheArrayAndOthersFindIt) {
    EXPECT_EQ(field[1], 20);
    EXPECT_EQ(field[2u], 30);
    const int* array = field;
    EXPECT_EQ(array, kELEMENTS);
    EXPECT_EQ(field + 2, kELEMENTS + 2);
    EXPECT_EQ(gMakings, 1);
}

TEST_F(LazyLocations, ACopyReadsTheSameArray) {
    const memdata::LazyLocations<int> copy = field;
    EXPECT_EQ(gMakings, 0);
    EXPECT_EQ(copy.get(), field.get());
}

TEST_F(LazyLocations, AFieldCanBeGivenAnArrayOrNone) {
    field = nullptr;
    EXPECT_TRUE(field == nullptr);
    EXPECT_EQ(field.get(), nullptr);
    field = kELEMENTS + 1;
    EXPECT_TRUE(field != nullptr);
    EXPECT_EQ(field[0], 20);
    EXPECT_EQ(gMakings, 0);
}

TEST_F(LazyLocations, ARecordOfZeroBytesHasNoArray) {
    std::memset(static_cast<void*>(&field), 0, sizeof field);
    EXPECT_TRUE(field == nullptr);
    EXPECT_EQ(field.get(), nullptr);
}

} // namespace
