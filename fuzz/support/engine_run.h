// engine_run.h - one input of a fuzz target as one run of the engine.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_FUZZ_SUPPORT_ENGINE_RUN_H
#define MEMDATA_FUZZ_SUPPORT_ENGINE_RUN_H

#include "platform/BasicTypes.h"

#include <cstddef>
#include <string_view>

// What every target defines.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace memdata::fuzz {

// From construction to destruction the engine is started, all that it says goes nowhere, and the current folder is an
// empty one that only this process uses: names without a folder reach no file of the machine. At the end the engine is
// shut down as at the end of a process. The process is aborted when the shut-down found a tracked block that nobody had
// released, or when the run left a file behind.
//
//     extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
//         const memdata::fuzz::EngineRun run;
//         parse(memdata::fuzz::textOf(data, size));
//         return 0;
//     }
class EngineRun {
public:
    EngineRun();
    ~EngineRun();
    EngineRun& operator=(EngineRun&&) = delete; // neither copied nor moved
};

// For runs that read and write files: puts a file into the current folder; takes all files out of it.
void writeFile(const char* name, std::string_view content);
void deleteFiles();

// The input as text. It is not terminated.
std::string_view textOf(const uint8_t* data, size_t size);

// For facts that hold for every input. Prints the sentence and aborts, so that the input is kept as a finding.
[[noreturn]] void fail(const char* sentence);
inline void require(bool holds, const char* sentence) {
    if (!holds) fail(sentence);
}
// The same of two texts: prints the first line in which they differ.
void requireEqual(std::string_view left, std::string_view right, const char* sentence);

} // namespace memdata::fuzz

#endif
