#pragma once

#include <Utils_Statics/export.h>
#include <Utils_Statics/IStatusItem.h>

#include <atomic>
#include <string>

/// The icon of the wired network connection, shown while the setting "NetworkConnection" is on: one
/// image for connected, another for not connected. CWmiService keeps it current.
///
/// One object per process, made on first use. Until CStatusFactory::destroyInstance the static
/// members may be called on any thread.
class UTILS_STATICS_API CStatusNetwork : public IStatusItem
{
public:
    /// The object, to be registered with CStatusFactory::addItem.
    static CStatusNetwork* getInstance();

    /// Stores the state and asks for a repaint, even when nothing changed.
    static void setState(bool connected);
    /// The state that was stored last.
    static bool getState() noexcept;
    static bool isConnected() noexcept; ///< the same as getState

    ~CStatusNetwork() override;

protected:
    void issueUpdate() const override;
    void updateVisibleState() override;
    bool isVisible() const override;
    int drawIcon(const CRect& rect, Gdiplus::Graphics& graphics) const override;

private:
    CStatusNetwork();

    /// The path of the image to draw; empty for none.
    std::wstring getPath() const;

    bool m_enabled = false; // the user's setting

    static std::atomic<CStatusNetwork*> m_me;
    static std::atomic<bool> m_connected;
};
