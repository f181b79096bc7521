// dataset_test.cpp - XML files that name a data file for each address space.
// SPDX-License-Identifier: Apache-2.0
#include "option_test.h"
#include "support/allocation_faults.h"

namespace memdata::testing {
namespace {

constexpr const char* kDATASET = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                 "<AddressMap>\n"
                                 "  <Processor Name=\"cpu\">\n"
                                 "    <AddressSpace Name=\"ram\">\n"
                                 "      <AddressMap Path=\"a.elf\"/>\n"
                                 "      <AddressMap Path=\"data/b c.mem\"/>\n"
                                 "    </AddressSpace>\n"
                                 "    <AddressSpace Name=\"rom\">\n"
                                 "      <AddressMap Path=\"c.elf\"/>\n"
                                 "    </AddressSpace>\n"
                                 "  </Processor>\n"
                                 "  <Processor Name=\"dsp\">\n"
                                 "    <AddressSpace Name=\"l1\">\n"
                                 "      <AddressMap Path=\"d.elf\"/>\n"
                                 "    </AddressSpace>\n"
                                 "  </Processor>\n"
                                 "</AddressMap>\n"
                                 "<AddressMap>\n"
                                 "  <Processor Name=\"aux\">\n"
                                 "    <AddressSpace Name=\"m\"><AddressMap Path=\"e.elf\"/></AddressSpace>\n"
                                 "  </Processor>\n"
                                 "</AddressMap>\n";
const std::string kNODES = "data: a.elf tags 1 cpu.ram\n"
                           "data: data/b c.mem tags 1 cpu.ram\n"
                           "data: c.elf tags 1 cpu.rom\n"
                           "data: d.elf tags 1 dsp.l1\n"
                           "data: e.elf tags 1 aux.m\n";

class Datasets : public Options {
protected:
    Datasets() : oldFolder_(std::filesystem::current_path()) { std::filesystem::current_path(folder.path()); }
    ~Datasets() override { std::filesystem::current_path(oldFolder_); }

    TemporaryFolder folder;

private:
    std::filesystem::path oldFolder_;
};

TEST_F(Datasets, EachInnerMapIsADataFileWithTheTagOfItsSpace) {
    folder.write("d.xml", kDATASET);
    EXPECT_EQ(record("-dataset d.xml"), kNODES + "dataset: d.xml\n");
}

TEST_F(Datasets, AnXmlFileAmongTheDataFilesIsADataset) {
    folder.write("d.xml", kDATASET);
    EXPECT_EQ(record("-bd d.xml"), kNODES + "dataset: d.xml\n");
}

TEST_F(Datasets, StandInTheOrderOfTheCommand) {
    folder.write("d.xml", "<AddressMap><Processor Name=\"p\"><AddressSpace Name=\"s\"><AddressMap Path=\"x.elf\"/>"
                          "</AddressSpace></Processor></AddressMap>");
    EXPECT_EQ(record("-bd a.elf -dataset d.xml -bd b.elf boot -i"),
        "data: a.elf\ndata: x.elf tags 1 p.s\ndata: b.elf boot 1\ndataset: d.xml\nignoreUnmapped\n");
}

TEST_F(Datasets, ASecondOneAddsItsFiles) {
    folder.write("a.xml", "<AddressMap><Processor Name=\"p\"><AddressSpace Name=\"s\"><AddressMap Path=\"x.elf\"/>"
                          "</AddressSpace></Processor></AddressMap>");
    EXPECT_EQ(record("-dataset a.xml -dataset a"), "data: x.elf tags 1 p.s\ndata: x.elf tags 1 p.s\ndataset: a\n");
}

TEST_F(Datasets, MacrosOfTheCommandHoldInThem) {
    folder.write("d.xml", "<AddressMap><Processor Name=\"p\"><AddressSpace Name=\"s\">\n#ifdef DEBUG\n"
                          "<AddressMap Path=\"debug.elf\"/>\n#else\n<AddressMap Path=\"release.elf\"/>\n#endif\n"
                          "</AddressSpace></Processor></AddressMap>");
    EXPECT_EQ(record("-dataset d.xml"), "data: release.elf tags 1 p.s\ndataset: d.xml\n");
    EXPECT_EQ(record("-D DEBUG=1 -dataset d.xml"),
        "defines: #define DEBUG 1\n\ndata: debug.elf tags 1 p.s\ndataset: d.xml\n");
}

TEST_F(Datasets, OtherElementsArePassedOver) {
    folder.write("d.xml", "<Other><Processor Name=\"p\"/></Other><AddressMap><Device Part=\"x\"/><Processor Name=\"p\">"
                          "<Note/></Processor></AddressMap>");
    EXPECT_EQ(record("-dataset d.xml"), "dataset: d.xml\n");
}

TEST_F(Datasets, ASpaceWithoutAFileNameIsRefused) {
    for (const char* file : {"<AddressMap/>", "<AddressMap Path=\"\"/>"}) {
        folder.write("d.xml", std::string("<AddressMap><Processor Name=\"p\"><AddressSpace Name=\"s\">") + file +
                                  "</AddressSpace></Processor></AddressMap>");
        EXPECT_EQ(failure("-dataset d.xml -i"),
            "14: ERROR:Lanefill:126 - Expected an ELF or MEM file name for address space 'p.s' in the dataset file.\n"
            "-dataset d.xml -i\n"
            "               ^");
    }
}

TEST_F(Datasets, WhatCannotBeReadKeepsTheReadersStatus) {
    EXPECT_EQ(parse("-dataset none.xml"), 1);
    folder.write("d.xml", "no xml");
    EXPECT_EQ(parse("-dataset d.xml"), 2);
    alerts.take();
    folder.write("e.xml", "");
    EXPECT_EQ(failure("-dataset e.xml -i"), "17: ERROR:Lanefill:53 - File 'e.xml' is empty or has no XML content.\n"
                                            "-dataset e.xml -i\n"
                                            "               ^");
}

TEST_F(Datasets, ExhaustedMemoryGivesAStatusAndEverythingBack) {
    folder.write("d.xml", "<AddressMap><Processor Name=\"p\"><AddressSpace Name=\"s\"><AddressMap Path=\"x.elf\"/>"
                          "</AddressSpace></Processor></AddressMap>");
    const auto run = [] {
        CmdStringOptionsType record{};
        int switches = -1;
        const int status = ParseCmdStringOptions("-dataset d.xml", &record, &switches);
        DeleteCmdStringOptions(&record);
        return status;
    };
    // The texts of pooled tokens grow to their final size.
    for (int i = 0; i < 10; ++i) EXPECT_EQ(run(), 0);
    EXPECT_EQ(sweepAllocationFaults(run).failures, "");
}

} // namespace
} // namespace memdata::testing
