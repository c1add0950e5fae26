#pragma once

#include <qor_utils/StringEnumHelper.h>
#include <Utils_Statics/EConsoleType.h>
#include <Utils_Statics/export.h>
#include <Utils_Statics/StateChangeType.h>

#include <afxcoll.h>
#include <atlstr.h>
#include <atltime.h>
#include <atltypes.h>

#include <string>
#include <vector>

class CBitmap;
class CComboBox;
class CDC;
class CFont;
class CImageList;
class COleDateTime;
class CWnd;

/// The exam environment: process-wide facts about how the application runs, and helpers that the
/// whole application shares. It has static members only; no instance is ever made.
///
/// Members are called on the user-interface thread unless they say otherwise. No lock guards the
/// facts. Rule 6 of Utils_Statics.h tells which members throw.
class UTILS_STATICS_API utilsExam
{
public:
    // ---- Facts. The application sets them after loading the library and may change them at any
    // time. The library reads only those that say so. Another thread may read stale values.

    /// Changes where dialogs (and balloon messages) appear on eConsoleTavren. Set through
    /// SetConsoleType.
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
    /// Research mode; read by the mouse capture when it chooses the next holder. Independent of
    /// IsResearchModeActive.
    static bool ResearchMode;
    /// Full-screen display; changes the imaging area.
    static bool m_bFullscreen;
    /// The control layout sits on the left.
    static bool m_bLayoutLeft;
    /// The tutorial window while one is open, else null.
    static HWND m_hwndTutorial;

    // ---- Console model and modes

    /// The model that was stored last; at first eConsoleUnknown.
    static EConsoleType GetConsoleType() noexcept;
    /// Stores any value, even one without a name.
    static void SetConsoleType(EConsoleType type) noexcept;
    /// The model with this name, compared exactly; eConsoleUnknown for an unknown or null name.
    static EConsoleType MapConsoleType(const wchar_t* name);
    /// The name of a model, "Unknown" for a value without one. The text lives as long as the
    /// library is loaded.
    static const wchar_t* MapConsoleName(EConsoleType type);
    /// Fills m_consoleTypeMap; called once, by the library's start-up. Always true.
    static bool StaticInit();

    /// From now on IsResearchModeActive calls `callback`; null clears it. It must stay callable
    /// until it is replaced.
    static void SetIsResearchModeActiveCallback(bool (*callback)()) noexcept;
    /// True only when a callback is set and returns true. Deliberately independent of ResearchMode.
    static bool IsResearchModeActive();

    /// Build variants; this build is neither.
    static bool isTarrowBuild() noexcept;
    static bool isPellanBuild() noexcept;
    /// True for either of the two variants.
    static bool isOEMBuild() noexcept;

    /// Read and set the data members of these names.
    static bool IsFullscreen() noexcept;
    static void SetFullscreen(bool fullscreen) noexcept;
    static bool IsLayoutLeft() noexcept;
    static void SetLayoutLeft(bool left) noexcept;

    /// Asks the platform to make the process heap a low-fragmentation heap; a refusal is ignored.
    static void EnableLowFragmentationHeap() noexcept;

    /// Emits the process-wide state-change signal; the same as
    /// IStateChangeConsumer::StateChangeSignal. An exception of a consumer passes through.
    static void StateChangeSignal(StateChangeType type, unsigned int param1, long param2);

    // ---- Texts (see also GetStr.h, StringParse.h and MfcConversions.h)

    /// The text of `name` in the version resource of the running program's file (not the
    /// library's), in the resource's first language; empty when there is no such text.
    static CString GetStringTableEntry(const wchar_t* name);
    /// The texts "ProductVersion", "ProductName", "CompanyName" and "BuildDate" of the program's
    /// version resource. Each is read once and kept. A text that the resource does not have is the
    /// translated text "product.description.notset".
    static CString GetProductVersion();
    static CString GetProductName();
    static CString GetProductPublisher();
    static CString GetBuildDate();
    /// Appends the elements of `from` to `to`, in order.
    static void StlListToMfcList(const std::vector<std::wstring>& from, CStringArray& to);
    /// Converts with correct rounding over the whole unsigned range.
    static double ui64ToDouble(unsigned __int64 value);
    /// The number of lines that `text` needs at `width` (in the units of `dc`) in the font selected
    /// into `dc`; 0 for an empty text or a null `dc`. A text narrower than `width`, or a single
    /// word without spaces and line feeds, gives 1 and stays as it is. Otherwise `text` is
    /// replaced, deliberately, by its longest word (the first of equally long ones): the word that
    /// has to fit on a line by itself.
    ///
    /// Texts are measured by DrawText with DT_CALCRECT alone, so ampersands are prefixes. After
    /// each word the search resumes at the next space, or at the next line feed if no space is
    /// left. So the words between a line feed and the next space are measured without the gaps
    /// before them.
    static int WrapStr(CDC* dc, CString& text, int width);

    // ---- Paths, directories and files

    /// The full file name of the running program, at most 259 characters of it; empty when the
    /// platform cannot tell.
    static CString GetApplicationFilePath();
    /// The folder of the running program with a backslash at its end.
    static CString GetApplicationPath();
    /// The text stored as `key` in the profile section "System\Path", with a backslash appended
    /// unless it ends in one. When nothing or an empty text is stored, the result is `defaultPath`
    /// as it is, empty for null.
    static CString GetRegistryPath(const wchar_t* key, const wchar_t* defaultPath);
    /// The root folder of the patient database with a backslash at its end.
    static CString GetPatientRootPath();
    /// The files of the patient database, in which a patient's folder holds study folders and these
    /// hold objects. For D:\db\P1\S1\O1 the object file is D:\db\P1\S1\O1.xml, the study file
    /// D:\db\P1\S1\study.xml and the patient file D:\db\P1\patient.xml. Paths may have any length.
    /// Forward slashes become backslashes and doubled backslashes become one, also the two that
    /// begin a network path: network paths are not supported. GetStudyPath makes the logger check
    /// the study's folder.
    static CString GetObjectPath(const wchar_t* objectPath);
    static CString GetStudyPath(const wchar_t* objectPath);
    static CString GetPatientPath(const wchar_t* objectPath);
    /// The path of the image with this name, such as "status/network.png", in the image folder.
    static std::wstring GetImage(const wchar_t* name);
    /// Resolves `path`, a file named in the layout document `referenceFile` (a path or a "file:///"
    /// address).
    ///
    /// White space around `path` is dropped. If the path is then empty or absolute, it is the
    /// result. A path whose second character is "." (meant for "..") is appended to the document's
    /// folder, with forward slashes and without "file:///", whether it exists or not. Any other
    /// path is looked for in the document's folder, in "res/" below it, in the layout store, in
    /// "res/" below that and in the fall-back layout store. When it is nowhere, the last place is
    /// logged and the result is empty. The document's folder ends where the document's name first
    /// occurs in `referenceFile`.
    static CString ParsePath(const wchar_t* referenceFile, const wchar_t* path);
    /// Creates a directory and its missing parents. Forward slashes and runs of up to eight
    /// backslashes are allowed. 1 on success; 0 for a directory that exists already, for a null or
    /// empty path, and when the platform refuses, which it may do for a long path. The first
    /// component is never created by itself: when a relative path has two or more, its first folder
    /// must exist. The current directory stays as it is; no other thread may change it meanwhile.
    ///
    /// The W of this and the other such names is part of the name. In Unicode programs <windows.h>,
    /// included before or after this header, turns the names without W into these, so both
    /// spellings reach the member.
    static int CreateDirectoryW(const wchar_t* path);
    /// Deletes a directory with all it holds, or a file, without asking and past the recycle bin.
    /// With `isAbsolute` zero the path is relative to the current directory, and an empty path
    /// names that directory itself. Does nothing when there is no such path. When the shell fails,
    /// the platform's last error code is logged, and what could not be deleted stays.
    static void RemoveDirectoryW(const wchar_t* path, int isAbsolute);
    /// The sum of the sizes of all files below `dir`, in bytes; 0 when it cannot be read. Hidden
    /// files count; hidden folders and links to folders are skipped. Whatever the platform cannot
    /// enumerate, such as a path that is too long for it, counts as 0.
    static __int64 GetDirectorySize(const CString& dir);
    /// Stores a description of the first file or folder that `path` (wildcards allowed in the last
    /// component) matches. 1 when there is one; otherwise 0, and `data` is unspecified.
    static int GetFileData(const wchar_t* path, WIN32_FIND_DATAW* data);
    /// Copies, moves, renames or deletes (FO_...) one path through the shell; `to` is null when the
    /// operation has no destination. With a non-zero `silent` the shell shows nothing, asks nothing
    /// and makes missing folders; otherwise it shows simple progress under `progressTitle` in front
    /// of `owner`. `flags` are further FOF_... flags; `nameMappings` goes to the shell as it is. 1
    /// on success. On failure the last error code is logged and the result is 0; a path of more
    /// than 258 characters is a failure.
    static int SHFileOperationW(unsigned int operation, const wchar_t* from, const wchar_t* to,
                                int silent, unsigned short flags, HWND owner,
                                const wchar_t* progressTitle, void* nameMappings);
    /// Sets `drive` to the root of the first drive to export to, such as "E:\": a removable drive,
    /// a fixed one (external disks report as fixed) or a RAM disk, but not A:, B:, C: or D:. When
    /// there is none, the result is false and `drive` is unchanged.
    static bool FindFirstRemovableDrive(CString& drive);
    /// Makes a read-only file or folder writable by setting its attributes to normal. True when it
    /// is then not read-only or does not exist; false when the attribute cannot be cleared.
    static bool CheckFileIsWritable(const wchar_t* path);
    /// Swaps the first and third byte of `width` x `height` pixels of three bytes each, without
    /// padding between rows. Does nothing when the product is not positive. The product alone
    /// decides, so two negative sizes count like two positive ones.
    static void BGRtoRGB(unsigned char* pixels, int width, int height);

    // ---- Protocol files

    /// The copy of a protocol file that is in force: the user's saved one, else the current
    /// protocol's factory settings, else GetBaseProtocolFile.
    static CString GetProtocolFile(const wchar_t* file);
    /// Does what GetProtocolFile does, without the user's copies.
    static CString GetFactoryProtocolFile(const wchar_t* file);
    /// The copy in the base protocol suite, else in the second base folder, else in the fall-back
    /// factory settings. When there is none, that is logged (but not for the optional
    /// "worksheet.xml" and "measurements-custom.xml", in upper or lower case) and the result is the
    /// last path: callers test for existence.
    static CString GetBaseProtocolFile(const wchar_t* file);
    /// The path of the user's copy of `file`. It lies in the store of saved protocols, in `folder`
    /// or, when that is null, in a folder named like the current protocol's factory folder. A
    /// missing folder is created; a failure of that is not reported.
    static CString GetProtocolSavePath(const wchar_t* file, const wchar_t* folder);

    // ---- Screen geometry, in pixels

    /// The console's screen, always 1024 x 768.
    static CSize GetMainScreenSize() noexcept;
    /// The size of the imaging area: the whole screen when full-screen, otherwise 800 x 600.
    static CSize GetImagingSize() noexcept;
    /// The rectangle, in screen coordinates, of a dialog as large as the main screen and centred on
    /// the main window, or on the main screen when there is no window. On eConsoleTavren its height
    /// is cut to 600 pixels.
    static CRect CalculateDialogRect();
    /// The left top corner of an image of this size, in client coordinates of the main window. A
    /// negative width or height stands for GetImagingSize.
    ///
    /// The image is centred and raised by 50 pixels when it is smaller than the screen's part of
    /// the window in both directions; otherwise it lies at that part's corner. On eConsoleTavren
    /// with the layout not on the left it lies at the right edge. Without a main window, a window
    /// of the screen's size is assumed.
    static CPoint CalculateSystemOrigin(CSize image);

    // ---- Windows and controls

    /// The pop-up window that is enabled over `owner` now; null when there is none. A balloon help
    /// window ("BalloonHelpClassDS"), a tool window and `owner` itself do not count. A null `owner`
    /// means the main window. May be called on any thread.
    static HWND FindPopupWindow(HWND owner);
    /// Closes `popup` as a user would, while FindPopupWindow finds it over `owner`: shows it and
    /// posts it the keys Escape and Return. Waits up to five seconds for the window to go, and
    /// gives up when it stays. Makes at most five attempts, in case another window takes the
    /// handle.
    ///
    /// It is meant for a worker thread, because the window's own thread has to dispatch its
    /// messages meanwhile.
    static void ClosePopup(HWND popup, HWND owner);
    /// True when FindPopupWindow finds a pop-up; a worker thread then closes pop-ups over `owner`
    /// one after the other, at most nine, and ends by itself. False when there is none, or when no
    /// thread can be started.
    static bool ClosePopups(HWND owner);
    /// Resizes `box` so that its drop-down list shows `itemCount` items, but no more than
    /// `maxItems`. An `itemCount` below 1 stands for all items of the box, at least one.
    static void SetComboBoxDropdownHeight(CComboBox& box, int itemCount, int maxItems);
    /// Sets a toggle key, such as VK_CAPITAL or VK_NUMLOCK, by pressing it when it is not as
    /// wanted. The calling thread's key state counts, which follows the messages that the thread
    /// has taken from its queue.
    static void SetKeyState(unsigned char virtualKey, int on);
    /// Sets the font of a dialog and of all windows inside it; null stands for the system's font.
    /// `font` has to live as long as they show it. They are repainted at once unless `redraw` is 0.
    static void ChangeDialogFont(CWnd* dialog, CFont* font, int redraw);

    // ---- The capture buttons' settings, section "Settings\Capture" of the application's profile

    /// The flags that tell what button `n` (counted from 0) captures: "PrintButton<n>". When
    /// nothing is set, they are 1, 13 and 64 for the first three buttons and 3 for the others.
    static unsigned int GetPrintButtonFlags(unsigned int n);
    /// The action of button `n`: "PrintButton<n>_Action", 18 when nothing is set.
    static unsigned int GetPrintButtonAction(unsigned int n);

    // ---- Drawing. A null `dc` draws nothing.

    /// Fills `rect` with a vertical gradient from `top` to `bottom`.
    static void DrawGradient(CDC* dc, const CRect& rect, COLORREF top, COLORREF bottom);
    /// Fills the upper half of `rect` from c1 to c2 and the lower half from c3 to c4.
    static void DrawDoubleGradient(CDC* dc, const CRect& rect, COLORREF c1, COLORREF c2,
                                   COLORREF c3, COLORREF c4);
    /// Draws a border of two pixels inside the edges of `rect` that `sides` names (1 left, 2 top, 4
    /// right, 8 bottom). It is a black line and a line shaded from `second` at the top to `first`
    /// at the bottom. Deliberately, the left side has its black line outside and the right side
    /// inside.
    static void DrawBorder(CDC* dc, const CRect& rect, int sides, COLORREF first, COLORREF second);
    /// Adds a copy of `bitmap`, scaled to `size`, to `list`; its pixels of the colour `mask` are
    /// transparent. For a bitmap that is selected into a device context only an empty picture is
    /// added. Nothing is added when there is no bitmap or no such size.
    static void AddImage(CImageList& list, CBitmap& bitmap, const CSize& size, COLORREF mask);
    /// Does the same for a bitmap resource of the program or of the module that holds it.
    static void AddImage(CImageList& list, unsigned int bitmapId, const CSize& size, COLORREF mask);

    // ---- Spans of dates

    /// The whole years from `from` to `to`, counted like an age.
    static int GetYearSpan(const COleDateTime& from, const COleDateTime& to);
    /// The months begun between `from` and the next date with the month and day of `to`, 0 to 12.
    /// The years deliberately do not count.
    static int GetMonthSpan(const COleDateTime& from, const COleDateTime& to);

    // ---- Network facts

    /// The first IPv4 address of this computer's host name, such as "192.168.1.5"; empty when it
    /// has none. The look-up may take seconds.
    static CString GetLocalIP();
    /// The device identifier of the first wireless network adapter, such as "{A1B2...}", as the
    /// platform's management interface knows it; empty when there is none. COM has to be
    /// initialised on the calling thread.
    static std::wstring GetWirelessAdapterGuid();
    /// True when GetWirelessAdapterGuid is not empty.
    static bool IsWirelessAdapterAvailable();
};
