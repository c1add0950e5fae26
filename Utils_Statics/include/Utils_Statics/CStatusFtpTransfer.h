#pragma once

#include <Utils_Statics/IStatusItem.h>
#include <Utils_Statics/export.h>

#include <atomic>
#include <string>

/// The icon that shows that files are being transferred: while they are, and the setting
/// "FTPTransfer" is on.
///
/// One object per process, made on first use. The static members may be called on any thread, until
/// CStatusFactory::destroyInstance.
class UTILS_STATICS_API CStatusFtpTransfer : public IStatusItem
{
public:
    /// The object, to be registered with CStatusFactory::addItem.
    static CStatusFtpTransfer* getInstance();

    /// Stores the state and asks for a repaint, also when nothing changed.
    static void setState(bool transferring);
    static bool getState() noexcept;
    static bool isTransferring() noexcept; ///< the same

    ~CStatusFtpTransfer() override;

protected:
    void issueUpdate() const override;
    void updateVisibleState() override;
    bool isVisible() const override;
    int drawIcon(const CRect& rect, Gdiplus::Graphics& graphics) const override;

private:
    CStatusFtpTransfer();

    /// The image to draw; empty for none.
    std::wstring getPath() const;

    bool m_enabled = false; // as the user wants it

    static std::atomic<CStatusFtpTransfer*> m_me;
    static std::atomic<bool> m_transferring;
};
