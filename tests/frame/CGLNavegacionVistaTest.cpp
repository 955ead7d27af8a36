// What the user sees of the moves, in windows of all shapes, orthographic and in perspective: what was asked to come to
// the middle comes there, what is held stays where it is.

#include "EscenaVista.h"

#include <ostream>

using Punto = EscenaPrueba::Punto;
using Maximas = EscenaPrueba::Maximas;

namespace {

struct Ventana {
    int ancho, alto, bOrto;
};

std::ostream& operator<<(std::ostream& o, const Ventana& v) {
    return o << v.ancho << "x" << v.alto << (v.bOrto ? " orthographic" : " perspective");
}

/// Shrinks the model in windows narrower than high, as all scenes of models do.
class EscenaAjustada : public EscenaVista {
  public:
    using EscenaVista::operator=;
    int OnRender() override {
        glEnable(GL_DEPTH_TEST);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        GetCamara().Look();
        if (m_dAspecto < 1.0) glScaled(m_dAspecto, m_dAspecto, m_dAspecto);
        glCallList(m_nLista);
        return HayErrorGL() ? 0 : 1;
    }
};

/// The floor of a box of 100 x 100 x 50, seen straight down.
class ConVistas : public testing::TestWithParam<Ventana> {
  protected:
    void SetUp() override {
        m_Escena.SetPlanoFondo(4);
        m_Escena.SetOrtogonal(GetParam().bOrto);
        ASSERT_TRUE(m_Escena.Monta(m_Tela, GetParam().ancho, GetParam().alto));
        Dibuja();
    }
    void TearDown() override { EXPECT_EQ(wglGetCurrentContext(), nullptr) << "a context was left current"; }

    void Dibuja() { ASSERT_EQ(m_Escena.Render(), 1); }
    void Ladea() {
        m_Escena.SumaAnguloX(-25, 1, nullptr);
        Dibuja();
        m_Escena.SumaAnguloZ(10, 1, nullptr);
        Dibuja();
    }
    CPoint PixelGL(const Punto& gl) {
        CPoint pt;
        EXPECT_EQ(m_Escena.TerrenoAPantalla(pt, gl, nullptr, true), 1);
        return pt;
    }
    CPoint Centro() const { return {GetParam().ancho / 2, GetParam().alto / 2}; }
    /// GL point of the floor that is seen at a pixel.
    Punto Visto(const CPoint& pt) {
        Punto c;
        EXPECT_EQ(m_Escena.PantallaATerreno(pt, c, true, false, false), 1);
        return c;
    }

    Tela m_Tela{GetParam().ancho, GetParam().alto};
    EscenaAjustada m_Escena;
};

void EsperaJunto(const CPoint& obtenido, const CPoint& esperado, int pixeles = 1) {
    EXPECT_NEAR(obtenido.x, esperado.x, pixeles);
    EXPECT_NEAR(obtenido.y, esperado.y, pixeles);
}

using Giro = void (CGL::*)(double, int, Punto*);
constexpr Giro kGiros[] = {&CGL::SumaAnguloX, &CGL::SumaAnguloY, &CGL::SumaAnguloZ};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Ventanas, ConVistas,
                         testing::Values(Ventana{200, 150, 1}, Ventana{120, 200, 1}, Ventana{160, 160, 1},
                                         Ventana{200, 150, 0}, Ventana{120, 200, 0}, Ventana{160, 160, 0}));

TEST_P(ConVistas, APivotKeepsItsPixelAboutEveryAxis) {
    for (const bool bLadeada : {false, true}) {
        if (bLadeada) Ladea();
        for (const Giro gira : kGiros)
            for (const auto& [x, y] : {std::pair(70.0, 40.0), {35.0, 55.0}, {50.0, 50.0}})
                for (const double grados : {15.0, -15.0}) {
                    Punto pivote = m_Escena.EnGL(Punto(x, y, 0));
                    const CPoint antes = PixelGL(pivote);
                    const CCamera camara = m_Escena.GetCamara();
                    (m_Escena.*gira)(grados, 1, &pivote);
                    Dibuja();
                    EsperaJunto(PixelGL(pivote), antes);
                    const CCamera girada = m_Escena.GetCamara();
                    const Punto frente = girada.View() - girada.Position();
                    EXPECT_NEAR(frente.Distancia(Punto(0, 0, 0), 1), 1.0, 1e-5);
                    EXPECT_GT(frente.Distancia(camara.View() - camara.Position(), 1) +
                                  girada.UpVector().Distancia(camara.UpVector(), 1),
                              0.2)
                        << "it did turn";
                }
    }
}

TEST_P(ConVistas, ManyTurnsDoNotDrift) {
    Punto pivote = m_Escena.EnGL(Punto(60, 45, 0));
    const CPoint antes = PixelGL(pivote);
    const CCamera camara = m_Escena.GetCamara();
    for (const double grados : {12.0, -12.0})
        for (int i = 0; i < 5; ++i) {
            m_Escena.SumaAnguloX(grados, 1, &pivote);
            Dibuja();
        }
    EsperaJunto(PixelGL(pivote), antes, 2);
    EsperaCerca(m_Escena.GetCamara().UpVector(), camara.UpVector(), 1e-4);
}

TEST_P(ConVistas, WithoutAPivotTheTargetOrTheEyeStays) {
    Ladea();
    for (const int bVista : {1, 0})
        for (const Giro gira : kGiros) {
            const CCamera antes = m_Escena.GetCamara();
            (m_Escena.*gira)(15, bVista, nullptr);
            Dibuja();
            const CCamera despues = m_Escena.GetCamara();
            EsperaCerca(bVista ? despues.View() : despues.Position(), bVista ? antes.View() : antes.Position(), 1e-5);
            EXPECT_NEAR(despues.Position().Distancia(despues.View(), 1), 1.0, 1e-5);
            EXPECT_NEAR(despues.UpVector().Distancia(Punto(0, 0, 0), 1), 1.0, 1e-5);
        }
}

TEST_P(ConVistas, ThePixelThatIsCentredComesToTheMiddle) {
    for (const bool bLadeada : {false, true}) {
        if (bLadeada) Ladea();
        for (const auto& [x, y] : {std::pair(70.0, 35.0), {30.0, 60.0}, {55.0, 80.0}}) {
            const Punto punto = m_Escena.EnGL(Punto(x, y, 0));
            const Punto dado = m_Escena.OnZoomCentrado(PixelGL(punto));
            EXPECT_NEAR(dado.Distancia(punto, 1), 0.0, 0.02);
            Dibuja();
            EsperaJunto(PixelGL(punto), Centro());
        }
    }
}

TEST_P(ConVistas, ARectangleFillsTheWindow) {
    const CPoint c = Centro();
    // A quarter of the window, off its middle.
    const int w = GetParam().ancho / 8, h = GetParam().alto / 8;
    const CPoint medio(c.x + w / 2, c.y - h / 2);
    const Punto esquina = Visto(CPoint(medio.x - w, medio.y - h)), otra = Visto(CPoint(medio.x + w, medio.y + h));
    const Punto enMedio = Visto(medio);
    m_Escena.OnZoomVentana(medio.y - h, medio.y + h, medio.x - w, medio.x + w);
    Dibuja();
    EsperaJunto(PixelGL(enMedio), c);
    EsperaJunto(PixelGL(esquina), CPoint(0, 0), 5);  // four times half a pixel, and the middle's
    EsperaJunto(PixelGL(otra), CPoint(GetParam().ancho, GetParam().alto), 5);
}

TEST_P(ConVistas, ABoxFillsTheWindowBarOneStep) {
    m_Escena.m_Data.m_fVelocidad = 1.0F;  // a step of nothing in an orthographic view
    Ladea();
    const Maximas caja(Punto(40, 30, 0), Punto(60, 60, 5));
    m_Escena.OnZoomVentana(caja);
    Dibuja();
    if (!GetParam().bOrto) return;  // there the last step moves the camera
    Maximas enVentana;
    for (const double x : {40.0, 60.0})
        for (const double y : {30.0, 60.0})
            for (const double z : {0.0, 5.0}) {
                const CPoint pt = PixelGL(m_Escena.EnGL(Punto(x, y, z)));
                enVentana.Nuevo(Punto(pt.x, pt.y, 0));
            }
    const double ancho = enVentana.Maxima().x - enVentana.Minima().x,
                 alto = enVentana.Maxima().y - enVentana.Minima().y;
    EXPECT_NEAR(std::max(ancho / GetParam().ancho, alto / GetParam().alto), 1.0, 0.03);
    EXPECT_NEAR(enVentana.Maxima().x + enVentana.Minima().x, GetParam().ancho, 8);
    EXPECT_NEAR(enVentana.Maxima().y + enVentana.Minima().y, GetParam().alto, 8);
}

TEST_P(ConVistas, ABoxOfOnePixelIsWidenedByOneOnEachSide) {
    if (!GetParam().bOrto) return;
    m_Escena.m_Data.m_fVelocidad = 1.0F;
    m_Escena.OnZoomVentana(Maximas(Punto(50, 50, 10), Punto(50, 50, 10)));
    EXPECT_DOUBLE_EQ(m_Escena.GetZoom(), std::min(GetParam().ancho, GetParam().alto) / 2.0);
}

TEST_P(ConVistas, WhereTheTurnHasNoPivotsPixelItGoesRoundTheTarget) {
    const Punto vista = m_Escena.GetTrans();
    Punto pivote = m_Escena.EnGL(Punto(70, 40, 0));
    m_Escena.m_Maximas = Maximas();
    m_Escena.SumaAnguloX(20, 1, &pivote);
    EsperaCerca(m_Escena.GetTrans(), vista, 1e-5);
    EXPECT_GT(m_Escena.GetCamara().UpVector().Distancia(Punto(0, 0, -1), 1), 0.1);
}

TEST_P(ConVistas, APanBringsWhatWasAStepAwayToTheMiddle) {
    for (const bool bLadeada : {false, true}) {
        if (bLadeada) Ladea();
        const CPoint c = Centro();
        const int paso = m_Escena.m_Data.m_nPasoTrans;
        const auto prueba = [&](void (CGL::*pan)(), int dx, int dy) {
            const Punto punto = Visto(CPoint(c.x + dx, c.y + dy));
            (m_Escena.*pan)();
            Dibuja();
            EsperaJunto(PixelGL(punto), c);
        };
        prueba(&CGL::AumentaXTrans, paso, 0);
        prueba(&CGL::ReduceXTrans, -paso, 0);
        prueba(&CGL::AumentaZTrans, 0, -paso);
        prueba(&CGL::ReduceZTrans, 0, paso);
    }
}

TEST_P(ConVistas, AFitShowsAllOfTheModel) {
    const auto caben = [&] {
        Dibuja();
        Maximas enVentana;
        for (const double x : {m_Escena.m_Caja.Minima().x, m_Escena.m_Caja.Maxima().x})
            for (const double y : {m_Escena.m_Caja.Minima().y, m_Escena.m_Caja.Maxima().y})
                for (const double z : {m_Escena.m_Caja.Minima().z, m_Escena.m_Caja.Maxima().z}) {
                    const CPoint pt = PixelGL(m_Escena.EnGL(Punto(x, y, z)));
                    EXPECT_TRUE(pt.x >= -1 && pt.y >= -1 && pt.x <= GetParam().ancho + 1 && pt.y <= GetParam().alto + 1)
                        << pt.x << " " << pt.y;
                    enVentana.Nuevo(Punto(pt.x, pt.y, 0));
                }
        return std::max((enVentana.Maxima().x - enVentana.Minima().x) / GetParam().ancho,
                        (enVentana.Maxima().y - enVentana.Minima().y) / GetParam().alto);
    };
    m_Escena.OnZoomExtension();
    EXPECT_GT(caben(), 0.5);
    m_Escena.SumaTrans(Punto(0.3, 0.1, 0.2));
    m_Escena.OnZoomIn(0.4);
    Dibuja();
    m_Escena.OnZoomExtension();
    EXPECT_GT(caben(), 0.5);
    if (!GetParam().bOrto) return;
    // From any side, to the edge, but for what a tall window is shrunk by.
    const double lleno = std::min(1.0, 1.0 * GetParam().ancho / GetParam().alto);
    EXPECT_NEAR(caben(), lleno, 0.02);
    Ladea();
    m_Escena.OnZoomExtension();
    EXPECT_NEAR(caben(), lleno, 0.02);
}

TEST_P(ConVistas, TheTargetIsLaidOnTheModelThatIsSeenThere) {
    Ladea();
    const Punto ojo = m_Escena.GetCamara().Position();
    const Punto visto = Visto(Centro());
    m_Escena.CompruebaCotaCamara();
    Dibuja();
    EXPECT_EQ(m_Escena.GetCamara().Position(), ojo);
    EsperaJunto(PixelGL(visto), Centro());
    const double escala = std::min(1.0, 1.0 * GetParam().ancho / GetParam().alto);
    EXPECT_NEAR(m_Escena.GetTrans().y, -0.25 * escala, 0.02) << "the floor, as the camera sees it";
}

TEST_P(ConVistas, AnglesThatWereSetComeBackAndShowTheSameView) {
    const Punto angulos[] = {{0, 0, 0}, {40, 0, 0}, {30, 200, 0}, {75, 120, 20}, {300, 45, 340}};
    for (const Punto& a : angulos) {
        const auto pon = [&] {
            m_Escena.SetAngulos(a.x, a.y, a.z);
            Dibuja();
            EXPECT_NEAR(m_Escena.GetAnguloX(), a.x, 1e-5);
            EXPECT_NEAR(m_Escena.GetAnguloY(), a.y, 1e-5);
            EXPECT_NEAR(m_Escena.GetAnguloZ(), a.z, 1e-5);
            const CCamera c = m_Escena.GetCamara();
            return std::pair(c.View() - c.Position(), c.UpVector());
        };
        const auto [frente, arriba] = pon();
        m_Escena.SetAngulos(a.x / 2 + 10, a.y / 3, 5);
        Dibuja();
        const auto [frente2, arriba2] = pon();
        EsperaCerca(frente2, frente, 1e-5);
        EsperaCerca(arriba2, arriba, 1e-5);
    }
}
