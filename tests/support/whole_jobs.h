// whole_jobs.h - a small example of each job that the tool does, for tests that disturb whole runs.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_SUPPORT_WHOLE_JOBS_H
#define MEMDATA_TESTS_SUPPORT_WHOLE_JOBS_H

#include "support/temporary_folder.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace memdata::testing {

struct WholeJob {
    std::string name;               // letters only
    std::vector<std::string> words; // of the command line, for a run in the folder of the inputs; ends with status 0
    bool isSubCommand = false;      // the first word is none of the option text

    std::string text() const; // the option text of a run or a check
};

// The inputs of all jobs, of a device with a stream of 128 KB, and the folder "out" for what they write, with earlier
// files in it that some of them replace. Inside an engine lifetime.
void writeJobInputs(const TemporaryFolder& folder);

const std::vector<WholeJob>& wholeJobs();
const WholeJob& wholeJob(const std::string& name);

// All files of a folder by name, those of folders in it too, without the time that their headers tell.
using Files = std::map<std::string, std::string>;
Files filesIn(const std::filesystem::path& folder);

// What is wrong with the files that a run left which ended with a failure: each has to be as it was before, or as the
// undisturbed run makes it, and there are no others. Empty when nothing is.
std::string torn(const Files& before, const Files& undisturbed, const Files& now);

} // namespace memdata::testing

#endif
