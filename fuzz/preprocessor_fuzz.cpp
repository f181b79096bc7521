// preprocessor_fuzz.cpp - a text, its directives acted on and its macros expanded, written to standard output.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/preprocess_file.h"
#include "SystemUtils/memory.h"
#include "support/engine_run.h"

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const memdata::fuzz::EngineRun run;
    const std::string_view text = memdata::fuzz::textOf(data, size);
    const memdata::OwnedFileSpec spec(CreateFileSpecWithFileData("text.bmm", text.data(), text.size()));
    open_and_preprocess_file(spec.get(), "bmm", nullptr, nullptr);
    return 0;
}
