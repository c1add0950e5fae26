#pragma once

/// A tool that wants fine (precision) control of the pointer. It is passed to the controls that
/// offer it, which call it; PrecisionMouse never does. Owned by the application.
class IPrecisionHandler
{
public:
    /// The control moved the fine position by dx, dy steps (right and down positive).
    virtual void OnPrecisionMove(int dx, int dy) = 0;

    /// The user accepted the position that was reached.
    virtual void OnPrecisionAccept() = 0;

protected:
    /// Not for deleting through: the application owns its handlers. Not virtual, so that the two
    /// operations are all.
    ~IPrecisionHandler() = default;
};
