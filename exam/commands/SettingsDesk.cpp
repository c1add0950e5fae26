#include "commands/SettingsDesk.h"

#include "base/LanguageVariable.h"
#include "base/NumberedFiles.h"
#include "base/StateChanges.h"
#include "commands/Examination.h"
#include "study/StudyTexts.h"

#include <base/FilePath.h>
#include <base/Folders.h>
#include <qor_utils/LogOutput.h>
#include <Utils_Statics/GetStr.h>
#include <zel_string_convert/TableLoading.h>
#include <zel_string_convert/ZelTString.h>

namespace exam {

void SettingsDesk::Use(const Settings& settings)
{
    const Settings before = std::exchange(m_inEffect, settings);
    m_inEffect.recordings = base::FullPath(settings.recordings.c_str());
    m_exam.SetFolder(m_inEffect.recordings);
    if (settings.log != before.log) qor_utils::SetLogDirectory(settings.log);
    utilsExam::SetConsoleType(utilsExam::MapConsoleType(settings.console.c_str()));
    ShowLengthsIn(settings.units == L"cm" ? LengthUnit::centimetre : LengthUnit::millimetre);
    SetEnvironmentVariableW(languageVariable, settings.language.c_str()); // for the crash reporter
    if (zel_string_convert::CurrentLanguage() != settings.language &&
        zel_string_convert::SetLanguage(settings.language))
        TellChange(stateLanguageChanged);
    TellChange(stateSettingsChanged);
}

bool SettingsDesk::Change(const Settings& settings)
{
    const Settings before = m_inEffect;
    Use(settings);
    if (WriteSettings(settings, before)) return true;
    m_exam.Report(NoticeKind::error, GetStr("exam.settings.unkept"));
    return false;
}

void SettingsDesk::Edit()
{
    Settings shown = m_inEffect;
    const Settings kept = ReadSettings(); // movies take codec and quality from there
    shown.codec = kept.codec;
    shown.quality = kept.quality;
    std::vector<FormField> fields = SettingFields(shown);
    if (!m_exam.Window().Fill(GetStr("exam.command.settings"), fields, FindSettingProblem)) return;
    m_inEffect = shown;
    if (Change(SettingsOf(fields))) m_exam.State().SetStatus(GetStr("exam.settings.kept"));
}

void SettingsDesk::NextLanguage()
{
    Settings other = m_inEffect;
    other.language = zel_string_convert::CurrentLanguage() == L"en" ? L"de" : L"en";
    Change(other);
}

void SettingsDesk::Export()
{
    base::MakeFolders(m_inEffect.recordings);
    const std::wstring path = FindNumbered(m_inEffect.recordings, L"settings-%d.ini").next;
    const bool isWritten = ExportSettings(m_inEffect, path);
    m_exam.State().SetStatus(
        GetStr(isWritten ? "exam.export.saved" : "exam.export.unsaved", path.c_str()));
}

void SettingsDesk::Reset()
{
    if (!m_exam.Window().Ask(GetStr("exam.settings.ask"))) return;
    RemoveSettings();
    Use(Settings());
    m_exam.State().SetStatus(GetStr("exam.settings.shipped"));
}

} // namespace exam
