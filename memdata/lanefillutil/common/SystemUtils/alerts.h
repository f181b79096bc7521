// alerts.h - the one door through which the engine speaks: numbered alerts with severity, place and caret.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_SYSTEM_UTILS_ALERTS_H
#define MEMDATA_SYSTEM_UTILS_ALERTS_H

#include "StringUtils/format.h"
#include "SystemUtils/messages.h"

struct parse_stream;
struct token_element;

// Severity bits.
inline constexpr u32 kSTATUS_ALERT = 1;
inline constexpr u32 kINFO_ALERT = 2;
inline constexpr u32 kWARNING_ALERT = 4;
inline constexpr u32 kERROR_ALERT = 8;
inline constexpr u32 kINTERNAL_ERROR_ALERT = 16;
inline constexpr u32 kFATAL_ALERT = 32;
inline constexpr u32 kDEBUG_ALERT = 64;

u32 EnablePrintAlerts(unsigned mask); // the old mask
u32 SavePrintAlerts();                // the mask in force

namespace memdata {

// Where an alert points.
struct AlertPlace {
    parse_stream* stream = nullptr;
    const token_element* token = nullptr;
    const char* sourceFile = nullptr; // of the engine itself
    unsigned sourceLine = 0;
};

long printAlert(const AlertPlace& place, u32 severity, const Alert_message_type& message, long status,
    std::span<const FormatArgument> arguments);

} // namespace memdata

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
template<class... Arguments>
int _PrintDebug(const char* file, unsigned line, const char* format, const Arguments&... arguments) {
    return static_cast<int>(memdata::printAlert({nullptr, nullptr, file, line}, kDEBUG_ALERT,
        Alert_message_type{0, format}, 0, memdata::formatArguments(arguments...)));
}

#define PrintDebug(...)         _PrintDebug(__FILE__, __LINE__, __VA_ARGS__)
#define PrintInternalError(...) _PrintInternalError(__FILE__, __LINE__, __VA_ARGS__)
#define PrintFatalError(...)    _PrintFatalError(__FILE__, __LINE__, __VA_ARGS__)

#endif
