// HUTEnv.h - build strings, date and temporary directory of the host in force.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_HUT_ENV_H
#define MEMDATA_PLATFORM_HUT_ENV_H

#include <string>

class HUTEnv {
public:
    static std::string getFullProductStr();
    static std::string getFullBuildStr();
    static std::string getCopyrightStr();      // first notice
    static std::string getOtherCopyrightStr(); // second notice
    static std::string getDATE();              // "Mmm dd yyyy", eleven characters
    static std::string getZHRTmpDir();         // without a separator at its end
};

#endif
