#pragma once
// A triangulated terrain.

#include "model/CDataSemilla.h"
#include "model/CDataTIN.h"
#include "model/CDibujo.h"
#include "model/CMaximas.h"
#include "model/CObjetoFichero.h"
#include "model/CSetPuntosMdt.h"
#include "model/CTriangulo.h"
#include "model/CVolumen.h"
#include "platform/Exporta.h"

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace Vertiz {

class CBusquedaTIN;
class IPorcentaje;

/// A triangulated irregular network: points, and triangles between them that know their neighbours. Integers on its
/// seed.
///
/// A triangle is *shown* when it isn't deleted and has three vertices that aren't either; the surface is made of those.
/// Triangles turn counterclockwise in plan. An object's walls may stand upright, with no area in plan: no point of the
/// plan lies in them.
///
/// Copies are whole: points, triangles, data. Pointers to points, and so the triangles that Triangulo() gives, last
/// until points are added or the terrain goes.
///
/// Extents and the search for triangles rest on what Toma() and ActualizaCantidades() find out. After points were moved
/// or triangles changed call the latter: until then points may not be found, and nothing worse.
/// @thread any number of readers, or one writer: reading changes nothing
class LUMBRA_API CTIN : public CObjetoFichero {
  public:
    /// A triangle by the places of its vertices: what the terrain stores, 32 bytes.
    struct CFila : CMarcasTriangulo {
        std::array<std::uint32_t, 3> m_nVertices{};  ///< numbers, from 1; 0 for none
        std::array<std::int32_t, 3> m_nVecinos{-1, -1, -1};
    };

    /// Values of GetTipo that have a meaning here.
    enum : std::uint8_t { tipoTerreno = 0, tipoCubicacion = 2, tipoEdificio = 4, tipoSolido = 6 };

    explicit CTIN(const CDataSemilla& semilla = CDataSemilla());
    /// @param tipo      see GetTipo
    /// @param mensajes  level of messages
    CTIN(int tipo, CNivelMensajes mensajes, const CDataSemilla& semilla, const CDataTIN& data);
    CTIN(CTIN&&) noexcept;
    CTIN& operator=(CTIN&&) noexcept;
    CTIN(const CTIN&);
    CTIN& operator=(const CTIN&);
    ~CTIN() override;

    // ---- What it is ----
    /// 2 cut and fill: heights are those of one surface over another; 4 and 6 an object with codes of roof and wall;
    /// others as the application has them.
    [[nodiscard]] std::uint8_t GetTipo() const { return m_nTipo; }
    void SetTipo(std::uint8_t tipo) { m_nTipo = tipo; }
    [[nodiscard]] const CDataSemilla& GetSemilla() const { return m_Semilla; }
    [[nodiscard]] double GetOrigenX() const { return m_Semilla.GetX(); }
    [[nodiscard]] double GetOrigenY() const { return m_Semilla.GetY(); }
    /// Stored units in a terrain unit.
    [[nodiscard]] double Precision() const { return m_Semilla.Precision(); }
    [[nodiscard]] const CDataTIN& GetData() const { return m_Data; }
    void SetData(const CDataTIN& data) { m_Data = data; }
    [[nodiscard]] const CString& GetCodTejado() const { return m_Data.m_CodTejado; }
    [[nodiscard]] const CString& GetCodPared() const { return m_Data.m_CodPared; }

    // ---- Points and triangles, the deleted ones included ----
    [[nodiscard]] unsigned CantidadPuntos() const { return m_Puntos.size(); }
    /// @param i  below CantidadPuntos()
    [[nodiscard]] const CPuntoTIN& Punto(unsigned i) const { return m_Puntos.at(i); }
    [[nodiscard]] const CSetPuntosMdt& Puntos() const { return m_Puntos; }
    [[nodiscard]] unsigned CantidadTriangulos() const { return static_cast<unsigned>(m_Triangulos.size()); }
    /// A copy of a triangle. @param i  below CantidadTriangulos()
    [[nodiscard]] CTriangulo Triangulo(unsigned i) const;
    /// The same as it is stored, for those who walk many. A vertex may be 0.
    [[nodiscard]] const CFila& Fila(unsigned i) const { return m_Triangulos[i]; }
    /// The vertices of a shown triangle. @param k  0 to 2
    [[nodiscard]] const CPuntoTIN& Vertice(unsigned i, int k) const {
        return m_Puntos.at(m_Triangulos[i].m_nVertices[static_cast<unsigned>(k)] - 1);
    }
    /// The triangle is shown.
    [[nodiscard]] bool EsVisible(unsigned i) const;
    /// The side of the shown triangle beyond side k that is the same side, or -1 for a border of the surface.
    /// @param i  shown  @param k  0 to 2
    [[nodiscard]] int LadoVecino(unsigned i, unsigned k) const;
    /// How many triangles are shown.
    [[nodiscard]] unsigned CantidadVisibles() const;

    /// Takes over points and triangles in place of those that it has. Points get their numbers, and deleted ones stay
    /// so. Vertices and neighbours that don't exist become none.
    void Toma(std::vector<CPuntoTIN> puntos, std::vector<CFila> triangulos);
    /// The same for triangles without neighbours, which are found: triangles that share a side in opposite directions.
    /// Of more than two on a side, those after the second have none there. Triangles that turn right in plan are turned
    /// round.
    void TomaSueltos(std::vector<CPuntoTIN> puntos, std::vector<CFila> triangulos);
    /// Replaces point i but for its number, which only says whether it is deleted.
    /// @return false for an index out of range
    bool ModificaPunto(const CPuntoTIN& punto, unsigned i);
    /// Replaces vertices, neighbours and marks of triangle i. A vertex that isn't the terrain's becomes none.
    /// @return false for an index out of range
    bool ModificaTriangulo(const CTriangulo& triangulo, unsigned i);
    /// Marks triangle i as deleted. @return false for an index out of range
    bool BorraTriangulo(unsigned i);
    /// Marks as deleted the triangles outside the limits: those from which an even number of limits has to be crossed
    /// to get out. So a limit inside another bounds a hole; without limits all triangles go.
    /// @return how many triangles are left
    unsigned BorraTriangulosSegunLimite();

    // ---- Types and textures ----
    /// The types that occur among the triangles that aren't deleted, in order, without 0.
    /// @param tipos        out: replaced
    /// @param cantidades   may be null; out: how many triangles are of each
    /// @param superficies  may be null; out: their area in plan, square terrain units
    void GetTiposTriangulos(std::vector<int>& tipos, std::vector<unsigned>* cantidades,
                            std::vector<double>* superficies) const;
    /// Takes a kind of texture from all triangles that have it.
    /// @param indice  of the texture; those above it go down by one; -1 whatever index
    void QuitaTexturas(unsigned tipo, int indice);

    // ---- CObjetoFichero ----
    /// Without points, triangles and contours; seed, type and codes stay.
    void Clear() override;
    /// The extents of the points that aren't deleted, local.
    [[nodiscard]] CMaximas<double> GetMaximasDouble() const override;
    [[nodiscard]] const CMaximas<int>& GetMaximasInt() const { return m_Maximas; }
    void SetMaximasDouble(const CMaximas<double>& maximas) override;
    int Transformacion(const CDataHelmertNTV2& data) override;
    void ActualizaCantidades() override;

    // ---- Where a point lies (CTINProyecta.cpp) ----
    /// The triangle that a point of the plan lies in. Decided exactly, by walking from a triangle nearby; time doesn't
    /// grow with the terrain.
    /// @param x,y     stored units
    /// @param bBorde  the surface's border belongs to it
    /// @param modo    0 shown triangles only; 1 deleted ones too
    /// @param desde   where to begin, as one who asks for points close to each other knows; -1 where the terrain thinks
    /// @return its index, -1 for none. On a side or vertex, one of those that meet there
    [[nodiscard]] int Localiza(double x, double y, bool bBorde, unsigned modo, int desde = -1) const;
    /// Puts a point on the surface.
    /// @param punto      in: x, y; out: z. Local real coordinates; unchanged on failure
    /// @param bBorde     the surface's border belongs to it
    /// @param modo       0 shown triangles only; 1 deleted ones too
    /// @param triangulo  may be null; in: where to begin, or anything; out: where the point lies
    /// @return false outside the surface
    bool Proyecta(CCoor3D<double>& punto, bool bBorde, unsigned modo, unsigned* triangulo) const;
    /// The same in stored units: exact, rounded once.
    bool Proyecta(CCoor3D<int>& punto, bool bBorde, unsigned modo, unsigned* triangulo) const;
    /// Puts a line on the surface. Stored units.
    /// @param bInserta   adds the points where it crosses sides, so that it follows the surface; they take the Tipo of
    ///                   the point before
    /// @param bConserva  points without surface stay as they are; otherwise they go
    /// @param bBorrados  deleted triangles count too
    /// @param sube       added to each height that the surface gives
    /// @param separacion added points closer in plan to the one before, or to the line's next, are left out; 0 none
    /// @param bBorde     the surface's border belongs to it
    /// @return true when every point of the line got a height
    bool Proyecta(CLinea<int>& linea, bool bInserta, bool bConserva, bool bBorrados, int sube, int separacion,
                  bool bBorde) const;

    // ---- Outlines and breaklines (CTINLimites.cpp) ----
    /// Appends the outlines of the surface, with their heights: closed lines, counterclockwise round it and clockwise
    /// round holes. Parts that touch only in a point have outlines of their own.
    /// @param modo   0 all; 1 only those round it; 2 only holes
    /// @param nivel  level of messages for the progress of the application; 0 none
    /// @return 1; 2 cancelled, and the drawing stays as it was
    int Limites(CDibujo<int>& dibujo, int modo, CNivelMensajes nivel) const;
    /// Some shown triangle has a side on a breakline.
    [[nodiscard]] bool HayRupturas() const;
    /// Appends the breaklines, of the code that CDataTIN has for them.
    /// @param tabla        nothing is given unless it has a row for that code
    /// @param bBorrados    those of deleted triangles too
    /// @param bSinLimites  sides that are limits are left out
    /// @param porcentaje   progress (level 3) and cancel, or null
    /// @param limites      may be null: gets the sides that are limits, which `dibujo` then doesn't
    /// @param bJunta       sides make lines as long as they can be, up to where more than two meet; otherwise each is a
    ///                     line of its own
    /// @return 1; 2 cancelled, and the drawings stay as they were
    int DameLineasRuptura(const CDigiTab& tabla, CDibujo<int>& dibujo, bool bBorrados, bool bSinLimites,
                          IPorcentaje* porcentaje, CDibujo<int>* limites, bool bJunta) const;
    /// Appends a closed line of code "TRIANGULO" for each shown triangle: its three points, counterclockwise in plan,
    /// and the first one again.
    /// @param dibujo  integers on this terrain's seed
    void DameTriangulos(CDibujo<int>& dibujo) const;

    // ---- Contours (CTINCurvas.cpp) ----
    //
    // What lies at a contour's height counts as higher: so a contour passes between points, on each side in one place
    // only, a plateau at its height is bounded by one, and pieces of neighbours meet exactly. Higher ground lies to the
    // left of a contour.

    /// Sets how contours are made; from then on there are some.
    /// @return 1; 0, with those before left as they were: the interval isn't finite or is less than a stored unit, or
    ///         there would be more than 100 million pieces
    int GeneraCurvas(const CDataCurvas& data);
    void BorraCurvas() { m_pCurvas.reset(); }
    [[nodiscard]] bool HayCurvas() const { return m_pCurvas != nullptr; }
    /// How they are made, or null for none.
    [[nodiscard]] const CDataCurvas* GetDataCurvas() const { return m_pCurvas.get(); }
    /// The code of contours; empty without any.
    [[nodiscard]] CString GetCodigoCurvas() const;
    /// The pieces of contour in one triangle: lines of two points, upwards.
    /// @param i       triangle; one that isn't shown gives nothing
    /// @param dibujo  replaced
    /// @param codigo  of the lines, but for major ones, which have their own
    void DameCurvasTriangulo(unsigned i, CDibujo<int>& dibujo, const CString& codigo) const;
    /// Appends whole contours, upwards: closed, or from border to border. Linear in the number of pieces.
    /// @return 1; 2 cancelled, and the drawing stays as it was
    int DameCurvas(CDibujo<int>& dibujo, IPorcentaje* porcentaje) const;

    // ---- Areas and volumes (CTINVolumen.cpp), square and cubic terrain units ----
    [[nodiscard]] double SuperficiePlana() const;
    [[nodiscard]] double SuperficieReal() const;
    /// Against the plane z = cota + pendienteX x + pendienteY y, local real coordinates.
    [[nodiscard]] CVolumen Volumen(double cota, double pendienteX = 0.0, double pendienteY = 0.0) const;
    /// Makes this the cut and fill between two surfaces of one seed: type 2, with the heights of the second over the
    /// first where both are. All sides of both are sides here, too.
    /// @return 1; 0 other seeds, or a difference beyond the integers; 2 cancelled. It is empty unless 1
    int Cubica(const CTIN& original, const CTIN& proyecto, IPorcentaje* porcentaje);

  private:
    [[nodiscard]] double AlturaEn(unsigned i, double x, double y) const;

    std::uint8_t m_nTipo = tipoTerreno;
    CDataSemilla m_Semilla;
    CDataTIN m_Data;
    CSetPuntosMdt m_Puntos;
    std::vector<CFila> m_Triangulos;
    CMaximas<int> m_Maximas;
    std::shared_ptr<const CBusquedaTIN> m_pBusqueda;  // never changed once made: copies share it
    std::shared_ptr<const CDataCurvas> m_pCurvas;     // likewise
};

}  // namespace Vertiz
