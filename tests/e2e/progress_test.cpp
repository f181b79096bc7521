// progress_test.cpp - the progress bar of the built tool on a terminal.
// SPDX-License-Identifier: Apache-2.0
#include "tool_folder.h"

#include <gmock/gmock.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace memdata::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char* kAT_ONCE = "--param=lanefill.progressBarDelay=off";
constexpr char kDRAW[] = "\r\x1B[K"; // begins each line of the bar, and takes it away

struct TerminalRun {
    int status = -1;
    std::string written; // to the terminal
};

// What stands on the terminal in the end: a carriage return goes back to the start of the line, the terminal's command
// empties it.
std::string screenOf(const std::string& written) {
    std::string screen;
    std::string line;
    size_t column = 0;
    for (size_t i = 0; i < written.size(); ++i) {
        if (written[i] == '\r') {
            column = 0;
        } else if (written[i] == '\n') {
            screen += std::exchange(line, "") + "\n";
            column = 0;
        } else if (written.compare(i, 3, "\x1B[K") == 0) {
            line.resize(column);
            i += 2;
        } else {
            line.resize(std::max(line.size(), column + 1));
            line[column++] = written[i];
        }
    }
    return screen + line;
}

class ProgressBars : public ToolFolder {
protected:
    // Skips a test where the system gives no terminals, as in a bare chroot.
    void SetUp() override {
        int master = -1;
        int slave = -1;
        if (openpty(&master, &slave, nullptr, nullptr, nullptr) != 0) GTEST_SKIP() << "no terminals here";
        close(master);
        close(slave);
    }

    TerminalRun show(
        std::vector<std::string> words, const std::string& variable = "TERM=xterm", unsigned short columns = 80) {
        winsize size{24, columns, 0, 0};
        int terminal = -1;
        words.insert(words.begin(), toolName());
        const pid_t child = forkpty(&terminal, nullptr, nullptr, &size);
        if (child == 0) start(words, variable);
        TerminalRun run;
        char buffer[4096];
        for (ssize_t count = 0; (count = read(terminal, buffer, sizeof buffer)) > 0;)
            run.written.append(buffer, static_cast<size_t>(count));
        close(terminal);
        int status = 0;
        waitpid(child, &status, 0);
        run.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        return run;
    }

    using ToolFolder::read;

private:
    static ssize_t read(int file, char* buffer, size_t size) { return ::read(file, buffer, size); }

    [[noreturn]] void start(const std::vector<std::string>& words, const std::string& variable) {
        std::vector<char*> arguments;
        for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
        arguments.push_back(nullptr);
        unsetenv("NO_PROGRESS");
        setenv("TERM", "xterm", 1);
        putenv(const_cast<char*>(variable.c_str()));
        if (chdir(folder_.path().c_str()) == 0) execv(arguments[0], arguments.data());
        _exit(127);
    }
};

TEST_F(ProgressBars, AreTakenAwayAtTheEnd) {
    const TerminalRun run = show({kAT_ONCE, "-bm", "soc.bmm", "-bd", "data.mem", "-bx"});
    EXPECT_EQ(run.status, 0) << run.written;
    EXPECT_THAT(run.written, HasSubstr("]   0% Reading 'soc.bmm'..."));
    EXPECT_EQ(screenOf(run.written), "");
}

TEST_F(ProgressBars, DoNotMixWithMessages) {
    folder_.write("large.mem", "@80000000 00\n@80001FFC 00 11 22 33 44\n");
    const std::vector<std::string> words{kAT_ONCE, "-bm", "soc.bmm", "-bd", "large.mem", "-bx"};
    const TerminalRun bar = show(words);
    EXPECT_EQ(bar.status, 7);
    EXPECT_THAT(bar.written, HasSubstr(kDRAW));
    const std::string plain = show(words, "TERM=dumb").written;
    EXPECT_THAT(plain, Not(HasSubstr("\x1B")));
    EXPECT_EQ(screenOf(bar.written), screenOf(plain));
    EXPECT_THAT(screenOf(plain), HasSubstr("does not fit"));
}

TEST_F(ProgressBars, AlsoShowTheWritingOfABitFile) {
    folder_.write("lone.bmm", "ADDRESS_SPACE ram RAMB16 [0:0x7FF]\n BUS_BLOCK\n  a [7:0] LOC = X0Y0;\n END_BUS_BLOCK;\n"
                              "END_ADDRESS_SPACE;\n");
    folder_.write("one.mem", "@0 11\n");
    ASSERT_EQ(
        runProgram(MEMDATA_BUILD_DIR "/lanefill-mkbit", {"--device", "td3c4", "-o", folder_.file("top.bit")}).status,
        0);
    const TerminalRun run =
        show({kAT_ONCE, "-bt", "top.bit", "-bm", "lone.bmm", "-bd", "one.mem", "-o", "b", "new.bit"});
    EXPECT_EQ(run.status, 0) << run.written;
    EXPECT_THAT(run.written, HasSubstr(kDRAW));
    EXPECT_EQ(screenOf(run.written), "");
}

TEST_F(ProgressBars, StayOnOneLineOfANarrowTerminal) {
    const TerminalRun run = show({kAT_ONCE, "-bm", "soc.bmm", "-bd", "data.mem", "-bx"}, "TERM=xterm", 20);
    EXPECT_THAT(run.written, HasSubstr("\r\x1B[K  0% Reading 'soc.b\r\x1B[K"));
}

TEST_F(ProgressBars, DoNotAppearInAShortRun) {
    EXPECT_EQ(show({"-bm", "soc.bmm", "-bd", "data.mem", "-bx"}).written, "");
}

TEST_F(ProgressBars, DoNotAppearWhereTheyAreNotWanted) {
    const std::vector<std::string> words{kAT_ONCE, "-w", "-bm", "soc.bmm", "-bd", "data.mem", "-bx"};
    for (const char* variable : {"TERM=dumb", "TERM=", "NO_PROGRESS=1"})
        EXPECT_EQ(show(words, variable).written, "") << variable;
    std::vector<std::string> without = words;
    without.insert(without.begin(), "--param=lanefill.progressBar=off");
    EXPECT_EQ(show(without).written, "");
}

TEST_F(ProgressBars, DoNotAppearOffATerminal) {
    EXPECT_EQ(run({kAT_ONCE, "-bm", "soc.bmm", "-bd", "data.mem", "-bx"}).all(), "");
}

TEST_F(ProgressBars, LeaveStagesToTheLinesThatWereAskedFor) {
    const TerminalRun run = show({kAT_ONCE, "-pg", "-bm", "soc.bmm", "-bd", "data.mem", "-bx"});
    EXPECT_EQ(screenOf(run.written), "Reading 'data.mem'... 100%\n"
                                     "Translating 'data.mem'... 100%\n"
                                     "Writing MEM files to '.'... 25%\n"
                                     "Writing MEM files to '.'... 50%\n"
                                     "Writing MEM files to '.'... 75%\n"
                                     "Writing MEM files to '.'... 100%\n");
}

} // namespace
} // namespace memdata::testing
