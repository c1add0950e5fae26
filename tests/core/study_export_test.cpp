// Tables and reports say what a study holds. Programs that did not write them read them in
// check-study-exports.
#include "study/MeasurementTable.h"
#include "study/ReportPage.h"
#include "study/StudyTexts.h"
#include "StudySamples.h"

#include <base/Encoding.h>
#include <gtest/gtest.h>
#include <test_support/ChildTest.h>
#include <test_support/Files.h>
#include <test_support/Program.h>
#include <zel_string_convert/TableLoading.h>

using namespace study_samples;

namespace {

const std::wstring oddName = L"\"a\", b; <b>&amp;</b>\r\n\x00E4 \xD83D\xDE00 'q' </table>";

class StudyExportTest : public testing::Test
{
protected:
    StudyExportTest()
    {
        EXPECT_TRUE(zel_string_convert::LoadTable(test_support::BesideProgram(L"sample\\strings")));
        m_study.SetPatient({oddName, L"4711", L"1969-07-20", L"other", L"first line\nsecond line"});
        m_study.SetDescription(L"2026-01-15", L"Abdomen");
    }
    ~StudyExportTest() override { zel_string_convert::ClearTable(); }

    void AddMarks()
    {
        const std::wstring object = m_study.AddObject(Recording(L"D:\\db\\P1\\curved.cine"));
        Mark distance = On(object, MarkThrough(Curved(), MarkKind::distance, {{0, 0}, {3, 4}}));
        distance.frame = 2;
        m_study.AddMark(distance);
        m_study.AddMark(
            On(object, StripMark(MarkKind::flow, {{0, 0}, {1, -1.25}, {2, 0}}), oddName));
        m_study.AddMark(On(object, StripMark(MarkKind::text, {{1, 1}}), oddName));
        m_study.AddMark(On(m_study.AddObject(Recording(L"picture.png", Acquisition())),
                           StripMark(MarkKind::angle, {{0, 0}, {1, 1}, {2, 0}}), L"no geometry"));
    }

    Study m_study;
};

} // namespace

TEST_F(StudyExportTest, NumbersHaveTheLanguagesDecimalSign)
{
    EXPECT_EQ(NumberText(12.345, 2), L"12.35"); // nearest: the binary number lies above the tie
    EXPECT_EQ(NumberText(-1234567.5, 1), L"-1234567.5");
    EXPECT_EQ(NumberText(-0.04, 1), L"0.0");
    EXPECT_EQ(NumberText(2.5, 0), L"2");
    EXPECT_EQ(NumberText(-1e300, 0).size(), 302u);
    ASSERT_TRUE(zel_string_convert::SetLanguage(L"de"));
    EXPECT_EQ(NumberText(12.25, 2), L"12,25");
}

TEST_F(StudyExportTest, ATableHasARowForEachValue)
{
    AddMarks();
    m_study.Rename(2, L"a, \"b\"");
    EXPECT_EQ(MeasurementTable(m_study.Content()),
              "\xEF\xBB\xBFPatient ID,No.,Kind,Name,Recording,Frame,Quantity,Value,Unit\r\n"
              "4711,1,Distance,,curved.cine,3,Length,5.00,mm\r\n"
              "4711,2,Flow,\"a, \"\"b\"\"\",curved.cine,,Peak velocity,-1.250,m/s\r\n"
              "4711,2,Flow,\"a, \"\"b\"\"\",curved.cine,,Mean velocity,-0.625,m/s\r\n"
              "4711,2,Flow,\"a, \"\"b\"\"\",curved.cine,,Peak of the curve,-1.250,m/s\r\n"
              "4711,4,Angle,no geometry,picture.png,1,,,\r\n");
}

TEST_F(StudyExportTest, WhereTheSignIsACommaTheSeparatorIsASemicolon)
{
    AddMarks();
    ASSERT_TRUE(zel_string_convert::SetLanguage(L"de"));
    const std::string table = MeasurementTable(m_study.Content());
    EXPECT_NE(table.find("4711;1;Strecke;;curved.cine;3;L\xC3\xA4nge;5,00;mm\r\n"),
              std::string::npos)
        << table;
}

TEST_F(StudyExportTest, AReportWithoutMarksHasNoEmptySections)
{
    const std::string page = ReportPage(m_study.Content(), {});
    EXPECT_EQ(page.find("<h2>"), std::string::npos);
    EXPECT_NE(page.find("1969-07-20"), std::string::npos);
}

TEST_F(StudyExportTest, TheAgeIsThatOfTheDayOfTheExamination)
{
    const auto age = [](const wchar_t* birth, const wchar_t* date) {
        return AgeText({.name = {}, .id = {}, .birth = birth, .sex = {}, .comment = {}}, date);
    };
    EXPECT_EQ(age(L"1969-07-20", L"2026-07-19"), L"56 years");
    EXPECT_EQ(age(L"1969-07-20", L"2026-07-20"), L"57 years");
    EXPECT_EQ(age(L"2024-01-20", L"2026-01-15"), L"23 months");
    EXPECT_EQ(age(L"2024-01-20", L"2026-01-20"), L"2 years");
    EXPECT_EQ(age(L"2024-12-15", L"2025-03-10"), L"2 months");
    EXPECT_EQ(age(L"2024-12-15", L"2025-03-15"), L"3 months");
    EXPECT_EQ(age(L"2024-12-15", L"2024-12-15"), L"0 months");
    EXPECT_EQ(age(L"2024-12-15", L"2024-12-14"), L"");
    EXPECT_EQ(age(L"", L"2024-12-14"), L"");
    EXPECT_NE(age(L"1969-07-20", L""), L""); // today
    EXPECT_NE(ReportPage(m_study.Content(), {}).find("<td>56 years</td>"), std::string::npos);
}

TEST_F(StudyExportTest, ATermFollowsTheLanguage)
{
    const std::wstring object = m_study.AddObject(Recording(L"a.cine"));
    m_study.AddMark(On(object, StripMark(MarkKind::term, {{1, 1}}), L"Liver"));
    m_study.AddMark(On(object, StripMark(MarkKind::text, {{1, 1}}), L"Kidney"));
    ASSERT_TRUE(zel_string_convert::SetLanguage(L"de"));
    const std::string page = ReportPage(m_study.Content(), {});
    EXPECT_NE(page.find("<td>Leber</td>"), std::string::npos);
    EXPECT_NE(page.find("<td>Kidney</td>"), std::string::npos); // the user's own words
    EXPECT_EQ(TermText(L"unknown"), L"unknown");
}

// check-study-exports reads these files: a table and a report in each language, and the bytes of
// the picture.
TEST_F(StudyExportTest, DISABLED_WritesFiles)
{
    const std::wstring folder = test_support::EnvironmentVariable(L"EXAM_STUDY_FOLDER");
    ASSERT_FALSE(folder.empty());
    AddMarks();
    std::string picture;
    for (int i = 0; i < 1000; ++i)
        picture += static_cast<char>(i * 7);
    test_support::WriteFile(folder + L"\\picture", picture);
    test_support::WriteFile(folder + L"\\name", base::Utf8FromWide(oddName));
    for (const wchar_t* const language : {L"en", L"de"}) {
        ASSERT_TRUE(zel_string_convert::SetLanguage(language));
        const std::wstring path = folder + L"\\" + language;
        test_support::WriteFile(path + L".csv", MeasurementTable(m_study.Content()));
        test_support::WriteFile(path + L".html",
                                ReportPage(m_study.Content(), {{picture, oddName},
                                                               {picture.substr(1), L"second"},
                                                               {picture.substr(2), L"third"}}));
    }
}
