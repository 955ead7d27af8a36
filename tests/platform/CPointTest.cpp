#include "platform/CPoint.h"

#include <gtest/gtest.h>

namespace {

static_assert(sizeof(LONG) == 4 && sizeof(COLORREF) == 4 && sizeof(DWORD) == 4);
static_assert(RGB(1, 2, 3) == 0x030201 && GetRValue(0x030201) == 1 && GetGValue(0x030201) == 2 &&
              GetBValue(0x030201) == 3);
static_assert(RGB(257, 0, 255) == 0xFF0001);

TEST(CPoint, AddsAndSubtractsPointsAndSizes) {
    CPoint p(3, 4);
    EXPECT_EQ(p + CSize(1, 2), CPoint(4, 6));
    EXPECT_EQ(p - CSize(1, 2), CPoint(2, 2));
    EXPECT_EQ(p - CPoint(1, 1), CSize(2, 3));
    EXPECT_EQ(-p, CPoint(-3, -4));
    p.Offset(1, -1);
    p += CPoint(1, 1);
    EXPECT_EQ(p, CPoint(5, 4));
    EXPECT_FALSE(p == CPoint(5, 5));
}

TEST(CRect, LeftAndTopBelongToItRightAndBottomDont) {
    const CRect r(10, 20, 30, 50);
    EXPECT_EQ(r.Width(), 20);
    EXPECT_EQ(r.Height(), 30);
    EXPECT_TRUE(r.PtInRect(CPoint(10, 20)));
    EXPECT_TRUE(r.PtInRect(CPoint(29, 49)));
    EXPECT_FALSE(r.PtInRect(CPoint(30, 20)));
    EXPECT_FALSE(r.PtInRect(CPoint(10, 50)));
    EXPECT_FALSE(r.PtInRect(CPoint(9, 20)));
    EXPECT_EQ(r.CenterPoint(), CPoint(20, 35));
}

TEST(CRect, NormalisesBothWays) {
    CRect r(30, 50, 10, 20);
    EXPECT_TRUE(r.IsRectEmpty());
    r.NormalizeRect();
    EXPECT_EQ(r, CRect(10, 20, 30, 50));
    r.NormalizeRect();
    EXPECT_EQ(r, CRect(10, 20, 30, 50));
}

TEST(CRect, IntersectionOfRectanglesThatOnlyTouchIsNull) {
    CRect r;
    EXPECT_TRUE(r.IntersectRect(CRect(0, 0, 10, 10), CRect(5, 6, 20, 20)));
    EXPECT_EQ(r, CRect(5, 6, 10, 10));
    EXPECT_FALSE(r.IntersectRect(CRect(0, 0, 10, 10), CRect(10, 0, 20, 10)));
    EXPECT_TRUE(r.IsRectNull());
}

TEST(CRect, UnionPassesOverRectanglesWithoutArea) {
    CRect r;
    EXPECT_TRUE(r.UnionRect(CRect(0, 0, 10, 10), CRect(5, 6, 20, 20)));
    EXPECT_EQ(r, CRect(0, 0, 20, 20));
    EXPECT_EQ(CRect(1, 1, 2, 2) | CRect(50, 50, 50, 90), CRect(1, 1, 2, 2));
    EXPECT_FALSE(r.UnionRect(CRect(3, 3, 3, 9), CRect()));
    EXPECT_TRUE(r.IsRectNull());
}

TEST(CRect, InflatesDeflatesAndMoves) {
    CRect r(10, 10, 20, 20);
    r.InflateRect(1, 2);
    EXPECT_EQ(r, CRect(9, 8, 21, 22));
    r.DeflateRect(1, 2);
    r.InflateRect(1, 2, 3, 4);
    EXPECT_EQ(r, CRect(9, 8, 23, 24));
    r = CRect(CPoint(10, 10), CSize(5, 6));
    r.OffsetRect(-10, 1);
    EXPECT_EQ(r, CRect(0, 11, 5, 17));
    r.MoveToXY(100, 200);
    EXPECT_EQ(r, CRect(100, 200, 105, 206));
    EXPECT_EQ(r - CPoint(100, 200), CRect(0, 0, 5, 6));
}

}  // namespace
