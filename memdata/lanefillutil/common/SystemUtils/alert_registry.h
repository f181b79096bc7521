// alert_registry.h - the look-up table of messages by number.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_SYSTEM_UTILS_ALERT_REGISTRY_H
#define MEMDATA_SYSTEM_UTILS_ALERT_REGISTRY_H

#include "SystemUtils/messages.h"

// The messages to enter, ended by a null pointer; itself null in every build: the messages are constants that
// their callers name, and the registry stays empty.
extern const Alert_message_type* const* gAlertMessageArray;

// By number, null where no message was entered; a tracked block. Null outside a start-up. It has one entry
// more than the highest number entered: one entry, null, in an empty registry.
extern const Alert_message_type** gAlertMessageLookupArray;

// Makes the look-up table and enters the messages of gAlertMessageArray by their numbers. A number that was
// entered before keeps its first message; "INTERNAL_ERROR:%s:0 - Message number overloaded, '%u'.\n", with the
// tool's name, is written to standard output. Start-up calls this once; shut-down puts the alert layer back to
// its first state. The sweep of memory at shut-down releases the table.
void InitializeSystemAlertMessages();

#endif
