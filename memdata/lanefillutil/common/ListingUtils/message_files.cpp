// message_files.cpp - messages on the console, and files of messages for those who translate them.
// SPDX-License-Identifier: Apache-2.0
#include "FileUtils/opening.h"
#include "ListingUtils/ListingUtils.h"
#include "StringUtils/escape.h"
#include "StringUtils/format.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"

#include <cstring>

namespace {

constexpr char kALERT_FILE_BANNER[] = "#\n"
                                      "# Messages of %s, for translation.\n"
                                      "#\n"
                                      "# $Revision$\n"
                                      "#\n"
                                      "# One message a line: its name, then its text in quotes.\n"
                                      "#\n";
constexpr char kPORT_FILE_BANNER[] = "//\n"
                                     "// Messages of %s.\n"
                                     "//\n"
                                     "// $Revision$\n"
                                     "//\n"
                                     "// This file lets the message extractor find the messages.\n"
                                     "//\n";

int write_banner_file(fileSpecType* spec, const char* extension, const char* banner) {
    if (spec == nullptr) return 3;
    // Like every output of a run, this one replaces no file unless that was allowed.
    constexpr u32 kATTRIBUTES = kTEXT_WRITE | kREFUSE_OVERWRITE;
    memdata::Tracked<fileIODescriptor, memdata::abandonFile> file;
    int status = OpenDiskFile(spec, nullptr, extension, nullptr, kATTRIBUTES, file.out());
    if (status == 0) status = PutNextLine(file.get(), banner, GetSystemToolName());
    if (status != 0) return status;
    fileIODescriptor* finished = file.release();
    status = Close_File(&finished);
    file.reset(finished); // kept by a close that failed
    return status;
}

} // namespace

int OutputConsoleMessage(fileIODescriptor* file, const char* text) {
    return text == nullptr ? 0 : PutNextLine(file, "%s", text);
}

int OutputFormatString(fileIODescriptor* file, const char* name, const char* text, bool last) {
    std::string numbered;
    unsigned count = 0;
    for (const char* at = text == nullptr ? "" : text; *at != '\0';) {
        if (*at != '%') {
            numbered.push_back(*at++);
            continue;
        }
        const char letter = memdata::skipConversion(&at);
        if (letter == '%') numbered.append("%%");
        if (letter != '%' && letter != '\0') numbered += memdata::formatted("!%c%ld!", letter, ++count);
    }
    return PutNextLine(
        file, "%s \"%s\"%s\n", name == nullptr ? "" : name, memdata::escapedText(numbered), last ? "" : ",");
}

int OutputAlertMsgFile(fileSpecType* spec) {
    return write_banner_file(spec, "msg", kALERT_FILE_BANNER);
}

int OutputPortLocMsgFile(fileSpecType* spec) {
    return write_banner_file(spec, "c", kPORT_FILE_BANNER);
}
