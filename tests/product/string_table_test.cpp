// The string table: what it reads, what it returns, and how long its results live.
#include "Readers.h"

#include <gtest/gtest.h>
#include <test_support/Files.h>
#include <test_support/TemporaryFolder.h>
#include <zel_string_convert/TableLoading.h>
#include <zel_string_convert/ZelTString.h>

#include <windows.h>

#include <random>
#include <string>
#include <vector>

namespace {

using test_support::TemporaryFolder;

std::string Unit(const std::string& key, const std::string& source, const std::string& target = "")
{
    return "<trans-unit id=\"" + key + "\"><source>" + source + "</source>" +
           (target.empty() ? "" : "<target>" + target + "</target>") + "</trans-unit>";
}

std::string Section(const std::string& language, const std::string& units,
                    const std::string& base = "en")
{
    const std::string target = language.empty() ? "" : " target-language=\"" + language + "\"";
    return "<file original=\"exam\" datatype=\"plaintext\" source-language=\"" + base + "\"" +
           target + "><body>" + units + "</body></file>";
}

std::string Document(const std::string& sections)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<xliff version=\"1.2\" xmlns=\"urn:oasis:names:tc:xliff:document:1.2\">" +
           sections + "</xliff>\n";
}

class StringTable : public testing::Test
{
protected:
    ~StringTable() override { zel_string_convert::ClearTable(); }

    std::wstring Write(const std::wstring& name, const std::string& text)
    {
        test_support::WriteFile(m_folder / name, text);
        return m_folder / name;
    }

    bool Load(const std::string& text)
    {
        return zel_string_convert::LoadTable(Write(L"table.xlf", text));
    }

    // Loads English with German and French, as three files of a folder hold them.
    void LoadThreeLanguages()
    {
        Write(L"de.xlf",
              Document(Section("de", Unit("yes", "Yes", "Ja") + Unit("no", "No", "Nein"))));
        Write(L"fr.xlf", Document(Section("fr", Unit("yes", "Yes", "Oui") + Unit("no", "No"))));
        ASSERT_TRUE(zel_string_convert::LoadTable(m_folder.Path()));
    }

    TemporaryFolder m_folder;
};

TEST_F(StringTable, IsEmptyFromTheStart)
{
    EXPECT_EQ(zel_string_convert::CurrentLanguage(), L"");
    EXPECT_EQ(zel_string_convert::BaseLanguage(), L"");
    EXPECT_TRUE(zel_string_convert::Languages().empty());
    EXPECT_FALSE(zel_string_convert::SetLanguage(L"en"));
    EXPECT_FALSE(zel_string_convert::SetLanguage(L""));
    EXPECT_STREQ(ZelTString::get("yes", true), L"yes");
    EXPECT_EQ(ZelTString::translate(L"Yes"), nullptr);
}

TEST_F(StringTable, SpeaksTheBaseLanguageUntilAnotherIsChosen)
{
    LoadThreeLanguages();
    EXPECT_EQ(zel_string_convert::CurrentLanguage(), L"en");
    EXPECT_EQ(zel_string_convert::BaseLanguage(), L"en");
    EXPECT_EQ(zel_string_convert::Languages(), (std::vector<std::wstring>{L"en", L"de", L"fr"}));
    EXPECT_STREQ(ZelTString::get("yes", true), L"Yes");
}

TEST_F(StringTable, GivesTheTextOfTheCurrentOrOfTheBaseLanguage)
{
    LoadThreeLanguages();
    ASSERT_TRUE(zel_string_convert::SetLanguage(L"de"));
    EXPECT_EQ(zel_string_convert::CurrentLanguage(), L"de");
    EXPECT_STREQ(ZelTString::get("yes", true), L"Ja");
    EXPECT_STREQ(ZelTString::get("yes", false), L"Yes");
    ASSERT_TRUE(zel_string_convert::SetLanguage(L"FR"));
    EXPECT_EQ(zel_string_convert::CurrentLanguage(), L"fr");
    EXPECT_STREQ(ZelTString::get("yes", true), L"Oui");
}

TEST_F(StringTable, GivesTheBaseTextWhereThereIsNoTranslation)
{
    LoadThreeLanguages();
    ASSERT_TRUE(zel_string_convert::SetLanguage(L"fr"));
    EXPECT_STREQ(ZelTString::get("no", true), L"No");
    EXPECT_STREQ(ZelTString::translate(L"No"), L"No");
}

TEST_F(StringTable, KeepsTheLanguageWhenTheOneAskedForIsNotThere)
{
    LoadThreeLanguages();
    ASSERT_TRUE(zel_string_convert::SetLanguage(L"de"));
    EXPECT_FALSE(zel_string_convert::SetLanguage(L"it"));
    EXPECT_FALSE(zel_string_convert::SetLanguage(L"d"));
    EXPECT_EQ(zel_string_convert::CurrentLanguage(), L"de");
    EXPECT_TRUE(zel_string_convert::SetLanguage(L"en"));
    EXPECT_STREQ(ZelTString::get("yes", true), L"Yes");
}

TEST_F(StringTable, TranslatesByTheBaseText)
{
    LoadThreeLanguages();
    EXPECT_STREQ(ZelTString::translate(L"Yes"), L"Yes");
    zel_string_convert::SetLanguage(L"de");
    EXPECT_STREQ(ZelTString::translate(L"Yes"), L"Ja");
    EXPECT_EQ(ZelTString::translate(L"Ja"), nullptr);
    EXPECT_EQ(ZelTString::translate(L"yes"), nullptr);
    EXPECT_EQ(ZelTString::translate(L""), nullptr);
    EXPECT_EQ(ZelTString::translate(nullptr), nullptr);
}

TEST_F(StringTable, TranslatesBaseTextsOfSeveralKeysByTheFirstThatIsTranslated)
{
    ASSERT_TRUE(Load(Document(Section("de", Unit("a", "Close") +
                                                Unit("b", "Close",
                                                     "Schlie\xC3\x9F"
                                                     "en") +
                                                Unit("c", "Close", "Nah")))));
    zel_string_convert::SetLanguage(L"de");
    EXPECT_STREQ(ZelTString::translate(L"Close"), L"Schlie\x00DF"
                                                  L"en");
    EXPECT_STREQ(ZelTString::get("a", true), L"Close");
    EXPECT_STREQ(ZelTString::get("c", true), L"Nah");
}

TEST_F(StringTable, GivesAnUnknownKeyItself)
{
    LoadThreeLanguages();
    EXPECT_STREQ(ZelTString::get("streaming.noipaddress", true), L"streaming.noipaddress");
    EXPECT_STREQ(ZelTString::get("YES", true), L"YES");
    EXPECT_STREQ(ZelTString::get("", true), L"");
    EXPECT_STREQ(ZelTString::get(nullptr, true), L"");
    EXPECT_STREQ(ZelTString::get(nullptr, false), L"");
    EXPECT_STREQ(ZelTString::get(std::string(256, 'k').c_str(), true),
                 std::wstring(256, L'k').c_str());
    EXPECT_STREQ(ZelTString::get(std::string(257, 'k').c_str(), true), L"");
}

TEST_F(StringTable, GivesNothingForAnUnknownKeyThatCouldPassForAFormat)
{
    ASSERT_TRUE(Load(Document(Section("", Unit("%d known", "%d texts")))));
    EXPECT_STREQ(ZelTString::get("%s unknown", true), L"");
    EXPECT_STREQ(ZelTString::get("100%", false), L"");
    EXPECT_STREQ(ZelTString::get("%d known", true), L"%d texts");
}

TEST_F(StringTable, ReadsTextsAsTheyAre)
{
    ASSERT_TRUE(Load(Document(
        Section("", Unit("space", "  two  spaces ") + Unit("blank", " ") + Unit("empty", "") +
                        Unit("entity", "a &lt; b &amp; c &#x4E2D;&#128512;") +
                        Unit("cdata", "<![CDATA[<b>%s</b>]]>") + Unit("lines", "a\r\nb\nc") +
                        Unit("format", "%s \xC3\xA4 %d%%")))));
    EXPECT_STREQ(ZelTString::get("space", true), L"  two  spaces ");
    EXPECT_STREQ(ZelTString::get("blank", true), L" ");
    EXPECT_STREQ(ZelTString::get("empty", true), L"");
    EXPECT_STREQ(ZelTString::get("entity", true), L"a < b & c \x4E2D\xD83D\xDE00");
    EXPECT_STREQ(ZelTString::get("cdata", true), L"<b>%s</b>");
    EXPECT_STREQ(ZelTString::get("lines", true), L"a\nb\nc");
    EXPECT_STREQ(ZelTString::get("format", true), L"%s \x00E4 %d%%");
}

TEST_F(StringTable, LooksThroughInlineElements)
{
    ASSERT_TRUE(Load(Document(Section(
        "de", Unit("k", "a <g id=\"1\">b<g id=\"2\"> c</g></g> <ph id=\"3\">%s</ph><x id=\"4\"/>!",
                   "<mrk mtype=\"seg\">A</mrk> <mrk mtype=\"seg\">B</mrk>")))));
    EXPECT_STREQ(ZelTString::get("k", false), L"a b c %s!");
    zel_string_convert::SetLanguage(L"de");
    EXPECT_STREQ(ZelTString::get("k", true), L"A B");
}

TEST_F(StringTable, FindsUnitsInGroups)
{
    ASSERT_TRUE(
        Load(Document(Section("", "<group><group>" + Unit("deep", "Deep") + "</group>" +
                                      Unit("mid", "Mid") + "</group>" + Unit("top", "Top")))));
    EXPECT_STREQ(ZelTString::get("deep", true), L"Deep");
    EXPECT_STREQ(ZelTString::get("mid", true), L"Mid");
    EXPECT_STREQ(ZelTString::get("top", true), L"Top");
}

TEST_F(StringTable, PassesOverProposalsOfTranslationTools)
{
    const std::string proposal = "<alt-trans><source>x</source><target>Falsch</target></alt-trans>";
    ASSERT_TRUE(Load(Document(Section(
        "de", "<trans-unit id=\"k\">" + proposal +
                  "<source>Right</source><target>Richtig</target><note>n</note></trans-unit>"
                  "<trans-unit id=\"l\"><source>Left</source>" +
                  proposal + "</trans-unit>"))));
    zel_string_convert::SetLanguage(L"de");
    EXPECT_STREQ(ZelTString::get("k", true), L"Richtig");
    EXPECT_STREQ(ZelTString::get("l", true), L"Left");
}

TEST_F(StringTable, PassesOverUnitsOutsideOfTheTextsOfTheBody)
{
    ASSERT_TRUE(Load(Document(
        "<file original=\"exam\" datatype=\"plaintext\" source-language=\"en\"><header><skl>"
        "<internal-file><group><trans-unit/></group></internal-file></skl></header><body>"
        "<bin-unit id=\"b\" mime-type=\"image/png\"><bin-source/>" +
        Unit("icon", "Icon") + "</bin-unit>" + Unit("text", "Text") + "</body></file>")));
    EXPECT_STREQ(ZelTString::get("icon", true), L"icon");
    EXPECT_STREQ(ZelTString::get("text", true), L"Text");
}

TEST_F(StringTable, PassesOverTargetsThatAreStillToDo)
{
    const auto withTarget = [](const std::string& key, const std::string& target) {
        return "<trans-unit id=\"" + key + "\"><source>Base</source>" + target + "</trans-unit>";
    };
    ASSERT_TRUE(Load(Document(Section(
        "de", withTarget("a", "<target/>") + withTarget("b", "<target state=\"new\">x</target>") +
                  withTarget("c", "<target state=\"needs-translation\">x</target>") +
                  withTarget("d", "<target state=\"translated\">Gut</target>")))));
    zel_string_convert::SetLanguage(L"de");
    EXPECT_STREQ(ZelTString::get("a", true), L"Base");
    EXPECT_STREQ(ZelTString::get("b", true), L"Base");
    EXPECT_STREQ(ZelTString::get("c", true), L"Base");
    EXPECT_STREQ(ZelTString::get("d", true), L"Gut");
}

TEST_F(StringTable, ReadsAPrefixedDocumentAndUtf16)
{
    ASSERT_TRUE(
        Load("<x:xliff version=\"1.2\" xmlns:x=\"urn:oasis:names:tc:xliff:document:1.2\"><x:file "
             "source-language=\"en\"><x:body><x:trans-unit id=\"k\"><x:source>Prefixed</x:source>"
             "</x:trans-unit></x:body></x:file></x:xliff>"));
    EXPECT_STREQ(ZelTString::get("k", true), L"Prefixed");
    const std::string narrow =
        "<xliff version=\"1.2\">" + Section("", Unit("k", "Wide")) + "</xliff>";
    std::string wide = "\xFF\xFE";
    for (const char c : narrow)
        wide += {c, '\0'};
    ASSERT_TRUE(Load(wide));
    EXPECT_STREQ(ZelTString::get("k", true), L"Wide");
}

TEST_F(StringTable, ReadsAFolderInTheOrderOfNames)
{
    Write(L"a.xlf", Document(Section("de", Unit("k", "First", "Erst") + Unit("only.a", "A"))));
    Write(L"b.XLIFF", Document(Section("de", Unit("k", "Second", "Zweit"))));
    Write(L"c.xlf~", "not read");
    Write(L"d.xml", "not read");
    Write(L"e.txt", "not read");
    CreateDirectoryW((m_folder / L"f.xlf").c_str(), nullptr);
    ASSERT_TRUE(zel_string_convert::LoadTable(m_folder.Path()));
    EXPECT_STREQ(ZelTString::get("k", false), L"Second");
    EXPECT_STREQ(ZelTString::get("only.a", false), L"A");
    EXPECT_EQ(ZelTString::translate(L"First"), nullptr);
    zel_string_convert::SetLanguage(L"de");
    EXPECT_STREQ(ZelTString::get("k", true), L"Zweit");
}

TEST_F(StringTable, ReadsSeveralLanguagesFromOneFile)
{
    ASSERT_TRUE(Load(Document(Section("de", Unit("k", "Yes", "Ja")) +
                              Section("fr", Unit("k", "Yes", "Oui")) +
                              Section("", Unit("l", "Base only")))));
    zel_string_convert::SetLanguage(L"fr");
    EXPECT_STREQ(ZelTString::get("k", true), L"Oui");
    EXPECT_STREQ(ZelTString::get("l", true), L"Base only");
}

TEST_F(StringTable, IsReplacedByLoadAndExtendedByAdd)
{
    ASSERT_TRUE(Load(Document(Section("de", Unit("a", "A", "Ah") + Unit("b", "B", "Beh")))));
    ASSERT_TRUE(zel_string_convert::SetLanguage(L"de"));
    ASSERT_TRUE(zel_string_convert::AddToTable(Write(
        L"more.xlf", Document(Section("de", Unit("b", "B", "Neu") + Unit("c", "C", "Zeh"))))));
    EXPECT_STREQ(ZelTString::get("a", true), L"Ah");
    EXPECT_STREQ(ZelTString::get("b", true), L"Neu");
    EXPECT_STREQ(ZelTString::get("c", true), L"Zeh");
    ASSERT_TRUE(zel_string_convert::LoadTable(m_folder / L"more.xlf"));
    EXPECT_EQ(zel_string_convert::CurrentLanguage(), L"de");
    EXPECT_STREQ(ZelTString::get("a", true), L"a");
    ASSERT_TRUE(Load(Document(Section("fr", Unit("a", "A", "Ah")))));
    EXPECT_EQ(zel_string_convert::CurrentLanguage(), L"en") << "German is gone";
}

TEST_F(StringTable, StaysAsItIsWhenAFileIsNoTable)
{
    LoadThreeLanguages();
    zel_string_convert::SetLanguage(L"de");
    const std::string bad[] = {
        "",
        "   ",
        "not xml",
        std::string("\0\0\0\0", 4),
        "<xliff version=\"1.2\">",
        "<xliff version=\"1.2\"/>",
        "<xliff version=\"2.0\">" + Section("de", Unit("yes", "Yes", "X")) + "</xliff>",
        "<xliff>" + Section("de", Unit("yes", "Yes", "X")) + "</xliff>",
        "<tmx version=\"1.2\">" + Section("de", Unit("yes", "Yes", "X")) + "</tmx>",
        Document("<file target-language=\"de\"><body>" + Unit("yes", "Yes", "X") +
                 "</body></file>"),
        Document(Section("", Unit("yes", "Yes", "X"))),
        Document(Section("de", "<trans-unit><source>x</source></trans-unit>")),
        Document(Section("de", "<trans-unit id=\"\"><source>x</source></trans-unit>")),
        Document(Section("de", Unit("yes", "Yes", "X") +
                                   "<trans-unit id=\"k\"><target>x</target></trans-unit>")),
        Document(Section("de", Unit("yes", "Yes", "X")) + Section("de", Unit("k", "K", "Q"), "it")),
        Document(Section("de", Unit("yes", "Yes", "X"))).substr(0, 250),
    };
    for (const std::string& text : bad) {
        std::wstring error;
        EXPECT_FALSE(zel_string_convert::LoadTable(Write(L"bad.xlf", text), &error)) << text;
        EXPECT_NE(error.find(L"bad.xlf "), std::wstring::npos) << testing::PrintToString(error);
        EXPECT_FALSE(zel_string_convert::AddToTable(m_folder / L"bad.xlf")) << text;
        EXPECT_EQ(zel_string_convert::CurrentLanguage(), L"de");
        EXPECT_STREQ(ZelTString::get("yes", true), L"Ja");
    }
    EXPECT_FALSE(zel_string_convert::LoadTable(m_folder.Path())) << "one bad file among good ones";
    EXPECT_STREQ(ZelTString::get("no", true), L"Nein");
}

TEST_F(StringTable, StaysAsItIsWhenThereIsNoFile)
{
    LoadThreeLanguages();
    const TemporaryFolder empty;
    std::wstring error;
    EXPECT_FALSE(zel_string_convert::LoadTable(empty.Path(), &error));
    EXPECT_FALSE(error.empty());
    EXPECT_FALSE(zel_string_convert::LoadTable(empty / L"missing.xlf"));
    EXPECT_FALSE(zel_string_convert::LoadTable(L""));
    EXPECT_STREQ(ZelTString::get("yes", false), L"Yes");
}

TEST_F(StringTable, RefusesToAddAnotherBaseLanguage)
{
    LoadThreeLanguages();
    const std::wstring other =
        Write(L"other.xlf", Document(Section("de", Unit("k", "Si", "Ja"), "it")));
    EXPECT_FALSE(zel_string_convert::AddToTable(other));
    EXPECT_STREQ(ZelTString::get("k", false), L"k");
    EXPECT_TRUE(zel_string_convert::LoadTable(other));
    EXPECT_EQ(zel_string_convert::BaseLanguage(), L"it");
}

TEST_F(StringTable, LeavesTextsWhereTheyAre)
{
    LoadThreeLanguages();
    zel_string_convert::SetLanguage(L"de");
    const wchar_t* const yes = ZelTString::get("yes", true);
    const wchar_t* const base = ZelTString::get("yes", false);
    const wchar_t* const unknown = ZelTString::get("no.such.key", true);
    ASSERT_TRUE(Load(Document(Section("de", Unit("yes", "Yes", "Jawohl")))));
    zel_string_convert::ClearTable();
    EXPECT_STREQ(yes, L"Ja");
    EXPECT_STREQ(base, L"Yes");
    EXPECT_STREQ(unknown, L"no.such.key");
    LoadThreeLanguages();
}

TEST_F(StringTable, KeepsOneCopyOfATextThatIsLoadedAgain)
{
    LoadThreeLanguages();
    const wchar_t* const yes = ZelTString::get("yes", false);
    const wchar_t* const unknown = ZelTString::get("no.such.key", true);
    for (int i = 0; i < 20; ++i)
        LoadThreeLanguages();
    EXPECT_EQ(ZelTString::get("yes", false), yes);
    EXPECT_EQ(ZelTString::get("no.such.key", true), unknown);
}

TEST_F(StringTable, HasTheLimitsOfAllDocuments)
{
    const auto nested = [](std::size_t levels) {
        std::string open, close;
        for (std::size_t i = 0; i < levels; ++i) {
            open += "<g>";
            close += "</g>";
        }
        return Document(Section("", Unit("k", open + "deep" + close)));
    };
    const std::size_t above = 5; // xliff, file, body, trans-unit, source
    ASSERT_TRUE(Load(nested(256 - above)));
    EXPECT_STREQ(ZelTString::get("k", true), L"deep");
    EXPECT_FALSE(Load(nested(257 - above)));
    EXPECT_FALSE(Load(nested(200'000)));
    EXPECT_FALSE(Load(Document(Section("", Unit("k", std::string(16u << 20, 'x'))))));
    EXPECT_STREQ(ZelTString::get("k", true), L"deep");
}

TEST_F(StringTable, RefusesWhatIsNotWellFormedAndSaysWhere)
{
    const std::string sound = Document(Section("de", "\n" + Unit("yes", "Yes", "Ja") + "\n"));
    ASSERT_TRUE(Load(sound));
    const std::pair<std::string, const wchar_t*> faults[] = {
        {sound + "x", L" is not well-formed XML on line 5"},
        {Document(Section("de", "\n" + Unit("a", "A & B"))), L" is not well-formed XML on line 3"},
        {Document(Section("de", Unit("a", "A &undefined; B"))),
         L" is not well-formed XML on line 2"},
        {Document(Section("de", Unit("a", "]]>"))), L" is not well-formed XML on line 2"},
        {Document(Section("de", Unit("<", "A"))), L" is not well-formed XML on line 2"},
        {Document(Section("de", "<!-- a -- b -->")), L" is not well-formed XML on line 2"},
        {"", L" cannot be read as XML"}};
    for (const auto& [text, reason] : faults) {
        const std::wstring path = Write(L"bad.xlf", text);
        std::wstring error;
        EXPECT_FALSE(zel_string_convert::LoadTable(path, &error)) << text;
        EXPECT_EQ(error, path + reason) << text;
    }
}

TEST_F(StringTable, ReadsTheEntitiesOfTheDocumentType)
{
    ASSERT_TRUE(Load("<!DOCTYPE xliff [<!ENTITY unit 'mm/s'>]><xliff version=\"1.2\">" +
                     Section("", Unit("k", "%d &unit;")) + "</xliff>"));
    EXPECT_STREQ(ZelTString::get("k", true), L"%d mm/s");
}

// Damaged files are either refused or read; they never cause a crash.
TEST_F(StringTable, StandsDamagedFiles)
{
    const std::string good = Document(Section(
        "de", Unit("yes", "Yes &amp; <g id=\"1\">so</g>", "Ja") + Unit("no", "No", "Nein")));
    std::mt19937 random(5);
    int accepted = 0;
    for (int i = 0; i < 400; ++i) {
        std::string damaged = good;
        for (unsigned flips = 1 + random() % 4; flips > 0; --flips)
            damaged[random() % damaged.size()] = static_cast<char>(random());
        if (random() % 3 == 0) damaged.resize(random() % damaged.size());
        if (Load(damaged)) ++accepted;
        ASSERT_NE(ZelTString::get("yes", true), nullptr);
    }
    EXPECT_LT(accepted, 400);
}

TEST_F(StringTable, AnswersWhileItIsLoadedAndTheLanguageChanges)
{
    LoadThreeLanguages();
    const std::wstring other =
        Write(L"other.xlf", Document(Section("de", Unit("yes", "Yes!", "Ja!")) +
                                     Section("fr", Unit("yes", "Yes!", "Oui!"))));
    const TemporaryFolder three;
    test_support::WriteFile(three / L"x.xlf", Document(Section("de", Unit("yes", "Yes", "Ja")) +
                                                       Section("fr", Unit("yes", "Yes", "Oui"))));
    ASSERT_TRUE(zel_string_convert::LoadTable(three.Path()));
    Readers readers([] {
        const std::wstring text = ZelTString::get("yes", true);
        const std::wstring word = text.substr(0, text.find(L'!'));
        ZelTString::translate(L"Yes");
        return word == L"Yes" || word == L"Ja" || word == L"Oui";
    });
    for (int i = 0; i < 150; ++i) {
        EXPECT_TRUE(zel_string_convert::LoadTable(i % 2 ? three.Path() : other));
        EXPECT_TRUE(zel_string_convert::SetLanguage(i % 3 ? L"de" : L"fr"));
    }
    EXPECT_EQ(readers.Finish(), 0);
}

// This test comes last, because it uses up the places for unknown keys.
TEST_F(StringTable, KeepsABoundedNumberOfUnknownKeys)
{
    int kept = 0;
    for (int i = 0; i < 10'000; ++i) {
        const std::string key = "unknown." + std::to_string(i);
        if (*ZelTString::get(key.c_str(), true)) ++kept;
    }
    EXPECT_GT(kept, 4000);
    EXPECT_LE(kept, 4096);
    EXPECT_STREQ(ZelTString::get("unknown.0", true), L"unknown.0");
}

} // namespace
