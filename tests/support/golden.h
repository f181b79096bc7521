// golden.h - self-contained golden files: one small file holds options, inputs, status and expected text.
//
//   === options          what the run is given, one text
//   -bm a.bmm
//   === input a.bmm      any number of files that stand in the run's folder
//   ...
//   === status           the status that the run must end with
//   0
//   === expected         the text that the run must give
//   ...
//
// A section reaches from its heading to the next one. The name of a file whose run must fail begins with
// "bad-", and only such a file may expect a status other than 0. A test program started with
// --rewrite-golden writes what the runs give into the files: that diff is then read as code is.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_GOLDEN_H
#define MEMDATA_TESTS_SUPPORT_GOLDEN_H

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace memdata::testing {

struct GoldenFile {
    std::filesystem::path path;
    std::string options;
    std::map<std::string, std::string> inputs; // name -> contents
    int status = 0;
    std::string expected;

    bool mustFail() const { return path.filename().string().starts_with("bad-"); }
};

struct GoldenResult {
    int status;
    std::string text;
};

// Given the case and the folder in which its inputs stand; the folder is the working directory meanwhile.
using GoldenRun = std::function<GoldenResult(const GoldenFile& golden, const std::filesystem::path& folder)>;

extern bool gRewriteGolden; // set by --rewrite-golden

// Throws std::runtime_error that names the file and what is wrong with it.
GoldenFile parseGolden(const std::filesystem::path& path);
std::string writeGolden(const GoldenFile& golden);

// Runs one file. Gives an empty text when it holds, else what differs.
std::string checkGolden(const std::filesystem::path& path, const GoldenRun& run);

// The *.golden files of a folder below tests/, sorted; throws std::runtime_error when there are none.
std::vector<std::filesystem::path> goldenFiles(const std::string& folder);

// The name of a golden file as the name of a parameterised test: letters, digits and underscores.
std::string goldenName(const std::filesystem::path& path);

} // namespace memdata::testing

#endif
