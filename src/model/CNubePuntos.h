// A set of geodetic points with its reference system, and their transformation as a whole.
#pragma once

#include <vector>

#include "model/CPuntoPortula.h"
#include "model/CSistemaReferencia.h"
#include "model/CUnidadAngular.h"
#include "platform/Exporta.h"

namespace Vertiz {

class CDataTransformacion;

/// Geodetic points in one reference system, kept in the order in which they came.
class LUMBRA_API CNubePuntos {
  public:
    /// @param Angular        unit of the angles, 0 when the coordinates are lengths
    /// @param nLineal        unit of the lengths; 0 the terrain's own, the only one
    /// @param nDecAngulos    decimals that angles are shown with
    /// @param nDecLongitudes decimals that lengths are shown with; stored coordinates are never rounded
    CNubePuntos(const CSistemaReferencia& Sistema, CUnidadAngular Angular, int nLineal, short nDecAngulos,
                short nDecLongitudes);

    /// Appends a copy of a point.
    /// @param bSinRepetir refuse a point whose number the cloud already has, or that lies within dTolerancia of one
    /// @param dTolerancia distance in plan, in the cloud's unit; 0 compares numbers only
    /// @return false when it was refused
    bool Inserta(const CPuntoPortula& Punto, bool bSinRepetir, double dTolerancia);

    unsigned Cantidad() const { return static_cast<unsigned>(m_Puntos.size()); }
    bool Vacia() const { return m_Puntos.empty(); }
    void Clear() { m_Puntos.clear(); }
    void Reserva(unsigned nPuntos) { m_Puntos.reserve(nPuntos); }

    /// Point by index, which is below Cantidad().
    const CPuntoPortula& operator[](unsigned nIndice) const { return m_Puntos[nIndice]; }
    CPuntoPortula& operator[](unsigned nIndice) { return m_Puntos[nIndice]; }

    const CSistemaReferencia& GetSistema() const { return m_Sistema; }
    CUnidadAngular GetUnidadAngular() const { return m_UnidadAngular; }
    int GetUnidadLineal() const { return m_nUnidadLineal; }
    short GetDecimalesAngulos() const { return m_nDecAngulos; }
    short GetDecimalesLongitudes() const { return m_nDecLongitudes; }

    /// All points through a transformation, into Resultado, which keeps its reference system and gets exactly these
    /// points in this order, with numbers and names. Transforma goes from the image's or the local system's side to
    /// the terrain, TransformaInversa from the terrain back: CDataTransformacion tells why. The 2D forms leave z as
    /// it is. A point without an image gets NaN for the coordinates that would change. Resultado may be this cloud.
    /// @return false when at least one point had no image
    bool Transforma2D(CNubePuntos& Resultado, const CDataTransformacion& Data) const;
    bool Transforma3D(CNubePuntos& Resultado, const CDataTransformacion& Data) const;
    bool TransformaInversa2D(CNubePuntos& Resultado, const CDataTransformacion& Data) const;
    bool TransformaInversa3D(CNubePuntos& Resultado, const CDataTransformacion& Data) const;

  private:
    std::vector<CPuntoPortula> m_Puntos;
    CSistemaReferencia m_Sistema;
    CUnidadAngular m_UnidadAngular;
    int m_nUnidadLineal;
    short m_nDecAngulos;
    short m_nDecLongitudes;
};

}  // namespace Vertiz
