// golden.cpp - see golden.h.
// SPDX-License-Identifier: Apache-2.0
#include "support/golden.h"

#include "support/temporary_folder.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace memdata::testing {

bool gRewriteGolden = false;

namespace {

constexpr const char* kHEADING = "=== ";

struct Section {
    std::string heading; // without its mark
    std::string text;
};

std::vector<Section> splitSections(const std::string& text) {
    std::vector<Section> sections;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(kHEADING))
            sections.push_back({line.substr(4), ""});
        else if (!sections.empty())
            sections.back().text += line + "\n";
    }
    return sections;
}

std::string withoutLineEnd(std::string text) {
    while (text.ends_with('\n')) text.pop_back();
    return text;
}

class WorkingDirectory {
public:
    explicit WorkingDirectory(const std::filesystem::path& folder) : saved_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder);
    }
    ~WorkingDirectory() { std::filesystem::current_path(saved_); }
    WorkingDirectory& operator=(WorkingDirectory&&) = delete; // neither copied nor moved

private:
    std::filesystem::path saved_;
};

GoldenResult runIn(const GoldenFile& golden, const GoldenRun& run) {
    const TemporaryFolder folder;
    for (const auto& [name, contents] : golden.inputs) folder.write(name, contents);
    const WorkingDirectory inside(folder.path());
    return run(golden, folder.path());
}

void rewrite(GoldenFile golden, const GoldenResult& result) {
    golden.status = result.status;
    golden.expected = result.text;
    std::ofstream(golden.path, std::ios::binary) << writeGolden(golden);
}

} // namespace

GoldenFile parseGolden(const std::filesystem::path& path) {
    GoldenFile golden;
    golden.path = path;
    bool hasStatus = false;
    for (Section& section : splitSections(readFile(path))) {
        if (section.heading == "options")
            golden.options = withoutLineEnd(section.text);
        else if (section.heading.starts_with("input "))
            golden.inputs[section.heading.substr(6)] = section.text;
        else if (section.heading == "status")
            golden.status = std::stoi(section.text), hasStatus = true;
        else if (section.heading == "expected")
            golden.expected = section.text;
        else
            throw std::runtime_error(path.string() + ": unknown section '" + section.heading + "'");
    }
    if (!hasStatus && !gRewriteGolden) throw std::runtime_error(path.string() + ": no status section");
    return golden;
}

std::string writeGolden(const GoldenFile& golden) {
    std::string text = "=== options\n" + golden.options + "\n";
    for (const auto& [name, contents] : golden.inputs) text += "=== input " + name + "\n" + contents;
    text += "=== status\n" + std::to_string(golden.status) + "\n=== expected\n" + golden.expected;
    if (!text.ends_with('\n')) text += '\n';
    return text;
}

std::string checkGolden(const std::filesystem::path& path, const GoldenRun& run) {
    const GoldenFile golden = parseGolden(path);
    const GoldenResult result = runIn(golden, run);
    if (gRewriteGolden) rewrite(golden, result);

    const GoldenFile wanted = parseGolden(path);
    std::string differences;
    if (wanted.mustFail() != (result.status != 0))
        differences += "the name says that the run " + std::string(wanted.mustFail() ? "fails" : "succeeds") + "\n";
    if (wanted.status != result.status)
        differences += "status " + std::to_string(result.status) + ", expected " + std::to_string(wanted.status) + "\n";
    // The file ends its last line; a run whose text does not is taken as equal.
    const std::string text = result.text.empty() || result.text.ends_with('\n') ? result.text : result.text + "\n";
    if (wanted.expected != text) differences += "--- expected\n" + wanted.expected + "--- given\n" + text;
    return differences.empty() ? "" : path.filename().string() + ":\n" + differences;
}

std::vector<std::filesystem::path> goldenFiles(const std::string& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(MEMDATA_TEST_DATA) / folder))
        if (entry.path().extension() == ".golden") files.push_back(entry.path());
    if (files.empty()) throw std::runtime_error("no golden files in tests/" + folder);
    std::ranges::sort(files);
    return files;
}

std::string goldenName(const std::filesystem::path& path) {
    std::string name = path.stem().string();
    std::ranges::replace_if(
        name, [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

} // namespace memdata::testing
