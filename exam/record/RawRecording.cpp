#include "record/RawRecording.h"

namespace exam {

bool RawRecording::Start(const std::wstring& path, const Announcement& announcement)
{
    const CineFile& cine = m_session.cine();
    if (!m_store.InitStorage(path.c_str(), cine.type(), cine.description(), cine.steering(),
                             cine.apex(), cine.lineOffset(), cine.lineCount(), 0, 0))
        return false;
    m_store.SetCompleteCallback(announcement.callback, announcement.userData);
    return true;
}

bool RawRecording::AddFrame()
{
    const auto frame = m_session.cine().frame(m_session.frame());
    // The store only reads; its signature is older than const.
    return m_store.AddFrame(const_cast<std::uint8_t*>(frame.data()),
                            static_cast<int>(frame.size()));
}

bool RawRecording::Finish()
{
    return m_store.EndStorage();
}

} // namespace exam
