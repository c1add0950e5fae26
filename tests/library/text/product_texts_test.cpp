// This program has no version resource. text_test.cpp tests the product texts with one.
#include <gtest/gtest.h>
#include <test_support/TestStringTable.h>
#include <Utils_Statics/utilsExam.h>

using test_support::TestStringTable;

namespace {

// Each of the four texts is then the one for "not set", and stays so once read.
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
