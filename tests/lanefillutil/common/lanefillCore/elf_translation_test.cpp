// elf_translation_test.cpp - ELF files opened by their format and stored into a map.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/memory.h"
#include "lanefillCore/data_files.h"
#include "support/alerts.h"
#include "support/bit_builder.h"
#include "support/elf_builder.h"
#include "support/host_messages.h"
#include "support/map_builder.h"
#include "support/map_dump.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace memdata::testing {
namespace {

using ::testing::HasSubstr;

class ElfTranslation : public ::testing::Test {
protected:
    ~ElfTranslation() override { delete_BD_switch_data_list(&options.bdList); }

    int translate(const ElfFile& file, const char* name = "app.elf") {
        const std::string path = folder.write(name, textOf(elfFile(file)));
        insert_BD_switch_data(&options.bdList, create_BD_switch_data(CreateFileSpec(path.c_str())));
        return transform_data_files(&options, map.get(), is64Bit, "", nullptr);
    }

    TestMap map;
    TemporaryFolder folder;
    CapturedAlerts alerts;
    CapturedMessages messages;
    CmdStringOptionsType options{};
    bool is64Bit = false;
};

TEST_F(ElfTranslation, ThePlaceOfASegmentIsItsAddressInTheSpace) {
    AddressSpaceDefType* space = map.space("ram", 0x1000, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(translate({.segments = {{.address = 0x1004, .bytes = {0x11, 0x22}}}}), 0);
    EXPECT_EQ(dumpData(space), "lane a 4: 11 22\n");
    EXPECT_FALSE(is64Bit);
}

TEST_F(ElfTranslation, AFileOfClassTwoIsWide) {
    AddressSpaceDefType* space = map.space("ram", 0x1000, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(translate({.bits = 64, .isBigEndian = true, .segments = {{.address = 0x1000, .bytes = {7}}}}), 0);
    EXPECT_EQ(dumpData(space), "lane a 0: 07\n");
    EXPECT_TRUE(is64Bit);
}

TEST_F(ElfTranslation, TheExtensionDrfIsReadAsElfToo) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(translate({.segments = {{.address = 0, .bytes = {7}}}}, "app.drf"), 0);
    EXPECT_EQ(dumpData(space), "lane a 0: 07\n");
}

TEST_F(ElfTranslation, AFileWithoutSectionHeadersIsNotEmpty) {
    AddressSpaceDefType* space = map.space("ram", 0, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(translate({.segments = {{.address = 0, .bytes = {7}}}, .hasSections = false}), 0);
    EXPECT_EQ(dumpData(space), "lane a 0: 07\n");
}

TEST_F(ElfTranslation, AFileThatIsNotLinkedIsEmptyAndNamed) {
    map.space("ram", 0, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(translate({.type = 1, .sections = {{.name = ".text", .bytes = {1, 2}}}}), 2);
    EXPECT_THAT(alerts.text(), HasSubstr("app.elf' had no section data."));
}

TEST_F(ElfTranslation, SoftwareOfAnotherProcessorStopsWithStatus23AndBothNames) {
    map.map("cpu", "KESTREL", 0, "");
    map.space("ram", 0, "RAMB4", {"a[7:0]"});
    EXPECT_EQ(translate({.machine = 40, .segments = {{.address = 0, .bytes = {7}}}}), 23);
    EXPECT_THAT(alerts.text(),
        HasSubstr("app.elf' was built for another processor than KESTREL, that of ADDRESS_MAP 'cpu' in 'test.bmm'."));
}

} // namespace
} // namespace memdata::testing
