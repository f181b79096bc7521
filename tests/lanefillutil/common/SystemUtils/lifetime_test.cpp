// lifetime_test.cpp - start-up and shut-down of the engine.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/lifetime.h"

#include "SystemUtils/alert_registry.h"
#include "SystemUtils/memory.h"
#include "support/alerts.h"

#include <gtest/gtest.h>

#include <string>

namespace memdata::testing {
namespace {

std::string gCalls; // what the finalization functions of a test did

void call_a() {
    gCalls += 'a';
}

void call_b() {
    gCalls += 'b';
}

class Lifetime : public ::testing::Test {
protected:
    Lifetime() { gCalls.clear(); }
};

// Everything of the process that a start or a run may change.
std::string state() {
    return std::string("tool ") + GetSystemToolName() + ", command " +
           (GetSystemCommand() == nullptr ? "none" : GetSystemCommand()) + ", usage " +
           std::to_string(getCurrentMemoryUsage()) + ", maximum " + std::to_string(getMaxMemoryUsage()) + ", blocks " +
           (gMemoryBlockList.head == nullptr ? "none" : "some") + ", alerts " + std::to_string(SavePrintAlerts()) +
           ", look-up " + (gAlertMessageLookupArray == nullptr ? "none" : "some");
}

TEST_F(Lifetime, AStartWithoutMemoryIsTold) {
    EXPECT_EQ(SystemResources().status(), 0);
    failTrackedAllocation(1);
    EXPECT_EQ(SystemResources().status(), 7);
    EXPECT_EQ(SystemResources().status(), 0);
}

TEST_F(Lifetime, TheLastEndRunsTheFinalizationFunctions) {
    EXPECT_EQ(InitializeSystemResources(), 0);
    EXPECT_EQ(InitializeSystemResources(), 0);
    EXPECT_EQ(RegisterSystemFinalizationFunction(call_a), 0);
    EXPECT_EQ(FinalizeSystemResources(), 0);
    EXPECT_EQ(gCalls, "");
    EXPECT_EQ(FinalizeSystemResources(), 0);
    EXPECT_EQ(gCalls, "a");
}

TEST_F(Lifetime, FinalizationFunctionsRunLastRegisteredFirstAndOnce) {
    {
        SystemResources system;
        RegisterSystemFinalizationFunction(call_a);
        RegisterSystemFinalizationFunction(call_b);
        RegisterSystemFinalizationFunction(call_b);
    }
    { SystemResources system; }
    EXPECT_EQ(gCalls, "bba");
}

void* gBlock = nullptr;

void release_block() {
    gCalls += releaseMemory(gBlock) == 0 ? "released " : "gone ";
}

TEST_F(Lifetime, TheSweepRunsAfterAllOtherFunctions) {
    {
        SystemResources system;
        RegisterSystemFinalizationFunction(release_block);
        gBlock = getMemory("block", 8);
    }
    EXPECT_EQ(gCalls, "released ");
    EXPECT_EQ(leakedBlockCount(), 0u);
}

TEST_F(Lifetime, TheSweepRunsAfterAFunctionThatWasRegisteredBeforeTheStart) {
    EXPECT_EQ(RegisterSystemFinalizationFunction(release_block), 0);
    {
        SystemResources system;
        gBlock = getMemory("block", 8);
    }
    EXPECT_EQ(gCalls, "released ");
}

TEST_F(Lifetime, TheLastEndSweepsWhatIsStillAllocated) {
    InitializeSystemResources();
    getMemory("lost", 100);
    InitializeSystemResources();
    FinalizeSystemResources();
    EXPECT_GE(getCurrentMemoryUsage(), 100u);
    FinalizeSystemResources();
    EXPECT_EQ(getCurrentMemoryUsage(), 0u);
    EXPECT_EQ(leakedBlockCount(), 1u);
}

TEST_F(Lifetime, NothingIsLeftToSweepAfterAFullUse) {
    {
        SystemResources system;
        RegisterSystemCommand("lanefill -bm a.bmm");
        RegisterSystemToolName("Other");
        releaseMemory(getMemory("block", 8));
    }
    EXPECT_EQ(leakedBlockCount(), 0u);
}

TEST_F(Lifetime, AnEndWithoutAStartIsRefused) {
    EXPECT_EQ(FinalizeSystemResources(), 3);
    EXPECT_EQ(InitializeSystemResources(), 0);
    RegisterSystemFinalizationFunction(call_a);
    EXPECT_EQ(FinalizeSystemResources(), 0);
    EXPECT_EQ(gCalls, "a");
    EXPECT_EQ(FinalizeSystemResources(), 3);
    EXPECT_EQ(FinalizeSystemResources(), 3);
}

TEST_F(Lifetime, TwoRoundsLeaveTheStateOfAFreshProcess) {
    const std::string fresh = state();
    EXPECT_EQ(fresh, "tool Lanefill, command none, usage 0, maximum 0, blocks none, alerts 62, look-up none");
    std::string started;
    for (int round = 0; round < 2; ++round) {
        {
            SystemResources system;
            if (round == 0) started = state();
            EXPECT_EQ(state(), started);
            RegisterSystemToolName("Other");
            RegisterSystemCommand("other");
            EnablePrintAlerts(0);
            getMemory("lost", 1000);
        }
        EXPECT_EQ(state(), fresh);
    }
}

TEST_F(Lifetime, StartUpMakesAnEmptyAlertRegistryThatTheSweepReleases) {
    const u64 usage = getCurrentMemoryUsage();
    SystemResources system;
    ASSERT_NE(gAlertMessageLookupArray, nullptr);
    EXPECT_EQ(gAlertMessageLookupArray[0], nullptr);
    EXPECT_EQ(getCurrentMemoryUsage(), usage + sizeof(void*));
}

TEST_F(Lifetime, AStartWithoutMemoryIsReportedAndStillCounted) {
    failTrackedAllocation(1);
    ::testing::internal::CaptureStdout(); // nothing else is set up that early
    EXPECT_EQ(InitializeSystemResources(), 7);
    const std::string output = ::testing::internal::GetCapturedStdout();
    EXPECT_NE(output.find("FATAL:Lanefill:44 - Out of memory"), std::string::npos);
    EXPECT_EQ(gAlertMessageLookupArray, nullptr);
    EXPECT_EQ(FinalizeSystemResources(), 0);
    EXPECT_EQ(FinalizeSystemResources(), 3);
}

TEST_F(Lifetime, TheThirtyThirdFunctionIsRefusedWithAMessage) {
    {
        SystemResources system;
        CapturedAlerts alerts;
        std::string expected;
        // Start-up has taken some of the 32 places: at least one, for the sweep.
        int status = 0;
        while ((status = RegisterSystemFinalizationFunction(call_a)) == 0 && expected.size() < 40) expected += 'a';
        EXPECT_EQ(status, 7);
        EXPECT_LT(expected.size(), 32u);
        EXPECT_GT(expected.size(), 20u);
        EXPECT_NE(alerts.text().find("INTERNAL_ERROR:Lanefill:86 - More than 32 system finalization functions were "
                                     "registered.\n"),
            std::string::npos);
        gCalls = std::string(expected.size(), 'x');
    }
    const std::string accepted(gCalls.size() / 2, 'x');
    EXPECT_EQ(gCalls, accepted + std::string(accepted.size(), 'a'));
}

TEST_F(Lifetime, FunctionsRegisteredBeforeTheStartLeaveAPlaceForTheSweep) {
    ::testing::internal::CaptureStdout();
    int accepted = 0;
    while (accepted < 40 && RegisterSystemFinalizationFunction(call_a) == 0) ++accepted;
    {
        SystemResources system; // whose own functions find no place any more
        getMemory("lost", 8);
    }
    const std::string output = ::testing::internal::GetCapturedStdout();
    EXPECT_EQ(accepted, 31);
    EXPECT_NE(output.find("More than 31 system finalization functions"), std::string::npos);
    EXPECT_NE(output.find("More than 32 system finalization functions"), std::string::npos);
    EXPECT_EQ(gCalls, std::string(31, 'a'));
    EXPECT_EQ(leakedBlockCount(), 1u);
}

TEST_F(Lifetime, AMissingFunctionIsRefused) {
    SystemResources system;
    CapturedAlerts alerts;
    EXPECT_EQ(RegisterSystemFinalizationFunction(nullptr), 3);
    EXPECT_NE(alerts.text().find("A finalization function to register was missing."), std::string::npos);
}

void register_and_start_again() {
    CapturedAlerts alerts;
    gCalls += std::to_string(RegisterSystemFinalizationFunction(call_a));
    gCalls += std::to_string(InitializeSystemResources());
    gCalls += alerts.text().find("INTERNAL_ERROR") == std::string::npos ? " silent" : " reported";
}

TEST_F(Lifetime, NothingIsRegisteredOrStartedWhileTheSystemIsBeingShutDown) {
    {
        SystemResources system;
        RegisterSystemFinalizationFunction(register_and_start_again);
    }
    EXPECT_EQ(gCalls, "33 reported");
    EXPECT_EQ(FinalizeSystemResources(), 3);
}

void note_command() {
    gCalls += GetSystemCommand() == nullptr ? "no command" : GetSystemCommand();
}

TEST_F(Lifetime, TheCommandIsReleasedBeforeTheFinalizationFunctionsRun) {
    {
        SystemResources system;
        RegisterSystemFinalizationFunction(note_command);
        RegisterSystemCommand("lanefill -h");
    }
    EXPECT_EQ(gCalls, "no command");
}

TEST_F(Lifetime, TheCommandIsACopyThatANewOneReplaces) {
    SystemResources system;
    EXPECT_EQ(GetSystemCommand(), nullptr);
    const u64 usage = getCurrentMemoryUsage();
    std::string text = "lanefill -h";
    EXPECT_EQ(RegisterSystemCommand(text.c_str()), 0);
    text[0] = 'x';
    EXPECT_STREQ(GetSystemCommand(), "lanefill -h");
    EXPECT_EQ(RegisterSystemCommand(GetSystemCommand()), 0);
    EXPECT_STREQ(GetSystemCommand(), "lanefill -h");
    EXPECT_EQ(RegisterSystemCommand(nullptr), 0);
    EXPECT_EQ(GetSystemCommand(), nullptr);
    EXPECT_EQ(getCurrentMemoryUsage(), usage);
}

TEST_F(Lifetime, ACommandWithoutMemoryKeepsTheOldOne) {
    SystemResources system;
    EXPECT_EQ(RegisterSystemCommand("old"), 0);
    CapturedAlerts alerts(0);
    failTrackedAllocation(1);
    EXPECT_EQ(RegisterSystemCommand("new"), 7);
    EXPECT_STREQ(GetSystemCommand(), "old");
}

TEST_F(Lifetime, AToolNameOfUpTo256CharactersIsTaken) {
    SystemResources system;
    for (size_t length : {size_t{0}, size_t{1}, size_t{255}, size_t{256}}) {
        const std::string name(length, 'n');
        RegisterSystemToolName(name.c_str());
        EXPECT_EQ(GetSystemToolName(), name);
    }
}

TEST_F(Lifetime, ALongerToolNameOrNoneIsIgnored) {
    SystemResources system;
    RegisterSystemToolName("Kept");
    RegisterSystemToolName(std::string(257, 'n').c_str());
    RegisterSystemToolName(std::string(100000, 'n').c_str());
    RegisterSystemToolName(nullptr);
    RegisterSystemToolName(GetSystemToolName());
    EXPECT_STREQ(GetSystemToolName(), "Kept");
}

TEST_F(Lifetime, AlertsAreRaisedUnderTheToolName) {
    SystemResources system;
    RegisterSystemToolName("Other");
    CapturedAlerts alerts;
    EXPECT_EQ(PrintError(kERROR_MESSAGE_STRING, 4, "text"), 4);
    EXPECT_EQ(alerts.text(), "\nERROR:Other:86 - text\n\n");
}

} // namespace
} // namespace memdata::testing
