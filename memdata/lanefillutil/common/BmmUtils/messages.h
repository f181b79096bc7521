// messages.h - words that the messages of this room share.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_BMM_UTILS_MESSAGES_H
#define MEMDATA_BMM_UTILS_MESSAGES_H

namespace memdata {

// What messages call a BUS_BLOCK. The wrong word, on purpose.
inline constexpr const char* kBUS_BLOCK_MESSAGE_WORD = "ADDRESS_RANGE";

} // namespace memdata

#endif
