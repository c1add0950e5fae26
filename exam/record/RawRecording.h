#pragma once

#include "image/Session.h"
#include "record/Recording.h"

#include <cstdint>
#include <vector>

namespace exam {

// Records the session's frames byte for byte into a raw cine file.
class RawRecording : public Recording
{
public:
    explicit RawRecording(const Session& session) : m_session(session) {}

    bool Start(const std::wstring& path, const Announcement& announcement) override;
    bool AddFrame() override;
    bool Finish() override;
    bool IsWhole(const std::wstring& path, int frames) const override;

private:
    const Session& m_session;
    std::vector<std::uint8_t> m_frame;
    CCineStore m_store;
};

} // namespace exam
