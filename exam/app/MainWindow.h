#pragma once

#include "image/ImageView.h"
#include "app/Session.h"

#include <Utils_Statics/IStateChangeConsumer.h>

#include <afxwin.h>

namespace exam
{

// The meanings that this application gives to the state-change signal.
enum ExamStateChange
{
    stateImageChanged = 1,   // param1: index of the recording, param2: its frame
    stateLanguageChanged = 2 // no parameters
};

// The application's main window, 1024 x 768 pixels of client area. It repaints when the state-change signal tells it
// that something it shows has changed; nobody calls it to repaint directly.
class MainWindow : public CWnd, private IStateChangeConsumer
{
public:
    explicit MainWindow(Session& session);

    // Creates and shows the window; false when the platform refuses.
    bool Open();

    const ImageView& view() const { return m_view; }
    unsigned changesSeen() const { return m_changesSeen; }
    void SetStatus(const CString& text);

    // Switches the current language to the next one of the string tables.
    void NextLanguage();

protected:
    BOOL OnEraseBkgnd(CDC* dc);
    void OnPaint();
    void OnKeyDown(UINT key, UINT repeat, UINT flags);
    void OnDestroy();
    DECLARE_MESSAGE_MAP()

private:
    void OnStateChange(StateChangeType type, unsigned int param1, long param2) override;

    Session& m_session;
    ImageView m_view;
    CString m_status;
    unsigned m_changesSeen = 0;
};

} // namespace exam
