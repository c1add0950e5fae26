#pragma once

#include <Utils_Statics/export.h>
#include <Utils_Statics/IStatusItem.h>

#include <atomic>
#include <string>

/// The icon shown while a cine is being recorded and the setting "CineRecording" is on.
///
/// One object per process, made on first use. Until CStatusFactory::destroyInstance the static
/// members may be called on any thread.
class UTILS_STATICS_API CStatusRecording : public IStatusItem
{
public:
    /// The object, to be registered with CStatusFactory::addItem.
    static CStatusRecording* getInstance();

    /// Stores the state and asks for a repaint, even when nothing changed.
    static void setState(bool recording);
    /// The state that was stored last.
    static bool getState() noexcept;
    static bool isRecording() noexcept; ///< the same as getState

    ~CStatusRecording() override;

protected:
    void issueUpdate() const override;
    void updateVisibleState() override;
    bool isVisible() const override;
    int drawIcon(const CRect& rect, Gdiplus::Graphics& graphics) const override;

private:
    CStatusRecording();

    /// The path of the image to draw; empty for none.
    std::wstring getPath() const;

    bool m_enabled = false; // the user's setting

    static std::atomic<CStatusRecording*> m_me;
    static std::atomic<bool> m_recording;
};
