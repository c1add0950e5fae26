// --check-protocol names what it finds, with file and line.
#include "protocol/ProtocolCheck.h"

#include <test_support/ProtocolFolders.h>

#include <filesystem>
#include <random>
#include <set>

using namespace exam;
using test_support::TestVocabulary;

namespace {

class ProtocolCheckTest : public testing::Test
{
protected:
    // The findings of one file as "line: text".
    std::vector<std::wstring> Find(const wchar_t* name, const std::string& text)
    {
        test_support::WriteFile(m_folder / name, text);
        std::vector<std::wstring> lines;
        for (const Finding& finding : FindIgnored(m_folder.Path()).findings) {
            EXPECT_EQ(finding.path, m_folder / name);
            lines.push_back(std::to_wstring(finding.line) + L": " + finding.text);
        }
        DeleteFileW((m_folder / name).c_str());
        return lines;
    }

    std::vector<std::wstring> Actions(const std::string& text)
    {
        return Find(L"ButtonActions.xml", "<b>\n" + text + "</b>\n");
    }
    std::vector<std::wstring> States(const std::string& text)
    {
        return Find(L"button_states.xml", "<s>\n" + text + "</s>\n");
    }
    std::vector<std::wstring> Panel(const std::string& text)
    {
        return Find(L"panel.xml", "<p>\n" + text + "</p>\n");
    }

    using Lines = std::vector<std::wstring>;

    test_support::TemporaryFolder m_vocabularyFolder;
    TestVocabulary m_vocabulary{m_vocabularyFolder / L"actions.xml"};
    test_support::TemporaryFolder m_folder;
};

TEST_F(ProtocolCheckTest, FindsNothingInGoodFiles)
{
    EXPECT_EQ(Actions("<b name='A'><Push1 actionType='Imaging' action='Depth' actionParam=' -3 ' "
                      "name='x'/><States><s actionType='Mode' action='B'/>"
                      "<s actionType='Mode' action='B' actionParam='1'/></States></b>"
                      "<Anything name='a'/>"),
              Lines{});
    EXPECT_EQ(States("<s actionType='Lamp' action='A' combine='Or'><s actionType='Mode' "
                     "action='B'/></s><s actionType='Lamp' action='B'><s actionType='Lamp' "
                     "action='A'/></s>"),
              Lines{});
    EXPECT_EQ(Panel("<b name='A' check='1'><Grid row='1' column='2' span='1.5'/></b>"), Lines{});
}

TEST_F(ProtocolCheckTest, FindsButtonsWithoutANameAndOfTheSameName)
{
    EXPECT_EQ(Actions("<b/>\n<b name=''/>\n<b name='A'/>\n\n<b name='A'/>\n<b name='a'/>"),
              (Lines{L"2: the button is ignored: it has no name",
                     L"3: the button is ignored: it has no name",
                     L"6: the button is ignored: line 4 has one named 'A' already"}));
}

TEST_F(ProtocolCheckTest, FindsTextsThatTheVocabularyDoesNotKnow)
{
    EXPECT_EQ(
        Actions("<b name='A'>\n<Push1 actionType='imaging' action='Depth'/>\n"
                "<Push2 actionType='Imaging' action='B'/>\n<Decrement action='Depth'/>\n"
                "<Increment actionType='Imaging'/>\n<States>\n<s actionType='No' action='B'/>\n"
                "</States></b>"),
        (Lines{L"3: <Push1> does nothing: the vocabulary has no action type 'imaging'",
               L"4: <Push2> does nothing: the action type 'Imaging' has no action 'B'",
               L"5: <Decrement> does nothing: it has no actionType",
               L"6: <Increment> does nothing: it has no action",
               L"8: the state is ignored: the vocabulary has no action type 'No'"}));
}

TEST_F(ProtocolCheckTest, FindsWhatIsThereTwiceAndWhatNobodyReads)
{
    EXPECT_EQ(Actions("<b name='A' colour='red'>\n<Push1 actionType='Mode' action='B' param='1'/>\n"
                      "<Push1 actionType='Mode' action='M'/>\n<Push3/>\n<States>\n"
                      "<s actionType='Mode' action='B'/>\n<s actionType='Mode' action='B' "
                      "actionParam='0'/>\n</States></b>"),
              (Lines{L"2: the attribute colour of <b> is ignored: nobody reads it",
                     L"3: the attribute param of <Push1> is ignored: nobody reads it",
                     L"4: <Push1> is ignored: line 3 has one already",
                     L"5: <Push3> is ignored: nobody reads it",
                     L"8: the state is ignored: line 7 has it already"}));
}

TEST_F(ProtocolCheckTest, FindsParametersThatAreNoIntegers)
{
    for (const char* param : {"1.5", "x", "", "0x1", "2147483648"})
        EXPECT_EQ(Actions("<b name='A'><Push1 actionType='Mode' action='B' actionParam='" +
                          std::string(param) + "'/></b>")
                      .size(),
                  1u)
            << param;
    EXPECT_EQ(Actions("<b name='A'><Push1 actionType='Mode' action='B' "
                      "actionParam='2147483647'/></b>"),
              Lines{});
}

TEST_F(ProtocolCheckTest, FindsUnusableStates)
{
    EXPECT_EQ(
        States("<s actionType='Lamp' action='Z'/>\n<s actionType='Lamp' action='A' combine='or'>\n"
               "<s actionType='Mode' action='B'/>\n<s actionType='Mode' action='B'/>\n"
               "<s action='B'/></s>\n<s actionType='Lamp' action='B'/>\n"
               "<s actionType='Lamp' action='A'><s actionType='Mode' action='M'/></s>"),
        (Lines{L"2: the derived state is ignored with its sources: the action type 'Lamp' has no "
               L"action 'Z'",
               L"3: combine counts as And: 'or' is not Or",
               L"5: the source is ignored: line 4 has it already",
               L"6: the source is ignored: it has no actionType",
               L"7: the state is never told: it has no usable source",
               L"8: the state is told twice: line 3 derives it already"}));
}

TEST_F(ProtocolCheckTest, FindsStatesThatFollowFromThemselves)
{
    const auto state = [](const char* name, const char* source) {
        return std::string("<s actionType='Lamp' action='") + name +
               "'><s actionType='Lamp' action='" + source + "'/></s>\n";
    };
    const std::wstring text = L": the state follows from itself: its broadcasts are cut off";
    EXPECT_EQ(States(state("A", "A")), (Lines{L"2" + text}));
    EXPECT_EQ(States(state("A", "B") + state("B", "C") + state("C", "A") + state("D", "A")),
              (Lines{L"2" + text, L"3" + text, L"4" + text}));
    EXPECT_EQ(States(state("A", "B") + state("B", "C") + state("C", "D")), Lines{});
}

// Circles of states. A graph tells for each node the nodes that it points to: its sources.
using Graph = std::vector<std::set<std::size_t>>;

bool LeadsBack(const Graph& graph, std::size_t start)
{
    std::set<std::size_t> seen;
    std::vector<std::size_t> pending(graph[start].begin(), graph[start].end());
    while (!pending.empty()) {
        const std::size_t node = pending.back();
        pending.pop_back();
        if (node == start) return true;
        if (seen.insert(node).second)
            pending.insert(pending.end(), graph[node].begin(), graph[node].end());
    }
    return false;
}

class StateCirclesTest : public ProtocolCheckTest
{
protected:
    // The nodes whose states are found to follow from themselves. The parameter of a node's state
    // is its number, and so is its line, counted from the second.
    std::vector<std::size_t> OnCircles(const Graph& graph)
    {
        std::string text;
        for (std::size_t node = 0; node < graph.size(); ++node) {
            text += State(node, ">");
            for (const std::size_t source : graph[node])
                text += State(source, "/>");
            text += "</s>\n";
        }
        std::vector<std::size_t> nodes;
        for (const std::wstring& line : States(text))
            if (line.ends_with(L"the state follows from itself: its broadcasts are cut off"))
                nodes.push_back(std::stoul(line) - 2);
        return nodes;
    }

private:
    static std::string State(std::size_t node, const char* end)
    {
        return "<s actionType='Lamp' action='A' actionParam='" + std::to_string(node) + "'" + end;
    }
};

TEST_F(StateCirclesTest, OfNoStatesThereAreNone)
{
    EXPECT_TRUE(OnCircles({}).empty());
}

TEST_F(StateCirclesTest, AStateBesideACircleIsNotOnIt)
{
    // 0 -> 1 -> 2 -> 1, 2 -> 3, 4 -> 4
    EXPECT_EQ(OnCircles({{1}, {2}, {1, 3}, {}, {4}}), (std::vector<std::size_t>{1, 2, 4}));
}

TEST_F(StateCirclesTest, EqualThePlainFormOnRandomGraphs)
{
    std::mt19937 random(1);
    Graph graph; // many graphs side by side, because reading a file takes long
    for (int round = 0; round < 3000; ++round) {
        const std::size_t first = graph.size();
        const std::size_t nodes = 1 + random() % 20;
        graph.resize(first + nodes);
        for (std::size_t edges = random() % 40; edges > 0; --edges)
            graph[first + random() % nodes].insert(first + random() % nodes);
    }
    std::vector<std::size_t> expected;
    for (std::size_t node = 0; node < graph.size(); ++node)
        if (LeadsBack(graph, node)) expected.push_back(node);
    EXPECT_EQ(OnCircles(graph), expected);
}

// About as long as a file may be.
TEST_F(StateCirclesTest, AreFoundAtTheEndOfALongChain)
{
    constexpr std::size_t length = 100'000;
    Graph graph(length);
    for (std::size_t node = 0; node + 1 < length; ++node)
        graph[node] = {node + 1};
    graph[length - 1] = {length - 2};
    EXPECT_EQ(OnCircles(graph), (std::vector<std::size_t>{length - 2, length - 1}));
}

TEST_F(ProtocolCheckTest, FindsPlacementsThatShowNothing)
{
    test_support::WriteFile(m_folder / L"ButtonActions.xml", "<b><b name='A'/><b name='B'/></b>");
    EXPECT_EQ(Panel("<b/>\n<b name='A'><Grid row='0' column='0'/></b>\n<b name='A'/>\n"
                    "<b name='C'><Grid row='0' column='0'/></b>\n<b name='B' check='yes'>\n"
                    "<Grid row='x' column='1' span='1,5' width='2'/></b>"),
              (Lines{L"2: the placement is ignored: it has no name",
                     L"4: the placement is ignored: line 3 places 'A' already",
                     L"5: the placement shows nothing: there is no button 'C'",
                     L"6: check counts as missing: 'yes' is no integer of 32 bits",
                     L"6: the placement shows nothing: it has no row and column",
                     L"7: the attribute width of <Grid> is ignored: nobody reads it",
                     L"7: row counts as missing: 'x' is no integer of 32 bits",
                     L"7: span counts as missing: '1,5' is no real number"}));
}

TEST_F(ProtocolCheckTest, FindsPlacesBesideTheGrid)
{
    EXPECT_EQ(Panel("<b name='A'><Grid row='3' column='0'/></b>\n<b name='B'><Grid row='0' "
                    "column='11' span='2'/></b>\n<b name='C'/>"),
              (Lines{L"2: the placement shows nothing: it does not lie on the grid of 3 rows and "
                     L"12 columns",
                     L"3: the placement shows nothing: it does not lie on the grid of 3 rows and "
                     L"12 columns",
                     L"4: the placement shows nothing: it has no row and column"}));
}

TEST_F(ProtocolCheckTest, FindsFilesThatAreIgnoredAsAWhole)
{
    EXPECT_EQ(Find(L"ButtonActions.xml", "<b>\n<b name='A'>\n</b>"),
              (Lines{L"3: the whole file is ignored: it is not well-formed here"}));
    for (const char* text : {"<r>R&D</r>", "<r/>x", "<!-- -->", "<r>\xFF</r>"})
        EXPECT_EQ(Find(L"panel.xml", text),
                  (Lines{L"1: the whole file is ignored: it is not well-formed here"}));
    for (const std::string& text : {std::string(), std::string(17 << 20, ' ')})
        EXPECT_EQ(Find(L"panel.xml", text),
                  (Lines{L"0: the whole file is ignored: it cannot be read as XML"}));
    std::string nested;
    for (int i = 0; i < 100000; ++i)
        nested += "<a>";
    EXPECT_EQ(Find(L"button_states.xml", nested).size(), 1u);
}

TEST_F(ProtocolCheckTest, LooksThroughTheFoldersBelowInTheirOrder)
{
    for (const wchar_t* const name : {L"b", L"a", L"a\\c"}) {
        CreateDirectoryW((m_folder / name).c_str(), nullptr);
        test_support::WriteFile(m_folder / (name + std::wstring(L"\\BUTTONACTIONS.XML")),
                                "<b><b/></b>");
        test_support::WriteFile(m_folder / (name + std::wstring(L"\\other.xml")), "<b><b/></b>");
    }
    const ProtocolCheck check = FindIgnored(m_folder.Path());
    ASSERT_EQ(check.findings.size(), 3u);
    EXPECT_EQ(check.files.size(), 3u);
    EXPECT_EQ(check.findings[0].ToLine(),
              m_folder / L"a\\BUTTONACTIONS.XML" + L":1: the button is ignored: it has no name");
    EXPECT_EQ(check.findings[2].path, m_folder / L"b\\BUTTONACTIONS.XML");
}

TEST_F(ProtocolCheckTest, SaysWhenThereIsNothingToCheck)
{
    EXPECT_EQ(FindIgnored(m_folder.Path()).problem, L"there are no protocol files");
    EXPECT_EQ(FindIgnored(m_folder / L"missing").problem, L"there is no such folder");
    test_support::WriteFile(m_folder / L"panel.xml", "<p/>");
    EXPECT_EQ(FindIgnored(m_folder / L"panel.xml").problem, L"there is no such folder");
    EXPECT_EQ(FindIgnored(m_folder.Path()).problem, L"");
}

// A finding promises that the library really ignores what it names.
TEST_F(ProtocolCheckTest, TheSampleFilesHaveNone)
{
    ASSERT_TRUE(pro_actions::LoadVocabulary(L"" CONSOLE_VOCABULARY));
    const ProtocolCheck check = FindIgnored(L"" SAMPLE_PROTOCOLS);
    EXPECT_EQ(check.problem, L"");
    EXPECT_EQ(check.files.size(), 5u);
    for (const Finding& finding : check.findings)
        ADD_FAILURE() << std::filesystem::path(finding.ToLine()).string();
}

} // namespace
