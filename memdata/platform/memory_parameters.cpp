// memory_parameters.cpp - the parameters of the library: the table, and its way into a parameter manager.
// SPDX-License-Identifier: Apache-2.0
#include "platform/memory_parameters.h"

#include "platform/HPAParamMgr.h"

namespace {

constexpr int kNO_LIFE_CYCLE = 0;

struct MemoryParameter {
    const char* name;
    bool defaultValue;
    int lifeCycle; // a HPAParamLifeStatus, set right after the parameter is registered
    const char* description;
};

// In the order of registration. Names and descriptions are the interface, blanks and spelling included;
// parameters that nothing reads stay, so that setting them succeeds.
constexpr MemoryParameter kMEMORY_PARAMETERS[] = {
    {"memdata.debugLanefill", false, kNO_LIFE_CYCLE,
        "Parameter to turn on (all) debug output for the lanefill library."},
    {"memdata.debugLanefillTranslator", false, kNO_LIFE_CYCLE,
        "Parameter to turn on (all) debug output associated with the translator code."},
    {"memdata.debugProcessorMgr", false, kNO_LIFE_CYCLE,
        "Parameter to turn on debug output associated with the processor manager code."},
    {"memdata.debugMemoryMaps", false, kNO_LIFE_CYCLE,
        "Parameter to turn on (all) debug output when using Halcyon memory maps."},
    {"memdata.allowConsoleDebugMsgs", false, kNO_LIFE_CYCLE,
        "Parameter to turn on internal lanefill messages that are displayed in the console. These can be INFO/STATUS/ALERT messages; they are all managed with this single parameter. WARNING/ERROR messages will always be displayed."},
    {"memdata.debugLegacyMessages", false, kNO_LIFE_CYCLE,
        "Parameter to turn on internal lanefill messages that are displayed in the console. Some of the common examples are ERROR::80 or ERROR::79"},
    {"memdata.disableAnnotatedBMM", false, kNO_LIFE_CYCLE,
        "Default is to write the annotated BMM file. TRUE will stop the writing to disk - all in memory process."},
    {"memdata.disableBRAMInitStrings", false, kNO_LIFE_CYCLE,
        "Parameter to turn off the data population of BRAM INIT strings."},
    {"memdata.ignoreEmbeddedBMMProperties", false, kNO_LIFE_CYCLE,
        "Parameter to ignore looking for and processing embedded BMM properties. Essentially forcing a BMM file to supercede the embedded properties."},
    {"memdata.ignoreBMM_INFO_DESIGNProperty", false, kNO_LIFE_CYCLE,
        "Parameter to ignore looking for and processing the BMM_INFO_DESIGN property. Essentially forcing a BMM file to supercede the property."},
    {"memdata.generateBMM_INFO_DESIGNProperty", false, kNO_LIFE_CYCLE,
        "Parameter to force the regeneration of the BMM_INFO_DESIGN property."},
    {"memdata.useFilesetForAddressSpaceTags", false, 2,
        "Parameter to use the fileset (the .bd file) instead of the new way of using the netlist for finding the Address Space Tags for SDK."},
    {"memdata.simulationIncludeSrcset", false, kNO_LIFE_CYCLE,
        "Simulation parameter to include the process of ELF files that are in the corresponding src_set."},
    {"memdata.enableTLCinBDF", false, kNO_LIFE_CYCLE,
        "Enable TLC designs that are in BDF to correctly resolve both BMM and ELF files."},
    {"memdata.enableDRQinBDF", true, kNO_LIFE_CYCLE,
        "Enable DRQ designs that are in BDF to correctly add DRQ/TLC processor data."},
    {"memdata.useOnlySTR_STC", false, kNO_LIFE_CYCLE,
        "Force the usage of SCOPED_TO_REF and SCOPED_TO_CELLS values for ELF files when writing the run scripts."},
    {"memdata.useNonScopedBmmFile", false, kNO_LIFE_CYCLE,
        "Force the usage of the BMM File even if the STR/STC are empty. Default is FALSE."},
    {"memdata.ignoreProcessorVisibilityFlag", false, kNO_LIFE_CYCLE,
        "Ignore the processor visibilty flag and always add/show the default elf file that is delivered with the processor composite file. Default setting is false "},
    {"memdata.enableOPMCreationOfMMIFile", true, kNO_LIFE_CYCLE,
        "For OPM designs Tessara does not write out an .mmi file. Set this param to write the .mmi for OPM based designs. Default setting is true "},
    {"memdata.enableUnevenBitLanes", false, kNO_LIFE_CYCLE,
        "Allow BRAM population for uneven bitlanes per busblock. Typically this is not a customer supported flow. Default setting is false "},
    {"memdata.enableMemoryPopulationForEMG", true, kNO_LIFE_CYCLE,
        "For Halcyon EMG designs allow the algorithms to populate the EMG BRAMS. Default setting is true."},
    {"memdata.enableUseOfBmmFilesForHalcyon", false, kNO_LIFE_CYCLE,
        "For Halcyon flows we do not use .bmm files and only use processor data/memory maps. Override and allow the use of .bmm files. Default setting is false."},
    {"memdata.useOPMMemoryArrayInMMIFile", true, kNO_LIFE_CYCLE,
        "For OPM designs use the memory array format instead of the processor based format. Default setting is true "},
    {"memdata.allowOPMAsymmetricalBRAMS", false, kNO_LIFE_CYCLE,
        "For OPM designs do not allow asymmetrical BRAM configurations. Default is false."},
    {"memdata.allowOPMROMBRAMS", false, kNO_LIFE_CYCLE,
        "For OPM designs do not allow ROM BRAM configurations. Default is false."},
    {"memdata.allowMemoryInitPerOOC2", false, kNO_LIFE_CYCLE,
        "For OOC2 we only allow memory initialization for runs that have processors and elf files. Setting this param will force memory initialization to be executed. It might still fail. Default is false."},
    {"memdata.forceMemoryInitForProject", false, kNO_LIFE_CYCLE,
        "Force the memory initialization to occur a project. This param might be used for when combining dcp files, RTL Kernel flow or when stitching dcp files and then link design. Memory initialization still might still fail for various other reasons.. Default is false."},
    {"memdata.allowMemInitDRCs", false, kNO_LIFE_CYCLE,
        "Allow the memory initialization drc rules to be added and executed. Default is false."},
    {"memdata.useMemoryMapInfoForInitialization", false, kNO_LIFE_CYCLE,
        "Force memory initialization through MEMORY_MAP_INFO attribute present on netlist. After setting this memdata will not check memory_map on processor nodes."},
    {"bramsync.debugDataFileLoad", false, kNO_LIFE_CYCLE,
        "Parameter to turn on (all) debug output for reading and processing .mem or .elf file."},
    {"bramsync.debugDumpInitString", false, kNO_LIFE_CYCLE,
        "Parameter to turn on the dumping of the BRAM Init Strings."},
};

// A manager tells a name that it does not know by giving back whatever default it is asked with.
bool knows(const HPAParamMgr& manager, const char* name) {
    return manager.getValueIfExistAsBool(name, false) == manager.getValueIfExistAsBool(name, true);
}

} // namespace

namespace memdata {

void registerMemoryParameters(HPAParamMgr& manager) {
    for (const MemoryParameter& parameter : kMEMORY_PARAMETERS) {
        if (knows(manager, parameter.name)) continue;
        manager.registerBoolParam(parameter.name, parameter.description, parameter.defaultValue);
        if (parameter.lifeCycle != kNO_LIFE_CYCLE)
            manager.setLifeCycle(parameter.name, HPAParamLifeStatus{parameter.lifeCycle});
    }
}

} // namespace memdata
