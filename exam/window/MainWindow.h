#pragma once

#include "commands/CommandDesk.h"
#include "overlay/Overlays.h"
#include "overlay/TipLook.h"
#include "panel/ControlPanel.h"
#include "screen/Screen.h"
#include "window/KeyList.h"
#include "window/StudyImages.h"
#include "window/WindowPlace.h"

#include <base/GdiPlusSession.h>

namespace exam {

/// The forms of the main window.
enum class WindowForm
{
    window, ///< with a title and a border; its size and place are the user's, and are kept
    console ///< 1024 x 768 pixels of client area at the screen's corner, as on a console
};

/// The application's main window. It paints the exam's state, and passes keys and the mouse on. It
/// repaints only when the state-change signal tells of a change.
class MainWindow : public CWnd, private IStateChangeConsumer, private ExamWindow
{
public:
    /// `folder`: the folder of recordings, pictures and archives. The state outlives the window.
    MainWindow(ExamState& state, const std::wstring& folder);

    /// Creates and shows the window; false when the platform refuses.
    bool Open(WindowForm form);

    /// Gives the open window another form, at a place on the screen.
    void TakeForm(WindowForm form, const CRect& area);

    /// Shows the control panel, whose files are read; false when the platform refuses.
    bool OpenPanel();

    Examination& Exam() { return m_exam; }
    Overlays& OverImage() { return m_overlays; }
    ControlPanel& Panel() { return m_panel; }
    const KeyList& Keys() const { return m_keys; }
    StudyImages& Images() { return m_images; }
    unsigned ChangesSeen() const { return m_changesSeen; }

protected:
    BOOL OnEraseBkgnd(CDC* dc);
    void OnPaint();
    void OnKeyDown(UINT key, UINT repeat, UINT flags);
    void OnLButtonDown(UINT flags, CPoint point);
    void OnLButtonUp(UINT flags, CPoint point);
    void OnMouseMove(UINT flags, CPoint point);
    void OnMButtonDown(UINT flags, CPoint point);
    void OnMButtonUp(UINT flags, CPoint point);
    BOOL OnMouseWheel(UINT flags, short delta, CPoint point);
    void OnCaptureChanged(CWnd* next);
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
    LRESULT OnInitMenuPopup(WPARAM menu, LPARAM lParam);
    LRESULT OnFrameChange(WPARAM wParam, LPARAM lParam);
    LRESULT OnMeasureItem(WPARAM wParam, LPARAM item);
    LRESULT OnDrawItem(WPARAM wParam, LPARAM item);
    LRESULT OnMenuChar(WPARAM letter, LPARAM menu);
    LRESULT OnContextMenu(WPARAM over, LPARAM place);
    void OnTimer(UINT_PTR id);
    void OnSize(UINT type, int width, int height);
    void OnMove(int x, int y);
    LRESULT OnMinMaxInfo(WPARAM wParam, LPARAM info);
    LRESULT OnDpiChanged(WPARAM dpi, LPARAM place);
    LRESULT OnCursorWanted(WPARAM isWanted, LPARAM lParam);
    LRESULT OnDropFiles(WPARAM dropped, LPARAM lParam);
    void OnClose();
    LRESULT OnQueryEndSession(WPARAM wParam, LPARAM lParam);
    LRESULT OnEndSession(WPARAM isEnding, LPARAM lParam);
    void OnDestroy();
    DECLARE_MESSAGE_MAP()

private:
    // The things that the mouse holds, apart from the tools' points.
    enum class Drag
    {
        nothing,
        timeline, // the mark of the timeline
        image,    // the image itself, to move it
        levels    // its grey window: across for the width, down for the level
    };

    CWnd& Owner() override { return *this; }
    bool SavePicture(const std::wstring& path) override;
    void PaintMovie(CDC& dc) override;
    void TogglePanel() override;
    void FloatPanel() override;
    void ToggleKeys() override { m_keys.Toggle(*this); }
    void TogglePanelLock() override;
    void ResetPanel() override;
    bool Ask(const CString& question) override;
    bool Offer(const CString& question) override;
    void Tell(const CString& text) override;
    void ShowFile(const std::wstring& path) override;
    bool Fill(const CString& title, std::vector<FormField>& fields,
              const FormCheck& check) override;
    std::wstring ChooseImage() override;
    void ShowRecent() override;
    void ToggleImages() override { m_images.Toggle(*this); }
    std::wstring ChooseOneOf(const std::vector<std::wstring>& texts) override;
    void Close() override { DestroyWindow(); }

    void OnStateChange(StateChangeType type, unsigned int param1, long param2) override;
    bool AskYesOrNo(const CString& question, int byDefault);
    void InvalidateParts();
    void RunTimer();
    bool Create(WindowForm form);
    void ShowMenuBar();
    PanelForm FormOfPanel() const;
    CRect AreaOfPanel() const;
    void KeepPanelPlace();
    void TellPanel();
    void ChangePanel(bool isShown, bool isFloating);
    void Arrange();
    void PlaceParts();
    void Take(Drag drag, CPoint point);
    void DragTo(CPoint point);
    void Seek(CPoint point);
    CPoint OnScreen(CPoint point) const;
    std::vector<ToolButton> ToolButtons();

    base::GdiPlusSession m_gdiPlus; // runs while the buttons' pictures live
    ExamState& m_state;
    Examination m_exam;
    CommandDesk m_commands;
    Overlays m_overlays;
    ControlPanel m_panel;
    KeyList m_keys;
    TipLook m_tipLook{{[this](const CString& text) { return m_exam.TellsOfFinished(text); },
                       [this] { m_exam.OpenFinished(); }}};
    StudyImages m_images;
    WindowForm m_form = WindowForm::console;
    PanelPlace m_panelPlace; // while the window has the form of one
    int m_dpi = 96;
    BarTexts m_texts;      // that are painted
    ScreenLayout m_placed; // the layout that the windows in this one follow
    Drag m_drag = Drag::nothing;
    CPoint m_dragged;                   // the pointer's place at the last move
    std::optional<unsigned> m_interval; // of the timer that runs
    unsigned m_changesSeen = 0;
    bool m_savesSoon = false; // the timer that keeps the study runs
};

} // namespace exam
