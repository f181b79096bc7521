// memory_parameters_test.cpp - the library's parameters, against a table typed on its own.
// SPDX-License-Identifier: Apache-2.0
#include "platform/memory_parameters.h"

#include "platform/HEXAll.h"
#include "platform/HPAParamMgr.h"

#include <map>

namespace {

struct ExpectedParameter {
    const char* name;
    bool value;
};

constexpr ExpectedParameter kEXPECTED[] = {
    {"memdata.debugLanefill", false},
    {"memdata.debugLanefillTranslator", false},
    {"memdata.debugProcessorMgr", false},
    {"memdata.debugMemoryMaps", false},
    {"memdata.allowConsoleDebugMsgs", false},
    {"memdata.debugLegacyMessages", false},
    {"memdata.disableAnnotatedBMM", false},
    {"memdata.disableBRAMInitStrings", false},
    {"memdata.ignoreEmbeddedBMMProperties", false},
    {"memdata.ignoreBMM_INFO_DESIGNProperty", false},
    {"memdata.generateBMM_INFO_DESIGNProperty", false},
    {"memdata.useFilesetForAddressSpaceTags", false},
    {"memdata.simulationIncludeSrcset", false},
    {"memdata.enableTLCinBDF", false},
    {"memdata.enableDRQinBDF", true},
    {"memdata.useOnlySTR_STC", false},
    {"memdata.useNonScopedBmmFile", false},
    {"memdata.ignoreProcessorVisibilityFlag", false},
    {"memdata.enableOPMCreationOfMMIFile", true},
    {"memdata.enableUnevenBitLanes", false},
    {"memdata.enableMemoryPopulationForEMG", true},
    {"memdata.enableUseOfBmmFilesForHalcyon", false},
    {"memdata.useOPMMemoryArrayInMMIFile", true},
    {"memdata.allowOPMAsymmetricalBRAMS", false},
    {"memdata.allowOPMROMBRAMS", false},
    {"memdata.allowMemoryInitPerOOC2", false},
    {"memdata.forceMemoryInitForProject", false},
    {"memdata.allowMemInitDRCs", false},
    {"memdata.useMemoryMapInfoForInitialization", false},
    {"bramsync.debugDataFileLoad", false},
    {"bramsync.debugDumpInitString", false},
};

// Writes down what it is told, in order.
class RecordingManager : public HPAParamMgr {
public:
    void registerBoolParam(std::string_view name, std::string_view description, bool defaultValue) override {
        calls += "register " + std::string(name) + (defaultValue ? " true\n" : " false\n");
        descriptions[std::string(name)] = description;
        values[std::string(name)] = defaultValue;
    }
    void setLifeCycle(std::string_view name, HPAParamLifeStatus status) override {
        calls += "life " + std::string(name) + " " + std::to_string(static_cast<int>(status)) + "\n";
    }
    bool getValueAsBool(std::string_view name) const override { return values.at(std::string(name)); }
    bool getValueIfExistAsBool(std::string_view name, bool defaultValue) const override {
        const auto place = values.find(std::string(name));
        return place == values.end() ? defaultValue : place->second;
    }
    bool getValueIfExistAsCoalescedBool(std::string_view name, bool defaultValue) const override {
        return getValueIfExistAsBool(name, defaultValue);
    }

    std::string calls;
    std::map<std::string, std::string> descriptions;
    std::map<std::string, bool> values;
};

std::string expectedCalls() {
    std::string calls;
    for (const ExpectedParameter& parameter : kEXPECTED) {
        const std::string name = parameter.name;
        calls += "register " + name + (parameter.value ? " true\n" : " false\n");
        if (name == "memdata.useFilesetForAddressSpaceTags") calls += "life " + name + " 2\n";
    }
    return calls;
}

// Read by a static initialiser of this file, whichever order the files' initialisers have.
const bool gReadBeforeMain = HPAParamMgr::getParamMgr().getValueAsBool("memdata.enableDRQinBDF");

} // namespace

TEST(MemoryParameters, AreRegisteredInOrderWithTheirDefaultsAndOneLifeCycle) {
    RecordingManager manager;
    memdata::registerMemoryParameters(manager);
    EXPECT_EQ(manager.calls, expectedCalls());
}

TEST(MemoryParameters, AreRegisteredOnceWithAManagerThatKnowsThem) {
    RecordingManager manager;
    memdata::registerMemoryParameters(manager);
    manager.calls.clear();
    memdata::registerMemoryParameters(manager);
    EXPECT_EQ(manager.calls, "");
}

TEST(MemoryParameters, KeepTheValueThatAManagerHasAlready) {
    RecordingManager manager;
    manager.values["memdata.debugLanefill"] = true;
    memdata::registerMemoryParameters(manager);
    EXPECT_TRUE(manager.values["memdata.debugLanefill"]);
}

TEST(MemoryParameters, HoldTheirDefaultsWhenTheLibraryIsLoaded) {
    const HPAParamMgr& manager = HPAParamMgr::getParamMgr();
    for (const ExpectedParameter& parameter : kEXPECTED)
        EXPECT_EQ(manager.getValueAsBool(parameter.name), parameter.value) << parameter.name;
}

TEST(MemoryParameters, CanBeReadByStaticInitialisers) {
    EXPECT_TRUE(gReadBeforeMain);
}

// Texts are the interface: a double full stop, a missing one, a blank at the end.
TEST(MemoryParameters, HaveTheirDescriptionsToTheLetter) {
    RecordingManager manager;
    memdata::registerMemoryParameters(manager);
    const std::map<std::string, std::string>& texts = manager.descriptions;
    EXPECT_EQ(texts.at("memdata.debugLanefill"), "Parameter to turn on (all) debug output for the lanefill library.");
    EXPECT_EQ(texts.at("memdata.debugLegacyMessages"),
        "Parameter to turn on internal lanefill messages that are displayed in the console. Some of the common "
        "examples are ERROR::80 or ERROR::79");
    EXPECT_EQ(texts.at("memdata.ignoreEmbeddedBMMProperties"),
        "Parameter to ignore looking for and processing embedded BMM properties. Essentially forcing a BMM file to "
        "supercede the embedded properties.");
    EXPECT_EQ(texts.at("memdata.ignoreProcessorVisibilityFlag"),
        "Ignore the processor visibilty flag and always add/show the default elf file that is delivered with the "
        "processor composite file. Default setting is false ");
    EXPECT_EQ(texts.at("memdata.enableOPMCreationOfMMIFile"),
        "For OPM designs Tessara does not write out an .mmi file. Set this param to write the .mmi for OPM based "
        "designs. Default setting is true ");
    EXPECT_EQ(texts.at("memdata.forceMemoryInitForProject"),
        "Force the memory initialization to occur a project. This param might be used for when combining dcp files, "
        "RTL Kernel flow or when stitching dcp files and then link design. Memory initialization still might still "
        "fail for various other reasons.. Default is false.");
    EXPECT_EQ(texts.at("memdata.useMemoryMapInfoForInitialization"),
        "Force memory initialization through MEMORY_MAP_INFO attribute present on netlist. After setting this memdata "
        "will not check memory_map on processor nodes.");
    EXPECT_EQ(texts.at("bramsync.debugDumpInitString"), "Parameter to turn on the dumping of the BRAM Init Strings.");
}

TEST(MemoryParameters, AnUnknownNameThrowsAndIsNamed) {
    try {
        HPAParamMgr::getParamMgr().getValueAsBool("memdata.noSuchThing");
        FAIL() << "nothing was thrown";
    } catch (const HEXAlgException& error) {
        EXPECT_THAT(error.getMessage(), ::testing::HasSubstr("memdata.noSuchThing"));
    }
}

TEST(MemoryParameters, AParameterThatMayNotExistGivesTheDefaultOfTheQuestion) {
    const HPAParamMgr& manager = HPAParamMgr::getParamMgr();
    EXPECT_FALSE(manager.getValueIfExistAsBool("project.enableLorimerBDFPRFlow", false));
    EXPECT_TRUE(manager.getValueIfExistAsBool("project.enableLorimerBDFPRFlow", true));
    EXPECT_FALSE(manager.getValueIfExistAsCoalescedBool("project.enableLorimerBDFPRFlow", false));
    EXPECT_TRUE(manager.getValueIfExistAsCoalescedBool("project.enableLorimerBDFPRFlow", true));
    EXPECT_TRUE(manager.getValueIfExistAsBool("memdata.enableDRQinBDF", false));
    EXPECT_TRUE(manager.getValueIfExistAsCoalescedBool("memdata.enableDRQinBDF", false));
}
