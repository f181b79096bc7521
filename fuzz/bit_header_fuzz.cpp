// bit_header_fuzz.cpp - the header of a bit file is read, dumped and written. What was written must read as the same
// header.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/bit_container.h"
#include "BitFileUtils/header_dump.h"
#include "DeviceTableUtils/device_lookup.h"
#include "FileUtils/FileUtils.h"
#include "support/engine_run.h"

#include <cstring>
#include <string>
#include <vector>

namespace {

using namespace memdata;
using namespace memdata::fuzz;

struct Header : BitFileHeaderType {
    Header() : BitFileHeaderType{} {}
    ~Header() { DeleteBITHeader(this); }
    Header& operator=(Header&&) = delete; // neither copied nor moved
};

int read(std::vector<char>* bytes, Header* header) {
    fileIODescriptor* file = nullptr;
    int status = OpenMemoryFile("a.bit", kBINARY_READ_WHOLE, bytes->data(), bytes->size(), &file);
    if (status == 0) status = ReadBITHeader(file, header);
    Close_File(&file);
    return status;
}

std::vector<char> written(const Header& header) {
    fileIODescriptor* file = nullptr;
    require(OpenMemoryFile("out.bit", kBINARY_FILE | kWRITE_ACCESS, nullptr, 0, &file) == 0, "no file in memory");
    require(WriteBITHeader(file, &header) == 0, "a header that was read can not be written");
    const char* base = GetFileStorageBase(file);
    std::vector<char> bytes(base, base + GetFilePosition(file));
    Close_File(&file);
    return bytes;
}

std::string_view textOf(const HeaderStringType& string) {
    return string.text == nullptr ? std::string_view() : std::string_view(string.text, string.length);
}

bool areEqual(const Header& left, const Header& right) {
    return left.dialect == right.dialect && textOf(left.preamble) == textOf(right.preamble) &&
           left.fieldCount == right.fieldCount && textOf(left.designName) == textOf(right.designName) &&
           textOf(left.partName) == textOf(right.partName) && textOf(left.date) == textOf(right.date) &&
           textOf(left.time) == textOf(right.time) && left.dataTag == right.dataTag &&
           left.dataLength == right.dataLength && textOf(left.fenwickUser) == textOf(right.fenwickUser) &&
           textOf(left.dateTime) == textOf(right.dateTime) &&
           std::memcmp(left.fenwickStamp, right.fenwickStamp, kFENWICK_STAMP_BYTES) == 0;
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const EngineRun run;
    std::vector<char> bytes(data, data + size); // a file in memory is not read-only
    Header first;
    if (read(&bytes, &first) != 0 || first.partName.text == nullptr) return 0; // the latter is of another dialect
    DumpBITHeader(&StandardOut, "a.bit", &first);
    TarselDeviceType* device = nullptr;
    deviceOfHeader(&first, "a.bit", &device);
    std::vector<char> again = written(first);
    again.resize(again.size() + first.dataLength);
    Header second;
    require(read(&again, &second) == 0, "a written header is refused");
    require(areEqual(first, second), "a written header is another one");
    return 0;
}
