// elf_test.h - what the tests of ELF files share: a file in a folder, opened and worded.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_ELF_TEST_H
#define MEMDATA_TESTS_ELF_TEST_H

#include "FileUtils/opening.h"
#include "LNF_ELFDataFile/LNF_ELFDataFile.h"
#include "SystemUtils/lifetime.h"
#include "support/alerts.h"
#include "support/bit_builder.h"
#include "support/elf_builder.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <memory>

namespace memdata::testing {

class ElfTest : public ::testing::Test {
protected:
    ~ElfTest() override { DeleteFileSpec(&spec_); }

    // Opens contents as a.elf in the folder, or as another name.
    int open(std::string_view contents, const char* name = "a.elf") { return openFile(folder.write(name, contents)); }
    int open(const Bytes& contents) { return open(textOf(contents)); }
    int open(const ElfFile& file) { return open(elfFile(file)); }
    int openFile(const std::string& name) {
        elf = std::make_unique<LNF_ELFDataFile>();
        DeleteFileSpec(&spec_);
        spec_ = CreateFileSpec(name.c_str());
        return elf->OpenDataFile(spec_, nullptr, 1);
    }
    // "0x1000: aa bb | 0x2000:", a section each.
    std::string programSections() {
        std::string text;
        for (unsigned long i = 0; i < elf->GetProgramSectionCount(); ++i) {
            DataFileSectionTypeX<unsigned long> section{};
            if (elf->GetProgramSectionData(i, &section) != 0) return "no section " + std::to_string(i);
            if (section.bitCount != 8 * section.size) return "odd bit count in section " + std::to_string(i);
            const std::string bytes = hexText(section.data, section.size);
            text += (i == 0 ? "" : " | ") + formatted("0x%llX:", section.address) + (bytes.empty() ? "" : " ") + bytes;
        }
        return text;
    }
    // Alerts with the folder's name taken out and their lines joined.
    std::string said() {
        std::string text = alerts.take();
        const std::string place = folder.path().string() + "/";
        for (size_t at; (at = text.find(place)) != text.npos;) text.erase(at, place.size());
        for (size_t at; (at = text.find("\n    ")) != text.npos;) text.replace(at, 5, " ");
        while (!text.empty() && text.front() == '\n') text.erase(0, 1);
        while (!text.empty() && text.back() == '\n') text.pop_back();
        return text;
    }
    static std::string refusal(const std::string& reason, const std::string& name = "a.elf") {
        return "ERROR:Lanefill:86 - Data file '" + name + "' cannot be read as an ELF file: " + reason + ".";
    }

    SystemResources system;
    TemporaryFolder folder;
    CapturedAlerts alerts;
    std::unique_ptr<LNF_ELFDataFile> elf;

private:
    fileSpecType* spec_ = nullptr;
};

} // namespace memdata::testing

#endif
