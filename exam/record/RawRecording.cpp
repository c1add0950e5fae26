#include "record/RawRecording.h"

namespace exam {

bool RawRecording::Start(const std::wstring& path, const Announcement& announcement)
{
    const CineDescription& cine = m_session.Cine().Description();
    if (!m_store.InitStorage(path.c_str(), cine.type, cine.stream, cine.steerAngle, cine.apexAngle,
                             cine.lineOffset, cine.apertureLines, 0, 0))
        return false;
    m_store.SetCompleteCallback(announcement.callback, announcement.userData);
    return true;
}

bool RawRecording::AddFrame()
{
    const auto frame = m_session.Cine().Frame(m_session.Frame());
    // The store only reads the frame, though its parameter is not const.
    return m_store.AddFrame(const_cast<std::uint8_t*>(frame.data()),
                            static_cast<int>(frame.size()));
}

bool RawRecording::Finish()
{
    return m_store.EndStorage();
}

} // namespace exam
