#pragma once

#include <test_support/Files.h>
#include <test_support/TemporaryFolder.h>
#include <zel_string_convert/TableLoading.h>
#include <zel_string_convert/ZelTString.h>

#include <stdexcept>
#include <string>

namespace test_support {

// The product's string table with the texts of one test; English is the base language, German the
// current one.
class TestStringTable
{
public:
    ~TestStringTable() { zel_string_convert::ClearTable(); }

    // A null `translated` means that the key has a text in the base language only. The texts are
    // plain ASCII, with any of its characters.
    void Add(const std::string& key, const std::string& base, const char* translated = nullptr)
    {
        m_units += "<trans-unit id=\"" + key + "\" resname=\"" + key +
                   "\" xml:space=\"preserve\"><source>" + Escaped(base) + "</source>";
        if (translated) m_units += "<target>" + Escaped(translated) + "</target>";
        m_units += "</trans-unit>\n";
    }

    // Makes the added texts the whole table.
    void Load()
    {
        const std::wstring path = m_folder / L"texts.xlf";
        Write(path);
        std::wstring error;
        if (!zel_string_convert::LoadTable(path, &error))
            throw std::runtime_error("the string table was not loaded");
        if (!zel_string_convert::SetLanguage(L"de"))
            throw std::runtime_error("the string table has no German text");
    }

private:
    static std::string Escaped(const std::string& text)
    {
        std::string result;
        for (const char character : text) {
            if (character == '<' || character == '&')
                result += character == '<' ? "&lt;" : "&amp;";
            else
                result += character;
        }
        return result;
    }

    void Write(const std::wstring& path) const
    {
        WriteFile(
            path,
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<xliff version=\"1.2\" xmlns=\"urn:oasis:names:tc:xliff:document:1.2\">\n"
            "<file original=\"test\" datatype=\"plaintext\" source-language=\"en\" "
            "target-language=\"de\"><body>\n"
            "<trans-unit id=\"test.language\" resname=\"test.language\"><source>English</source>"
            "<target>Deutsch</target></trans-unit>\n" +
                m_units + "</body></file></xliff>\n");
    }

    TemporaryFolder m_folder;
    std::string m_units;
};

} // namespace test_support
