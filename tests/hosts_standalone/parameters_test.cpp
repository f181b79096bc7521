// parameters_test.cpp - the parameter table of the standalone host.
// SPDX-License-Identifier: Apache-2.0
#include "hosts/standalone/parameters.h"

#include "platform/HEXAll.h"

namespace {

using memdata::StandaloneParameters;

struct ParameterTable : ::testing::Test {
    StandaloneParameters table;
    void SetUp() override {
        table.registerBoolParam("group.second", "The second by name.", true);
        table.registerBoolParam("group.first", "The first by name.", false);
    }
};

} // namespace

TEST_F(ParameterTable, ListsInTheOrderOfRegistration) {
    std::string all;
    for (const StandaloneParameters::Parameter& parameter : table.list())
        all += parameter.name + "|" + parameter.description + "|" + (parameter.defaultValue ? "true" : "false") + "\n";
    EXPECT_EQ(all, "group.second|The second by name.|true\n"
                   "group.first|The first by name.|false\n");
}

TEST_F(ParameterTable, AValueThatWasSetIsRead) {
    EXPECT_TRUE(table.setValue("group.first", true));
    EXPECT_TRUE(table.getValueAsBool("group.first"));
    EXPECT_FALSE(table.find("group.first")->defaultValue);
}

TEST_F(ParameterTable, AnUnknownNameCannotBeSet) {
    EXPECT_FALSE(table.setValue("group.third", true));
    EXPECT_EQ(table.setValueFromText("group.third", "true"), StandaloneParameters::kUNKNOWN_NAME);
    EXPECT_EQ(table.list().size(), 2U);
    EXPECT_EQ(table.find("group.third"), nullptr);
}

TEST_F(ParameterTable, NamesAreComparedToTheLetter) {
    EXPECT_FALSE(table.setValue("Group.first", true));
    EXPECT_FALSE(table.setValue("group.first ", true));
}

TEST_F(ParameterTable, TakesTheUsualWordsForTrueAndFalse) {
    for (const char* word : {"true", "TRUE", "on", "Yes", "1"}) {
        table.setValue("group.first", false);
        EXPECT_EQ(table.setValueFromText("group.first", word), StandaloneParameters::kSET) << word;
        EXPECT_TRUE(table.getValueAsBool("group.first")) << word;
    }
    for (const char* word : {"false", "False", "OFF", "no", "0"}) {
        table.setValue("group.first", true);
        EXPECT_EQ(table.setValueFromText("group.first", word), StandaloneParameters::kSET) << word;
        EXPECT_FALSE(table.getValueAsBool("group.first")) << word;
    }
}

TEST_F(ParameterTable, AnyOtherWordChangesNothing) {
    for (const char* word : {"", "2", "maybe", "true "}) {
        EXPECT_EQ(table.setValueFromText("group.second", word), StandaloneParameters::kNO_BOOLEAN) << word;
        EXPECT_TRUE(table.getValueAsBool("group.second")) << word;
    }
}

TEST_F(ParameterTable, ResetGivesAllDefaultsBack) {
    table.setValue("group.first", true);
    table.setValue("group.second", false);
    table.resetToDefaults();
    EXPECT_FALSE(table.getValueAsBool("group.first"));
    EXPECT_TRUE(table.getValueAsBool("group.second"));
}

TEST_F(ParameterTable, ASecondRegistrationKeepsTheValue) {
    table.setValue("group.first", true);
    table.registerBoolParam("group.first", "New words.", false);
    EXPECT_TRUE(table.getValueAsBool("group.first"));
    EXPECT_EQ(table.find("group.first")->description, "New words.");
    EXPECT_EQ(table.list().size(), 2U);
}

TEST_F(ParameterTable, KeepsTheLifeCycleOfTheParameterThatGotOne) {
    table.setLifeCycle("group.second", HPAParamLifeStatus{2});
    EXPECT_EQ(static_cast<int>(table.find("group.second")->lifeCycle), 2);
    EXPECT_EQ(static_cast<int>(table.find("group.first")->lifeCycle), 0);
    EXPECT_THROW(table.setLifeCycle("group.third", HPAParamLifeStatus{2}), HEXAlgException);
}
