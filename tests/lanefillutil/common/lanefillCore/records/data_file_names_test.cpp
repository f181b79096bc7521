// data_file_names_test.cpp - lists of data-file names.
// SPDX-License-Identifier: Apache-2.0
#include "lanefillCore/records/data_file_names.h"

#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "support/allocation_faults.h"

#include <gtest/gtest.h>
#include <string>

namespace {

class DataFileNames : public ::testing::Test {
protected:
    ~DataFileNames() override {
        delete_data_filenames(&list_);
        EXPECT_EQ(getCurrentMemoryUsage(), bytesBefore_);
    }

    memdata::SystemResources resources_;
    u64 bytesBefore_ = getCurrentMemoryUsage();
    DataFileNameListType* list_ = create_data_filename_list(nullptr);
};

std::string names(const DataFileNameListType* list) {
    std::string text = std::to_string(list->count) + ":";
    for (const DataFileNameType* node = list->head; node != nullptr; node = node->next)
        text += std::string(" ") + node->name;
    return text;
}

} // namespace

TEST_F(DataFileNames, ANewListIsEmpty) {
    EXPECT_EQ(names(list_), "0:");
}

TEST_F(DataFileNames, NamesStandInTheOrderInWhichTheyCame) {
    for (const char* name : {"b.elf", "a.elf", "c.mem"}) EXPECT_EQ(insert_data_filename(name, list_), 0);
    EXPECT_EQ(names(list_), "3: b.elf a.elf c.mem");
}

TEST_F(DataFileNames, ANameThatIsThereIsNotAddedAgain) {
    for (const char* name : {"a.elf", "b.elf", "a.elf"}) EXPECT_EQ(insert_data_filename(name, list_), 0);
    EXPECT_EQ(names(list_), "2: a.elf b.elf");
}

TEST_F(DataFileNames, NamesAreComparedByteByByte) {
    for (const char* name : {"a.elf", "A.elf", "./a.elf"}) insert_data_filename(name, list_);
    EXPECT_EQ(names(list_), "3: a.elf A.elf ./a.elf");
    EXPECT_EQ(lookup_data_filename("a.ELF", list_), nullptr);
    EXPECT_STREQ(lookup_data_filename("A.elf", list_)->name, "A.elf");
}

TEST_F(DataFileNames, AListMadeFromAnotherBeginsWithItsNames) {
    for (const char* name : {"a.elf", "b.elf"}) insert_data_filename(name, list_);
    DataFileNameListType* copy = create_data_filename_list(list_);
    insert_data_filename("c.elf", copy);
    EXPECT_EQ(names(copy), "3: a.elf b.elf c.elf");
    EXPECT_EQ(names(list_), "2: a.elf b.elf");
    delete_data_filenames(&copy);
    EXPECT_EQ(copy, nullptr);
}

TEST_F(DataFileNames, NullArgumentsFindNothingAndAddNothing) {
    EXPECT_EQ(insert_data_filename(nullptr, list_), 3);
    EXPECT_EQ(insert_data_filename("a", nullptr), 3);
    EXPECT_EQ(lookup_data_filename(nullptr, list_), nullptr);
    EXPECT_EQ(lookup_data_filename("a", nullptr), nullptr);
    delete_data_filenames(nullptr);
}

TEST_F(DataFileNames, WithoutMemoryNothingIsLeftBehind) {
    const auto sweep = memdata::testing::sweepAllocationFaults([] {
        memdata::Tracked<DataFileNameListType, delete_data_filenames> list(create_data_filename_list(nullptr));
        if (list == nullptr) return 7;
        for (const char* name : {"a.elf", "b.elf"})
            if (int status = insert_data_filename(name, list.get()); status != 0) return status;
        memdata::Tracked<DataFileNameListType, delete_data_filenames> copy(create_data_filename_list(list.get()));
        return copy == nullptr ? 7 : 0;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_EQ(sweep.faultCount, 10u);
}
