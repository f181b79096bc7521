// column_window.cpp - the block-RAM columns of a burst on their way through a copy.
// SPDX-License-Identifier: Apache-2.0
//
// Only a few columns are held at a time: they pass through a window that stays in the processor's cache. It is filled,
// the columns that it holds whole are changed, and what lies ahead of the next column leaves it.
#include "BitFileUtils/column_window.h"

#include "BRAMDecodeUtils/column_walk.h"
#include "DeviceTableUtils/locations.h"
#include "SystemUtils/alerts.h"

#include <algorithm>
#include <cstring>

namespace {

using namespace memdata;

constexpr u64 kWINDOW_BYTES = 256 * 1024;
constexpr u64 kCOLUMN_PAD_BYTES = 4096; // more than the pads between columns ever take

class ColumnWindow {
public:
    ColumnWindow(StreamWalk& walk, u32 commandWord, u64 byteCount, const BramColumns& columns)
        : walk_(walk), commandWord_(commandWord), wordBytes_(walk.family().configWordBytes),
          reach_(columns.columnBytes + kCOLUMN_PAD_BYTES), unread_(byteCount),
          room_(std::min(byteCount, std::max(kWINDOW_BYTES, reach_ + wordBytes_))), at_(columns.start % wordBytes_) {}

    // Status 7 without memory.
    int open();
    // Brings the column that begins at column() into the window, with all bytes that it may take or all that are left.
    int bringColumn();
    // Changes or compares it and moves on to the next one.
    int passColumn(i32 physicalColumn);
    bool isAtEnd() const { return at_ >= held_; }
    // Copies what is left of the burst.
    int close();

private:
    int fill_();
    int empty_(u64 byteCount);

    StreamWalk& walk_;
    u32 commandWord_;
    u64 wordBytes_;
    u64 reach_;  // bytes from the start of a column that it and the pads behind it may take
    u64 unread_; // bytes of the burst
    u64 room_;   // bytes of the window
    Tracked<u8, releaseBurst> bytes_;
    u64 held_ = 0; // bytes in the window
    u64 at_;       // where the next column begins in it
};

int ColumnWindow::open() {
    bytes_.reset(static_cast<u8*>(getMemory("'std::uint8_t' data", std::max<u64>(room_, 1))));
    if (bytes_ == nullptr) return PrintFatalError(kFATAL_OUT_OF_MEMORY, 7, "BRAM data buffer", room_, room_);
    return fill_();
}

int ColumnWindow::fill_() {
    const u64 count = std::min(unread_, room_ - held_);
    const int status = readBytes(walk_, bytes_.get() + held_, count);
    unread_ -= count;
    held_ += count;
    return status;
}

// The words that leave are as they will be: the CRC is that of the new frames.
int ColumnWindow::empty_(u64 byteCount) {
    if (int status = writeWords(walk_, commandWord_, bytes_.get(), byteCount); status != 0) return status;
    held_ -= byteCount;
    at_ -= std::min(at_, byteCount);
    std::memmove(bytes_.get(), bytes_.get() + byteCount, held_);
    return 0;
}

int ColumnWindow::bringColumn() {
    while (unread_ > 0 && held_ < at_ + reach_) {
        if (int status = empty_(std::min(at_, held_) / wordBytes_ * wordBytes_); status != 0) return status;
        if (int status = fill_(); status != 0) return status;
    }
    return 0;
}

int ColumnWindow::passColumn(i32 physicalColumn) {
    u8* const column = bytes_.get() + at_;
    u8* const next = walk_.check != nullptr
                         ? compareBRAMColumn(walk_.device, column, held_ - at_, physicalColumn, walk_.addressMapping,
                               &walk_.check->memories)
                         : ReplaceBRAMColumn(walk_.device, column, held_ - at_, physicalColumn, walk_.addressMapping);
    if (next == nullptr) return 7;
    at_ += static_cast<u64>(next - column);
    return 0;
}

int ColumnWindow::close() {
    const int status = empty_(held_);
    return status != 0 ? status : copyWords(walk_, commandWord_, unread_ / wordBytes_);
}

} // namespace

int memdata::copyColumns(StreamWalk& walk, u32 commandWord, u64 wordCount, const BramColumns& columns) {
    const u64 wordBytes = walk.family().configWordBytes;
    const u64 ahead = columns.start / wordBytes;
    if (int status = copyWords(walk, commandWord, ahead); status != 0) return status;
    ColumnWindow window(walk, commandWord, (wordCount - ahead) * wordBytes, columns);
    int status = window.open();
    for (u32 i = 0; i < columns.count && status == 0; ++i) {
        i32 physicalColumn = 0;
        if (!translate_logical_column_number(walk.device, static_cast<i32>(columns.first + i), &physicalColumn))
            continue;
        status = window.bringColumn();
        if (status != 0 || window.isAtEnd()) break;
        status = window.passColumn(physicalColumn);
    }
    return status == 0 ? window.close() : status;
}
