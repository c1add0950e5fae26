#pragma once

#include <Utils_Statics/export.h>
#include <Utils_Statics/IStatusItem.h>

#include <atomic>
#include <string>

/// The icon shown while positions are being tracked. It has no setting.
///
/// One object per process, made on first use. Until CStatusFactory::destroyInstance the static
/// members may be called on any thread.
class UTILS_STATICS_API CStatusGps : public IStatusItem
{
public:
    /// The object, to be registered with CStatusFactory::addItem.
    static CStatusGps* getInstance();

    /// Stores the state and asks for a repaint, even when nothing changed.
    static void setState(bool tracking);

    ~CStatusGps() override;

protected:
    void issueUpdate() const override;
    void updateVisibleState() override;
    bool isVisible() const override;
    int drawIcon(const CRect& rect, Gdiplus::Graphics& graphics) const override;

private:
    CStatusGps();

    /// The path of the image to draw; empty for none.
    std::wstring getPath() const;

    static std::atomic<CStatusGps*> m_me;
    static std::atomic<bool> m_isTracking;
};
