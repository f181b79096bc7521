// burst_dump.cpp - a burst of frame data as text.
// SPDX-License-Identifier: Apache-2.0
#include "BRAMDecodeUtils/column_walk.h"
#include "BitFileUtils/frame_bursts.h"
#include "BitFileUtils/stream_crc.h"
#include "DeviceTableUtils/families.h"
#include "DeviceTableUtils/locations.h"
#include "ListingUtils/ListingUtils.h"
#include "SystemUtils/alerts.h"

#include <algorithm>
#include <span>

namespace {

using namespace memdata;

constexpr u32 kHEX_BYTES_PER_LINE = 32;
constexpr u64 kTARSEL_6_FAMILIES = 0x0700;
constexpr u64 kDUNMARE_6_FAMILY = 0x8000;

// What the frames of memories that no design uses look like.
constexpr u8 TARSEL6_BRAM_DATA_SIGNATURE[] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00,
    0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0xFF,
    0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
constexpr u8 DUNMARE6_BRAM_DATA_SIGNATURE[] = {0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x3F, 0xFF, 0xCF, 0xFF, 0xF3, 0xFF, 0xFC, 0xFF, 0xFF, 0x3F, 0xFF, 0xCF, 0xFF,
    0xF3, 0xFF, 0xFC, 0xFF, 0xFF, 0x3F, 0xFF, 0xCF, 0xFF, 0xF3, 0xFF, 0xFC, 0xFF, 0xFF, 0x3F, 0xFF, 0xCF, 0xFF, 0xF3,
    0xFF, 0xFC, 0xFF, 0xFF};

std::span<const u8> signatureOf(const TarselDeviceType* device) {
    if ((device->family->familyMask & kTARSEL_6_FAMILIES) != 0) return TARSEL6_BRAM_DATA_SIGNATURE;
    if ((device->family->familyMask & kDUNMARE_6_FAMILY) != 0) return DUNMARE6_BRAM_DATA_SIGNATURE;
    return {};
}

// One dump of one burst.
class BurstDump {
public:
    BurstDump(StreamWalk& walk, Burst& burst) : walk_(walk), data_(burst.data.get()), size_(burst.bytes(walk)) {}

    int print(const char* registerName);

private:
    // How the burst is told: parts ahead of and behind the columns are CLB data.
    struct Layout {
        BramColumns columns;
        bool asFrames = false;
        bool silent = false; // a first-generation column without block RAM
    };

    bool raw_() const { return (walk_.flags & kWALK_RAW) != 0; }
    Layout layout_() const;
    Layout columnsAt_(u32 frameOffset) const;
    int printClb_(u64 start, u64 bytes, u32 bytesPerLine) const;
    int printFrames_(const Layout& layout, u64* end) const;
    int printMemories_(const BramColumns& columns, u64* end);
    u64 words_(u64 bytes) const { return bytes / walk_.family().configWordBytes; }
    u32 clbBytesPerLine_() const {
        return walk_.device->bramFrameOffset != 0 && !raw_() ? kHEX_BYTES_PER_LINE
                                                             : std::max(walk_.device->clbFrameBits / 8, 1U);
    }

    StreamWalk& walk_;
    u8* data_;
    u64 size_;
};

// Columns with the pad bits that follow each, behind the CLB frames of an offset; as frames, or as memories when the
// offset was searched for.
BurstDump::Layout BurstDump::columnsAt_(u32 frameOffset) const {
    const TarselDeviceType* device = walk_.device;
    Layout layout;
    layout.asFrames = raw_();
    layout.columns.columnBytes =
        u64{device->bramFrameBits / 8} * device->memoryLocs[0].type->frameCount + device->framePadBits / 8;
    layout.columns.start = u64{frameOffset} * (device->clbFrameBits / 8);
    columnsOfDie(walk_, &layout.columns);
    const u64 all = layout.columns.columnBytes * layout.columns.count;
    if (all > size_ || layout.columns.start > size_ - all) layout.columns.count = 0;
    return layout;
}

BurstDump::Layout BurstDump::layout_() const {
    const TarselDeviceType* device = walk_.device;
    const bool isBram = gLast_frame_address_type == walk_.family().bramBlockType;
    const bool isClb = gLast_frame_address_type == walk_.family().clbBlockType;
    const bool firstGeneration = (walk_.family().familyMask & kFIRST_GENERATION_MASK) != 0;
    Layout layout;
    if (firstGeneration) {
        i32 physicalColumn = 0;
        layout.asFrames = isBram && raw_();
        layout.silent = isBram && !translate_logical_column_number(
                                      device, static_cast<i32>(gLast_frame_address_column), &physicalColumn);
    } else if (walk_.fdriWrites < 2) {
        u32 offset = device->bramFrameOffset;
        if (offset == 0 && (walk_.flags & kWALK_FIND_BRAM) != 0) {
            offset = GetBRAMDataFrameOffset(device, data_, size_);
            return offset == 0 ? layout : columnsAt_(offset);
        }
        if (offset == 0) return layout;
        if (raw_()) return columnsAt_(offset);
        if (!isClb) return layout;
    } else if (raw_()) {
        return layout;
    }
    bramColumns(walk_, size_, &layout.columns);
    return layout;
}

int BurstDump::printClb_(u64 start, u64 bytes, u32 bytesPerLine) const {
    if (bytes == 0) return 0;
    if (int status = PutNextLine(walk_.dump, "\nWrite of %ld words of CLB data.\n\n", words_(bytes)); status != 0)
        return status;
    if ((walk_.flags & kWALK_NO_CLB_HEX) != 0) return 0;
    return DumpHex(
        walk_.dump, static_cast<int>(walk_.flags), 0, data_ + start, static_cast<unsigned>(bytes), bytesPerLine);
}

int BurstDump::printFrames_(const Layout& layout, u64* end) const {
    const TarselDeviceType* device = walk_.device;
    const BramColumns& columns = layout.columns;
    int status = PutNextLine(walk_.dump, "\nWrite of %ld words of BRAM data starting at frame offset %ld.\n",
        words_(columns.columnBytes * columns.count), columns.start / std::max(device->clbFrameBits / 8, 1U));
    *end = columns.start;
    for (u32 i = 0; i < columns.count && status == 0; ++i, *end += columns.columnBytes) {
        status = PutNextLine(walk_.dump, "\nData for BRAM column %ld.\n\n", columns.first + i);
        if (status == 0)
            status = DumpHex(walk_.dump, static_cast<int>(walk_.flags), 0, data_ + *end,
                static_cast<unsigned>(columns.columnBytes), std::max(device->bramFrameBits / 8, 1U));
    }
    return status;
}

int BurstDump::printMemories_(const BramColumns& columns, u64* end) {
    u8* const limit = data_ + size_;
    u8* at = data_ + columns.start;
    int status = 0;
    for (u32 i = 0; i < columns.count && at < limit && status == 0; ++i) {
        i32 physicalColumn = 0;
        if (!translate_logical_column_number(walk_.device, static_cast<i32>(columns.first + i), &physicalColumn))
            continue;
        status = PutNextLine(walk_.dump, "\nWrite of %ld words of BRAM data.\n\n", words_(columns.columnBytes));
        if (status == 0)
            at = DumpBRAMColumn(walk_.device, walk_.dump, at, static_cast<u64>(limit - at), physicalColumn, walk_.flags,
                walk_.addressMapping, &status);
    }
    *end = static_cast<u64>(std::min(at, limit) - data_);
    return status;
}

int BurstDump::print(const char* registerName) {
    const Layout layout = layout_();
    if (layout.silent) return 0;
    int status = PutNextLine(walk_.dump, "Write of %s register with %ld words of data.\n", registerName, words_(size_));
    if (status != 0) return status;
    if (layout.columns.count == 0 || (walk_.addressMapping == nullptr && !layout.asFrames)) {
        status = printClb_(0, size_, clbBytesPerLine_());
    } else {
        u64 end = 0;
        status = printClb_(0, layout.columns.start, clbBytesPerLine_());
        if (status == 0) status = layout.asFrames ? printFrames_(layout, &end) : printMemories_(layout.columns, &end);
        if (status == 0) status = printClb_(end, size_ - end, kHEX_BYTES_PER_LINE);
    }
    return status != 0 ? status : PutNextLine(walk_.dump, "\n");
}

} // namespace

const u8* FindBRAMDataSignature(const u8* buffer, u64 size, const u8* signature, u64 signatureSize) {
    const u8* const end = buffer + size;
    const u8* const found = std::search(buffer, end, signature, signature + signatureSize);
    return found == end ? nullptr : found;
}

u32 GetBRAMDataFrameOffset(const TarselDeviceType* device, const u8* data, u64 size) {
    const std::span<const u8> signature = signatureOf(device);
    if (signature.empty()) {
        PrintWarning(kERROR_MESSAGE_STRING, 0,
            formatted(
                "Block-RAM data cannot be searched for in streams of family '%s': its start has no known pattern.",
                device->family->name));
        return 0;
    }
    const u8* found = FindBRAMDataSignature(data, size, signature.data(), signature.size());
    if (found == nullptr) return 0;
    return static_cast<u32>(static_cast<u64>(found - data) / std::max(device->clbFrameBits / 8, 1U));
}

int memdata::dumpHexLines(StreamWalk& walk, const u8* data, u64 byteCount) {
    return DumpHex(
        walk.dump, static_cast<int>(walk.flags), 0, data, static_cast<unsigned>(byteCount), kHEX_BYTES_PER_LINE);
}

int DumpFDRIData(StreamWalk& walk, u32 commandWord, Burst& burst) {
    CRC_Data(walk.device, commandWord, burst.data.get(), burst.wordCount);
    return BurstDump(walk, burst).print(walk.registerName(commandWord));
}
