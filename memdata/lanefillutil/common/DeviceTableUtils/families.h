// families.h - the sixteen device families, and what their tables point at in rooms above.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_DEVICE_TABLE_UTILS_FAMILIES_H
#define MEMDATA_DEVICE_TABLE_UTILS_FAMILIES_H

#include "DeviceTableUtils/records.h"

#include <array>

extern const TarselFamilyType kTarselFamilyTable;
extern const TarselFamilyType kTarselEFamilyTable;
extern const TarselFamilyType kDunmareIIFamilyTable;
extern const TarselFamilyType kDunmareIIEFamilyTable;
extern const TarselFamilyType kTarselIIFamilyTable;
extern const TarselFamilyType kTarselPROIIFamilyTable;
extern const TarselFamilyType kTarsel4FamilyTable;
extern const TarselFamilyType kTarsel5FamilyTable;
extern const TarselFamilyType kTarsel6FamilyTable;
extern const TarselFamilyType kTarsel7FamilyTable;
extern const TarselFamilyType kPelkFamilyTable;
extern const TarselFamilyType kTarsel8FamilyTable;
extern const TarselFamilyType kDunmareIIIFamilyTable;
extern const TarselFamilyType kDunmareIIIEFamilyTable;
extern const TarselFamilyType kDunmareIIIaFamilyTable;
extern const TarselFamilyType kDunmare6FamilyTable;

// Decode tables, defined in BRAMDecodeUtils: a row per frame of the memory form.
namespace memdata {
template<size_t Rows>
using DecodeRows = std::array<TranslationTableType, Rows>;
extern const DecodeRows<64> kTARSEL_DECODE_ROWS;
extern const DecodeRows<64> kTARSEL_2_DECODE_ROWS;
extern const DecodeRows<76> kDUNMARE_3_DECODE_ROWS;
extern const DecodeRows<64> kT4_LOWER_DECODE_ROWS;
extern const DecodeRows<64> kT4_UPPER_DECODE_ROWS;
extern const DecodeRows<128> kTARSEL_5_36_DECODE_ROWS;
extern const DecodeRows<128> kT5_18_LOWER_DECODE_ROWS;
extern const DecodeRows<128> kT5_18_UPPER_DECODE_ROWS;
extern const DecodeRows<64> kDUNMARE_6_18_DECODE_ROWS;
} // namespace memdata

inline constexpr const TranslationTableType* tarselDecodeTables = memdata::kTARSEL_DECODE_ROWS.data();
inline constexpr const TranslationTableType* tarsel2DecodeTables = memdata::kTARSEL_2_DECODE_ROWS.data();
inline constexpr const TranslationTableType* dunmare3DecodeTables = memdata::kDUNMARE_3_DECODE_ROWS.data();
inline constexpr const TranslationTableType* T4LowerDecodeTable = memdata::kT4_LOWER_DECODE_ROWS.data();
inline constexpr const TranslationTableType* T4UpperDecodeTable = memdata::kT4_UPPER_DECODE_ROWS.data();
inline constexpr const TranslationTableType* tarsel5_36DecodeTables = memdata::kTARSEL_5_36_DECODE_ROWS.data();
inline constexpr const TranslationTableType* T5_18LowerDecodeTable = memdata::kT5_18_LOWER_DECODE_ROWS.data();
inline constexpr const TranslationTableType* T5_18UpperDecodeTable = memdata::kT5_18_UPPER_DECODE_ROWS.data();
inline constexpr const TranslationTableType* dunmare6_18DecodeTables = memdata::kDUNMARE_6_18_DECODE_ROWS.data();

// The CRC of one configuration word with its register address, entered in the running stream's CRC. Defined in
// BitFileUtils.
void CRC_Word(u32 address, u32 word);
void CRC_16_37(u32 address, u32 word);
void CRC_32_37(u32 address, u32 word);

#endif
