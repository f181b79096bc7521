// tool_run.h - programs as a user starts them: words, a folder, what came out.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_TOOL_RUN_H
#define MEMDATA_TESTS_SUPPORT_TOOL_RUN_H

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace memdata::testing {

struct ToolResult {
    int status = -1; // of the exit; 128 and the signal's number for a program that a signal ended
    std::string out; // standard output
    std::string err; // standard error

    std::string all() const { return out + err; }
};

// How a program is started. No shell is in between: words reach it as they are.
struct ToolSetting {
    std::filesystem::path folder = {};                   // where it runs; empty: here
    std::string outFile = {};                            // takes standard output in place of the result
    unsigned long maxFileBytes = 0;                      // not 0: a longer file can not be written
    bool isPlainUser = false;                            // for root: runs without root's rights
    std::map<std::string, std::string> environment = {}; // more variables, by name
};

// The built tool.
ToolResult runTool(const std::vector<std::string>& words, const ToolSetting& setting = {});
// Any program, by its full name or found in PATH.
ToolResult runProgram(
    const std::string& program, const std::vector<std::string>& words, const ToolSetting& setting = {});

// The full name of the built tool.
std::string toolName();

} // namespace memdata::testing

#endif
