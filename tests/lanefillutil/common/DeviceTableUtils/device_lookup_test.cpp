// device_lookup_test.cpp - devices by name, and the walk over all of them.
// SPDX-License-Identifier: Apache-2.0
#include "DeviceTableUtils/device_lookup.h"

#include "SystemUtils/alerts.h"
#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "all_devices.h"

#include <strings.h>

namespace {

using memdata::deviceName;
using memdata::SystemResources;
using memdata::testing::allDevices;
using memdata::testing::namesOf;

std::string found(const char* name) {
    return deviceName(get_device_record_by_name(name));
}

TEST(DeviceByName, TheNameItselfFindsItsRecord) {
    EXPECT_EQ(found("tq5a20"), "tq5a20");
}

TEST(DeviceByName, TheShortNameFindsTheRecordOfTheLongOne) {
    EXPECT_EQ(found("q5a20"), "tq5a20");
}

TEST(DeviceByName, CaseDoesNotCount) {
    EXPECT_EQ(found("TQ5A20"), "tq5a20");
    EXPECT_EQ(found("Q7b100"), "tq7b100");
}

TEST(DeviceByName, SpeedGradeAndPackageNeedNoStripping) {
    EXPECT_EQ(found("tq5a20-2ff1136"), "tq5a20");
    EXPECT_EQ(found("tq7b100ff901-3"), "tq7b100");
}

TEST(DeviceByName, TheLongestNameThatFitsWins) {
    EXPECT_EQ(found("tq7b10-1"), "tq7b10");
    EXPECT_EQ(found("tq7b100-1"), "tq7b100");
    EXPECT_EQ(found("tq7b1000-1"), "tq7b1000");
}

TEST(DeviceByName, APartOfALineWithOnlyAGenericRecordResolvesToIt) {
    EXPECT_EQ(found("tq7"), "tq7");
    EXPECT_EQ(found("tq7z99"), "tq7");
    EXPECT_EQ(found("q9k300ab"), "tq9a");
}

TEST(DeviceByName, ALongOnlyGenericNameHasNoShortForm) {
    EXPECT_EQ(found("q7z99"), "");
}

TEST(DeviceByName, AShorterAskedNameDoesNotMatchALongerTableName) {
    EXPECT_EQ(found("tq5a2"), "");
    EXPECT_EQ(found("tq5"), "");
    EXPECT_EQ(found("t"), "");
}

TEST(DeviceByName, AnEmptyNameMatchesNothing) {
    EXPECT_EQ(get_device_record_by_name(""), nullptr);
}

TEST(DeviceByName, ANullNameMatchesNothing) {
    EXPECT_EQ(get_device_record_by_name(nullptr), nullptr);
}

TEST(DeviceByName, AForeignNameMatchesNothing) {
    EXPECT_EQ(get_device_record_by_name("zz1000"), nullptr);
}

TEST(DeviceByName, EveryNameFindsTheFirstRecordThatCarriesIt) {
    for (TarselDeviceType* device : allDevices())
        for (const std::string& name : namesOf(*device))
            EXPECT_EQ(get_device_record_by_name(name.c_str()), device) << name;
}

// The rule as it is told, over the names that an iteration gives.
TarselDeviceType* slowLookup(const std::string& asked) {
    TarselDeviceType* best = nullptr;
    size_t bestLength = 0;
    for (TarselDeviceType* device : allDevices())
        for (const std::string& name : namesOf(*device)) {
            if (strncasecmp(asked.c_str(), name.c_str(), name.size()) != 0 || name.size() <= bestLength) continue;
            best = device;
            bestLength = name.size();
        }
    return best;
}

TEST(DeviceByName, AgreesWithAnIterationOverAllNames) {
    SystemResources resources;
    for (const char* asked : {"tq7b100", "tq7b1", "q6c67-1", "td6a528csg", "tq9sxx", "p7a64", "P7", "tqx", "qx7b1000",
             "td2e", "TD2E24", "tq1e312bg", "d3a130f", "tqx8n", "q4"})
        EXPECT_EQ(get_device_record_by_name(asked), slowLookup(asked)) << asked;
}

class DeviceIterator : public ::testing::Test {
protected:
    static std::vector<std::string> walk(bool unlisted, bool shortNames, bool longNames) {
        std::vector<std::string> names;
        device_iterator_type* iterator = create_device_record_iterator(unlisted, shortNames, longNames);
        for (const char* name = get_iterated_device_name(iterator); name != nullptr;
             name = iterate_next_device_record(iterator))
            names.emplace_back(name);
        delete_device_iterator(&iterator);
        return names;
    }

private:
    SystemResources resources_;
};

TEST_F(DeviceIterator, GivesLongNamesAlone) {
    for (const std::string& name : walk(true, false, true)) EXPECT_EQ(name[0], 't') << name;
}

TEST_F(DeviceIterator, GivesShortNamesAlone) {
    for (const std::string& name : walk(true, true, false)) EXPECT_NE(name[0], 't') << name;
}

TEST_F(DeviceIterator, GivesBothFormsTogether) {
    const size_t all = walk(true, true, true).size();
    EXPECT_EQ(all, walk(true, true, false).size() + walk(true, false, true).size());
}

TEST_F(DeviceIterator, GivesNothingWithoutEitherForm) {
    EXPECT_TRUE(walk(true, false, false).empty());
}

TEST_F(DeviceIterator, PassesOverUnlistedRecords) {
    const std::vector<std::string> listed = walk(false, false, true);
    EXPECT_EQ(listed.front(), "tq1a8");
    for (const std::string& name : listed) EXPECT_NE(get_device_record_by_name(name.c_str())->isListed, 0) << name;
    EXPECT_LT(listed.size(), walk(true, false, true).size());
}

TEST_F(DeviceIterator, StandsOnTheFirstNameFromTheStart) {
    device_iterator_type* iterator = create_device_record_iterator(true, true, true);
    EXPECT_STREQ(get_iterated_device_name(iterator), "tp7");
    EXPECT_STREQ(get_iterated_device_record(iterator)->names[0], "tp7");
    EXPECT_STREQ(iterate_next_device_record(iterator), "p7");
    delete_device_iterator(&iterator);
}

TEST_F(DeviceIterator, StaysAtTheEnd) {
    device_iterator_type* iterator = create_device_record_iterator(true, true, true);
    while (iterate_next_device_record(iterator) != nullptr) {
    }
    EXPECT_EQ(iterate_next_device_record(iterator), nullptr);
    EXPECT_EQ(get_iterated_device_record(iterator), nullptr);
    EXPECT_EQ(get_iterated_device_name(iterator), nullptr);
    delete_device_iterator(&iterator);
}

TEST_F(DeviceIterator, DeletingClearsTheCallersPointer) {
    device_iterator_type* iterator = create_device_record_iterator(true, true, true);
    delete_device_iterator(&iterator);
    EXPECT_EQ(iterator, nullptr);
    delete_device_iterator(&iterator); // once more does nothing
}

TEST_F(DeviceIterator, GivesNullWithoutMemory) {
    const u32 mask = EnablePrintAlerts(0);
    memdata::failTrackedAllocation(1);
    EXPECT_EQ(create_device_record_iterator(true, true, true), nullptr);
    EnablePrintAlerts(mask);
}

} // namespace
