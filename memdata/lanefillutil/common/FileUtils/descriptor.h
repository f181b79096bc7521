// descriptor.h - a file over disk or memory, read and written through one record.
//
// Reads run inside a buffer. Behind the bytes that the buffer holds stand three spare ones: 0xFF (the end mark
// of texts), NUL, NUL. A text that is one buffer (attribute kWHOLE_FILE_BUFFER) can therefore be scanned without a
// count, up to the 0xFF or the NUL. A memory file over a caller's data has only what the caller put there.
//
// Line ends of texts are LF, CR, LF CR and CR LF, each one end, in any mixture; the last line may be without one.
// A text ends at its last byte, or ahead of the first 0xFF.
//
// Large binary inputs on disk are not copied: the buffer is a window mapped over the file, without the spare bytes.
// See platform/watched_mapping.h for other programs that change such a file while it is open.
//
// Outputs to regular files appear whole or not at all: see opening.h.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_FILE_UTILS_DESCRIPTOR_H
#define MEMDATA_FILE_UTILS_DESCRIPTOR_H

#include "FileUtils/attributes.h"
#include "StringUtils/format.h"
#include "platform/watched_mapping.h"

#include <cstdio>

struct fileIODescriptor;

// Refills the buffer of an input, writes out or extends that of an output. Status 0 when bytes were gained
// (input) or room was made (output); otherwise the status that the operation on the file ends with. The flag is 0.
using FileMoverType = int (*)(fileIODescriptor* file, int flag);

struct fileIODescriptor {
    i32 status; // last result: 0, a value of memdata::FileStatus, or 1 for an output that failed
    u8 isOpen;
    FILE* stream; // null for files in memory
    char* buffer;
    u64 bufferSize;     // bytes, without the three spare ones; starts at 100000
    u64 bufferPosition; // index in the buffer: of the next byte to read, or behind the last one written
    u64 filePosition;   // bytes that have gone from or to the system file
    u64 bufferEnd;      // inputs: index behind the last byte held
    u64 bufferBase;     // offset in the file of the buffer's first byte
    i32 eofState;       // inputs: 0 while bytes may follow those held, else the status that reading ends with
    FileMoverType mover;
    u32 attributes;
    char* name;       // as it was given; a managed string
    u64 logicalSize;  // bytes of contents
    u64 physicalSize; // bytes of storage
    char* textLine;   // start of the current line, in the buffer; null when there is none
    u32 lineCount;    // lines read so far
    // From here on the record is this module's own.
    u64 textEnd;                    // inputs: index of the end mark of a text, else bufferEnd
    u8 ownsBuffer;                  // the buffer goes with the file
    u64 nameCapacity;               // characters that fit the memory of the name
    i32 writeStatus;                // outputs: the first failure, which every later call repeats
    char* targetName;               // outputs that replace a file: its name, links followed; else null
    char* temporaryName;            // ... where the contents stand until then; null when they have no name
    const fileIODescriptor* copyOf; // outputs: the open input whose bytes the temporary holds already; or null
    u64 mappedBytes;                // inputs: of the file, that the buffer is mapped over; 0 when it is memory
    memdata::WatchedMapping window; // that mapping, with the state of the file at its opening
    fileIODescriptor* nextOpen;     // the list of all open files
    fileIODescriptor* previousOpen;
};

extern fileIODescriptor StandardOut;  // over the process's standard output; open from the start
extern fileIODescriptor* StandardLog; // the journal, or null
extern u32& gDefaultFileAttributes;   // added to those of every file on disk; starts as kOVERWRITING_REFUSED
extern bool& gOutputEnabled;          // lets lines through to StandardOut and the journal
extern bool& gJournalingEnabled;      // the journal takes lines

// The next byte, 0 to 255, line ends as they stand. At an end or a failure a negative value, which is also left in
// status: -1 at the end of the file, -2 at the end mark of a text, below that a failure (memdata::FileStatus).
int inputByte(fileIODescriptor* file);

// Copies the next line, terminated, without its end: up to size - 1 characters, the rest of a longer line is
// skipped. Gives buffer, or null with a negative status when no line is left.
char* inputLine(fileIODescriptor* file, char* buffer, u64 size);

// The next line where it stands in the buffer; the first call gives the first line. It reaches to its line end,
// 0xFF, or the last byte of the file: nothing is written into the text. Valid until the next call, and as long as
// the file is open when the file is one buffer. Null with a negative status when no line is left. Counts a line.
// Lines beyond 16 MiB are refused in files that are not one buffer (alert, status -5).
char* GetNextTextLine(fileIODescriptor* file);

char* GetCurrentTextLine(fileIODescriptor* file); // as GetNextTextLine gave it; null before it and at the end
u32 GetCurrentLineCount(const fileIODescriptor* file);

// Writes the byte as it is. Status 0, -1 when the file is not open for writing, or that of a failed write.
int outputByte(fileIODescriptor* file, int byte);

// Writes text, its newlines turned as the attributes say: a blank (kNEWLINE_AS_BLANK), CR, CR LF, LF, or nothing in
// a binary file. StandardOut takes them as they are. Status as outputByte.
int outputLine(fileIODescriptor* file, const char* text);

// Formats as vStrPrintf does and writes as outputLine does. StandardOut and the journal take the text only when
// output is enabled, the journal only when journaling is on too. With journaling on, what is meant for StandardOut
// also goes to the journal. Status as outputByte; 0 for a text that was held back.
int vPutNextLine(fileIODescriptor* file, const char* format, va_list arguments);
bool EnabledPutLineOutput(bool enabled); // the old state

bool FileIsOpen(const fileIODescriptor* file); // false for null
// Bytes of contents and bytes of storage; both pointers may be null. Status 0, or 3 for a null file.
int GetFileSizes(fileIODescriptor* file, u64* logicalSize, u64* physicalSize);
u64 GetFilePosition(const fileIODescriptor* file); // offset of the next byte to read or write
// Only for inputs that are one buffer. A position behind the end becomes the end. In a text it moves back to the
// start of the line that holds it, so that GetNextTextLine gives this line; a line's end belongs to the line.
// The line count stays. Status 0, or 3 for another kind of file.
int SetFilePosition(fileIODescriptor* file, u64 position);
// The buffer of a file in memory or of one buffer, else null. Stays with the file; writing may move it. A growing
// memory file is terminated by a NUL.
char* GetFileStorageBase(const fileIODescriptor* file);
const char* GetFileName(const fileIODescriptor* file); // "" for null
u64 GetFileLogicalSize(const fileIODescriptor* file);  // as GetFileSizes
// The byte at an offset of the file, when the buffer holds it (or the end of what it holds), else null.
char* GetIndexIOBuffer(fileIODescriptor* file, u64 offset);

// Hands what is written so far to the system. Status 0 or that of a failed write, which was reported when it happened.
int Flush_File(fileIODescriptor* file);

// Finishes the file, nulls the pointer. An output then stands under its name. When it could not be written, the
// failure has been reported with its cause, its status comes back, the old file is untouched and the handle
// is kept: give it to memdata::abandonFile. StandardOut is only flushed. Null is accepted.
int Close_File(fileIODescriptor** file);

// Fills StandardOut and registers the end of the journal and of all other files for shutdown.
void InitializeFileIO();

namespace memdata {

// What a read leaves in status besides 0. Below kEND_MARK it is a failure.
enum FileStatus : i32 {
    kEND_OF_CONTENTS = -1,
    kEND_MARK = -2, // the 0xFF of a text
    kREAD_FAILED = -3,
    kNOT_READABLE = -4, // not open for reading, or a null argument
    kLINE_TOO_LONG = -5,
    kNO_MEMORY = -6,
};
inline constexpr int kNOT_WRITABLE = -1; // result of writing to a file that is not open for it

// The typed core of PutNextLine.
int putFormatted(fileIODescriptor* file, const char* format, std::span<const FormatArgument> arguments);
// Whether what is written here goes straight to a person's eyes. False for null.
bool isTerminal(const fileIODescriptor* file);
// Reads count bytes as they stand. Status 0, or as inputByte when they end before; those ahead of the end are read then.
int inputBlock(fileIODescriptor* file, char* bytes, u64 count);
// The next bytes where they stand in the buffer, and moves on behind them: as many whole units of unitBytes as are held
// there without another move of it, one at least, up to limit bytes (not below unitBytes). They stay until the next
// read. Status as inputByte when no whole unit is left; nothing is taken then.
int inputPiece(fileIODescriptor* file, u64 unitBytes, u64 limit, const char** bytes, u64* count);
// Asked when all bytes of an input were taken: whether they were those of one state of the file. Status 0, also for what
// was copied; 1 when they were not, reported.
int checkInputUnchanged(fileIODescriptor* file);
// Writes bytes as they are in one block: no formatting, no newline translation. Status as outputByte.
int outputBlock(fileIODescriptor* file, const char* bytes, u64 count);
// Drops an unfinished file and nulls the pointer: an output leaves no trace, a file that it was to replace stays
// as it was. Null is accepted.
void abandonFile(fileIODescriptor** file);

} // namespace memdata

template<class... Arguments>
int PutNextLine(fileIODescriptor* file, const char* format, const Arguments&... arguments) {
    return memdata::putFormatted(file, format, memdata::formatArguments(arguments...));
}

#endif
