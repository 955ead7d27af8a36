// Grids in a group: what is seen of a reference and of a link, what extents they give, what comes and goes with them.

#include "EscenaTerreno.h"

#include <memory>

namespace {

using Punto = Vertiz::CCoor3D<double>;
using Maximas = Vertiz::CMaximas<double>;

/// Three grids of 50 x 50: the scene's, one east of it for a reference, one north of it for a link.
class Grupo : public Terreno {
  protected:
    void SetUp() override {
        m_escena.SetQuad(1);
        Crea();
        m_escena.SetDEM(&m_Dem);
        m_pReferencia->SetNombre(L"este");
        m_pVinculo->SetNombre(L"norte");
    }
    void Une() {
        m_escena.ReferenciaNuevo(m_pReferencia);
        m_escena.VinculoNuevo(m_pVinculo);
    }
    /// From the extents to a frame.
    Imagen Dibuja() {
        m_escena.OnZoomExtension();
        EXPECT_EQ(m_escena.Iniciar(), 1);
        EXPECT_EQ(m_escena.Resize(120, 90), 1);
        m_escena.OnZoomExtension();
        return Cuadro();
    }
    Imagen Cuadro() {
        EXPECT_EQ(m_escena.Render(), 1);
        EXPECT_EQ(m_escena.Render(), 1);  // with its own background
        return m_tela.Lee();
    }
    /// Whether something is drawn at a place of the floor.
    bool SeVe(const Imagen& imagen, double x, double y) {
        CPoint pt;
        EXPECT_EQ(m_escena.TerrenoAPantalla(pt, Punto(x, y, 5), nullptr, false), 1);
        const auto fondo = static_cast<unsigned>(m_escena.GetColorFondo());
        const auto pixel = imagen.Pixel(pt.x, pt.y);
        return (pixel[0] | pixel[1] << 8 | pixel[2] << 16) != static_cast<int>(fondo);
    }
    std::vector<int> Fondos() const {
        return {m_escena.GetTipoImagenFondo(), m_pReferencia->GetTipoImagenFondo(), m_pVinculo->GetTipoImagenFondo()};
    }

    static Vertiz::CDEM Llano(double oeste, double sur) {
        return modelos::Rejilla(6, 6, [](int, int c) { return c == 0 ? 0.0F : 5.0F; }, {.oeste = oeste, .sur = sur});
    }
    Vertiz::CDEM m_Dem = Llano(0, 0), m_Este = Llano(60, 0), m_Norte = Llano(0, 60);
    EscenaTerreno* m_pReferencia = new EscenaTerreno(&m_Este);
    EscenaTerreno* m_pVinculo = new EscenaTerreno(&m_Norte);
};

Maximas Extension(const CGL& escena) {
    Maximas m;
    escena.GetMaximas(m);
    return m;
}

}  // namespace

TEST_F(Grupo, ExtentsAreTheGroupsAsItsSettingsSay) {
    Une();
    EXPECT_EQ(Extension(m_escena), Maximas(Punto(0, 0, 0), Punto(110, 110, 5)));
    m_escena.SetReferencia(0);
    EXPECT_EQ(Extension(m_escena), Maximas(Punto(0, 0, 0), Punto(50, 110, 5)));
    m_escena.Data().m_bMaximasObjeto = 0;
    EXPECT_TRUE(Extension(m_escena).EstanVacias(true)) << "links count with the scene's own";
    m_escena.SetReferencia(1);
    EXPECT_EQ(Extension(m_escena), Maximas(Punto(60, 0, 0), Punto(110, 50, 5)));
}

TEST_F(Grupo, AReferenceIsSeenOnlyWhenAskedForAndALinkAlways) {
    Une();
    Imagen imagen = Dibuja();
    EXPECT_TRUE(SeVe(imagen, 25, 25));
    EXPECT_TRUE(SeVe(imagen, 85, 25));
    EXPECT_TRUE(SeVe(imagen, 25, 85));
    EXPECT_FALSE(SeVe(imagen, 85, 85)) << "nobody's corner";
    m_escena.SetReferencia(0);
    imagen = Cuadro();
    EXPECT_TRUE(SeVe(imagen, 25, 25));
    EXPECT_FALSE(SeVe(imagen, 85, 25));
    EXPECT_TRUE(SeVe(imagen, 25, 85));
}

TEST_F(Grupo, WhatIsTakenOutIsNoLongerSeenAndShowsAgainWhenItIsTakenIn) {
    Une();
    const Imagen entera = Dibuja();
    ASSERT_EQ(m_escena.BorraVinculo(L"norte"), m_pVinculo);
    const Imagen sin = Cuadro();
    EXPECT_FALSE(SeVe(sin, 25, 85));
    EXPECT_TRUE(SeVe(sin, 85, 25));
    EXPECT_TRUE(m_pVinculo->EsReferencia()) << "for life";
    m_escena.VinculoNuevo(m_pVinculo);
    EXPECT_TRUE(IgualImagen(Cuadro(), entera)) << "its lists are there still";
    const std::unique_ptr<CGL> norte(m_escena.BorraVinculo(0U));
    EXPECT_TRUE(IgualImagen(Cuadro(), sin));
    const std::unique_ptr<CGL> este(m_escena.BorraReferencia(L"este"));
    const Imagen sola = Dibuja();
    EXPECT_EQ(Extension(m_escena), Maximas(Punto(0, 0, 0), Punto(50, 50, 5)));
    EXPECT_TRUE(SeVe(sola, 25, 25));
}

TEST_F(Grupo, ChildrenLookAsTheirParentDoes) {
    Une();
    m_escena.SetColorDEM(0x0000FF);
    m_pReferencia->SetColorDEM(0x00FF00);
    Dibuja();
    EXPECT_EQ(m_pReferencia->GetColorDEM(), 0x0000FF);
    EXPECT_EQ(m_pReferencia->m_Maximas, m_escena.m_Maximas);
    EXPECT_EQ(m_pVinculo->m_dFactor, m_escena.m_dFactor);
    EXPECT_EQ(m_pVinculo->GetCamara().Position(), m_escena.GetCamara().Position());
}

TEST_F(Grupo, SelectionsAreCountedAndEmptiedAcrossTheGroup) {
    Une();
    Dibuja();
    CGL& padre = m_escena;
    for (CGL* escena : {&padre, static_cast<CGL*>(m_pReferencia), static_cast<CGL*>(m_pVinculo)})
        escena->SumaSeleccion(Vertiz::CPosicionEntidad(1));
    EXPECT_EQ(padre.CantidadSeleccion(0, 0), 1U);
    EXPECT_EQ(padre.CantidadSeleccion(1, 0), 2U);
    EXPECT_EQ(padre.CantidadSeleccion(1, 1), 3U);
    padre.Deselecciona(1, 0, 0);
    EXPECT_EQ(padre.CantidadSeleccion(1, 1), 1U) << "the link's";
    padre.Deselecciona(0, 1, 0);
    EXPECT_FALSE(padre.HaySeleccion(1, 1));
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(Grupo, BackgroundsSetTheValuesOfAllAndTakeThemWithThem) {
    Une();
    EXPECT_EQ(Fondos(), (std::vector{0, 0, 0}));
    for (const auto& [pon, fondo] : {std::pair(&CGL::SetImagenOrtoFondo, 4), {&CGL::SetImagenConicaFondo, 2}}) {
        Vertiz::CDEM dem = Llano(60, 60);
        auto* imagen = new EscenaTerreno(&dem);
        imagen->SetNombre(L"foto");
        (imagen->*pon)();
        m_escena.ReferenciaNuevo(imagen);
        EXPECT_EQ(Fondos(), std::vector(3, fondo - 1));
        EXPECT_EQ(imagen->GetTipoImagenFondo(), fondo);
        const std::unique_ptr<CGL> fuera(m_escena.BorraReferencia(L"foto"));
        EXPECT_EQ(Fondos(), (std::vector{0, 0, 0}));
    }
    wglMakeCurrent(nullptr, nullptr);
}
