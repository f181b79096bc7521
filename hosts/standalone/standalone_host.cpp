// standalone_host.cpp - the services of the standalone host.
// SPDX-License-Identifier: Apache-2.0
#include "hosts/standalone/standalone_host.h"

#include "hosts/standalone/message_catalogue.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <utility>

namespace memdata {

// One write a message, so that lines of several processes do not mix.
void StandaloneHost::message(const HostMessage& message) {
    const std::string line = messageLine(message) + "\n";
    beforeOutput();
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
}

void StandaloneHost::progress(std::string_view stage, int percent) {
    if (display_ != nullptr) display_->show(stage, percent);
}

void StandaloneHost::beforeOutput() {
    if (display_ != nullptr) display_->clear();
}

ProgressDisplay* StandaloneHost::setProgressDisplay(ProgressDisplay* display) {
    return std::exchange(display_, display);
}

std::string StandaloneHost::fullProduct() const {
    return "memdata " MEMDATA_VERSION;
}

// The version alone: the same sources build the same bytes on any day.
std::string StandaloneHost::fullBuild() const {
    return "Build " MEMDATA_VERSION;
}

std::string StandaloneHost::firstNotice() const {
    return "SPDX-License-Identifier: Apache-2.0";
}

std::string StandaloneHost::secondNotice() const {
    return "The memdata authors";
}

// Local date of the moment, the day filled to two characters: the heads of documents count on eleven.
std::string StandaloneHost::date() const {
    constexpr const char* kMONTHS[] = {
        "Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char text[32];
    std::snprintf(text, sizeof text, "%s %2d %d", kMONTHS[local.tm_mon], local.tm_mday, local.tm_year + 1900);
    return text;
}

std::string StandaloneHost::temporaryDirectory() const {
    const char* chosen = std::getenv("TMPDIR");
    std::string directory = chosen == nullptr || *chosen == '\0' ? "/tmp" : chosen;
    while (directory.size() > 1 && directory.back() == '/') directory.pop_back();
    return directory;
}

// Never destroyed: static destructors of any file may still send a message.
StandaloneHost& standaloneHost() {
    static StandaloneHost& host = *new StandaloneHost;
    return host;
}

Host& defaultHost() {
    return standaloneHost();
}

} // namespace memdata
