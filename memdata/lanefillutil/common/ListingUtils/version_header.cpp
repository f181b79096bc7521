// version_header.cpp - who made a file, when and how, at its head.
// SPDX-License-Identifier: Apache-2.0
#include "ListingUtils/ListingUtils.h"

#include "StringUtils/StringUtils.h"
#include "SystemUtils/lifetime.h"
#include "platform/HUTEnv.h"

namespace {

// Adds the lines of text, each led by the prefix; an empty line is the prefix alone.
void append_lines(std::string* out, std::string_view prefix, std::string_view text) {
    for (bool more = true; more;) {
        const size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        out->append(prefix);
        if (!prefix.empty() && !line.empty()) out->push_back(' ');
        out->append(line);
        out->push_back('\n');
        more = end != std::string_view::npos;
        if (more) text.remove_prefix(end + 1);
    }
}

void append_command(std::string* out, std::string_view prefix, const char* command) {
    append_lines(out, prefix, "");
    append_lines(out, prefix, memdata::formatted("Command: %s", command));
    append_lines(out, prefix, "");
}

} // namespace

int memdata::outputVersionHeader(
    fileIODescriptor* file, const char* prefix, const char* format, std::span<const FormatArgument> arguments) {
    const std::string_view lead(prefix == nullptr ? "" : prefix);
    std::string text;
    append_lines(&text, lead, HUTEnv::getFullBuildStr());
    append_lines(&text, lead, HUTEnv::getFullProductStr());
    append_lines(&text, lead, HUTEnv::getCopyrightStr() + " " + HUTEnv::getOtherCopyrightStr());

    const char* command = GetSystemCommand();
    const bool tellsCommand = command != nullptr && *command != '\0';
    if (tellsCommand && (!lead.empty() || format != nullptr)) append_command(&text, lead, command);
    if (format != nullptr) {
        const OwnedString date(GetDateTimeString(true));
        if (date.get() == nullptr) return 7; // the allocator has reported it
        // The caller's text goes on behind the date, in the same line.
        append_lines(&text, lead, formatted("Created on %s", date.get()) + formatText(format, arguments));
    }
    return PutNextLine(file, "%s", text);
}
