#pragma once

#include "study/History.h"
#include "study/StudyContent.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace exam {

/// The document of one examination: the patient, the recordings and pictures, and the marks on
/// them. It knows no window and no file; StudyFile keeps it, MarkValues.h has what is measured.
///
/// 1. Every change is one step of undo and redo, which go back a hundred steps. Between
///    BeginGesture() and EndGesture() all changes together are one step.
/// 2. A change that is not possible (an unknown number, a wrong count of points, a number that is
///    not finite, a limit below) is refused and changes nothing. A change to what is there already
///    is no step.
/// 3. Limits keep a study with its whole history below 40 MiB: 1,000 marks of 1,000 points, 1,000
///    objects, 4,000 characters in a text. A text is cut there.
/// 4. A character that files cannot keep (a control character, half of a pair) becomes U+FFFD.
///
/// User-interface thread only.
class Study
{
public:
    static constexpr std::size_t mostMarks = 1000;
    static constexpr std::size_t mostObjects = 1000;
    static constexpr std::size_t longestText = 4000;

    const StudyContent& Content() const { return m_content; }

    /// Puts another study in the place of this one and forgets the steps.
    void Open(StudyContent content);

    /// Refuses a sex or a date of birth that is unknown, unless it is the present one.
    bool SetPatient(Patient patient);
    /// The same for the examination's date.
    bool SetDescription(std::wstring date, std::wstring description);

    /// Adds a recording or picture under a new id. The result is the id; empty when refused.
    std::wstring AddObject(StudyObject object);
    /// Removes an object with all its marks.
    bool RemoveObject(const std::wstring& id);

    /// Adds a mark to an object under a new number. The result is the number; 0 when refused.
    int AddMark(Mark mark);
    bool SetPoints(int number, std::vector<MarkPoint> points);
    /// Moves a mark as a whole. On a frame `by` is in millimetres, so that no measured value
    /// changes; on the strip it is in seconds and metres per second.
    bool MoveMark(int number, const MarkPoint& by);
    bool Rename(int number, std::wstring text);
    bool RemoveMark(int number);

    /// While a gesture lasts (the drag of a point, a dialog), its changes are one step. A new one
    /// ends the one before.
    void BeginGesture();
    void EndGesture();

    /// Each ends a gesture first. False when there is no such step.
    bool Undo();
    bool Redo();
    bool CanUndo() const { return HasGestureChanged() || m_history.CanUndo(); }
    bool CanRedo() const { return !HasGestureChanged() && m_history.CanRedo(); }

private:
    bool HasGestureChanged() const { return m_gesture && *m_gesture != m_content; }
    bool Put(StudyContent changed);
    bool ReplaceMark(int number, const std::function<bool(Mark&)>& change);

    StudyContent m_content;
    History<StudyContent> m_history;
    std::optional<StudyContent> m_gesture; // the state before it
};

/// True for a day that exists, written as 1969-07-20.
bool IsDate(const std::wstring& text);

} // namespace exam
