// file_spec_test.cpp - records of file names, and lists of them.
// SPDX-License-Identifier: Apache-2.0

#include "file_test.h"
#include "platform/HEXAll.h"
#include "support/allocation_faults.h"

namespace {

using namespace memdata;
using namespace memdata::testing;

class FileSpecs : public FileTest {};

std::string text(const fileSpecType* spec) {
    return formatted("%s = %s|%s|%s|%s sep %d format %d", spec->fullName, spec->volume, spec->directory, spec->baseName,
        spec->extension, spec->separator, spec->format);
}

TEST_F(FileSpecs, ASpecHoldsTheNameAndItsParts) {
    OwnedFileSpec spec(CreateFileSpec("C:/work/a.b.elf"));
    EXPECT_EQ(text(spec.get()), "C:/work/a.b.elf = C:|/work/|a.b|elf sep 47 format 16");
}

TEST_F(FileSpecs, ANameWithoutDirectoryHasNoSeparator) {
    OwnedFileSpec spec(CreateFileSpec("top"));
    EXPECT_EQ(text(spec.get()), "top = ||top| sep 0 format 1");
}

TEST_F(FileSpecs, AGivenExtensionOverridesThatOfTheName) {
    OwnedFileSpec spec(NewFileSpec());
    EXPECT_EQ(InitializeFileSpec(spec.get(), "dir/a.txt", "BMM"), 0);
    EXPECT_EQ(text(spec.get()), "dir/a.BMM = |dir/|a|BMM sep 47 format 6");
}

TEST_F(FileSpecs, AnEmptyExtensionLeavesNoDotBehind) {
    OwnedFileSpec spec(CreateFileSpec("dir/a."));
    EXPECT_STREQ(spec->fullName, "dir/a");
}

TEST_F(FileSpecs, ASpecCanBeFilledAgain) {
    OwnedFileSpec spec(CreateFileSpec("a.elf"));
    EXPECT_EQ(InitializeFileSpec(spec.get(), "b/c.mem", nullptr), 0);
    EXPECT_EQ(text(spec.get()), "b/c.mem = |b/|c|mem sep 47 format 13");
}

TEST_F(FileSpecs, ASpecCanBeFilledFromItsOwnParts) {
    OwnedFileSpec spec(CreateFileSpec("b/c.mem"));
    EXPECT_EQ(InitializeFileSpec(spec.get(), spec->fullName, spec->extension), 0);
    EXPECT_EQ(text(spec.get()), "b/c.mem = |b/|c|mem sep 47 format 13");
}

TEST_F(FileSpecs, NothingIsMadeOfANullName) {
    EXPECT_EQ(CreateFileSpec(nullptr), nullptr);
    EXPECT_EQ(InitializeFileSpec(nullptr, "x", nullptr), 3);
    OwnedFileSpec spec(NewFileSpec());
    EXPECT_EQ(InitializeFileSpec(spec.get(), nullptr, nullptr), 3);
}

TEST_F(FileSpecs, SubTypeAndAttributeAreKept) {
    OwnedFileSpec spec(CreateFileSpec("a"));
    FileSpecSetSubType(spec.get(), 'h');
    FileSpecSetAttribute(spec.get(), &folder);
    EXPECT_EQ(FileSpecGetSubType(spec.get()), u32{'h'});
    EXPECT_EQ(FileSpecGetAttribute(spec.get()), &folder);
}

TEST_F(FileSpecs, FileDataIsCopiedAndMarkedBehindItsEnd) {
    std::string data("text\0more", 9);
    OwnedFileSpec spec(CreateFileSpecWithFileData("a.mem", data.data(), data.size()));
    data.assign(9, 'x');
    u64 size = 0;
    const char* kept = FileSpecGetFileData(spec.get(), &size);
    EXPECT_EQ(std::string(kept, size), std::string("text\0more", 9));
    EXPECT_EQ(std::string(kept + size, 3), std::string("\xFF\0\0", 3));
}

TEST_F(FileSpecs, FileDataBeyondTheMachineIsRefused) {
    const CapturedAlerts alerts;
    OwnedFileSpec spec(CreateFileSpec("a"));
    EXPECT_EQ(FileSpecSetFileData(spec.get(), "ab", 2), 0);
    EXPECT_EQ(FileSpecSetFileData(spec.get(), "ab", UINT64_MAX), 7);
    u64 size = 0;
    EXPECT_STREQ(FileSpecGetFileData(spec.get(), &size), "ab\xFF");
    EXPECT_EQ(size, 2u);
}

TEST_F(FileSpecs, FileDataOfSizeZeroIsNone) {
    OwnedFileSpec spec(CreateFileSpecWithFileData("a.mem", "abc", 3));
    EXPECT_EQ(FileSpecSetFileData(spec.get(), "", 0), 0);
    u64 size = 9;
    EXPECT_EQ(FileSpecGetFileData(spec.get(), &size), nullptr);
    EXPECT_EQ(size, 0u);
}

TEST_F(FileSpecs, ADuplicateStandsByItself) {
    OwnedFileSpec spec(CreateFileSpecWithFileData("dir/a.mem", "abc", 3));
    FileSpecSetSubType(spec.get(), 7);
    OwnedFileSpec copy(DupFileSpec(spec.get()));
    spec.reset();
    u64 size = 0;
    EXPECT_EQ(text(copy.get()), "dir/a.mem = |dir/|a|mem sep 47 format 13");
    EXPECT_EQ(FileSpecGetSubType(copy.get()), 7u);
    EXPECT_EQ(std::string(FileSpecGetFileData(copy.get(), &size), 3), "abc");
    EXPECT_EQ(DupFileSpec(nullptr), nullptr);
}

TEST_F(FileSpecs, DeletingNullsThePointer) {
    fileSpecType* spec = CreateFileSpec("a");
    DeleteFileSpec(&spec);
    EXPECT_EQ(spec, nullptr);
    DeleteFileSpec(&spec);
    DeleteFileSpec(nullptr);
}

TEST_F(FileSpecs, EveryFailedAllocationIsCleanedUp) {
    const FaultSweep sweep = sweepAllocationFaults([] {
        OwnedFileSpec spec(CreateFileSpecWithFileData("C:/dir/a.mem", "abc", 3));
        OwnedFileSpec copy(DupFileSpec(spec.get()));
        if (copy == nullptr) return 7;
        FileSpecList list = nullptr;
        int status = FileSpecListExtend(&list, copy.get());
        if (status == 0) copy.release();
        FileSpecListDelete(list);
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_GT(sweep.faultCount, 10u);
}

class FileSpecLists : public FileTest {
protected:
    void TearDown() override {
        FileSpecListDelete(list);
        FileTest::TearDown();
    }
    std::string names() {
        std::string all;
        for (unsigned long i = 0; i < FileSpecListCount(list); ++i)
            all += std::string(FileSpecListGet(list, i)->fullName) + " ";
        return all;
    }

    FileSpecList list = nullptr;
};

TEST_F(FileSpecLists, ANullListReadsAsEmpty) {
    EXPECT_EQ(FileSpecListCount(nullptr), 0u);
    EXPECT_EQ(FileSpecListGet(nullptr, 0), nullptr);
    EXPECT_EQ(FileSpecListDelete(nullptr), 0);
}

TEST_F(FileSpecLists, ExtendingANullListMakesAListOfOne) {
    EXPECT_EQ(FileSpecListExtend(&list, CreateFileSpec("a.elf")), 0);
    EXPECT_EQ(names(), "a.elf ");
}

TEST_F(FileSpecLists, ExtendAppends) {
    for (int i = 0; i < 300; ++i) // more than the nominal bound of the type
        EXPECT_EQ(FileSpecListExtend(&list, CreateFileSpec(std::to_string(i).c_str())), 0);
    EXPECT_EQ(FileSpecListCount(list), 300u);
    EXPECT_STREQ(FileSpecListGet(list, 299)->fullName, "299");
}

TEST_F(FileSpecLists, ANewListHasRoomAndNoEntries) {
    list = FileSpecListNew(2);
    EXPECT_EQ(FileSpecListCount(list), 0u);
    FileSpecListSet(list, 1, CreateFileSpec("b"));
    EXPECT_EQ(FileSpecListCount(list), 0u);
    FileSpecListSet(list, 0, CreateFileSpec("a"));
    EXPECT_EQ(names(), "a b ");
}

TEST_F(FileSpecLists, NothingIsSetOrGotBeyondTheList) {
    list = FileSpecListNew(1);
    OwnedFileSpec spec(CreateFileSpec("a"));
    FileSpecListSet(list, 1, spec.get());
    EXPECT_EQ(FileSpecListGet(list, 1), nullptr);
    EXPECT_EQ(FileSpecListGet(list, 1000000), nullptr);
}

TEST_F(FileSpecLists, ARemovedSpecIsHandedBack) {
    for (const char* name : {"a", "b", "c"}) FileSpecListExtend(&list, CreateFileSpec(name));
    OwnedFileSpec removed(FileSpecListGet(list, 1));
    EXPECT_EQ(FileSpecListRemove(&list, removed.get()), 0);
    EXPECT_EQ(names(), "a c ");
    EXPECT_STREQ(removed->fullName, "b");
    EXPECT_EQ(FileSpecListRemove(&list, removed.get()), 4);
}

TEST_F(FileSpecLists, AListOfAbsurdLengthThrows) {
    EXPECT_THROW(FileSpecListNew(~0ul), HEXInternalException);
    EXPECT_THROW(FileSpecListNew(~0ul / 8), HEXInternalException);
}

TEST_F(FileSpecLists, ANewListThrowsWhenMemoryIsExhausted) {
    CapturedAlerts alerts;
    failTrackedAllocation(1);
    try {
        FileSpecListNew(3);
        FAIL() << "no exception";
    } catch (const HEXInternalException& e) {
        EXPECT_STREQ(e.what(), "The application has run out of memory");
    }
}

} // namespace
