// file_follower_test.cpp - a second thread that reads a file behind its writer.
// SPDX-License-Identifier: Apache-2.0
#include "platform/file_follower.h"

#include "support/temporary_folder.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>
#include <vector>

namespace {

using memdata::FileFollower;

struct Taken {
    std::string bytes;
    std::vector<u64> counts;
    bool isSignalHeld = true;

    static void take(void* state, const u8* bytes, u64 count) {
        Taken& taken = *static_cast<Taken*>(state);
        taken.bytes.append(reinterpret_cast<const char*>(bytes), count);
        taken.counts.push_back(count);
        sigset_t held;
        pthread_sigmask(SIG_SETMASK, nullptr, &held);
        taken.isSignalHeld = taken.isSignalHeld && sigismember(&held, SIGINT) == 1 && sigismember(&held, SIGTERM) == 1;
    }
};

class FileFollowerTest : public ::testing::Test {
protected:
    FileFollowerTest() {
        for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * i / 100 + i);
        name = folder.write("file", "");
        descriptor = ::open(name.c_str(), O_RDWR);
    }
    ~FileFollowerTest() override { ::close(descriptor); }
    void write(u64 from, u64 to) {
        ASSERT_EQ(::pwrite(descriptor, bytes.data() + from, to - from, static_cast<off_t>(from)),
            static_cast<ssize_t>(to - from));
    }

    memdata::testing::TemporaryFolder folder;
    std::string bytes = std::string(1'000'001, '\0');
    std::string name;
    int descriptor = -1;
    Taken taken;
};

TEST_F(FileFollowerTest, TakesWhatIsWrittenInWholeBlocksAndTheRest) {
    FileFollower follower(descriptor, 0, Taken::take, &taken);
    ASSERT_TRUE(follower.isRunning());
    for (u64 at = 0; at < bytes.size();) {
        const u64 end = std::min<u64>(at + 77'777, bytes.size());
        write(at, end);
        follower.follow(end);
        at = end;
    }
    EXPECT_EQ(follower.finish(), 0);
    EXPECT_TRUE(taken.bytes == bytes);
    const u64 blocks = bytes.size() / FileFollower::kBLOCK_BYTES;
    std::vector<u64> counts(blocks, FileFollower::kBLOCK_BYTES);
    counts.push_back(bytes.size() % FileFollower::kBLOCK_BYTES);
    EXPECT_EQ(taken.counts, counts);
    EXPECT_TRUE(taken.isSignalHeld);
    EXPECT_EQ(::lseek(descriptor, 0, SEEK_CUR), 0);
}

TEST_F(FileFollowerTest, BeginsAndEndsWhereItIsTold) {
    write(0, bytes.size());
    FileFollower follower(descriptor, 1001, Taken::take, &taken);
    follower.follow(700'001);
    EXPECT_EQ(follower.finish(), 0);
    EXPECT_TRUE(taken.bytes == bytes.substr(1001, 699'000));
}

TEST_F(FileFollowerTest, AnEndThatWasPassedSaysNothingNew) {
    write(0, bytes.size());
    FileFollower follower(descriptor, 500, Taken::take, &taken);
    follower.follow(499);
    follower.follow(400'000);
    follower.follow(200'000);
    EXPECT_EQ(follower.finish(), 0);
    EXPECT_TRUE(taken.bytes == bytes.substr(500, 399'500));
}

TEST_F(FileFollowerTest, TakesNothingWhenNothingIsWritten) {
    FileFollower follower(descriptor, 7, Taken::take, &taken);
    EXPECT_EQ(follower.finish(), 0);
    EXPECT_EQ(taken.bytes, "");
    EXPECT_EQ(taken.counts.size(), 0u);
}

TEST_F(FileFollowerTest, AFileThatIsShorterIsAnError) {
    write(0, 1000);
    FileFollower follower(descriptor, 0, Taken::take, &taken);
    follower.follow(1001);
    EXPECT_EQ(follower.finish(), EIO);
    EXPECT_EQ(taken.bytes, "");
}

TEST_F(FileFollowerTest, AFileThatCannotBeReadIsAnError) {
    const int writing = ::open(name.c_str(), O_WRONLY);
    FileFollower follower(writing, 0, Taken::take, &taken);
    follower.follow(1);
    EXPECT_EQ(follower.finish(), EBADF);
    ::close(writing);
}

TEST_F(FileFollowerTest, IsLeftAtAnyTime) {
    write(0, bytes.size());
    for (int i = 0; i < 50; ++i) {
        FileFollower follower(descriptor, 0, Taken::take, &taken);
        if (i % 3 != 0) follower.follow(bytes.size());
    }
    EXPECT_LE(taken.bytes.size(), 50 * bytes.size());
}

} // namespace
