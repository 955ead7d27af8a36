// Fonts by handle, and the faces behind them: their measures, outlines and bitmaps.

#include "FuentesPrueba.h"
#include "platform/CDC.h"
#include "platform/CFont.h"
#include "platform/DiagnosticoGL.h"
#include "support/Temporales.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <thread>

using namespace plataforma;

namespace {

class FuentesCara : public ConSans<testing::Test> {
  protected:
    void SetUp() override {
        ConSans::SetUp();
        if (IsSkipped()) return;
        m_Cara = Cara::Abre(Pedida(-16));
        ASSERT_TRUE(m_Cara) << UltimoFalloGL();
    }
    GLYPHMETRICSFLOAT Mide(DWORD codigo) {
        GLYPHMETRICSFLOAT m{};
        EXPECT_TRUE(m_Cara->LeeContornos(codigo, 0.0, m_Contornos, m));
        return m;
    }
    std::vector<Contorno> Traza(DWORD codigo, double desviacion) {
        GLYPHMETRICSFLOAT m{};
        EXPECT_TRUE(m_Cara->LeeContornos(codigo, desviacion, m_Contornos, m));
        return m_Contornos;
    }

    std::unique_ptr<Cara> m_Cara;
    std::vector<Contorno> m_Contornos;
};

std::size_t Puntos(const std::vector<Contorno>& contornos) {
    std::size_t n = 0;
    for (const Contorno& c : contornos)
        n += c.size();
    return n;
}

double Distancia(const PuntoPlano& p, const PuntoPlano& a, const PuntoPlano& b) {
    const double dx = b.x - a.x, dy = b.y - a.y, l = dx * dx + dy * dy;
    const double t = std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / l, 0.0, 1.0);
    return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

double Distancia(const PuntoPlano& p, const std::vector<Contorno>& contornos) {
    double d = std::numeric_limits<double>::max();
    for (const Contorno& c : contornos)
        for (std::size_t i = 0; i < c.size(); ++i)
            d = std::min(d, Distancia(p, c[i], c[(i + 1) % c.size()]));
    return d;
}

// A bitmap as text, the top row first.
std::vector<std::string> EnFilas(const MapaGlifo& m) {
    std::vector<std::string> filas;
    const std::size_t bytes = static_cast<std::size_t>((m.m_nAncho + 7) / 8);
    for (int y = m.m_nAlto - 1; y >= 0; --y) {
        std::string fila;
        for (int x = 0; x < m.m_nAncho; ++x)
            fila += m.m_Bits[static_cast<std::size_t>(y) * bytes + static_cast<std::size_t>(x / 8)] >> (7 - x % 8) & 1
                        ? '#'
                        : '.';
        filas.push_back(fila);
    }
    return filas;
}

}  // namespace

TEST(MulDivTest, RoundsHalvesAwayFromZeroInWideNumbers) {
    EXPECT_EQ(MulDiv(1000, 96, 72), 1333);
    EXPECT_EQ(MulDiv(3, 1, 2), 2);
    EXPECT_EQ(MulDiv(-3, 1, 2), -2);
    EXPECT_EQ(MulDiv(3, 1, -2), -2);
    EXPECT_EQ(MulDiv(2000000000, 2000000000, 2000000000), 2000000000);
    EXPECT_EQ(MulDiv(1, 1, 0), -1);
    EXPECT_EQ(MulDiv(2000000000, 2, 1), -1);
}

TEST(Fuentes, AFontIsSelectedAndTheFormerOneGivenBack) {
    CDC dc;
    ASSERT_TRUE(dc.CreateCompatibleDC(nullptr));
    const HFONT una = CreaFuente(-20), otra = CreaFuente(-30);
    const HFONT propia = SelectObject(dc.GetSafeHdc(), una);
    ASSERT_NE(propia, nullptr);
    EXPECT_EQ(SelectObject(dc.GetSafeHdc(), otra), una);
    EXPECT_EQ(SelectObject(dc.GetSafeHdc(), propia), otra);
    EXPECT_TRUE(DeleteObject(una));
    EXPECT_FALSE(DeleteObject(una)) << "a handle is good once";
    EXPECT_TRUE(DeleteObject(otra));
}

TEST(Fuentes, ADeletedOneServesUntilAnotherIsSelected) {
    CDC dc;
    ASSERT_TRUE(dc.CreateCompatibleDC(nullptr));
    const HFONT una = CreaFuente(-20), otra = CreaFuente(-30);
    const HFONT propia = SelectObject(dc.GetSafeHdc(), una);
    DeleteObject(una);
    EXPECT_EQ(Dispositivos().Busca(dc.GetSafeHdc())->m_Fuente->m_nAlto, -20);
    EXPECT_EQ(SelectObject(dc.GetSafeHdc(), otra), propia) << "the deleted one's handle is no use any more";
    DeleteObject(otra);
}

TEST(Fuentes, UnknownHandlesAreRefused) {
    CDC dc;
    ASSERT_TRUE(dc.CreateCompatibleDC(nullptr));
    const HFONT fuente = CreaFuente(-20);
    EXPECT_EQ(SelectObject(nullptr, fuente), nullptr);
    EXPECT_EQ(SelectObject(dc.GetSafeHdc(), HFONT{}), nullptr);
    EXPECT_FALSE(DeleteObject(HFONT{}));
    DeleteObject(fuente);
    EXPECT_EQ(SelectObject(dc.GetSafeHdc(), fuente), nullptr);
}

TEST(Fuentes, AnAbsurdHeightIsRefused) {
    EXPECT_EQ(CreaFuente(32768), nullptr);
    EXPECT_EQ(CreaFuente(std::numeric_limits<int>::min()), nullptr);
    const HFONT alta = CreaFuente(-32767);
    EXPECT_NE(alta, nullptr);
    DeleteObject(alta);
}

TEST(CFontTest, OwnsItsHandle) {
    HFONT h = nullptr;
    {
        CFont fuente;
        EXPECT_EQ(fuente.GetSafeHandle(), nullptr);
        ASSERT_TRUE(fuente.CreateFontW(-20, 0, 0, 0, FW_BOLD, 0, 0, 0, 1, 0, 0, 0, 0, L"Arial"));
        EXPECT_FALSE(fuente.CreateFontW(-20, 0, 0, 0, FW_BOLD, 0, 0, 0, 1, 0, 0, 0, 0, L"Arial")) << "it has one";
        h = fuente;
        CFont otra;
        EXPECT_FALSE(otra.Attach(h)) << "it is the other's";
        EXPECT_EQ(fuente.Detach(), h);
        EXPECT_TRUE(otra.Attach(h));
        EXPECT_EQ(fuente.GetSafeHandle(), nullptr);
    }
    EXPECT_FALSE(DeleteObject(h)) << "it went with its owner";
}

TEST(CFontTest, IsSelectedByObject) {
    CDC dc;
    ASSERT_TRUE(dc.CreateCompatibleDC(nullptr));
    CFont* propia = nullptr;
    CFont una;
    ASSERT_TRUE(una.CreateFontW(-20, 0, 0, 0, FW_NORMAL, 0, 0, 0, 1, 0, 0, 0, 0, L"Arial"));
    {
        CFont otra;
        ASSERT_TRUE(otra.CreateFontW(-30, 0, 0, 0, FW_NORMAL, 0, 0, 0, 1, 0, 0, 0, 0, L"Arial"));
        propia = dc.SelectObject(&otra);
        ASSERT_NE(propia, nullptr);
    }
    EXPECT_EQ(dc.SelectObject(&una), propia) << "the one that is gone";
    EXPECT_EQ(dc.SelectObject(propia), &una);
    EXPECT_EQ(dc.SelectObject(static_cast<CFont*>(nullptr)), nullptr);
    CFont vacia;
    EXPECT_EQ(dc.SelectObject(&vacia), nullptr);
}

// In a process of its own: fontconfig reads its settings once.
TEST(FuentesSinCaras, AreRefusedWithWhatToInstall) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto busca = [] {
        const CarpetaTemporal carpeta;
        const std::string ninguna = "<fontconfig><dir>" + carpeta.Ruta().string() + "</dir></fontconfig>";
        setenv("FONTCONFIG_FILE", carpeta.Escribe("fonts.conf", ninguna).c_str(), 1);
        return !Cara::Abre(Pedida(-16)) && UltimoFalloGL().find("fonts-liberation") != std::string::npos;
    };
    EXPECT_EXIT(std::_Exit(busca() ? 7 : 1), testing::ExitedWithCode(7), "");
}

TEST_F(FuentesCara, WeightAndSlantChooseAmongTheInstalledFaces) {
    const auto ancho = [](const Fuente& f) {
        const auto cara = Cara::Abre(f);
        std::vector<Contorno> contornos;
        GLYPHMETRICSFLOAT m{};
        EXPECT_TRUE(cara && cara->LeeContornos('A', 0.0, contornos, m));
        return std::lround(m.gmfCellIncX * 2048);
    };
    EXPECT_EQ(ancho(Pedida(-16)), 1366);
    EXPECT_EQ(ancho(Pedida(-16, FW_BOLD)), 1479);
    EXPECT_NE(BuscaCara(Pedida(-16))->m_Fichero, BuscaCara(Pedida(-16, FW_NORMAL, true))->m_Fichero);
    EXPECT_TRUE(BuscaCara(Pedida(-16, FW_NORMAL, false, "No such face at all"))) << "the nearest serves";
}

TEST_F(FuentesCara, WidthsAreTheFacesOwn) {
    struct {
        DWORD codigo;
        int ancho;  // of the face's design: 2048 to the em square
    } const conocidos[] = {{' ', 569}, {'A', 1366}, {'O', 1593}, {'i', 455}, {'M', 1706}, {'0', 1139}, {0xF1, 1139}};
    for (const auto& [codigo, ancho] : conocidos) {
        const GLYPHMETRICSFLOAT m = Mide(codigo);
        EXPECT_FLOAT_EQ(m.gmfCellIncX, static_cast<float>(ancho) / 2048) << codigo;
        EXPECT_EQ(m.gmfCellIncY, 0.0F);
    }
}

TEST_F(FuentesCara, TheBlackBoxHoldsTheOutlineTightly) {
    for (DWORD codigo : {'A', 'O', 'g', 'j', 'M', '.'}) {
        const GLYPHMETRICSFLOAT m = Mide(codigo);
        double x0 = 9, x1 = -9, y0 = 9, y1 = -9;
        for (const Contorno& c : m_Contornos)
            for (const PuntoPlano& p : c) {
                x0 = std::min(x0, p.x), x1 = std::max(x1, p.x);
                y0 = std::min(y0, p.y), y1 = std::max(y1, p.y);
            }
        constexpr double kCuerda = 1.5 / 2048;  // the curve's top may lie a unit above the chords'
        EXPECT_NEAR(m.gmfptGlyphOrigin.x, x0, kCuerda) << codigo;
        EXPECT_NEAR(m.gmfptGlyphOrigin.y, y1, kCuerda) << codigo;
        EXPECT_NEAR(m.gmfBlackBoxX, x1 - x0, 2 * kCuerda) << codigo;
        EXPECT_NEAR(m.gmfBlackBoxY, y1 - y0, 2 * kCuerda) << codigo;
    }
    EXPECT_NEAR(Mide('A').gmfBlackBoxY, 0.70, 0.03) << "capitals";
    EXPECT_NEAR(Mide('A').gmfptGlyphOrigin.y, Mide('A').gmfBlackBoxY, 1e-6) << "they stand on the base line";
    EXPECT_GT(Mide('g').gmfBlackBoxY, Mide('g').gmfptGlyphOrigin.y) << "and this reaches below";
}

TEST_F(FuentesCara, ABlankHasWidthAlone) {
    const GLYPHMETRICSFLOAT m = Mide(' ');
    EXPECT_TRUE(m_Contornos.empty());
    EXPECT_EQ(m.gmfBlackBoxX, 0.0F);
    EXPECT_EQ(m.gmfBlackBoxY, 0.0F);
}

TEST_F(FuentesCara, ACodeWithoutAGlyphShowsTheSignForAMissingOne) {
    const GLYPHMETRICSFLOAT uno = Mide(0x378), otro = Mide(0xE123);  // neither has a character
    EXPECT_GT(uno.gmfBlackBoxX, 0.0F);
    EXPECT_EQ(uno.gmfBlackBoxX, otro.gmfBlackBoxX);
    EXPECT_EQ(uno.gmfCellIncX, otro.gmfCellIncX);
}

TEST_F(FuentesCara, ChordsKeepTheDeviation) {
    const auto fino = Traza('S', 1e-9);
    for (double desviacion : {0.0005, 0.002, 0.01, 0.05}) {
        const auto cuerdas = Traza('S', desviacion);
        double peor = 0;
        for (const Contorno& c : fino)
            for (const PuntoPlano& p : c)
                peor = std::max(peor, Distancia(p, cuerdas));
        EXPECT_LE(peor, desviacion * 1.0001);
        EXPECT_GT(peor, desviacion * 0.02) << "no finer than needed by far";
    }
}

TEST_F(FuentesCara, ACoarserDeviationHasFewerPoints) {
    for (DWORD codigo : {'O', 'S', '8', 'a'}) {
        std::size_t antes = Puntos(Traza(codigo, 0.0001));
        const std::size_t primero = antes;
        for (double desviacion : {0.0002, 0.0005, 0.001, 0.005, 0.02, 0.1}) {
            const std::size_t n = Puntos(Traza(codigo, desviacion));
            EXPECT_LE(n, antes) << codigo << " at " << desviacion;
            antes = n;
        }
        EXPECT_LT(antes * 3, primero);
    }
    EXPECT_EQ(Puntos(Traza('O', 0.0)), Puntos(Traza('O', 1.0 / 2048))) << "0 is a unit of the design";
    EXPECT_EQ(Puntos(Traza('I', 0.0)), 4U) << "straight lines have their ends alone";
}

TEST_F(FuentesCara, TheHeightIsThatOfTheEmSquareOrOfTheLine) {
    EXPECT_EQ(m_Cara->Alto(), 16);
    const auto celda = Cara::Abre(Pedida(100));
    ASSERT_TRUE(celda);
    EXPECT_GT(celda->Alto(), 80);
    EXPECT_LT(celda->Alto(), 95) << "accents and descenders take their part";
}

TEST_F(FuentesCara, ABitmapStandsUprightOnTheBaseLine) {
    const auto cara = Cara::Abre(Pedida(-32));
    ASSERT_TRUE(cara);
    MapaGlifo m;
    ASSERT_TRUE(cara->LeeMapa('L', m));
    const auto filas = EnFilas(m);
    EXPECT_EQ(m.m_fOrigenY, 0.0F);
    EXPECT_NEAR(m.m_nAlto, 23, 1);
    EXPECT_EQ(filas.back(), std::string(filas.back().size(), '#')) << "its foot";
    EXPECT_NE(filas.front(), filas.back());
    EXPECT_EQ(filas.front()[0], '#') << "its stem";
    EXPECT_EQ(filas.front().back(), '.');

    ASSERT_TRUE(cara->LeeMapa('I', m));
    for (const std::string& fila : EnFilas(m))
        EXPECT_EQ(fila, std::string(fila.size(), '#'));
    ASSERT_TRUE(cara->LeeMapa('H', m));
    for (std::string fila : EnFilas(m)) {
        const std::string vuelta(fila.rbegin(), fila.rend());
        EXPECT_EQ(fila, vuelta);
    }
    ASSERT_TRUE(cara->LeeMapa('g', m));
    EXPECT_NEAR(m.m_fOrigenY, 7, 1) << "below the line";
    ASSERT_TRUE(cara->LeeMapa(' ', m));
    EXPECT_EQ(EnFilas(m), std::vector<std::string>{"."});
    EXPECT_NEAR(m.m_fAvance, 32 * 569 / 2048.0, 0.6);
}

TEST_F(FuentesCara, ManyThreadsReadTheSameGlyphs) {
    const auto lee = [](std::vector<float>& medidas, std::size_t& bytes) {
        const auto cara = Cara::Abre(Pedida(-20));
        if (!cara) return;
        std::vector<Contorno> contornos;
        MapaGlifo mapa;
        for (DWORD codigo = 0; codigo < 512; ++codigo) {
            GLYPHMETRICSFLOAT m{};
            if (!cara->LeeContornos(codigo, 0.01, contornos, m) || !cara->LeeMapa(codigo, mapa)) return;
            medidas.push_back(m.gmfCellIncX + m.gmfBlackBoxY);
            bytes += mapa.m_Bits.size();
        }
    };
    std::array<std::vector<float>, 8> medidas;
    std::array<std::size_t, 8> bytes{};
    {
        std::vector<std::jthread> hilos;
        for (std::size_t i = 0; i < medidas.size(); ++i)
            hilos.emplace_back(lee, std::ref(medidas[i]), std::ref(bytes[i]));
    }
    EXPECT_EQ(medidas[0].size(), 512U);
    for (std::size_t i = 1; i < medidas.size(); ++i) {
        EXPECT_EQ(medidas[i], medidas[0]);
        EXPECT_EQ(bytes[i], bytes[0]);
    }
}
