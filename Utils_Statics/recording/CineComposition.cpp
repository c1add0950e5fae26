#include "recording/CineComposition.h"

#include <qor_utils/PixelArrays.h>

#include <emmintrin.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace utils_statics {

namespace {

// The part of one axis that lies inside both the source and the target.
struct Span
{
    int source = 0;
    int target = 0;
    int length = 0;
};

Span Clip(std::int64_t source, std::int64_t sourceEnd, std::int64_t target, std::int64_t targetEnd,
          std::int64_t length)
{
    const std::int64_t first = std::max({std::int64_t{0}, -source, -target});
    const std::int64_t last = std::min({length, sourceEnd - source, targetEnd - target});
    if (last <= first) return {};
    return {static_cast<int>(source + first), static_cast<int>(target + first),
            static_cast<int>(last - first)};
}

std::uint32_t* RowOf(const Plane& plane, int y)
{
    return plane.pixels + static_cast<std::size_t>(y) * static_cast<std::size_t>(plane.size.cx);
}

// Calls forRow(target, source, first source column, source row, length) for every row of the region
// inside both planes.
template <class ForRow>
void ForEachRow(const Plane& frame, const Plane& plane, POINT origin, SIZE size, Position at,
                ForRow forRow)
{
    if (!frame.pixels || !plane.pixels) return;
    const Span x = Clip(origin.x, plane.size.cx, at.x, frame.size.cx, size.cx);
    const Span y = Clip(origin.y, plane.size.cy, at.y, frame.size.cy, size.cy);
    if (x.length == 0) return;
    for (int row = 0; row < y.length; ++row)
        forRow(RowOf(frame, y.target + row) + x.target, RowOf(plane, y.source + row) + x.source,
               x.source, y.source + row, x.length);
}

bool IsKept(const std::uint8_t* mask, int column)
{
    return (mask[column / 8] >> (7 - column % 8) & 1) != 0;
}

// Copies eight pixels under the eight bits of one mask byte.
void CopyEight(std::uint32_t* target, const std::uint32_t* source, std::uint8_t mask)
{
    const __m128i bits = _mm_set1_epi32(mask);
    const __m128i weights[2] = {_mm_set_epi32(0x10, 0x20, 0x40, 0x80),
                                _mm_set_epi32(0x01, 0x02, 0x04, 0x08)};
    for (int half = 0; half < 2; ++half) {
        auto* const to = reinterpret_cast<__m128i*>(target + 4 * half);
        const __m128i from = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + 4 * half));
        const __m128i kept = _mm_cmpeq_epi32(_mm_and_si128(bits, weights[half]), weights[half]);
        _mm_storeu_si128(to, _mm_or_si128(_mm_and_si128(kept, _mm_loadu_si128(to)),
                                          _mm_andnot_si128(kept, from)));
    }
}

// The number of bytes from `mask` on that equal `value`, at most `limit`.
int RunLength(const std::uint8_t* mask, int limit, std::uint8_t value)
{
    const std::uint64_t eight = 0x0101010101010101u * value;
    int length = 0;
    for (std::uint64_t word; length + 8 <= limit; length += 8) {
        std::memcpy(&word, mask + length, sizeof word);
        if (word != eight) break;
    }
    while (length < limit && mask[length] == value)
        ++length;
    return length;
}

// Copies under whole mask bytes. Real masks have long runs of one value, which are copied or
// skipped at once.
void CopyMaskedBytes(std::uint32_t* target, const std::uint32_t* source, const std::uint8_t* mask,
                     int bytes)
{
    for (int i = 0; i < bytes;) {
        if (mask[i] == 0x00) {
            const int run = RunLength(mask + i, bytes - i, 0x00);
            std::memcpy(target + 8 * i, source + 8 * i,
                        static_cast<std::size_t>(run) * 8 * sizeof *target);
            i += run;
        } else if (mask[i] == 0xFF)
            i += RunLength(mask + i, bytes - i, 0xFF);
        else {
            CopyEight(target + 8 * i, source + 8 * i, mask[i]);
            ++i;
        }
    }
}

void CopyMaskedBits(std::uint32_t* target, const std::uint32_t* source, const std::uint8_t* mask,
                    int column, int length)
{
    for (int i = 0; i < length; ++i)
        if (!IsKept(mask, column + i)) target[i] = source[i];
}

void CopyMaskedRow(std::uint32_t* target, const std::uint32_t* source, const std::uint8_t* mask,
                   int column, int length)
{
    const int head = std::min(length, (8 - column % 8) % 8);
    CopyMaskedBits(target, source, mask, column, head);
    const int bytes = (length - head) / 8;
    CopyMaskedBytes(target + head, source + head, mask + (column + head) / 8, bytes);
    const int done = head + 8 * bytes;
    CopyMaskedBits(target + done, source + done, mask, column + done, length - done);
}

void PaintRow(std::uint32_t* target, const std::uint32_t* source, int length)
{
    for (int i = 0; i < length; ++i)
        target[i] |= source[i];
}

LONG Extent(LONG first, LONG end)
{
    const std::int64_t length = std::int64_t{end} - first;
    return length > 0 && length <= INT32_MAX ? static_cast<LONG>(length) : 0;
}

// The frame row of the rect's bottom edge, because the frame's rows run from the bottom of the
// screen upwards.
std::int64_t FrameRow(const Plane& frame, const RECT& rect)
{
    return std::int64_t{frame.size.cy} - rect.bottom;
}

void PlaceMasked(const Plane& frame, const RECT& rect, std::uint32_t* pixels, const Mask* mask)
{
    if (pixels && mask)
        CopyMasked(frame, {pixels, PlaneSize(rect)}, *mask, {rect.left, FrameRow(frame, rect)});
}

void Invert(std::uint32_t* pixels, SIZE size)
{
    qor_utils::InvertImage(pixels, size.cx, size.cy);
}

void Mirror(std::uint32_t* pixels, SIZE size)
{
    qor_utils::MirrorImage(pixels, size.cx, size.cy);
}

// A region of plane 2 keeps its place within the plane, measured from the plane's first row.
void PlaceRegion(const Plane& frame, const RECT& rect, std::uint32_t* pixels, const RECT& region)
{
    const Position at{std::int64_t{rect.left} + region.left, FrameRow(frame, rect) + region.top};
    CopyRegion(frame, {pixels, PlaneSize(rect)}, region, at);
}

} // namespace

Mask::Mask(std::vector<std::uint8_t> bits, SIZE size) : m_size(size), m_bits(std::move(bits)) {}

std::size_t Mask::Stride(LONG width)
{
    return (static_cast<std::size_t>(width) + 15) / 16 * 2;
}

const std::uint8_t* Mask::Row(int y) const
{
    return m_bits.data() + Stride(m_size.cx) * static_cast<std::size_t>(y);
}

SIZE PlaneSize(const RECT& rect)
{
    const SIZE size{Extent(rect.left, rect.right), Extent(rect.top, rect.bottom)};
    return size.cx > 0 && size.cy > 0 ? size : SIZE{};
}

SIZE StripSize(const RECT& rect1)
{
    constexpr LONG stripHeight = 5;
    return {Extent(rect1.left, rect1.right), stripHeight};
}

void CopyMasked(const Plane& frame, const Plane& plane, const Mask& mask, Position at)
{
    const SIZE covered{std::min(plane.size.cx, mask.Size().cx),
                       std::min(plane.size.cy, mask.Size().cy)};
    ForEachRow(frame, plane, {0, 0}, covered, at,
               [&](std::uint32_t* target, const std::uint32_t* source, int column, int row,
                   int length) { CopyMaskedRow(target, source, mask.Row(row), column, length); });
}

void CopyRegion(const Plane& frame, const Plane& plane, const RECT& region, Position at)
{
    ForEachRow(frame, plane, {region.left, region.top}, PlaneSize(region), at,
               [](std::uint32_t* target, const std::uint32_t* source, int, int, int length) {
                   std::memcpy(target, source, static_cast<std::size_t>(length) * sizeof *target);
               });
}

void Paint(const Plane& frame, const Plane& plane, Position at)
{
    ForEachRow(frame, plane, {0, 0}, plane.size, at,
               [](std::uint32_t* target, const std::uint32_t* source, int, int, int length) {
                   PaintRow(target, source, length);
               });
}

void TurnPlanes(const Layout& layout, const Planes& planes)
{
    Invert(planes.image[2], PlaneSize(layout[2]));
    Invert(planes.image[3], StripSize(layout[1]));
    Invert(planes.image[4], PlaneSize(layout[3]));
    for (int i = 0; i < 2; ++i) {
        if (!planes.orientation[i].bottomUp) Invert(planes.image[i], PlaneSize(layout[i]));
        if (planes.orientation[i].mirrored) Mirror(planes.image[i], PlaneSize(layout[i]));
    }
}

void Compose(const Plane& frame, const Layout& layout, const Planes& planes)
{
    const RECT* const r = layout;
    const bool hasPlane1 = planes.image[1] != nullptr;
    PlaceMasked(frame, r[0], planes.image[0], planes.mask[0]);
    PlaceMasked(frame, r[1], planes.image[1], planes.mask[1]);
    PlaceRegion(frame, r[2], planes.image[2], r[4]);
    PlaceRegion(frame, r[2], planes.image[2], r[5]);

    // Deliberate: without plane 1 the strip lands at the frame's origin.
    const Position strip = hasPlane1 ? Position{r[1].left, FrameRow(frame, r[1])} : Position{};
    Paint(frame, {planes.image[3], StripSize(r[1])}, strip);

    // Plane 4 hangs from the upper edge of plane 1, or of plane 0 when there is no plane 1.
    // Deliberate: rect 3's left edge is not used.
    const RECT& anchor = hasPlane1 ? r[1] : r[0];
    const std::int64_t upperEdge = std::int64_t{frame.size.cy} - anchor.top;
    const Position overlay{anchor.left, upperEdge - r[3].top - PlaneSize(r[3]).cy};
    Paint(frame, {planes.image[4], PlaneSize(r[3])}, overlay);
}

} // namespace utils_statics
