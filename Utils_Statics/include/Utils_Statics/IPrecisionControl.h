#pragma once

class IPrecisionHandler;

/// An on-screen control that offers fine pointer control, a fine-adjust panel say. Owned by the
/// application.
class IPrecisionControl
{
public:
    /// From now on handler wants the fine control; null: nobody does.
    virtual void SetHandler(IPrecisionHandler* handler) = 0;

protected:
    /// Not for deleting through: the application owns its controls. Not virtual, so that the one
    /// operation is all.
    ~IPrecisionControl() = default;
};
