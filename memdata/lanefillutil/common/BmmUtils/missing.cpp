// missing.cpp - what this room owes to those below and this build does not have yet.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/bmm_info.h"
#include "SystemUtils/alerts.h"

int parse_bmm_info(parse_stream*, token_element*, CmdStringOptionsType*) {
    return PrintError(kERROR_MESSAGE_STRING, 3, "This build cannot read compact address maps yet.");
}
int finalize_bmm_info(CmdStringOptionsType*) {
    return 0;
}
