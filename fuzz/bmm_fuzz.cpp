// bmm_fuzz.cpp - a map text is read and checked. One that is accepted is written annotated; what was written must be
// accepted too, be the same map, and be written as the same text again.
//
// A text that begins with "// part NAME" is read for that device.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/device_lookup.h"
#include "support/engine_run.h"
#include "support/map_rounds.h"

namespace {

using namespace memdata;
using namespace memdata::fuzz;

TarselDeviceType* deviceOf(std::string_view text) {
    constexpr std::string_view kLEAD = "// part ";
    if (!text.starts_with(kLEAD)) return nullptr;
    return get_device_record_by_name(std::string(text.substr(kLEAD.size(), text.find('\n') - kLEAD.size())).c_str());
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const EngineRun run;
    TarselDeviceType* device = deviceOf(textOf(data, size));
    OwnedMapping first = newMapping(device);
    if (readMap(textOf(data, size), first.get()) != 0) return 0;
    const std::string text = annotatedText(first.get());
    if (text.empty()) return 0; // a map for other operations than those of this run
    if (!keepsNames(first.get()) || !keepsAddresses(first.get())) return 0;
    const std::string model = modelText(first.get());
    const bool isPlain = !hasInstances(first.get());
    first.reset(); // with the memory types that the text has defined
    OwnedMapping second = newMapping(device);
    require(readMap(text, second.get()) == 0, "an annotated map is refused");
    requireEqual(model, modelText(second.get()), "an annotated map is another map");
    if (isPlain) requireEqual(text, annotatedText(second.get()), "an annotated map is written otherwise");
    return 0;
}
