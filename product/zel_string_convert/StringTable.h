#pragma once

#include "XliffFile.h"

#include <base/SlimLock.h>

#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace zel_string_convert {

// Lets sets and maps of texts be searched for a view of a text.
template <class Character>
struct Hash
{
    using is_transparent = void;
    std::size_t operator()(std::basic_string_view<Character> text) const noexcept
    {
        return std::hash<std::basic_string_view<Character>>()(text);
    }
};

// Keeps one copy of each text at a fixed address for as long as the pool lives. Any thread may use
// it.
class TextPool
{
public:
    explicit TextPool(std::size_t mostTexts = static_cast<std::size_t>(-1)) : m_mostTexts(mostTexts)
    {
    }

    // The pool's copy; null for a new text when the pool is full.
    const wchar_t* Keep(std::wstring_view text)
    {
        const std::scoped_lock guard(m_lock);
        const auto known = m_texts.find(text);
        if (known != m_texts.end()) return known->c_str();
        return m_texts.size() < m_mostTexts ? m_texts.emplace(text).first->c_str() : nullptr;
    }

private:
    const std::size_t m_mostTexts;
    base::SlimLock m_lock;
    std::unordered_set<std::wstring, Hash<wchar_t>, std::equal_to<>>
        m_texts; // its nodes stay in place when the set grows
};

// Texts by key and by base text, in any number of languages; language 0 is the base language. The
// texts themselves lie in a pool, which must outlive the table.
class StringTable
{
public:
    // Adds a file's units; later ones replace earlier ones of the same key. False when the base
    // language differs from the table's. Look-ups by base text find them only after Index() is
    // called.
    bool Add(const std::vector<XliffSection>& sections, TextPool& pool);

    void Index();

    // The languages' tags in the spelling of their first occurrence.
    const std::vector<std::wstring>& Languages() const { return m_languages; }

    // The number of a language, by its tag ignoring case; -1 when the table does not have it.
    int LanguageNumber(const std::wstring& tag) const;

    // The text in that language, or in the base language if it has none; null for an unknown key or
    // base text.
    const wchar_t* ByKey(std::string_view key, int language) const;
    const wchar_t* ByBase(std::wstring_view base, int language) const;

private:
    struct Unit
    {
        const wchar_t* base = nullptr;
        // The texts from language 1 on; null or missing where there is none.
        std::vector<const wchar_t*> targets;
    };

    bool AddSection(const XliffSection& section, TextPool& pool);
    std::size_t NumberFor(const std::wstring& tag);
    Unit& UnitFor(const std::string& key);
    static const wchar_t* TextIn(const Unit& unit, int language);
    static void Complete(Unit& unit, const Unit& other);

    std::vector<std::wstring> m_languages;
    std::vector<Unit> m_units; // in the order of the files
    std::unordered_map<std::string, std::size_t, Hash<char>, std::equal_to<>> m_byKey;
    std::unordered_map<std::wstring_view, Unit> m_byBase;
};

} // namespace zel_string_convert
