// plain_memory.cpp - see plain_memory.h.
// SPDX-License-Identifier: Apache-2.0
#include "support/plain_memory.h"

#include "support/plain_checks.h"

#include <algorithm>

namespace memdata::testing {

namespace {

u64 lowBits(unsigned count) {
    return count >= 64 ? ~u64{0} : (u64{1} << count) - 1;
}

u64 mirror(unsigned width, u64 word) {
    u64 mirrored = 0;
    for (unsigned bit = 0; bit < width; ++bit) mirrored |= (word >> bit & 1) << (width - 1 - bit);
    return mirrored;
}

u64 swapBytes(unsigned pitch, u64 word) {
    if (pitch != 16 && pitch != 32 && pitch != 64) return word;
    u64 swapped = pitch == 64 ? 0 : word >> pitch << pitch; // bytes above stay
    for (unsigned at = 0; at < pitch; at += 8) swapped |= (word >> at & 0xFF) << (pitch - 8 - at);
    return swapped;
}

// The bits of data, the top bit of the first byte first.
class BitSource {
public:
    explicit BitSource(const PlainSegment& segment) : segment_(segment) {}
    bool hasBits() const { return at_ < segment_.bitCount; }
    // As many of the bits as there are, right-aligned; count tells how many.
    u64 take(unsigned wanted, unsigned* count) {
        u64 bits = 0;
        for (*count = 0; *count < wanted && hasBits(); ++*count, ++at_)
            bits = bits << 1 | (segment_.bytes[at_ / 8] >> (7 - at_ % 8) & 1);
        return bits;
    }

private:
    const PlainSegment& segment_;
    u64 at_ = 0;
};

// A lane while data are dealt to it.
class Dealer {
public:
    // begin: the bus word in which the data begin, word: the lane's first; both count from the block's start.
    Dealer(PlainLaneImage* image, u64 begin, u64 word, u64 offset) : image_(image), word_(word), offset_(offset) {
        image_->written[offset_].begin = begin; // also when nothing follows
    }

    // The next word from the source; what the source does not reach keeps the old bits.
    void deal(BitSource* source, unsigned pitch, PlainBusWord* bus) {
        if (headBits_ != 0) return dealRest_(source, pitch, bus);
        unsigned got = 0;
        if (const unsigned width = image_->parityBits; width != 0) {
            source->take((4 - width % 4) % 4, &got);
            u64 bits = source->take(width, &got);
            bits = bits << (width - got) | (at_(image_->parity) & lowBits(width - got));
            if (word_ < image_->parity.size()) image_->parity[word_] = bits;
            bus->append(width, bits);
        }
        const unsigned width = image_->dataBits;
        const u64 old = swapBytes(pitch, at_(image_->data));
        u64 bits = source->take(width, &got);
        if (got < width) bits = (got == 0 ? 0 : bits << (width - got)) | (old & lowBits(width - got));
        // What the source does not reach at all stays; in a word that it ends in, the old bits turn round, too.
        if (image_->lane->ascends && got != 0) bits = mirror(width, bits);
        store_(swapBytes(pitch, bits));
        bus->append(width, bits);
    }
    // The next word stays as it is.
    void pass(unsigned pitch, PlainBusWord* bus) {
        if (image_->parityBits != 0) bus->append(image_->parityBits, at_(image_->parity));
        bus->append(image_->dataBits, swapBytes(pitch, at_(image_->data)) & 0xFFFFFFFF);
        ++word_;
    }
    void put(u64 bits) { store_(bits); }
    // The first word begins behind so many bits, which stay.
    void setHead(unsigned bits) { headBits_ = bits; }
    bool hasRoom() const { return word_ < image_->data.size(); }

private:
    // A word whose head stays, and its end where the source ends in it.
    void dealRest_(BitSource* source, unsigned pitch, PlainBusWord* bus) {
        const unsigned width = image_->dataBits;
        const bool ascends = image_->lane->ascends;
        u64 word = swapBytes(pitch, at_(image_->data));
        if (ascends) word = mirror(width, word);
        for (unsigned bit = headBits_; bit < width && source->hasBits(); ++bit) {
            unsigned got = 0;
            const u64 mask = u64{1} << (width - 1 - bit);
            word = source->take(1, &got) != 0 ? word | mask : word & ~mask;
        }
        headBits_ = 0;
        if (ascends) word = mirror(width, word);
        store_(swapBytes(pitch, word));
        bus->append(width, word);
    }
    u64 at_(const std::vector<u64>& words) const { return word_ < words.size() ? words[word_] : 0; }
    void store_(u64 bits) {
        image_->isTouched = true;
        if (hasRoom()) {
            image_->data[word_] = bits;
            image_->holdsWords = true;
            PlainLaneImage::Written& written = image_->written[offset_];
            written.first = std::min(written.first, word_);
            written.last = std::max(written.last, word_);
        }
        ++word_;
    }

    PlainLaneImage* image_;
    u64 word_;
    u64 offset_;
    unsigned headBits_ = 0;
};

// Bits of a lane's word ahead of a byte address.
unsigned bitsInto(unsigned width, u64 address) {
    return static_cast<unsigned>(address % width * 8 % width);
}

u64 toLaneWords(bool countsWords, unsigned width, u64 address) {
    return countsWords ? address : address * 8 / width;
}

void dealBlock(
    const PlainSpaceImage& space, const PlainRange& range, PlainBlockImage* block, u64 address, BitSource* source) {
    const bool words = space.space->countsWords;
    const unsigned width = range.laneWidth();
    const size_t laneCount = block->lanes.size();
    const u64 offset = address - block->start;
    const auto wordOf = [&](unsigned laneWidth) {
        return (toLaneWords(words, laneWidth, address) - toLaneWords(words, laneWidth, block->start)) / laneCount;
    };

    // Lanes ahead of the one that the address falls on are met in the next bus word.
    size_t next = toLaneWords(words, width, address) % laneCount;
    std::vector<Dealer> lanes;
    for (size_t i = 0; i < laneCount; ++i)
        lanes.emplace_back(&block->lanes[i], wordOf(width), wordOf(width) + (i < next ? 1 : 0), offset);
    u64 count = toLaneWords(words, width, block->end - address + 1);
    // An address inside of a lane's word: bytes stand where their addresses say. Words with parity have none inside.
    const unsigned head = bitsInto(width, address);
    const bool isInside = !words && head != 0 && range.type->parityOf(width) == 0 && bitsInto(width, block->start) == 0;
    if (isInside) {
        lanes[next].setHead(head);
        ++count;
    }
    std::vector<Dealer> checks;
    unsigned checkWidth = 0;
    for (PlainLaneImage& check : block->checks) {
        const u64 word = wordOf(block->checks[0].dataBits);
        checks.emplace_back(&check, word, word, offset);
        checkWidth += check.dataBits;
    }

    const bool isPitched = space.processor->isLittleEndian() && range.busWidth() % 8 == 0 && width > 8;
    const unsigned pitch = isPitched ? width : 0;
    while (count != 0 && source->hasBits()) {
        PlainBusWord bus;
        for (; next < laneCount; ++next) {
            if (count != 0) --count;
            if (source->hasBits())
                lanes[next].deal(source, pitch, &bus);
            else
                lanes[next].pass(pitch, &bus);
        }
        next = 0;
        if (range.check == 0) continue;
        const u64 bits = plainCheckBits(range.check, space.isByteReversed, bus);
        unsigned left = checkWidth; // the first check lane takes the top bits
        for (size_t i = 0; i < checks.size(); ++i) {
            left -= block->checks[i].dataBits;
            checks[i].put(bits >> left & lowBits(block->checks[i].dataBits));
        }
    }
}

void dealSegment(PlainSpaceImage* space, const PlainSegment& segment) {
    BitSource source(segment);
    bool isFirst = true;
    for (PlainRangeImage& range : space->ranges) {
        if (isFirst && (segment.address < range.start || segment.address > range.end)) continue;
        for (PlainBlockImage& block : range.blocks) {
            if (isFirst && segment.address > block.end) continue;
            if (!source.hasBits()) return;
            dealBlock(*space, *range.range, &block, isFirst ? segment.address : block.start, &source);
            isFirst = false;
        }
    }
}

PlainLaneImage imageOf(const PlainLane& lane, bool isCheck) {
    PlainLaneImage image{};
    image.lane = &lane;
    image.parityBits = isCheck ? 0 : lane.type->parityOf(lane.width);
    image.dataBits = lane.width - image.parityBits;
    image.slotBits = image.dataBits;
    while (8 % image.slotBits != 0 && image.slotBits % 8 != 0) ++image.slotBits;
    image.data.resize(lane.type->dataBits / image.slotBits);
    if (image.parityBits != 0) image.parity.resize(lane.type->parityBits / image.parityBits);
    return image;
}

Bytes cellsOf(const std::vector<u64>& words, unsigned bitsOfWord, unsigned slotBits, u64 bitCount) {
    Bytes bytes(bitCount / 8);
    for (size_t i = 0; i < words.size(); ++i)
        for (unsigned bit = 0; bit < bitsOfWord; ++bit) {
            const u64 at = i * slotBits + bit;
            bytes[at / 8] = static_cast<u8>(bytes[at / 8] | (words[i] >> bit & 1) << at % 8);
        }
    return bytes;
}

// Where the data end for the check against the space's end. Words of a bus count in whole nibbles, from 0.
u64 endOf(const PlainSpaceImage& space, const PlainSegment& segment) {
    if (!space.space->countsWords) return segment.address + segment.bytes.size() - 1;
    const u64 width = (space.space->ranges[0].busWidth() + 3) / 4 * 4;
    const u64 words = segment.bytes.size() * 8 / width;
    return words == 0 ? 0 : words - 1;
}

} // namespace

Bytes PlainLaneImage::dataBytes() const {
    return cellsOf(data, dataBits, slotBits, lane->type->dataBits);
}
Bytes PlainLaneImage::parityBytes() const {
    return cellsOf(parity, parityBits, parityBits, lane->type->parityBits);
}

PlainMemory::PlainMemory(const PlainMap& map) : map_(map) {
    for (const PlainProcessor& processor : map.processors)
        for (const PlainSpace* space : processor.inOrder()) {
            PlainSpaceImage image{&processor, space, processor.fullName(*space), space->start, space->end(),
                isByteReversed(processor, *space), false, {}};
            u64 at = space->start;
            for (const PlainRange& range : space->ranges) {
                PlainRangeImage rangeImage{&range, at, 0, {}};
                for (const PlainBlock& block : range.blocks) {
                    const u64 size = space->sizeOf(range, block);
                    PlainBlockImage blockImage{&block, at, at + size - 1, {}, {}};
                    for (const PlainLane* lane : lanesInOrder(processor, range, block))
                        blockImage.lanes.push_back(imageOf(*lane, false));
                    for (const PlainLane& lane : block.checks) blockImage.checks.push_back(imageOf(lane, true));
                    at += size;
                    rangeImage.blocks.push_back(std::move(blockImage));
                }
                rangeImage.end = at - 1;
                image.ranges.push_back(std::move(rangeImage));
            }
            spaces_.push_back(std::move(image));
        }
}

std::optional<std::vector<PlainSpaceImage*>> PlainMemory::choose(const std::vector<std::string>& tags) {
    std::vector<PlainSpaceImage*> chosen;
    if (tags.empty())
        for (PlainSpaceImage& space : spaces_) chosen.push_back(&space);
    std::vector<const PlainProcessor*> processors; // in the order in which tags bring them
    for (const std::string& tag : tags) {
        bool isKnown = false;
        for (PlainSpaceImage& space : spaces_) {
            if (space.name != tag && (space.processor->name.empty() || space.processor->name != tag)) continue;
            isKnown = true;
            if (std::ranges::find(chosen, &space) == chosen.end()) chosen.push_back(&space);
            if (std::ranges::find(processors, space.processor) == processors.end())
                processors.push_back(space.processor);
        }
        if (!isKnown) return std::nullopt;
    }
    if (tags.empty()) return chosen;
    // A processor's spaces stand together, by their ends.
    std::vector<PlainSpaceImage*> ordered;
    for (const PlainProcessor* processor : processors)
        for (PlainSpaceImage& space : spaces_)
            if (space.processor == processor && std::ranges::find(chosen, &space) != chosen.end())
                ordered.push_back(&space);
    return ordered;
}

int PlainMemory::put(const PlainData& data) {
    constexpr int kOUT_OF_BOUNDS = 7;
    constexpr int kUNKNOWN_TAG = 11;
    constexpr int kOTHER_PROCESSOR = 23;
    const auto chosen = choose(data.tags);
    if (!chosen) return kUNKNOWN_TAG;
    const std::string& kind = chosen->front()->processor->kind;
    if (data.processor == PlainData::ARM && kind != "ARM") return kOTHER_PROCESSOR;
    if (data.processor == PlainData::SOFT && kind != "KESTREL" && kind != "KESTREL-LE") return kOTHER_PROCESSOR;
    for (const PlainSegment& segment : data.segments)
        for (PlainSpaceImage* space : *chosen) {
            if (segment.bytes.empty() || segment.address < space->start || segment.address > space->end) continue;
            const u64 end = endOf(*space, segment);
            if (end < space->start || end > space->end) return kOUT_OF_BOUNDS;
            space->isTouched = true;
            dealSegment(space, segment);
        }
    return 0;
}

void PlainMemory::putInit(const PlainLane& lane, const std::vector<PlainSegment>& segments) {
    for (PlainSpaceImage& space : spaces_)
        for (PlainRangeImage& range : space.ranges)
            for (PlainBlockImage& block : range.blocks)
                for (PlainLaneImage& image : block.lanes) {
                    if (image.lane != &lane) continue;
                    space.isTouched = true;
                    for (const PlainSegment& segment : segments) {
                        BitSource source(segment);
                        const u64 word = toLaneWords(space.space->countsWords, lane.width, segment.address);
                        Dealer dealer(&image, word, word, segment.address);
                        if (!space.space->countsWords && image.parityBits == 0)
                            dealer.setHead(bitsInto(lane.width, segment.address));
                        // To the memory's end, also where the data are shorter: old bits then go in anew.
                        PlainBusWord unused;
                        while (dealer.hasRoom()) dealer.deal(&source, 0, &unused);
                    }
                }
}

} // namespace memdata::testing
