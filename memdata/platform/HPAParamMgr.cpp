// HPAParamMgr.cpp - the way to the parameter manager of the host in force.
// SPDX-License-Identifier: Apache-2.0
#include "platform/HPAParamMgr.h"

#include "platform/host.h"

HPAParamMgr& HPAParamMgr::getParamMgr() {
    return memdata::host().parameters();
}
