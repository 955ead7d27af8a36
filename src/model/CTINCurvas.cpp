// Contours of a triangulated terrain. On each side a contour passes in one place, worked out from the side alone, so
// that the pieces of two neighbours meet without being compared.

#include "model/CTIN.h"
#include "model/Enteros.h"
#include "model/IPorcentaje.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

namespace Vertiz {
namespace {

constexpr int kNivelMensajes = 3;
constexpr std::uint64_t kPiezasMaximas = 100'000'000;
constexpr unsigned kTriangulosPorPaso = 65536;

// The heights of contours in stored units, by number.
class CNiveles {
  public:
    CNiveles(const CDataCurvas& data, double precision)
        : m_dBase(data.m_dCotaBase * precision), m_dPaso(data.m_dEquidistancia * precision) {}

    [[nodiscard]] double Cota(std::int64_t n) const { return std::round(m_dBase + double(n) * m_dPaso); }

    // The first number whose height is above z.
    [[nodiscard]] std::int64_t Sobre(int z) const {
        auto n = std::int64_t(std::floor((double(z) - m_dBase) / m_dPaso));
        while (Cota(n) <= z)  // more than once where rounding brings the next one down to z
            ++n;
        return n;
    }

  private:
    double m_dBase, m_dPaso;
};

// The contours that cross a triangle: those above its lowest vertex, up to its highest.
struct CTramo {
    std::int64_t desde, hasta;  // the end doesn't belong
};

class CTrazador {
  public:
    CTrazador(const CTIN& tin, const CDataCurvas& data) : m_Tin(tin), m_Niveles(data, tin.Precision()) {}

    [[nodiscard]] CTramo Tramo(unsigned t) const {
        const int a = m_Tin.Vertice(t, 0).z, b = m_Tin.Vertice(t, 1).z, c = m_Tin.Vertice(t, 2).z;
        return {m_Niveles.Sobre(std::min({a, b, c})), m_Niveles.Sobre(std::max({a, b, c}))};
    }

    // The side by which a contour comes into a triangle, and the one by which it leaves: going round the triangle,
    // that on which the ground falls below the contour, and that on which it rises to it.
    [[nodiscard]] std::pair<unsigned, unsigned> Lados(unsigned t, std::int64_t n) const {
        const double cota = m_Niveles.Cota(n);
        std::pair<unsigned, unsigned> lados{0, 0};
        for (unsigned k = 0; k < 3; ++k) {
            const bool desde = m_Tin.Vertice(t, int(k)).z >= cota, hasta = m_Tin.Vertice(t, int((k + 1) % 3)).z >= cota;
            if (desde && !hasta) lados.first = k;
            if (!desde && hasta) lados.second = k;
        }
        return lados;
    }

    [[nodiscard]] CCoor3D<int> Punto(unsigned t, unsigned k, std::int64_t n) const {
        const CPuntoTIN &a = m_Tin.Vertice(t, int(k)), &b = m_Tin.Vertice(t, int((k + 1) % 3));
        const auto z = std::int64_t(m_Niveles.Cota(n));
        return {enteros::Interpola(a.x, b.x, a.z, b.z, z), enteros::Interpola(a.y, b.y, a.z, b.z, z), int(z)};
    }

  private:
    const CTIN& m_Tin;
    CNiveles m_Niveles;
};

bool EsMaestra(const CDataCurvas& data, std::int64_t n) {
    return data.m_nMaestras > 0 && n % data.m_nMaestras == 0;
}

// All contours of a terrain, each piece once. A piece is known by its triangle and its place among those of it.
class CContornos {
  public:
    CContornos(const CTIN& tin, const CDataCurvas& data, CDibujo<int>& dibujo)
        : m_Tin(tin), m_Data(data), m_Trazador(tin, data), m_Dibujo(dibujo) {
        std::uint32_t total = 0;
        m_Primeras.reserve(tin.CantidadTriangulos());
        for (unsigned t = 0; t < tin.CantidadTriangulos(); ++t) {
            m_Primeras.push_back(total);
            if (!tin.EsVisible(t)) continue;
            const CTramo tramo = m_Trazador.Tramo(t);
            total += std::uint32_t(tramo.hasta - tramo.desde);
        }
        m_Hechas.resize(total);
    }

    // The contours that begin in a triangle: those that come in from where there is no surface, or all left.
    void Traza(unsigned t, bool bSoloBordes) {
        const CTramo tramo = m_Trazador.Tramo(t);
        for (std::int64_t n = tramo.desde; n < tramo.hasta; ++n) {
            if (m_Hechas[m_Primeras[t] + std::size_t(n - tramo.desde)]) continue;
            const bool bBorde = m_Tin.LadoVecino(t, m_Trazador.Lados(t, n).first) < 0;
            if (bBorde || !bSoloBordes) Sigue(t, n);
        }
    }

  private:
    void Sigue(unsigned t, std::int64_t n) {
        CLinea<int> linea(EsMaestra(m_Data, n) ? m_Data.m_CodigoMaestra : m_Data.m_Codigo);
        const auto agrega = [&linea](const CCoor3D<int>& p) {
            if (linea.NPuntos() == 0 || !(linea.Punto(int(linea.NPuntos()) - 1) == p)) linea << p;
        };
        agrega(m_Trazador.Punto(t, m_Trazador.Lados(t, n).first, n));
        for (;;) {
            const std::size_t pieza = m_Primeras[t] + std::size_t(n - m_Trazador.Tramo(t).desde);
            if (m_Hechas[pieza]) break;
            m_Hechas[pieza] = true;
            const unsigned sale = m_Trazador.Lados(t, n).second;
            agrega(m_Trazador.Punto(t, sale, n));
            if (m_Tin.LadoVecino(t, sale) < 0) break;
            t = unsigned(m_Tin.Fila(t).m_nVecinos[sale]);
        }
        if (linea.NPuntos() >= 2) m_Dibujo.Inserta(linea);
    }

    const CTIN& m_Tin;
    const CDataCurvas& m_Data;
    CTrazador m_Trazador;
    CDibujo<int>& m_Dibujo;
    std::vector<std::uint32_t> m_Primeras;  // of each triangle: the number of its first piece
    std::vector<bool> m_Hechas;
};

}  // namespace

int CTIN::GeneraCurvas(const CDataCurvas& data) {
    const double paso = data.m_dEquidistancia * Precision(), base = data.m_dCotaBase * Precision();
    constexpr double extremo = 1e12;  // where doubles still tell heights of stored units apart
    if (!(paso >= 1.0 - 1e-9 && paso < extremo) || !(std::abs(base) < extremo)) return 0;
    const CTrazador trazador(*this, data);
    std::uint64_t piezas = 0;
    for (unsigned i = 0; i < CantidadTriangulos(); ++i) {
        if (!EsVisible(i)) continue;
        const CTramo tramo = trazador.Tramo(i);
        piezas += std::uint64_t(tramo.hasta - tramo.desde);
        if (piezas > kPiezasMaximas) return 0;
    }
    m_pCurvas = std::make_shared<const CDataCurvas>(data);
    return 1;
}

CString CTIN::GetCodigoCurvas() const {
    return m_pCurvas ? m_pCurvas->m_Codigo : CString();
}

void CTIN::DameCurvasTriangulo(unsigned i, CDibujo<int>& dibujo, const CString& codigo) const {
    dibujo.Clear();
    if (!m_pCurvas || i >= CantidadTriangulos() || !EsVisible(i)) return;
    const CTrazador trazador(*this, *m_pCurvas);
    const CTramo tramo = trazador.Tramo(i);
    for (std::int64_t n = tramo.desde; n < tramo.hasta; ++n) {
        const auto [entra, sale] = trazador.Lados(i, n);
        const CCoor3D<int> a = trazador.Punto(i, entra, n), b = trazador.Punto(i, sale, n);
        if (a == b) continue;
        CLinea<int> linea(EsMaestra(*m_pCurvas, n) ? m_pCurvas->m_CodigoMaestra : codigo);
        linea.Reserva(2);
        linea << a << b;
        dibujo.Inserta(linea);
    }
}

int CTIN::DameCurvas(CDibujo<int>& dibujo, IPorcentaje* porcentaje) const {
    if (!m_pCurvas) return 1;
    CDibujo<int> halladas(m_Semilla);
    CContornos contornos(*this, *m_pCurvas, halladas);
    for (const bool bSoloBordes : {true, false})
        for (unsigned i = 0; i < CantidadTriangulos(); ++i) {
            if (porcentaje != nullptr && i % kTriangulosPorPaso == 0 &&
                porcentaje->Paso(kNivelMensajes, int(i), int(CantidadTriangulos()), 0) == 0)
                return 2;
            if (EsVisible(i)) contornos.Traza(i, bSoloBordes);
        }
    dibujo.Reserva(dibujo.Cantidad() + halladas.Cantidad());
    for (unsigned i = 0; i < halladas.Cantidad(); ++i)
        dibujo.Inserta(*halladas[i]);
    return 1;
}

}  // namespace Vertiz
