#pragma once

#include <afx.h>

class CCmdTarget;

/// Calls the method that a message-map entry names. The message's result is the method's, or 0.
using AFX_MSG_HANDLER = LRESULT (*)(CCmdTarget* target, WPARAM wParam, LPARAM lParam);

/// One entry of a message map: a message, for WM_COMMAND also a notification code and a range of
/// identifiers.
struct AFX_MSGMAP_ENTRY
{
    UINT nMessage;           ///< WM_...
    UINT nCode;              ///< notification code of a command
    UINT nID;                ///< first identifier of a command
    UINT nLastID;            ///< last identifier of a command
    AFX_MSG_HANDLER handler; ///< null ends the map
};

/// The entries of one class, and the way to those of its base class.
struct AFX_MSGMAP
{
    const AFX_MSGMAP* (*pfnGetBaseMap)(); ///< null in the root class
    const AFX_MSGMAP_ENTRY* lpEntries;    ///< the last one has no handler
};

struct AFX_CMDHANDLERINFO;

/// The root of the classes that handle messages and commands by a message map.
class MFC_API CCmdTarget : public CObject
{
public:
    ~CCmdTarget() override;

    /// Passes a command (`code` CN_COMMAND) or a control's notification to the map's handler; FALSE
    /// when there is none.
    virtual BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* info);

    /// The most derived class's first entry for the message; null when no class of the object has
    /// one.
    const AFX_MSGMAP_ENTRY* FindMessageEntry(UINT message, UINT code, UINT id) const;

protected:
    CCmdTarget() = default;
    /// The map of this class, and that of the object's own class. DECLARE_MESSAGE_MAP declares both
    /// in a derived class.
    static const AFX_MSGMAP* GetThisMessageMap();
    virtual const AFX_MSGMAP* GetMessageMap() const;
};
