#pragma once
// Smoothing of planes and segmentation of a graph by its lightest edges: the tools that part an image into regions.
//
// The segmentation is the one of P. Felzenszwalb and D. Huttenlocher, "Efficient Graph-Based Image Segmentation",
// International Journal of Computer Vision 59 (2004).

#include "model/CMatriz.h"
#include "platform/Exporta.h"

#include <cmath>
#include <cstdint>
#include <vector>

namespace Vertiz {

/// The right half of a Gaussian, its centre first: ceil(4 sigma) + 1 elements, not normalised.
/// @param sigma  in elements; lower than 0.01 or not finite becomes 0.01
/// @throw std::bad_alloc for one that memory can't hold
LUMBRA_API std::vector<float> MascaraGauss(float sigma);

/// Scales half a symmetric mask so that the whole one's absolute values add up to 1. A mask of zeros stays as it is.
LUMBRA_API void NormalizaMascara(std::vector<float>& mascara);

/// Filters each row of `origen` with a symmetric mask given by its right half, and writes the result **transposed** to
/// `destino`, which has the sides of `origen` swapped. Beyond an end of a row its last element goes on.
LUMBRA_API void Convoluciona(const CMatriz<float>& origen, CMatriz<float>& destino, const std::vector<float>& mascara);

/// Gaussian smoothing of a plane. @param destino  takes the size of `origen`, and may be it
LUMBRA_API void Suaviza(const CMatriz<float>& origen, CMatriz<float>& destino, float sigma);

/// The length of a difference of colours, given by its three channels.
inline double Distancia(double a, double b, double c) {
    return std::sqrt(a * a + b * b + c * c);
}

/// The Euclidean distance of two pixels' values in three planes.
LUMBRA_API double DiferenciaColor(const CMatriz<float>& a, const CMatriz<float>& b, const CMatriz<float>& c,
                                  unsigned fila1, unsigned columna1, unsigned fila2, unsigned columna2);

/// An edge of the graph.
struct LUMBRA_API Arista {
    float m_fPeso = 0.0f;
    std::uint32_t m_nA = 0, m_nB = 0;
};

/// A forest of disjoint sets of vertices.
class LUMBRA_API Bosque {
  public:
    /// Each vertex in a set of its own.
    explicit Bosque(unsigned vertices = 0) { Reinicia(vertices); }
    void Reinicia(unsigned vertices);

    /// The root that stands for the vertex's set. The path of the vertex asked for is shortened, that of others is not.
    unsigned Raiz(unsigned vertice);
    /// Joins the sets of two different roots, the tree of lower rank under the other, a under b at equal ranks.
    /// @return the root of the joined set
    unsigned Une(unsigned a, unsigned b);

    /// Sets left.
    unsigned Componentes() const { return m_nComponentes; }
    /// Vertices in the set of a root.
    unsigned Cantidad(unsigned raiz) const { return m_Vertices[raiz].m_nCantidad; }

  private:
    struct Vertice {
        std::uint32_t m_nRango, m_nPadre, m_nCantidad;
    };

    unsigned m_nComponentes = 0;
    std::vector<Vertice> m_Vertices;
};

/// Parts a graph into regions: edges are taken by ascending weight (they are left sorted), and one joins two regions
/// when it is no heavier than what each allows, the heaviest edge inside it plus c divided by its size. Edges of equal
/// weight keep their order.
/// Edges with a vertex that doesn't exist, or a weight that isn't a number, join nothing.
/// @param bosque  out: the regions
/// @param c       greater values give larger regions
LUMBRA_API void SegmentaGrafo(Bosque& bosque, int vertices, std::vector<Arista>& aristas, float c);

}  // namespace Vertiz
