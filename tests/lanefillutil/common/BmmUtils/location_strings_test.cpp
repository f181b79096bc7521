// location_strings_test.cpp - memories and their places as text.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/location_strings.h"

#include "support/map_builder.h"

#include <gtest/gtest.h>

namespace memdata::testing {
namespace {

class LocationStrings : public ::testing::Test {
protected:
    LocationStrings() {
        map.space("new", 0, "RAMB36", {"a[8:0] LOC=X3Y17"});
        map.space("old", 0x10000, "RAMB4", {"b[15:0] PLACED=R4294967295C1"});
    }
    TestMap map;
    char text[64] = {};
};

TEST_F(LocationStrings, OfALocationAreColumnAndRow) {
    EXPECT_EQ(get_BRAM_LOC_string(map.lane("a")->lane, text), text);
    EXPECT_STREQ(text, "X3Y17");
}

TEST_F(LocationStrings, OfTheOldestMemoriesAreRowAndColumn) {
    EXPECT_STREQ(get_BRAM_LOC_string(map.lane("b")->lane, text), "R4294967295C1");
}

TEST_F(LocationStrings, OfADeviceBeginWithTheNameOfItsCell) {
    EXPECT_STREQ(get_BRAM_device_LOC_string(map.lane("a")->lane, text), "RAMB36_X3Y17");
    EXPECT_STREQ(get_BRAM_device_LOC_string(map.lane("b")->lane, text), "RAMB4_R4294967295C1");
}

TEST_F(LocationStrings, OfATypeEndWithTheWidthOfTheLane) {
    EXPECT_STREQ(get_BRAM_type_string(map.lane("a")->lane, text), "RAMB36_S9");
    EXPECT_STREQ(get_BRAM_type_string(map.lane("b")->lane, text), "RAMB4_S16");
}

} // namespace
} // namespace memdata::testing
