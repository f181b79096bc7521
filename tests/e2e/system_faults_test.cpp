// system_faults_test.cpp - whole runs of the tool in which one call of the system goes wrong, for each call in turn: a
// run that fails says why and leaves only old or new files, a run that ends well has all of its results.
//
// MEMDATA_TOOL_FAULTS in the environment has each allocation of a run fail, not a sample; MEMDATA_TOOL_KILLS is the
// number of runs that are killed at a random moment, MEMDATA_TOOL_SEED their seed.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/lifetime.h"
#include "support/tool_run.h"
#include "support/whole_jobs.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <gmock/gmock.h>
#include <numeric>
#include <random>

namespace memdata::testing {
namespace {

using ::testing::HasSubstr;
using Words = std::vector<std::string>;

unsigned long fromEnvironment(const char* name, unsigned long otherwise) {
    const char* text = std::getenv(name);
    return text == nullptr ? otherwise : std::strtoul(text, nullptr, 0);
}

// What goes wrong, as the loaded library takes it.
struct Fault {
    std::string call;
    std::string how; // an error number, "short", "cut", "kill", "term"
    bool isToldWhy = true;
    bool rest = false; // from that call on

    static Fault error(const std::string& call, int number, bool isToldWhy = true) {
        return {call, std::to_string(number), isToldWhy};
    }
    bool isSignal() const { return how == "kill" || how == "term"; }
};

class SystemFaults : public ::testing::Test {
protected:
    SystemFaults() {
        const SystemResources resources;
        writeJobInputs(folder_);
        inputs_ = filesIn(folder_.path());
        before_ = filesIn(out_);
    }

    void SetUp() override {
        if (*MEMDATA_SANITIZE != '\0') GTEST_SKIP() << "skipped: a sanitizer takes the calls of the tool itself";
    }

    ToolResult run(const WholeJob& job, const std::map<std::string, std::string>& environment = {}) const {
        return runTool(job.words, {.folder = folder_.path(), .environment = environment});
    }
    ToolResult runWith(const WholeJob& job, const Fault& fault, unsigned long at) const {
        return run(job, {{"LD_PRELOAD", MEMDATA_SYSTEM_FAULTS}, {"MEMDATA_FAULT_CALL", fault.call},
                            {"MEMDATA_FAULT_HOW", fault.how}, {"MEMDATA_FAULT_AT", std::to_string(at)},
                            {"MEMDATA_FAULT_REST", fault.rest ? "1" : ""}, {"MEMDATA_FAULT_COUNT", counts_}});
    }
    unsigned long countOf(const WholeJob& job, const Fault& fault) const {
        runWith(job, fault, 0);
        return std::stoul(readFile(counts_));
    }

    void restore() const {
        const Files now = filesIn(out_);
        for (const auto& [name, contents] : now)
            if (!before_.contains(name)) std::filesystem::remove(out_ / name);
        for (const auto& [name, contents] : before_)
            if (!now.contains(name) || now.at(name) != contents) folder_.write("out/" + name, contents);
    }
    void restoreInputs() const {
        for (const auto& [name, contents] : inputs_)
            if (readFile(folder_.file(name)) != contents) folder_.write(name, contents);
    }

    // What is wrong with one run.
    std::string judge(
        const Fault& fault, const ToolResult& result, const ToolResult& good, const Files& goodFiles) const {
        const Files now = filesIn(out_);
        if (result.status == good.status) {
            if (now != goodFiles) return "the run ended well, but its files are others\n";
            return result.out == good.out ? "" : "the run ended well, but it printed something else\n";
        }
        std::string faults = torn(before_, goodFiles, now);
        if (fault.how == "kill") faults = withoutTemporaries(faults);
        if (fault.isSignal())
            return result.status == (fault.how == "kill" ? 137 : 143) ? faults : "it ended otherwise\n";
        if (result.status > 127) faults += "it was ended\n";
        if (result.all().empty()) faults += "nothing was said\n";
        const int error = std::atoi(fault.how.c_str());
        if (error != 0 && fault.isToldWhy && result.all().find(std::strerror(error)) == std::string::npos)
            faults += "the cause was not told\n";
        return faults;
    }

    // Of what a killed run may leave beside the old file: names that tell what they are.
    static std::string withoutTemporaries(const std::string& faults) {
        std::string others;
        for (size_t at = 0; at < faults.size();) {
            const size_t end = faults.find('\n', at) + 1;
            const std::string line = faults.substr(at, end - at);
            if (!line.starts_with(".memdata-") || line.find(".tmp was left behind") == line.npos) others += line;
            at = end;
        }
        return others;
    }

    std::string sweep(const WholeJob& job, const Fault& fault, const std::vector<unsigned long>& places,
        const ToolResult& good, const Files& goodFiles) {
        std::string faults;
        for (const unsigned long at : places) {
            restore();
            const ToolResult result = runWith(job, fault, at);
            const std::string wrong = judge(fault, result, good, goodFiles);
            if (!wrong.empty())
                faults += job.name + ", " + fault.call + " " + std::to_string(at) + " " + fault.how + ", status " +
                          std::to_string(result.status) + ": " + wrong + result.all();
            if (fault.how == "cut") restoreInputs();
            ++runs_;
        }
        return faults;
    }

    // Each of these calls of each of these jobs goes wrong once.
    std::string sweep(const Words& names, const std::vector<Fault>& faults) {
        std::string wrong;
        for (const std::string& name : names) {
            const WholeJob& job = wholeJob(name);
            restore();
            const ToolResult good = run(job);
            const Files goodFiles = filesIn(out_);
            for (const Fault& fault : faults) {
                restore();
                std::vector<unsigned long> places(countOf(job, fault));
                std::iota(places.begin(), places.end(), 1);
                wrong += sweep(job, fault, places, good, goodFiles);
            }
        }
        RecordProperty("runs", std::to_string(runs_));
        return wrong;
    }

    static Words allJobs() {
        Words names;
        for (const WholeJob& job : wholeJobs()) names.push_back(job.name);
        return names;
    }

    const TemporaryFolder folder_;
    const TemporaryFolder elsewhere_;
    const std::string counts_ = elsewhere_.file("count");
    const std::filesystem::path out_ = folder_.path() / "out";
    Files inputs_; // with the earlier files in out_
    Files before_; // these alone
    unsigned long runs_ = 0;
};

TEST_F(SystemFaults, WhatCannotBeWrittenIsReportedAndLeavesTheOldFile) {
    EXPECT_EQ(sweep(allJobs(),
                  {Fault::error("write", ENOSPC), Fault::error("copy", ENOSPC), Fault::error("fclose", EIO),
                      Fault::error("rename", EDQUOT), Fault::error("fdopen", EMFILE), Fault::error("ftruncate", EIO)}),
        "");
}

TEST_F(SystemFaults, WhatCannotBeReadIsReportedAndLeavesTheOldFile) {
    EXPECT_EQ(
        sweep(allJobs(), {Fault::error("open", EMFILE), Fault::error("read", EIO), Fault::error("mmap", ENOMEM)}), "");
}

TEST_F(SystemFaults, FactsThatCannotBeHadLeaveTheOldFile) {
    EXPECT_EQ(sweep({"MemFilesFromTexts", "PreprocessedText", "Replacement"},
                  {Fault::error("fstat", EIO, false), Fault::error("stat", EIO, false), Fault::error("close", EIO),
                      Fault::error("linkat", EIO), Fault::error("chmod", EPERM), Fault::error("unlink", EPERM)}),
        "");
}

TEST_F(SystemFaults, InterruptedAndShortTransfersChangeNothing) {
    for (const char* call : {"read", "write", "copy"})
        for (const std::string& how : {std::string("short"), std::to_string(EINTR)})
            EXPECT_EQ(sweep({"MemFilesFromTexts", "BitDump", "Replacement"}, {{call, how}}), "");
}

// Memory of the tool, be it tracked, of the standard library, of libelf or of the system's own library.
TEST_F(SystemFaults, ExhaustedMemoryIsReportedAndLeavesTheOldFile) {
    const bool isWhole = std::getenv("MEMDATA_TOOL_FAULTS") != nullptr;
    std::mt19937_64 random(fromEnvironment("MEMDATA_TOOL_SEED", 10));
    for (const std::string& name : allJobs()) {
        const WholeJob& job = wholeJob(name);
        // The start is much the same in all of them.
        const unsigned long eachUpTo = name == "PreprocessedText" || name == "DeviceTables" ? 160 : 5;
        restore();
        const ToolResult good = run(job);
        const Files goodFiles = filesIn(out_);
        for (Fault fault :
            {Fault::error("malloc", ENOMEM, false), Fault{"malloc", std::to_string(ENOMEM), false, true}}) {
            restore();
            const unsigned long count = countOf(job, fault);
            std::vector<unsigned long> places;
            for (unsigned long at = 1; at <= count; ++at)
                if (isWhole || at <= eachUpTo || random() % count < 8) places.push_back(at);
            EXPECT_EQ(sweep(job, fault, places, good, goodFiles), "");
        }
    }
    RecordProperty("runs", std::to_string(runs_));
}

// Files that another program cuts short while they are read.

TEST_F(SystemFaults, AFileThatIsCutShortIsReportedAndLeavesTheOldFile) {
    EXPECT_EQ(sweep(allJobs(), {{"read", "cut"}, {"mmap", "cut"}}), "");
}

TEST_F(SystemFaults, ACutFileIsNamed) {
    for (const auto& [call, at, name, message] : {
             std::tuple("mmap", 1, "MemFilesFromElf",
                 "Data file 'app.elf' cannot be read as an ELF file: it was changed or cut short while it was read.\n"),
             std::tuple("read", 4, "MemFilesFromTexts",
                 "File 'data.mem' can not be read: it was cut short while it was read.\n"),
             std::tuple(
                 "read", 6, "Replacement", "File 'top.bit' can not be read: it was cut short while it was read.\n"),
         }) {
        const ToolResult result = runWith(wholeJob(name), {call, "cut"}, static_cast<unsigned long>(at));
        EXPECT_NE(result.status, 0) << name;
        EXPECT_THAT(result.out, HasSubstr(message));
        restoreInputs();
    }
}

// Large bit files are mapped, window after window: whole pages are lost.
TEST_F(SystemFaults, ALargeBitFileThatIsCutShortIsReportedAndLeavesTheOldFile) {
    const std::string make = std::string(MEMDATA_BUILD_DIR) + "/lanefill-mkbit";
    ASSERT_EQ(runProgram(make, {"--device", "tq7a5", "-o", folder_.file("large.bit")}).status, 0); // 1.8 MB
    folder_.write("large.bmm", "ADDRESS_SPACE ram RAMB32 [0x1000:0x2FFF]\n"
                               "  BUS_BLOCK top/hi [15:8] LOC = X0Y3; top/lo [7:0] LOC = X0Y4; END_BUS_BLOCK;\n"
                               "END_ADDRESS_SPACE;\n");
    inputs_ = filesIn(folder_.path());
    const WholeJob job{
        "Large", {"-w", "-bm", "large.bmm", "-bd", "app.elf", "-bt", "large.bit", "-o", "b", "out/new.bit"}};
    const ToolResult good = run(job);
    ASSERT_EQ(good.status, 0) << good.all();
    const Files goodFiles = filesIn(out_);
    const Fault fault{"mmap", "cut"};
    restore();
    std::vector<unsigned long> places(countOf(job, fault));
    EXPECT_GE(places.size(), 3u);
    std::iota(places.begin(), places.end(), 1);
    EXPECT_EQ(sweep(job, fault, places, good, goodFiles), "");
    restore();
    EXPECT_THAT(runWith(job, fault, places.size()).out,
        HasSubstr("File 'large.bit' can not be read: it was changed or cut short while it was read.\n"));
}

// An end from outside.

TEST_F(SystemFaults, AKilledRunLeavesTheOldOrTheNewFileAtEveryPoint) {
    EXPECT_EQ(sweep({"MemFilesFromElf", "Replacement", "PreprocessedText"}, {{"any", "kill"}}), "");
}

TEST_F(SystemFaults, WhatAKilledRunLeavesDoesNotHinderTheNextOne) {
    const WholeJob& job = wholeJob("Replacement");
    ASSERT_EQ(run(job).status, 0);
    const Files good = filesIn(out_);
    restore();
    runWith(job, {"rename", "kill"}, 1); // the new file is complete and waits under a name of its own
    const Files left = filesIn(out_);
    EXPECT_EQ(left.size(), before_.size() + 1);
    EXPECT_EQ(left.at("new.bit"), "earlier\n");
    EXPECT_EQ(run(job).status, 0);
    EXPECT_EQ(filesIn(out_).at("new.bit"), good.at("new.bit"));
}

TEST_F(SystemFaults, AnEndedRunLeavesNoPieces) {
    EXPECT_EQ(sweep({"MemFilesFromElf", "Replacement", "PreprocessedText"}, {{"any", "term"}}), "");
}

TEST_F(SystemFaults, ARunKilledAtAnyMomentLeavesTheOldOrTheNewFile) {
    std::mt19937_64 random(fromEnvironment("MEMDATA_TOOL_SEED", 10));
    for (const char* name : {"Replacement", "MemFilesFromElf"}) {
        const WholeJob& job = wholeJob(name);
        restore();
        ASSERT_EQ(run(job).status, 0);
        const Files good = filesIn(out_);
        for (unsigned long i = 0; i < fromEnvironment("MEMDATA_TOOL_KILLS", 15); ++i) {
            restore();
            Words words{"-s", "KILL", "0." + std::to_string(1000 + random() % 8000).insert(0, "00"), toolName()};
            words.insert(words.end(), job.words.begin(), job.words.end());
            runProgram("timeout", words, {.folder = folder_.path()});
            EXPECT_EQ(withoutTemporaries(torn(before_, good, filesIn(out_))), "") << words[2];
        }
    }
}

} // namespace
} // namespace memdata::testing
