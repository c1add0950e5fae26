#pragma once

#include <base/SlimLock.h>

#include <mutex>
#include <shared_mutex>
#include <unordered_map>
#include <utility>

namespace framework {

// Maps handles to the objects that they are attached to. One map serves all threads, so an object
// that is destroyed on another thread than its own leaves no address behind.
template <class Handle, class Object>
class PermanentMap
{
public:
    Object* Find(Handle handle) const
    {
        const std::shared_lock lock(m_mutex);
        const auto found = m_objects.find(handle);
        return found == m_objects.end() ? nullptr : found->second;
    }

    // False when the handle already has another object.
    bool Add(Handle handle, Object* object)
    {
        const std::unique_lock lock(m_mutex);
        return m_objects.try_emplace(handle, object).second;
    }

    void Remove(Handle handle, const Object* object)
    {
        const std::unique_lock lock(m_mutex);
        const auto found = m_objects.find(handle);
        if (found != m_objects.end() && found->second == object) m_objects.erase(found);
    }

private:
    mutable base::SlimLock m_mutex;
    std::unordered_map<Handle, Object*> m_objects;
};

} // namespace framework
