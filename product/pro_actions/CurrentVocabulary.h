#pragma once

#include <memory>
#include <mutex>

namespace pro_actions {

class ActionVocabulary;

// The vocabulary in use. Readers hold a share of it, so that loading another one never destroys it
// while they read.
class CurrentVocabulary
{
public:
    // The process's only one.
    static CurrentVocabulary& Get() noexcept;

    // Null until a vocabulary is loaded.
    std::shared_ptr<const ActionVocabulary> Share() noexcept;

    void Set(std::shared_ptr<const ActionVocabulary> vocabulary) noexcept;

private:
    std::mutex m_mutex;
    std::shared_ptr<const ActionVocabulary> m_vocabulary;
};

} // namespace pro_actions
