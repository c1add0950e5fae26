#pragma once

#include <memory>
#include <mutex>

namespace pro_actions {

class ActionVocabulary;

// The vocabulary in use. Readers take a share of it, so that loading another one never pulls it
// away below them.
class CurrentVocabulary
{
public:
    // The process has one.
    static CurrentVocabulary& Get() noexcept;

    // Null while none was loaded.
    std::shared_ptr<const ActionVocabulary> Share() noexcept;

    void Set(std::shared_ptr<const ActionVocabulary> vocabulary) noexcept;

private:
    std::mutex m_mutex;
    std::shared_ptr<const ActionVocabulary> m_vocabulary;
};

} // namespace pro_actions
