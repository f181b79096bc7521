// register_fields.h - the bit fields of configuration registers, command words and frame addresses.
//
// A dump prints a field's text as it stands here: the name padded to a column, the explanation in parentheses,
// padded to the width of its table. Both columns are laid out at compile time.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_DEVICE_TABLE_UTILS_REGISTER_FIELDS_H
#define MEMDATA_DEVICE_TABLE_UTILS_REGISTER_FIELDS_H

#include "DeviceTableUtils/records.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace memdata {

inline constexpr size_t kMAX_FIELDS = 32;

// A row before it is laid out.
struct FieldRow {
    std::string_view name;
    std::string_view explanation; // without its parentheses; empty when the name says all
    u32 shift;
    u32 mask; // after the shift
};

// The laid-out texts of a table of rows.
template<const auto& Rows>
struct FieldTable {
    static constexpr size_t kROWS = std::size(Rows);
    static_assert(kROWS < kMAX_FIELDS);

    static constexpr size_t longest(std::string_view FieldRow::*part) {
        size_t length = 0;
        for (const FieldRow& row : Rows) length = std::max(length, (row.*part).size());
        return length;
    }
    static constexpr size_t kEXPLANATION = longest(&FieldRow::explanation);
    static constexpr size_t kNAME = longest(&FieldRow::name) + (kEXPLANATION != 0); // one blank behind the longest
    static constexpr size_t kWIDTH = kNAME + (kEXPLANATION == 0 ? 0 : kEXPLANATION + 2);

    using Texts = std::array<std::array<char, kWIDTH + 1>, kROWS>;
    static constexpr Texts layOut() {
        Texts texts{};
        for (size_t i = 0; i < kROWS; ++i) {
            char* text = texts[i].data();
            std::fill_n(text, kWIDTH, ' ');
            std::ranges::copy(Rows[i].name, text);
            if (Rows[i].explanation.empty()) continue;
            text[kNAME] = '(';
            std::ranges::copy(Rows[i].explanation, text + kNAME + 1);
            text[kNAME + 1 + Rows[i].explanation.size()] = ')';
        }
        return texts;
    }
    static constexpr Texts kTEXTS = layOut();

    static constexpr std::array<RegisterBitFieldType, kROWS + 1> link() {
        std::array<RegisterBitFieldType, kROWS + 1> fields{}; // the last row ends the table
        for (size_t i = 0; i < kROWS; ++i) fields[i] = {kTEXTS[i].data(), Rows[i].shift, Rows[i].mask};
        return fields;
    }
    static constexpr std::array<RegisterBitFieldType, kROWS + 1> kFIELDS = link();
};

template<const auto& Rows>
inline constexpr const RegisterBitFieldType* kFIELDS_OF = FieldTable<Rows>::kFIELDS.data();

// clang-format off

// Command words: the mask is applied to the word before the shift. Rows differ in the register address alone.
#define MEMDATA_COMMAND_FIELDS(typeMask, typeShift, opMask, opShift, addressMask, addressShift, shortMask, longMask) \
    {{"Command Type",      "", typeShift,    typeMask},                                                              \
     {"Command Operation", "", opShift,      opMask},                                                                \
     {"Register Address",  "", addressShift, addressMask},                                                           \
     {"Short Word Count",  "", 0,            shortMask},                                                             \
     {"Long Word Count",   "", 0,            longMask}}

inline constexpr FieldRow kFIRST_COMMAND_ROWS[] =
    MEMDATA_COMMAND_FIELDS(0xE0000000, 29, 0x18000000, 27, 0x07FFE000, 13, 0x000007FF, 0x07FFFFFF);
inline constexpr FieldRow kSECOND_COMMAND_ROWS[] = // Tarsel-II to Tarsel-4, Dunmare-III, Dunmare-IIIe
    MEMDATA_COMMAND_FIELDS(0xE0000000, 29, 0x18000000, 27, 0x0001E000, 13, 0x000007FF, 0x07FFFFFF);
inline constexpr FieldRow kTARSEL_5_COMMAND_ROWS[] = // and later
    MEMDATA_COMMAND_FIELDS(0xE0000000, 29, 0x18000000, 27, 0x0003E000, 13, 0x000007FF, 0x07FFFFFF);
inline constexpr FieldRow kSHORT_COMMAND_ROWS[] = // 16-bit words
    MEMDATA_COMMAND_FIELDS(0xE000, 13, 0x1800, 11, 0x07E0, 5, 0x001F, 0xFFFF);

#undef MEMDATA_COMMAND_FIELDS

// Frame addresses.
inline constexpr FieldRow kEARLY_FAR_ROWS[] = {
    {"Block type", "CLB 0 or BRAM 1", 25, 3},
};
inline constexpr FieldRow kDUNMARE_IIIA_FAR_ROWS[] = {
    {"Block type", "CLB 0 or BRAM 1", 26, 7},
};
inline constexpr FieldRow kDUNMARE_6_FAR_ROWS[] = {
    {"Block type", "CLB 0, BRAM 1, IOB 2 or PCFG 3", 28, 7},
};
inline constexpr FieldRow kTARSEL_4_FAR_ROWS[] = {
    {"Block type (CLB 0, BRAM interconnect 1, or BRAM 2)", "", 19, 7},
    {"Top/Botton half rows (Top 0 or Bottom 1)",           "", 22, 1},
    {"Row address (Row group address)",                    "", 14, 31},
    {"Major address (Column address)",                     "",  6, 127},
    {"Minor address (Frame address)",                      "",  0, 63},
};
inline constexpr FieldRow kTARSEL_5_FAR_ROWS[] = { // and later
    {"Block type (CLB 0 or BRAM 1)",             "", 21, 7},
    {"Top/Botton half rows (Top 0 or Bottom 1)", "", 20, 1},
    {"Row address (Row group address)",          "", 15, 31},
    {"Major address (Column address)",           "",  7, 255},
    {"Minor address (Frame address)",            "",  0, 127},
};

// Configuration options (COR). Rows stand in descending bit order; the family table names some by index.
inline constexpr FieldRow kFIRST_COR_ROWS[] = {
    {"DONE_PIPE",   "Delay the start-up by one clock after DONE",       30, 1},
    {"DRIVE_DONE",  "Drive DONE high at the end of configuration",      29, 1},
    {"SINGLE",      "Capture once only",                                28, 1},
    {"CLOCK_RATE",  "Configuration clock divider",                      22, 63},
    {"CLOCK_FROM",  "Start-up clock source",                            20, 3},
    {"DONE_CYCLE",  "Startup cycle when DONE is asserted/de-asserted",  15, 31},
    {"SHUTDOWN",    "Run a shutdown sequence",                          14, 1},
    {"LOCK_CYCLE",  "Startup cycle that waits for clock lock",          10, 15},
    {"GTS_CYCLE",   "Startup cycle when outputs are enabled",            7, 7},
    {"GWE_CYCLE",   "Startup cycle when writes are enabled",             3, 15},
    {"GSR_CYCLE",   "Startup cycle when flip-flops are released",        0, 7},
};
inline constexpr FieldRow kTARSEL_II_COR_ROWS[] = {
    {"CRC_BYPASS",  "Do not check against updated CRC value",           29, 1},
    {"DONE_PIPE",   "Delay the start-up by one clock after DONE",       25, 1},
    {"DRIVE_DONE",  "Drive DONE high at the end of configuration",      24, 1},
    {"SINGLE",      "Capture once only",                                23, 1},
    {"CLOCK_RATE",  "Configuration clock divider",                      17, 63},
    {"CLOCK_FROM",  "Start-up clock source",                            15, 3},
    {"DONE_CYCLE",  "Startup cycle when DONE is asserted/de-asserted",  12, 7},
    {"WAIT_CYCLE",  "Startup cycle that waits for matched drivers",      9, 7},
    {"LOCK_CYCLE",  "Startup cycle that waits for clock lock",           6, 7},
    {"GTS_CYCLE",   "Startup cycle when outputs are enabled",            3, 7},
    {"GWE_CYCLE",   "Startup cycle when writes are enabled",             0, 7},
};
inline constexpr FieldRow kDUNMARE_III_COR_ROWS[] = {
    {"LATE_START",  "Hold the start-up sequence until released",        31, 1},
    {"CRC_BYPASS",  "Do not check against updated CRC value",           29, 1},
    {"DONE_PIPE",   "Delay the start-up by one clock after DONE",       25, 1},
    {"DRIVE_DONE",  "Drive DONE high at the end of configuration",      24, 1},
    {"CLOCK_RATE",  "Configuration clock divider",                      17, 63},
    {"CLOCK_FROM",  "Start-up clock source",                            15, 3},
    {"DONE_CYCLE",  "Startup cycle when DONE is asserted/de-asserted",  12, 7},
    {"LOCK_CYCLE",  "Startup cycle that waits for clock lock",           6, 7},
    {"GTS_CYCLE",   "Startup cycle when outputs are enabled",            3, 7},
    {"GWE_CYCLE",   "Startup cycle when writes are enabled",             0, 7},
};
inline constexpr FieldRow kTARSEL_5_COR_ROWS[] = { // Tarsel-4, Tarsel-5
    {"CRC_BYPASS",  "Do not check against updated CRC value",           28, 1},
    {"DONE_PIPE",   "Delay the start-up by one clock after DONE",       25, 1},
    {"DRIVE_DONE",  "Drive DONE high at the end of configuration",      24, 1},
    {"SINGLE",      "Capture once only",                                23, 1},
    {"CLOCK_RATE",  "Configuration clock divider",                      17, 63},
    {"CLOCK_FROM",  "Start-up clock source",                            15, 3},
    {"DONE_CYCLE",  "Startup cycle when DONE is asserted/de-asserted",  12, 7},
    {"DRIVE_CYCLE", "Startup cycle that waits for matched drivers",      9, 7},
    {"LOCK_CYCLE",  "Startup cycle that waits for clock lock",           6, 7},
    {"GTS_CYCLE",   "Startup cycle when outputs are enabled",            3, 7},
    {"GWE_CYCLE",   "Startup cycle when writes are enabled",             0, 7},
};
inline constexpr FieldRow kTARSEL_6_COR_ROWS[] = { // and later: no CRC_BYPASS
    {"PWRDWN_STAT", "Show power-down on the DONE pin",                  27, 1},
    {"DONE_PIPE",   "Delay the start-up by one clock after DONE",       25, 1},
    {"DRIVE_DONE",  "Drive DONE high at the end of configuration",      24, 1},
    {"SINGLE",      "Capture once only",                                23, 1},
    {"CLOCK_RATE",  "Configuration clock divider",                      17, 63},
    {"CLOCK_FROM",  "Start-up clock source",                            15, 3},
    {"DONE_CYCLE",  "Startup cycle when DONE is asserted/de-asserted",  12, 7},
    {"DRIVE_CYCLE", "Startup cycle that waits for matched drivers",      9, 7},
    {"LOCK_CYCLE",  "Startup cycle that waits for clock lock",           6, 7},
    {"GTS_CYCLE",   "Startup cycle when outputs are enabled",            3, 7},
    {"GWE_CYCLE",   "Startup cycle when writes are enabled",             0, 7},
};
inline constexpr FieldRow kSHORT_COR_ROWS[] = { // Dunmare-IIIa, Dunmare6
    {"DRIVE_AWAKE", "Drive the wake-up pin",                            15, 1},
    {"DONE_PIPE",   "Delay the start-up by one clock after DONE",       14, 1},
    {"DRIVE_DONE",  "Drive DONE high at the end of configuration",      13, 1},
    {"VARIABLE",    "Take the clock divider from CCLK_FREQ",            12, 1},
    {"CRC_BYPASS",  "Do not check against updated CRC value",            4, 1},
    {"SINGLE",      "Capture once only",                                 3, 1},
    {"CLOCK_FROM",  "Start-up clock source",                             0, 3},
};

// Control (CTL).
inline constexpr FieldRow kFIRST_CTL_ROWS[] = {
    {"SBITS",     "Security level",                          7, 3},
    {"PERSIST",   "Keep the configuration port after start", 6, 1},
    {"READBACK",  "Readback port select",                    3, 7},
    {"CAPTURE",   "Capture through the clock network",       1, 3},
    {"GTS_USR_B", "Hold user outputs in high impedance",     0, 1},
};
inline constexpr FieldRow kTARSEL_II_CTL_ROWS[] = {
    {"DEC_ALL",   "Decrypt the whole stream",                7, 1},
    {"SBITS",     "Security level",                          4, 3},
    {"PERSIST",   "Keep the configuration port after start", 3, 1},
    {"CAPTURE",   "Capture through the clock network",       1, 3},
    {"GTS_USR_B", "Hold user outputs in high impedance",     0, 1},
};
inline constexpr FieldRow kDUNMARE_III_CTL_ROWS[] = {
    {"SBITS",     "Security level",                          4, 3},
    {"PERSIST",   "Keep the configuration port after start", 3, 1},
    {"CAPTURE",   "Capture through the clock network",       2, 1},
    {"GLUTMASK",  "Mask memory cells in readback",           1, 1},
    {"GTS_USR_B", "Hold user outputs in high impedance",     0, 1},
};
inline constexpr FieldRow kTARSEL_5_CTL_ROWS[] = { // Tarsel-4, Tarsel-5
    {"PORT_SEL",   "Internal configuration port select",     30, 1},
    {"PORT_WIDTH", "Internal configuration port width",      28, 3},
    {"TEST_GATE",  "Gate the test clocks",                   26, 1},
    {"LOW_POWER",  "Low power readback",                     24, 1},
    {"SENSE_SEL",  "Sense amplifier select",                 22, 3},
    {"SENSE_TIME", "Sense amplifier timing",                 18, 15},
    {"HOLD_IO",    "Hold the pins during reload",            16, 1},
    {"FALLBACK",   "Reload the first image after an error",  14, 1},
    {"OVERTEMP",   "Power down when hot",                    12, 1},
    {"GLUTMASK",   "Mask memory cells in readback",          10, 1},
    {"ERR_PIN",    "Show frame errors on the INIT pin",       9, 1},
    {"FARSRC",     "Frame address reported after an error",   7, 1},
    {"DEC",        "Stream is encrypted",                     6, 1},
    {"SBITS",      "Security level",                          4, 3},
    {"PERSIST",    "Keep the configuration port after start", 3, 1},
    {"CAPTURE",    "Capture through the clock network",       1, 3},
    {"GTS_USR_B",  "Hold user outputs in high impedance",     0, 1},
};
inline constexpr FieldRow kTARSEL_6_CTL_ROWS[] = { // and later
    {"KEY_FROM",   "Source of the decryption key",           31, 1},
    {"PORT_SEL",   "Internal configuration port select",     30, 1},
    {"PORT_WIDTH", "Internal configuration port width",      28, 3},
    {"SEC_ALL",    "Only secured streams are accepted",      26, 1},
    {"SEC_STATUS", "Security was violated",                  25, 1},
    {"LOW_POWER",  "Low power readback",                     24, 1},
    {"SENSE_TIME", "Sense amplifier timing",                 18, 15},
    {"HOLD_IO",    "Hold the pins during reload",            16, 1},
    {"OVERTEMP",   "Power down when hot",                    12, 1},
    {"FALLBACK",   "Reload the first image after an error",  10, 1},
    {"GLUTMASK",   "Mask memory cells in readback",           8, 1},
    {"DEC",        "Stream is encrypted",                     6, 1},
    {"SBITS",      "Security level",                          4, 3},
    {"PERSIST",    "Keep the configuration port after start", 3, 1},
    {"CAPTURE",    "Capture through the clock network",       1, 3},
    {"GTS_USR_B",  "Hold user outputs in high impedance",     0, 1},
};
inline constexpr FieldRow kDUNMARE_IIIA_CTL_ROWS[] = {
    {"MULTIBOOT", "Reload the first image after an error",   7, 1},
    {"ENCRYPT",   "Stream is encrypted",                     6, 1},
    {"SBITS",     "Security level",                          4, 3},
    {"PERSIST",   "Keep the configuration port after start", 3, 1},
    {"GTS_USR_B", "Hold user outputs in high impedance",     0, 1},
};
inline constexpr FieldRow kDUNMARE_6_CTL_ROWS[] = {
    {"KEY_FROM",  "Source of the decryption key",            7, 1},
    {"DEC",       "Stream is encrypted",                     6, 1},
    {"SBITS",     "Security level",                          4, 3},
    {"PERSIST",   "Keep the configuration port after start", 3, 1},
    {"ERR_PIN",   "Show frame errors on the INIT pin",       2, 1},
    {"GTS_USR_B", "Hold user outputs in high impedance",     0, 1},
};

// The second option register (COR1, or COR2 where COR1 is the first).
inline constexpr FieldRow kTARSEL_5_COR1_ROWS[] = { // and later
    {"PERSIST_LATE", "Leave the port a clock after the stream", 17, 1},
    {"RBCRC_ACTION", "What a readback CRC error does",          15, 3},
    {"RBCRC_PIN",    "Show a readback CRC error on a pin",       9, 1},
    {"RBCRC_EN",     "Check the frames while running",           8, 1},
    {"FLASH_WAIT",   "First read of a parallel flash page",      2, 3},
    {"FLASH_PAGE",   "Page length of a parallel flash",          0, 3},
};
inline constexpr FieldRow kSHORT_COR2_ROWS[] = { // Dunmare-IIIa, Dunmare6
    {"RESET_ON_ERR", "Reload after a CRC error",                        15, 1},
    {"DONE_CYCLE",   "Startup cycle when DONE is asserted/de-asserted",  9, 7},
    {"LOCK_CYCLE",   "Startup cycle that waits for clock lock",          6, 7},
    {"GTS_CYCLE",    "Startup cycle when outputs are enabled",           3, 7},
    {"GWE_CYCLE",    "Startup cycle when writes are enabled",            0, 7},
};

// The second control register.
inline constexpr FieldRow kTARSEL_5_CTL1_ROWS[] = { // and later
    {"CAPTURE_EN",  "Capture in the running design", 23, 1},
    {"SINGLE_READ", "Read one frame at a time",      20, 1},
    {"ROW_TEST",    "Row test access",               12, 15},
    {"COLUMN_TEST", "Column test access",             4, 15},
    {"TEST_EN",     "Test access",                    0, 1},
};

// clang-format on

} // namespace memdata

#endif
