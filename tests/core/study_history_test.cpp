// The document of an examination changes in steps, which undo and redo take back and forth.
#include "study/Study.h"
#include "StudySamples.h"

#include <gtest/gtest.h>
#include <test_support/Random.h>

#include <cmath>
#include <limits>
#include <map>

using namespace study_samples;

namespace {

class StudyTest : public testing::Test
{
protected:
    Mark Distance() const { return On(m_object, StripMark(MarkKind::distance, {{1, 2}, {3, 4}})); }
    const Mark& At(int number) const { return *FindMark(m_study.Content(), number); }

    Study m_study;
    std::wstring m_object = m_study.AddObject(Recording(L"curved.cine"));
};

// All that a user sees of a study, in its plain form: whole states, and what each operation does.
class PlainStudy
{
public:
    struct State
    {
        std::wstring patient;
        std::map<int, Mark> marks;
        int last = 0;

        friend bool operator==(const State&, const State&) = default;
    };

    State Present() const { return m_states[m_at]; }

    void Change(const State& changed)
    {
        if (changed == Present()) return;
        m_states.resize(m_at + 1);
        m_states.push_back(changed);
        ++m_at;
        if (m_at - m_oldest > 100) ++m_oldest;
    }
    bool Undo()
    {
        if (m_at == m_oldest) return false;
        --m_at;
        return true;
    }
    bool Redo()
    {
        if (m_at + 1 == m_states.size()) return false;
        ++m_at;
        return true;
    }

private:
    std::vector<State> m_states = {State()};
    std::size_t m_at = 0;
    std::size_t m_oldest = 0;
};

PlainStudy::State Seen(const Study& study)
{
    PlainStudy::State state{study.Content().patient.name, {}, study.Content().lastNumber};
    for (const Shared<Mark>& mark : study.Content().marks)
        state.marks[mark->number] = *mark;
    return state;
}

// Does the same to both. Numbers are sometimes those of no mark, and changes sometimes none.
void DoSomething(test_support::Random& random, const std::wstring& object, Study& study,
                 PlainStudy& plain)
{
    PlainStudy::State state = plain.Present();
    const int number = random.Int(1, state.last + 2);
    const std::wstring text(static_cast<std::size_t>(random.Int(0, 2)), L'x');
    const std::vector<MarkPoint> points = {{random.Real(0, 9), 1}, {2, random.Real(0, 9)}};
    Mark mark = On(object, StripMark(MarkKind::distance, points), text);
    switch (random.Int(0, 6)) {
    case 0:
    case 1:
        mark.number = ++state.last;
        EXPECT_EQ(study.AddMark(mark), mark.number);
        state.marks[mark.number] = mark;
        break;
    case 2: EXPECT_EQ(study.RemoveMark(number), state.marks.erase(number) == 1); break;
    case 3:
        EXPECT_EQ(study.Rename(number, text), state.marks.contains(number));
        if (state.marks.contains(number)) state.marks[number].text = text;
        break;
    case 4:
        EXPECT_EQ(study.SetPoints(number, points), state.marks.contains(number));
        if (state.marks.contains(number)) state.marks[number].points = points;
        break;
    case 5:
        state.patient = text;
        EXPECT_TRUE(
            study.SetPatient({.name = text, .id = {}, .birth = {}, .sex = {}, .comment = {}}));
        break;
    default: EXPECT_FALSE(study.SetPoints(number, {{1, 1}}));
    }
    plain.Change(state);
}

} // namespace

TEST_F(StudyTest, ConformsToThePlainFormOverRandomOperations)
{
    test_support::Random random(2026);
    m_study.Open(m_study.Content());
    PlainStudy plain;
    for (int i = 0; i < 1000; ++i) {
        // Long ways back and forth come to both ends of the history.
        const int way = random.OneIn(20) ? random.Int(1, 150) : 1;
        const int choice = random.Int(0, 3);
        for (int step = 0; step < way; ++step) {
            if (choice == 0) {
                EXPECT_EQ(m_study.Undo(), plain.Undo());
            } else if (choice == 1) {
                EXPECT_EQ(m_study.Redo(), plain.Redo());
            } else {
                DoSomething(random, m_object, m_study, plain);
            }
            ASSERT_EQ(Seen(m_study), plain.Present()) << "operation " << i;
        }
    }
}

TEST_F(StudyTest, GoesBackAHundredSteps)
{
    for (int i = 0; i < 250; ++i)
        m_study.SetDescription(L"", std::to_wstring(i));
    int steps = 0;
    while (m_study.Undo())
        ++steps;
    EXPECT_EQ(steps, 100);
    EXPECT_EQ(m_study.Content().description, L"149");
    EXPECT_FALSE(m_study.CanUndo());
    EXPECT_TRUE(m_study.CanRedo());
}

TEST_F(StudyTest, AGestureIsOneStep)
{
    const int number = m_study.AddMark(Distance());
    m_study.BeginGesture();
    for (int i = 0; i < 300; ++i)
        m_study.SetPoints(number, {{0, 0}, {static_cast<double>(i), 5}});
    m_study.EndGesture();
    EXPECT_EQ(At(number).points[1].x, 299);
    EXPECT_TRUE(m_study.Undo());
    EXPECT_EQ(At(number).points, Distance().points);
    EXPECT_TRUE(m_study.Redo());
    EXPECT_EQ(At(number).points[1].x, 299);
}

TEST_F(StudyTest, AGestureThatChangesNothingLeavesNoStep)
{
    const int number = m_study.AddMark(Distance());
    m_study.Undo();
    m_study.BeginGesture();
    EXPECT_TRUE(m_study.CanRedo());
    m_study.SetDescription(L"", L"other");
    EXPECT_FALSE(m_study.CanRedo());
    m_study.SetDescription(L"", L"");
    m_study.EndGesture();
    EXPECT_TRUE(m_study.Redo());
    EXPECT_EQ(At(number).number, number);
}

TEST_F(StudyTest, UndoInAGestureTakesItBack)
{
    m_study.BeginGesture();
    m_study.SetDescription(L"", L"first");
    m_study.SetDescription(L"", L"second");
    EXPECT_TRUE(m_study.Undo());
    EXPECT_EQ(m_study.Content().description, L"");
    EXPECT_FALSE(m_study.Content().objects.empty());
}

TEST_F(StudyTest, NumbersAndIdsAreNotUsedAgain)
{
    EXPECT_EQ(m_study.AddMark(Distance()), 1);
    EXPECT_EQ(m_study.AddMark(Distance()), 2);
    m_study.RemoveMark(2);
    EXPECT_EQ(m_study.AddMark(Distance()), 3);
    EXPECT_EQ(m_object, L"O1");
    m_study.RemoveObject(m_object);
    EXPECT_EQ(m_study.AddObject(Recording(L"linear.cine")), L"O2");
}

TEST_F(StudyTest, AnObjectGoesAndComesBackWithItsMarks)
{
    const std::wstring other = m_study.AddObject(Recording(L"linear.cine"));
    m_study.AddMark(Distance());
    const int kept = m_study.AddMark(On(other, Distance()));
    const StudyContent before = m_study.Content();
    EXPECT_TRUE(m_study.RemoveObject(m_study.Content().objects[0]->id));
    ASSERT_EQ(m_study.Content().marks.size(), 1u);
    EXPECT_EQ(m_study.Content().marks[0]->number, kept);
    m_study.Undo();
    EXPECT_EQ(m_study.Content(), before);
    EXPECT_FALSE(m_study.RemoveObject(L"O9"));
}

TEST_F(StudyTest, RefusesWhatIsNotPossible)
{
    const StudyContent before = m_study.Content();
    const double infinite = std::numeric_limits<double>::infinity();
    EXPECT_EQ(m_study.AddMark(On(L"O9", Distance())), 0);
    for (const std::vector<MarkPoint>& points : {std::vector<MarkPoint>{{1, 2}},
                                                 {{1, 2}, {3, 4}, {5, 6}},
                                                 {{1, 2}, {infinite, 4}},
                                                 {{1, 2}, {3, std::nan("")}}})
        EXPECT_EQ(m_study.AddMark(On(m_object, StripMark(MarkKind::distance, points))), 0);
    Mark early = Distance();
    early.frame = -1;
    EXPECT_EQ(m_study.AddMark(early), 0);
    EXPECT_FALSE(m_study.SetDescription(L"2026-02-29", L""));
    for (const wchar_t* const birth : {L"1969-13-01", L"1969-7-20", L"20.07.1969", L"1969-07-200"})
        EXPECT_FALSE(m_study.SetPatient({{}, {}, birth, {}, {}})) << birth;
    EXPECT_FALSE(m_study.SetPatient({{}, {}, {}, L"unheard of", {}}));
    EXPECT_EQ(m_study.Content(), before);
    EXPECT_TRUE(m_study.SetPatient({L"A", L"1", L"2024-02-29", L"female", L"well"}));
}

TEST_F(StudyTest, HoldsItsLimits)
{
    const std::vector<MarkPoint> many(1000, MarkPoint{1, 1});
    for (std::size_t i = 0; i < Study::mostMarks; ++i)
        ASSERT_NE(m_study.AddMark(On(m_object, StripMark(MarkKind::trace, many))), 0);
    EXPECT_EQ(m_study.AddMark(Distance()), 0);
    std::vector<MarkPoint> more = many;
    more.push_back({1, 1});
    EXPECT_FALSE(m_study.SetPoints(1, more));
    m_study.Rename(1, std::wstring(5000, L'a'));
    EXPECT_EQ(At(1).text.size(), Study::longestText);
}

TEST_F(StudyTest, CopiesShareWhatDidNotChange)
{
    const int number = m_study.AddMark(Distance());
    m_study.AddMark(Distance());
    const StudyContent before = m_study.Content();
    m_study.Rename(number, L"renamed");
    EXPECT_NE(&*before.marks[0], &*m_study.Content().marks[0]);
    EXPECT_EQ(&*before.marks[1], &*m_study.Content().marks[1]);
}

TEST_F(StudyTest, KeepsOnlyCharactersThatFilesCanKeep)
{
    const int number = m_study.AddMark(Distance());
    const std::wstring kept = L"\t\r\n <&>\"' \xD83D\xDE00 \x4E2D";
    m_study.Rename(number, kept + L"\x01\xD83D\xFFFE\xDE00");
    EXPECT_EQ(At(number).text, kept + L"\xFFFD\xFFFD\xFFFD\xFFFD");
}
