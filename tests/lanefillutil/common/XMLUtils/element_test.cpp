// element_test.cpp - elements built and asked by hand.
// SPDX-License-Identifier: Apache-2.0
#include "StringUtils/StringUtils.h"
#include "SystemUtils/SystemUtils.h"
#include "XMLUtils/XMLUtils.h"
#include "support/allocation_faults.h"

#include <gtest/gtest.h>
#include <string>

using memdata::testing::sweepAllocationFaults;

namespace {

using memdata::SystemResources;

class XmlElement : public ::testing::Test {
protected:
    void SetUp() override { usageBefore_ = getCurrentMemoryUsage(); }
    void TearDown() override { EXPECT_EQ(getCurrentMemoryUsage(), usageBefore_); }

    SystemResources resources_;
    u64 usageBefore_ = 0;
};

TEST_F(XmlElement, ANewOneHasNeitherAttributesNorChildren) {
    LNF_XML_Element element("a");
    EXPECT_STREQ(element.Get_Tag_Name(), "a");
    EXPECT_EQ(element.Get_Attribute_Count(), 0u);
    EXPECT_EQ(element.Get_Child_Count(), 0u);
    EXPECT_EQ(element.Get_Next_Child("*"), nullptr);
    EXPECT_EQ(element.Get_Next_Attribute(nullptr), nullptr);
    EXPECT_EQ(LNF_XML_Element().Get_Tag_Name(), nullptr);
}

TEST_F(XmlElement, ATypeCanBeSet) {
    LNF_XML_Element element("a");
    element.Set_Type(kXML_EMPTY_ELEMENT);
    EXPECT_EQ(element.Get_Type(), 2u);
    element.Set_Type(kXML_PARENT_ELEMENT);
    EXPECT_EQ(element.Get_Type(), 3u);
    element.Set_Type(kXML_DECLARATION_ELEMENT);
    EXPECT_EQ(element.Get_Type(), 1u);
}

TEST_F(XmlElement, AttributesAreFoundByTheirExactName) {
    LNF_XML_Element element("a");
    EXPECT_EQ(element.Add_Attribute("Name", "ram"), 0);
    EXPECT_EQ(element.Add_Attribute("Empty", ""), 0);
    char* value = nullptr;
    EXPECT_STREQ(element.Get_Attribute("Name", &value), "ram");
    EXPECT_STREQ(value, "ram");
    EXPECT_STREQ(element.Get_Attribute("Empty", nullptr), "");
    EXPECT_EQ(element.Get_Attribute("name", &value), nullptr);
    EXPECT_EQ(value, nullptr);
    EXPECT_EQ(element.Get_Attribute("Nam", &value), nullptr);
    EXPECT_EQ(element.Get_Attribute(nullptr, &value), nullptr);
}

TEST_F(XmlElement, TheFirstAttributeOfANameCounts) {
    LNF_XML_Element element("a");
    element.Add_Attribute("n", "1");
    element.Add_Attribute("n", "2");
    EXPECT_STREQ(element.Get_Attribute("n", nullptr), "1");
    EXPECT_EQ(element.Get_Attribute_Count(), 2u);
}

TEST_F(XmlElement, AttributesAreWalkedInOrder) {
    LNF_XML_Element element("a");
    for (int i = 0; i < 20; ++i) element.Add_Attribute(std::to_string(i).c_str(), std::to_string(i * i).c_str());
    for (int round = 0; round < 2; ++round) {
        char* value = nullptr;
        for (int i = 0; i < 20; ++i) {
            EXPECT_EQ(element.Get_Next_Attribute(&value), std::to_string(i));
            EXPECT_EQ(value, std::to_string(i * i));
        }
        EXPECT_EQ(element.Get_Next_Attribute(&value), nullptr);
        EXPECT_EQ(value, nullptr);
        EXPECT_EQ(element.Get_Next_Attribute(&value), nullptr);
        element.Reset_Next_Attribute();
    }
}

TEST_F(XmlElement, NumbersAreWrittenInDecimalAndHexadecimal) {
    LNF_XML_Element element("a");
    EXPECT_EQ(element.Add_Attribute_Value_Decimal("d", 4096), 0);
    EXPECT_EQ(element.Add_Attribute_Value_Hex("h", 0xBEEF), 0);
    EXPECT_EQ(element.Add_Attribute_Value_Hex("all", UINT64_MAX), 0);
    EXPECT_EQ(element.Add_Attribute_Value_Decimal("zero", 0), 0);
    EXPECT_STREQ(element.Get_Attribute("d", nullptr), "4096");
    EXPECT_STREQ(element.Get_Attribute("h", nullptr), "0xBEEF");
    EXPECT_STREQ(element.Get_Attribute("all", nullptr), "0xFFFFFFFFFFFFFFFF");
    EXPECT_STREQ(element.Get_Attribute("zero", nullptr), "0");
}

TEST_F(XmlElement, NumbersOfSixtyFourBitsComeBack) {
    LNF_XML_Element element("a");
    for (const u64 number : {u64{0}, u64{9}, u64{1} << 63, UINT64_MAX, UINT64_MAX - 1, u64{0x123456789ABCDEF0}}) {
        const std::string name = std::to_string(number);
        element.Add_Attribute_Value_Decimal((name + "d").c_str(), number);
        element.Add_Attribute_Value_Hex((name + "h").c_str(), number);
        unsigned long value = 1;
        EXPECT_NE(element.Get_Attribute_Integer((name + "d").c_str(), &value), nullptr);
        EXPECT_EQ(value, number);
        value = 1;
        EXPECT_NE(element.Get_Attribute_Integer((name + "h").c_str(), &value), nullptr);
        EXPECT_EQ(value, number);
    }
}

struct NumberCase {
    const char* text;
    u64 value; // 77: left alone
};

TEST_F(XmlElement, AnIntegerIsReadInBaseTenWithPrefixes) {
    constexpr NumberCase kCASES[] = {{"12", 12}, {"0x1f", 31}, {"0X1F", 31}, {"0o17", 15}, {"0n101", 5}, {"010", 10},
        {"1.9", 1}, {"12 ", 12}, {"", 77}, {"x", 77}, {"0x", 77}, {"12ab", 77}, {" 12", 77}};
    for (const NumberCase& c : kCASES) {
        LNF_XML_Element element("a");
        element.Add_Attribute("n", c.text);
        unsigned long value = 77;
        EXPECT_EQ(element.Get_Attribute_Integer("n", &value) == nullptr, c.value == 77) << c.text;
        EXPECT_EQ(value, c.value) << c.text;
    }
}

TEST_F(XmlElement, AnAbsentIntegerLeavesTheResultAlone) {
    LNF_XML_Element element("a");
    unsigned long value = 5;
    EXPECT_EQ(element.Get_Attribute_Integer("n", &value), nullptr);
    EXPECT_EQ(value, 5u);
}

TEST_F(XmlElement, ChildrenAreFoundByTagAndByStar) {
    LNF_XML_Element element("root");
    for (const char* tag : {"a", "b", "a", "c", "a", "b"}) element.Add_Child_Element(tag, kXML_EMPTY_ELEMENT);
    EXPECT_EQ(element.Get_Child_Count(), 6u);
    int count = 0;
    while (element.Get_Next_Child("a") != nullptr) ++count;
    EXPECT_EQ(count, 3);
    EXPECT_EQ(element.Get_Next_Child("a"), nullptr);
    EXPECT_EQ(element.Get_Next_Child("*"), nullptr); // the cursor stays at the end
    element.Reset_Next_Child();
    std::string tags;
    while (LNF_XML_Element* child = element.Get_Next_Child("*")) tags += child->Get_Tag_Name();
    EXPECT_EQ(tags, "abacab");
    EXPECT_EQ(element.Get_Next_Child("*"), nullptr);
    element.Reset_Next_Child();
    EXPECT_STREQ(element.Get_Next_Child("c")->Get_Tag_Name(), "c");
    EXPECT_STREQ(element.Get_Next_Child("*")->Get_Tag_Name(), "a"); // goes on behind the one found
    EXPECT_EQ(element.Get_Next_Child("c"), nullptr);
}

TEST_F(XmlElement, AChildKnowsItsParentAndType) {
    LNF_XML_Element element("root");
    LNF_XML_Element* child = element.Add_Child_Element("a", kXML_EMPTY_ELEMENT);
    EXPECT_EQ(child->parent(), &element);
    EXPECT_EQ(child->Get_Type(), 2u);
    EXPECT_EQ(element.parent(), nullptr);
}

TEST_F(XmlElement, NullArgumentsAreRefused) {
    LNF_XML_Element element("a");
    EXPECT_EQ(element.Add_Attribute(nullptr, "v"), 3);
    EXPECT_EQ(element.Add_Attribute("n", nullptr), 3);
    EXPECT_EQ(element.Add_Child_Element(nullptr, kXML_EMPTY_ELEMENT), nullptr);
    EXPECT_EQ(element.Get_Next_Child(nullptr), nullptr);
}

TEST_F(XmlElement, ThePlainOperationsAreThoseOfTheElement) {
    LNF_XML_Element root("root");
    LNF_XML_Element* child = LNF_XML_Element_Add_Child_Element(&root, "a", kXML_PARENT_ELEMENT);
    EXPECT_EQ(LNF_XML_Element_Get_Next_Child(&root, "a"), child);
    EXPECT_EQ(LNF_XML_Element_Add_Attribute(child, "t", "x"), 0);
    EXPECT_EQ(LNF_XML_Element_Add_Attribute_Value_Decimal(child, "d", 10), 0);
    EXPECT_EQ(LNF_XML_Element_Add_Attribute_Value_Hex(child, "h", 10), 0);
    char* text = nullptr;
    EXPECT_STREQ(LNF_XML_Element_Get_Attribute(child, "h", &text), "0xA");
    u64 value = 0;
    EXPECT_STREQ(LNF_XML_Element_Get_Attribute_Integer(child, "d", &value), "10");
    EXPECT_EQ(value, 10u);
}

TEST_F(XmlElement, AHundredThousandNestedElementsAreDeleted) {
    LNF_XML_Element root("root");
    LNF_XML_Element* at = &root;
    for (int i = 0; i < 100'000; ++i) at = at->Add_Child_Element("a", kXML_PARENT_ELEMENT);
    EXPECT_EQ(at->Get_Child_Count(), 0u);
}

TEST_F(XmlElement, EachAllocationMayFail) {
    const auto sweep = sweepAllocationFaults([] {
        LNF_XML_Element root("root");
        if (root.Get_Tag_Name() == nullptr) return 7;
        for (int i = 0; i < 6; ++i) {
            LNF_XML_Element* child = root.Add_Child_Element("a", kXML_PARENT_ELEMENT);
            if (child == nullptr) return 7;
            for (const char* name : {"a", "b", "c", "d", "e"})
                if (int status = child->Add_Attribute_Value_Hex(name, 17); status != 0) return status;
        }
        return 0;
    });
    EXPECT_GT(sweep.faultCount, 50u);
    EXPECT_EQ(sweep.failures, "");
}

} // namespace
