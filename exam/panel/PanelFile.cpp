#include "panel/PanelFile.h"

#include <Utils_Statics/MfcConversions.h>
#include <Utils_Statics/utilsExam.h>

namespace exam {

std::wstring PanelFileInForce()
{
    return QOR_MFC_CONVERSIONS::MFC_2_QOR(utilsExam::GetProtocolFile(panelFileName));
}

std::wstring PanelSaveFile()
{
    return QOR_MFC_CONVERSIONS::MFC_2_QOR(utilsExam::GetProtocolSavePath(panelFileName, nullptr));
}

} // namespace exam
