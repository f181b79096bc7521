// mem_fuzz.cpp - a MEM, MIF or COE text is read in both ways, packed runs of plain values and token by token: both must
// give the same sections.
//
// The first byte chooses radix and form, as the remainder of 3: MEM ('0'), MIF ('1'), COE ('2'). The text follows it.
// SPDX-License-Identifier: Apache-2.0
#include "MemUtils/MemUtils.h"
#include "MemUtils/keywords.h"
#include "MemUtils/parser.h"
#include "support/engine_run.h"

#include <cstring>

namespace {

using namespace memdata;
using namespace memdata::fuzz;

struct Form {
    const char* name;
    u32 radix;
};
constexpr Form kFORMS[] = {{"a.mem", 16}, {"a.mif", 2}, {"a.coe", 16}};

int read(std::string_view text, const Form& form, ValueReading reading, DataStructureBlockType** block) {
    parse_stream* stream = nullptr;
    int status = open_parse_MemoryFile(form.name, text.data(), text.size(), &mem_symbol_set, nullptr, nullptr, &stream);
    if (stream == nullptr) return status;
    if (status == 0) status = InitializeDataStructureBlock(text.size(), form.radix, block);
    if (status == 0) status = parseDataText(stream, *block, reading);
    const int closed = close_parse_stream(&stream);
    return status != 0 ? status : closed;
}

bool areEqual(const DataSectionHdrType& left, const DataSectionHdrType& right) {
    return left.address == right.address && left.endAddress == right.endAddress && left.bitCount == right.bitCount &&
           left.byteCount == right.byteCount &&
           (left.byteCount == 0 || std::memcmp(left.data, right.data, left.byteCount) == 0);
}

bool areEqual(const DataStructureBlockType& left, const DataStructureBlockType& right) {
    if (left.sectionCount != right.sectionCount || left.lowestAddress != right.lowestAddress ||
        left.highestAddress != right.highestAddress)
        return false;
    for (u64 i = 0; i < left.sectionCount; ++i)
        if (!areEqual(*left.sectionArray[i], *right.sectionArray[i])) return false;
    return true;
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const EngineRun run;
    const std::string_view text = textOf(data + 1, size - 1);
    const Form& form = kFORMS[data[0] % 3];
    BlockOwner fast;
    BlockOwner plain;
    const int status = read(text, form, ValueReading::kPLAIN_RUNS, fast.out());
    require(read(text, form, ValueReading::kTOKENS_ONLY, plain.out()) == status, "two readers end differently");
    require(status != 0 || areEqual(*fast, *plain), "two readers give different sections");
    return 0;
}
