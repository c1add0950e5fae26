#pragma once

#include <base/Handles.h>

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace exam {

/// A session that did not end as it should has left this.
struct LostSession
{
    std::wstring study;                   ///< the study's folder
    std::vector<std::wstring> recordings; ///< the folders of its recordings
    std::wstring report; ///< the report of its crash; empty: it was ended from outside
};

/// The session of an exam, from the start to the end. A file in the user's folder tells of it as
/// long as it runs, and stays behind when it does not end as it should.
class Session
{
public:
    Session() = default;
    ~Session() { End(); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Begins the session. The result is what the one before left, if it did not end. While another
    /// one runs in that folder, this one leaves no trace.
    std::optional<LostSession> Begin(const std::wstring& userFolder);

    /// True when another session ran in that folder at the begin of this one.
    bool IsSecond() const { return m_isSecond; }

    /// Says where recordings go from now on. One that runs may still be in a folder of before.
    void AddRecordings(const std::wstring& folder);

    /// Says which study the session is about.
    void SetStudy(const std::wstring& folder);

    void End();

private:
    void Write();

    base::File m_file;
    bool m_isSecond = false;
    ULONGLONG m_begin = 0; // in the units of a FILETIME
    std::wstring m_study;
    std::vector<std::wstring> m_recordings;
};

} // namespace exam
