// replay_main.cpp - runs kept inputs through a fuzz target that was built without a fuzzer.
// SPDX-License-Identifier: Apache-2.0
//
//     replay_bmm PATH ...      files, and folders with all files in them; a folder that is not there holds none
//
// Ends with 0 when every input was run; with 1 and a line on standard error when there was none or one can not be read.
// A finding aborts the process; the input that was begun last is named on standard error ahead of it.
#include "support/engine_run.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

void addInputs(const fs::path& path, std::vector<fs::path>* inputs) {
    if (!fs::is_directory(path)) {
        if (fs::exists(path)) inputs->push_back(path);
        return;
    }
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path))
        if (entry.is_regular_file()) inputs->push_back(entry.path());
}

bool replay(const fs::path& input) {
    std::ifstream in(input, std::ios::binary);
    const std::vector<char> content{std::istreambuf_iterator<char>(in), {}};
    if (!in) return false;
    std::fprintf(stderr, "%s\n", input.c_str());
    // Memory of the exact size, so that a sanitizer sees every read behind it.
    const std::vector<uint8_t> bytes(content.begin(), content.end());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    return true;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<fs::path> inputs;
    for (int i = 1; i < argc; ++i) addInputs(argv[i], &inputs);
    std::sort(inputs.begin(), inputs.end());
    for (const fs::path& input : inputs)
        if (!replay(input)) {
            std::fprintf(stderr, "%s can not be read\n", input.c_str());
            return 1;
        }
    if (inputs.empty()) std::fprintf(stderr, "there are no inputs\n");
    return inputs.empty() ? 1 : 0;
}
