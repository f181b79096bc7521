// devices_command.cpp - lanefill devices: its words, the table for people, one device in detail.
// SPDX-License-Identifier: Apache-2.0
#include "devices_command.h"

#include "DeviceTableUtils/DeviceTableUtils.h"
#include "DeviceTableUtils/device_rows.h"
#include "SystemUtils/lifetime.h"
#include "console.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <new>
#include <string_view>

namespace memdata {
namespace {

constexpr int kNO_SUCH_DEVICE = 14;
constexpr u32 kDRAWN_ROWS = 32; // lines that a drawing aims at where the device is not cut in groups of rows

constexpr char kTABLE_LEGEND[] = "\n"
                                 "frame bits: behind a slash those of block RAM. stream: all frames, - not known.\n"
                                 "lanefill devices NAME shows one device, lanefill devices --all unlisted ones too.\n";

std::string number(u64 value) {
    return std::to_string(value);
}

// Padded with blanks to a width, on the right or on the left.
std::string left(std::string text, size_t width) {
    text.resize(std::max(width, text.size()), ' ');
    return text;
}

std::string right(const std::string& text, size_t width) {
    return std::string(width - std::min(width, text.size()), ' ') + text;
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
            text += " or ";
        else
            text += (text.empty() ? "" : ", ") + number(count_existent_BRAM_type(device, &memory)) + " ";
        text += memory.type->name;
        sizeUnits = memory.type->sizeUnits;
    }
    return text;
}

// "16.4" megabytes; "-" where the stream's length is not known.
std::string streamText(const TarselDeviceType* device) {
    const u64 bytes = frameDataBytes(device);
    if (bytes == 0) return "-";
    char digits[32];
    const auto [end, status] = std::to_chars(std::begin(digits), std::end(digits), static_cast<double>(bytes) / 1e6,
        std::chars_format::fixed, bytes < 10'000'000 ? 2 : 1);
    return {std::begin(digits), end};
}

std::string framesText(const TarselDeviceType* device) {
    if (device->bramFrameBits == device->clbFrameBits) return number(device->clbFrameBits);
    return number(device->clbFrameBits) + "/" + number(device->bramFrameBits);
}

std::string frameLengthText(const TarselDeviceType* device) {
    if (device->bramFrameBits == device->clbFrameBits) return number(device->clbFrameBits) + " bits";
    return number(device->clbFrameBits) + " bits, " + number(device->bramFrameBits) + " in block RAM";
}

std::string offsetText(const TarselDeviceType* device) {
    if (device->bramFrameOffset != 0) return number(device->bramFrameOffset) + " frames";
    if ((device->family->familyMask & kFIRST_GENERATION_MASK) != 0) return "none: each column is a burst of its own";
    return "not known: block RAM in bit files can not be replaced";
}

// A record for a whole line of devices, with borrowed figures.
bool isGeneric(const TarselDeviceType* device) {
    for (size_t index = 0; index < kGENERIC_ROWS.size(); ++index)
        if (device == &kTarselDeviceTable[index]) return true;
    return false;
}

// Rows of locations on one line of a drawing: a group of the device, else as many as keep the drawing short, whole
// pairs of them where memories come in pairs.
u32 drawnRows(const TarselDeviceType* device) {
    if (device->physicalRows > 1 && device->physicalRows != device->logicalRows) return device->physicalRows;
    const u32 unit = device->physicalRows == 1 && device->logicalRows % 2 == 0 ? 2 : 1;
    return (device->logicalRows / unit + kDRAWN_ROWS - 1) / kDRAWN_ROWS * unit;
}

std::string rowsLabel(u32 first, u32 last) {
    return "Y" + number(first) + (first == last ? "" : " to " + number(last));
}

// Which locations hold a memory: column after column of logicalRows rows. Asked from the physical side, which knows the
// holes of devices without logical arrays too.
std::vector<bool> presentLocations(const TarselDeviceType* device, const MEMORYLocType& memory) {
    std::vector<bool> present(size_t{device->logicalRows} * device->logicalColumns);
    i32 row = 0;
    i32 column = 0;
    for (u32 x = 0; x < device->physicalColumns; ++x)
        for (u32 y = 0; y < device->physicalRows; ++y)
            if (lookup_BRAM_phys_existence(device, &memory, y, x, &row, &column) == kT)
                present.at(static_cast<size_t>(column) * device->logicalRows + static_cast<size_t>(row)) = true;
    return present;
}

// # all memories of a column's rows are there, + some, . none
char drawnColumn(std::vector<bool>::const_iterator first, std::vector<bool>::const_iterator end) {
    const auto present = std::count(first, end, true);
    if (present == 0) return '.';
    return present == end - first ? '#' : '+';
}

// A line per few rows, the top row first, a character per column.
std::string drawing(const TarselDeviceType* device) {
    const MEMORYLocType& memory = countedMemory(device);
    const std::vector<bool> present = presentLocations(device, memory);
    const u32 step = drawnRows(device);
    std::string text;
    for (u32 first = (device->logicalRows - 1) / step * step;; first -= step) {
        const u32 last = std::min(first + step, device->logicalRows) - 1;
        text += "  " + left(rowsLabel(first, last), 18);
        for (u32 column = 0; column < device->logicalColumns; ++column) {
            const auto rows = present.begin() + static_cast<std::ptrdiff_t>(column) * device->logicalRows;
            text += drawnColumn(rows + first, rows + last + 1);
        }
        text += '\n';
        if (first == 0) break;
    }
    return text + "\n  A character for each column, X0 to X" + number(device->logicalColumns - 1) + ": # all " +
           memory.type->name + " are there, + some, . none.\n";
}

std::string namesText(const TarselDeviceType* device) {
    std::string text;
    for (const char* const* name = device->names; *name != nullptr; ++name)
        text += (text.empty() ? "" : " ") + std::string(*name);
    return text;
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
    if (iterator == nullptr) throw std::bad_alloc();
    for (; get_iterated_device_name(iterator) != nullptr; iterate_next_device_record(iterator)) {
        const TarselDeviceType* device = get_iterated_device_record(iterator);
        if (devices.empty() || devices.back() != device) devices.push_back(device);
    }
    delete_device_iterator(&iterator);
    return devices;
}

std::string deviceTable(std::span<const TarselDeviceType* const> devices) {
    const auto line = [](const char* name, const char* family, const std::string& memories, const std::string& frames,
                          const std::string& stream) {
        return left(name, 10) + left(family, 15) + left(memories, 45) + right(frames, 12) + right(stream, 10) + "\n";
    };
    std::string text = line("device", "family", "block RAM", "frame bits", "stream MB");
    for (const TarselDeviceType* device : devices)
        text += line(
            deviceName(device), device->family->name, memoriesText(device), framesText(device), streamText(device));
    return text + kTABLE_LEGEND;
}

std::string deviceDetails(const TarselDeviceType* device) {
    std::string text = std::string(deviceName(device)) + ", family " + device->family->name +
                       (device->isListed != 0 ? "" : ", not in short listings") + "\n\n";
    const auto fact = [&text](const char* label, const std::string& value) {
        text += "  " + left(label, 18) + value + "\n";
    };
    fact("names", namesText(device));
    fact("block RAM", memoriesText(device));
    const std::string counted = countedMemory(device).type->name;
    if (isGeneric(device))
        fact("stands for", std::string("parts without a record of their own; all figures are those of ") +
                               kGENERIC_GEOMETRY + " and may not fit");
    fact("locations",
        number(device->logicalRows) + " rows, " + number(device->logicalColumns) + " columns of " + counted);
    fact("configuration", number(device->physicalColumns) + " columns of " + number(device->physicalRows) + " " +
                              counted + ", " + number(blockRamBytes(device)) + " bytes in all" +
                              (device->dieCount == 0 ? "" : ", on " + number(device->dieCount) + " dice"));
    fact("frame", frameLengthText(device) + ", padding at the head " + number(device->framePadBits) + " bits");
    fact("block RAM offset", offsetText(device));
    fact("stream", frameDataBytes(device) == 0 ? "length not known" : streamText(device) + " MB");
    return text + "\n" + drawing(device);
}

int runDevicesCommand(std::span<char* const> words) {
    const SystemResources resources;
    if (resources.status() != 0) return finishPrinting(resources.status());
    if (words.size() > 1) return unknownWord(words[1]);
    const std::string_view word = words.empty() ? "" : words[0];
    if (word == "--json") {
        if (writeDevicesJson(stdout)) return 0;
        return printText("");
    }
    if (words.empty() || word == "--all") {
        std::vector<const TarselDeviceType*> devices = everyDevice();
        if (words.empty()) std::erase_if(devices, [](const TarselDeviceType* device) { return !device->isListed; });
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
