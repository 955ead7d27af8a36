#pragma once
// What the tests of terrains share: a scene that shows its lists, on a picture in memory, built in a host's order.

#include "terrain/CEscenaDEM.h"
#include "support/Modelos.h"
#include "support/RegistroGL.h"
#include "support/Tela.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// The scene under test, with the fields that a deriving scene sees.
class EscenaTerreno : public CEscenaDEM {
  public:
    using CEscenaDEM::CEscenaDEM;
    using CEscenaDEM::operator=;
    using CEscenaDEM::m_Arboles;
    using CEscenaDEM::m_bArbolesIniciados;
    using CEscenaDEM::m_bBaseIniciada;
    using CEscenaDEM::m_bEdificiosIniciados;
    using CEscenaDEM::m_bLimitesIniciados;
    using CEscenaDEM::m_bRupturasIniciadas;
    using CEscenaDEM::m_dFactor;
    using CEscenaDEM::m_dRangoX;
    using CEscenaDEM::m_dRangoY;
    using CEscenaDEM::m_dRangoZ;
    using CEscenaDEM::m_LineaNueva;
    using CEscenaDEM::m_Maximas;
    using CEscenaDEM::m_nEjeX;
    using CEscenaDEM::m_nEjeY;
    using CEscenaDEM::m_nEjeZ;
    using CEscenaDEM::m_nListaArboles;
    using CEscenaDEM::m_nListaBase;
    using CEscenaDEM::m_nListaCamara;
    using CEscenaDEM::m_nListaCielo;
    using CEscenaDEM::m_nListaCurvado;
    using CEscenaDEM::m_nListaEdificios;
    using CEscenaDEM::m_nListaEjes;
    using CEscenaDEM::m_nListaLimites;
    using CEscenaDEM::m_nListaRupturas;
    using CEscenaDEM::m_nListaSeleccion;
    using CEscenaDEM::m_nListaSuperficie;
    using CEscenaDEM::m_nTipoSeleccion;
    using CEscenaDEM::m_pEdificios;

    CDataGL& Data() { return m_Data; }
};

/// A vertex as OpenGL got it from a list.
struct Vertice {
    double x, y, z;
    std::array<double, 3> color;
};

/// Base of the tests: a scene in quads, without axes, on a picture of 120 x 90 or another size. What is left of OpenGL
/// errors after a test fails it.
class Terreno : public testing::Test {
  protected:
    using Ajuste = std::function<void(EscenaTerreno&)>;

    explicit Terreno(int ancho = 120, int alto = 90);
    void TearDown() override;

    /// Makes the contexts.
    void Crea();
    /// Takes a model and fixes the GL space on it; lists are not compiled yet.
    void Toma(Vertiz::CDEM& dem, const Ajuste& ajuste = {});
    /// All of a host's order up to Render.
    void Monta(Vertiz::CDEM& dem, const Ajuste& ajuste = {});

    /// What the surface's list holds when compiled now, calls as text; the state before the first glBegin left out.
    LlamadasGL Superficie();
    /// What a list draws: runs it through OpenGL's feedback. GL space, to five digits, in the order of the primitives;
    /// quads with their four vertices.
    std::vector<Vertice> Vertices(GLuint lista);

    /// How often a frame calls a list, as the settings are.
    long LlamadasEnCuadro(GLuint lista);

    /// GL position that a terrain point (local coordinates) should have, by the stated formula.
    std::array<double, 3> EnGL(double x, double y, double z) const;
    /// The call that sends an element of the vertex array, where samples lie by rows from the north, voids left out.
    static std::string Elemento(int indice) { return "glArrayElement(" + std::to_string(indice) + ")"; }

    Tela m_tela;
    EscenaTerreno m_escena;
};
