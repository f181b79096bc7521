// messages.h - every numbered message of the engine as a named constant.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_SYSTEM_UTILS_MESSAGES_H
#define MEMDATA_SYSTEM_UTILS_MESSAGES_H

#include "platform/BasicTypes.h"

struct Alert_message_type {
    u32 number;
    const char* text; // a format of vStrPrintf
};

#define ALERT_MESSAGE(name, number, text) inline constexpr Alert_message_type name{number, text};
#include "SystemUtils/messages.def"
#undef ALERT_MESSAGE

#endif
