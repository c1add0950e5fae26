// The window asks and tells the user here.
#include "window/MainWindow.h"

#include "base/DarkDialog.h"
#include "image/OpenFrames.h"
#include "service/FileChoice.h"
#include "window/Menus.h"

#include <Utils_Statics/GetStr.h>
#include <Utils_Statics/IProAgent.h>
#include <Utils_Statics/ShowCursorHelper.h>

#include <shellapi.h>

#include <string>
#include <vector>

namespace exam {

// Nobody answers the questions of an unattended run. Its agent keeps them, and takes no offer.
bool MainWindow::Ask(const CString& question)
{
    if (IProAgent* const agent = IProAgent::GetAgent()) {
        agent->AddTail(question);
        return true;
    }
    return AskYesOrNo(question, IDNO);
}

bool MainWindow::Offer(const CString& question)
{
    return !IProAgent::GetAgent() && AskYesOrNo(question, IDYES);
}

bool MainWindow::AskYesOrNo(const CString& question, int byDefault)
{
    const ShowCursorHelper cursor(false);
    return ShowBox(GetSafeHwnd(), GetStr("exam.title").GetString(), question.GetString(),
                   {{IDYES, GetStr("exam.answer.yes").GetString()},
                    {IDNO, GetStr("exam.answer.no").GetString()}},
                   byDefault) == IDYES;
}

void MainWindow::Tell(const CString& text)
{
    ShowBox(GetSafeHwnd(), GetStr("exam.title").GetString(), text.GetString(),
            {{IDOK, GetStr("exam.form.ok").GetString()}}, IDOK);
}

void MainWindow::ShowFile(const std::wstring& path)
{
    ShellExecuteW(GetSafeHwnd(), nullptr, L"explorer.exe", (L"/select,\"" + path + L"\"").c_str(),
                  nullptr, SW_SHOWNORMAL);
}

bool MainWindow::Fill(const CString& title, std::vector<FormField>& fields, const FormCheck& check)
{
    const ShowCursorHelper cursor(false);
    return AskForm(GetSafeHwnd(), title, fields, check);
}

std::wstring MainWindow::ChooseImage()
{
    const ShowCursorHelper cursor(false);
    return ChooseFile(GetSafeHwnd(), GetStr("exam.files.cine"), showablePatterns);
}

std::wstring MainWindow::ChooseOneOf(const std::vector<std::wstring>& texts)
{
    const ShowCursorHelper cursor(false);
    std::vector<CString> items;
    for (const std::wstring& text : texts) {
        items.emplace_back(text.c_str());
        items.back().Replace(L"&", L"&&"); // one alone would underline the next letter
    }
    const MenuHandle menu = MakeTextMenu(items);
    CPoint at;
    GetCursorPos(&at);
    const int chosen =
        TrackPopupMenu(menu.get(), TPM_RETURNCMD, at.x, at.y, 0, GetSafeHwnd(), nullptr);
    const auto index = static_cast<std::size_t>(chosen - 1);
    return chosen > 0 && index < texts.size() ? texts[index] : std::wstring();
}

} // namespace exam
