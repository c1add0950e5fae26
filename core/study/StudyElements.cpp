#include "study/StudyElements.h"

#include "study/Study.h"

#include <zel_xml/XMLEditing.h>

#include <algorithm>
#include <cwchar>
#include <limits>

namespace exam {

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

template <class Owner, class Value>
struct Field
{
    const wchar_t* name;
    Value Owner::*value;
};

constexpr Field<Patient, std::wstring> patientFields[] = {
    {L"id", &Patient::id},   {L"name", &Patient::name},       {L"birth", &Patient::birth},
    {L"sex", &Patient::sex}, {L"comment", &Patient::comment},
};

constexpr Field<StudyContent, std::wstring> studyFields[] = {
    {L"date", &StudyContent::date},
    {L"description", &StudyContent::description},
};

constexpr Field<StudyObject, std::wstring> objectFields[] = {
    {L"image", &StudyObject::image},
    {L"title", &StudyObject::title},
};

constexpr Field<uDataDesc, std::int32_t> streamFields[] = {
    {L"lines", &uDataDesc::lines},
    {L"samples", &uDataDesc::samples},
    {L"bitsPerSample", &uDataDesc::bitsPerSample},
    {L"samplingFrequency", &uDataDesc::samplingFreq},
    {L"soundSpeed", &uDataDesc::soundSpeed},
    {L"probeType", &uDataDesc::probeType},
    {L"elements", &uDataDesc::elements},
    {L"pitch", &uDataDesc::pitch},
    {L"radius", &uDataDesc::radius},
    {L"sectorAngle", &uDataDesc::sectorAngle},
    {L"frameRate", &uDataDesc::frameRate},
};

constexpr Field<Acquisition, std::int32_t> angleFields[] = {
    {L"steerAngle", &Acquisition::steerAngle},
    {L"apexAngle", &Acquisition::apexAngle},
};

template <class Fields, class Owner>
void ReadTexts(const zelXMLNode& element, const Fields& fields, Owner& owner)
{
    for (const auto& field : fields)
        owner.*field.value = element.getAttribute(field.name);
}

template <class Fields, class Owner>
void WriteTexts(const Owner& owner, const Fields& fields, const zelXMLNode& element)
{
    for (const auto& field : fields)
        element.setAttribute(field.name, owner.*field.value);
}

template <class Fields, class Owner>
void ReadNumbers(const zelXMLNode& element, const Fields& fields, Owner& owner)
{
    for (const auto& field : fields)
        owner.*field.value = element.getAttributeInt(field.name, 0);
}

template <class Fields, class Owner>
void WriteNumbers(const Owner& owner, const Fields& fields, const zelXMLNode& element)
{
    for (const auto& field : fields)
        element.setAttributeInt(field.name, owner.*field.value);
}

bool IsOfNames(wchar_t character)
{
    return (character >= L'a' && character <= L'z') || (character >= L'A' && character <= L'Z') ||
           (character >= L'0' && character <= L'9') || character == L'-' || character == L'_';
}

std::vector<MarkPoint> ReadPoints(const zelXMLNode& element)
{
    std::vector<MarkPoint> points;
    for (zelXMLNode child = element.getFirstChild(); child.isValid(); ++child)
        if (zel_xml::NameOf(child) == L"point")
            points.push_back({child.getAttributeDouble(L"x", notANumber),
                              child.getAttributeDouble(L"y", notANumber)});
    return points;
}

} // namespace

bool IsObjectId(const std::wstring& id)
{
    constexpr std::size_t longest = 64;
    return !id.empty() && id.size() <= longest && std::ranges::all_of(id, IsOfNames) &&
           _wcsicmp(id.c_str(), L"study") != 0;
}

void ReadPatient(const zelXMLNode& element, Patient& patient)
{
    ReadTexts(element, patientFields, patient);
}

void WritePatient(const Patient& patient, const zelXMLNode& element)
{
    WriteTexts(patient, patientFields, element);
}

void ReadStudy(const zelXMLNode& element, StudyContent& content)
{
    ReadTexts(element, studyFields, content);
    content.lastNumber = CountedNumber(element.getAttributeInt(L"lastNumber", 0));
}

void WriteStudyAttributes(const StudyContent& content, const zelXMLNode& element)
{
    WriteTexts(content, studyFields, element);
    element.setAttributeInt(L"lastNumber", content.lastNumber);
}

void ReadObject(const zelXMLNode& element, StudyObject& object)
{
    ReadTexts(element, objectFields, object);
    const zelXMLNode acquisition = element.getChildByName(L"acquisition", false);
    ReadNumbers(acquisition, streamFields, object.acquisition.stream);
    ReadNumbers(acquisition, angleFields, object.acquisition);
}

void WriteObject(const StudyObject& object, const zelXMLNode& element)
{
    element.setAttribute(L"id", object.id);
    WriteTexts(object, objectFields, element);
    const zelXMLNode acquisition = element.getChildByName(L"acquisition", true);
    WriteNumbers(object.acquisition.stream, streamFields, acquisition);
    WriteNumbers(object.acquisition, angleFields, acquisition);
}

int NumberOfMark(const zelXMLNode& element)
{
    return CountedNumber(element.getAttributeInt(L"number", 0));
}

std::optional<Mark> ReadMark(const zelXMLNode& element, const StudyContent& content)
{
    const auto kind = KindNamed(element.getAttribute(L"kind"));
    if (!kind || content.marks.size() >= Study::mostMarks) return std::nullopt;
    Mark mark;
    mark.kind = *kind;
    mark.number = NumberOfMark(element);
    mark.object = element.getAttribute(L"object");
    mark.frame = element.getAttributeInt(L"frame", -1);
    mark.text = element.getAttribute(L"text");
    mark.points = ReadPoints(element);
    const bool isNew = mark.number > 0 && !FindMark(content, mark.number);
    if (!isNew || !FindObject(content, mark.object) || !IsSound(mark)) return std::nullopt;
    return mark;
}

void WriteMark(const Mark& mark, const zelXMLNode& element)
{
    element.setAttribute(L"kind", InfoOf(mark.kind).name);
    element.setAttributeInt(L"number", mark.number);
    element.setAttribute(L"object", mark.object);
    element.setAttributeInt(L"frame", mark.frame);
    element.setAttribute(L"text", mark.text);
    for (const MarkPoint& point : mark.points) {
        const zelXMLNode child = zel_xml::AppendChild(element, L"point");
        child.setAttributeDouble(L"x", point.x, -1);
        child.setAttributeDouble(L"y", point.y, -1);
    }
}

} // namespace exam
