#include "pro_actions/VocabularyLoading.h"

#include "ActionVocabulary.h"

#include <zel_xml/zelXMLFile.h>

#include <exception>
#include <memory>
#include <utility>

namespace pro_actions {

bool LoadVocabulary(const std::wstring& path) noexcept
{
    try {
        zelXMLFile file;
        auto vocabulary = std::make_shared<ActionVocabulary>();
        if (!file.open(path, true) || !vocabulary->Read(file.getRootElement())) return false;
        SetCurrentVocabulary(std::move(vocabulary));
        return true;
    } catch (const std::exception&) { // out of memory
        return false;
    }
}

void ClearVocabulary() noexcept
{
    SetCurrentVocabulary(nullptr);
}

std::wstring ActionTypeName(ActionType type)
{
    const auto vocabulary = CurrentVocabulary();
    return vocabulary ? vocabulary->Types().NameOf(type) : std::wstring();
}

std::wstring ActionName(ActionType type, int action)
{
    const auto vocabulary = CurrentVocabulary();
    return vocabulary ? vocabulary->ActionsOf(type).NameOf(action) : std::wstring();
}

} // namespace pro_actions
