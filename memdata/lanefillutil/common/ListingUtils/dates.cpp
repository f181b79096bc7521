// dates.cpp - the local date and time as text.
// SPDX-License-Identifier: Apache-2.0
#include "ListingUtils/ListingUtils.h"

#include "StringUtils/StringUtils.h"

const char* const dayNames[7] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
const char* const monthNames[12] = {"January", "February", "March", "April", "May", "June", "July", "August",
    "September", "October", "November", "December"};

namespace {

constexpr int kLONG_NAME = 10; // characters; no name is longer
constexpr int kSHORT_NAME = 3;
constexpr int kFIRST_YEAR = 1900; // of tm_year

// 0 and 12 are both 12 on a clock of twelve hours.
int clock_hour(int hour) {
    return hour % 12 == 0 ? 12 : hour % 12;
}

} // namespace

char* memdata::dateTimeString(const std::tm& time, bool longNames) {
    const int nameLength = longNames ? kLONG_NAME : kSHORT_NAME;
    const char* day = time.tm_wday >= 0 && time.tm_wday < 7 ? dayNames[time.tm_wday] : "";
    const char* month = time.tm_mon >= 0 && time.tm_mon < 12 ? monthNames[time.tm_mon] : "";
    return appendFormat(nullptr, "%.*s %.*s %02ld, %02ld - %02ld:%02ld:%02ld %s", nameLength, day, nameLength, month,
        time.tm_mday, time.tm_year + kFIRST_YEAR, clock_hour(time.tm_hour), time.tm_min, time.tm_sec,
        time.tm_hour < 12 ? "am" : "pm");
}

char* GetDateTimeString(bool longNames) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return memdata::dateTimeString(local, longNames);
}
