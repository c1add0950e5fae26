#include "Utils_Statics/ActionRepository.h"

#include <qor_utils/zelLogger.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_xml/zelXMLFile.h>

#include <functional>
#include <map>
#include <new>
#include <string_view>
#include <utility>

namespace utils_statics {

// A record keeps its address until the map is cleared.
class ButtonActions : public std::map<std::wstring, ButtonAction, std::less<>>
{
};

} // namespace utils_statics

namespace {

// The line number that stands for the message in the log.
constexpr int messageLoadFailed = 32;

} // namespace

constinit ActionRepository* ActionRepository::m_instance = nullptr;

ActionRepository::ActionRepository() : m_actions(std::make_unique<utils_statics::ButtonActions>())
{
}

ActionRepository::~ActionRepository() = default;

ActionRepository* ActionRepository::GetInstance()
{
    if (m_instance) return m_instance;
    m_instance = new ActionRepository; // owned until DestroyInstance
    if (!m_instance->Load())
        zelLogger::zelLogHelper("Utils_Statics/ActionRepository", messageLoadFailed,
                                1)(L"Could not load actions from file");
    return m_instance;
}

void ActionRepository::DestroyInstance()
{
    delete std::exchange(m_instance, nullptr);
}

const ButtonAction* ActionRepository::GetAction(const wchar_t* name) const noexcept
{
    if (!name) return nullptr;
    const auto found = m_actions->find(std::wstring_view(name));
    return found == m_actions->end() ? nullptr : &found->second;
}

bool ActionRepository::Load()
try {
    RemoveAll();
    zelXMLFile file;
    if (!file.open(utilsExam::GetProtocolFile(L"ButtonActions.xml"), true)) return false;
    zelXMLNode element = file.getRootElement().getFirstChild();
    for (; element.isValid(); ++element) {
        ButtonAction button;
        if (!button.Load(element)) continue;
        const std::wstring name = button.name;
        m_actions->try_emplace(name, std::move(button)); // of several with a name, the first stays
    }
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

void ActionRepository::RemoveAll()
{
    m_actions->clear();
}
