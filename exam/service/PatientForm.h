#pragma once

#include "service/Form.h"
#include "study/StudyContent.h"

namespace exam {

/// The fields of a form for a patient, in the current language, and the patient that they make.
std::vector<FormField> PatientFields(const Patient& patient);
Patient PatientOf(const std::vector<FormField>& fields);

/// A sentence that says what is wrong with the fields; empty when nothing is.
CString FindPatientProblem(const std::vector<FormField>& fields);

} // namespace exam
