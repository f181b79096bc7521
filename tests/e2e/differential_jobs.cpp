// differential_jobs.cpp - see differential_jobs.h.
// SPDX-License-Identifier: Apache-2.0
#include "e2e/differential_jobs.h"

#include "DeviceTableUtils/device_lookup.h"
#include "support/elf_builder.h"
#include "support/plain_map_text.h"

#include <algorithm>
#include <numeric>
#include <sstream>

namespace memdata::testing {

namespace {

// One of each kind that block RAM is laid out in. Their streams are made anew for each job, so large ones are rare.
const std::vector<std::string> kDEVICES = {
    "td2a4", "td2e8", "tq1a8", "tq1e8", "tq2a4", "tq2p8", "td3c4", "td3e4", "td3a16", "td6a24"};
const std::vector<std::string> kLARGE_DEVICES = {"tq4a32", "tq5a4", "tq6a10", "tq7a5"};
const std::vector<std::string> kPROCESSORS = {
    "KESTREL", "KESTREL-LE", "RISCV", "RISCV", "ARM", "WRENLET", "PPC405", "PPC440"};
constexpr u64 kSEGMENT_LIMIT = 0x100000000;

std::string number(u64 value) {
    std::ostringstream text;
    text << "0x" << std::hex << value;
    return text.str();
}

class JobMaker {
public:
    explicit JobMaker(u64 seed) : dice_(seed), job_(std::make_unique<Job>()) {}

    std::unique_ptr<Job> make() {
        job_->throughTool = dice_.oneIn(12);
        if (dice_.percent(15)) chooseDevice_();
        job_->runsInit = dice_.percent(15);
        hasOutputs_ = dice_.percent(25);
        processors_();
        if (job_->bit) places_();
        inits_();
        job_->mapText = bmmText(job_->map, dice_.engine());
        memory_ = std::make_unique<PlainMemory>(job_->map);
        files_();
        asked_();
        return std::move(job_);
    }

private:
    void note_(const std::string& feature) { job_->features.insert(feature); }

    // The map.

    void chooseDevice_() {
        JobBit bit;
        bit.recipe.device = dice_.pick(dice_.oneIn(8) ? kLARGE_DEVICES : kDEVICES);
        bit.recipe.seed = static_cast<u32>(dice_.below(UINT32_MAX));
        bit.recipe.container =
            dice_.pick<BitContainer>({BitContainer::T4K, BitContainer::T4K, BitContainer::FENWICK, BitContainer::RBT});
        bit.recipe.separateBram = dice_.oneIn(3);
        bit.recipe.shortCounts = dice_.oneIn(3);
        bit.recipe.readRegisters = dice_.oneIn(3);
        bit.recipe.crcBypassed = dice_.oneIn(8);
        device_ = get_device_record_by_name(bit.recipe.device.c_str());
        job_->bit = bit;
        note_("bit file, " + std::string(device_->family->name));
        note_(bit.recipe.container == BitContainer::RBT       ? "bit file as RBT"
              : bit.recipe.container == BitContainer::FENWICK ? "bit file of the other dialect"
                                                              : "bit file");
    }

    void processors_() {
        const u64 count = dice_.percent(65) ? 1 : 2 + dice_.below(2);
        for (u64 i = 0; i < count; ++i) {
            PlainProcessor processor;
            if (i == 0 && dice_.oneIn(5)) {
                note_("default map");
            } else {
                processor.name = "cpu" + std::to_string(i);
                processor.kind = dice_.pick(kPROCESSORS);
                processor.id = static_cast<unsigned>(dice_.below(4));
                if (dice_.oneIn(3)) processor.path = "top/core" + std::to_string(i);
                note_(processor.isLittleEndian() ? "little-endian processor" : "big-endian processor");
            }
            if (i == 1) note_("several processors");
            if (dice_.oneIn(2)) nextStart_ = 0; // the processors have memories at the same addresses
            const u64 spaces = 1 + (dice_.oneIn(2) ? 0 : dice_.below(3));
            for (u64 s = 0; s < spaces; ++s) processor.spaces.push_back(space_(processor));
            job_->map.processors.push_back(std::move(processor));
        }
    }

    PlainSpace space_(const PlainProcessor& processor) {
        PlainSpace space;
        space.name = "ram" + std::to_string(spaceCount_++);
        if (dice_.oneIn(4)) space.path = "top/" + space.name;
        space.countsWords = dice_.percent(15);
        const u64 kind = job_->bit ? 10 + dice_.below(90) : dice_.below(100);
        if (kind < 5) {
            generic_(space);
        } else if (kind < 10) {
            space.ranges.push_back(range_(usersType_()));
            note_("user's memory type");
        } else if (kind < 30) {
            space.isCombined = true;
            const u64 ranges = 1 + dice_.below(3);
            for (u64 i = 0; i < ranges; ++i) space.ranges.push_back(range_(type_()));
            note_(ranges > 1 ? "combined space of several ranges" : "combined space of one range");
        } else {
            space.ranges.push_back(range_(type_()));
        }
        if (space.countsWords) note_("word addresses");
        start_(space);
        if (space.ranges.size() == 1 && canShareFile_(space.ranges[0]) && dice_.oneIn(3)) {
            space.checksInSameFile = true;
            note_("data and check words in one file");
        }
        if (isByteReversed(processor, space)) note_("reversed byte order");
        return space;
    }

    static bool canShareFile_(const PlainRange& range) {
        return range.check != 0 && !range.type->countsParity &&
               std::ranges::all_of(range.blocks, [](const PlainBlock& block) {
                   return block.checks.size() == block.lanes.size() &&
                          std::ranges::all_of(
                              block.checks, [](const PlainLane& lane) { return !lane.type->countsParity; });
               });
    }

    // Where all rows of lanes begin at lane 0, but for a few.
    void start_(PlainSpace& space) {
        u64 unit = 1;
        for (const PlainRange& range : space.ranges)
            unit = std::lcm(unit, u64{range.laneWidth()} * range.blocks[0].lanes.size());
        if (space.countsWords) {
            space.start = dice_.oneIn(8) ? dice_.below(5) * unit : 0;
        } else if (dice_.percent(8) && nextStart_ != 0) {
            space.start = nextStart_ - std::min(nextStart_, unit * dice_.below(20));
            note_("spaces that overlap");
        } else if (dice_.percent(4)) {
            space.start = dice_.below(5000);
            note_("space at any address");
        } else if (dice_.oneIn(2)) {
            space.start = (nextStart_ + unit - 1) / unit * unit + unit * (dice_.oneIn(2) ? 0 : dice_.below(50));
        } else {
            space.start = dice_.below(0x7FFFFFFF) / unit * unit;
        }
        if (!space.countsWords && dice_.percent(4)) {
            space.start += (kSEGMENT_LIMIT / unit + 1) * unit;
            note_("space above 4 GB");
        }
        nextStart_ = space.end() % kSEGMENT_LIMIT + 1;
        if (space.ranges[0].type->kind == PlainType::GENERIC) note_("memory outside of the device");
    }

    void generic_(PlainSpace& space) {
        // Its size is that of the space: as many bytes for each lane.
        PlainType type{"MEMORY", (1 + dice_.below(40)) * 64 * 8, 0, false, {8, 16, 32}, PlainType::GENERIC};
        job_->map.ownTypes.push_back(type);
        space.countsWords = false;
        space.ranges.push_back(range_(job_->map.ownTypes.back()));
    }

    const PlainType& usersType_() {
        PlainType type{"own" + std::to_string(job_->map.ownTypes.size()), (1 + dice_.below(30)) * 128 * 8, 0, false, {},
            PlainType::USERS};
        for (const unsigned width : {1U, 2U, 4U, 8U, 16U, 32U, 64U})
            if (dice_.oneIn(2)) type.widths.push_back(width);
        if (type.widths.empty()) type.widths.push_back(8);
        job_->map.ownTypes.push_back(type);
        return job_->map.ownTypes.back();
    }

    const PlainType& type_() {
        std::vector<std::string> names;
        if (device_ == nullptr)
            for (const PlainType& type : plainTypes()) names.push_back(type.name);
        else
            for (const MEMORYLocType* memory = device_->memoryLocs; memory->type != nullptr; ++memory)
                names.emplace_back(memory->type->name);
        return plainType(dice_.pick(names));
    }

    PlainRange range_(const PlainType& type) {
        PlainRange range{.type = &type, .check = 0, .blocks = {}};
        const unsigned width = dice_.pick(type.widths);
        std::vector<size_t> counts = {1, 1, 2, 2, 4, 4, 8};
        if (!job_->bit) counts.insert(counts.end(), {3, 5, 16});
        size_t lanes = dice_.pick(counts);
        while (lanes > 1 && lanes * width > 160) lanes /= 2;
        std::vector<unsigned> checks;
        if (type.kind != PlainType::GENERIC && lanes * width <= 128 && type.parityOf(width) == 0 && dice_.percent(35))
            checks = checks_(&range, lanes, static_cast<unsigned>(lanes * width));
        const u64 blocks = dice_.oneIn(2) ? 1 : 1 + dice_.below(job_->bit ? 2 : 4);
        if (blocks > 1) note_("several blocks");
        const u64 order = dice_.below(10);
        const u64 ascending = dice_.below(10);
        const bool hasWords = dice_.oneIn(3);
        const PlainType* const own = ownType_(type, width);
        for (u64 b = 0; b < blocks; ++b) {
            PlainBlock block;
            for (size_t i = 0; i < lanes; ++i) {
                PlainLane lane = lane_(type, width);
                lane.low = static_cast<unsigned>((order < 8 ? lanes - 1 - i : i) * width);
                lane.ascends = ascending == 0 || (ascending == 1 && dice_.oneIn(2));
                if (own != nullptr && dice_.oneIn(2)) lane.type = own;
                if (hasWords) lane.words = type.sizeBits() / width;
                if (lane.ascends && width > 1) note_("mirrored lanes");
                if (lane.type != &type) note_("lane of another type");
                block.lanes.push_back(lane);
            }
            if (order == 9) {
                std::ranges::shuffle(block.lanes, dice_.engine());
                note_("lanes in any order");
            }
            unsigned low = static_cast<unsigned>(lanes * width);
            for (const unsigned checkWidth : checks) {
                PlainLane lane = lane_(type, checkWidth);
                if (type.countsParity && dice_.oneIn(2) && hasType_("RAMB16")) lane.type = &plainType("RAMB16");
                lane.low = low;
                low += checkWidth;
                block.checks.push_back(lane);
            }
            block.checksFirst = !checks.empty() && dice_.oneIn(3);
            range.blocks.push_back(std::move(block));
        }
        note_("lanes of " + std::to_string(width));
        note_(type.kind == PlainType::BLOCK_RAM ? type.name : "a type of the map");
        if (lanes == 3 || lanes == 5) note_("odd number of lanes");
        if (type.parityOf(width) != 0) note_("parity");
        if (range.check != 0) note_(std::string("check bits ") + kPLAIN_CHECKS[range.check]);
        if (range.check != 0 && checks.size() > 1) note_("several check lanes");
        return range;
    }

    bool hasType_(const std::string& name) const {
        if (device_ == nullptr) return true;
        for (const MEMORYLocType* memory = device_->memoryLocs; memory->type != nullptr; ++memory)
            if (memory->type->name == name) return true;
        return false;
    }

    PlainLane lane_(const PlainType& type, unsigned width) {
        PlainLane lane;
        lane.name = "u" + std::to_string(laneCount_ % 7) + "/m" + std::to_string(laneCount_);
        ++laneCount_;
        lane.width = width;
        lane.type = &type;
        lane.namesType = dice_.oneIn(8);
        if (hasOutputs_) lane.output = "lane" + std::to_string(laneCount_) + ".mem";
        if (hasOutputs_) note_("named MEM files");
        return lane;
    }

    // A larger memory in a few lanes: room that the space does not count.
    const PlainType* ownType_(const PlainType& type, unsigned width) {
        if (job_->bit || type.name != "RAMB16" || width == 64 || !dice_.oneIn(12)) return nullptr;
        return &plainType("RAMB32");
    }

    std::vector<unsigned> checks_(PlainRange* range, size_t lanes, unsigned busWidth) {
        const std::vector<unsigned> kinds = busWidth == 32    ? std::vector<unsigned>{1, 3}
                                            : busWidth == 64  ? std::vector<unsigned>{2, 4}
                                            : busWidth == 128 ? std::vector<unsigned>{5}
                                                              : std::vector<unsigned>{1, 2, 3, 4, 5};
        const bool isOdd = kinds.size() > 2;
        if (isOdd && !dice_.oneIn(5)) return {};
        range->check = dice_.pick(kinds);
        const unsigned bits = range->check == 5 ? 9 : range->check % 2 == 0 ? 8 : 7;
        const std::vector<std::vector<unsigned>> splits = {
            {bits}, {8}, {8}, {16}, {4, 4}, {8, 8}, {4, 3}, {3, 4}, {2, 2, 2, 2}, {4, 4, 1}, {1, 2, 5}, {8, 1}};
        for (;;) {
            const std::vector<unsigned>& widths = dice_.pick(splits);
            if (widths.size() <= lanes) return widths;
        }
    }

    // Places in the device: each lane on a memory of its own as long as there are some.

    void places_() {
        std::vector<PlainLane*> lanes;
        for (PlainProcessor& processor : job_->map.processors)
            for (PlainSpace& space : processor.spaces)
                for (PlainRange& range : space.ranges)
                    for (PlainBlock& block : range.blocks) {
                        for (PlainLane& lane : block.lanes) lanes.push_back(&lane);
                        for (PlainLane& lane : block.checks) lanes.push_back(&lane);
                    }
        const bool isPlaced = dice_.oneIn(2);
        const bool leavesSome = dice_.oneIn(6);
        std::vector<MemorySite> used;
        for (PlainLane* lane : lanes) {
            if (leavesSome && dice_.oneIn(4)) continue;
            std::vector<MemorySite> free;
            for (const MemorySite& site : sitesFor_(lane->type->name))
                if (std::ranges::none_of(used, [&](const MemorySite& other) { return meet_(site, other); }))
                    free.push_back(site);
            if (free.empty()) continue;
            const MemorySite site = dice_.pick(free);
            used.push_back(site);
            lane->place = PlainPlace{site.x, site.y, isPlaced};
            job_->bit->sites.emplace_back(lane, site);
        }
        if (used.size() < lanes.size()) note_("lanes without a place");
    }

    std::vector<MemorySite> sitesFor_(const std::string& typeName) {
        for (u32 i = 0; device_->memoryLocs[i].type != nullptr; ++i)
            if (device_->memoryLocs[i].type->name == typeName) return sitesOf(device_, i);
        return {};
    }

    // Two small memories make up a large one; where sizes are numbered alike, no two share a number.
    static bool meet_(const MemorySite& a, const MemorySite& b) {
        const bool sizesPair = a.memory->type->subRowFactor != b.memory->type->subRowFactor;
        if (a.x != b.x) return false;
        if (!sizesPair)
            return a.y / 2 == b.y / 2 ? a.memory->type->sizeUnits != b.memory->type->sizeUnits || a.y == b.y : false;
        const MemorySite& small = a.memory->type->subRowFactor == 2 ? a : b;
        const MemorySite& large = a.memory->type->subRowFactor == 2 ? b : a;
        return small.y / 2 == large.y;
    }

    // Data.

    static PlainSegment segmentOf(u64 address, Bytes bytes) {
        const u64 bits = bytes.size() * 8;
        return {address, std::move(bytes), bits};
    }

    Bytes bytes_(u64 count) {
        Bytes bytes(count);
        const u64 style = dice_.below(8);
        for (size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = static_cast<u8>(style == 0 ? 0xFF : style == 1 ? i : dice_.below(256));
        return bytes;
    }

    void inits_() {
        if (!job_->runsInit && !dice_.oneIn(20)) return;
        for (PlainProcessor& processor : job_->map.processors)
            for (PlainSpace& space : processor.spaces)
                for (PlainRange& range : space.ranges)
                    for (PlainBlock& block : range.blocks)
                        for (PlainLane& lane : block.lanes)
                            if (dice_.oneIn(5)) init_(space, lane);
    }

    void init_(const PlainSpace& space, PlainLane& lane) {
        JobInit init{&lane, "init" + std::to_string(job_->inits.size()) + ".mem", "", {}};
        const u64 room = space.countsWords ? lane.type->dataBits / lane.width : lane.type->dataBits / 8;
        const u64 sections = 1 + (dice_.oneIn(3) ? dice_.below(3) : 0);
        for (u64 i = 0; i < sections; ++i)
            init.segments.push_back(segmentOf(dice_.oneIn(2) ? 0 : dice_.below(room), bytes_(1 + dice_.below(70))));
        init.contents = memText_(&init.segments);
        lane.init = init.name;
        job_->inits.push_back(std::move(init));
        note_(job_->runsInit ? "INIT files" : "INIT files without -a");
    }

    void files_() {
        const u64 count = job_->runsInit && dice_.oneIn(10) && !job_->bit ? 0 : 1 + dice_.below(3);
        if (count == 0) note_("no data file");
        if (count > 1) note_("several data files");
        for (u64 i = 0; i < count; ++i) file_(i);
        if (job_->bit && count > 1 && dice_.oneIn(2)) {
            job_->bit->inTwoSteps = true;
            note_("replaced in two steps");
        }
    }

    void file_(u64 index) {
        JobFile file;
        const u64 segments = 1 + (dice_.oneIn(2) ? dice_.below(4) : 0);
        if (segments > 1) note_("several segments");
        for (u64 i = 0; i < segments; ++i) file.data.segments.push_back(segment_());
        const bool isFar = std::ranges::any_of(file.data.segments,
            [](const PlainSegment& segment) { return segment.address + segment.bytes.size() > kSEGMENT_LIMIT; });
        const std::string name = "data" + std::to_string(index);
        const u64 kind = isFar ? 99 : dice_.below(100);
        if (kind < 45) {
            file.name = name + ".mem";
            const std::string text = memText_(&file.data.segments);
            file.contents.assign(text.begin(), text.end());
            for (PlainSegment& segment : file.data.segments) segment.bitCount = segment.bytes.size() * 8;
            note_("MEM data");
        } else if (kind < 52) {
            file.name = name + ".mif";
            const std::string text = mifText_(file.data.segments);
            file.contents.assign(text.begin(), text.end());
            note_("MIF data");
        } else {
            file.name = name + ".elf";
            elf_(&file, isFar);
        }
        modifiers_(&file);
        job_->files.push_back(std::move(file));
    }

    PlainSegment segment_() {
        if (dice_.percent(5)) {
            note_("segment at any address");
            return segmentOf(dice_.below(kSEGMENT_LIMIT - 0x1000), bytes_(1 + dice_.below(50)));
        }
        const PlainSpaceImage& space = memory_->spaces()[dice_.below(memory_->spaces().size())];
        const PlainRangeImage& range = space.ranges[dice_.below(space.ranges.size())];
        const PlainBlockImage& block = range.blocks[dice_.below(range.blocks.size())];
        const u64 row = std::max<u64>(1, space.space->countsWords ? block.lanes.size() : range.range->busWidth() / 8);
        u64 address = block.start + dice_.below(block.end - block.start + 1);
        switch (dice_.below(5)) {
        case 0:
            address = block.start;
            break;
        case 1:
            address = block.start + (address - block.start) / row * row;
            break;
        case 2:
            address = block.end - std::min(block.end - block.start, dice_.below(40));
            break;
        default:
            note_("segment at any byte");
            break;
        }
        u64 size = 1 + dice_.below(dice_.oneIn(3) ? 8 : 120);
        if (dice_.percent(6)) size = 1 + dice_.below(3 * (block.end - block.start + 1));
        if (!space.space->countsWords && address + size - 1 > space.end && !dice_.percent(6))
            size = space.end - address + 1;
        size = std::min<u64>(size, 20000);
        if (address + size - 1 > block.end) note_("segment across blocks");
        if (!space.space->countsWords && address + size - 1 > space.end) note_("segment beyond a space");
        return segmentOf(address, bytes_(size));
    }

    // Sections in MEM text. A section of half a byte too many is filled up, which the segments are told.
    std::string memText_(std::vector<PlainSegment>* segments) {
        std::ostringstream text;
        text << std::hex << std::uppercase << "// made for a test\n";
        for (PlainSegment& segment : *segments) {
            const u64 wordDigits = dice_.pick<u64>({1, 2, 2, 3, 4, 8, 16});
            if (segment.address != 0 || segments->size() > 1 || dice_.oneIn(2)) text << "@" << segment.address << "\n";
            u64 digits = segment.bytes.size() * 2;
            if (dice_.oneIn(10)) {
                --digits;
                segment.bytes.back() &= 0xF0;
                segment.bitCount -= 4;
                note_("data of half a byte");
            }
            for (u64 i = 0; i < digits; ++i) {
                if (i != 0 && i % wordDigits == 0) text << (i % 64 == 0 ? "\n" : " ");
                text << (segment.bytes[i / 2] >> (i % 2 == 0 ? 4 : 0) & 0xF);
            }
            text << "\n";
        }
        return text.str();
    }

    static std::string mifText_(const std::vector<PlainSegment>& segments) {
        std::ostringstream text;
        for (const PlainSegment& segment : segments) {
            text << "@" << std::hex << segment.address << "\n";
            for (size_t i = 0; i < segment.bytes.size(); ++i) {
                for (int bit = 7; bit >= 0; --bit) text << (segment.bytes[i] >> bit & 1);
                text << (i % 8 == 7 ? "\n" : " ");
            }
            text << "\n";
        }
        return text.str();
    }

    void elf_(JobFile* file, bool isFar) {
        ElfFile elf;
        elf.bits = isFar || dice_.oneIn(2) ? 64 : 32;
        elf.isBigEndian = dice_.oneIn(2);
        elf.entry = dice_.oneIn(3) ? 4 + dice_.below(1000) : 0;
        elf.machine = dice_.percent(6) ? dice_.pick<u32>({40, 189}) : dice_.pick<u32>({243, 8, 20, 62, 183});
        elf.hasSections = !dice_.oneIn(4);
        const bool allAreVirtual = dice_.oneIn(8);
        const bool areElsewhere =
            !allAreVirtual && dice_.oneIn(4) &&
            std::ranges::any_of(file->data.segments, [](const PlainSegment& segment) { return segment.address != 0; });
        for (const PlainSegment& segment : file->data.segments) {
            ElfSegment made{.address = segment.address, .bytes = segment.bytes};
            if (allAreVirtual) {
                made.address = 0;
                made.virtualAddress = segment.address;
            } else if (areElsewhere) {
                made.virtualAddress = dice_.below(0x10000) * 0x1000;
            }
            if (dice_.oneIn(5)) made.bssBytes = dice_.below(100);
            elf.segments.push_back(made);
        }
        file->contents = elfFile(elf);
        file->is64Bit = elf.bits == 64;
        file->data.processor = elf.machine == 40    ? PlainData::ARM
                               : elf.machine == 189 ? PlainData::SOFT
                                                    : PlainData::ANY;
        hasEntry_ = elf.entry != 0;
        note_("ELF of " + std::to_string(elf.bits) + " bits, " + (elf.isBigEndian ? "big" : "little") + "-endian");
        if (allAreVirtual) note_("ELF with virtual addresses only");
        if (areElsewhere) note_("ELF with other virtual addresses");
        if (file->data.processor != PlainData::ANY) note_("ELF for one processor");
    }

    void modifiers_(JobFile* file) {
        const bool isElf = file->name.ends_with(".elf");
        std::vector<std::string> words;
        if (dice_.percent(8)) {
            words.push_back(isElf && hasEntry_ && dice_.oneIn(2) ? "boot" : "boot " + number(dice_.below(100000)));
            note_("boot");
        }
        if (dice_.percent(15)) {
            words.push_back("start " + number(dice_.below(100000)));
            note_("start");
        }
        if (dice_.percent(25)) {
            file->data.tags = tags_();
            words.push_back("tag " + joined_(file->data.tags));
        }
        std::ranges::shuffle(words, dice_.engine());
        file->modifiers = joined_(words);
    }

    std::vector<std::string> tags_() {
        std::vector<std::string> tags;
        for (u64 count = 1 + dice_.below(2); count != 0; --count) {
            const PlainSpaceImage& space = memory_->spaces()[dice_.below(memory_->spaces().size())];
            if (dice_.percent(3)) {
                tags.emplace_back("nothing");
                note_("unknown tag");
            } else if (dice_.oneIn(3) && !space.processor->name.empty()) {
                tags.push_back(space.processor->name);
                note_("tag of a map");
            } else {
                tags.push_back(space.name);
                note_("tag of a space");
            }
        }
        return tags;
    }

    static std::string joined_(const std::vector<std::string>& words) {
        std::string text;
        for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
        return text;
    }

    // What is asked for.

    void asked_() {
        job_->updatesAll = dice_.percent(20);
        if (job_->updatesAll) note_("-u");
        job_->outputs.push_back({"out", {}});
        if (dice_.percent(8)) {
            job_->outputs.push_back({"tagged", tags_()});
            note_("several folders of MEM files");
        }
        job_->sharesFiles = dice_.percent(2) && everySpaceCanShare_();
        if (job_->sharesFiles) note_("one file for data and checks by the environment");
        if (dice_.oneIn(6)) job_->furtherOptions += " -i";
        if (dice_.oneIn(20)) job_->furtherOptions += " -fill " + std::to_string(dice_.below(256));
        if (!job_->furtherOptions.empty()) note_("options without effect");
        if (job_->throughTool) note_("through the tool");
    }

    bool everySpaceCanShare_() const {
        return std::ranges::all_of(job_->map.processors, [](const PlainProcessor& processor) {
            return std::ranges::all_of(processor.spaces, [](const PlainSpace& space) {
                return std::ranges::all_of(
                    space.ranges, [](const PlainRange& range) { return range.check == 0 || canShareFile_(range); });
            });
        });
    }

    Dice dice_;
    std::unique_ptr<Job> job_;
    std::unique_ptr<PlainMemory> memory_;
    TarselDeviceType* device_ = nullptr;
    bool hasOutputs_ = false;
    bool hasEntry_ = false;
    u64 nextStart_ = 0;
    u64 spaceCount_ = 0;
    u64 laneCount_ = 0;
};

} // namespace

std::unique_ptr<Job> makeJob(u64 seed) {
    return JobMaker(seed).make();
}

} // namespace memdata::testing
