#pragma once
// Points, sizes and rectangles in pixels, y downwards. Plain values over POINT, SIZE and RECT, so that either form can
// be handed to the other.

#include "platform/Tipos.h"

#include <algorithm>

/// A width and a height, or a displacement.
class CSize : public SIZE {
  public:
    constexpr CSize() : SIZE{0, 0} {}
    constexpr CSize(LONG ancho, LONG alto) : SIZE{ancho, alto} {}
    constexpr CSize(const SIZE& s) : SIZE(s) {}

    constexpr CSize& operator+=(const SIZE& s) { return *this = CSize(cx + s.cx, cy + s.cy); }
    constexpr CSize& operator-=(const SIZE& s) { return *this = CSize(cx - s.cx, cy - s.cy); }
    constexpr CSize operator-() const { return {-cx, -cy}; }
    friend constexpr CSize operator+(CSize a, const CSize& b) { return a += b; }
    friend constexpr CSize operator-(CSize a, const CSize& b) { return a -= b; }
    friend constexpr bool operator==(const CSize& a, const CSize& b) { return a.cx == b.cx && a.cy == b.cy; }
};

/// A pixel. The difference of two points is a CSize.
class CPoint : public POINT {
  public:
    constexpr CPoint() : POINT{0, 0} {}
    constexpr CPoint(LONG px, LONG py) : POINT{px, py} {}
    constexpr CPoint(const POINT& p) : POINT(p) {}
    constexpr explicit CPoint(const SIZE& s) : POINT{s.cx, s.cy} {}

    constexpr void SetPoint(LONG px, LONG py) { *this = CPoint(px, py); }
    constexpr void Offset(LONG dx, LONG dy) { *this = CPoint(x + dx, y + dy); }
    constexpr void Offset(const SIZE& s) { Offset(s.cx, s.cy); }
    constexpr void Offset(const POINT& p) { Offset(p.x, p.y); }

    constexpr CPoint& operator+=(const SIZE& s) { return *this = CPoint(x + s.cx, y + s.cy); }
    constexpr CPoint& operator-=(const SIZE& s) { return *this = CPoint(x - s.cx, y - s.cy); }
    constexpr CPoint& operator+=(const POINT& p) { return *this = CPoint(x + p.x, y + p.y); }
    constexpr CPoint& operator-=(const POINT& p) { return *this = CPoint(x - p.x, y - p.y); }
    constexpr CPoint operator-() const { return {-x, -y}; }
    friend constexpr CPoint operator+(CPoint p, const SIZE& s) { return p += s; }
    friend constexpr CPoint operator-(CPoint p, const SIZE& s) { return p -= s; }
    friend constexpr CPoint operator+(CPoint a, const POINT& b) { return a += b; }
    friend constexpr CSize operator-(const CPoint& a, const POINT& b) { return {a.x - b.x, a.y - b.y}; }
    friend constexpr bool operator==(const CPoint& a, const CPoint& b) { return a.x == b.x && a.y == b.y; }
};

/// A rectangle. Left and top belong to it, right and bottom don't. Unless told otherwise, operations expect it
/// normalised: left at most right, top at most bottom.
class CRect : public RECT {
  public:
    constexpr CRect() : RECT{0, 0, 0, 0} {}
    constexpr CRect(LONG l, LONG t, LONG r, LONG b) : RECT{l, t, r, b} {}
    constexpr CRect(const RECT& r) : RECT(r) {}
    constexpr CRect(const POINT& p, const SIZE& s) : RECT{p.x, p.y, p.x + s.cx, p.y + s.cy} {}
    constexpr CRect(const POINT& a, const POINT& b) : RECT{a.x, a.y, b.x, b.y} {}

    constexpr LONG Width() const { return right - left; }
    constexpr LONG Height() const { return bottom - top; }
    constexpr CSize Size() const { return {Width(), Height()}; }
    constexpr CPoint TopLeft() const { return {left, top}; }
    constexpr CPoint BottomRight() const { return {right, bottom}; }
    constexpr CPoint CenterPoint() const { return {left + Width() / 2, top + Height() / 2}; }

    /// Without area: no width or no height, also when it isn't normalised.
    constexpr bool IsRectEmpty() const { return right <= left || bottom <= top; }
    /// All four sides are 0.
    constexpr bool IsRectNull() const { return *this == CRect(); }
    constexpr bool EqualRect(const RECT& r) const { return *this == CRect(r); }
    constexpr bool PtInRect(const POINT& p) const { return p.x >= left && p.x < right && p.y >= top && p.y < bottom; }

    constexpr void SetRect(LONG l, LONG t, LONG r, LONG b) { *this = CRect(l, t, r, b); }
    constexpr void SetRectEmpty() { *this = CRect(); }
    constexpr void CopyRect(const RECT* r) { *this = CRect(*r); }

    /// Swaps left with right and top with bottom where they are the wrong way round.
    constexpr void NormalizeRect() {
        *this = CRect(std::min(left, right), std::min(top, bottom), std::max(left, right), std::max(top, bottom));
    }

    constexpr void InflateRect(LONG l, LONG t, LONG r, LONG b) {
        *this = CRect(left - l, top - t, right + r, bottom + b);
    }
    constexpr void InflateRect(LONG x, LONG y) { InflateRect(x, y, x, y); }
    constexpr void InflateRect(const SIZE& s) { InflateRect(s.cx, s.cy); }
    constexpr void DeflateRect(LONG l, LONG t, LONG r, LONG b) { InflateRect(-l, -t, -r, -b); }
    constexpr void DeflateRect(LONG x, LONG y) { InflateRect(-x, -y); }
    constexpr void DeflateRect(const SIZE& s) { InflateRect(-s.cx, -s.cy); }

    constexpr void OffsetRect(LONG dx, LONG dy) { InflateRect(-dx, -dy, dx, dy); }
    constexpr void OffsetRect(const SIZE& s) { OffsetRect(s.cx, s.cy); }
    constexpr void OffsetRect(const POINT& p) { OffsetRect(p.x, p.y); }
    constexpr void MoveToX(LONG x) { OffsetRect(x - left, 0); }
    constexpr void MoveToY(LONG y) { OffsetRect(0, y - top); }
    constexpr void MoveToXY(LONG x, LONG y) { OffsetRect(x - left, y - top); }

    /// Becomes what both have in common. Without anything in common it becomes null, and the result is false.
    constexpr bool IntersectRect(const RECT& a, const RECT& b) {
        *this = CRect(std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                      std::min(a.bottom, b.bottom));
        if (IsRectEmpty()) SetRectEmpty();
        return !IsRectNull();
    }

    /// Becomes the smallest rectangle around both; one without area doesn't count. False when neither counts.
    constexpr bool UnionRect(const CRect& a, const CRect& b) {
        if (a.IsRectEmpty() || b.IsRectEmpty()) {
            *this = a.IsRectEmpty() ? b : a;
            if (IsRectEmpty()) SetRectEmpty();
        } else {
            *this = CRect(std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
                          std::max(a.bottom, b.bottom));
        }
        return !IsRectNull();
    }

    constexpr CRect& operator+=(const POINT& p) { return OffsetRect(p), *this; }
    constexpr CRect& operator+=(const SIZE& s) { return OffsetRect(s), *this; }
    constexpr CRect& operator-=(const POINT& p) { return OffsetRect(-p.x, -p.y), *this; }
    constexpr CRect& operator-=(const SIZE& s) { return OffsetRect(-s.cx, -s.cy), *this; }
    constexpr CRect& operator&=(const RECT& r) { return IntersectRect(CRect(*this), r), *this; }
    constexpr CRect& operator|=(const RECT& r) { return UnionRect(CRect(*this), r), *this; }
    friend constexpr CRect operator+(CRect r, const POINT& p) { return r += p; }
    friend constexpr CRect operator+(CRect r, const SIZE& s) { return r += s; }
    friend constexpr CRect operator-(CRect r, const POINT& p) { return r -= p; }
    friend constexpr CRect operator-(CRect r, const SIZE& s) { return r -= s; }
    friend constexpr CRect operator&(CRect a, const RECT& b) { return a &= b; }
    friend constexpr CRect operator|(CRect a, const RECT& b) { return a |= b; }
    friend constexpr bool operator==(const CRect& a, const CRect& b) {
        return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
    }
};
