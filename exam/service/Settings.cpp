#include "service/Settings.h"

#include "base/FileReader.h"
#include "base/ProfileText.h"
#include "record/MovieSettings.h"
#include "service/StatusSettings.h"

#include <base/Folders.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace exam {

namespace {

using Words = std::vector<std::wstring>;

enum class Kind
{
    text,    // any text
    number,  // a whole number
    offered, // any text; some are offered
    word,    // one of some words
    folder
};

// One setting. The texts of its words have `label`, a dot and the word for their key where
// `hasTexts`; others stand as they are.
struct Setting
{
    const wchar_t* section;
    const wchar_t* entry;
    std::wstring Settings::*value;
    const char* label;
    Kind kind;
    Words (*words)() = nullptr;
    bool hasTexts = false;
};

Words Consoles()
{
    Words names;
    for (int type = eConsolePemmit; type <= eConsoleTavren; ++type)
        names.emplace_back(utilsExam::MapConsoleName(static_cast<EConsoleType>(type)));
    return names;
}

constexpr wchar_t examSection[] = L"Settings\\Exam";

constexpr Setting allSettings[] = {
    {movieSection, codecEntry, &Settings::codec, "exam.settings.codec", Kind::offered,
     InstalledCodecs},
    {movieSection, qualityEntry, &Settings::quality, "exam.settings.quality", Kind::number},
    {examSection, L"Recordings", &Settings::recordings, "exam.settings.recordings", Kind::folder},
    {examSection, L"Log", &Settings::log, "exam.settings.log", Kind::folder},
    {examSection, L"Units", &Settings::units, "exam.settings.units", Kind::word,
     [] {
         return Words{L"mm", L"cm"};
     },
     true},
    {examSection, L"Language", &Settings::language, "exam.settings.language", Kind::word,
     [] {
         return Words{L"en", L"de"};
     },
     true},
    {examSection, L"Icons", &Settings::icons, "exam.settings.icons", Kind::word,
     [] {
         return Words{L"small", L"large"};
     },
     true},
    {examSection, L"Console", &Settings::console, "exam.settings.console", Kind::word, Consoles},
};

CString TextOfWord(const Setting& setting, const std::wstring& word)
{
    if (!setting.hasTexts) return word.c_str();
    return GetStr(
        (std::string(setting.label) + "." + std::string(word.begin(), word.end())).c_str());
}

bool IsKnown(const Setting& setting, const std::wstring& value)
{
    if (setting.kind != Kind::word) return true;
    const Words words = setting.words();
    return std::ranges::find(words, value) != words.end();
}

bool Write(const Setting& setting, const std::wstring& value)
{
    CWinApp& app = *AfxGetApp();
    if (setting.kind == Kind::number) // the library reads it as one
        return app.WriteProfileInt(setting.section, setting.entry, _wtoi(value.c_str())) != FALSE;
    return app.WriteProfileString(setting.section, setting.entry, value.c_str()) != FALSE;
}

FormField FieldOf(const Setting& setting, const std::wstring& value)
{
    FormField field{.label = GetStr(setting.label),
                    .value = TextOfWord(setting, value),
                    .isFolder = setting.kind == Kind::folder};
    if (!setting.words) return field;
    Words words = setting.words();
    if (std::ranges::find(words, value) == words.end()) words.push_back(value); // it is there
    for (const std::wstring& word : words)
        field.choices.push_back(TextOfWord(setting, word));
    return field;
}

bool IsPercentage(std::wstring_view text)
{
    constexpr std::size_t digits = 3;
    return !text.empty() && text.size() <= digits &&
           std::ranges::all_of(text, [](wchar_t c) { return c >= L'0' && c <= L'9'; }) &&
           std::stoi(std::wstring(text)) <= 100;
}

bool IsFolder(const std::wstring& path)
{
    base::MakeFolders(path);
    return KindOfFile(path) == FileKind::folder;
}

// Calls `visit` with each setting of the pages.
template <class Visit>
void ForEachSwitch(const Visit& visit)
{
    for (const auto& switches : {StatusSettings(), DeviceSettings()})
        for (const StatusSetting& each : switches)
            visit(each);
}

} // namespace

Settings ReadSettings()
{
    Settings read;
    for (const Setting& each : allSettings) {
        const std::wstring value(ProfileText(each.section, each.entry));
        if (!value.empty() && IsKnown(each, value)) read.*each.value = value;
    }
    return read;
}

bool WriteSettings(const Settings& settings, const Settings& before)
{
    return std::ranges::all_of(allSettings, [&](const Setting& each) {
        return settings.*each.value == before.*each.value || Write(each, settings.*each.value);
    });
}

void RemoveSettings()
{
    const auto remove = [](const auto& each) {
        AfxGetApp()->WriteProfileString(each.section, each.entry, nullptr);
    };
    std::ranges::for_each(allSettings, remove);
    ForEachSwitch(remove);
}

bool ExportSettings(const Settings& settings, const std::wstring& path)
{
    bool isWritten = true;
    const auto write = [&](const auto& setting, const wchar_t* value) {
        isWritten = WritePrivateProfileStringW(setting.section, setting.entry, value,
                                               path.c_str()) != FALSE &&
                    isWritten;
    };
    for (const Setting& each : allSettings)
        write(each, (settings.*each.value).c_str());
    ForEachSwitch([&](const StatusSetting& each) { write(each, IsWanted(each) ? L"1" : L"0"); });
    return isWritten;
}

std::vector<FormField> SettingFields(const Settings& settings)
{
    std::vector<FormField> fields;
    for (const Setting& each : allSettings)
        fields.push_back(FieldOf(each, settings.*each.value));
    return fields;
}

Settings SettingsOf(const std::vector<FormField>& fields)
{
    Settings chosen;
    for (std::size_t i = 0; i < std::size(allSettings); ++i) {
        const Setting& setting = std::span(allSettings)[i];
        chosen.*setting.value = fields.at(i).value;
        if (!setting.hasTexts) continue;
        for (const std::wstring& word : setting.words())
            if (TextOfWord(setting, word) == fields.at(i).value) chosen.*setting.value = word;
    }
    return chosen;
}

CString FindSettingProblem(const std::vector<FormField>& fields)
{
    const Settings chosen = SettingsOf(fields);
    if (!IsPercentage(chosen.quality)) return GetStr("exam.settings.wrongquality");
    if (chosen.recordings.empty()) return GetStr("exam.settings.nofolder");
    for (const std::wstring& folder : {chosen.recordings, chosen.log})
        if (!folder.empty() && !IsFolder(folder))
            return GetStr("exam.settings.wrongfolder", folder.c_str());
    return {};
}

} // namespace exam
