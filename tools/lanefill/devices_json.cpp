// devices_json.cpp - all devices, their arrays and the decode tables as JSON, written as it is produced.
//
//   {"devices": [{"names": [...], ..., "memoryLocs": [{"record": ..., "type": {...},
//                 "physicalLocs": [[logicalRow, logicalColumn, decode table or null, padBits], ...] or null,
//                 "logicalLocs": [[physicalRow, physicalColumn, exists], ...] or null}, ...]}, ...],
//    "decodeTables": {name: {"rows": [[frame, dataBase, parityBase, bits name], ...],
//                            "bits": {bits name: [...]}}, ...}}
//
// Arrays stand in their own order. A logicalRow below 0 is the complement of the row of an absent memory. The token of
// a type is the ordinal of its memory word.
// SPDX-License-Identifier: Apache-2.0
#include "BRAMDecodeUtils/decode_tables.h"
#include "DeviceTableUtils/DeviceTableUtils.h"
#include "ParseUtils/token_types.h"
#include "devices_command.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <rapidjson/filewritestream.h>
#include <rapidjson/writer.h>
#include <vector>

namespace memdata {
namespace {

// The writer's own one takes what it is given, also nothing.
struct ThrowingAllocator {
    [[maybe_unused]] static const bool kNeedFree = true; // the library asks it of allocators, the writer does not
    static void* given(void* block) { return block != nullptr ? block : throw std::bad_alloc(); }
    void* Malloc(size_t size) { return size == 0 ? nullptr : given(std::malloc(size)); }
    void* Realloc(void* block, size_t, size_t size) {
        if (size != 0) return given(std::realloc(block, size));
        Free(block);
        return nullptr;
    }
    static void Free(void* block) { std::free(block); }
};
using JsonWriter =
    rapidjson::Writer<rapidjson::FileWriteStream, rapidjson::UTF8<>, rapidjson::UTF8<>, ThrowingAllocator>;

constexpr size_t kBUFFER_BYTES = 1 << 16;

void writeText(JsonWriter& json, const char* key, const char* text) {
    json.Key(key);
    json.String(text);
}

void writeNumber(JsonWriter& json, const char* key, u64 number) {
    json.Key(key);
    json.Uint64(number);
}

void writeFlag(JsonWriter& json, const char* key, bool flag) {
    json.Key(key);
    json.Bool(flag);
}

void writeTableName(JsonWriter& json, const TranslationTableType* table) {
    const DecodeTable* named = decodeTableOf(table);
    if (named == nullptr)
        json.Null();
    else
        json.String(named->name);
}

// The allowed widths, or what belongs to them.
void writeWidths(JsonWriter& json, const char* key, const MEMORYType& type, const u32* values) {
    json.Key(key);
    json.StartArray();
    for (u32 i = 0; i < kMAX_LANE_WIDTHS && type.widths[i] != 0; ++i) json.Uint(values[i]);
    json.EndArray();
}

void writeType(JsonWriter& json, const MEMORYType& type) {
    json.StartObject();
    writeText(json, "name", type.name);
    writeText(json, "cellName", type.cellName);
    writeNumber(json, "token", type.token->ordinal);
    writeNumber(json, "sizeUnits", type.sizeUnits);
    writeNumber(json, "dataBits", type.dataBits);
    writeNumber(json, "parityBits", type.parityBits);
    writeFlag(json, "isBlockRam", type.isBlockRam);
    writeFlag(json, "hasParityWidths", type.hasParityWidths);
    writeFlag(json, "hasInterleavedParity", type.hasInterleavedParity);
    writeNumber(json, "frameCount", type.frameCount);
    writeNumber(json, "frameSliceBits", type.frameSliceBits);
    writeNumber(json, "addressRows", type.addressRows);
    writeNumber(json, "dataRowBits", type.dataRowBits);
    writeNumber(json, "parityRows", type.parityRows);
    writeNumber(json, "parityRowBits", type.parityRowBits);
    writeText(json, "widthsText", type.widthsText);
    writeWidths(json, "widths", type, type.widths);
    writeWidths(json, "parityWidths", type, type.parityWidths);
    writeNumber(json, "subRowFactor", type.subRowFactor);
    json.EndObject();
}

void writePhysicalLocs(JsonWriter& json, const TarselDeviceType& device, const MEMORYLocType& memory) {
    json.Key("physicalLocs");
    if (memory.physicalLocs == nullptr) {
        json.Null();
        return;
    }
    json.StartArray();
    const size_t count = size_t{physicalGridRows(&device, memory.type)} * device.physicalColumns;
    for (const BRAMPhysLocDataType& element : std::span(memory.physicalLocs.get(), count)) {
        json.StartArray();
        json.Int(element.logicalRow);
        json.Int(element.logicalColumn);
        writeTableName(json, element.decodeTable);
        json.Int(element.padBits);
        json.EndArray();
    }
    json.EndArray();
}

void writeLogicalLocs(JsonWriter& json, const TarselDeviceType& device, const MEMORYLocType& memory) {
    json.Key("logicalLocs");
    if (memory.logicalLocs == nullptr) {
        json.Null();
        return;
    }
    json.StartArray();
    const size_t count = size_t{logicalGridRows(&device, memory.type)} * device.logicalColumns;
    for (const BRAMLogLocDataType& element : std::span(memory.logicalLocs.get(), count)) {
        json.StartArray();
        json.Int(element.physicalRow);
        json.Int(element.physicalColumn);
        json.Int(element.exists);
        json.EndArray();
    }
    json.EndArray();
}

void writeExistenceMap(JsonWriter& json, const TarselDeviceType& device) {
    json.Key("existenceMap");
    if (device.existenceMap == nullptr) {
        json.Null();
        return;
    }
    json.StartArray();
    const size_t count = size_t{device.physicalRows} * device.physicalColumns;
    for (i8 exists : std::span(device.existenceMap, count)) json.Int(exists);
    json.EndArray();
}

void writeMemories(JsonWriter& json, const TarselDeviceType& device) {
    json.Key("memoryLocs");
    json.StartArray();
    for (const MEMORYLocType& memory : device.memoryLocs) {
        if (memory.type == nullptr) break;
        json.StartObject();
        writeText(json, "record", memoryTypeRecordName(memory.type));
        json.Key("type");
        writeType(json, *memory.type);
        writePhysicalLocs(json, device, memory);
        writeLogicalLocs(json, device, memory);
        json.EndObject();
    }
    json.EndArray();
}

void writeDevice(JsonWriter& json, const TarselDeviceType& device) {
    json.StartObject();
    json.Key("names");
    json.StartArray();
    for (const char* const* name = device.names; *name != nullptr; ++name) json.String(*name);
    json.EndArray();
    writeFlag(json, "isListed", device.isListed != 0);
    writeText(json, "family", device.family->name);
    writeNumber(json, "logicalRows", device.logicalRows);
    writeNumber(json, "physicalRows", device.physicalRows);
    writeNumber(json, "logicalColumns", device.logicalColumns);
    writeNumber(json, "physicalColumns", device.physicalColumns);
    json.Key("columnMap");
    json.StartArray();
    for (i32 column : device.columnMap) json.Int(column);
    json.EndArray();
    writeNumber(json, "framePadBits", device.framePadBits);
    writeNumber(json, "clbFrameBits", device.clbFrameBits);
    writeNumber(json, "bramFrameBits", device.bramFrameBits);
    writeNumber(json, "bramFrameOffset", device.bramFrameOffset);
    writeNumber(json, "dieCount", device.dieCount);
    writeExistenceMap(json, device);
    writeMemories(json, device);
    json.EndObject();
}

void writeDecodeTable(JsonWriter& json, const DecodeTable& table) {
    json.Key(table.name);
    json.StartObject();
    json.Key("rows");
    json.StartArray();
    std::vector<const BitArray*> used;
    for (const TranslationTableType& row : table.rows) {
        const BitArray* bits = bitArrayOf(row.bits);
        if (std::ranges::find(used, bits) == used.end()) used.push_back(bits);
        json.StartArray();
        json.Uint(row.frame);
        json.Uint(row.dataBase);
        json.Uint(row.parityBase);
        json.String(bits->name);
        json.EndArray();
    }
    json.EndArray();
    json.Key("bits");
    json.StartObject();
    for (const BitArray* array : used) {
        json.Key(array->name);
        json.StartArray();
        for (i32 entry : array->bits) json.Int(entry);
        json.EndArray();
    }
    json.EndObject();
    json.EndObject();
}

} // namespace

bool writeDevicesJson(std::FILE* out) {
    std::vector<char> buffer(kBUFFER_BYTES);
    rapidjson::FileWriteStream stream(out, buffer.data(), buffer.size());
    JsonWriter json(stream);
    json.StartObject();
    json.Key("devices");
    json.StartArray();
    for (const TarselDeviceType* device : everyDevice()) writeDevice(json, *device);
    json.EndArray();
    json.Key("decodeTables");
    json.StartObject();
    for (const DecodeTable& table : decodeTables()) writeDecodeTable(json, table);
    json.EndObject();
    json.EndObject();
    stream.Put('\n');
    stream.Flush();
    return std::fflush(out) == 0 && std::ferror(out) == 0;
}

} // namespace memdata
