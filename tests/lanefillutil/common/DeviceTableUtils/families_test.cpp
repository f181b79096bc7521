// families_test.cpp - the sixteen families: packets, registers, commands, fields.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/families.h"

#include <cstdio>
#include <cstring>
#include <string>

namespace {

constexpr const TarselFamilyType* kFAMILIES[] = {&kTarselFamilyTable, &kTarselEFamilyTable, &kDunmareIIFamilyTable,
    &kDunmareIIEFamilyTable, &kTarselIIFamilyTable, &kTarselPROIIFamilyTable, &kTarsel4FamilyTable,
    &kTarsel5FamilyTable, &kTarsel6FamilyTable, &kTarsel7FamilyTable, &kPelkFamilyTable, &kTarsel8FamilyTable,
    &kDunmareIIIFamilyTable, &kDunmareIIIEFamilyTable, &kDunmareIIIaFamilyTable, &kDunmare6FamilyTable};

const char* crcName(const TarselFamilyType& family) {
    if (family.crcWordFunction == CRC_Word) return "CRC_Word";
    return family.crcWordFunction == CRC_32_37 ? "CRC_32_37" : "CRC_16_37";
}

const char* decodeName(const TarselFamilyType& family) {
    if (family.decodeTable == tarselDecodeTables) return "tarsel";
    if (family.decodeTable == tarsel2DecodeTables) return "tarsel2";
    if (family.decodeTable == dunmare3DecodeTables) return "dunmare3";
    return family.decodeTable == nullptr ? "-" : "?";
}

std::string describe(const TarselFamilyType& family) {
    char line[200];
    std::snprintf(line, sizeof line,
        "%s %04lx %s rows %u word %u %X %X/%u crc %s %u bypass %d %X fed %d reset %d enc %d "
        "blocks %u %u %u %u\n",
        family.name, family.familyMask, decodeName(family), family.bramsPerLookupRow, family.configWordBytes,
        family.dummyWord, family.syncWord, family.syncWordBytes, crcName(family), family.crcAddressBits,
        family.corCrcBypassIndex, family.crcBypassValue, family.crcRegisterFedBack, family.crcResetAfterAutoCRC,
        family.encryptFieldIndex, family.clbBlockType, family.bramBlockType, family.ioBlockType, family.pcfgBlockType);
    return line;
}

TEST(Families, HaveTheirPacketFacts) {
    std::string all;
    for (const TarselFamilyType* family : kFAMILIES) all += describe(*family);
    const std::string usual = "word 4 FFFFFFFF AA995566/4 crc ";
    const std::string first = usual + "CRC_Word 4 bypass -1 0 fed 1 reset 1 enc 0 blocks 0 1 0 0\n";
    const std::string second = usual + "CRC_Word 5 bypass 0 DEFC fed 1 reset 1 enc 1 blocks 0 1 0 0\n";
    const std::string third = usual + "CRC_Word 5 bypass 1 DEFC fed 1 reset 1 enc 0 blocks 0 1 0 0\n";
    const std::string modern = usual + "CRC_32_37 5 bypass 0 DEFC fed 1 reset 1 enc 11 blocks 0 1 0 0\n";
    EXPECT_EQ(all, "Tarsel 0001 tarsel rows 1 " + first +                                //
                       "Tarsel-e 0002 tarsel rows 1 " + first +                          //
                       "Dunmare-II 0004 tarsel rows 1 " + first +                        //
                       "Dunmare-IIe 0008 tarsel rows 1 " + first +                       //
                       "Tarsel-II 0010 tarsel2 rows 1 " + second +                       //
                       "Tarsel-II PRO 0020 tarsel2 rows 1 " + second +                   //
                       "Tarsel-4 0040 - rows 1 " + usual +                               //
                       "CRC_32_37 5 bypass 0 DEFC fed 1 reset 1 enc 12 blocks 0 2 0 0\n" //
                       "Tarsel-5 0080 - rows 2 " +
                       usual +                                                           //
                       "CRC_32_37 5 bypass 0 DEFC fed 1 reset 1 enc 12 blocks 0 1 0 0\n" //
                       "Tarsel-6 0100 - rows 2 " +
                       modern +                                       //
                       "Tarsel-7 0200 - rows 2 " + modern +           //
                       "Pelk 0400 - rows 2 " + modern +               //
                       "Tarsel-8 0800 - rows 2 " + modern +           //
                       "Dunmare-III 1000 dunmare3 rows 1 " + third +  //
                       "Dunmare-IIIe 2000 dunmare3 rows 1 " + third + //
                       "Dunmare-IIIa 4000 - rows 1 word 2 FFFF AA99/2 crc CRC_16_37 6 bypass 4 9876DEFC fed 0 reset 1 "
                       "enc 1 blocks 0 1 0 0\n"
                       "Dunmare6 8000 - rows 1 word 2 FFFFFFFF AA995566/4 crc CRC_16_37 6 bypass 4 9876DEFC fed 0 "
                       "reset 0 enc 1 blocks 0 1 2 3\n");
}

TEST(Families, EachHasAMaskBitOfItsOwn) {
    u64 all = 0;
    for (const TarselFamilyType* family : kFAMILIES) {
        EXPECT_EQ(all & family->familyMask, 0u);
        all |= family->familyMask;
    }
    EXPECT_EQ(all, 0xFFFFu);
}

// Registers.

std::string firstWord(const char* name) {
    if (name == nullptr) return "-";
    return {name, std::strcspn(name, " ")};
}

// "CRC 0, FAR 1, ..." for the addresses before the last one that has a name or a kind.
std::string registers(const TarselFamilyType& family) {
    u32 count = 72;
    while (count > 0 && family.registerKinds[count - 1] == 0 && family.registerNames[count - 1] == nullptr) --count;
    std::string text;
    for (u32 address = 0; address < count; ++address)
        text += firstWord(family.registerNames[address]) + " " + std::to_string(family.registerKinds[address]) + ", ";
    return text;
}

const std::string kFIRST = "CRC 0, FAR 1, FDRI 2, FDRO 3, CMD 4, CTL 5, MASK 6, STAT 7, LOUT 8, COR 9, MFWR 10, ";
const std::string kFOURTH = kFIRST + "CBC 19, IDCODE 12, AXSS 20, ";
const std::string kFIFTH = kFOURTH + "COR1 18, CSOB 21, WBSTAR 22, TIMER 23, RBCRC0 24, RBCRC1 25, RBCRC2 26, EFAR 27, "
                                     "BOOTSTS 28, TESTMODE 29, CTL1 17, ";
const std::string kSHORT =
    "CRC 0, FAR_MAJ 1, FAR_MIN 36, FDRI 2, FDRO 3, CMD 4, CTL 5, MASK 6, STAT 7, LOUT 8, COR1 9, "
    "COR2 18, PWRDN_REG 37, FLR 11, IDCODE 12, ";

TEST(Families, KnowTheirRegistersByAddress) {
    for (const TarselFamilyType* family :
        {&kTarselFamilyTable, &kTarselEFamilyTable, &kDunmareIIFamilyTable, &kDunmareIIEFamilyTable})
        EXPECT_EQ(registers(*family), kFIRST + "FLR 11, ");
    for (const TarselFamilyType* family : {&kTarselIIFamilyTable, &kTarselPROIIFamilyTable})
        EXPECT_EQ(registers(*family), kFIRST + "FLR 11, KEY 16, CBC 19, IDCODE 12, ");
    for (const TarselFamilyType* family : {&kDunmareIIIFamilyTable, &kDunmareIIIEFamilyTable})
        EXPECT_EQ(registers(*family), kFIRST + "FLR 11, Reserved 255, Reserved 255, IDCODE 12, SNOWPLOW 34, TEST 35, ");
    EXPECT_EQ(registers(kTarsel4FamilyTable), kFOURTH);
    EXPECT_EQ(registers(kTarsel6FamilyTable), kFIFTH + "MEMRD_PARAM 30, DWC 31, TRIM0 32, TRIM1 33, ");
    EXPECT_EQ(registers(kDunmareIIIaFamilyTable),
        kSHORT + "SNOWPLOW 34, HC_OPT_REG 38, Reserved 255, CSBO 21, GENERAL1 39, GENERAL2 40, MODE_REG 41, PU_GWE 42, "
                 "PU_GTS 43, MFWR 10, CCLK_FREQ 44, SEU_OPT 45, EXP_SIGN 46, RDBK_SIGN 47, ");
    EXPECT_EQ(registers(kDunmare6FamilyTable),
        kSHORT + "CWDT 48, HC_OPT_REG 38, Reserved 255, CSBO 21, GENERAL1 39, GENERAL2 40, GENERAL3 49, GENERAL4 50, "
                 "GENERAL5 51, MODE_REG 41, PU_GWE 42, PU_GTS 43, MFWR 10, CCLK_FREQ 44, SEU_OPT 45, EXP_SIGN 46, "
                 "RDBK_SIGN 47, BOOTSTS 28, EYE_MASK 52, CBC_REG 19, ");
}

TEST(Families, TheTarsel5ParametersAreOfTheCrcKind) {
    EXPECT_EQ(registers(kTarsel5FamilyTable), kFIFTH + "MEMRD_PARAM 0, DWC 0, TRIM0 0, TRIM1 0, ");
}

TEST(Families, TheBoutHandlerAnswersUnderTheNameOfItsNeighbour) {
    for (const TarselFamilyType* family : {&kTarsel7FamilyTable, &kPelkFamilyTable, &kTarsel8FamilyTable}) {
        EXPECT_EQ(registers(*family),
            kFOURTH + "COR1 18, PCAP 64, WBSTAR 22, TIMER 23, RBCRC_HW 65, RBCRC_SW 66, RBCRC_LIVE 67, EFAR 27, "
                      "BOOTSTS 28, TESTMODE 29, CTL1 17, MEMRD_PARAM 30, DWC 31, TRIM 68, FUSE_STAT 255, BOUT 69, "
                      "BSPI 70, - 71, ");
        EXPECT_STREQ(family->registerNames[29], "BOUT (Cobalt intra-die daisy chain)");
        EXPECT_STREQ(family->registerNames[30], "BSPI (BPI (SPI Parameters)");
    }
}

TEST(Families, FullRegisterNamesCarryTheirExplanation) {
    EXPECT_STREQ(kTarsel7FamilyTable.registerNames[0], "CRC (CRC Check)");
    EXPECT_STREQ(kTarsel7FamilyTable.registerNames[1], "FAR (Frame Address)");
    EXPECT_STREQ(kTarsel7FamilyTable.registerNames[2], "FDRI (Frame Data Input)");
}

// Commands.

std::string commands(const TarselFamilyType& family) {
    std::string text;
    for (u32 value = 0; value < 256; ++value)
        if (family.commandNames[value] != nullptr)
            text += std::to_string(value) + firstWord(family.commandNames[value]) + " ";
    return text;
}

TEST(Families, KnowTheirCommandsByValue) {
    const std::string old = "0Reserved 1WCFG 2MFW 3LFRM 4RCFG 5START 6RCAP 7RCRC 8AGHIGH 9SWITCH ";
    const std::string usual = "0NULL 1WCFG 2MFWR 3DGHIGH 4RCFG 5START 6RCAP 7RCRC 8AGHIGH 9SWITCH ";
    const std::string second = "10GRESTORE 11SHUTDOWN 12GCAPTURE 13DESYNCH ";
    EXPECT_EQ(commands(kTarselFamilyTable), old);
    EXPECT_EQ(commands(kTarselIIFamilyTable), old + second);
    EXPECT_EQ(commands(kTarsel4FamilyTable), usual + second + "14DRTEST 15IPROG ");
    EXPECT_EQ(commands(kTarsel5FamilyTable), usual + second + "14DRTEST 15IPROG 16CRCC 17LTIMER ");
    EXPECT_EQ(
        commands(kTarsel7FamilyTable), usual + second + "14DRTEST 15IPROG 16CRCC 17LTIMER 18BSPI_READ 19FALL_EDGE ");
    EXPECT_EQ(commands(kDunmareIIIaFamilyTable), usual + second + "14REBOOT 15IPROG ");
    EXPECT_EQ(commands(kDunmare6FamilyTable),
        "0NULL 1WCFG 2MFWR 3DGHIGH 4RCFG 5START 6DESFW 7RCRC 8AGHIGH 9SWITCH " + second + "14REBOOT 15SFW ");
    EXPECT_STREQ(kTarsel7FamilyTable.commandNames[0], "NULL (Command Pipeline Shifting)");
    EXPECT_STREQ(kTarsel7FamilyTable.commandNames[7], "RCRC (Reset CRC)");
    EXPECT_STREQ(kTarsel7FamilyTable.commandNames[13], "DESYNCH (Force Realignment to 32 Bits)");
}

// Fields.

std::string fields(const RegisterBitFieldType* table) {
    std::string text;
    for (; table->name != nullptr; ++table) {
        char line[120];
        std::snprintf(line, sizeof line, "%s|%u|%X\n", table->name, table->shift, table->mask);
        text += line;
    }
    return text;
}

TEST(Families, CommandWordsAreCutBeforeTheShift) {
    const auto rows = [](const char* address) {
        std::string text = "Command Type     |29|E0000000\nCommand Operation|27|18000000\nRegister Address |13|";
        text += address;
        text += "\nShort Word Count |0|7FF\nLong Word Count  |0|7FFFFFF\n";
        return text;
    };
    EXPECT_EQ(fields(kTarselFamilyTable.commandFields), rows("7FFE000"));
    for (const TarselFamilyType* family :
        {&kTarselIIFamilyTable, &kTarselPROIIFamilyTable, &kTarsel4FamilyTable, &kDunmareIIIFamilyTable})
        EXPECT_EQ(fields(family->commandFields), rows("1E000")) << family->name;
    for (const TarselFamilyType* family : {&kTarsel5FamilyTable, &kTarsel6FamilyTable, &kTarsel7FamilyTable})
        EXPECT_EQ(fields(family->commandFields), rows("3E000")) << family->name;
    EXPECT_EQ(fields(kDunmare6FamilyTable.commandFields),
        "Command Type     |13|E000\nCommand Operation|11|1800\nRegister Address |5|7E0\nShort Word Count |0|1F\n"
        "Long Word Count  |0|FFFF\n");
}

TEST(Families, FrameAddressesBeginWithTheBlockType) {
    EXPECT_EQ(fields(kTarselFamilyTable.farFields), "Block type (CLB 0 or BRAM 1)|25|3\n");
    EXPECT_EQ(fields(kDunmareIIIEFamilyTable.farFields), "Block type (CLB 0 or BRAM 1)|25|3\n");
    EXPECT_EQ(fields(kDunmareIIIaFamilyTable.farFields), "Block type (CLB 0 or BRAM 1)|26|7\n");
    EXPECT_EQ(fields(kDunmare6FamilyTable.farFields), "Block type (CLB 0, BRAM 1, IOB 2 or PCFG 3)|28|7\n");
    EXPECT_EQ(fields(kTarsel4FamilyTable.farFields), "Block type (CLB 0, BRAM interconnect 1, or BRAM 2)|19|7\n"
                                                     "Top/Botton half rows (Top 0 or Bottom 1)          |22|1\n"
                                                     "Row address (Row group address)                   |14|1F\n"
                                                     "Major address (Column address)                    |6|7F\n"
                                                     "Minor address (Frame address)                     |0|3F\n");
    EXPECT_EQ(fields(kTarsel7FamilyTable.farFields), "Block type (CLB 0 or BRAM 1)            |21|7\n"
                                                     "Top/Botton half rows (Top 0 or Bottom 1)|20|1\n"
                                                     "Row address (Row group address)         |15|1F\n"
                                                     "Major address (Column address)          |7|FF\n"
                                                     "Minor address (Frame address)           |0|7F\n");
}

std::string fieldName(const RegisterBitFieldType* table, i32 row) {
    return table == nullptr ? "-" : firstWord(table[row].name);
}

TEST(Families, BypassAndEncryptionRowsNameTheirFields) {
    EXPECT_EQ(fieldName(kTarselIIFamilyTable.corFields, 0), "CRC_BYPASS");
    EXPECT_EQ(fieldName(kDunmareIIIFamilyTable.corFields, 1), "CRC_BYPASS");
    EXPECT_EQ(fieldName(kDunmareIIIaFamilyTable.corFields, 4), "CRC_BYPASS");
    EXPECT_EQ(fieldName(kDunmare6FamilyTable.corFields, 4), "CRC_BYPASS");
    EXPECT_EQ(fieldName(kTarsel7FamilyTable.corFields, 0), "PWRDWN_STAT"); // kept: it stands in as the bypass row
    EXPECT_EQ(fieldName(kTarselFamilyTable.ctlFields, 0), "SBITS");
    EXPECT_EQ(fieldName(kDunmareIIIFamilyTable.ctlFields, 0), "SBITS");
    EXPECT_EQ(fieldName(kTarselIIFamilyTable.ctlFields, 1), "SBITS");
    EXPECT_EQ(fieldName(kDunmareIIIaFamilyTable.ctlFields, 1), "ENCRYPT");
    EXPECT_EQ(fieldName(kDunmare6FamilyTable.ctlFields, 1), "DEC");
    EXPECT_EQ(kDunmare6FamilyTable.ctlFields[1].shift, 6u);
    EXPECT_EQ(fieldName(kTarsel5FamilyTable.ctlFields, 12), "DEC");
    EXPECT_EQ(fieldName(kTarsel7FamilyTable.ctlFields, 11), "DEC");
}

TEST(Families, Tarsel5OptionsAreWorded) {
    const RegisterBitFieldType* cor = kTarsel5FamilyTable.corFields;
    const auto trimmed = [](const char* name) {
        return std::string(name, std::string(name).find_last_not_of(' ') + 1);
    };
    EXPECT_EQ(trimmed(cor[0].name), "CRC_BYPASS  (Do not check against updated CRC value)");
    EXPECT_EQ(cor[0].shift, 28u);
    EXPECT_EQ(trimmed(cor[6].name), "DONE_CYCLE  (Startup cycle when DONE is asserted/de-asserted)");
    EXPECT_EQ(cor[6].shift, 12u);
    EXPECT_EQ(cor[6].mask, 7u);
    EXPECT_EQ(fieldName(cor, 10), "GWE_CYCLE");
    EXPECT_EQ(cor[10].shift, 0u);
    EXPECT_EQ(cor[10].mask, 7u);
}

TEST(Families, FieldsDescendWithoutOverlapAndShareAWidth) {
    for (const TarselFamilyType* family : kFAMILIES)
        for (const RegisterBitFieldType* table :
            {family->corFields, family->ctlFields, family->cor1Fields, family->ctl1Fields}) {
            if (table == nullptr) continue;
            u64 below = u64{1} << 32; // the next field ends below this bit's value
            size_t rows = 0;
            for (const RegisterBitFieldType* field = table; field->name != nullptr; ++field, ++rows) {
                EXPECT_EQ(std::strlen(field->name), std::strlen(table->name)) << field->name;
                EXPECT_LT(u64{field->mask} << field->shift, below) << family->name << " " << field->name;
                below = u64{1} << field->shift;
            }
            EXPECT_GE(rows, 5u);
            EXPECT_LE(rows, 22u);
        }
}

} // namespace
