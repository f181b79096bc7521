// differential_test.cpp - random jobs give what a plain model of maps, lanes, check bits and frames says they give.
//
// In the environment: MEMDATA_DIFFERENTIAL_SEED and MEMDATA_DIFFERENTIAL_JOBS replace the seed of the first job and the
// number of jobs; a job has the seed of the first plus its number, so one job alone is run by its seed and 1.
// MEMDATA_DIFFERENTIAL_FEATURES prints how many jobs had each feature, MEMDATA_DIFFERENTIAL_KEEP names a folder for the
// files of jobs that failed.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/device_lookup.h"
#include "SystemUtils/SystemUtils.h"
#include "e2e/differential_jobs.h"
#include "lanefillCore/option_run.h"
#include "support/alerts.h"
#include "support/bit_builder.h"
#include "support/host_messages.h"
#include "support/plain_map_text.h"
#include "support/plain_mem_text.h"
#include "support/temporary_folder.h"
#include "support/tool_run.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <iostream>
#include <sstream>

namespace memdata::testing {
namespace {

namespace fs = std::filesystem;

constexpr u64 kDEFAULT_SEED = 20261122;
constexpr u64 kDEFAULT_JOBS = 200;
constexpr size_t kFAILURES_SHOWN = 4;

u64 fromEnvironment(const char* name, u64 otherwise) {
    const char* text = std::getenv(name);
    return text == nullptr ? otherwise : std::strtoull(text, nullptr, 0);
}

std::vector<std::string> split(const std::string& text) {
    std::istringstream in(text);
    std::vector<std::string> words;
    for (std::string word; in >> word;) words.push_back(word);
    return words;
}

// A MEM file that a job has to write.
struct MemFile {
    const PlainSpaceImage* space;
    const PlainRangeImage* range;
    const PlainLaneImage* lane;
    const PlainLaneImage* check; // in the same file
};

// What the model says about a run.
struct Expected {
    int status = 0;
    std::unique_ptr<PlainMemory> memory;
    std::vector<std::map<std::string, MemFile>> files; // of each folder
    std::string dataNames;
    bool is64Bit = false;
};

class Environment { // while it lives
public:
    explicit Environment(bool isSet) : isSet_(isSet) {
        if (isSet_) setenv(kNAME, "1", 1);
    }
    ~Environment() {
        if (isSet_) unsetenv(kNAME);
    }
    Environment& operator=(Environment&&) = delete;

private:
    static constexpr char kNAME[] = "OMBREL_LNV_SINGLEMEMFILE";
    bool isSet_;
};

class WorkingFolder { // while it lives
public:
    explicit WorkingFolder(const fs::path& path) : old_(fs::current_path()) { fs::current_path(path); }
    ~WorkingFolder() { fs::current_path(old_); }
    WorkingFolder& operator=(WorkingFolder&&) = delete;

private:
    fs::path old_;
};

// The bytes of a dumped memory: the order of bits in units of a lane's words is undone.
Bytes dumpedBytes(unsigned width, const Bytes& bytes) {
    Bytes dumped = bytes;
    for (size_t i = 0; i < bytes.size(); ++i) {
        const u8 byte = bytes[i];
        u8 turned = byte;
        const unsigned unit = width == 1 || width == 2 || width == 4 ? width : 8;
        for (unsigned at = 0; at < 8; at += unit)
            for (unsigned bit = 0; bit < unit; ++bit) {
                const u8 mask = static_cast<u8>(1 << (8 - unit - at + bit));
                turned = static_cast<u8>((byte >> (at + bit) & 1) != 0 ? turned | mask : turned & ~mask);
            }
        const size_t last = width == 16 ? 1 : width == 32 ? 3 : 0;
        dumped[i - i % (last + 1) + (last - i % (last + 1))] = turned;
    }
    return dumped;
}

// The first line in which two texts differ.
std::string firstDifference(const std::string& got, const std::string& wanted) {
    std::istringstream gotLines(got);
    std::istringstream wantedLines(wanted);
    for (size_t number = 1;; ++number) {
        std::string left;
        std::string right;
        const bool hasLeft = !std::getline(gotLines, left).fail();
        const bool hasRight = !std::getline(wantedLines, right).fail();
        if (left == right && hasLeft == hasRight && hasLeft) continue;
        return "in line " + std::to_string(number) + ":\n    " + (hasLeft ? left : "(its end)") +
               "\n  in place of\n    " + (hasRight ? right : "(its end)");
    }
}

class JobRunner {
public:
    explicit JobRunner(const Job& job) : job_(job) {
        folder_.write("map.bmm", job.mapText);
        for (const JobFile& file : job.files) folder_.write(file.name, textOf(file.contents));
        for (const JobInit& init : job.inits) folder_.write(init.name, init.contents);
    }

    const std::vector<std::string>& differences() const { return differences_; }
    const std::vector<std::string>& commands() const { return commands_; }
    const TemporaryFolder& folder() const { return folder_; }
    const std::set<std::string>& features() const { return features_; }

    void run(Dice& dice) {
        if (job_.bit)
            runBit_();
        else
            runMem_(dice);
    }

private:
    void differ_(const std::string& what) {
        constexpr size_t kSHOWN = 8;
        if (differences_.size() < kSHOWN) differences_.push_back(what);
    }

    // Runs, and their statuses.

    int execute_(const std::string& words) {
        commands_.push_back((job_.sharesFiles ? "OMBREL_LNV_SINGLEMEMFILE=1 lanefill " : "lanefill ") + words);
        const Environment environment(job_.sharesFiles);
        if (job_.throughTool) {
            const ToolResult result = runTool(split(words), {.folder = folder_.path()});
            said_ = result.all();
            return result.status;
        }
        const WorkingFolder there(folder_.path());
        const SystemResources resources;
        CapturedAlerts alerts;
        const CapturedMessages messages;
        const int status = runOptions(words.c_str()).status;
        said_ = alerts.text() + messages.lines();
        return status;
    }
    bool executeAs_(const std::string& words, int status) {
        const int got = execute_(words);
        if (got == status) return true;
        differ_("status " + std::to_string(got) + " in place of " + std::to_string(status) + " of: " + words + "\n" +
                said_);
        return false;
    }

    // What the model says.

    Expected expect_(size_t firstFile, size_t lastFile) const {
        Expected expected;
        expected.memory = std::make_unique<PlainMemory>(job_.map);
        if (job_.runsInit)
            for (const JobInit& init : job_.inits) expected.memory->putInit(*init.lane, init.segments);
        for (size_t i = firstFile; i < lastFile && expected.status == 0; ++i) {
            const JobFile& file = job_.files[i];
            expected.status = expected.memory->put(file.data);
            expected.is64Bit = file.is64Bit;
            expected.dataNames += (expected.dataNames.empty() ? " " : ", ") + file.name;
        }
        if (firstFile == lastFile) return expected;
        for (const JobOutput& output : job_.outputs) {
            if (expected.status != 0) break;
            expectFiles_(output, &expected);
        }
        return expected;
    }

    void expectFiles_(const JobOutput& output, Expected* expected) const {
        constexpr int kUNKNOWN_TAG = 11;
        constexpr int kNO_CHECK_LANES = 22;
        expected->files.emplace_back();
        const auto chosen = expected->memory->choose(output.tags);
        if (!chosen) {
            expected->status = kUNKNOWN_TAG;
            return;
        }
        for (const PlainSpaceImage* space : *chosen) {
            if (!space->isTouched && !job_.updatesAll) continue;
            const bool shares = space->space->checksInSameFile || job_.sharesFiles;
            size_t index = 0;
            size_t checkIndex = 0;
            for (const PlainRangeImage& range : space->ranges)
                for (const PlainBlockImage& block : range.blocks) {
                    if (shares && block.checks.empty()) {
                        expected->status = kNO_CHECK_LANES;
                        return;
                    }
                    for (size_t i = 0; i < block.lanes.size(); ++i)
                        expected->files.back()[nameOf_(*space, block.lanes[i], "_", &index)] = {
                            space, &range, &block.lanes[i], shares ? &block.checks[i] : nullptr};
                    for (size_t i = 0; i < block.checks.size() && !shares; ++i)
                        expected->files.back()[nameOf_(*space, block.checks[i], "_ecc_", &checkIndex)] = {
                            space, &range, &block.checks[i], nullptr};
                }
        }
    }

    static std::string nameOf_(
        const PlainSpaceImage& space, const PlainLaneImage& lane, const char* word, size_t* index) {
        const size_t number = (*index)++;
        if (!lane.lane->init.empty()) return lane.lane->init;
        if (!lane.lane->output.empty()) return lane.lane->output;
        return space.name + word + std::to_string(number) + ".mem";
    }

    // MEM files.

    std::string dataWords_(size_t firstFile, size_t lastFile) const {
        std::string words = job_.runsInit ? " -a" : "";
        for (size_t i = firstFile; i < lastFile; ++i)
            words +=
                " -bd " + job_.files[i].name + (job_.files[i].modifiers.empty() ? "" : " ") + job_.files[i].modifiers;
        return words;
    }

    std::string outputWords_(const std::string& prefix) {
        std::string words;
        for (const JobOutput& output : job_.outputs) {
            fs::create_directories(folder_.file(prefix + output.folder));
            words += " -bx " + prefix + output.folder;
            if (output.tags.empty()) continue;
            words += " tag";
            for (const std::string& tag : output.tags) words += " " + tag;
        }
        return words + (job_.updatesAll ? " -u" : "") + job_.furtherOptions;
    }

    void runMem_(Dice& dice) {
        const Expected expected = expect_(0, job_.files.size());
        features_.insert(
            expected.status == 0 ? "run to the end" : "ends with status " + std::to_string(expected.status));
        const bool annotates = dice.oneIn(3);
        const bool documents = job_.map.ownTypes.empty() && canBeXml(job_.map) && dice.oneIn(4);
        const std::string data = dataWords_(0, job_.files.size());
        std::string maps = annotates ? " -o p annotated.bmm" : "";
        if (documents) maps += " -o a written.xml";
        if (!executeAs_("-bm map.bmm" + data + outputWords_("") + maps, expected.status)) return;
        compareMem_(expected, "", "map.bmm", true);
        if (annotates) runForm_(expected, "annotated.bmm", "-bm annotated.bmm", "annotated map", data);
        if (documents) runForm_(expected, "written.xml", "-bm written.xml", "written document", data);
        if (canBeXml(job_.map) && dice.oneIn(3)) {
            folder_.write("other.xml", xmlText(job_.map));
            runForm_(expected, "other.xml", "-bm other.xml", "map as a document", data);
        }
        if (canBeCompact(job_.map) && dice.oneIn(2)) {
            folder_.write("compact.opt", "-mf " + compactText(job_.map));
            runForm_(expected, "compact.opt", "-f compact.opt", "map in the compact language", data);
        }
    }

    // The same map in another form. When the run fails it fails alike, ahead of any map that it could write.
    void runForm_(const Expected& expected, const std::string& file, const std::string& words,
        const std::string& feature, const std::string& data) {
        if (!fs::exists(folder_.file(file))) {
            if (expected.status == 0) differ_(file + " was not written");
            return;
        }
        features_.insert(feature);
        const std::string prefix = file + "-";
        if (executeAs_(words + data + outputWords_(prefix), expected.status)) compareMem_(expected, prefix, "", false);
    }

    void compareMem_(const Expected& expected, const std::string& prefix, const std::string& mapName, bool hasHeads) {
        if (expected.status != 0) return;
        for (size_t i = 0; i < job_.outputs.size(); ++i) {
            const std::string folder = prefix + job_.outputs[i].folder;
            std::set<std::string> found;
            for (const auto& entry : fs::directory_iterator(folder_.file(folder)))
                found.insert(entry.path().filename().string());
            static const std::map<std::string, MemFile> kNONE;
            const auto& files = expected.files.empty() ? kNONE : expected.files[i];
            for (const auto& [name, file] : files) {
                if (found.erase(name) == 0)
                    differ_(folder + "/" + name + " was not written");
                else
                    compareMemFile_(expected, file, folder + "/" + name, mapName, hasHeads);
            }
            for (const std::string& name : found) differ_(folder + "/" + name + " is not expected");
        }
    }

    void compareMemFile_(const Expected& expected, const MemFile& file, const std::string& name,
        const std::string& mapName, bool hasHeads) {
        const std::string text = readFile(folder_.file(name));
        const bool isTouched = file.lane->isTouched || (file.check != nullptr && file.check->isTouched);
        const std::string records = isTouched ? recordText(*file.lane, file.check, expected.is64Bit) : "";
        if (recordsOf(text) != records) differ_(name + " differs " + firstDifference(recordsOf(text), records));
        if (isTouched && loadMemText(text) != wordsOf(*file.lane, file.check))
            differ_(name + " loads other words than those of its lane");
        if (!hasHeads) return;
        const PlainLane& lane = *file.lane->lane;
        const std::string low = std::to_string(lane.low);
        const std::string high = std::to_string(lane.low + lane.width - 1);
        for (const std::string& line : {"//     Map file     - " + mapName + "\n",
                 "//     Data file(s) -" + (expected.dataNames.empty() ? " none" : expected.dataNames) + "\n",
                 "// Address space '" + file.space->name + "', bit lane [" + (lane.ascends ? low : high) + ":" +
                     (lane.ascends ? high : low) + "].\n",
                 "// Bus width = " + std::to_string(file.range->range->busWidth()) +
                     " bits, number of bus blocks = " + std::to_string(file.range->blocks.size()) + ".\n"})
            if (headOf(text).find(line) == std::string::npos) differ_(name + " does not say " + line + headOf(text));
    }

    // Bit files.

    void runBit_() {
        const JobBit& bit = *job_.bit;
        const bool isRbt = bit.recipe.container == BitContainer::RBT;
        const std::string input = isRbt ? "in.rbt" : "in.bit";
        folder_.write(input, textOf(bitFileOf(bit.recipe, makeBit(bit.recipe).stream)));
        BitRecipe wanted = bit.recipe; // with the contents so far
        const size_t steps = bit.inTwoSteps ? 2 : 1;
        const size_t split = bit.inTwoSteps ? job_.files.size() - 1 : job_.files.size();
        std::string from = input;
        for (size_t step = 0; step < steps; ++step) {
            const size_t first = step == 0 ? 0 : split;
            const size_t last = step == 0 ? split : job_.files.size();
            const Expected expected = expect_(first, last);
            features_.insert(
                expected.status == 0 ? "run to the end" : "ends with status " + std::to_string(expected.status));
            const std::string prefix = "step" + std::to_string(step) + "-";
            const std::string to = prefix + "out.bit";
            if (!executeAs_(
                    "-bm map.bmm" + dataWords_(first, last) + " -bt " + from + " -o b " + to + outputWords_(prefix),
                    expected.status))
                return;
            if (expected.status != 0) return;
            compareMem_(expected, prefix, "map.bmm", true);
            replace_(*expected.memory, &wanted);
            compareBits_(to, wanted);
            compareDump_(to, wanted);
            from = to;
        }
    }

    void compareBits_(const std::string& name, const BitRecipe& wanted) {
        const Bytes wantedFile = wantedFile_(wanted);
        const std::string file = readFile(folder_.file(name));
        if (file == textOf(wantedFile)) return;
        size_t count = 0;
        for (size_t i = 0; i < std::min(file.size(), wantedFile.size()); ++i)
            if (static_cast<u8>(file[i]) != wantedFile[i]) ++count;
        differ_(name + " has " + std::to_string(file.size()) + " bytes, " + std::to_string(wantedFile.size()) +
                " are wanted, and " + std::to_string(count) + " others");
        const size_t wantedBytes = makeBit(wanted).stream.size();
        const Bytes stream(file.end() - static_cast<std::ptrdiff_t>(std::min(wantedBytes, file.size())), file.end());
        for (const auto& [lane, site] : job_.bit->sites) {
            const auto known = std::ranges::find(wanted.contents, site, [](const auto& entry) { return entry.first; });
            if (known == wanted.contents.end()) continue;
            MemoryImages images = known->second;
            clearLostBits(device_(), site, images);
            const MemoryImages found = memoryOf(device_(), stream, site);
            if (found.data != images.data) differ_("other data in the frames of " + lane->name);
            if (found.parity != images.parity) differ_("other parity in the frames of " + lane->name);
        }
    }

    // Memories of lanes that hold words take them as a whole.
    void replace_(const PlainMemory& memory, BitRecipe* recipe) {
        const TarselDeviceType* device = device_();
        for (const auto& [lane, site] : job_.bit->sites) {
            const PlainLaneImage& image = imageOf_(memory, lane);
            if (!image.holdsWords) continue;
            words_[lane] = {image.dataBytes(), parityOf_(image, site)};
            const MemoryImages images =
                imagesOfLane(device, site.memory->type, lane->width, image.parityBits, words_.at(lane));
            const auto known = std::ranges::find(recipe->contents, site, [](const auto& entry) { return entry.first; });
            if (known != recipe->contents.end())
                known->second = images;
            else
                recipe->contents.emplace_back(site, images);
        }
    }

    static Bytes parityOf_(const PlainLaneImage& image, const MemorySite& site) {
        return image.parityBits == 0 ? Bytes(site.memory->type->parityBits / 8) : image.parityBytes();
    }

    const TarselDeviceType* device_() const { return get_device_record_by_name(job_.bit->recipe.device.c_str()); }

    const PlainLaneImage& imageOf_(const PlainMemory& memory, const PlainLane* lane) const {
        for (const PlainSpaceImage& space : memory.spaces())
            for (const PlainRangeImage& range : space.ranges)
                for (const PlainBlockImage& block : range.blocks)
                    for (const auto* lanes : {&block.lanes, &block.checks})
                        for (const PlainLaneImage& image : *lanes)
                            if (image.lane == lane) return image;
        throw std::logic_error("a lane is in no block");
    }

    // Digits of a text become a bit file under the text's own head.
    Bytes wantedFile_(const BitRecipe& recipe) const {
        Bytes stream = makeBit(recipe).stream;
        if (recipe.container != BitContainer::RBT) return bitFileOf(recipe, stream);
        stream.resize((stream.size() + 3) / 4 * 4);
        return t4kBitFile({.designName = "top.ncd",
                              .partName = std::string(device_()->names[0]),
                              .date = "Sat Jul 10 2010",
                              .time = "12:52:21"},
            stream);
    }

    // The dump of a bit file shows each memory of a lane, in the order of the lane's words.
    void compareDump_(const std::string& name, const BitRecipe& recipe) {
        const TarselDeviceType* device = device_();
        constexpr u64 kDUNMARE_6 = 0x8000;
        const bool keepsParityOrder = (device->family->familyMask & kDUNMARE_6) != 0;
        if (!executeAs_("-d p -bm map.bmm -bt " + name + " -o d " + name + ".dmp", 0)) return;
        const auto dumped = dumpedMemories_(readFile(folder_.file(name + ".dmp")));
        for (const auto& [lane, site] : job_.bit->sites) {
            if (!dumped.contains(lane->name)) {
                differ_("the dump does not show " + lane->name);
                continue;
            }
            const auto known = std::ranges::find(recipe.contents, site, [](const auto& entry) { return entry.first; });
            if (known == recipe.contents.end()) continue;
            MemoryImages images = known->second;
            clearLostBits(device, site, images);
            const unsigned parityBits = lane->type->parityOf(lane->width);
            const MemoryImages wanted{dumpedBytes(lane->width - parityBits, words_.at(lane).data),
                keepsParityOrder ? images.parity : dumpedBytes(1, images.parity)};
            if (dumped.at(lane->name).data != wanted.data) differ_("the dump shows other data of " + lane->name);
            if (dumped.at(lane->name).parity != wanted.parity) differ_("the dump shows other parity of " + lane->name);
            features_.insert("dump of a replaced file");
        }
    }

    static std::map<std::string, MemoryImages> dumpedMemories_(const std::string& text) {
        constexpr char kINSTANCE[] = "Design instance \"";
        std::map<std::string, MemoryImages> memories;
        Bytes unused;
        Bytes* bytes = &unused;
        std::string name;
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("BRAM data, ")) {
                const size_t at = line.find(kINSTANCE);
                name = at == line.npos ? "" : line.substr(at + sizeof kINSTANCE - 1);
                name = name.substr(0, name.find('"'));
                bytes = &memories[name].data;
            } else if (line.starts_with("BRAM parity")) {
                bytes = &memories[name].parity;
            } else if (line.size() > 10 && line[0] == ' ' && line[9] == ':') {
                std::istringstream digits(line.substr(10, 3 * 32 + 2)); // behind them the same as characters
                for (unsigned value = 0, i = 0; i < 32 && digits >> std::hex >> value; ++i)
                    bytes->push_back(static_cast<u8>(value));
            } else if (!line.empty() && line[0] != ' ') {
                bytes = &unused;
            }
        }
        return memories;
    }

    const Job& job_;
    TemporaryFolder folder_;
    std::vector<std::string> differences_, commands_;
    std::set<std::string> features_;
    std::map<const PlainLane*, MemoryImages> words_; // that are in the bit file, as the lanes hold them
    std::string said_;
};

std::string reportOf(const Job& job, const JobRunner& runner, u64 seed) {
    std::ostringstream text;
    text << "A job differs. Again: MEMDATA_DIFFERENTIAL_SEED=" << seed
         << " MEMDATA_DIFFERENTIAL_JOBS=1 test_e2e --gtest_filter=Differential.*\n";
    for (const std::string& difference : runner.differences()) text << "  " << difference << "\n";
    for (const std::string& command : runner.commands()) text << "$ " << command << "\n";
    text << "map.bmm:\n" << job.mapText;
    for (const JobFile& file : job.files) {
        text << file.name << ":";
        for (const PlainSegment& segment : file.data.segments)
            text << "\n  @" << std::hex << segment.address << std::dec << " " << hexText(segment.bytes).substr(0, 600);
        text << "\n";
    }
    for (const JobInit& init : job.inits) text << init.name << ":\n" << init.contents;
    return text.str();
}

void keepFiles(const JobRunner& runner, u64 seed) {
    const char* folder = std::getenv("MEMDATA_DIFFERENTIAL_KEEP");
    if (folder == nullptr) return;
    const fs::path to = fs::path(folder) / ("job-" + std::to_string(seed));
    fs::create_directories(to);
    fs::copy(runner.folder().path(), to, fs::copy_options::recursive | fs::copy_options::overwrite_existing);
}

TEST(Differential, RandomJobsGiveWhatThePlainModelSays) {
    const u64 firstSeed = fromEnvironment("MEMDATA_DIFFERENTIAL_SEED", kDEFAULT_SEED);
    const u64 jobs = fromEnvironment("MEMDATA_DIFFERENTIAL_JOBS", kDEFAULT_JOBS);
    std::map<std::string, u64> features;
    size_t failures = 0;
    for (u64 seed = firstSeed; seed < firstSeed + jobs && failures < kFAILURES_SHOWN; ++seed) {
        const std::unique_ptr<Job> job = makeJob(seed);
        JobRunner runner(*job);
        Dice forms(seed ^ 0x5EED);
        runner.run(forms);
        std::set<std::string> names = job->features;
        names.insert(runner.features().begin(), runner.features().end());
        for (const std::string& name : names) ++features[name];
        features["runs of the engine"] += runner.commands().size();
        if (runner.differences().empty()) continue;
        ++failures;
        keepFiles(runner, seed);
        ADD_FAILURE() << reportOf(*job, runner, seed);
    }
    if (std::getenv("MEMDATA_DIFFERENTIAL_FEATURES") == nullptr) return;
    for (const auto& [name, count] : features) std::cout << count << "\t" << name << "\n";
}

} // namespace
} // namespace memdata::testing
