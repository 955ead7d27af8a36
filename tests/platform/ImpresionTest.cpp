// Printing to a file and on the screen: order of calls, size of pages, the picture on them, and what is left of
// failures. What is in a PDF file is asked of the programs of poppler-utils.

#include "platform/CBitmap.h"
#include "platform/CView.h"
#include "platform/Conversiones.h"
#include "platform/CopiasDIB.h"
#include "platform/DiagnosticoGL.h"
#include "platform/Errores.h"
#include "support/DiscoLleno.h"
#include "support/Imagen.h"
#include "support/Temporales.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>

namespace {

// What a program says; empty when it isn't there or fails.
std::string Salida(const std::string& orden) {
    const std::unique_ptr<FILE, int (*)(FILE*)> tubo(popen((orden + " 2>/dev/null").c_str(), "r"), pclose);
    std::string texto;
    char trozo[256];
    while (tubo && std::fgets(trozo, sizeof trozo, tubo.get()))
        texto += trozo;
    return texto;
}

#define SALTA_SIN_POPPLER() \
    if (Salida("command -v pdfinfo").empty()) GTEST_SKIP() << "poppler-utils isn't installed"

CString Nombre(const std::filesystem::path& ruta) {
    return DeUtf8(ruta.string()).c_str();
}

std::string Entrecomilla(const std::filesystem::path& ruta) {
    std::string orden = "'";
    orden += ruta.string();
    return orden += '\'';
}

// A picture of stripes that tells its corners: red at the upper left, green at the upper right, blue at the lower left.
class Dibujo {
  public:
    Dibujo(int ancho, int alto)
        : m_Bytes(static_cast<std::size_t>(BytesDeFila(ancho, 24)) * static_cast<std::size_t>(alto), 90) {
        m_Info.bmiHeader = {40, ancho, alto, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
        for (int y = 0; y < alto; ++y)
            for (int x = 0; x < ancho; ++x) {
                BYTE* p = m_Bytes.data() +
                          static_cast<std::size_t>(y) * static_cast<std::size_t>(BytesDeFila(ancho, 24)) +
                          static_cast<std::size_t>(x) * 3;
                const bool izquierda = x < ancho / 4, derecha = x >= ancho - ancho / 4, arriba = y >= alto / 2;
                if (arriba && (izquierda || derecha)) p[0] = p[1] = p[2] = 0;
                if (arriba && izquierda) p[2] = 255;
                if (arriba && derecha) p[1] = 255;
                if (!arriba && izquierda) p[0] = 255, p[1] = p[2] = 0;
            }
    }
    // Over all of the page.
    int Pon(CDC* dc) const {
        return StretchDIBits(*dc, 0, 0, dc->GetDeviceCaps(HORZRES), dc->GetDeviceCaps(VERTRES), 0, 0,
                             m_Info.bmiHeader.biWidth, m_Info.bmiHeader.biHeight, m_Bytes.data(), &m_Info,
                             DIB_RGB_COLORS, SRCCOPY);
    }

  private:
    BITMAPINFO m_Info{};
    std::vector<BYTE> m_Bytes;
};

class Vista : public CView {
  public:
    std::string m_Sucesos;
    std::function<BOOL(CPrintInfo*)> m_Prepara;
    std::function<void(CDC*, CPrintInfo*)> m_Pinta;
    std::vector<std::unique_ptr<CBitmap>> m_Hojas;
    CString m_sImpresora;

    BOOL DoPreparePrinting(CPrintInfo* info) override {
        const BOOL hecho = CView::DoPreparePrinting(info);
        m_sImpresora = info->m_Datos.m_sImpresora;
        return hecho;
    }

  protected:
    void OnDraw(CDC*) override { m_Sucesos += "draw "; }
    BOOL OnPreparePrinting(CPrintInfo* info) override {
        m_Sucesos += info->m_bPreview ? "preview " : info->m_bDirect ? "direct " : "prepare ";
        if (m_Prepara && !m_Prepara(info)) return FALSE;
        return CView::OnPreparePrinting(info);
    }
    void OnBeginPrinting(CDC*, CPrintInfo*) override { m_Sucesos += "begin "; }
    void OnPrint(CDC* dc, CPrintInfo* info) override {
        m_Sucesos += "page" + std::to_string(info->m_nCurPage) + " ";
        if (m_Pinta)
            m_Pinta(dc, info);
        else
            CView::OnPrint(dc, info);
    }
    void OnEndPrinting(CDC*, CPrintInfo*) override { m_Sucesos += "end "; }
    void OnVistaPrevia(CBitmap& hoja, CPrintInfo*) override {
        m_Sucesos += "seen ";
        m_Hojas.push_back(std::make_unique<CBitmap>());
        m_Hojas.back()->Attach(hoja.Detach());
    }
};

class Impresion : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(m_Vista.Create(nullptr, L"", 0, CRect(0, 0, 50, 40))) << UltimoFalloGL();
        m_Vista.m_Impresion.m_sFichero = Nombre(m_Pdf);
    }
    std::string Contenido() const {
        std::ifstream f(m_Pdf, std::ios::binary);
        std::stringstream s;
        s << f.rdbuf();
        return s.str();
    }

    CarpetaTemporal m_Carpeta;
    std::filesystem::path m_Pdf = m_Carpeta / "página 1.pdf";
    Vista m_Vista;
};

TEST_F(Impresion, GoesThroughItsHandlersInOrder) {
    EXPECT_TRUE(m_Vista.OnFilePrint()) << UltimoFalloGL();
    EXPECT_EQ(m_Vista.m_Sucesos, "prepare begin page1 draw end ");
    EXPECT_EQ(Contenido().substr(0, 5), "%PDF-");
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 1u);
    m_Vista.m_Sucesos.clear();
    EXPECT_TRUE(m_Vista.OnFilePrintDirect());
    EXPECT_EQ(m_Vista.m_Sucesos, "direct begin page1 draw end ");
}

TEST_F(Impresion, CommandsDoTheSame) {
    for (UINT orden : {ID_FILE_PRINT, ID_FILE_PRINT_DIRECT, ID_FILE_PRINT_PREVIEW})
        EXPECT_EQ(m_Vista.SendMessage(WM_COMMAND, orden), TRUE);
    EXPECT_EQ(m_Vista.m_Sucesos,
              "prepare begin page1 draw end direct begin page1 draw end preview begin page1 draw seen end ");
}

TEST_F(Impresion, APageMeasuresAsItsPaper) {
    struct Caso {
        double ancho, alto;
        BOOL apaisada;
        int resolucion, pixelesX, pixelesY;
        const char* puntos;
    };
    const Caso casos[] = {{210, 297, FALSE, 300, 2480, 3508, "595.276 x 841.89 pts (A4)"},
                          {210, 297, TRUE, 150, 1754, 1240, "841.89 x 595.276 pts (A4)"},
                          {215.9, 279.4, FALSE, 72, 612, 792, "612 x 792 pts (letter)"}};
    for (const Caso& c : casos) {
        CDataImpresion& datos = m_Vista.m_Impresion;
        datos.m_dAnchoPapel = c.ancho;
        datos.m_dAltoPapel = c.alto;
        datos.m_bApaisada = c.apaisada;
        datos.m_nResolucion = c.resolucion;
        bool visto = false;
        m_Vista.m_Pinta = [&](CDC* dc, CPrintInfo* info) {
            visto = true;
            EXPECT_EQ(dc->GetDeviceCaps(HORZRES), c.pixelesX);
            EXPECT_EQ(dc->GetDeviceCaps(VERTRES), c.pixelesY);
            EXPECT_EQ(dc->GetDeviceCaps(LOGPIXELSX), c.resolucion);
            EXPECT_EQ(dc->GetDeviceCaps(LOGPIXELSY), c.resolucion);
            EXPECT_EQ(dc->GetDeviceCaps(HORZSIZE), std::lround(c.apaisada ? c.alto : c.ancho));
            EXPECT_EQ(dc->GetDeviceCaps(VERTSIZE), std::lround(c.apaisada ? c.ancho : c.alto));
            EXPECT_EQ(info->m_rectDraw, CRect(0, 0, c.pixelesX, c.pixelesY));
            CRect caja;
            EXPECT_EQ(dc->GetClipBox(&caja), SIMPLEREGION);
            EXPECT_EQ(caja, info->m_rectDraw);
        };
        ASSERT_TRUE(m_Vista.OnFilePrint()) << UltimoFalloGL();
        EXPECT_TRUE(visto);
        SALTA_SIN_POPPLER();
        EXPECT_NE(Salida("pdfinfo " + Entrecomilla(m_Pdf)).find(c.puntos), std::string::npos)
            << Salida("pdfinfo " + Entrecomilla(m_Pdf));
    }
}

TEST_F(Impresion, ThePictureIsInTheFileAtItsOwnResolution) {
    SALTA_SIN_POPPLER();
    const Dibujo dibujo(1240, 1754);  // half of the page's pixels
    m_Vista.m_Pinta = [&](CDC* dc, CPrintInfo*) { EXPECT_EQ(dibujo.Pon(dc), 1754); };
    ASSERT_TRUE(m_Vista.OnFilePrint()) << UltimoFalloGL();
    std::istringstream lista(Salida("pdfimages -list " + Entrecomilla(m_Pdf)));
    std::string linea, todo;
    std::getline(lista, linea);
    std::getline(lista, linea);
    int pagina = 0, numero = 0, ancho = 0, alto = 0, colores = 0, bits = 0, objeto = 0, id = 0, x = 0, y = 0;
    std::string tipo, color, codigo, interpola;
    ASSERT_TRUE(lista >> pagina >> numero >> tipo >> ancho >> alto >> color >> colores >> bits >> codigo >> interpola >>
                objeto >> id >> x >> y);
    EXPECT_EQ(tipo, "image");
    EXPECT_EQ(ancho, 1240);
    EXPECT_EQ(alto, 1754);
    EXPECT_EQ(color, "rgb");
    EXPECT_EQ(x, 150);
    EXPECT_EQ(y, 150);
    EXPECT_EQ(Salida("pdfimages -list " + Entrecomilla(m_Pdf) + " | wc -l").substr(0, 1), "3") << "one picture";
    Salida("pdfimages -png " + Entrecomilla(m_Pdf) + " " + Entrecomilla(m_Carpeta / "dentro"));
    const ::Imagen dentro = LeePng(m_Carpeta / "dentro-000.png");
    ASSERT_EQ(dentro.ancho, 1240);
    EXPECT_EQ(dentro.Pixel(0, 0), (std::array<std::uint8_t, 3>{255, 0, 0}));
    EXPECT_EQ(dentro.Pixel(1239, 0), (std::array<std::uint8_t, 3>{0, 255, 0}));
    EXPECT_EQ(dentro.Pixel(0, 1753), (std::array<std::uint8_t, 3>{0, 0, 255}));
    EXPECT_EQ(dentro.Pixel(309, 876), (std::array<std::uint8_t, 3>{255, 0, 0})) << "to the pixel";
    EXPECT_EQ(dentro.Pixel(310, 877), (std::array<std::uint8_t, 3>{90, 90, 90}));
}

TEST_F(Impresion, ThePageLooksAsItWasDrawn) {
    SALTA_SIN_POPPLER();
    const Dibujo dibujo(80, 60);
    m_Vista.m_Impresion.m_bApaisada = TRUE;
    BITMAPINFO info{};
    info.bmiHeader = {40, 80, 60, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    m_Vista.m_Pinta = [&](CDC* dc, CPrintInfo*) { dibujo.Pon(dc); };
    ASSERT_TRUE(m_Vista.OnFilePrint()) << UltimoFalloGL();
    Salida("pdftoppm -png -r 72 -singlefile " + Entrecomilla(m_Pdf) + " " + Entrecomilla(m_Carpeta / "hoja"));
    const ::Imagen hoja = LeePng(m_Carpeta / "hoja.png");
    ASSERT_EQ(hoja.ancho, 842);
    ASSERT_EQ(hoja.alto, 596);
    EXPECT_EQ(hoja.Pixel(60, 60), (std::array<std::uint8_t, 3>{255, 0, 0}));
    EXPECT_EQ(hoja.Pixel(780, 60), (std::array<std::uint8_t, 3>{0, 255, 0}));
    EXPECT_EQ(hoja.Pixel(60, 540), (std::array<std::uint8_t, 3>{0, 0, 255}));
    EXPECT_EQ(hoja.Pixel(420, 300), (std::array<std::uint8_t, 3>{90, 90, 90}));
}

TEST_F(Impresion, PagesAreThoseWantedOfThoseThereAre) {
    m_Vista.m_Prepara = [](CPrintInfo* info) {
        info->SetMaxPage(5);
        return TRUE;
    };
    m_Vista.m_Impresion.m_nDesde = 2;
    m_Vista.m_Impresion.m_nHasta = 3;
    EXPECT_TRUE(m_Vista.OnFilePrint());
    EXPECT_EQ(m_Vista.m_Sucesos, "prepare begin page2 draw page3 draw end ");
    if (const std::string dice = Salida("pdfinfo " + Entrecomilla(m_Pdf)); !dice.empty()) {
        EXPECT_NE(dice.find("Pages:           2"), std::string::npos) << dice;
    }
    m_Vista.m_Impresion.m_nHasta = 99;
    m_Vista.m_Pinta = [](CDC*, CPrintInfo* info) { info->m_bContinuePrinting = info->m_nCurPage < 4; };
    m_Vista.m_Sucesos.clear();
    EXPECT_TRUE(m_Vista.OnFilePrint());
    EXPECT_EQ(m_Vista.m_Sucesos, "prepare begin page2 page3 page4 end ") << "a handler may say that it was the last";
}

TEST_F(Impresion, NoneOfThePagesThatAreWantedIsAFailure) {
    m_Vista.m_Impresion.m_nDesde = 2;
    EXPECT_FALSE(m_Vista.OnFilePrint());
    EXPECT_EQ(m_Vista.m_Sucesos, "prepare begin end ");
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 0u);
}

TEST_F(Impresion, WhatIsGivenUpLeavesTheOldFile) {
    m_Carpeta.Escribe("página 1.pdf", "old");
    m_Vista.m_Pinta = [](CDC* dc, CPrintInfo*) { EXPECT_GT(dc->AbortDoc(), 0); };
    EXPECT_FALSE(m_Vista.OnFilePrint());
    EXPECT_EQ(GetLastError(), ERROR_CANCELLED);
    EXPECT_EQ(m_Vista.m_Sucesos, "prepare begin page1 end ");
    EXPECT_EQ(Contenido(), "old");
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 1u);
    m_Vista.m_Prepara = [](CPrintInfo*) { return FALSE; };
    m_Vista.m_Sucesos.clear();
    EXPECT_FALSE(m_Vista.OnFilePrint());
    EXPECT_EQ(m_Vista.m_Sucesos, "prepare ");
    EXPECT_EQ(GetLastError(), ERROR_CANCELLED);
}

TEST_F(Impresion, AFullDiskLeavesTheOldFile) {
    m_Carpeta.Escribe("página 1.pdf", "old");
    std::vector<BYTE> ruido(static_cast<std::size_t>(BytesDeFila(400, 24)) * 400);
    for (std::size_t i = 0; i < ruido.size(); ++i)
        ruido[i] = static_cast<BYTE>(std::rand());
    BITMAPINFO info{};
    info.bmiHeader = {40, 400, 400, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    m_Vista.m_Pinta = [&](CDC* dc, CPrintInfo*) {
        StretchDIBits(*dc, 0, 0, 100, 100, 0, 0, 400, 400, ruido.data(), &info, DIB_RGB_COLORS, SRCCOPY);
    };
    {
        const DiscoLleno lleno(50000);
        EXPECT_FALSE(m_Vista.OnFilePrint());
    }
    EXPECT_EQ(GetLastError(), ERROR_FILE_TOO_LARGE);
    EXPECT_NE(UltimoFalloGL().find("página 1.pdf"), std::string::npos) << UltimoFalloGL();
    EXPECT_EQ(m_Vista.m_Sucesos, "prepare begin page1 end ");
    EXPECT_EQ(Contenido(), "old");
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 1u);
}

TEST_F(Impresion, FilesThatCantBeAreRefused) {
    CDataImpresion& datos = m_Vista.m_Impresion;
    datos.m_sFichero = Nombre(m_Carpeta / "missing/x.pdf");
    EXPECT_FALSE(m_Vista.OnFilePrint());
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(m_Vista.m_Sucesos, "prepare begin end ");
    datos.m_sFichero = Nombre(m_Carpeta.Ruta());
    EXPECT_FALSE(m_Vista.OnFilePrint());
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED) << "a folder";
    datos.m_sFichero = L"/dev/null";
    EXPECT_FALSE(m_Vista.OnFilePrint());
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null")) << "a device is no place for a file";
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 0u);
}

TEST_F(Impresion, PapersThatCantBeAreRefused) {
    const auto rechaza = [&](auto cambia) {
        const CDataImpresion antes = m_Vista.m_Impresion;
        cambia(m_Vista.m_Impresion);
        SetLastError(0);
        const bool falla = !m_Vista.OnFilePrint() && GetLastError() == ERROR_INVALID_PARAMETER;
        m_Vista.m_Impresion = antes;
        return falla;
    };
    EXPECT_TRUE(rechaza([](CDataImpresion& d) { d.m_dAnchoPapel = 0; }));
    EXPECT_TRUE(rechaza([](CDataImpresion& d) { d.m_dAltoPapel = -297; }));
    EXPECT_TRUE(rechaza([](CDataImpresion& d) { d.m_dAltoPapel = std::nan(""); }));
    EXPECT_TRUE(rechaza([](CDataImpresion& d) { d.m_dAltoPapel = 1e9; }));
    EXPECT_TRUE(rechaza([](CDataImpresion& d) { d.m_nResolucion = 0; }));
    EXPECT_TRUE(rechaza([](CDataImpresion& d) { d.m_nResolucion = 1000000; }));
    EXPECT_TRUE(rechaza([](CDataImpresion& d) { d.m_dAltoPapel = 5000, d.m_nResolucion = 2400; }));
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 0u);
    EXPECT_TRUE(m_Vista.OnFilePrint());
}

TEST_F(Impresion, WithoutAPrinterItSaysSo) {
    const char* antes = std::getenv("CUPS_SERVER");
    setenv("CUPS_SERVER", (m_Carpeta / "nobody").c_str(), 1);
    m_Vista.m_Impresion.m_sFichero.Empty();
    m_Vista.m_Impresion.m_sImpresora = L"ninguna-impresora-así";
    EXPECT_FALSE(m_Vista.OnFilePrint());
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    EXPECT_NE(UltimoFalloGL().find("ninguna-impresora-así"), std::string::npos) << UltimoFalloGL();
    EXPECT_EQ(m_Vista.m_Sucesos, "prepare ");
    EXPECT_TRUE(m_Vista.OnFilePrintPreview()) << "a preview needs none";
    CDC dc;
    EXPECT_FALSE(dc.CreatePrinterDC(m_Vista.m_Impresion));
    EXPECT_EQ(dc.GetSafeHdc(), nullptr);
    antes ? setenv("CUPS_SERVER", antes, 1) : unsetenv("CUPS_SERVER");
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 0u);
}

TEST_F(Impresion, APreviewShowsEachPage) {
    m_Vista.m_Prepara = [](CPrintInfo* info) {
        info->SetMaxPage(2);
        return TRUE;
    };
    m_Vista.m_Impresion.m_bApaisada = TRUE;
    const Dibujo dibujo(80, 60);
    m_Vista.m_Pinta = [&](CDC* dc, CPrintInfo* info) {
        EXPECT_TRUE(info->m_bPreview);
        EXPECT_EQ(dc->GetDeviceCaps(LOGPIXELSX), 96);
        EXPECT_EQ(dc->GetDeviceCaps(HORZSIZE), 297);
        EXPECT_EQ(info->m_rectDraw, CRect(0, 0, 1123, 794));
        if (info->m_nCurPage == 2) dibujo.Pon(dc);
    };
    EXPECT_TRUE(m_Vista.OnFilePrintPreview()) << UltimoFalloGL();
    EXPECT_EQ(m_Vista.m_Sucesos, "preview begin page1 seen page2 seen end ");
    ASSERT_EQ(m_Vista.m_Hojas.size(), 2u);
    BITMAP blanca{}, hoja{};
    ASSERT_GT(m_Vista.m_Hojas[0]->GetBitmap(&blanca), 0);
    ASSERT_GT(m_Vista.m_Hojas[1]->GetBitmap(&hoja), 0);
    EXPECT_EQ(hoja.bmWidth, 1123);
    EXPECT_EQ(hoja.bmHeight, 794);
    const auto pixel = [](const BITMAP& b, int x, int y) {  // y from the top
        const BYTE* p = static_cast<const BYTE*>(b.bmBits) + (b.bmHeight - 1 - y) * b.bmWidthBytes + x * 3;
        return std::array<int, 3>{p[2], p[1], p[0]};
    };
    EXPECT_EQ(pixel(blanca, 500, 300), (std::array{255, 255, 255}));
    EXPECT_EQ(pixel(hoja, 2, 2), (std::array{255, 0, 0}));
    EXPECT_EQ(pixel(hoja, 1120, 2), (std::array{0, 255, 0}));
    EXPECT_EQ(pixel(hoja, 2, 790), (std::array{0, 0, 255}));
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 0u);
}

TEST_F(Impresion, APreviewCanBeGivenUp) {
    m_Vista.m_Pinta = [](CDC* dc, CPrintInfo*) { EXPECT_GT(dc->AbortDoc(), 0); };
    EXPECT_FALSE(m_Vista.OnFilePrintPreview());
    EXPECT_EQ(m_Vista.m_Sucesos, "preview begin page1 end ");
    EXPECT_EQ(GetLastError(), ERROR_CANCELLED);
}

TEST_F(Impresion, StepsOutOfTurnAreRefused) {
    CDC dc;
    EXPECT_EQ(dc.StartDoc(L""), SP_ERROR);
    ASSERT_TRUE(dc.CreatePrinterDC(m_Vista.m_Impresion));
    EXPECT_FALSE(dc.CreatePrinterDC(m_Vista.m_Impresion));
    const Dibujo dibujo(4, 4);
    EXPECT_EQ(dc.StartPage(), SP_ERROR);
    EXPECT_EQ(dc.EndDoc(), SP_ERROR);
    EXPECT_EQ(dc.AbortDoc(), SP_ERROR);
    EXPECT_GT(dc.StartDoc(L"título"), 0);
    EXPECT_EQ(dc.StartDoc(L"título"), SP_ERROR);
    EXPECT_EQ(dibujo.Pon(&dc), 0) << "not on a page";
    EXPECT_EQ(dc.EndPage(), SP_ERROR);
    EXPECT_GT(dc.StartPage(), 0);
    EXPECT_EQ(dc.StartPage(), SP_ERROR);
    EXPECT_EQ(dc.EndDoc(), SP_ERROR);
    EXPECT_EQ(dibujo.Pon(&dc), 4);
    EXPECT_GT(dc.EndPage(), 0);
    EXPECT_FALSE(std::filesystem::exists(m_Pdf)) << "not before it is whole";
    EXPECT_GT(dc.EndDoc(), 0);
    EXPECT_TRUE(std::filesystem::exists(m_Pdf));
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.CreateBitmap(2, 2, 24));
    EXPECT_EQ(dc.SelectObject(&bitmap), nullptr) << "a page has no bitmap";
    EXPECT_EQ(ChoosePixelFormat(dc, nullptr), 0);
    if (const std::string dice = Salida("pdfinfo " + Entrecomilla(m_Pdf)); !dice.empty()) {
        EXPECT_NE(dice.find("título"), std::string::npos) << dice;
    }
}

TEST_F(Impresion, ADeviceThatIsDeletedMidwayLeavesNothing) {
    {
        CDC dc;
        ASSERT_TRUE(dc.CreatePrinterDC(m_Vista.m_Impresion));
        ASSERT_GT(dc.StartDoc(nullptr), 0);
        ASSERT_GT(dc.StartPage(), 0);
        EXPECT_EQ(m_Carpeta.CuentaFicheros(), 1u);
    }
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 0u);
    m_Vista.m_Pinta = [](CDC* dc, CPrintInfo*) { dc->DeleteDC(); };
    EXPECT_FALSE(m_Vista.OnFilePrint());
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 0u);
}

}  // namespace
