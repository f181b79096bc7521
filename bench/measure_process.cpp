// measure_process.cpp - runs a program and tells how long it took and how much memory.
// SPDX-License-Identifier: Apache-2.0
//
//   measure_process PROGRAM [WORDS...]
//
// Prints one line: seconds from start to exit, bytes of memory at the peak, exit status. What the program prints to
// standard output is dropped. A process inherits the peak of the one that starts it: this one keeps it under 1 MB.
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

double now() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

int exitStatus(int waitStatus) {
    return WIFEXITED(waitStatus) ? WEXITSTATUS(waitStatus) : 128 + WTERMSIG(waitStatus);
}

} // namespace

int main(int wordCount, char** words) {
    if (wordCount < 2) return 2;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    const double start = now();
    const int failure = posix_spawnp(&child, words[1], &actions, nullptr, words + 1, environ);
    if (failure != 0) {
        std::fprintf(stderr, "%s: %s\n", words[1], std::strerror(failure));
        return 127;
    }
    int waitStatus = 0;
    rusage usage{};
    if (wait4(child, &waitStatus, 0, &usage) != child) return 1;
    std::printf("%.9f %ld %d\n", now() - start, usage.ru_maxrss * 1024, exitStatus(waitStatus));
    return 0;
}
