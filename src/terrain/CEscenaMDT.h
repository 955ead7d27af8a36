#pragma once
// What all terrain scenes share: their layers beside the surface, the state that the surface is drawn in, and the sky.

#include "terrain/CEdificios.h"
#include "frame/CGL.h"
#include "model/CDibujo.h"

/// The base of the terrain scenes. A terrain is a surface, which the concrete scene compiles, and layers that stand on
/// it, each with a list of its own and a mark that tells whether it has been built since the last `Iniciar`.
class LUMBRA_API CEscenaMDT : public CGL {
  public:
    CEscenaMDT() = default;
    /// As the copy constructor and the assignment of CGL.
    CEscenaMDT(const CEscenaMDT& otra);
    CEscenaMDT& operator=(const CEscenaMDT& otra);
    ~CEscenaMDT() override;

    using CGL::operator=;
    CGL& operator=(const CGL& otra) override;

    /// What the selection holds: 1 cells or triangles, 0 points.
    int GetTipoSeleccion() const { return m_nTipoSeleccion; }

    void OnLiberarContexto(bool bBorrar) override;

    /// Compiles the limits: the box of the extents and the lines of a drawing.
    /// @param dibujo   outlines, integers on its own seed
    /// @param maximas  extents in local terrain units
    int DibujarLimites(const Vertiz::CDibujo<int>& dibujo, const Vertiz::CMaximas<double>& maximas);
    /// Compiles breaklines in the styles of the digitising table; without a table, or when they have been built
    /// already, there is nothing to do.
    int DibujarRupturas(const Vertiz::CDibujo<int>& dibujo, const Vertiz::CMaximas<double>& maximas);

    /// From plan coordinates times the factor and a terrain height, both less the scene's offset as the caller has it,
    /// to GL space. In: x, y, z of the terrain. Out: x, y and z of GL, z not yet turned round.
    /// @param a, b, c  shift of the drawing in X, Y and Z  @param d  further shift of the height
    void TerrenoAPantallaGL(double& x, double& y, double& z, const Vertiz::CMaximas<double>& maximas, double a,
                            double b, double c, double d) const;

    // ---- Buildings and trees ----
    /// Takes a set of buildings, borrowed; null for none. They show when their layer is built again.
    void RecargarEdificios(const CEdificios* pEdificios);
    /// A copy of the buildings shown; empty without a set.
    void GetEdificios(CEdificios& edificios) const;
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
    /// @return 1; 0 a GL error, and the list is closed
    static int PintaNaranjo(float x, float y, float z, float altura);
    static int PintaConifera(float x, float y, float z, float altura);

  protected:
    /// Trees: an entity each, whose first point is the foot and whose register 99 is the height, integers on the
    /// drawing's seed. One without the register isn't shown.
    Vertiz::CDibujo<int> m_Arboles;
    const CEdificios* m_pEdificios = nullptr;  ///< borrowed
    // The terrain axis that each axis of the scene shows, with its sign. Nothing sets others than these.
    short m_nEjeX = 1, m_nEjeY = 2, m_nEjeZ = 3;

    /// Sets material, light, colours and polygon mode for the surface and what stands on it.
    int SetVariablesVisualizacion();
    /// Draws the sky behind everything, turned with the camera.
    int RenderCielo();

    // Whether each layer has been built since the last Iniciar: the settings' values then.
    int m_bLimitesIniciados = 0;
    int m_bEdificiosIniciados = 0;
    int m_bRupturasIniciadas = 0;
    int m_bBaseIniciada = 0;
    int m_bArbolesIniciados = 0;

    int m_nTipoSeleccion = 0;

    // Lists, 0 when absent.
    GLuint m_nListaSuperficie = 0;
    GLuint m_nListaEdificios = 0;
    GLuint m_nListaRupturas = 0;
    GLuint m_nListaBase = 0;
    GLuint m_nListaArboles = 0;
    GLuint m_nListaSeleccion = 0;
    GLuint m_nListaCurvado = 0;

  private:
    void CopiaCapas(const CEscenaMDT& otra);
    void CompilaCaja(const Vertiz::CMaximas<double>& maximas) const;
    void CompilaLinea(const Vertiz::CLinea<double>& linea, const Vertiz::CMaximas<double>& maximas) const;
    int CompilaEdificio(const CDataEdificio& edificio, double escala) const;
    static Vertiz::CLinea<double> LineaLocal(const Vertiz::CEntidadDigi<int>& entidad, double precision,
                                             const Vertiz::CMaximas<double>& maximas);
};
