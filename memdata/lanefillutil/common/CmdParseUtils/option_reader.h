// option_reader.h - what the handlers of all switches share: the text, the record that it fills, and how arguments
// are read.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_CMD_PARSE_UTILS_OPTION_READER_H
#define MEMDATA_CMD_PARSE_UTILS_OPTION_READER_H

#include "CmdParseUtils/keywords.h"
#include "ParseUtils/streams.h"
#include "SystemUtils/alerts.h"
#include "lanefillCore/records/list_appender.h"
#include "lanefillCore/records/option_record.h"

#include <string>

namespace memdata {

inline constexpr int kOPTION_FAILURE = 14;
inline constexpr int kHELP_WANTED = -1;      // -h ends the parse with it
inline constexpr int kMESSAGES_WRITTEN = -2; // -msg and -msgc end the parse with it

// One stretch of option text that is being read into a record.
class OptionReader {
public:
    OptionReader(parse_stream* text, token_element* next, CmdStringOptionsType* record, int* switches);
    OptionReader& operator=(OptionReader&&) = delete; // neither copied nor moved

    // Reads the next token. Status as get_next_token.
    int next();
    // "-", a switch, the end of the text: what can stand behind the arguments of a switch.
    bool atEnd() const;

    // An error at the token, whose text is the first argument of the message. Gives the status.
    template<class... Arguments>
    int refuse(const Alert_message_type& message, int status, const Arguments&... arguments) {
        return PrintErrorLocation(stream, message, status, token, token->text, arguments...);
    }
    // An error at the token. Gives kOPTION_FAILURE.
    template<class... Arguments>
    int fail(const Alert_message_type& message, const Arguments&... arguments) {
        return PrintErrorLocation(stream, message, kOPTION_FAILURE, token, arguments...);
    }

    // The path behind the token takes the place of an earlier one. Status as parse_file_pathname.
    int path(fileSpecType** spec);
    // The same for a switch that has an alert of its own for a path that is missing: kOPTION_FAILURE then.
    int path(fileSpecType** spec, const Alert_message_type& missing);

    // Puts what is still held into the record, which others may then read and change; look is to follow. Status 0, 7.
    int flush();
    void look();

    parse_stream* stream;
    token_element* token; // the switch when its handler starts, the token behind its arguments when it ends
    CmdStringOptionsType* options;
    int* count; // switches so far
    ListAppender<FileSpecLists> bmmFiles;
    ListAppender<FileSpecLists> outputImageFiles;
    ListAppender<StringLists> includePaths;
    ListAppender<StringLists> workflowOps;
    ListAppender<StringLists> helpTopics;
    BDSwitchDataType** bdEnd; // where the next node goes
    BDSwitchDataType** bxEnd;
    std::string macroDefines; // lines that the record does not have yet
};

// Handlers of switches. Status 0; the parse ends with any other one.
int readDataFileSwitch(OptionReader* reader);   // -bd
int readMemFolderSwitch(OptionReader* reader);  // -bx
int readMapSwitch(OptionReader* reader);        // -bm
int readXmlTextSwitch(OptionReader* reader);    // -mx
int readInfoTextSwitch(OptionReader* reader);   // -mf
int readDatasetSwitch(OptionReader* reader);    // -dataset
int readOutputSwitch(OptionReader* reader);     // -o
int readDumpSwitch(OptionReader* reader);       // -d
int readQuietSwitch(OptionReader* reader);      // -q
int readOptionFileSwitch(OptionReader* reader); // -f
int readBitFileSwitch(OptionReader* reader);    // -bt
int readImageSwitch(OptionReader* reader);      // -image
int readPreprocessSwitch(OptionReader* reader); // -pp
int readLogSwitch(OptionReader* reader);        // -log
int readMessageSwitch(OptionReader* reader);    // -msg
int readLocationSwitch(OptionReader* reader);   // -msgc
int readPartSwitch(OptionReader* reader);       // -p
int readFillSwitch(OptionReader* reader);       // -fill
int readSplitSwitch(OptionReader* reader);      // -split
int readByteWidthSwitch(OptionReader* reader);  // -bytewidth
int readWorkflowSwitch(OptionReader* reader);   // -workflow
int readIncludeSwitch(OptionReader* reader);    // -I
int readDefineSwitch(OptionReader* reader);     // -D
int readHelpSwitch(OptionReader* reader);       // -h
int readIgnoreSwitch(OptionReader* reader);     // -i
int readUpdateSwitch(OptionReader* reader);     // -u
int readProgressSwitch(OptionReader* reader);   // -pg
int readAutoInitSwitch(OptionReader* reader);   // -a
int readOverwriteSwitch(OptionReader* reader);  // -w

// Reads a dataset file into bdList. Status 0; 14 with an alert for an address space without a data file; 7; that of
// reading the file.
int readDataset(OptionReader* reader, fileSpecType* spec);

} // namespace memdata

#endif
