// attribute_names.h - names of attributes that the host and we keep on designs.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_ATTRIBUTE_NAMES_H
#define MEMDATA_PLATFORM_ATTRIBUTE_NAMES_H

// Part of the host's vocabulary; no flow of ours depends on one of these.
#define MEMDATA_HOST_ATTRIBUTE(suffix) "__HD" suffix

namespace memdata {

inline constexpr char kHOST_ORIG_NAME_ATTRIBUTE[] = MEMDATA_HOST_ATTRIBUTE("_ORIG_NAME");
inline constexpr char kHOST_EDIF_NAME_ATTRIBUTE[] = MEMDATA_HOST_ATTRIBUTE("_EDIF_NAME");
inline constexpr char kHOST_IS_CORE_TOP_ATTRIBUTE[] = MEMDATA_HOST_ATTRIBUTE("_IS_CORE_TOP");
inline constexpr char kHOST_IS_CORE_CELL_ATTRIBUTE[] = MEMDATA_HOST_ATTRIBUTE("_IS_CORE_CELL");
inline constexpr char kHOST_CORE_FILE_ATTRIBUTE[] = MEMDATA_HOST_ATTRIBUTE("_CORE_FILE");
inline constexpr char kHOST_SYNTH_MODULE_ATTRIBUTE[] = MEMDATA_HOST_ATTRIBUTE("_SYNTH_MODULE");
inline constexpr char kHOST_IS_PR_ATTRIBUTE[] = MEMDATA_HOST_ATTRIBUTE("_IS_PR");
inline constexpr char kHOST_IS_PARTITION_ATTRIBUTE[] = MEMDATA_HOST_ATTRIBUTE("_IS_PARTITION");
inline constexpr char kHOST_ONCF_FILE_ATTRIBUTE[] = MEMDATA_HOST_ATTRIBUTE("_ONCF_FILE");
inline constexpr char kHOST_COMP_ROUTING_PIN_ATTRIBUTE[] = MEMDATA_HOST_ATTRIBUTE("_COMP_ROUTING_PIN");
inline constexpr char kHOST_COMP_ROUTING_DIRECTION_ATTRIBUTE[] = MEMDATA_HOST_ATTRIBUTE("_COMP_ROUTING_DIRECTION");
inline constexpr char kHOST_RTL_NETLIST_TYPE_ATTRIBUTE[] = MEMDATA_HOST_ATTRIBUTE("_RTL_NETLIST_TYPE");
inline constexpr char kHOST_RTL_NETLIST_SECURE_ATTRIBUTE[] = MEMDATA_HOST_ATTRIBUTE("_RTL_NETLIST_SECURE");
inline constexpr char kHOST_META_PROGRAM_ATTRIBUTE[] = MEMDATA_HOST_ATTRIBUTE("_META_PROGRAM");
inline constexpr char kHOST_META_VERSION_ATTRIBUTE[] = MEMDATA_HOST_ATTRIBUTE("_META_VERSION");
inline constexpr char kHOST_DRC_ODC_COLLISION_INIT_ATTRIBUTE[] = MEMDATA_HOST_ATTRIBUTE("_DRC_ODC_COLLISION_INIT");

// The property of a design that carries its address map.
inline constexpr char kBMM_INFO_DESIGN_ATTRIBUTE[] = "BMM_INFO_DESIGN";

} // namespace memdata

#undef MEMDATA_HOST_ATTRIBUTE

#endif
