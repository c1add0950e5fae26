#include "service/PatientForm.h"

#include "study/Study.h"
#include "study/StudyTexts.h"

#include <Utils_Statics/GetStr.h>

#include <algorithm>
#include <string>
#include <vector>

namespace exam {

namespace {

enum Field : std::size_t
{
    name,
    id,
    birth,
    sex,
    comment
};

} // namespace

std::vector<FormField> PatientFields(const Patient& patient)
{
    std::vector<FormField> fields = {
        {.label = GetStr("study.patient.name"), .value = patient.name.c_str()},
        {.label = GetStr("study.patient.id"), .value = patient.id.c_str()},
        {.label = GetStr("exam.patient.birth"), .value = patient.birth.c_str()},
        {.label = GetStr("study.patient.sex"),
         .value = SexText(patient.sex).c_str(),
         .choices = {CString()}},
        {.label = GetStr("study.patient.comment"),
         .value = patient.comment.c_str(),
         .isLong = true},
    };
    std::vector<CString>& choices = fields[sex].choices;
    for (const wchar_t* const each : sexes)
        choices.emplace_back(SexText(each).c_str());
    // A text that another application wrote stays unless the user chooses another one.
    if (std::ranges::find(choices, fields[sex].value) == choices.end())
        choices.push_back(fields[sex].value);
    return fields;
}

Patient PatientOf(const std::vector<FormField>& fields)
{
    Patient patient;
    patient.name = fields[name].value;
    patient.id = fields[id].value;
    patient.birth = fields[birth].value;
    patient.sex = fields[sex].value;
    for (const wchar_t* const each : sexes)
        if (fields[sex].value == SexText(each).c_str()) patient.sex = each;
    patient.comment = fields[comment].value;
    return patient;
}

CString FindPatientProblem(const std::vector<FormField>& fields)
{
    const std::wstring date(fields[birth].value);
    return date.empty() || IsDate(date) ? CString() : GetStr("exam.patient.wrongbirth");
}

} // namespace exam
