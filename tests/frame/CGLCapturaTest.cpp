// Palettes of displays with few colours, and the copy of the picture.

#include "VistaPrueba.h"
#include "support/RegistroGL.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <memory>
#include <span>
#include <vector>

namespace {

using Entradas = std::array<PALETTEENTRY, 256>;

unsigned Color(const PALETTEENTRY& e) {
    return static_cast<unsigned>(e.peRed << 16 | e.peGreen << 8 | e.peBlue);
}

std::vector<unsigned> Colores(const Entradas& entradas) {
    std::vector<unsigned> colores;
    std::ranges::transform(entradas, std::back_inserter(colores), Color);
    return colores;
}

// Shows what the frame keeps for palettes.
class ConTablas : public EscenaPrueba {
  public:
    using EscenaPrueba::operator=;
    using CGL::CreaPaleta;
    using CGL::LlenaPaleta;
    using CGL::m_defaultOverride;
    using CGL::m_defaultPalEntry;
    using CGL::m_oneto8;
    using CGL::m_pDC;
    using CGL::m_pPaletaAnterior;
    using CGL::m_threeto8;
    using CGL::m_twoto8;
    using CGL::NecesitaPaleta;

    // A format of 3 bits of red, 3 of green, 2 of blue.
    static PIXELFORMATDESCRIPTOR Formato332() {
        PIXELFORMATDESCRIPTOR d{};
        d.cColorBits = 8;
        d.cRedBits = d.cGreenBits = 3;
        d.cBlueBits = 2;
        d.cGreenShift = 3;
        d.cBlueShift = 6;
        return d;
    }
    static Entradas De(const PIXELFORMATDESCRIPTOR& d) {
        Entradas e{};
        LlenaPaleta(d, e.data());
        return e;
    }
    static Entradas De332() { return De(Formato332()); }
    Entradas DeLaPaleta() {
        Entradas e{};
        EXPECT_EQ(GetPalette()->GetEntryCount(), 256);
        GetPalette()->GetPaletteEntries(0, 256, e.data());
        return e;
    }

    // Half of the entries of a palette of indices.
    int OnCreatePaletteCI(LOGPALETTE* registro) override {
        m_nVersion = registro->palVersion;
        m_nEntradas = registro->palNumEntries;
        const std::span<PALETTEENTRY> entradas(registro->palPalEntry, registro->palNumEntries);
        m_bEnBlanco = std::ranges::all_of(entradas, [](const auto& e) { return Color(e) == 0 && e.peFlags == 0; });
        for (BYTE i = 0; i < 128; ++i)
            entradas[i] = {i, 2, 3, 4};
        return 1;
    }

    int m_nVersion = 0, m_nEntradas = 0;
    bool m_bEnBlanco = false;
};

// Colour of a pixel of a capture; rows take multiples of 4 bytes.
unsigned Pixel(const std::vector<char>& captura, int ancho, int x, int y) {
    const auto* p = reinterpret_cast<const unsigned char*>(captura.data()) + y * ((ancho * 3 + 3) / 4 * 4) + x * 3;
    return static_cast<unsigned>(p[2] << 16 | p[1] << 8 | p[0]);
}

unsigned Pixel(const CBitmap& bitmap, int x, int y) {
    BITMAP datos{};
    bitmap.GetBitmap(&datos);
    const auto* p =
        static_cast<const unsigned char*>(datos.bmBits) + y * datos.bmWidthBytes + x * datos.bmBitsPixel / 8;
    return static_cast<unsigned>(p[2] << 16 | p[1] << 8 | p[0]);
}

}  // namespace

TEST(CGLPaleta, AChannelIsSpreadOverAByte) {
    EscenaPrueba escena;
    EXPECT_EQ(escena.ComponentFromIndex(1, 1, 0), 255);
    EXPECT_EQ(escena.ComponentFromIndex(2, 1, 0), 0);
    EXPECT_EQ(escena.ComponentFromIndex(0b10'0000, 2, 4), 0xAA);
    EXPECT_EQ(escena.ComponentFromIndex(0b101'000, 3, 3), 0xB6);
    EXPECT_EQ(escena.ComponentFromIndex(0xFF, 4, 0), 0);
    EXPECT_EQ(escena.ComponentFromIndex(0xFF, 0, 0), 0);
}

TEST(CGLPaleta, TheTablesAreThoseOfTheSystem) {
    using T = ConTablas;
    EXPECT_THAT(T::m_oneto8, testing::ElementsAre(0, 255));
    EXPECT_THAT(T::m_twoto8, testing::ElementsAre(0, 0x55, 0xAA, 0xFF));
    EXPECT_THAT(T::m_threeto8, testing::ElementsAre(0, 0x24, 0x49, 0x6D, 0x92, 0xB6, 0xDB, 0xFF));
    EXPECT_THAT(T::m_defaultOverride, testing::ElementsAre(0, 3, 24, 27, 64, 67, 88, 173, 181, 236, 247, 164, 91));
    const unsigned colores[] = {0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080, 0x008080,
                                0xC0C0C0, 0xC0DCC0, 0xA6CAF0, 0xFFFBF0, 0xA0A0A4, 0x808080, 0xFF0000,
                                0x00FF00, 0xFFFF00, 0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF};
    ASSERT_EQ(std::size(T::m_defaultPalEntry), std::size(colores));
    for (std::size_t i = 0; i < std::size(colores); ++i)
        EXPECT_EQ(Color(T::m_defaultPalEntry[i]), colores[i]) << i;
}

TEST(CGLPaleta, ShiftsBeyondTheNumberGiveNothing) {
    EXPECT_EQ(EscenaPrueba::ComponentFromIndex(-1, 3, 40), 0);
}

TEST(CGLPaleta, OnlyFormatsOfFewColoursNeedOne) {
    PIXELFORMATDESCRIPTOR d{};
    d.iPixelType = PFD_TYPE_RGBA;
    d.cColorBits = 16;
    EXPECT_FALSE(ConTablas::NecesitaPaleta(d, false));
    EXPECT_FALSE(ConTablas::NecesitaPaleta(d, true));
    d.cColorBits = 8;
    EXPECT_FALSE(ConTablas::NecesitaPaleta(d, false));
    EXPECT_TRUE(ConTablas::NecesitaPaleta(d, true)) << "a bitmap's device context";
    d.dwFlags = PFD_NEED_PALETTE;
    EXPECT_TRUE(ConTablas::NecesitaPaleta(d, false));
    d.dwFlags = 0;
    d.iPixelType = PFD_TYPE_COLORINDEX;
    d.cColorBits = 24;
    EXPECT_TRUE(ConTablas::NecesitaPaleta(d, false));
}

TEST(CGLPaleta, ThePlacesOfTheSystemsColoursKeepThem) {
    const Entradas e = ConTablas::De332();
    EXPECT_EQ(Color(e[0]), 0x000000U);
    EXPECT_EQ(Color(e[7]), 0xFF0000U) << "red alone";
    EXPECT_EQ(Color(e[2]), 0x490000U);
    EXPECT_EQ(Color(e[0b100'000]), 0x009200U);
    EXPECT_EQ(Color(e[0b1000'0000]), 0x0000AAU);
    EXPECT_EQ(Color(e[255]), 0xFFFFFFU);
    for (int i = 1; i <= 12; ++i)
        EXPECT_EQ(Color(e[static_cast<std::size_t>(ConTablas::m_defaultOverride[i])]),
                  Color(ConTablas::m_defaultPalEntry[i]))
            << i;
    for (const PALETTEENTRY& entrada : e)
        EXPECT_EQ(entrada.peFlags, 0);
}

TEST(CGLPaleta, OtherFormatsHaveNoPlacesForThem) {
    const auto esPropio = [](auto cambia) {
        PIXELFORMATDESCRIPTOR d = ConTablas::Formato332();
        cambia(d);
        return Color(ConTablas::De(d)[164]) == 0xA0A0A4U;
    };
    using D = PIXELFORMATDESCRIPTOR;
    EXPECT_TRUE(esPropio([](D&) {}));
    EXPECT_FALSE(esPropio([](D& d) { d.cColorBits = 9; }));
    EXPECT_FALSE(esPropio([](D& d) { d.cRedBits = 2; }));
    EXPECT_FALSE(esPropio([](D& d) { d.cRedShift = 1; }));
    EXPECT_FALSE(esPropio([](D& d) { d.cGreenBits = 2; }));
    EXPECT_FALSE(esPropio([](D& d) { d.cGreenShift = 2; }));
    EXPECT_FALSE(esPropio([](D& d) { d.cBlueBits = 3; }));
    EXPECT_FALSE(esPropio([](D& d) { d.cBlueShift = 5; }));
}

TEST(CGLPaleta, AFormatOfFourBitsFillsSixteenEntries) {
    PIXELFORMATDESCRIPTOR d{};
    d.cColorBits = 4;
    d.cRedBits = d.cGreenBits = d.cBlueBits = 1;
    d.cGreenShift = 1;
    d.cBlueShift = 2;
    Entradas e{};
    ConTablas::LlenaPaleta(d, e.data());
    EXPECT_EQ(Color(e[5]), 0xFF00FFU);
    EXPECT_EQ(Color(e[15]), 0xFFFFFFU);
    EXPECT_EQ(Color(e[16]), 0U);
}

TEST(CGLPaleta, AWindowsPaletteIsSelectedAndTheFormerOneKept) {
    auto* escena = new ConTablas;
    VistaPrueba vista(escena);
    ASSERT_TRUE(vista.Abre());
    const LOGPALETTE una{0x300, 1, {{1, 2, 3, 0}}};
    CPalette previa, otra;
    previa.CreatePalette(&una);
    otra.CreatePalette(&una);
    ASSERT_NE(escena->m_pDC->SelectPalette(&previa, FALSE), nullptr);
    PIXELFORMATDESCRIPTOR d = ConTablas::Formato332();
    d.dwFlags = PFD_NEED_PALETTE;
    ASSERT_EQ(escena->CreaPaleta(d), 1);
    EXPECT_EQ(Colores(escena->DeLaPaleta()), Colores(ConTablas::De332()));
    EXPECT_EQ(escena->m_pPaletaAnterior, &previa);
    EXPECT_EQ(escena->m_pDC->SelectPalette(escena->GetPalette(), FALSE), escena->GetPalette());
    EXPECT_EQ(escena->Render(), 1);

    // It is selected whenever the context is taken, which fails where it can't be.
    escena->m_pDC->SelectPalette(&otra, FALSE);
    ASSERT_EQ(escena->MakeCurrent(nullptr), 1);
    wglMakeCurrent(nullptr, nullptr);
    EXPECT_EQ(escena->m_pDC->SelectPalette(&previa, FALSE), escena->GetPalette());
    escena->GetPalette()->DeleteObject();
    EXPECT_EQ(escena->MakeCurrent(nullptr), 0);
    ASSERT_EQ(escena->CreaPaleta(d), 1);
    EXPECT_EQ(escena->m_pPaletaAnterior, &previa);

    // The device context gets its palette back at the end: here it outlives the scene, to be asked.
    const std::unique_ptr<CDC> dc(escena->m_pDC);
    escena->m_bDCExterno = 1;
    escena->Destruir();
    EXPECT_EQ(escena->GetPalette(), nullptr);
    EXPECT_EQ(escena->m_pPaletaAnterior, nullptr);
    EXPECT_EQ(dc->SelectPalette(&otra, FALSE), &previa);
}

TEST(CGLPaleta, ABorrowedDeviceContextKeepsItsOwn) {
    Tela tela;
    ConTablas escena;
    ASSERT_EQ(escena.CreaEn(tela), 1);
    const LOGPALETTE una{0x300, 1, {{1, 2, 3, 0}}};
    CPalette previa;
    previa.CreatePalette(&una);
    tela.DC()->SelectPalette(&previa, FALSE);
    ASSERT_EQ(escena.CreaPaleta(ConTablas::Formato332()), 1);
    EXPECT_EQ(Colores(escena.DeLaPaleta()), Colores(ConTablas::De332()));
    EXPECT_EQ(escena.m_pPaletaAnterior, nullptr);
    ASSERT_EQ(escena.MakeCurrent(nullptr), 1);
    wglMakeCurrent(nullptr, nullptr);
    EXPECT_EQ(tela.DC()->SelectPalette(&previa, FALSE), &previa);
}

TEST(CGLPaleta, APaletteOfIndicesIsFilledByTheScene) {
    Tela tela;
    ConTablas escena;
    ASSERT_EQ(escena.CreaEn(tela), 1);
    ASSERT_EQ(escena.CreaPaleta(ConTablas::Formato332()), 1);
    PIXELFORMATDESCRIPTOR d = ConTablas::Formato332();
    d.iPixelType = PFD_TYPE_COLORINDEX;
    ASSERT_EQ(escena.CreaPaleta(d), 1);
    EXPECT_EQ(escena.m_nVersion, 0x0A00);
    EXPECT_EQ(escena.m_nEntradas, 256);
    EXPECT_TRUE(escena.m_bEnBlanco);
    const Entradas e = escena.DeLaPaleta();
    EXPECT_EQ(Color(e[127]), 0x7F0203U);
    EXPECT_EQ(e[127].peFlags, 4);
    EXPECT_EQ(Color(e[128]), 0U);
}

TEST(CGLPaleta, AFormatThatNeedsNoneLeavesNone) {
    PIXELFORMATDESCRIPTOR d{};
    d.cColorBits = 16;
    ConTablas escena;
    EXPECT_EQ(escena.CreaPaleta(d), 0);
    EXPECT_EQ(escena.GetPalette(), nullptr);
}

TEST_F(ConEscena, ATrueColourDisplayNeedsNoPalette) {
    EXPECT_EQ(m_Escena.CreatePalette(), 0);
    EXPECT_EQ(m_Escena.GetPalette(), nullptr);
}

TEST(CGLPaleta, ASceneWithoutADeviceContextGetsNone) {
    EscenaPrueba escena;
    EXPECT_EQ(escena.CreatePalette(), 0);
}

TEST(CGLPaleta, AChildWhoseParentIsGoneAsksItsDeviceContextNoMore) {
    auto pVista = std::make_unique<VistaPrueba>(new EscenaPrueba);
    ASSERT_TRUE(pVista->Abre(20, 10));
    EscenaPrueba hija(L"hija");
    pVista->Escena().ReferenciaNuevo(&hija);
    ASSERT_EQ(pVista->Escena().BorraReferencia(L"hija"), &hija);
    pVista.reset();  // with the scene, and the window's device context that it had lent
    Tela tela;
    hija.m_pDC = tela.DC();  // one that may be asked: it shows whether it was
    EXPECT_EQ(hija.CreatePalette(), 0);
    CBitmap bitmap;
    BITMAPINFO info{};
    EXPECT_EQ(hija.CreateCompatibleBitmap(bitmap, info, CSize(8, 8)), 0);
}

TEST_F(ConEscena, ThePictureIsReadFromItsLowerLeftCorner) {
    m_Escena.SetEjes(0);
    ASSERT_EQ(m_Escena.Render(), 1);
    std::array<char, 64 * 48 * 3> buffer{};
    EXPECT_EQ(m_Escena.CapturaImagen(CSize(64, 48), buffer.data()), 0);
    const char* pixel = buffer.data() + (15 * 64 + 25) * 3;
    EXPECT_EQ(pixel[0], 0);
    EXPECT_EQ(static_cast<unsigned char>(pixel[1]), 255);
    EXPECT_EQ(pixel[2], 0);
}

TEST_F(ConEscena, CaptureTellsWhyItFailed) {
    char buffer[3];
    EscenaPrueba sinContexto;
    EXPECT_EQ(sinContexto.CapturaImagen(CSize(1, 1), buffer), 3);
    const FallaGL falla("glReadPixels", 1);
    EXPECT_EQ(m_Escena.CapturaImagen(CSize(1, 1), buffer), 4);
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(ConEscena, RowsOfACaptureTakeMultiplesOfFourBytes) {
    m_Escena.SetEjes(0);
    ASSERT_EQ(m_Escena.SetBkColor(), 1);
    ASSERT_EQ(m_Escena.Render(), 1);
    for (const int ancho : {61, 62, 63, 64}) {
        std::vector<char> buffer(static_cast<std::size_t>((ancho * 3 + 3) / 4 * 4 * 48));
        ASSERT_EQ(m_Escena.CapturaImagen(CSize(ancho, 48), buffer.data()), 0);
        for (int y = 0; y < 48; ++y)
            for (int x = 0; x < ancho; ++x)
                ASSERT_EQ(Pixel(buffer, ancho, x, y), m_Tela.Pixel(x, y)) << ancho << ": " << x << ", " << y;
    }
}

TEST_F(ConEscena, WhatIsDrawnAndNotPresentedIsNotCaptured) {
    PIXELFORMATDESCRIPTOR d{};
    DescribePixelFormat(*m_Tela.DC(), GetPixelFormat(*m_Tela.DC()), sizeof d, &d);
    if (!(d.dwFlags & PFD_DOUBLEBUFFER)) GTEST_SKIP() << "one store is both front and back here";
    m_Escena.SetEjes(0);
    ASSERT_EQ(m_Escena.Render(), 1);
    ASSERT_EQ(m_Escena.MakeCurrent(nullptr), 1);
    glClearColor(1.0F, 0.0F, 1.0F, 0.0F);
    glClear(GL_COLOR_BUFFER_BIT);
    std::vector<char> buffer(64 * 48 * 3);
    ASSERT_EQ(m_Escena.CapturaImagen(CSize(64, 48), buffer.data()), 0);
    EXPECT_EQ(Pixel(buffer, 64, 25, 15), 0x00FF00U);
}

TEST_F(ConEscena, TheBufferThatWasReadBeforeIsReadAgain) {
    std::vector<char> buffer(64 * 48 * 3);
    const auto actual = [this] {
        GLint bufer = 0;
        EXPECT_EQ(m_Escena.MakeCurrent(nullptr), 1);
        glGetIntegerv(GL_READ_BUFFER, &bufer);
        wglMakeCurrent(nullptr, nullptr);
        return bufer;
    };
    const GLint antes = actual();
    EXPECT_EQ(m_Escena.CapturaImagen(CSize(64, 48), buffer.data()), 0);
    EXPECT_EQ(actual(), antes);
    {
        const FallaGL falla("glReadPixels", 1);
        EXPECT_EQ(m_Escena.CapturaImagen(CSize(64, 48), buffer.data()), 4);
    }
    EXPECT_EQ(actual(), antes);
}

TEST_F(ConEscena, NonsenseIsAFailedRead) {
    char buffer[16] = {};
    EXPECT_EQ(m_Escena.CapturaImagen(CSize(-1, 4), buffer), 4);
    EXPECT_EQ(m_Escena.CapturaImagen(CSize(2, 2), nullptr), 4);
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(ConEscena, ACompatibleBitmapHasTheDisplaysDepthAndAHeaderOf24Bits) {
    CBitmap bitmap;
    BITMAPINFO info;
    std::memset(&info, 0xAB, sizeof info);
    ASSERT_EQ(m_Escena.CreateCompatibleBitmap(bitmap, info, CSize(33, 20)), 1);
    BITMAP datos{};
    ASSERT_NE(bitmap.GetBitmap(&datos), 0);
    EXPECT_EQ(datos.bmWidth, 33);
    EXPECT_EQ(datos.bmHeight, 20);
    EXPECT_EQ(datos.bmBitsPixel, 24) << "that of the bitmap that the scene draws on";
    EXPECT_EQ(info.bmiHeader.biSize, 40U);
    EXPECT_EQ(info.bmiHeader.biWidth, 33);
    EXPECT_EQ(info.bmiHeader.biHeight, 20);
    EXPECT_EQ(info.bmiHeader.biPlanes, 1);
    EXPECT_EQ(info.bmiHeader.biBitCount, 24);
    EXPECT_EQ(info.bmiHeader.biCompression, BI_RGB);
    EXPECT_EQ(info.bmiHeader.biClrUsed, 0U);
}

TEST_F(ConEscena, ABitmapThatCannotBeIsRefused) {
    BITMAPINFO info{};
    CBitmap bitmap;
    EXPECT_EQ(m_Escena.CreateCompatibleBitmap(bitmap, info, CSize(0, 20)), 0);
    EXPECT_EQ(bitmap.GetSafeHandle(), nullptr);
    ASSERT_EQ(m_Escena.CreateCompatibleBitmap(bitmap, info, CSize(4, 4)), 1);
    const HBITMAP antes = bitmap;
    EXPECT_EQ(m_Escena.CreateCompatibleBitmap(bitmap, info, CSize(8, 8)), 0) << "it has one already";
    EXPECT_EQ(bitmap.GetSafeHandle(), antes);
    EscenaPrueba sinContexto;
    CBitmap otro;
    EXPECT_EQ(sinContexto.CreateCompatibleBitmap(otro, info, CSize(8, 8)), 0);
}

TEST_F(ConEscena, ACaptureGoesIntoABitmapFromItsSecondRowOn) {
    m_Escena.SetEjes(0);
    ASSERT_EQ(m_Escena.SetBkColor(), 1);
    ASSERT_EQ(m_Escena.Render(), 1);
    CBitmap bitmap;
    BITMAPINFO info{};
    const CSize tamano(62, 48);
    ASSERT_EQ(m_Escena.CreateCompatibleBitmap(bitmap, info, tamano), 1);
    std::vector<char> buffer(188 * 48);
    ASSERT_EQ(m_Escena.CapturaImagen(tamano, buffer.data(), bitmap, &info), 0);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    for (int x = 0; x < 62; ++x) {
        ASSERT_EQ(Pixel(bitmap, x, 0), 0U) << "nothing is written there";
        for (int y = 1; y < 48; ++y)
            ASSERT_EQ(Pixel(bitmap, x, y), m_Tela.Pixel(x, y - 1)) << x << ", " << y;
    }
}

TEST_F(ConEscena, ACaptureThatCannotBeCopiedFailsAsAReadThatFailed) {
    CBitmap bitmap;
    BITMAPINFO info{};
    ASSERT_EQ(m_Escena.CreateCompatibleBitmap(bitmap, info, CSize(64, 48)), 1);
    std::vector<char> buffer(64 * 48 * 3);
    EXPECT_EQ(m_Escena.CapturaImagen(CSize(64, 48), buffer.data(), nullptr, &info), 4);
    EscenaPrueba sinContexto;
    EXPECT_EQ(sinContexto.CapturaImagen(CSize(64, 48), buffer.data(), bitmap, &info), 3);
    // A bitmap of one row has no second one.
    CBitmap fila;
    ASSERT_EQ(m_Escena.CreateCompatibleBitmap(fila, info, CSize(64, 1)), 1);
    EXPECT_EQ(m_Escena.CapturaImagen(CSize(64, 1), buffer.data(), fila, &info), 4);
}
