// Operations that only this model of picture has: vegetation, grey with its ranges, palettes, colours and layers.

#include "raster/CTiff.h"
#include "raster/Grises.h"
#include "raster/Resultados.h"
#include "raster/TextosProgreso.h"
#include "model/IPorcentaje.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <limits>
#include <utility>

namespace Vertiz {

namespace {

// Least and greatest of the values seen.
struct Rango {
    double minimo = std::numeric_limits<double>::infinity(), maximo = -minimo;

    void Amplia(double valor) {
        minimo = std::min(minimo, valor);
        maximo = std::max(maximo, valor);
    }
};

// Sends a line about each range; nothing when no value was seen.
void Informa(int nivel, std::initializer_list<std::pair<const wchar_t*, const Rango*>> lineas) {
    IPorcentaje* const porcentaje = PorcentajeActual();
    if (porcentaje == nullptr) return;
    for (const auto& [formato, rango] : lineas) {
        if (rango->minimo > rango->maximo) continue;
        CString texto;
        texto.Format(formato, rango->minimo, rango->maximo);
        porcentaje->Mensaje(nivel, texto, 1);
    }
}

// Tells the pixels of one colour. Of a picture with palette the colour is that of its entries, three bytes.
class ColorBuscado {
  public:
    /// @param paleta  null without one
    ColorBuscado(const BYTE* color, int bytes, const BYTE* paleta) : m_nBytes(bytes) {
        std::copy_n(color, bytes == 3 || paleta != nullptr ? 3 : 1, m_Color);
        for (std::size_t i = 0; i < 256; ++i)
            m_bEntradas[i] = paleta != nullptr ? std::equal(m_Color, m_Color + 3, paleta + 4 * i) : i == m_Color[0];
    }
    bool operator()(const BYTE* p) const {
        return m_nBytes == 3 ? std::equal(m_Color, m_Color + 3, p) : m_bEntradas[*p];
    }

  private:
    int m_nBytes;
    BYTE m_Color[3]{};
    bool m_bEntradas[256];
};

// Ten colours to reduce a picture to, blue first.
constexpr BYTE kPaletaPropia[] = {0,   0, 0,   0,   0,   255, 0,   255, 0,   0,   255, 255, 255, 0,   0,
                                  255, 0, 255, 255, 255, 0,   255, 255, 255, 128, 0,   0,   0,   128, 255};

// Finds the nearest colour of a palette, and remembers those found last: pictures have few colours beside their pixels.
class ColorCercano {
  public:
    /// @param salto       bytes from a colour of the palette to the next
    /// @param bytes       bytes of a pixel that are compared, 1 to 3
    /// @param negroDoble  the distance to the first colour counts twice
    ColorCercano(std::span<const BYTE> paleta, std::size_t salto, std::size_t bytes, bool negroDoble)
        : m_Paleta(paleta), m_nSalto(salto), m_nBytes(bytes), m_bNegroDoble(negroDoble), m_Vistos(kVistos) {}

    /// The colour nearest to a pixel, the first of equals.
    const BYTE* operator()(const BYTE* pixel) {
        std::uint32_t clave = 0;
        for (std::size_t i = 0; i < m_nBytes; ++i)
            clave = clave << 8 | pixel[i];
        Visto& visto = m_Vistos[(clave * 2654435761U) >> (32 - kBitsVistos)];
        if (visto.clave != clave) visto = {clave, Busca(pixel)};
        return visto.color;
    }

  private:
    struct Visto {
        std::uint32_t clave = ~0U;  // no pixel's: those have 24 bits at most
        const BYTE* color = nullptr;
    };
    static constexpr int kBitsVistos = 14;
    static constexpr std::size_t kVistos = std::size_t{1} << kBitsVistos;

    const BYTE* Busca(const BYTE* pixel) const {
        const BYTE* mejor = nullptr;
        int distancia = INT_MAX;
        for (std::size_t i = 0; i < m_Paleta.size(); i += m_nSalto) {
            int d = 0;
            for (std::size_t k = 0; k < m_nBytes; ++k)
                d += (pixel[k] - m_Paleta[i + k]) * (pixel[k] - m_Paleta[i + k]);
            if (i == 0 && m_bNegroDoble) d *= 2;
            if (d >= distancia) continue;
            distancia = d;
            mejor = &m_Paleta[i];
        }
        return mejor;
    }

    std::span<const BYTE> m_Paleta;
    std::size_t m_nSalto, m_nBytes;
    bool m_bNegroDoble;
    std::vector<Visto> m_Vistos;
};

}  // namespace

int CTiff::IndiceVegetacion() {
    if (BytesPixel() != 3) return 1;
    Rango verde, rojo, diferencia;  // excess green, excess red
    const int resultado = CambiaFilas(kTextoOperacion, [&](std::span<BYTE> fila) {
        PintaGrises(fila, [&](const BYTE* p) {
            const int suma = p[0] + p[1] + p[2];
            const double divisor = suma != 0 ? suma : 1;
            const double r = p[2] / divisor, g = p[1] / divisor, b = p[0] / divisor;
            const double exG = 2.0 * g - r - b, exR = 1.4 * r - g;
            verde.Amplia(exG);
            rojo.Amplia(exR);
            diferencia.Amplia(exG - exR);
            return exG - exR > 0.0 ? 255 : 0;
        });
    });
    if (resultado == 1)
        Informa(m_nNivelMensajes, {{L"ExG: %.2lf - %.2lf", &verde},
                                   {L"ExR: %.2lf - %.2lf", &rojo},
                                   {L"ExG-ExR: %.2lf - %.2lf", &diferencia}});
    return resultado;
}

int CTiff::AGrises(int desplazamiento) {
    if (BytesPixel() != 3) return 1;
    if (PorcentajeActual() == nullptr) return CRasterDIB::AGrises(desplazamiento);  // nobody to tell the ranges
    Rango tono, saturacion, valor;
    const int resultado = CambiaFilas(kTextoOperacion, [&, gris = ValorGris(desplazamiento)](std::span<BYTE> fila) {
        for (std::size_t i = 0; i < fila.size(); i += 3) {
            const HSV hsv = RGBaHSV(fila[i + 2], fila[i + 1], fila[i]);
            tono.Amplia(hsv.h);
            saturacion.Amplia(hsv.s);
            valor.Amplia(hsv.v);
        }
        PintaGrises(fila, gris);
    });
    if (resultado == 1)
        Informa(m_nNivelMensajes, {{L"Hue min=%.3lf max=%.3lf", &tono},
                                   {L"Satur min=%.3lf max=%.3lf", &saturacion},
                                   {L"Value min=%.3lf max=%.3lf", &valor}});
    return resultado;
}

void CTiff::ReducePaleta(const std::vector<BYTE>* paleta) {
    const auto muestras = std::size_t(NumMuestras()), bytesPixel = std::size_t(BytesPixel());
    if (muestras == 0 || BytesPixelesFila() == 0) return;
    if (paleta != nullptr && (paleta->empty() || paleta->size() % muestras != 0)) return;
    const std::size_t bytes = paleta != nullptr ? std::min(muestras, bytesPixel) : bytesPixel;
    ColorCercano cercano(paleta != nullptr ? std::span(*paleta) : std::span(kPaletaPropia),
                         paleta != nullptr ? muestras : 3, bytes, paleta == nullptr);
    for (int fila = 0; fila < AltoPixeles(); ++fila) {
        const std::span<BYTE> almacen = FilaEnMemoria(fila);
        if (almacen.empty()) return;  // in file mode
        for (std::size_t i = 0; i < BytesPixelesFila(); i += bytesPixel)
            std::copy_n(cercano(&almacen[i]), bytes, &almacen[i]);
    }
}

bool CTiff::CreaSemejante(CTiff& nueva, int ancho) const {
    if (!nueva.Crear(ancho, AltoPixeles(), m_Cabecera.biBitCount, Resolucion(), true, nullptr, Paleta(), false))
        return false;
    nueva.m_BitsMuestra = m_BitsMuestra;
    nueva.m_nMuestrasPixel = m_nMuestrasPixel;
    nueva.m_nBytesMuestra = m_nBytesMuestra;
    nueva.m_nFotometrica = m_nFotometrica;
    return true;
}

int CTiff::ExtraeColor(CTiff** destino, const BYTE* color) {
    const std::size_t bytes = BytesPixelesFila(), paso = std::size_t(BytesPixel());
    if (destino == nullptr || !TienePixeles() || bytes == 0) return 1;
    std::unique_ptr<CTiff> nuevo;
    if (*destino == nullptr) nuevo = std::make_unique<CTiff>(m_bModoFichero);
    CTiff& capa = nuevo != nullptr ? *nuevo : **destino;
    if (&capa != this && !CreaSemejante(capa, Ancho())) return kNoSoportado;

    const ColorBuscado buscado(color, BytesPixel(), TienePaleta() ? m_Paleta.data() : nullptr);
    std::vector<BYTE> copia, salida(bytes);
    for (int fila = 0; fila < AltoPixeles(); ++fila) {
        const std::span<const BYTE> almacen = FilaAlmacen(fila, copia);
        if (almacen.empty()) return kNoSoportado;
        std::ranges::fill(salida, BYTE{255});
        for (std::size_t i = 0; i < bytes; i += paso)
            if (buscado(&almacen[i])) std::copy_n(&almacen[i], paso, &salida[i]);
        if (!capa.EscribeAlmacen(capa.Posicion(fila, 0), salida.data(), bytes)) return kNoSoportado;
    }
    if (nuevo != nullptr) *destino = nuevo.release();
    return 1;
}

void CTiff::Ensancha(int columnas, bool izquierda) {
    const std::size_t bytes = BytesPixelesFila();
    if (columnas <= 0 || columnas > INT_MAX - Ancho() || !TienePixeles() || bytes == 0) return;
    CTiff ancha(m_bModoFichero);
    ancha.m_nNivelMensajes = m_nNivelMensajes;
    ancha.m_sRuta = m_sRuta;
    if (!CreaSemejante(ancha, Ancho() + columnas)) return;
    const ULONGLONG margen = izquierda ? ULONGLONG(columnas) * ULONGLONG(BytesPixel()) : 0;
    std::vector<BYTE> copia;
    for (int fila = 0; fila < AltoPixeles(); ++fila) {
        const std::span<const BYTE> almacen = FilaAlmacen(fila, copia);
        if (almacen.empty() || !ancha.EscribeAlmacen(ancha.Posicion(fila, margen), almacen.data(), bytes)) return;
    }
    TomaImagen(ancha);
}

int CTiff::MezclaSobre(IRaster* otro) {
    if (otro == nullptr || otro->Ancho() != Ancho() || otro->Alto100() != Alto100() ||
        otro->BytesPixel() != BytesPixel())
        return kTamanoMalo;
    const std::size_t bytes = BytesPixelesFila(), paso = std::size_t(BytesPixel());
    if (!TienePixeles() || bytes == 0) return 1;
    const std::size_t pasoOtro = otro->TienePaleta() ? 3 : paso;
    std::vector<BYTE> copia, debajo(std::size_t(Ancho()) * pasoOtro);
    for (int fila = 0; fila < AltoPixeles(); ++fila) {
        const std::span<const BYTE> almacen = FilaAlmacen(fila, copia);
        if (almacen.empty() || !otro->GetFila(debajo.data(), fila, 0, Ancho())) return 1;
        const auto blanco = [&](int c) {
            const BYTE* const p = &debajo[std::size_t(c) * pasoOtro];
            return std::all_of(p, p + pasoOtro, [](BYTE b) { return b == 255; });
        };
        for (int c = 0; c < Ancho();) {  // stretches that aren't white
            if (blanco(c)) {
                ++c;
                continue;
            }
            const int inicio = c;
            while (c < Ancho() && !blanco(c))
                ++c;
            otro->SetFila(&almacen[std::size_t(inicio) * paso], fila, inicio, c - inicio);
        }
    }
    return 1;
}

int CTiff::CuentaColor(const BYTE* color) {
    const std::size_t bytes = BytesPixelesFila(), paso = std::size_t(BytesPixel());
    if (!TienePixeles() || bytes == 0) return 0;
    const ColorBuscado buscado(color, BytesPixel(), TienePaleta() ? m_Paleta.data() : nullptr);
    LONGLONG cuenta = 0;
    std::vector<BYTE> copia;
    for (int fila = 0; fila < AltoPixeles(); ++fila) {
        const std::span<const BYTE> almacen = FilaAlmacen(fila, copia);
        for (std::size_t i = 0; i < bytes && !almacen.empty(); i += paso)
            cuenta += buscado(&almacen[i]);
    }
    return static_cast<int>(std::min<LONGLONG>(cuenta, INT_MAX));
}

}  // namespace Vertiz
