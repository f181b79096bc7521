// progress_test.cpp - what a run tells of how far it is: each stage, rising, to its whole.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/SystemUtils.h"
#include "lanefillCore/bit_check.h"
#include "lanefillCore/option_run.h"
#include "support/alerts.h"
#include "support/bit_builder.h"
#include "support/bit_maker.h"
#include "support/elf_builder.h"
#include "support/host_progress.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <vector>

namespace memdata::testing {
namespace {

struct Told {
    std::string stage;
    std::vector<int> percents;
};
std::vector<Told> gTold; // of the sink
int gEndAt = 101;

void add(std::vector<Told>& told, std::string_view stage, int percent) {
    if (told.empty() || told.back().stage != stage) told.push_back({std::string(stage), {}});
    told.back().percents.push_back(percent);
}

int keep(int percent, const char* text, void (*abort)(unsigned)) {
    add(gTold, text, percent);
    if (percent >= gEndAt) abort(0);
    return 0;
}

// "Reading 'x'...: 3 rising to 100, ..."
std::string summary(const std::vector<Told>& told) {
    std::string text;
    for (const Told& stage : told) {
        bool rises = true;
        for (size_t i = 1; i < stage.percents.size(); ++i) rises = rises && stage.percents[i - 1] < stage.percents[i];
        text += stage.stage + " " + std::to_string(stage.percents.size()) +
                (rises ? " rising to " : " NOT rising to ") + std::to_string(stage.percents.back()) + "\n";
    }
    return text;
}

// What the host hears.
struct HostTold {
    std::vector<Told> told;
    CapturedProgress display{[this](std::string_view stage, int percent) { add(told, stage, percent); }};
};

// Bytes behind two lanes of a byte.
std::string mapOf(u64 byteCount) {
    const std::string words = "[0:" + std::to_string(byteCount / 2 - 1) + "];\n";
    return "ADDRESS_SPACE ram MEMORY [0:" + std::to_string(byteCount - 1) + "]\nBUS_BLOCK hi [15:8] " + words +
           "lo [7:0] " + words + "END_BUS_BLOCK;\nEND_ADDRESS_SPACE;\n";
}

std::string elfOf(u64 byteCount) {
    return std::string(textOf(elfFile({.segments = {{.bytes = Bytes(byteCount, 'x')}}})));
}

class RunProgress : public ::testing::Test {
protected:
    RunProgress() : oldFolder_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder.path());
        gTold.clear();
        gEndAt = 101;
    }
    ~RunProgress() override { std::filesystem::current_path(oldFolder_); }

    void writeBitJob() {
        folder.write("map.bmm", "ADDRESS_SPACE ram RAMB16 [0x0:0x7FF]\nBUS_BLOCK a [7:0]; END_BUS_BLOCK;\n"
                                "END_ADDRESS_SPACE;\n");
        folder.write("app.mem", "@0 AA\n");
        folder.write("top.bit", textOf(bitFileOf({}, makeBit({}).stream)));
    }

    SystemResources resources_;
    CapturedAlerts alerts;
    TemporaryFolder folder;

private:
    std::filesystem::path oldFolder_;
};

TEST_F(RunProgress, ASmallRunTellsEachStageUpToItsWhole) {
    folder.write("map.bmm", mapOf(16));
    folder.write("app.mem", "@0 00 11\n@8 22 33 44 55 66 77\n");
    ASSERT_EQ(runOptions("-bm map.bmm -bd app.mem -bx", keep).status, 0) << alerts.text();
    EXPECT_EQ(summary(gTold), "Reading 'app.mem'... 1 rising to 100\n"
                              "Translating 'app.mem'... 2 rising to 100\n"
                              "Writing MEM files to '.'... 2 rising to 100\n");
    ASSERT_EQ(gTold.size(), 3u);
    EXPECT_EQ(gTold[1].percents, (std::vector{25, 100}));
    EXPECT_EQ(gTold[2].percents, (std::vector{50, 100}));
}

TEST_F(RunProgress, EachDataFileAndFolderIsAStage) {
    folder.write("map.bmm", mapOf(16));
    folder.write("a.mem", "@0 00\n");
    folder.write("b.mem", "@4 00\n");
    std::filesystem::create_directory("out");
    ASSERT_EQ(runOptions("-bm map.bmm -bd a.mem -bd b.mem -bx -bx out", keep).status, 0) << alerts.text();
    std::string stages;
    for (const Told& stage : gTold) stages += stage.stage + "\n";
    EXPECT_EQ(stages, "Reading 'a.mem'...\nTranslating 'a.mem'...\nReading 'b.mem'...\nTranslating 'b.mem'...\n"
                      "Writing MEM files to '.'...\nWriting MEM files to 'out'...\n");
}

TEST_F(RunProgress, OneLargeSegmentIsTranslatedAndWrittenInSteps) {
    constexpr u64 kBYTES = u64{4} << 20;
    folder.write("map.bmm", mapOf(kBYTES));
    folder.write("app.elf", elfOf(kBYTES));
    ASSERT_EQ(runOptions("-bm map.bmm -bd app.elf -bx", keep).status, 0) << alerts.text();
    ASSERT_EQ(gTold.size(), 2u);
    EXPECT_EQ(gTold[0].stage, "Translating 'app.elf'...");
    EXPECT_EQ(gTold[0].percents, (std::vector{12, 25, 37, 50, 62, 75, 87, 100}));
    EXPECT_GE(gTold[1].percents.size(), 20u) << summary(gTold);
    EXPECT_LE(gTold[1].percents.size(), 100u);
}

TEST_F(RunProgress, SegmentsOutsideOfTheMapCountAsDone) {
    folder.write("map.bmm", mapOf(16));
    folder.write("app.mem", "@1000 00 11\n@0 22 33\n");
    ASSERT_EQ(runOptions("-bm map.bmm -bd app.mem", keep).status, 0) << alerts.text();
    EXPECT_EQ(gTold.back().percents, (std::vector{50, 100}));
}

TEST_F(RunProgress, AFailedStageDoesNotTellItsWhole) {
    folder.write("map.bmm", mapOf(16));
    folder.write("app.mem", "@0 00 11\n@E 22 33 44\n"); // ends behind the space
    EXPECT_EQ(runOptions("-bm map.bmm -bd app.mem", keep).status, 7);
    EXPECT_EQ(gTold.back().percents, (std::vector{40}));
}

TEST_F(RunProgress, TheSinkCanEndTheTranslation) {
    constexpr u64 kBYTES = u64{4} << 20;
    folder.write("map.bmm", mapOf(kBYTES));
    folder.write("app.elf", elfOf(kBYTES));
    gEndAt = 30;
    EXPECT_EQ(runOptions("-bm map.bmm -bd app.elf -bx", keep).status, 15);
    EXPECT_EQ(gTold.back().percents, (std::vector{12, 25, 37}));
    EXPECT_FALSE(std::filesystem::exists("ram_0.mem"));
}

TEST_F(RunProgress, TheSinkCanEndTheWritingAndNoFileIsCut) {
    folder.write("map.bmm", mapOf(16));
    folder.write("app.mem", "@0 00 11\n");
    gEndAt = 50;
    int (*const endWriting)(
        int, const char*, void (*)(unsigned)) = [](int percent, const char* text, void (*abort)(unsigned)) {
        return std::string(text).starts_with("Writing") ? keep(percent, text, abort) : 0;
    };
    EXPECT_EQ(runOptions("-bm map.bmm -bd app.mem -bx", endWriting).status, 15);
    EXPECT_TRUE(std::filesystem::exists("ram_0.mem"));
    EXPECT_FALSE(std::filesystem::exists("ram_1.mem"));
}

TEST_F(RunProgress, TheHostHearsOfMapsAndOfStagesWithoutASink) {
    folder.write("map.bmm", mapOf(16));
    folder.write("app.mem", "@0 00 11\n");
    HostTold host;
    ASSERT_EQ(runOptions("-bm map.bmm -bd app.mem").status, 0) << alerts.text();
    EXPECT_EQ(summary(host.told), "Reading 'map.bmm'... 3 rising to 100\n"
                                  "Reading 'app.mem'... 2 rising to 100\n"
                                  "Translating 'app.mem'... 2 rising to 100\n");
}

// The callback of a replacement is silent for files of real size. The host hears of it nevertheless.
TEST_F(RunProgress, ANewBitFileIsTheHostsToShow) {
    writeBitJob();
    HostTold host;
    ASSERT_EQ(runOptions("-bm map.bmm -bd app.mem -bt top.bit -o b new.bit", keep).status, 0) << alerts.text();
    for (const Told& stage : gTold) EXPECT_TRUE(stage.stage.ends_with("'app.mem'...")) << stage.stage;
    ASSERT_EQ(host.told.size(), 2u) << summary(host.told);
    EXPECT_EQ(host.told[1].stage, "Writing 'new.bit'...");
    EXPECT_GE(host.told[1].percents.size(), 4u) << summary(host.told);
    EXPECT_TRUE(summary(host.told).ends_with(" rising to 100\n")) << summary(host.told);
}

TEST_F(RunProgress, ADumpToAFileIsTheHostsToShow) {
    writeBitJob();
    HostTold host;
    ASSERT_EQ(runOptions("-bm map.bmm -d -bt top.bit -o d top.dmp").status, 0) << alerts.text();
    ASSERT_EQ(host.told.size(), 2u);
    EXPECT_EQ(host.told[1].stage, "Dumping 'top.bit'...");
    EXPECT_TRUE(summary(host.told).ends_with(" rising to 100\n")) << summary(host.told);
}

TEST_F(RunProgress, ACheckIsTheHostsToShow) {
    writeBitJob();
    HostTold host;
    EXPECT_EQ(runBitCheck("-bm map.bmm -bd app.mem -bt top.bit").status, kBIT_FILE_DIFFERS);
    ASSERT_EQ(host.told.size(), 4u) << summary(host.told);
    EXPECT_EQ(host.told[3].stage, "Checking 'top.bit'...");
    EXPECT_TRUE(summary(host.told).ends_with(" rising to 100\n")) << summary(host.told);
}

TEST_F(RunProgress, AnElfFileAsMemTextIsTheHostsToShow) {
    folder.write("app.elf", elfOf(100000));
    HostTold host;
    ASSERT_EQ(runOptions("-d -bd app.elf -o m app.mem").status, 0) << alerts.text();
    EXPECT_EQ(summary(host.told), "Dumping 'app.elf'... 9 rising to 100\n");
}

} // namespace
} // namespace memdata::testing
