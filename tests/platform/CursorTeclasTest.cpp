// Pointer and keys where there is no display: unknown, and up.

#include "platform/CursorTeclas.h"

#include "platform/CPoint.h"

#include <gtest/gtest.h>

namespace {

TEST(CursorTeclas, WithoutADisplayThePointerIsUnknownAndStays) {
    CPoint p(7, 8);
    EXPECT_FALSE(GetCursorPos(&p));
    EXPECT_EQ(p, CPoint(7, 8));
    EXPECT_FALSE(SetCursorPos(400, 300));
    EXPECT_FALSE(GetCursorPos(nullptr));
}

TEST(CursorTeclas, WithoutADisplayNoKeyIsDown) {
    for (int tecla = -1; tecla < 256; ++tecla)
        EXPECT_EQ(GetKeyState(tecla), 0) << tecla;
}

}  // namespace
