#pragma once

#include "window/ListWindow.h"

namespace exam {

/// A window that lists the keys and what they do, made from the table of commands. Escape and the
/// key that opened it close it.
class KeyList : public ListWindow
{
public:
    KeyList();

    /// Writes the texts again.
    void FollowLanguage();

private:
    void Fill() override;
    void AddColumns();
    void AddCommands();
};

} // namespace exam
