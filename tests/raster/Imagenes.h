#pragma once
// Small pictures for the tests of rasters: random ones of both classes, depths and homes of the pixels, and their
// comparison.

#include "raster/CBmp.h"
#include "raster/CTiff.h"
#include "support/Temporales.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <ostream>
#include <random>
#include <string>
#include <vector>

namespace imagenes {

/// So many random bytes, the same for the same seed.
inline std::vector<BYTE> BytesAleatorios(std::size_t n, unsigned semilla) {
    std::mt19937 azar(semilla);
    std::vector<BYTE> bytes(n);
    for (BYTE& b : bytes)
        b = static_cast<BYTE>(azar() >> 24);
    return bytes;
}

/// A picture of given pixels: rows from the bottom, bits / 8 bytes a pixel, without padding.
/// @param modo  not 0: in file mode
template <class T>
std::unique_ptr<T> Imagen(int ancho, int alto, int bits, int modo, const std::vector<BYTE>& pixeles,
                          const BYTE* paleta = nullptr) {
    auto imagen = std::make_unique<T>(modo);
    EXPECT_TRUE(imagen->Crear(ancho, alto, bits, 300.0F, false, nullptr, paleta, false));
    const std::size_t fila = std::size_t(ancho) * std::size_t(bits) / 8;
    for (int r = 0; r < alto; ++r)
        EXPECT_TRUE(imagen->SetFila(&pixeles.at(std::size_t(r) * fila), r, 0, ancho)) << "row " << r;
    return imagen;
}

/// A picture of random pixels.
template <class T>
std::unique_ptr<T> Aleatoria(int ancho, int alto, int bits, int modo, unsigned semilla = 1,
                             const BYTE* paleta = nullptr) {
    const auto n = std::size_t(ancho) * std::size_t(alto) * std::size_t(bits) / 8;
    return Imagen<T>(ancho, alto, bits, modo, BytesAleatorios(n, semilla), paleta);
}

/// Bytes that access to one pixel gives.
inline int Bandas(const Vertiz::IRaster& imagen) {
    return imagen.TienePaleta() ? 3 : imagen.BytesPixel();
}

/// All pixels as GetFila gives them, rows from the bottom, without padding.
inline std::vector<BYTE> Pixeles(const Vertiz::IRaster& imagen) {
    const auto alto = std::size_t(std::abs(imagen.Alto()));
    const auto fila = std::size_t(imagen.Ancho()) * std::size_t(Bandas(imagen));
    std::vector<BYTE> pixeles(alto * fila);
    for (std::size_t r = 0; r < alto && fila > 0; ++r)
        EXPECT_TRUE(imagen.GetFila(&pixeles[r * fila], int(r), 0, imagen.Ancho())) << "row " << r;
    return pixeles;
}

/// One pixel; three bytes whatever the depth, those past it 0.
inline std::vector<BYTE> Pixel(const Vertiz::IRaster& imagen, int fila, int columna, int radio = 0) {
    std::vector<BYTE> pixel(3, 0);
    EXPECT_TRUE(imagen.GetPixel(pixel.data(), fila, columna, radio)) << "row " << fila << ", column " << columna;
    return pixel;
}

/// Both have the same size, depth and pixels; tells the first pixel that differs.
inline testing::AssertionResult Iguales(const Vertiz::IRaster& a, const Vertiz::IRaster& b) {
    if (a.Ancho() != b.Ancho() || a.Alto() != b.Alto() || a.BytesPixel() != b.BytesPixel())
        return testing::AssertionFailure()
               << a.Ancho() << " x " << a.Alto() << ", " << a.BytesPixel() << " bytes, is not " << b.Ancho() << " x "
               << b.Alto() << ", " << b.BytesPixel() << " bytes";
    const std::vector<BYTE> pa = Pixeles(a), pb = Pixeles(b);
    if (pa.size() != pb.size()) return testing::AssertionFailure() << "only one has a palette";
    for (std::size_t i = 0; i < pa.size(); ++i)
        if (pa[i] != pb[i]) {
            const auto bandas = std::size_t(Bandas(a)), ancho = std::size_t(a.Ancho());
            return testing::AssertionFailure()
                   << "row " << i / bandas / ancho << ", column " << i / bandas % ancho << ", byte " << i % bandas
                   << ": " << int(pa[i]) << " is not " << int(pb[i]);
        }
    return testing::AssertionSuccess();
}

/// A depth and a home of the pixels.
struct Forma {
    int bits;
    int modo;  ///< not 0: file mode
    friend std::ostream& operator<<(std::ostream& o, const Forma& f) {
        return o << f.bits << " bits, " << (f.modo != 0 ? "file" : "memory");
    }
};
inline constexpr Forma kFormas[] = {{8, 0}, {8, 1}, {24, 0}, {24, 1}};

/// A name for INSTANTIATE_TEST_SUITE_P.
inline std::string NombreForma(const testing::TestParamInfo<Forma>& info) {
    return std::to_string(info.param.bits) + (info.param.modo != 0 ? "BitsFile" : "BitsMemory");
}

/// A test that makes pictures in file mode: their files go to a folder of its own, and none may be left at the end.
class ConTemporales : public testing::Test {
  protected:
    void TearDown() override {
        for (const auto& f : std::filesystem::recursive_directory_iterator(m_Carpeta.Ruta()))
            EXPECT_NE(f.path().extension(), ".tmp") << "left behind: " << f.path();
    }
    CarpetaTemporal m_Carpeta;
};

/// The same, once for each depth and home: INSTANTIATE_TEST_SUITE_P(X, Y, testing::ValuesIn(kFormas), NombreForma).
class PorFormas : public ConTemporales, public testing::WithParamInterface<Forma> {};

}  // namespace imagenes
