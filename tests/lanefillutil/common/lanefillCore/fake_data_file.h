// fake_data_file.h - a data file that a test writes down: sections, a processor, a start-up address.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_LANEFILL_CORE_FAKE_DATA_FILE_H
#define MEMDATA_TESTS_LANEFILL_CORE_FAKE_DATA_FILE_H

#include "SystemUtils/alerts.h"
#include "lanefillCore/records/data_file.h"

#include <optional>
#include <string>
#include <vector>

namespace memdata::testing {

struct FakeSection {
    u64 address;
    std::vector<u8> bytes;
};

struct FakeFile {
    std::string name;
    std::vector<FakeSection> sections = {};
    std::optional<u64> startup = std::nullopt; // the boot address
    int sectionStatus = 0;                     // of reading a section; reported by the reader itself
    int processorStatus = 0;                   // what a comparison with the map's processor gives
};

class FakeDataFile : public LNF_DataFile {
public:
    explicit FakeDataFile(FakeFile file) : file_(std::move(file)) {}

    int OpenDataFile(fileSpecType*, const char*, unsigned) override { return 0; }
    const char* GetDataFileName() const override { return file_.name.c_str(); }
    const BootAddressTypeX<unsigned long>* GetDataFileStatupAddress() override {
        if (!file_.startup) return nullptr;
        boot_ = {kBOOT_FROM_FILE, *file_.startup};
        return &boot_;
    }
    int GetProgramSectionAddressRange(unsigned long* low, unsigned long* high) override {
        *low = *high = 0;
        return 0;
    }
    unsigned long GetProgramSectionCount() override { return file_.sections.size(); }
    int GetProgramSectionData(unsigned long index, DataFileSectionTypeX<unsigned long>* section) override {
        if (index >= file_.sections.size()) return 3;
        if (file_.sectionStatus != 0) return PrintError(kERROR_MESSAGE_STRING, file_.sectionStatus, "Cut section.");
        FakeSection& from = file_.sections[index];
        *section = {from.address, 0, from.bytes.data(), from.bytes.size(), from.bytes.size() * 8, 0};
        return 0;
    }
    unsigned long GetSectionCount() override { return file_.sections.size(); }
    int GetSectionData(unsigned long index, DataFileSectionTypeX<unsigned long>* section) override {
        return GetProgramSectionData(index, section);
    }
    const char* GetSectionName(unsigned long) override { return ""; }
    int IsMatchingProcessorType(unsigned long) override { return file_.processorStatus; }

private:
    FakeFile file_;
    BootAddressTypeX<unsigned long> boot_{};
};

} // namespace memdata::testing

#endif
