#include "study/StudyFile.h"

#include "study/Study.h"
#include "study/StudyElements.h"

#include <base/Handles.h>
#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/utilsExam.h>
#include <zel_xml/XMLEditing.h>

#include <algorithm>
#include <cwchar>

namespace exam {

namespace {

// The n of an id or a file name that begins with "On"; 0 for any other.
int NumberOfObject(const std::wstring& name)
{
    return name.starts_with(L'O') ? CountedNumber(std::wcstol(name.c_str() + 1, nullptr, 10)) : 0;
}

// The largest number of an object's file in a folder, listed in the study or not.
int LargestObjectNumber(const std::wstring& folder)
{
    WIN32_FIND_DATAW data = {};
    const base::Find find(FindFirstFileW((folder + L"\\O*.xml").c_str(), &data));
    int largest = 0;
    if (find) {
        do {
            largest = std::max(largest, NumberOfObject(data.cFileName));
        } while (FindNextFileW(find.get(), &data));
    }
    return largest;
}

// A path below the study's folder, as utilsExam's functions take it.
std::wstring AnyObjectOf(const std::wstring& folder)
{
    return folder + L"\\O";
}

// The user is told the first problem. The others are met after it is solved.
void KeepFirst(std::wstring& sentence, const std::wstring& another)
{
    if (sentence.empty()) sentence = another;
}

} // namespace

std::wstring StudyFile::Open(const std::wstring& folder, StudyContent& content)
{
    *this = StudyFile();
    m_folder = folder;
    content = {};
    const std::wstring object = AnyObjectOf(folder);
    std::wstring problem =
        m_patient.Open(utilsExam::GetPatientPath(object.c_str()).GetString(), L"patient");
    KeepFirst(problem, m_study.Open(utilsExam::GetStudyPath(object.c_str()).GetString(), L"study"));
    if (!problem.empty()) return problem;
    m_isOpen = true;
    m_hasPatient = m_patient.Root().isValid();
    ReadPatient(m_patient.Root(), content.patient);
    ReadStudy(m_study.Root(), content);
    content.lastObject = LargestObjectNumber(folder);
    problem = ReadElements(content);
    m_saved = content;
    return problem;
}

// Objects come before the marks that lie on them, wherever they stand in the file.
std::wstring StudyFile::ReadElements(StudyContent& content)
{
    std::wstring problem;
    for (zelXMLNode child = m_study.Root().getFirstChild(); child.isValid(); ++child)
        if (zel_xml::NameOf(child) == L"object") KeepFirst(problem, OpenObject(child, content));
    for (zelXMLNode child = m_study.Root().getFirstChild(); child.isValid(); ++child)
        if (zel_xml::NameOf(child) == L"mark") ReadMark(child, content);
    std::ranges::sort(content.marks, {}, [](const auto& mark) { return mark->number; });
    const int strange = static_cast<int>(m_strange.size());
    if (strange > 0)
        KeepFirst(problem, GetStr("study.problem.strange", m_folder.c_str(), strange).GetString());
    return problem;
}

std::wstring StudyFile::OpenObject(const zelXMLNode& entry, StudyContent& content)
{
    StudyObject object;
    object.id = entry.getAttribute(L"id");
    if (!IsObjectId(object.id) || FindObject(content, object.id) ||
        content.objects.size() >= Study::mostObjects) {
        m_strange.push_back(entry);
        return {};
    }
    const std::wstring path = ObjectPath(object.id);
    KeptDocument& document = m_objects[object.id];
    std::wstring problem = document.Open(path, L"object");
    if (!problem.empty()) m_unusable.insert(object.id);
    if (problem.empty() && !document.Root().isValid())
        problem = GetStr("study.problem.missing", path.c_str()).GetString();
    m_entries[object.id] = entry;
    content.lastObject = std::max(content.lastObject, NumberOfObject(object.id));
    ReadObject(document.Root(), object);
    content.objects.emplace_back(std::move(object));
    return problem;
}

void StudyFile::ReadMark(const zelXMLNode& element, StudyContent& content)
{
    content.lastNumber = std::max(content.lastNumber, NumberOfMark(element));
    const auto mark = exam::ReadMark(element, content);
    if (!mark) {
        m_strange.push_back(element);
        return;
    }
    m_marks[{mark->number, InfoOf(mark->kind).name}] = element;
    content.marks.emplace_back(*mark);
}

std::wstring StudyFile::ObjectPath(const std::wstring& id) const
{
    return utilsExam::GetObjectPath((m_folder + L"\\" + id).c_str()).GetString();
}

std::wstring StudyFile::Save(const StudyContent& content)
{
    if (!m_isOpen) return GetStr("study.problem.unwritable", m_folder.c_str()).GetString();
    utilsExam::CreateDirectoryW(m_folder.c_str());
    std::wstring problem = SaveObjects(content);
    if (problem.empty()) problem = SavePatient(content.patient);
    if (problem.empty())
        problem = m_study.Save([&](const zelXMLNode& root) { WriteStudy(content, root); });
    if (problem.empty()) m_saved = content;
    return problem;
}

std::wstring StudyFile::SavePatient(const Patient& patient)
{
    if (m_hasPatient && patient == m_saved.patient) return {};
    std::wstring problem =
        m_patient.Save([&](const zelXMLNode& root) { WritePatient(patient, root); });
    if (problem.empty()) m_hasPatient = true;
    return problem;
}

std::wstring StudyFile::SaveObjects(const StudyContent& content)
{
    for (const Shared<StudyObject>& object : content.objects) {
        const StudyObject* const saved = FindObject(m_saved, object->id);
        if ((saved && *saved == *object) || m_unusable.contains(object->id)) continue;
        const auto [entry, isNew] = m_objects.try_emplace(object->id);
        std::wstring problem;
        if (isNew) problem = entry->second.Open(ObjectPath(object->id), L"object");
        if (problem.empty())
            problem =
                entry->second.Save([&](const zelXMLNode& root) { WriteObject(*object, root); });
        if (!problem.empty() && isNew) m_objects.erase(entry); // nothing is known of its file
        if (!problem.empty()) return problem;
    }
    return {};
}

void StudyFile::WriteStudy(const StudyContent& content, const zelXMLNode& root) const
{
    WriteStudyAttributes(content, root);
    for (const Shared<StudyObject>& object : content.objects) {
        const zelXMLNode element = zel_xml::AppendChild(root, L"object");
        element.setAttribute(L"id", object->id);
        const auto read = m_entries.find(object->id);
        if (read != m_entries.end()) CarryOver(read->second, element);
    }
    for (const Shared<Mark>& mark : content.marks) {
        const zelXMLNode element = zel_xml::AppendChild(root, L"mark");
        WriteMark(*mark, element);
        const auto read = m_marks.find({mark->number, InfoOf(mark->kind).name});
        if (read != m_marks.end()) CarryOver(read->second, element);
    }
    for (const zelXMLNode& strange : m_strange)
        CopyElement(strange, zel_xml::AppendChild(root, zel_xml::NameOf(strange).c_str()));
}

} // namespace exam
