// Separable Gaussian smoothing, and the forest that grows into regions.

#include "model/Segmentacion.h"

#include "platform/Memoria.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <new>
#include <numeric>
#include <utility>

namespace Vertiz {

std::vector<float> MascaraGauss(float sigma) {
    if (!(sigma > 0.01f) || std::isinf(sigma)) sigma = 0.01f;
    constexpr float kImposible = 1e15f;
    const auto elementos = static_cast<std::size_t>(std::ceil(std::min(sigma * 4.0f, kImposible))) + 1;
    if (!HayMemoria(elementos * sizeof(float))) throw std::bad_alloc();
    std::vector<float> mascara(elementos);
    for (std::size_t i = 0; i < mascara.size(); ++i)
        mascara[i] = float(std::exp(-0.5 * std::pow(double(i) / double(sigma), 2.0)));
    return mascara;
}

void NormalizaMascara(std::vector<float>& mascara) {
    if (mascara.empty()) return;
    double suma = 0.0;
    for (std::size_t i = 1; i < mascara.size(); ++i)
        suma += std::abs(double(mascara[i]));
    suma = 2.0 * suma + std::abs(double(mascara[0]));
    if (suma == 0.0) return;
    for (float& elemento : mascara)
        elemento = float(elemento / suma);
}

void Convoluciona(const CMatriz<float>& origen, CMatriz<float>& destino, const std::vector<float>& mascara) {
    const std::int64_t columnas = origen.GetColumnas();
    std::vector<float> fila(static_cast<std::size_t>(columnas));
    for (unsigned i = 0; i < origen.GetFilas(); ++i) {
        for (unsigned j = 0; j < columnas; ++j)
            fila[j] = origen.Get(i, j);
        for (std::int64_t j = 0; j < columnas; ++j) {
            double suma = mascara.empty() ? 0.0 : double(mascara[0]) * fila[std::size_t(j)];
            for (std::size_t k = 1; k < mascara.size(); ++k) {
                const auto d = std::int64_t(k);
                const float derecha = fila[std::size_t(std::min(j + d, columnas - 1))];
                const float izquierda = fila[std::size_t(std::max<std::int64_t>(j - d, 0))];
                suma += double(mascara[k]) * (double(derecha) + double(izquierda));
            }
            destino.Set(unsigned(j), i, float(suma));
        }
    }
}

void Suaviza(const CMatriz<float>& origen, CMatriz<float>& destino, float sigma) {
    const unsigned filas = origen.GetFilas(), columnas = origen.GetColumnas();
    if (filas == 0) {
        destino.Redimensiona();
        return;
    }
    std::vector<float> mascara = MascaraGauss(sigma);
    NormalizaMascara(mascara);
    CMatriz<float> girada(columnas, filas, 0);
    Convoluciona(origen, girada, mascara);  // from here on origen isn't read, so it may be destino
    destino.Redimensiona(filas, columnas, 0);
    Convoluciona(girada, destino, mascara);
}

double DiferenciaColor(const CMatriz<float>& a, const CMatriz<float>& b, const CMatriz<float>& c, unsigned fila1,
                       unsigned columna1, unsigned fila2, unsigned columna2) {
    const auto diferencia = [=](const CMatriz<float>& plano) {
        return double(plano.Get(fila1, columna1)) - double(plano.Get(fila2, columna2));
    };
    return Distancia(diferencia(a), diferencia(b), diferencia(c));
}

void Bosque::Reinicia(unsigned vertices) {
    m_nComponentes = vertices;
    m_Vertices.resize(vertices);
    for (unsigned i = 0; i < vertices; ++i)
        m_Vertices[i] = {0, i, 1};
}

unsigned Bosque::Raiz(unsigned vertice) {
    unsigned raiz = vertice;
    while (m_Vertices[raiz].m_nPadre != raiz)
        raiz = m_Vertices[raiz].m_nPadre;
    m_Vertices[vertice].m_nPadre = raiz;
    return raiz;
}

unsigned Bosque::Une(unsigned a, unsigned b) {
    if (m_Vertices[a].m_nRango > m_Vertices[b].m_nRango) std::swap(a, b);
    if (m_Vertices[a].m_nRango == m_Vertices[b].m_nRango) ++m_Vertices[b].m_nRango;
    m_Vertices[a].m_nPadre = b;
    m_Vertices[b].m_nCantidad += m_Vertices[a].m_nCantidad;
    --m_nComponentes;
    return b;
}

// Sorts by ascending weight; equal ones keep their order, and weights that aren't numbers go to the end. A float's bits
// sort as a whole number once those of the negative ones are turned over: three passes by parts of it.
void OrdenaAristas(std::vector<Arista>& aristas) {
    const auto clave = [](const Arista& arista) {
        constexpr std::uint32_t kSigno = 0x80000000U;
        if (std::isnan(arista.m_fPeso)) return ~std::uint32_t{0};
        const auto bits = std::bit_cast<std::uint32_t>(arista.m_fPeso + 0.0f);  // one zero, not two
        return bits & kSigno ? ~bits : bits | kSigno;
    };
    constexpr unsigned kBits = 11, kPartes = 3;
    std::array<std::vector<std::size_t>, kPartes> lugares;
    for (auto& l : lugares)
        l.assign(std::size_t{1} << kBits, 0);
    constexpr auto parte = [](std::uint32_t k, unsigned i) { return k >> kBits * i & ((1U << kBits) - 1); };
    for (const Arista& arista : aristas)
        for (unsigned i = 0; i < kPartes; ++i)
            ++lugares[i][parte(clave(arista), i)];
    std::vector<Arista> otras(aristas.size());
    for (unsigned i = 0; i < kPartes; ++i) {
        std::exclusive_scan(lugares[i].begin(), lugares[i].end(), lugares[i].begin(), std::size_t{0});
        for (const Arista& arista : aristas)
            otras[lugares[i][parte(clave(arista), i)]++] = arista;
        aristas.swap(otras);
    }
}

void SegmentaGrafo(Bosque& bosque, int vertices, std::vector<Arista>& aristas, float c) {
    OrdenaAristas(aristas);
    const auto n = unsigned(std::max(vertices, 0));
    bosque.Reinicia(n);
    std::vector<float> umbrales(n, c);
    for (const Arista& arista : aristas) {
        if (arista.m_nA >= n || arista.m_nB >= n || std::isnan(arista.m_fPeso)) continue;
        const unsigned a = bosque.Raiz(arista.m_nA), b = bosque.Raiz(arista.m_nB);
        if (a == b || arista.m_fPeso > umbrales[a] || arista.m_fPeso > umbrales[b]) continue;
        const unsigned raiz = bosque.Une(a, b);
        umbrales[raiz] = arista.m_fPeso + c / float(bosque.Cantidad(raiz));
    }
}

}  // namespace Vertiz
