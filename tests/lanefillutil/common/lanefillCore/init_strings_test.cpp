// init_strings_test.cpp - contents as the digits of an initialisation attribute.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/init_strings.h"

#include <gtest/gtest.h>

#include <numeric>

namespace {

TEST(InitStrings, BeginWithTheLastByte) {
    unsigned char data[kINIT_STRING_BYTES];
    std::iota(std::begin(data), std::end(data), static_cast<unsigned char>(0xE0));
    char text[kINIT_STRING_TEXT_BYTES + 1];
    text[kINIT_STRING_TEXT_BYTES] = '!';
    EXPECT_EQ(construct_initialization_string(text, data), data + 32);
    EXPECT_STREQ(text, "FFFEFDFCFBFAF9F8F7F6F5F4F3F2F1F0EFEEEDECEBEAE9E8E7E6E5E4E3E2E1E0");
    EXPECT_EQ(text[kINIT_STRING_TEXT_BYTES], '!');
}

TEST(InitStrings, OfNoDataAreZeros) {
    char text[kINIT_STRING_TEXT_BYTES];
    EXPECT_EQ(construct_initialization_string(text, nullptr), nullptr);
    EXPECT_EQ(std::string(text), std::string(64, '0'));
}

} // namespace
