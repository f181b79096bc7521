// bit_commands.cpp - dump and replacement of bit files, around the stream walker.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/bit_commands.h"

#include "BitFileUtils/bit_container.h"
#include "BitFileUtils/header_dump.h"
#include "BitFileUtils/rbt_container.h"
#include "BitFileUtils/stream_walker.h"
#include "BmmUtils/model/iteration.h"
#include "DeviceTableUtils/device_lookup.h"
#include "FileUtils/FileUtils.h"
#include "FileUtils/copied_output.h"
#include "ListingUtils/ListingUtils.h"
#include "SystemUtils/alerts.h"
#include "SystemUtils/lifetime.h"
#include "lanefillCore/records/progress_stages.h"
#include "platform/run_inputs.h"

#include <algorithm>
#include <array>
#include <optional>

namespace {

using namespace memdata;
using OpenFile = Tracked<fileIODescriptor, abandonFile>;

constexpr u32 kDUMP_FILE = 0x8000022;
constexpr u32 kREPLACED_FILE = 0x4000023 | kREFUSE_OVERWRITE;
constexpr u32 kRBT_FORMAT = 15;
constexpr u32 kDUMP_STREAM_ONLY = 0x20;
constexpr int kOTHER_DEVICE_STATUS = 4;
constexpr u64 kCOPY_BLOCK_BYTES = 64 * 1024;
constexpr u64 kNAMED_LANES = 10; // in a warning, the others are counted

// The header of the one call; a caller's own record when it wants to see it.
class HeaderOwner {
public:
    explicit HeaderOwner(BitFileHeaderType* given) : at_(given != nullptr ? given : &own_) {}
    ~HeaderOwner() { DeleteBITHeader(at_); }
    HeaderOwner& operator=(HeaderOwner&&) = delete; // neither copied nor moved
    BitFileHeaderType* get() const { return at_; }

private:
    BitFileHeaderType own_{};
    BitFileHeaderType* at_;
};

// A mapping without a device takes that of the file.
int matchDevice(AddressMappingType* addressMapping, TarselDeviceType* device, const char* fileName) {
    if (addressMapping == nullptr) return 0;
    if (addressMapping->device == nullptr) addressMapping->device = device;
    if (addressMapping->device == device) return 0;
    return PrintError(kERROR_MESSAGE_STRING, kOTHER_DEVICE_STATUS,
        formatted("Bit file '%s' is for device '%s', but the address map was read for device '%s'. Please name the bit "
                  "file's device, or none.",
            fileName, deviceName(device), deviceName(addressMapping->device)));
}

// A bit file at the first byte of its stream.
struct BitInput {
    OpenFile file;
    u32 dataLength = 0;
    TarselDeviceType* device = nullptr;
};

int openInput(fileSpecType* spec, AddressMappingType* addressMapping, BitFileHeaderType* header, BitInput* input) {
    if (int status = OpenBITFile(spec, 0, &input->dataLength, &input->device, header, input->file.out()); status != 0)
        return status;
    return matchDevice(addressMapping, input->device, GetFileName(input->file.get()));
}

void unmarkLanes(AddressMappingType* addressMapping) {
    if (addressMapping != nullptr)
        visitLanes(addressMapping, [](const AddressSpaceDefType&, const BusBlockType&,
                                       const BitLaneGridElemType& element) { element.lane->isReplaced = false; });
}

// Data that reached no memory of the stream is named: it is lost in the new file.
void warnOfUnplacedLanes(AddressMappingType* addressMapping, const char* fileName) {
    std::string names;
    u64 count = 0;
    visitLanes(
        addressMapping, [&](const AddressSpaceDefType&, const BusBlockType&, const BitLaneGridElemType& element) {
            const BitLaneType& lane = *element.lane;
            if (lane.laneState == 0 || lane.isReplaced || lane.locKind == kLOC_KIND_NONE) return;
            if (++count <= kNAMED_LANES) names += std::string("\n    ") + lane.name;
        });
    if (count == 0) return;
    if (count > kNAMED_LANES) names += "\n    ...";
    PrintWarning(kERROR_MESSAGE_STRING, 0,
        formatted("The data of %lld bit lanes found no memory in the stream of file '%s':%s", count, fileName, names));
}

int replaceStream(fileIODescriptor* input, fileIODescriptor* output, TarselDeviceType* device, u32 flags, u32 byteCount,
    AddressMappingType* addressMapping) {
    unmarkLanes(addressMapping);
    const int status = OutputBITData(input, output, nullptr, device, flags, &byteCount, addressMapping);
    if (status == 0 && addressMapping != nullptr) warnOfUnplacedLanes(addressMapping, GetFileName(input));
    return status;
}

// For hosts that show how far a run is. Its own callback stays as silent as it is.
std::string stageText(const char* verb, const fileIODescriptor* file) {
    return formatted("%s '%s'...", verb, GetFileName(file));
}

// What follows the stream in the file.
int copyRest(fileIODescriptor* input, fileIODescriptor* output) {
    std::array<char, kCOPY_BLOCK_BYTES> block;
    for (;;) {
        const u64 before = GetFilePosition(input);
        const int status = inputBlock(input, block.data(), block.size());
        const u64 count = GetFilePosition(input) - before;
        if (int written = outputBlock(output, block.data(), count); written != 0) return written;
        if (status == kEND_OF_CONTENTS) return 0;
        if (status != 0) return status;
    }
}

// What a file that another program changed meanwhile gave is no result, and explains a failure.
int checkInput(const BitInput& input, int status) {
    const int changed = checkInputUnchanged(input.file.get());
    return status != 0 ? status : changed;
}

// The output takes its name only when all of it is written.
int finish(OpenFile& output) {
    fileIODescriptor* file = output.release();
    const int status = Close_File(&file);
    if (file != nullptr) abandonFile(&file);
    return status;
}

} // namespace

int DoBITDump(fileSpecType* inputSpec, fileSpecType* outputSpec, u32 flags, AddressMappingType* addressMapping,
    BitFileHeaderType* header) {
    const HeaderOwner owner(header);
    BitInput input;
    if (int status = openInput(inputSpec, addressMapping, owner.get(), &input); status != 0) return status;

    OpenFile output;
    fileIODescriptor* dump = &StandardOut;
    if (outputSpec != nullptr) {
        if (int status =
                OpenDiskFile(outputSpec, nullptr, "dmp", nullptr, kDUMP_FILE | kREFUSE_OVERWRITE, output.out());
            status != 0)
            return status;
        dump = output.get();
    }
    int status = 0;
    if ((flags & kDUMP_STREAM_ONLY) == 0) {
        status = OutputVersionHeader(dump, nullptr, "\n\n%s BIT file dump.\n", GetSystemToolName());
        if (status == 0) status = DumpBITHeader(dump, GetFileName(input.file.get()), owner.get());
    }
    SetupUpdateProgress(0, nullptr);
    std::optional<ProgressStage> stage;
    if (!isTerminal(dump)) stage.emplace(stageText("Dumping", input.file.get()), GetFileLogicalSize(input.file.get()));
    if (status == 0)
        status = OutputBITData(input.file.get(), nullptr, dump, input.device, flags, &input.dataLength, addressMapping);
    status = checkInput(input, status);
    if (status != 0) return status;
    if (stage) stage->finish();
    return outputSpec != nullptr ? finish(output) : Flush_File(&StandardOut);
}

int DoBITReplacement(fileSpecType* inputSpec, fileSpecType* outputSpec, u32 flags, AddressMappingType* addressMapping,
    BitFileHeaderType* header, ProgressCallbackType progress) {
    const RunInputs inputs; // the output must not be the bit file itself
    const HeaderOwner owner(header);
    BitInput input;
    if (int status = openInput(inputSpec, addressMapping, owner.get(), &input); status != 0) return status;
    if (inputSpec->format == kRBT_FORMAT)
        if (int status = completeRBTHeader(owner.get()); status != 0) return status;

    OpenFile output;
    if (int status = OpenDiskFile(outputSpec != nullptr ? outputSpec : inputSpec, nullptr, "bit",
            outputSpec != nullptr ? nullptr : "_rp", kREPLACED_FILE, output.out());
        status != 0)
        return status;
    beginAsCopy(output.get(), input.file.get());
    SetupUpdateProgress(static_cast<u32>(2 * GetFileLogicalSize(input.file.get())), progress);
    ProgressStage stage(stageText("Writing", output.get()), 2 * GetFileLogicalSize(input.file.get()));
    int status = WriteBITHeader(output.get(), owner.get());
    if (status == 0)
        status = replaceStream(input.file.get(), output.get(), input.device, flags, input.dataLength, addressMapping);
    if (status == 0) status = copyRest(input.file.get(), output.get());
    status = checkInput(input, status);
    if (status != 0) return status;
    stage.finish();
    return finish(output);
}

int DoInplaceBITReplacement(TarselDeviceType* device, u8* image, u64 imageSize, AddressMappingType* addressMapping,
    ProgressCallbackType progress) {
    if (device == nullptr || image == nullptr)
        return PrintError(
            kERROR_MESSAGE_STRING, 3, "A stream cannot be changed in place without its device and bytes.");
    if (imageSize > ~u32{0})
        return PrintError(kERROR_MESSAGE_STRING, 3, "A stream of 4 GiB or more cannot be changed in place.");
    if (int status = matchDevice(addressMapping, device, "input_bit_image"); status != 0) return status;
    OpenFile input;
    OpenFile output;
    char* bytes = reinterpret_cast<char*>(image);
    if (int status = OpenMemoryFile("input_bit_image", kREAD_ACCESS | kBINARY_FILE, bytes, imageSize, input.out());
        status != 0)
        return status;
    if (int status = OpenMemoryFile("output_bit_image", kWRITE_ACCESS | kBINARY_FILE, bytes, imageSize, output.out());
        status != 0)
        return status;
    SetupUpdateProgress(static_cast<u32>(2 * GetFileLogicalSize(input.get())), progress);
    int status = replaceStream(input.get(), output.get(), device, 0, static_cast<u32>(imageSize), addressMapping);
    const int closed = finish(output);
    return status != 0 ? status : closed;
}

int memdata::checkBitFile(fileSpecType* inputSpec, AddressMappingType* addressMapping, StreamCheck* check) {
    const HeaderOwner owner(nullptr);
    BitInput input;
    if (int status = openInput(inputSpec, addressMapping, owner.get(), &input); status != 0) return status;
    OpenFile output;
    if (int status = Open_File("/dev/null", kWRITE_ACCESS | kBINARY_FILE, output.out()); status != 0) return status;
    SetupUpdateProgress(0, nullptr);
    unmarkLanes(addressMapping);
    ProgressStage stage(stageText("Checking", input.file.get()), 2 * GetFileLogicalSize(input.file.get()));
    const int status = checkInput(
        input, checkStream(input.file.get(), output.get(), input.device, &input.dataLength, addressMapping, check));
    if (status == 0) stage.finish();
    return status;
}
