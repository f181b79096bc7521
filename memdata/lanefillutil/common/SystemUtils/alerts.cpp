// alerts.cpp - words an alert and brings it to standard output and the log.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/alerts.h"

#include "FileUtils/journal.h"
#include "ListingUtils/ListingUtils.h"
#include "SystemUtils/alert_location.h"
#include "SystemUtils/lifetime.h"

#include <bit>
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

// Tokens of line ends and file ends have texts that say nothing when printed. Alerts name them.
const char* readable_text(const char* text) {
    if (text == nullptr) return nullptr;
    const std::string_view view(text);
    if (view == "\n") return "end-of-line";
    return view == "\xFF" ? "end-of-file" : text;
}

std::vector<memdata::FormatArgument> readable_arguments(std::span<const memdata::FormatArgument> arguments) {
    std::vector<memdata::FormatArgument> readable(arguments.begin(), arguments.end());
    for (memdata::FormatArgument& argument : readable)
        if (argument.kind == memdata::FormatArgument::kTEXT) argument.text = readable_text(argument.text);
    return readable;
}

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
    if (text != nullptr) wrapped += memdata::formatText(text, readable_arguments(arguments));
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
