#pragma once

#include "record/Recording.h"
#include "state/ExamState.h"

#include <cstdint>
#include <vector>

namespace exam {

// Records the frames on display byte for byte into a raw cine file.
class RawRecording : public Recording
{
public:
    explicit RawRecording(const ExamState& state) : m_state(state) {}

    bool Start(const std::wstring& path, const Announcement& announcement) override;
    bool AddFrame() override;
    bool Finish() override;
    bool IsWhole(const std::wstring& path, int frames) const override;

private:
    const ExamState& m_state;
    std::vector<std::uint8_t> m_frame;
    CCineStore m_store;
};

} // namespace exam
