#pragma once

#include <Utils_Statics/ButtonAction.h>
#include <Utils_Statics/export.h>

#include <memory>

namespace utils_statics {
class ButtonActions;
}

/// The actions of all buttons, by the buttons' names: the content of the protocol file
/// "ButtonActions.xml" (docs/formats/button-actions.md) that is in force when the repository is
/// made.
///
/// There is one repository. The first GetInstance makes it and reads the file, once; its content
/// does not change until DestroyInstance. For the user-interface thread only.
class ActionRepository
{
public:
    ActionRepository(const ActionRepository&) = delete;
    ActionRepository& operator=(const ActionRepository&) = delete;

    /// The repository, never null. A file that cannot be read is logged when it is tried, which is
    /// not done again: the repository then stays empty.
    UTILS_STATICS_API static ActionRepository* GetInstance();

    /// Destroys the repository with all its records; a later GetInstance reads the file anew.
    /// Without a repository nothing happens.
    UTILS_STATICS_API static void DestroyInstance();

    /// The button of that name, or null. Names are compared by their UTF-16 code units, case
    /// included. The record is the repository's and lives as long. Nothing is allocated.
    UTILS_STATICS_API const ButtonAction* GetAction(const wchar_t* name) const noexcept;

private:
    ActionRepository();
    ~ActionRepository();

    bool Load();
    void RemoveAll();

    static ActionRepository* m_instance; // null: none

    std::unique_ptr<utils_statics::ButtonActions> m_actions;
};
