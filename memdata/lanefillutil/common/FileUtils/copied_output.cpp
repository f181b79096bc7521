// copied_output.cpp - see copied_output.h.
// SPDX-License-Identifier: Apache-2.0
#include "FileUtils/copied_output.h"

#include "FileUtils/internal.h"
#include "FileUtils/output_target.h"
#include "FileUtils/state.h"

#include <algorithm>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace memdata {
namespace {

// A regular file that is worth a thread.
bool isLargeFile(const char* name) {
    struct stat facts {};
    return stat(name, &facts) == 0 && S_ISREG(facts.st_mode) &&
           static_cast<u64>(facts.st_size) >= gFileState.smallestCopy;
}

bool hasProcessorForThread() {
    return gFileState.copiesOnOneProcessor || hasSecondProcessor();
}

} // namespace

CopiedOutput::CopiedOutput(const fileSpecType* input, const fileSpecType* output) {
    if (input == nullptr || input->fullName == nullptr || gFileState.copiedOutput != nullptr) return;
    const char* const outputName = output == nullptr ? input->fullName : output->fullName;
    if (outputName == nullptr || !hasProcessorForThread()) return;
    if (!isLargeFile(input->fullName)) return;
    const int to = openNamelessTemporary(outputName, &folder_);
    if (to < 0) return;
    const int from = open(input->fullName, O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (from >= 0 && fileStateOf(from, &state_))
        copier_.reset(new (std::nothrow) FileCopier(from, to, state_.byteCount)); // the descriptors are its own
    if (copier_ == nullptr) {
        close(to);
        if (from >= 0) close(from);
        return;
    }
    gFileState.copiedOutput = this;
}

CopiedOutput::~CopiedOutput() {
    if (gFileState.copiedOutput == this) gFileState.copiedOutput = nullptr;
}

bool beginAsCopy(fileIODescriptor* output, const fileIODescriptor* input) {
    CopiedOutput* const copy = std::exchange(gFileState.copiedOutput, nullptr);
    if (copy == nullptr) return false;
    const std::unique_ptr<FileCopier> copier = std::move(copy->copier_); // gives back its room where nobody takes it
    if (input->mappedBytes == 0 || !(input->window.state == copy->state_)) return false;
    const int whole = copier->wholeCopy();
    if (whole < 0 || !exchangeTemporary(output, whole, copy->folder_)) return false;
    output->copyOf = input;
    return true;
}

int passCopied(fileIODescriptor* output, fileIODescriptor* input, u64 unitBytes, u64 limit, u64* count) {
    *count = 0;
    const u64 position = GetFilePosition(input);
    if (output->copyOf != input || position != GetFilePosition(output) || position >= input->logicalSize) return 0;
    const u64 passed = std::min(limit, input->logicalSize - position) / unitBytes * unitBytes;
    if (passed == 0) return 0;
    if (int status = passOver(output, passed); status != 0) return status;
    moveMappedInputTo(input, position + passed);
    *count = passed;
    return 0;
}

bool isWorthFollowing(const fileIODescriptor* output, u64 byteCount) {
    return output->copyOf != nullptr && byteCount >= gFileState.smallestCopy && hasProcessorForThread();
}

OutputFollower::OutputFollower(fileIODescriptor* output, FileFollower::Taker taker, void* state)
    : output_(output), follower_(fileno(output->stream), GetFilePosition(output), taker, state) {}

int OutputFollower::finish() {
    if (int status = Flush_File(output_); status != 0) return status;
    noteWritten();
    const int error = follower_.finish();
    return error == 0 ? 0 : failOutput(output_, causeText(error));
}

} // namespace memdata
