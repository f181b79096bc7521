// stream_copy_test.cpp - streams of random packets come out of a copy as they went in, with right CRCs.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/config_words.h"
#include "BitFileUtils/stream_walker.h"
#include "DeviceTableUtils/device_lookup.h"
#include "FileUtils/FileUtils.h"
#include "SystemUtils/lifetime.h"
#include "support/alerts.h"
#include "support/bit_builder.h"
#include "support/bit_stream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace memdata;
using namespace memdata::testing;

namespace {

constexpr const char* kDEVICES[] = {"tq1a8", "tq1e8", "td2a4", "td2e8", "tq2a4", "tq2p8", "tq4a32", "tq5a4", "tq6a10",
    "tq7a7", "tp7a11", "tq8a", "td3c4", "td3e4", "td3a16", "td6a24"};

// Registers that a copy passes on, each with its handler.
constexpr u32 kPLAIN_KINDS[] = {reg::kFAR, reg::kMASK, reg::kFLR, reg::kIDCODE, reg::kCTL1, reg::kWBSTAR, reg::kTIMER,
    reg::kRBCRC1, 20, 28, 29, 30, 37, 38, 39, 40, 41, 42, 43, 44, 45, 46, 48, 49, 50, 51, 52, 65, 66, 67, 68, 69};

// Sound streams of random packets.
class RandomStream {
public:
    RandomStream(const TarselDeviceType* device, u32 seed) : device_(device), out_(device), random_(seed) {}

    Bytes make() {
        for (u32 segments = 1 + upTo_(2); segments > 0; --segments) {
            outside_();
            out_.sync();
            afterBurst_ = false;
            for (u32 packets = 10 + upTo_(30); packets > 0; --packets) packet_();
            if (upTo_(1) == 0)
                out_.cmd(command::kDESYNCH);
            else
                out_.write(reg::kLOUT, static_cast<u32>(random_()));
        }
        outside_();
        for (u32 rest = upTo_(out_.form().syncBytes - 1); rest > 0; --rest) tail_.push_back(static_cast<u8>(random_()));
        Bytes bytes = out_.take();
        bytes.insert(bytes.end(), tail_.begin(), tail_.end());
        return bytes;
    }

private:
    u32 upTo_(u32 most) { return static_cast<u32>(random_() % (most + 1)); }

    void outside_() {
        for (u32 n = upTo_(4); n > 0; --n) out_.syncValue(upTo_(1) == 0 ? out_.form().dummy : 0x12345678);
        if (upTo_(1) == 0) return;
        out_.syncValue(0xBB);
        out_.syncValue(out_.form().sync); // behind 0xBB it is none
        out_.syncValue(out_.form().sync);
    }

    // A write whose words have no meaning and do not enter the CRC.
    void uninterpreted_(u32 kind) {
        const std::optional<u32> address = out_.form().addressOf(kind);
        if (!address) return;
        const u32 count = upTo_(3);
        out_.word(out_.form().command(2, *address, count));
        for (u32 n = std::max(count, 1U); n > 0; --n) out_.word(static_cast<u32>(random_()));
    }

    void burst_() {
        out_.write(reg::kFAR, 0, out_.wordsOf32Bits());
        Bytes data(size_t{1 + upTo_(20)} * out_.form().wordBytes);
        for (u8& byte : data) byte = static_cast<u8>(random_());
        out_.burst(reg::kFDRI, data, upTo_(1) == 0);
        if (upTo_(1) == 0) out_.noOperation();
        const bool crcLooksLikeNoPacket = (device_->family->familyMask & 0xB03F) != 0;
        if (crcLooksLikeNoPacket) out_.autoCrc();
        afterBurst_ = !crcLooksLikeNoPacket;
    }

    void packet_() {
        const u32 kind = kPLAIN_KINDS[random_() % std::size(kPLAIN_KINDS)];
        switch (upTo_(11)) {
        case 0:
            out_.read(upTo_(1) == 0 ? kind : upTo_(11), upTo_(2));
            afterBurst_ = true; // of FDRI, perhaps
            return;
        case 1:
            return uninterpreted_(reg::kSTAT);
        case 2:
            return uninterpreted_(reg::kFDRO);
        case 3:
            return out_.noOperation();
        case 4:
            if (!afterBurst_) out_.pad();
            return;
        case 5:
            return burst_();
        case 6:
            afterBurst_ = false;
            return out_.crcRegister();
        case 7: {
            const u32 commands[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 15, 16};
            afterBurst_ = false;
            return out_.cmd(commands[random_() % std::size(commands)]);
        }
        case 8:
            return out_.write(reg::kCOR, 7);
        case 9:
            return out_.write(reg::kCOR1, 7);
        default:
            return out_.write(kind, static_cast<u32>(random_()), 1 + upTo_(out_.form().shortWords ? 1 : 3));
        }
    }

    const TarselDeviceType* device_;
    StreamWriter out_;
    std::mt19937 random_;
    Bytes tail_;
    bool afterBurst_ = false; // a zero word would be an Auto CRC word
};

class StreamCopy : public ::testing::Test {
protected:
    Bytes copy(TarselDeviceType* device, Bytes bytes, u32 flags = 0) {
        fileIODescriptor* input = nullptr;
        fileIODescriptor* output = nullptr;
        EXPECT_EQ(OpenMemoryFile("stream", kREAD_ACCESS | kBINARY_FILE, reinterpret_cast<char*>(bytes.data()),
                      bytes.size(), &input),
            0);
        EXPECT_EQ(OpenMemoryFile("copy", kWRITE_ACCESS | kBINARY_FILE, nullptr, 0, &output), 0);
        u32 remaining = static_cast<u32>(bytes.size());
        status = OutputBITData(input, output, nullptr, device, flags, &remaining, nullptr);
        const char* base = GetFileStorageBase(output);
        Bytes copied(base, base + GetFileLogicalSize(output));
        Close_File(&input);
        Close_File(&output);
        return copied;
    }

    SystemResources system;
    CapturedAlerts alerts;
    int status = 99;
};

} // namespace

TEST_F(StreamCopy, RandomPacketsComeOutAsTheyWentIn) {
    for (const char* name : kDEVICES)
        for (u32 seed = 0; seed < 40; ++seed) {
            TarselDeviceType* device = get_device_record_by_name(name);
            const Bytes stream = RandomStream(device, seed).make();
            ASSERT_TRUE(copy(device, stream) == stream) << name << " seed " << seed << " " << alerts.take();
            ASSERT_EQ(status, 0);
        }
}

TEST_F(StreamCopy, WrongCrcWordsArePutRight) {
    std::mt19937 random(1);
    for (const char* name : kDEVICES)
        for (u32 seed = 100; seed < 110; ++seed) {
            TarselDeviceType* device = get_device_record_by_name(name);
            const Bytes stream = RandomStream(device, seed).make();
            Bytes spoilt = stream;
            u32 crcs = 0;
            for (const StreamPiece& piece : takeApart(device, stream)) {
                if (piece.kind != StreamPiece::PACKET || !piece.isCrc()) continue;
                ++crcs;
                for (size_t at = 0; at < piece.dataBytes; ++at)
                    spoilt[piece.dataOffset + at] = static_cast<u8>(random());
            }
            ASSERT_TRUE(copy(device, spoilt) == stream) << name << " seed " << seed << " " << alerts.take();
        }
}

TEST_F(StreamCopy, WithoutSyncWordsWhatStandsBetweenSegmentsIsLeftOut) {
    TarselDeviceType* device = get_device_record_by_name("tq2a4");
    StreamWriter stream(device);
    stream.syncValue(0xFFFFFFFF);
    stream.sync();
    stream.write(reg::kMASK, 1);
    const Bytes head = stream.bytes();
    stream.cmd(command::kDESYNCH);
    stream.syncValue(0);
    Bytes bytes = stream.take();
    bytes.insert(bytes.end(), {1, 2, 3}); // less than a word
    EXPECT_EQ(copy(device, bytes, 0x80), Bytes(head.begin() + 8, head.end()));
    EXPECT_EQ(copy(device, bytes, 0), bytes);
}

TEST_F(StreamCopy, ARestOfLessThanAWordIsCopied) {
    TarselDeviceType* device = get_device_record_by_name("tq2a4");
    StreamWriter stream(device);
    stream.sync();
    stream.noOperation();
    Bytes bytes = stream.take();
    bytes.insert(bytes.end(), {1, 2, 3});
    EXPECT_EQ(copy(device, bytes), bytes);
    EXPECT_EQ(copy(device, {1, 2, 3}), (Bytes{1, 2, 3}));
    EXPECT_EQ(copy(device, {}), Bytes{});
}

TEST_F(StreamCopy, OfARefusedPacketNothingIsWritten) {
    TarselDeviceType* device = get_device_record_by_name("tq7a7");
    StreamWriter stream(device);
    stream.sync();
    stream.write(reg::kMASK, 1);
    const Bytes head = stream.bytes();
    stream.write(reg::kCTL, 1U << 6);
    EXPECT_EQ(copy(device, stream.bytes()), head);
    EXPECT_EQ(status, 3);
}

TEST_F(StreamCopy, ValuesAreWrittenInWordsOfTheFamily) {
    const auto written = [](const char* device, u32 value, u32 count) {
        fileIODescriptor* output = nullptr;
        EXPECT_EQ(OpenMemoryFile("words", kWRITE_ACCESS | kBINARY_FILE, nullptr, 0, &output), 0);
        EXPECT_EQ(WriteRegValue(output, get_device_record_by_name(device), value, count), 0);
        const std::string text = hexText(GetFileStorageBase(output), GetFileLogicalSize(output));
        Close_File(&output);
        return text;
    };
    EXPECT_EQ(written("tq2a4", 0x12345678, 1), "12 34 56 78");
    EXPECT_EQ(written("td6a24", 0x12345678, 2), "12 34 56 78");
    EXPECT_EQ(written("td6a24", 0x12345678, 1), "56 78");
    EXPECT_EQ(written("tq2a4", 0x12345678, 0), "");
}
