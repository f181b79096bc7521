// tool_folder.h - a folder with a small design, in which the built tool runs.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_E2E_TOOL_FOLDER_H
#define MEMDATA_TESTS_E2E_TOOL_FOLDER_H

#include "support/temporary_folder.h"
#include "support/tool_run.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace memdata::testing {

// 8 KB behind address 0x80000000: a 32-bit bus, a memory for each byte of it, the lowest byte in mem0.
constexpr char kSOC_MAP[] = "ADDRESS_MAP cpu RISCV 0\n"
                            "    ADDRESS_SPACE ram RAMB16 [0x80000000:0x80001FFF]\n"
                            "        BUS_BLOCK\n"
                            "            soc/mem3 [31:24];\n"
                            "            soc/mem2 [23:16];\n"
                            "            soc/mem1 [15:8];\n"
                            "            soc/mem0 [7:0];\n"
                            "        END_BUS_BLOCK;\n"
                            "    END_ADDRESS_SPACE;\n"
                            "END_ADDRESS_MAP;\n";
// Two words: the first memory takes 13 93.
constexpr char kSOC_DATA[] = "@80000000 13 05 10 00 93 05 20 00\n";

class ToolFolder : public ::testing::Test {
protected:
    ToolFolder() {
        folder_.write("soc.bmm", kSOC_MAP);
        folder_.write("data.mem", kSOC_DATA);
    }

    ToolResult run(const std::vector<std::string>& words, ToolSetting setting = {}) const {
        setting.folder = folder_.path();
        return runTool(words, setting);
    }
    std::string read(const std::string& name) const { return readFile(folder_.file(name)); }

    const TemporaryFolder folder_;
};

} // namespace memdata::testing

#endif
