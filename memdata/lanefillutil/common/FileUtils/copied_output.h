// copied_output.h - a large output that is an input with some of its bytes changed.
//
// The kernel's part of writing such a file, new pages and the bytes that fill them, is done by a second thread while the
// run still prepares the changes. What the run then writes as it stands in the input is passed over, all else goes into
// pages that are there. Everything else is as for any output: the copy is the temporary of the output, and gone with the
// run when nobody takes it.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_FILE_UTILS_COPIED_OUTPUT_H
#define MEMDATA_FILE_UTILS_COPIED_OUTPUT_H

#include "FileUtils/descriptor.h"
#include "FileUtils/file_spec.h"
#include "platform/file_copier.h"
#include "platform/file_follower.h"

#include <memory>
#include <string>

namespace memdata {

// A copy in the making, one at a time; made ahead of the work and ended with it. There is none, and no thread, where the
// input is no regular file or below gFileState.smallestCopy, where the output's folder makes no nameless files, and where
// the process has one processor only. Nothing is reported: what keeps a copy from being made is met again, and told, when
// the files are opened.
class CopiedOutput {
public:
    // input   null for none
    // output  null for a file beside the input
    CopiedOutput(const fileSpecType* input, const fileSpecType* output);
    ~CopiedOutput();
    CopiedOutput& operator=(CopiedOutput&&) = delete; // neither copied nor moved

private:
    friend bool beginAsCopy(fileIODescriptor* output, const fileIODescriptor* input);

    FileState state_{};  // of the input, ahead of its first byte
    std::string folder_; // of the output
    std::unique_ptr<FileCopier> copier_;
};

// Puts the copy in the making under an output that nothing was written to yet, once it is whole. False, and the output
// is empty as before, when there is none, when it was made of another file or of another state of the file, or when the
// output stands in another folder or has a temporary with a name.
// The input must be open as long as the output is written to, and checkInputUnchanged asked afterwards.
bool beginAsCopy(fileIODescriptor* output, const fileIODescriptor* input);

// Passes over the next bytes of the input and of an output that holds them already at the place where they would be
// written: as many whole units of unitBytes as there are, up to limit. Nothing of them is read or mapped. *count is
// their number, 0 where the output is no such copy or no whole unit is left. Status as outputBlock.
int passCopied(fileIODescriptor* output, fileIODescriptor* input, u64 unitBytes, u64 limit, u64* count);

// Whether a second thread is to follow the next byteCount bytes of an output: those of a copy, when they are many.
bool isWorthFollowing(const fileIODescriptor* output, u64 byteCount);

// Reads what is written to a copied output from here on by a second thread, which gives it to a function: see
// FileFollower. The output is open as long as the follower lives.
class OutputFollower {
public:
    OutputFollower(fileIODescriptor* output, FileFollower::Taker taker, void* state);

    bool isRunning() const { return follower_.isRunning(); }
    // Tells the thread what has gone to the file meanwhile.
    void noteWritten() { follower_.follow(output_->filePosition); }
    // Hands all that is written to the file and waits until it was taken. Once. Status 0, or that of a failed write;
    // what can not be read back counts as one.
    int finish();

private:
    fileIODescriptor* output_;
    FileFollower follower_;
};

} // namespace memdata

#endif
