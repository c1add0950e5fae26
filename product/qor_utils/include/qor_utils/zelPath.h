#pragma once

#include "qor_utils/export.h"

#include <string>

/// The application's folders, by their store numbers. All members may be called on any thread.
///
/// Until the host sets others, the folders lie below the folder of the running program:
///
///   number  folder                        holds
///   0       .                             the application
///   1       protocols\fallback            fall-back factory settings
///   2       images                        images and icons
///   9       layouts                       layout resources
///   21      layouts\fallback              fall-back layout resources
///   22      protocols\saved               root of the users' saved protocols
///   28      log                           log files and crash reports
///   34      patients                      root of the patient database
///   37      protocols\factory\general     factory settings of the current protocol
///   38      protocols\base                base protocol suite
///   39      protocols\base2               second base protocol folder
class QOR_UTILS_API zelPath
{
public:
    /// The store's folder and the name, joined by one backslash whatever the folder ends or the
    /// name begins with. The name is otherwise used unchanged. An empty name gives the folder with
    /// a backslash at its end. A number that has no folder gives an empty text. The folder need not
    /// exist.
    static std::wstring getPath(int store, const std::wstring& name);
};
