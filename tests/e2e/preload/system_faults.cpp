// system_faults.cpp - loaded ahead of the system's library into a program: one of its calls goes wrong.
//
// The environment tells which, MEMDATA_FAULT_ in front of each name:
//   CALL   the name of a call, or "any" for all of kCALLS but allocations
//   AT     the number of the call that goes wrong, from 1
//   HOW    an error number: the call fails with it; "short": a transfer moves half of the bytes, one at least;
//          "cut": the file behind the descriptor loses its second half, of what is left behind the place of reading;
//          "kill", "term", "int": the signal comes ahead of the call
//   REST   when set: all such calls behind it go wrong too
//   COUNT  a file that takes the number of such calls when the program exits
// Calls that the system's library makes itself are not seen: reads and writes of FILE are none of these.
// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

extern "C" {
void* __libc_malloc(size_t bytes);
void* __libc_calloc(size_t count, size_t bytes);
void* __libc_realloc(void* block, size_t bytes);
}

namespace {

enum class How { kERROR, kSHORT, kCUT, kSIGNAL };

struct Plan {
    bool isOn = false; // from the constructor of this object on
    const char* call = "";
    unsigned long at = 0;
    How how = How::kERROR;
    int number = 0; // of the error or signal
    bool rest = false;
    unsigned long count = 0;
};
Plan gPlan;

const char* setting(const char* name) {
    const char* text = std::getenv((std::string("MEMDATA_FAULT_") + name).c_str());
    return text == nullptr ? "" : text;
}

void readHow(const char* how) {
    const std::string word = how;
    gPlan.how = word == "short" ? How::kSHORT : word == "cut" ? How::kCUT : How::kERROR;
    gPlan.number = std::atoi(how);
    constexpr struct {
        const char* word;
        int signal;
    } kSIGNALS[] = {{"kill", SIGKILL}, {"term", SIGTERM}, {"int", SIGINT}};
    for (const auto& row : kSIGNALS)
        if (word == row.word) {
            gPlan.how = How::kSIGNAL;
            gPlan.number = row.signal;
        }
}

__attribute__((constructor)) void begin() {
    gPlan.call = setting("CALL");
    gPlan.at = std::strtoul(setting("AT"), nullptr, 10);
    gPlan.rest = *setting("REST") != '\0';
    readHow(setting("HOW"));
    gPlan.isOn = *gPlan.call != '\0';
}

__attribute__((destructor)) void end() {
    gPlan.isOn = false;
    if (*setting("COUNT") == '\0') return;
    if (FILE* out = std::fopen(setting("COUNT"), "w"); out != nullptr) {
        std::fprintf(out, "%lu", gPlan.count);
        std::fclose(out);
    }
}

// Whether this call is to go wrong. A signal comes here.
bool isDue(const char* call) {
    if (!gPlan.isOn) return false;
    const bool isMemory = std::strcmp(call, "malloc") == 0;
    if (std::strcmp(gPlan.call, call) != 0 && (isMemory || std::strcmp(gPlan.call, "any") != 0)) return false;
    ++gPlan.count;
    if (gPlan.rest ? gPlan.count < gPlan.at || gPlan.at == 0 : gPlan.count != gPlan.at) return false;
    if (gPlan.how != How::kSIGNAL) return true;
    std::raise(gPlan.number);
    return false;
}

bool fails() {
    if (gPlan.how != How::kERROR) return false;
    errno = gPlan.number;
    return true;
}

// Through its name, since the descriptor may be for reading only.
void cut(int descriptor) {
    struct stat facts {};
    if (gPlan.how != How::kCUT || fstat(descriptor, &facts) != 0) return;
    const off_t place = std::max<off_t>(0, lseek(descriptor, 0, SEEK_CUR));
    const off_t left = place + std::max<off_t>(0, facts.st_size - place) / 2;
    if (truncate(("/proc/self/fd/" + std::to_string(descriptor)).c_str(), left) != 0) std::abort();
}

size_t moved(size_t bytes) {
    return gPlan.how == How::kSHORT && bytes > 1 ? bytes / 2 : bytes;
}

template<class Function>
Function* real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

#define REAL(name) static auto* const call = real<decltype(name)>(#name)

extern "C" {

int open(const char* name, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    REAL(open);
    if (isDue("open") && fails()) return -1;
    return call(name, flags, mode);
}

int openat(int folder, const char* name, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    REAL(openat);
    if (isDue("open") && fails()) return -1;
    return call(folder, name, flags, mode);
}

FILE* fdopen(int descriptor, const char* mode) {
    REAL(fdopen);
    if (isDue("fdopen") && fails()) return nullptr;
    return call(descriptor, mode);
}

int fclose(FILE* stream) {
    REAL(fclose);
    const bool due = isDue("fclose");
    const int result = call(stream); // it is closed in any case
    return due && fails() ? EOF : result;
}

int close(int descriptor) {
    REAL(close);
    const bool due = isDue("close");
    const int result = call(descriptor);
    return due && fails() ? -1 : result;
}

#define TRANSFER(name, faultName, Bytes, Rest, rest)                                                                   \
    ssize_t name(int descriptor, Bytes bytes, size_t count Rest) {                                                     \
        REAL(name);                                                                                                    \
        if (!isDue(faultName)) return call(descriptor, bytes, count rest);                                             \
        if (fails()) return -1;                                                                                        \
        cut(descriptor);                                                                                               \
        return call(descriptor, bytes, moved(count) rest);                                                             \
    }
#define NOTHING
#define OFFSET    , off_t offset
#define AT_OFFSET , offset
TRANSFER(read, "read", void*, NOTHING, NOTHING)
TRANSFER(write, "write", const void*, NOTHING, NOTHING)
TRANSFER(pread, "read", void*, OFFSET, AT_OFFSET)
TRANSFER(pwrite, "write", const void*, OFFSET, AT_OFFSET)
TRANSFER(pread64, "read", void*, OFFSET, AT_OFFSET)
TRANSFER(pwrite64, "write", const void*, OFFSET, AT_OFFSET)

ssize_t copy_file_range(int from, off64_t* fromAt, int to, off64_t* toAt, size_t count, unsigned flags) {
    REAL(copy_file_range);
    if (!isDue("copy")) return call(from, fromAt, to, toAt, count, flags);
    if (fails()) return -1;
    cut(from);
    return call(from, fromAt, to, toAt, moved(count), flags);
}

ssize_t sendfile(int to, int from, off_t* fromAt, size_t count) {
    REAL(sendfile);
    if (!isDue("copy")) return call(to, from, fromAt, count);
    if (fails()) return -1;
    cut(from);
    return call(to, from, fromAt, moved(count));
}

void* mmap(void* place, size_t bytes, int protection, int flags, int descriptor, off_t offset) {
    REAL(mmap);
    if (descriptor < 0) return call(place, bytes, protection, flags, descriptor, offset);
    const bool due = isDue("mmap");
    if (due && fails()) return MAP_FAILED;
    void* const pages = call(place, bytes, protection, flags, descriptor, offset);
    if (due) cut(descriptor);
    return pages;
}

int rename(const char* from, const char* to) {
    REAL(rename);
    return isDue("rename") && fails() ? -1 : call(from, to);
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) {
    REAL(linkat);
    return isDue("linkat") && fails() ? -1 : call(fromFolder, from, toFolder, to, flags);
}

int unlink(const char* name) {
    REAL(unlink);
    return isDue("unlink") && fails() ? -1 : call(name);
}

int chmod(const char* name, mode_t mode) {
    REAL(chmod);
    return isDue("chmod") && fails() ? -1 : call(name, mode);
}

int ftruncate(int descriptor, off_t bytes) {
    REAL(ftruncate);
    return isDue("ftruncate") && fails() ? -1 : call(descriptor, bytes);
}

int fstat(int descriptor, struct stat* facts) {
    REAL(fstat);
    return isDue("fstat") && fails() ? -1 : call(descriptor, facts);
}

int stat(const char* name, struct stat* facts) {
    REAL(stat);
    return isDue("stat") && fails() ? -1 : call(name, facts);
}

int lstat(const char* name, struct stat* facts) {
    REAL(lstat);
    return isDue("stat") && fails() ? -1 : call(name, facts);
}

// Memory.

void* malloc(size_t bytes) {
    return isDue("malloc") && fails() ? nullptr : __libc_malloc(bytes);
}

void* calloc(size_t count, size_t bytes) {
    return isDue("malloc") && fails() ? nullptr : __libc_calloc(count, bytes);
}

void* realloc(void* block, size_t bytes) {
    return isDue("malloc") && fails() ? nullptr : __libc_realloc(block, bytes);
}

} // extern "C"
