// check_layers_test.cpp - the layer check passes this tree and catches an include that goes up.
// SPDX-License-Identifier: Apache-2.0
#include "support/temporary_folder.h"

#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>

namespace memdata::testing {
namespace {

struct Outcome {
    int status;
    std::string text;
};

Outcome checkLayers(const std::string& tree) {
    const std::string command = std::string(MEMDATA_TEST_DATA "/../scripts/check_layers --tree '") + tree + "'";
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return {-1, ""};
    std::string text;
    for (int c; (c = std::fgetc(pipe)) != EOF;) text += static_cast<char>(c);
    const int status = pclose(pipe);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, text};
}

class LayerCheck : public ::testing::Test {
protected:
    void write(const std::string& name, const std::string& text) {
        std::filesystem::create_directories((folder_.path() / name).parent_path());
        folder_.write(name, text);
    }
    Outcome check() { return checkLayers(folder_.path().string()); }
    TemporaryFolder folder_;
};

TEST_F(LayerCheck, PassesThisTree) {
    const Outcome outcome = checkLayers(MEMDATA_TEST_DATA "/..");
    EXPECT_EQ(outcome.text, "check_layers: clean\n");
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(LayerCheck, TakesIncludesOfTheSameAndOfLowerStoreys) {
    write("memdata/platform/P.h", "");
    write("memdata/lanefillutil/common/FileUtils/F.h", "#include \"platform/P.h\"\n#include \"StringUtils/S.h\"\n");
    write("memdata/lanefillutil/common/StringUtils/S.h", "#include <string>\n");
    EXPECT_EQ(check().text, "check_layers: clean\n");
}

TEST_F(LayerCheck, RefusesAnIncludeThatGoesUp) {
    write("memdata/platform/P.h", "// first\n#include \"FileUtils/F.h\"\n");
    write("memdata/lanefillutil/common/FileUtils/F.h", "");
    const Outcome outcome = check();
    EXPECT_EQ(outcome.text,
        "memdata/platform/P.h:2: includes memdata/lanefillutil/common/FileUtils/F.h, which stands above it\n"
        "check_layers: 1 found\n");
    EXPECT_EQ(outcome.status, 1);
}

TEST_F(LayerCheck, KnowsTheTwoStoreysOfAModule) {
    write("memdata/lanefillutil/common/BmmUtils/model/M.h", "#include \"BmmUtils/B.h\"\n");
    write("memdata/lanefillutil/common/BmmUtils/B.h", "#include \"BmmUtils/model/M.h\"\n");
    EXPECT_EQ(check().text, "memdata/lanefillutil/common/BmmUtils/model/M.h:1: includes "
                            "memdata/lanefillutil/common/BmmUtils/B.h, which stands above it\n"
                            "check_layers: 1 found\n");
}

TEST_F(LayerCheck, RefusesAnIncludeThatIsNotInTheTreeAndAFileInNoRoom) {
    write("memdata/platform/P.h", "#include \"Missing.h\"\n");
    write("attic/A.h", "");
    const Outcome outcome = check();
    EXPECT_EQ(outcome.text, "attic/A.h: stands in no room of scripts/layers.txt\n"
                            "memdata/platform/P.h:1: includes \"Missing.h\", which is not in the tree\n"
                            "check_layers: 2 found\n");
    EXPECT_EQ(outcome.status, 1);
}

TEST_F(LayerCheck, FailsWhereThereIsNothingToCheck) {
    EXPECT_EQ(check().status, 2);
}

} // namespace
} // namespace memdata::testing
