#pragma once
// What the tests of panoramas share: pictures to show, and a scene that shows its fields.

#include "frame/EscenaPrueba.h"
#include "raster/CBmp.h"
#include "sphere/CEscenaImagen360.h"
#include "support/RegistroGL.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

/// A picture in memory that is counted while it lives.
class Foto : public Vertiz::CBmp {
  public:
    using Color = std::array<BYTE, 3>;  ///< red, green, blue

    /// @param color  of row (from the bottom) and column
    Foto(int ancho, int alto, const std::function<Color(int, int)>& color) {
        ++s_nVivas;
        Crear(ancho, alto, 24, 72.0F, false, nullptr, nullptr, false);
        for (int f = 0; f < alto; ++f)
            for (int c = 0; c < ancho; ++c) {
                const Color rgb = color(f, c);
                const BYTE bgr[3] = {rgb[2], rgb[1], rgb[0]};
                SetPixel(f, c, bgr);
            }
    }
    Foto(int ancho, int alto) : Foto(ancho, alto, [](int, int) { return Color{200, 100, 50}; }) {}
    ~Foto() override { --s_nVivas; }

    inline static int s_nVivas = 0;
};

/// An image that is counted while it lives.
class ImagenContada : public Vertiz::CGeoImagen {
  public:
    using CGeoImagen::CGeoImagen;
    explicit ImagenContada(Vertiz::IRaster* raster) : CGeoImagen(raster, Panorama(), Vertiz::CDataSemilla()) {
        ++s_nVivas;
    }
    ~ImagenContada() override { --s_nVivas; }

    /// A placement as a panorama, without angles.
    static Vertiz::CDataImagen Panorama() {
        Vertiz::CDataImagen datos;
        datos.DataTrans().m_nTipo = Vertiz::CDataTransformacion::ESFERICA;
        return datos;
    }

    inline static int s_nVivas = 0;
};

/// The scene under test, with the fields that a deriving scene sees.
class EscenaPanorama : public CEscenaImagen360 {
  public:
    using CEscenaImagen360::CEscenaImagen360;
    using CEscenaImagen360::operator=;
    /// Alone, without a scene before it.
    EscenaPanorama(Vertiz::CGeoImagen* imagen, int propia) : CEscenaImagen360(CEscenaImagen360(), imagen, propia) {}
    using CGL::m_bEsReferencia;
    using CGL::m_Camara;
    using CGL::m_Data;
    using CGL::m_hRC;
    using CGL::m_nListaEjes;
    using CGL::m_nListaLimites;

    int CreaEn(Tela& tela) { return ::CreaEn(*this, tela); }
    int Monta(Tela& tela, int ancho = 64, int alto = 48) { return ::Monta(*this, tela, ancho, alto); }
};

/// A scene with a picture of 8 x 4, which it owns, and no context yet.
class Esferica : public testing::Test {
  protected:
    void TearDown() override {
        EXPECT_EQ(wglGetCurrentContext(), nullptr) << "a context was left current";
        m_Escena.Destruir();
        EXPECT_EQ(ImagenContada::s_nVivas, 0);
        EXPECT_EQ(Foto::s_nVivas, 0);
    }

    /// The calls of the sphere's list, compiled now.
    LlamadasGL Lista() {
        const RegistroGL registro;
        EXPECT_EQ(m_Escena.OnIniciar(), 1);
        wglMakeCurrent(nullptr, nullptr);
        return registro.Lista(registro.Listas().back());
    }
    /// The calls of a frame, without the look for errors.
    LlamadasGL Cuadro() {
        const RegistroGL registro;
        EXPECT_TRUE(m_Escena.MakeCurrent(nullptr));
        EXPECT_EQ(m_Escena.OnRender(), 1);
        wglMakeCurrent(nullptr, nullptr);
        const LlamadasGL todas = registro.Ejecutadas();
        const auto desde = std::ranges::find_if(todas, [](const auto& l) { return !l.starts_with("glGetIntegerv"); });
        return {desde, todas.end()};
    }

    Tela m_Tela;
    EscenaPanorama m_Escena{new ImagenContada(new Foto(8, 4)), 1};
};
