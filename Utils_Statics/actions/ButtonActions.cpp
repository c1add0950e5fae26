#include "actions/ButtonActions.h"

#include <cwchar>
#include <utility>

namespace utils_statics {

bool ByCodeUnits::operator()(const wchar_t* a, const wchar_t* b) const noexcept
{
    return std::wcscmp(a, b) < 0;
}

void ButtonActions::Insert(std::unique_ptr<ButtonAction> button)
{
    const wchar_t* const name = button->name.c_str();
    m_buttons.try_emplace(name, std::move(button));
}

const ButtonAction* ButtonActions::Find(const wchar_t* name) const noexcept
{
    const auto found = name ? m_buttons.find(name) : m_buttons.end();
    return found == m_buttons.end() ? nullptr : found->second.get();
}

void ButtonActions::Clear() noexcept
{
    m_buttons.clear();
}

} // namespace utils_statics
