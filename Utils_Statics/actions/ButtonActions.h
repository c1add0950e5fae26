#pragma once

#include "actions/NameIndex.h"

#include <Utils_Statics/ButtonAction.h>

#include <map>
#include <memory>

namespace utils_statics {

// The order of texts by their UTF-16 code units.
struct ByCodeUnits
{
    bool operator()(const wchar_t* a, const wchar_t* b) const noexcept;
};

// Buttons by their names. A record lives at its place until Clear. The map keeps the records in
// order, the index finds them: among thousands of names the map alone takes several times as long
// as a hash table (actions_bench).
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
    NameIndex m_index; // of all that m_buttons holds
};

} // namespace utils_statics
