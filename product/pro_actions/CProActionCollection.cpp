#include <pro_actions/CProActionCollection.h>

#include "ActionVocabulary.h"

#include <zel_xml/zelXMLFile.h>

#include <exception>
#include <memory>
#include <mutex>
#include <utility>

namespace {

using pro_actions::ActionVocabulary;

// The vocabulary in use. Readers take a share of it, so that loading another one never pulls it
// away below them.
class CurrentVocabulary
{
public:
    std::shared_ptr<const ActionVocabulary> get() noexcept
    {
        const std::scoped_lock lock(m_mutex);
        return m_vocabulary;
    }

    void Set(std::shared_ptr<const ActionVocabulary> vocabulary) noexcept
    {
        const std::scoped_lock lock(m_mutex);
        m_vocabulary.swap(vocabulary);
    }

private:
    std::mutex m_mutex;
    std::shared_ptr<const ActionVocabulary> m_vocabulary; // null: empty
};

CurrentVocabulary& Current() noexcept
{
    static CurrentVocabulary vocabulary;
    return vocabulary;
}

} // namespace

bool CProActionCollection::LoadVocabulary(const wchar_t* path) noexcept
{
    try {
        zelXMLFile file;
        auto vocabulary = std::make_shared<ActionVocabulary>();
        if (!file.open(path, true) || !vocabulary->Read(file.getRootElement())) return false;
        Current().Set(std::move(vocabulary));
        return true;
    } catch (const std::exception&) // out of memory
    {
        return false;
    }
}

bool CProActionCollection::LoadVocabulary(const std::wstring& path) noexcept
{
    return LoadVocabulary(path.c_str());
}

void CProActionCollection::Clear() noexcept
{
    Current().Set(nullptr);
}

ActionType CProActionCollection::MapActionType(const wchar_t* name) noexcept
{
    const auto vocabulary = Current().get();
    return vocabulary && name ? static_cast<ActionType>(vocabulary->Types().NumberOf(name))
                              : actionTypeNone;
}

ActionType CProActionCollection::MapActionType(const std::wstring& name) noexcept
{
    return MapActionType(name.c_str());
}

int CProActionCollection::MapAction(ActionType type, const wchar_t* name) noexcept
{
    const auto vocabulary = Current().get();
    return vocabulary && name ? vocabulary->ActionsOf(type).NumberOf(name) : -1;
}

int CProActionCollection::MapAction(ActionType type, const std::wstring& name) noexcept
{
    return MapAction(type, name.c_str());
}

std::wstring CProActionCollection::GetActionTypeName(ActionType type)
{
    const auto vocabulary = Current().get();
    return vocabulary ? vocabulary->Types().NameOf(type) : std::wstring();
}

std::wstring CProActionCollection::GetActionName(ActionType type, int action)
{
    const auto vocabulary = Current().get();
    return vocabulary ? vocabulary->ActionsOf(type).NameOf(action) : std::wstring();
}
