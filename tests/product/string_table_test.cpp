// The string table: what it reads, what it answers, and how long its answers live.
#include <zel_string_convert/ZelTString.h>

#include <test_support/Files.h>
#include <test_support/Readers.h>
#include <test_support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <windows.h>

#include <random>
#include <string>
#include <vector>

namespace {

using test_support::TemporaryFolder;

std::string unit(const std::string& key, const std::string& source, const std::string& target = "")
{
    return "<trans-unit id=\"" + key + "\"><source>" + source + "</source>" +
           (target.empty() ? "" : "<target>" + target + "</target>") + "</trans-unit>";
}

std::string section(const std::string& language, const std::string& units,
                    const std::string& base = "en")
{
    const std::string target = language.empty() ? "" : " target-language=\"" + language + "\"";
    return "<file original=\"exam\" datatype=\"plaintext\" source-language=\"" + base + "\"" +
           target + "><body>" + units + "</body></file>";
}

std::string document(const std::string& sections)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<xliff version=\"1.2\" xmlns=\"urn:oasis:names:tc:xliff:document:1.2\">" +
           sections + "</xliff>\n";
}

class StringTable : public testing::Test
{
protected:
    ~StringTable() override { ZelTString::clear(); }

    std::wstring write(const std::wstring& name, const std::string& text)
    {
        test_support::writeFile(folder / name, text);
        return folder / name;
    }

    bool load(const std::string& text) { return ZelTString::load(write(L"table.xlf", text)); }

    // English with German and French, the way three files of a folder hold them.
    void loadThreeLanguages()
    {
        write(L"de.xlf",
              document(section("de", unit("yes", "Yes", "Ja") + unit("no", "No", "Nein"))));
        write(L"fr.xlf", document(section("fr", unit("yes", "Yes", "Oui") + unit("no", "No"))));
        ASSERT_TRUE(ZelTString::load(folder.path()));
    }

    TemporaryFolder folder;
};

TEST_F(StringTable, IsEmptyFromTheStart)
{
    EXPECT_EQ(ZelTString::getLanguage(), L"");
    EXPECT_EQ(ZelTString::getBaseLanguage(), L"");
    EXPECT_TRUE(ZelTString::getLanguages().empty());
    EXPECT_FALSE(ZelTString::setLanguage(L"en"));
    EXPECT_FALSE(ZelTString::setLanguage(L""));
    EXPECT_STREQ(ZelTString::get("yes", true), L"yes");
    EXPECT_EQ(ZelTString::translate(L"Yes"), nullptr);
}

TEST_F(StringTable, SpeaksTheBaseLanguageUntilAnotherIsChosen)
{
    loadThreeLanguages();
    EXPECT_EQ(ZelTString::getLanguage(), L"en");
    EXPECT_EQ(ZelTString::getBaseLanguage(), L"en");
    EXPECT_EQ(ZelTString::getLanguages(), (std::vector<std::wstring>{L"en", L"de", L"fr"}));
    EXPECT_STREQ(ZelTString::get("yes", true), L"Yes");
}

TEST_F(StringTable, GivesTheTextOfTheCurrentOrOfTheBaseLanguage)
{
    loadThreeLanguages();
    ASSERT_TRUE(ZelTString::setLanguage(L"de"));
    EXPECT_EQ(ZelTString::getLanguage(), L"de");
    EXPECT_STREQ(ZelTString::get("yes", true), L"Ja");
    EXPECT_STREQ(ZelTString::get("yes", false), L"Yes");
    ASSERT_TRUE(ZelTString::setLanguage(L"FR"));
    EXPECT_EQ(ZelTString::getLanguage(), L"fr");
    EXPECT_STREQ(ZelTString::get("yes", true), L"Oui");
}

TEST_F(StringTable, GivesTheBaseTextWhereThereIsNoTranslation)
{
    loadThreeLanguages();
    ASSERT_TRUE(ZelTString::setLanguage(L"fr"));
    EXPECT_STREQ(ZelTString::get("no", true), L"No");
    EXPECT_STREQ(ZelTString::translate(L"No"), L"No");
}

TEST_F(StringTable, KeepsTheLanguageWhenTheOneAskedForIsNotThere)
{
    loadThreeLanguages();
    ASSERT_TRUE(ZelTString::setLanguage(L"de"));
    EXPECT_FALSE(ZelTString::setLanguage(L"it"));
    EXPECT_FALSE(ZelTString::setLanguage(L"d"));
    EXPECT_EQ(ZelTString::getLanguage(), L"de");
    EXPECT_TRUE(ZelTString::setLanguage(L"en"));
    EXPECT_STREQ(ZelTString::get("yes", true), L"Yes");
}

TEST_F(StringTable, TranslatesByTheBaseText)
{
    loadThreeLanguages();
    EXPECT_STREQ(ZelTString::translate(L"Yes"), L"Yes");
    ZelTString::setLanguage(L"de");
    EXPECT_STREQ(ZelTString::translate(L"Yes"), L"Ja");
    EXPECT_EQ(ZelTString::translate(L"Ja"), nullptr);
    EXPECT_EQ(ZelTString::translate(L"yes"), nullptr);
    EXPECT_EQ(ZelTString::translate(L""), nullptr);
    EXPECT_EQ(ZelTString::translate(nullptr), nullptr);
}

TEST_F(StringTable, TranslatesBaseTextsOfSeveralKeysByTheFirstThatIsTranslated)
{
    ASSERT_TRUE(load(document(section("de", unit("a", "Close") +
                                                unit("b", "Close",
                                                     "Schlie\xC3\x9F"
                                                     "en") +
                                                unit("c", "Close", "Nah")))));
    ZelTString::setLanguage(L"de");
    EXPECT_STREQ(ZelTString::translate(L"Close"), L"Schlie\x00DF"
                                                  L"en");
    EXPECT_STREQ(ZelTString::get("a", true), L"Close");
    EXPECT_STREQ(ZelTString::get("c", true), L"Nah");
}

TEST_F(StringTable, GivesAnUnknownKeyItself)
{
    loadThreeLanguages();
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
    ASSERT_TRUE(load(document(section("", unit("%d known", "%d texts")))));
    EXPECT_STREQ(ZelTString::get("%s unknown", true), L"");
    EXPECT_STREQ(ZelTString::get("100%", false), L"");
    EXPECT_STREQ(ZelTString::get("%d known", true), L"%d texts");
}

TEST_F(StringTable, ReadsTextsAsTheyAre)
{
    ASSERT_TRUE(load(document(
        section("", unit("space", "  two  spaces ") + unit("blank", " ") + unit("empty", "") +
                        unit("entity", "a &lt; b &amp; c &#x4E2D;&#128512;") +
                        unit("cdata", "<![CDATA[<b>%s</b>]]>") + unit("lines", "a\r\nb\nc") +
                        unit("format", "%s \xC3\xA4 %d%%")))));
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
    ASSERT_TRUE(load(document(section(
        "de", unit("k", "a <g id=\"1\">b<g id=\"2\"> c</g></g> <ph id=\"3\">%s</ph><x id=\"4\"/>!",
                   "<mrk mtype=\"seg\">A</mrk> <mrk mtype=\"seg\">B</mrk>")))));
    EXPECT_STREQ(ZelTString::get("k", false), L"a b c %s!");
    ZelTString::setLanguage(L"de");
    EXPECT_STREQ(ZelTString::get("k", true), L"A B");
}

TEST_F(StringTable, FindsUnitsInGroups)
{
    ASSERT_TRUE(
        load(document(section("", "<group><group>" + unit("deep", "Deep") + "</group>" +
                                      unit("mid", "Mid") + "</group>" + unit("top", "Top")))));
    EXPECT_STREQ(ZelTString::get("deep", true), L"Deep");
    EXPECT_STREQ(ZelTString::get("mid", true), L"Mid");
    EXPECT_STREQ(ZelTString::get("top", true), L"Top");
}

TEST_F(StringTable, PassesOverProposalsOfTranslationTools)
{
    const std::string proposal = "<alt-trans><source>x</source><target>Falsch</target></alt-trans>";
    ASSERT_TRUE(load(document(section(
        "de", "<trans-unit id=\"k\">" + proposal +
                  "<source>Right</source><target>Richtig</target><note>n</note></trans-unit>"
                  "<trans-unit id=\"l\"><source>Left</source>" +
                  proposal + "</trans-unit>"))));
    ZelTString::setLanguage(L"de");
    EXPECT_STREQ(ZelTString::get("k", true), L"Richtig");
    EXPECT_STREQ(ZelTString::get("l", true), L"Left");
}

TEST_F(StringTable, PassesOverUnitsOutsideOfTheTextsOfTheBody)
{
    ASSERT_TRUE(load(document(
        "<file original=\"exam\" datatype=\"plaintext\" source-language=\"en\"><header><skl>"
        "<internal-file><group><trans-unit/></group></internal-file></skl></header><body>"
        "<bin-unit id=\"b\" mime-type=\"image/png\"><bin-source/>" +
        unit("icon", "Icon") + "</bin-unit>" + unit("text", "Text") + "</body></file>")));
    EXPECT_STREQ(ZelTString::get("icon", true), L"icon");
    EXPECT_STREQ(ZelTString::get("text", true), L"Text");
}

TEST_F(StringTable, PassesOverTargetsThatAreStillToDo)
{
    const auto withTarget = [](const std::string& key, const std::string& target) {
        return "<trans-unit id=\"" + key + "\"><source>Base</source>" + target + "</trans-unit>";
    };
    ASSERT_TRUE(load(document(section(
        "de", withTarget("a", "<target/>") + withTarget("b", "<target state=\"new\">x</target>") +
                  withTarget("c", "<target state=\"needs-translation\">x</target>") +
                  withTarget("d", "<target state=\"translated\">Gut</target>")))));
    ZelTString::setLanguage(L"de");
    EXPECT_STREQ(ZelTString::get("a", true), L"Base");
    EXPECT_STREQ(ZelTString::get("b", true), L"Base");
    EXPECT_STREQ(ZelTString::get("c", true), L"Base");
    EXPECT_STREQ(ZelTString::get("d", true), L"Gut");
}

TEST_F(StringTable, ReadsAPrefixedDocumentAndUtf16)
{
    ASSERT_TRUE(
        load("<x:xliff version=\"1.2\" xmlns:x=\"urn:oasis:names:tc:xliff:document:1.2\"><x:file "
             "source-language=\"en\"><x:body><x:trans-unit id=\"k\"><x:source>Prefixed</x:source>"
             "</x:trans-unit></x:body></x:file></x:xliff>"));
    EXPECT_STREQ(ZelTString::get("k", true), L"Prefixed");
    const std::string narrow =
        "<xliff version=\"1.2\">" + section("", unit("k", "Wide")) + "</xliff>";
    std::string wide = "\xFF\xFE";
    for (const char c : narrow)
        wide += {c, '\0'};
    ASSERT_TRUE(load(wide));
    EXPECT_STREQ(ZelTString::get("k", true), L"Wide");
}

TEST_F(StringTable, ReadsAFolderInTheOrderOfNames)
{
    write(L"a.xlf", document(section("de", unit("k", "First", "Erst") + unit("only.a", "A"))));
    write(L"b.XLIFF", document(section("de", unit("k", "Second", "Zweit"))));
    write(L"c.xlf~", "not read");
    write(L"d.xml", "not read");
    write(L"e.txt", "not read");
    CreateDirectoryW((folder / L"f.xlf").c_str(), nullptr);
    ASSERT_TRUE(ZelTString::load(folder.path()));
    EXPECT_STREQ(ZelTString::get("k", false), L"Second");
    EXPECT_STREQ(ZelTString::get("only.a", false), L"A");
    EXPECT_EQ(ZelTString::translate(L"First"), nullptr);
    ZelTString::setLanguage(L"de");
    EXPECT_STREQ(ZelTString::get("k", true), L"Zweit");
}

TEST_F(StringTable, ReadsSeveralLanguagesFromOneFile)
{
    ASSERT_TRUE(load(document(section("de", unit("k", "Yes", "Ja")) +
                              section("fr", unit("k", "Yes", "Oui")) +
                              section("", unit("l", "Base only")))));
    ZelTString::setLanguage(L"fr");
    EXPECT_STREQ(ZelTString::get("k", true), L"Oui");
    EXPECT_STREQ(ZelTString::get("l", true), L"Base only");
}

TEST_F(StringTable, IsReplacedByLoadAndExtendedByAdd)
{
    ASSERT_TRUE(load(document(section("de", unit("a", "A", "Ah") + unit("b", "B", "Beh")))));
    ASSERT_TRUE(ZelTString::setLanguage(L"de"));
    ASSERT_TRUE(ZelTString::add(write(
        L"more.xlf", document(section("de", unit("b", "B", "Neu") + unit("c", "C", "Zeh"))))));
    EXPECT_STREQ(ZelTString::get("a", true), L"Ah");
    EXPECT_STREQ(ZelTString::get("b", true), L"Neu");
    EXPECT_STREQ(ZelTString::get("c", true), L"Zeh");
    ASSERT_TRUE(ZelTString::load(folder / L"more.xlf"));
    EXPECT_EQ(ZelTString::getLanguage(), L"de");
    EXPECT_STREQ(ZelTString::get("a", true), L"a");
    ASSERT_TRUE(load(document(section("fr", unit("a", "A", "Ah")))));
    EXPECT_EQ(ZelTString::getLanguage(), L"en") << "German is gone";
}

TEST_F(StringTable, StaysAsItIsWhenAFileIsNoTable)
{
    loadThreeLanguages();
    ZelTString::setLanguage(L"de");
    const std::string bad[] = {
        "",
        "   ",
        "not xml",
        std::string("\0\0\0\0", 4),
        "<xliff version=\"1.2\">",
        "<xliff version=\"1.2\"/>",
        "<xliff version=\"2.0\">" + section("de", unit("yes", "Yes", "X")) + "</xliff>",
        "<xliff>" + section("de", unit("yes", "Yes", "X")) + "</xliff>",
        "<tmx version=\"1.2\">" + section("de", unit("yes", "Yes", "X")) + "</tmx>",
        document("<file target-language=\"de\"><body>" + unit("yes", "Yes", "X") +
                 "</body></file>"),
        document(section("", unit("yes", "Yes", "X"))),
        document(section("de", "<trans-unit><source>x</source></trans-unit>")),
        document(section("de", "<trans-unit id=\"\"><source>x</source></trans-unit>")),
        document(section("de", unit("yes", "Yes", "X") +
                                   "<trans-unit id=\"k\"><target>x</target></trans-unit>")),
        document(section("de", unit("yes", "Yes", "X")) + section("de", unit("k", "K", "Q"), "it")),
        document(section("de", unit("yes", "Yes", "X"))).substr(0, 250),
    };
    for (const std::string& text : bad) {
        std::wstring error;
        EXPECT_FALSE(ZelTString::load(write(L"bad.xlf", text), &error)) << text;
        EXPECT_NE(error.find(L"bad.xlf "), std::wstring::npos) << testing::PrintToString(error);
        EXPECT_FALSE(ZelTString::add(folder / L"bad.xlf")) << text;
        EXPECT_EQ(ZelTString::getLanguage(), L"de");
        EXPECT_STREQ(ZelTString::get("yes", true), L"Ja");
    }
    EXPECT_FALSE(ZelTString::load(folder.path())) << "one bad file among good ones";
    EXPECT_STREQ(ZelTString::get("no", true), L"Nein");
}

TEST_F(StringTable, StaysAsItIsWhenThereIsNoFile)
{
    loadThreeLanguages();
    const TemporaryFolder empty;
    std::wstring error;
    EXPECT_FALSE(ZelTString::load(empty.path(), &error));
    EXPECT_FALSE(error.empty());
    EXPECT_FALSE(ZelTString::load(empty / L"missing.xlf"));
    EXPECT_FALSE(ZelTString::load(L""));
    EXPECT_STREQ(ZelTString::get("yes", false), L"Yes");
}

TEST_F(StringTable, RefusesToAddAnotherBaseLanguage)
{
    loadThreeLanguages();
    const std::wstring other =
        write(L"other.xlf", document(section("de", unit("k", "Si", "Ja"), "it")));
    EXPECT_FALSE(ZelTString::add(other));
    EXPECT_STREQ(ZelTString::get("k", false), L"k");
    EXPECT_TRUE(ZelTString::load(other));
    EXPECT_EQ(ZelTString::getBaseLanguage(), L"it");
}

TEST_F(StringTable, LeavesTextsWhereTheyAre)
{
    loadThreeLanguages();
    ZelTString::setLanguage(L"de");
    const wchar_t* const yes = ZelTString::get("yes", true);
    const wchar_t* const base = ZelTString::get("yes", false);
    const wchar_t* const unknown = ZelTString::get("no.such.key", true);
    ASSERT_TRUE(load(document(section("de", unit("yes", "Yes", "Jawohl")))));
    ZelTString::clear();
    EXPECT_STREQ(yes, L"Ja");
    EXPECT_STREQ(base, L"Yes");
    EXPECT_STREQ(unknown, L"no.such.key");
    loadThreeLanguages();
}

TEST_F(StringTable, KeepsOneCopyOfATextThatIsLoadedAgain)
{
    loadThreeLanguages();
    const wchar_t* const yes = ZelTString::get("yes", false);
    const wchar_t* const unknown = ZelTString::get("no.such.key", true);
    for (int i = 0; i < 20; ++i)
        loadThreeLanguages();
    EXPECT_EQ(ZelTString::get("yes", false), yes);
    EXPECT_EQ(ZelTString::get("no.such.key", true), unknown);
}

TEST_F(StringTable, StandsDeeplyNestedElements)
{
    std::string open, close;
    for (int i = 0; i < 200'000; ++i) {
        open += "<g>";
        close += "</g>";
    }
    ASSERT_TRUE(load(document(section("", unit("k", open + "deep" + close)))));
    EXPECT_STREQ(ZelTString::get("k", true), L"deep");
}

// Damaged files are either refused or read; they never bring anything down.
TEST_F(StringTable, StandsDamagedFiles)
{
    const std::string good = document(section(
        "de", unit("yes", "Yes &amp; <g id=\"1\">so</g>", "Ja") + unit("no", "No", "Nein")));
    std::mt19937 random(5);
    int accepted = 0;
    for (int i = 0; i < 400; ++i) {
        std::string damaged = good;
        for (unsigned flips = 1 + random() % 4; flips > 0; --flips)
            damaged[random() % damaged.size()] = static_cast<char>(random());
        if (random() % 3 == 0) damaged.resize(random() % damaged.size());
        if (load(damaged)) ++accepted;
        ASSERT_NE(ZelTString::get("yes", true), nullptr);
    }
    EXPECT_LT(accepted, 400);
}

TEST_F(StringTable, AnswersWhileItIsLoadedAndTheLanguageChanges)
{
    loadThreeLanguages();
    const std::wstring other =
        write(L"other.xlf", document(section("de", unit("yes", "Yes!", "Ja!")) +
                                     section("fr", unit("yes", "Yes!", "Oui!"))));
    const TemporaryFolder three;
    test_support::writeFile(three / L"x.xlf", document(section("de", unit("yes", "Yes", "Ja")) +
                                                       section("fr", unit("yes", "Yes", "Oui"))));
    ASSERT_TRUE(ZelTString::load(three.path()));
    test_support::Readers readers([] {
        const std::wstring text = ZelTString::get("yes", true);
        const std::wstring word = text.substr(0, text.find(L'!'));
        ZelTString::translate(L"Yes");
        return word == L"Yes" || word == L"Ja" || word == L"Oui";
    });
    for (int i = 0; i < 150; ++i) {
        EXPECT_TRUE(ZelTString::load(i % 2 ? three.path() : other));
        EXPECT_TRUE(ZelTString::setLanguage(i % 3 ? L"de" : L"fr"));
    }
    EXPECT_EQ(readers.finish(), 0);
}

// The last test: it uses up the places for unknown keys.
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
