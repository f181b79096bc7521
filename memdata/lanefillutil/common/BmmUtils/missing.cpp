// missing.cpp - what this room owes to those below and this build does not have yet.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/bmm_info.h"
#include "BmmUtils/instance_names.h"
#include "SystemUtils/alerts.h"

int parse_instance_name(parse_stream*, token_element*, bool, bool*, char**) {
    return PrintInternalError(kERROR_MESSAGE_STRING, 3, "This build cannot read instance names yet.");
}
char* stripInstancePath(char* path) {
    return path;
}

int parse_bmm_info(parse_stream*, token_element*, CmdStringOptionsType*) {
    return PrintError(kERROR_MESSAGE_STRING, 3, "This build cannot read compact address maps yet.");
}
int finalize_bmm_info(CmdStringOptionsType*) {
    return 0;
}
