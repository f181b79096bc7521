// file_switches.cpp - switches that take one file: -bt, -image, -pp, -log, -f, -msg, -msgc.
// SPDX-License-Identifier: Apache-2.0
#include "CmdParseUtils/CmdParseUtils.h"
#include "CmdParseUtils/option_reader.h"

#include "FileUtils/journal.h"
#include "ListingUtils/ListingUtils.h"

namespace memdata {

namespace {

int write_messages(OptionReader* reader, int (*write)(fileSpecType*)) {
    OwnedFileSpec spec;
    if (int status = reader->path(spec.out()); status != 0) return status;
    const int status = write(spec.get());
    return status == 0 ? kMESSAGES_WRITTEN : status;
}

} // namespace

int readBitFileSwitch(OptionReader* reader) {
    return reader->path(&reader->options->bitFile);
}

int readImageSwitch(OptionReader* reader) {
    return reader->path(&reader->options->imageFile);
}

int readPreprocessSwitch(OptionReader* reader) {
    return reader->path(&reader->options->preprocessFile);
}

int readLogSwitch(OptionReader* reader) {
    if (int status = reader->path(&reader->options->logFile); status != 0) return status;
    return OpenJournalingFile(reader->options->logFile);
}

// The file's name stays in the record: an option file that names one is refused, so none can read itself.
int readOptionFileSwitch(OptionReader* reader) {
    if (reader->options->optionFile != nullptr) return reader->fail(kERROR_F_ONLY_ONE_OPTION_FILE_ALLOWED);
    const TokenOwner place(dup_token_element(reader->token));
    if (place == nullptr) return 7;
    if (int status = reader->path(&reader->options->optionFile); status != 0) return status;
    if (int status = reader->flush(); status != 0) return status;
    const int status = ParseCmdFile(reader->options, reader->count);
    reader->look();
    if (status == 0 || status == kHELP_WANTED || status == kMESSAGES_WRITTEN) return status;
    return PrintErrorLocation(reader->stream, kERROR_F_OPTION_FILE_ERROR, kOPTION_FAILURE, place.get(),
        reader->options->optionFile->fullName);
}

int readMessageSwitch(OptionReader* reader) {
    return write_messages(reader, OutputAlertMsgFile);
}

int readLocationSwitch(OptionReader* reader) {
    return write_messages(reader, OutputPortLocMsgFile);
}

} // namespace memdata
