// ComMsgMgr.h - the host's message manager: catalogue codes with arguments go in, the host words them.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_COM_MSG_MGR_H
#define MEMDATA_PLATFORM_COM_MSG_MGR_H

#include "platform/FormatArgument.h"

class ComMsgMgr {
public:
    // Severity of a message.
    enum MsgMask : u32 {
        kSTATUS = 0x2000000,
        kINFO = 0x4000000,
        kWARNING = 0x8000000,
        kCRITICAL_WARNING = 0x10000000,
        kERROR = 0x20000000,
    };

    class sendMsg {
    public:
        // group: "memdata".
        // severity: a mask; a plain number reaches the host as it is.
        // format: "@28-NNN@" followed by the format of the arguments ("@28-207@%s"). Arguments beyond the
        // format are sent too, each by its own type. Sending changes nothing and throws nothing of ours.
        template<class... Arguments>
        static void eval(const char* group, u32 severity, const char* format, const Arguments&... arguments) {
            send(group, severity, format, memdata::formatArguments(arguments...));
        }

    private:
        static void send(
            const char* group, u32 severity, const char* format, std::span<const memdata::FormatArgument> arguments);
    };
};

#endif
