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

} // namespace memdata

#endif
