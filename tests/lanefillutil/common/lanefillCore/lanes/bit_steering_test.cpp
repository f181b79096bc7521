// bit_steering_test.cpp - values put together from fields of another one.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/lanes/bit_steering.h"

#include <gtest/gtest.h>

TEST(BitSteering, AnEmptyListGivesZero) {
    EXPECT_EQ(GetBitSteeringValue(0xFF, nullptr), 0u);
}

TEST(BitSteering, APlainFieldMovesByTheDistanceOfItsPlacesAndIsMasked) {
    const BitSteeringFieldListType up{nullptr, false, 4, 0, 8, 0xF00};
    EXPECT_EQ(GetBitSteeringValue(0x35, &up), 0x500u);
    const BitSteeringFieldListType down{nullptr, false, 4, 8, 0, 0x00F};
    EXPECT_EQ(GetBitSteeringValue(0xA70, &down), 0x00Au);
}

TEST(BitSteering, AReversedFieldIsMirroredInItsWidth) {
    const BitSteeringFieldListType field{nullptr, true, 4, 4, 0, 0xF};
    EXPECT_EQ(GetBitSteeringValue(0x1F, &field), 0x8u); // 0001 becomes 1000
    const BitSteeringFieldListType masked{nullptr, true, 4, 0, 8, 0xC00};
    EXPECT_EQ(GetBitSteeringValue(0xF, &masked), 0xC00u);
}

TEST(BitSteering, FieldsAreOredTogether) {
    BitSteeringFieldListType second{nullptr, false, 4, 0, 4, 0xF0};
    const BitSteeringFieldListType first{&second, false, 4, 4, 0, 0x0F};
    EXPECT_EQ(GetBitSteeringValue(0x12, &first), 0x21u);
}
