#pragma once

#include "state/ExamState.h"

#include <gtest/gtest.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <test_support/Program.h>
#include <test_support/TemporaryFolder.h>
#include <Utils_Statics/IStateChangeConsumer.h>
#include <Utils_Statics/MouseCapture.h>
#include <zel_string_convert/TableLoading.h>

#include <utility>
#include <vector>

namespace exam {

inline constexpr std::size_t curved = 0;
inline constexpr std::size_t linear = 1; // has four frames

// Shows what a probe has made meanwhile, until its frame has this number.
inline bool FollowProbe(ExamState& state, int frame)
{
    const ULONGLONG end = GetTickCount64() + 20000;
    while (state.Frame() < frame && GetTickCount64() < end) {
        if (const int behind = state.FramesBehind(); behind > 0) state.StepFrames(behind);
        Sleep(5);
    }
    return state.Frame() >= frame;
}

// A state with two recordings, and what it told.
class ExamStateTest : public testing::Test, private IStateChangeConsumer
{
protected:
    ExamStateTest()
    {
        EXPECT_TRUE(zel_string_convert::LoadTable(test_support::BesideProgram(L"sample\\strings")));
        // The recordings are copied, because a test damages one.
        qor_utils::SetStoreFolder(qor_utils::imagesStore, m_folder.Path());
        for (const wchar_t* const name : {L"curved.cine", L"linear.cine"}) {
            const std::wstring original = test_support::BesideProgram(L"sample\\images\\") + name;
            EXPECT_TRUE(CopyFileW(original.c_str(), (m_folder / name).c_str(), TRUE));
            EXPECT_EQ(m_state.AddRecording(name), L"");
        }
        m_changes.clear();
    }
    ~ExamStateTest() override { zel_string_convert::ClearTable(); }

    // The changes that were told since the last call.
    std::vector<int> Changes() { return std::exchange(m_changes, {}); }

    int Frame() const { return m_state.Frame(); }

    // Makes a distance by a drag, in pixels of the image.
    void Measure(CPoint from, CPoint to)
    {
        const CPoint corner = m_state.Layout().image.TopLeft();
        m_state.Marks().ChooseNothing();
        m_state.Marks().Choose(MarkKind::distance);
        m_state.Marks().Press(MK_LBUTTON, corner + from);
        MouseCapture::HandleMouse(WM_MOUSEMOVE, MK_LBUTTON, corner + to);
        MouseCapture::HandleMouse(WM_LBUTTONUP, 0, corner + to);
    }

    // Opens a study and a probe, whose frame 3 is to be measured in.
    void HoldAProbe()
    {
        m_state.OpenStudy({}, m_folder / L"S1");
        m_state.AddSimulation(simulation::ProbeShape::linear);
        m_state.SelectImage(2);
        ASSERT_TRUE(FollowProbe(m_state, 3));
        m_state.ChooseMark(MarkKind::distance);
    }

    test_support::TemporaryFolder m_folder;
    ExamState m_state;

private:
    void OnStateChange(StateChangeType type, unsigned int, long) override
    {
        m_changes.push_back(type);
    }

    std::vector<int> m_changes;
};

} // namespace exam
