#pragma once
// The scene of a regular elevation grid.

#include "terrain/CEscenaMDT.h"
#include "model/CDEM.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

class CTintaAlturas;
struct EncajeTeselas;

/// Shows a digital elevation model, in either of its forms: a matrix of heights, or a list of cells.
///
/// Settings that steer it: `Quad` 0 strips, 1 quads, 2 points, 3 no surface; `TipoColorMDT` 0 wire, 2 tint by height, 6
/// cut and fill, others plain; `SombraCeldas` 0 one colour (`ColorDEM`), else four fixed tints a cell;
/// `PuntosSuavizado` above 0 divides each cell that often, when the grid is smoothed, below 0 leaves samples out. A
/// grid of more than five million samples is thinned by itself.
class LUMBRA_API CEscenaDEM : public CEscenaMDT {
  public:
    CEscenaDEM();
    /// @param pDEM  the model, borrowed: it must outlive the scene
    explicit CEscenaDEM(Vertiz::CDEM* pDEM);
    /// A copy that shows another grid, or the same one. They share context and lists as all copies do.
    CEscenaDEM(const CEscenaDEM& otra, Vertiz::CDEM* pDEM);
    CEscenaDEM(const CEscenaDEM& otra);
    CEscenaDEM& operator=(const CEscenaDEM& otra);
    CGL& operator=(const CGL& otra) override;
    ~CEscenaDEM() override;

    /// Takes a grid, borrowed; null for none. It shows after the next OnZoomExtension and Iniciar.
    void SetDEM(Vertiz::CDEM* pDEM) { m_pDEM = pDEM; }
    Vertiz::CDEM* GetDEM() const { return m_pDEM; }
    /// One sample in how many rows and columns the mesh shows, and into how many each cell is divided; one of the two
    /// is 1. As the settings and the grid are now; a mesh that found no memory took a larger step.
    int GetPasoMalla() const { return CalculaPaso(m_nPuntosSuavizado).x; }
    int GetSubdivisionMalla() const { return CalculaPaso(m_nPuntosSuavizado).f; }

    /// As CGL::Destruir; also unloads the images, whose files are deleted, and lets the grid go.
    void Destruir();

    // ---- Images ----------------------------------------------------------------------------------------------------
    /// Layout whose tiles hold whole cells. The record needs its `m_dSizePixel`; cells a tile, pixels of use, rows and
    /// columns are set. Rows and columns are 0 without a grid, with a size that isn't above 0, and when a cell has more
    /// pixels than the largest texture.
    bool SetNumFilasCols(int& filasTextura, int& colsTextura, int filas, int cols, CDataTexturas& registro) override;
    using CEscenaMDT::CargarImagen;
    /// Cuts an image into tiles and drapes it. In memory there are never more than a tile and a row of it.
    ///
    /// Colours come from 24 bits; the image is sampled at the nearest pixel. One of 8 bits shows in grey (a palette by
    /// its first byte) where the texture's resolution isn't the image's own; where it is, and with fewer bits, the
    /// texture is white: bring such a picture to 24 bits first.
    /// @param raster    halved in place once for each level of a pyramid
    /// @param imagen    its place, north up, pixels square
    /// @param opciones  resolution of the texture, terrain units a pixel; pyramid
    /// @return 1, also when the user cancelled and there is no new record. 0, with nothing left behind: no grid in
    ///         matrix form; no pixels or no size; a cell of more pixels than the largest texture; no file, or no room
    ///         for it or for halving the image; no context
    int CargarImagen(Vertiz::IRaster* raster, Vertiz::CDataImagen& imagen, const CDataCargarImagen& opciones,
                     const CString& carpeta, Vertiz::CNivelMensajes nivel) override;
    /// As in CEscenaMDT; tiles are placed on this grid, which may be another one than they were cut for. Also 0 without
    /// a grid.
    int CargarFicheroTexturasTemp(const std::vector<CDataTexturas>& registros) override;
    /// Finds the part of the grid that an image covers, takes it out of what the others leave free, and adds what the
    /// first two leave free themselves. Called again it adds again. @return 0 without a grid, and out of range
    int AsignaTexturas(unsigned index, Vertiz::CNivelMensajes nivel) override;
    /// A grid has no areas of one colour: always 1.
    int AsignaTexturaSimple(unsigned, Vertiz::CNivelMensajes) override { return 1; }
    void IniciarTexturas(Vertiz::CNivelMensajes) override {}
    /// Puts ready tiles in place of an image. The image at `index` is unloaded and its record goes; what is told here
    /// goes to the record that has moved there from behind, which has to be there. Its texture objects are made by
    /// GrabaFicheroTexturas, and what it leaves free by RecargarImagen.
    /// @param datos       a file as the record's layout wants it, sizeNivel0 bytes; null: nothing is done
    /// @param carpeta     for the file; when it can't be made, the record has none
    void SetTexturas(const char* datos, int anchoTextura, int altoTextura, int sizeTextura, int sizeNivel0,
                     int numFilas, int numCols, int celdasFila, int celdasCol, int despCol, int despFila,
                     unsigned index, const CString& carpeta);

    // ---- Building and drawing --------------------------------------------------------------------------------------
    int Iniciar() override;
    int OnIniciar() override;
    int OnRender() override;
    int OnIniciarBase() override;
    int OnIniciarLimites() override;
    int OnIniciarRupturas() override;

    bool Proyecta(Vertiz::CCoor3D<double>& p) const override;
    /// Moves a GL point along the ray that comes from b until it meets the surface. A grid in cell-list form leaves it.
    /// @return false when the ray misses, or there is no grid
    bool ProyectaVector(Vertiz::CCoor3D<double>& a, Vertiz::CCoor3D<double> b) const override;
    const Vertiz::CDataSemilla& DameSemilla() const override;
    /// Always 1: a grid holds real coordinates.
    double Precision() const override { return 1.0; }
    bool HaySuavizado() const override;
    bool HayRupturas() const override;
    int GetMaximasObjeto(Vertiz::CMaximas<double>& m) const override;

    // ---- Picking ---------------------------------------------------------------------------------------------------
    // What is picked are cells or samples, told apart by GetTipoSeleccion: those of the matrix by row from the north
    // and column (a cell by its north-west sample), those of a cell list by index in CGL's selection. It shows in red.
    // Positions are checked when they are read: they may be of another grid.

    /// Picks the first cell or sample under a pixel, by rows from the north; what hides it doesn't count. Without a hit
    /// references and links are asked, and the rest is as in CGL. A cell counts when its first sample is valid and the
    /// pixel is in it or on its border, a sample within 8 pixels.
    /// @param desdeInicio  0 goes on behind the first thing picked so far, so that clicks in one place walk through
    /// what
    ///                     lies there; also tells whether the references' selection is emptied (acumular 0)
    /// @param tipo         0 cells, or samples in points mode; 1 samples; others cells
    /// @param modo         0 picks; 1 and 3 record the point too; 2 also adds it to the sketch
    /// @param f            not 0: the sketch is emptied too (acumular 0)
    /// @return how many things more are selected, references' and links' counted; 0 also without grid or context
    unsigned OnSeleccion(int x, int y, int desdeInicio, unsigned tipo, int acumular, int bReferencias, int bVinculos,
                         unsigned modo, int bPuntoLibre, int e, int f) override;
    using CGL::OnSeleccion;
    /// Picks all cells that lie with their four corners in the sketch, as it is seen, or all samples. Border counts as
    /// inside. The sketch is closed; cells and samples of a matrix picked before are let go, also when it returns 0.
    /// @return how many; 0 without a sketch of two points, a surface, a grid or a context
    unsigned OnSeleccionConLineaNueva(unsigned tipo);
    void Deselecciona(int bReferencias, int bVinculos, int bLinea) override;
    /// Compiles what is picked as it lies now; nothing to do when nothing is. Called by the above; a host calls
    /// IniciarSeleccion after Iniciar with another exaggeration or extent.
    int OnIniciarSeleccion() override;
    using CGL::CantidadSeleccion;
    /// All that is picked, here and in references and links; 0 without a grid.
    unsigned CantidadSeleccion() const;
    bool HaySeleccion(int bReferencias, int bVinculos) const override;
    /// As DamePunto, of the picked thing i; in a cell list the point of that index, for cells too.
    /// @return false without a grid, and past the end
    bool DamePuntoSeleccion2(Vertiz::CCoor3D<double>& c, int i) override;
    /// Grows m by the valid corners of picked cells, by picked samples. In a cell list a cell counts when it is valid,
    /// and coordinates are as stored. @return 0 without a grid or cells
    int GetMaximasSeleccion(Vertiz::CMaximas<double>& m) const override;
    /// The picked cells or samples of a matrix, rows from the north.
    std::vector<Vertiz::CDEM::CPosicion> GetSeleccionCeldas() const { return m_SeleccionCeldas; }

    // ---- Reading and editing samples -------------------------------------------------------------------------------
    // Rows from the north; in a cell list `fila` is the index and `col` isn't read. Outside the grid a matrix gives 0
    // and takes nothing, and nothing happens in a cell list. Vectors are read and written with smoothing only. What is
    // written shows after the grid's ActualizaCantidades and an Iniciar.

    /// A cell: its sides, and its corners north-west, north-east, south-west, south-east (four of each array).
    ///
    /// A matrix: local coordinates; of a cell whose north-west sample is a void only the vectors are set, to 0. A cell
    /// list: as stored; of a cell with a void corner the vectors (0) and z.
    void DameCelda(unsigned fila, unsigned col, double& yS, double& yN, double& xE, double& xW, float* z, float* nx,
                   float* ny, float* nz) const;
    /// Writes what DameCelda reads. Heights are absolute here: the seed's height isn't added.
    void ModificaCelda(unsigned fila, unsigned col, const float* z, const float* nx, const float* ny, const float* nz);
    /// A sample: its point, local in a matrix, as stored in a cell list, and its vector.
    void DamePunto(unsigned fila, unsigned col, Vertiz::CCoor3D<double>& p, Vertiz::CCoor3D<double>& n) const;
    /// Writes the height, absolute, and the vector of a sample.
    void ModificaPunto(unsigned fila, unsigned col, float z, const Vertiz::CCoor3D<double>& n);

    // ---- Breaklines and trees --------------------------------------------------------------------------------------
    /// Reads breaklines from a drawing's file into the grid; they show after the next Iniciar.
    /// @return 1, 2 when the user cancelled (what was read so far stays), 0 when the file couldn't be read
    int InsertaRupturas(const CString& fichero);
    /// Takes all breaklines out of the grid.
    void BorraRupturas();

    /// Plants a tree on the terrain for each entity of fewer than two points that isn't erased; texts and clouds are
    /// passed over. A tree off the grid keeps the height of its point. They show when their layer is built again.
    /// Without a grid nothing happens.
    /// @param puntos    integers on a seed of its own, which the trees take over
    /// @param altura    height of the trees, terrain units, cut off to whole stored units; a negative one shows nothing
    /// @param tipo      0 conifers, else round trees
    /// @param agregar   0 takes the place of the trees before, else adds to them
    /// @param progreso  progress (level 3) and cancel, or null; after a cancel there are no trees at all
    void CargarArboles(const Vertiz::CDibujo<int>& puntos, double altura, int tipo, int agregar,
                       Vertiz::IPorcentaje* progreso);

    /// Sends a rectangle of the grid into the open list, by rows from the north and columns from the west. Only while
    /// the scene is compiling its mesh.
    /// @param filaInicio, filaFin  rows of samples, the last one excluded, as the columns
    /// @param f, x                 subdivision and step of the mesh
    /// @param filas                rows of the grid; it has no effect
    /// @param colsMapa             columns of the index map
    /// @return 1 sent, also when there is nothing to send; 0 a GL error
    int GeneraDEMRegular(int filaInicio, int colInicio, int filaFin, int colFin, int f, int x, int filas, int colsMapa);

  protected:
    void AjustaTeselas(CDataTexturas& registro) override;

  private:
    using Color = std::array<float, 3>;
    // How fine the mesh is: n as in PuntosSuavizado, one sample every x, each cell divided in f x f.
    struct Paso {
        int n = 0, x = 1, f = 1;
    };
    // Plan of the grid in local coordinates.
    struct Marco {
        double oeste = 0, norte = 0, celdaX = 1, celdaY = 1;
    };

    // CEscenaDEM.cpp
    int IniciarListas();
    int IniciarCapas();
    int OnIniciarListaCeldas();
    void PreparaColorUnico() const;
    bool EsPuntoVisible(const Vertiz::CDEM::CPunto& punto) const;
    Vertiz::CCoor3D<double> PosicionLista(double x, double y, float h) const;
    // A cell of the list: corners in GL space and their heights, north-west, south-west, south-east, north-east.
    struct CeldaGL {
        std::array<Vertiz::CCoor3D<double>, 4> v;
        std::array<float, 4> h;
    };
    bool ColocaCelda(const Vertiz::CDEM::CCelda& celda, CeldaGL& enGL) const;
    bool ColocaPunto(const Vertiz::CDEM::CPunto& punto, Vertiz::CCoor3D<double>& gl, float& h) const;
    void CompilaCeldas() const;
    void CompilaPuntos() const;
    bool ColorPorAltura() const { return GetTipoColorMDT() == 2 || GetTipoColorMDT() == 6; }
    Color ColorAltura(double h, CTintaAlturas& tinta) const;
    const Color& ColorDesnivel(double h) const;
    static const Color& Tinte(int lugar);
    Marco DameMarco() const;

    // CEscenaDEMSeleccion.cpp
    using Esquinas = std::array<Vertiz::CCoor3D<double>, 4>;
    class Muestras;
    std::size_t SeleccionPropia() const;
    void BorraListaSeleccion();
    void FijaTipoSeleccion(unsigned tipo);
    bool MuestraAGL(const Marco& marco, std::size_t r, std::size_t c, Vertiz::CCoor3D<double>& gl) const;
    bool CeldaAGL(const Marco& marco, std::size_t r, std::size_t c, Esquinas& gl) const;
    bool CeldaListaAGL(int i, Esquinas& gl) const;
    bool PuntoListaAGL(int i, Vertiz::CCoor3D<double>& gl) const;
    int Pulsa(int x, int y, unsigned tipo, Vertiz::CDEM::CPosicion desde, std::int64_t indice);
    void PulsaCeldas(const MatricesGL& matrices, const Vertiz::CCoor3D<double>& clic, Vertiz::CDEM::CPosicion desde);
    void PulsaMuestras(const MatricesGL& matrices, const Vertiz::CCoor3D<double>& clic, Vertiz::CDEM::CPosicion desde);
    void PulsaLista(const MatricesGL& matrices, const Vertiz::CCoor3D<double>& clic, std::int64_t indice);
    void EncierraMatriz(const MatricesGL& matrices, const Vertiz::CLinea<double>& poligono);
    void EncierraLista(const MatricesGL& matrices, const Vertiz::CLinea<double>& poligono);
    void CompilaCeldasSeleccion() const;
    void CompilaPuntosSeleccion() const;

    // CEscenaDEMEdicion.cpp
    const Vertiz::CDEM::CPunto* PuntoLista(std::size_t i) const;
    bool CeldaLista(std::size_t i, std::array<const Vertiz::CDEM::CPunto*, 4>& puntos) const;
    void SumaMatriz(Vertiz::CMaximas<double>& m) const;
    void SumaLista(Vertiz::CMaximas<double>& m) const;

    // CEscenaDEMTexturas.cpp
    bool DisponeTeselas(const Vertiz::IRaster& raster, const Vertiz::CDataImagen& imagen, CDataTexturas& registro);
    EncajeTeselas ColocaTeselas(const Vertiz::IRaster& raster, const Vertiz::CDataImagen& imagen,
                                CDataTexturas& registro) const;
    double NorteRejilla() const;
    int AsignaDeNuevo();

    // CEscenaDEMZonas.cpp
    Vertiz::CMaximas<int> ZonaImagen(const CDataTexturas& registro) const;
    int FilasImagen(const CDataTexturas& registro) const;
    int ColumnasImagen(const CDataTexturas& registro) const;

    // CEscenaDEMMallaTexturas.cpp
    struct Tesela;
    void LlenaTexturas();
    int CompilaTexturas(const Paso& paso) const;
    int CompilaTesela(const CDataTexturas& registro, int fila, int columna, const Paso& paso) const;
    bool ColocaTesela(const CDataTexturas& registro, int fila, int columna, int x, Tesela& tesela) const;
    template <unsigned kQuad>
    int EmiteTesela(const Tesela& tesela, const Paso& paso) const;
    int CompilaZonasLibres(const Paso& paso);

    // CEscenaDEMMalla.cpp
    struct Banda;
    struct FilaMapa;
    Paso CalculaPaso(int n) const;
    int FilasMapa(const Paso& paso) const;
    int ColumnasMapa(const Paso& paso) const;
    int OnIniciarDEMRegular();
    bool ReservaVertices(Paso& paso);
    bool ReservaIndices(const Paso& paso);
    int CompilaMalla(const Paso& paso);
    int CompilaEntera(const Paso& paso);
    void ColocaMuestras(const Paso& paso);
    void ColocaDivididas(const Paso& paso, const Marco& marco, int r, int u);
    bool AlturaSuave(int r, int c, int u, int w, int f, double& h) const;
    void ColocaVertice(std::int64_t posicion, const Marco& marco, double fila, double columna, float h);
    const float* FilaAlturas(int fila, std::vector<float>& copia) const;
    FilaMapa DameFilaMapa(const Banda& banda, std::int64_t fila) const;
    void ColoreaFila(Banda& banda, std::int64_t fila, std::vector<Color>& colores) const;
    void ColoreaBanda(Banda& banda, std::int64_t fila, FilaMapa& norte, FilaMapa& sur) const;
    void CalculaNormales(Banda& banda, const FilaMapa& norte, const FilaMapa& sur) const;
    template <unsigned kQuad>
    void EmiteBanda(Banda& banda, int r, int u) const;
    void LiberaMalla();

    // CEscenaDEMBase.cpp
    struct Muro;
    struct Base;
    double CotaBase() const;
    void CompilaMuros(Base& base) const;
    void CompilaMurosCelda(Base& base, int r, int c) const;
    void CompilaMuro(Base& base, const Muro& muro) const;
    void CompilaSuelo(Base& base) const;

    std::vector<Vertiz::CDEM::CPosicion> m_SeleccionCeldas;
    Vertiz::CDEM* m_pDEM = nullptr;

    // Working arrays of the mesh, filled only while OnIniciarDEMRegular runs.
    std::unique_ptr<float[]> m_Vertices;  // x, y, z in GL space
    std::unique_ptr<float[]> m_Alturas;   // height of each vertex of a divided mesh, where the colour needs it
    std::int32_t m_nVertices = 0;
    std::vector<std::int32_t> m_Indices;  // for each sample position that of its x in m_Vertices, or -1
    Color m_ColorDesmonte{};
    Color m_ColorTerraplen{};
    Color m_ColorNada{};
};
