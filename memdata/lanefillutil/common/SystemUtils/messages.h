// messages.h - every numbered message of the engine as a named constant.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_SYSTEM_UTILS_MESSAGES_H
#define MEMDATA_SYSTEM_UTILS_MESSAGES_H

#include "platform/BasicTypes.h"

#include <algorithm>
#include <functional>
#include <iterator>

// A message: a constant pair, fixed at build time.
struct Alert_message_type {
    u32 number;       // what a user reads behind the tool's name; 0 for a message without a number
    const char* text; // a format of vStrPrintf
};

#define ALERT_MESSAGE(name, number, text) inline constexpr Alert_message_type name{number, text};
#include "SystemUtils/messages.def"
#undef ALERT_MESSAGE

namespace memdata {

struct NamedAlertMessage {
    const char* name; // of the constant
    u32 number;
    const char* text;
};

// All messages in ascending order of their numbers.
inline constexpr NamedAlertMessage kALERT_MESSAGES[] = {
#define ALERT_MESSAGE(name, number, text) {#name, number, text},
#include "SystemUtils/messages.def"
#undef ALERT_MESSAGE
};
static_assert(std::size(kALERT_MESSAGES) == 143);
static_assert(std::ranges::adjacent_find(kALERT_MESSAGES, std::ranges::greater_equal{}, &NamedAlertMessage::number) ==
                  std::ranges::end(kALERT_MESSAGES),
    "message numbers ascend strictly");

} // namespace memdata

#endif
