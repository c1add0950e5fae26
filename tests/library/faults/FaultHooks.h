#pragma once

#include "FaultRows.h"

#include <map>
#include <set>
#include <string>
#include <utility>

namespace faults {

// The rows in place of what the library and the product's libraries import, while it lives.
class Hooks
{
public:
    Hooks();
    ~Hooks();
    Hooks(const Hooks&) = delete;
    Hooks& operator=(const Hooks&) = delete;

    std::set<std::string> missing; // imports without a row and without a reason
    std::set<std::string> rows;    // functions that are imported
    std::set<std::string> exempt;

private:
    void Take(const char* library, const char* function, void** slot);

    std::map<std::string_view, Row> m_table;
    std::vector<std::pair<void**, void*>> m_originals;
};

} // namespace faults
