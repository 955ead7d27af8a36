// Where a ray meets the grid's surface.
#include "model/CDEM.h"

#include "model/CIndiceCeldas.h"
#include "model/Parche.h"
#include "model/PaseoCeldas.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Vertiz {

namespace {

bool EsFinito(const CCoor3D<double>& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

CCoor3D<double> Punto(const Rayo& rayo, double t) {
    return CCoor3D<double>(rayo.o.x + t * rayo.d.x, rayo.o.y + t * rayo.d.y, rayo.o.z + t * rayo.d.z, 0);
}

/// Where a point lies in a cell, in plan.
PuntoParche EnCelda(const CCoor3D<double>& p, const RectanguloCelda& celda) {
    return {std::clamp((p.x - celda.m_dOeste) / (celda.m_dEste - celda.m_dOeste), 0.0, 1.0),
            std::clamp((p.y - celda.m_dSur) / (celda.m_dNorte - celda.m_dSur), 0.0, 1.0)};
}

/// A ray's way through the surfaces of cells, one after the other.
class CorteRayo {
  public:
    explicit CorteRayo(const Rayo& rayo) : m_Rayo(rayo) {}

    double Parametro() const { return m_dParametro; }
    bool Encontrado() const { return m_dParametro < std::numeric_limits<double>::infinity(); }
    /// The point met, on the surface.
    CCoor3D<double> Resultado() const {
        CCoor3D<double> p = Punto(m_Rayo, m_dParametro);
        p.z = m_dCota;
        return p;
    }

    PuntoParche Lugar(double t, const RectanguloCelda& celda) const { return EnCelda(Punto(m_Rayo, t), celda); }

    /// Looks at a part of the ray that lies in one cell. @return true when the surface was met before the present best
    bool Mira(const Parche& parche, const RectanguloCelda& celda, const TramoRayo& tramo) {
        TramoRayo cerca = tramo;  // where the ray is as high as the cell
        cerca.Recorta(m_Rayo.o.z, m_Rayo.d.z, parche.CotaMinima(), parche.CotaMaxima());
        if (!cerca.EstaVacio()) {
            const CCoor3D<double> a = Punto(m_Rayo, cerca.t0), b = Punto(m_Rayo, cerca.t1);
            if (const auto corte = parche.PrimerCorte(EnCelda(a, celda), a.z, EnCelda(b, celda), b.z))
                return Anota(std::max(tramo.t0, cerca.t0 + *corte * (cerca.t1 - cerca.t0)), parche, celda);
        }
        // A ray that changes sides without a root meets the surface at an end, but for rounding.
        const double entra = Altura(tramo.t0, parche, celda), sale = Altura(tramo.t1, parche, celda);
        if (entra * sale > 0.0) return false;
        return Anota(std::abs(entra) < std::abs(sale) ? tramo.t0 : tramo.t1, parche, celda);
    }

    /// Notes a meeting at a parameter, if it comes before the others.
    bool Anota(double t, const Parche& parche, const RectanguloCelda& celda) {
        if (t >= m_dParametro) return false;
        m_dParametro = t;
        m_dCota = parche.Cota(Lugar(t, celda));
        return true;
    }

    /// How far the ray is above the surface, below it when negative.
    double Altura(double t, const Parche& parche, const RectanguloCelda& celda) const {
        return Punto(m_Rayo, t).z - parche.Cota(Lugar(t, celda));
    }

  private:
    Rayo m_Rayo;
    double m_dParametro = std::numeric_limits<double>::infinity();
    double m_dCota = 0.0;
};

}  // namespace

/// The ray is in local coordinates in plan; its heights are absolute, as the samples'.
bool CDEM::CortaMatriz(const Rayo& rayo, CCoor3D<double>& resultado) const {
    const Reticula celdas{m_dOeste - m_Semilla.GetX(),  m_dSur - m_Semilla.GetY(),      m_dCeldaX, m_dCeldaY,
                          std::int64_t(GetFilas()) - 1, std::int64_t(GetColumnas()) - 1};
    CorteRayo corte(rayo);
    double altura = 0.0;  // over the surface, on leaving the cell before; 0 when that had none
    PaseaCeldas(celdas, rayo, [&](std::int64_t fila, std::int64_t columna, const TramoRayo& tramo) {
        const RectanguloCelda celda{
            celdas.m_dOeste + double(columna) * m_dCeldaX, celdas.m_dSur + double(fila) * m_dCeldaY,
            celdas.m_dOeste + double(columna + 1) * m_dCeldaX, celdas.m_dSur + double(fila + 1) * m_dCeldaY};
        const auto parche = DameParche(unsigned(fila), unsigned(columna), corte.Lugar(tramo.t0, celda),
                                       corte.Lugar(tramo.t1, celda), true);
        if (!parche) {
            altura = 0.0;
            return false;
        }
        // A ray that changes sides between leaving a cell and entering the next meets the surface on their edge, where
        // rounding may hide it from both.
        if (altura * corte.Altura(tramo.t0, *parche, celda) < 0.0) return corte.Anota(tramo.t0, *parche, celda);
        if (corte.Mira(*parche, celda, tramo)) return true;
        altura = corte.Altura(tramo.t1, *parche, celda);
        return false;
    });
    if (corte.Encontrado()) resultado = corte.Resultado();
    return corte.Encontrado();
}

bool CDEM::CortaLista(const Rayo& rayo, CCoor3D<double>& resultado) const {
    if (!m_pIndice) return false;
    const double origenX = m_Semilla.GetX(), origenY = m_Semilla.GetY();
    Reticula cuadros = m_pIndice->Cuadros();
    cuadros.m_dOeste -= origenX;
    cuadros.m_dSur -= origenY;
    CorteRayo corte(rayo);
    PaseaCeldas(cuadros, rayo, [&](std::int64_t fila, std::int64_t columna, const TramoRayo& cuadro) {
        for (const std::uint32_t i : m_pIndice->Cuadro(fila, columna)) {
            RectanguloCelda celda;
            if (i >= m_Celdas.size() || !DameRectangulo(i, celda)) continue;
            celda = {celda.m_dOeste - origenX, celda.m_dSur - origenY, celda.m_dEste - origenX,
                     celda.m_dNorte - origenY};
            TramoRayo tramo;
            tramo.Recorta(rayo.o.x, rayo.d.x, celda.m_dOeste, celda.m_dEste);
            tramo.Recorta(rayo.o.y, rayo.d.y, celda.m_dSur, celda.m_dNorte);
            if (tramo.EstaVacio()) continue;
            const auto parche = DameParche(i, 0, corte.Lugar(tramo.t0, celda), corte.Lugar(tramo.t1, celda), true);
            if (parche) corte.Mira(*parche, celda, tramo);
        }
        // A cell may reach beyond this square, and what it gave there need not be the first.
        return corte.Parametro() <= cuadro.t1;
    });
    if (corte.Encontrado()) resultado = corte.Resultado();
    return corte.Encontrado();
}

bool CDEM::InterseccionVector(const CCoor3D<double>& punto, const CCoor3D<double>& desde,
                              CCoor3D<double>& resultado) const {
    Rayo rayo{desde, punto - desde};
    if (!EsFinito(punto) || !EsFinito(desde) || !EsFinito(rayo.d)) return false;
    if (rayo.d.x == 0.0 && rayo.d.y == 0.0) {
        CCoor3D<double> p = desde;
        if (rayo.d.z == 0.0 || !Proyecta(p, nullptr, false) || (p.z - desde.z) * rayo.d.z < 0.0) return false;
        resultado = p;
        return true;
    }
    rayo.o.z += m_Semilla.GetZ();
    CCoor3D<double> corte;
    if (!(m_bListaCeldas ? CortaLista(rayo, corte) : CortaMatriz(rayo, corte))) return false;
    resultado = CCoor3D<double>(corte.x, corte.y, corte.z - m_Semilla.GetZ(), punto.GetTipoCompleto());
    return true;
}

}  // namespace Vertiz
