#pragma once

#include <Utils_Statics/ButtonAction.h>

#include <map>
#include <memory>

namespace utils_statics {

// The order of texts by their UTF-16 code units.
struct ByCodeUnits
{
    bool operator()(const wchar_t* a, const wchar_t* b) const noexcept;
};

// Buttons by their names. A record lives at its place until Clear.
class ButtonActions
{
public:
    // Takes the button over. Of two with the same name the first stays.
    void Insert(std::unique_ptr<ButtonAction> button);

    // The button of that name, or null; a null name names none.
    const ButtonAction* Find(const wchar_t* name) const noexcept;

    void Clear() noexcept;

private:
    // Each key is its record's own name.
    std::map<const wchar_t*, std::unique_ptr<ButtonAction>, ByCodeUnits> m_buttons;
};

} // namespace utils_statics
