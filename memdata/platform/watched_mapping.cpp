// watched_mapping.cpp - see watched_mapping.h.
// SPDX-License-Identifier: Apache-2.0
#include "platform/watched_mapping.h"

#include <csignal>
#include <cstdint>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace memdata {
namespace {

// For the handler, which only runs when a byte of one is read: never while this list changes.
WatchedMapping* gWatchedMappings = nullptr;

// Puts zeros from the page of an address to the end of its mapping. False when the address lies in none.
bool replaceLostPages(const void* address) {
    const auto place = reinterpret_cast<std::uintptr_t>(address);
    for (WatchedMapping* mapping = gWatchedMappings; mapping != nullptr; mapping = mapping->next) {
        const auto begin = reinterpret_cast<std::uintptr_t>(mapping->begin);
        if (place < begin || place - begin >= mapping->byteCount) continue;
        mapping->hasLostPages = true;
        if (mapping->original != nullptr) mapping->original->hasLostPages = true;
        const u64 page = static_cast<u64>(::sysconf(_SC_PAGESIZE));
        const u64 kept = (place - begin) / page * page;
        return ::mmap(mapping->begin + kept, mapping->byteCount - kept, PROT_READ | PROT_WRITE,
                   MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) != MAP_FAILED;
    }
    return false;
}

// A fault that is not ours comes again, and ends the process as it would have.
void onBusError(int, siginfo_t* facts, void*) {
    if (!replaceLostPages(facts->si_addr)) std::signal(SIGBUS, SIG_DFL);
}

} // namespace

bool fileStateOf(int descriptor, FileState* state) {
    struct stat facts {};
    if (::fstat(descriptor, &facts) != 0) return false;
    *state = {facts.st_dev, facts.st_ino, static_cast<u64>(facts.st_size), facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec};
    return true;
}

void startWatching(WatchedMapping* mapping) {
    mapping->next = std::exchange(gWatchedMappings, mapping);
}

void stopWatching(WatchedMapping* mapping) {
    WatchedMapping** link = &gWatchedMappings;
    while (*link != nullptr && *link != mapping) link = &(*link)->next;
    if (*link != nullptr) *link = mapping->next;
    mapping->next = nullptr;
    for (WatchedMapping* copy = gWatchedMappings; copy != nullptr; copy = copy->next)
        if (copy->original == mapping) copy->original = nullptr;
}

bool isUnchanged(const WatchedMapping& mapping) {
    FileState now{};
    return !mapping.hasLostPages && fileStateOf(mapping.descriptor, &now) && now == mapping.state;
}

WatchedMapping* watchedMappingOf(const void* bytes, u64 byteCount) {
    const auto place = reinterpret_cast<std::uintptr_t>(bytes);
    for (WatchedMapping* mapping = gWatchedMappings; mapping != nullptr; mapping = mapping->next) {
        const auto begin = reinterpret_cast<std::uintptr_t>(mapping->begin);
        if (place >= begin && place - begin <= mapping->byteCount && byteCount <= mapping->byteCount - (place - begin))
            return mapping;
    }
    return nullptr;
}

void surviveLostPages() {
    struct sigaction action {};
    action.sa_sigaction = onBusError;
    action.sa_flags = SA_SIGINFO;
    ::sigaction(SIGBUS, &action, nullptr);
}

} // namespace memdata
