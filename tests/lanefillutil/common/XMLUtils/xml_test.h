// xml_test.h - what the tests of documents share.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_XML_UTILS_XML_TEST_H
#define MEMDATA_TESTS_XML_UTILS_XML_TEST_H

#include "SystemUtils/SystemUtils.h"
#include "XMLUtils/XMLUtils.h"
#include "support/alerts.h"
#include "support/allocation_faults.h"
#include "support/temporary_folder.h"

#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace memdata::testing {

// An element and all that is in it: "tag:type name='value' [child child]".
inline std::string dumpElement(const LNF_XML_Element& element) {
    std::string text = element.Get_Tag_Name() == nullptr ? "" : element.Get_Tag_Name();
    text += ":" + std::to_string(element.Get_Type());
    for (u64 i = 0; i < element.Get_Attribute_Count(); ++i)
        text += std::string(" ") + element.attributeName(i) + "='" + element.attributeValue(i) + "'";
    if (element.Get_Child_Count() == 0) return text;
    text += " [";
    for (u64 i = 0; i < element.Get_Child_Count(); ++i) text += (i == 0 ? "" : ", ") + dumpElement(*element.child(i));
    return text + "]";
}

// The elements of a document, with ", " between them.
inline std::string dumpDocument(const LNF_XML& document) {
    std::string text;
    for (u64 i = 0; i < document.Get_Child_Count(); ++i) text += (i == 0 ? "" : ", ") + dumpElement(*document.child(i));
    return text;
}

// A folder and an engine; what a test took of tracked memory it has given back at the engine's end.
class XmlTest : public ::testing::Test {
protected:
    XmlTest() { RegisterSystemToolName("Lanefill"); }
    void TearDown() override {
        resources_.reset();
        EXPECT_EQ(leakedBlockCount(), 0u);
    }

    std::optional<SystemResources> resources_{std::in_place};
    TemporaryFolder folder_;

    std::string file(const char* name, std::string_view text) { return folder_.write(name, text); }

    // What is read from a text: the dump, or "status N" with the dump of what was read ahead of it.
    std::string read(std::string_view text, const char* macroDefines = nullptr) {
        OwnedFileSpec spec(CreateFileSpec("text.xml"));
        FileSpecSetFileData(spec.get(), text.data(), text.size());
        LNF_XML document;
        const int status = document.ReadXML(spec.get(), macroDefines, 0);
        EXPECT_EQ(document.stream, nullptr);
        const std::string dump = dumpDocument(document);
        return status == 0 ? dump : "status " + std::to_string(status) + (dump.empty() ? "" : " ") + dump;
    }

    // Runs with each allocation failing once, each time in an engine lifetime of its own, at whose end nothing may be
    // left to sweep.
    FaultSweep sweepLifetimes(const std::function<int()>& run) {
        resources_.reset();
        return sweepAllocationFaults([&] {
            EnablePrintAlerts(0); // the last lifetime's end has put the mask back
            int status = InitializeSystemResources();
            EnablePrintAlerts(0);
            if (status == 0) status = run();
            FinalizeSystemResources();
            EXPECT_EQ(leakedBlockCount(), 0u);
            return status;
        });
    }

    // What a document looks like as a file.
    std::string written(LNF_XML& document) {
        const std::string name = folder_.file("written.xml");
        std::filesystem::remove(name);
        OwnedFileSpec spec(CreateFileSpec(name.c_str()));
        EXPECT_EQ(document.WriteXML(spec.get(), nullptr, 0), 0);
        return readFile(name);
    }
};

} // namespace memdata::testing

#endif
