#pragma once

#include "DrivenExam.h"
#include "Input.h"

#include <optional>
#include <random>
#include <string>
#include <vector>

namespace soak {

/// Does with the application whatever comes, the same with the same seed. Never does what ends it.
class RandomUser
{
public:
    /// `files` are those that it opens. The application outlives this object.
    RandomUser(DrivenExam& exam, std::vector<std::wstring> files, unsigned seed);

    /// Carries out every command once, so that all that is made only once is there.
    void PressAll();

    /// Lets each simulated probe run until it has as many frames as it keeps.
    void FillProbes();

    /// Does one thing: with the menu or the dialog that is open, else with the window.
    void Act();

    /// Closes menus and dialogs, and ends a recording.
    void Rest();

private:
    struct Key
    {
        UINT code;
        bool withControl;
    };

    int Below(int end);
    LONG Between(LONG first, LONG end);
    void Settle();
    std::optional<POINT> PlaceIn(HWND window);
    std::optional<POINT> AnyPlace();
    bool IsHarmless(POINT place) const;
    Button AnyButton();
    std::wstring AnyText();

    static void Press(const Key& key);
    void PressCommand();
    void Click(std::optional<POINT> place);
    void Drag();
    void Wheel();
    void PlaceWindow();
    void UseMenu(HWND menu);
    void UseDialog(HWND dialog);
    void ChooseFile();

    DrivenExam& m_exam;
    std::vector<std::wstring> m_files;
    std::vector<Key> m_keys; // of the commands
    std::mt19937 m_random;
};

} // namespace soak
