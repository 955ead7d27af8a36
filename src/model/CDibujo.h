#pragma once
// The drawing: a list of entities that share one coordinate scheme, and the geometry that works on all of them.

#include "model/CDataGeneralizacion.h"
#include "model/CDataSemilla.h"
#include "model/CDigiTab.h"
#include "model/CEntidadDigi.h"
#include "model/CLinea.h"
#include "model/CMaximas.h"
#include "model/CObjetoFichero.h"
#include "model/CPosicionEntidad.h"
#include "model/CTipoDentro.h"
#include "platform/Exporta.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace Vertiz {

class IPorcentaje;

/// What kind of file a drawing comes from; it decides how its points are shown and picked.
enum CTipoFicheroDibujo : std::uint16_t {
    fdDibujo = 0,          ///< ordinary drawing
    fdLidar = 1,           ///< airborne point cloud
    fdLaserTerrestre = 2,  ///< terrestrial point cloud
    fdPuntos = 3,          ///< other file of points
};

/// A drawing of lines, texts, curves and point sets. T is int for models in fixed point (stored units are terrain
/// units times Precision()) and double for real coordinates; the seed tells decimals and offset in both.
///
/// The drawing owns its entities. Pointers to them last until the drawing loses or reorders entities; adding entities
/// keeps them. Who changes an entity through its pointer calls ActualizaCantidades() afterwards.
///
/// Operations on areas look at the closed lines that are not erased, in plan. Where closed lines lie inside one
/// another, they bound rings: what an even number of them surround is outside.
/// @thread any number of readers, or one writer
template <class T>
class LUMBRA_API CDibujo : public CObjetoFichero {
  public:
    explicit CDibujo(const CDataSemilla& semilla = CDataSemilla());
    /// Copies take copies of all entities.
    CDibujo(const CDibujo& otro);
    CDibujo(CDibujo&& otro) noexcept;
    CDibujo& operator=(CDibujo otro) noexcept;
    ~CDibujo() override;
    void swap(CDibujo& otro) noexcept;
    std::unique_ptr<CDibujo> Clona() const { return std::make_unique<CDibujo>(*this); }

    // The entities.

    /// Number of entities, the erased ones included; 0 is an empty drawing.
    unsigned Cantidad() const { return unsigned(m_Entidades.size()); }
    /// @param i below Cantidad()
    CEntidadDigi<T>* operator[](unsigned i) { return m_Entidades[i].get(); }
    const CEntidadDigi<T>* operator[](unsigned i) const { return m_Entidades[i].get(); }
    /// Adds a copy of an entity at the end. @return its index
    unsigned Inserta(const CEntidadDigi<T>& entidad);
    /// Adds an entity that was made with new, and takes it over. @return its index
    unsigned Inserta(std::unique_ptr<CEntidadDigi<T>> entidad);
    /// Makes room for a number of entities in all.
    void Reserva(unsigned cantidad) { m_Entidades.reserve(cantidad); }
    void Clear() override;

    CDataSemilla& Semilla() { return m_Semilla; }
    const CDataSemilla& Semilla() const { return m_Semilla; }
    /// How many stored units make a terrain unit: 10 to the seed's decimals in fixed point, 1 with real coordinates.
    double Precision() const;

    std::uint16_t GetTipoFichero() const { return m_nTipoFichero; }
    /// @param tipo  a value of CTipoFicheroDibujo; above 3 counts as an ordinary drawing
    void SetTipoFichero(std::uint16_t tipo) { m_nTipoFichero = tipo; }
    /// Whether it comes from a file of points, kinds 1 to 3.
    bool EsFicheroPuntos() const { return m_nTipoFichero >= fdLidar && m_nTipoFichero <= fdPuntos; }

    // What the drawing keeps count of. Erased entities count, except in the extents: they may come back.

    /// Points of all entities.
    std::uint64_t CantidadPuntos() const { return m_nPuntos; }
    unsigned CantidadTextos() const { return m_nTextos; }
    /// Least and greatest intensity, 0 to 65535, of the points of point sets; both 0 when there are none.
    int IntensidadMinima() const { return m_nIntensidadMin == kSinIntensidad ? 0 : m_nIntensidadMin; }
    int IntensidadMaxima() const { return m_nIntensidadMax; }
    /// Whether some point of a point set has an intensity.
    bool TieneIntensidad() const { return m_nIntensidadMax > 0; }
    void ActualizaCantidades() override;

    CMaximas<double> GetMaximasDouble() const override;
    /// The extents of what is shown: entities and points that a table hides are left out, those that no table knows
    /// count as shown.
    /// @param absolutas  true adds the seed's offset; false gives local real coordinates
    /// @param digi       styles of entities, by their code
    /// @param lidar      styles of points by class, codes "0" to "255"
    /// @param eco        styles of points by echo, codes "return-returns" as in "1-3"
    ///                   Each table may be null.
    CMaximas<double> GetMaximasDouble(bool absolutas, const CDigiTab* digi, const CDigiTab* lidar,
                                      const CDigiTab* eco) const;
    /// The extents in stored units, rounded to integers outwards where they are real.
    CMaximas<int> GetMaximasInt() const;
    void SetMaximasDouble(const CMaximas<double>& maximas) override;

    int Transformacion(const CDataHelmertNTV2& data) override;

    // Order, selection, deletion.

    /// Sorts the entities; equal ones keep their order. Texts and other entities without the quantity asked for count
    /// as 0.
    /// @param criterio    0 the order of the entities themselves (operator<), 1 length in plan, 2 area in plan (open
    ///                    lines 0), 3 the value of a register
    /// @param ascendente  not 0: the least first
    /// @param registro    number of the register for criterio 3, else -1
    void Sort(int criterio, int ascendente, int registro);
    /// All that is not selected, erased or hidden. Positions are (entity, -1), in point sets (entity, point).
    /// @param seleccion  sorted, without duplicates; a position on a vertex of another entity stands for the entity,
    ///                   and (set, -1) for all points of the set
    /// @param nueva      out: sorted
    /// @param digi,lidar,eco  as in GetMaximasDouble
    void InvierteSeleccion(const std::vector<CPosicionEntidad>& seleccion, std::vector<CPosicionEntidad>& nueva,
                           const CDigiTab* digi, const CDigiTab* lidar, const CDigiTab* eco) const;
    /// Erases entities and points of point sets, so that they can be brought back. An entity is marked as erased where
    /// it stands, and so is a set that loses all its points. Otherwise the points leave their set, the later ones
    /// move up, and one erased set for each set touched is added at the end of the drawing to keep them.
    /// @param posiciones  in any order; those of no entity or point are passed over
    void MarcaBorrado(const std::vector<CPosicionEntidad>& posiciones);

    // Areas.

    /// Where a point lies, in plan: 1 outside, 2 inside, 3 or 4 on a line, as CLinea::EstaDentro tells for it.
    CTipoDentro EstaDentro(const CCoor3D<T>& punto, bool conCota) const;
    /// Takes the holes out: the closed lines that an odd number of larger ones surround.
    /// @param islas  gets them, after what it holds already; null drops them
    /// @return how many they are
    unsigned BorraIslas(CDibujo* islas);
    /// Cuts lines with a closed one.
    /// @param entrada   what is cut; entities of fewer than two points and texts are passed over
    /// @param limite    the closed line; heights don't matter. Points where it cuts get their height from the line cut
    /// @param salida    out: the pieces only, with code and attributes of their lines and in the order of these; it may
    ///                  not be entrada
    /// @param dentro    not 0: what lies inside or on the limit; 0: what lies outside
    /// @param abiertas  not 0: all lines are cut as lines; 0: closed lines are cut as areas and give closed pieces, the
    ///                  outer ones first, each followed by its holes; new corners take heights from both lines
    /// @param porcentaje  progress and cancel, or null
    /// @return 1 done; 0 when limite is not a valid closed line; 2 cancelled, with the pieces made so far
    static int CortaConLimite(const CDibujo& entrada, const CLinea<T>& limite, CDibujo& salida, int dentro,
                              int abiertas, IPorcentaje* porcentaje);

    // Joining, thinning, convex pieces.

    /// Adds a line, or lengthens one by it: the latest open line of the same code that ends, in plan, where this line
    /// begins or ends takes its points, turned round if need be. Lines grow at their last point only, so that
    /// each call takes constant time; what could still be joined is the work of Junta(). A line that comes to
    /// its own first point is closed.
    /// @return index of the entity that has the points now
    unsigned JuntaAntesDeInsertar(const CLinea<T>& linea);
    /// Joins open lines end to end into longer ones, in plan, in linear time. Where more than two ends meet, a line
    /// goes on as straight as it can, and one that comes back to a point where it has been is closed there: outlines
    /// that touch at a corner come out apart. The joined line takes place, direction, code and attributes of its
    /// earliest part. Ends in real coordinates meet when they are within 0.01 units, which makes up for rounding.
    /// @param distancia     ends this far apart in plan still meet, stored units
    /// @param cota          and this far apart in height, if comparaCotas
    /// @param mismoCodigo   not 0: only lines of the same code are joined
    /// @param invierte      not 0: a line may be turned round to fit
    /// @param cierra        not 0: a chain whose ends meet is closed exactly
    /// @param respetaNudos  not 0: nothing is joined where more than two ends meet
    /// @param comparaCotas  not 0: ends meet only when their heights agree, too
    /// @param quitaDobles   not 0: repeated points of the joined lines are taken out
    /// @return 1
    int Junta(double distancia, double cota, int mismoCodigo, int invierte, int cierra, int respetaNudos,
              int comparaCotas, int quitaDobles);
    /// Thins the lines by the method of Douglas and Peucker, with the limits that data gives. Ends of open lines stay,
    /// closed lines stay closed, though they may begin at another corner. One that would come to cross itself or to
    /// lose its area is thinned less, unless data allows it; then, a closed line left with fewer than three corners is
    /// removed.
    /// @param nivel       level of messages for porcentaje
    /// @param porcentaje  progress and cancel, or null
    /// @return 1 done, 2 cancelled, with the lines thinned so far
    int Generaliza(const CDataGeneralizacion& data, CNivelMensajes nivel, IPorcentaje* porcentaje);
    /// Puts convex closed lines, counter-clockwise in plan, in place of the closed lines. They cover exactly what those
    /// surround, holes left out, without overlap. They have no corners but those of the closed lines (and the points
    /// where these cross), each with its height, so that neighbours share all of them. Each takes its code from a line
    /// that it lies on. All other entities stay.
    /// @return 1 done; 0 when it can't be done (coordinates that aren't finite), and the drawing stays as it was
    int GeneraConvexos();

    // Files.

    /// Adds the lines of a text file with a row for each point: code, x, y and z in absolute terrain units, parted by
    /// blanks, tabs, commas or semicolons; the decimal sign is a point. Rows of one code that follow each other are one
    /// line, and an empty row ends it. A row that begins with "#" is a remark. UTF-8 is read, and Windows-1252.
    /// docs/breaklines.md tells more.
    /// @param porcentaje  progress (of 100), cancel and messages, at this object's level; null takes the application's
    /// @return 1 done; 2 cancelled; 0 when the file can't be read or has a row that isn't right: a message tells which.
    ///         After 0 and 2 the drawing is as before
    int Read(const CString& fichero, IPorcentaje* porcentaje = nullptr);

  private:
    struct CExtremos;
    static constexpr int kSinIntensidad = 65536;

    void Cuenta(const CEntidadDigi<T>& entidad);
    void Recuenta();
    void Quita(const std::vector<bool>& sobran);
    bool EsRecinto(unsigned i) const;

    CDataSemilla m_Semilla;
    std::vector<std::unique_ptr<CEntidadDigi<T>>> m_Entidades;
    CMaximas<T> m_Maximas;
    std::uint64_t m_nPuntos = 0;
    unsigned m_nTextos = 0;
    int m_nIntensidadMin = kSinIntensidad;
    int m_nIntensidadMax = 0;
    std::uint16_t m_nTipoFichero = fdDibujo;
    std::unique_ptr<CExtremos> m_pExtremos;  // where lines end, for JuntaAntesDeInsertar; made when first needed
};

extern template class CDibujo<int>;
extern template class CDibujo<double>;

}  // namespace Vertiz
