// bit_file_test.h - what the tests of bit files share: files in a folder, opened and worded.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_BIT_FILE_TEST_H
#define MEMDATA_TESTS_BIT_FILE_TEST_H

#include "BitFileUtils/BitFileUtils.h"
#include "DeviceTableUtils/device_lookup.h"
#include "SystemUtils/lifetime.h"
#include "support/alerts.h"
#include "support/bit_builder.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace memdata::testing {

inline Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

// One bit file of a test: written, opened, and let go.
class BitFile {
public:
    BitFile() = default;
    ~BitFile() { close(); }
    BitFile& operator=(BitFile&&) = delete; // neither copied nor moved

    int open(const std::string& name, u32 flags = 0) {
        close();
        fileSpecType* spec = CreateFileSpec(name.c_str());
        status = OpenBITFile(spec, flags, &dataLength, &device, &header, &file);
        DeleteFileSpec(&spec);
        return status;
    }
    void close() {
        Close_File(&file);
        DeleteBITHeader(&header);
    }
    // The header in one line each string, "-" for none.
    std::string words() const {
        std::string text;
        for (const HeaderStringType* s :
            {&header.designName, &header.partName, &header.date, &header.time, &header.dateTime, &header.fenwickUser})
            text += (s->text == nullptr ? "-" : s->text) + std::string("|");
        return text + std::to_string(header.dataLength);
    }

    int status = 0;
    u32 dataLength = 99;
    TarselDeviceType* device = nullptr;
    BitFileHeaderType header{};
    fileIODescriptor* file = nullptr;
};

class BitFileTest : public ::testing::Test {
protected:
    // Opens contents as a.bit, or as another name.
    int open(std::string_view contents, u32 flags = 0, const char* name = "a.bit") {
        return bit.open(folder.write(name, contents), flags);
    }
    int open(const Bytes& contents, u32 flags = 0) { return open(textOf(contents), flags); }
    // Alerts with the folder's name taken out.
    std::string said() {
        std::string text = alerts.take();
        const std::string path = folder.path().string() + "/";
        for (size_t at = text.find(path); at != std::string::npos; at = text.find(path)) text.erase(at, path.size());
        // Long names wrap the line.
        for (char& c : text) c = c == '\n' ? ' ' : c;
        std::string joined;
        for (char c : text)
            if (c != ' ' || (!joined.empty() && joined.back() != ' ')) joined += c;
        while (!joined.empty() && joined.back() == ' ') joined.pop_back();
        return joined;
    }

    SystemResources system;
    TemporaryFolder folder;
    CapturedAlerts alerts;
    BitFile bit;
};

inline constexpr const char* kCORRUPTED_A =
    "ERROR:Lanefill:124 - Invalid or corrupted bit stream file header in file 'a.bit'. Please recheck the creation "
    "process for this bit stream file.";

} // namespace memdata::testing

#endif
