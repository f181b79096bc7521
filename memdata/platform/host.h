// host.h - everything that we ask of the program around us, as one object that can be exchanged.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_PLATFORM_HOST_H
#define MEMDATA_PLATFORM_HOST_H

#include "platform/BasicTypes.h"

#include <string>
#include <string_view>
#include <vector>

class HPAParamMgr;

namespace memdata {

// A message on its way to the host. The views hold during the call only.
struct HostMessage {
    std::string_view group;             // "memdata"
    u32 severity = 0;                   // a ComMsgMgr::MsgMask, or a plain number where the engine passes one
    u32 area = 0;                       // 28 of "@28-207@"; 0 when the format begins with no code
    u32 number = 0;                     // 207 of "@28-207@"; 0 likewise
    std::string_view format;            // behind the code: "%s%lx"
    std::vector<std::string> arguments; // rendered as the format says, one text each, in order
};

// One host at a time serves the process. All calls come on one thread.
class Host {
public:
    Host() = default;
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;
    virtual ~Host() = default;

    virtual void message(const HostMessage& message) = 0;
    virtual HPAParamMgr& parameters() = 0;

    // How far a stage of the run is, for hosts that show it: "Reading 'app.mem'...", 0 to 100. Called at the start of a
    // stage and then once a percent at most.
    virtual void progress(std::string_view /*stage*/, int /*percent*/) {}
    // Text is about to go to standard output: what a host shows for the moment only has to leave the terminal first.
    virtual void beforeOutput() {}

    // What stands in the heads of written files.
    virtual std::string fullProduct() const = 0;
    virtual std::string fullBuild() const = 0;
    virtual std::string firstNotice() const = 0;
    virtual std::string secondNotice() const = 0;
    virtual std::string date() const = 0; // "Mmm dd yyyy", eleven characters

    virtual std::string temporaryDirectory() const = 0; // without a separator at its end
};

// The host in force; the default host until another is set.
Host& host();

// Puts another host in force, null for the default one, and registers the library's parameters with it.
// Returns the host that was in force. The caller keeps the newcomer alive for as long as it is in force.
Host* setHost(Host* newcomer);

// The host of a process that sets none. Declared here and defined above, in hosts/standalone: the platform
// only says what it asks for. It lives as long as the process.
Host& defaultHost();

} // namespace memdata

#endif
