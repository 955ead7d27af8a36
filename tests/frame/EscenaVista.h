#pragma once
// A scene whose extents, geometry and answers are set by hand: for the tests of coordinates, navigation and overlays.

#include "EscenaPrueba.h"
#include "model/CTexto.h"

#include <array>

/// A horizontal square of the model, in terrain units.
struct Plancha {
    double x0, y0, x1, y1, z;
};

class EscenaVista : public EscenaPrueba {
  public:
    EscenaVista() {
        SetEjes(0);  // they would be met in the depth buffer
        SetOrtogonal(1);
    }
    using EscenaPrueba::operator=;

    int OnIniciar() override {
        ++m_nIniciados;
        if (!MakeCurrent(nullptr)) return 0;
        if (m_nLista) glDeleteLists(m_nLista, 1);
        m_nLista = glGenLists(1);
        glNewList(m_nLista, GL_COMPILE);
        glColor3f(0.0F, 1.0F, 0.0F);
        glBegin(GL_QUADS);
        for (const Plancha& p : m_Planchas)
            for (const auto& [x, y] : {std::array{p.x0, p.y0}, {p.x1, p.y0}, {p.x1, p.y1}, {p.x0, p.y1}}) {
                const Punto gl = EnGL(Punto(x, y, p.z));
                glVertex3d(gl.x, gl.y, gl.z);
            }
        glEnd();
        glEndList();
        return HayErrorGL() ? 0 : 1;
    }
    int OnRender() override {
        ++m_nDibujados;
        glEnable(GL_DEPTH_TEST);
        return EscenaPrueba::OnRender();
    }

    int GetMaximasObjeto(Maximas& m) const override {
        m = m_Caja;
        return m_nHayCaja;
    }
    int GetMaximasSeleccion(Maximas& m) const override {
        m = m_CajaSeleccion;
        return m_CajaSeleccion.EstanVacias(true) ? 0 : 1;
    }
    int OnBuscaPunto(int x, int y, Punto& p, int) override {
        m_PixelBuscado = CPoint(x, y);
        p = m_Vertice;
        return m_nHayVertice;
    }
    bool Proyecta(Punto& p) const override {
        if (m_bProyecta) p.z = m_dCotaProyectada;
        return m_bProyecta;
    }
    bool ProyectaVector(Punto& a, Punto b) const override {
        m_Rayo = {a, b};
        a = a + m_DesvioRayo;
        return m_bRayoHalla;
    }

    /// GL space of a terrain point; the far corner of nowhere when it is left out.
    Punto EnGL(const Punto& p, double escala = 1.0, bool bSinLimite = false) const {
        Punto gl(1e30, 1e30, 1e30);
        TerrenoAGL(p, gl.x, gl.y, gl.z, escala, bSinLimite);
        return gl;
    }
    Punto EnTerreno(const Punto& gl, double escala = 1.0) const {
        Punto c;
        GLATerreno(c, gl.x, gl.y, gl.z, escala);
        return c;
    }

    Maximas m_Caja{Punto(0, 0, 0), Punto(100, 100, 50)};
    int m_nHayCaja = 1;
    Maximas m_CajaSeleccion;
    std::vector<Plancha> m_Planchas{{0, 0, 100, 100, 0}};
    int m_nIniciados = 0;
    int m_nDibujados = 0;
    Punto m_Vertice;
    int m_nHayVertice = 0;
    CPoint m_PixelBuscado{-1, -1};
    bool m_bProyecta = false;
    double m_dCotaProyectada = 0;
    mutable std::array<Punto, 2> m_Rayo;  ///< what ProyectaVector was asked
    Punto m_DesvioRayo;                   ///< how far it moves the point
    bool m_bRayoHalla = true;

    using CGL::m_bMaximasVacias;
    using CGL::m_dDistanciaEsferica;
    using CGL::m_dFactorPantalla;
    using CGL::m_dRangoX;
    using CGL::m_dRangoY;
    using CGL::m_dRangoZ;
    using CGL::m_dZoom;
    using CGL::m_fEscalaFuente;
    using CGL::m_fExageracionVertical;
    using CGL::m_fPlanoCerca;
    using CGL::m_MarcasGL;
    using CGL::m_nCotaRaster;
    using CGL::m_nListaFuentes;
    using CGL::m_PuntoGL;
};

/// A context taken by hand for as long as the block lasts.
class Prestado {
  public:
    explicit Prestado(CGL& escena) { EXPECT_TRUE(escena.MakeCurrent(nullptr)); }
    ~Prestado() { wglMakeCurrent(nullptr, nullptr); }
    Prestado(const Prestado&) = delete;
    Prestado& operator=(const Prestado&) = delete;
};

/// The matrix `cual` (GL_PROJECTION_MATRIX...) of a scene's context.
inline std::array<double, 16> MatrizDe(CGL& escena, GLenum cual) {
    const Prestado prestado(escena);
    std::array<double, 16> m{};
    glGetDoublev(cual, m.data());
    return m;
}

inline void EsperaCerca(const Vertiz::CCoor3D<double>& obtenido, const Vertiz::CCoor3D<double>& esperado,
                        double tolerancia) {
    EXPECT_NEAR(obtenido.x, esperado.x, tolerancia);
    EXPECT_NEAR(obtenido.y, esperado.y, tolerancia);
    EXPECT_NEAR(obtenido.z, esperado.z, tolerancia);
}

/// The transformation of a photograph taken from `camara` straight down.
inline Vertiz::CDataTransformacion FotoCenital(const Vertiz::CCoor3D<double>& camara, double cotaReferencia = 0.0) {
    Vertiz::CDataTransformacion foto;
    foto.m_nTipo = Vertiz::CDataTransformacion::CONICA;
    foto.m_CentroProyeccion = camara;
    foto.m_dFocal = 100.0;
    foto.m_dCotaReferencia = cotaReferencia;
    return foto;
}

inline Vertiz::CDataTransformacion Esfera(const Vertiz::CCoor3D<double>& centro) {
    Vertiz::CDataTransformacion esfera;
    esfera.m_nTipo = Vertiz::CDataTransformacion::ESFERICA;
    esfera.m_CentroProyeccion = centro;
    return esfera;
}
