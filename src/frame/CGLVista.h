#pragma once
// What a scene hands down to the scenes inside it: its settings, and where and how the model is seen. It is a class of
// its own so that it can be handed down in one assignment.

#include "frame/CCamera.h"
#include "frame/CGLAjustes.h"
#include "model/CCoor.h"
#include "model/CDigiTab.h"
#include "model/CMaximas.h"
#include "platform/Exporta.h"

/// The view of a scene: camera, projection, the GL space that its extents are brought into, and the tables of styles.
/// References and links take all of it over from their parent before each Iniciar and OnRender.
class LUMBRA_API CGLVista : public CGLAjustes {
  public:
    // ---- Camera and projection -------------------------------------------------------------------------------------
    void SetCamara(const CCamera& camara) { m_Camara = camara; }
    CCamera GetCamara() const { return m_Camara; }
    CCamera& GetCamara() { return m_Camara; }
    /// Angles of the camera, in degrees.
    void SetAngulos(double x, double y, double z) { m_Camara.SetAngulos(x, y, z); }
    double GetAnguloX() const { return m_Camara.GetAnguloX(); }
    double GetAnguloY() const { return m_Camara.GetAnguloY(); }
    double GetAnguloZ() const { return m_Camara.GetAnguloZ(); }
    /// The point looked at, in GL space.
    Vertiz::CCoor3D<double> GetTrans() const { return m_Camara.View(); }
    /// Vertical field of view, in degrees.
    void SetAnguloVista(float grados) { m_fAnguloVista = grados; }
    float GetAnguloVista() const { return m_fAnguloVista; }
    /// Distances from the eye, in GL units. They take effect at the next Resize; the far plane of an orthographic view
    /// stays as Crear found it, since a resize keeps the depth range.
    void SetPlanoCerca(float v) { m_fPlanoCerca = v; }
    float GetPlanoCerca() const { return m_fPlanoCerca; }
    void SetPlanoFondo(float v) { m_fPlanoFondo = v; }
    float GetPlanoFondo() const { return m_fPlanoFondo; }

    // ---- GL space --------------------------------------------------------------------------------------------------
    /// Sides of the extents, in terrain units.
    void SetRangoX(float v) { m_dRangoX = v; }
    double GetRangoX() const { return m_dRangoX; }
    void SetRangoY(float v) { m_dRangoY = v; }
    double GetRangoY() const { return m_dRangoY; }
    void SetRangoZ(float v) { m_dRangoZ = v; }
    double GetRangoZ() const { return m_dRangoZ; }
    /// GL units in a terrain unit, GL units in a pixel.
    void SetFactor(double v) { m_dFactor = v; }
    double GetFactor() const { return m_dFactor; }
    void SetFactorPantalla(double v) { m_dFactorPantalla = v; }
    double GetFactorPantalla() const { return m_dFactorPantalla; }
    /// Height times e; it takes effect at the next Iniciar. 0 is refused.
    void SetExageracionVertical(float e);
    float GetExageracionVertical() const { return m_fExageracionVertical; }
    /// Minimum corner of the extents. @return 0 when they are empty
    int DameOrigen(Vertiz::CCoor3D<double>& c) const;
    void SetEscala(float v) { m_fEscala = v; }
    float GetEscala() const { return m_fEscala; }
    void SetPuntosSuavizado(int v) { m_nPuntosSuavizado = v; }
    int GetPuntosSuavizado() const { return m_nPuntosSuavizado; }

    // ---- Tables of styles ------------------------------------------------------------------------------------------
    /// Borrowed: they must outlive the scene. Null for none.
    void SetDigiTab(Vertiz::CDigiTab* p) { m_pDigiTab = p; }
    Vertiz::CDigiTab* GetDigiTab() const { return m_pDigiTab; }
    void SetLidarTab(Vertiz::CDigiTab* p) { m_pLidarTab = p; }
    Vertiz::CDigiTab* GetLidarTab() const { return m_pLidarTab; }
    void SetEcoTab(Vertiz::CDigiTab* p) { m_pEcoTab = p; }
    Vertiz::CDigiTab* GetEcoTab() const { return m_pEcoTab; }
    void SetVersionDigiTab(unsigned v) { m_nVersionDigiTab = v; }
    unsigned GetVersionDigiTab() const { return m_nVersionDigiTab; }
    void SetVersionLidarTab(unsigned v) { m_nVersionLidarTab = v; }
    unsigned GetVersionLidarTab() const { return m_nVersionLidarTab; }
    void SetVersionEcoTab(unsigned v) { m_nVersionEcoTab = v; }
    unsigned GetVersionEcoTab() const { return m_nVersionEcoTab; }

  protected:
    CGLVista() = default;
    ~CGLVista() = default;
    CGLVista(const CGLVista&) = default;
    CGLVista& operator=(const CGLVista&) = default;

    /// From a local terrain point to its place in the GL box of the extents.
    void CajaAGL(double X, double Y, double Z, double& x, double& y, double& z) const {
        const Vertiz::CCoor3D<double>& o = m_Maximas.Minima();
        x = ((X - o.x) - m_dRangoX * 0.5) * m_dFactor;
        y = ((Z - o.z) - m_dRangoZ * 0.5) * m_dFactor * m_fExageracionVertical;
        z = -((Y - o.y) - m_dRangoY * 0.5) * m_dFactor;
    }
    /// And back.
    Vertiz::CCoor3D<double> CajaATerreno(double x, double y, double z) const {
        const Vertiz::CCoor3D<double>& o = m_Maximas.Minima();
        return {m_dRangoX * 0.5 + x / m_dFactor + o.x, m_dRangoY * 0.5 - z / m_dFactor + o.y,
                y / m_dFactor / m_fExageracionVertical + m_dRangoZ * 0.5 + o.z, 0};
    }
    /// The factor that makes the larger of the X range and the exaggerated Z range 1. The Y range takes no part: a
    /// model that is long in Y alone comes out longer than 1.
    double FactorDeRangos() const;

    CCamera m_Camara;
    float m_fAnguloVista = 45.0F;   ///< vertical field of view, in degrees
    float m_fPlanoCerca = 0.0001F;  ///< bits 0x38D1B717
    float m_fPlanoFondo = 20000.0F;

    Vertiz::CMaximas<double> m_Maximas;  ///< extents that the GL space is built on, in local terrain units
    double m_dRangoX = 0;                ///< sides of m_Maximas, in terrain units
    double m_dRangoY = 0;
    double m_dRangoZ = 0;
    double m_dFactor = 1.0;          ///< GL units in a terrain unit
    double m_dFactorPantalla = 1.0;  ///< GL units in a pixel
    float m_fEscala = 1.0F;
    float m_fExageracionVertical = 1.0F;
    int m_nPuntosSuavizado = 0;

    Vertiz::CDigiTab* m_pDigiTab = nullptr;  ///< all three borrowed
    Vertiz::CDigiTab* m_pLidarTab = nullptr;
    Vertiz::CDigiTab* m_pEcoTab = nullptr;
    Vertiz::CDigiTab m_DigiTabEfectiva;  ///< working copy of the drawing scene
    unsigned m_nVersionDigiTab = 0;
    unsigned m_nVersionLidarTab = 0;
    unsigned m_nVersionEcoTab = 0;

    float m_fEscalaFuente = 1.0F;  ///< tallest glyph over 1.2
    int m_bFuentes = 0;            ///< glyph lists are built only when non-zero
};
