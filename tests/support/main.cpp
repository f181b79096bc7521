// main.cpp - the start of every test program: GoogleTest's own flags, and --rewrite-golden.
// SPDX-License-Identifier: Apache-2.0
#include "support/golden.h"

#include <gmock/gmock.h>
#include <string_view>

int main(int argc, char** argv) {
    ::testing::InitGoogleMock(&argc, argv);
    for (int i = 1; i < argc; ++i) {
        if (std::string_view(argv[i]) != "--rewrite-golden") {
            std::fprintf(stderr, "unknown flag %s\n", argv[i]);
            return 2;
        }
        memdata::testing::gRewriteGolden = true;
    }
    return RUN_ALL_TESTS();
}
