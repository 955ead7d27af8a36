// The lines that a triangulated terrain is bounded by and those that it follows.

#include "model/CTIN.h"
#include "model/Enteros.h"
#include "model/IPorcentaje.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace Vertiz {

namespace {

constexpr int kNivelRupturas = 3;
constexpr unsigned kTriangulosPorPaso = 65536;

// Asks now and then whether to go on.
bool Sigue(IPorcentaje* porcentaje, int nivel, unsigned i, unsigned total) {
    return porcentaje == nullptr || i % kTriangulosPorPaso != 0 || porcentaje->Paso(nivel, int(i), int(total), 0) != 0;
}

// The outlines of a surface, side by side.
class CContornos {
  public:
    explicit CContornos(const CTIN& tin) : m_Tin(tin), m_Hechos(std::size_t{tin.CantidadTriangulos()} * 3) {}

    [[nodiscard]] bool Empieza(unsigned t, unsigned k) const {
        return !m_Hechos[std::size_t{t} * 3 + k] && m_Tin.LadoVecino(t, k) < 0;
    }

    // The outline that begins with a side: the next one is found by turning round its end inside the surface, so that
    // what touches in a point only stays apart.
    void Recorre(unsigned t, unsigned k, CLinea<int>& linea) {
        while (!m_Hechos[std::size_t{t} * 3 + k]) {
            m_Hechos[std::size_t{t} * 3 + k] = true;
            linea << m_Tin.Vertice(t, int(k));
            k = (k + 1) % 3;
            // The fan round a point has fewer triangles than there are.
            for (unsigned quedan = m_Tin.CantidadTriangulos(); quedan > 0; --quedan) {
                const int lado = m_Tin.LadoVecino(t, k);
                if (lado < 0) break;
                t = unsigned(m_Tin.Fila(t).m_nVecinos[k]);
                k = (unsigned(lado) + 1) % 3;
            }
        }
    }

  private:
    const CTIN& m_Tin;
    std::vector<bool> m_Hechos;
};

// Above 0 for a line that turns counterclockwise round more than it turns the other way.
int Giro(const CLinea<int>& linea) {
    enteros::Entero area = 0;
    for (unsigned i = 1; i + 1 < linea.NPuntos(); ++i)
        area += enteros::Cruz(linea.Punto(0), linea.Punto(int(i)), linea.Punto(int(i) + 1));
    return enteros::Signo(area);
}

void Pasa(CDibujo<int>& de, CDibujo<int>& a) {
    a.Reserva(a.Cantidad() + de.Cantidad());
    for (unsigned i = 0; i < de.Cantidad(); ++i)
        a.Inserta(*de[i]);
}

}  // namespace

int CTIN::LadoVecino(unsigned i, unsigned k) const {
    const std::int32_t vecino = m_Triangulos[i].m_nVecinos[k];
    if (vecino < 0 || !EsVisible(unsigned(vecino))) return -1;
    const CFila &fila = m_Triangulos[i], &otra = m_Triangulos[std::size_t(vecino)];
    for (unsigned j = 0; j < 3; ++j)
        if (otra.m_nVecinos[j] == std::int32_t(i) && otra.m_nVertices[j] == fila.m_nVertices[(k + 1) % 3] &&
            otra.m_nVertices[(j + 1) % 3] == fila.m_nVertices[k])
            return int(j);
    return -1;
}

int CTIN::Limites(CDibujo<int>& dibujo, int modo, CNivelMensajes nivel) const {
    IPorcentaje* const porcentaje = nivel > 0 ? PorcentajeActual() : nullptr;
    CContornos contornos(*this);
    CDibujo<int> hallados(m_Semilla);
    const CLinea<int> vacia(m_Data.m_CodLimites);
    for (unsigned i = 0; i < CantidadTriangulos(); ++i) {
        if (!Sigue(porcentaje, nivel, i, CantidadTriangulos())) return 2;
        if (!EsVisible(i)) continue;
        for (unsigned k = 0; k < 3; ++k) {
            if (!contornos.Empieza(i, k)) continue;
            CLinea<int> linea(vacia);
            contornos.Recorre(i, k, linea);
            const bool bHueco = Giro(linea) < 0;
            if (modo == 1 ? bHueco : modo == 2 && !bHueco) continue;
            linea.Cierra();
            hallados.Inserta(linea);
        }
    }
    Pasa(hallados, dibujo);
    return 1;
}

bool CTIN::HayRupturas() const {
    for (unsigned i = 0; i < CantidadTriangulos(); ++i)
        if (m_Triangulos[i].TieneRuptura() && EsVisible(i)) return true;
    return false;
}

int CTIN::DameLineasRuptura(const CDigiTab& tabla, CDibujo<int>& dibujo, bool bBorrados, bool bSinLimites,
                            IPorcentaje* porcentaje, CDibujo<int>* limites, bool bJunta) const {
    if (tabla.Busca(m_Data.m_CodRupturas, CTipoEntidad::Linea) == nullptr) return 1;
    CDibujo<int> rupturas(m_Semilla), bordes(m_Semilla);
    const CLinea<int> vacia(m_Data.m_CodRupturas);
    const auto cuenta = [&](unsigned i) {
        const auto& v = m_Triangulos[i].m_nVertices;
        return bBorrados ? v[0] != 0 && v[1] != 0 && v[2] != 0 : EsVisible(i);
    };
    for (unsigned i = 0; i < CantidadTriangulos(); ++i) {
        if (!Sigue(porcentaje, kNivelRupturas, i, CantidadTriangulos())) return 2;
        const CFila& fila = m_Triangulos[i];
        if (!fila.TieneRuptura() || !cuenta(i)) continue;
        for (unsigned k = 0; k < 3; ++k) {
            if (!fila.EsRuptura(int(k))) continue;
            // Of the two triangles at a side the first one gives it.
            const std::int32_t vecino = fila.m_nVecinos[k];
            if (vecino >= 0 && unsigned(vecino) < i && cuenta(unsigned(vecino))) continue;
            const bool bLimite = fila.EsLimite(int(k));
            if (bLimite && bSinLimites && limites == nullptr) continue;
            CLinea<int> linea(vacia);
            linea.Reserva(2);
            linea << Vertice(i, int(k)) << Vertice(i, int((k + 1) % 3));
            (bLimite && limites != nullptr ? bordes : rupturas).Inserta(linea);
        }
    }
    if (bJunta) {
        rupturas.Junta(0, 0, 1, 1, 1, 1, 0, 1);
        bordes.Junta(0, 0, 1, 1, 1, 1, 0, 1);
    }
    Pasa(rupturas, dibujo);
    if (limites != nullptr) Pasa(bordes, *limites);
    return 1;
}

void CTIN::DameTriangulos(CDibujo<int>& dibujo) const {
    const CLinea<int> vacia(L"TRIANGULO");
    for (unsigned i = 0; i < CantidadTriangulos(); ++i) {
        if (!EsVisible(i)) continue;
        CLinea<int> linea(vacia);
        linea.Reserva(4);
        for (const int k : {0, 1, 2, 0})
            linea << Vertice(i, k);
        dibujo.Inserta(linea);
    }
}

}  // namespace Vertiz
