#pragma once

#include <Utils_Statics/EConsoleType.h>
#include <Utils_Statics/StateChangeType.h>
#include <Utils_Statics/export.h>

#include <afxcoll.h>
#include <atlstr.h>
#include <atltime.h>
#include <atltypes.h>
#include <qor_utils/StringEnumHelper.h>

#include <string>
#include <vector>

class CBitmap;
class CComboBox;
class CDC;
class CFont;
class CImageList;
class COleDateTime;
class CWnd;

/// The exam environment: process-wide facts about how the application runs, and the helpers that
/// all of it shares. It has static members only; no instance is ever made.
///
/// Unless a member says otherwise it is called on the user-interface thread. The facts are not
/// guarded by a lock. Of exceptions, rule 6 of Utils_Statics.h holds.
class UTILS_STATICS_API utilsExam
{
public:
    // ---- Facts. The application sets them after loading the library and may change them at any
    // time. The library stores them and reads only those marked so. Another thread may read stale
    // values.

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

    static EConsoleType GetConsoleType() noexcept;
    /// Stores any value, also one without a name.
    static void SetConsoleType(EConsoleType type) noexcept;
    /// The model of a name, compared exactly; eConsoleUnknown for an unknown or null name.
    static EConsoleType MapConsoleType(const wchar_t* name);
    /// The name of a model, "Unknown" for a value without one. The text lives as long as the
    /// library is loaded.
    static const wchar_t* MapConsoleName(EConsoleType type);
    /// Fills m_consoleTypeMap; called once, by the library's start-up. Always true.
    static bool StaticInit();

    /// `callback` answers IsResearchModeActive from now on; null clears it. It must stay callable
    /// until replaced.
    static void SetIsResearchModeActiveCallback(bool (*callback)()) noexcept;
    /// True only when a callback is set and answers true. Does not read ResearchMode: deliberately
    /// independent.
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

    /// Emits the process-wide state-change signal; the same as
    /// IStateChangeConsumer::StateChangeSignal. What a consumer throws comes out here.
    static void StateChangeSignal(StateChangeType type, unsigned int param1, long param2);

    // ---- Texts (see also GetStr.h, StringParse.h and MfcConversions.h)

    /// The text of `name` in the version resource of the running program's file (not the
    /// library's), in the resource's first language; empty when there is no such text.
    static CString GetStringTableEntry(const wchar_t* name);
    /// The texts "ProductVersion", "ProductName", "CompanyName" and "BuildDate" of the program's
    /// version resource. Each is read once and kept; where the resource has none, it is the
    /// translated text "product.description.notset".
    static CString GetProductVersion();
    static CString GetProductName();
    static CString GetProductPublisher();
    static CString GetBuildDate();
    /// Appends the elements of `from` in order; what `to` holds stays.
    static void StlListToMfcList(const std::vector<std::wstring>& from, CStringArray& to);
    /// Correctly rounded over the whole unsigned range.
    static double ui64ToDouble(unsigned __int64 value);
    /// The number of lines that `text` needs at `width` (in the units of `dc`) in the font selected
    /// into `dc`; 0 for an empty text or a null `dc`. A text narrower than `width`, and one of a
    /// single word without spaces and line feeds, gives 1 and stays as it is. Otherwise `text` is
    /// replaced, deliberately, by its longest word (the first of equally long ones): the word that
    /// has to fit on a line by itself.
    ///
    /// Measuring is DrawText with DT_CALCRECT alone, so ampersands are prefixes. After each word
    /// the search resumes at the next space, or at the next line feed if no space is left. Of the
    /// words between a line feed and the next space, what stands before them is not measured.
    static int WrapStr(CDC* dc, CString& text, int width);

    // ---- Paths, directories and files

    /// The full file name of the running program, at most 259 characters of it; empty when the
    /// platform cannot tell.
    static CString GetApplicationFilePath();
    /// The folder of the running program with a backslash at its end.
    static CString GetApplicationPath();
    /// The text stored as `key` in the profile section "System\Path", with a backslash appended
    /// unless it ends in one. Nothing or an empty text stored gives `defaultPath` exactly as it is
    /// (null: empty).
    static CString GetRegistryPath(const wchar_t* key, const wchar_t* defaultPath);
    /// The root folder of the patient database with a backslash at its end.
    static CString GetPatientRootPath();
    /// Files of the patient database, which is patient folder, study folder, objects: for
    /// D:\db\P1\S1\O1 the object file is D:\db\P1\S1\O1.xml, the study file is
    /// D:\db\P1\S1\study.xml and the patient file is D:\db\P1\patient.xml. Paths may have any
    /// length. Forward slashes become backslashes and doubled backslashes become one, also the two
    /// that begin a network path: network paths are not supported. GetStudyPath has the logger
    /// check the study's folder.
    static CString GetObjectPath(const wchar_t* objectPath);
    static CString GetStudyPath(const wchar_t* objectPath);
    static CString GetPatientPath(const wchar_t* objectPath);
    /// The path of a name in the image folder, such as "status/network.png".
    static std::wstring GetImage(const wchar_t* name);
    /// Resolves `path`, a file named in the layout document `referenceFile` (a path or a "file:///"
    /// address).
    ///
    /// White space round `path` is dropped. An empty or an absolute path is then the result. A path
    /// whose second character is "." (meant for "..") is put behind the document's folder, with
    /// forward slashes and without "file:///", whether it exists or not. Any other is looked for in
    /// the document's folder, in "res/" below it, in the layout store, in "res/" below that and in
    /// the fall-back layout store; when it is nowhere, the last place is logged and the result is
    /// empty. The document's folder ends where the document's name first occurs in `referenceFile`.
    static CString ParsePath(const wchar_t* referenceFile, const wchar_t* path);
    /// Creates a directory and its missing parents. Forward slashes and runs of up to eight
    /// backslashes are allowed. 1 on success; 0 for a directory that exists already, for a null or
    /// empty path, and where the platform refuses, which it may do for a long path. The first
    /// component is never created by itself: of a relative path with two or more, the first folder
    /// must exist. The current directory is left as it was; no other thread may change it
    /// meanwhile.
    ///
    /// The W of this and the other such names is part of them. In Unicode programs <windows.h>
    /// turns the names without it into these, before or after this header, so both spellings reach
    /// the member.
    static int CreateDirectoryW(const wchar_t* path);
    /// Deletes a directory, or a file, with all it holds, without asking and past the recycle bin.
    /// With `isAbsolute` zero the path is taken from the current directory, which an empty path
    /// names itself. Nothing happens when there is no such path. When the shell fails, the
    /// platform's last error code is logged, and what could not be deleted stays.
    static void RemoveDirectoryW(const wchar_t* path, int isAbsolute);
    /// The sum of the sizes of all files below `dir`, in bytes; 0 when it cannot be read. Hidden
    /// files count; hidden folders and links to folders are skipped. What the platform cannot
    /// enumerate, such as a path that is too long for it, counts nothing.
    static __int64 GetDirectorySize(const CString& dir);
    /// Describes the first file or folder that `path` (wildcards allowed in the last component)
    /// matches. 1 when there is one, otherwise 0 and `data` is unspecified.
    static int GetFileData(const wchar_t* path, WIN32_FIND_DATAW* data);
    /// Copies, moves, renames or deletes (FO_...) one path through the shell; `to` is null when the
    /// operation has no destination. A non-zero `silent` shows nothing, asks nothing and makes
    /// missing folders; otherwise simple progress is shown under `progressTitle` in front of
    /// `owner`. `flags` are further FOF_... flags, `nameMappings` goes to the shell as it is. 1 on
    /// success. On failure, which a path of more than 258 characters is, the last error code is
    /// logged and the result is 0.
    static int SHFileOperationW(unsigned int operation, const wchar_t* from, const wchar_t* to,
                                int silent, unsigned short flags, HWND owner,
                                const wchar_t* progressTitle, void* nameMappings);
    /// The root of the first drive to export to, such as "E:\": removable, fixed (external disks
    /// report as such) or RAM disk, but not A:, B:, C: and D:. False, and `drive` unchanged, when
    /// there is none.
    static bool FindFirstRemovableDrive(CString& drive);
    /// Makes a read-only file or folder writable by setting its attributes to normal. True when it
    /// is not read-only afterwards or does not exist; false when the attribute could not be
    /// cleared.
    static bool CheckFileIsWritable(const wchar_t* path);
    /// Swaps the first and third byte of `width` x `height` pixels of three bytes each, without
    /// padding between rows. Nothing happens when the product is not positive: it alone decides, so
    /// that two negative sizes are as good as two positive ones.
    static void BGRtoRGB(unsigned char* pixels, int width, int height);

    // ---- Protocol files

    /// The copy of a protocol file that is in force: the user's saved one, else the current
    /// protocol's factory settings, else GetBaseProtocolFile.
    static CString GetProtocolFile(const wchar_t* file);
    /// The same without the user's copies.
    static CString GetFactoryProtocolFile(const wchar_t* file);
    /// The copy in the base protocol suite, else in the second base folder, else in the fall-back
    /// factory settings. When there is none, that is logged (not for the optional "worksheet.xml"
    /// and "measurements-custom.xml", in any case of letters) and the last path is given all the
    /// same: callers test for existence.
    static CString GetBaseProtocolFile(const wchar_t* file);
    /// Where the user's copy of `file` lies: in the store of saved protocols, in `folder` or, when
    /// that is null, in a folder named like the current protocol's factory folder. The folder is
    /// created when it is missing; that it cannot be is not reported.
    static CString GetProtocolSavePath(const wchar_t* file, const wchar_t* folder);

    // ---- Screen geometry, in pixels

    /// The console's screen, always 1024 x 768.
    static CSize GetMainScreenSize() noexcept;
    /// The imaging area: the whole screen when full-screen, otherwise 800 x 600.
    static CSize GetImagingSize() noexcept;
    /// The rectangle, in screen coordinates, of a dialog as large as the main screen and centred on
    /// the main window (on the main screen without one). On eConsoleTavren it is 600 pixels high.
    static CRect CalculateDialogRect();
    /// The left top corner of an image of this size, in client coordinates of the main window. A
    /// negative width or height stands for GetImagingSize.
    ///
    /// The image is centred and raised by 50 pixels when it is smaller than the screen's part of
    /// the window both ways; otherwise it lies at that part's corner. On eConsoleTavren with the
    /// layout not on the left it lies at the right edge. Without a main window the window counts as
    /// one of the screen's size.
    static CPoint CalculateSystemOrigin(CSize image);

    // ---- Windows and controls

    /// The pop-up window that `owner` has enabled over it now; null when there is none. A balloon
    /// help window ("BalloonHelpClassDS"), a tool window and `owner` itself do not count. A null
    /// `owner` means the main window. May be called on any thread.
    static HWND FindPopupWindow(HWND owner);
    /// Closes `popup` while it is what FindPopupWindow finds over `owner`, as a user would: shows
    /// it and posts it the keys Escape and Return. Waits up to five seconds for the window to go,
    /// and gives up when it stays. At most five attempts, should another window take the handle.
    ///
    /// Meant for a worker thread: the window's own thread has to dispatch its messages meanwhile.
    static void ClosePopup(HWND popup, HWND owner);
    /// True when FindPopupWindow finds a pop-up; a worker thread then closes pop-ups over `owner`
    /// one after the other, at most nine, and ends by itself. False when there is none, or when no
    /// thread can be started.
    static bool ClosePopups(HWND owner);
    /// Resizes `box` so that its drop-down list shows `itemCount` items (below 1: as many as the
    /// box has; at least one), but no more than `maxItems`.
    static void SetComboBoxDropdownHeight(CComboBox& box, int itemCount, int maxItems);
    /// Sets a toggle key, such as VK_CAPITAL or VK_NUMLOCK, by pressing it when it is not as
    /// wanted. The state that counts is the calling thread's, which follows the messages that the
    /// thread has taken from its queue.
    static void SetKeyState(unsigned char virtualKey, int on);
    /// Sets the font of a dialog and of all windows inside it; null is the system's font. `font`
    /// has to live as long as they show it. With `redraw` not 0 they are repainted at once.
    static void ChangeDialogFont(CWnd* dialog, CFont* font, int redraw);

    // ---- The capture buttons' settings, section "Settings\Capture" of the application's profile

    /// What button `n` captures, counted from 0: "PrintButton<n>". 1, 13, 64 and for the others 3
    /// when nothing is set.
    static unsigned int GetPrintButtonFlags(unsigned int n);
    /// What button `n` does: "PrintButton<n>_Action", 18 when nothing is set.
    static unsigned int GetPrintButtonAction(unsigned int n);

    // ---- Drawing. A null `dc` draws nothing.

    /// Fills `rect` from `top` to `bottom`.
    static void DrawGradient(CDC* dc, const CRect& rect, COLORREF top, COLORREF bottom);
    /// Fills the upper half of `rect` from c1 to c2 and the lower half from c3 to c4.
    static void DrawDoubleGradient(CDC* dc, const CRect& rect, COLORREF c1, COLORREF c2,
                                   COLORREF c3, COLORREF c4);
    /// Draws a border of two pixels inside the edges of `rect` that `sides` names (1 left, 2 top, 4
    /// right, 8 bottom): a black line and one in the colours, shaded from `second` at the top to
    /// `first` at the bottom. The left side has its black line outside and the right side inside,
    /// deliberately.
    static void DrawBorder(CDC* dc, const CRect& rect, int sides, COLORREF first, COLORREF second);
    /// Adds a copy of `bitmap`, scaled to `size`, to `list`; its pixels of the colour `mask` are
    /// transparent. Of a bitmap that is selected into a device context only an empty picture is
    /// added, and nothing where there is no bitmap or no such size.
    static void AddImage(CImageList& list, CBitmap& bitmap, const CSize& size, COLORREF mask);
    /// The same for a bitmap resource of the program or of the module that holds it.
    static void AddImage(CImageList& list, unsigned int bitmapId, const CSize& size, COLORREF mask);

    // ---- Spans of dates

    /// The whole years from `from` to `to`, as an age is counted.
    static int GetYearSpan(const COleDateTime& from, const COleDateTime& to);
    /// The months begun from `from` to the next time that the day of `to` comes, 0 to 12. The years
    /// do not count, deliberately.
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
