// file_image.cpp - see file_image.h.
// SPDX-License-Identifier: Apache-2.0
#include "platform/file_image.h"

#include "platform/filtering_stream.h"

#include "platform/run_inputs.h"

#include <cstdint>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Looking at the first bytes of a pipe would take them away.
bool isPlainRegularFile(const std::string& name) {
    struct stat facts {};
    if (::stat(name.c_str(), &facts) != 0 || !S_ISREG(facts.st_mode)) return false;
    const pql::iostreams::filtering_stream stream(name);
    return stream.is_open() && !stream.isPacked();
}

u64 pageBytes() {
    return static_cast<u64>(::sysconf(_SC_PAGESIZE));
}

} // namespace

namespace memdata {

bool FileImage::map_(const std::string& name) {
    const int descriptor = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return false;
    noteRunInput(descriptor);
    FileState state{};
    void* pages = MAP_FAILED;
    if (fileStateOf(descriptor, &state) && state.byteCount > 0)
        pages = ::mmap(nullptr, static_cast<size_t>(state.byteCount), PROT_READ, MAP_PRIVATE, descriptor, 0);
    if (pages == MAP_FAILED) {
        ::close(descriptor);
        return false;
    }
    mapping_ = {static_cast<char*>(pages), state.byteCount, state, false, descriptor, 0, nullptr, nullptr};
    startWatching(&mapping_);
    return true;
}

bool FileImage::isUnchanged() const {
    return !isMapped() || memdata::isUnchanged(mapping_);
}

WholeFile FileImage::open(const std::string& name, std::string* reason, u64 limit) {
    close();
    if (isPlainRegularFile(name) && map_(name)) return WholeFile::kREAD;
    return readWholeFile(name, &unpacked_, reason, limit); // also what cannot be mapped, such as an empty file
}

void FileImage::close() {
    if (isMapped()) {
        stopWatching(&mapping_);
        ::munmap(mapping_.begin, mapping_.byteCount);
        ::close(mapping_.descriptor);
    }
    mapping_ = {};
    std::string().swap(unpacked_);
}

void releaseMappedPages(const void* bytes, u64 byteCount) {
    const u64 page = pageBytes();
    const u64 first = reinterpret_cast<std::uintptr_t>(bytes);
    const u64 head = (page - first % page) % page; // whole pages only
    if (byteCount < head + page) return;
    const u64 whole = (byteCount - head) / page * page;
    // A failure costs memory only.
    ::madvise(const_cast<char*>(static_cast<const char*>(bytes)) + head, static_cast<size_t>(whole), MADV_DONTNEED);
}

} // namespace memdata
