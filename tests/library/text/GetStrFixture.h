#pragma once

#include <gtest/gtest.h>
#include <test_support/LogCapture.h>
#include <test_support/TestStringTable.h>
#include <Utils_Statics/GetStr.h>

#include <string>
#include <vector>

using test_support::TestStringTable;

// A text of ASCII characters only.
inline std::wstring Wide(const std::string& text)
{
    return std::wstring(text.begin(), text.end());
}

// The message when a translation is not used.
inline test_support::LoggedMessage DoesNotMatch(const std::string& key, const std::string& text,
                                                const std::string& base)
{
    return {"Utils_Statics/Utils_Statics", 1170, 1,
            L"[" + Wide(key) + L"] - The string '" + Wide(text) +
                L"' could not be formated.  It probably doesn't match the format specifier(s) "
                L"found in '" +
                Wide(base) + L"'."};
}

// The message when no text is usable.
inline test_support::LoggedMessage NotSatisfied(int line, const std::string& key,
                                                const std::string& text)
{
    return {"Utils_Statics/Utils_Statics", line, 1,
            L"[" + Wide(key) + L"] - The string '" + Wide(text) +
                L"' could not be formated.  It's likely that the expected format specifier(s) were "
                L"not satisfied."};
}

using Messages = std::vector<test_support::LoggedMessage>;

class GetStrTest : public testing::Test
{
protected:
    TestStringTable table;
    test_support::LogCapture log;
};
