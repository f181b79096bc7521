// reader_test.cpp - documents read.
// SPDX-License-Identifier: Apache-2.0
#include "XMLUtils/xml_symbols.h"
#include "support/damage.h"
#include "xml_test.h"

#include <random>

using namespace memdata;
using namespace memdata::testing;

namespace {

using XmlReader = XmlTest;

TEST_F(XmlReader, TheMarksAreKeywords) {
    std::string words;
    for (const keyword_row* row = xml_symbol_set.rows; row->word != nullptr; ++row)
        words += std::string(row->word) + " ";
    EXPECT_EQ(words, "<? ?> <!-- --> </ < > /> ");
}

TEST_F(XmlReader, AnEmptyElementHasTypeTwo) {
    EXPECT_EQ(read("<a b=\"1\"/>"), "a:2 b='1'");
}

TEST_F(XmlReader, AnElementWithChildrenHasTypeThree) {
    EXPECT_EQ(read("<a><b/></a>"), "a:3 [b:2]");
    EXPECT_EQ(read("<a></a>"), "a:3");
}

TEST_F(XmlReader, ADeclarationHasTypeOne) {
    const std::string name = file("d.xml", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a/>\n");
    OwnedFileSpec spec(CreateFileSpec(name.c_str()));
    LNF_XML document;
    EXPECT_EQ(document.ReadXML(spec.get(), nullptr, 34), 0);
    EXPECT_EQ(dumpDocument(document), "xml:1 version='1.0' encoding='UTF-8', a:2");
    EXPECT_TRUE(document.hasDeclaration);
    EXPECT_EQ(document.attributes, 34u);
    EXPECT_EQ(document.spec, spec.get());
}

TEST_F(XmlReader, ADocumentWithoutADeclarationKnowsIt) {
    const std::string name = file("d.xml", "<a/>");
    OwnedFileSpec spec(CreateFileSpec(name.c_str()));
    LNF_XML document;
    EXPECT_EQ(document.ReadXML(spec.get(), nullptr, 0), 0);
    EXPECT_FALSE(document.hasDeclaration);
}

TEST_F(XmlReader, ADeclarationKeepsOnlyTheAttributesOfAnXmlDeclaration) {
    EXPECT_EQ(read("<?xml version=\"1.0\" standalone=\"yes\" encoding=\"x\" ?><a/>"),
        "xml:1 version='1.0' encoding='x', a:2");
}

TEST_F(XmlReader, AnotherProcessingInstructionIsPassedOver) {
    CapturedAlerts alerts;
    EXPECT_EQ(read("<?php a?><b/>"), "status 2");
    EXPECT_NE(alerts.text().find("Unexpected symbol 'php', 'valid XML syntax' expected."), std::string::npos);
}

TEST_F(XmlReader, ElementsNestAndFollowEachOther) {
    EXPECT_EQ(read("<a x=\"1\" y=\"2\">\n\t<b><c/><c z=\"3\"/></b>\n\t<d/>\n</a>\n<e/>"),
        "a:3 x='1' y='2' [b:3 [c:2, c:2 z='3'], d:2], e:2");
}

TEST_F(XmlReader, NamesHoldDashesAndPoints) {
    EXPECT_EQ(read("<a-b.c d-e.f=\"1\"></a-b.c>"), "a-b.c:3 d-e.f='1'");
}

TEST_F(XmlReader, BlanksMayStandAroundNamesAndMarks) {
    EXPECT_EQ(read("< a\n b = \"1\"\n\tc=\n\"2\" ></ a >"), "a:3 b='1' c='2'");
}

TEST_F(XmlReader, ACommentIsPassedOver) {
    EXPECT_EQ(read("<!-- a comment --><a/><!-- another -->"), "a:2");
    EXPECT_EQ(read("<a><!-- inside --><b/><!-- and here --></a>"), "a:3 [b:2]");
}

TEST_F(XmlReader, ACommentMayTouchItsMarks) {
    EXPECT_EQ(read("<!--x--><a/>"), "a:2");
    EXPECT_EQ(read("<!----><a/><!---->"), "a:2");
    EXPECT_EQ(read("<!--x-y--z--->\n<a/>"), "a:2");
}

TEST_F(XmlReader, ACommentMayHoldAnything) {
    EXPECT_EQ(read("<!-- don't \"quote // http://x /* # #if <b> -> -- > ## -->\n<a/>"), "a:2");
}

TEST_F(XmlReader, ACommentWithoutAnEndReachesToTheEndOfTheText) {
    EXPECT_EQ(read("<a/><!-- x <b/>"), "a:2");
    EXPECT_EQ(read("<a/><!--"), "a:2");
}

TEST_F(XmlReader, LinesOfACommentAreCounted) {
    CapturedAlerts alerts;
    EXPECT_EQ(read("<!-- 1\n2\r\n3 -->\n x"), "status 2");
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:11 - Unexpected symbol 'x', 'valid XML syntax' expected.\n"
                             "   Line #4, File \"text.xml\".\n"
                             " x\n"
                             " ^\n\n");
}

TEST_F(XmlReader, AByteOrderMarkIsPassedOver) {
    EXPECT_EQ(read("\xEF\xBB\xBF<a/>"), "a:2");
}

TEST_F(XmlReader, TextBetweenTagsIsNotAccepted) {
    CapturedAlerts alerts;
    EXPECT_EQ(read("<a>\n  text</a>"), "status 2 a:3");
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:11 - Unexpected symbol 'text', 'valid XML syntax' expected.\n"
                             "   Line #2, File \"text.xml\".\n"
                             "  text</a>\n"
                             "  ^\n\n");
}

TEST_F(XmlReader, TextOutsideOfElementsIsNotAccepted) {
    CapturedAlerts alerts;
    EXPECT_EQ(read("text"), "status 2");
    EXPECT_EQ(read("<a/> 12"), "status 2 a:2");
    EXPECT_EQ(read("</a>"), "status 2");
    EXPECT_EQ(read("<!DOCTYPE a>"), "status 2");
}

TEST_F(XmlReader, AMismatchedEndTagEndsItsElementQuietly) {
    CapturedAlerts alerts;
    EXPECT_EQ(read("<a><b/></c><d/>"), "status 2 a:3 [b:2]");
    EXPECT_NE(alerts.take().find("Unexpected symbol 'c'"), std::string::npos);
    EXPECT_EQ(read("<a></A>"), "status 2 a:3"); // names compare exactly
    alerts.take();
    // The parent's end tag is not read for the child's.
    EXPECT_EQ(read("<r><a></r>"), "status 2 r:3 [a:3]");
    EXPECT_NE(alerts.take().find("Unexpected symbol 'r'"), std::string::npos);
}

TEST_F(XmlReader, AnElementThatIsNotEndedEndsWithTheText) {
    EXPECT_EQ(read("<a><b><c/>"), "a:3 [b:3 [c:2]]");
    EXPECT_EQ(read("<a b=\"1\""), "a:2 b='1'");
    EXPECT_EQ(read("<a/><"), "a:2");
}

TEST_F(XmlReader, AnElementInWhichTheTextEndsKnowsIt) {
    const auto cutOff = [](std::string_view text) {
        OwnedFileSpec spec(CreateFileSpecWithFileData("t.xml", text.data(), text.size()));
        LNF_XML document;
        EXPECT_EQ(document.ReadXML(spec.get(), nullptr, 0), 0) << text;
        return document.child(0)->Is_Cut_Off();
    };
    for (const char* text : {"<a", "<a b=\"1\"", "<a>", "<a><b/>", "<a><b></b>", "<a><b/></", "<a><b/></a", "<a><!-- "})
        EXPECT_TRUE(cutOff(text)) << text;
    for (const char* text : {"<a/>", "<a></a>", "<a><b/></a>", "<a></a><b>", "<a></a><!-- "})
        EXPECT_FALSE(cutOff(text)) << text;
    EXPECT_FALSE(LNF_XML_Element("a").Is_Cut_Off());
}

TEST_F(XmlReader, AnElementWithoutTagEndIsFollowedByTheNext) {
    EXPECT_EQ(read("<a b=\"1\" <c/>"), "a:2 b='1', c:2");
}

TEST_F(XmlReader, AnAttributeThatFailsAStepIsNotStored) {
    CapturedAlerts alerts;
    EXPECT_EQ(read("<a b=1 c=\"2\"/>"), "a:2 c='2'");
    EXPECT_EQ(read("<a b c=\"2\"/>"), "a:2 c='2'");
    EXPECT_EQ(read("<a b= c=\"2\"/>"), "a:2 c='2'");
    EXPECT_EQ(read("<a =\"1\" c=\"2\"/>"), "a:2 c='2'");
    EXPECT_EQ(read("<a 7=\"1\" \"x\" c=\"2\" d/>"), "a:2 c='2'");
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(XmlReader, ValuesMayStandInSingleQuotes) {
    EXPECT_EQ(read("<a b='1' c='say \"x\"'/>"), "a:2 b='1' c='say \"x\"'");
}

TEST_F(XmlReader, ValuesHoldEntities) {
    EXPECT_EQ(read("<a b=\"&lt;&gt;&amp;&quot;&apos;&#65;&x;\"/>"), "a:2 b='<>&\"'A&x;'");
}

TEST_F(XmlReader, ABackslashInAValueIsABackslash) {
    EXPECT_EQ(read("<a b=\"C:\\new\\table\\\" c=\"\\\\\"/>"), "a:2 b='C:\\new\\table\\' c='\\\\'");
}

TEST_F(XmlReader, ValuesMayBeEmptyAndHoldMarks) {
    EXPECT_EQ(
        read("<a b=\"\" c=\"<x/> --> ?>\" d=\"http://x/*y*/#z\"/>"), "a:2 b='' c='<x/> --> ?>' d='http://x/*y*/#z'");
}

TEST_F(XmlReader, ThePreprocessorWorksInDocuments) {
    EXPECT_EQ(read("#define TAG a\n#define VALUE \"1\"\n<TAG b=VALUE></TAG>"), "a:3 b='1'");
    EXPECT_EQ(read("#if 0\n<a/>\n#else\n<b/>\n#endif\n"), "b:2");
    EXPECT_EQ(read("<a/> // comment\n/* <b/> */<c/>"), "a:2, c:2");
}

TEST_F(XmlReader, MacroDefinitionsAreReadAheadOfTheFile) {
    EXPECT_EQ(read("<a b=VALUE c=\"x\\y\"/>", "#define VALUE \"1\"\n"), "a:2 b='1' c='x\\y'");
}

TEST_F(XmlReader, AFileThatIsNotThereGivesItsStatus) {
    CapturedAlerts alerts;
    OwnedFileSpec spec(CreateFileSpec("/no/such/file.xml"));
    LNF_XML document;
    EXPECT_EQ(document.ReadXML(spec.get(), nullptr, 0), 1);
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:1 - File '/no/such/file.xml' can not be found, or is busy.\n"
                             "    Please ensure that the file is available in the correct\n"
                             "    directory location, or isn't being locked by another\n"
                             "    application.\n\n");
    EXPECT_EQ(document.ReadXML(nullptr, nullptr, 0), 3);
}

TEST_F(XmlReader, TheExtensionIsAddedToANameWithoutOne) {
    file("plain.xml", "<a/>");
    OwnedFileSpec spec(CreateFileSpec(folder_.file("plain").c_str()));
    LNF_XML document;
    EXPECT_EQ(document.ReadXML(spec.get(), nullptr, 0), 0);
    EXPECT_EQ(dumpDocument(document), "a:2");
}

TEST_F(XmlReader, AnEmptyFileGivesSeventeen) {
    OwnedFileSpec spec(CreateFileSpec(file("empty.xml", "").c_str()));
    LNF_XML document;
    EXPECT_EQ(document.ReadXML(spec.get(), nullptr, 0), 17);
}

TEST_F(XmlReader, DataThatASpecHoldsIsReadInPlaceOfItsFile) {
    CapturedAlerts alerts;
    OwnedFileSpec spec(CreateFileSpecWithFileData("m.xml", "<a/>\nx", 6));
    LNF_XML document;
    EXPECT_EQ(document.ReadXML(spec.get(), nullptr, 0), 2);
    EXPECT_EQ(dumpDocument(document), "a:2");
    EXPECT_EQ(alerts.text(), "\nERROR:Lanefill:11 - Unexpected symbol 'x', 'valid XML syntax' expected.\n"
                             "   Line #2, File \"m.xml\".\nx\n^\n\n");
}

TEST_F(XmlReader, AStringWithoutItsQuoteIsReported) {
    CapturedAlerts alerts;
    EXPECT_EQ(read("<a b=\"1\n/>"), "status 3 a:2");
    EXPECT_NE(alerts.text().find("   Line #1, File "), std::string::npos);
}

std::string nested(u32 depth) {
    std::string text;
    for (u32 i = 0; i < depth; ++i) text += "<a>";
    for (u32 i = 0; i < depth; ++i) text += "</a>";
    return text;
}

TEST_F(XmlReader, AThousandElementsMayBeNested) {
    const std::string dump = read(nested(kMAX_XML_DEPTH));
    EXPECT_EQ(std::count(dump.begin(), dump.end(), '['), kMAX_XML_DEPTH - 1);
    CapturedAlerts alerts;
    EXPECT_EQ(read(nested(kMAX_XML_DEPTH + 1)).substr(0, 9), "status 3 ");
    EXPECT_NE(alerts.text().find(
                  "ERROR:Lanefill - Element 'a' can not be read, the limit of 1000 nested elements is reached."),
        std::string::npos)
        << alerts.text();
}

TEST_F(XmlReader, AValueWithAZeroByteIsRefused) {
    CapturedAlerts alerts;
    EXPECT_EQ(read(std::string("<a b=\"1\0002\"/>", 12)).substr(0, 9), "status 3 ");
    EXPECT_NE(alerts.text().find("Attribute 'b' of element 'a' can not be read, its value holds a zero byte."),
        std::string::npos)
        << alerts.text();
}

TEST_F(XmlReader, TenThousandAttributesMayStandInAnElement) {
    std::string text = "<a";
    for (u32 i = 0; i < kMAX_XML_ATTRIBUTES; ++i) text += " b=\"\"";
    const std::string dump = read(text + "/>");
    EXPECT_EQ(std::count(dump.begin(), dump.end(), '='), kMAX_XML_ATTRIBUTES);
    CapturedAlerts alerts;
    EXPECT_EQ(read(text + " b=\"\"/>").substr(0, 9), "status 3 ");
    EXPECT_NE(alerts.text().find("Element 'a' can not be read, it has more than the limit of 10000"), std::string::npos)
        << alerts.text();
}

constexpr char kWHOLE[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- c -->\n<a b=\"&lt;1\" c='2'>\n\t<d e=\"f\"/>\n"
    "\t<!--x-->\n\t<g>\n\t\t<h/>\n\t</g>\n</a>\n";

TEST_F(XmlReader, EveryCutOfADocumentEndsWithAStatus) {
    const std::string whole = kWHOLE;
    CapturedAlerts alerts;
    EXPECT_EQ(read(whole), "xml:1 version='1.0' encoding='UTF-8', a:3 b='<1' c='2' [d:2 e='f', g:3 [h:2]]");
    EXPECT_EQ(alerts.take(), "");
    for (size_t n = 0; n < whole.size(); ++n) {
        const std::string dump = read(whole.substr(0, n));
        EXPECT_EQ(dump.starts_with("status"), !alerts.take().empty()) << n;
    }
}

TEST_F(XmlReader, EveryFlippedBitOfADocumentEndsWithAStatus) {
    const Bytes whole(kWHOLE, kWHOLE + sizeof kWHOLE - 1);
    CapturedAlerts alerts;
    for (size_t bit = 0; bit < 8 * whole.size(); ++bit) {
        const Bytes damaged = flip_bit(whole, bit);
        const std::string dump = read(std::string(damaged.begin(), damaged.end()));
        EXPECT_EQ(dump.starts_with("status"), !alerts.take().empty()) << bit;
    }
}

TEST_F(XmlReader, RandomMarksEndWithAStatus) {
    constexpr const char* kPIECES[] = {"<", ">", "/>", "</", "<?", "?>", "<!--", "-->", "a", "xml", "=", "\"v\"", "'w'",
        " ", "\n", "version", "/*", "*/", "//", "#", "7", "&"};
    std::mt19937 random(1);
    CapturedAlerts alerts;
    for (int round = 0; round < 2000; ++round) {
        std::string text;
        for (u64 count = random() % 30; count != 0; --count) text += kPIECES[random() % std::size(kPIECES)];
        const std::string dump = read(text);
        EXPECT_EQ(dump.starts_with("status"), !alerts.take().empty()) << text;
    }
}

TEST_F(XmlReader, EachAllocationMayFail) {
    const std::string name = file("faults.xml", kWHOLE);
    const auto sweep = sweepLifetimes([&] {
        OwnedFileSpec spec(CreateFileSpec(name.c_str()));
        if (spec == nullptr) return 7;
        LNF_XML document;
        return document.ReadXML(spec.get(), "#define x y\n", 0);
    });
    EXPECT_GT(sweep.faultCount, 30u);
    EXPECT_EQ(sweep.failures, "");
}

} // namespace
