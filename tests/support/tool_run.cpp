// tool_run.cpp - see tool_run.h.
// SPDX-License-Identifier: Apache-2.0
#include "support/tool_run.h"

#include "support/temporary_folder.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace memdata::testing {
namespace {

constexpr uid_t kNOBODY = 65534;
constexpr int kNOT_STARTED = 127;

bool redirect(int descriptor, const std::string& name) {
    const int file = open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    return file >= 0 && dup2(file, descriptor) >= 0;
}

bool limitFiles(unsigned long bytes) {
    const rlimit limit{bytes, bytes};
    return std::signal(SIGXFSZ, SIG_IGN) != SIG_ERR && setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

bool becomePlainUser() {
    return getuid() != 0 || (setgid(kNOBODY) == 0 && setuid(kNOBODY) == 0);
}

bool takeSetting(const ToolSetting& setting, const std::string& outFile, const std::string& errFile) {
    if (!redirect(STDOUT_FILENO, outFile) || !redirect(STDERR_FILENO, errFile)) return false;
    const int nothing = open("/dev/null", O_RDONLY);
    if (nothing < 0 || dup2(nothing, STDIN_FILENO) < 0) return false;
    if (!setting.folder.empty() && chdir(setting.folder.c_str()) != 0) return false;
    if (setting.maxFileBytes != 0 && !limitFiles(setting.maxFileBytes)) return false;
    for (const auto& [name, value] : setting.environment)
        if (setenv(name.c_str(), value.c_str(), 1) != 0) return false;
    return !setting.isPlainUser || becomePlainUser();
}

int statusOf(pid_t child) {
    int status = 0;
    if (waitpid(child, &status, 0) != child) throw std::runtime_error("a program was lost");
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

} // namespace

std::string toolName() {
    return std::string(MEMDATA_BUILD_DIR) + "/lanefill";
}

ToolResult runProgram(const std::string& program, const std::vector<std::string>& words, const ToolSetting& setting) {
    const TemporaryFolder results;
    const std::string out = setting.outFile.empty() ? results.file("out") : setting.outFile;
    const std::string err = results.file("err");
    std::vector<char*> arguments{const_cast<char*>(program.c_str())};
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("no program can be started");
    if (child == 0) {
        if (takeSetting(setting, out, err)) execvp(program.c_str(), arguments.data());
        _exit(kNOT_STARTED);
    }
    ToolResult result;
    result.status = statusOf(child);
    if (setting.outFile.empty()) result.out = readFile(out);
    result.err = readFile(err);
    return result;
}

ToolResult runTool(const std::vector<std::string>& words, const ToolSetting& setting) {
    return runProgram(toolName(), words, setting);
}

} // namespace memdata::testing
