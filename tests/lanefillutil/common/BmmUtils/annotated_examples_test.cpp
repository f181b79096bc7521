// annotated_examples_test.cpp - the annotated forms of the maps that come with the project: examples/*.golden here.
//
// A file's options are the name of the map, and behind it the root, where it is read under one. The expected text is
// that of the annotated map without its head, which tells the time.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/annotated_map.h"
#include "map_text.h"
#include "support/golden.h"

#include <filesystem>
#include <set>
#include <sstream>

using namespace memdata;
using namespace memdata::testing;

namespace {

const std::filesystem::path kEXAMPLES = std::filesystem::path(MEMDATA_TEST_DATA).parent_path() / "examples" / "maps";
constexpr const char* kGOLDEN = "lanefillutil/common/BmmUtils/examples";

std::string annotated(AddressMappingType* mapping) {
    fileIODescriptor* file = nullptr;
    EXPECT_EQ(OpenMemoryFile("map", kTEXT_WRITE, nullptr, 0, &file), 0);
    EXPECT_EQ(output_BMM_addressMapping(file, mapping), 0);
    std::string text(GetFileStorageBase(file), GetFileLogicalSize(file));
    EXPECT_EQ(Close_File(&file), 0);
    return text;
}

GoldenResult annotate(const GoldenFile& golden, const std::filesystem::path&) {
    std::istringstream options(golden.options);
    std::string name, root;
    options >> name >> root;
    MapText map;
    CapturedAlerts alerts;
    const OwnedFileSpec spec(CreateFileSpec((kEXAMPLES / name).string().c_str()));
    const int status = open_and_parse_bmm_file(
        spec.get(), map.get(), root.empty() ? nullptr : root.c_str(), nullptr, nullptr, nullptr);
    return {status, alerts.take() + annotated(map.get())};
}

class AnnotatedExample : public ::testing::TestWithParam<std::filesystem::path> {};

TEST_P(AnnotatedExample, IsAsTheFileSays) {
    EXPECT_EQ(checkGolden(GetParam(), annotate), "");
}

INSTANTIATE_TEST_SUITE_P(Files, AnnotatedExample, ::testing::ValuesIn(goldenFiles(kGOLDEN)),
    [](const auto& file) { return goldenName(file.param); });

TEST(AnnotatedExamples, AreThereForEachMap) {
    std::set<std::string> maps, forms;
    for (const auto& entry : std::filesystem::directory_iterator(kEXAMPLES))
        if (entry.path().extension() == ".bmm") maps.insert(entry.path().filename().string());
    for (const auto& path : goldenFiles(kGOLDEN)) {
        const std::string options = parseGolden(path).options;
        forms.insert(options.substr(0, options.find(' ')));
    }
    EXPECT_EQ(forms, maps);
}

} // namespace
