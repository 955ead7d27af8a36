#pragma once
// The view settings of a scene: what a user can set about how it looks, and how fast it moves.

#include "model/CDataGamaColor.h"
#include "model/CInfoClasificacion.h"
#include "platform/CString.h"
#include "platform/Exporta.h"

#include <vector>

/// How the points of a cloud are coloured. Other numbers, which settings from elsewhere may hold, stay as they are.
enum ColoresNubeLiDAR : int {
    ColorDeTabla = 0,       ///< the colour of the entity's element in the table
    ColorHipsometrico = 1,  ///< tint by height, from the ramp
    ColorRGB = 2,           ///< the point's own colour
    ColorIntensidad = 3,    ///< a hue ramp over the intensity
    ColorPorEntidad = 4,    ///< one colour for each set of points, out of twelve
    ColorPorEco = 5,        ///< by return number and number of returns
    ColorPorClase = 6,      ///< by class
    LineaDePuntos = 7,      ///< no colour of its own: the points are joined as a line
};

/// Everything that can be set about how a scene looks. A plain value: each scene holds one, and references and links
/// get a fresh copy of their parent's before each `Iniciar` and `OnRender`.
///
/// Colours are RGB integers with red in the low byte. Flags are ints, 0 or 1, as they persist.
class LUMBRA_API CDataGL {
  public:
    virtual ~CDataGL() = default;
    CDataGL() = default;
    CDataGL(const CDataGL&) = default;
    CDataGL& operator=(const CDataGL&) = default;

    /// True when both look the same. Light parameters, point size, speed, steps and `m_bMaximasObjeto` take no part.
    bool operator==(const CDataGL&) const;

    /// Doubles the speed and both steps; steps are truncated and at least 1.
    void AumentaVelocidad();
    /// Halves the speed and both steps. Since steps are truncated, a reduction and an increase need not cancel out.
    void ReduceVelocidad();
    /// Speed relative to the normal one: 1.0 by default.
    double GetFactorVelocidad() const { return m_fVelocidad * 8.0; }
    /// Sets the speed relative to the normal one; the steps stay.
    void SetFactorVelocidad(double factor) { m_fVelocidad = static_cast<float>(factor * 0.125); }

    /// Reads the settings from the application's profile store (CWinApp). What isn't there stays as it is.
    ///
    /// A `Quad` above 3 and a `Rotacion` above 1 become 1; a `TipoLIDAR` of 1 without a ramp becomes 3; a speed that is
    /// 0 or no number becomes 0.125. Both steps are multiplied by the speed factor read, also when the speed isn't
    /// there: a second read of the same store multiplies them again, so a host reads into fresh settings.
    void GetProfile(const CString& seccion);
    /// Writes the settings. Of the three `VerPuntos...` and `VerPlanos` only the key "VerPlanos" is written, which
    /// holds `m_bVerPuntosSinPlanos`. Objects to see, marks, `m_bMaximasObjeto` and the steps aren't stored.
    void WriteProfile(const CString& seccion) const;
    /// The same with an INI file, where each of the three has its key, and the steps stay when the speed isn't there.
    /// Of the sky's path the file holds the first 255 characters.
    void GetPrivateProfile(const CString& fichero, const CString& seccion);
    void WritePrivateProfile(const CString& fichero, const CString& seccion) const;

    /// Sliders of light and material, 0 to 100; 50 is zero for the signed ones. 0 to 2: position of the light; 3 to 5:
    /// ambient, diffuse, specular of the light; 6 to 8: the same of the material; 9: shininess; 10: emission.
    int m_nLuzParam[11] = {0, 0, 100, 59, 100, 46, 59, 100, 0, 100, 0};
    int m_nColorFondo = 0xFEF1E0;      ///< background
    int m_nColorDEM = 0x62C5DD;        ///< terrain surface
    int m_nColorBase = 0x808080;       ///< base of the model
    int m_nColorLIDAR = 0;             ///< point cloud
    int m_nColorDesmonte = 0x0000FF;   ///< cut
    int m_nColorTerraplen = 0x00FF00;  ///< fill
    int m_nColorNada = 0xFF0000;       ///< neither cut nor fill
    int m_nGrosorPuntos = 1;           ///< point size and line width, pixels
    int m_nSombraCeldas = 0;           ///< 0 one colour for the surface, else four fixed tints a cell
    unsigned m_nQuad = 2;              ///< surface: 0 strips or triangles, 1 quads or triangles, 2 points, 3 none
    /// Colour of a terrain surface: 0 wire, 1 plain, 2 hypsometric, 3 point colour, 4 intensity, 5 LiDAR class, 6 cut
    /// and fill.
    unsigned m_nModoRelleno = 1;
    int m_nTipoColorLineas = 0;                               ///< colour of lines
    ColoresNubeLiDAR m_nTipoLIDAR = ColorIntensidad;          ///< colour of point clouds
    Vertiz::CDataGamaColor m_GamaColor{L""};                  ///< hypsometric ramp
    int m_bRotacion = 1;                                      ///< rotation mode, 0 or 1
    int m_bLimites = 0;                                       ///< show limits
    int m_bEdificios = 1;                                     ///< show buildings
    int m_bArboles = 1;                                       ///< show trees
    std::vector<Vertiz::CInfoClasificacion> m_VerObjetosMDT;  ///< visible object classes
    int m_bRupturas = 1;                                      ///< show breaklines
    int m_bReferencia = 1;                                    ///< draw references
    int m_bCurvado = 0;                                       ///< show contours
    int m_bBase = 0;                                          ///< show base
    int m_bMaximasObjeto = 1;                                 ///< the scene's own extent counts in `GetMaximas`
    int m_bLuz = 1;                                           ///< lighting on
    int m_bLimitesProyecto = 1;                               ///< show project limits
    int m_bRelleno = 0;                                       ///< fill: terrains are lit only when on
    int m_bPuntosCamara = 1;                                  ///< show camera stations
    int m_bMascara = 1;                                       ///< show the photo mask
    int m_bMarcasFoto = 0;                                    ///< draw marks on photographs
    int m_bMarcasTerreno = 0;                                 ///< draw marks on the terrain
    int m_bVerPlanos = 0;                                     ///< show planes
    int m_bVerPuntosConPlanos = 0;                            ///< show points that have planes
    int m_bVerPuntosSinPlanos = 1;                            ///< show points without planes
    int m_bOrto = 1;                                          ///< orthographic view
    unsigned m_nEjes = 1;                                     ///< axes: 0 off, 1 in the corner, else in the middle
    int m_bImagenFondo = 0;                                   ///< sky image on
    CString m_SzImagenFondo;                                  ///< path of the sky image
    float m_fVelocidad = 0.125F;                              ///< zoom step
    int m_nPasoTrans = 10;                                    ///< step of a move, pixels
    int m_nPasoAngulo = 5;                                    ///< step of a rotation, degrees
    int m_nCalidadTextos = 0;                                 ///< deviation of text outlines, hundredths
    int m_bTextos3D = 1;                                      ///< outline fonts instead of bitmap fonts
    int m_nAlturaTextos = 14;                                 ///< height of the bitmap font, pixels
    short m_nAlfaSuperficie = 20;                             ///< surface transparency
    short m_nAlfaImagen = 50;                                 ///< image transparency
    int m_nMaxPuntosTrazados = 10000;                         ///< point budget of a drawing

  private:
    void MultiplicaVelocidad(float factor);
    void MultiplicaPasos(float factor);

    // CDataGLPerfil.cpp
    void PonVelocidad(const CString& texto);
    void AjustaModos();
    void AjustaTipoLIDAR();
};
