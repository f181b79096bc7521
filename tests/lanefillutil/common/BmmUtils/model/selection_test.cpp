// selection_test.cpp - filtered mappings: which spaces a data file may fill.
// SPDX-License-Identifier: Apache-2.0
#include "model_fixture.h"
#include "support/alerts.h"
#include "support/host_messages.h"
#include "support/host_parameters.h"

using namespace memdata::testing;

namespace {

using Selection = ModelTest;

// The default map with boot and flash, cpu with ram and rom.
struct Board : TestMap {
    Board() {
        define("MEMORY", 0x1000, {8, 16, 32});
        plainSpace(*this, "boot", 0x0000, 0x0FFF);
        plainSpace(*this, "flash", 0x1000, 0x1FFF, "MEMORY");
        cpu = map("cpu", "ARM", 3, "top/cpu");
        plainSpace(*this, "ram", 0x0000, 0x0FFF);
        plainSpace(*this, "rom", 0x1000, 0x1FFF);
    }
    AddressMapType* cpu;
};

AddressSpaceIteratorType not_begun() {
    AddressSpaceIteratorType at{};
    at.spaceIndex = -1;
    return at;
}

// Status, and the spaces of the filtered mapping.
std::string filter(AddressMappingType* source, long selector, const std::vector<const char*>& names = {}, u32 mask = 0,
    AddressSpaceIteratorType* iterator = nullptr) {
    AddressSpaceIteratorType own = not_begun();
    memdata::OwnedMapping target;
    const int status = filter_eligible_addressSpaces(source, selector, names.empty() ? nullptr : names.data(), nullptr,
        mask, iterator == nullptr ? &own : iterator, target.out());
    return std::to_string(status) + "\n" + (target == nullptr ? "" : listSpaces(target.get()));
}

} // namespace

TEST_F(Selection, MinusOneTakesAllSpaces) {
    Board board;
    EXPECT_EQ(filter(board.get(), -1), "0\n: boot flash\ncpu: cpu.ram cpu.rom\n");
}

TEST_F(Selection, MinusOneOnAMappingWithoutSpacesGivesFour) {
    TestMap empty;
    EXPECT_EQ(filter(empty.get(), -1), "4\n");
    empty.map("cpu");
    EXPECT_EQ(filter(empty.get(), -1), "4\n");
}

TEST_F(Selection, ZeroTakesOneSpaceAfterTheOther) {
    Board board;
    AddressSpaceIteratorType at = not_begun();
    EXPECT_EQ(filter(board.get(), 0, {}, 0, &at), "0\n: boot\n");
    EXPECT_EQ(filter(board.get(), 0, {}, 0, &at), "0\n: flash\n");
    EXPECT_EQ(filter(board.get(), 0, {}, 0, &at), "0\ncpu: cpu.ram\n");
    EXPECT_EQ(filter(board.get(), 0, {}, 0, &at), "0\ncpu: cpu.rom\n");
    EXPECT_EQ(filter(board.get(), 0, {}, 0, &at), "4\n");
    EXPECT_EQ(filter(board.get(), 0, {}, 0, &at), "4\n");
}

TEST_F(Selection, TheIteratorIsLeftAtTheLastSpaceHandled) {
    Board board;
    AddressSpaceIteratorType at = not_begun();
    filter(board.get(), -1, {}, 0, &at);
    EXPECT_STREQ(at.link->space->name, "cpu.rom");
    filter(board.get(), 2, {}, 0, &at);
    EXPECT_STREQ(at.link->space->name, "flash");
    EXPECT_EQ(filter(board.get(), 0, {}, 0, &at), "0\ncpu: cpu.ram\n");
}

TEST_F(Selection, APositiveNumberIsThePositionAmongAllSpaces) {
    Board board;
    EXPECT_EQ(filter(board.get(), 1), "0\n: boot\n");
    EXPECT_EQ(filter(board.get(), 2), "0\n: flash\n");
    EXPECT_EQ(filter(board.get(), 3), "0\ncpu: cpu.ram\n");
    EXPECT_EQ(filter(board.get(), 4), "0\ncpu: cpu.rom\n");
    EXPECT_EQ(filter(board.get(), 5), "4\n");
}

TEST_F(Selection, TwoOnAMappingOfOneSpaceGivesFour) {
    TestMap map;
    plainSpace(map, "ram", 0, 0xFFF);
    EXPECT_EQ(filter(map.get(), 2), "4\n");
}

TEST_F(Selection, OtherNegativeNumbersGiveFour) {
    Board board;
    EXPECT_EQ(filter(board.get(), -2), "4\n");
    EXPECT_EQ(filter(board.get(), LONG_MIN), "4\n");
}

TEST_F(Selection, NamesStandForSpacesAndMaps) {
    Board board;
    EXPECT_EQ(filter(board.get(), 1, {"cpu.rom"}), "0\ncpu: cpu.rom\n");
    EXPECT_EQ(filter(board.get(), 1, {"cpu"}), "0\ncpu: cpu.ram cpu.rom\n");
    EXPECT_EQ(filter(board.get(), 2, {"cpu.rom", "boot"}), "0\ncpu: cpu.rom\n: boot\n");
}

TEST_F(Selection, ASpaceReachedTwiceIsTakenOnce) {
    Board board;
    EXPECT_EQ(filter(board.get(), 3, {"cpu.rom", "cpu", "cpu.rom"}), "0\ncpu: cpu.ram cpu.rom\n");
}

TEST_F(Selection, SpacesOfEqualEndAreToldApartInAView) {
    TestMap map;
    plainSpace(map, "a", 0x000, 0xFFF);
    plainSpace(map, "b", 0x800, 0xFFF);
    EXPECT_EQ(filter(map.get(), 4, {"a", "b", "a", "b"}), "0\n: b a\n");
}

TEST_F(Selection, AMapBehindAnEmptyOneIsTakenWhole) {
    TestMap map;
    map.map("empty");
    map.map("cpu");
    plainSpace(map, "ram", 0, 0xFFF);
    EXPECT_EQ(filter(map.get(), 1, {"cpu"}), "0\ncpu: cpu.ram\n");
    EXPECT_EQ(filter(map.get(), 1, {"empty"}), "0\nempty:\n");
}

TEST_F(Selection, AnUnknownNameIsReportedAndEndsWithEleven) {
    Board board;
    CapturedMessages messages;
    CapturedAlerts alerts;
    EXPECT_EQ(filter(board.get(), 2, {"nowhere", "boot"}), "11\n");
    EXPECT_EQ(messages.text(), "1 28-203 nowhere\n");
    EXPECT_EQ(alerts.text(), "");
}

TEST_F(Selection, AnUnknownNameGivesNineteenWithLegacyMessages) {
    Board board;
    ScopedParameter legacy("memdata.debugLegacyMessages", true);
    CapturedMessages messages;
    CapturedAlerts alerts;
    EXPECT_EQ(filter(board.get(), 1, {"nowhere"}), "19\n");
    EXPECT_EQ(messages.text(), "1 28-203 nowhere\n");
    EXPECT_THAT(alerts.text(), ::testing::HasSubstr("ERROR:"));
    EXPECT_THAT(
        alerts.text(), ::testing::HasSubstr(":80 - ADDRESS_SPACE or ADDRESS_MAP tag name 'nowhere' was not found.\n"
                                            "    Some data may have not been translated."));
}

TEST_F(Selection, AMaskKeepsOtherMemoriesOutButNotTheirMaps) {
    Board board;
    EXPECT_EQ(filter(board.get(), -1, {}, kBLOCK_RAM_CLASSES), "0\n: boot\ncpu: cpu.ram cpu.rom\n");
    EXPECT_EQ(filter(board.get(), -1, {}, kGENERIC_MEMORY_CLASS), "0\n: flash\ncpu:\n");
    EXPECT_EQ(filter(board.get(), 1, {"flash"}, kBLOCK_RAM_CLASSES), "0\n:\n");
}

TEST_F(Selection, AViewSharesSpacesAndCopiesWhatAMapSays) {
    Board board;
    board.cpu->mapWord1 = 2;
    board.cpu->mapWord2 = 0x1234;
    AddressSpaceIteratorType at = not_begun();
    const char* names[] = {"cpu"};
    memdata::OwnedMapping view;
    ASSERT_EQ(filter_eligible_addressSpaces(board.get(), 1, names, nullptr, 0, &at, view.out()), 0);
    EXPECT_EQ(view->parentMapping, board.get());
    EXPECT_STREQ(view->bmmBaseName, "test.bmm");
    EXPECT_EQ(StrListCount(view->workflowOperations), 0u);
    const AddressMapType* cpu = view->addressMaps;
    EXPECT_TRUE(cpu->isNamed);
    EXPECT_STREQ(cpu->instancePath, "top/cpu");
    EXPECT_EQ(cpu->processorType, kPROCESSOR_ARM);
    EXPECT_EQ(cpu->processorId, 3u);
    EXPECT_EQ(cpu->mapWord1, 2u);
    EXPECT_EQ(cpu->mapWord2, 0x1234u);
    EXPECT_EQ(cpu->addressSpaces->space, board.link("cpu.ram")->space);
    EXPECT_EQ(cpu->addressSpaces->map, cpu);
}

TEST_F(Selection, AViewCanBeDeletedWithoutHarmToItsParent) {
    Board board;
    const std::string before = dumpMapping(board.get());
    filter(board.get(), -1);
    EXPECT_EQ(dumpMapping(board.get()), before);
    EXPECT_EQ(board.link("cpu.ram")->map, board.cpu);
    AddressMapType* found = nullptr;
    EXPECT_EQ(lookup_addressMap_by_name("cpu", board->symbolSpaces, &found), 0);
    EXPECT_EQ(found, board.cpu);
}

TEST_F(Selection, AStandInMapIsMadeOnce) {
    Board board;
    memdata::OwnedMapping view;
    AddressMappingType* target = nullptr;
    AddressMapType* first = nullptr;
    AddressMapType* again = nullptr;
    u64 index = 99;
    EXPECT_EQ(lookup_or_insert_addressMap(board.get(), &target, board.cpu, &index, &first), 0);
    EXPECT_EQ(index, 0u);
    EXPECT_EQ(lookup_or_insert_addressMap(board.get(), &target, board->defaultMap, &index, &again), 0);
    EXPECT_EQ(index, 1u);
    EXPECT_EQ(lookup_or_insert_addressMap(board.get(), &target, board.cpu, &index, &again), 0);
    EXPECT_EQ(index, 0u);
    EXPECT_EQ(again, first);
    EXPECT_EQ(target->addressMapCount, 2u);
    delete_addressMapping(&target);
}

TEST_F(Selection, NullArgumentsGiveThree) {
    Board board;
    AddressMappingType* target = nullptr;
    AddressMapType* map = nullptr;
    AddressSpaceIteratorType at = not_begun();
    EXPECT_EQ(lookup_or_insert_addressMap(nullptr, &target, board.cpu, nullptr, &map), 3);
    EXPECT_EQ(lookup_or_insert_addressMap(board.get(), &target, nullptr, nullptr, &map), 3);
    EXPECT_EQ(test_and_add_addressSpace(board.get(), 0, nullptr, &target), 3);
    EXPECT_EQ(dup_addressMap_into_addressMapping(board.get(), nullptr, &target), 3);
    EXPECT_EQ(filter_eligible_addressSpaces(nullptr, -1, nullptr, nullptr, 0, &at, &target), 3);
    EXPECT_EQ(filter_eligible_addressSpaces(board.get(), -1, nullptr, nullptr, 0, nullptr, &target), 3);
    EXPECT_EQ(filter_eligible_addressSpaces(board.get(), -1, nullptr, nullptr, 0, &at, nullptr), 3);
    EXPECT_EQ(target, nullptr);
}
