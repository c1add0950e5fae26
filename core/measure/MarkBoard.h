#pragma once

#include "measure/MarkHandle.h"
#include "measure/MarkShapes.h"
#include "study/Study.h"

#include <Utils_Statics/MouseCapture.h>

#include <afxwin.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace exam {

/// A frame as a study names it. The id is empty for one that no mark is on yet.
struct StudyFrame
{
    std::wstring object;
    int frame = 0;

    friend bool operator==(const StudyFrame&, const StudyFrame&) = default;
};

/// The marks of the frame and of the strip on display. The pointer makes and moves them through
/// the arbitration of MouseCapture; each drag is one step of the study. The state-change signal
/// tells of every change.
class MarkBoard
{
public:
    /// A step of the precision mouse, in pixels.
    static constexpr double precisionStep = 0.1;

    /// The frame on display in the study, which takes it up if it does not know it yet. The id is
    /// empty when that is not possible.
    using TakeUpFrame = std::function<StudyFrame()>;

    /// `area`: the image's place in the main window's client area. Study, view and strip outlive
    /// this object.
    MarkBoard(Study& study, const ImageView& view, const SpectralStrip& strip, const CRect& area,
              TakeUpFrame takeUp);
    ~MarkBoard();
    MarkBoard(const MarkBoard&) = delete;
    MarkBoard& operator=(const MarkBoard&) = delete;

    /// Goes over to the marks of a frame. Tells of a change only when other marks are shown.
    void Follow(StudyFrame frame);
    /// Looks again at what the study holds and the display shows.
    void Refresh();

    /// Lets the next press begin a mark of a kind, with a text, or no mark when the kind was chosen
    /// already. In trackball style the mark comes at once, with its first point in hand.
    void Choose(MarkKind kind, const std::wstring& text = {});
    void ChooseNothing();
    std::optional<MarkKind> Chosen() const { return m_chosen; }

    /// The mark that was worked last, if it is on display; 0: none.
    int Selected() const;
    void Select(int number);

    /// The numbers of the marks on display. One that is only in part can be worked by what is seen
    /// of it.
    std::vector<int> Shown() const;

    /// True while a point, or a mark that begins, is in hand.
    bool IsWorking() const;
    /// Lets go of what is in hand, and forgets what was chosen. False when there was nothing.
    bool Cancel();

    /// Passes a press of the mouse on, in client coordinates. It begins the mark that was chosen.
    /// Otherwise in pointer style the selected mark takes it before the others, unless it hits
    /// another one. A selected trace gives its points, one more where its outline is hit between
    /// two, and the whole within it.
    void Press(UINT flags, CPoint at);

    /// Takes the point that was in hand last out of the selected trace.
    void RemovePoint();
    bool CanRemovePoint() const;

    /// Chooses trackball or pointer style, and lets go of a point that is held.
    void SetInput(InputType input);

    /// Says where the image lies in the client area, and where that begins on the screen, in whose
    /// pixels the pointer is arbitrated.
    void SetArea(const CRect& area, CPoint origin);

    /// Draws the marks of a place in client pixels. `scale`: the pixels that stand for one pixel at
    /// 96 dpi.
    void Draw(CDC& dc, MarkPlace place, double scale) const;

private:
    friend class MarkHandle;

    // Draws a mark that begins, while the button is held.
    class Pencil : public IMouseHandler
    {
    public:
        explicit Pencil(MarkBoard& board) : m_board(board) {}

    protected:
        bool OnMouseInput(unsigned int message, unsigned int flags, int x, int y) override;
        void OnReleaseMouse() override;
        void GetBackgroundRect(CRect&) override {} // only the board locks it

    private:
        MarkBoard& m_board;
    };

    const Mark* Find(int number) const { return FindMark(m_study.Content(), number); }
    const MarkSurface& SurfaceOf(MarkKind kind) const;
    PixelPoints PixelsOf(const Mark& mark) const;
    std::vector<MarkPoint> PointsAt(MarkKind kind, const PixelPoints& pixels) const;
    bool IsShown(const Mark& mark) const;
    bool IsBeside(int number, int place) const;
    MarkHandle* HandleOf(int number) const;

    bool UpdateHandles();

    // New marks.
    int Add(MarkKind kind, const PixelPoints& pixels);
    void Begin(const PixelPoint& at);
    void Draw(const PixelPoint& to);
    void Finish();

    // Handles call these.
    void Take(MarkHandle& handle, int index);
    void Put(int number, std::size_t index, const PixelPoint& to);
    void Shift(int number, PixelPoint from, const PixelPoint& to);
    void Move(int number, int place, const PixelPoint& to);
    void MovePrecisely(const MarkHandle& handle, int dx, int dy);
    void Release();

    bool PressMark(CPoint at);
    bool PressTrace(const PixelPoint& at);
    const Mark* SelectedTrace() const;
    bool OffersPoints(const Mark& mark) const;

    Study& m_study;
    FrameSurface m_frameSurface;
    StripSurface m_stripSurface;
    const SpectralStrip& m_strip;
    CRect m_area;
    CPoint m_origin;
    TakeUpFrame m_takeUp;
    StudyFrame m_frame;
    std::vector<std::unique_ptr<MarkHandle>> m_handles;
    Pencil m_pencil{*this};
    std::optional<MarkKind> m_chosen;
    std::wstring m_text; // of the mark that was chosen
    int m_selected = 0;
    int m_drawn = 0; // the number of the mark that begins; 0: none
    MarkKind m_drawnKind = MarkKind::distance;
    PixelPoint m_from;        // where the drag began
    PixelPoint m_last;        // where it is now
    PixelPoints m_stroke;     // of a trace that begins
    bool m_isBeside = false;  // the point in hand was not on display when it was taken
    bool m_isPrecise = false; // the gesture of the study is one of the precision mouse
};

} // namespace exam
