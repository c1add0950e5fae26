#pragma once

#include <framework/Wrapping.h>

#include <windows.h>

#include <algorithm>

/// A width and a height, in the unit of the function that takes it.
class CSize : public tagSIZE
{
public:
    /// Zero by default.
    constexpr CSize() noexcept : tagSIZE{0, 0} {}
    constexpr CSize(int width, int height) noexcept : tagSIZE{width, height} {}
    constexpr CSize(SIZE size) noexcept : tagSIZE(size) {}
    explicit constexpr CSize(POINT point) noexcept : tagSIZE{point.x, point.y} {}

    /// Sets both values.
    constexpr void SetSize(int width, int height) noexcept { *this = CSize(width, height); }

    /// Sums and differences wrap around at the ends of the 32-bit range.
    constexpr CSize operator-() const noexcept { return CSize() - *this; }
    friend constexpr CSize operator+(const CSize& a, const SIZE& b) noexcept
    {
        return {framework::WrappingAdd(a.cx, b.cx), framework::WrappingAdd(a.cy, b.cy)};
    }
    friend constexpr CSize operator-(const CSize& a, const SIZE& b) noexcept
    {
        return {framework::WrappingSubtract(a.cx, b.cx), framework::WrappingSubtract(a.cy, b.cy)};
    }
    friend constexpr bool operator==(const CSize& a, const CSize& b) noexcept
    {
        return a.cx == b.cx && a.cy == b.cy;
    }
    constexpr CSize& operator+=(SIZE size) noexcept { return *this = *this + size; }
    constexpr CSize& operator-=(SIZE size) noexcept { return *this = *this - size; }
};

/// A position; sums wrap around at the ends of the 32-bit range. It may stand for a corner of a
/// rectangle, so it may share its memory with the rectangle's edges.
class [[gnu::may_alias]] CPoint : public tagPOINT
{
public:
    /// Zero by default.
    constexpr CPoint() noexcept : tagPOINT{0, 0} {}
    constexpr CPoint(int pointX, int pointY) noexcept : tagPOINT{pointX, pointY} {}
    constexpr CPoint(POINT point) noexcept : tagPOINT(point) {}
    explicit constexpr CPoint(SIZE size) noexcept : tagPOINT{size.cx, size.cy} {}
    /// The position packed into the parameter of a mouse message: two signed 16-bit halves.
    explicit constexpr CPoint(LPARAM packed) noexcept
        : tagPOINT{static_cast<short>(LOWORD(packed)), static_cast<short>(HIWORD(packed))}
    {
    }

    /// Sets both coordinates.
    constexpr void SetPoint(int pointX, int pointY) noexcept { *this = CPoint(pointX, pointY); }
    /// Move the point.
    constexpr void Offset(int dx, int dy) noexcept { *this += CSize(dx, dy); }
    constexpr void Offset(POINT by) noexcept { *this += CSize(by); }
    constexpr void Offset(SIZE by) noexcept { *this += by; }

    /// The difference of two points is a size.
    constexpr CPoint operator-() const noexcept { return CPoint() - CSize(*this); }
    friend constexpr CPoint operator+(const CPoint& a, const CSize& b) noexcept
    {
        return {framework::WrappingAdd(a.x, b.cx), framework::WrappingAdd(a.y, b.cy)};
    }
    friend constexpr CPoint operator+(const CPoint& a, const CPoint& b) noexcept
    {
        return a + CSize(b);
    }
    friend constexpr CPoint operator-(const CPoint& a, const CSize& b) noexcept
    {
        return {framework::WrappingSubtract(a.x, b.cx), framework::WrappingSubtract(a.y, b.cy)};
    }
    friend constexpr CSize operator-(const CPoint& a, const CPoint& b) noexcept
    {
        return CSize(a) - CSize(b);
    }
    friend constexpr bool operator==(const CPoint& a, const CPoint& b) noexcept
    {
        return a.x == b.x && a.y == b.y;
    }
    constexpr CPoint& operator+=(SIZE size) noexcept { return *this = *this + CSize(size); }
    constexpr CPoint& operator-=(SIZE size) noexcept { return *this = *this - CSize(size); }
    constexpr CPoint& operator+=(POINT point) noexcept { return *this += CSize(point); }
    constexpr CPoint& operator-=(POINT point) noexcept { return *this -= CSize(point); }
};

/// A rectangle by its edges; the right and the bottom edge lie outside. Nothing normalises it but
/// NormalizeRect.
class CRect : public tagRECT
{
public:
    /// All edges are zero by default.
    constexpr CRect() noexcept : tagRECT{0, 0, 0, 0} {}
    constexpr CRect(int l, int t, int r, int b) noexcept : tagRECT{l, t, r, b} {}
    constexpr CRect(const RECT& rect) noexcept : tagRECT(rect) {}
    constexpr CRect(LPCRECT rect) noexcept : tagRECT(*rect) {}
    constexpr CRect(POINT topLeft, SIZE size) noexcept
        : CRect(CPoint(topLeft), CPoint(topLeft) + CSize(size))
    {
    }
    constexpr CRect(POINT topLeft, POINT bottomRight) noexcept
        : tagRECT{topLeft.x, topLeft.y, bottomRight.x, bottomRight.y}
    {
    }

    /// Wrap around for edges that lie too far apart; negative for edges that are the wrong way
    /// round.
    constexpr int Width() const noexcept { return framework::WrappingSubtract(right, left); }
    constexpr int Height() const noexcept { return framework::WrappingSubtract(bottom, top); }
    constexpr CSize Size() const noexcept { return {Width(), Height()}; }
    /// The corners themselves: changes to them change the edges.
    CPoint& TopLeft() noexcept { return reinterpret_cast<CPoint&>(left); }
    CPoint& BottomRight() noexcept { return reinterpret_cast<CPoint&>(right); }
    const CPoint& TopLeft() const noexcept { return reinterpret_cast<const CPoint&>(left); }
    const CPoint& BottomRight() const noexcept { return reinterpret_cast<const CPoint&>(right); }
    /// Half the sums of opposite edges, truncated toward zero.
    constexpr CPoint CenterPoint() const noexcept
    {
        return {framework::WrappingAdd(left, right) / 2, framework::WrappingAdd(top, bottom) / 2};
    }
    /// Functions of the platform take a rectangle by its address.
    constexpr operator LPRECT() noexcept { return this; }
    constexpr operator LPCRECT() const noexcept { return this; }

    /// An empty rectangle has no area. The edges of a null one are all zero.
    constexpr BOOL IsRectEmpty() const noexcept { return right <= left || bottom <= top; }
    constexpr BOOL IsRectNull() const noexcept { return *this == CRect(); }
    /// True for a point inside, the left and top edges included.
    constexpr BOOL PtInRect(POINT point) const noexcept
    {
        return point.x >= left && point.x < right && point.y >= top && point.y < bottom;
    }
    /// True when all edges are the same.
    constexpr BOOL EqualRect(LPCRECT other) const noexcept { return *this == CRect(*other); }

    /// Set all edges.
    constexpr void SetRect(int l, int t, int r, int b) noexcept { *this = CRect(l, t, r, b); }
    constexpr void SetRect(POINT topLeft, POINT bottomRight) noexcept
    {
        *this = CRect(topLeft, bottomRight);
    }
    constexpr void SetRectEmpty() noexcept { *this = CRect(); }
    constexpr void CopyRect(LPCRECT source) noexcept { *this = CRect(*source); }

    /// Move each edge outwards.
    constexpr void InflateRect(int l, int t, int r, int b) noexcept
    {
        left = framework::WrappingSubtract(left, l);
        top = framework::WrappingSubtract(top, t);
        right = framework::WrappingAdd(right, r);
        bottom = framework::WrappingAdd(bottom, b);
    }
    constexpr void InflateRect(int x, int y) noexcept { InflateRect(x, y, x, y); }
    constexpr void InflateRect(SIZE size) noexcept { InflateRect(size.cx, size.cy); }
    constexpr void InflateRect(LPCRECT by) noexcept
    {
        InflateRect(by->left, by->top, by->right, by->bottom);
    }
    /// Move each edge inwards.
    constexpr void DeflateRect(int l, int t, int r, int b) noexcept
    {
        using framework::WrappingSubtract;
        InflateRect(WrappingSubtract(0, l), WrappingSubtract(0, t), WrappingSubtract(0, r),
                    WrappingSubtract(0, b));
    }
    constexpr void DeflateRect(int x, int y) noexcept { DeflateRect(x, y, x, y); }
    constexpr void DeflateRect(SIZE size) noexcept { DeflateRect(size.cx, size.cy); }
    constexpr void DeflateRect(LPCRECT by) noexcept
    {
        DeflateRect(by->left, by->top, by->right, by->bottom);
    }

    /// Move the rectangle by a distance.
    constexpr void OffsetRect(int dx, int dy) noexcept
    {
        left = framework::WrappingAdd(left, dx);
        top = framework::WrappingAdd(top, dy);
        right = framework::WrappingAdd(right, dx);
        bottom = framework::WrappingAdd(bottom, dy);
    }
    constexpr void OffsetRect(SIZE by) noexcept { OffsetRect(by.cx, by.cy); }
    constexpr void OffsetRect(POINT by) noexcept { OffsetRect(by.x, by.y); }
    /// Move the rectangle so that its top left corner lies there.
    constexpr void MoveToX(int x) noexcept { OffsetRect(framework::WrappingSubtract(x, left), 0); }
    constexpr void MoveToY(int y) noexcept { OffsetRect(0, framework::WrappingSubtract(y, top)); }
    constexpr void MoveToXY(int x, int y) noexcept
    {
        MoveToX(x);
        MoveToY(y);
    }
    constexpr void MoveToXY(POINT to) noexcept { MoveToXY(to.x, to.y); }

    /// Swaps edges so that neither the width nor the height is negative.
    constexpr void NormalizeRect() noexcept
    {
        if (left > right) std::swap(left, right);
        if (top > bottom) std::swap(top, bottom);
    }
    /// Sets this to the common part of both. When they share none, all edges become zero and the
    /// result is FALSE.
    BOOL IntersectRect(LPCRECT a, LPCRECT b) noexcept { return ::IntersectRect(this, a, b); }
    /// Sets this to the smallest rectangle around both, ignoring an empty one. FALSE when both are
    /// empty.
    BOOL UnionRect(LPCRECT a, LPCRECT b) noexcept { return ::UnionRect(this, a, b); }

    /// True when all edges are the same.
    friend constexpr bool operator==(const CRect& a, const CRect& b) noexcept
    {
        return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
    }
    /// Move the rectangle.
    constexpr CRect& operator+=(POINT by) noexcept
    {
        OffsetRect(by);
        return *this;
    }
    constexpr CRect& operator+=(SIZE by) noexcept
    {
        OffsetRect(by);
        return *this;
    }
    constexpr CRect& operator-=(POINT by) noexcept
    {
        OffsetRect(-CPoint(by));
        return *this;
    }
    constexpr CRect& operator-=(SIZE by) noexcept
    {
        OffsetRect(-CSize(by));
        return *this;
    }
    /// Leave the common part with another rectangle, or the least one around both.
    CRect& operator&=(const RECT& other) noexcept
    {
        IntersectRect(this, &other);
        return *this;
    }
    CRect& operator|=(const RECT& other) noexcept
    {
        UnionRect(this, &other);
        return *this;
    }
    /// Return the rectangle that the operators above would leave.
    friend constexpr CRect operator+(CRect rect, POINT by) noexcept { return rect += by; }
    friend constexpr CRect operator+(CRect rect, SIZE by) noexcept { return rect += by; }
    friend constexpr CRect operator-(CRect rect, POINT by) noexcept { return rect -= by; }
    friend constexpr CRect operator-(CRect rect, SIZE by) noexcept { return rect -= by; }
    friend CRect operator&(CRect a, const RECT& b) noexcept { return a &= b; }
    friend CRect operator|(CRect a, const RECT& b) noexcept { return a |= b; }
};
