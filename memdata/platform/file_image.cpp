// file_image.cpp - see file_image.h.
// SPDX-License-Identifier: Apache-2.0
#include "platform/file_image.h"

#include "platform/filtering_stream.h"

#include "platform/run_inputs.h"

#include <csignal>
#include <cstdint>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

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

// All images that are mapped now, for the handler. It only runs when a byte of one is read, so never while this list
// changes.
class MappedImages {
public:
    static void add(FileImage* image) { image->nextMapped_ = std::exchange(first_, image); }

    static void remove(FileImage* image) {
        FileImage** link = &first_;
        while (*link != image) link = &(*link)->nextMapped_;
        *link = image->nextMapped_;
    }

    // Puts zeros from the page of an address to the end of its image. False when the address lies in no image.
    static bool replaceLostPages(const void* address) {
        const auto place = reinterpret_cast<std::uintptr_t>(address);
        for (FileImage* image = first_; image != nullptr; image = image->nextMapped_) {
            const auto begin = reinterpret_cast<std::uintptr_t>(image->mapping_);
            if (place < begin || place - begin >= image->mappingBytes_) continue;
            image->hasLostPages_ = true;
            const u64 kept = (place - begin) / pageBytes() * pageBytes();
            return ::mmap(image->mapping_ + kept, image->mappingBytes_ - kept, PROT_READ,
                       MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) != MAP_FAILED;
        }
        return false;
    }

private:
    static inline FileImage* first_ = nullptr;
};

namespace {

// A fault that is not ours comes again, and ends the process as it would have.
void onBusError(int, siginfo_t* facts, void*) {
    if (!MappedImages::replaceLostPages(facts->si_addr)) std::signal(SIGBUS, SIG_DFL);
}

} // namespace

void surviveLostPages() {
    struct sigaction action {};
    action.sa_sigaction = onBusError;
    action.sa_flags = SA_SIGINFO;
    ::sigaction(SIGBUS, &action, nullptr);
}

bool FileImage::stateOf_(int descriptor, FileState* state) {
    struct stat facts {};
    if (::fstat(descriptor, &facts) != 0) return false;
    *state = {static_cast<u64>(facts.st_size), facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec};
    return true;
}

bool FileImage::map_(const std::string& name) {
    const int descriptor = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return false;
    noteRunInput(descriptor);
    void* pages = MAP_FAILED;
    if (stateOf_(descriptor, &state_) && state_.byteCount > 0)
        pages = ::mmap(nullptr, static_cast<size_t>(state_.byteCount), PROT_READ, MAP_PRIVATE, descriptor, 0);
    if (pages == MAP_FAILED) {
        ::close(descriptor);
        return false;
    }
    mapping_ = static_cast<char*>(pages);
    mappingBytes_ = state_.byteCount;
    descriptor_ = descriptor;
    hasLostPages_ = false;
    MappedImages::add(this);
    return true;
}

bool FileImage::isUnchanged() const {
    if (mapping_ == nullptr) return true;
    FileState now;
    return !hasLostPages_ && stateOf_(descriptor_, &now) && now == state_;
}

WholeFile FileImage::open(const std::string& name, std::string* reason, u64 limit) {
    close();
    if (isPlainRegularFile(name) && map_(name)) return WholeFile::kREAD;
    return readWholeFile(name, &unpacked_, reason, limit); // also what cannot be mapped, such as an empty file
}

void FileImage::close() {
    if (mapping_ != nullptr) {
        MappedImages::remove(this);
        ::munmap(mapping_, mappingBytes_);
        ::close(descriptor_);
    }
    mapping_ = nullptr;
    mappingBytes_ = 0;
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
