#include "qor_utils/StringEnumHelper.h"

#include <algorithm>

void StringEnumHelper::Add(const wchar_t* name, int value)
{
    if (name) m_rows.push_back({name, value});
}

int StringEnumHelper::GetValue(const wchar_t* name) const
{
    if (!name) return -1;
    const auto row =
        std::find_if(m_rows.begin(), m_rows.end(), [name](const Row& r) { return r.name == name; });
    return row == m_rows.end() ? -1 : row->value;
}

const wchar_t* StringEnumHelper::GetName(int value) const
{
    const auto row = std::find_if(m_rows.begin(), m_rows.end(),
                                  [value](const Row& r) { return r.value == value; });
    return row == m_rows.end() ? L"Unknown" : row->name.c_str();
}
