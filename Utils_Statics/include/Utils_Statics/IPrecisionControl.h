#pragma once

class IPrecisionHandler;

/// An on-screen control that offers fine pointer control, for example a fine-adjust panel. The
/// application owns it.
class IPrecisionControl
{
public:
    /// Says that from now on handler wants the fine control; null means that nobody does.
    virtual void SetHandler(IPrecisionHandler* handler) = 0;

protected:
    /// Protected, because the application owns its controls. Not virtual, so that the virtual table
    /// holds the one operation only.
    ~IPrecisionControl() = default;
};
