// alerts.cpp - words an alert and brings it to standard output and the log.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/alerts.h"

#include "FileUtils/journal.h"
#include "ListingUtils/ListingUtils.h"
#include "SystemUtils/alert_location.h"
#include "SystemUtils/lifetime.h"

#include <bit>
#include <cstring>
#include <deque>
#include <iterator>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr u32 kSTANDARD_ALERTS = 62; // all but STATUS and DEBUG
constexpr u32 kSOURCE_LINE_ALERTS = kINTERNAL_ERROR_ALERT | kFATAL_ALERT | kDEBUG_ALERT;

// All state of the alert layer but the mask; put back by resetAlerts.
struct AlertStateType {
    bool logHasHeader = false; // the open log begins with the version header
    bool isPrinting = false;   // an alert is on its way out
    std::string deferred;      // alerts that were raised meanwhile: writing the log can fail
};
AlertStateType gAlertState;

const char* severity_name(u32 severity) {
    const auto index = static_cast<std::size_t>(std::bit_width(severity));
    return alert_names[index < std::size(alert_names) ? index : 0];
}

// Journaling is on while this lives, when there is a log.
class JournalingOn {
public:
    JournalingOn() : old_(EnabledJournaling(true)) {}
    ~JournalingOn() { EnabledJournaling(old_); }
    JournalingOn& operator=(JournalingOn&&) = delete; // neither copied nor moved

private:
    bool old_;
};

// Alerts that are raised while this lives are deferred; those that are still there at its end are dropped.
class AlertOnItsWay {
public:
    AlertOnItsWay() { gAlertState.isPrinting = true; }
    ~AlertOnItsWay() {
        gAlertState.isPrinting = false;
        gAlertState.deferred.clear();
    }
    AlertOnItsWay& operator=(AlertOnItsWay&&) = delete; // neither copied nor moved
};

void output_alert(const std::string& text) {
    if (StandardLog == nullptr) {
        OutputConsoleMessage(&StandardOut, text.c_str());
        return;
    }
    const JournalingOn journaling;
    if (!std::exchange(gAlertState.logHasHeader, true)) OutputVersionHeader(StandardLog, "//", nullptr);
    OutputConsoleMessage(&StandardOut, text.c_str());
}

// An alert about the writing of an alert follows the one that was being written. There is no third round.
void print_with_deferred(const std::string& text) {
    const AlertOnItsWay onItsWay;
    output_alert(text);
    const std::string deferred = std::exchange(gAlertState.deferred, {});
    if (!deferred.empty()) output_alert(deferred);
}

// Texts are shown whole up to the length of the longest file name. Of longer ones, tokens of a damaged file mostly, which
// no one reads, so many bytes are shown.
constexpr size_t kLONGEST_WHOLE_TEXT = 4096;
constexpr size_t kSHOWN_TEXT_BYTES = 200;

// A text that is too long, cut at the start of a character. What is made up as one text for the alert stays whole.
std::string shortened(std::string_view text) {
    size_t end = kSHOWN_TEXT_BYTES;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    return std::string(text.substr(0, end)) + "...";
}

// Tokens of line ends and file ends have texts that say nothing when printed. Alerts name them.
const char* readable_text(const char* text) {
    if (text == nullptr) return nullptr;
    const std::string_view view(text);
    if (view == "\n") return "end-of-line";
    return view == "\xFF" ? "end-of-file" : text;
}

// The arguments of an alert as a person can read them.
class ReadableArguments {
public:
    ReadableArguments(std::span<const memdata::FormatArgument> arguments, bool isMadeUp)
        : arguments_(arguments.begin(), arguments.end()) {
        for (memdata::FormatArgument& argument : arguments_) {
            if (argument.kind != memdata::FormatArgument::kTEXT) continue;
            argument.text = readable_text(argument.text);
            if (isMadeUp || argument.text == nullptr || std::strlen(argument.text) <= kLONGEST_WHOLE_TEXT) continue;
            argument.text = shortened_.emplace_back(shortened(argument.text)).c_str();
        }
    }
    ReadableArguments& operator=(ReadableArguments&&) = delete; // neither copied nor moved

    std::span<const memdata::FormatArgument> get() const { return arguments_; }

private:
    std::vector<memdata::FormatArgument> arguments_;
    std::deque<std::string> shortened_; // that arguments point into
};

} // namespace

u32 gEnablePrintAlerts = kSTANDARD_ALERTS;

u32 EnablePrintAlerts(unsigned mask) {
    return std::exchange(gEnablePrintAlerts, mask);
}

u32 SavePrintAlerts() {
    return gEnablePrintAlerts;
}

void memdata::beginAlertLog() {
    gAlertState.logHasHeader = false;
}

void memdata::resetAlerts() {
    gEnablePrintAlerts = kSTANDARD_ALERTS;
    gAlertState = {};
}

std::string CreateWrappedAlertMsg(
    u32 severity, u32 number, const char* text, std::span<const memdata::FormatArgument> arguments) {
    std::string wrapped;
    if (severity != kSTATUS_ALERT) {
        wrapped = number == 0
                      ? memdata::formatted("%s:%s - ", severity_name(severity), GetSystemToolName())
                      : memdata::formatted("%s:%s:%ld - ", severity_name(severity), GetSystemToolName(), number);
    }
    const bool isMadeUp = number == 0 || number == kERROR_MESSAGE_STRING.number;
    if (text != nullptr) wrapped += memdata::formatText(text, ReadableArguments(arguments, isMadeUp).get());
    wrapped += '\n';
    return wrapped;
}

std::string CreateAlertMsg(const memdata::AlertPlace& place, u32 severity, u32 number, const char* text,
    std::span<const memdata::FormatArgument> arguments) {
    std::string alert = "\n";
    alert += CreateWrappedAlertMsg(severity, number, text, arguments);
    alert += CreateFileLocations(place.stream, place.token);
    if (place.sourceFile != nullptr && (severity & kSOURCE_LINE_ALERTS) != 0)
        alert += memdata::formatted("    Source file \"%s\", line number %ld.\n", place.sourceFile, place.sourceLine);
    alert += '\n';
    return alert;
}

long PrintAlert(const memdata::AlertPlace& place, u32 severity, u32 number, const char* text, long status,
    std::span<const memdata::FormatArgument> arguments) {
    if ((gEnablePrintAlerts & severity) == 0) return status;
    try {
        const std::string alert = CreateAlertMsg(place, severity, number, text, arguments);
        if (gAlertState.isPrinting)
            gAlertState.deferred += alert;
        else
            print_with_deferred(alert);
    } catch (const std::bad_alloc&) {
        // Not even the message finds memory: its bare text goes out as it stands.
        outputLine(&StandardOut, text);
        outputLine(&StandardOut, "\n");
    }
    return status;
}

long memdata::printAlert(const AlertPlace& place, u32 severity, const Alert_message_type& message, long status,
    std::span<const FormatArgument> arguments) {
    return PrintAlert(place, severity, message.number, message.text, status, arguments);
}
