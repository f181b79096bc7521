// xml_writer_test.cpp - address maps written as XML, and read back.
// SPDX-License-Identifier: Apache-2.0
#include "support/allocation_faults.h"
#include "xml_map_test.h"

#include <cstdlib>
#include <iterator>
#include <random>
#include <set>
#include <sstream>

using namespace memdata;
using namespace memdata::testing;

namespace {

using XmlMapWriter = XmlMapTest;

// The lines of a document behind its declaration.
std::string body(const std::string& text) {
    return text.substr(text.find('\n') + 1);
}

std::string without_style(std::string dump) {
    for (size_t at; (at = dump.find(" combined")) != dump.npos;) dump.erase(at, 9);
    return dump;
}

// A dump as it is for every order of reading: the chain of lanes with an INIT file follows that order, a document the
// addresses.
std::string without_order_of_reading(const std::string& dump) {
    const size_t at = dump.rfind("\ninit ");
    if (at == dump.npos) return dump;
    std::istringstream names(dump.substr(at + 6));
    const std::set<std::string> sorted(std::istream_iterator<std::string>(names), {});
    std::string text = dump.substr(0, at + 6);
    for (const std::string& name : sorted) text += name + " ";
    return text;
}

TEST_F(XmlMapWriter, AMappingIsWrittenWithAllItsElements) {
    TestMap map;
    map.map("cpu", "ARM", 3, "top/cpu");
    map.space("ram", 0x1000, "RAMB16",
        {"hi[15:8] OUTPUT=o.mem INPUT=i.mem INIT=n.mem LOC=X3Y7 lo[7:0] RAMB18 LOC=X0Y2"}, {.path = "top/ram"});
    map.space("mix", 0, {{"RAMB16", {"a[7:0]", "b[0:7]"}}, {"RAMB32", {"c[7:0]"}}});
    EXPECT_EQ(written(map.get()),
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<AddressMap Version=\"1\" Minor=\"0\" ProcessorElementCount=\"1\">\n"
        "\t<Processor Name=\"cpu\" Type=\"ARM\" Id=\"3\" Instance=\"top/cpu\" SpaceElementCount=\"2\">\n"
        "\t\t<AddressSpace Name=\"ram\" Style=\"byte\" StartAddress=\"0x1000\" EndAddress=\"0x1FFF\" "
        "Instance=\"top/ram\" RangeElementCount=\"1\">\n"
        "\t\t\t<Range Type=\"RAMB16\" BusBlockElementCount=\"1\">\n"
        "\t\t\t\t<Block DeviceElementCount=\"2\">\n"
        "\t\t\t\t\t<Device Instance=\"hi\" Type=\"RAMB16\" Width=\"15:8\" Depth=\"0:2047\" Output=\"o.mem\" "
        "Input=\"i.mem\" Init=\"n.mem\" Loc=\"X3Y7\">\n"
        "\t\t\t\t\t</Device>\n"
        "\t\t\t\t\t<Device Instance=\"lo\" Type=\"RAMB18\" Width=\"7:0\" Depth=\"0:2303\" Loc=\"X0Y2\">\n"
        "\t\t\t\t\t</Device>\n"
        "\t\t\t\t</Block>\n"
        "\t\t\t</Range>\n"
        "\t\t</AddressSpace>\n"
        "\t\t<AddressSpace Name=\"mix\" Style=\"byte\" StartAddress=\"0x0\" EndAddress=\"0x1FFF\" "
        "RangeElementCount=\"2\">\n"
        "\t\t\t<Range Type=\"RAMB16\" BusBlockElementCount=\"2\">\n"
        "\t\t\t\t<Block DeviceElementCount=\"1\">\n"
        "\t\t\t\t\t<Device Instance=\"a\" Type=\"RAMB16\" Width=\"7:0\" Depth=\"0:2047\">\n"
        "\t\t\t\t\t</Device>\n"
        "\t\t\t\t</Block>\n"
        "\t\t\t\t<Block DeviceElementCount=\"1\">\n"
        "\t\t\t\t\t<Device Instance=\"b\" Type=\"RAMB16\" Width=\"0:7\" Depth=\"2048:4095\">\n"
        "\t\t\t\t\t</Device>\n"
        "\t\t\t\t</Block>\n"
        "\t\t\t</Range>\n"
        "\t\t\t<Range Type=\"RAMB32\" BusBlockElementCount=\"1\">\n"
        "\t\t\t\t<Block DeviceElementCount=\"1\">\n"
        "\t\t\t\t\t<Device Instance=\"c\" Type=\"RAMB32\" Width=\"7:0\" Depth=\"0:4095\">\n"
        "\t\t\t\t\t</Device>\n"
        "\t\t\t\t</Block>\n"
        "\t\t\t</Range>\n"
        "\t\t</AddressSpace>\n"
        "\t</Processor>\n"
        "</AddressMap>\n");
}

TEST_F(XmlMapWriter, TheDefaultMapHasAnEmptyNameAndNoInstance) {
    TestMap map;
    map.space("ram", 0, "RAMB16", {"u[7:0]"}, {.wordAddressing = true});
    EXPECT_EQ(body(written(map.get())),
        "<AddressMap Version=\"1\" Minor=\"0\" ProcessorElementCount=\"1\">\n"
        "\t<Processor Name=\"\" Type=\"PPC405\" Id=\"0\" SpaceElementCount=\"1\">\n"
        "\t\t<AddressSpace Name=\"ram\" Style=\"word\" StartAddress=\"0x0\" EndAddress=\"0x7FF\" "
        "RangeElementCount=\"1\">\n"
        "\t\t\t<Range Type=\"RAMB16\" BusBlockElementCount=\"1\">\n"
        "\t\t\t\t<Block DeviceElementCount=\"1\">\n"
        "\t\t\t\t\t<Device Instance=\"u\" Type=\"RAMB16\" Width=\"7:0\" Depth=\"0:2047\">\n"
        "\t\t\t\t\t</Device>\n"
        "\t\t\t\t</Block>\n"
        "\t\t\t</Range>\n"
        "\t\t</AddressSpace>\n"
        "\t</Processor>\n"
        "</AddressMap>\n");
}

// The lines of the devices, without their indent and end tags.
std::string devices(const std::string& text) {
    std::string lines;
    for (size_t at = text.find("<Device "); at != text.npos; at = text.find("<Device ", at + 1))
        lines += text.substr(at, text.find('\n', at) + 1 - at);
    return lines;
}

TEST_F(XmlMapWriter, CheckLanesStandWhereTheyWereRead) {
    TestMap map;
    map.space("x", 0, "RAMB32", {"e[38:32][0:1023] ECCH32-7 d[31:0]"});
    map.space("y", 0x10000, "RAMB32", {"f[31:0] g[38:32][0:1023] ECCHSIAO32-7"});
    const std::string text = written(map.get());
    EXPECT_EQ(devices(text),
        "<Device Instance=\"e\" Type=\"RAMB32\" Ecc=\"ECCH32-7\" Width=\"38:32\" Depth=\"0:1023\">\n"
        "<Device Instance=\"d\" Type=\"RAMB32\" Width=\"31:0\" Depth=\"0:1023\">\n"
        "<Device Instance=\"f\" Type=\"RAMB32\" Width=\"31:0\" Depth=\"0:1023\">\n"
        "<Device Instance=\"g\" Type=\"RAMB32\" Ecc=\"ECCHSIAO32-7\" Width=\"38:32\" Depth=\"0:1023\">\n");
    EXPECT_NE(text.find("<Block DeviceElementCount=\"1\" ECCElementCount=\"1\">"), text.npos);
}

TEST_F(XmlMapWriter, LanesThatWereTurnedAreWrittenAsTheyWere) {
    TestMap map;
    map.map("cpu", "ARM", 0);
    map.space("ram", 0, "RAMB16", {"d3[31:24] d2[23:16] d1[15:8] d0[7:0]"});
    ASSERT_STREQ(map.link("cpu.ram")->space->ranges->busBlocks[0]->lanes[0]->lane->name, "d0");
    const std::string text = devices(written(map.get()));
    EXPECT_LT(text.find("d3"), text.find("d2"));
    EXPECT_LT(text.find("d1"), text.find("d0"));
}

TEST_F(XmlMapWriter, ADepthOfZeroAndThatOfAGenericMemoryAreLeftOut) {
    TestMap map;
    map.define("MEMORY", 0x1000, {8});
    map.space("ext", 0, "MEMORY", {"u[7:0]"});
    map.space("one", 0x10000, "RAMB16", {"v[7:0][0:0]"});
    EXPECT_EQ(devices(written(map.get())), "<Device Instance=\"u\" Type=\"MEMORY\" Width=\"7:0\">\n"
                                           "<Device Instance=\"v\" Type=\"RAMB16\" Width=\"7:0\">\n");
}

TEST_F(XmlMapWriter, ALocationIsWrittenForBlockRamsOnly) {
    TestMap map;
    map.define("ROM", 0x1000, {8});
    map.space("rom", 0, "ROM", {"u[7:0] LOC=X1Y2"});
    map.space("ram", 0x10000, "RAMB16", {"v[7:0] PLACED=R1C2"});
    EXPECT_EQ(devices(written(map.get())),
        "<Device Instance=\"u\" Type=\"ROM\" Width=\"7:0\" Depth=\"0:4095\">\n"
        "<Device Instance=\"v\" Type=\"RAMB16\" Width=\"7:0\" Depth=\"0:2047\" Loc=\"X2Y1\">\n");
}

TEST_F(XmlMapWriter, NothingIsWrittenForNoMapping) {
    OwnedFileSpec spec(CreateFileSpec(folder_.file("none.xml").c_str()));
    EXPECT_EQ(output_XML_BMM_file(spec.get(), "", 0, nullptr), 0);
    EXPECT_EQ(folder_.listing(), "");
}

TEST_F(XmlMapWriter, TheExtensionIsXmlAndTheFileNameIsItsSuffix) {
    TestMap map;
    OwnedFileSpec spec(CreateFileSpec(folder_.file("out.bmm").c_str()));
    EXPECT_EQ(output_XML_BMM_file(spec.get(), "_bd", 0, map.get()), 0);
    EXPECT_EQ(folder_.listing(), "out_bd.xml\n");
}

TEST_F(XmlMapWriter, AnExistingFileIsKept) {
    TestMap map;
    CapturedAlerts alerts;
    OwnedFileSpec spec(CreateFileSpec(folder_.write("out.xml", "old").c_str()));
    EXPECT_EQ(output_XML_BMM_file(spec.get(), "", 0, map.get()), 1);
    EXPECT_NE(alerts.text().find("ERROR:Lanefill:117 - "), std::string::npos);
    EXPECT_EQ(readFile(folder_.file("out.xml")), "old");
}

TEST_F(XmlMapWriter, NamesOfAnyCharactersComeBack) {
    TestMap map;
    map.map("cpu", "ARM", 0, "a\"<&>'\\b");
    map.space("x.y", 0, "RAMB16", {"u<&>'\"[7:0] INIT=C:\\new\\\"f\".mem"}, {.path = "p&q"});
    const std::string text = written(map.get());
    TestMap second;
    ASSERT_EQ(read(second.get(), text), 0);
    EXPECT_EQ(without_style(dump(second.get())), dump(map.get()));
}

TEST_F(XmlMapWriter, AStandardReaderAcceptsTheDocument) {
    if (std::system("command -v xmllint >/dev/null 2>&1") != 0) GTEST_SKIP() << "xmllint (libxml2-utils) is not here";
    TestMap map;
    map.map("cpu", "ARM", 0, "a\"<&>'\\b");
    map.space("ram", 0, "RAMB16", {"u<&>'\"[7:0]"});
    written(map.get());
    EXPECT_EQ(std::system(("xmllint --noout '" + folder_.file("written.xml") + "'").c_str()), 0);
    EXPECT_EQ(std::system(("test \"$(xmllint --xpath 'string(//Processor/@Instance)' '" + folder_.file("written.xml") +
                           "')\" = 'a\"<&>'\"'\"'\\b'")
                              .c_str()),
        0);
}

TEST_F(XmlMapWriter, SpacesThatEndAlikeKeepTheirOrder) {
    TestMap map;
    for (const char* name : {"a", "b", "c"}) map.space(name, 0, "RAMB16", {std::string("u_") + name + "[7:0]"});
    map.space("d", 0, "RAMB32", {"u_d[7:0]"});
    EXPECT_EQ(listSpaces(map.get()), ": c b a d\n");
    TestMap second;
    ASSERT_EQ(read(second.get(), written(map.get())), 0);
    EXPECT_EQ(listSpaces(second.get()), ": c b a d\n");
}

TEST_F(XmlMapWriter, AGenericMemoryComesBack) {
    TestMap map;
    const std::string text = lone_space("0xFFFF", "MEMORY",
        {block({"Instance=\"h\" Type=\"MEMORY\" Width=\"15:8\"", "Instance=\"l\" Type=\"MEMORY\" Width=\"7:0\""})});
    ASSERT_EQ(read(map.get(), text), 0);
    const std::string first = written(map.get());
    const std::string firstDump = dump(map.get());
    map.destroy();
    TestMap second;
    ASSERT_EQ(read(second.get(), first), 0);
    EXPECT_EQ(dump(second.get()), firstDump);
    EXPECT_EQ(written(second.get()), first);
}

// A space of one to three ranges that passes all checks; lanes are counted on, so that names are never doubled.
class RandomMap {
public:
    explicit RandomMap(u32 seed) : random_(seed) {}

    void fill(TestMap& map) {
        constexpr const char* kPROCESSORS[] = {"PPC405", "ARM", "RISCV", "KESTREL", "KESTREL-LE"};
        const u32 mapCount = below(4);
        if (below(2) == 0) addSpaces(map, "s");
        for (u32 i = 0; i < mapCount; ++i) {
            map.map(("m" + std::to_string(i)).c_str(), kPROCESSORS[below(5)], below(100), below(2) == 0 ? "" : "top/m");
            addSpaces(map, "t");
        }
    }

private:
    u32 below(u32 limit) { return static_cast<u32>(random_() % limit); }

    void addSpaces(TestMap& map, const std::string& prefix) {
        u64 start = below(2) * 0x8000;
        for (u32 i = 0, count = below(4); i < count; ++i) {
            std::vector<RangeText> ranges;
            const bool isRelative = below(4) == 0;
            for (u32 k = 1 + below(3); k != 0; --k) ranges.push_back(randomRange(isRelative));
            const AddressSpaceDefType* added = map.space((prefix + std::to_string(i)).c_str(), start, ranges,
                {.wordAddressing = below(3) == 0, .path = below(3) == 0 ? "p/q" : nullptr});
            start = below(5) == 0 ? start : added->endAddress + 1 + below(3) * 0x1000;
        }
    }

    RangeText randomRange(bool isRelative) {
        struct Shape {
            const char* memory;
            std::vector<u32> widths;
        };
        static const Shape kSHAPES[] = {{"RAMB4", {1, 2, 4, 8, 16}}, {"RAMB16", {1, 2, 4, 8, 16, 32}},
            {"RAMB18", {9, 18, 36}}, {"RAMB32", {8, 16, 32}}, {"RAMB36", {9, 18, 36}}};
        const Shape& shape = kSHAPES[below(std::size(kSHAPES))];
        const u32 width = shape.widths[below(static_cast<u32>(shape.widths.size()))];
        const u32 lanes = width < 8 ? 8 / width * (1 + below(2)) : 1 + below(4);
        const bool isRising = below(2) == 0;
        RangeText range{shape.memory, {}};
        for (u32 blocks = 1 + below(3); blocks != 0; --blocks)
            range.blocks.push_back(randomBlock(width, lanes, isRising, isRelative));
        return range;
    }

    std::string randomBlock(u32 width, u32 lanes, bool isRising, bool isRelative) {
        const std::string check = below(4) != 0 || width * lanes > 128
                                      ? ""
                                      : "e" + std::to_string(laneCount_++) + "[" + std::to_string(width * lanes + 6) +
                                            ":" + std::to_string(width * lanes) + "][0:511] ECCH32-7 " +
                                            (isRelative ? "*/ " : "");
        const bool isCheckFirst = below(2) == 0;
        std::string text = isCheckFirst ? check : "";
        for (u32 i = 0; i < lanes; ++i) {
            const u32 low = width * (isRising ? i : lanes - 1 - i);
            const u32 high = low + width - 1;
            const bool isAscending = width != 1 && below(4) == 0;
            text += "top/u" + std::to_string(laneCount_++) + "[" + std::to_string(isAscending ? low : high) + ":" +
                    std::to_string(isAscending ? high : low) + "] ";
            if (isRelative) text += "*/ ";
            if (below(4) == 0) text += "INIT=d/i.mem ";
            if (below(4) == 0) text += "INPUT=a&b.mem ";
            if (below(4) == 0) text += "OUTPUT=\"o\".mem ";
            if (below(4) == 0) text += "LOC=X" + std::to_string(below(9)) + "Y" + std::to_string(below(99)) + " ";
        }
        return isCheckFirst ? text : text + check;
    }

    std::mt19937 random_;
    u32 laneCount_ = 0;
};

TEST_F(XmlMapWriter, WhatIsWrittenReadsBackAsTheSameMapping) {
    u64 spaceCount = 0;
    for (u32 seed = 0; seed < 150; ++seed) {
        TestMap map;
        RandomMap(seed).fill(map);
        const std::string text = written(map.get());
        TestMap second;
        CapturedAlerts alerts;
        ASSERT_EQ(read(second.get(), text), 0) << seed << alerts.text() << text;
        EXPECT_EQ(without_order_of_reading(without_style(dump(second.get()))),
            without_order_of_reading(without_style(dump(map.get()))))
            << seed;
        EXPECT_EQ(written(second.get()), text) << seed;
        spaceCount += map->addressSpaceCount;
    }
    EXPECT_GT(spaceCount, 200u);
}

TEST_F(XmlMapWriter, EachAllocationMayFail) {
    TestMap map;
    map.map("cpu", "ARM", 3, "top/cpu");
    map.space("ram", 0x1000, "RAMB16", {"hi[15:8] INIT=n.mem lo[7:0] e[22:16][0:511] ECCH32-7"});
    const std::string name = folder_.file("faults.xml");
    const auto sweep = sweepAllocationFaults([&] {
        std::filesystem::remove(name);
        const OwnedFileSpec spec(CreateFileSpec(name.c_str()));
        if (spec == nullptr) return 7;
        const int status = output_XML_BMM_file(spec.get(), "", 0, map.get());
        EXPECT_EQ(std::filesystem::exists(name), status == 0);
        return status;
    });
    EXPECT_GT(sweep.faultCount, 30u);
    EXPECT_EQ(sweep.failures, "");
}

} // namespace
