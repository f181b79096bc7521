// run_inputs.cpp - which files a run has read.
// SPDX-License-Identifier: Apache-2.0
#include "platform/run_inputs.h"

#include <algorithm>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace {

using FileIdentity = std::pair<dev_t, ino_t>;

// Empty while no run stands.
struct RunInputState {
    int depth = 0;
    std::vector<FileIdentity> files;
};
RunInputState gRunInputState;

FileIdentity identityOf(const struct stat& facts) {
    return {facts.st_dev, facts.st_ino};
}

} // namespace

namespace memdata {

RunInputs::RunInputs() {
    ++gRunInputState.depth;
}

RunInputs::~RunInputs() {
    if (--gRunInputState.depth == 0) gRunInputState = {};
}

void noteRunInput(int descriptor) {
    struct stat facts {};
    if (gRunInputState.depth == 0 || fstat(descriptor, &facts) != 0 || !S_ISREG(facts.st_mode)) return;
    if (!std::ranges::count(gRunInputState.files, identityOf(facts))) gRunInputState.files.push_back(identityOf(facts));
}

bool isRunInput(const std::string& name) {
    struct stat facts {};
    return !gRunInputState.files.empty() && stat(name.c_str(), &facts) == 0 &&
           std::ranges::count(gRunInputState.files, identityOf(facts)) != 0;
}

} // namespace memdata
