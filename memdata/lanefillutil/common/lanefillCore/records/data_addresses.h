// data_addresses.h - addresses that accompany a data file: where it boots and where it asks to start.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_RECORDS_DATA_ADDRESSES_H
#define MEMDATA_LANEFILL_CORE_RECORDS_DATA_ADDRESSES_H

#include "platform/BasicTypes.h"

inline constexpr u32 kBOOT_NONE = 0;      // no request
inline constexpr u32 kBOOT_FROM_FILE = 1; // "boot" without a value; in a map: taken from a file unasked
inline constexpr u32 kBOOT_ADDRESS = 2;   // "boot" with a value; in a map: asked for

template<class Address>
struct BootAddressTypeX {
    u32 kind; // kBOOT_...
    Address address;
};

template<class Address>
struct StartAddressTypeX {
    bool isSet;
    Address address;
};

#endif
