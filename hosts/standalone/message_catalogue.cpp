// message_catalogue.cpp - words the messages of the library from the table in message_catalogue.def.
// SPDX-License-Identifier: Apache-2.0
#include "hosts/standalone/message_catalogue.h"

#include "platform/ComMsgMgr.h"

#include <algorithm>

namespace {

using memdata::CatalogueText;
using memdata::HostMessage;

constexpr u32 kAREA = 28;

constexpr u32 STATUS = ComMsgMgr::kSTATUS;
constexpr u32 INFO = ComMsgMgr::kINFO;
constexpr u32 WARNING = ComMsgMgr::kWARNING;
constexpr u32 CRITICAL_WARNING = ComMsgMgr::kCRITICAL_WARNING;
constexpr u32 ERROR = ComMsgMgr::kERROR;

constexpr CatalogueText kCATALOGUE[] = {
#define CATALOGUE_TEXT(number, severity, format, text) {number, severity, format, text},
#include "hosts/standalone/message_catalogue.def"
#undef CATALOGUE_TEXT
};
static_assert(std::ranges::is_sorted(kCATALOGUE, std::ranges::less_equal{}, &CatalogueText::number),
    "rows stand in ascending order, each number once");

struct SeverityName {
    u32 severity;
    const char* name;
};

constexpr SeverityName kSEVERITY_NAMES[] = {
    {STATUS, "STATUS"},
    {INFO, "INFO"},
    {WARNING, "WARNING"},
    {CRITICAL_WARNING, "CRITICAL WARNING"},
    {ERROR, "ERROR"},
};

const char* nameOfSeverity(u32 severity) {
    const auto* row = std::ranges::find(kSEVERITY_NAMES, severity, &SeverityName::severity);
    return row == std::end(kSEVERITY_NAMES) ? nullptr : row->name;
}

// The sender's mask. The engine passes plain numbers at some places; the code's own severity stands in there,
// and a message that says neither is shown as a warning rather than lost.
const char* severityShown(u32 sent, const CatalogueText* known) {
    if (const char* name = nameOfSeverity(sent); name != nullptr) return name;
    return nameOfSeverity(known == nullptr ? WARNING : known->severity);
}

// An argument may hold anything that a file name can: a message stays one line and moves no cursor.
std::string printable(std::string_view text) {
    constexpr char kHEX[] = "0123456789ABCDEF";
    std::string safe;
    for (const char c : text) {
        const auto byte = static_cast<u8>(c);
        if (c == '\n')
            safe += "\\n";
        else if (c == '\t')
            safe += ' ';
        else if (byte < 0x20 || byte == 0x7F)
            safe += {'\\', 'x', kHEX[byte >> 4], kHEX[byte & 15]};
        else
            safe += c;
    }
    return safe;
}

// The arguments behind a text, from the given one on: " (a, b)"; nothing when there is none.
std::string inParentheses(const std::vector<std::string>& arguments, size_t first) {
    std::string list;
    for (size_t index = first; index < arguments.size(); ++index)
        list += (list.empty() ? "" : ", ") + printable(arguments[index]);
    return list.empty() ? "" : " (" + list + ")";
}

// Puts the arguments into the places "{1}" to "{9}". Those that have no place follow the text.
std::string placed(std::string_view text, const std::vector<std::string>& arguments) {
    std::string result;
    size_t highest = 0;
    for (size_t at = 0; at < text.size(); ++at) {
        const bool isPlace = text[at] == '{' && at + 2 < text.size() && text[at + 1] >= '1' && text[at + 1] <= '9' &&
                             text[at + 2] == '}';
        if (!isPlace) {
            result += text[at];
            continue;
        }
        const auto number = static_cast<size_t>(text[at + 1] - '0');
        result += number <= arguments.size() ? printable(arguments[number - 1]) : "(not given)";
        highest = std::max(highest, number);
        at += 2;
    }
    return result + inParentheses(arguments, highest);
}

std::string codeShown(const HostMessage& message) {
    std::string group = printable(message.group);
    if (message.area == 0 && message.number == 0) return "[" + group + "]";
    return "[" + group + " " + std::to_string(message.area) + "-" + std::to_string(message.number) + "]";
}

// A code of nobody's still says that something was said, and with what.
std::string wordingWithoutText(const HostMessage& message) {
    const bool hasCode = message.area != 0 || message.number != 0;
    std::string text = hasCode ? "There is no text for this message." : printable(message.format);
    return text + inParentheses(message.arguments, 0);
}

} // namespace

namespace memdata {

std::span<const CatalogueText> messageCatalogue() {
    return kCATALOGUE;
}

const CatalogueText* findCatalogueText(u32 area, u32 number) {
    const auto* row = std::ranges::lower_bound(kCATALOGUE, number, {}, &CatalogueText::number);
    return area == kAREA && row != std::end(kCATALOGUE) && row->number == number ? row : nullptr;
}

std::string messageLine(const HostMessage& message) {
    const CatalogueText* known = findCatalogueText(message.area, message.number);
    const std::string text = known == nullptr ? wordingWithoutText(message) : placed(known->text, message.arguments);
    return std::string(severityShown(message.severity, known)) + ": " + codeShown(message) + " " + text;
}

} // namespace memdata
