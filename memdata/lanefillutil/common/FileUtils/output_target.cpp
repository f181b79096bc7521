// output_target.cpp - temporaries of outputs: made, given their name, dropped.
// SPDX-License-Identifier: Apache-2.0

#include "FileUtils/output_target.h"

#include "FileUtils/internal.h"
#include "FileUtils/state.h"
#include "StringUtils/StringUtils.h"
#include "platform/host.h"

#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>
#include <utility>

namespace {

using namespace memdata;

constexpr int kMAX_LINKS = 40; // as many as the system itself follows
constexpr mode_t kNEW_FILE_MODE = 0666;

enum class TargetKind { kREFUSED, kNEW_FILE, kOLD_FILE, kDIRECT };
struct OutputTarget {
    TargetKind kind = TargetKind::kREFUSED;
    int error = 0;      // of kREFUSED
    std::string path;   // links followed
    struct stat old {}; // of kOLD_FILE
};

std::string folderOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == path.npos ? "./" : path.substr(0, slash + 1);
}

// Links that the kernel makes up lead to open files, not to names.
bool standsInProc(const std::string& path) {
    struct statfs system {};
    return statfs(folderOf(path).c_str(), &system) == 0 && system.f_type == PROC_SUPER_MAGIC;
}

OutputTarget followLinks(const char* name) {
    OutputTarget target;
    target.path = name;
    target.error = ENOENT;
    if (target.path.empty()) return target; // or it would stand for the working folder
    for (int links = 0; links <= kMAX_LINKS; ++links) {
        struct stat found {};
        if (lstat(target.path.c_str(), &found) != 0) {
            target.error = errno;
            if (errno == ENOENT) target.kind = TargetKind::kNEW_FILE;
            return target;
        }
        if (!S_ISLNK(found.st_mode)) {
            if (S_ISREG(found.st_mode)) target.kind = TargetKind::kOLD_FILE;
            if (!S_ISREG(found.st_mode) && !S_ISDIR(found.st_mode)) target.kind = TargetKind::kDIRECT;
            target.error = EISDIR;
            target.old = found;
            return target;
        }
        if (standsInProc(target.path)) {
            target.kind = TargetKind::kDIRECT;
            return target;
        }
        std::error_code failure;
        const std::filesystem::path next = std::filesystem::read_symlink(target.path, failure);
        target.error = failure.value();
        if (failure) return target;
        target.path = next.is_absolute() ? next.string() : folderOf(target.path) + next.string();
    }
    target.error = ELOOP;
    return target;
}

// With the one name that its folder has: outputs can be compared by it, and it holds when the working folder changes.
OutputTarget findTarget(const char* name) {
    OutputTarget target = followLinks(name);
    std::error_code failure;
    const std::filesystem::path folder = std::filesystem::canonical(folderOf(target.path), failure);
    if (!failure && target.kind != TargetKind::kDIRECT)
        target.path = (folder / std::filesystem::path(target.path).filename()).string();
    return target;
}

// "/dev/stdout" and its like name an open file of this process: it is written on from where it stands, and not
// opened a second time with a place of its own. -1 when the path is none of these.
int duplicateOpenFile(const std::string& path) {
    std::error_code failure;
    const std::filesystem::path folder = std::filesystem::canonical(folderOf(path), failure);
    if (failure || folder != "/proc/" + std::to_string(getpid()) + "/fd") return -1;
    const std::string number = path.substr(path.rfind('/') + 1);
    int descriptor = -1;
    if (std::from_chars(number.data(), number.data() + number.size(), descriptor).ec != std::errc()) return -1;
    std::fflush(stdout); // what was written before stands before
    return fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
}

int openDirectly(const std::string& path) {
    host().beforeOutput(); // it may be the terminal
    const int descriptor = duplicateOpenFile(path);
    return descriptor >= 0 ? descriptor : open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
}

std::string linkOfDescriptor(int descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor);
}

// A file without a name can be given one only through its link in /proc.
int openNameless(const std::string& folder) {
    if (gFileState.temporaryKind == TemporaryKind::kNAMED) return -1;
    const int descriptor = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, kNEW_FILE_MODE);
    struct stat link {};
    if (descriptor < 0 || lstat(linkOfDescriptor(descriptor).c_str(), &link) == 0) return descriptor;
    close(descriptor);
    return -1;
}

// A temporary belongs to the process that made it: a child does not remove its parent's.
bool isOwnTemporary(const char* name) {
    const std::string mark = "/.memdata-" + std::to_string(getpid()) + "-";
    return std::strstr(name, mark.c_str()) != nullptr;
}

void removeNamedTemporary(const fileIODescriptor* file) {
    if (file->temporaryName != nullptr && isOwnTemporary(file->temporaryName)) unlink(file->temporaryName);
}

// For a run that exits in the middle: what it wrote so far must not stay behind.
void removeNamedTemporaries() {
    for (const fileIODescriptor* file = gFileState.openFiles; file != nullptr; file = file->nextOpen)
        removeNamedTemporary(file);
}

// Calls make with new names until one does not exist yet. False when the system refuses for another reason.
template<class Make>
bool makeTemporaryName(const std::string& folder, std::string* name, Make make) {
    do {
        *name = folder + ".memdata-" + std::to_string(getpid()) + "-" + std::to_string(gFileState.temporaryCount++) +
                ".tmp";
        if (make(name->c_str())) return true;
    } while (errno == EEXIST);
    return false;
}

int openTemporary(const std::string& folder, std::string* name) {
    int descriptor = openNameless(folder);
    if (descriptor >= 0) return descriptor;
    static const int registered = std::atexit(removeNamedTemporaries); // once, however many there will be
    static_cast<void>(registered);
    makeTemporaryName(folder, name, [&](const char* path) {
        descriptor = open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNEW_FILE_MODE);
        return descriptor >= 0;
    });
    return descriptor;
}

bool isProtected(const OutputTarget& target) {
    return target.kind == TargetKind::kOLD_FILE && faccessat(AT_FDCWD, target.path.c_str(), W_OK, AT_EACCESS) != 0;
}

// The new file is to be as accessible as the old one; a system that will not have the owner set is not a failure.
void takeOverPermissions(const std::string& path, const struct stat& old) {
    if (chown(path.c_str(), old.st_uid, old.st_gid) != 0 &&
        chown(path.c_str(), static_cast<uid_t>(-1), old.st_gid) != 0)
        errno = 0;
    if (chmod(path.c_str(), old.st_mode & 07777) != 0) errno = 0; // last: a change of owner takes bits away
}

// The cause of the failure stays in errno.
void removeFailed(const char* name) {
    const int error = errno;
    unlink(name);
    errno = error;
}

// Gives a nameless temporary a name of its own, since a link never replaces a name. A system that makes nameless files
// and can not link them is served by a copy.
bool nameTemporary(int descriptor, const std::string& folder, std::string* name) {
    const std::string link = linkOfDescriptor(descriptor);
    if (gFileState.temporaryKind == TemporaryKind::kNAMELESS) {
        const bool linked = makeTemporaryName(folder, name,
            [&](const char* path) { return linkat(AT_FDCWD, link.c_str(), AT_FDCWD, path, AT_SYMLINK_FOLLOW) == 0; });
        if (linked) return true;
    }
    std::error_code failure;
    const bool copied = makeTemporaryName(folder, name, [&](const char* path) {
        std::filesystem::copy_file(link, path, failure); // refuses a name that is taken
        errno = failure.value();
        return !failure;
    });
    struct stat facts {};
    if (copied && fstat(descriptor, &facts) == 0) takeOverPermissions(*name, facts);
    if (!copied) removeFailed(name->c_str());
    return copied;
}

// For the moment in which a temporary has a name: a user who ends the run leaves nothing behind.
class HeldSignals {
public:
    HeldSignals() {
        sigset_t ends;
        sigemptyset(&ends);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) sigaddset(&ends, signal);
        pthread_sigmask(SIG_BLOCK, &ends, &before_);
    }
    ~HeldSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    HeldSignals& operator=(HeldSignals&&) = delete; // neither copied nor moved

private:
    sigset_t before_;
};

bool closeStream(fileIODescriptor* file) {
    FILE* const stream = std::exchange(file->stream, nullptr);
    return stream == nullptr || std::fclose(stream) == 0;
}

} // namespace

int memdata::openOutputTarget(fileIODescriptor* file) {
    const OutputTarget target = findTarget(file->name);
    if (target.kind == TargetKind::kREFUSED) return failCreating(target.error);
    if (isProtected(target)) return failCreating(EACCES);

    int descriptor = -1;
    if (target.kind == TargetKind::kDIRECT) {
        descriptor = openDirectly(target.path);
    } else {
        std::string temporary;
        file->targetName = newString(target.path);
        if (file->targetName == nullptr) return 7;
        descriptor = openTemporary(folderOf(target.path), &temporary);
        if (descriptor < 0) return failCreating(errno);
        if (target.kind == TargetKind::kOLD_FILE)
            takeOverPermissions(temporary.empty() ? linkOfDescriptor(descriptor) : temporary, target.old);
        if (!temporary.empty()) file->temporaryName = newString(temporary);
        if (!temporary.empty() && file->temporaryName == nullptr) {
            unlink(temporary.c_str());
            close(descriptor);
            return 7;
        }
    }
    if (descriptor < 0) return failCreating(errno);
    file->stream = fdopen(descriptor, "wb");
    if (file->stream != nullptr) return 0;
    failCreating(errno);
    close(descriptor);
    return 1;
}

int memdata::openNamelessTemporary(const char* outputName, std::string* folder) {
    const OutputTarget target = findTarget(outputName);
    if (target.kind != TargetKind::kNEW_FILE && target.kind != TargetKind::kOLD_FILE) return -1;
    *folder = folderOf(target.path);
    return openNameless(*folder);
}

bool memdata::exchangeTemporary(fileIODescriptor* file, int nameless, const std::string& folder) {
    struct stat facts {};
    if (file->targetName == nullptr || file->temporaryName != nullptr || folderOf(file->targetName) != folder ||
        fstat(fileno(file->stream), &facts) != 0)
        return false;
    takeOverPermissions(linkOfDescriptor(nameless), facts);
    return dup3(nameless, fileno(file->stream), O_CLOEXEC) >= 0;
}

bool memdata::commitOutputTarget(fileIODescriptor* file) {
    if (file->targetName == nullptr) return closeStream(file);
    if (file->copyOf != nullptr && ftruncate(fileno(file->stream), static_cast<off_t>(file->filePosition)) != 0)
        return false;
    const HeldSignals held;
    std::string temporary;
    if (file->temporaryName != nullptr)
        temporary = file->temporaryName;
    else if (!nameTemporary(fileno(file->stream), folderOf(file->targetName), &temporary))
        return false;
    const bool replaced = closeStream(file) && std::rename(temporary.c_str(), file->targetName) == 0;
    if (!replaced) removeFailed(temporary.c_str());
    return replaced;
}

void memdata::dropOutputTarget(fileIODescriptor* file) {
    closeStream(file);
    removeNamedTemporary(file);
}

bool memdata::wouldOverwrite(const char* name) {
    const OutputTarget target = findTarget(name);
    if (target.kind == TargetKind::kOLD_FILE) return true;
    for (const fileIODescriptor* file = gFileState.openFiles; file != nullptr; file = file->nextOpen) {
        if (file->targetName != nullptr && target.path == file->targetName) return true;
    }
    return false;
}
