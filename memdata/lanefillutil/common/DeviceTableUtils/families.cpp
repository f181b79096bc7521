// families.cpp - one table per device family: how its configuration stream is to be read.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/families.h"

#include "DeviceTableUtils/register_fields.h"
#include "DeviceTableUtils/register_maps.h"

#include <algorithm>

namespace memdata {
namespace {

// What a group of families has in common about its packets.
struct PacketFacts {
    u32 configWordBytes;
    u32 dummyWord;
    u32 syncWord;
    u32 syncWordBytes;
    u32 crcAddressBits;
    void (*crcWordFunction)(u32 address, u32 word);
    i32 corCrcBypassIndex; // row of the COR table
    u32 crcBypassValue;
    bool crcRegisterFedBack;
    bool crcResetAfterAutoCRC;
    i32 encryptFieldIndex; // row of the CTL table
};

struct RegisterFacts {
    const RegisterMap& registers;
    const CommandMap& commands;
    const RegisterBitFieldType* commandFields;
    const RegisterBitFieldType* farFields;
    const RegisterBitFieldType* corFields;
    const RegisterBitFieldType* ctlFields;
    const RegisterBitFieldType* cor1Fields; // null where the family lacks the register, as the next
    const RegisterBitFieldType* ctl1Fields;
};

// clang-format off

//                              word  dummy       sync        sync   addr  CRC        bypass            fed    reset  encrypt
//                              bytes                         bytes  bits  function   row  value        back   auto   row
constexpr PacketFacts kFIRST_PACKETS{4, 0xFFFFFFFF, 0xAA995566, 4, 4, CRC_Word,  -1, 0,          true,  true,   0};
constexpr PacketFacts kII_PACKETS   {4, 0xFFFFFFFF, 0xAA995566, 4, 5, CRC_Word,   0, 0xDEFC,     true,  true,   1};
constexpr PacketFacts kIII_PACKETS  {4, 0xFFFFFFFF, 0xAA995566, 4, 5, CRC_Word,   1, 0xDEFC,     true,  true,   0};
constexpr PacketFacts kT5_PACKETS   {4, 0xFFFFFFFF, 0xAA995566, 4, 5, CRC_32_37,  0, 0xDEFC,     true,  true,  12};
// Row 0 of the COR table is the power-down bit from here on. It stays the bypass row on purpose: streams with that
// bit set carry the bypass value as their CRC.
constexpr PacketFacts kT6_PACKETS   {4, 0xFFFFFFFF, 0xAA995566, 4, 5, CRC_32_37,  0, 0xDEFC,     true,  true,  11};
constexpr PacketFacts kIIIA_PACKETS {2, 0xFFFF,     0xAA99,     2, 6, CRC_16_37,  4, 0x9876DEFC, false, true,   1};
constexpr PacketFacts kD6_PACKETS   {2, 0xFFFFFFFF, 0xAA995566, 4, 6, CRC_16_37,  4, 0x9876DEFC, false, false,  1};

constexpr RegisterFacts kFIRST_REGISTER_FACTS{kFIRST_REGISTERS, kFIRST_COMMANDS, kFIELDS_OF<kFIRST_COMMAND_ROWS>,
    kFIELDS_OF<kEARLY_FAR_ROWS>, kFIELDS_OF<kFIRST_COR_ROWS>, kFIELDS_OF<kFIRST_CTL_ROWS>, nullptr, nullptr};
constexpr RegisterFacts kII_REGISTER_FACTS{kTARSEL_II_REGISTERS, kTARSEL_II_COMMANDS, kFIELDS_OF<kSECOND_COMMAND_ROWS>,
    kFIELDS_OF<kEARLY_FAR_ROWS>, kFIELDS_OF<kTARSEL_II_COR_ROWS>, kFIELDS_OF<kTARSEL_II_CTL_ROWS>, nullptr, nullptr};
constexpr RegisterFacts kIII_REGISTER_FACTS{kDUNMARE_III_REGISTERS, kDUNMARE_III_COMMANDS, kFIELDS_OF<kSECOND_COMMAND_ROWS>,
    kFIELDS_OF<kEARLY_FAR_ROWS>, kFIELDS_OF<kDUNMARE_III_COR_ROWS>, kFIELDS_OF<kDUNMARE_III_CTL_ROWS>, nullptr, nullptr};
constexpr RegisterFacts kT4_REGISTER_FACTS{kTARSEL_4_REGISTERS, kTARSEL_4_COMMANDS, kFIELDS_OF<kSECOND_COMMAND_ROWS>,
    kFIELDS_OF<kTARSEL_4_FAR_ROWS>, kFIELDS_OF<kTARSEL_5_COR_ROWS>, kFIELDS_OF<kTARSEL_5_CTL_ROWS>, nullptr, nullptr};
constexpr RegisterFacts kT5_REGISTER_FACTS{kTARSEL_5_REGISTERS, kTARSEL_5_COMMANDS, kFIELDS_OF<kTARSEL_5_COMMAND_ROWS>,
    kFIELDS_OF<kTARSEL_5_FAR_ROWS>, kFIELDS_OF<kTARSEL_5_COR_ROWS>, kFIELDS_OF<kTARSEL_5_CTL_ROWS>,
    kFIELDS_OF<kTARSEL_5_COR1_ROWS>, kFIELDS_OF<kTARSEL_5_CTL1_ROWS>};
constexpr RegisterFacts kT6_REGISTER_FACTS{kTARSEL_6_REGISTERS, kTARSEL_5_COMMANDS, kFIELDS_OF<kTARSEL_5_COMMAND_ROWS>,
    kFIELDS_OF<kTARSEL_5_FAR_ROWS>, kFIELDS_OF<kTARSEL_6_COR_ROWS>, kFIELDS_OF<kTARSEL_6_CTL_ROWS>,
    kFIELDS_OF<kTARSEL_5_COR1_ROWS>, kFIELDS_OF<kTARSEL_5_CTL1_ROWS>};
constexpr RegisterFacts kT7_REGISTER_FACTS{kTARSEL_7_REGISTERS, kTARSEL_7_COMMANDS, kFIELDS_OF<kTARSEL_5_COMMAND_ROWS>,
    kFIELDS_OF<kTARSEL_5_FAR_ROWS>, kFIELDS_OF<kTARSEL_6_COR_ROWS>, kFIELDS_OF<kTARSEL_6_CTL_ROWS>,
    kFIELDS_OF<kTARSEL_5_COR1_ROWS>, kFIELDS_OF<kTARSEL_5_CTL1_ROWS>};
constexpr RegisterFacts kIIIA_REGISTER_FACTS{kDUNMARE_IIIA_REGISTERS, kDUNMARE_IIIA_COMMANDS, kFIELDS_OF<kSHORT_COMMAND_ROWS>,
    kFIELDS_OF<kDUNMARE_IIIA_FAR_ROWS>, kFIELDS_OF<kSHORT_COR_ROWS>, kFIELDS_OF<kDUNMARE_IIIA_CTL_ROWS>,
    kFIELDS_OF<kSHORT_COR2_ROWS>, nullptr};
constexpr RegisterFacts kD6_REGISTER_FACTS{kDUNMARE_6_REGISTERS, kDUNMARE_6_COMMANDS, kFIELDS_OF<kSHORT_COMMAND_ROWS>,
    kFIELDS_OF<kDUNMARE_6_FAR_ROWS>, kFIELDS_OF<kSHORT_COR_ROWS>, kFIELDS_OF<kDUNMARE_6_CTL_ROWS>,
    kFIELDS_OF<kSHORT_COR2_ROWS>, nullptr};

// clang-format on

struct BlockTypes {
    u32 clb, bram, io, pcfg;
};

constexpr BlockTypes kUSUAL_BLOCKS{0, 1, 0, 0};
constexpr BlockTypes kTARSEL_4_BLOCKS{0, 2, 0, 0};
constexpr BlockTypes kDUNMARE_6_BLOCKS{0, 1, 2, 3};

consteval TarselFamilyType family(const char* name, u64 mask, const TranslationTableType* decodeTable,
    u32 bramsPerLookupRow, const PacketFacts& packets, const RegisterFacts& registers, const BlockTypes& blocks) {
    TarselFamilyType table{.name = name,
        .familyMask = mask,
        .decodeTable = decodeTable,
        .encryptFieldIndex = packets.encryptFieldIndex,
        .crcAddressBits = packets.crcAddressBits,
        .crcWordFunction = packets.crcWordFunction,
        .corCrcBypassIndex = packets.corCrcBypassIndex,
        .crcBypassValue = packets.crcBypassValue,
        .crcRegisterFedBack = packets.crcRegisterFedBack,
        .crcResetAfterAutoCRC = packets.crcResetAfterAutoCRC,
        .bramsPerLookupRow = bramsPerLookupRow,
        .configWordBytes = packets.configWordBytes,
        .dummyWord = packets.dummyWord,
        .syncWord = packets.syncWord,
        .syncWordBytes = packets.syncWordBytes,
        .commandFields = registers.commandFields,
        .registerNames = registers.registers.names,
        .registerKinds = {},
        .commandNames = registers.commands.names,
        .farFields = registers.farFields,
        .clbBlockType = blocks.clb,
        .bramBlockType = blocks.bram,
        .ioBlockType = blocks.io,
        .pcfgBlockType = blocks.pcfg,
        .corFields = registers.corFields,
        .ctlFields = registers.ctlFields,
        .cor1Fields = registers.cor1Fields,
        .ctl1Fields = registers.ctl1Fields};
    std::ranges::copy(registers.registers.kinds, table.registerKinds);
    return table;
}

} // namespace
} // namespace memdata

using namespace memdata;

// clang-format off

//                                                                  label          mask    decode table         rows  packets         registers              blocks
constexpr TarselFamilyType kTarselFamilyTable       = family("Tarsel",        0x0001, tarselDecodeTables,   1, kFIRST_PACKETS, kFIRST_REGISTER_FACTS, kUSUAL_BLOCKS);
constexpr TarselFamilyType kTarselEFamilyTable      = family("Tarsel-e",      0x0002, tarselDecodeTables,   1, kFIRST_PACKETS, kFIRST_REGISTER_FACTS, kUSUAL_BLOCKS);
constexpr TarselFamilyType kDunmareIIFamilyTable    = family("Dunmare-II",    0x0004, tarselDecodeTables,   1, kFIRST_PACKETS, kFIRST_REGISTER_FACTS, kUSUAL_BLOCKS);
constexpr TarselFamilyType kDunmareIIEFamilyTable   = family("Dunmare-IIe",   0x0008, tarselDecodeTables,   1, kFIRST_PACKETS, kFIRST_REGISTER_FACTS, kUSUAL_BLOCKS);
constexpr TarselFamilyType kTarselIIFamilyTable     = family("Tarsel-II",     0x0010, tarsel2DecodeTables,  1, kII_PACKETS,    kII_REGISTER_FACTS,    kUSUAL_BLOCKS);
constexpr TarselFamilyType kTarselPROIIFamilyTable  = family("Tarsel-II PRO", 0x0020, tarsel2DecodeTables,  1, kII_PACKETS,    kII_REGISTER_FACTS,    kUSUAL_BLOCKS);
constexpr TarselFamilyType kTarsel4FamilyTable      = family("Tarsel-4",      0x0040, nullptr,              1, kT5_PACKETS,    kT4_REGISTER_FACTS,    kTARSEL_4_BLOCKS);
constexpr TarselFamilyType kTarsel5FamilyTable      = family("Tarsel-5",      0x0080, nullptr,              2, kT5_PACKETS,    kT5_REGISTER_FACTS,    kUSUAL_BLOCKS);
constexpr TarselFamilyType kTarsel6FamilyTable      = family("Tarsel-6",      0x0100, nullptr,              2, kT6_PACKETS,    kT6_REGISTER_FACTS,    kUSUAL_BLOCKS);
constexpr TarselFamilyType kTarsel7FamilyTable      = family("Tarsel-7",      0x0200, nullptr,              2, kT6_PACKETS,    kT7_REGISTER_FACTS,    kUSUAL_BLOCKS);
constexpr TarselFamilyType kPelkFamilyTable         = family("Pelk",          0x0400, nullptr,              2, kT6_PACKETS,    kT7_REGISTER_FACTS,    kUSUAL_BLOCKS);
constexpr TarselFamilyType kTarsel8FamilyTable      = family("Tarsel-8",      0x0800, nullptr,              2, kT6_PACKETS,    kT7_REGISTER_FACTS,    kUSUAL_BLOCKS);
constexpr TarselFamilyType kDunmareIIIFamilyTable   = family("Dunmare-III",   0x1000, dunmare3DecodeTables, 1, kIII_PACKETS,   kIII_REGISTER_FACTS,   kUSUAL_BLOCKS);
constexpr TarselFamilyType kDunmareIIIEFamilyTable  = family("Dunmare-IIIe",  0x2000, dunmare3DecodeTables, 1, kIII_PACKETS,   kIII_REGISTER_FACTS,   kUSUAL_BLOCKS);
constexpr TarselFamilyType kDunmareIIIaFamilyTable  = family("Dunmare-IIIa",  0x4000, nullptr,              1, kIIIA_PACKETS,  kIIIA_REGISTER_FACTS,  kUSUAL_BLOCKS);
constexpr TarselFamilyType kDunmare6FamilyTable     = family("Dunmare6",      0x8000, nullptr,              1, kD6_PACKETS,    kD6_REGISTER_FACTS,    kDUNMARE_6_BLOCKS);

// clang-format on
