#pragma once

#include <Utils_Statics/IStatusItem.h>
#include <Utils_Statics/export.h>

#include <atomic>
#include <string>

/// The icon that shows that a cine is being recorded: while it is, and the setting "CineRecording"
/// is on.
///
/// One object per process, made on first use. The static members may be called on any thread, until
/// CStatusFactory::destroyInstance.
class UTILS_STATICS_API CStatusRecording : public IStatusItem
{
public:
    /// The object, to be registered with CStatusFactory::addItem.
    static CStatusRecording* getInstance();

    /// Stores the state and asks for a repaint, also when nothing changed.
    static void setState(bool recording);
    static bool getState() noexcept;
    static bool isRecording() noexcept; ///< the same

    ~CStatusRecording() override;

protected:
    void issueUpdate() const override;
    void updateVisibleState() override;
    bool isVisible() const override;
    int drawIcon(const CRect& rect, Gdiplus::Graphics& graphics) const override;

private:
    CStatusRecording();

    /// The image to draw; empty for none.
    std::wstring getPath() const;

    bool m_enabled = false; // as the user wants it

    static std::atomic<CStatusRecording*> m_me;
    static std::atomic<bool> m_recording;
};
