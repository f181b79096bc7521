// simulator.cpp - see simulator.h.
// SPDX-License-Identifier: Apache-2.0
#include "simulator.h"

#include "support/tool_run.h"

#include <gtest/gtest.h>
#include <sstream>

namespace memdata::testing {

bool hasSimulator() {
    return runProgram("iverilog", {"-V"}).status == 0 && runProgram("vvp", {"-V"}).status == 0;
}

std::vector<std::string> simulate(const TemporaryFolder& folder, std::string_view program) {
    const std::string compiled = folder.file("program.vvp");
    const ToolResult built = runProgram("iverilog", {"-g2005", "-o", compiled, folder.write("program.v", program)});
    EXPECT_EQ(built.status, 0) << built.err << program;
    const ToolResult run = runProgram("vvp", {"-n", compiled}, {.folder = folder.path()});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    std::vector<std::string> lines;
    std::istringstream text(run.out);
    for (std::string line; std::getline(text, line);)
        if (line.find("Not enough words") == line.npos) lines.push_back(line);
    return lines;
}

} // namespace memdata::testing
