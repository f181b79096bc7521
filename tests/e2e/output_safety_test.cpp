// output_safety_test.cpp - outputs that cannot be written: the status, the message, and that nothing else is harmed.
// SPDX-License-Identifier: Apache-2.0
#include "e2e/tool_folder.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace memdata::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class OutputSafety : public ToolFolder {
protected:
    // 8 KB, so that each MEM file is longer than a page.
    OutputSafety() {
        std::string text = "@80000000";
        for (int i = 0; i < 8192; ++i) text += " 5A";
        folder_.write("full.mem", text + "\n");
    }

    void expectInputsUntouched() const {
        EXPECT_EQ(read("soc.bmm"), kSOC_MAP);
        EXPECT_EQ(read("data.mem"), kSOC_DATA);
    }
    // Of an output that cannot be made.
    static std::string cannotCreate(const std::string& name) {
        return "\n"
               "ERROR:Lanefill:2 - File '" +
               name +
               "' can not be created, or is write protected.\n"
               "    Please ensure that the directory path exists, or the file\n"
               "    isn't write protected or being locked by another application.\n"
               "\n";
    }
    // Of an output that breaks off.
    static std::string cannotWrite(const std::string& name) {
        return "\nERROR:Lanefill:86 - File '" + name + "' can not be written: No space left on device.\n\n";
    }
};

TEST_F(OutputSafety, AMissingFolderIsReported) {
    for (const std::vector<std::string>& output :
        {std::vector<std::string>{"-bx", "no"}, {"-o", "p", "no/a.bmm"}, {"-o", "a", "no/a.xml"}}) {
        std::vector<std::string> words{"-bm", "soc.bmm", "-bd", "data.mem"};
        words.insert(words.end(), output.begin(), output.end());
        const ToolResult result = run(words);
        EXPECT_EQ(result.status, 1) << output.back();
        EXPECT_EQ(result.out, cannotCreate(output.front() == "-bx" ? "no/cpu.ram_0.mem" : output.back()));
    }
    EXPECT_EQ(folder_.listing(), "data.mem\nfull.mem\nsoc.bmm\n");
}

TEST_F(OutputSafety, AFileInThePlaceOfAFolderIsReported) {
    const ToolResult result = run({"-bm", "soc.bmm", "-bd", "data.mem", "-bx", "data.mem"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, cannotCreate("data.mem/cpu.ram_0.mem"));
    expectInputsUntouched();
}

TEST_F(OutputSafety, AFolderInThePlaceOfAFileIsReported) {
    std::filesystem::create_directory(folder_.file("out.bmm"));
    const ToolResult result = run({"-w", "-bm", "soc.bmm", "-o", "p", "out.bmm"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, cannotCreate("out.bmm"));
}

TEST_F(OutputSafety, AReadOnlyFolderIsReported) {
    std::filesystem::create_directory(folder_.file("locked"));
    chmod(folder_.path().c_str(), 0755); // a plain user reads here
    chmod(folder_.file("locked").c_str(), 0555);
    const ToolResult result = run({"-bm", "soc.bmm", "-bd", "data.mem", "-bx", "locked"}, {.isPlainUser = true});
    if (result.status == 127) GTEST_SKIP() << "skipped: the tool lies where a plain user can not start it";
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, cannotCreate("locked/cpu.ram_0.mem"));
    EXPECT_TRUE(std::filesystem::is_empty(folder_.file("locked")));
}

TEST_F(OutputSafety, AnExistingFileIsKept) {
    folder_.write("out.bmm", "mine\n");
    const ToolResult result = run({"-bm", "soc.bmm", "-o", "p", "out.bmm"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out,
        "\n"
        "ERROR:Lanefill:117 - File 'out.bmm' already exists, and an attempt was made to overwrite it.\n"
        "    Use a different file name, or use the '-w on' option to force file overwrites.\n"
        "\n");
    EXPECT_EQ(read("out.bmm"), "mine\n");
}

TEST_F(OutputSafety, AnExistingFileIsReplacedOnRequest) {
    for (const std::vector<std::string>& permission :
        {std::vector<std::string>{"-w"}, {"-w", "on"}, {"-w", "yes"}, {"-w", "off", "-w"}}) {
        folder_.write("out.bmm", "mine\n");
        std::vector<std::string> words = permission;
        words.insert(words.end(), {"-bm", "soc.bmm", "-o", "p", "out.bmm"});
        EXPECT_EQ(run(words).status, 0);
        EXPECT_THAT(read("out.bmm"), StartsWith("// BMM LOC annotation file"));
    }
}

TEST_F(OutputSafety, ThePermissionCanBeTakenBack) {
    folder_.write("out.bmm", "mine\n");
    EXPECT_EQ(run({"-w", "-w", "off", "-bm", "soc.bmm", "-o", "p", "out.bmm"}).status, 1);
    EXPECT_EQ(read("out.bmm"), "mine\n");
}

TEST_F(OutputSafety, AnInputIsNeverReplaced) {
    folder_.write("job.opt", "-u\n");
    std::filesystem::create_symlink("soc.bmm", folder_.file("link.bmm"));
    std::filesystem::create_hard_link(folder_.file("soc.bmm"), folder_.file("hard.bmm"));
    for (const std::vector<std::string>& output : {std::vector<std::string>{"-o", "p", "soc.bmm"},
             {"-o", "p", "link.bmm"}, {"-o", "p", "hard.bmm"}, {"-o", "p", "./soc.bmm"}, {"-log", "job.opt"}}) {
        std::vector<std::string> words{"-w", "-f", "job.opt"};
        words.insert(words.end(), output.begin(), output.end());
        words.insert(words.end(), {"-bm", "soc.bmm"});
        const ToolResult result = run(words);
        EXPECT_EQ(result.status, 1) << output.back();
        EXPECT_EQ(result.out, "\nERROR:Lanefill:86 - File '" + output.back() +
                                  "' is an input of this run and can not be its output too. Please name another "
                                  "output.\n\n");
    }
    expectInputsUntouched();
    EXPECT_EQ(read("job.opt"), "-u\n");
}

TEST_F(OutputSafety, ALaneIsNotWrittenOverTheDataFile) {
    folder_.write("cpu.ram_2.mem", kSOC_DATA);
    const ToolResult result = run({"-w", "-bm", "soc.bmm", "-bd", "cpu.ram_2.mem", "-bx"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(read("cpu.ram_2.mem"), kSOC_DATA);
}

TEST_F(OutputSafety, AFullDeviceIsReported) {
    std::filesystem::create_symlink("/dev/full", folder_.file("out.bmm"));
    const ToolResult result = run({"-w", "-bm", "soc.bmm", "-o", "p", "out.bmm"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, cannotWrite("out.bmm"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder_.file("out.bmm")));
}

// A disk that is full in the middle, made by a limit on the length of files: some bytes go out, then no more.
TEST_F(OutputSafety, AFileThatBreaksOffLeavesTheEarlierOne) {
    ASSERT_EQ(run({"-bm", "soc.bmm", "-bd", "data.mem", "-bx"}).status, 0);
    const std::string earlier = read("cpu.ram_0.mem");
    const std::string names = folder_.listing();
    const ToolResult result = run({"-w", "-bm", "soc.bmm", "-bd", "full.mem", "-bx"}, {.maxFileBytes = 4096});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.out, HasSubstr("File './cpu.ram_0.mem' can not be written: File too large.\n"));
    EXPECT_EQ(read("cpu.ram_0.mem"), earlier);
    EXPECT_EQ(folder_.listing(), names);
    expectInputsUntouched();
}

TEST_F(OutputSafety, AFileThatBreaksOffLeavesNothing) {
    const std::string names = folder_.listing();
    for (const std::vector<std::string>& output :
        {std::vector<std::string>{"-bx"}, {"-o", "p", "a.bmm"}, {"-o", "a", "a.xml"}}) {
        std::vector<std::string> words{"-bm", "soc.bmm", "-bd", "full.mem"};
        words.insert(words.end(), output.begin(), output.end());
        const ToolResult result = run(words, {.maxFileBytes = 256});
        EXPECT_NE(result.status, 0) << output.back();
        EXPECT_THAT(result.out, HasSubstr(" can not be written: File too large.\n")) << output.back();
        EXPECT_EQ(folder_.listing(), names) << output.back();
    }
}

TEST_F(OutputSafety, AFullDiskKeepsFinishedFilesAndNoPieces) {
    // A disk of four pages in a name space of its own, which ends with the shell: one file of 10 KB fits.
    std::filesystem::create_directory(folder_.file("disk"));
    const std::string script = "mount -t tmpfs -o size=20k none disk || exit 99\necho mounted\n"
                               "'" +
                               toolName() +
                               "' -bm soc.bmm -bd full.mem -bx disk; status=$?\n"
                               "ls -A disk; tail -qc 4 disk/cpu.ram_1.mem; exit $status\n";
    const ToolResult result = runProgram("unshare", {"-m", "sh", "-c", script}, {.folder = folder_.path()});
    if (!result.out.starts_with("mounted\n"))
        GTEST_SKIP() << "skipped: no small disk can be mounted here: " << result.all();
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "mounted\n" + cannotWrite("disk/cpu.ram_2.mem") + "cpu.ram_0.mem\ncpu.ram_1.mem\n 5A\n");
}

// Standard output.

TEST_F(OutputSafety, PreprocessedTextThatCannotBePrintedIsAnError) {
    const ToolResult result = run({"-pp", "soc.bmm"}, {.outFile = "/dev/full"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "lanefill: standard output can not be written\n");
}

} // namespace
} // namespace memdata::testing
