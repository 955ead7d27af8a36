#pragma once
// What a copy of a scene takes over: its view, what it is, and what it holds in OpenGL. It is a class of its own so
// that a copy is one assignment; what each scene keeps to itself is in CGLPropio.

#include "frame/CGLVista.h"
#include "model/CDigiTab.h"
#include "model/CLinea.h"
#include "model/CMaximas.h"
#include "model/CPosicionEntidad.h"
#include "platform/CBitmap.h"
#include "platform/CPalette.h"
#include "platform/CString.h"
#include "platform/Contextos.h"
#include "platform/Exporta.h"
#include "platform/OpenGL.h"

#include <vector>

class CDC;
class CGL;

/// What a scene is, and the context, lists and children that it shares with its copies. CGL counts who shares them.
class LUMBRA_API CGLEstado : public CGLVista {
  public:
    // ---- What this scene is ----------------------------------------------------------------------------------------
    /// -1 none, 1 grid, 2 drawing, 3 image on a TIN, 4 TIN, 5 and 6 further drawings, 7 tetrahedra, 8 spherical image.
    int GetTipo() const { return m_nTipo; }
    void SetTipo(int tipo) { m_nTipo = tipo; }
    bool EsMDT() const { return m_nTipo == 1 || m_nTipo == 4 || m_nTipo == 7; }
    /// The view turns round a fixed eye inside a spherical image.
    bool EsEsferica() const { return m_nTipo == 8 || TieneImagenEsferica(); }
    /// The view is orthographic; every other one is in perspective.
    bool EsOrtografica() const { return m_Data.m_bOrto != 0 && !EsEsferica(); }
    /// How this scene relates to a photograph: 0 not at all; 2, 4, 6 it is the conic, ortho, spherical background; 1,
    /// 3, 5 it is drawn over such a one.
    int GetTipoImagenFondo() const { return m_nTipoImagenFondo; }
    void SetImagenConicaFondo() { m_nTipoImagenFondo = 2; }
    void SetImagenOrtoFondo() { m_nTipoImagenFondo = 4; }
    void SetImagenEsfericaFondo() { m_nTipoImagenFondo = 6; }
    bool TieneImagen() const { return m_nTipoImagenFondo != 0; }
    bool TieneImagenConica() const { return m_nTipoImagenFondo == 1 || m_nTipoImagenFondo == 2; }
    bool TieneImagenOrto() const { return m_nTipoImagenFondo == 3 || m_nTipoImagenFondo == 4; }
    bool TieneImagenEsferica() const { return m_nTipoImagenFondo == 5 || m_nTipoImagenFondo == 6; }
    bool EsImagenConicaFondo() const { return m_nTipoImagenFondo == 2; }
    bool EsImagenOrtoFondo() const { return m_nTipoImagenFondo == 4; }
    bool EsImagenEsfericaFondo() const { return m_nTipoImagenFondo == 6; }
    /// Non-zero for a reference or link of another scene.
    int EsReferencia() const { return m_bEsReferencia; }
    int TieneReferencia() const { return !m_Referencias.empty(); }
    int TieneVinculos() const { return !m_Vinculos.empty(); }

    /// Object kinds of the terrain; copied.
    void SetTiposObjetosMDT(const std::vector<unsigned char>& v) { m_TiposObjetosMDT = v; }
    std::vector<unsigned char> GetTiposObjetosMDT() const { return m_TiposObjetosMDT; }
    /// Size of the camera models, in terrain units; it takes effect at the next Iniciar.
    void SetSizeCamara(double size) { m_fSizeCamara = static_cast<float>(size); }
    /// Kind of the sketch line: 1 yellow, 3 wide; 3 all heights as the first point's; 4 all X and Y as the first
    /// point's; others as they are.
    void SetTipoLineaNueva(unsigned tipo) { m_nTipoLineaNueva = tipo; }
    unsigned GetTipoLineaNueva() const { return m_nTipoLineaNueva; }
    /// The sketch closes by itself.
    void SetCerrarLineaNueva(int bCerrar) { m_bCerrarLineaNueva = bCerrar; }
    int GetCerrarLineaNueva() const { return m_bCerrarLineaNueva; }
    std::vector<Vertiz::CPosicionEntidad> GetVistaSeleccion() const { return m_VistaSeleccion; }
    /// Largest side of a texture, in pixels.
    void SetMaxTexDim(int v) { m_nMaxTexDim = v; }
    int GetMaxTexDim() const { return m_nMaxTexDim; }
    /// Accumulated zoom of an orthographic view; 1.0 in any other.
    double GetZoom() const { return EsOrtografica() ? m_dZoom : 1.0; }
    /// Pan by GL units. A spherical view stays where it is: its eye is the sphere's centre.
    void SumaXTrans(double d) {
        if (!EsEsferica()) m_Camara.SumaXTrans(d);
    }
    void SumaYTrans(double d) {
        if (!EsEsferica()) m_Camara.SumaYTrans(d);
    }
    void SumaZTrans(double d) {
        if (!EsEsferica()) m_Camara.SumaZTrans(d);
    }
    void SumaTrans(const Vertiz::CCoor3D<double>& d) {
        if (!EsEsferica()) m_Camara.SumaTrans(d);
    }

    /// The palette of a display with few colours, the scene's; null when it needs none.
    CPalette* GetPalette() { return m_pPalette; }
    /// One channel of a palette entry, 0 to 255: nbits of i from shift up, spread over a byte; 0 above 3 bits.
    static unsigned char ComponentFromIndex(int i, unsigned nbits, unsigned shift);

  protected:
    CGLEstado() = default;
    ~CGLEstado() = default;
    CGLEstado(const CGLEstado&) = default;
    CGLEstado& operator=(const CGLEstado&) = default;

    /// This scene is the photograph, not one drawn over it.
    bool EsImagenFondo() const { return EsImagenConicaFondo() || EsImagenOrtoFondo() || EsImagenEsfericaFondo(); }
    /// Forgets the lists and textures of the overlays: others own them, or they are gone.
    void OlvidaListas();

    // ---- Palette: the levels of a channel of 1, 2 and 3 bits; the places of the system's colours, and these ---------
    static const unsigned char m_oneto8[2];
    static const unsigned char m_twoto8[4];
    static const unsigned char m_threeto8[8];
    static const int m_defaultOverride[13];
    static const PALETTEENTRY m_defaultPalEntry[20];
    static constexpr int kEntradasPaleta = 256;
    /// Whether a display of that format shows right colours through a palette only.
    static bool NecesitaPaleta(const PIXELFORMATDESCRIPTOR& descriptor, bool bDCExterno);
    /// Fills a palette for an RGBA format. @param entradas room for kEntradasPaleta, zeroed
    static void LlenaPaleta(const PIXELFORMATDESCRIPTOR& descriptor, PALETTEENTRY* entradas);

    int m_nTipo = -1;
    int m_bEsReferencia = 0;             ///< 1: owned by another scene, as reference or link; stays so for life
    int m_nTipoImagenFondo = 0;          ///< see GetTipoImagenFondo
    int m_nCotaRaster = -9999;           ///< height of image points that have none
    double m_dDistanciaEsferica = 80.0;  ///< points farther from a spherical image's centre are left out, terrain units
    float m_fRadioEsfera = 0.5F;
    std::vector<unsigned char> m_TiposObjetosMDT = {0};  ///< object kinds of the terrain
    Vertiz::CDigiTab m_DigiTabTrabajo;                   ///< second working table of the drawing scene
    bool m_bIniciarMalla = true;
    std::vector<CGL*> m_Referencias;  ///< owned, together with the copies of this scene
    std::vector<CGL*> m_Vinculos;

    // ---- Window, view selection, sketch ----------------------------------------------------------------------------
    int m_nAncho = 0;  ///< client size of the last Resize, in pixels
    int m_nAlto = 0;
    double m_dAspecto = 1.0;            ///< width over height
    double m_dZoom = 1.0;               ///< accumulated zoom of the projection
    Vertiz::CCoor3D<double> m_PuntoGL;  ///< last point found by PantallaATerreno, in GL space
    int m_bVistaSeleccion = 0;
    std::vector<Vertiz::CPosicionEntidad> m_VistaSeleccion;
    Vertiz::CMaximas<double> m_MaximasVista;
    unsigned m_nTipoLineaNueva = 0;
    int m_bCerrarLineaNueva = 0;

    // ---- Camera stations -------------------------------------------------------------------------------------------
    float m_fSizeCamara = 1.0F;
    /// In terrain space; Tipo 0 conic, otherwise panoramic.
    Vertiz::CLinea<double> m_PuntosCamara{CString(L"nuevo")};
    Vertiz::CLinea<double> m_PuntosCamaraGL{CString(L"nuevo")};
    Vertiz::CLinea<double> m_AngulosCamara{CString(L"nuevo")};  ///< of each station, in degrees

    // ---- Context ---------------------------------------------------------------------------------------------------
    HGLRC m_hRC = nullptr;
    unsigned m_nHRCShared = 0;  ///< number of processors: one context for each worker
    CDC* m_pDC = nullptr;
    int m_bDCExterno = 0;  ///< 1: the device context is borrowed
    CPalette* m_pPalette = nullptr;
    CPalette* m_pPaletaAnterior = nullptr;  ///< selected in the device context before ours
    int m_nMaxTexDim = 0;

    // ---- Printing: the memory bitmap of a page, its context, and what was current before ---------------------------
    HDC m_hDCAnterior = nullptr;
    HDC m_hDCMemoria = nullptr;
    HGLRC m_hRCAnterior = nullptr;
    HGLRC m_hRCImpresion = nullptr;
    BITMAPINFOHEADER m_CabeceraImpresion{};
    void* m_pBitsImpresion = nullptr;
    HBITMAP m_hBitmapImpresion = nullptr;
    int m_nAnchoImpresora = 0;  ///< page, in pixels
    int m_nAltoImpresora = 0;

    // ---- Lists and textures of the overlays ------------------------------------------------------------------------
    GLuint m_nTexturaFondo = 0;  ///< sky image
    GLuint m_nListaMarcas = 0;   ///< first of one list for each mark
    GLuint m_nListaPuntosMarcasFoto = 0;
    GLuint m_nListaPuntosMarcasTerreno = 0;
    GLuint m_nListaMedidas = 0;
    GLuint m_nListaLineaNueva = 0;
    GLuint m_nListaCielo = 0;
    GLuint m_nListaEjes = 0;
    GLuint m_nListaCamara = 0;
    GLuint m_nListaCamaraPanoramica = 0;
    GLuint m_nListaReserva = 0;
    GLuint m_nListaLimites = 0;  ///< compiled by the scenes
    GLuint m_nListaFuentes = 0;  ///< first of CGL::kGlifos lists
    GLuint m_nListaFuentesSeleccion = 0;
};
