#pragma once
// The digital elevation model: heights on a regular grid, or on rectangular cells of many sizes.

#include "model/CDataSemilla.h"
#include "model/CDibujo.h"
#include "model/CLinea.h"
#include "model/CMatriz.h"
#include "model/CMaximas.h"
#include "model/CObjetoFichero.h"
#include "model/CPuntoDEM.h"
#include "platform/Exporta.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace Vertiz {

class CIndiceCeldas;
class Parche;
struct PuntoParche;
struct Rayo;
struct RectanguloCelda;

/// Terrain heights in one of two forms.
///
/// *Regular*: a matrix of samples, row 0 in the south and column 0 in the west, at steps of GetCeldaX() and GetCeldaY()
/// from the position given to SetOrigen(). *Cell list*: points, and rectangular cells that index them; points take
/// their X and Y from two lists that they share. EsListaCeldas() tells the form.
///
/// What is stored is in absolute coordinates. Operations on points, lines and rays, and GetMaximasDouble(), work in
/// local ones, which are the absolute ones less the offset of the seed; where a flag `bAbsolutas` is offered it asks
/// for absolute ones.
///
/// A sample is valid when its height is finite and above the null level; anything else is a void. The surface of a cell
/// is bilinear in its four corners. With smoothing it is a Ferguson patch (J. C. Ferguson, "Multivariable curve
/// interpolation", Journal of the ACM 11, 1964): bicubic, through the samples, with the slopes of their vectors at them
/// and no twist, so that on a grid slopes go on over the cells' edges.
///
/// Extents, the count of cells and the index of the cell list are kept, not found out at each question: after writing
/// to matrices or lists call ActualizaCantidades(). Reading from several threads at once is safe.
class LUMBRA_API CDEM : public CObjetoFichero {
  public:
    /// The place of a sample or cell, as the host's selection counts it: rows from the north.
    struct CPosicion {
        unsigned m_nFila = 0, m_nColumna = 0;
        bool operator==(const CPosicion&) const = default;
    };
    /// A point of the cell list.
    struct CPunto {
        float m_fCota = 0.0f;                                           ///< absolute height
        std::uint32_t m_nX = 0, m_nY = 0;                               ///< places in the lists of X and of Y
        std::uint32_t m_nInfo = 0;                                      ///< the application's
        float m_fVectorX = 0.0f, m_fVectorY = 0.0f, m_fVectorZ = 0.0f;  ///< upward normal of the surface; see smoothing
    };
    /// A cell of the cell list: its points in the order south-west, north-west, north-east, south-east. West and south
    /// are those of the first, north that of the second and east that of the fourth.
    struct CCelda {
        std::uint32_t m_nPuntos[4] = {0, 0, 0, 0};
    };

    /// The null level that grids have unless another is set.
    static constexpr double kNuloHabitual = -9989.0;

    /// An empty regular grid: no samples, cells of 1 x 1, the usual null level.
    CDEM();
    /// A regular grid of void samples.
    /// @param celdaX, celdaY  terrain units, finite and above 0 (anything else becomes 1)
    /// @param oeste, sur      absolute position of the sample (0, 0)
    CDEM(unsigned filas, unsigned columnas, double celdaX, double celdaY, double oeste, double sur,
         const CDataSemilla& semilla = CDataSemilla());

    // ---- The regular form. The matrix gives 0.0 outside itself and ignores writing there. ----
    CMatriz<float>& Matriz() { return m_Matriz; }
    const CMatriz<float>& Matriz() const { return m_Matriz; }
    unsigned GetFilas() const { return m_Matriz.GetFilas(); }
    unsigned GetColumnas() const { return m_Matriz.GetColumnas(); }
    double GetCeldaX() const { return m_dCeldaX; }
    double GetCeldaY() const { return m_dCeldaY; }
    /// Refuses sizes that aren't finite and above 0.
    bool SetCelda(double celdaX, double celdaY);
    /// Absolute position of the sample (0, 0): the minimum corner of GetMaximasTotalDouble in plan.
    double GetOeste() const { return m_dOeste; }
    double GetSur() const { return m_dSur; }
    void SetOrigen(double oeste, double sur);

    // ---- Both forms ----
    /// Heights at and below it are voids; absolute.
    double GetNulo() const { return m_dNulo; }
    void SetNulo(double nulo) { m_dNulo = nulo; }
    const CDataSemilla& GetSemilla() const { return m_Semilla; }
    CDataSemilla& Semilla() { return m_Semilla; }
    /// Breaklines, integers on the grid's seed. InsertaRuptura adds to them.
    const CDibujo<int>& Rupturas() const { return m_Rupturas; }
    CDibujo<int>& Rupturas() { return m_Rupturas; }

    // ---- The cell-list form ----
    bool EsListaCeldas() const { return m_bListaCeldas; }
    /// Changes the form; what the other form holds stays.
    void SetListaCeldas(bool bLista) { m_bListaCeldas = bLista; }
    std::vector<CPunto>& Puntos() { return m_Puntos; }
    const std::vector<CPunto>& Puntos() const { return m_Puntos; }
    std::vector<double>& ListaX() { return m_ListaX; }
    const std::vector<double>& ListaX() const { return m_ListaX; }
    std::vector<double>& ListaY() { return m_ListaY; }
    const std::vector<double>& ListaY() const { return m_ListaY; }
    std::vector<CCelda>& Celdas() { return m_Celdas; }
    const std::vector<CCelda>& Celdas() const { return m_Celdas; }

    // ---- Smoothing: an upward normal of the surface for each sample, of any length; the slopes are -x/z and -y/z. One
    // without a z above 0 stands for a level surface. ----
    bool HaySuavizado() const { return m_bSuavizado; }
    void SetSuavizado(bool bSuavizado) { m_bSuavizado = bSuavizado; }
    CMatriz<float>& VectorX() { return m_VectorX; }
    CMatriz<float>& VectorY() { return m_VectorY; }
    CMatriz<float>& VectorZ() { return m_VectorZ; }
    const CMatriz<float>& VectorX() const { return m_VectorX; }
    const CMatriz<float>& VectorY() const { return m_VectorY; }
    const CMatriz<float>& VectorZ() const { return m_VectorZ; }
    /// Finds the vectors from the heights and turns smoothing on. On a grid the slopes are central differences,
    /// one-sided beside a void or an edge; in a cell list the mean of the slopes of the cells that meet in the point.
    void CalculaVectores();

    // ---- CObjetoFichero ----
    /// Without samples or cells; cell sizes, null level and seed stay.
    void Clear() override;
    /// The extents in local coordinates; empty without a valid sample. In plan those of all samples, voids too, in
    /// height those of the valid ones.
    CMaximas<double> GetMaximasDouble() const override;
    /// In local coordinates; replaced by the next ActualizaCantidades.
    void SetMaximasDouble(const CMaximas<double>& maximas) override;
    /// Takes the grid to another reference system: a new grid with the same cells over the terrain's new place, heights
    /// interpolated. @return 1; 0 in cell-list form, and when no point can be transformed
    int Transformacion(const CDataHelmertNTV2& data) override;
    /// Finds the extents, the count of cells and the index of the cell list.
    void ActualizaCantidades() override;

    /// The extents in absolute coordinates, otherwise as GetMaximasDouble.
    const CMaximas<double>& GetMaximasTotalDouble() const { return m_Maximas; }
    /// Cells whose four corners are valid.
    std::size_t DameCeldas() const { return m_nCeldas; }

    /// The sample is inside the matrix and valid. In cell-list form `fila` is the point's index.
    bool EsValido(unsigned fila, unsigned columna) const;
    /// The four corners of the square whose south-west sample is (fila, columna) are valid.
    /// @param paso  side of the square, in samples. In cell-list form `fila` is the cell's index, the rest isn't read
    bool EsCeldaValida(unsigned fila, unsigned columna, unsigned paso) const;

    /// The surface's height at a fraction of a cell.
    /// @param punto      in: the cell; out: x, y and the absolute height z
    /// @param fraccionX  from the west, 0 to 1; at 0 and 1 only the samples of that side have to be there and valid
    /// @param fraccionY  from the south
    /// @param origenX, origenY  taken away from the absolute x and y: 0 gives absolute, the seed's offset local ones
    /// @param bSuavizado        the smooth surface, if the grid has one
    /// @param bSoloCota         x and y stay as they are
    /// @return false, with nothing changed, outside the cell or the grid, and in a void
    bool DamePunto(CPuntoDEM& punto, double fraccionX, double fraccionY, double origenX, double origenY,
                   bool bSuavizado, bool bSoloCota) const;

    /// Puts a point on the surface (the smooth one when the grid is smoothed).
    /// @param punto  in: x, y; out: z
    /// @param celda  out, may be null: the point with its cell
    /// @return false, with nothing changed, outside the grid and in a void
    bool Proyecta(CCoor3D<double>& punto, CPuntoDEM* celda, bool bAbsolutas) const;
    /// Puts a line on the surface.
    /// @param bInserta   adds the points where the line crosses the grid's rows and columns, so that it follows the
    ///                   terrain; they take the Tipo of the point before
    /// @param bConserva  points without terrain stay as they are; otherwise they go
    /// @return true when every point of the line got a height
    bool Proyecta(CLinea<double>& linea, bool bInserta, bool bConserva, bool bAbsolutas) const;

    /// The point where a ray first meets the surface, from either side.
    ///
    /// The ray starts at `desde` (the eye, when a click is looked for), passes through `punto` and goes on. Its cells
    /// are walked one by one; in each the surface, bilinear or smooth, is met exactly: along the ray its height is a
    /// polynomial, of degree 2 or 6, whose first root is parted by subdivision in Bernstein form.
    /// @param resultado  may be one of the arguments
    /// @return false, with nothing changed: nothing is met, the two points are one, or a coordinate isn't finite
    bool InterseccionVector(const CCoor3D<double>& punto, const CCoor3D<double>& desde,
                            CCoor3D<double>& resultado) const;

    /// Appends the outline of the valid cells, with their heights: closed lines of code "LIMITE", counter-clockwise
    /// round terrain and clockwise round holes, integers on the grid's seed. Parts that touch only in a corner have
    /// outlines of their own.
    /// @return 1; 0 when local coordinates don't fit in the drawing's integers, and the drawing stays as it was
    int DameBase(CDibujo<int>& dibujo) const;

    /// Adds a copy of a line to the breaklines. @return false for a line of fewer than two points
    bool InsertaRuptura(const CLinea<int>& linea);

  private:
    bool TieneVectores() const;
    bool EsCota(float cota) const;
    bool Sitio(double x, double y, double origenX, double origenY, CPuntoDEM& celda) const;
    std::vector<double> Cortes(const CCoor3D<double>& a, const CCoor3D<double>& b, double origenX,
                               double origenY) const;
    bool CortaMatriz(const Rayo& rayo, CCoor3D<double>& resultado) const;
    bool CortaLista(const Rayo& rayo, CCoor3D<double>& resultado) const;
    std::vector<std::vector<CCoor3D<double>>> ContornosMatriz() const;
    std::vector<std::vector<CCoor3D<double>>> ContornosLista() const;
    void CuentaMatriz();
    void CuentaLista();
    void CalculaVectoresLista();
    bool DameRectangulo(unsigned celda, RectanguloCelda& rectangulo) const;
    std::optional<Parche> DameParche(unsigned fila, unsigned columna, const PuntoParche& a, const PuntoParche& b,
                                     bool bSuavizado) const;

    CMatriz<float> m_Matriz, m_VectorX, m_VectorY, m_VectorZ;
    double m_dNulo = kNuloHabitual;
    double m_dCeldaX = 1.0, m_dCeldaY = 1.0;
    double m_dOeste = 0.0, m_dSur = 0.0;
    bool m_bSuavizado = false, m_bListaCeldas = false;
    CDataSemilla m_Semilla;
    CMaximas<double> m_Maximas;
    std::size_t m_nCeldas = 0;
    CDibujo<int> m_Rupturas;
    std::vector<CPunto> m_Puntos;
    std::vector<double> m_ListaX, m_ListaY;
    std::vector<CCelda> m_Celdas;
    std::shared_ptr<const CIndiceCeldas> m_pIndice;  // never changed once made: copies of the grid share it
};

}  // namespace Vertiz
