// driver_test.cpp - which jobs an option record asks for, and in which order.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/driver.h"

#include "DeviceTableUtils/DeviceTableUtils.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "support/alerts.h"
#include "support/bit_builder.h"
#include "support/host_messages.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace memdata::testing {
namespace {

using ::testing::HasSubstr;

class Driver : public ::testing::Test {
protected:
    Driver() : bytesBefore_(getCurrentMemoryUsage()) {}
    ~Driver() override {
        for (fileSpecType** spec :
            {&options.preprocessFile, &options.bitFile, &options.imageFile, &options.outputBmmFile})
            DeleteFileSpec(spec);
        FileSpecListDelete(options.bmmFiles);
        StrListDelete(options.workflowOps);
        delete_BD_switch_data_list(&options.bdList);
        EXPECT_EQ(getCurrentMemoryUsage(), bytesBefore_);
    }

    void addMap(const char* name, u32 subType = kBMM_TEXT_FILE) {
        fileSpecType* spec = CreateFileSpec(name);
        FileSpecSetSubType(spec, subType);
        FileSpecListExtend(&options.bmmFiles, spec);
    }
    void addData(const char* name) {
        insert_BD_switch_data(&options.bdList, create_BD_switch_data(CreateFileSpec(name)));
    }
    int run() { return execute_command_line_options(&options); }

    SystemResources resources_;
    CapturedAlerts alerts;
    CapturedMessages messages;
    CmdStringOptionsType options{};

private:
    u64 bytesBefore_;
};

TEST_F(Driver, ABareRecordDoesNothingAndSucceeds) {
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(Driver, AnImageAloneDoesNothingAndSucceeds) {
    options.imageFile = CreateFileSpec("boot.img");
    EXPECT_EQ(run(), 0);
}

TEST_F(Driver, AnImageBesideAMapDoesNothingAndSucceeds) {
    options.imageFile = CreateFileSpec("boot.img");
    addMap("soc.bmm");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(Driver, TheMapOfADesignAloneDoesNothingAndSucceeds) {
    options.designBmm = true;
    EXPECT_EQ(run(), 0);
}

TEST_F(Driver, ABitFileWithoutAMapDoesNothingAndSucceeds) {
    options.bitFile = CreateFileSpec("top.bit");
    options.dumpEnabled = true;
    EXPECT_EQ(run(), 0);
}

TEST_F(Driver, ADumpWithoutAMapNeedsADataFile) {
    options.dumpEnabled = true;
    EXPECT_EQ(run(), 1);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:5 - A data file to dump was missing.\n\n");
}

TEST_F(Driver, ADumpWithAMapButWithoutABitFileNeedsADataFileToo) {
    options.dumpEnabled = true;
    addMap("soc.bmm");
    EXPECT_EQ(run(), 1);
    EXPECT_THAT(alerts.text(), HasSubstr("A data file to dump was missing."));
}

TEST_F(Driver, ADataFileWithoutAMapDoesNothing) {
    addData("app.elf");
    EXPECT_EQ(run(), 0);
}

TEST_F(Driver, AnImageComesBeforeADump) {
    options.imageFile = CreateFileSpec("boot.img");
    options.dumpEnabled = true;
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(Driver, AnImageBesideAMapAndABitFileDoesNothingAndSucceeds) {
    options.imageFile = CreateFileSpec("boot.img");
    options.bitFile = CreateFileSpec("no/such.bit");
    addMap("no/such.bmm");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(Driver, AFileToPreprocessComesBeforeABitFile) {
    options.preprocessFile = CreateFileSpec("no/such.bmm");
    options.bitFile = CreateFileSpec("top.bit");
    EXPECT_NE(run(), 0);
    EXPECT_NE(alerts.text(), "");
}

TEST_F(Driver, AFileToPreprocessIsLeftBesideADataFileOrAMap) {
    options.preprocessFile = CreateFileSpec("no/such.bmm");
    addData("app.elf");
    EXPECT_EQ(run(), 0);
    delete_BD_switch_data_list(&options.bdList);
    addMap("named.txt", kBMM_NAMING_FILE);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(Driver, TheSpecThatNamesTheMappingNeedNotBeTheFirst) {
    addMap("first.txt", 0);
    addMap("named.txt", kBMM_NAMING_FILE);
    AddressMappingType* mapping = nullptr;
    ASSERT_EQ(open_bmm_addressMapping(&options, &mapping), 0);
    EXPECT_STREQ(mapping->bmmBaseName, "named.bmm");
    close_bmm_addressMapping(&mapping);
}

TEST_F(Driver, WithoutASpecThatNamesItTheMappingHasTheNameOfTheFirst) {
    addMap("first.txt", 0);
    addMap("second.txt", 0);
    AddressMappingType* mapping = nullptr;
    ASSERT_EQ(open_bmm_addressMapping(&options, &mapping), 0);
    EXPECT_STREQ(mapping->bmmBaseName, "first.bmm");
    close_bmm_addressMapping(&mapping);
}

TEST_F(Driver, OpeningNoMapsIsAnErrorUnlessItIsForADump) {
    AddressMappingType* mapping = nullptr;
    EXPECT_EQ(open_bmm_addressMapping(&options, &mapping), 1);
    EXPECT_THAT(alerts.take(), HasSubstr("No BMM files were specified with '-bm' options."));
    options.dumpEnabled = true;
    EXPECT_EQ(open_bmm_addressMapping(&options, &mapping), 0);
    EXPECT_EQ(mapping, nullptr);
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(Driver, AMappingOfADesignHasANameOfItsOwn) {
    options.designBmm = true;
    AddressMappingType* mapping = nullptr;
    ASSERT_EQ(open_bmm_addressMapping(&options, &mapping), 0);
    EXPECT_STREQ(mapping->bmmBaseName, "Auto_Generated.bmm");
    EXPECT_TRUE(mapping->isAutoGenerated);
    close_bmm_addressMapping(&mapping);
    EXPECT_EQ(mapping, nullptr);
}

TEST_F(Driver, ASpecThatNamesTheMappingIsNotRead) {
    addMap("named.txt", kBMM_NAMING_FILE);
    AddressMappingType* mapping = nullptr;
    ASSERT_EQ(open_bmm_addressMapping(&options, &mapping), 0);
    EXPECT_STREQ(mapping->bmmBaseName, "named.bmm");
    close_bmm_addressMapping(&mapping);
}

TEST_F(Driver, AMappingLearnsItsDeviceFromTheBitFile) {
    const TemporaryFolder folder;
    addMap("named.txt", kBMM_NAMING_FILE);
    const std::string name = folder.write("top.bit", textOf(t4kBitFile({.partName = "q7b100fg484"}, {})));
    options.bitFile = CreateFileSpec(name.c_str());
    AddressMappingType* mapping = nullptr;
    ASSERT_EQ(open_bmm_addressMapping(&options, &mapping), 0);
    EXPECT_STREQ(deviceName(mapping->device), "tq7b100");
    EXPECT_EQ(mapping->device, options.device);
    close_bmm_addressMapping(&mapping);
    EXPECT_EQ(alerts.text(), "");
}

// Not of the fixture: the pool that texts are read with keeps its memory.
TEST(DriverOverTexts, AMappingLearnsItsDeviceFromABitFileOfDigits) {
    const SystemResources resources;
    const TemporaryFolder folder;
    const std::string name = folder.write("top.rbt", rbtText({.partName = "q7b100fg484"}));
    CmdStringOptionsType options{};
    options.designBmm = true;
    options.bitFile = CreateFileSpec(name.c_str());
    AddressMappingType* mapping = nullptr;
    ASSERT_EQ(open_bmm_addressMapping(&options, &mapping), 0);
    EXPECT_STREQ(deviceName(mapping->device), "tq7b100");
    close_bmm_addressMapping(&mapping);
    DeleteFileSpec(&options.bitFile);
}

TEST_F(Driver, ADeviceThatTheOptionsNameNeedsNoBitFile) {
    addMap("named.txt", kBMM_NAMING_FILE);
    options.device = get_device_record_by_name("tq5a20");
    options.bitFile = CreateFileSpec("no/such.bit");
    AddressMappingType* mapping = nullptr;
    ASSERT_EQ(open_bmm_addressMapping(&options, &mapping), 0);
    EXPECT_STREQ(deviceName(mapping->device), "tq5a20");
    close_bmm_addressMapping(&mapping);
}

TEST_F(Driver, ABitFileThatCannotBeReadLeavesNoMapping) {
    const TemporaryFolder folder;
    addMap("named.txt", kBMM_NAMING_FILE);
    AddressMappingType* mapping = nullptr;
    options.bitFile = CreateFileSpec("no/such.bit");
    EXPECT_EQ(open_bmm_addressMapping(&options, &mapping), 1);
    EXPECT_EQ(mapping, nullptr);
    EXPECT_THAT(alerts.take(), HasSubstr("'no/such.bit'"));
    DeleteFileSpec(&options.bitFile);

    const std::string name = folder.write("top.bit", textOf(t4kBitFile({.partName = "zz99"}, {})));
    options.bitFile = CreateFileSpec(name.c_str());
    EXPECT_EQ(open_bmm_addressMapping(&options, &mapping), 4);
    EXPECT_EQ(mapping, nullptr);
    EXPECT_THAT(alerts.text(), HasSubstr("Unrecognized device type in .bit file, 'zz99'."));
}

TEST_F(Driver, TheListOfOperationsIsReleasedOnceAMappingWasOpen) {
    addMap("named.txt", kBMM_NAMING_FILE);
    options.workflowOps = StrListNew(0);
    StrListExtend(&options.workflowOps, newString("all"));
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(options.workflowOps, nullptr);
}

TEST_F(Driver, TheListOfOperationsIsReleasedAlsoWhenTheRunFails) {
    addMap("named.txt", kBMM_NAMING_FILE);
    addData("readme.txt");
    options.workflowOps = StrListNew(0);
    EXPECT_EQ(run(), 1);
    EXPECT_EQ(options.workflowOps, nullptr);
    EXPECT_THAT(messages.text(), HasSubstr("28-295"));
}

TEST_F(Driver, ClosingNoMappingIsNothing) {
    AddressMappingType* mapping = nullptr;
    close_bmm_addressMapping(&mapping);
    EXPECT_EQ(mapping, nullptr);
}

} // namespace
} // namespace memdata::testing
