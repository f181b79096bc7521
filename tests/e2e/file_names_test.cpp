// file_names_test.cpp - any name of a file reaches the engine as it is, as an input and as an output.
// SPDX-License-Identifier: Apache-2.0
#include "e2e/tool_folder.h"

#include <gmock/gmock.h>

namespace memdata::testing {
namespace {

using ::testing::HasSubstr;

const std::string kNAMES[] = {"plain", "two words", " outer blanks ", "tab\tin it", "it's", "say \"x\"", "\"quoted\"",
    "'quoted'", "a'b\"c'd", "p+q", "k=v", "@at", "-dash", "-bd2", "-", "7seg", "0x12", "1.2.3", "a,b", "a;b", "a:b",
    "#if", "a#b", "$HOME", "%s%n", "a\\b", "end\\", "\\", "[x]", "{x}", "(x)", "<x>", "*", "?", "~", "!x", "&|^", "_x",
    "a.b.c", ".hidden", "boot", "tag", "root", "start", "on", "true", "define", "include", "defined", "__LINE__",
    "ADDRESS_MAP", "RAMB16",
    "Gr\xC3\xB6\xC3\x9F"
    "e",
    "\xE6\x97\xA5\xE6\x9C\xAC", "\x80\xFE", "sub//dir", "./here", "a/../b"};
class FileNames : public ToolFolder {};

TEST_F(FileNames, ServeForMapsDataFoldersAndOutputs) {
    for (const std::string& name : kNAMES) {
        std::filesystem::create_directories(folder_.file(name));
        folder_.write(name + ".bmm", kSOC_MAP);
        folder_.write(name + ".mem", kSOC_DATA);
        const ToolResult result = run({"-bm", name + ".bmm", "-bd", name + ".mem", "tag", "cpu.ram", "-bx", name, "-o",
            "p", name + ".out.bmm", "-log", name + ".log"});
        EXPECT_EQ(result.status, 0) << name << result.all();
        EXPECT_THAT(read(name + "/cpu.ram_0.mem"), HasSubstr("\n    13 93\n")) << name;
        EXPECT_THAT(read(name + ".out.bmm"), HasSubstr("ADDRESS_MAP cpu RISCV 0\n")) << name;
        EXPECT_TRUE(std::filesystem::exists(folder_.file(name + ".log"))) << name;
    }
}

TEST_F(FileNames, ServeForOptionFilesAndFoldersOfIncludes) {
    folder_.write("whole.bmm", "#include \"part.h\"\n");
    for (const std::string& name : kNAMES) {
        if (name.find_first_of(";:") != name.npos) continue; // these marks part the folders of -I
        std::filesystem::create_directories(folder_.file(name));
        folder_.write(name + "/part.h", kSOC_MAP);
        folder_.write(name + ".opt", "-w -bm whole.bmm -o p out\n");
        const ToolResult result = run({"-I", name, "-f", name + ".opt"});
        EXPECT_EQ(result.status, 0) << name << result.all();
    }
}

class OddFileNames : public ToolFolder {};

TEST_F(OddFileNames, LineEndsAndTheLastByteAreRefused) {
    for (const char* name : {"a\nb.mem", "a\rb.mem", "a\xFF.mem"}) {
        const ToolResult result = run({"-bm", "soc.bmm", "-bd", name, "-bx"});
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.err, "lanefill: a file name with a line end or a byte 0xFF cannot be passed on: rename '" +
                                  std::string(name) + "'\n");
    }
}

TEST_F(OddFileNames, ASwitchNeedsItsFolderAhead) {
    folder_.write("-bx", kSOC_MAP);
    EXPECT_EQ(run({"-bm", "-bx", "-o", "p", "out"}).status, 14);
    EXPECT_EQ(run({"-bm", "./-bx", "-o", "p", "out"}).status, 0);
    EXPECT_THAT(read("out.bmm"), HasSubstr("ADDRESS_MAP cpu RISCV 0\n"));
}

TEST_F(OddFileNames, AnEmptyNameIsReported) {
    EXPECT_THAT(run({"-bm", ""}).out, HasSubstr("ERROR:Lanefill:55 - A null file name was given for a 'bmm' file.\n"));
    EXPECT_EQ(run({"-bm", ""}).status, 1);
    EXPECT_NE(run({"-bm", "soc.bmm", "-bd", "", "-bx"}).status, 0);
    EXPECT_NE(run({"-bm", "soc.bmm", "-o", "p", ""}).status, 0);
}

TEST_F(OddFileNames, SeveralFoldersAreSearchedInOrder) {
    std::filesystem::create_directory(folder_.file("first one"));
    std::filesystem::create_directory(folder_.file("second"));
    folder_.write("second/part.h", kSOC_MAP);
    folder_.write("whole.bmm", "#include \"part.h\"\n");
    for (const std::vector<std::string>& words : {std::vector<std::string>{"-I", "first one;second"},
             {"-I", "first one:second"}, {"-Ifirst one;second"}, {"-I", "first one", "-I", "second"}}) {
        std::vector<std::string> all = words;
        all.insert(all.end(), {"-w", "-bm", "whole.bmm", "-o", "p", "out"});
        const ToolResult result = run(all);
        EXPECT_EQ(result.status, 0) << result.all();
    }
}

} // namespace
} // namespace memdata::testing
