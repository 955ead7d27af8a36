#pragma once
// What all terrain scenes share: the images draped over them, their layers beside the surface, the state that the
// surface is drawn in, and the sky.
//
// An image can be far larger than memory. It is cut once into tiles, which go to a temporary file; from there they
// reach the texture objects one by one. A record (CDataTexturas) tells of each image. References and links that are
// grids or triangulated terrains show the same images: their records look at the same file and the same texture
// objects.
//
//     CargarImagen(name, raster, ...)  host: cuts an image, drapes it, hands it on to references and links
//       CargarImagen(raster, ...)      scene: makes record and file, then calls CargarImagen(file, index, ...)
//         AsignaTexturas               scene: ties the record to its surface
//         GrabaFicheroTexturas         takes the file over and makes the texture objects
//     Iniciar                          scene: fills the objects (Textura) and compiles the surface that shows them

#include "terrain/CDataCargarImagen.h"
#include "terrain/CDataTexturaSimple.h"
#include "terrain/CDataTexturas.h"
#include "terrain/CEdificios.h"
#include "frame/CGL.h"
#include "model/CDataImagen.h"
#include "model/CDibujo.h"
#include "model/CObjetoFichero.h"

#include <memory>
#include <vector>

/// The base of the terrain scenes. A terrain is a surface, which the concrete scene compiles, and layers that stand on
/// it, each with a list of its own and a mark that tells whether it has been built since the last `Iniciar`.
class LUMBRA_API CEscenaMDT : public CGL {
  public:
    CEscenaMDT() = default;
    /// As the copy constructor and the assignment of CGL. The copy of an image has a file of its own and shares the
    /// texture objects, as it shares the context; records that look at a parent's go on doing so.
    CEscenaMDT(const CEscenaMDT& otra);
    CEscenaMDT& operator=(const CEscenaMDT& otra);
    ~CEscenaMDT() override;

    using CGL::operator=;
    CGL& operator=(const CGL& otra) override;

    // ---- Virtual operations: images --------------------------------------------------------------------------------
    // Indices out of range do nothing here, and give 0 or false.

    /// Lets go of file and texture objects, here and in references and links. Records that look at a parent's leave
    /// both alone.
    /// @param borrarFichero   not 0: deletes the file too; otherwise CargarFicheroTexturasTemp can load it again
    /// @param borrarRegistro  not 0: takes the record out; those behind it move down
    /// @param nada            without effect
    virtual void DescargarImagen(unsigned index, int borrarFichero, int borrarRegistro, int nada);
    /// Takes the outlines of a colour out, here and in references and links.
    virtual void DescargarTexturaSimple(unsigned index);
    /// Cuts an image into a new record with its file and texture objects. The raster may be changed; it isn't freed.
    /// @param imagen   where it lies
    /// @param carpeta  for the file
    /// @return 1 done, also when the user cancelled: then there is no new record. 0 failure
    virtual int CargarImagen(Vertiz::IRaster* raster, Vertiz::CDataImagen& imagen, const CDataCargarImagen& opciones,
                             const CString& carpeta, Vertiz::CNivelMensajes nivel) = 0;
    /// Unloads all images, with their files, and takes over records whose files exist already: opens these, which are
    /// the scene's from now on, and makes texture objects, here and in references and links. A reference or link takes
    /// its parent's records as they are.
    /// @return 0 without a context, or when a file can't be opened: the records after that one are not loaded
    virtual int CargarFicheroTexturasTemp(const std::vector<CDataTexturas>& registros);
    /// Cuts all images anew into tiles of another size, without their pyramids. An image whose files can't be made
    /// stays as it was.
    /// @param alto, ancho    tile, in pixels; smaller ones are taken where much of the last tiles would be empty
    /// @param carpeta        for the files
    /// @param borrarFichero  not 0: deletes the old file
    virtual void CambiaSizeTexturas(int alto, int ancho, const CString& carpeta, int borrarFichero);
    /// Lays out tiles over an image: their size is halved until at most a third of the image's size is wasted on each
    /// axis. Where nothing can be laid out (an image or tiles without pixels, more than 2^31 - 1 tiles), the record has
    /// no rows and no columns.
    /// @param filasTextura, colsTextura  in: largest tile, in pixels; out: the tile
    /// @param filas, cols                the image, in pixels of the texture
    /// @return whether the tile was made smaller
    virtual bool SetNumFilasCols(int& filasTextura, int& colsTextura, int filas, int cols, CDataTexturas& registro);
    /// Ties a record to the surface. @return 0 without a model
    virtual int AsignaTexturas(unsigned index, Vertiz::CNivelMensajes nivel) = 0;
    /// The same for the outlines of a colour.
    virtual int AsignaTexturaSimple(unsigned index, Vertiz::CNivelMensajes nivel) = 0;
    /// Unties all records, before RecargarTexturas ties them again.
    virtual void IniciarTexturas(Vertiz::CNivelMensajes nivel) = 0;

    // ---- Images ----------------------------------------------------------------------------------------------------
    /// Drapes an image, under this name, over this scene and over its references and links that are grids (type 1) or
    /// triangulated terrains (type 4). A scene of type 3 keeps it to itself.
    /// @param raster  freed in any case, also when it fails
    int CargarImagen(const CString& nombre, Vertiz::IRaster* raster, Vertiz::CDataImagen& imagen,
                     const CDataCargarImagen& opciones, const CString& carpeta);
    /// Ties a record to the surface and takes over its file.
    /// @param fichero  open, made with new; taken over in any case: on failure it is closed, deleted and freed
    int CargarImagen(CFile* fichero, unsigned index, Vertiz::CNivelMensajes nivel);
    /// Ties one record, all records, to the surface anew. @return 0 at the first failure
    int RecargarImagen(unsigned index, Vertiz::CNivelMensajes nivel) { return AsignaTexturas(index, nivel) != 0; }
    int RecargarTexturas(Vertiz::CNivelMensajes nivel);
    /// Fills the areas of a drawing with a colour, on this scene and on its references and links as CargarImagen.
    /// @param dibujo  outlines, made with new; the scene's from now on. Null is refused
    /// @param color   red in the low byte
    /// @return 1; 0 when they can't be tied to this scene's surface: they are its all the same, and nobody else's
    int CargarTexturaSimple(Vertiz::CDibujo<int>* dibujo, unsigned long color);
    /// Makes the texture objects of a record that has none, in the current context: they may have gone with a former
    /// context of the scene. A record that looks at a parent's gets none of its own.
    /// @return whether there are objects now
    bool AseguraTexturas(unsigned index);
    /// Fills a tile's texture object from the file, in the current context. Levels above GetMaxTexDim are left out, and
    /// the tile doesn't count as full then.
    /// @return false at the first OpenGL error, without file or objects, or when the file can't be read
    /// @thread any, with a context that shares objects with the scene's; different tiles at the same time, once the
    ///         record has its objects
    bool Textura(unsigned index, unsigned fila, unsigned col);
    /// Builds a picture of 24 bits of a record's tiles as they are, side by side.
    /// @param destino  made anew from blocks (IRaster::Crear): a CTiff shows the picture, a CBmp every sixteenth row of
    ///                 it. Untouched when there is nothing to read, or no memory
    void GetImagen(Vertiz::IRaster* destino, unsigned index);
    /// Takes over a record's file, open and made with new, and makes texture objects anew. @return 0 without a context:
    /// the file is the record's all the same. Out of range it stays the caller's
    int GrabaFicheroTexturas(CFile* fichero, unsigned index);
    /// Makes a record's texture objects anew; those of a record that looks at a parent's stay.
    int GrabaFicheroTexturas(unsigned index);
    /// Writes a file for a record from bytes in its form, takes it over, and makes texture objects anew.
    int GrabaFicheroTexturas(const char* datos, int size, unsigned index, const CString& carpeta);

    bool HayTexturas() const override { return !m_Texturas.empty(); }
    /// The path of a record's file; empty out of range.
    CString GetFicheroTexturasTemp(unsigned index) const;
    /// Copies out, without file and texture objects. @return false out of range
    bool GetDataTexturas(unsigned index, CDataTexturas& registro) const;
    void GetDataTexturas(std::vector<CDataTexturas>& registros) const;
    /// Replaces the records as they stand: nothing is loaded, unloaded or handed on.
    void SetDataTexturas(const std::vector<CDataTexturas>& registros) { m_Texturas = registros; }
    /// Copies out; the drawings are shared.
    void GetDataTexturasSimples(std::vector<CDataTexturaSimple>& texturas) const { texturas = m_TexturasSimples; }
    /// Changes the colour of outlines, here alone; ignored out of range.
    void CambiaColorTexturaSimple(unsigned index, unsigned long color);
    /// How many triangles show a tile; 0 out of range, and where the surface doesn't go by triangles.
    std::size_t TriangulosTextura(unsigned index, unsigned fila, unsigned col) const;

    /// As in CGL; a grid or a triangulated terrain takes over this scene's images in place of its own, unless this
    /// scene is of type 3.
    void ReferenciaNuevo(CGL* r) override;
    void VinculoNuevo(CGL* r) override;

    /// What the selection holds: 1 cells or triangles, 0 points.
    int GetTipoSeleccion() const { return m_nTipoSeleccion; }

    void OnLiberarContexto(bool bBorrar) override;

    /// Compiles the limits, in the current context: the box of the extents and the lines of a drawing.
    /// @param dibujo   outlines, integers on its own seed
    /// @param maximas  extents in local terrain units
    /// @return 1; 0 a GL error
    int DibujarLimites(const Vertiz::CDibujo<int>& dibujo, const Vertiz::CMaximas<double>& maximas);
    /// Compiles breaklines in the styles of the digitising table; without a table, or when they have been built
    /// already, there is nothing to do. @return 1; 0 no context, or a GL error
    int DibujarRupturas(const Vertiz::CDibujo<int>& dibujo, const Vertiz::CMaximas<double>& maximas);

    /// From plan coordinates times the factor and a terrain height, both less the scene's offset as the caller has it,
    /// to GL space. In: x, y, z of the terrain. Out: x, y and z of GL, z not yet turned round.
    /// @param maximas  without effect
    /// @param a, b, c  shift of the drawing in X, Y and Z  @param d  further shift of the height
    void TerrenoAPantallaGL(double& x, double& y, double& z, const Vertiz::CMaximas<double>& maximas, double a,
                            double b, double c, double d) const;

    // ---- Buildings and trees ----
    /// The register of a tree's entity that holds its height.
    static constexpr short kRegistroAltura = 99;
    /// Takes a set of buildings, borrowed; null for none. They show when their layer is built again.
    void RecargarEdificios(const CEdificios* pEdificios);
    /// A copy of the buildings shown; empty without a set.
    void GetEdificios(CEdificios& edificios) const;
    using CGL::GetEdificios;  // the setting
    /// Compiles walls and roofs, on the precision of the first building's `m_Superior`; nothing to do when they have
    /// been built already. @return 1, also without buildings; 0 no context, or a GL error
    int DibujarEdificios();
    /// Compiles the trees: those of code "0" are conifers, others round. Likewise.
    int DibujarArboles();
    int OnIniciarEdificios() override { return DibujarEdificios(); }
    int OnIniciarArboles() override { return DibujarArboles(); }
    /// Send one tree into the open list: a round crown, or a cone, on a trunk. All in GL units.
    /// @param x,y,z   its foot, y upwards
    /// @param altura  from the foot to the top
    /// @return 1; 0 a GL error in the trunk, and the list is closed
    static int PintaNaranjo(float x, float y, float z, float altura);
    static int PintaConifera(float x, float y, float z, float altura);

  protected:
    /// Trees: an entity each, whose first point is the foot and whose register kRegistroAltura is the height, integers
    /// on the drawing's seed. One without the register isn't shown.
    Vertiz::CDibujo<int> m_Arboles;
    const CEdificios* m_pEdificios = nullptr;  ///< borrowed
    // The terrain axis that each axis of the scene shows, with its sign. Nothing sets others than these.
    short m_nEjeX = 1, m_nEjeY = 2, m_nEjeZ = 3;

    /// Sets material, light, colours and polygon mode for the surface and what stands on it.
    int SetVariablesVisualizacion();
    /// Draws the sky behind everything, turned with the camera.
    int RenderCielo();
    /// Sets what a record tells of the model's cells from the place and size of its tiles: after either has changed.
    virtual void AjustaTeselas(CDataTexturas&) {}

    // Whether each layer has been built since the last Iniciar: the settings' values then.
    int m_bLimitesIniciados = 0;
    int m_bEdificiosIniciados = 0;
    int m_bRupturasIniciadas = 0;
    int m_bBaseIniciada = 0;
    int m_bArbolesIniciados = 0;

    int m_nTipoSeleccion = 0;
    std::vector<CDataTexturas> m_Texturas;
    std::vector<CDataTexturaSimple> m_TexturasSimples;

    // Lists, 0 when absent.
    GLuint m_nListaSuperficie = 0;
    GLuint m_nListaEdificios = 0;
    GLuint m_nListaRupturas = 0;
    GLuint m_nListaBase = 0;
    GLuint m_nListaArboles = 0;
    GLuint m_nListaSeleccion = 0;
    GLuint m_nListaCurvado = 0;

  private:
    // CEscenaMDTTexturas.cpp
    void CopiaTexturas(const CEscenaMDT& otra);
    void DescargaTodo();
    void SueltaTexturas(CDataTexturas& registro);
    static void SueltaFichero(CDataTexturas& registro, bool bBorrar);
    static void BorraTexturasGL(CDataTexturas& registro, bool bBorrar);
    static int CreaTexturasGL(CDataTexturas& registro);
    std::vector<CEscenaMDT*> HijosConImagen() const;
    void EntregaTexturas(CGL* hijo);

    // CEscenaMDTTeselas.cpp
    bool CambiaSizeTextura(unsigned index, int alto, int ancho, const CString& carpeta, int borrarFichero);

    // CEscenaMDTEdificios.cpp
    int CompilaEdificio(const CDataEdificio& edificio, double escala) const;

    // CEscenaMDT.cpp
    void CopiaCapas(const CEscenaMDT& otra);
    void CompilaCaja(const Vertiz::CMaximas<double>& maximas) const;
    void CompilaLinea(const Vertiz::CLinea<double>& linea, const Vertiz::CMaximas<double>& maximas) const;
    static Vertiz::CLinea<double> LineaLocal(const Vertiz::CEntidadDigi<int>& entidad, double precision,
                                             const Vertiz::CMaximas<double>& maximas);
};
