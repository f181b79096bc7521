// child_process.cpp - runs a part of a test in a child, which may die or give up rights.
// SPDX-License-Identifier: Apache-2.0

#include "file_test.h"

#include <sys/wait.h>
#include <unistd.h>

int memdata::testing::exitStatusOfChild(const std::function<int()>& action) {
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) _exit(action()); // nothing of the parent is cleaned up twice
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
    return WEXITSTATUS(status);
}
