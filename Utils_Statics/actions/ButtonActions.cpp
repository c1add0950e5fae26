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
    m_index.Reserve(m_buttons.size() + 1);
    const ButtonAction* const record = button.get();
    const wchar_t* const name = record->name.c_str();
    const bool isNew = m_buttons.try_emplace(name, std::move(button)).second;
    if (isNew) m_index.Add(name, record);
}

const ButtonAction* ButtonActions::Find(const wchar_t* name) const noexcept
{
    return name ? m_index.Find(name) : nullptr;
}

void ButtonActions::Clear() noexcept
{
    m_index.Clear();
    m_buttons.clear();
}

} // namespace utils_statics
