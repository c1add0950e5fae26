#pragma once

#include <string>

namespace exam {

/// Collects what the library logs about zip archives while this object lives. Only the log has the
/// reason of a failure, and the result of extracting the last entry does not tell a failure from
/// the end. One object at a time, because it takes the logger's only hook.
class ArchiveErrors
{
public:
    ArchiveErrors();
    ~ArchiveErrors();
    ArchiveErrors(const ArchiveErrors&) = delete;
    ArchiveErrors& operator=(const ArchiveErrors&) = delete;

    /// The first message; empty when there was none.
    const std::wstring& First() const { return m_first; }

private:
    std::wstring m_first;
};

} // namespace exam
