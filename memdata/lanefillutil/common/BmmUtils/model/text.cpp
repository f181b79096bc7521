// text.cpp - the words of processors and of error-correcting codes.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/text.h"

#include "StringUtils/StringUtils.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace {

struct EccWordType {
    u32 type;
    const char* word;
};
constexpr EccWordType kECC_WORDS[] = {
    {kECC_H32_7, "ECCH32-7"},
    {kECC_H64_8, "ECCH64-8"},
    {kECC_HSIAO32_7, "ECCHSIAO32-7"},
    {kECC_HSIAO64_8, "ECCHSIAO64-8"},
    {kECC_HSIAO128_9, "ECCHSIAO128-9"},
};

struct ProcessorWordType {
    u64 type;
    const char* word;
};
constexpr ProcessorWordType kPROCESSOR_WORDS[] = {
    {kPROCESSOR_PPC405, "PPC405"},
    {kPROCESSOR_KESTREL, "KESTREL"},
    {kPROCESSOR_WRENLET, "WRENLET"},
    {kPROCESSOR_PPC440, "PPC440"},
    {kPROCESSOR_KESTREL_LE, "KESTREL-LE"},
    {kPROCESSOR_ARM, "ARM"},
    {kPROCESSOR_CONFIGPROM, "CONFIGPROM"},
    {kPROCESSOR_RISCV, "RISCV"},
};
static_assert(std::ranges::all_of(kPROCESSOR_WORDS, [](const ProcessorWordType& row) {
    return row.type != 0 && (row.type & (row.type - 1)) == 0; // single bits
}));

template<class Row, size_t N>
const Row* find_word(const Row (&rows)[N], const char* word) {
    if (word == nullptr) return nullptr;
    const Row* row = std::ranges::find(rows, std::string_view(word), &Row::word);
    return row == std::end(rows) ? nullptr : row;
}

template<class Row, size_t N>
const char* find_type(const Row (&rows)[N], u64 type, const char* otherwise) {
    const Row* row = std::ranges::find(rows, type, &Row::type);
    return row == std::end(rows) ? otherwise : row->word;
}

} // namespace

u32 get_ECC_type(const char* word) {
    const EccWordType* row = find_word(kECC_WORDS, word);
    return row == nullptr ? kECC_NONE : row->type;
}

const char* get_ECCAlgorithmType_string(u32 eccType) {
    return find_type(kECC_WORDS, eccType, "");
}

char* construct_ECC_string(u32 eccType) {
    const char* word = get_ECCAlgorithmType_string(eccType);
    return *word == '\0' ? StrDup("") : memdata::appendFormat(nullptr, " %s", word);
}

u64 get_processorType(const char* word) {
    const ProcessorWordType* row = find_word(kPROCESSOR_WORDS, word);
    return row == nullptr ? 0 : row->type;
}

const char* get_processorType_string(u64 processorType) {
    return find_type(kPROCESSOR_WORDS, processorType, "???CPU");
}
