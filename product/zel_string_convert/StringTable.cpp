#include "StringTable.h"

#include <algorithm>

namespace zel_string_convert {
namespace {

bool IsSameLanguage(const std::wstring& a, const std::wstring& b)
{
    return CompareStringOrdinal(a.c_str(), -1, b.c_str(), -1, TRUE) == CSTR_EQUAL;
}

} // namespace

bool StringTable::Add(const std::vector<XliffSection>& sections, TextPool& pool)
{
    return std::all_of(sections.begin(), sections.end(),
                       [&](const XliffSection& section) { return AddSection(section, pool); });
}

bool StringTable::AddSection(const XliffSection& section, TextPool& pool)
{
    if (m_languages.empty()) m_languages.push_back(section.sourceLanguage);
    if (!IsSameLanguage(m_languages.front(), section.sourceLanguage)) return false;
    const std::size_t language =
        section.targetLanguage.empty() ? 0 : NumberFor(section.targetLanguage);
    for (const XliffUnit& entry : section.units) {
        Unit& unit = UnitFor(entry.key);
        unit.base = pool.Keep(entry.source);
        if (!entry.target || language == 0) continue; // a target in the base language adds nothing
        if (unit.targets.size() < language) unit.targets.resize(language);
        unit.targets[language - 1] = pool.Keep(*entry.target);
    }
    return true;
}

std::size_t StringTable::NumberFor(const std::wstring& tag)
{
    const int number = LanguageNumber(tag);
    if (number >= 0) return static_cast<std::size_t>(number);
    m_languages.push_back(tag);
    return m_languages.size() - 1;
}

StringTable::Unit& StringTable::UnitFor(const std::string& key)
{
    const auto [entry, isNew] = m_byKey.try_emplace(key, m_units.size());
    if (isNew) m_units.emplace_back();
    return m_units[entry->second];
}

void StringTable::Index()
{
    m_byBase.clear();
    for (const Unit& unit : m_units)
        Complete(m_byBase.try_emplace(unit.base, unit).first->second, unit);
}

// Several keys may share a base text, and a later one may have a translation that the first lacks.
void StringTable::Complete(Unit& unit, const Unit& other)
{
    if (unit.targets.size() < other.targets.size()) unit.targets.resize(other.targets.size());
    for (std::size_t i = 0; i < other.targets.size(); ++i) {
        if (!unit.targets[i]) unit.targets[i] = other.targets[i];
    }
}

int StringTable::LanguageNumber(const std::wstring& tag) const
{
    const auto found =
        std::find_if(m_languages.begin(), m_languages.end(),
                     [&](const std::wstring& known) { return IsSameLanguage(known, tag); });
    return found == m_languages.end() ? -1 : static_cast<int>(found - m_languages.begin());
}

const wchar_t* StringTable::TextIn(const Unit& unit, int language)
{
    const auto index = static_cast<std::size_t>(language);
    const bool isTranslated =
        language > 0 && index <= unit.targets.size() && unit.targets[index - 1];
    return isTranslated ? unit.targets[index - 1] : unit.base;
}

const wchar_t* StringTable::ByKey(std::string_view key, int language) const
{
    const auto entry = m_byKey.find(key);
    return entry == m_byKey.end() ? nullptr : TextIn(m_units[entry->second], language);
}

const wchar_t* StringTable::ByBase(std::wstring_view base, int language) const
{
    const auto entry = m_byBase.find(base);
    return entry == m_byBase.end() ? nullptr : TextIn(entry->second, language);
}

} // namespace zel_string_convert
