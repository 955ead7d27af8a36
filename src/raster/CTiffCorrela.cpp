// Matching of a template by normalised cross-correlation. All values are bytes, so with N cells in the template
//
//     N (sum of products) - (sum of the window) (sum of the template)
//
// and its like for the squares are whole numbers: nothing is rounded before the last division.

#include "raster/CTiff.h"
#include "raster/ConversionColor.h"
#include "raster/CorrelacionFourier.h"
#include "raster/Resultados.h"
#include "raster/TextosProgreso.h"
#include "model/Etapa.h"
#include "platform/Memoria.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <new>

namespace Vertiz {

namespace {

constexpr std::int64_t kMayorPlantilla = 10'000'000;  // cells; the whole numbers stay below 2^63

// What a pixel's hue counts for: greys by their mean, colours by their hue folded about the middle of the circle. White
// counts as nothing.
BYTE ValorTono(int r, int g, int b) {
    constexpr int kCercanos = 25;
    if (r == 255 && g == 255 && b == 255) return 0;
    if (std::abs(r - g) < kCercanos && std::abs(g - b) < kCercanos && std::abs(r - b) < kCercanos)
        return static_cast<BYTE>((r + g + b) / 3);
    double tono = RGBaHSV(r, g, b).h / 360.0 * 255.0;
    if (tono > 127.5) tono = 255.0 - tono;
    return static_cast<BYTE>(2.0 * tono);
}

BYTE Valor(const BYTE* p, unsigned modo) {
    switch (modo) {
        case 0:
            return static_cast<BYTE>(0.2989 * p[2] + 0.587 * p[1] + 0.114 * p[0]);
        case 1:
        case 2:
        case 3:
            return p[3 - modo];
        case 4:
            return ValorTono(p[2], p[1], p[0]);
        default:
            return 0;
    }
}

CPlanoBytes LeePlano(const IRaster& imagen, unsigned modo) {
    CPlanoBytes plano{imagen.Ancho(), std::abs(imagen.Alto()), {}};
    const bool gris = imagen.BytesPixel() == 1 && !imagen.TienePaleta();
    const std::size_t pixeles = std::size_t(plano.m_nAncho) * unsigned(plano.m_nAlto);
    if (!HayMemoria(pixeles)) throw std::bad_alloc();
    plano.m_Valores.resize(pixeles);
    std::vector<BYTE> fila(std::size_t(plano.m_nAncho) * 3);
    BYTE* destino = plano.m_Valores.data();
    for (int f = 0; f < plano.m_nAlto; ++f) {
        if (!imagen.GetFila(fila.data(), f, 0, plano.m_nAncho)) return {};
        for (int c = 0; c < plano.m_nAncho; ++c) {
            const BYTE* const p = &fila[std::size_t(c) * (gris ? 1 : 3)];
            const std::array<BYTE, 3> igual{*p, *p, *p};
            *destino++ = Valor(gris ? igual.data() : p, modo);
        }
    }
    return plano;
}

// Sums of a plane's values and of their squares.
struct Sumas {
    std::int64_t valores = 0, cuadrados = 0;

    void Suma(std::int64_t v, std::int64_t signo = 1) {
        valores += signo * v;
        cuadrados += signo * v * v;
    }
    void Suma(const Sumas& otras, std::int64_t signo) {
        valores += signo * otras.valores;
        cuadrados += signo * otras.cuadrados;
    }
    // N times the sum of the squares of the differences from the mean of n values.
    double Desviacion(std::int64_t n) const { return static_cast<double>(n * cuadrados - valores * valores); }
};

// The sums of the windows of one row of offsets after the other.
class Ventanas {
  public:
    Ventanas(const CPlanoBytes& imagen, int ancho, int alto)
        : m_Imagen(imagen), m_nAncho(ancho), m_nAlto(alto), m_Columnas(unsigned(imagen.m_nAncho)) {}

    // On to row i of offsets, from 0 on without a gap.
    void Baja(int i) {
        const int entra = i, sale = i - m_nAlto;
        for (int signo : {1, -1}) {
            const int y = signo > 0 ? entra : sale;
            if (y < 0 || y >= m_Imagen.m_nAlto) continue;
            const BYTE* const fila = m_Imagen.Fila(y);
            for (std::size_t x = 0; x < m_Columnas.size(); ++x)
                m_Columnas[x].Suma(fila[x], signo);
        }
        m_Ventana = {};
        m_nColumna = 0;
    }

    // The next window of the row.
    const Sumas& Siguiente() {
        const int entra = m_nColumna, sale = m_nColumna - m_nAncho;
        if (entra < m_Imagen.m_nAncho) m_Ventana.Suma(m_Columnas[unsigned(entra)], 1);
        if (sale >= 0) m_Ventana.Suma(m_Columnas[unsigned(sale)], -1);
        ++m_nColumna;
        return m_Ventana;
    }

  private:
    const CPlanoBytes& m_Imagen;
    int m_nAncho, m_nAlto, m_nColumna = 0;
    std::vector<Sumas> m_Columnas;
    Sumas m_Ventana;
};

// How well a window fits the template, as a grey.
class Ajuste {
  public:
    explicit Ajuste(const CPlanoBytes& plantilla) : m_nCeldas(std::int64_t{plantilla.m_nAncho} * plantilla.m_nAlto) {
        for (const BYTE v : plantilla.m_Valores)
            m_Sumas.Suma(v);
        m_dDesviacion = m_Sumas.Desviacion(m_nCeldas);
    }

    BYTE operator()(const Sumas& ventana, std::int64_t productos) const {
        const double potencia = ventana.Desviacion(m_nCeldas) * m_dDesviacion;
        if (potencia == 0.0) return 0;
        const auto comunes = static_cast<double>(m_nCeldas * productos - ventana.valores * m_Sumas.valores);
        return static_cast<BYTE>(std::abs(comunes / std::sqrt(potencia)) * 255.0);
    }

  private:
    std::int64_t m_nCeldas;
    Sumas m_Sumas;
    double m_dDesviacion;
};

void EscribeFila(IRaster& destino, int fila, const std::vector<BYTE>& valores) {
    if (destino.BytesPixel() == 1) {
        destino.SetFila(valores.data(), fila, 0, static_cast<int>(valores.size()));
        return;
    }
    std::vector<BYTE> bgr;
    bgr.reserve(3 * valores.size());
    for (const BYTE v : valores)
        bgr.insert(bgr.end(), 3, v);
    destino.SetFila(bgr.data(), fila, 0, static_cast<int>(valores.size()));
}

// Writes the fit with the template at the image's first pixel, and 0 elsewhere.
void CorrelaOrigen(const CPlanoBytes& imagen, const CPlanoBytes& plantilla, const Etapa& etapa, IRaster& destino) {
    Sumas ventana;
    std::int64_t productos = 0;
    for (int r = 0; r < std::min(imagen.m_nAlto, plantilla.m_nAlto); ++r)
        for (int c = 0; c < std::min(imagen.m_nAncho, plantilla.m_nAncho); ++c) {
            ventana.Suma(imagen.Fila(r)[c]);
            productos += imagen.Fila(r)[c] * plantilla.Fila(r)[c];
        }
    std::vector<BYTE> fila(unsigned(imagen.m_nAncho), BYTE{0});
    for (int f = imagen.m_nAlto - 1; f > 0; --f)
        EscribeFila(destino, f, fila);
    fila[0] = Ajuste(plantilla)(ventana, productos);
    EscribeFila(destino, 0, fila);
    etapa.Paso(1, imagen.m_nAlto);
}

// Writes the fits of all offsets, row by row; rows after a cancel stay 0.
void CorrelaTodo(const CPlanoBytes& imagen, const CPlanoBytes& plantilla, const Etapa& etapa, IRaster& destino) {
    CorrelacionFourier productos(imagen, plantilla);
    Ventanas ventanas(imagen, plantilla.m_nAncho, plantilla.m_nAlto);
    const Ajuste ajuste(plantilla);
    std::vector<BYTE> fila(unsigned(productos.Columnas()));
    bool sigue = true;
    for (int i = 0; i < productos.Filas(); ++i) {
        if (sigue) {
            const std::int64_t* const p = productos.Fila(i);
            ventanas.Baja(i);
            for (std::size_t j = 0; j < fila.size(); ++j)
                fila[j] = ajuste(ventanas.Siguiente(), p[j]);
        }
        EscribeFila(destino, i, fila);
        if (sigue && !etapa.Paso(i + 1, productos.Filas())) {
            sigue = false;
            std::ranges::fill(fila, BYTE{0});
        }
    }
}

}  // namespace

int CTiff::CorrelaPlantilla(IRaster* plantilla, CTiff** destino, unsigned modo, bool completa) try {
    if (plantilla == nullptr || destino == nullptr) return kTamanoMalo;
    const CPlanoBytes modelo = LeePlano(*plantilla, modo), imagen = LeePlano(*this, modo);
    if (modelo.m_Valores.empty() || imagen.m_Valores.empty() ||
        modelo.m_Valores.size() > static_cast<std::size_t>(kMayorPlantilla))
        return kTamanoMalo;
    const int ancho = imagen.m_nAncho + (completa ? modelo.m_nAncho - 1 : 0);
    const int alto = imagen.m_nAlto + (completa ? modelo.m_nAlto - 1 : 0);
    auto nuevo = *destino == nullptr ? std::make_unique<CTiff>() : nullptr;
    CTiff& resultado = nuevo != nullptr ? *nuevo : **destino;
    if (!resultado.Crear(ancho, alto, m_Cabecera.biBitCount, Resolucion(), true, nullptr, nullptr, false)) return 0;
    const Etapa etapa(m_nNivelMensajes, kTextoOperacion);
    if (completa)
        CorrelaTodo(imagen, modelo, etapa, resultado);
    else
        CorrelaOrigen(imagen, modelo, etapa, resultado);
    if (nuevo != nullptr) *destino = nuevo.release();
    return 1;
} catch (const std::bad_alloc&) {
    return 0;
}

}  // namespace Vertiz
