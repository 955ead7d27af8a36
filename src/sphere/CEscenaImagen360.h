#pragma once
// The scene of a panorama, seen from inside its sphere.

#include "frame/CGL.h"
#include "raster/CGeoImagen.h"

#include <memory>

/// Shows a spherical image: the picture lies on the inside of a sphere round the camera, which is turned so that the
/// recorded attitude agrees with the terrain. The scene stands alone, or as a reference of a terrain's. Its type is 8,
/// so the view is in perspective, turns about the eye and never pans; the eye belongs at the origin.
///
/// The picture covers a full turn, its middle column along the sphere's -y and its columns clockwise seen from above,
/// and the polar angles from m_dPolarInicio to m_dPolarFin of the image: they count from the nadir, where the bottom
/// row lies when the range begins with 0. Angles of the image with m_bDirecta set are the turns Rx Ry Rz from the
/// sphere's axes to the terrain's (x east, y north, z up), so with all angles 0 the middle looks south and with (0, 0,
/// 180 - A) to the azimuth A.
///
/// The image is one texture: one larger than the driver (GL_MAX_TEXTURE_SIZE) or memory takes shows the background
/// alone. The radius is 0.5 GL units.
class LUMBRA_API CEscenaImagen360 : public CGL {
  public:
    /// Without image; the constructors from a scene take its context, view and settings over as copies do.
    CEscenaImagen360();
    explicit CEscenaImagen360(const CGL& otra);
    /// @param imagen  a panorama
    /// @param propia  above 0: the scene frees the image, with its raster; else it is borrowed
    CEscenaImagen360(const CGL& otra, Vertiz::CGeoImagen* imagen, int propia);
    /// Makes an image of its own of a raster and its placement.
    /// @param propia  0: the raster is borrowed; else the scene frees it
    CEscenaImagen360(const CGL& otra, Vertiz::IRaster* raster, const Vertiz::CDataImagen& data, int propia);
    /// Copies share the image too; what the scene owns of it is freed with the last of them.
    CEscenaImagen360(const CEscenaImagen360& otra);
    CEscenaImagen360& operator=(const CEscenaImagen360& otra);
    CGL& operator=(const CGL& otra) override;
    ~CEscenaImagen360() override;

    /// The panorama; null for none. Its angles and corrections may change between two frames.
    Vertiz::CGeoImagen* GetImagen() const { return m_pImagen.get(); }

    /// As CGL::Destruir; also lets the image go.
    void Destruir();

    int Iniciar() override;
    /// Uploads the picture and compiles the sphere. @return 0 without an image, or on a GL error; a texture that OpenGL
    /// refuses is none
    int OnIniciar() override;
    int OnIniciarSeleccion() override { return 1; }
    /// Turns the sphere as the image's angles are now, and tells the image the angles used (m_Resultados).
    int OnRender() override;
    /// Draws the sphere as a background, turned with the camera alone, in the current context. @return 0 on a GL error
    int RenderConica();
    void OnLiberarContexto(bool bBorrar) override;

    /// The image's extents less its origin. @return 0 without an image
    int GetMaximasObjeto(Vertiz::CMaximas<double>& m) const override;
    /// Nothing can be selected. @return 1, with the argument as it was
    int GetMaximasSeleccion(Vertiz::CMaximas<double>& m) const override;
    bool DamePuntoSeleccion2(Vertiz::CCoor3D<double>& c, int i) override;
    const Vertiz::CDataSemilla& DameSemilla() const override;
    double Precision() const override;

    /// Draws a sphere about the origin, or a part of one between two polar angles: GLU's sphere but for the range.
    /// In GLU_INSIDE spheres polar angles count from the nadir, in others from the zenith.
    /// @param radio        GL units
    /// @param meridianos, paralelos  divisions of a turn and of the range
    /// @param normales     GLU_SMOOTH, or GLU_NONE for none
    /// @param orientacion  GLU_OUTSIDE, GLU_INSIDE
    /// @param estilo       GLU_POINT, GLU_LINE, GLU_FILL, GLU_SILHOUETTE
    /// @param textura      not 0: with texture coordinates, t upwards from `inicio`, and without caps at the poles
    /// @param inicio, fin  degrees
    void _gluSphere(double radio, int meridianos, int paralelos, int normales, int orientacion, int estilo, int textura,
                    double inicio, double fin);

  private:
    bool CargaTextura(bool& bBuena);
    bool CompilaEsfera(bool conTextura);
    bool DibujaGirada();

    GLuint m_nListaEsfera = 0;
    GLuint m_nTextura = 0;
    std::shared_ptr<Vertiz::CGeoImagen> m_pImagen;  // its deleter knows what of it is the scene's
};
