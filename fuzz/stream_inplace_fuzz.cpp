// stream_inplace_fuzz.cpp - a configuration stream in memory, its memories replaced where it stands.
// SPDX-License-Identifier: Apache-2.0
#include "BitFileUtils/bit_commands.h"
#include "support/stream_target.h"

#include <algorithm>

using namespace memdata;
using namespace memdata::fuzz;

void memdata::fuzz::testStream(const StreamCase& asked) {
    const StreamModel model = asked.replacementModel(0);
    // Memory of the exact size, so that a sanitizer sees every access behind it.
    Bytes image(asked.stream().begin(), asked.stream().end());
    image.shrink_to_fit();
    const int status = DoInplaceBITReplacement(asked.device(), image.data(), image.size(), asked.map(), nullptr);
    if (image.empty()) return;
    require(status == model.status, "a replacement in place ends with another status");
    // Where the walk stopped, what lies ahead is done and the rest is as it was.
    Bytes expected = asked.stream();
    std::copy(model.copy.begin(), model.copy.end(), expected.begin());
    require(image == expected, "a replacement in place changes other bytes than those of memories and CRC words");
    asked.requireReached(model);
}
