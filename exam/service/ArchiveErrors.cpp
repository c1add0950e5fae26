#include "service/ArchiveErrors.h"

#include <qor_utils/LogOutput.h>

#include <string_view>

namespace exam {

ArchiveErrors::ArchiveErrors()
{
    const auto keepFirst = [](const qor_utils::LogMessage& message, void* first) {
        constexpr std::string_view source = "Utils_Statics/ZipArchive";
        auto& text = *static_cast<std::wstring*>(first);
        if (!text.empty() || message.source != source) return;
        text = message.text;
        text.erase(text.find_last_not_of(L'\n') + 1);
    };
    qor_utils::SetLogHook(keepFirst, &m_first);
}

ArchiveErrors::~ArchiveErrors()
{
    qor_utils::SetLogHook(nullptr, nullptr);
}

} // namespace exam
