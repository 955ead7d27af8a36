// What every image shares: sampling between pixels, opening by name, its name, and the end of its temporary file.

#include "raster/Imagenes.h"
#include "raster/LibTiff.h"
#include "support/Progreso.h"

#include <gmock/gmock.h>

#include <climits>
#include <cmath>
#include <typeinfo>

namespace {

using namespace imagenes;
using testing::Each;
using testing::ElementsAre;
using Vertiz::CBmp;
using Vertiz::CreaRaster;
using Vertiz::CTiff;
using Vertiz::IRaster;

// ---- Muestra

class Muestra : public PorFormas {
  protected:
    static constexpr int kAncho = 6, kAlto = 5;
    std::unique_ptr<CTiff> m_pImagen = Aleatoria<CTiff>(kAncho, kAlto, GetParam().bits, GetParam().modo, 11);

    double En(int fila, int columna, std::size_t banda) const {
        return Pixel(*m_pImagen, std::clamp(fila, 0, kAlto - 1), std::clamp(columna, 0, kAncho - 1))[banda];
    }
    std::vector<BYTE> Tomada(int x100, int y100, int interpolacion) const {
        std::vector<BYTE> pixel(std::size_t(Bandas(*m_pImagen)), 123);
        m_pImagen->Muestra(pixel.data(), x100, y100, interpolacion);
        return pixel;
    }
    void TearDown() override {
        m_pImagen.reset();
        PorFormas::TearDown();
    }
    static double Truncado(double v) { return std::clamp(std::trunc(v), 0.0, 255.0); }
};
INSTANTIATE_TEST_SUITE_P(Formas, Muestra, testing::ValuesIn(kFormas), NombreForma);

TEST_P(Muestra, OfThePixelThatThePositionLiesIn) {
    for (int y = 0; y < 100 * kAlto; y += 33)
        for (int x = 0; x < 100 * kAncho; x += 33)
            for (std::size_t b = 0; b < Tomada(x, y, -1).size(); ++b)
                ASSERT_EQ(Tomada(x, y, -1)[b], En(y / 100, x / 100, b));
}

TEST_P(Muestra, OfTheNearestPixelIsWhitePastTheEdge) {
    for (int y = 0; y < 100 * kAlto; y += 25)
        for (int x = 0; x < 100 * kAncho; x += 25) {
            const int f = (y + 50) / 100, c = (x + 50) / 100;
            const auto pixel = Tomada(x, y, 0);
            for (std::size_t b = 0; b < pixel.size(); ++b)
                ASSERT_EQ(pixel[b], f < kAlto && c < kAncho ? En(f, c, b) : 255) << x << ", " << y;
        }
}

TEST_P(Muestra, BilinearIsTruncated) {
    for (int y = 0; y < 100 * kAlto; y += 17)
        for (int x = 0; x < 100 * kAncho; x += 13) {
            const int f = y / 100, c = x / 100;
            const long long fx = x % 100, fy = y % 100;
            const auto pixel = Tomada(x, y, 1);
            for (std::size_t b = 0; b < pixel.size(); ++b) {
                const auto V = [&](int df, int dc) { return (long long)(En(f + df, c + dc, b)); };
                const long long abajo = V(0, 0) * (100 - fx) + V(0, 1) * fx;
                const long long arriba = V(1, 0) * (100 - fx) + V(1, 1) * fx;
                ASSERT_EQ(pixel[b], (abajo * (100 - fy) + arriba * fy) / 10000) << x << ", " << y;
            }
        }
}

TEST_P(Muestra, CubicWeighsFourByFourNeighboursInsideThePicture) {
    const auto Peso = [](double d) {
        d = std::abs(d);
        return d < 1 ? 1 - 2 * d * d + d * d * d : d < 2 ? 4 - 8 * d + 5 * d * d - d * d * d : 0;
    };
    for (int y = 0; y < 100 * kAlto; y += 17)
        for (int x = 0; x < 100 * kAncho; x += 13) {
            const int f = y / 100, c = x / 100;
            const auto pixel = Tomada(x, y, 2);
            for (std::size_t b = 0; b < pixel.size(); ++b) {
                double suma = 0;
                for (int i = -1; i <= 2; ++i)
                    for (int j = -1; j <= 2; ++j)
                        suma += En(f + i, c + j, b) * Peso(i - y % 100 / 100.0) * Peso(j - x % 100 / 100.0);
                // What is a whole number comes out of sums of fractions a little below or above.
                if (std::abs(suma - std::round(suma)) < 1e-6) suma = std::round(suma);
                ASSERT_EQ(pixel[b], Truncado(suma)) << x << ", " << y;
            }
        }
}

TEST_P(Muestra, OutsideThePictureWritesNothing) {
    for (const int interpolacion : {-1, 0, 1, 2, 9})
        for (const auto& [x, y] :
             {std::pair{-1, 0}, {0, -1}, {-50, 10}, {100 * kAncho, 0}, {0, 100 * kAlto}, {INT_MAX, INT_MAX}})
            EXPECT_THAT(Tomada(x, y, interpolacion), Each(123)) << x << ", " << y;
}

TEST(MuestraLisa, GivesTheOneColourThatThereIs) {
    const auto imagen = Imagen<CTiff>(5, 5, 8, 0, std::vector<BYTE>(25, 201));
    for (const int interpolacion : {1, 2})
        for (int p = 0; p < 500; p += 7) {
            BYTE pixel = 0;
            imagen->Muestra(&pixel, p, 499 - p, interpolacion);
            ASSERT_EQ(pixel, 201) << p;
        }
}

TEST(MuestraDePaleta, MixesColours) {
    std::vector<BYTE> paleta(1024, 0);
    paleta[4 * 7] = 100, paleta[4 * 7 + 2] = 50;
    const auto imagen = Imagen<CBmp>(2, 1, 8, 0, {7, 0}, paleta.data());
    BYTE pixel[3]{};
    imagen->Muestra(pixel, 50, 0, 1);
    EXPECT_THAT(pixel, ElementsAre(50, 0, 25));
    imagen->Muestra(pixel, 150, 0, 0);
    EXPECT_THAT(pixel, Each(255));
}

// ---- CreaRaster

TEST(CreaRaster, GoesByTheEndOfTheNameWithoutRegardToCaseOrDot) {
    for (const auto& [nombre, tipo] : {std::pair{L"a.bmp", 21},
                                       {L"/una carpeta/ñandú.BMP", 21},
                                       {L"bmp", 21},
                                       {L"fotobmp", 21},
                                       {L"a.tif", 20},
                                       {L"a.TIFF", 20},
                                       {L"a.jpg", 22},
                                       {L"a.JPEG", 22},
                                       {L"a.ecw", 23},
                                       {L"a.Jp2", 23}}) {
        IRaster* const raster = CreaRaster(nombre);
        ASSERT_NE(raster, nullptr) << nombre;
        EXPECT_EQ(raster->Tipo(), tipo);
        EXPECT_EQ(raster->NivelMensajes(), 3);
        EXPECT_EQ(dynamic_cast<Vertiz::LibTiff*>(raster) != nullptr, tipo == 20);
        raster->Borrar();
    }
}

TEST(CreaRaster, GivesNullForOtherNames) {
    for (const wchar_t* nombre : {L"a.png", L"a.bmp.zip", L"", L"mp", L"a.bmp "})
        EXPECT_EQ(CreaRaster(nombre), nullptr) << nombre;
    EXPECT_EQ(CreaRaster(nullptr), nullptr);
}

// ---- Name and life

TEST(Nombre, KeepsTheFirst255Characters) {
    CBmp bmp;
    bmp.SetNombre(L"ñandú.bmp");
    EXPECT_STREQ(bmp.Nombre(), L"ñandú.bmp");
    const std::wstring largo(300, L'x');
    bmp.SetNombre(largo.c_str());
    EXPECT_EQ(bmp.Nombre(), largo.substr(0, 255));
    bmp.SetNombre(nullptr);
    EXPECT_STREQ(bmp.Nombre(), L"");
}

TEST(Borrar, TakesNull) {
    Vertiz::BorraRaster(nullptr);
    Vertiz::BorraRaster(new CTiff);
}

// A raster whose temporary file belongs to somebody else.
class Compartido : public CBmp {
  public:
    Compartido() : CBmp(1) { m_bCompartido = 1; }
    CString Temporal() const { return m_sTemporal; }
};

TEST(RasterCompartido, HasItsTemporaryFileClosedButNotDeleted) {
    const CarpetaTemporal carpeta;
    CString ruta;
    const std::size_t abiertos = CuentaDescriptores();
    {
        Compartido bmp;
        ASSERT_TRUE(bmp.Crear(3, 3, 8, 1.0F, false, nullptr, nullptr, false));
        ruta = bmp.Temporal();
    }
    EXPECT_EQ(CuentaDescriptores(), abiertos);
    EXPECT_TRUE(std::filesystem::exists(ruta.Utf8()));
}

}  // namespace
