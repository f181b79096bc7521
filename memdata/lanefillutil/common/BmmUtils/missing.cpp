// missing.cpp - what this room owes to those below and this build does not have yet.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/template_copy.h"
#include "SystemUtils/alerts.h"

int finish_addressSpace_data(AddressSpaceDefType*) {
    return PrintInternalError(kERROR_MESSAGE_STRING, 3, "This build lacks the checks of address spaces.");
}
