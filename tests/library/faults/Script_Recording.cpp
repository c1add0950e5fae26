// Cines and movies, documents, the log, and what only computes.
#include "Script.h"

#include <pro_actions/VocabularyLoading.h>
#include <qor_utils/LogOutput.h>
#include <qor_utils/zelLogger.h>
#include <Utils_Statics/Utils_Statics.h>
#include <zel_string_convert/TableLoading.h>
#include <zel_xml/XMLEditing.h>

namespace faults {

namespace {

using test_support::TemporaryFolder;
using test_support::WriteFile;

bool RecordMovie(CCineStoreAVI& movie, const std::wstring& path)
{
    std::vector<DWORD> pixels(32 * 16, 0xFF204060);
    CBitmap screen;
    screen.CreateBitmap(32, 16, 1, 32, pixels.data());
    const bool held = movie.InitStorage(path.c_str(), nullptr, 32, 16, CRect(0, 0, 32, 16), 32) &&
                      movie.AddFrame(screen, false, false) && movie.AddFrame(screen, true, true);
    return movie.EndStorage() && held;
}

std::string Table()
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<xliff version=\"1.2\" xmlns=\"urn:oasis:names:tc:xliff:document:1.2\">"
           "<file original=\"t\" datatype=\"plaintext\" source-language=\"en\"><body>"
           "<trans-unit id=\"k\" resname=\"k\"><source>value %d</source></trans-unit>"
           "</body></file></xliff>";
}

} // namespace

std::vector<Step> RecordingSteps(const TemporaryFolder& folder)
{
    const std::wstring cine = folder / L"cine.bin";
    const std::wstring movie = folder / L"movie.avi";
    return {
        {"CCineStore",
         [=](Outcome& outcome) {
             CCineStore store;
             unsigned char frame[64] = {};
             bool held = store.InitStorage(cine.c_str(), uData{}, uDataDesc{}, 0, 0, 0, 0, 0, 0);
             for (int i = 0; i < 3; ++i)
                 held = held && store.AddFrame(frame, sizeof frame);
             const bool ended = store.EndStorage();
             outcome.Result(ended && held);
             if (ended && held) outcome.Sees(Content(cine));
         }},
        // EndStorage has no result that tells, and ends the movie whatever happens.
        {"CCineStoreAVI",
         [=](Outcome& outcome) {
             DeleteFileW(movie.c_str());
             CCineStoreAVI store;
             const bool held = RecordMovie(store, movie);
             outcome.Result(held);
             if (held) outcome.Sees(Content(movie));
         }},
    };
}

std::vector<Step> ComputingSteps(const TemporaryFolder& folder)
{
    const std::wstring document = folder / L"saved.xml";
    const std::wstring table = folder / L"table.xlf";
    const std::wstring log = folder / L"log";
    return {
        {"SaveDocument",
         [=](Outcome& outcome) {
             WriteFile(document, "<old/>");
             zelXMLFile file;
             outcome.Result(zel_xml::CreateDocument(file, document.c_str(), L"new"));
             outcome.Result(zel_xml::SaveDocument(file));
             outcome.Sees(Content(document));
         }},
        {"SaveDocument, a new one",
         [=](Outcome& outcome) {
             DeleteFileW(document.c_str());
             zelXMLFile file;
             outcome.Result(zel_xml::CreateDocument(file, document.c_str(), L"new"));
             outcome.Result(zel_xml::SaveDocument(file));
             outcome.Sees(Content(document));
         }},
        {"LoadTable",
         [=](Outcome& outcome) {
             WriteFile(table, Table());
             std::wstring error;
             outcome.Result(zel_string_convert::LoadTable(table, &error));
             outcome.Value(GetStr("k", 5).GetString(), L"k"); // a missing text is its key
             zel_string_convert::ClearTable();
         }},
        // The log has nobody to tell.
        {"zelLogHelper",
         [=, &folder](Outcome& outcome) {
             qor_utils::SetLogDirectory(log);
             DeleteFileW((log + L"\\faults_test.log").c_str());
             zelLogger::zelLogHelper("faults", 1, qor_utils::errorLevel)(L"a line");
             qor_utils::SetLogDirectory(folder.Path());
             outcome.Sees(test_support::FileExists(log + L"\\faults_test.log"));
         },
         false},
        {"StringParse",
         [](Outcome& outcome) {
             CStringArray words;
             StringParse::GetAllWords(L"some words in a row", words, L' ');
             outcome.Sees(words.GetCount());
         }},
        {"MfcConversions",
         [](Outcome& outcome) {
             outcome.Text(QOR_MFC_CONVERSIONS::MFC_2_QOR(QOR_MFC_CONVERSIONS::QOR_2_MFC(L"abc")));
         }},
        {"MAT_LeastSquares",
         [](Outcome& outcome) {
             const double a[] = {1, 2, 3, 4, 5, 7};
             const double y[] = {1, 2, 3};
             double x[2] = {};
             MAT_LeastSquares(a, 3, 2, y, x);
             outcome.Sees(Sum(x, sizeof x));
         }},
        {"spectralTraceData",
         [](Outcome& outcome) {
             unsigned char data[64] = {1, 2, 3};
             spectralTraceData trace;
             trace.setData(data, 64, 4);
             outcome.Result(!trace.isEmpty());
         }},
        {"EnableLowFragmentationHeap", [](Outcome&) { utilsExam::EnableLowFragmentationHeap(); }},
    };
}

} // namespace faults
