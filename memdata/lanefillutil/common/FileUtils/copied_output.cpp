// copied_output.cpp - see copied_output.h.
// SPDX-License-Identifier: Apache-2.0
#include "FileUtils/copied_output.h"

#include "FileUtils/internal.h"
#include "FileUtils/output_target.h"
#include "FileUtils/state.h"

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

} // namespace

CopiedOutput::CopiedOutput(const fileSpecType* input, const fileSpecType* output) {
    if (input == nullptr || input->fullName == nullptr || gFileState.copiedOutput != nullptr) return;
    const char* const outputName = output == nullptr ? input->fullName : output->fullName;
    if (outputName == nullptr || !hasSecondProcessor()) return;
    if (!isLargeFile(input->fullName)) return;
    const int to = openNamelessTemporary(outputName, &folder_);
    if (to < 0) return;
    const int from = open(input->fullName, O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (from < 0 || !fileStateOf(from, &state_)) {
        close(to);
        if (from >= 0) close(from);
        return;
    }
    copier_.reset(new (std::nothrow) FileCopier(from, to, state_.byteCount));
    if (copier_ != nullptr) gFileState.copiedOutput = this;
}

CopiedOutput::~CopiedOutput() {
    if (gFileState.copiedOutput == this) gFileState.copiedOutput = nullptr;
}

bool beginAsCopy(fileIODescriptor* output, const fileIODescriptor* input) {
    const CopiedOutput* const copy = std::exchange(gFileState.copiedOutput, nullptr);
    if (copy == nullptr || input->mappedBytes == 0 || !(input->window.state == copy->state_)) return false;
    const int whole = copy->copier_->wholeCopy();
    if (whole < 0 || !exchangeTemporary(output, whole, copy->folder_)) return false;
    output->copyOf = input;
    return true;
}

} // namespace memdata
