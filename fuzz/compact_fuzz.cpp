// compact_fuzz.cpp - a text of the compact language is compiled, and the maps that it gives are read.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/bmm_info.h"
#include "BmmUtils/compact_records.h"
#include "support/engine_run.h"
#include "support/map_rounds.h"

namespace {

using namespace memdata;
using namespace memdata::fuzz;

// The text is read as what stands behind one -mf.
int compile(std::string_view text, CmdStringOptionsType* options) {
    parse_stream* stream = nullptr;
    int status = open_parse_MemoryFile("text.opt", text.data(), text.size(), nullptr, nullptr, nullptr, &stream);
    if (stream == nullptr) return status;
    const TokenOwner token(get_token_element());
    if (status == 0) status = parse_bmm_info(stream, token.get(), options);
    const int closed = close_parse_stream(&stream);
    if (status == 0) status = closed;
    return status == 0 ? finalize_bmm_info(options) : status;
}

void readMaps(const CmdStringOptionsType& options) {
    OwnedMapping mapping = newMapping();
    for (unsigned long i = 0; FileSpecListGet(options.bmmFiles, i) != nullptr; ++i) {
        u64 size = 0;
        const char* data = FileSpecGetFileData(FileSpecListGet(options.bmmFiles, i), &size);
        if (data == nullptr || readMap({data, size}, mapping.get()) != 0) return;
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const EngineRun run;
    CmdStringOptionsType options{};
    if (compile(textOf(data, size), &options) == 0) readMaps(options);
    DeleteCmdStringOptions(&options);
    delete_scratchBMMInfo();
    return 0;
}
