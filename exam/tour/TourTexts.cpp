// Station 3: texts in two languages, and the effect of a wrong translation.
#include "tour/Tour.h"

#include <qor_utils/LogOutput.h>
#include <qor_utils/zelLogger.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/StringParse.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_string_convert/TableLoading.h>
#include <zel_string_convert/ZelTString.h>

#include <string_view>

namespace exam {

namespace {

// Counts the error lines of the log while it lives.
class ErrorLines
{
public:
    ErrorLines() { qor_utils::SetLogHook(OnMessage, this); }
    ~ErrorLines() { qor_utils::SetLogHook(nullptr, nullptr); }
    ErrorLines(const ErrorLines&) = delete;
    ErrorLines& operator=(const ErrorLines&) = delete;

    int Count() const { return m_count; }

private:
    static void OnMessage(const qor_utils::LogMessage& message, void* self)
    {
        if (message.level == qor_utils::errorLevel) ++static_cast<ErrorLines*>(self)->m_count;
    }

    int m_count = 0;
};

void Languages(TourReport& report)
{
    const std::wstring given = zel_string_convert::CurrentLanguage();
    zel_string_convert::SetLanguage(L"en");
    const CString english = GetStr("exam.value.frame", 3, 12);
    zel_string_convert::SetLanguage(L"de");
    const CString german = GetStr("exam.value.frame", 3, 12);
    zel_string_convert::SetLanguage(given);
    report.Step(english == L"3 of 12" && german == L"3 von 12",
                L"a text is formatted in English and in German");
}

void WrongTranslation(TourReport& report)
{
    const std::wstring given = zel_string_convert::CurrentLanguage();
    zel_string_convert::SetLanguage(L"de");
    const ErrorLines errors;
    const CString text = GetStr("exam.sample.mismatch", 7);
    zel_string_convert::SetLanguage(given);
    report.Step(text == L"7 measurements" && errors.Count() == 1,
                L"a translation that does not fit falls back to the base text, with one log line");
}

} // namespace

void TourTexts(TourContext& context)
{
    Languages(context.report);
    WrongTranslation(context.report);
    CStringArray words;
    StringParse::GetAllWords(L"depth,gain,,focus", words, L',');
    context.report.Step(words.GetSize() == 4 && words[3] == L"focus",
                        L"a list is split into its words");
    context.report.Step(utilsExam::GetProductName() == L"Sample exam" &&
                            !utilsExam::GetProductVersion().IsEmpty(),
                        L"name and version are read from the program's own resource");
}

} // namespace exam
