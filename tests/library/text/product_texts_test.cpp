// This program has no version resource. What the product texts are with one is tested in
// text_test.cpp.
#include "TestStringTable.h"

#include <Utils_Statics/utilsExam.h>

#include <gtest/gtest.h>

namespace {

// The four texts are then the one for texts that are not set, and stay so once read.
TEST(VersionTexts, SayThatTheyAreNotSetWithoutAVersionResource)
{
    EXPECT_TRUE(utilsExam::GetStringTableEntry(L"ProductVersion").IsEmpty());
    {
        TestStringTable table;
        table.Add("product.description.notset", "not set", "nicht gesetzt");
        table.Load();
        EXPECT_STREQ(utilsExam::GetProductVersion(), L"nicht gesetzt");
        EXPECT_STREQ(utilsExam::GetProductName(), L"nicht gesetzt");
        EXPECT_STREQ(utilsExam::GetProductPublisher(), L"nicht gesetzt");
        EXPECT_STREQ(utilsExam::GetBuildDate(), L"nicht gesetzt");
    }
    EXPECT_STREQ(utilsExam::GetProductVersion(), L"nicht gesetzt");
}

} // namespace
