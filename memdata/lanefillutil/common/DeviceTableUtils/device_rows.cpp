// device_rows.cpp - the device data of devices/, compiled in.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/device_rows.h"

#include "DeviceTableUtils/families.h"

namespace memdata {
namespace {

#include "devices/column_maps.inc"

#include "devices/tarsel.inc"
#include "devices/tarsel_e.inc"

#include "devices/dunmare_2.inc"
#include "devices/dunmare_2e.inc"

#include "devices/tarsel_2.inc"
#include "devices/tarsel_2_pro.inc"

#include "devices/tarsel_4.inc"
#include "devices/tarsel_5.inc"
#include "devices/tarsel_6.inc"
#include "devices/tarsel_7.inc"

#include "devices/pelk.inc"

#include "devices/dunmare_3.inc"
#include "devices/dunmare_3a.inc"
#include "devices/dunmare_3e.inc"
#include "devices/dunmare_6.inc"

#include "devices/generic.inc"
#include "devices/irregularities.inc"

constexpr FamilyRows kFAMILIES[] = {
    {&kTarselFamilyTable, kTARSEL_ROWS},
    {&kTarselEFamilyTable, kTARSEL_E_ROWS},
    {&kDunmareIIFamilyTable, kDUNMARE_II_ROWS},
    {&kDunmareIIEFamilyTable, kDUNMARE_IIE_ROWS},
    {&kTarselIIFamilyTable, kTARSEL_II_ROWS},
    {&kTarselPROIIFamilyTable, kTARSEL_PRO_II_ROWS},
    {&kTarsel4FamilyTable, kTARSEL_4_ROWS},
    {&kTarsel5FamilyTable, kTARSEL_5_ROWS},
    {&kTarsel6FamilyTable, kTARSEL_6_ROWS},
    {&kTarsel7FamilyTable, kTARSEL_7_ROWS},
    {&kPelkFamilyTable, kPELK_ROWS},
    {&kDunmareIIIFamilyTable, kDUNMARE_III_ROWS},
    {&kDunmareIIIEFamilyTable, kDUNMARE_IIIE_ROWS},
    {&kDunmareIIIaFamilyTable, kDUNMARE_IIIA_ROWS},
    {&kDunmare6FamilyTable, kDUNMARE_6_ROWS},
};

constexpr size_t rowCount() {
    size_t count = std::size(kGENERICS);
    for (const FamilyRows& family : kFAMILIES) count += family.rows.size();
    return count;
}

} // namespace

constinit const std::span<const GenericRow> kGENERIC_ROWS = kGENERICS;
constinit const char* const kGENERIC_GEOMETRY = kGENERIC_DEVICE;
constinit const std::span<const FamilyRows> kFAMILY_ROWS = kFAMILIES;
constinit const std::span<const HoleRow> kHOLES = kHOLE_ROWS;
constinit const std::span<const IrregularColumn> kIRREGULAR_COLUMNS = kIRREGULAR_COLUMN_ROWS;

constinit TarselDeviceType kTarselDeviceTable[rowCount() + 1] = {};
constinit const size_t kDEVICE_COUNT = rowCount();

} // namespace memdata
