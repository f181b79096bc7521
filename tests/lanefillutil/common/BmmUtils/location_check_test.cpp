// location_check_test.cpp - lanes without a location, ahead of the replacement of data in a bit stream.
// SPDX-License-Identifier: Apache-2.0
#include "validation_fixture.h"

using namespace memdata::testing;

namespace {

using LocationCheck = ValidationTest;

// What the space of this name says, with the lanes given.
std::string unlocated(const std::string& space, const std::string& lanes) {
    return "\nWARNING:Lanefill:47 - Not all BitLanes in ADDRESS_SPACE '" + space +
           "' have BMM location constraints.\n"
           "    Some data for this ADDRESS_SPACE may be lost during BIT file\n"
           "    replacement. Verify that the BMM file has location constraints for all Bit Lanes.\n\n"
           "      Bitlane(s)\n   ----------------\n" +
           lanes + "\n";
}

} // namespace

TEST_F(LocationCheck, LocatedLanesPass) {
    map.space("ram", 0, "RAMB16", {"a[15:8] LOC=X0Y1 b[7:0] PLACED=X0Y2"});
    EXPECT_EQ(said(check_addressMapping_Locs(map.get())), "0:");
}

TEST_F(LocationCheck, LanesWithoutALocationAreListedAndTheRunGoesOn) {
    map.map("cpu");
    map.space("ram", 0, "RAMB16", {"a[15:8] b[0:7] LOC=X0Y2", "c[15:8] LOC=X0Y3 d[0:7]"});
    map.space("rom", 0x10000, "RAMB16", {"e[7:0]"});
    map.space("full", 0x20000, "RAMB16", {"f[7:0] LOC=X1Y1"});
    CapturedAlerts alerts;
    EXPECT_EQ(check_addressMapping_Locs(map.get()), 0);
    EXPECT_EQ(alerts.text(), unlocated("cpu.ram", "   a [15:8]\n   d [0:7]\n") + unlocated("cpu.rom", "   e [7:0]\n"));
}

TEST_F(LocationCheck, ACheckLaneWithoutALocationWarnsButIsNotListed) {
    map.space("ram", 0, "RAMB16", {"a[7:0] LOC=X0Y1 e[14:8] ECCH32-7"});
    CapturedAlerts alerts;
    EXPECT_EQ(check_addressMapping_Locs(map.get()), 0);
    EXPECT_EQ(alerts.text(), unlocated("ram", ""));
}

TEST_F(LocationCheck, OnlyTheFirstRangeIsLookedAt) {
    map.space("ram", 0, {{"RAMB16", {"a[7:0] LOC=X0Y1"}}, {"RAMB16", {"b[7:0]"}}});
    EXPECT_EQ(said(check_addressMapping_Locs(map.get())), "0:");
}

TEST_F(LocationCheck, OtherMemoriesAreNotLookedAt) {
    map.define("mine", 64, {8});
    map.space("ext", 0, "mine", {"a[7:0]"});
    map.space("ram", 64, "RAMB16", {"b[7:0] LOC=X0Y1"});
    EXPECT_EQ(said(check_addressMapping_Locs(map.get())), "0:");
}

TEST_F(LocationCheck, AMappingWithoutBlockRamsEndsTheReplacement) {
    map.define("mine", 64, {8});
    map.space("ext", 0, "mine", {"a[7:0]"});
    EXPECT_EQ(said(check_addressMapping_Locs(map.get())),
        "12: ERROR:Lanefill:113 - No BMM Address Spaces were found that contained BRAMs.\n"
        "    Only BRAM constructed Address Spaces can be used for bit stream replacement.\n"
        "    Please verify that the BMM Memory types are RAMB style Memories.\n");
}

TEST_F(LocationCheck, NoMappingIsNoFailure) {
    EXPECT_EQ(said(check_addressMapping_Locs(nullptr)), "0:");
}

TEST_F(LocationCheck, ASpaceWithoutRangesHasNothingToLocate) {
    map.space("none", 0, std::vector<RangeText>{}, {.endAddress = 0xF});
    EXPECT_EQ(said(check_addressMapping_Locs(map.get())), "0:");
}
