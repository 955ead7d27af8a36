// Views and the messages that they live by; without a display and with one alike.

#include "platform/CView.h"

#include "platform/CDC.h"
#include "platform/DiagnosticoGL.h"
#include "platform/Errores.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

class Vista : public CView {
  public:
    bool Abre(int ancho = 60, int alto = 40) {
        return Create(nullptr, L"Vista", WS_VISIBLE, CRect(10, 10, 10 + ancho, 10 + alto));
    }
    // Hands on what a new window gets.
    void Asienta() {
        for (int i = 0; i < 50 && m_Cajas.empty(); ++i)
            DespachaEventos(20);
        while (DespachaEventos(20) > 0) {
        }
        m_Cajas.clear();
        m_Clases.clear();
        m_Sucesos.clear();
    }

    std::string m_Sucesos;
    std::vector<CRect> m_Cajas;  // clip boxes of OnDraw
    std::vector<int> m_Clases;   // and their kinds
    CRect m_Otra;                // OnDraw invalidates this once
    int m_nCrea = 0;
    CWnd* m_pPaleta = nullptr;

  protected:
    int OnCreate(LPCREATESTRUCT cs) override {
        m_Sucesos += cs ? "create " : "create0 ";
        return m_nCrea;
    }
    void OnSize(UINT, int cx, int cy) override {
        m_Sucesos += "size" + std::to_string(cx) + "x" + std::to_string(cy) + " ";
    }
    void OnInitialUpdate() override {
        m_Sucesos += "initial ";
        CView::OnInitialUpdate();
    }
    void OnDraw(CDC* pDC) override {
        CRect caja;
        m_Clases.push_back(pDC->GetClipBox(&caja));
        m_Cajas.push_back(caja);
        if (!m_Otra.IsRectEmpty()) InvalidateRect(&m_Otra);
        m_Otra = CRect();
    }
    void OnDestroy() override { m_Sucesos += "destroy "; }
    void OnClose() override { m_Sucesos += "close "; }
    void OnPaletteChanged(CWnd* otra) override { m_pPaleta = otra; }
    BOOL OnQueryNewPalette() override { return 7; }
    void OnMouseMove(UINT f, CPoint p) override { Apunta("move", f, p); }
    void OnLButtonDown(UINT f, CPoint p) override { Apunta("L", f, p); }
    void OnMButtonUp(UINT f, CPoint p) override { Apunta("m", f, p); }
    void OnRButtonDblClk(UINT f, CPoint p) override { Apunta("RR", f, p); }
    BOOL OnMouseWheel(UINT f, short d, CPoint p) override {
        Apunta("wheel" + std::to_string(d) + ":", f, p);
        return TRUE;
    }
    void OnKeyDown(UINT t, UINT n, UINT) override {
        m_Sucesos += "key" + std::to_string(t) + "x" + std::to_string(n) + " ";
    }

  private:
    void Apunta(const std::string& que, UINT f, CPoint p) {
        m_Sucesos += que + std::to_string(f) + "," + std::to_string(p.x) + "," + std::to_string(p.y) + " ";
    }
};

TEST(CView, IsCreatedSizedAndThenUpdatedOnce) {
    Vista v;
    ASSERT_TRUE(v.Abre()) << UltimoFalloGL();
    EXPECT_EQ(v.m_Sucesos, "create size60x40 initial ");
    v.SendMessage(WM_INITIALUPDATE);
    EXPECT_EQ(v.m_Sucesos, "create size60x40 initial ") << "it isn't a second time";
    EXPECT_TRUE(v.DestroyWindow());
    EXPECT_EQ(v.m_Sucesos, "create size60x40 initial destroy ");
}

TEST(CView, ARefusalToBeCreatedEndsIt) {
    Vista v;
    v.m_nCrea = -1;
    EXPECT_FALSE(v.Abre());
    EXPECT_EQ(v.m_Sucesos, "create destroy ");
    v.m_nCrea = 0;
    v.m_Sucesos.clear();
    EXPECT_TRUE(v.Abre());
    EXPECT_EQ(v.m_Sucesos, "create size60x40 initial ");
}

TEST(CView, ANewWindowIsDrawnWhole) {
    Vista v;
    ASSERT_TRUE(v.Abre());
    for (int i = 0; i < 50 && v.m_Cajas.empty(); ++i)
        CWnd::DespachaEventos(20);
    ASSERT_FALSE(v.m_Cajas.empty());
    EXPECT_EQ(v.m_Cajas[0], CRect(0, 0, 60, 40));
    EXPECT_EQ(v.m_Clases[0], SIMPLEREGION);
}

TEST(CView, TheClipBoxHoldsAllThatIsInvalidAndNoMore) {
    Vista v;
    ASSERT_TRUE(v.Abre());
    v.Asienta();
    const CRect a(5, 6, 10, 12), b(20, 3, 30, 8), fuera(50, 30, 500, 300);
    v.InvalidateRect(&a);
    v.InvalidateRect(&b);
    CWnd::DespachaEventos();
    ASSERT_EQ(v.m_Cajas.size(), 1u);
    EXPECT_EQ(v.m_Cajas[0], CRect(5, 3, 30, 12));
    EXPECT_TRUE(InvalidateRect(v.GetSafeHwnd(), &fuera, TRUE));
    CWnd::DespachaEventos();
    ASSERT_EQ(v.m_Cajas.size(), 2u);
    EXPECT_EQ(v.m_Cajas[1], CRect(50, 30, 60, 40)) << "no more than the window";
    const CRect ninguna(100, 100, 200, 200);
    v.InvalidateRect(&ninguna);
    CWnd::DespachaEventos();
    EXPECT_EQ(v.m_Cajas.size(), 2u);
    EXPECT_TRUE(InvalidateRect(v.GetSafeHwnd(), nullptr, TRUE));
    v.UpdateWindow();
    ASSERT_EQ(v.m_Cajas.size(), 3u);
    EXPECT_EQ(v.m_Cajas[2], CRect(0, 0, 60, 40));
    v.UpdateWindow();
    EXPECT_EQ(v.m_Cajas.size(), 3u) << "it is valid by now";
    EXPECT_FALSE(InvalidateRect(nullptr, nullptr, TRUE));
}

TEST(CView, PaintingWithoutNeedHasAnEmptyClipBox) {
    Vista v;
    ASSERT_TRUE(v.Abre());
    v.Asienta();
    v.SendMessage(WM_PAINT);
    ASSERT_EQ(v.m_Clases.size(), 1u);
    EXPECT_EQ(v.m_Clases.back(), NULLREGION);
    EXPECT_TRUE(v.m_Cajas.back().IsRectEmpty());
    CRect caja(1, 2, 3, 4);
    CClientDC todo(&v);
    EXPECT_EQ(todo.GetClipBox(&caja), SIMPLEREGION);
    EXPECT_EQ(caja, CRect(0, 0, 60, 40)) << "outside of painting all of it may be drawn on";
    CDC ninguno;
    EXPECT_EQ(ninguno.GetClipBox(&caja), RGN_ERROR);
    EXPECT_EQ(todo.GetClipBox(nullptr), RGN_ERROR);
}

TEST(CView, WhatDrawingInvalidatesIsPaintedTheNextTime) {
    Vista v;
    ASSERT_TRUE(v.Abre());
    v.Asienta();
    v.m_Otra = CRect(1, 1, 4, 4);
    v.Invalidate();
    CWnd::DespachaEventos();
    EXPECT_EQ(v.m_Cajas.size(), 1u);
    CWnd::DespachaEventos();
    ASSERT_EQ(v.m_Cajas.size(), 2u);
    EXPECT_EQ(v.m_Cajas[1], CRect(1, 1, 4, 4));
}

TEST(CView, MessagesReachTheirHandlers) {
    Vista v, otra;
    EXPECT_EQ(v.SendMessage(WM_SIZE, 0, MAKELPARAM(1, 2)), 0);
    EXPECT_EQ(v.m_Sucesos, "") << "without a window there is nobody to tell";
    ASSERT_TRUE(v.Abre());
    v.Asienta();
    v.SendMessage(WM_SIZE, SIZE_RESTORED, MAKELPARAM(16000, 40000));
    v.SendMessage(WM_MOUSEMOVE, MK_SHIFT, MAKELPARAM(-3, 32000));
    v.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 2));
    v.SendMessage(WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(3, 4));
    v.SendMessage(WM_RBUTTONDBLCLK, MK_RBUTTON, MAKELPARAM(5, 6));
    v.SendMessage(WM_MBUTTONUP, 0, MAKELPARAM(7, 8));
    EXPECT_EQ(v.SendMessage(WM_MOUSEWHEEL, MK_CONTROL | WPARAM{0xff88} << 16, MAKELPARAM(9, 10)), TRUE);
    v.SendMessage(WM_KEYDOWN, VK_HOME, 3);
    v.SendMessage(WM_CLOSE);
    v.SendMessage(0x7fff, 1, 2);
    EXPECT_EQ(v.m_Sucesos,
              "size16000x40000 move4,-3,32000 L1,1,2 L1,3,4 RR2,5,6 m0,7,8 wheel-120:8,9,10 key36x3 close ")
        << "a double click that nobody wants is a press";
    EXPECT_EQ(v.SendMessage(WM_QUERYNEWPALETTE), 7);
    ASSERT_TRUE(otra.Abre());
    v.SendMessage(WM_PALETTECHANGED, reinterpret_cast<WPARAM>(otra.GetSafeHwnd()));
    EXPECT_EQ(v.m_pPaleta, &otra);
    EXPECT_EQ(CWnd::FromHandle(v.GetSafeHwnd()), &v);
    EXPECT_EQ(CWnd::FromHandle(nullptr), nullptr);
}

TEST(CView, NobodyErasesTheBackground) {
    Vista v;
    ASSERT_TRUE(v.Abre());
    v.Asienta();
    EXPECT_EQ(v.SendMessage(WM_ERASEBKGND), 0);
    EXPECT_EQ(v.m_Sucesos, "");
}

TEST(CView, UnknownCommandsAreNotTaken) {
    Vista v;
    ASSERT_TRUE(v.Abre());
    EXPECT_EQ(v.SendMessage(WM_COMMAND, 0xE100), FALSE);
}

// Closed while it is told of its size.
class Fugaz : public Vista {
  protected:
    void OnSize(UINT, int, int) override { DestroyWindow(); }
};

TEST(CView, MayBeClosedByAnyHandler) {
    Fugaz v;
    EXPECT_FALSE(v.Abre());
    EXPECT_EQ(v.GetSafeHwnd(), nullptr);
    EXPECT_EQ(v.m_Sucesos, "create destroy ") << "it is updated no more";
}

}  // namespace
