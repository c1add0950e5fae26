#pragma once

#include <Utils_Statics/export.h>
#include <Utils_Statics/IStatusItem.h>

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <string>

/// The icon shown while the image is being streamed and the setting "Streaming" is on. This
/// computer's address is written over it when the setting "StreamingIP" is on. While the image is
/// streamed to disk, the icon is shown whatever the settings, without the address, and blinks: one
/// second lit, one second dark.
///
/// One object per process, made on first use. Until CStatusFactory::destroyInstance the static
/// members may be called on any thread.
class UTILS_STATICS_API CStatusStreaming : public IStatusItem
{
public:
    /// The states tell whether the image is streamed, and where to.
    enum StreamingStatus : std::int32_t
    {
        StreamingOff = 0,   ///< nowhere
        StreamingOn = 1,    ///< over the network
        StreamingToDisk = 2 ///< to a file
    };

    /// The object, to be registered with CStatusFactory::addItem.
    static CStatusStreaming* getInstance();

    /// Stores the state, restarts or ends the blinking, and asks for a repaint, even when nothing
    /// changed.
    static void setState(StreamingStatus status);
    /// The state that was stored last.
    static StreamingStatus getState() noexcept;
    /// True in every state but StreamingOff.
    static bool isStreaming() noexcept;

    /// Ends the blinking; waits for a repaint callback that the blinking is calling.
    ~CStatusStreaming() override;

protected:
    void issueUpdate() const override;
    /// Also looks up the address, which may take seconds, and restarts the blinking.
    void updateVisibleState() override;
    /// True while the image is streamed and the setting is on, and while it is streamed to disk.
    bool isVisible() const override;
    /// While the icon is dark, nothing is drawn but the width is the same, so that the row does not
    /// move.
    int drawIcon(const CRect& rect, Gdiplus::Graphics& graphics) const override;

private:
    CStatusStreaming();

    /// The path of the image to draw; empty for none.
    std::wstring getPath() const;
    void setBlinkState();
    void DrawAddress(const CRect& rect, Gdiplus::Graphics& graphics) const;
    static void CALLBACK StatusMessageTimer(UINT timer, UINT message, DWORD_PTR user,
                                            DWORD_PTR reserved1, DWORD_PTR reserved2);

    bool m_enabled = false; // the user's setting
    bool m_showIp = false;
    std::wstring m_ipAddress;
    std::uint32_t m_timerId = 0; // the latest timer, which may have ended
    std::atomic<bool> m_blinkOff = false;

    static std::atomic<CStatusStreaming*> m_me;
    static std::atomic<StreamingStatus> m_streaming;
};
