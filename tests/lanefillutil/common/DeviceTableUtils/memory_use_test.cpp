// memory_use_test.cpp - what a map with located lanes takes of the machine, on use and on release.
// SPDX-License-Identifier: Apache-2.0
#include "BmmUtils/model/creation.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "all_devices.h"

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sys/resource.h>

namespace {

constexpr char kLARGEST_DEVICE[] = "tq7b1000";
constexpr u32 kLANES = 100;
constexpr u64 kGROWTH_LIMIT = 4'000'000; // bytes
constexpr rlim_t kADDRESS_SPACE = 4'000'000ul * 1024;

// Bytes of the process that stand in memory and come from no file.
[[maybe_unused]] u64 residentBytes() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("RssAnon:")) return std::stoull(line.substr(std::strlen("RssAnon:"))) * 1024;
    return 0;
}

// A map with lanes all over the device, each looked up at its physical place, and released.
//   visit  called with every lane in place, and again with all of it gone
int useLocatedLanes(const auto& visit) {
    AddressMappingType* mapping =
        create_addressMapping_element("top.bmm", get_device_record_by_name(kLARGEST_DEVICE), false, nullptr, nullptr);
    if (mapping == nullptr) return 7;
    MEMORYLocType* memory = get_MEMORY_type_from_name(mapping->device, "RAMB36");
    std::vector<BitLaneType*> lanes;
    int status = 0;
    for (u32 i = 0; i < kLANES && status == 0; ++i) {
        const std::string name = "top/lane" + std::to_string(i);
        auto* lane = static_cast<BitLaneType*>(std::calloc(1, sizeof(BitLaneType) + name.size() + 1));
        lanes.push_back(lane);
        lane->memory = memory;
        lane->locColumn = i % mapping->device->logicalColumns;
        lane->locRow = i * (mapping->device->logicalRows - 1) / kLANES;
        std::strcpy(lane->name, name.c_str());
        status = record_bitLane_LOC_constraint(nullptr, nullptr, mapping, lane);
    }
    if (status == 0 && mapping->scratch == nullptr) status = -1;
    visit();
    delete_addressMapping(&mapping);
    for (BitLaneType* lane : lanes) std::free(lane);
    visit();
    return status;
}

#ifndef __SANITIZE_ADDRESS__ // which reserves an address space and a shadow of its own

TEST(MemoryUse, AMapWithAHundredLocatedLanesGrowsByLessThanFourMegabytes) {
    const memdata::SystemResources resources;
    const u64 before = residentBytes();
    ASSERT_GT(before, 0u);
    u64 most = 0;
    EXPECT_EQ(useLocatedLanes([&] { most = std::max(most, residentBytes()); }), 0);
    EXPECT_LT(most, before + kGROWTH_LIMIT);
}

// In a process of its own, as the limit stays.
[[noreturn]] void useLanesUnderALimit() {
    const rlimit limit{kADDRESS_SPACE, kADDRESS_SPACE};
    if (setrlimit(RLIMIT_AS, &limit) != 0) std::_Exit(100);
    // The limit is in force: more than it allows is not to be had.
    if (std::malloc(kADDRESS_SPACE + 1) != nullptr) std::_Exit(101);
    int status = 0;
    {
        const memdata::SystemResources resources;
        status = useLocatedLanes([] {});
    }
    std::_Exit(status);
}

TEST(MemoryUse, LocatedLanesNeedNoMoreAddressesThanALimitedShellGives) {
    EXPECT_EXIT(useLanesUnderALimit(), ::testing::ExitedWithCode(0), "");
}

#endif

} // namespace
