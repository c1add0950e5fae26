#pragma once

#include <gtest/gtest.h>
#include <pro_actions/ActionStateInfo.h>
#include <pro_actions/CProActionCollection.h>
#include <pro_actions/VocabularyLoading.h>
#include <qor_utils/StoreFolders.h>
#include <qor_utils/StoreNumbers.h>
#include <qor_utils/zelPath.h>
#include <test_support/Files.h>
#include <test_support/LogCapture.h>
#include <test_support/ProtocolFolders.h>
#include <test_support/TemporaryFolder.h>
#include <zel_xml/XMLEditing.h>
#include <zel_xml/zelXMLFile.h>

#include <windows.h>

#include <string>

using test_support::ProtocolFolders;
using test_support::State;
using test_support::TestVocabulary;

// A vocabulary, and elements to read from and to write to.
class ElementTest : public testing::Test
{
protected:
    // The document element of an XML text. It stays valid as long as anybody refers to it.
    zelXMLNode Element(const std::string& text)
    {
        const std::wstring path = m_folder / L"element.xml";
        test_support::WriteFile(path, text);
        zelXMLFile file;
        EXPECT_TRUE(file.open(path, false)) << text;
        return file.getRootElement();
    }

    test_support::TemporaryFolder m_folder;
    TestVocabulary m_vocabulary{m_folder / L"actions.xml"};
};
