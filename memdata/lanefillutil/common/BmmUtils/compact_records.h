// compact_records.h - what the compact language keeps between its statements, and between the -mf options of a run.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_COMPACT_RECORDS_H
#define MEMDATA_BMM_UTILS_COMPACT_RECORDS_H

#include "ParseUtils/streams.h"
#include "StringUtils/format.h"
#include "SymbolUtils/SymbolUtils.h"
#include "SystemUtils/messages.h"
#include "lanefillCore/records/list_appender.h"
#include "lanefillCore/records/option_record.h"

#include <deque>
#include <string>
#include <unordered_set>
#include <vector>

// One memory device, as `c` tells it. Numbers stand as they were written.
struct component_ref_info {
    std::string instanceName;
    std::string path; // of the hierarchy; "" or "/" for none
    std::string memory;
    u32 eccType = 0;
    u64 bitFirst = 0;
    u64 bitSecond = 0;
    u64 addressFirst = 0; // device words
    u64 addressSecond = 0;
    std::string initFile; // as a map writes it; empty for none
    std::string inputFile;
    std::string outputFile;
};

// The devices that share a group's name, in the order of their statements.
struct component_group_info {
    std::string name;
    std::vector<component_ref_info> components;
};

// One range of a space, compiled. A list of them is a vector.
struct address_range_info {
    std::string text;   // its bus blocks
    std::string memory; // type name
    u64 busWidth = 0;   // bits
    u64 laneWidth = 0;  // bits
    u64 lanesPerBlock = 0;
    std::string instanceName;
    bool isRelative = false;
};
using address_range_list = std::vector<address_range_info>;

struct addressSpace_info {
    std::string name;
    std::string text;
    bool isReferenced = false; // a map holds it
};

struct addressMap_info {
    std::string name;
    std::string header; // " word" for each word
    std::vector<std::string> spaceNames;
    std::unordered_set<std::string> knownNames; // the same
};

struct reference_info {
    std::string name;
    std::string text; // items, each behind the hierarchy that it was told in
};

struct join_range_info {
    std::string text; // items as in reference_info
};

struct join_info {
    std::string name;
    std::string words; // instance and addressing, as `a` takes them
    u64 base = 0;
    u64 width = 0; // bits
    std::vector<join_range_info> ranges;
};

struct scratch_BMM_Info {
    std::string text;             // compiled so far, and not handed over yet
    std::string elaborationText;  // what `e` and `j` keep, in the order of telling
    std::string commandText;      // the words that were read
    std::string currentSpaceName; // what `*` stands for; empty for none
    std::string hierarchyPath;    // "" or "/" for none
    u64 keptBytes = 0;            // text that was compiled or kept, see kMAX_COMPACT_BYTES
    symbol_table* symbolTable = nullptr;
    symbol_context* spaceInfoNames = nullptr; // -> addressSpace_info
    symbol_context* componentNames = nullptr; // -> component_group_info
    symbol_context* referenceNames = nullptr; // -> reference_info
    symbol_context* mapInfoNames = nullptr;   // -> join_info; maps themselves are looked up by nobody
    std::deque<addressMap_info> addressMaps;
    std::deque<addressSpace_info> addressSpaces;
    std::deque<component_group_info> componentGroups;
    std::deque<reference_info> references;
    std::deque<join_info> joins;

    scratch_BMM_Info() = default;
    ~scratch_BMM_Info();
    scratch_BMM_Info& operator=(scratch_BMM_Info&&) = delete; // neither copied nor moved
};

// The one of this process; null until it is first needed.
extern scratch_BMM_Info* scratchBMMInfo;
// Makes it on first use; null without memory. It goes with delete_scratchBMMInfo, at the latest at shut-down.
scratch_BMM_Info* get_scratchBMMInfo();
void delete_scratchBMMInfo();

// Appends the separator and the text.
void collect_MF_info(std::string* report, const char* text, const char* separator);

namespace memdata {

// Text that all -mf options of a run may compile to and keep. Ranges can ask for devices, and uses of a reference for
// text, out of all proportion to what was written. Argument: the limit.
inline constexpr u64 kMAX_COMPACT_BYTES = u64{64} << 20;
inline constexpr Alert_message_type kERROR_COMPACT_MAP_TOO_LARGE{
    0, "The address maps of '-mf' exceed the limit of %ld bytes of compiled text."};

// One stretch of compact text that is being compiled.
struct InfoReader {
    parse_stream* stream;
    token_element* token; // the next word
    scratch_BMM_Info* scratch;
    CmdStringOptionsType* options;
    ListAppender<FileSpecLists>* bmmFiles; // those of the options
    bool isJoinText; // joins that became spaces: they have no instance, and hierarchies may stand between ranges
};

// Reads the next word; the present one goes into the report. Status as get_next_token.
int nextWord(const InfoReader& in);
// The word that must be an identifier or an integer, and the next one. Status 0; 3 with an alert that names what was
// expected; that of reading.
int takeIdentifier(const InfoReader& in, const char* expected, std::string* word);
int takeInteger(const InfoReader& in, const char* expected, u64* value);
// The same without reading on, for words that an instance name follows: see takeInstanceName.
int checkInteger(const InfoReader& in, const char* expected, u64* value);
// The instance name behind the word. Words of the language are names in it.
int takeInstanceName(const InfoReader& in, bool isPath, bool* relative, std::string* name);
// Counts text that is kept. Status 0; 3 with an alert at the word when it is too much.
int keepBytes(const InfoReader& in, u64 count);

} // namespace memdata

#endif
