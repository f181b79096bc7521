// register_maps.h - the registers and commands of the configuration logic, a table per group of families.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_DEVICE_TABLE_UTILS_REGISTER_MAPS_H
#define MEMDATA_DEVICE_TABLE_UTILS_REGISTER_MAPS_H

#include "platform/BasicTypes.h"

#include <initializer_list>

namespace memdata {

inline constexpr size_t kREGISTER_NAMES = 256;
inline constexpr size_t kREGISTER_KINDS = 72;

// The registers of a group of families, by address.
struct RegisterMap {
    const char* names[kREGISTER_NAMES]; // null beyond the group's list
    u32 kinds[kREGISTER_KINDS];         // 0 beyond the group's list
};

// The CMD values of a group of families.
struct CommandMap {
    const char* names[kREGISTER_NAMES]; // null beyond the group's list
};

struct RegisterRow {
    u32 kind; // of the stream walker's handlers; 255 none
    const char* name;
};

consteval RegisterMap registersOf(std::initializer_list<RegisterRow> rows) {
    RegisterMap map{};
    size_t address = 0;
    for (const RegisterRow& row : rows) {
        map.names[address] = row.name;
        map.kinds[address] = row.kind;
        ++address;
    }
    return map;
}

consteval CommandMap commandsOf(std::initializer_list<const char*> names) {
    CommandMap map{};
    size_t value = 0;
    for (const char* name : names) map.names[value++] = name;
    return map;
}

// clang-format off

// Registers by address: handler kind, name in a dump.

inline constexpr RegisterMap kFIRST_REGISTERS = registersOf({
    /*  0 */ {  0, "CRC (CRC Check)"},
    /*  1 */ {  1, "FAR (Frame Address)"},
    /*  2 */ {  2, "FDRI (Frame Data Input)"},
    /*  3 */ {  3, "FDRO (Frame Data Output)"},
    /*  4 */ {  4, "CMD (Command)"},
    /*  5 */ {  5, "CTL (Control)"},
    /*  6 */ {  6, "MASK (Control Mask)"},
    /*  7 */ {  7, "STAT (Status)"},
    /*  8 */ {  8, "LOUT (Daisy Chain Data Output)"},
    /*  9 */ {  9, "COR (Configuration Options)"},
    /* 10 */ { 10, "MFWR (Multiple Frame Write)"},
    /* 11 */ { 11, "FLR (Frame Length)"},
});

inline constexpr RegisterMap kTARSEL_II_REGISTERS = registersOf({
    /*  0 */ {  0, "CRC (CRC Check)"},
    /*  1 */ {  1, "FAR (Frame Address)"},
    /*  2 */ {  2, "FDRI (Frame Data Input)"},
    /*  3 */ {  3, "FDRO (Frame Data Output)"},
    /*  4 */ {  4, "CMD (Command)"},
    /*  5 */ {  5, "CTL (Control)"},
    /*  6 */ {  6, "MASK (Control Mask)"},
    /*  7 */ {  7, "STAT (Status)"},
    /*  8 */ {  8, "LOUT (Daisy Chain Data Output)"},
    /*  9 */ {  9, "COR (Configuration Options)"},
    /* 10 */ { 10, "MFWR (Multiple Frame Write)"},
    /* 11 */ { 11, "FLR (Frame Length)"},
    /* 12 */ { 16, "KEY (Decryption Key)"},
    /* 13 */ { 19, "CBC (Cipher Block Chaining)"},
    /* 14 */ { 12, "IDCODE (Device Identification)"},
});

inline constexpr RegisterMap kDUNMARE_III_REGISTERS = registersOf({
    /*  0 */ {  0, "CRC (CRC Check)"},
    /*  1 */ {  1, "FAR (Frame Address)"},
    /*  2 */ {  2, "FDRI (Frame Data Input)"},
    /*  3 */ {  3, "FDRO (Frame Data Output)"},
    /*  4 */ {  4, "CMD (Command)"},
    /*  5 */ {  5, "CTL (Control)"},
    /*  6 */ {  6, "MASK (Control Mask)"},
    /*  7 */ {  7, "STAT (Status)"},
    /*  8 */ {  8, "LOUT (Daisy Chain Data Output)"},
    /*  9 */ {  9, "COR (Configuration Options)"},
    /* 10 */ { 10, "MFWR (Multiple Frame Write)"},
    /* 11 */ { 11, "FLR (Frame Length)"},
    /* 12 */ {255, "Reserved"},
    /* 13 */ {255, "Reserved"},
    /* 14 */ { 12, "IDCODE (Device Identification)"},
    /* 15 */ { 34, "SNOWPLOW (Configuration Speed-up)"},
    /* 16 */ { 35, "TEST (Test)"},
});

inline constexpr RegisterMap kTARSEL_4_REGISTERS = registersOf({
    /*  0 */ {  0, "CRC (CRC Check)"},
    /*  1 */ {  1, "FAR (Frame Address)"},
    /*  2 */ {  2, "FDRI (Frame Data Input)"},
    /*  3 */ {  3, "FDRO (Frame Data Output)"},
    /*  4 */ {  4, "CMD (Command)"},
    /*  5 */ {  5, "CTL (Control)"},
    /*  6 */ {  6, "MASK (Control Mask)"},
    /*  7 */ {  7, "STAT (Status)"},
    /*  8 */ {  8, "LOUT (Daisy Chain Data Output)"},
    /*  9 */ {  9, "COR (Configuration Options)"},
    /* 10 */ { 10, "MFWR (Multiple Frame Write)"},
    /* 11 */ { 19, "CBC (Cipher Block Chaining)"},
    /* 12 */ { 12, "IDCODE (Device Identification)"},
    /* 13 */ { 20, "AXSS (User Access Word)"},
});

// Addresses 25 to 28 are of kind 0 on purpose: the CRC handler takes them.
inline constexpr RegisterMap kTARSEL_5_REGISTERS = registersOf({
    /*  0 */ {  0, "CRC (CRC Check)"},
    /*  1 */ {  1, "FAR (Frame Address)"},
    /*  2 */ {  2, "FDRI (Frame Data Input)"},
    /*  3 */ {  3, "FDRO (Frame Data Output)"},
    /*  4 */ {  4, "CMD (Command)"},
    /*  5 */ {  5, "CTL (Control)"},
    /*  6 */ {  6, "MASK (Control Mask)"},
    /*  7 */ {  7, "STAT (Status)"},
    /*  8 */ {  8, "LOUT (Daisy Chain Data Output)"},
    /*  9 */ {  9, "COR (Configuration Options)"},
    /* 10 */ { 10, "MFWR (Multiple Frame Write)"},
    /* 11 */ { 19, "CBC (Cipher Block Chaining)"},
    /* 12 */ { 12, "IDCODE (Device Identification)"},
    /* 13 */ { 20, "AXSS (User Access Word)"},
    /* 14 */ { 18, "COR1 (Second Configuration Options)"},
    /* 15 */ { 21, "CSOB (Chip Select Output)"},
    /* 16 */ { 22, "WBSTAR (Warm Boot Start Address)"},
    /* 17 */ { 23, "TIMER (Watchdog Timer)"},
    /* 18 */ { 24, "RBCRC0 (Readback CRC 0)"},
    /* 19 */ { 25, "RBCRC1 (Readback CRC 1)"},
    /* 20 */ { 26, "RBCRC2 (Readback CRC 2)"},
    /* 21 */ { 27, "EFAR (Error Frame Address)"},
    /* 22 */ { 28, "BOOTSTS (Boot Status)"},
    /* 23 */ { 29, "TESTMODE (Test Mode)"},
    /* 24 */ { 17, "CTL1 (Second Control)"},
    /* 25 */ {  0, "MEMRD_PARAM (Memory Read Parameters)"},
    /* 26 */ {  0, "DWC (Data Word Count)"},
    /* 27 */ {  0, "TRIM0 (Trim 0)"},
    /* 28 */ {  0, "TRIM1 (Trim 1)"},
});

inline constexpr RegisterMap kTARSEL_6_REGISTERS = registersOf({
    /*  0 */ {  0, "CRC (CRC Check)"},
    /*  1 */ {  1, "FAR (Frame Address)"},
    /*  2 */ {  2, "FDRI (Frame Data Input)"},
    /*  3 */ {  3, "FDRO (Frame Data Output)"},
    /*  4 */ {  4, "CMD (Command)"},
    /*  5 */ {  5, "CTL (Control)"},
    /*  6 */ {  6, "MASK (Control Mask)"},
    /*  7 */ {  7, "STAT (Status)"},
    /*  8 */ {  8, "LOUT (Daisy Chain Data Output)"},
    /*  9 */ {  9, "COR (Configuration Options)"},
    /* 10 */ { 10, "MFWR (Multiple Frame Write)"},
    /* 11 */ { 19, "CBC (Cipher Block Chaining)"},
    /* 12 */ { 12, "IDCODE (Device Identification)"},
    /* 13 */ { 20, "AXSS (User Access Word)"},
    /* 14 */ { 18, "COR1 (Second Configuration Options)"},
    /* 15 */ { 21, "CSOB (Chip Select Output)"},
    /* 16 */ { 22, "WBSTAR (Warm Boot Start Address)"},
    /* 17 */ { 23, "TIMER (Watchdog Timer)"},
    /* 18 */ { 24, "RBCRC0 (Readback CRC 0)"},
    /* 19 */ { 25, "RBCRC1 (Readback CRC 1)"},
    /* 20 */ { 26, "RBCRC2 (Readback CRC 2)"},
    /* 21 */ { 27, "EFAR (Error Frame Address)"},
    /* 22 */ { 28, "BOOTSTS (Boot Status)"},
    /* 23 */ { 29, "TESTMODE (Test Mode)"},
    /* 24 */ { 17, "CTL1 (Second Control)"},
    /* 25 */ { 30, "MEMRD_PARAM (Memory Read Parameters)"},
    /* 26 */ { 31, "DWC (Data Word Count)"},
    /* 27 */ { 32, "TRIM0 (Trim 0)"},
    /* 28 */ { 33, "TRIM1 (Trim 1)"},
});

// On purpose the handler of BOUT (kind 70) answers to address 30, under the name of the neighbouring entry.
inline constexpr RegisterMap kTARSEL_7_REGISTERS = registersOf({
    /*  0 */ {  0, "CRC (CRC Check)"},
    /*  1 */ {  1, "FAR (Frame Address)"},
    /*  2 */ {  2, "FDRI (Frame Data Input)"},
    /*  3 */ {  3, "FDRO (Frame Data Output)"},
    /*  4 */ {  4, "CMD (Command)"},
    /*  5 */ {  5, "CTL (Control)"},
    /*  6 */ {  6, "MASK (Control Mask)"},
    /*  7 */ {  7, "STAT (Status)"},
    /*  8 */ {  8, "LOUT (Daisy Chain Data Output)"},
    /*  9 */ {  9, "COR (Configuration Options)"},
    /* 10 */ { 10, "MFWR (Multiple Frame Write)"},
    /* 11 */ { 19, "CBC (Cipher Block Chaining)"},
    /* 12 */ { 12, "IDCODE (Device Identification)"},
    /* 13 */ { 20, "AXSS (User Access Word)"},
    /* 14 */ { 18, "COR1 (Second Configuration Options)"},
    /* 15 */ { 64, "PCAP (Processor Access Port)"},
    /* 16 */ { 22, "WBSTAR (Warm Boot Start Address)"},
    /* 17 */ { 23, "TIMER (Watchdog Timer)"},
    /* 18 */ { 65, "RBCRC_HW (Hardware Readback CRC)"},
    /* 19 */ { 66, "RBCRC_SW (Software Readback CRC)"},
    /* 20 */ { 67, "RBCRC_LIVE (Running Readback CRC)"},
    /* 21 */ { 27, "EFAR (Error Frame Address)"},
    /* 22 */ { 28, "BOOTSTS (Boot Status)"},
    /* 23 */ { 29, "TESTMODE (Test Mode)"},
    /* 24 */ { 17, "CTL1 (Second Control)"},
    /* 25 */ { 30, "MEMRD_PARAM (Memory Read Parameters)"},
    /* 26 */ { 31, "DWC (Data Word Count)"},
    /* 27 */ { 68, "TRIM (Trim)"},
    /* 28 */ {255, "FUSE_STAT (Fuse Status)"},
    /* 29 */ { 69, "BOUT (Cobalt intra-die daisy chain)"},
    /* 30 */ { 70, "BSPI (BPI (SPI Parameters)"},
    /* 31 */ { 71, nullptr},
});

inline constexpr RegisterMap kDUNMARE_IIIA_REGISTERS = registersOf({
    /*  0 */ {  0, "CRC (CRC Check)"},
    /*  1 */ {  1, "FAR_MAJ (Frame Address, Block and Major)"},
    /*  2 */ { 36, "FAR_MIN (Frame Address, Minor)"},
    /*  3 */ {  2, "FDRI (Frame Data Input)"},
    /*  4 */ {  3, "FDRO (Frame Data Output)"},
    /*  5 */ {  4, "CMD (Command)"},
    /*  6 */ {  5, "CTL (Control)"},
    /*  7 */ {  6, "MASK (Control Mask)"},
    /*  8 */ {  7, "STAT (Status)"},
    /*  9 */ {  8, "LOUT (Daisy Chain Data Output)"},
    /* 10 */ {  9, "COR1 (Configuration Options)"},
    /* 11 */ { 18, "COR2 (Second Configuration Options)"},
    /* 12 */ { 37, "PWRDN_REG (Power Down Options)"},
    /* 13 */ { 11, "FLR (Frame Length)"},
    /* 14 */ { 12, "IDCODE (Device Identification)"},
    /* 15 */ { 34, "SNOWPLOW (Configuration Speed-up)"},
    /* 16 */ { 38, "HC_OPT_REG (Hot Configuration Options)"},
    /* 17 */ {255, "Reserved"},
    /* 18 */ { 21, "CSBO (Chip Select Output)"},
    /* 19 */ { 39, "GENERAL1 (Boot Address, Low)"},
    /* 20 */ { 40, "GENERAL2 (Boot Address, High)"},
    /* 21 */ { 41, "MODE_REG (Reboot Mode)"},
    /* 22 */ { 42, "PU_GWE (Power Up GWE Cycle)"},
    /* 23 */ { 43, "PU_GTS (Power Up GTS Cycle)"},
    /* 24 */ { 10, "MFWR (Multiple Frame Write)"},
    /* 25 */ { 44, "CCLK_FREQ (Master Clock Frequency)"},
    /* 26 */ { 45, "SEU_OPT (Frame Check Options)"},
    /* 27 */ { 46, "EXP_SIGN (Expected Readback Signature)"},
    /* 28 */ { 47, "RDBK_SIGN (Readback Signature)"},
});

inline constexpr RegisterMap kDUNMARE_6_REGISTERS = registersOf({
    /*  0 */ {  0, "CRC (CRC Check)"},
    /*  1 */ {  1, "FAR_MAJ (Frame Address, Block and Major)"},
    /*  2 */ { 36, "FAR_MIN (Frame Address, Minor)"},
    /*  3 */ {  2, "FDRI (Frame Data Input)"},
    /*  4 */ {  3, "FDRO (Frame Data Output)"},
    /*  5 */ {  4, "CMD (Command)"},
    /*  6 */ {  5, "CTL (Control)"},
    /*  7 */ {  6, "MASK (Control Mask)"},
    /*  8 */ {  7, "STAT (Status)"},
    /*  9 */ {  8, "LOUT (Daisy Chain Data Output)"},
    /* 10 */ {  9, "COR1 (Configuration Options)"},
    /* 11 */ { 18, "COR2 (Second Configuration Options)"},
    /* 12 */ { 37, "PWRDN_REG (Power Down Options)"},
    /* 13 */ { 11, "FLR (Frame Length)"},
    /* 14 */ { 12, "IDCODE (Device Identification)"},
    /* 15 */ { 48, "CWDT (Configuration Watchdog Timer)"},
    /* 16 */ { 38, "HC_OPT_REG (Hot Configuration Options)"},
    /* 17 */ {255, "Reserved"},
    /* 18 */ { 21, "CSBO (Chip Select Output)"},
    /* 19 */ { 39, "GENERAL1 (Boot Address, Low)"},
    /* 20 */ { 40, "GENERAL2 (Boot Address, High)"},
    /* 21 */ { 49, "GENERAL3 (Fallback Address, Low)"},
    /* 22 */ { 50, "GENERAL4 (Fallback Address, High)"},
    /* 23 */ { 51, "GENERAL5 (User Word)"},
    /* 24 */ { 41, "MODE_REG (Reboot Mode)"},
    /* 25 */ { 42, "PU_GWE (Power Up GWE Cycle)"},
    /* 26 */ { 43, "PU_GTS (Power Up GTS Cycle)"},
    /* 27 */ { 10, "MFWR (Multiple Frame Write)"},
    /* 28 */ { 44, "CCLK_FREQ (Master Clock Frequency)"},
    /* 29 */ { 45, "SEU_OPT (Frame Check Options)"},
    /* 30 */ { 46, "EXP_SIGN (Expected Readback Signature)"},
    /* 31 */ { 47, "RDBK_SIGN (Readback Signature)"},
    /* 32 */ { 28, "BOOTSTS (Boot Status)"},
    /* 33 */ { 52, "EYE_MASK (Frame Check Mask)"},
    /* 34 */ { 19, "CBC_REG (Cipher Block Chaining)"},
});

// Commands by the value written to CMD.

inline constexpr CommandMap kFIRST_COMMANDS = commandsOf({
    /*  0 */ "Reserved",
    /*  1 */ "WCFG (Write Configuration Data)",
    /*  2 */ "MFW (Multiple Frame Write)",
    /*  3 */ "LFRM (Last Frame)",
    /*  4 */ "RCFG (Read Configuration Data)",
    /*  5 */ "START (Begin Startup Sequence)",
    /*  6 */ "RCAP (Reset Capture)",
    /*  7 */ "RCRC (Reset CRC)",
    /*  8 */ "AGHIGH (Assert GHIGH)",
    /*  9 */ "SWITCH (Switch Clock Frequency)",
});

inline constexpr CommandMap kTARSEL_II_COMMANDS = commandsOf({
    /*  0 */ "Reserved",
    /*  1 */ "WCFG (Write Configuration Data)",
    /*  2 */ "MFW (Multiple Frame Write)",
    /*  3 */ "LFRM (Last Frame)",
    /*  4 */ "RCFG (Read Configuration Data)",
    /*  5 */ "START (Begin Startup Sequence)",
    /*  6 */ "RCAP (Reset Capture)",
    /*  7 */ "RCRC (Reset CRC)",
    /*  8 */ "AGHIGH (Assert GHIGH)",
    /*  9 */ "SWITCH (Switch Clock Frequency)",
    /* 10 */ "GRESTORE (Pulse GRESTORE)",
    /* 11 */ "SHUTDOWN (Begin Shutdown Sequence)",
    /* 12 */ "GCAPTURE (Pulse GCAPTURE)",
    /* 13 */ "DESYNCH (Force Realignment to 32 Bits)",
});

inline constexpr CommandMap kDUNMARE_III_COMMANDS = commandsOf({
    /*  0 */ "NULL (Command Pipeline Shifting)",
    /*  1 */ "WCFG (Write Configuration Data)",
    /*  2 */ "MFWR (Multiple Frame Write)",
    /*  3 */ "LFRM (Last Frame)",
    /*  4 */ "RCFG (Read Configuration Data)",
    /*  5 */ "START (Begin Startup Sequence)",
    /*  6 */ "RCAP (Reset Capture)",
    /*  7 */ "RCRC (Reset CRC)",
    /*  8 */ "AGHIGH (Assert GHIGH)",
    /*  9 */ "SWITCH (Switch Clock Frequency)",
    /* 10 */ "GRESTORE (Pulse GRESTORE)",
    /* 11 */ "SHUTDOWN (Begin Shutdown Sequence)",
    /* 12 */ "GCAPTURE (Pulse GCAPTURE)",
    /* 13 */ "DESYNCH (Force Realignment to 32 Bits)",
});

inline constexpr CommandMap kTARSEL_4_COMMANDS = commandsOf({
    /*  0 */ "NULL (Command Pipeline Shifting)",
    /*  1 */ "WCFG (Write Configuration Data)",
    /*  2 */ "MFWR (Multiple Frame Write)",
    /*  3 */ "DGHIGH (Deassert GHIGH)",
    /*  4 */ "RCFG (Read Configuration Data)",
    /*  5 */ "START (Begin Startup Sequence)",
    /*  6 */ "RCAP (Reset Capture)",
    /*  7 */ "RCRC (Reset CRC)",
    /*  8 */ "AGHIGH (Assert GHIGH)",
    /*  9 */ "SWITCH (Switch Clock Frequency)",
    /* 10 */ "GRESTORE (Pulse GRESTORE)",
    /* 11 */ "SHUTDOWN (Begin Shutdown Sequence)",
    /* 12 */ "GCAPTURE (Pulse GCAPTURE)",
    /* 13 */ "DESYNCH (Force Realignment to 32 Bits)",
    /* 14 */ "DRTEST (Test)",
    /* 15 */ "IPROG (Internal Reprogram)",
});

inline constexpr CommandMap kTARSEL_5_COMMANDS = commandsOf({
    /*  0 */ "NULL (Command Pipeline Shifting)",
    /*  1 */ "WCFG (Write Configuration Data)",
    /*  2 */ "MFWR (Multiple Frame Write)",
    /*  3 */ "DGHIGH (Deassert GHIGH)",
    /*  4 */ "RCFG (Read Configuration Data)",
    /*  5 */ "START (Begin Startup Sequence)",
    /*  6 */ "RCAP (Reset Capture)",
    /*  7 */ "RCRC (Reset CRC)",
    /*  8 */ "AGHIGH (Assert GHIGH)",
    /*  9 */ "SWITCH (Switch Clock Frequency)",
    /* 10 */ "GRESTORE (Pulse GRESTORE)",
    /* 11 */ "SHUTDOWN (Begin Shutdown Sequence)",
    /* 12 */ "GCAPTURE (Pulse GCAPTURE)",
    /* 13 */ "DESYNCH (Force Realignment to 32 Bits)",
    /* 14 */ "DRTEST (Test)",
    /* 15 */ "IPROG (Internal Reprogram)",
    /* 16 */ "CRCC (Recompute Readback CRC)",
    /* 17 */ "LTIMER (Reload Watchdog Timer)",
});

inline constexpr CommandMap kTARSEL_7_COMMANDS = commandsOf({
    /*  0 */ "NULL (Command Pipeline Shifting)",
    /*  1 */ "WCFG (Write Configuration Data)",
    /*  2 */ "MFWR (Multiple Frame Write)",
    /*  3 */ "DGHIGH (Deassert GHIGH)",
    /*  4 */ "RCFG (Read Configuration Data)",
    /*  5 */ "START (Begin Startup Sequence)",
    /*  6 */ "RCAP (Reset Capture)",
    /*  7 */ "RCRC (Reset CRC)",
    /*  8 */ "AGHIGH (Assert GHIGH)",
    /*  9 */ "SWITCH (Switch Clock Frequency)",
    /* 10 */ "GRESTORE (Pulse GRESTORE)",
    /* 11 */ "SHUTDOWN (Begin Shutdown Sequence)",
    /* 12 */ "GCAPTURE (Pulse GCAPTURE)",
    /* 13 */ "DESYNCH (Force Realignment to 32 Bits)",
    /* 14 */ "DRTEST (Test)",
    /* 15 */ "IPROG (Internal Reprogram)",
    /* 16 */ "CRCC (Recompute Readback CRC)",
    /* 17 */ "LTIMER (Reload Watchdog Timer)",
    /* 18 */ "BSPI_READ (Restart Flash Read)",
    /* 19 */ "FALL_EDGE (Sample on Falling Edge)",
});

inline constexpr CommandMap kDUNMARE_IIIA_COMMANDS = commandsOf({
    /*  0 */ "NULL (Command Pipeline Shifting)",
    /*  1 */ "WCFG (Write Configuration Data)",
    /*  2 */ "MFWR (Multiple Frame Write)",
    /*  3 */ "DGHIGH (Deassert GHIGH)",
    /*  4 */ "RCFG (Read Configuration Data)",
    /*  5 */ "START (Begin Startup Sequence)",
    /*  6 */ "RCAP (Reset Capture)",
    /*  7 */ "RCRC (Reset CRC)",
    /*  8 */ "AGHIGH (Assert GHIGH)",
    /*  9 */ "SWITCH (Switch Clock Frequency)",
    /* 10 */ "GRESTORE (Pulse GRESTORE)",
    /* 11 */ "SHUTDOWN (Begin Shutdown Sequence)",
    /* 12 */ "GCAPTURE (Pulse GCAPTURE)",
    /* 13 */ "DESYNCH (Force Realignment)",
    /* 14 */ "REBOOT (Reboot)",
    /* 15 */ "IPROG (Internal Reprogram)",
});

inline constexpr CommandMap kDUNMARE_6_COMMANDS = commandsOf({
    /*  0 */ "NULL (Command Pipeline Shifting)",
    /*  1 */ "WCFG (Write Configuration Data)",
    /*  2 */ "MFWR (Multiple Frame Write)",
    /*  3 */ "DGHIGH (Deassert GHIGH)",
    /*  4 */ "RCFG (Read Configuration Data)",
    /*  5 */ "START (Begin Startup Sequence)",
    /*  6 */ "DESFW (Leave Suspend)",
    /*  7 */ "RCRC (Reset CRC)",
    /*  8 */ "AGHIGH (Assert GHIGH)",
    /*  9 */ "SWITCH (Switch Clock Frequency)",
    /* 10 */ "GRESTORE (Pulse GRESTORE)",
    /* 11 */ "SHUTDOWN (Begin Shutdown Sequence)",
    /* 12 */ "GCAPTURE (Pulse GCAPTURE)",
    /* 13 */ "DESYNCH (Force Realignment)",
    /* 14 */ "REBOOT (Reboot)",
    /* 15 */ "SFW (Enter Suspend)",
});

// clang-format on

} // namespace memdata

#endif
