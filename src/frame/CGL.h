#pragma once
// CGL: the base of every scene. It holds the OpenGL context, the camera, the settings, the extents that the GL space is
// built on, the child scenes, the overlays, the sketch line and the selection; a concrete scene adds its model.
//
// The life of a scene, in the order in which a host calls it:
//
//     Crear            makes the context on a window, or on a device context (a bitmap, for pictures without a window)
//     (the model)      given to the concrete scene; it is borrowed and must outlive the scene
//     OnZoomExtension  fixes the GL space from the model's extents; this first time it does not run Iniciar
//     Iniciar          compiles every display list
//     Resize           sets viewport and projection
//     OnZoomExtension  now fits the view
//     Render           draws a frame and presents it
//     Destruir         frees everything; the scene may be created again afterwards
//
// Colours, scale and vertical exaggeration live inside the lists: a change of any of them needs a new Iniciar. After
// SetOrtogonal the projection is rebuilt by Resize and the view fitted by OnZoomExtension. A host that takes one single
// picture calls SetBkColor before Render, since OnRender clears with the colour of the frame before.
//
// The hooks. Each public entry takes the context, calls its hook, and lets the context go when all went well.
//
//     OnCreate(window, descriptor)    once, in Crear, before any context exists; may adjust the pixel format
//     OnIniciar()                     in Iniciar, context current: compile the model's lists. Must be given
//     OnIniciarSeleccion()            whenever the selection may have changed: compile its list. Must be given
//     OnIniciarLimites(), ...Base(), ...Edificios(), ...Rupturas(), ...Arboles(), ...Curvado(), ...Vista()
//                                     compile one layer alone; nothing to do here
//     OnResize(cx, cy)                in Resize, context current: viewport and projection
//     OnRender()                      in Render, context current: clear, camera, call the lists. Must be given. A child
//                                     (EsReferencia) neither clears nor sets the camera: it draws in its parent's frame
//     OnLiberarContexto(bBorrar)      before the scene parts from its context, which is current if there is one: delete
//                                     the lists and textures that the scene made in it (bBorrar), or only forget them
//                                     when a copy of the scene goes on using them. The model stays. It may come twice.
//                                     A concrete destructor calls Destruir, since here its overrides are gone already
//
// Each hook leaves the context current. A hook that meets a GL error returns 0 at once, with the context current and an
// open list left open; the next operation ends that list when it takes the context (MakeCurrent).
//
// Queries that must be given: DameSemilla, Precision, GetMaximasObjeto, GetMaximasSeleccion, DamePuntoSeleccion2. They
// are asked at any time, without a context.
//
// Spaces. Terrain: the model's units, local (without the seed's offset) where nothing else is said. GL: a box about 1
// across round the origin, terrain X to x, Z to y, Y to -z. Pixels: of the window, y downwards.
//
// Results: 1 good, 0 failure, where nothing else is said. Everything runs on the host's thread, but for MakeCurrent
// with a shared context and for TerrenoAGL, which workers call too. No operation throws, except for a failed
// allocation.

#include "frame/CGLPropio.h"
#include "frame/ContrastaColor.h"
#include "model/CCoor.h"
#include "model/CDataSemilla.h"
#include "platform/CPoint.h"
#include "platform/CString.h"
#include "platform/Exporta.h"
#include "platform/OpenGL.h"

#include <memory>
#include <vector>

class CBitmap;
class CDC;
class CView;
class CWnd;
struct BITMAPINFO;
struct CPrintInfo;
struct MatricesGL;

namespace Vertiz {
class CAtrDigi;
class IRaster;
}  // namespace Vertiz

/// The base of all scenes; see the top of this file for its life and its hooks.
class LUMBRA_API CGL : public CGLPropio {
  public:
    CGL();
    /// A copy shares the context, the lists and the children of the other scene, and has shared contexts and a depth
    /// block of its own. Selection, sketch, marks, measures, transformation and name are not copied. Of all copies the
    /// last one to be destroyed frees what they share; the earlier ones only forget it.
    CGL(const CGL& otra);

    // ---- Virtual operations: life ----------------------------------------------------------------------------------
    virtual ~CGL();
    /// Lets go of what this scene had (as Destruir does) and copies as the copy constructor does. Between a scene and
    /// one below it nothing happens: one of them would destroy the other, or hold itself.
    virtual CGL& operator=(const CGL& otra);
    /// Compiles all lists: the scene's own, the children's, the overlays. May be repeated at any time.
    virtual int Iniciar();
    /// Compiles the list of the selection.
    virtual int IniciarSeleccion();
    virtual int OnResize(int cx, int cy);

    // ---- Virtual operations: sketch line ---------------------------------------------------------------------------
    /// Adds the point of the model under a pixel to the sketch.
    /// @param bBuscarPunto look for a vertex of the model near the pixel (handed on to PantallaATerreno)
    virtual void InsertaPuntoLineaNueva(const CPoint& pt, bool bBuscarPunto);
    /// Moves the last point, the one that follows the cursor.
    /// @param p     absolute terrain coordinates where the seed applies, as in InsertaPuntoLineaNueva
    /// @param bGoma wipe the old segment from the screen and show the new one
    /// @return false with an empty sketch
    virtual bool ModificaUltimoPuntoLineaNueva(const Vertiz::CCoor3D<double>& p, int bGoma);
    /// The same, to the point of the model under a pixel.
    virtual bool ModificaUltimoPuntoLineaNueva(const CPoint& pt, int bGoma);

    // ---- Virtual operations: layers --------------------------------------------------------------------------------
    virtual int OnIniciarLimites() { return 1; }
    virtual int OnIniciarBase() { return 1; }
    virtual int OnIniciarEdificios() { return 1; }
    virtual int OnIniciarRupturas() { return 1; }
    virtual int OnIniciarArboles() { return 1; }
    virtual int OnIniciarCurvado() { return 1; }
    virtual int OnIniciarVista() { return 1; }
    virtual int OnIniciarSeleccion() = 0;

    // ---- Virtual operations: model ---------------------------------------------------------------------------------
    /// Gives a terrain point the height of the model under it. @return false when there is none
    virtual bool Proyecta(Vertiz::CCoor3D<double>&) const { return false; }
    /// Finds the terrain point under a pixel.
    /// @return 0.0 when it lies in the model's box, 2147483647.0 otherwise; c may then hold a point of a child
    virtual double BuscaCotaProxima(const CPoint& pt, Vertiz::CCoor3D<double>& c, bool bBuscarPunto);
    virtual void InsertaUltimaEntidadVista(unsigned) {}
    /// The seed of the model: decimals of its integers, offset of its coordinates.
    virtual const Vertiz::CDataSemilla& DameSemilla() const = 0;
    virtual bool HayTexturas() const { return false; }
    virtual bool HaySuavizado() const { return false; }
    virtual bool HayRupturas() const { return false; }

    // ---- Virtual operations: view selection, composition, zoom -----------------------------------------------------
    /// @return the sum of the children's answers, here as in InvierteSeleccion
    virtual unsigned OnVistaSeleccion(int v);
    virtual unsigned InvierteSeleccion();
    /// Takes a scene as reference: drawn in this one's frame while the setting "Referencia" is on. This scene owns it
    /// from now on. It takes this scene's context; one of its own is released first, with all that lives in it.
    /// Refused: null, this scene, and one that has this scene below it.
    virtual void ReferenciaNuevo(CGL* r);
    /// Takes a scene as link: always drawn. Otherwise as ReferenciaNuevo.
    virtual void VinculoNuevo(CGL* r);
    /// Moves nearer: the camera in perspective, the projection in orthographic and spherical views.
    /// @param paso step; 0 takes the speed of the settings; its size counts, never below 0.2
    virtual void OnZoomIn(double paso);
    /// The same after bringing the point under a pixel to the middle of the window.
    virtual void OnZoomIn(const CPoint& pt, double paso);
    virtual void OnZoomOut(double paso);
    virtual void OnZoomOut(const CPoint& pt, double paso);
    /// Brings the point under a pixel to the middle of the window; in a spherical view towards it, since the target
    /// alone is shifted. @return that point, in GL space
    virtual Vertiz::CCoor3D<double> OnZoomCentrado(const CPoint& pt);
    /// Hands settings, camera, selections and view selection on to another scene; to itself only the settings.
    virtual void IgualaVariables(CGL* r) const;

    // ---- Virtual operations: selection (x, y are pixels) -----------------------------------------------------------
    /// Select by a circle, by a polygon, by a rectangle of pixels. The base asks the children. @return how many
    virtual unsigned OnSeleccionVentana(int x, int y, double radio, int modo, int bReferencias, int bVinculos);
    virtual unsigned OnSeleccionVentana(Vertiz::CLinea<int>& linea, int modo, int bReferencias, int bVinculos,
                                        short tipo, bool b1, bool b2);
    virtual unsigned OnSeleccionVentana(int arriba, int abajo, int izquierda, int derecha, int modo, int bReferencias,
                                        int bVinculos);
    virtual unsigned OnSeleccion(const Vertiz::CAtrDigi&, int) { return 0; }
    /// Picks under a pixel. The base asks the children and feeds recorded points and sketch.
    /// @param desdeInicio  non-zero searches from the beginning, 0 resumes after the last hit
    /// @param tipo         kind of thing to pick
    /// @param acumular     0 clears the selection first
    /// @param modo         0 selects; 1 also records the point; 2 records it and adds it to the sketch; 3 adds it
    ///                     to the sketch without recording
    /// @param bPuntoLibre  without a hit, modes 2 and 3 take the point of the model under the pixel
    /// @param e, f         handed on to the children
    /// @return non-zero when something was hit; 0 also when a child cannot give its point
    virtual unsigned OnSeleccion(int x, int y, int desdeInicio, unsigned tipo, int acumular, int bReferencias,
                                 int bVinculos, unsigned modo, int bPuntoLibre, int e, int f);
    /// Empties the selection and the recorded points, the children's when asked, and the sketch when asked.
    virtual void Deselecciona(int bReferencias, int bVinculos, int bLinea);
    virtual void DeseleccionaLa2();
    virtual void Borra(const std::vector<Vertiz::CPosicionEntidad>&, Vertiz::CMaximas<int>&) {}
    virtual void BorraSeleccion(Vertiz::CMaximas<int>&) {}
    /// Number of things selected, here and in the children of the lists asked for.
    virtual unsigned CantidadSeleccion(int bReferencias, int bVinculos) const;
    /// Number of entities of the view selection, here and in all children.
    virtual unsigned CantidadVistaSeleccion() const;
    /// Recorded point i; its Tipo tells whose it is: 0 this scene's, 1 to n references, above n links.
    /// @return false past the end
    virtual bool DamePuntoSeleccion(Vertiz::CCoor3D<double>& c, int i) const;

    /// Prints a page: OnPrint1, OnRender, OnPrint2. The picture has the shape of the view's window and is as large as
    /// the page lets it be, up to 20 million pixels; the sketch line isn't on it. A preview has the window's size.
    /// What can't be drawn leaves the page empty, and UltimoFalloGL tells why.
    /// @param pDC   the page; @param pInfo may be null: no preview; @param pView created
    virtual void OnPrint(CDC* pDC, CPrintInfo* pInfo, CView* pView);

    // ---- Virtual operations: coordinates ---------------------------------------------------------------------------
    /// Finds the point of the model under a pixel by reading the depth buffer and looking round in a growing spiral.
    /// @param c              out: terrain units, or GL space when bGL
    /// @param bPixelHallado  give the point of the pixel where geometry was met rather than that of pt
    /// @param bBuscarPunto   take the height of a vertex near the pixel (OnBuscaPunto)
    /// @return 1 found; 0 no context or no matrices. A click on nothing gives a point at the window depth of
    ///         1 - GetPlanoCerca(): the far end of an orthographic view
    virtual int PantallaATerreno(const CPoint& pt, Vertiz::CCoor3D<double>& c, bool bGL, bool bPixelHallado,
                                 bool bBuscarPunto);
    /// The pixel of a point in terrain units (GL space when bGL), and its window depth when pz is given.
    /// @return 0 without a window size, context or extents, or when the point is left out
    virtual int TerrenoAPantalla(CPoint& pt, const Vertiz::CCoor3D<double>& p, double* pz, bool bGL);
    /// Extents of this scene's own model and of what is selected in it, in local terrain units.
    /// @return 0 when there is nothing
    virtual int GetMaximasObjeto(Vertiz::CMaximas<double>& m) const = 0;
    virtual int GetMaximasSeleccion(Vertiz::CMaximas<double>& m) const = 0;
    /// 10 to the power of the seed's decimals: model integers in a terrain unit; 1.0 without a model.
    virtual double Precision() const = 0;
    /// From GL space to terrain units divided by escala.
    virtual void GLATerreno(Vertiz::CCoor3D<double>& c, double x, double y, double z, double escala) const;
    /// Finds a vertex of the model near a pixel, in terrain units. @return 0 none
    virtual int OnBuscaPunto(int, int, Vertiz::CCoor3D<double>&, int) { return 0; }

    // ---- Virtual operations: queries -------------------------------------------------------------------------------
    virtual bool HaySeleccion(int bReferencias, int bVinculos) const;
    virtual bool HayVistaSeleccion() const;
    virtual void SetSeleccion(const std::vector<Vertiz::CPosicionEntidad>& seleccion);
    virtual bool EsCubicacion() const { return false; }
    /// True when any child says so; the two last ones also ask this scene.
    virtual bool TienePuntos() const;
    virtual bool TieneLidar() const;
    virtual bool TieneLaserTerrestre() const;
    virtual bool TieneSuavizado() const;
    virtual bool TieneRupturas() const;
    /// Point i of the second selection, in terrain units.
    virtual bool DamePuntoSeleccion2(Vertiz::CCoor3D<double>& c, int i) = 0;
    /// May adjust the pixel format that Crear is about to choose; pVentana is null for a device context.
    /// @return 0 ends Crear with 0
    virtual int OnCreate(CWnd*, PIXELFORMATDESCRIPTOR*) { return 1; }
    /// Fills the 256 entries of a palette for a colour index format.
    virtual int OnCreatePaletteCI(LOGPALETTE*) { return 0; }
    /// Draws a frame into a bitmap of the page's, in a context of its own. On failure nothing of it is left. No context
    /// is current afterwards, so that an OnRender that follows draws nothing.
    virtual void OnPrint1(CDC* pDC, CPrintInfo* pInfo, CView* pView);
    /// Lays that bitmap on the page, in the middle (a page narrower still than the bitmap cuts it), frees it, and takes
    /// again the context that was current before OnPrint1.
    virtual void OnPrint2(CDC* pDC);
    /// Sets the pixel format of the page's device context. @param flags PFD_... flags
    virtual bool SetDCPixelFormat(HDC hdc, DWORD flags);
    /// Moves the GL point a onto the surface, along the ray to b.
    virtual bool ProyectaVector(Vertiz::CCoor3D<double>&, Vertiz::CCoor3D<double>) const { return true; }
    virtual int OnIniciar() = 0;
    virtual int OnRender() = 0;
    /// See the top of this file. With true, delete what the scene made in the context; with false, only forget it.
    virtual void OnLiberarContexto(bool) {}

    // ---- Life ------------------------------------------------------------------------------------------------------
    /// Makes the scene's contexts on a window. Refused while the scene has a context.
    /// @param tipoPixel PFD_TYPE_RGBA or PFD_TYPE_COLORINDEX
    /// @param flags     PFD_... flags, usually PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER
    int Crear(CWnd* pVentana, int tipoPixel, DWORD flags);
    /// Makes them on a device context, which is borrowed and must outlive the scene; its bitmap gives the colour bits.
    int Crear(CDC* pDC, int tipoPixel, DWORD flags);
    /// Makes a context current, and ends a display list that a failed operation left open in it.
    /// @param p the context to take, one of the shared ones; null takes the main one
    /// @return 0 without a context, or when it stays current on another thread for a tenth of a second
    /// @thread any, with a context of its own
    int MakeCurrent(HGLRC* p);
    /// Sets viewport and projection, in pixels. @return 0 when a side is below 1, without any effect
    int Resize(int cx, int cy);
    /// Draws a frame and presents it: model, camera stations, references, links, axes, marks, measures, sketch.
    int Render();
    /// Non-zero draws the sketch's last segment straight to the screen, 0 calls the list of the whole sketch.
    int RenderLineaNueva(int bRapido);
    /// Reads the largest texture side, never above 1024.
    int SetMaxSizeTextura();
    /// Frees children, lists, textures and contexts; a child gives up its parent's. May be called again.
    void Destruir();
    /// Forgets context, device context, palette and children without freeing any.
    void Anular();
    /// Destroys all children of one kind.
    void ClearReferencias();
    void ClearVinculos();
    /// 1 when OpenGL reports an error; the argument is ignored.
    int OutputGlError(const wchar_t* texto);
    /// Compile one layer of this scene and of its children.
    int IniciarLimites();
    int IniciarBase();
    int IniciarArboles();
    int IniciarEdificios();
    int IniciarRupturas();
    int IniciarCurvado();
    /// Compiles the children; a tipo of -1 takes all references, another one only those of that scene type.
    int OnIniciarReferencia(int tipo);
    int OnIniciarVinculos();

    // ---- What this scene is ----------------------------------------------------------------------------------------
    /// An image takes part, here or as a child that holds a plain image.
    bool HayImagen() const;
    /// This scene or a child is of the kind asked for.
    bool TieneMDT() const;
    bool TieneDEM() const;
    bool TieneTIN() const;
    bool TieneTIN3D() const;
    bool TieneDibujo() const;
    bool TieneCubicacion() const;

    // ---- Coordinates -----------------------------------------------------------------------------------------------
    /// From terrain to GL space, through the photograph's transformation where one applies. Touches no context.
    /// @param p          terrain units times escala's inverse: 1.0 for real points, 1 / Precision() for model integers
    /// @param bSinLimite ignore the largest distance from a spherical image's centre
    /// @return false: leave the point out
    /// @thread any
    bool TerrenoAGL(const Vertiz::CCoor3D<double>& p, double& x, double& y, double& z, double escala,
                    bool bSinLimite) const;
    /// Grows salida by the window coordinates of a box's corners, with matrices read before. Touches no context.
    void TerrenoAPantalla(const Vertiz::CMaximas<double>& m, Vertiz::CMaximas<double>& salida, double escala,
                          int* viewport, double* modelview, double* proyeccion);
    /// The point at a pixel and a window depth (0 near, 1 far), in terrain units or, when bGL, in GL space.
    int PantallaZATerreno(const CPoint& pt, Vertiz::CCoor3D<double>& c, double winz, bool bGL);
    /// From absolute terrain coordinates to the image's. @return false when the point has no image
    bool TransformaConData(const Vertiz::CCoor3D<double>& entra, Vertiz::CCoor3D<double>& sale) const;
    /// Sets the image transformation here and in the children; one of a spherical image turns the camera too.
    void SetDataTransformacion(const Vertiz::CDataTransformacion& data);
    /// Fixes the GL space on a box in local terrain units. @return 1 when it differs from the former box
    int EstableceMaxMin(const Vertiz::CMaximas<double>& m);
    /// Grow m by the extents of the group, of the references, of the links (fondo: only those of that image value, all
    /// when negative). @return 0 when nothing was found
    int GetMaximas(Vertiz::CMaximas<double>& m) const;
    int GetMaximasReferencia(Vertiz::CMaximas<double>& m, int fondo) const;
    int GetMaximasVinculos(Vertiz::CMaximas<double>& m, int fondo) const;
    /// Reads the camera back from the modelview matrix. The context must be current.
    void CalculaCamaraDesdeMatrices();
    /// Height of the children's models at (x, y) in terrain units, or of the picture under the pixel.
    double BuscaCotaProximaConReferencias(double& x, double& y, const CPoint& pt, bool bBuscarPunto);

    // ---- Navigation: changes camera or projection; the host renders afterwards -------------------------------------
    /// Fits a rectangle of pixels into the window.
    void OnZoomVentana(int arriba, int abajo, int izquierda, int derecha);
    /// Fits a box in terrain units into the window, with a margin of one step.
    void OnZoomVentana(const Vertiz::CMaximas<double>& m);
    /// Builds the GL space on a box in terrain units, runs Iniciar when it has changed, and fits the view to it.
    void ZoomExtension(const Vertiz::CMaximas<double>& m);
    /// The same with the extents of the group, of this scene's model, of the references, of the selection.
    void OnZoomExtension();
    void OnZoomExtensionObjeto();
    void OnZoomExtensionReferencia();
    void OnZoomExtensionSeleccion();
    /// Sets the accumulated zoom of an orthographic view; nothing happens in any other.
    void SetZoom(double zoom);
    /// Angles of the camera, in degrees. bVista turns round the point looked at rather than round the eye; pivote is a
    /// GL point that keeps its pixel.
    void SetAnguloX(double grados, int bVista);
    void SetAnguloY(double grados, int bVista);
    void SetAnguloZ(double grados, int bVista);
    void SumaAnguloX(double grados, int bVista, Vertiz::CCoor3D<double>* pivote);
    void SumaAnguloY(double grados, int bVista, Vertiz::CCoor3D<double>* pivote);
    void SumaAnguloZ(double grados, int bVista, Vertiz::CCoor3D<double>* pivote);
    /// One step of the settings, in degrees.
    void AumentaAnguloX(int bVista, Vertiz::CCoor3D<double>* pivote);
    void AumentaAnguloY(int bVista, Vertiz::CCoor3D<double>* pivote);
    void AumentaAnguloZ(int bVista, Vertiz::CCoor3D<double>* pivote);
    void ReduceAnguloX(int bVista, Vertiz::CCoor3D<double>* pivote);
    void ReduceAnguloY(int bVista, Vertiz::CCoor3D<double>* pivote);
    void ReduceAnguloZ(int bVista, Vertiz::CCoor3D<double>* pivote);
    /// Pan by one step of the settings, in pixels.
    void AumentaXTrans();
    void ReduceXTrans();
    void AumentaZTrans();
    void ReduceZTrans();
    /// Lays the point looked at on the model.
    void CompruebaCotaCamara();
    /// Feedback in XOR on the front buffer, in pixels: drawing it a second time wipes it.
    void DrawZoomRect(int arriba, int abajo, int izquierda, int derecha);
    void DrawSelCircle(int x0, int y0, int x1, int y1);

    // ---- Overlays --------------------------------------------------------------------------------------------------
    /// OnIniciar... compiles an overlay's list, OnRender... draws it. The context stays current.
    int OnIniciarEjes();
    int OnIniciarCamara();
    int OnIniciarCamaraPanoramica();
    int OnIniciarPuntosCamara();
    int OnIniciarCielo();
    int OnIniciarMarcas();
    int OnIniciarMedidas();
    int OnRenderEjes();
    int OnRenderCamara();
    int OnRenderMarcasFoto();
    int OnRenderMarcasTerreno();
    int OnRenderMedidas();
    /// Opens and reads the sky image of the settings into *pImagen, which may be replaced by another object.
    int CargarImagenFondo(Vertiz::IRaster** pImagen);
    /// Marks: texts at terrain points; at a height of -9989.0 or below, on a photograph. They are copied.
    void NuevaMarca(const Vertiz::CTexto<double>& marca);
    void ModificaMarca(unsigned i, const Vertiz::CTexto<double>& marca);
    void BorraMarca(unsigned i);
    void ClearMarcas();
    void ClearMedidas();
    /// Light and material from the eleven light parameters. The context must be current.
    int SetLight();
    int SetMaterial();
    /// Clears the picture with the background of the settings.
    int SetBkColor();
    /// Sets the colour of a height from the ramp of the settings. The context must be current.
    /// @param bInterpolar between two stops; otherwise the lower one's colour
    /// @param sombra      0 black, 0.5 the colour itself, 1 white; negative without shading
    void glColorTintaHipsometrica(double z, bool bInterpolar, double sombra) const;

    // ---- Sketch line -----------------------------------------------------------------------------------------------
    /// 0 compiles the sketch's list; non-zero draws its last segment at once in XOR, which shows it or wipes it.
    int OnIniciarLineaNueva(int bDirecto);
    /// Adds a point in local terrain coordinates; in absolute ones where the seed applies (photographs, spheres).
    void InsertaPuntoLineaNueva(const Vertiz::CCoor3D<double>& p);
    void VaciaLineaNueva();
    void CierraLineaNueva();
    /// @return false with an empty sketch
    bool DuplicaUltimoPuntoLineaNueva();
    /// Undoes a digitised point: of the sketch, and of the selection where it came from.
    /// @param bGoma keep the point that follows the cursor, and drop the one before it
    void BorraUltimoPuntoLineaNueva(int bGoma);
    /// Append the sketch to a line: in terrain units, in model integers, in pixels.
    void DameLineaNuevaTerreno(Vertiz::CLinea<double>& l) const;
    void DameLineaNuevaTerreno(Vertiz::CLinea<int>& l);
    void DameLineaNuevaPantalla(Vertiz::CLinea<int>& l);

    // ---- Selection -------------------------------------------------------------------------------------------------
    /// As OnSeleccion, on the children of one kind alone.
    unsigned OnSeleccionEnVinculos(int x, int y, int desdeInicio, unsigned tipo, int acumular, unsigned modo,
                                   int bPuntoLibre, int e);
    unsigned OnSeleccionEnReferencias(int x, int y, int desdeInicio, unsigned tipo, int acumular, unsigned modo,
                                      int bPuntoLibre, int e);
    /// Empty the list here and in all children.
    void ClearSeleccion();
    void ClearPuntosSeleccion();
    void SetVistaSeleccion(std::vector<Vertiz::CPosicionEntidad>& vista, bool bIniciar);

    // ---- Composition -----------------------------------------------------------------------------------------------
    /// The first child of that name, case and all; null when there is none. It stays this scene's.
    CGL* DameReferencia(const CString& nombre);
    CGL* DameVinculo(const CString& nombre);
    /// Take a child out and hand it over: the caller owns it. Null when there is none.
    CGL* BorraReferencia(const CString& nombre);
    CGL* BorraVinculo(const CString& nombre);
    CGL* BorraVinculo(unsigned i);
    /// What a child inherits before each Iniciar and OnRender: settings, camera, GL space, tables, transformation.
    void SetVariablesReferencia(CGL* r) const;

    // ---- Palette, capture, fonts -----------------------------------------------------------------------------------
    /// Builds a palette where the device context needs one. @return 0 when it needs none
    int CreatePalette();
    /// Reads the lower left part of the picture that was last presented, with what was drawn on it since: 24-bit blue,
    /// green, red, bottom row first.
    /// @param buffer size.cy rows of size.cx pixels, each row filled up to a multiple of 4 bytes. Pixels beyond the
    ///               picture are undefined
    /// @return 0 good, 3 no context, 4 failed read
    int CapturaImagen(const CSize& size, char* buffer);
    /// The same, and copies the rows into a bitmap from its second row on, so that the uppermost one finds no place.
    /// @param info what the buffer holds, as CreateCompatibleBitmap fills it in
    /// @return as above; also 4 when nothing was copied
    int CapturaImagen(const CSize& size, char* buffer, HBITMAP hBitmap, const BITMAPINFO* info);
    /// Makes a bitmap of the display's kind for a capture. @param bmp without a bitmap; @param info out: its size, 24
    /// bits. @return 0 when there is no such bitmap
    int CreateCompatibleBitmap(CBitmap& bmp, BITMAPINFO& info, const CSize& size);
    /// Makes the glyph lists of texts, of the face Arial: outlines or bitmaps, as the settings say. Nothing without
    /// m_bFuentes, which a concrete scene sets. @return 1, also without lists: texts show their points only then
    int CreaFuentes();

  protected:
    static constexpr unsigned kGlifos = 1024;  ///< glyph lists of a font block, for UTF-16 codes from 0

    /// CreatePalette for a device context of that format. No display that is served here has one that needs a palette.
    int CreaPaleta(const PIXELFORMATDESCRIPTOR& descriptor);

    /// A scene is this one, or stands below it.
    bool Contiene(const CGL& escena) const;
    /// What assignment leaves alone: itself, and a scene above or below.
    bool EsDeLaFamilia(const CGL& otra) const { return Contiene(otra) || otra.Contiene(*this); }
    /// All children: references first, then links.
    std::vector<CGL*> Hijos() const;
    /// Fixes the point of the sketch that follows the cursor at a pixel, and starts the next one there.
    void SumaALineaNueva(const CPoint& pt);

  private:
    struct Pulsacion;

    // CGL.cpp
    void Comparte();
    void BorraTexturaFondo();
    void BorraListas();
    int IniciarHijo(CGL& hijo) const;
    int RenderHijo(CGL& hijo) const;
    void RenderPuntosCamara() const;
    int RenderMarcas();
    int IniciarCapa(int (CGL::*capa)(), bool bHijos);
    template <class Condicion>
    bool AlgunHijo(Condicion condicion) const;
    template <class Condicion>
    bool Alguna(Condicion condicion) const;

    // CGLContexto.cpp
    int CreaContextos(const PIXELFORMATDESCRIPTOR& descriptor);
    int CreaContextoPrincipal(const PIXELFORMATDESCRIPTOR& descriptor);
    int CreaContextosCompartidos();
    int CargaProyeccion();
    bool LeeMaxTexDim();
    void Presta(CGL& hijo) const;
    /// The parent is gone, and the device context that it lent with it.
    bool EsHuerfana() const { return m_bEsReferencia && m_pPrestamo.expired(); }
    bool DejaContexto(bool bDestruirHijos);
    void DestruirDC();
    void DestruirHRCShared();

    // CGLCoordenadas.cpp
    bool TerrenoAGLConImagen(const Vertiz::CCoor3D<double>& p, double& x, double& y, double& z, double escala,
                             bool bSinLimite) const;
    struct ProfundidadFondo;
    int ProyectaOrto(int& cx, int& cy, const double* vieja);
    ProfundidadFondo MideFondo(const MatricesGL& matrices) const;
    struct BloqueProfundidad;
    bool BuscaPixel(const ProfundidadFondo& fondo, const BloqueProfundidad& bloque, float& z, int& i, int& j) const;
    bool ProyectaPixel(const MatricesGL& matrices, int x, int y, Vertiz::CCoor3D<double>& c, bool& bHallado) const;
    Vertiz::CMaximas<double> EnImagen(const Vertiz::CMaximas<double>& m) const;
    int GetMaximasHijos(const std::vector<CGL*>& hijos, Vertiz::CMaximas<double>& m, int fondo) const;

    // CGLNavegacion.cpp
    int EscalaProyeccion(double plano, double fondo);
    double EscalaVista();
    void ApuntaACaja(const Vertiz::CMaximas<double>& m);
    bool AjustaOrto(const Vertiz::CMaximas<double>& cajaGL);
    bool AjustaPerspectiva(const Vertiz::CMaximas<double>& cajaGL);
    void GiraVista(double grados, Vertiz::CCoor3D<double> eje, int bVista, const Vertiz::CCoor3D<double>* pivote);
    enum class Paso { SinContexto, SinPunto, Hallado };
    Paso MidePaso(int dx, int dy, Vertiz::CCoor3D<double>& d);
    void DesplazaX(int sentido);
    void DesplazaZ(int sentido);
    template <class Traza>
    bool DibujaXor(Traza traza);

    // CGLSuperpuestos.cpp, CGLCielo.cpp
    void RestauraModo() const;
    bool SituaIcono(double fondo, double z) const;
    bool CargaTexturaCielo(bool& bBuena);
    void CompilaEsferaCielo() const;

    // CGLMarcas.cpp
    using ClaseMarca = bool (*)(const Vertiz::CTexto<double>& marca);
    void BorraListasMarcas();
    int CompilaPuntosMarcas(GLuint& lista, ClaseMarca esDeEstas);
    int CompilaMarca(unsigned i);
    Vertiz::CCoor3D<double> LugarMarca(unsigned i) const;
    int CompilaMarcas();
    int RenderTextosMarcas(GLuint listaPuntos, ClaseMarca esDeEstas);
    template <class Cambio>
    void CambiaMarcas(Cambio cambio);

    // CGLComposicion.cpp
    void TomaHijo(CGL& r);
    void HeredaImagen(CGL& r, int fondo) const;
    void AjustaProyeccion(const CGL& r);
    void SetFondoGrupo(int fondo);
    void AjustaFondoSin(const CGL& r);
    static CGL* SueltaHijo(std::vector<CGL*>& lista, std::size_t i);
    static void DestruirHijos(std::vector<CGL*>& lista);

    // CGLSeleccion.cpp
    unsigned SeleccionaEnHijos(const Pulsacion& s, bool bReferencias, bool bVinculos);
    static bool PreguntaHijos(const std::vector<CGL*>& hijos, int primero, const Pulsacion& s, unsigned& r,
                              Vertiz::CCoor3D<double>& p);
    template <class Pregunta>
    unsigned SumaHijos(bool bReferencias, bool bVinculos, Pregunta pregunta) const;

    // CGLFuentes.cpp
    void BorraFuentes();

    // CGLLineaNueva.cpp
    int RehazLineaNueva(bool bSegmento);
    void BorraUltimoPuntoSeleccion();
    void BorraUltimoDigitado(bool bGoma);
    Vertiz::CCoor3D<double> SinSemilla(const Vertiz::CCoor3D<double>& p) const;
    int DibujaLineaNueva(unsigned primero) const;
    int EstiloLineaNueva() const;
    void TrazaLineaNueva(unsigned primero) const;
    Vertiz::CCoor3D<double> PuntoBoceto(unsigned i, bool bGuardado, double escala) const;

    // CGLImpresion.cpp
    bool PreparaPagina(const CSize& imagen, CView* pView);
    bool RenderPagina();
    void LiberaPagina();
    void PonContexto(HGLRC hRC, CDC* pDC, int bDCExterno);

    // Copies count as owners of the context; each child counts the scenes that hold it. A child only looks at the
    // owners of its parent's context, so that it knows when that is gone.
    std::shared_ptr<const char> m_pDuenos;
    std::weak_ptr<const char> m_pPrestamo;
    unsigned m_nPadres = 0;
};

// Inline, since every vertex of every model goes through here, and nearly all of them where no image takes part.
inline bool CGL::TerrenoAGL(const Vertiz::CCoor3D<double>& p, double& x, double& y, double& z, double escala,
                            bool bSinLimite) const {
    if (m_nTipoImagenFondo != 0 || m_bEsReferencia != 0 ||
        m_DataTransformacion.GetTipo() == Vertiz::CDataTransformacion::ESFERICA)
        return TerrenoAGLConImagen(p, x, y, z, escala, bSinLimite);
    CajaAGL(p.x * escala, p.y * escala, p.z * escala, x, y, z);
    return true;
}
