// token_types_test.cpp - the tree of kinds and membership in lists.
// SPDX-License-Identifier: Apache-2.0
#include "ParseUtils/token_types.h"
#include "support/parse.h"

#include <gtest/gtest.h>

using memdata::testing::kindName;

TEST(TokenTypes, ANodeKnowsItsPlaceInItsParent) {
    EXPECT_EQ(kOPERATOR_TOKEN.level, 0u);
    EXPECT_EQ(kEND_OF_FILE_OP.level, 1u);
    EXPECT_EQ(kEND_OF_FILE.level, 2u);
    EXPECT_EQ(kEND_OF_FILE.parent, &kEND_OF_FILE_OP);
    EXPECT_EQ(kEND_OF_FILE_OP.parent, &kOPERATOR_TOKEN);
    EXPECT_EQ(kOPERATOR_TOKEN.parent, nullptr);
}

TEST(TokenTypes, OperatorClassesStandInTheirOrder) {
    const token_type* classes[] = {&kEND_OF_FILE_OP, &kEND_OF_LINE_OP, &kCOMMENT_OP, &kRELATIONAL_OP, &kSTRING_OP,
        &kASSIGNMENT_OP, &kSHIFT_OP, &kINC_DEC_OP, &kPOINTER_INDIRECT_OP, &kARITHMETIC_OP, &kUNARY_NEGATION_OP,
        &kPUNCTUATION_OP};
    EXPECT_EQ(kOPERATOR_TOKEN.childCount, std::size(classes));
    for (u32 i = 0; i < std::size(classes); ++i) EXPECT_EQ(classes[i]->ordinal, i) << kindName(classes[i]);
}

TEST(TokenTypes, PreprocessClassesStandInTheirOrder) {
    const token_type* classes[] = {&kMACRO_EXPANSION_TOKEN, &kPREPROCESS_TOKEN, &kPRAGMA_OPERATION_TOKEN,
        &kPRAGMA_ENABLE_MODES_TOKEN, &kPRAGMA_TRACE_MODES_TOKEN, &kPREPROCESS_BUILTIN_TOKEN};
    EXPECT_EQ(kPREPROCESS_KEYWORD.childCount, std::size(classes));
    for (u32 i = 0; i < std::size(classes); ++i) EXPECT_EQ(classes[i]->ordinal, i) << kindName(classes[i]);
}

TEST(TokenTypes, FreeStandingKindsHaveNoParent) {
    for (const token_type* type : {&kWHITESPACE_TOKEN, &kIDENTIFIER_TOKEN, &kQUOTED_STRING_TOKEN, &kQUOTED_TEXT_TOKEN,
             &kLITERAL_CHARACTER_TOKEN, &kTEXT_STRING_TOKEN, &kCOMMENT_BLOCK_TOKEN})
        EXPECT_EQ(type->parent, nullptr) << kindName(type);
}

TEST(OneOfTokens, ALeafInAListMatchesItselfOnly) {
    const token_type* list[] = {&kCOLON, &kRIGHT_BRACKET, nullptr};
    EXPECT_TRUE(One_Of_Tokens(&kCOLON, list));
    EXPECT_TRUE(One_Of_Tokens(&kRIGHT_BRACKET, list));
    EXPECT_FALSE(One_Of_Tokens(&kSEMICOLON, list));
    EXPECT_FALSE(One_Of_Tokens(&kPUNCTUATION_OP, list));
}

TEST(OneOfTokens, AClassInAListMatchesItsLeaves) {
    const token_type* list[] = {&kARITHMETIC_OP, nullptr};
    EXPECT_TRUE(One_Of_Tokens(&kADDITION, list));
    EXPECT_FALSE(One_Of_Tokens(&kCOLON, list));
    EXPECT_FALSE(One_Of_Tokens(&kARITHMETIC_OP, list));
    EXPECT_FALSE(One_Of_Tokens(&kIDENTIFIER_TOKEN, list));
}

TEST(OneOfTokens, ARootInAListMatchesTheLeavesOfItsClasses) {
    const token_type* list[] = {&kOPERATOR_TOKEN, nullptr};
    EXPECT_TRUE(One_Of_Tokens(&kADDITION, list));
    EXPECT_FALSE(One_Of_Tokens(&kARITHMETIC_OP, list));
    EXPECT_FALSE(One_Of_Tokens(&kINTEGER_NUMBER, list));
}

TEST(OneOfTokens, AParentlessClassOrRootMatchesItself) {
    static constexpr token_type freeClass{nullptr, 1, 0, 0};
    const token_type* list[] = {&freeClass, &kOPERATOR_TOKEN, nullptr};
    EXPECT_TRUE(One_Of_Tokens(&freeClass, list));
    EXPECT_TRUE(One_Of_Tokens(&kOPERATOR_TOKEN, list));
}

TEST(OneOfTokens, FreeStandingKindsMatchThemselves) {
    const token_type* list[] = {&kWHITESPACE_TOKEN, &kIDENTIFIER_TOKEN, nullptr};
    EXPECT_TRUE(One_Of_Tokens(&kIDENTIFIER_TOKEN, list));
    EXPECT_FALSE(One_Of_Tokens(&kQUOTED_STRING_TOKEN, list));
}

TEST(OneOfTokens, NullMatchesNothing) {
    const token_type* list[] = {&kCOLON, nullptr};
    const token_type* empty[] = {nullptr};
    EXPECT_FALSE(One_Of_Tokens(nullptr, list));
    EXPECT_FALSE(One_Of_Tokens(&kCOLON, empty));
    EXPECT_FALSE(One_Of_Tokens(&kCOLON, nullptr));
}
