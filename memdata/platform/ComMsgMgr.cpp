// ComMsgMgr.cpp - takes a message apart and hands it to the host in force.
// SPDX-License-Identifier: Apache-2.0
#include "platform/ComMsgMgr.h"

#include "platform/host.h"
#include "platform/message_arguments.h"

void ComMsgMgr::sendMsg::send(
    const char* group, u32 severity, const char* format, std::span<const memdata::FormatArgument> arguments) {
    memdata::HostMessage message;
    message.group = group == nullptr ? "" : group;
    message.severity = severity;
    message.format = memdata::takeMessageCode(format == nullptr ? "" : format, &message.area, &message.number);
    message.arguments = memdata::renderedArguments(message.format, arguments);
    memdata::host().message(message);
}
