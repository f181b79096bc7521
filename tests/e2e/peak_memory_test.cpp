// peak_memory_test.cpp - how much memory a large translation takes.
// SPDX-License-Identifier: Apache-2.0
#include "support/bit_builder.h"
#include "support/elf_builder.h"
#include "support/temporary_folder.h"
#include "support/tool_run.h"

#include <gtest/gtest.h>
#include <string>

namespace memdata::testing {
namespace {

// A small program starts the tool: the memory of this one, which a child has until its own program begins, counts too.
constexpr char kMEASURE[] = "import resource, subprocess, sys\n"
                            "subprocess.run(sys.argv[1:], check=True, stdout=subprocess.DEVNULL)\n"
                            "print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)\n";

TEST(PeakMemory, OfATranslationIsTheFileOnceAndItsLanes) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "sanitizers take memory of their own";
#endif
    constexpr u64 kFILE_BYTES = 32 << 20;
    const TemporaryFolder folder;
    folder.write("app.elf", textOf(elfFile({.segments = {{.bytes = Bytes(kFILE_BYTES, 0x5A)}}})));
    folder.write("soc.bmm", "ADDRESS_SPACE ram MEMORY [0:0x1FFFFFF]\n"
                            "  BUS_BLOCK b [15:8] [0:0xFFFFFF]; a [7:0] [0:0xFFFFFF]; END_BUS_BLOCK;\n"
                            "END_ADDRESS_SPACE;\n");
    const ToolResult result = runProgram(
        "python3", {"-c", kMEASURE, toolName(), "-bm", "soc.bmm", "-bd", "app.elf", "-bx"}, {.folder = folder.path()});
    ASSERT_EQ(result.status, 0) << result.out << result.err;
    const u64 kilobytes = std::stoull(result.out);
    EXPECT_GT(kilobytes * 1024, kFILE_BYTES); // it is the tool that was measured
    EXPECT_LT(kilobytes * 1024, kFILE_BYTES * 22 / 10);
}

} // namespace
} // namespace memdata::testing
