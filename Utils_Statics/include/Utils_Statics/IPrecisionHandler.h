#pragma once

/// A tool that wants fine (precision) control of the pointer. PrecisionMouse passes it to the
/// controls that offer such control; only these call it. The application owns it.
class IPrecisionHandler
{
public:
    /// Called when the control has moved the fine position by dx, dy steps (right and down
    /// positive).
    virtual void OnPrecisionMove(int dx, int dy) = 0;

    /// Called when the user has accepted the position.
    virtual void OnPrecisionAccept() = 0;

protected:
    /// Protected, because the application owns its handlers. Not virtual, so that the virtual table
    /// holds the two operations only.
    ~IPrecisionHandler() = default;
};
