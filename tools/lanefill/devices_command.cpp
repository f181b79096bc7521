// devices_command.cpp - lanefill devices: its words, the table for people, one device in detail.
// SPDX-License-Identifier: Apache-2.0
#include "devices_command.h"

#include "DeviceTableUtils/DeviceTableUtils.h"
#include "SystemUtils/lifetime.h"

#include <algorithm>
#include <cstdarg>
#include <iterator>
#include <string_view>

namespace memdata {
namespace {

constexpr int kNO_SUCH_DEVICE = 14;
constexpr u32 kDRAWN_ROWS = 32; // lines that a drawing aims at where the device is not cut in groups of rows

#if defined(__GNUC__)
__attribute__((format(printf, 2, 3)))
#endif
void append(std::string& text, const char* format, ...) {
    char line[256];
    std::va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    text.append(line, static_cast<size_t>(std::clamp(length, 0, static_cast<int>(sizeof line) - 1)));
}

// The memory that the rows and columns of the record count.
const MEMORYLocType& countedMemory(const TarselDeviceType* device) {
    const MEMORYLocType* counted = &device->memoryLocs[0];
    for (const MEMORYLocType& memory : device->memoryLocs)
        if (memory.type != nullptr && memory.type->subRowFactor < counted->type->subRowFactor) counted = &memory;
    return *counted;
}

// "1680 RAMB16 or RAMB18, 840 RAMB32 or RAMB36": types of one size are the same memories.
std::string memoriesText(const TarselDeviceType* device) {
    std::string text;
    u32 sizeUnits = 0;
    for (const MEMORYLocType& memory : device->memoryLocs) {
        if (memory.type == nullptr) break;
        if (memory.type->sizeUnits == sizeUnits)
            append(text, " or %s", memory.type->name);
        else
            append(text, "%s%u %s", text.empty() ? "" : ", ", count_existent_BRAM_type(device, &memory),
                memory.type->name);
        sizeUnits = memory.type->sizeUnits;
    }
    return text;
}

// "16.4" megabytes; "-" where the stream's length is not known.
std::string streamText(const TarselDeviceType* device) {
    std::string text;
    const u64 bytes = frameDataBytes(device);
    if (bytes == 0) return "-";
    append(text, bytes < 10'000'000 ? "%.2f" : "%.1f", static_cast<double>(bytes) / 1e6);
    return text;
}

std::string framesText(const TarselDeviceType* device) {
    std::string text;
    append(text, "%u", device->clbFrameBits);
    if (device->bramFrameBits != device->clbFrameBits) append(text, "/%u", device->bramFrameBits);
    return text;
}

// Rows of locations on one line of a drawing: a group of the device, else as many as keep the drawing short, whole
// pairs of them where memories come in pairs.
u32 drawnRows(const TarselDeviceType* device) {
    if (device->physicalRows > 1 && device->physicalRows != device->logicalRows) return device->physicalRows;
    const u32 unit = device->physicalRows == 1 && device->logicalRows % 2 == 0 ? 2 : 1;
    return (device->logicalRows / unit + kDRAWN_ROWS - 1) / kDRAWN_ROWS * unit;
}

std::string rowsLabel(u32 first, u32 last) {
    std::string text;
    append(text, first == last ? "Y%u" : "Y%u to %u", first, last);
    return text;
}

// # all memories of a column's rows are there, + some, . none
char drawnColumn(const TarselDeviceType* device, const MEMORYLocType& memory, u32 first, u32 last, u32 column) {
    u32 present = 0;
    i32 row = 0;
    i32 physicalColumn = 0;
    for (u32 y = first; y <= last; ++y)
        present +=
            lookup_BRAM_log_existence(device, memory.type, memory.logicalLocs, y, column, &row, &physicalColumn) == kT;
    if (present == 0) return '.';
    return present == last - first + 1 ? '#' : '+';
}

// A line per few rows, the top row first, a character per column.
std::string drawing(const TarselDeviceType* device) {
    const MEMORYLocType& memory = countedMemory(device);
    const u32 step = drawnRows(device);
    std::string text;
    for (u32 first = (device->logicalRows - 1) / step * step;; first -= step) {
        const u32 last = std::min(first + step, device->logicalRows) - 1;
        append(text, "  %-16s  ", rowsLabel(first, last).c_str());
        for (u32 column = 0; column < device->logicalColumns; ++column)
            text += drawnColumn(device, memory, first, last, column);
        text += '\n';
        if (first == 0) break;
    }
    append(text, "\n  A character for each column, X0 to X%u: # all %s are there, + some, . none.\n",
        device->logicalColumns - 1, memory.type->name);
    return text;
}

std::string namesText(const TarselDeviceType* device) {
    std::string text;
    for (const char* const* name = device->names; *name != nullptr; ++name) text += std::string(" ") + *name;
    return text.substr(1);
}

int unknownWord(std::string_view word) {
    std::fprintf(stderr, "lanefill: devices: unknown word '%.*s'; lanefill devices [--all | --json | NAME]\n",
        static_cast<int>(word.size()), word.data());
    return 1;
}

int printText(const std::string& text) {
    std::fputs(text.c_str(), stdout);
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return 0;
    std::fputs("lanefill: devices: standard output can not be written\n", stderr);
    return 1;
}

} // namespace

std::vector<const TarselDeviceType*> everyDevice() {
    std::vector<const TarselDeviceType*> devices;
    device_iterator_type* iterator = create_device_record_iterator(true, true, true);
    for (; iterator != nullptr && get_iterated_device_name(iterator) != nullptr; iterate_next_device_record(iterator)) {
        const TarselDeviceType* device = get_iterated_device_record(iterator);
        if (devices.empty() || devices.back() != device) devices.push_back(device);
    }
    delete_device_iterator(&iterator);
    return devices;
}

std::string deviceTable(std::span<const TarselDeviceType* const> devices) {
    std::string text;
    append(text, "%-9s %-14s %-45s %11s %9s\n", "device", "family", "block RAM", "frame bits", "stream MB");
    for (const TarselDeviceType* device : devices)
        append(text, "%-9s %-14s %-45s %11s %9s\n", deviceName(device), device->family->name,
            memoriesText(device).c_str(), framesText(device).c_str(), streamText(device).c_str());
    return text;
}

std::string deviceDetails(const TarselDeviceType* device) {
    std::string text;
    const MEMORYLocType& memory = countedMemory(device);
    append(text, "%s, family %s%s\n\n", deviceName(device), device->family->name,
        device->isListed ? "" : ", not in short listings");
    text += "  names             " + namesText(device) + "\n";
    text += "  block RAM         " + memoriesText(device) + "\n";
    append(text, "  locations         %u rows, %u columns of %s\n", device->logicalRows, device->logicalColumns,
        memory.type->name);
    append(text, "  configuration     %u columns of %u, %llu bytes in all", device->physicalColumns,
        device->physicalRows, static_cast<unsigned long long>(blockRamBytes(device)));
    append(text, device->dieCount == 0 ? "\n" : ", on %u dice\n", device->dieCount);
    append(text, "  frame             %s bits, %u of them padding at the head\n", framesText(device).c_str(),
        device->framePadBits);
    if (device->bramFrameOffset == 0)
        text += "  block RAM offset  none: columns in bursts of their own, or not known\n";
    else
        append(text, "  block RAM offset  %u frames\n", device->bramFrameOffset);
    text += "  stream            " + streamText(device) + (frameDataBytes(device) == 0 ? "\n\n" : " MB\n\n");
    return text + drawing(device);
}

int runDevicesCommand(std::span<char* const> words) {
    const SystemResources resources;
    if (words.size() > 1) return unknownWord(words[1]);
    const std::string_view word = words.empty() ? "" : words[0];
    if (word == "--json") {
        if (writeDevicesJson(stdout)) return 0;
        return printText("");
    }
    if (word.empty() || word == "--all") {
        std::vector<const TarselDeviceType*> devices = everyDevice();
        if (word.empty()) std::erase_if(devices, [](const TarselDeviceType* device) { return !device->isListed; });
        return printText(deviceTable(devices));
    }
    if (word.starts_with("-")) return unknownWord(word);
    const TarselDeviceType* device = get_device_record_by_name(words[0]);
    if (device == nullptr) {
        std::fprintf(stderr, "lanefill: no device is called '%s'; lanefill devices --all lists them\n", words[0]);
        return kNO_SUCH_DEVICE;
    }
    return printText(deviceDetails(device));
}

} // namespace memdata
