#pragma once

#include <base/Owner.h>

#include <windows.h>
#include <vfw.h>

namespace base {

/// Owns a result of ICOpen.
struct VideoCodecTraits
{
    using Handle = HIC;
    static HIC Empty() noexcept { return nullptr; }
    static void Release(HIC codec) noexcept { ICClose(codec); }
};
using VideoCodec = Owner<VideoCodecTraits>;

/// Opens the first installed video codec for whose short name `isWanted` is true. `info` becomes
/// what that codec says of itself. Empty when no codec is wanted; `info` is then undefined.
template <class Condition>
VideoCodec FindVideoCodec(ICINFO& info, const Condition& isWanted)
{
    for (DWORD i = 0;; ++i) {
        info = {};
        info.dwSize = sizeof info;
        if (!ICInfo(ICTYPE_VIDEO, i, &info)) return {};
        VideoCodec codec(ICOpen(ICTYPE_VIDEO, info.fccHandler, ICMODE_QUERY));
        if (codec && ICGetInfo(codec.get(), &info, sizeof info) != 0 && isWanted(info.szName))
            return codec;
    }
}

} // namespace base
