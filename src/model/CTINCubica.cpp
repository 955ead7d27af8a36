// The cut and fill between two terrains: the sides of both laid over each other, and at each corner the difference of
// the heights.

#include "model/CTIN.h"
#include "model/CTriangulacion.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>

namespace Vertiz {
namespace {

// The sides of shown triangles as lines as long as they come: one for each side would take far more memory.
class CTrayectos {
  public:
    explicit CTrayectos(const CTIN& tin) : m_Tin(tin), m_Primeros(tin.CantidadPuntos() + 1) {
        // The ends of the sides that begin at each point, one list after the other.
        ParaCadaLado([this](unsigned desde, unsigned) { ++m_Primeros[desde + 1]; });
        for (std::size_t i = 1; i < m_Primeros.size(); ++i)
            m_Primeros[i] += m_Primeros[i - 1];
        m_Finales.resize(m_Primeros.back());
        m_Siguientes.assign(m_Primeros.begin(), m_Primeros.end() - 1);
        ParaCadaLado([this](unsigned desde, unsigned hasta) { m_Finales[m_Siguientes[desde]++] = hasta; });
        m_Siguientes.assign(m_Primeros.begin(), m_Primeros.end() - 1);
    }

    void Inserta(CDibujo<int>& dibujo) {
        for (unsigned i = 0; i < m_Tin.CantidadPuntos(); ++i)
            while (Quedan(i)) {
                CLinea<int> linea(L"LADOS");
                linea << m_Tin.Punto(i);
                for (unsigned p = i; Quedan(p);) {
                    p = m_Finales[m_Siguientes[p]++];
                    linea << m_Tin.Punto(p);
                }
                dibujo.Inserta(linea);
            }
    }

  private:
    template <class F>
    void ParaCadaLado(F hace) const {
        for (unsigned i = 0; i < m_Tin.CantidadTriangulos(); ++i) {
            if (!m_Tin.EsVisible(i)) continue;
            const CTIN::CFila& fila = m_Tin.Fila(i);
            for (unsigned k = 0; k < 3; ++k)
                if (m_Tin.LadoVecino(i, k) < 0 || unsigned(fila.m_nVecinos[k]) > i)
                    hace(fila.m_nVertices[k] - 1, fila.m_nVertices[(k + 1) % 3] - 1);
        }
    }
    [[nodiscard]] bool Quedan(unsigned punto) const { return m_Siguientes[punto] < m_Primeros[punto + 1]; }

    const CTIN& m_Tin;
    std::vector<unsigned> m_Primeros, m_Siguientes, m_Finales;
};

CCoor2D<double> Centro(const CTIN& tin, unsigned i) {
    CCoor2D<double> centro;
    for (int k = 0; k < 3; ++k)
        centro += CCoor2D<double>(tin.Vertice(i, k)) / 3.0;
    return centro;
}

}  // namespace

int CTIN::Cubica(const CTIN& original, const CTIN& proyecto, IPorcentaje* porcentaje) {
    if (&original == this || &proyecto == this) {
        CTIN nuevo(*this);
        const int resultado = nuevo.Cubica(original, proyecto, porcentaje);
        *this = std::move(nuevo);
        return resultado;
    }
    Clear();
    m_nTipo = tipoCubicacion;
    m_Semilla = original.m_Semilla;
    if (!(original.m_Semilla == proyecto.m_Semilla)) return 0;
    CDibujo<int> dibujo(m_Semilla);
    for (const CTIN* tin : {&original, &proyecto})
        CTrayectos(*tin).Inserta(dibujo);
    CTIN malla(m_Semilla);
    const int resultado = CTriangulacion().Run(dibujo, malla, 0, porcentaje, 0.1, nullptr);
    if (resultado != 1) return resultado;
    dibujo.Clear();

    // A triangle lies in one of each terrain, or outside, as a whole. What rounding has moved out of a terrain by less
    // than a unit takes the height of the plane that goes on.
    std::vector<CPuntoTIN> puntos;
    std::vector<std::uint32_t> numeros(malla.CantidadPuntos(), 0);
    std::vector<std::int32_t> lugares(malla.CantidadTriangulos(), -1);
    std::vector<CFila> triangulos;
    for (unsigned i = 0; i < malla.CantidadTriangulos(); ++i) {
        const CCoor2D<double> centro = Centro(malla, i);
        const int a = original.Localiza(centro.x, centro.y, true, 0);
        const int b = proyecto.Localiza(centro.x, centro.y, true, 0);
        if (a < 0 || b < 0) continue;
        lugares[i] = std::int32_t(triangulos.size());
        CFila& fila = triangulos.emplace_back();
        for (std::size_t k = 0; k < 3; ++k) {
            const CPuntoTIN& p = malla.Vertice(i, int(k));
            std::uint32_t& numero = numeros[malla.m_Triangulos[i].m_nVertices[k] - 1];
            if (numero == 0) {
                const auto altura = [&p](const CTIN& tin, int desde) {
                    const int t = tin.Localiza(p.x, p.y, true, 0, desde);
                    return tin.AlturaEn(unsigned(t >= 0 ? t : desde), p.x, p.y);
                };
                const double z = altura(proyecto, b) - altura(original, a);
                if (!CabeEnEnteros(CCoor3D<double>(0.0, 0.0, z))) {
                    Clear();
                    return 0;
                }
                puntos.emplace_back(CCoor3D<double>(p.x, p.y, z));
                numero = std::uint32_t(puntos.size());
            }
            fila.m_nVertices[k] = numero;
            fila.m_nVecinos[k] = malla.m_Triangulos[i].m_nVecinos[k];
        }
    }
    for (CFila& fila : triangulos)
        for (std::int32_t& vecino : fila.m_nVecinos)
            vecino = vecino < 0 ? -1 : lugares[std::size_t(vecino)];
    Toma(std::move(puntos), std::move(triangulos));
    return 1;
}

}  // namespace Vertiz
