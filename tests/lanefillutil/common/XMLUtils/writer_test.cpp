// writer_test.cpp - documents written.
// SPDX-License-Identifier: Apache-2.0
#include "StringUtils/StringUtils.h"
#include "xml_test.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <random>

using namespace memdata;
using namespace memdata::testing;

namespace {

using XmlWriter = XmlTest;

constexpr char kDECLARATION[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

TEST_F(XmlWriter, AnEmptyDocumentIsADeclaration) {
    LNF_XML document;
    EXPECT_EQ(written(document), kDECLARATION);
}

TEST_F(XmlWriter, ElementsAreIndentedByTabs) {
    LNF_XML document;
    LNF_XML_Element* a = document.Add_Child_Element("a", kXML_PARENT_ELEMENT);
    a->Add_Attribute("x", "1");
    a->Add_Attribute_Value_Hex("y", 255);
    LNF_XML_Element* b = a->Add_Child_Element("b", kXML_PARENT_ELEMENT);
    b->Add_Child_Element("c", kXML_EMPTY_ELEMENT)->Add_Attribute("z", "");
    a->Add_Child_Element("d", kXML_PARENT_ELEMENT);
    document.Add_Child_Element("e", kXML_EMPTY_ELEMENT);
    EXPECT_EQ(written(document), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                 "<a x=\"1\" y=\"0xFF\">\n"
                                 "\t<b>\n"
                                 "\t\t<c z=\"\"/>\n"
                                 "\t</b>\n"
                                 "\t<d>\n"
                                 "\t</d>\n"
                                 "</a>\n"
                                 "<e/>\n");
}

TEST_F(XmlWriter, ADeclarationThatWasReadIsWrittenInPlaceOfItsOwn) {
    const std::string name = file("d.xml", "<?xml encoding=\"latin\"?><a/>");
    OwnedFileSpec spec(CreateFileSpec(name.c_str()));
    LNF_XML document;
    EXPECT_EQ(document.ReadXML(spec.get(), nullptr, 0), 0);
    EXPECT_EQ(written(document), "<?xml encoding=\"latin\"?>\n<a/>\n");
}

TEST_F(XmlWriter, WritingDoesNotMoveTheCursors) {
    LNF_XML document;
    for (const char* tag : {"a", "b"}) document.Add_Child_Element(tag, kXML_EMPTY_ELEMENT);
    document.Get_Next_Child("a");
    const std::string text = written(document);
    EXPECT_STREQ(document.Get_Next_Child("*")->Get_Tag_Name(), "b");
    EXPECT_EQ(written(document), text);
}

TEST_F(XmlWriter, TheExtensionIsXmlAndTheSuffixFollowsTheBaseName) {
    OwnedFileSpec spec(CreateFileSpec(folder_.file("out.bmm").c_str()));
    LNF_XML document;
    EXPECT_EQ(document.WriteXML(spec.get(), "_x", 0), 0);
    EXPECT_EQ(readFile(folder_.file("out_x.xml")), kDECLARATION);
    EXPECT_EQ(LNF_XML_WriteXML(&document, nullptr, nullptr, 0), 3);
}

TEST_F(XmlWriter, TheLineEndsAreThoseOfTheAttributes) {
    OwnedFileSpec spec(CreateFileSpec(folder_.file("out.xml").c_str()));
    LNF_XML document;
    EXPECT_EQ(document.WriteXML(spec.get(), nullptr, kTEXT_LF), 0);
    EXPECT_EQ(document.attributes & kTEXT_WRITE, kTEXT_WRITE);
    EXPECT_EQ(readFile(folder_.file("out.xml")), kDECLARATION);
}

TEST_F(XmlWriter, AnExistingFileIsNotOverwritten) {
    const std::string name = file("out.xml", "old");
    OwnedFileSpec spec(CreateFileSpec(name.c_str()));
    LNF_XML document;
    CapturedAlerts alerts;
    EXPECT_EQ(document.WriteXML(spec.get(), nullptr, 0), 1);
    EXPECT_NE(alerts.text().find("ERROR:Lanefill:117 - "), std::string::npos) << alerts.text();
    EXPECT_EQ(readFile(name), "old");
}

TEST_F(XmlWriter, AFileThatCannotBeMadeIsReported) {
    OwnedFileSpec spec(CreateFileSpec("/no/such/folder/out.xml"));
    LNF_XML document;
    CapturedAlerts alerts;
    EXPECT_EQ(document.WriteXML(spec.get(), nullptr, 0), 1);
    EXPECT_NE(
        alerts.text().find("ERROR:Lanefill:2 - File '/no/such/folder/out.xml' can not be created"), std::string::npos);
}

TEST_F(XmlWriter, AFullDiskLeavesNoFile) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
    std::filesystem::create_symlink("/dev/full", folder_.file("full.xml"));
    OwnedFileSpec spec(CreateFileSpec(folder_.file("full.xml").c_str()));
    LNF_XML document;
    for (int i = 0; i < 20'000; ++i) document.Add_Child_Element("element", kXML_EMPTY_ELEMENT);
    CapturedAlerts alerts;
    EXPECT_NE(document.WriteXML(spec.get(), nullptr, 0), 0);
    EXPECT_NE(alerts.text().find("ERROR:Lanefill:"), std::string::npos);
}

TEST_F(XmlWriter, DeepNestingIsWritten) {
    LNF_XML document;
    LNF_XML_Element* at = &document;
    for (int i = 0; i < 2000; ++i) at = at->Add_Child_Element("a", kXML_PARENT_ELEMENT);
    const std::string text = written(document);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 4001);
    EXPECT_TRUE(text.ends_with("\n\t</a>\n</a>\n"));
}

std::string randomText(std::mt19937& random, bool isWord) {
    constexpr std::string_view kWORD = "abcdefghijXYZ_";
    constexpr std::string_view kANY = "ab\"<&>'\\/ ;#\t\n\r-=x0&lt;\xC3\xA4";
    const std::string_view letters = isWord ? kWORD : kANY;
    std::string text = isWord ? "t" : "";
    for (u64 length = random() % 12; length != 0; --length) text += letters[random() % letters.size()];
    if (isWord) return text;
    // A character of two bytes is not taken apart.
    std::string whole;
    for (const char c : text) whole += static_cast<u8>(c) < 0x80 ? std::string(1, c) : "\xC3\xA4";
    return whole;
}

void fill(LNF_XML_Element* element, std::mt19937& random, int depth) {
    for (u64 count = random() % 4; count != 0; --count)
        element->Add_Attribute(randomText(random, true).c_str(), randomText(random, false).c_str());
    if (element->Get_Type() != kXML_PARENT_ELEMENT || depth == 0) return;
    for (u64 count = random() % 4; count != 0; --count)
        fill(element->Add_Child_Element(
                 randomText(random, true).c_str(), random() % 2 == 0 ? kXML_EMPTY_ELEMENT : kXML_PARENT_ELEMENT),
            random, depth - 1);
}

TEST_F(XmlWriter, WhatIsWrittenReadsBackAndIsWrittenTheSame) {
    std::mt19937 random(7);
    for (int round = 0; round < 100; ++round) {
        LNF_XML document;
        fill(document.Add_Child_Element("root", kXML_PARENT_ELEMENT), random, 5);
        const std::string text = written(document);
        LNF_XML second;
        OwnedFileSpec spec(CreateFileSpec(folder_.file("written.xml").c_str()));
        ASSERT_EQ(second.ReadXML(spec.get(), nullptr, 0), 0) << text;
        EXPECT_EQ(dumpElement(*second.child(1)), dumpElement(*document.child(0))) << text;
        EXPECT_EQ(written(second), text);
    }
}

// The standard output of a command of the shell; its exit status must be 0.
std::string outputOf(const std::string& command) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string text;
    char buffer[4096];
    for (size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe.get())) != 0;) text.append(buffer, n);
    return text;
}

TEST_F(XmlWriter, AStandardReaderGetsTheValuesBack) {
    if (std::system("command -v xmllint >/dev/null 2>&1") != 0) GTEST_SKIP() << "xmllint (libxml2-utils) is not here";
    const std::string value = "a\"b<c&d>e'f\\g\th\ni\rj &lt; \xC3\xA4";
    LNF_XML document;
    LNF_XML_Element* root = document.Add_Child_Element("root", kXML_PARENT_ELEMENT);
    root->Add_Attribute("v", value.c_str());
    root->Add_Child_Element("child", kXML_EMPTY_ELEMENT)->Add_Attribute("w", "\"");
    written(document);
    const std::string name = folder_.file("written.xml");
    EXPECT_EQ(outputOf("xmllint --noout '" + name + "' 2>&1"), "");
    EXPECT_EQ(outputOf("xmllint --xpath 'string(/root/@v)' '" + name + "'"), value + "\n");
    EXPECT_EQ(outputOf("xmllint --xpath 'string(/root/child/@w)' '" + name + "'"), "\"\n");
    LNF_XML second;
    OwnedFileSpec spec(CreateFileSpec(name.c_str()));
    EXPECT_EQ(second.ReadXML(spec.get(), nullptr, 0), 0);
    EXPECT_EQ(second.child(1)->attributeValue(0), value);
}

TEST_F(XmlWriter, EachAllocationMayFail) {
    const std::string name = folder_.file("faults.xml");
    const auto sweep = sweepLifetimes([&] {
        std::filesystem::remove(name);
        OwnedFileSpec spec(CreateFileSpec(name.c_str()));
        if (spec == nullptr) return 7;
        LNF_XML document;
        LNF_XML_Element* a = document.Add_Child_Element("a", kXML_PARENT_ELEMENT);
        if (a == nullptr) return 7;
        const int status = document.WriteXML(spec.get(), nullptr, 0);
        EXPECT_EQ(std::filesystem::exists(name), status == 0);
        return status;
    });
    EXPECT_GT(sweep.faultCount, 5u);
    EXPECT_EQ(sweep.failures, "");
}

} // namespace
