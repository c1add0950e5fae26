#pragma once

#include <Utils_Statics/ButtonAction.h>

#include <map>
#include <memory>

namespace utils_statics {

// Orders texts by their UTF-16 code units.
struct ByCodeUnits
{
    bool operator()(const wchar_t* a, const wchar_t* b) const noexcept;
};

// The buttons by name. A record keeps its address until Clear.
class ButtonActions
{
public:
    // Takes ownership of the button. When the name is taken already, the earlier button stays.
    void Insert(std::unique_ptr<ButtonAction> button);

    // The button of that name; null when there is none, or for a null name.
    const ButtonAction* Find(const wchar_t* name) const noexcept;

    void Clear() noexcept;

private:
    // Each key is its record's own name.
    std::map<const wchar_t*, std::unique_ptr<ButtonAction>, ByCodeUnits> m_buttons;
};

} // namespace utils_statics
