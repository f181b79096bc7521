// temporary_folder.h - a folder for one test, gone with it.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_TEMPORARY_FOLDER_H
#define MEMDATA_TESTS_SUPPORT_TEMPORARY_FOLDER_H

#include <filesystem>
#include <string>
#include <string_view>

namespace memdata::testing {

class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder& operator=(TemporaryFolder&&) = delete; // neither copied nor moved

    const std::filesystem::path& path() const { return path_; }
    std::string file(std::string_view name) const { return (path_ / name).string(); } // full name
    // Writes a file and gives its full name.
    std::string write(std::string_view name, std::string_view contents) const;
    // The names in the folder, sorted, a line each: "a.mem\nb.mem\n".
    std::string listing() const;

private:
    std::filesystem::path path_;
};

// The contents of a file; throws std::runtime_error when it cannot be read.
std::string readFile(const std::filesystem::path& name);

} // namespace memdata::testing

#endif
