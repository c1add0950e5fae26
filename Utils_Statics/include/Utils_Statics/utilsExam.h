#pragma once

#include <Utils_Statics/EConsoleType.h>
#include <Utils_Statics/StateChangeType.h>
#include <Utils_Statics/export.h>

#include <afxcoll.h>
#include <atlstr.h>
#include <atltime.h>
#include <qor_utils/StringEnumHelper.h>

#include <string>
#include <vector>

class CDC;

/// The exam environment: process-wide facts about how the application runs, and the helpers that all of it shares.
/// Static members only, no instance is ever made. Unless a member says otherwise it is called on the user-interface
/// thread, takes no lock and throws nothing but std::bad_alloc.
class UTILS_STATICS_API utilsExam
{
public:
    // ---- Facts. The application sets them after loading the library and may change them at any time; the library
    // stores them, keeps none beyond the process, and reads only those marked so. Another thread may read stale values.

    /// Changes where dialogs (and balloon messages) appear on eConsoleTavren. Set through SetConsoleType.
    static EConsoleType m_consoleType;
    /// Names and values of EConsoleType, filled when the library is loaded.
    static StringEnumHelper m_consoleTypeMap;
    /// True once the library's start-up has filled m_consoleTypeMap.
    static const bool m_staticInit;
    /// Folder of thumbnail images.
    static CString ThumbnailImagePath;
    /// Start of the pharmaceutical-study mode.
    static CTime PharmaStart;
    /// Developer mode.
    static bool DevMode;
    /// Service mode.
    static bool ServiceMode;
    /// The application is shutting down.
    static bool AppExiting;
    /// The application finished its initialisation.
    static bool AppInitDone;
    /// Read by the mouse capture: while true, its clipping frees the cursor.
    static bool CursorClippingDisabled;
    /// Pharmaceutical-study mode.
    static bool Pharma;
    /// Fusion imaging mode.
    static bool FusionMode;
    /// Research mode; read by the mouse capture when it chooses the next holder. Independent of IsResearchModeActive.
    static bool ResearchMode;
    /// Full-screen display; changes the imaging area.
    static bool m_bFullscreen;
    /// The control layout sits on the left.
    static bool m_bLayoutLeft;
    /// The tutorial window while one is open, else null.
    static HWND m_hwndTutorial;

    // ---- Console model and modes

    static EConsoleType GetConsoleType() noexcept;
    /// Stores any value, also one without a name.
    static void SetConsoleType(EConsoleType type) noexcept;
    /// The model of a name, compared exactly; eConsoleUnknown for an unknown or null name.
    static EConsoleType MapConsoleType(const wchar_t* name);
    /// The name of a model, "Unknown" for a value without one. The text lives as long as the library is loaded.
    static const wchar_t* MapConsoleName(EConsoleType type);
    /// Fills m_consoleTypeMap; called once, by the library's start-up. Always true.
    static bool StaticInit();

    /// `callback` answers IsResearchModeActive from now on; null clears it. It must stay callable until replaced.
    static void SetIsResearchModeActiveCallback(bool (*callback)()) noexcept;
    /// True only when a callback is set and answers true. Does not read ResearchMode: deliberately independent.
    static bool IsResearchModeActive();

    /// Build variants; this build is neither.
    static bool isTarrowBuild() noexcept;
    static bool isPellanBuild() noexcept;
    /// True for either of the two variants.
    static bool isOEMBuild() noexcept;

    static bool IsFullscreen() noexcept;
    static void SetFullscreen(bool fullscreen) noexcept;
    static bool IsLayoutLeft() noexcept;
    static void SetLayoutLeft(bool left) noexcept;

    /// Asks the platform for the low-fragmentation heap as process heap; a refusal is ignored.
    static void EnableLowFragmentationHeap() noexcept;

    /// Emits the process-wide state-change signal; the same as IStateChangeConsumer::StateChangeSignal. What a consumer
    /// throws comes out here.
    static void StateChangeSignal(StateChangeType type, unsigned int param1, long param2);

    // ---- Texts (see also GetStr.h, StringParse.h and MfcConversions.h)

    static CString GetStringTableEntry(const wchar_t* name);
    static CString GetProductVersion();
    static CString GetProductName();
    static CString GetProductPublisher();
    static CString GetBuildDate();
    static void StlListToMfcList(const std::vector<std::wstring>& from, CStringArray& to);
    static double ui64ToDouble(unsigned __int64 value);
    static int WrapStr(CDC* dc, CString& text, int width);

    // ---- Paths, directories and files

    static CString GetApplicationFilePath();
    static CString GetApplicationPath();
    static CString GetRegistryPath(const wchar_t* key, const wchar_t* defaultPath);
    static CString GetPatientRootPath();
    static CString GetObjectPath(const wchar_t* objectPath);
    static CString GetStudyPath(const wchar_t* objectPath);
    static CString GetPatientPath(const wchar_t* objectPath);
    static std::wstring GetImage(const wchar_t* name);
    static CString ParsePath(const wchar_t* referenceFile, const wchar_t* path);
    static int CreateDirectoryW(const wchar_t* path);
    static void RemoveDirectoryW(const wchar_t* path, int isAbsolute);
    static __int64 GetDirectorySize(const CString& dir);
    static int GetFileData(const wchar_t* path, WIN32_FIND_DATAW* data);
    static int SHFileOperationW(unsigned int operation, const wchar_t* from, const wchar_t* to, int silent,
                                unsigned short flags, HWND owner, const wchar_t* progressTitle, void* nameMappings);
    static bool FindFirstRemovableDrive(CString& drive);
    static bool CheckFileIsWritable(const wchar_t* path);
    static void BGRtoRGB(unsigned char* pixels, int width, int height);

    // ---- Protocol files

    static CString GetProtocolFile(const wchar_t* file);
    static CString GetFactoryProtocolFile(const wchar_t* file);
    static CString GetBaseProtocolFile(const wchar_t* file);
    static CString GetProtocolSavePath(const wchar_t* file, const wchar_t* folder);
};
