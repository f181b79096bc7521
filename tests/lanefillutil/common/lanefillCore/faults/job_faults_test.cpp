// job_faults_test.cpp - whole jobs with one allocation failing: each ends with a status and a word about it, nothing is
// lost, files are old or new.
//
// The first allocations of a job fail one after the other, of the rest a random sample. MEMDATA_JOB_FAULTS=all in the
// environment has all of them fail, MEMDATA_JOB_FAULTS_SEED takes another sample.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/bit_commands.h"
#include "CmdParseUtils/CmdParseUtils.h"
#include "SystemUtils/SystemUtils.h"
#include "lanefillCore/bit_check.h"
#include "lanefillCore/data_files.h"
#include "lanefillCore/driver.h"
#include "lanefillCore/option_run.h"
#include "new_faults.h"
#include "support/alerts.h"
#include "support/bit_maker.h"
#include "support/host_messages.h"
#include "support/whole_jobs.h"

#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <new>
#include <random>

namespace memdata::testing {
namespace {

constexpr u64 kEACH = 300;    // allocations that fail one after the other
constexpr u64 kSAMPLED = 100; // of the others

// A kind of allocation that can be told to fail.
struct FaultKind {
    std::string name;
    void (*fail)(u64 n);
    u64 (*count)();
};
std::ostream& operator<<(std::ostream& out, const FaultKind& kind) {
    return out << kind.name;
}
const FaultKind kKINDS[] = {
    {"Tracked", failTrackedAllocation, trackedAllocationCount},
    {"New", failNew, newCount},
};

struct Outcome {
    int status = 0;
    bool isThrown = false; // std::bad_alloc came out
    std::string said;
    u64 lostBlocks = 0; // that only the sweep of the shut-down found
};

class InFolder {
public:
    explicit InFolder(const TemporaryFolder& folder) : old_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder.path());
    }
    ~InFolder() { std::filesystem::current_path(old_); }
    InFolder& operator=(InFolder&&) = delete; // neither copied nor moved

private:
    std::filesystem::path old_;
};

std::vector<u64> faultNumbers(u64 count) {
    const char* wanted = std::getenv("MEMDATA_JOB_FAULTS");
    const u64 each = wanted != nullptr && std::string(wanted) == "all" ? count : std::min(count, kEACH);
    std::vector<u64> numbers;
    for (u64 n = 1; n <= each; ++n) numbers.push_back(n);
    if (each == count) return numbers;
    const char* seed = std::getenv("MEMDATA_JOB_FAULTS_SEED");
    std::mt19937_64 random(seed == nullptr ? 10 : std::strtoull(seed, nullptr, 0));
    for (u64 i = 0; i < kSAMPLED; ++i) numbers.push_back(each + 1 + random() % (count - each));
    return numbers;
}

using Job = std::function<int()>; // gives its status

// The stream of a device in memory, changed in place by the data of a map.
int replaceInPlace(const char* optionText) {
    static const Bytes kSTREAM = makeBit({.device = "td6a24"}).stream;
    static Bytes image;
    image = kSTREAM;
    OwnedOptions options;
    int count = -1;
    int status = ParseCmdStringOptions(optionText, options.get(), &count);
    Tracked<AddressMappingType, close_bmm_addressMapping> mapping;
    if (status == 0) status = open_bmm_addressMapping(options.get(), mapping.out());
    bool is64Bit = false;
    if (status == 0) status = transform_data_files(options.get(), mapping.get(), is64Bit, nullptr, nullptr);
    if (status != 0) return status;
    return DoInplaceBITReplacement(mapping->device, image.data(), image.size(), mapping.get(), nullptr);
}

int runWithHeader(const char* optionText) {
    const int status = RegisterSystemCommand(optionText);
    return status != 0 ? status : runOptions(optionText).status;
}

constexpr const char* kCHECK = "Check";
constexpr const char* kIN_PLACE = "InPlace";

Job jobOf(const std::string& name) {
    const std::string text = wholeJob(name == kIN_PLACE ? kCHECK : name).text();
    if (name == kCHECK) return [text] { return runBitCheck(text.c_str()).status; };
    if (name == kIN_PLACE) return [text] { return replaceInPlace(text.c_str()); };
    return [text] { return runWithHeader(text.c_str()); };
}

class JobFaults : public ::testing::TestWithParam<std::tuple<FaultKind, std::string>> {
protected:
    JobFaults() {
        const SystemResources resources;
        writeJobInputs(folder_);
        inputs_ = filesIn(folder_.path());
        before_ = filesIn(out_);
    }

    // One run as a process of its own would do it, with the n-th allocation failing; 0 for none.
    Outcome run(const Job& job, u64 n) {
        Outcome outcome;
        std::unique_ptr<CapturedAlerts> alerts;
        {
            const SystemResources resources;
            alerts = std::make_unique<CapturedAlerts>();
            kind_.fail(n);
            const u64 countBefore = kind_.count();
            try {
                outcome.status = job();
            } catch (const std::bad_alloc&) {
                outcome.isThrown = true;
                outcome.status = 7; // as the tool says it
            }
            allocations_ = kind_.count() - countBefore;
            kind_.fail(0);
            outcome.said = alerts->text() + messages_.text();
            messages_.clear();
            alerts.reset();
        }
        outcome.lostBlocks = leakedBlockCount();
        return outcome;
    }

    std::string sweep(const Job& job, bool writes) {
        std::string faults;
        const InFolder here(folder_);
        run(job, 0); // makes what a process makes once
        if (const Outcome outcome = run(job, 0); outcome.status != 0) return "undisturbed: " + outcome.said;
        const u64 count = allocations_;
        const Files undisturbed = filesIn(out_);
        if ((undisturbed == before_) == writes) return "the job wrote " + std::string(writes ? "nothing" : "files");
        restore(undisturbed);
        const u64 bytesBefore = getCurrentMemoryUsage();
        for (const u64 n : faultNumbers(count)) {
            const Outcome outcome = run(job, n);
            std::string fault;
            if (outcome.status == 0) fault += "the run ended with status 0\n";
            if (outcome.status != 0 && !outcome.isThrown && outcome.said.empty()) fault += "nothing was said\n";
            if (outcome.lostBlocks != 0) fault += std::to_string(outcome.lostBlocks) + " blocks were lost\n";
            if (getCurrentMemoryUsage() != bytesBefore) fault += "memory stays in use\n";
            const Files now = filesIn(out_);
            fault += torn(before_, undisturbed, now);
            if (now != before_) restore(now);
            if (!fault.empty()) faults += "allocation " + std::to_string(n) + ": " + fault + outcome.said + "\n";
            if (faults.size() > 4000) break;
        }
        RecordProperty("allocations", std::to_string(count));
        if (const Outcome outcome = run(job, 0); outcome.status != 0 || filesIn(out_) != undisturbed)
            faults += "a run after them is another one\n" + outcome.said;
        restore(filesIn(out_));
        if (filesIn(folder_.path()) != inputs_) faults += "inputs were changed\n";
        return faults;
    }

    void restore(const Files& now) {
        for (const auto& [name, contents] : now)
            if (!before_.contains(name)) std::filesystem::remove(out_ / name);
        for (const auto& [name, contents] : before_)
            if (!now.contains(name) || now.at(name) != contents) folder_.write("out/" + name, contents);
    }

    const FaultKind kind_ = std::get<0>(GetParam());
    const TemporaryFolder folder_;
    const std::filesystem::path out_ = folder_.path() / "out";
    CapturedMessages messages_;
    Files inputs_;        // with the earlier files in out_
    Files before_;        // these alone
    u64 allocations_ = 0; // of the latest run
};

TEST_P(JobFaults, LeaveFilesAndMemoryWhole) {
    const auto& [kind, name] = GetParam();
    EXPECT_EQ(sweep(jobOf(name), name != kCHECK && name != kIN_PLACE), "");
}

std::vector<std::string> jobNames() {
    std::vector<std::string> names{kCHECK, kIN_PLACE};
    for (const WholeJob& job : wholeJobs())
        if (!job.isSubCommand) names.push_back(job.name);
    return names;
}

std::string caseName(const ::testing::TestParamInfo<JobFaults::ParamType>& info) {
    return std::get<0>(info.param).name + std::get<1>(info.param);
}

INSTANTIATE_TEST_SUITE_P(
    Jobs, JobFaults, ::testing::Combine(::testing::ValuesIn(kKINDS), ::testing::ValuesIn(jobNames())), caseName);

} // namespace
} // namespace memdata::testing
