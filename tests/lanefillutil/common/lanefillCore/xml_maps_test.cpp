// xml_maps_test.cpp - runs that read and write address maps as XML.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/lifetime.h"
#include "lanefillCore/driver.h"
#include "support/alerts.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <string>

namespace memdata::testing {
namespace {

constexpr char kMAP[] = "ADDRESS_MAP cpu ARM 7 top/cpu\n"
                        "ADDRESS_SPACE ram COMBINED [0x1000:0x1FFF] top/ram\n"
                        "ADDRESS_RANGE RAMB16 BUS_BLOCK hi [15:8] LOC = X3Y7; lo [7:0]; END_BUS_BLOCK;\n"
                        "END_ADDRESS_RANGE; END_ADDRESS_SPACE; END_ADDRESS_MAP;\n";

class XmlMapRuns : public ::testing::Test {
protected:
    // Reads one map and writes it as XML; what was written, or "status N" with the alerts.
    std::string run(fileSpecType* map, u32 subType, const char* outputName) {
        CapturedAlerts alerts;
        CmdStringOptionsType options{};
        FileSpecSetSubType(map, subType);
        FileSpecListExtend(&options.bmmFiles, map);
        options.outputXmlBmmFile = CreateFileSpec(folder_.file(outputName).c_str());
        const int status = execute_command_line_options(&options);
        FileSpecListDelete(options.bmmFiles);
        StrListDelete(options.workflowOps);
        DeleteFileSpec(&options.outputXmlBmmFile);
        return status == 0 ? readFile(folder_.file(outputName)) : "status " + std::to_string(status) + alerts.text();
    }

    SystemResources resources_;
    TemporaryFolder folder_;
};

TEST_F(XmlMapRuns, AMapTextAFileAndATextInMemoryGiveTheSameDocument) {
    const std::string name = folder_.write("map.bmm", kMAP);
    const std::string first = run(CreateFileSpec(name.c_str()), kBMM_TEXT_FILE, "first.xml");
    EXPECT_NE(first.find("<Processor Name=\"cpu\" Type=\"ARM\" Id=\"7\" Instance=\"top/cpu\""), first.npos) << first;
    EXPECT_EQ(run(CreateFileSpec(folder_.file("first.xml").c_str()), kBMM_XML_FILE, "second.xml"), first);
    fileSpecType* text = CreateFileSpecWithFileData("tempXMLFile.xml", first.data(), first.size());
    EXPECT_EQ(run(text, kBMM_XML_TEXT, "third.xml"), first);
}

TEST_F(XmlMapRuns, ADocumentWithoutAMapEndsTheRun) {
    const std::string name = folder_.write("none.xml", "<Other/>");
    const std::string result = run(CreateFileSpec(name.c_str()), kBMM_XML_FILE, "out.xml");
    EXPECT_EQ(result.substr(0, 9), "status 17") << result;
    EXPECT_EQ(folder_.listing(), "none.xml\n");
}

} // namespace
} // namespace memdata::testing
