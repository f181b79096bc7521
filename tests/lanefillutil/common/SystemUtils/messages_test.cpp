// messages_test.cpp - the table of numbered messages: complete, ordered, worded as agreed.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/messages.h"

#include <gmock/gmock.h>

#include <set>
#include <string>

namespace {

using memdata::kALERT_MESSAGES;
using memdata::NamedAlertMessage;

// Exactly as a user reads them; typed here a second time, so that a slip in the table shows.
struct MessageCase {
    Alert_message_type message;
    u32 number;
    const char* text;
};
const MessageCase kWORDED_MESSAGES[] = {
    {kNULL_MESSAGE, 0, ""},
    {kERROR_OPENING_FILE, 1,
        "File '%s' can not be found, or is busy.\n    Please ensure that the file is available in the correct\n    "
        "directory location, or isn't being locked by another\n    application."},
    {kERROR_CREATING_FILE, 2,
        "File '%s' can not be created, or is write protected.\n    Please ensure that the directory path exists, or "
        "the file\n    isn't write protected or being locked by another application."},
    {kERROR_UNKNOWN_DATA_FILE_EXTENSION, 3, "Unknown file extension on data file '%s'."},
    {kERROR_UNRECOGNIZED_BIT_DEVICE_TYPE, 4, "Unrecognized device type in .bit file, '%s'."},
    {kERROR_MISSING_DATA_FILE_NAME, 5, "A data file to dump was missing."},
    {kERROR_ILLEAGAL_TOKEN_AND_EXPECTED, 6, "Illegal token '%s', '%s' expected."},
    {kERROR_DATA_FILE_WAS_EMPTY, 9, "Data file '%s' had no section data."},
    {kERROR_UNEXPECTED_SYMBOL_AND_EXPECTED, 11, "Unexpected symbol '%s', '%s' expected."},
    {kERROR_UNEXPECTED_KEYWORD, 13, "Unexpected keyword '%s', %s."},
    {kERROR_MISSING_KEYWORD_AND_EXPECTED, 14, "Missing keyword. '%s' found, '%s' expected."},
    {kERROR_MISSING_STATEMENT_TERMINATOR, 15, "Missing statement terminator. '%s' found, '%s' expected."},
    {kERROR_BIT_LANE_GAP, 18, "Bit lane GAP in ADDRESS_SPACE '%s'.\n    '%s [%ld:%ld]'\n    '%s [%ld:%ld]'"},
    {kERROR_BIT_LANE_BEGINNING_GAP, 19, "Bit lane GAP before Bit Lane, in ADDRESS_SPACE '%s'.\n    '%s [%ld:%ld]'"},
    {kERROR_BIT_LANE_ENDING_GAP, 20, "Bit lane GAP after Bit Lane, in ADDRESS_SPACE '%s'.\n    '%s [%ld:%ld]'"},
    {kERROR_BIT_LANE_OVERLAP, 21, "Bit lane OVERLAP in ADDRESS_SPACE '%s'.\n    '%s [%ld:%ld]'\n    '%s [%ld:%ld]'"},
    {kERROR_BLOCK_ADDRESS_GAP, 22,
        "Address GAP in ADDRESS_SPACE '%s'.\n    '%s [0x%08lX:0x%08lX]'\n    '%s [0x%08lX:0x%08lX]'"},
    {kERROR_BLOCK_ADDRESS_OVERLAP, 23,
        "Address OVERLAP in ADDRESS_SPACE '%s'.\n    '%s [0x%08lX:0x%08lX]'\n    '%s [0x%08lX:0x%08lX]'"},
    {kERROR_INCONSISTENT_BIT_LANE_WIDTH, 25,
        "Inconsistent bit lane width in ADDRESS_SPACE '%s'.\n    '%s [%ld:%ld]' is by %ld\n    '%s [%ld:%ld]' is by "
        "%ld"},
    {kERROR_ILLEAGAL_BIT_LANE_WIDTH, 26,
        "Illegal bit lane width in ADDRESS_SPACE '%s'.\n    '%s [%ld:%ld]' is %ld bits wide. Only %s bit widths are "
        "allowed for this device."},
    {kERROR_ILLEAGAL_BLOCK_BYTE_SIZE, 27,
        "Inconsistent bus block definition in ADDRESS_SPACE '%s'.\n    '%s [0x%08lX:0x%08lX]' is defined as %ld "
        "bytes,\n    but %ld Bit Lane bytes was found."},
    {kERROR_INCONSISTENT_ADDRESS_SPACE_SIZE, 29,
        "Inconsistent address space size in ADDRESS_SPACE '%s'.\n    ADDRESS_SPACE was defined as 0x%08lX bytes, but "
        "the ADDRESS_RANGE total is 0x%08lX bytes."},
    {kERROR_OUT_OF_BOUNDS_CODE_SEGMENT, 31,
        "Out of bounds code segment for ram space in '%s'.\n    Memory space '%s' occupies [0x%08lX:0x%08lX]\n    "
        "Code segment #%ld occupies [0x%08lX:0x%08lX]"},
    // Its own newline and the one that every message gets leave an empty line.
    {kERROR_SEGMENT_EXCEEDED_ADDRESSING, 32,
        "Data segment starting at 0x%08lX, has exceeded 0xFFFFFFFF addressing boundary.\n"},
    {kERROR_CODE_SEGMENT_NOT_MAPPED, 33,
        "Matching ADDRESS_SPACE for code segment #%ld not found in '%s'.\n    Code segment #%ld occupies "
        "[0x%08lX:0x%08lX]"},
    {kERROR_ADDRESS_BLOCK_NAME_DUPLICATE, 34, "Duplicate ADDRESS_SPACE or ADDRESS_MAP name usage '%s'."},
    {kERROR_BRAM_INSTANCE_NAME_DUPLICATE, 35, "Duplicate instance name usage in address space '%s'."},
    {kERROR_MISSING_FILE_EXTENSION, 36, "Missing file extension on file name '%s'."},
    {kERROR_ILLEGAL_MEM_DATA_VALUE, 40,
        "Illegal MEM file data value '%s'.\n    Make sure that prefixes (such as '0x') aren't used."},
    {kERROR_ILLEGAL_EXTERNAL_MEMORY_SIZE, 41,
        "Illegal MEMORY address space size for ADDRESS_SPACE '%s' (0x%08lX bytes).\n    Size must be an even multiple "
        "of the BUS_BLOCK bus widths (0x%08lX bytes)."},
    {kFATAL_RELEASE_OF_NIL_POINTER, 42, "Release of NIL pointer."},
    {kFATAL_RELEASE_OF_UNKNOWN_POINTER, 43, "Release of unknown memory pointer, 0x%08lX."},
    {kFATAL_OUT_OF_MEMORY, 44,
        "Out of memory allocating '%s' object of %ld bytes.\n    Total memory already in use is %lld bytes."},
    {kFATAL_MEMORY_LEAK, 45,
        "Memory allocation leak of %ld bytes at 0x%08lX for %s.\n    Total memory in use at allocation was %ld "
        "bytes."},
    {kWARNING_UNLOCED_ADDRESSBLOCK_BRAMS, 47,
        "Not all BitLanes in ADDRESS_SPACE '%s' have BMM location constraints.\n    Some data for this ADDRESS_SPACE "
        "may be lost during BIT file\n    replacement. Verify that the BMM file has location constraints for all Bit "
        "Lanes."},
    {kERROR_UNKNOWN_OR_CORRUPTED_DATA_FILE_FORMAT, 52, "Unknown or corrupted data file format, '%s'."},
    {kERROR_EMPTY_INPUT_FILE, 53, "File '%s' is empty or has no %s content."},
    // No blank ahead of "in".
    {kERROR_DUPLICATE_PROCESSOR_ID_VALUE, 54,
        "Duplicate ADDRESS_MAP ID value '%ld'in '%s' MAP, already used in '%s' ADDRESS_MAP."},
    {kERROR_EMPTY_FILE_NAME, 55, "A null file name was given for a '%s' file."},
    // No period.
    {kERROR_BD_EXPECTED_TAG_SPACE_NAME, 62, "Expected the 'tag' address space name"},
    {kERROR_MF_OPTION_MODIFER_ERROR, 63, "mf: %s, '%s'."},
    {kERROR_MF_REFERENCE_NAME_ALREADY_EXISTS, 64, "mf: reference name '%s' is already used."},
    {kERROR_MF_ILLEGAL_CREATION_SEPARATOR, 65,
        "mf: illegal BMM Creation Separator argument '%s'.\n    Instead, encountered '%s'."},
    {kERROR_MF_BMM_FILE_NAME, 66, "mf: option missing .bmm filename argument."},
    {kERROR_O_DUPLICATE_FILE_TYPE_SPECIFIER, 69, "Previous -o option already defined a %s output name."},
    {kERROR_UNSUPPORTED_FPGA_DEVICE_NAME, 74,
        "Unsupported FPGA device name '%s'. Verify that the specified device is a valid customer supported device."},
    {kERROR_BOOTING_FROM_NON_BOOTABLE_FILE, 78,
        "CPU booting was requested from a file that doesn't contain a boot address, '%s'."},
    {kERROR_MF_REFERENCE_NAME_NOT_DEFINED, 79,
        "mf: reference name '%s' wasn't defined in a previous reference definition."},
    {kWARNING_UNMATCHED_ADDRESS_TAG_NAMES, 80,
        "ADDRESS_SPACE or ADDRESS_MAP tag name '%s' was not found.\n    Some data may have not been translated."},
    {kERROR_UNMATCHED_PAREN_AND_EXPECTED, 81, "Unmatched expression parenthesis '%s', %s found instead."},
    {kERROR_MESSAGE_STRING, 86, "%s"},
    {kMISSING_ENCLOSING_CONTEXT, 87, "An enclosing #while or #for loop was not found for the #%s statement."},
    {kERROR_UNRECOGNIZED_REGISTER_ADDRESS_TYPE, 89,
        "Unrecognized register address %ld from command word value '0x%08lX' with accumulated CRC '0x%08lX' at %ld "
        "bytes into .bit file, '%s'."},
    {kERROR_BRAM_INSTANCE_NOT_FOUND, 90,
        "The BRAM instance '%s' could not be found in the netlist.\n    Please verify the instance name in the BMM "
        "file and the netlist."},
    {kERROR_BMM_AND_PART_NAME_MISSING, 92,
        "Both the BMM file name and part name must be specified.\n    Please verify the BMM file and part name are "
        "specified."},
    {kERROR_INCONSISTENT_ADDRESS_RANGE_SIZE, 93,
        "Inconsistent address range size in ADDRESS_RANGE '%s'.\n    ADDRESS_RANGE was defined as 0x%09llX bytes, but "
        "the devices total 0x%09llX bytes."},
    {kERROR_ILLEAGAL_ADDRESSTEMPLATE_SIZE_SPEC, 94,
        "Illegal ADDRESS_TEMPLATE size specification. Only one number is allowed, which is the total memory device "
        "byte size."},
    {kERROR_INCONSISTENT_INSTANCE_PATH, 95,
        "Inconsistent instance path '%s', in ADDRESS_SPACE '%s'.\n    All instance paths in an ADDRESS_SPACE must be "
        "either relative or absolute"},
    {kERROR_ILLEAGAL_ADDRESSINSTANCE_BASE_SPEC, 96,
        "Illegal ADDRESS_INSTANCE base address specification. Only one number is allowed, which is the instance base "
        "address."},
    {kERROR_SPACE_INSTANCE_NAME_DUPLICATE, 97, "Duplicate instance name usage, '%s', in address space '%s'."},
    {kERROR_UNKNOWN_MEMORY_TYPE_FOR_DEVICE, 104,
        "Unknown memory type, '%s', for the specified device '%s'. Or unknown user defined memory type."},
    {kERROR_DUPLICATE_BRAM_LOC, 105,
        "Duplicate BRAM location constraint, 'X%ldY%ld'. Another BRAM is already LOC'ed to this location.\n    Devices "
        "with multiple BRAM sizes can have different constraint values for the same location."},
    {kERROR_UNSUPPORTED_BIT_FILE_REPLACEMENT, 109,
        "Bit file replacement of BRAMs for this device is not yet supported.\n    Support will be added in a later VEK "
        "release."},
    {kERROR_NO_BMM_FILES_SPECIFIED, 112, "No BMM files were specified with '-bm' options."},
    {kERROR_NO_BRAM_ADDRESS_SPACES_FOUND, 113,
        "No BMM Address Spaces were found that contained BRAMs.\n    Only BRAM constructed Address Spaces can be used "
        "for %s.\n    Please verify that the BMM Memory types are RAMB style Memories."},
    {kERROR_UNSUPPORTED_BIT_FILE_FORMAT, 114,
        "Currently %s bit files are not supported by Lanefill during bit stream replacement.\n    Instead, use the same "
        "-bd option used on the Lanefill command line\n    on the Bitforge command line when making the %s bit file. "
        "This\n    will replace the same BRAM contents, but instead during the bit file\n    creation process."},
    {kERROR_REPLACING_FILE_EXTENSION, 115, "The file extension on '%s' was replaced with the default extension .%s."},
    {kERROR_UNSUPPORTED_MEMORY_TYPE_FOR_DEVICE, 116,
        "Currently unsupported memory type by Lanefill, '%s'. Support will be added in a later release."},
    {kERROR_OVERWRITING_FILE, 117,
        "File '%s' already exists, and an attempt was made to overwrite it.\n    Use a different file name, or use the "
        "'-w on' option to force file overwrites."},
    {kERROR_USE_BX_OPTION_FOR_MEM_OUTPUT, 119,
        "\"-o m\" option syntax is no longer used to create individual MEM files for devices.\n    Instead, use the "
        "\"-bx\" option. Use \"-h bx\" option for more information."},
    {kERROR_INVALID_OR_CORRUPTED_BIT_STREAM_HEADER, 124,
        "Invalid or corrupted bit stream file header in file '%s'.\n    Please recheck the creation process for this bit "
        "stream file."},
    {kERROR_UNDEFINED_ADDRESS_SPACE_IN_ADDRESS_MAP, 134,
        "Undefined Embedded Address Space '%s' referenced in Address Map '%s'.\n    Please recheck the definition of "
        "this Embedded Address Space."},
    {kERROR_MISSING_ADDRESS_SPACES_IN_ADDRESS_MAP, 135,
        "The Embedded Address Map '%s' has no Address Spaces defined for it.\n    Please recheck the definition of this "
        "Embedded Address Map."},
};

// Numbers of messages whose text no row above repeats.
struct NumberCase {
    Alert_message_type message;
    u32 number;
};
const NumberCase kNUMBERED_MESSAGES[] = {
    {kERROR_ILLEGAL_IDENTIFIER_AND_EXPECTED, 7},
    {kERROR_EOL_ENCOUNTERED_AND_EXPECTED, 8},
    {kERROR_UNEXPECTED_IDENTIFIER_AT_EOL, 10},
    {kERROR_UNEXPECTED_KEYWORD_AND_EXPECTED, 12},
    {kERROR_MISSING_BUSBLOCK_ADDRESS_SPEC, 16},
    {kERROR_MISSING_ADDRESSBLOCK_ADDR_SPEC, 17},
    {kERROR_INCONSISTENT_BIT_ORDERING, 24},
    {kERROR_INCONSISTENT_BLOCK_BYTE_SIZE, 28},
    {kERROR_INCONSISTENT_BLOCK_BIT_ORDERING, 30},
    {kERROR_ILLEAGAL_FILE_OR_PATH_SYMBOL, 37},
    {kERROR_ILLEAGAL_FILE_NAME_SYMBOL, 38},
    {kERROR_UNMATCHED_NESTED_C_COMMENT, 39},
    {kWARNING_DEPRECATED_ADDRESS_BLOCK_USAGE, 46},
    {kINFO_BRAMS_PLACED_AT, 48},
    {kSTATUS_COMMAND_LINE, 49},
    {kSTATUS_COMMAND_PATH, 50},
    {kERROR_MISSING_BMM_FILE_NAME, 56},
    {kERROR_MISSING_ELF_OR_MEM_FILE_NAME, 57},
    {kERROR_BD_MISSING_ELF_OR_MEM_FILE_NAME, 58},
    {kERROR_BD_MISSING_TAG_OR_KEYWORD, 59},
    {kERROR_BD_MISSING_ONE_BOOT_SPECIFIER_ALLOWED, 60},
    {kERROR_BD_MISSING_ONE_TAG_SPACE_NAME_ALLOWED, 61},
    {kERROR_ILLEAGAL_CHAR_SPECIFIER, 67},
    {kERROR_DUPLICATE_CHAR_SPECIFIER, 68},
    {kERROR_O_MISSING_TYPE_SPECIFIER, 70},
    {kERROR_O_MISSING_FILE_NAME, 71},
    {kERROR_F_OPTION_FILE_ERROR, 72},
    {kERROR_F_ONLY_ONE_OPTION_FILE_ALLOWED, 73},
    {kERROR_ILLEGAL_ON_OFF_SPECIFIER, 75},
    {kERROR_INTSTYLE_ILLEGAL_SPECIFIER, 76},
    {kERROR_INTSTYLE_MISSING_SPECIFIER, 77},
    {kERROR_UNMATCHED_PREPROCESS_AND_EXPECTED, 82},
    {kERROR_UNEXPECTED_PREPROCESS_AND_EXPECTED, 83},
    {kERROR_ILLEAGAL_MACRO_REDEFINITION, 84},
    {kWARNING_DUPLICATE_MACRO_DEFINITION, 85},
    {kERROR_ILLEGAL_IDENTIFIER, 88},
    {kWARNING_BRAM_INSTANCE_ALREADY_LOCED, 91},
    {kERROR_DUPLICATE_SYMBOL_NAME, 98},
    {kERROR_ILLEAGAL_MEMORY_TYPE_SIZE_SPEC, 99},
    {kINFO_UPDATING_BMM_LOCS, 100},
    {kERROR_INCONSISTENT_LOC_PLACEMENT, 101},
    {kERROR_MISSING_DESIGN_BMM_INFO, 102},
    {kINFO_BMM_INFORMATION_NOT_UPDATED, 103},
    {kERROR_INCONSISTENT_ADDRESS_RANGE_WIDTH, 106},
    {kERROR_ILLEAGL_LOC_ATTEMPT, 107},
    {kERROR_BD_MISSING_ONE_START_ADDRESS_ALLOWED, 108},
    {kWARNING_BRAM_INIT_FILE_NAME_REPLACED, 110},
    {kERROR_MISSING_SYMBOL_AND_EXPECTED, 111},
    {kINFO_KEY_FILE_FOUND_AND_WILL_BE_USED, 118},
    {kERROR_D_MISSING_EQUAL_SYMBOL, 120},
    {kERROR_EXCEEDED_INIT_FILE_LIMIT, 121},
    {kERROR_ILLEAGAL_INIT_DATA_SPACE_OPERATOR, 122},
    {kERROR_DUPLICATE_INIT_DATA_SPACE_SPECIFIER, 123},
    {kERROR_BM_MISSING_TAG_OR_KEYWORD, 125},
    {kERROR_DATASET_MISSING_ELF_OR_MEM_FILE_NAME, 126},
    {kERROR_UNKNOWN_PARTITION_ATTRIBUTE, 127},
    {kERROR_MISSING_NAME_SEPARATOR, 128},
    {kERROR_MISSING_SECTION_NAME, 129},
    {kERROR_DUPLICATE_SECTION_NAME, 130},
    {kERROR_ATTRIBUTES_AFTER_SECTION_NAME, 131},
    {kERROR_ATTRIBUTES_DEFINED_TWICE, 132},
    {kERROR_TOP_GROUP_SPEC_MISSING, 133},
    {kERROR_ILLEGAL_FILL_BYTE_TYPE, 136},
    {kERROR_MULTIPLE_FSBL_CODE_SECTIONS, 137},
    {kERROR_MUTUALLY_EXCLUSIVE_ATTRIBUTES, 138},
    {kERROR_NON_BYTE_ATTRIBUTE_VALUE, 139},
    {kERROR_ILLEGAL_DATA_OFFSET_VALUE, 140},
    {kERROR_ILLEGAL_OUTPUT_FORMAT_SPECIFIER, 141},
    {kERROR_ILLEGAL_DATA_RESERVE_VALUE, 142},
    {kERROR_UNKNOWN_BMM_FILE_EXTENSION, 143},
};

// The first thing in a format that the engine's formatter would not render as a person expects; empty when
// every conversion is one of %s, %c, %ld, %lld and the padded hexadecimal forms.
std::string unknown_conversion(const std::string& text) {
    for (size_t at = text.find('%'); at != std::string::npos; at = text.find('%', at + 1)) {
        const char* const kKNOWN[] = {"%s", "%c", "%ld", "%lld", "%08lX", "%09llX"};
        const bool known = std::ranges::any_of(
            kKNOWN, [&](const char* form) { return text.compare(at, std::string(form).size(), form) == 0; });
        if (!known) return text.substr(at, 6);
    }
    return "";
}

TEST(Messages, ThereAreOneHundredAndFortyThree) {
    EXPECT_EQ(std::size(kALERT_MESSAGES), 143u);
}

TEST(Messages, NumbersAscendFrom0To143WithoutNumber51) {
    u32 expected = 0;
    for (const NamedAlertMessage& message : kALERT_MESSAGES) {
        if (expected == 51) ++expected;
        EXPECT_EQ(message.number, expected) << message.name;
        ++expected;
    }
    EXPECT_EQ(expected, 144u);
}

TEST(Messages, NamesAreUnique) {
    std::set<std::string> names;
    for (const NamedAlertMessage& message : kALERT_MESSAGES)
        EXPECT_TRUE(names.insert(message.name).second) << message.name;
}

TEST(Messages, TextsAreUnique) {
    std::set<std::string> texts;
    for (const NamedAlertMessage& message : kALERT_MESSAGES)
        EXPECT_TRUE(texts.insert(message.text).second) << message.name;
}

TEST(Messages, OnlyTheNullMessageHasNoText) {
    for (const NamedAlertMessage& message : kALERT_MESSAGES)
        EXPECT_EQ(*message.text == '\0', message.number == 0) << message.name;
}

TEST(Messages, UseOnlyConversionsOfTheFormatter) {
    for (const NamedAlertMessage& message : kALERT_MESSAGES)
        EXPECT_EQ(unknown_conversion(message.text), "") << message.name;
}

TEST(Messages, HoldNoBackslashThatTheFormatterWouldTakeForAnEscape) {
    for (const NamedAlertMessage& message : kALERT_MESSAGES)
        EXPECT_EQ(std::string(message.text).find('\\'), std::string::npos) << message.name;
}

TEST(Messages, ContinuationLinesAreIndentedByFour) {
    for (const NamedAlertMessage& message : kALERT_MESSAGES) {
        const std::string text = message.text;
        for (size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 1)) {
            const std::string next = text.substr(at + 1, 5);
            EXPECT_TRUE(next.empty() || (next.starts_with("    ") && next.back() != ' ')) << message.name;
        }
    }
}

TEST(Messages, SayTheAgreedWords) {
    for (const MessageCase& c : kWORDED_MESSAGES) {
        EXPECT_EQ(c.message.number, c.number) << c.text;
        EXPECT_STREQ(c.message.text, c.text) << c.number;
    }
}

TEST(Messages, HaveTheAgreedNumbers) {
    EXPECT_EQ(std::size(kWORDED_MESSAGES) + std::size(kNUMBERED_MESSAGES), std::size(memdata::kALERT_MESSAGES));
    for (const NumberCase& c : kNUMBERED_MESSAGES) EXPECT_EQ(c.message.number, c.number) << c.message.text;
}

} // namespace
