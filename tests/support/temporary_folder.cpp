// temporary_folder.cpp - see temporary_folder.h.
// SPDX-License-Identifier: Apache-2.0
#include "support/temporary_folder.h"

#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>

namespace memdata::testing {

TemporaryFolder::TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "memdata-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder can be made: " + pattern);
    path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::write(std::string_view name, std::string_view contents) const {
    const std::string full = file(name);
    std::ofstream out(full, std::ios::binary);
    out.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    out.close();
    if (!out) throw std::runtime_error("cannot write " + full);
    return full;
}

std::string TemporaryFolder::listing() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) names.insert(entry.path().filename().string());
    std::string text;
    for (const std::string& name : names) text += name + "\n";
    return text;
}

std::string readFile(const std::filesystem::path& name) {
    std::ifstream in(name, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    if (!in) throw std::runtime_error("cannot read " + name.string());
    return text.str();
}

} // namespace memdata::testing
