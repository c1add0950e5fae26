#include "service/PatientForm.h"

#include "study/Study.h"

#include <Utils_Statics/GetStr.h>

#include <iterator>
#include <string>

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

CString NameOfSex(const std::wstring& value)
{
    if (value.empty()) return CString();
    const std::string key = "study.sex." + std::string(value.begin(), value.end());
    return GetStr(key.c_str());
}

bool IsKnownSex(const std::wstring& value)
{
    return value.empty() || std::find(std::begin(sexes), std::end(sexes), value) != std::end(sexes);
}

} // namespace

std::vector<FormField> PatientFields(const Patient& patient)
{
    std::vector<FormField> fields = {
        {.label = GetStr("study.patient.name"), .value = patient.name.c_str()},
        {.label = GetStr("study.patient.id"), .value = patient.id.c_str()},
        {.label = GetStr("exam.patient.birth"), .value = patient.birth.c_str()},
        {.label = GetStr("study.patient.sex"), .choices = {CString()}},
        {.label = GetStr("study.patient.comment"),
         .value = patient.comment.c_str(),
         .isLong = true},
    };
    for (const wchar_t* const each : sexes)
        fields[sex].choices.push_back(NameOfSex(each));
    if (IsKnownSex(patient.sex))
        fields[sex].value = NameOfSex(patient.sex);
    else { // what another application wrote stays unless another one is chosen
        fields[sex].value = patient.sex.c_str();
        fields[sex].choices.push_back(fields[sex].value);
    }
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
        if (fields[sex].value == NameOfSex(each)) patient.sex = each;
    patient.comment = fields[comment].value;
    return patient;
}

CString FindPatientProblem(const std::vector<FormField>& fields)
{
    const std::wstring date(fields[birth].value);
    return date.empty() || IsDate(date) ? CString() : GetStr("exam.patient.wrongbirth");
}

} // namespace exam
