// reading.cpp - bytes and lines of inputs, and the buffer that they run in.
//
// The window: buffer[0, bufferEnd) are bytes bufferBase and on of the file. Those ahead of bufferPosition are read
// and go when more are needed. Lines are never copied within one window: a line that does not fit makes it slide,
// then grow.
// SPDX-License-Identifier: Apache-2.0

#include "FileUtils/internal.h"
#include "FileUtils/state.h"
#include "SystemUtils/alerts.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstring>
#include <unistd.h>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

using namespace memdata;

constexpr bool isLineEnd(char c) {
    return c == '\n' || c == '\r';
}

// The first LF or CR in [at, end), or end. Sixteen characters at a time, which is what keeps line reading near the
// speed of memchr although two characters are looked for.
char* findLineEnd(char* at, char* end) {
#ifdef __SSE2__
    const __m128i lineFeeds = _mm_set1_epi8('\n');
    const __m128i carriageReturns = _mm_set1_epi8('\r');
    for (; end - at >= 16; at += 16) {
        const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        const __m128i hits = _mm_or_si128(_mm_cmpeq_epi8(text, lineFeeds), _mm_cmpeq_epi8(text, carriageReturns));
        if (const u32 mask = static_cast<u32>(_mm_movemask_epi8(hits)); mask != 0) return at + std::countr_zero(mask);
    }
#endif
    return std::find_if(at, end, isLineEnd);
}

// Characters of the line end at a place: 0, 1, or 2 for a pair.
u64 lineEndLength(const char* at, const char* end) {
    if (at >= end || !isLineEnd(*at)) return 0;
    return end - at >= 2 && isLineEnd(at[1]) && at[1] != at[0] ? 2 : 1;
}

// One read of the system, repeated when a signal came between. Bytes read, or -1.
i64 readSome(fileIODescriptor* file, char* to, u64 count) {
    for (;;) {
        const ssize_t got = ::read(fileno(file->stream), to, count);
        if (got >= 0) file->filePosition += static_cast<u64>(got);
        if (got >= 0 || errno != EINTR) return got;
    }
}

int failInput(fileIODescriptor* file, const char* cause) {
    PrintError(kERROR_MESSAGE_STRING, 1, formatted("File '%s' can not be read: %s.", file->name, cause));
    return kREAD_FAILED;
}

// The status at the end of what the system gives. Of a regular file the size is known from its opening.
int endOfFile(fileIODescriptor* file) {
    return file->filePosition < file->logicalSize ? failInput(file, kCUT_SHORT) : kEND_OF_CONTENTS;
}

// Reads into the free part of the buffer until it is full or the file ends.
int fillBuffer(fileIODescriptor* file) {
    while (file->bufferEnd < file->bufferSize) {
        const i64 got = readSome(file, file->buffer + file->bufferEnd, file->bufferSize - file->bufferEnd);
        if (got < 0) return failReading(errno), kREAD_FAILED;
        if (got == 0) break;
        file->bufferEnd += static_cast<u64>(got);
    }
    return 0;
}

int readUnsized(fileIODescriptor* file) {
    for (;;) {
        if (int status = fillBuffer(file); status != 0) return status;
        if (file->bufferEnd < file->bufferSize) return 0;
        if (file->bufferSize > kMAX_UNSIZED_BYTES) {
            PrintError(kERROR_MESSAGE_STRING, 7,
                formatted("File '%s' holds more than %d bytes, the most that is read of a pipe or device.", file->name,
                    static_cast<u32>(kMAX_UNSIZED_BYTES)));
            return kNO_MEMORY;
        }
        if (!resizeBuffer(file, std::min(2 * file->bufferSize, kMAX_UNSIZED_BYTES + 1))) return kNO_MEMORY;
    }
}

int refuseLine(fileIODescriptor* file) {
    PrintError(kERROR_MESSAGE_STRING, 2,
        formatted("Line #%d of file '%s' is longer than %d bytes.", file->lineCount + 1, file->name,
            static_cast<u32>(kMAX_LINE_BYTES)));
    return kLINE_TOO_LONG;
}

// The mover of inputs on disk. Bytes not yet read that fill the whole window are one line or part of it: it grows.
int moveDiskInput(fileIODescriptor* file, int) {
    const u64 unread = file->bufferEnd - file->bufferPosition;
    std::memmove(file->buffer, file->buffer + file->bufferPosition, unread);
    file->bufferBase += file->bufferPosition;
    file->bufferPosition = 0;
    file->bufferEnd = unread;
    file->textLine = nullptr;

    i32 status = 0;
    if (unread == file->bufferSize && !resizeBuffer(file, std::min(2 * file->bufferSize, kMAX_WINDOW_BYTES)))
        status = kNO_MEMORY;
    if (status == 0) {
        const i64 got = readSome(file, file->buffer + unread, file->bufferSize - unread);
        if (got > 0) file->bufferEnd += static_cast<u64>(got);
        if (got == 0) status = endOfFile(file);
        if (got < 0) status = failInput(file, causeText(errno));
    }
    file->logicalSize = std::max(file->logicalSize, file->bufferBase + file->bufferEnd);
    file->eofState = status;
    markTextEnd(file, unread);
    return status;
}

// Status 0 when bytes were gained behind those not read yet.
int refill(fileIODescriptor* file) {
    if (file->textEnd < file->bufferEnd) return kEND_MARK;
    return file->eofState != 0 ? file->eofState : file->mover(file, 0);
}

// Status 0 when there is a byte at the position.
int bringByte(fileIODescriptor* file) {
    if (file->bufferPosition < file->textEnd) return 0;
    if (int status = refill(file); status != 0) return status;
    // What has just come may begin with the end mark.
    return file->bufferPosition < file->textEnd ? 0 : kEND_MARK;
}

// Large blocks of binary files on disk pass by the buffer.
bool comesFromDiskUnbuffered(const fileIODescriptor* file, u64 count) {
    return file->stream != nullptr && file->mappedBytes == 0 && !isText(file) && file->eofState == 0 &&
           file->bufferPosition == file->bufferEnd && count >= file->bufferSize;
}

// Some of the bytes that follow the buffer's, straight to where they are wanted; *taken is their number.
int takeUnbuffered(fileIODescriptor* file, char* bytes, u64 count, u64* taken) {
    const i64 got = readSome(file, bytes, count);
    if (got < 0) return file->eofState = failInput(file, causeText(errno));
    if (got == 0) return file->eofState = endOfFile(file);
    *taken = static_cast<u64>(got);
    file->bufferBase += file->bufferPosition + *taken;
    file->bufferPosition = 0;
    file->bufferEnd = 0;
    file->textLine = nullptr;
    file->logicalSize = std::max(file->logicalSize, file->bufferBase);
    markTextEnd(file, 0);
    return 0;
}

bool isEnd(int status) {
    return status == kEND_OF_CONTENTS || status == kEND_MARK;
}

// Brings the next line with its end into the buffer. Status 0 with the line's length, or that which reading ends with.
int bringLine(fileIODescriptor* file, u64* length) {
    u64 scanned = 0;
    for (;;) {
        if (file->bufferPosition < file->textEnd) {
            char* const start = file->buffer + file->bufferPosition;
            char* const end = findLineEnd(start + scanned, file->buffer + file->textEnd);
            scanned = static_cast<u64>(end - start);
        }
        if (scanned > kMAX_LINE_BYTES && (file->attributes & kWHOLE_FILE_BUFFER) == 0)
            return file->eofState = refuseLine(file);
        // A line end at the last place waits for its neighbour: the two may be a pair.
        if (file->bufferPosition + scanned + 1 < file->textEnd) break;
        const int status = refill(file);
        if (isEnd(status) && file->bufferPosition < file->textEnd) break;
        if (status != 0) return status;
    }
    *length = scanned;
    return 0;
}

void skipLineEnd(fileIODescriptor* file) {
    file->bufferPosition += lineEndLength(file->buffer + file->bufferPosition, file->buffer + file->textEnd);
}

bool refuseReading(fileIODescriptor* file) {
    if (isInput(file)) return false;
    if (file != nullptr) file->status = kNOT_READABLE;
    return true;
}

// Start of the line of a text that holds the character at a position. The two characters of a pair belong to the
// line that they end, so the run of line ends ahead is taken apart from its front.
u64 lineStart(const char* text, u64 position, u64 size) {
    u64 run = position;
    while (run > 0 && isLineEnd(text[run - 1])) --run;
    u64 place = run;
    while (place < position) {
        const u64 next = place + lineEndLength(text + place, text + size);
        if (next > position) break;
        place = next;
    }
    if (place > run) return place;
    while (place > 0 && !isLineEnd(text[place - 1])) --place;
    return place;
}

} // namespace

void memdata::markTextEnd(fileIODescriptor* file, u64 from) {
    if (file->ownsBuffer != 0) {
        file->buffer[file->bufferEnd] = kEND_BYTE;
        file->buffer[file->bufferEnd + 1] = '\0';
        file->buffer[file->bufferEnd + 2] = '\0';
    }
    file->textEnd = file->bufferEnd;
    if (!isText(file) || from == file->bufferEnd) return;
    const void* mark = std::memchr(file->buffer + from, 0xFF, file->bufferEnd - from);
    if (mark != nullptr) file->textEnd = static_cast<u64>(static_cast<const char*>(mark) - file->buffer);
}

int memdata::primeDiskInput(fileIODescriptor* file, u64 size, bool sizeIsKnown) {
    file->mover = moveDiskInput;
    const bool whole = (file->attributes & kWHOLE_FILE_BUFFER) != 0;
    const bool atOnce = sizeIsKnown && (whole || size <= kBUFFER_BYTES);
    if (sizeIsKnown && !whole && primeMappedInput(file, size)) return 0;
    if (!resizeBuffer(file, atOnce ? size : kBUFFER_BYTES)) return kNO_MEMORY;

    int status = 0;
    if (atOnce || !whole)
        status = fillBuffer(file);
    else
        status = readUnsized(file);
    if (status != 0) return status;
    if (sizeIsKnown && file->bufferEnd < std::min(size, file->bufferSize)) {
        gFileState.openFailure = kCUT_SHORT;
        return kREAD_FAILED;
    }
    // Bytes that came behind the size while it was read are not part of it.
    if (atOnce || file->bufferEnd < file->bufferSize) file->eofState = kEND_OF_CONTENTS;
    file->logicalSize = sizeIsKnown && !atOnce ? size : file->bufferEnd;
    markTextEnd(file, 0);
    return 0;
}

int inputByte(fileIODescriptor* file) {
    if (refuseReading(file)) return kNOT_READABLE;
    file->status = bringByte(file);
    return file->status != 0 ? file->status : static_cast<u8>(file->buffer[file->bufferPosition++]);
}

int memdata::inputBlock(fileIODescriptor* file, char* bytes, u64 count) {
    if (refuseReading(file)) return kNOT_READABLE;
    file->status = 0;
    while (count > 0) {
        u64 taken = 0;
        if (comesFromDiskUnbuffered(file, count)) {
            file->status = takeUnbuffered(file, bytes, count, &taken);
            if (file->status != 0) break;
        } else {
            file->status = bringByte(file);
            if (file->status != 0) break;
            taken = std::min(count, file->textEnd - file->bufferPosition);
            std::memcpy(bytes, file->buffer + file->bufferPosition, taken);
            file->bufferPosition += taken;
        }
        bytes += taken;
        count -= taken;
    }
    return file->status;
}

int memdata::inputPiece(fileIODescriptor* file, u64 unitBytes, u64 limit, const char** bytes, u64* count) {
    if (refuseReading(file)) return kNOT_READABLE;
    file->status = 0;
    while (file->textEnd - file->bufferPosition < unitBytes && file->status == 0) file->status = refill(file);
    if (file->status != 0) return file->status;
    *count = std::min(file->textEnd - file->bufferPosition, limit) / unitBytes * unitBytes;
    *bytes = file->buffer + file->bufferPosition;
    file->bufferPosition += *count;
    return 0;
}

char* GetNextTextLine(fileIODescriptor* file) {
    if (refuseReading(file)) return nullptr;
    // Nearly every line stands in the buffer as a whole, with what follows its end.
    char* start = file->buffer + file->bufferPosition;
    char* limit = file->buffer + file->textEnd;
    char* end = start < limit ? findLineEnd(start, limit) : limit;
    if (limit - end < 2) {
        u64 length = 0;
        file->textLine = nullptr;
        file->status = bringLine(file, &length);
        if (file->status != 0) return nullptr;
        start = file->buffer + file->bufferPosition;
        limit = file->buffer + file->textEnd;
        end = start + length;
    }
    file->bufferPosition = static_cast<u64>(end - file->buffer) + lineEndLength(end, limit);
    ++file->lineCount;
    file->status = 0;
    return file->textLine = start;
}

char* GetCurrentTextLine(fileIODescriptor* file) {
    return file == nullptr ? nullptr : file->textLine;
}

u32 GetCurrentLineCount(const fileIODescriptor* file) {
    return file == nullptr ? 0 : file->lineCount;
}

char* inputLine(fileIODescriptor* file, char* buffer, u64 size) {
    if (refuseReading(file)) return nullptr;
    if (buffer == nullptr || size == 0) {
        file->status = kNOT_READABLE;
        return nullptr;
    }
    u64 copied = 0;
    bool found = false; // a character of the line, or its end
    bool atEnd = false; // the line end, or the first half of it, stands at bufferPosition
    for (;;) {
        if (!atEnd && file->bufferPosition < file->textEnd) {
            char* const start = file->buffer + file->bufferPosition;
            char* const end = findLineEnd(start, file->buffer + file->textEnd);
            const u64 length = static_cast<u64>(end - start);
            const u64 taken = std::min(length, size - 1 - copied);
            std::memcpy(buffer + copied, start, taken);
            copied += taken;
            file->bufferPosition += length;
            atEnd = file->bufferPosition < file->textEnd;
            found = true;
        }
        if (atEnd && file->bufferPosition + 1 < file->textEnd) break;
        file->status = refill(file);
        if (isEnd(file->status) && found) break;
        if (file->status != 0) return nullptr;
    }
    skipLineEnd(file);
    buffer[copied] = '\0';
    file->textLine = nullptr;
    file->status = 0;
    ++file->lineCount;
    return buffer;
}

u64 GetFilePosition(const fileIODescriptor* file) {
    return file == nullptr ? 0 : file->bufferBase + file->bufferPosition;
}

int SetFilePosition(fileIODescriptor* file, u64 position) {
    if (!isInput(file) || (file->attributes & kWHOLE_FILE_BUFFER) == 0) return 3;
    position = std::min(position, file->logicalSize);
    file->textLine = nullptr;
    if (isText(file)) {
        position = lineStart(file->buffer, position, file->logicalSize);
        file->textLine = file->buffer + position;
    }
    file->bufferPosition = position;
    file->status = 0;
    return 0;
}
