#pragma once

#include "study/StudyContent.h"

#include <zel_xml/zelXMLNode.h>

#include <optional>
#include <string>

// The parts of a study as XML elements (docs/formats/study.md). Reading an invalid element leaves
// everything as it is.
namespace exam {

/// True for an id that names a file in the study's folder and is not that of the study itself.
bool IsObjectId(const std::wstring& id);

void ReadPatient(const zelXMLNode& element, Patient& patient);
void WritePatient(const Patient& patient, const zelXMLNode& element);

/// Read and write the study's own attributes.
void ReadStudy(const zelXMLNode& element, StudyContent& content);
void WriteStudyAttributes(const StudyContent& content, const zelXMLNode& element);

/// The id is not in the element.
void ReadObject(const zelXMLNode& element, StudyObject& object);
void WriteObject(const StudyObject& object, const zelXMLNode& element);

/// The number of a mark; 0 when it has none that can be used.
int NumberOfMark(const zelXMLNode& element);

/// None for an element that is no sound mark on an object of `content`, has the number of a mark
/// there, or comes after as many marks as a study may have.
std::optional<Mark> ReadMark(const zelXMLNode& element, const StudyContent& content);
void WriteMark(const Mark& mark, const zelXMLNode& element);

} // namespace exam
