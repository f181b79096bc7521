// differential_jobs.h - random jobs for the differential test: a map, data, what is asked for.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_TESTS_E2E_DIFFERENTIAL_JOBS_H
#define MEMDATA_TESTS_E2E_DIFFERENTIAL_JOBS_H

#include "support/bit_maker.h"
#include "support/plain_memory.h"

#include <deque>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace memdata::testing {

class Dice {
public:
    explicit Dice(u64 seed) : random_(seed) {}
    u64 below(u64 limit) { return random_() % limit; }
    bool oneIn(u64 count) { return below(count) == 0; }
    bool percent(u64 share) { return below(100) < share; }
    template<class T>
    const T& pick(const std::vector<T>& values) {
        return values[below(values.size())];
    }
    std::mt19937_64& engine() { return random_; }

private:
    std::mt19937_64 random_;
};

struct JobFile { // given with -bd
    std::string name;
    Bytes contents;
    std::string modifiers; // boot, start, tag
    PlainData data;
    bool is64Bit = false;
};

struct JobInit { // that a lane starts from
    const PlainLane* lane;
    std::string name;
    std::string contents;
    std::vector<PlainSegment> segments;
};

struct JobOutput { // of MEM files
    std::string folder;
    std::vector<std::string> tags;
};

struct JobBit {
    BitRecipe recipe;
    bool inTwoSteps = false; // the last data file goes into the result of the others
    std::vector<std::pair<const PlainLane*, MemorySite>> sites;
};

struct Job {
    PlainMap map;
    std::string mapText;
    std::deque<JobFile> files;
    std::deque<JobInit> inits;
    std::vector<JobOutput> outputs;
    std::optional<JobBit> bit;
    bool runsInit = false;      // -a
    bool updatesAll = false;    // -u
    bool sharesFiles = false;   // the environment asks for lane and check lane in a file
    bool throughTool = false;   // the built tool, not the engine in this process
    std::string furtherOptions; // that change nothing
    std::set<std::string> features;
};

std::unique_ptr<Job> makeJob(u64 seed);

} // namespace memdata::testing

#endif
