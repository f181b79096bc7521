// vocabulary_test.cpp - names and exceptions that we share with the host.
// SPDX-License-Identifier: Apache-2.0
#include "platform/HEXAll.h"
#include "platform/attribute_names.h"

namespace {

template<class Exception>
std::string caughtAsTheFamily(const char* text) {
    try {
        throw Exception(text);
    } catch (const HEXAll& error) {
        EXPECT_EQ(error.getMessage(), error.what());
        return error.getMessage();
    }
}

} // namespace

TEST(HostExceptions, AreCaughtAsTheirFamilyWithTheirText) {
    EXPECT_EQ(caughtAsTheFamily<HEXFatal>("fatal"), "fatal");
    EXPECT_EQ(caughtAsTheFamily<HEXInternalException>("internal"), "internal");
    EXPECT_EQ(caughtAsTheFamily<HEXAlgException>("flow"), "flow");
    EXPECT_EQ(caughtAsTheFamily<HXMLException>("a.mmi"), "a.mmi");
}

TEST(AttributeNames, BeginWithTheHostsPrefix) {
    const std::vector<std::string> names = {memdata::kHOST_ORIG_NAME_ATTRIBUTE, memdata::kHOST_EDIF_NAME_ATTRIBUTE,
        memdata::kHOST_IS_CORE_TOP_ATTRIBUTE, memdata::kHOST_IS_CORE_CELL_ATTRIBUTE, memdata::kHOST_CORE_FILE_ATTRIBUTE,
        memdata::kHOST_SYNTH_MODULE_ATTRIBUTE, memdata::kHOST_IS_PR_ATTRIBUTE, memdata::kHOST_IS_PARTITION_ATTRIBUTE,
        memdata::kHOST_ONCF_FILE_ATTRIBUTE, memdata::kHOST_COMP_ROUTING_PIN_ATTRIBUTE,
        memdata::kHOST_COMP_ROUTING_DIRECTION_ATTRIBUTE, memdata::kHOST_RTL_NETLIST_TYPE_ATTRIBUTE,
        memdata::kHOST_RTL_NETLIST_SECURE_ATTRIBUTE, memdata::kHOST_META_PROGRAM_ATTRIBUTE,
        memdata::kHOST_META_VERSION_ATTRIBUTE, memdata::kHOST_DRC_ODC_COLLISION_INIT_ATTRIBUTE};
    EXPECT_THAT(
        names, ::testing::ElementsAre("__HD_ORIG_NAME", "__HD_EDIF_NAME", "__HD_IS_CORE_TOP", "__HD_IS_CORE_CELL",
                   "__HD_CORE_FILE", "__HD_SYNTH_MODULE", "__HD_IS_PR", "__HD_IS_PARTITION", "__HD_ONCF_FILE",
                   "__HD_COMP_ROUTING_PIN", "__HD_COMP_ROUTING_DIRECTION", "__HD_RTL_NETLIST_TYPE",
                   "__HD_RTL_NETLIST_SECURE", "__HD_META_PROGRAM", "__HD_META_VERSION", "__HD_DRC_ODC_COLLISION_INIT"));
}

TEST(AttributeNames, TheAddressMapOfADesignHasItsProperty) {
    EXPECT_STREQ(memdata::kBMM_INFO_DESIGN_ATTRIBUTE, "BMM_INFO_DESIGN");
}
