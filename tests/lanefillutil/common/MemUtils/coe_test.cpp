// coe_test.cpp - COE texts: a radix, and a vector of values.
// SPDX-License-Identifier: Apache-2.0
#include "mem_file_test.h"

namespace memdata::testing {
namespace {

constexpr const char* kNO_PREFIX = "valid data value. Make sure that prefix values (such as 0x) aren't used";
constexpr const char* kNO_COMMA =
    "valid data value. Commas stand only between the values of a memory_initialization_vector";

class Coe : public MemFileTest {
protected:
    // Alert 11 at the only line of a text, with the caret at a column from 0.
    static std::string unexpected(const char* symbol, const char* expected, const std::string& line, size_t column) {
        return formatted("status 2\nERROR:Lanefill:11 - Unexpected symbol '%s', '%s' expected.\n"
                         "   Line #1, File \"data.mem\".\n%s\n%s^\n\n",
            symbol, expected, line, std::string(column, ' '));
    }
};

TEST_F(Coe, AVectorMayBeSeparatedByBlanksCommasAndLineEnds) {
    EXPECT_EQ(read("memory_initialization_radix=16;\nmemory_initialization_vector=\n12, 34,56\n78\n,9A BC;\n"),
        "0:123456789ABC");
}

TEST_F(Coe, ABinaryVectorCountsEachDigit) {
    EXPECT_EQ(read("memory_initialization_radix = 2 ;\nmemory_initialization_vector =\n1111,\n0000,\n1;"), "0:F080/9");
}

TEST_F(Coe, TheWordsIgnoreCase) {
    EXPECT_EQ(read("MEMORY_INITIALIZATION_RADIX=2;\nMemory_Initialization_Vector=10000001;"), "0:81");
}

TEST_F(Coe, TheRadixIsDecimal) {
    EXPECT_EQ(
        read("memory_initialization_radix=2;memory_initialization_radix=16;memory_initialization_vector=AB;"), "0:AB");
}

TEST_F(Coe, WithoutARadixTheDefaultHolds) {
    EXPECT_EQ(read("memory_initialization_vector=1F;"), "0:1F");
    EXPECT_EQ(read("memory_initialization_vector=11110000;", 2), "0:F0");
}

TEST_F(Coe, ASecondVectorGoesOnBehindTheFirst) {
    EXPECT_EQ(read("memory_initialization_vector=1;memory_initialization_vector=2,3;4 5"), "0:123450/20");
}

TEST_F(Coe, AVectorMayStandInASection) {
    EXPECT_EQ(read("@20 memory_initialization_vector=12,34; @30 56"), "20:1234 30:56");
}

TEST_F(Coe, CommentsAndMacrosWorkInVectors) {
    EXPECT_EQ(
        read("#define ZERO 00\nmemory_initialization_vector= // values\n12, /* gap */ ZERO, ZERO\n34;"), "0:12000034");
}

TEST_F(Coe, AValueWithoutDataRadixIsRefused) {
    EXPECT_EQ(read("memory_initialization_radix=10; memory_initialization_vector=12;"),
        unexpected("12", "valid data value", "memory_initialization_radix=10; memory_initialization_vector=12;", 61));
}

TEST_F(Coe, TheRadixStatementHasItsEqualSignItsNumberAndItsEnd) {
    EXPECT_EQ(read("memory_initialization_radix 16;"), unexpected("16", "=", "memory_initialization_radix 16;", 28));
    EXPECT_EQ(
        read("memory_initialization_radix=;"), unexpected(";", "radix value", "memory_initialization_radix=;", 28));
    EXPECT_EQ(read("memory_initialization_radix=16,"), unexpected(",", ";", "memory_initialization_radix=16,", 30));
}

TEST_F(Coe, TheVectorStatementHasItsEqualSignAndItsEnd) {
    EXPECT_EQ(read("memory_initialization_vector 1;"), unexpected("1", "=", "memory_initialization_vector 1;", 29));
    EXPECT_EQ(read("memory_initialization_vector=1 G;"), unexpected("G", ";", "memory_initialization_vector=1 G;", 31));
    EXPECT_EQ(read("memory_initialization_vector=1 2"),
        "status 2\nERROR:Lanefill:11 - Unexpected symbol 'end-of-file', ';' expected.\n"
        "   Line #1, File \"data.mem\".\n\n");
}

TEST_F(Coe, ACommaStandsBetweenTwoValuesOnly) {
    EXPECT_EQ(
        read("memory_initialization_vector=,1;"), unexpected(",", kNO_COMMA, "memory_initialization_vector=,1;", 29));
    EXPECT_EQ(read("memory_initialization_vector=1,,2;"),
        unexpected(",", kNO_COMMA, "memory_initialization_vector=1,,2;", 31));
    EXPECT_EQ(read("memory_initialization_vector=1 , , 2;"),
        unexpected(",", kNO_COMMA, "memory_initialization_vector=1 , , 2;", 33));
}

TEST_F(Coe, BehindACommaThereIsAValue) {
    EXPECT_EQ(
        read("memory_initialization_vector=1,;"), unexpected(";", kNO_PREFIX, "memory_initialization_vector=1,;", 31));
    EXPECT_EQ(read("memory_initialization_vector=1,2x;"),
        unexpected("2x", kNO_PREFIX, "memory_initialization_vector=1,2x;", 31));
}

TEST_F(Coe, AVectorMayBeEmptyButAFileMayNot) {
    EXPECT_EQ(read("memory_initialization_vector=; @10 AB"), "10:AB");
    EXPECT_EQ(read("memory_initialization_vector=;"),
        "status 2\nERROR:Lanefill:9 - Data file 'data.mem' had no section data.\n\n");
}

} // namespace
} // namespace memdata::testing
