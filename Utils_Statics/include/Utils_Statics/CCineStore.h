#pragma once

#include <Utils_Statics/CineHeader.h>
#include <Utils_Statics/export.h>

#include <atlstr.h>

#include <cstdio>

/// Writes one cine to a raw file: a 76-byte header, then the blocks as they are handed over. At the
/// end it writes the count into the header and announces the finished file through a callback.
///
/// One store is used by one thread at a time. Every failure is a false result; nothing is logged or
/// thrown. A frame that AddFrame has accepted is with the operating system, not in a buffer of the
/// process. A program that is killed while it records therefore leaves all its frames in the file,
/// with the count still 0.
class UTILS_STATICS_API CCineStore : protected CineHeader
{
public:
    /// Receives the path of the finished file and the pointer given to SetCompleteCallback. It may
    /// start the store's next file. It must not throw.
    using CompleteCallback = void (*)(const wchar_t* path, void* userData);

    CCineStore() = default;
    /// Copies every member, the open file included. Do not copy while a file is open: both stores
    /// would finish it.
    CCineStore(const CCineStore&) = default;
    CCineStore& operator=(const CCineStore&) = default;

    /// Ends the storage: a file still open is finished and announced.
    virtual ~CCineStore();

    /// Finishes the file: writes the count into the header, closes the file and calls the callback,
    /// on this thread. False when no file is open or the count cannot be written. In the second
    /// case the file is closed too, its count stays as it is, and the callback is not called.
    virtual bool EndStorage();

    /// Creates (or truncates) the file and writes its header. On false the members still hold the
    /// new values, and a file whose header could not be written stays open until EndStorage. A file
    /// that is open before the call is closed without being finished.
    bool InitStorage(CString fileName, uData dataType, uDataDesc description, int e1, int e2,
                     int e3, int e4, int e5, int e6);

    /// Appends a frame of `size` bytes and counts it. False, with the count and the file's content
    /// unchanged, when no file is open, `data` is null, `size` is not positive, or the block cannot
    /// be written completely.
    bool AddFrame(void* data, int size);

    /// Appends a block of ECG samples; fails like AddFrame. The count becomes the size of this
    /// block in bytes and replaces the count of frames and earlier blocks.
    bool AddECGData(void* data, int size);

    /// Sets what EndStorage calls; a null callback switches the notification off.
    void SetCompleteCallback(CompleteCallback callback, void* callbackData);

protected:
    /// Calls the callback, if there is one, with the recorded path.
    void Announce() const;

    CString path;                                ///< set once the header is written
    std::FILE* file = nullptr;                   ///< open while recording
    CompleteCallback completeCallback = nullptr; ///< may be null
    void* userData = nullptr;                    ///< handed back to the callback, not used here

private:
    bool CreateFile(const CString& fileName);
    bool AppendBlock(const void* data, int size);
    bool PatchCount();
};
