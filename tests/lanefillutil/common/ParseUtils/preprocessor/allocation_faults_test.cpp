// allocation_faults_test.cpp - each allocation of a run fails once: it ends with a status, and nothing is lost.
// SPDX-License-Identifier: Apache-2.0
#include "preprocess_test.h"
#include "support/allocation_faults.h"

#include <cstring>

namespace memdata::testing {
namespace {

constexpr const char* kTEXT = "#define CAT(a, b) a##b #a\n"
                              "#function SUM(x, y)\n#set R (x+y*1+0)\n#export R\n#if R > 2\nbig\n#return\n#endif\n"
                              "#endfunction\n"
                              "#for i 0; i + 0 < 2; i i+1*1\nCAT(p, i) #{ i }\n#if i == 1\n#break\n#endif\n#endfor\n"
                              "SUM(1, 2) R __LINE__\n#undef R\n#pragma comments enabled\n// c\n#emit R\n"
                              "#while defined(GONE)\n#endwhile\n";

int readText() {
    const OwnedString text(StrDup(kTEXT));
    if (text == nullptr) return 7;
    parse_stream* stream = nullptr;
    int status = open_parse_MemoryFile("t", text.get(), std::strlen(kTEXT), nullptr, nullptr, nullptr, &stream);
    const TokenOwner token(get_token_element());
    if (token == nullptr) status = 7;
    while (status == 0) {
        status = get_next_token(stream, token.get());
        if (status == 0 && token->type == &kEND_OF_FILE) break;
    }
    const int closed = close_parse_stream(&stream);
    return status != 0 ? status : closed;
}

TEST(PreprocessFaults, EveryAllocationMayFail) {
    const SystemResources resources;
    const CapturedAlerts alerts(0);
    // The pool of tokens stays warm from here on.
    for (int round = 0; round < 3; ++round) ASSERT_EQ(readText(), 0);
    const FaultSweep sweep = sweepAllocationFaults(readText);
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GT(sweep.faultCount, 100U);
}

} // namespace
} // namespace memdata::testing
