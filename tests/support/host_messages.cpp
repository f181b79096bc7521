// host_messages.cpp - a host that keeps messages and passes everything else on.
// SPDX-License-Identifier: Apache-2.0
#include "support/host_messages.h"

#include "hosts/standalone/message_catalogue.h"
#include "platform/ComMsgMgr.h"
#include "platform/host.h"

namespace memdata::testing {

namespace {

std::string severityText(u32 severity) {
    switch (severity) {
    case ComMsgMgr::kSTATUS:
        return "STATUS";
    case ComMsgMgr::kINFO:
        return "INFO";
    case ComMsgMgr::kWARNING:
        return "WARNING";
    case ComMsgMgr::kCRITICAL_WARNING:
        return "CRITICAL WARNING";
    case ComMsgMgr::kERROR:
        return "ERROR";
    default:
        return std::to_string(severity);
    }
}

HostMessage asSent(const CapturedMessage& message) {
    return {message.group, message.severity, message.area, message.number, message.format, message.arguments};
}

} // namespace

class CapturedMessages::Sink : public Host {
public:
    Sink() : below_(host()), replaced_(setHost(this)) {}
    ~Sink() override { setHost(replaced_); }

    void message(const HostMessage& message) override {
        messages.push_back({std::string(message.group), message.severity, message.area, message.number,
            std::string(message.format), message.arguments});
    }
    HPAParamMgr& parameters() override { return below_.parameters(); }
    std::string fullProduct() const override { return below_.fullProduct(); }
    std::string fullBuild() const override { return below_.fullBuild(); }
    std::string firstNotice() const override { return below_.firstNotice(); }
    std::string secondNotice() const override { return below_.secondNotice(); }
    std::string date() const override { return below_.date(); }
    std::string temporaryDirectory() const override { return below_.temporaryDirectory(); }

    std::vector<CapturedMessage> messages;

private:
    Host& below_;
    Host* replaced_;
};

CapturedMessages::CapturedMessages() : sink_(std::make_unique<Sink>()) {}

CapturedMessages::~CapturedMessages() = default;

const std::vector<CapturedMessage>& CapturedMessages::messages() const {
    return sink_->messages;
}

std::string CapturedMessages::text() const {
    std::string all;
    for (const CapturedMessage& message : sink_->messages) {
        all +=
            severityText(message.severity) + " " + std::to_string(message.area) + "-" + std::to_string(message.number);
        for (size_t index = 0; index < message.arguments.size(); ++index)
            all += (index == 0 ? " " : ", ") + message.arguments[index];
        all += "\n";
    }
    return all;
}

std::string CapturedMessages::lines() const {
    std::string all;
    for (const CapturedMessage& message : sink_->messages) all += messageLine(asSent(message)) + "\n";
    return all;
}

void CapturedMessages::clear() {
    sink_->messages.clear();
}

} // namespace memdata::testing
