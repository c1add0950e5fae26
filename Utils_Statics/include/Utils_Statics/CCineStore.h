#pragma once

#include <Utils_Statics/CineHeader.h>
#include <Utils_Statics/export.h>

#include <atlstr.h>

#include <cstdio>

/// Writes one cine to a raw file: a 76-byte header, then the blocks as they are handed over, then,
/// at the end, the count into the header. A finished file is announced through a callback.
///
/// One store is used by one thread at a time. Every failure is a false result and nothing is logged
/// or thrown. What AddFrame has accepted is with the operating system, not in a buffer of the
/// process: a program that is killed while it records leaves all its frames in the file, with the
/// count still 0.
class UTILS_STATICS_API CCineStore : protected CineHeader
{
public:
    /// Receives the path of the finished file and the pointer given to SetCompleteCallback. It may
    /// start the store's next file. It must not throw.
    using CompleteCallback = void (*)(const wchar_t* path, void* userData);

    CCineStore() = default;
    /// Copies every member, the open file included; not meant to be done while a file is open,
    /// because two stores would then both finish it.
    CCineStore(const CCineStore&) = default;
    CCineStore& operator=(const CCineStore&) = default;

    /// Ends the storage: a file still open is finished and announced.
    virtual ~CCineStore();

    /// Finishes the file: writes the count into the header, closes the file and calls the callback,
    /// on this thread. False when no file is open, or when the count cannot be written; the file is
    /// closed then too, its count stays what it was, and the callback is not called.
    virtual bool EndStorage();

    /// Creates (or truncates) the file and writes its header. On false the members hold the new
    /// values nevertheless, and a file whose header could not be written stays open until
    /// EndStorage. A file still open is closed without being finished.
    bool InitStorage(CString fileName, uData dataType, uDataDesc description, int e1, int e2,
                     int e3, int e4, int e5, int e6);

    /// Appends a frame of `size` bytes and counts it. False, with the count and the file's content
    /// unchanged, when no file is open, `data` is null, `size` is not positive, or the block cannot
    /// be written completely.
    bool AddFrame(void* data, int size);

    /// Appends a block of ECG samples, with the failures of AddFrame. The count becomes the byte
    /// size of this block: it replaces what frames and earlier blocks have counted.
    bool AddECGData(void* data, int size);

    /// Sets what EndStorage calls; a null callback switches the notification off.
    void SetCompleteCallback(CompleteCallback callback, void* callbackData);

protected:
    /// Calls the callback, if there is one, with the recorded path.
    void Announce() const;

    CString path;                                ///< recorded when the header has been written
    std::FILE* file = nullptr;                   ///< open while recording
    CompleteCallback completeCallback = nullptr; ///< may be null
    void* userData = nullptr;                    ///< handed back to the callback, never used

private:
    bool CreateFile(const CString& fileName);
    bool AppendBlock(const void* data, int size);
    bool PatchCount();
};
