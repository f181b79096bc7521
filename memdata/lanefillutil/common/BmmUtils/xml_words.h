// xml_words.h - the elements and attributes of address maps in XML, for reader and writer.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_XML_WORDS_H
#define MEMDATA_BMM_UTILS_XML_WORDS_H

namespace memdata::xml {

inline constexpr char kADDRESS_MAP[] = "AddressMap";
inline constexpr char kPROCESSOR[] = "Processor";
inline constexpr char kADDRESS_SPACE[] = "AddressSpace";
inline constexpr char kRANGE[] = "Range";
inline constexpr char kBLOCK[] = "Block";
inline constexpr char kDEVICE[] = "Device";

inline constexpr char kVERSION[] = "Version";
inline constexpr char kMINOR[] = "Minor";
inline constexpr char kPROCESSOR_COUNT[] = "ProcessorElementCount"; // decimal, as all counts
inline constexpr char kSPACE_COUNT[] = "SpaceElementCount";
inline constexpr char kRANGE_COUNT[] = "RangeElementCount";
inline constexpr char kBUS_BLOCK_COUNT[] = "BusBlockElementCount";
inline constexpr char kDEVICE_COUNT[] = "DeviceElementCount"; // data lanes
inline constexpr char kECC_COUNT[] = "ECCElementCount";       // check lanes

inline constexpr char kNAME[] = "Name";
inline constexpr char kTYPE[] = "Type"; // processor or memory word
inline constexpr char kID[] = "Id";     // decimal
inline constexpr char kINSTANCE[] = "Instance";
inline constexpr char kSTYLE[] = "Style"; // "word" or "byte" addressing
inline constexpr char kSTYLE_WORD[] = "word";
inline constexpr char kSTYLE_BYTE[] = "byte";
inline constexpr char kSTART_ADDRESS[] = "StartAddress"; // hexadecimal
inline constexpr char kEND_ADDRESS[] = "EndAddress";     // hexadecimal
inline constexpr char kECC[] = "Ecc";
inline constexpr char kWIDTH[] = "Width"; // left:right bit
inline constexpr char kDEPTH[] = "Depth"; // low:high address
inline constexpr char kOUTPUT[] = "Output";
inline constexpr char kINPUT[] = "Input";
inline constexpr char kINIT[] = "Init";
inline constexpr char kLOC[] = "Loc"; // XcolumnYrow

inline constexpr char kRELATIVE_MARK[] = "*/"; // ahead of a relative instance name

} // namespace memdata::xml

#endif
