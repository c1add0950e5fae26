#pragma once

#include "qor_utils/export.h"

#include <deque>
#include <string>

/// A two-way map between names and the values of an enumeration, for tables of a few rows. It has
/// no lock: fill it before other threads read it.
class QOR_UTILS_API StringEnumHelper
{
public:
    /// Adds a row. When a name or a value occurs again, look-ups still find the row that was added
    /// first. So a value may have several names, of which the first is the one to show. A null name
    /// is ignored.
    void Add(const wchar_t* name, int value);

    /// The value of a name, compared exactly (case matters); -1 for an unknown or null name.
    int GetValue(const wchar_t* name) const;

    /// The name of a value, or "Unknown". The text lives as long as this object, even when rows are
    /// added later.
    const wchar_t* GetName(int value) const;

private:
    struct Row
    {
        std::wstring name;
        int value;
    };
    std::deque<Row> m_rows; // a deque, because adding a row does not move the names
};
