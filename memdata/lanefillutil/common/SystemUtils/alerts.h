// alerts.h - the one door through which the engine speaks: numbered alerts with severity, place and caret.
//
// A failure site writes "return PrintError(kERROR_X, 14, name);": every print function returns the status that
// it was given, also when its severity is masked off. An alert goes to standard output and, while a log is
// open, to the log. Its text is worded in memory of its own, never in tracked memory, so that exhaustion of
// memory can be reported too.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_SYSTEM_UTILS_ALERTS_H
#define MEMDATA_SYSTEM_UTILS_ALERTS_H

#include "StringUtils/format.h"
#include "SystemUtils/messages.h"

struct parse_stream;
struct token_element;

// Severity bits; an alert has one, a mask any number of them.
inline constexpr u32 kSTATUS_ALERT = 1;
inline constexpr u32 kINFO_ALERT = 2;
inline constexpr u32 kWARNING_ALERT = 4;
inline constexpr u32 kERROR_ALERT = 8;
inline constexpr u32 kINTERNAL_ERROR_ALERT = 16;
inline constexpr u32 kFATAL_ALERT = 32;
inline constexpr u32 kDEBUG_ALERT = 64;

// The words of the severities, by bit position plus one.
inline constexpr const char* alert_names[] = {
    "NONE", "STATUS", "INFO", "WARNING", "ERROR", "INTERNAL_ERROR", "FATAL", "DEBUG"};

// The severities that are printed. Written by EnablePrintAlerts only; 62, all but STATUS and DEBUG, from the
// start and again after shut-down.
extern u32 gEnablePrintAlerts;

// Sets the severities that are printed from now on; returns the old mask.
u32 EnablePrintAlerts(unsigned mask);
// The mask in force, to be given back to EnablePrintAlerts later.
u32 SavePrintAlerts();

namespace memdata {

// Where an alert points; every part may be missing.
struct AlertPlace {
    parse_stream* stream = nullptr;
    const token_element* token = nullptr;
    const char* sourceFile = nullptr; // of the engine itself
    unsigned sourceLine = 0;
};

// The typed core of the print functions: PrintAlert over a message constant.
long printAlert(const AlertPlace& place, u32 severity, const Alert_message_type& message, long status,
    std::span<const FormatArgument> arguments);

// A new log begins: the next alert that goes to it writes the version header first. Called by whoever opens
// the log.
void beginAlertLog();

// Back to the first state. Called at shut-down.
void resetAlerts();

} // namespace memdata

// Prints one alert, unless the mask has no bit of its severity.
//   place      where it points
//   severity   one severity bit
//   number     of the message; 0 prints no number
//   text       a format of vStrPrintf; null counts as empty
//   arguments  of that format
// The first alert of a log writes the version header there, led by "//". An alert that is raised while another
// one is being printed (writing the log can fail) follows behind it. Returns status.
long PrintAlert(const memdata::AlertPlace& place, u32 severity, u32 number, const char* text, long status,
    std::span<const memdata::FormatArgument> arguments);

// The whole text of an alert: a blank line; the wrapped message; the location lines when the place has a
// stream and a token; "    Source file \"%s\", line number %ld.\n" when it has a source file and the severity is
// INTERNAL_ERROR, FATAL or DEBUG; a blank line.
std::string CreateAlertMsg(const memdata::AlertPlace& place, u32 severity, u32 number, const char* text,
    std::span<const memdata::FormatArgument> arguments);

// The message with its prefix and a newline. The prefix is "%s:%s:%ld - " of severity, tool name and number,
// "%s:%s - " for number 0; a STATUS has none. An argument that is the text of a line end or of the end of a file, as
// tokens have it ("\n", "\xFF"), reads "end-of-line" or "end-of-file".
std::string CreateWrappedAlertMsg(
    u32 severity, u32 number, const char* text, std::span<const memdata::FormatArgument> arguments);

// All of these print their message and return the status that they were given, also when the severity
// is masked off. Arguments are typed: a format can not read what was not passed.
template<class... Arguments>
int PrintStatus(const Alert_message_type& message, const Arguments&... arguments) {
    return static_cast<int>(memdata::printAlert({}, kSTATUS_ALERT, message, 0, memdata::formatArguments(arguments...)));
}
template<class... Arguments>
int PrintInfo(const Alert_message_type& message, const Arguments&... arguments) {
    return static_cast<int>(memdata::printAlert({}, kINFO_ALERT, message, 0, memdata::formatArguments(arguments...)));
}
template<class... Arguments>
int PrintWarning(const Alert_message_type& message, long status, const Arguments&... arguments) {
    return static_cast<int>(
        memdata::printAlert({}, kWARNING_ALERT, message, status, memdata::formatArguments(arguments...)));
}
template<class... Arguments>
int PrintError(const Alert_message_type& message, long status, const Arguments&... arguments) {
    return static_cast<int>(
        memdata::printAlert({}, kERROR_ALERT, message, status, memdata::formatArguments(arguments...)));
}

// With the place of a token in the text that is being read; stream and token may be null.
template<class... Arguments>
int PrintWarningLocation(parse_stream* stream, const Alert_message_type& message, long status,
    const token_element* token, const Arguments&... arguments) {
    return static_cast<int>(
        memdata::printAlert({stream, token}, kWARNING_ALERT, message, status, memdata::formatArguments(arguments...)));
}
template<class... Arguments>
int PrintErrorLocation(parse_stream* stream, const Alert_message_type& message, long status, const token_element* token,
    const Arguments&... arguments) {
    return static_cast<int>(
        memdata::printAlert({stream, token}, kERROR_ALERT, message, status, memdata::formatArguments(arguments...)));
}

// With the engine's own source file and line; called through the macros below.
template<class... Arguments>
int _PrintInternalError(
    const char* file, unsigned line, const Alert_message_type& message, long status, const Arguments&... arguments) {
    return static_cast<int>(memdata::printAlert({nullptr, nullptr, file, line}, kINTERNAL_ERROR_ALERT, message, status,
        memdata::formatArguments(arguments...)));
}
template<class... Arguments>
int _PrintFatalError(
    const char* file, unsigned line, const Alert_message_type& message, long status, const Arguments&... arguments) {
    return static_cast<int>(memdata::printAlert(
        {nullptr, nullptr, file, line}, kFATAL_ALERT, message, status, memdata::formatArguments(arguments...)));
}
// Takes its format in place of a numbered message; returns 0.
template<class... Arguments>
int _PrintDebug(const char* file, unsigned line, const char* format, const Arguments&... arguments) {
    return static_cast<int>(memdata::printAlert({nullptr, nullptr, file, line}, kDEBUG_ALERT,
        Alert_message_type{0, format}, 0, memdata::formatArguments(arguments...)));
}

#define PrintDebug(...)         _PrintDebug(__FILE__, __LINE__, __VA_ARGS__)
#define PrintInternalError(...) _PrintInternalError(__FILE__, __LINE__, __VA_ARGS__)
#define PrintFatalError(...)    _PrintFatalError(__FILE__, __LINE__, __VA_ARGS__)

#endif
