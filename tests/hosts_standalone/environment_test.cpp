// environment_test.cpp - product, build, notices, date and temporary directory of the standalone host.
// SPDX-License-Identifier: Apache-2.0
#include "platform/HUTEnv.h"

#include <cstdlib>

namespace {

using ::testing::MatchesRegex;

// TMPDIR for the length of a block; null removes it.
class ScopedTmpdir {
public:
    explicit ScopedTmpdir(const char* value) {
        if (const char* old = std::getenv("TMPDIR"); old != nullptr) old_ = old;
        set_(value);
    }
    ~ScopedTmpdir() { set_(old_.empty() ? nullptr : old_.c_str()); }
    ScopedTmpdir& operator=(ScopedTmpdir&&) = delete; // neither copied nor moved

private:
    static void set_(const char* value) {
        if (value == nullptr)
            unsetenv("TMPDIR");
        else
            setenv("TMPDIR", value, 1);
    }
    std::string old_;
};

} // namespace

TEST(Environment, ProductIsNameAndVersion) {
    EXPECT_THAT(HUTEnv::getFullProductStr(), MatchesRegex("memdata [0-9]+\\.[0-9]+\\.[0-9]+"));
}

TEST(Environment, BuildIsTheVersionAlone) {
    EXPECT_THAT(HUTEnv::getFullBuildStr(), MatchesRegex("Build [0-9]+\\.[0-9]+\\.[0-9]+"));
}

TEST(Environment, NoticesAreOurs) {
    EXPECT_EQ(HUTEnv::getCopyrightStr(), "SPDX-License-Identifier: Apache-2.0");
    EXPECT_EQ(HUTEnv::getOtherCopyrightStr(), "The memdata authors");
}

TEST(Environment, DateHasElevenCharacters) {
    EXPECT_THAT(HUTEnv::getDATE(), MatchesRegex("[A-Z][a-z][a-z] [ 1-3][0-9] [0-9][0-9][0-9][0-9]"));
}

TEST(Environment, TemporaryDirectoryIsTmpWithoutAChoice) {
    const ScopedTmpdir none(nullptr);
    EXPECT_EQ(HUTEnv::getZHRTmpDir(), "/tmp");
    const ScopedTmpdir empty("");
    EXPECT_EQ(HUTEnv::getZHRTmpDir(), "/tmp");
}

TEST(Environment, TemporaryDirectoryIsTheChosenOneWithoutItsLastSeparator) {
    const ScopedTmpdir chosen("/var/tmp//");
    EXPECT_EQ(HUTEnv::getZHRTmpDir(), "/var/tmp");
    const ScopedTmpdir root("/");
    EXPECT_EQ(HUTEnv::getZHRTmpDir(), "/");
}
