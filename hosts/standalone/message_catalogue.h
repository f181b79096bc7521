// message_catalogue.h - the texts of the standalone host for the catalogue codes of the library.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_HOSTS_STANDALONE_MESSAGE_CATALOGUE_H
#define MEMDATA_HOSTS_STANDALONE_MESSAGE_CATALOGUE_H

#include "platform/host.h"

#include <span>
#include <string>

namespace memdata {

// One text of the catalogue. "{1}" to "{9}" are the places of the arguments.
struct CatalogueText {
    u32 number;         // 207 of "@28-207@"
    u32 severity;       // ComMsgMgr::MsgMask, for senders that pass a plain number
    const char* format; // the arguments that senders pass: "%s%lx"
    const char* text;
};

// Ascending by number.
std::span<const CatalogueText> messageCatalogue();
const CatalogueText* findCatalogueText(u32 area, u32 number); // null for an unknown code

// "ERROR: [memdata 28-203] text", without an end of line. Arguments for which the text has no place follow it
// in parentheses; a code without a text shows its arguments alone; control characters show as escapes.
std::string messageLine(const HostMessage& message);

} // namespace memdata

#endif
