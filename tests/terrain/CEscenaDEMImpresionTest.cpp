// A printed terrain is the one on the screen, light, lines and sky with it, whatever the frame takes from the one
// before.

#include "EscenaTerreno.h"
#include "frame/CVistaGL.h"

namespace {

// A window of 120 x 90: what gives a page its shape. The scene draws on a picture in memory.
class Ventana : public CVistaGL {
  public:
    Ventana() { EXPECT_TRUE(Create(nullptr, L"", 0, CRect(0, 0, 120, 90))); }
};

class TerrenoImpreso : public Terreno {
  protected:
    void Monta(const Ajuste& ajuste) {
        Vertiz::CLinea<int> linea(L"R");
        linea << Vertiz::CCoor3D<int>(5, 5, 40) << Vertiz::CCoor3D<int>(60, 70, 60);
        m_dem.Rupturas().Inserta(linea);
        Terreno::Monta(m_dem, [&](EscenaTerreno& escena) {
            escena.SetDigiTab(&m_tabla);
            escena.SetRelleno(1);
            ajuste(escena);
        });
        m_escena.GetCamara().PositionCamera({0.5, 0.7, 0.9, 0}, {0, 0, 0, 0}, {0, 1, 0, 0});
        // A frame begins with what the one before left.
        for (int i = 0; i < 2; ++i)
            ASSERT_EQ(m_escena.Render(), 1);
    }
    void EsLaMisma() {
        const Imagen pantalla = m_tela.Lee();
        Tela hoja(pantalla.ancho, pantalla.alto);
        Ventana ventana;
        m_escena.OnPrint(hoja.DC(), nullptr, &ventana);
        EXPECT_TRUE(IgualImagen(hoja.Lee(), pantalla, {0, 0.0}));
        ASSERT_EQ(m_escena.Render(), 1);
        EXPECT_TRUE(IgualImagen(m_tela.Lee(), pantalla, {0, 0.0})) << "and the screen's next frame is as before";
    }

    Vertiz::CDEM m_dem = modelos::Rejilla(8, 8, [](int r, int c) { return float((r * 7 + c * 5) % 11); });
    Vertiz::CDigiTab m_tabla;
};

}  // namespace

TEST_F(TerrenoImpreso, LitSurfaceWithLimitsAndBreaklines) {
    Monta([](EscenaTerreno& escena) {
        escena.SetLimites(1);
        escena.SetRupturas(1);
        escena.SetBase(1);
        escena.SetEjes(1);
    });
    EsLaMisma();
}

TEST_F(TerrenoImpreso, WireOnABackgroundOfItsOwn) {
    Monta([](EscenaTerreno& escena) {
        escena.SetTipoColorMDT(0);
        escena.SetLimites(1);
        escena.SetColorFondo(RGB(200, 10, 60));
    });
    EsLaMisma();
}

TEST_F(TerrenoImpreso, HeightsInPerspective) {
    Monta([](EscenaTerreno& escena) {
        escena.SetTipoColorMDT(2);
        escena.SetOrtogonal(0);
        escena.SetRupturas(1);
    });
    EsLaMisma();
}
