// run_inputs.h - which files a run has read: none of them may become its output.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_RUN_INPUTS_H
#define MEMDATA_PLATFORM_RUN_INPUTS_H

#include <string>

namespace memdata {

// A run. Files that are read while one stands are its inputs; runs may stand inside of each other, and the outermost
// forgets them at its end. One thread.
class RunInputs {
public:
    RunInputs();
    ~RunInputs();
    RunInputs& operator=(RunInputs&&) = delete; // neither copied nor moved
};

// Every way to read a file says so here. What is no regular file is passed over.
void noteRunInput(int descriptor);

// Whether a name, links followed, is a file that the run has read.
bool isRunInput(const std::string& name);

} // namespace memdata

#endif
