// mkbit_command_test.cpp - lanefill-mkbit, as a user runs it.
// SPDX-License-Identifier: Apache-2.0
#include "support/bit_builder.h"
#include "support/bit_maker.h"
#include "support/temporary_folder.h"

#include <array>
#include <cstdio>
#include <gmock/gmock.h>
#include <string>
#include <sys/wait.h>

using namespace memdata::testing;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

struct Result {
    int status;
    std::string text; // standard output and standard error
};

Result run(const std::string& words) {
    std::string command = "\"" MEMDATA_BUILD_DIR "/lanefill-mkbit\" 2>&1 ";
    command += words;
    Result result{-1, {}};
    std::FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return result;
    std::array<char, 4096> buffer;
    for (size_t count = 0; (count = fread(buffer.data(), 1, buffer.size(), pipe)) > 0;)
        result.text.append(buffer.data(), count);
    result.status = WEXITSTATUS(pclose(pipe));
    return result;
}

} // namespace

TEST(MkbitCommand, WritesTheFileThatItsRecipeMakes) {
    const TemporaryFolder folder;
    const std::string file = folder.file("a.bit");
    const Result result = run("--device td3c4 --seed 5 --dialect fenwick --variant separate,bypassed -o " + file);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.text, "");
    const BitRecipe recipe{
        .device = "td3c4", .seed = 5, .container = BitContainer::FENWICK, .separateBram = true, .crcBypassed = true};
    EXPECT_TRUE(readFile(file) == textOf(bitFileOf(recipe, makeBit(recipe).stream)));
}

TEST(MkbitCommand, WritesTexts) {
    const TemporaryFolder folder;
    const std::string file = folder.file("a.rbt");
    EXPECT_EQ(run("--device q1a8 --rbt --variant bare -o " + file).status, 0);
    EXPECT_THAT(readFile(file), StartsWith("Ombrel ASCII Bitstream\n"));
}

TEST(MkbitCommand, ExplainsItself) {
    EXPECT_EQ(run("--help").status, 0);
    EXPECT_THAT(run("--help").text, StartsWith("lanefill-mkbit - writes a bit file"));
    EXPECT_EQ(run("").status, 1);
}

TEST(MkbitCommand, SaysWhatIsWrong) {
    const TemporaryFolder folder;
    const std::string output = " -o " + folder.file("a.bit");
    constexpr const char* kMORE = "; 'lanefill-mkbit --help' tells more\n";
    for (const auto& [words, what] : {std::pair<std::string, const char*>{"--device zz" + output, "no device 'zz'"},
             {"--device td3c4", "--device and -o are needed"}, {output, "--device and -o are needed"},
             {"--device td3c4 --seed x" + output, "'x' is no number"},
             {"--device td3c4 --dialect x" + output, "no dialect 'x'"},
             {"--device td3c4 --variant short,x" + output, "no variant 'x'"}, {"--deice td3c4", "no option '--deice'"},
             {"--device", "--device needs a word behind it"}}) {
        const Result result = run(words);
        EXPECT_EQ(result.status, 1) << words;
        EXPECT_EQ(result.text, std::string("lanefill-mkbit: ") + what + kMORE) << words;
    }
    EXPECT_EQ(folder.listing(), "");
}
