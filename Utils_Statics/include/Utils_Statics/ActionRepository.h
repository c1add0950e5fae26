#pragma once

#include <Utils_Statics/ButtonAction.h>
#include <Utils_Statics/export.h>

#include <memory>

namespace utils_statics {
class ButtonActions;
}

/// The actions of all buttons, by the buttons' names. They come from the protocol file
/// "ButtonActions.xml" (docs/formats/button-actions.md) that is in force when the repository is
/// made.
///
/// There is one repository. The first GetInstance makes it and reads the file once. Its content
/// does not change until DestroyInstance. User-interface thread only.
class ActionRepository
{
public:
    ActionRepository(const ActionRepository&) = delete;
    ActionRepository& operator=(const ActionRepository&) = delete;

    /// The repository, never null. When the file cannot be read, that is logged, the repository
    /// stays empty, and the file is not tried again.
    UTILS_STATICS_API static ActionRepository* GetInstance();

    /// Destroys the repository with all its records; a later GetInstance reads the file anew. Does
    /// nothing when there is no repository.
    UTILS_STATICS_API static void DestroyInstance();

    /// The button of that name, or null. Names are compared by their UTF-16 code units, case
    /// included. The repository owns the record and keeps it until DestroyInstance. Allocates
    /// nothing.
    UTILS_STATICS_API const ButtonAction* GetAction(const wchar_t* name) const noexcept;

private:
    ActionRepository();
    ~ActionRepository();

    bool Load();
    void RemoveAll();

    static ActionRepository* m_instance; // null while there is no repository

    std::unique_ptr<utils_statics::ButtonActions> m_actions;
};
