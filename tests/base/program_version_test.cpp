#include <base/ProgramVersion.h>
#include <gtest/gtest.h>

TEST(ProgramVersion, HasTheFirstThreeNumbersOfTheProductVersion)
{
    EXPECT_EQ(base::ProgramVersion(), L"3.1.4");
}
