#pragma once
// A set of geodetic points with its reference system, and their transformation as a whole.

#include "model/CPuntoPortula.h"
#include "model/CSistemaReferencia.h"
#include "model/CUnidadAngular.h"
#include "platform/Exporta.h"

#include <vector>

namespace Vertiz {

class CDataTransformacion;

/// Geodetic points in one reference system, kept in the order in which they came.
class LUMBRA_API CNubePuntos {
  public:
    /// @param angular        unit of the angles, 0 when the coordinates are lengths
    /// @param lineal        unit of the lengths; 0 the terrain's own, the only one
    /// @param decAngulos    decimals that angles are shown with
    /// @param decLongitudes decimals that lengths are shown with; stored coordinates are never rounded
    CNubePuntos(const CSistemaReferencia& sistema, CUnidadAngular angular, int lineal, short decAngulos,
                short decLongitudes);

    /// Appends a copy of a point.
    /// @param sinRepetir refuse a point whose number the cloud already has, or that lies within tolerancia of one
    /// @param tolerancia distance in plan, in the cloud's unit; 0 compares numbers only
    /// @return false when it was refused
    bool Inserta(const CPuntoPortula& punto, bool sinRepetir, double tolerancia);

    unsigned Cantidad() const { return static_cast<unsigned>(m_Puntos.size()); }
    bool Vacia() const { return m_Puntos.empty(); }
    void Clear() { m_Puntos.clear(); }
    void Reserva(unsigned puntos) { m_Puntos.reserve(puntos); }

    /// Point by index, which is below Cantidad().
    const CPuntoPortula& operator[](unsigned indice) const { return m_Puntos[indice]; }
    CPuntoPortula& operator[](unsigned indice) { return m_Puntos[indice]; }

    const CSistemaReferencia& GetSistema() const { return m_Sistema; }
    CUnidadAngular GetUnidadAngular() const { return m_UnidadAngular; }
    int GetUnidadLineal() const { return m_nUnidadLineal; }
    short GetDecimalesAngulos() const { return m_nDecAngulos; }
    short GetDecimalesLongitudes() const { return m_nDecLongitudes; }

    /// All points through a transformation, into resultado, which keeps its reference system and gets exactly these
    /// points in this order, with numbers and names. Transforma goes from the image's or the local system's side to
    /// the terrain, TransformaInversa from the terrain back: CDataTransformacion tells why. The 2D forms leave z as
    /// it is. A point without an image gets NaN for the coordinates that would change. resultado may be this cloud.
    /// @return false when at least one point had no image
    bool Transforma2D(CNubePuntos& resultado, const CDataTransformacion& data) const;
    bool Transforma3D(CNubePuntos& resultado, const CDataTransformacion& data) const;
    bool TransformaInversa2D(CNubePuntos& resultado, const CDataTransformacion& data) const;
    bool TransformaInversa3D(CNubePuntos& resultado, const CDataTransformacion& data) const;

  private:
    std::vector<CPuntoPortula> m_Puntos;
    CSistemaReferencia m_Sistema;
    CUnidadAngular m_UnidadAngular;
    int m_nUnidadLineal;
    short m_nDecAngulos;
    short m_nDecLongitudes;
};

}  // namespace Vertiz
