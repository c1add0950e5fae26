#include "record/RawRecording.h"

#include "image/CineFile.h"

namespace exam {

bool RawRecording::Start(const std::wstring& path, const Announcement& announcement)
{
    const CineDescription& cine = m_state.Cine().Description();
    if (!m_store.InitStorage(path.c_str(), cine.type, cine.stream, cine.steerAngle, cine.apexAngle,
                             cine.lineOffset, cine.apertureLines, 0, 0))
        return false;
    m_store.SetCompleteCallback(announcement.callback, announcement.userData);
    return true;
}

bool RawRecording::AddFrame()
{
    return m_state.Cine().ReadFrame(m_state.Frame(), m_frame) &&
           m_store.AddFrame(m_frame.data(), static_cast<int>(m_frame.size()));
}

bool RawRecording::Finish()
{
    return m_store.EndStorage();
}

bool RawRecording::IsWhole(const std::wstring& path, int frames) const
{
    RawCine cine;
    return cine.Open(path).empty() && cine.Description().count == frames &&
           FindSizeProblem(cine).empty();
}

} // namespace exam
