// writing.cpp - bytes, blocks and lines of outputs.
// SPDX-License-Identifier: Apache-2.0

#include "FileUtils/internal.h"
#include "FileUtils/state.h"
#include "StringUtils/StringUtils.h"
#include "SystemUtils/alerts.h"
#include "platform/host.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <unistd.h>
#include <utility>

namespace {

using namespace memdata;

bool writeSystemFile(fileIODescriptor* file, const char* bytes, u64 count) {
    while (count > 0) {
        const ssize_t put = ::write(fileno(file->stream), bytes, count);
        if (put < 0 && errno == EINTR) continue;
        if (put < 0) return false;
        bytes += put;
        count -= static_cast<u64>(put);
        file->filePosition += static_cast<u64>(put);
    }
    return true;
}

int writeStandardOut(const char* bytes, u64 count) {
    host().beforeOutput();
    StandardOut.status = std::fwrite(bytes, 1, count, StandardOut.stream) == count ? 0 : 1;
    return StandardOut.status;
}

// Whether bytes are on their way from the input that the output began as a copy of, to where they stand already.
bool standInCopy(const fileIODescriptor* file, const char* bytes) {
    const fileIODescriptor* input = file->copyOf;
    if (input == nullptr || bytes < input->buffer || bytes >= input->buffer + input->bufferEnd) return false;
    return input->bufferBase + static_cast<u64>(bytes - input->buffer) == file->bufferBase + file->bufferPosition;
}

bool goesToDiskUnbuffered(const fileIODescriptor* file, u64 count) {
    return file->stream != nullptr && count >= file->bufferSize;
}

// What a newline becomes, by text ending; behind the last row it vanishes.
constexpr std::string_view kLINE_ENDS[] = {"\r", "\r\n", "\n"};

std::string_view newlineText(const fileIODescriptor* file) {
    if ((file->attributes & kNEWLINE_AS_BLANK) != 0) return " ";
    const u32 ending = file->attributes & kTEXT_ENDING_MASK;
    return ending < std::size(kLINE_ENDS) ? kLINE_ENDS[ending] : std::string_view();
}

// The common end of vPutNextLine and its typed form.
int putText(fileIODescriptor* file, const char* text) {
    if (!isOutput(file)) return kNOT_WRITABLE;
    const bool toStandardOut = file == &StandardOut;
    const bool toLog = file == StandardLog;
    bool lets = true;
    if (toLog) lets = gJournalingEnabled;
    if (toStandardOut || toLog) lets = lets && gOutputEnabled;

    const int status = lets ? outputLine(file, text) : 0;
    // A log that can not be written has said so; what it copies is not harmed.
    if (toStandardOut && gJournalingEnabled && StandardLog != nullptr) outputLine(StandardLog, text);
    return status;
}

} // namespace

int memdata::failOutput(fileIODescriptor* file, const char* cause) {
    if (file->writeStatus == 0) {
        file->writeStatus = 1; // ahead of the alert, which may come back here through the journal
        PrintError(kERROR_MESSAGE_STRING, 1, formatted("File '%s' can not be written: %s.", file->name, cause));
    }
    return file->status = file->writeStatus;
}

int memdata::moveDiskOutput(fileIODescriptor* file, int) {
    if (!writeSystemFile(file, file->buffer, file->bufferPosition)) return failOutput(file, causeText(errno));
    file->bufferBase += file->bufferPosition;
    file->bufferPosition = 0;
    return 0;
}

int memdata::passOver(fileIODescriptor* file, u64 count) {
    if (file->writeStatus != 0) return file->writeStatus;
    if (int status = file->mover(file, 0); status != 0) return status;
    if (lseek(fileno(file->stream), static_cast<off_t>(count), SEEK_CUR) < 0) return failOutput(file, causeText(errno));
    file->bufferBase += count;
    file->filePosition += count;
    return file->status = 0;
}

int memdata::outputBlock(fileIODescriptor* file, const char* bytes, u64 count) {
    if (!isOutput(file) || (bytes == nullptr && count != 0)) return kNOT_WRITABLE;
    if (file == &StandardOut) return writeStandardOut(bytes, count);
    if (file->writeStatus != 0) return file->writeStatus;
    if (standInCopy(file, bytes)) return passOver(file, count);
    while (count > 0) {
        if (goesToDiskUnbuffered(file, count)) {
            if (file->bufferPosition != 0)
                if (int status = file->mover(file, 0); status != 0) return status;
            if (!writeSystemFile(file, bytes, count)) return failOutput(file, causeText(errno));
            file->bufferBase += count;
            break;
        }
        const u64 taken = std::min(count, file->bufferSize - file->bufferPosition);
        std::memmove(file->buffer + file->bufferPosition, bytes, taken); // they may stand there already
        file->bufferPosition += taken;
        bytes += taken;
        count -= taken;
        if (count == 0) break;
        if (int status = file->mover(file, 0); status != 0) return status;
    }
    return file->status = 0;
}

int outputByte(fileIODescriptor* file, int byte) {
    const char c = static_cast<char>(byte);
    return outputBlock(file, &c, 1);
}

int outputLine(fileIODescriptor* file, const char* text) {
    if (!isOutput(file) || text == nullptr) return kNOT_WRITABLE;
    const char* const end = text + std::strlen(text);
    const std::string_view newline = newlineText(file);
    if (file == &StandardOut || newline == "\n") return outputBlock(file, text, static_cast<u64>(end - text));

    while (text < end) {
        const void* found = std::memchr(text, '\n', static_cast<size_t>(end - text));
        const char* const spanEnd = found == nullptr ? end : static_cast<const char*>(found);
        if (int status = outputBlock(file, text, static_cast<u64>(spanEnd - text)); status != 0) return status;
        if (spanEnd == end) break;
        if (int status = outputBlock(file, newline.data(), newline.size()); status != 0) return status;
        text = spanEnd + 1;
    }
    return file->writeStatus;
}

int vPutNextLine(fileIODescriptor* file, const char* format, va_list arguments) {
    if (!isOutput(file)) return kNOT_WRITABLE;
    OwnedString text(vStrPrintf(nullptr, format, arguments));
    return text == nullptr ? 7 : putText(file, text.get());
}

int memdata::putFormatted(fileIODescriptor* file, const char* format, std::span<const FormatArgument> arguments) {
    if (!isOutput(file)) return kNOT_WRITABLE;
    return putText(file, formatText(format, arguments).c_str());
}

bool EnabledPutLineOutput(bool enabled) {
    return std::exchange(gOutputEnabled, enabled);
}

int Flush_File(fileIODescriptor* file) {
    if (!isOutput(file)) return 0;
    if (file == &StandardOut) return std::fflush(file->stream) == 0 ? 0 : 1;
    if (file->writeStatus != 0) return file->writeStatus;
    return file->stream == nullptr ? 0 : file->mover(file, 0);
}
