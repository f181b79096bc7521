// CmdParseUtils.h - option texts to the option record.
// SPDX-License-Identifier: Apache-2.0
//
//   keywords     the switches and their modifiers
//   help_topics  what can be said about each switch
//
// An option text is a row of switches with their arguments, in any order. It is read as any text of the engine is:
// macros, directives and comments work, names with special characters stand in double quotes. Switches are
// case-sensitive. A switch that is given again replaces its single value; lists grow.
//
//     CmdStringOptionsType options{};
//     int count = -1;                                  // no program name ahead of the switches
//     int status = ParseCmdStringOptions("-bm soc.bmm -bd boot.elf -o p out.bmm", &options, &count);
//     if (status == 0) status = FinalizeCmdStringOptions(&options);
//     if (status == 0) status = execute_command_line_options(&options);
//     DeleteCmdStringOptions(&options);
#ifndef MEMDATA_CMD_PARSE_UTILS_H
#define MEMDATA_CMD_PARSE_UTILS_H

#include "CmdParseUtils/help_topics.h"
#include "CmdParseUtils/keywords.h"
#include "ParseUtils/streams.h"
#include "lanefillCore/records/option_record.h"

// Nothing: a new record is all zero.
void InitalizeCmdStringOptions(CmdStringOptionsType* options);

// Reads an option text into a record, behind what the record holds already.
//   text     appended to cmdString
//   count    in: 0 when the first word may be the program's path: it is, when programFile is not set yet. Library
//            callers pass -1. Out: the switches that were read, those of an option file among them
// Status 0; -1 when help is wanted (helpTopics then names the topics), -2 when a message file was written: the rest
// of the text is not read then. Otherwise that of the failure, which has raised its alert: 14 for most, 1, 3, 7, 10, 21.
// The record is half filled then, which DeleteCmdStringOptions can handle.
int ParseCmdStringOptions(const char* text, CmdStringOptionsType* options, int* count);

// Reads switches up to the end of a stream whose first token was read, under cmd_line_keyword_set. Status as above.
int ParseCmdStringStream(parse_stream* stream, token_element* token, CmdStringOptionsType* options, int* count);

// Reads the file of optionFile, by default with the extension "opt". An empty one holds no switches. Status as above;
// 1 when it can not be opened.
int ParseCmdFile(CmdStringOptionsType* options, int* count);

// Closes what reaches over several option texts: the address maps that -mf has begun. Status 0, or that of compiling.
int FinalizeCmdStringOptions(CmdStringOptionsType* options);

namespace memdata {

// A record that goes back whatever ends its block, an exception too.
class OwnedOptions {
public:
    OwnedOptions() = default;
    ~OwnedOptions() { DeleteCmdStringOptions(&record_); }
    OwnedOptions& operator=(OwnedOptions&&) = delete; // neither copied nor moved
    CmdStringOptionsType* get() { return &record_; }

private:
    CmdStringOptionsType record_{};
};

} // namespace memdata

#endif
