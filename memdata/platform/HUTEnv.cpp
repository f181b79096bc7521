// HUTEnv.cpp - the environment texts of the host in force.
// SPDX-License-Identifier: Apache-2.0
#include "platform/HUTEnv.h"

#include "platform/host.h"

std::string HUTEnv::getFullProductStr() {
    return memdata::host().fullProduct();
}

std::string HUTEnv::getFullBuildStr() {
    return memdata::host().fullBuild();
}

std::string HUTEnv::getCopyrightStr() {
    return memdata::host().firstNotice();
}

std::string HUTEnv::getOtherCopyrightStr() {
    return memdata::host().secondNotice();
}

std::string HUTEnv::getDATE() {
    return memdata::host().date();
}

std::string HUTEnv::getZHRTmpDir() {
    return memdata::host().temporaryDirectory();
}
