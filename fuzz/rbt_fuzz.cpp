// rbt_fuzz.cpp - a bit file as text is read, and completed so that its header can be written.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/bit_container.h"
#include "BitFileUtils/header_dump.h"
#include "BitFileUtils/rbt_container.h"
#include "FileUtils/FileUtils.h"
#include "support/engine_run.h"

namespace {

using namespace memdata;

void useHeader(BitFileHeaderType* header) {
    DumpBITHeader(&StandardOut, "a.rbt", header);
    if (completeRBTHeader(header) != 0) return;
    fileIODescriptor* file = nullptr;
    if (OpenMemoryFile("out.bit", kBINARY_FILE | kWRITE_ACCESS, nullptr, 0, &file) == 0) WriteBITHeader(file, header);
    Close_File(&file);
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const fuzz::EngineRun run;
    const std::string_view text = fuzz::textOf(data, size);
    const OwnedFileSpec spec(CreateFileSpecWithFileData("a.rbt", text.data(), text.size()));
    u32 dataLength = 0;
    TarselDeviceType* device = nullptr;
    BitFileHeaderType header{};
    fileIODescriptor* file = nullptr;
    if (OpenRBTFile(spec.get(), &dataLength, &device, &header, &file) == 0) {
        fuzz::require(header.dataLength == dataLength && GetFileLogicalSize(file) == dataLength,
            "the words of a text are not counted alike");
        useHeader(&header);
    }
    Close_File(&file);
    DeleteBITHeader(&header);
    return 0;
}
