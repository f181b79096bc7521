// option_record.h - what a run was asked to do: one field for each thing that the options can say.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_LANEFILL_CORE_RECORDS_OPTION_RECORD_H
#define MEMDATA_LANEFILL_CORE_RECORDS_OPTION_RECORD_H

#include "FileUtils/file_spec.h"
#include "StringUtils/StringUtils.h"
#include "lanefillCore/records/bd_switch.h"
#include "lanefillCore/records/progress.h"

struct TarselDeviceType;

// Sub-types of a spec in bmmFiles.
inline constexpr u32 kBMM_TEXT_FILE = 'b';
inline constexpr u32 kBMM_XML_FILE = 'x';
inline constexpr u32 kBMM_XML_TEXT = 'm';    // XML held in memory
inline constexpr u32 kBMM_INFO_TEXT = 's';   // the compact language, compiled
inline constexpr u32 kBMM_NAMING_FILE = 'n'; // names the mapping and is not read

// Every pointer is owned by the record. A new record is all zero.
struct CmdStringOptionsType {
    char* cmdString;                 // all option strings so far, joined with one blank
    fileSpecType* programFile;       // the tool's own path
    fileSpecType* preprocessFile;    // -pp
    fileSpecType* outputBmmFile;     // -o p
    char* macroDefines;              // -D: "#define ..." lines, fed ahead of every map and MEM file
    fileSpecType* optionFile;        // -f
    fileSpecType* logFile;           // -log
    fileSpecType* dumpFile;          // -o d
    bool dumpEnabled;                // -d
    StrList includePaths;            // -I
    u32 quietMask;                   // -q: alert enable mask
    FileSpecList bmmFiles;           // -bm, -mm, -mx, -mf; sub-types kBMM_...; the attribute is the root, an
                                     // owned managed string, or null
    fileSpecType* bitFile;           // -bt
    u32 dumpMask;                    // letters of -d
    BDSwitchDataType* bdList;        // -bd, -md, -dataset
    fileSpecType* datasetFile;       // -dataset
    fileSpecType* outputXmlBmmFile;  // -o a
    BDSwitchDataType* bxList;        // -bx: folders for MEM files
    fileSpecType* outputUcfFile;     // -o u
    fileSpecType* outputVerilogFile; // -o v
    fileSpecType* outputVhdlFile;    // -o h
    fileSpecType* outputMemFile;     // -o m
    fileSpecType* outputBitFile;     // -o b
    bool ignoreUnmapped;             // -i
    bool autoInit;                   // -a
    bool updateAll;                  // -u
    bool designBmm;                  // -bm *
    char* partName;                  // -p
    TarselDeviceType* device;        // from -p or the bit file's header; not owned
    ProgressSinkType progress;       // -pg
    fileSpecType* keyFile;           // never filled: the option that fed it is gone; so the next three
    char* keyText1;
    char* keyText2;
    char* keyText3;
    fileSpecType* imageFile;       // -image
    FileSpecList outputImageFiles; // -o i, in order
    long double byteWidth;         // -bytewidth
    u64 fillByte;                  // -fill: 0 to 255
    bool fillEnabled;              // -fill
    u32 splitFormat;               // -split: a file format code
    StrList workflowOps;           // -workflow; lent to the mapping of a run
    char* bmmInfoText;             // -mf: the compiled text
    StrList helpTopics;            // -h
};

// Releases everything in the record; the log is closed, and its include folders are looked in no more. The record itself is the caller's and all zero.
void DeleteCmdStringOptions(CmdStringOptionsType* options);

#endif
