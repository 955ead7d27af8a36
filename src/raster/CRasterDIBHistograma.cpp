// Histograms of a picture.

#include "raster/CRasterDIB.h"
#include "raster/Grises.h"
#include "raster/TextosProgreso.h"

#include <algorithm>
#include <array>

namespace Vertiz {

namespace {

using Cuentas = std::array<unsigned, 256>;

// Counts of bytes. Neighbours often are alike, and a count has to wait for the one before it of the same value: four
// tables take turns.
class Contador {
  public:
    /// Counts every `paso`-th of some bytes.
    void Cuenta(std::span<const BYTE> bytes, std::size_t paso = 1) {
        std::size_t i = 0;
        for (; i + 4 * paso <= bytes.size(); i += 4 * paso) {
            ++m_Turnos[0][bytes[i]];
            ++m_Turnos[1][bytes[i + paso]];
            ++m_Turnos[2][bytes[i + 2 * paso]];
            ++m_Turnos[3][bytes[i + 3 * paso]];
        }
        for (; i < bytes.size(); i += paso)
            ++m_Turnos[0][bytes[i]];
    }
    Cuentas Suma() const {
        Cuentas suma;
        for (std::size_t i = 0; i < suma.size(); ++i)
            suma[i] = m_Turnos[0][i] + m_Turnos[1][i] + m_Turnos[2][i] + m_Turnos[3][i];
        return suma;
    }

  private:
    Cuentas m_Turnos[4]{};
};

// What stays out of the counts: it is counted with all the rest and taken away at the end.
struct Puros {
    bool sinBlanco, sinNegro;
    unsigned blancos = 0, negros = 0;

    void Busca(std::span<const BYTE> fila) {
        if (!sinBlanco && !sinNegro) return;
        for (std::size_t i = 0; i < fila.size(); i += 3) {
            blancos += EsGris(&fila[i], 255);
            negros += EsGris(&fila[i], 0);
        }
    }
    // @param blanco, negro  what white and black count under
    void Quita(Cuentas& cuentas, int blanco, int negro) const {
        if (sinBlanco) cuentas[std::size_t(blanco)] -= blancos;
        if (sinNegro) cuentas[std::size_t(negro)] -= negros;
    }
};

// Grey, as histograms weigh it.
class Gris {
  public:
    BYTE operator()(const BYTE* p) const { return static_cast<BYTE>(m_Suma(p[0], p[1], p[2])); }

  private:
    SumaPonderada m_Suma{0.0, 0.212655, 0.715158, 0.072187};
};

// Luma of YCbCr.
class Luma {
  public:
    BYTE operator()(const BYTE* p) const { return static_cast<BYTE>(16.0 + m_Suma(p[2], p[1], p[0]) / 256.0); }

  private:
    SumaPonderada m_Suma{0.0, 65.738, 129.057, 25.064};
};

// Counts what `gris` gives for each pixel of a row of 24 bits. @param grises  room for them: counting comes after,
// since it would hold up the sums
template <class F>
void CuentaGrises(std::span<const BYTE> fila, const F& gris, std::vector<BYTE>& grises, Contador& contador) {
    grises.resize(fila.size() / 3);
    const BYTE* p = fila.data();
    for (BYTE& g : grises) {
        g = gris(p);
        p += 3;
    }
    contador.Cuenta(grises);
}

constexpr BYTE kBlanco[3] = {255, 255, 255}, kNegro[3] = {0, 0, 0};

}  // namespace

int CRasterDIB::Histograma(unsigned* cuentas, bool sinBlanco, bool sinNegro) {
    Contador contador;
    Puros puros{sinBlanco, sinNegro};
    const Gris gris;
    const bool color = BytesPixel() == 3;
    std::vector<BYTE> grises;
    const int resultado = MiraFilas(kTextoHistograma, [&](std::span<const BYTE> fila) {
        if (color) {
            CuentaGrises(fila, gris, grises, contador);
            puros.Busca(fila);
        } else {
            contador.Cuenta(fila);
        }
    });
    Cuentas suma = contador.Suma();
    if (color) {
        puros.Quita(suma, gris(kBlanco), gris(kNegro));
    } else {
        if (sinBlanco) suma[255] = 0;
        if (sinNegro) suma[0] = 0;
    }
    std::ranges::copy(suma, cuentas);
    return resultado;
}

int CRasterDIB::Histogramas(unsigned (*tablas)[256], int& minY, int& maxY, bool sinBlanco, bool sinNegro) {
    int resultado = 1;
    if (BytesPixel() == 3) {
        Contador contadores[5];
        Puros puros{sinBlanco, sinNegro};
        const Gris gris;
        const Luma luma;
        std::vector<BYTE> grises;
        resultado = MiraFilas(kTextoHistograma, [&](std::span<const BYTE> fila) {
            CuentaGrises(fila, gris, grises, contadores[0]);
            for (std::size_t banda = 0; banda < 3; ++banda)
                contadores[banda + 1].Cuenta(fila.subspan(banda), 3);
            CuentaGrises(fila, luma, grises, contadores[4]);
            puros.Busca(fila);
        });
        const int blancos[5] = {gris(kBlanco), 255, 255, 255, luma(kBlanco)}, negros[5] = {0, 0, 0, 0, luma(kNegro)};
        for (int i = 0; i < 5; ++i) {
            Cuentas suma = contadores[i].Suma();
            puros.Quita(suma, blancos[i], negros[i]);
            std::ranges::copy(suma, tablas[i]);
        }
    } else {
        resultado = Histograma(tablas[0], sinBlanco, sinNegro);
        for (int i = 1; i < 5; ++i)
            std::ranges::copy(tablas[0], tablas[i]);
    }
    const std::span<const unsigned> y(tablas[4]);
    const auto contada = [](unsigned n) { return n != 0; };
    const auto primera = std::ranges::find_if(y, contada);
    const auto ultima = std::find_if(y.rbegin(), y.rend(), contada);
    minY = primera != y.end() ? static_cast<int>(primera - y.begin()) : 0;
    maxY = ultima != y.rend() ? static_cast<int>(y.rend() - ultima) - 1 : 0;
    return resultado;
}

}  // namespace Vertiz
