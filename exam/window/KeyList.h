#pragma once

#include "commands/Command.h"
#include "window/ListWindow.h"

#include <vector>

namespace exam {

/// A window that lists the keys and what they do, made from the table of commands. A long text
/// takes several rows, so that nothing scrolls sideways.
class KeyList : public ListWindow
{
public:
    KeyList();

private:
    void Fill() override;
    void Resized() override;
    void AddColumns();
    void AddCommands();
    int WidestOf(CString (*text)(const Command& command)) const;
    int WidthOf(const CString& text) const;
    std::vector<CString> RowsOf(const CString& text, int width) const;
};

} // namespace exam
