#pragma once

#include <Utils_Statics/export.h>
#include <Utils_Statics/IStatusItem.h>

#include <atomic>
#include <string>

/// The icon of the wireless connection with five strengths of the signal, shown while there is an
/// adapter and the setting "WirelessStrength" is on. CWmiService keeps it current.
///
/// Drawing asks CWmiService for the strength, so each repaint takes as long as the management
/// service takes to answer.
///
/// One object per process, made on first use. Until CStatusFactory::destroyInstance the static
/// members may be called on any thread.
class UTILS_STATICS_API CStatusWireless : public IStatusItem
{
public:
    /// The object, to be registered with CStatusFactory::addItem.
    static CStatusWireless* getInstance();

    /// Stores whether the adapter is connected and asks for a repaint, even when nothing changed.
    static void setConnected(bool connected);
    /// The state that setConnected stored last.
    static bool isConnected() noexcept;

    /// Stores whether there is a wireless adapter and asks for a repaint, even when nothing
    /// changed.
    static void setAvailable(bool available);
    /// The state that setAvailable stored last.
    static bool isAvailable() noexcept;

    /// Asks for a repaint: the signal strength, which is read at drawing time, may have changed.
    static void update();

    ~CStatusWireless() override;

protected:
    void issueUpdate() const override;
    void updateVisibleState() override;
    bool isVisible() const override;
    int drawIcon(const CRect& rect, Gdiplus::Graphics& graphics) const override;

private:
    CStatusWireless();

    /// The path of the image to draw; empty for none.
    std::wstring getPath() const;

    bool m_enabled = false; // the user's setting

    static std::atomic<CStatusWireless*> m_me;
    static std::atomic<bool> m_isConnected;
    static std::atomic<bool> m_isAvailable;
};
