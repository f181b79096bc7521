// engine_run.cpp - starts and ends the engine around one input.
// SPDX-License-Identifier: Apache-2.0
#include "support/engine_run.h"

#include "FileUtils/descriptor.h"
#include "ParseUtils/limits.h"
#include "ParseUtils/state.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "hosts/standalone/standalone_host.h"
#include "platform/host.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace memdata::fuzz {

namespace {

constexpr u64 kLEFT_TEXT = u64{4} << 20; // bytes
constexpr u64 kLEFT_TOKENS = 500'000;

// The folder that runs stand in, made at the first input and gone with the process.
class ScratchFolder {
public:
    ScratchFolder() {
        const char* chosen = std::getenv("TMPDIR");
        const bool inMemory = chosen == nullptr && std::filesystem::is_directory("/dev/shm");
        name_ = std::string(chosen != nullptr ? chosen : inMemory ? "/dev/shm" : "/tmp") + "/memdata_fuzz_XXXXXX";
        require(mkdtemp(name_.data()) != nullptr, "no scratch folder could be made");
        folder_ = open(name_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        before_ = open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        require(folder_ >= 0 && before_ >= 0, "the scratch folder can not be opened");
    }
    ~ScratchFolder() { std::filesystem::remove_all(name_); }
    ScratchFolder& operator=(ScratchFolder&&) = delete; // neither copied nor moved

    void enter() { require(fchdir(folder_) == 0, "the scratch folder can not be entered"); }
    void leave() {
        require(std::filesystem::is_empty("."), "the run left a file behind");
        require(fchdir(before_) == 0, "the folder of before can not be entered");
    }
    const std::string& name() const { return name_; }

private:
    std::string name_;
    int folder_ = -1;
    int before_ = -1;
};

ScratchFolder& scratchFolder() {
    static ScratchFolder folder;
    return folder;
}

// Takes everything and keeps nothing, without a call of the system.
std::FILE* silentStream() {
    static std::FILE* stream = fopencookie(nullptr, "w",
        {nullptr, [](void*, const char*, size_t size) { return static_cast<ssize_t>(size); }, nullptr, nullptr});
    return stream;
}

// A standalone host that says nothing. In force from the first input on.
class SilentHost : public StandaloneHost {
public:
    void message(const HostMessage&) override {}
    std::string temporaryDirectory() const override { return scratchFolder().name(); }
};

SilentHost& silentHost() {
    static SilentHost& host = *new SilentHost; // outlives all that may still send a message
    static const bool isInForce = (setHost(&host), true);
    static_cast<void>(isInForce);
    return host;
}

} // namespace

EngineRun::EngineRun() {
    silentHost().parameters().resetToDefaults();
    scratchFolder().enter();
    require(InitializeSystemResources() == 0, "the engine does not start");
    StandardOut.stream = silentStream();
    // Loops and macros that run away end within a second here too, where all takes several times as long.
    gParseState.usedPushedBytes = kMAX_PUSHED_BYTES - kLEFT_TEXT;
    gParseState.usedRepeatedBytes = kMAX_REPEATED_BYTES - kLEFT_TEXT;
    gParseState.usedRepeatedTokens = kMAX_REPEATED_TOKENS - kLEFT_TOKENS;
}

EngineRun::~EngineRun() {
    require(FinalizeSystemResources() == 0, "the engine does not end");
    require(leakedBlockCount() == 0, "tracked blocks were left to the sweep");
    scratchFolder().leave();
}

void writeFile(const char* name, std::string_view content) {
    std::ofstream out(name, std::ios::binary);
    out.write(content.data(), static_cast<std::streamsize>(content.size()));
    require(out.good(), "a file of the run can not be written");
}

void deleteFiles() {
    for (const std::filesystem::directory_entry& entry : std::filesystem::directory_iterator("."))
        std::filesystem::remove_all(entry.path());
}

std::string_view textOf(const uint8_t* data, size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

void requireEqual(std::string_view left, std::string_view right, const char* sentence) {
    if (left == right) return;
    const auto at = std::mismatch(left.begin(), left.end(), right.begin(), right.end()).first - left.begin();
    const size_t lineEnd = left.substr(0, static_cast<size_t>(at)).rfind('\n');
    const size_t begin = lineEnd == left.npos ? 0 : lineEnd + 1;
    for (const std::string_view text : {left, right}) {
        const std::string line(text.substr(begin, text.find('\n', begin) - begin));
        std::fprintf(stderr, "    %s\n", line.c_str());
    }
    fail(sentence);
}

void fail(const char* sentence) {
    std::fprintf(stderr, "FINDING: %s\n", sentence);
    std::abort();
}

} // namespace memdata::fuzz
