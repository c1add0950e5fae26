#pragma once

#include "ActionsFixture.h"

#include <Utils_Statics/ActionRepository.h>

// The protocol folders, a vocabulary, a log, and no repository yet.
class RepositoryTest : public testing::Test
{
protected:
    RepositoryTest() { ActionRepository::DestroyInstance(); }
    ~RepositoryTest() override { ActionRepository::DestroyInstance(); }

    // Makes the text the factory's file, and reads it.
    ActionRepository* Load(const std::string& text)
    {
        test_support::WriteFile(m_protocol / L"factory\\P1\\ButtonActions.xml", text);
        ActionRepository::DestroyInstance();
        return ActionRepository::GetInstance();
    }

    ProtocolFolders m_protocol;
    TestVocabulary m_vocabulary{m_protocol / L"actions.xml"};
    test_support::LogCapture m_log;
};
