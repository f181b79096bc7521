// xml_reader_test.cpp - address maps read from XML.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/parser.h"
#include "DeviceTableUtils/device_lookup.h"
#include "DeviceTableUtils/memory_lookup.h"
#include "support/allocation_faults.h"
#include "support/damage.h"
#include "support/host_parameters.h"
#include "xml_map_test.h"

#include <algorithm>

using namespace memdata;
using namespace memdata::testing;

namespace {

using XmlMapReader = XmlMapTest;

TEST_F(XmlMapReader, AWholeDocumentBecomesAMapping) {
    EXPECT_EQ(dumpOf(document({processor("Name=\"cpu\" Type=\"PPC440\" Id=\"3\" Instance=\"top/cpu\" "
                                         "SpaceElementCount=\"1\"",
                  {space("Name=\"ram\" Style=\"byte\" StartAddress=\"0x1000\" EndAddress=\"0x1FFF\" "
                         "Instance=\"top/ram\" RangeElementCount=\"1\"",
                      {range("RAMB16",
                          {block({"Instance=\"hi\" Type=\"RAMB16\" Width=\"15:8\" Depth=\"0:2047\" Output=\"o.mem\" "
                                  "Input=\"i.mem\" Init=\"n.mem\"",
                              "Instance=\"lo\" Type=\"RAMB16\" Width=\"7:0\" Loc=\"X3Y7\""})})})})})),
        "map \"cpu\" PPC440 3 path \"top/cpu\"\n"
        "  space cpu.ram 0x1000-0x1FFF combined path \"top/ram\"\n"
        "    range RAMB16 0x1000-0x1FFF bus 16 lane 8 words 2048 devices 2 located 1\n"
        "      block 0x1000-0x1FFF\n"
        "        hi[15:8][0:2047] INIT=n.mem INPUT=i.mem OUTPUT=o.mem\n"
        "        lo[7:0][0:2047] LOC=X3Y7\n"
        "init hi\n");
}

TEST_F(XmlMapReader, SeveralProcessorsSpacesRangesAndBlocksKeepTheirOrder) {
    const std::string lane = " Type=\"RAMB16\" Width=\"7:0\"";
    EXPECT_EQ(dumpOf(document(
                  {processor("Name=\"a\" Type=\"ARM\" Id=\"1\"",
                       {space("Name=\"s\" StartAddress=\"0\" EndAddress=\"0x27FF\"",
                           {range("RAMB16", {block({"Instance=\"u1\"" + lane}), block({"Instance=\"u2\"" + lane})}),
                               range("RAMB32", {block({"Instance=\"u3\" Width=\"7:0\""})}),
                               range("RAMB16", {block({"Instance=\"u4\"" + lane})})})}),
                      processor("Name=\"b\" Type=\"PPC405\" Id=\"2\"",
                          {space("Name=\"t\" StartAddress=\"0x1000\" EndAddress=\"0x17FF\"",
                               {range("RAMB16", {block({"Instance=\"u1\"" + lane})})}),
                              space("Name=\"s\" StartAddress=\"0\" EndAddress=\"0x7FF\"",
                                  {range("RAMB16", {block({"Instance=\"u2\"" + lane})})})})})),
        "map \"a\" ARM 1\n"
        "  space a.s 0x0-0x27FF combined turned\n"
        "    range RAMB16 0x0-0xFFF bus 8 lane 8 words 2048 devices 2\n"
        "      block 0x0-0x7FF\n"
        "        u1[7:0][0:2047]\n"
        "      block 0x800-0xFFF\n"
        "        u2[7:0][2048:4095]\n"
        "    range RAMB32 0x1000-0x1FFF bus 8 lane 8 words 4096 devices 1\n"
        "      block 0x1000-0x1FFF\n"
        "        u3[7:0][0:4095]\n"
        "    range RAMB16 0x2000-0x27FF bus 8 lane 8 words 2048 devices 1\n"
        "      block 0x2000-0x27FF\n"
        "        u4[7:0][0:2047]\n"
        "map \"b\" PPC405 2\n"
        "  space b.s 0x0-0x7FF combined\n"
        "    range RAMB16 0x0-0x7FF bus 8 lane 8 words 2048 devices 1\n"
        "      block 0x0-0x7FF\n"
        "        u2[7:0][0:2047]\n"
        "  space b.t 0x1000-0x17FF combined\n"
        "    range RAMB16 0x1000-0x17FF bus 8 lane 8 words 2048 devices 1\n"
        "      block 0x1000-0x17FF\n"
        "        u1[7:0][0:2047]\n");
}

TEST_F(XmlMapReader, ADeviceWithoutDepthHasThatOfItsMemory) {
    TestMap map;
    ASSERT_EQ(
        read(map.get(), lone_space("0x7FF", "RAMB16", {block({"Instance=\"u\" Type=\"RAMB16\" Width=\"7:0\""})})), 0);
    EXPECT_EQ(map.lane("u")->addressLow, 0u);
    EXPECT_EQ(map.lane("u")->addressHigh, 2047u);
    EXPECT_EQ(map.lane("u")->wordCount, 2048u);
}

TEST_F(XmlMapReader, AWidthSaysTheOrderingOfItsBits) {
    TestMap map;
    const std::string text = lone_space("0xFFF", "RAMB16",
        {block({"Instance=\"d\" Type=\"RAMB16\" Width=\"7:0\"", "Instance=\"a\" Type=\"RAMB16\" Width=\"8:15\""})});
    ASSERT_EQ(read(map.get(), text), 0);
    EXPECT_EQ(map.lane("d")->bitOrdering, 2u);
    EXPECT_EQ(map.lane("d")->bitLow, 0u);
    EXPECT_EQ(map.lane("d")->bitHigh, 7u);
    EXPECT_EQ(map.lane("a")->bitOrdering, 1u);
    EXPECT_EQ(map.lane("a")->bitLow, 8u);
    EXPECT_EQ(map.lane("a")->bitHigh, 15u);
}

TEST_F(XmlMapReader, AWidthOfZeroToSevenIsAscending) {
    TestMap map;
    ASSERT_EQ(
        read(map.get(), lone_space("0x7FF", "RAMB16", {block({"Instance=\"u\" Type=\"RAMB16\" Width=\"0:7\""})})), 0);
    EXPECT_EQ(map.lane("u")->bitOrdering, 1u);
}

struct LocationCase {
    const char* text;
    u32 row, column;
};

TEST_F(XmlMapReader, ALocationIsAnySequenceOfXAndY) {
    constexpr LocationCase kCASES[] = {{"X3Y7", 7, 3}, {"x3y7", 7, 3}, {"Y7X3", 7, 3}, {"X3", 0, 3}, {"Y7", 7, 0},
        {"X1Y2X3", 2, 3}, {"X2*4Y1+1", 2, 8}};
    for (const LocationCase& c : kCASES) {
        TestMap map;
        const std::string device = std::string("Instance=\"u\" Width=\"7:0\" Loc=\"") + c.text + "\"";
        ASSERT_EQ(read(map.get(), lone_space("0x7FF", "RAMB16", {block({device})})), 0) << c.text;
        const BitLaneType* lane = map.lane("u")->lane;
        EXPECT_EQ(lane->locRow, c.row) << c.text;
        EXPECT_EQ(lane->locColumn, c.column) << c.text;
        EXPECT_EQ(lane->locKind, kLOC_KIND_LOC);
    }
}

TEST_F(XmlMapReader, ALocationIsThatOfAMapText) {
    TestMap text;
    const std::string bmm = folder_.write("m.bmm", "ADDRESS_SPACE ram RAMB16 [0:0x7FF] BUS_BLOCK u [7:0] LOC = X3Y7; "
                                                   "END_BUS_BLOCK; END_ADDRESS_SPACE;");
    OwnedFileSpec spec(CreateFileSpec(bmm.c_str()));
    ASSERT_EQ(open_and_parse_bmm_file(spec.get(), text.get(), nullptr, nullptr, nullptr, nullptr), 0);
    TestMap map;
    ASSERT_EQ(
        read(map.get(), lone_space("0x7FF", "RAMB16", {block({"Instance=\"u\" Width=\"7:0\" Loc=\"X3Y7\""})})), 0);
    EXPECT_EQ(map.lane("u")->lane->locRow, text.lane("u")->lane->locRow);
    EXPECT_EQ(map.lane("u")->lane->locColumn, text.lane("u")->lane->locColumn);
}

// "STATUS: alerts" of a document with these devices in one block, on a device.
std::string said_on_device(XmlMapTest& test, const std::vector<std::string>& devices, const char* endAddress) {
    TestMap map;
    map->device = get_device_record_by_name("tq5a20");
    EXPECT_NE(map->device, nullptr);
    CapturedAlerts alerts;
    const int status = test.read(map.get(), lone_space(endAddress, "RAMB16", {block(devices)}));
    if (status == 0) {
        EXPECT_EQ(map.link("ram")->space->ranges->locatedDeviceCount, devices.size());
    }
    return std::to_string(status) + ":" + alerts.text();
}

TEST_F(XmlMapReader, LocationsAreRecordedOnTheDevice) {
    EXPECT_EQ(said_on_device(*this,
                  {"Instance=\"u\" Width=\"15:8\" Loc=\"X0Y0\"", "Instance=\"v\" Width=\"7:0\" Loc=\"X0Y2\""}, "0xFFF"),
        "0:");
    EXPECT_EQ(said_on_device(*this,
                  {"Instance=\"u\" Width=\"15:8\" Loc=\"X0Y0\"", "Instance=\"v\" Width=\"7:0\" Loc=\"X0Y0\""}, "0xFFF")
                  .substr(0, 3),
        "3:\n");
    const std::string outside = said_on_device(*this, {"Instance=\"u\" Width=\"7:0\" Loc=\"X900Y1\""}, "0x7FF");
    EXPECT_EQ(outside.substr(0, 3), "3:\n");
    EXPECT_NE(outside.find("X900Y1"), outside.npos) << outside;
}

TEST_F(XmlMapReader, TheUnknownMemoryOfADeviceNamesIt) {
    TestMap map;
    map->device = get_device_record_by_name("tq5a20");
    CapturedAlerts alerts;
    EXPECT_EQ(
        read(map.get(), lone_space("0x7FF", "RAMB16", {block({"Instance=\"u\" Type=\"ROM\" Width=\"7:0\""})})), 3);
    EXPECT_NE(alerts.text().find("'ROM', for the specified device '" + std::string(deviceName(map->device)) + "'"),
        std::string::npos);
}

TEST_F(XmlMapReader, ADocumentWithoutAProcessorLeavesTheMappingEmpty) {
    EXPECT_EQ(said(document({})), "0:");
    TestMap map;
    EXPECT_EQ(read(map.get(), document({})), 0);
    EXPECT_EQ(map->addressMapCount, 0u);
}

TEST_F(XmlMapReader, AProcessorWithoutANameIsTheDefaultMap) {
    TestMap map;
    ASSERT_EQ(read(map.get(), document({processor("Type=\"ARM\" Id=\"9\"", {}), processor("Name=\"\"", {})})), 0);
    EXPECT_EQ(dump(map.get()), "map \"\" PPC405 0\n");
    EXPECT_EQ(map->defaultMap, map->addressMaps);
    EXPECT_FALSE(map->defaultMap->isNamed);
}

TEST_F(XmlMapReader, AStyleSaysTheAddressing) {
    const auto isWordAddressed = [&](const std::string& style, const char* end) {
        TestMap map;
        const std::string text = document(
            {processor("Name=\"\"", {space("Name=\"ram\" " + style + " StartAddress=\"0\" EndAddress=\"" + end + "\"",
                                        {range("RAMB16", {block({"Instance=\"u\" Width=\"15:0\""})})})})});
        EXPECT_EQ(read(map.get(), text), 0) << style;
        return map.link("ram")->space->wordAddressing;
    };
    EXPECT_TRUE(isWordAddressed("Style=\"word\"", "0x3FF"));
    EXPECT_FALSE(isWordAddressed("Style=\"byte\"", "0x7FF"));
    EXPECT_FALSE(isWordAddressed("", "0x7FF"));
}

TEST_F(XmlMapReader, TheSpaceCarriesTheTokenOfACombinedOne) {
    TestMap map;
    ASSERT_EQ(read(map.get(), lone_space("0x7FF", "RAMB16", {block({"Instance=\"u\" Width=\"7:0\""})})), 0);
    const AddressSpaceDefType* ram = map.link("ram")->space;
    EXPECT_EQ(ram->style, kAddressSpaceStyleCombined);
    EXPECT_EQ(ram->memoryTypeToken->type, &kCOMBINED_MEMORY_KEYWORD);
    EXPECT_STREQ(ram->memoryTypeToken->text, "COMBINED");
}

TEST_F(XmlMapReader, CheckLanesStandApartAndTheFirstDeviceDecidesTheOrder) {
    const std::string data = "Instance=\"d\" Type=\"RAMB36\" Width=\"31:0\"";
    const std::string check = "Instance=\"e\" Type=\"RAMB36\" Ecc=\"ECCH32-7\" Width=\"38:32\" Depth=\"0:1023\"";
    const auto dumpWith = [&](const std::vector<std::string>& devices) {
        TestMap map;
        const std::string text = lone_space("0xFFF", "RAMB32", {block(devices, 1)});
        EXPECT_EQ(read(map.get(), text), 0);
        const BusBlockType* read = map.link("ram")->space->ranges->busBlocks[0];
        EXPECT_EQ(read->eccType, kECC_H32_7);
        EXPECT_EQ(read->eccBusWidth, 7u);
        EXPECT_EQ(read->busWidth, 32u);
        EXPECT_EQ(map.link("ram")->space->deviceCount, 2u);
        return read->laneListOrder;
    };
    EXPECT_EQ(dumpWith({data, check}), kBitLaneListOrderDataFirst);
    EXPECT_EQ(dumpWith({check, data}), kBitLaneListOrderEccFirst);
}

TEST_F(XmlMapReader, ADeviceWithoutATypeIsOfItsRangesMemory) {
    TestMap map;
    ASSERT_EQ(read(map.get(), lone_space("0xFFF", "RAMB32", {block({"Instance=\"u\" Width=\"7:0\""})})), 0);
    EXPECT_EQ(map.lane("u")->lane->memory, map.link("ram")->space->ranges->memory);
}

TEST_F(XmlMapReader, AGenericMemoryTakesItsSizeFromTheSpace) {
    TestMap map;
    const std::string device = "Type=\"MEMORY\" Width=\"";
    ASSERT_EQ(read(map.get(), document({processor("Name=\"\"",
                                  {space("Name=\"ext\" StartAddress=\"0\" EndAddress=\"0xFFFF\"",
                                       {range("MEMORY", {block({"Instance=\"h\" " + device + "15:8\"",
                                                            "Instance=\"l\" " + device + "7:0\""})})}),
                                      space("Name=\"big\" StartAddress=\"0x100000\" EndAddress=\"0x1FFFFF\"",
                                          {range("MEMORY", {block({"Instance=\"b\" " + device + "7:0\""})})})})})),
        0);
    EXPECT_EQ(map.link("ext")->space->ranges->memory->type->dataBits, 0x8000u * 8);
    EXPECT_EQ(map.link("big")->space->ranges->memory->type->dataBits, 0x100000u * 8);
}

TEST_F(XmlMapReader, ARelativeNameIsKeptAsOne) {
    TestMap map;
    ASSERT_EQ(read(map.get(), lone_space("0x7FF", "RAMB16", {block({"Instance=\"*/a/u\" Width=\"7:0\""})})), 0);
    EXPECT_TRUE(map.lane("a/u")->lane->isRelativePath);
    EXPECT_TRUE(map.link("ram")->space->hasRelativePaths);
}

TEST_F(XmlMapReader, UnderARootNamesAndPathsAreThatOfTheRoot) {
    EXPECT_EQ(
        dumpOf(document({processor("Name=\"cpu\" Type=\"PPC405\" Instance=\"c\"",
                   {space("Name=\"x\" StartAddress=\"0\" EndAddress=\"0xFFF\" Instance=\"p\"",
                       {range("RAMB16",
                           {block({"Instance=\"u1\" Width=\"15:8\"", "Instance=\"a/b/u2\" Width=\"7:0\""})})})})}),
            "a/b"),
        "map \"a_b_cpu\" PPC405 0 path \"a/b/c\"\n"
        "  space a_b_cpu.a_b_x 0x0-0xFFF combined path \"a/b/p\"\n"
        "    range RAMB16 0x0-0xFFF bus 16 lane 8 words 2048 devices 2\n"
        "      block 0x0-0xFFF\n"
        "        a/b/u1[15:8][0:2047]\n"
        "        a/b/u2[7:0][0:2047]\n");
}

TEST_F(XmlMapReader, UnderARootANameOfAnOldToolLeavesAPath) {
    EXPECT_EQ(dumpOf(document({processor("Name=\"kestrel_0\" Type=\"KESTREL\"",
                         {space("Name=\"kestrel_0_combined\" StartAddress=\"0\" EndAddress=\"0x7FF\"",
                             {range("RAMB16", {block({"Instance=\"u\" Width=\"7:0\""})})})})}),
                  "top"),
        "map \"top_kestrel_0\" KESTREL 0 path \"top/kestrel_0\"\n"
        "  space top_kestrel_0.top_kestrel_0_combined 0x0-0x7FF combined path \"top/kestrel_0/kestrel_0\"\n"
        "    range RAMB16 0x0-0x7FF bus 8 lane 8 words 2048 devices 1\n"
        "      block 0x0-0x7FF\n"
        "        top/u[7:0][0:2047]\n");
}

TEST_F(XmlMapReader, BlocksBeyondTheCountAreNotRead) {
    TestMap map;
    const std::string second = block({"Instance=\"v\" Width=\"7:0\""});
    std::string text = lone_space("0x7FF", "RAMB16", {block({"Instance=\"u\" Width=\"7:0\""}), second});
    text.replace(text.find("BusBlockElementCount=\"2\""), 24, "BusBlockElementCount=\"1\"");
    ASSERT_EQ(read(map.get(), text), 0);
    EXPECT_EQ(map.link("ram")->space->ranges->busBlockCount, 1u);
}

TEST_F(XmlMapReader, CountsThatAreTooHighCostNothing) {
    std::string text = lone_space("0x7FF", "RAMB16", {block({"Instance=\"u\" Width=\"7:0\""})});
    text.replace(text.find("BusBlockElementCount=\"1\""), 24, "BusBlockElementCount=\"0xFFFFFFFFFFFFFFFF\"");
    text.replace(text.find(" DeviceElementCount=\"1\""), 23,
        " DeviceElementCount=\"0x1000000000000000\" ECCElementCount=\"18446744073709551615\"");
    EXPECT_EQ(said(text), "0:");
}

TEST_F(XmlMapReader, AFileIsNamedWhenItHoldsNothing) {
    const std::string name = folder_.write("empty.xml", "");
    const OwnedFileSpec spec(CreateFileSpec(name.c_str()));
    TestMap map;
    CapturedAlerts alerts;
    parse_stream* stream = reinterpret_cast<parse_stream*>(&map);
    EXPECT_EQ(open_and_parse_bmm_XML(spec.get(), map.get(), nullptr, nullptr, nullptr, &stream), 17);
    EXPECT_EQ(stream, nullptr);
    EXPECT_EQ(alerts.text(), "\nWARNING:Lanefill:53 - File '" + name + "' is empty or has no XML content.\n\n");
}

TEST_F(XmlMapReader, ADocumentWithoutAnAddressMapHasNoContent) {
    constexpr char kWARNING[] = "17:\nWARNING:Lanefill:53 - File 'map.xml' is empty or has no XML content.\n\n";
    EXPECT_EQ(said("<!-- nothing -->"), kWARNING);
    EXPECT_EQ(said("<?xml version=\"1.0\"?>"), kWARNING);
    EXPECT_EQ(said("<Other/>"), kWARNING);
}

TEST_F(XmlMapReader, ADocumentThatCannotBeReadGivesTheStatusOfReading) {
    EXPECT_EQ(said("<AddressMap>text</AddressMap>"),
        "2:\nERROR:Lanefill:11 - Unexpected symbol 'text', 'valid XML syntax' expected.\n"
        "   Line #1, File \"map.xml\".\n"
        "<AddressMap>text</AddressMap>\n"
        "            ^\n\n"
        "\nWARNING:Lanefill:53 - File 'map.xml' is empty or has no XML content.\n\n");
    TestMap map;
    CapturedAlerts alerts;
    const OwnedFileSpec spec(CreateFileSpec("/no/such.xml"));
    EXPECT_EQ(open_and_parse_bmm_XML(spec.get(), map.get(), nullptr, nullptr, nullptr, nullptr), 1);
    EXPECT_NE(alerts.text().find("ERROR:Lanefill:1 - File '/no/such.xml' can not be found"), std::string::npos);
    EXPECT_NE(alerts.text().find("WARNING:Lanefill:53 - File '/no/such.xml' is empty"), std::string::npos);
    EXPECT_EQ(open_and_parse_bmm_XML(nullptr, map.get(), nullptr, nullptr, nullptr, nullptr), 3);
    EXPECT_EQ(open_and_parse_bmm_XML(spec.get(), nullptr, nullptr, nullptr, nullptr, nullptr), 3);
}

TEST_F(XmlMapReader, MacrosThatAreReadAheadHoldInTheDocument) {
    TestMap map;
    const std::string text = lone_space("0x7FF", "RAMB16", {block({"Instance=LANE Width=\"7:0\""})});
    const OwnedFileSpec spec(CreateFileSpecWithFileData("map.xml", text.data(), text.size()));
    EXPECT_EQ(open_and_parse_bmm_XML(spec.get(), map.get(), nullptr, "#define LANE \"u\"\n", nullptr, nullptr), 0);
    EXPECT_NE(map.lane("u"), nullptr);
}

TEST_F(XmlMapReader, ADoubledDeviceIsReported) {
    EXPECT_EQ(
        said(lone_space("0xFFF", "RAMB16", {block({"Instance=\"u\" Width=\"15:8\"", "Instance=\"u\" Width=\"7:0\""})})),
        "3:\nERROR:Lanefill:35 - Duplicate instance name usage in address space 'ram'.\n\n");
}

TEST_F(XmlMapReader, ABadLocationIsReported) {
    for (const char* text : {"", "Z1", "R1C1", "X", "XY", "X1Z", "X-1Y0", "X4294967296Y0"})
        EXPECT_EQ(said(lone_space(
                      "0x7FF", "RAMB16", {block({std::string("Instance=\"u\" Width=\"7:0\" Loc=\"") + text + "\""})})),
            std::string("3:\nERROR:Lanefill:11 - Unexpected symbol '") + text +
                "', 'LOC indicator X or Y' expected.\n\n");
}

TEST_F(XmlMapReader, ABadWidthOrDepthIsReported) {
    EXPECT_EQ(said(lone_space("0x7FF", "RAMB16", {block({"Instance=\"u\" Width=\"a:0\""})})),
        "3:\nERROR:Lanefill:6 - Illegal token 'a:0', 'Width range' expected.\n\n");
    EXPECT_EQ(said(lone_space("0x7FF", "RAMB16", {block({"Instance=\"u\" Width=\"7:0\" Depth=\"0:\""})})),
        "3:\nERROR:Lanefill:6 - Illegal token '0:', 'Depth range' expected.\n\n");
}

TEST_F(XmlMapReader, AnUnknownMemoryIsReported) {
    EXPECT_EQ(said(lone_space("0x7FF", "ROM", {block({"Instance=\"u\" Width=\"7:0\""})})),
        "3:\nERROR:Lanefill:104 - Unknown memory type, 'ROM', for the specified device ''. Or unknown user defined "
        "memory type.\n\n");
    EXPECT_EQ(said(lone_space("0x7FF", "", {block({"Instance=\"u\" Width=\"7:0\""})})),
        "3:\nERROR:Lanefill:104 - Unknown memory type, '', for the specified device ''. Or unknown user defined "
        "memory type.\n\n");
    EXPECT_EQ(said(lone_space("0x7FF", "RAMB16", {block({"Instance=\"u\" Type=\"ROM\" Width=\"7:0\""})})),
        "3:\nERROR:Lanefill:104 - Unknown memory type, 'ROM', for the specified device ''. Or unknown user defined "
        "memory type.\n\n");
}

TEST_F(XmlMapReader, DevicesBeyondTheirCountAreReported) {
    std::string text =
        lone_space("0xFFF", "RAMB16", {block({"Instance=\"u\" Width=\"15:8\"", "Instance=\"v\" Width=\"7:0\""})});
    text.replace(text.find(" DeviceElementCount=\"2\""), 23, " DeviceElementCount=\"1\"");
    EXPECT_EQ(said(text),
        "3:\nERROR:Lanefill:86 - A Block of ADDRESS_SPACE 'ram' has more devices than its DeviceElementCount says.\n\n");
    text = lone_space("0xFFF", "RAMB16",
        {block({"Instance=\"u\" Width=\"15:0\"", "Instance=\"v\" Ecc=\"ECCH32-7\" Width=\"22:16\""})});
    EXPECT_EQ(said(text),
        "3:\nERROR:Lanefill:86 - A Block of ADDRESS_SPACE 'ram' has more devices than its ECCElementCount says.\n\n");
}

TEST_F(XmlMapReader, WhatIsEmptyIsReported) {
    EXPECT_EQ(said(lone_space("0xFFF", "RAMB16", {block({})})),
        "3:\nERROR:Lanefill:13 - Unexpected keyword 'Block', BUS_BLOCK definition is empty.\n\n");
    EXPECT_EQ(said(lone_space("0xFFF", "RAMB16", {})),
        "3:\nERROR:Lanefill:13 - Unexpected keyword 'Range', ADDRESS_RANGE definition is empty.\n\n");
    EXPECT_EQ(said(document({processor("Name=\"\"", {space("Name=\"ram\" EndAddress=\"7\"", {})})})),
        "3:\nERROR:Lanefill:13 - Unexpected keyword 'AddressSpace', ADDRESS_SPACE definition is empty.\n\n");
}

TEST_F(XmlMapReader, ASpaceIsChecked) {
    EXPECT_EQ(said(lone_space("0xFFF", "RAMB16", {block({"Instance=\"u\" Width=\"7:0\""})})),
        "3:\nERROR:Lanefill:29 - Inconsistent address space size in ADDRESS_SPACE 'ram'.\n"
        "    ADDRESS_SPACE was defined as 0x00001000 bytes, but the ADDRESS_RANGE total is "
        "0x00000800 bytes.\n\n");
    EXPECT_NE(said(lone_space("0x7FF", "RAMB16", {block({"Instance=\"u\" Width=\"0:18446744073709551615\""})})), "0:");
    EXPECT_NE(said(lone_space("0x7FF", "RAMB16", {block({"Instance=\"u\" Width=\"7:0\" Depth=\"9:3\""})})), "");
}

// A map text with a space, and a document with one of the same name.
constexpr char kTEXT_WITH_RAM[] =
    "ADDRESS_SPACE ram RAMB16 [0:0x7FF] BUS_BLOCK u [7:0]; END_BUS_BLOCK; END_ADDRESS_SPACE;";

TEST_F(XmlMapReader, AMapTextAndADocumentShareOneNameSpace) {
    TestMap map;
    CapturedMessages messages;
    CapturedAlerts alerts;
    OwnedFileSpec spec(CreateFileSpec(folder_.write("m.bmm", kTEXT_WITH_RAM).c_str()));
    ASSERT_EQ(open_and_parse_bmm_file(spec.get(), map.get(), nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(read(map.get(), lone_space("0x7FF", "RAMB16", {block({"Instance=\"v\" Width=\"7:0\""})})), 3);
    EXPECT_EQ(messages.messages().size(), 1u);
    EXPECT_EQ(messages.messages()[0].number, 209u);
    EXPECT_EQ(messages.messages()[0].arguments, std::vector<std::string>{"ram"});
    EXPECT_EQ(alerts.text(), kREFUSED);
    EXPECT_EQ(map->addressSpaceCount, 1u);
}

TEST_F(XmlMapReader, AMapNameThatIsTakenIsReported) {
    const ScopedParameter legacy("memdata.debugLegacyMessages", true);
    TestMap map;
    CapturedMessages messages;
    CapturedAlerts alerts;
    const std::string cpu = document({processor("Name=\"cpu\" Type=\"ARM\"", {})});
    EXPECT_EQ(read(map.get(), cpu), 0);
    EXPECT_EQ(read(map.get(), cpu), 3);
    EXPECT_EQ(messages.messages()[0].number, 209u);
    EXPECT_EQ(alerts.text(),
        "\nERROR:Lanefill:34 - Duplicate ADDRESS_SPACE or ADDRESS_MAP name usage 'cpu'.\n\n" + std::string(kREFUSED));
    // A space's name counts too.
    EXPECT_EQ(read(map.get(), lone_space("0x7FF", "RAMB16", {block({"Instance=\"v\" Width=\"7:0\""})})), 0);
    EXPECT_EQ(read(map.get(), document({processor("Name=\"ram\" Type=\"ARM\"", {})})), 3);
}

TEST_F(XmlMapReader, AFailureLeavesTheSpacesThatWereWhole) {
    TestMap map;
    CapturedAlerts alerts;
    const std::string good = space("Name=\"a\" StartAddress=\"0\" EndAddress=\"0x7FF\"",
        {range("RAMB16", {block({"Instance=\"u\" Width=\"7:0\""})})});
    const std::string bad = space("Name=\"b\" StartAddress=\"0\" EndAddress=\"0x7FE\"",
        {range("RAMB16", {block({"Instance=\"v\" Width=\"7:0\""})})});
    EXPECT_EQ(read(map.get(), document({processor("Name=\"\"", {good, bad})})), 3);
    EXPECT_EQ(listSpaces(map.get()), ": a\n");
    // The names of what was deleted are free again.
    const std::string again = space("Name=\"b\" StartAddress=\"0\" EndAddress=\"0x7FF\"",
        {range("RAMB16", {block({"Instance=\"v\" Width=\"7:0\""})})});
    EXPECT_EQ(read(map.get(), document({processor("Name=\"\"", {again})})), 0);
}

std::string whole_document() {
    return document({processor("Name=\"cpu\" Type=\"ARM\" Id=\"1\" Instance=\"t\"",
        {space("Name=\"ram\" StartAddress=\"0\" EndAddress=\"0x21FF\" Instance=\"p\"",
            {range("RAMB16", {block({"Instance=\"a\" Width=\"15:8\" Init=\"i\" Loc=\"X1Y1\"",
                                 "Instance=\"b\" Width=\"7:0\" Input=\"j\" Output=\"k\""})}),
                range("RAMB36", {block({"Instance=\"e\" Ecc=\"ECCH32-7\" Width=\"42:36\" Depth=\"0:1023\"",
                                           "Instance=\"c\" Width=\"35:0\""},
                                    1)})})})});
}

TEST_F(XmlMapReader, ADocumentThatIsCutOffIsReported) {
    EXPECT_EQ(said("<AddressMap><Processor Name=\"\"/>"),
        "3:\nERROR:Lanefill:14 - Missing keyword. 'end-of-file' found, '</AddressMap>' expected.\n\n");
}

TEST_F(XmlMapReader, EveryCutOfADocumentIsReported) {
    std::string whole = whole_document();
    whole.pop_back(); // the last line end
    CapturedAlerts alerts;
    EXPECT_EQ(said(whole), "0:");
    for (size_t n = 1; n < whole.size(); ++n) {
        TestMap map;
        EXPECT_NE(read(map.get(), whole.substr(0, n)), 0) << n;
        EXPECT_NE(alerts.take(), "") << n;
    }
}

TEST_F(XmlMapReader, EveryDamagedByteOfADocumentEndsWithAStatus) {
    const std::string whole = whole_document();
    CapturedAlerts alerts;
    for (size_t at = 0; at < whole.size(); ++at)
        for (const char byte : {'0', '9', '"', '<', '/', ':', 'x', '\0', '\xFF'}) {
            std::string damaged = whole;
            damaged[at] = byte;
            TestMap map;
            const int status = read(map.get(), damaged);
            EXPECT_EQ(status != 0, !alerts.take().empty()) << at << " " << byte;
        }
}

TEST(XmlMapReaderFaults, EachAllocationMayFail) {
    const std::string text = whole_document();
    const auto sweep = sweepAllocationFaults([&] {
        EnablePrintAlerts(0);
        int status = InitializeSystemResources();
        EnablePrintAlerts(0);
        AddressMappingType* mapping =
            status == 0 ? create_addressMapping_element("a.bmm", nullptr, false, nullptr, nullptr) : nullptr;
        fileSpecType* spec =
            mapping == nullptr ? nullptr : CreateFileSpecWithFileData("map.xml", text.data(), text.size());
        status = spec == nullptr ? 7 : open_and_parse_bmm_XML(spec, mapping, "r", nullptr, nullptr, nullptr);
        DeleteFileSpec(&spec);
        delete_addressMapping(&mapping);
        FinalizeSystemResources();
        EXPECT_EQ(leakedBlockCount(), 0u);
        return status;
    });
    EXPECT_GT(sweep.faultCount, 100u);
    EXPECT_EQ(sweep.failures, "");
}

} // namespace
