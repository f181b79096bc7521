// whole_jobs.cpp - see whole_jobs.h.
// SPDX-License-Identifier: Apache-2.0
#include "support/whole_jobs.h"

#include "lanefillCore/option_run.h"
#include "support/bit_builder.h"
#include "support/bit_maker.h"
#include "support/elf_builder.h"

#include <filesystem>
#include <stdexcept>

namespace memdata::testing {
namespace {

constexpr char kMAP[] = "/* 4 KB, two memories side by side on a td6a24 */\n"
                        "#define BASE 0x1000\n"
                        "DEFINE_MEMORY_TYPE sram [0x1000] 8 16;\n"
                        "ADDRESS_MAP cpu RISCV 0 top/cpu\n"
                        "  ADDRESS_SPACE ram RAMB16 [BASE:0x1FFF]\n"
                        "    BUS_BLOCK\n"
                        "      top/hi [15:8] LOC = X0Y2;\n"
                        "      top/lo [7:0] LOC = X0Y4;\n"
                        "    END_BUS_BLOCK;\n"
                        "  END_ADDRESS_SPACE;\n"
                        "END_ADDRESS_MAP;\n";

constexpr char kTEXT[] = "#define DEPTH 64\n"
                         "#function WORDS(n)\n"
                         "n words of DEPTH\n"
                         "#endfunction\n"
                         "#ifdef DEPTH\n"
                         "WORDS(2)\n"
                         "#endif\n";

Bytes countedBytes(size_t count) {
    Bytes bytes(count);
    for (size_t i = 0; i < count; ++i) bytes[i] = static_cast<u8>(i * 7 + i / 256);
    return bytes;
}

std::string memText() {
    std::string text = "@1000";
    for (const u8 byte : countedBytes(2048)) text += " " + std::string(1, "0123456789ABCDEF"[byte / 16]) + "5";
    return text + "\n@1C00 01 02 03 04\n";
}

// The line of a header that tells when the file was made says nothing any more.
std::string withoutTime(std::string contents) {
    const size_t at = contents.find("Created on ");
    if (at != contents.npos) contents.erase(at, contents.find('\n', at) - at);
    return contents;
}

// Files that the jobs replace.
constexpr const char* kEARLIER[] = {"out/cpu.ram_0.mem", "out/map.bmm", "out/listing.dmp", "out/new.bit"};

} // namespace

std::string WholeJob::text() const {
    std::string joined = isSubCommand ? "-bt" : ""; // of the only one that is a run on options
    for (size_t i = isSubCommand ? 1 : 0; i < words.size(); ++i) joined += (joined.empty() ? "" : " ") + words[i];
    return joined;
}

void writeJobInputs(const TemporaryFolder& folder) {
    BitRecipe recipe{.device = "td6a24"};
    const MadeBit made = makeBit(recipe);
    std::filesystem::create_directory(folder.path() / "out");
    folder.write("soc.bmm", kMAP);
    folder.write("text.bmm", kTEXT);
    folder.write(
        "app.elf", textOf(elfFile({.segments = {{.address = 0x1000, .bytes = countedBytes(3000)},
                                       {.address = 0x1E00, .bytes = countedBytes(300), .section = ".data"}}})));
    folder.write("data.mem", memText());
    folder.write(
        "data.coe", "memory_initialization_radix=16;\nmemory_initialization_vector=\n12, 34,56\n78\n,9A BC;\n");
    folder.write("data.mif", "@4 00010001 00100010\n00111111\n");
    folder.write("top.bit", textOf(bitFileOf(recipe, made.stream)));
    recipe.container = BitContainer::RBT;
    folder.write("top.rbt", textOf(bitFileOf(recipe, made.stream)));
    const auto quoted = [&](const char* name) { return "\"" + folder.file(name) + "\""; };
    const OptionRun checked = runOptions(("-bm " + quoted("soc.bmm") + " -bd " + quoted("app.elf") + " -bt " +
                                          quoted("top.bit") + " -o b " + quoted("checked.bit"))
                                             .c_str());
    if (checked.status != 0) throw std::runtime_error("no bit file to check was made");
    for (const char* name : kEARLIER) folder.write(name, "earlier\n");
}

const std::vector<WholeJob>& wholeJobs() {
    static const std::vector<WholeJob> kJOBS = {
        {"MemFilesFromElf", {"-w", "-bm", "soc.bmm", "-bd", "app.elf", "-bx", "out"}},
        {"MemFilesFromTexts",
            {"-w", "-i", "-bm", "soc.bmm", "-bd", "data.mem", "-bd", "data.coe", "-bd", "data.mif", "-bx", "out"}},
        {"AnnotatedMaps", {"-w", "-p", "td6a24", "-bm", "soc.bmm", "-o", "p", "out/map.bmm", "-o", "a", "out/map.xml"}},
        {"CompactMap",
            {"-w", "-mf", "c ram u0 RAMB16 [7:0] [0:2047] c ram u1 RAMB16 [15:8] [0:2047]", "m sram 256 8 16",
                "p cpu PPC405 0 a mem top 0 16 f RAMB16 4096 8 ram", "-o", "p", "out/map.bmm"}},
        {"PreprocessedText", {"-w", "-pp", "text.bmm", "-o", "p", "out/map.bmm"}},
        {"ElfDump", {"-w", "-bd", "app.elf", "-d", "e", "-o", "d", "out/listing.dmp"}},
        {"Replacement", {"-w", "-bm", "soc.bmm", "-bd", "app.elf", "-bt", "top.bit", "-o", "b", "out/new.bit"}},
        {"BitDump", {"-w", "-bm", "soc.bmm", "-bt", "top.bit", "-d", "-o", "d", "out/listing.dmp"}},
        {"RbtReplacement", {"-w", "-bm", "soc.bmm", "-bd", "app.elf", "-bt", "top.rbt", "-o", "b", "out/new.bit"}},
        {"Check", {"check", "checked.bit", "-bm", "soc.bmm", "-bd", "app.elf"}, true},
        {"MapTable", {"map", "soc.bmm"}, true},
        {"DeviceTables", {"devices", "--json"}, true},
    };
    return kJOBS;
}

const WholeJob& wholeJob(const std::string& name) {
    for (const WholeJob& job : wholeJobs())
        if (job.name == name) return job;
    throw std::invalid_argument("there is no job " + name);
}

Files filesIn(const std::filesystem::path& folder) {
    Files files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (!entry.is_directory())
            files[entry.path().lexically_relative(folder).string()] = withoutTime(readFile(entry.path()));
    return files;
}

std::string torn(const Files& before, const Files& undisturbed, const Files& now) {
    const auto holds = [](const Files& files, const std::string& name, const std::string& contents) {
        const auto found = files.find(name);
        return found != files.end() && found->second == contents;
    };
    std::string faults;
    for (const auto& [name, contents] : now) {
        if (holds(before, name, contents) || holds(undisturbed, name, contents)) continue;
        faults += name + (before.contains(name) || undisturbed.contains(name) ? " is neither the old nor the new file\n"
                                                                              : " was left behind\n");
    }
    for (const auto& [name, contents] : before)
        if (!now.contains(name)) faults += name + " is gone\n";
    return faults;
}

} // namespace memdata::testing
