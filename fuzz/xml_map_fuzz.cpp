// xml_map_fuzz.cpp - an XML map is read. One that is accepted is written; what was written must be accepted too, and be
// the same map.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/xml_map.h"
#include "support/engine_run.h"
#include "support/map_rounds.h"

#include <cstdio>
#include <fstream>
#include <iterator>

namespace {

using namespace memdata;
using namespace memdata::fuzz;

int readDocument(std::string_view text, AddressMappingType* mapping) {
    const OwnedFileSpec spec(CreateFileSpecWithFileData("map.xml", text.data(), text.size()));
    return open_and_parse_bmm_XML(spec.get(), mapping, nullptr, nullptr, nullptr, nullptr);
}

std::string documentOf(AddressMappingType* mapping) {
    const OwnedFileSpec spec(CreateFileSpec("out.xml"));
    require(output_XML_BMM_file(spec.get(), "", 0, mapping) == 0, "a map that was read can not be written");
    std::ifstream in("out.xml", std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(in), {}};
    std::remove("out.xml");
    return text;
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const EngineRun run;
    const OwnedMapping first = newMapping();
    if (readDocument(textOf(data, size), first.get()) != 0) return 0;
    const std::string text = documentOf(first.get());
    if (!keepsAddresses(first.get())) return 0;
    const OwnedMapping second = newMapping();
    require(readDocument(text, second.get()) == 0, "a written document is refused");
    requireEqual(modelText(first.get()), modelText(second.get()), "a written document is another map");
    return 0;
}
