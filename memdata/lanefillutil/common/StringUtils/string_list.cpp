// string_list.cpp - null-terminated arrays of managed strings.
// SPDX-License-Identifier: Apache-2.0
#include "StringUtils/StringUtils.h"

#include "SystemUtils/alerts.h"
#include "SystemUtils/memory.h"
#include "platform/HEXAll.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <span>

namespace {

constexpr char kLIST_LABEL[] = "CharPtrArrayType";

// The entries of a list, terminator excluded: as many as its block has room for, because a list may be
// filled in any order. A plain pointer, because the bound in the list's type is not its length.
std::span<char*> entries_of(StrList list) {
    if (list == nullptr) return {};
    const auto* block = reinterpret_cast<const MemoryBlockType*>(list) - 1;
    return {reinterpret_cast<char**>(list), block->size / sizeof(char*) - 1};
}

void release_array(StrList list) {
    if (list != nullptr) releaseMemory(list);
}

} // namespace

StrList StrListNew(unsigned long n) {
    // A list is bounded by the size in its block's header, of 32 bits. One that this can not tell asks for more than
    // there can be: the allocator reports it.
    const unsigned long size = n >= UINT32_MAX / sizeof(char*) ? ULONG_MAX : (n + 1) * sizeof(char*);
    void* list = getMemory(kLIST_LABEL, size);
    if (list == nullptr) throw HEXInternalException("The application has run out of memory");
    return static_cast<StrList>(list);
}

void StrListSet(StrList list, unsigned long index, char* s) {
    const std::span<char*> entries = entries_of(list);
    if (index < entries.size())
        entries[index] = s;
    else
        PrintInternalError(kERROR_MESSAGE_STRING, 7,
            memdata::formatted("String list of %lld entries has no entry %lld.", entries.size(), index));
}

char* StrListGet(StrList list, unsigned long index) {
    const std::span<char*> entries = entries_of(list);
    return index < entries.size() ? entries[index] : nullptr;
}

unsigned long StrListCount(StrList list) {
    const std::span<char*> entries = entries_of(list);
    return static_cast<unsigned long>(std::ranges::find(entries, nullptr) - entries.begin());
}

char* StrListFind(StrList list, const char* s) {
    return StrListGet(list, StrListLookup(list, s));
}

unsigned long StrListLookup(StrList list, const char* s) {
    const std::span<char*> entries = entries_of(list).first(StrListCount(list));
    if (s == nullptr) return entries.size();
    const auto found = std::ranges::find_if(entries, [s](const char* entry) { return std::strcmp(entry, s) == 0; });
    return static_cast<unsigned long>(found - entries.begin());
}

int StrListExtend(StrList* list, char* s) {
    memdata::OwnedString added(s);
    if (list == nullptr || s == nullptr) return 3;
    const std::span<char*> entries = entries_of(*list);
    const unsigned long count = StrListCount(*list);
    const StrList longer = StrListNew(count + 1);
    std::ranges::copy(entries.first(count), entries_of(longer).begin());
    StrListSet(longer, count, added.release());
    // What stands behind a gap belonged to no list that could be walked: it goes with the old array.
    for (char* entry : entries.subspan(count)) StrDelete(entry);
    release_array(*list);
    *list = longer;
    return 0;
}

int StrListDelete(StrList list) {
    for (char* entry : entries_of(list)) StrDelete(entry);
    release_array(list);
    return 0;
}
