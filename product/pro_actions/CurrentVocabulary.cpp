#include "CurrentVocabulary.h"

#include "ActionVocabulary.h"

namespace pro_actions {

CurrentVocabulary& CurrentVocabulary::Get() noexcept
{
    static CurrentVocabulary vocabulary;
    return vocabulary;
}

std::shared_ptr<const ActionVocabulary> CurrentVocabulary::Share() noexcept
{
    const std::scoped_lock lock(m_mutex);
    return m_vocabulary;
}

void CurrentVocabulary::Set(std::shared_ptr<const ActionVocabulary> vocabulary) noexcept
{
    const std::scoped_lock lock(m_mutex);
    m_vocabulary.swap(vocabulary);
}

} // namespace pro_actions
