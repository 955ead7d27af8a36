// Parting a picture into regions of like colour: its pixels are the vertices of a graph that edges to the neighbours,
// weighted by the difference of colours, hold together.

#include "raster/CTiff.h"
#include "raster/TextosProgreso.h"
#include "model/Etapa.h"
#include "model/Segmentacion.h"
#include "platform/Memoria.h"

#include <array>
#include <climits>
#include <memory>
#include <new>

namespace Vertiz {

namespace {

using Planos = std::array<CMatriz<float>, 3>;

// The bands, one value a pixel, rows from the bottom; a grey's is in all three.
bool LeePlanos(const IRaster& imagen, Planos& planos) {
    const int ancho = imagen.Ancho(), alto = std::abs(imagen.Alto());
    const std::size_t paso = imagen.BytesPixel() == 1 && !imagen.TienePaleta() ? 1 : 3;
    for (CMatriz<float>& plano : planos)
        plano.Redimensiona(unsigned(alto), unsigned(ancho), 0);
    std::vector<BYTE> fila(std::size_t(ancho) * 3);
    for (int f = 0; f < alto; ++f) {
        if (!imagen.GetFila(fila.data(), f, 0, ancho)) return false;
        for (std::size_t b = 0; b < 3; ++b)
            for (std::size_t c = 0; c < std::size_t(ancho); ++c)
                planos[b].Fila(unsigned(f))[c] = fila[c * paso + (paso == 1 ? 0 : b)];
    }
    return true;
}

// The graph's edges: of each pixel, rows from the bottom, to the right, below, below right and above right.
class Grafo {
  public:
    Grafo(const Planos& planos, bool cierra)
        : m_Planos(planos),
          m_nFilas(int(planos[0].GetFilas())),
          m_nColumnas(int(planos[0].GetColumnas())),
          m_bCierra(cierra) {
        m_Aristas.reserve(std::size_t(m_nFilas) * std::size_t(m_nColumnas) * 4);
    }

    void AnadeFila(int f) {
        for (int c = 0; c < m_nColumnas; ++c) {
            const int derecha = c + 1 < m_nColumnas ? c + 1 : m_bCierra ? 0 : -1;
            Anade(f, c, f, derecha);
            Anade(f, c, f - 1, c);
            Anade(f, c, f - 1, derecha);
            Anade(f, c, f + 1, derecha);
        }
    }

    std::vector<Arista>& Aristas() { return m_Aristas; }

  private:
    void Anade(int f1, int c1, int f2, int c2) {
        if (f2 < 0 || f2 >= m_nFilas || c2 < 0) return;
        const auto diferencia = [&](const CMatriz<float>& plano) {
            return double(plano.Fila(unsigned(f1))[c1]) - double(plano.Fila(unsigned(f2))[c2]);
        };
        m_Aristas.push_back(
            {float(Distancia(diferencia(m_Planos[0]), diferencia(m_Planos[1]), diferencia(m_Planos[2]))),
             Vertice(f1, c1), Vertice(f2, c2)});
    }
    std::uint32_t Vertice(int f, int c) const {
        return std::uint32_t(f) * std::uint32_t(m_nColumnas) + std::uint32_t(c);
    }

    const Planos& m_Planos;
    int m_nFilas, m_nColumnas;
    bool m_bCierra;
    std::vector<Arista> m_Aristas;
};

// Regions with fewer pixels join the neighbour that is most like them.
void JuntaPequenas(Bosque& bosque, const std::vector<Arista>& aristas, int minimo) {
    for (const Arista& arista : aristas) {
        const unsigned a = bosque.Raiz(arista.m_nA), b = bosque.Raiz(arista.m_nB);
        const auto pequena = [&](unsigned raiz) { return std::int64_t{bosque.Cantidad(raiz)} < minimo; };
        if (a != b && (pequena(a) || pequena(b))) bosque.Une(a, b);
    }
}

// The mean colours of regions, by their roots.
class Medias {
  public:
    Medias(const IRaster& imagen, Bosque& bosque, int bytes) : m_Bosque(bosque), m_nBytes(std::size_t(bytes)) {
        const int ancho = imagen.Ancho(), alto = std::abs(imagen.Alto());
        m_Sumas.resize(std::size_t(ancho) * std::size_t(alto) * m_nBytes);
        std::vector<BYTE> fila(std::size_t(ancho) * m_nBytes);
        for (int f = 0; f < alto; ++f) {
            imagen.GetFila(fila.data(), f, 0, ancho);
            for (std::size_t c = 0; c < std::size_t(ancho); ++c) {
                const std::size_t raiz = bosque.Raiz(unsigned(std::size_t(f) * std::size_t(ancho) + c));
                for (std::size_t b = 0; b < m_nBytes; ++b)
                    m_Sumas[raiz * m_nBytes + b] += fila[c * m_nBytes + b];
            }
        }
    }

    // The mean of a pixel's region, rounded.
    void Pinta(unsigned vertice, BYTE* pixel) {
        const std::size_t raiz = m_Bosque.Raiz(vertice), n = m_Bosque.Cantidad(unsigned(raiz));
        for (std::size_t b = 0; b < m_nBytes; ++b)
            pixel[b] = static_cast<BYTE>((m_Sumas[raiz * m_nBytes + b] + n / 2) / n);
    }

  private:
    Bosque& m_Bosque;
    std::size_t m_nBytes;
    std::vector<std::uint64_t> m_Sumas;
};

bool PintaRegiones(const IRaster& imagen, Bosque& bosque, CTiff& destino) {
    const int ancho = imagen.Ancho(), alto = std::abs(imagen.Alto());
    const int bytes = imagen.TienePaleta() ? 3 : imagen.BytesPixel();
    Medias medias(imagen, bosque, bytes);  // first: destino may be the image itself
    if (!destino.Crear(ancho, alto, bytes * 8, imagen.Resolucion(), false, nullptr, nullptr, false)) return false;
    std::vector<BYTE> fila(std::size_t(ancho) * std::size_t(bytes));
    for (int f = 0; f < alto; ++f) {
        for (int c = 0; c < ancho; ++c)
            medias.Pinta(unsigned(f) * unsigned(ancho) + unsigned(c), &fila[std::size_t(c) * std::size_t(bytes)]);
        destino.SetFila(fila.data(), f, 0, ancho);
    }
    return true;
}

}  // namespace

int CTiff::SegmentaImagen(CTiff** destino, float sigma, float c, int minimo, bool cierra, int* componentes) try {
    const int alto = AltoPixeles();
    if (!TienePixeles() || (BytesPixel() != 1 && BytesPixel() != 3)) return 1;
    // Planes, edges with room to sort them, and the forest with its thresholds.
    constexpr ULONGLONG kBytesPixel = 4 * sizeof(float) + 2 * 4 * sizeof(Arista) + 16;
    const ULONGLONG pixeles = ULONGLONG(Ancho()) * ULONGLONG(alto);
    if (pixeles > INT_MAX || !HayMemoria(pixeles * kBytesPixel)) throw std::bad_alloc();
    const Etapa etapa(m_nNivelMensajes, kTextoOperacion);
    Planos planos;
    if (!LeePlanos(*this, planos)) return 0;
    for (CMatriz<float>& plano : planos)
        Suaviza(plano, plano, sigma);
    Grafo grafo(planos, cierra);
    for (int f = 0; f < alto; ++f) {
        grafo.AnadeFila(f);
        if (!etapa.Paso(f + 1, alto)) return 2;
    }
    Bosque bosque;
    SegmentaGrafo(bosque, Ancho() * alto, grafo.Aristas(), c);
    JuntaPequenas(bosque, grafo.Aristas(), minimo);
    if (componentes != nullptr) *componentes = int(bosque.Componentes());
    if (destino == nullptr) return 1;
    auto nuevo = *destino == nullptr ? std::make_unique<CTiff>() : nullptr;
    if (!PintaRegiones(*this, bosque, nuevo != nullptr ? *nuevo : **destino)) return 0;
    if (nuevo != nullptr) *destino = nuevo.release();
    return 1;
} catch (const std::bad_alloc&) {
    return 0;
}

}  // namespace Vertiz
