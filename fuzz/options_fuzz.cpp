// options_fuzz.cpp - an option text is read and carried out.
//
// The run stands in a folder of its own, where a few small inputs lie: map.bmm, app.elf, data.mem, set.xml and more.opt.
// Texts with "/" or "\" are passed over: no name leads out of the folder, none to a device. What a run writes is bounded
// by the system's limit for files, and thrown away.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/option_run.h"
#include "support/elf_builder.h"
#include "support/engine_run.h"

#include <csignal>
#include <string>
#include <sys/resource.h>

namespace {

using namespace memdata;
using namespace memdata::fuzz;

constexpr rlim_t kMAX_FILE_BYTES = 64 << 20;

constexpr std::string_view kMAP = "ADDRESS_MAP cpu RISCV 0 top\n"
                                  "ADDRESS_SPACE ram RAMB16 [0x1000:0x1FFF]\n"
                                  "BUS_BLOCK\n"
                                  "hi [15:8] LOC = X0Y1 OUTPUT = hi.mem;\n"
                                  "lo [7:0] LOC = X0Y0 INPUT = data.mem;\n"
                                  "END_BUS_BLOCK;\n"
                                  "END_ADDRESS_SPACE;\n"
                                  "END_ADDRESS_MAP;\n";
constexpr std::string_view kDATASET = "<?xml version=\"1.0\"?>\n"
                                      "<AddressMap>\n"
                                      "<Processor Name=\"cpu\">\n"
                                      "<AddressSpace Name=\"ram\"><AddressMap Path=\"data.mem\"/></AddressSpace>\n"
                                      "</Processor>\n"
                                      "</AddressMap>\n";

void limitFiles() {
    const rlimit limit{kMAX_FILE_BYTES, kMAX_FILE_BYTES};
    static const bool isLimited = std::signal(SIGXFSZ, SIG_IGN) != SIG_ERR && setrlimit(RLIMIT_FSIZE, &limit) == 0;
    require(isLimited, "the size of files can not be limited");
}

void writeInputs() {
    static const testing::Bytes elf =
        testing::elfFile({.entry = 0x1000, .segments = {{.address = 0x1000, .bytes = {1, 2, 3, 4, 5, 6, 7}}}});
    writeFile("map.bmm", kMAP);
    writeFile("app.elf", textOf(elf.data(), elf.size()));
    writeFile("data.mem", "@00001000 01 02 03\n@00001800 FF\n");
    writeFile("set.xml", kDATASET);
    writeFile("more.opt", "-i -u\n");
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(textOf(data, size));
    if (text.find_first_of(std::string_view("/\\\0", 3)) != text.npos) return -1; // not kept
    limitFiles();
    const EngineRun run;
    writeInputs();
    runOptions(text.c_str());
    deleteFiles();
    return 0;
}
