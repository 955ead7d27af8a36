// Printing: the page has the frame, whole, in its shape and the right way up; and whatever fails leaves nothing behind.

#include "VistaPrueba.h"
#include "frame/PaginaImpresion.h"
#include "support/Contexto.h"
#include "support/RegistroGL.h"
#include "support/Temporales.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <tuple>

namespace {

// Where the pixels are that something is said of; y upwards.
struct Zona {
    int x0 = 1 << 20, y0 = 1 << 20, x1 = -1, y1 = -1;

    int Ancho() const { return x1 - x0 + 1; }
    int Alto() const { return y1 - y0 + 1; }
};

// A page: black where nothing is printed.
class Hoja {
  public:
    Hoja(int ancho, int alto) : m_Tela(ancho, alto), m_nAncho(ancho), m_nAlto(alto) {}
    CDC* DC() { return m_Tela.DC(); }
    unsigned Pixel(int x, int y) const { return m_Tela.Pixel(x, y); }
    Zona Donde(const std::function<bool(unsigned)>& condicion) const {
        Zona z;
        for (int y = 0; y < m_nAlto; ++y)
            for (int x = 0; x < m_nAncho; ++x) {
                if (!condicion(Pixel(x, y))) continue;
                z = {std::min(z.x0, x), std::min(z.y0, y), std::max(z.x1, x), std::max(z.y1, y)};
            }
        return z;
    }
    Zona Impreso() const {
        return Donde([](unsigned c) { return c != 0; });
    }
    bool Vacia() const { return Impreso().x1 < 0; }

  private:
    Tela m_Tela;
    int m_nAncho, m_nAlto;
};

// Notes what printing uses, and in which context it draws.
class EscenaImpresa : public EscenaPrueba {
  public:
    using EscenaPrueba::operator=;

    void OnPrint1(CDC* pDC, CPrintInfo* pInfo, CView* pView) override {
        CGL::OnPrint1(pDC, pInfo, pView);
        m_Contextos.push_back(wglGetCurrentContext());
        m_hRCUsado = m_hRCImpresion;
        m_hDCUsado = m_hDCMemoria;
        m_hBitmapUsado = m_hBitmapImpresion;
        m_Imagen = CSize(m_CabeceraImpresion.biWidth, m_CabeceraImpresion.biHeight);
    }
    bool SetDCPixelFormat(HDC hdc, DWORD flags) override {
        m_nFlags = flags;
        m_Intentos.emplace_back(m_CabeceraImpresion.biWidth, m_CabeceraImpresion.biHeight);
        return m_nFormatosQueFallan-- <= 0 && CGL::SetDCPixelFormat(hdc, flags);
    }
    int OnRender() override {
        if (m_bPideContexto) {
            EXPECT_EQ(MakeCurrent(nullptr), 1);
        }
        m_Contextos.push_back(wglGetCurrentContext());
        if (m_hRCImpresion && m_hRCImpresion == wglGetCurrentContext()) m_Heredado = LeeInterruptores();
        return EscenaPrueba::OnRender();
    }
    /// What a frame may leave switched on or off to the next one, and the mode of polygons.
    static std::vector<int> LeeInterruptores() {
        std::vector<int> v;
        for (const GLenum cual : kInterruptores)
            v.push_back(glIsEnabled(cual));
        GLint modo[2] = {};
        glGetIntegerv(GL_POLYGON_MODE, modo);
        v.push_back(modo[0]);
        return v;
    }
    bool NadaQueda() const { return !m_hRCImpresion && !m_hDCMemoria && !m_hBitmapImpresion && !m_pBitsImpresion; }
    /// What was used is gone, and not just forgotten.
    bool TodoBorrado() const {
        return !wglDeleteContext(m_hRCUsado) && !::DeleteDC(m_hDCUsado) && !::DeleteObject(m_hBitmapUsado);
    }

    static constexpr GLenum kInterruptores[] = {GL_DEPTH_TEST,     GL_LIGHTING,   GL_LIGHT0,       GL_LIGHT1,
                                                GL_COLOR_MATERIAL, GL_TEXTURE_2D, GL_LINE_STIPPLE, GL_BLEND};

    std::vector<int> m_Heredado;     ///< as the page's frame began
    std::vector<HGLRC> m_Contextos;  ///< current in each OnRender, and after OnPrint1
    HGLRC m_hRCUsado = nullptr;
    HDC m_hDCUsado = nullptr;
    HBITMAP m_hBitmapUsado = nullptr;
    CSize m_Imagen;
    std::vector<CSize> m_Intentos;  ///< sizes of the pictures that were tried
    DWORD m_nFlags = 0;
    int m_nFormatosQueFallan = 0;
    bool m_bPideContexto = false;

    using CGL::m_CabeceraImpresion;
    using CGL::m_hBitmapImpresion;
    using CGL::m_hDCMemoria;
    using CGL::m_hRCImpresion;
    using CGL::m_nAltoImpresora;
    using CGL::m_nAnchoImpresora;
};

/// A window with a scene that was drawn once.
class Impresion : public testing::Test {
  protected:
    void Abre(int ancho, int alto) {
        m_pVista = std::make_unique<VistaPrueba>(m_pEscena = new EscenaImpresa);
        ASSERT_TRUE(m_pVista->Abre(ancho, alto));
        Prepara(*m_pEscena);
        m_pEscena->m_Contextos.clear();
        m_pEscena->GetPasos().clear();
    }
    static void Prepara(EscenaPrueba& escena) {
        escena.SetEjes(0);
        ASSERT_EQ(escena.SetBkColor(), 1);
        ASSERT_EQ(escena.Render(), 1);
    }
    void Imprime(Hoja& hoja, bool bPrevia = false) {
        CPrintInfo info;
        info.m_bPreview = bPrevia;
        m_pVista->OnPrint(hoja.DC(), &info);
    }
    void SetUp() override { Abre(64, 48); }
    void TearDown() override { EXPECT_EQ(wglGetCurrentContext(), nullptr) << "a context was left current"; }

    std::unique_ptr<VistaPrueba> m_pVista;
    EscenaImpresa* m_pEscena = nullptr;
};

// The same frame on a picture of its own: what a printed one has to be like.
class Dibujado {
  public:
    Dibujado(int ancho, int alto) : m_Tela(ancho, alto) {
        EXPECT_TRUE(m_Escena.Monta(m_Tela, ancho, alto));
        m_Escena.SetEjes(0);
        EXPECT_EQ(m_Escena.SetBkColor(), 1);
        EXPECT_EQ(m_Escena.Render(), 1);
    }
    /// How many pixels of the page differ from it.
    int Difiere(const Hoja& hoja, const Zona& z) const {
        int n = 0;
        for (int y = 0; y < z.Alto(); ++y)
            for (int x = 0; x < z.Ancho(); ++x)
                n += m_Tela.Pixel(x, y) != hoja.Pixel(z.x0 + x, z.y0 + y);
        return n;
    }

  private:
    Tela m_Tela;
    EscenaPrueba m_Escena;
};

}  // namespace

TEST_F(Impresion, ThePageHasTheFrame) {
    Hoja hoja(64, 48);
    Imprime(hoja);
    const Zona todo{0, 0, 63, 47};
    EXPECT_EQ(Dibujado(64, 48).Difiere(hoja, todo), 0);
}

TEST_F(Impresion, ThePageHasTheWholeFrameInTheMiddle) {
    for (const CSize& ventana : {CSize(64, 48), CSize(48, 64), CSize(100, 30), CSize(60, 66)}) {
        Abre(ventana.cx, ventana.cy);
        for (const CSize& pagina : {CSize(400, 300), CSize(300, 400), CSize(400, 220)}) {
            const CSize sitio = SobrePagina(ventana, pagina);
            if (sitio.cx > pagina.cx || sitio.cy > pagina.cy) continue;
            Hoja hoja(pagina.cx, pagina.cy);
            Imprime(hoja);
            const Zona z = hoja.Impreso();
            const std::string caso = std::to_string(ventana.cx) + " x " + std::to_string(ventana.cy) + " on " +
                                     std::to_string(pagina.cx) + " x " + std::to_string(pagina.cy);
            EXPECT_NEAR(double(z.Ancho()) / z.Alto(), double(ventana.cx) / ventana.cy, 0.03) << caso;
            EXPECT_TRUE(z.Ancho() >= pagina.cx - 1 || z.Alto() >= pagina.cy - 1) << caso;
            EXPECT_NEAR(z.x0, pagina.cx - 1 - z.x1, 1) << caso;
            EXPECT_NEAR(z.y0, pagina.cy - 1 - z.y1, 1) << caso;
            // All but the borders of the triangle: the window's zoom is worked out in its own, coarser pixels.
            EXPECT_LE(Dibujado(z.Ancho(), z.Alto()).Difiere(hoja, z), 6 * std::max(z.Ancho(), z.Alto())) << caso;
        }
    }
}

TEST_F(Impresion, APageNarrowerThanTheWindowHasTheMiddleOfTheFrame) {
    Hoja hoja(400, 220);
    Imprime(hoja);
    EXPECT_EQ(m_pEscena->m_Imagen, CSize(293, 220));
    const Zona z = hoja.Impreso();
    EXPECT_EQ(z.Ancho(), 400);
    EXPECT_EQ(z.Alto(), 220) << "of the 300 that the width asks for";
}

TEST_F(Impresion, ThePictureIsAsLargeAsThePage) {
    Hoja hoja(400, 300);
    Imprime(hoja);
    EXPECT_EQ(m_pEscena->m_Imagen, CSize(400, 300));
    EXPECT_EQ(m_pEscena->m_nAnchoImpresora, 400);
    EXPECT_EQ(m_pEscena->m_nAltoImpresora, 300);
}

TEST_F(Impresion, APreviewIsAsLargeAsTheWindow) {
    Hoja hoja(400, 300);
    Imprime(hoja, true);
    EXPECT_EQ(m_pEscena->m_Imagen, CSize(64, 48));
    const Zona z = hoja.Impreso();
    EXPECT_EQ(z.Ancho(), 400);
    EXPECT_EQ(z.Alto(), 300);
}

TEST_F(Impresion, APictureOverTheLimitIsHalved) {
    m_pEscena->m_nFormatosQueFallan = 1000;  // to see what is tried, without drawing it
    CDataImpresion datos;
    datos.m_sFichero = L"sin empezar.pdf";
    datos.m_nResolucion = 700;
    CDC hoja;
    ASSERT_TRUE(hoja.CreatePrinterDC(datos));
    CPrintInfo info;
    m_pVista->OnPrint(&hoja, &info);
    ASSERT_FALSE(m_pEscena->m_Intentos.empty());
    EXPECT_EQ(m_pEscena->m_Intentos.front(), CSize(2893, 2170)) << "of 5787 x 4340";

    VistaPrueba grande;
    ASSERT_TRUE(grande.Abre(6000, 4000));
    m_pEscena->m_Intentos.clear();
    info.m_bPreview = TRUE;
    m_pEscena->OnPrint(&hoja, &info, &grande);
    ASSERT_FALSE(m_pEscena->m_Intentos.empty());
    EXPECT_EQ(m_pEscena->m_Intentos.front(), CSize(3000, 2000));
}

TEST_F(Impresion, TheBitmapHas24Bits) {
    Hoja hoja(400, 300);
    Imprime(hoja);
    const BITMAPINFOHEADER& h = m_pEscena->m_CabeceraImpresion;
    EXPECT_EQ(h.biSize, 40U);
    EXPECT_EQ(h.biPlanes, 1);
    EXPECT_EQ(h.biBitCount, 24);
    EXPECT_EQ(h.biCompression, BI_RGB);
    EXPECT_EQ(h.biSizeImage, 400U * 300U * 3U);
}

TEST_F(Impresion, ThePageBeginsWithWhatTheLastFrameLeft) {
    for (const bool encendido : {true, false}) {
        ASSERT_EQ(m_pEscena->MakeCurrent(nullptr), 1);
        for (const GLenum cual : EscenaImpresa::kInterruptores)
            encendido ? glEnable(cual) : glDisable(cual);
        glPolygonMode(GL_FRONT_AND_BACK, encendido ? GL_LINE : GL_FILL);
        const std::vector<int> antes = EscenaImpresa::LeeInterruptores();
        wglMakeCurrent(nullptr, nullptr);
        Hoja hoja(64, 48);
        Imprime(hoja);
        EXPECT_EQ(m_pEscena->m_Heredado, antes);
    }
}

TEST_F(Impresion, TheFrameIsDrawnOnceInAContextOfItsOwn) {
    const HGLRC principal = m_pEscena->m_hRC;
    Hoja hoja(80, 60);
    const RegistroGL registro;
    Imprime(hoja);
    ASSERT_EQ(m_pEscena->m_Contextos.size(), 3U);
    EXPECT_EQ(m_pEscena->m_Contextos[0], m_pEscena->m_hRCUsado);
    EXPECT_NE(m_pEscena->m_Contextos[0], principal);
    EXPECT_EQ(m_pEscena->m_Contextos[1], nullptr) << "after OnPrint1";
    EXPECT_EQ(m_pEscena->m_Contextos[2], nullptr) << "the second OnRender draws nowhere";
    EXPECT_EQ(m_pEscena->GetPasos(), (EscenaPrueba::Pasos{"OnRender", "OnRender"}));
    EXPECT_LLAMADAS(Solo(registro.Ejecutadas(), {"glViewport"}), {"glViewport(0, 0, 80, 60)"});
    EXPECT_EQ(m_pEscena->m_hRC, principal);
    EXPECT_EQ(m_pEscena->m_nFlags, 0x80000028U);
}

TEST_F(Impresion, WhoAsksForTheContextWhileDrawingGetsThePages) {
    m_pEscena->m_bPideContexto = true;
    auto* hijo = new EscenaImpresa;
    hijo->m_bPideContexto = true;
    m_pEscena->VinculoNuevo(hijo);
    m_pEscena->Iniciar();
    m_pEscena->m_Contextos.clear();
    hijo->m_Contextos.clear();
    const HGLRC principal = m_pEscena->m_hRC;
    Hoja hoja(64, 48);
    Imprime(hoja);
    EXPECT_EQ(m_pEscena->m_Contextos[0], m_pEscena->m_hRCUsado);
    EXPECT_EQ(hijo->m_Contextos, std::vector<HGLRC>{m_pEscena->m_hRCUsado});
    EXPECT_EQ(hijo->m_hRC, principal);
    EXPECT_EQ(hijo->m_pDC, m_pEscena->m_pDC);
    EXPECT_FALSE(hoja.Vacia());
}

TEST_F(Impresion, NothingOfThePageIsLeft) {
    Hoja hoja(80, 60);
    Imprime(hoja);
    EXPECT_NE(m_pEscena->m_hRCUsado, nullptr);
    EXPECT_TRUE(m_pEscena->NadaQueda());
    EXPECT_TRUE(m_pEscena->TodoBorrado());
    EXPECT_EQ(m_pEscena->Render(), 1);
}

TEST_F(Impresion, APageThatIsNeverLaidIsFreedWithTheNextOneOrTheScene) {
    Hoja hoja(80, 60);
    CPrintInfo info;
    m_pEscena->OnPrint1(hoja.DC(), &info, m_pVista.get());
    const auto [hRC, hDC, hBitmap] =
        std::tuple(m_pEscena->m_hRCUsado, m_pEscena->m_hDCUsado, m_pEscena->m_hBitmapUsado);
    ASSERT_NE(hRC, nullptr);
    m_pEscena->OnPrint1(hoja.DC(), &info, m_pVista.get());
    const auto [otroRC, otroDC, otroBitmap] =
        std::tuple(m_pEscena->m_hRCUsado, m_pEscena->m_hDCUsado, m_pEscena->m_hBitmapUsado);
    ASSERT_NE(otroRC, nullptr);
    EXPECT_FALSE(wglDeleteContext(hRC) || ::DeleteDC(hDC) || ::DeleteObject(hBitmap));
    m_pVista.reset();
    EXPECT_FALSE(wglDeleteContext(otroRC) || ::DeleteDC(otroDC) || ::DeleteObject(otroBitmap));
}

TEST_F(Impresion, AnularForgetsAPageWithoutFreeingIt) {
    Tela tela;
    EscenaImpresa escena;
    ASSERT_TRUE(escena.Monta(tela));
    Hoja hoja(80, 60);
    CPrintInfo info;
    escena.OnPrint1(hoja.DC(), &info, m_pVista.get());
    ASSERT_NE(escena.m_hRCUsado, nullptr);
    const HGLRC principal = escena.m_hRC;
    escena.Anular();
    EXPECT_EQ(escena.m_hRCImpresion, nullptr);
    EXPECT_EQ(escena.m_hDCMemoria, nullptr);
    EXPECT_EQ(escena.m_hBitmapImpresion, nullptr);
    EXPECT_TRUE(wglDeleteContext(escena.m_hRCUsado));
    EXPECT_TRUE(::DeleteDC(escena.m_hDCUsado));
    EXPECT_TRUE(::DeleteObject(escena.m_hBitmapUsado));
    EXPECT_TRUE(wglDeleteContext(principal));
}

TEST_F(Impresion, PagesCanFollowEachOther) {
    Hoja una(80, 60), otra(60, 80);
    Imprime(una);
    m_pEscena->GetCamara().PositionCamera({0, 1, 0.2}, {0, 0, 0.2}, {0, 0, -1});
    Imprime(otra);
    EXPECT_FALSE(una.Vacia());
    EXPECT_FALSE(otra.Vacia());
}

TEST_F(Impresion, TheSketchIsNotOnThePage) {
    Hoja sin(64, 48), con(64, 48);
    Imprime(sin);
    Vertiz::CDigiTab tabla;
    m_pEscena->SetDigiTab(&tabla);
    m_pEscena->InsertaPuntoLineaNueva(EscenaPrueba::Punto(10, 10, 0));
    m_pEscena->InsertaPuntoLineaNueva(EscenaPrueba::Punto(90, 90, 0));
    ASSERT_NE(m_pEscena->m_nListaLineaNueva, 0U);
    Imprime(con);
    for (int y = 0; y < 48; ++y)
        for (int x = 0; x < 64; ++x)
            ASSERT_EQ(sin.Pixel(x, y), con.Pixel(x, y)) << x << ", " << y;
}

TEST_F(Impresion, TheContextThatTheHostHadIsCurrentAgain) {
    const Lienzo lienzo(16, 16);
    ASSERT_TRUE(lienzo.Actual());
    const HDC hdc = wglGetCurrentDC();
    Hoja hoja(80, 60);
    Imprime(hoja);
    EXPECT_FALSE(hoja.Vacia());
    EXPECT_EQ(wglGetCurrentContext(), lienzo.Contexto());
    EXPECT_EQ(wglGetCurrentDC(), hdc);
    m_pEscena->m_nFormatosQueFallan = 1000;
    Imprime(hoja);
    EXPECT_EQ(wglGetCurrentContext(), lienzo.Contexto()) << "after a failure too";
    EXPECT_EQ(m_pEscena->m_Contextos.back(), nullptr) << "nothing is drawn in it";
    Lienzo::Suelta();
}

TEST_F(Impresion, ADriverThatDrawsNothingSoLargeGivesACoarserPage) {
    m_pEscena->m_nFormatosQueFallan = 2;
    Hoja hoja(400, 300);
    Imprime(hoja);
    EXPECT_EQ(m_pEscena->m_Imagen, CSize(100, 75));
    const Zona z = hoja.Impreso();
    EXPECT_EQ(z.Ancho(), 400);
    EXPECT_EQ(z.Alto(), 300);
    EXPECT_TRUE(m_pEscena->NadaQueda());
}

TEST_F(Impresion, ADriverThatDrawsNothingLeavesThePageEmpty) {
    m_pEscena->m_nFormatosQueFallan = 1000;
    Hoja hoja(400, 300);
    Imprime(hoja);
    EXPECT_TRUE(hoja.Vacia());
    EXPECT_EQ(m_pEscena->m_hRCUsado, nullptr);
    EXPECT_TRUE(m_pEscena->NadaQueda());
    EXPECT_EQ(m_pEscena->Render(), 1) << "the window is as before";
}

TEST_F(Impresion, AnErrorWhileDrawingLeavesThePageEmpty) {
    const HGLRC principal = m_pEscena->m_hRC;
    for (const char* llamada : {"glViewport", "glLoadMatrixd", "glCallList"}) {
        Hoja hoja(64, 48);
        {
            const FallaGL falla(llamada, 1);
            Imprime(hoja);
            EXPECT_TRUE(falla.Ocurrida()) << llamada;
        }
        EXPECT_TRUE(hoja.Vacia()) << llamada;
        EXPECT_EQ(m_pEscena->m_hRCUsado, nullptr) << llamada;
        EXPECT_TRUE(m_pEscena->NadaQueda()) << llamada;
        EXPECT_EQ(wglGetCurrentContext(), nullptr) << llamada;
        EXPECT_EQ(m_pEscena->m_hRC, principal) << llamada;
        EXPECT_EQ(m_pEscena->Render(), 1) << llamada;
    }
}

TEST_F(Impresion, ASceneThatFailsToDrawLeavesThePageEmpty) {
    m_pEscena->m_sFalla = "OnRender";
    Hoja hoja(64, 48);
    Imprime(hoja);
    EXPECT_TRUE(hoja.Vacia());
    EXPECT_TRUE(m_pEscena->NadaQueda());
}

TEST_F(Impresion, ThereMayBeNoPageNoWindowAndNoContext) {
    CPrintInfo info;
    m_pVista->OnPrint(nullptr, &info);
    EXPECT_TRUE(m_pEscena->NadaQueda());
    Hoja hoja(64, 48);
    m_pEscena->OnPrint(hoja.DC(), &info, nullptr);
    EXPECT_TRUE(hoja.Vacia());
    VistaPrueba sinVentana;
    m_pEscena->OnPrint(hoja.DC(), &info, &sinVentana);
    EXPECT_TRUE(hoja.Vacia());
    m_pEscena->OnPrint(hoja.DC(), nullptr, m_pVista.get());
    EXPECT_FALSE(hoja.Vacia());

    Hoja otra(64, 48);
    EscenaImpresa sinContexto;
    sinContexto.OnPrint(otra.DC(), &info, m_pVista.get());
    EXPECT_TRUE(otra.Vacia());
    EXPECT_TRUE(sinContexto.NadaQueda());
}

TEST_F(Impresion, AFormatThatNobodyHasFallsBackOnTheFirst) {
    EXPECT_FALSE(m_pEscena->SetDCPixelFormat(nullptr, 0x28)) << "no device context";
    CDC sinBitmap;
    ASSERT_TRUE(sinBitmap.CreateCompatibleDC(nullptr));
    EXPECT_FALSE(m_pEscena->SetDCPixelFormat(sinBitmap, 0x28));
    Tela tela;
    const PIXELFORMATDESCRIPTOR estereo = DescriptorPagina(0x28 | PFD_STEREO);
    ASSERT_EQ(ChoosePixelFormat(*tela.DC(), &estereo), 0);
    EXPECT_TRUE(m_pEscena->SetDCPixelFormat(*tela.DC(), estereo.dwFlags));
    EXPECT_EQ(GetPixelFormat(*tela.DC()), 1);
}

TEST_F(Impresion, AFileOfPagesHasTheWholeFrameAtThePrintersResolution) {
    const CarpetaTemporal carpeta;
    const auto pdf = carpeta.Ruta() / "página.pdf";
    m_pVista->m_Impresion.m_sFichero = CString(pdf.c_str());
    m_pVista->m_Impresion.m_nResolucion = 72;
    ASSERT_TRUE(m_pVista->OnFilePrint());
    EXPECT_EQ(m_pEscena->m_Imagen, CSize(595, 446)) << "the width of an upright page, in the window's shape";
    EXPECT_TRUE(m_pEscena->NadaQueda());

    const auto png = carpeta.Ruta() / "página";
    const std::string orden = "pdftoppm -r 72 -png -singlefile '" + pdf.string() + "' '" + png.string() + "' 2>&1";
    if (std::system(orden.c_str()) != 0) GTEST_SKIP() << "pdftoppm isn't there: the page was written and not looked at";
    const Imagen pagina = LeePng(png.string() + ".png");
    ASSERT_NEAR(pagina.ancho, 595, 1);
    ASSERT_NEAR(pagina.alto, 842, 1);
    const std::array<std::uint8_t, 3> blanco{255, 255, 255}, fondo{0xE0, 0xF1, 0xFE}, verde{0, 255, 0};
    int arriba = pagina.alto, abajo = -1;
    for (int y = 0; y < pagina.alto; ++y)
        if (pagina.Pixel(5, y) != blanco) {
            arriba = std::min(arriba, y);
            abajo = std::max(abajo, y);
        }
    EXPECT_NEAR(abajo - arriba + 1, 446, 2);
    EXPECT_NEAR(arriba, pagina.alto - 1 - abajo, 2) << "in the middle";
    EXPECT_EQ(pagina.Pixel(5, (arriba + abajo) / 2), fondo);
    // The triangle's right angle is below, on the left.
    EXPECT_EQ(pagina.Pixel(200, abajo - 60), verde);
    EXPECT_EQ(pagina.Pixel(400, arriba + 60), fondo);
}
