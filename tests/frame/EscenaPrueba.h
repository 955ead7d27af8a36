#pragma once
// A scene for the tests of the frame: the smallest there is, with a triangle for a model. It notes the hooks that it is
// asked for, can be made to fail in one of them, and shows the frame's fields.

#include "frame/CGL.h"
#include "support/Tela.h"

#include <string>
#include <vector>

/// Makes a scene's contexts on a picture in memory.
inline int CreaEn(CGL& escena, Tela& tela) {
    return escena.Crear(tela.DC(), PFD_TYPE_RGBA, PFD_DRAW_TO_BITMAP | PFD_SUPPORT_OPENGL);
}

/// Brings a scene from nothing to a fitted view, in a host's order.
inline int Monta(CGL& escena, Tela& tela, int ancho, int alto) {
    if (!CreaEn(escena, tela)) return 0;
    escena.OnZoomExtension();
    if (!escena.Iniciar() || !escena.Resize(ancho, alto)) return 0;
    escena.OnZoomExtension();
    return 1;
}

class EscenaPrueba : public CGL {
  public:
    using Punto = Vertiz::CCoor3D<double>;
    using Maximas = Vertiz::CMaximas<double>;
    using Pasos = std::vector<std::string>;

    EscenaPrueba() { ++s_nVivas; }
    /// All scenes of a group may note in one common list.
    explicit EscenaPrueba(const wchar_t* nombre, Pasos* pasos = nullptr) : EscenaPrueba() {
        SetNombre(nombre);
        if (pasos) m_pPasos = pasos;
    }
    EscenaPrueba(const EscenaPrueba& otra) : CGL(otra), m_nLista(otra.m_nLista) { ++s_nVivas; }
    using CGL::operator=;
    EscenaPrueba& operator=(const EscenaPrueba& otra) {
        CGL::operator=(otra);
        m_nLista = otra.m_nLista;
        return *this;
    }
    ~EscenaPrueba() override {
        Destruir();
        --s_nVivas;
    }

    int CreaEn(Tela& tela) { return ::CreaEn(*this, tela); }
    int Monta(Tela& tela, int ancho = 64, int alto = 48) { return ::Monta(*this, tela, ancho, alto); }

    int OnIniciar() override {
        Anota("OnIniciar");
        if (!MakeCurrent(nullptr)) return 0;
        if (m_nLista) glDeleteLists(m_nLista, 1);
        m_nLista = glGenLists(1);
        glNewList(m_nLista, GL_COMPILE);
        if (m_sFalla == "OnIniciar") return 0;  // with the list open, as a GL error would leave it
        glColor3f(0.0F, 1.0F, 0.0F);
        glBegin(GL_TRIANGLES);
        for (const Punto& p : {Punto(0, 0, 0), Punto(100, 0, 0), Punto(0, 100, 0)}) {
            double x = 0, y = 0, z = 0;
            TerrenoAGL(p, x, y, z, 1.0, false);
            glVertex3d(x, y, z);
        }
        glEnd();
        glEndList();
        return HayErrorGL() ? 0 : 1;
    }

    int OnRender() override {
        Anota("OnRender");
        if (m_sFalla == "OnRender") return 0;
        if (!EsReferencia()) {
            glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
            glMatrixMode(GL_MODELVIEW);
            glLoadIdentity();
            GetCamara().Look();
        }
        glCallList(m_nLista);
        return HayErrorGL() ? 0 : 1;
    }

    void OnLiberarContexto(bool bBorrar) override {
        Anota(bBorrar ? "OnLiberarContexto(1)" : "OnLiberarContexto(0)");
        if (bBorrar && m_nLista) glDeleteLists(m_nLista, 1);
        m_nLista = 0;
    }

    int OnIniciarSeleccion() override { return Anota("OnIniciarSeleccion"); }
    int OnIniciarLimites() override { return Anota("OnIniciarLimites"); }
    int OnIniciarBase() override { return Anota("OnIniciarBase"); }
    int OnIniciarArboles() override { return Anota("OnIniciarArboles"); }
    int OnIniciarVista() override {
        m_hRCEnVista = wglGetCurrentContext();
        return Anota("OnIniciarVista");
    }
    int OnResize(int cx, int cy) override {
        const int r = CGL::OnResize(cx, cy);
        return Anota("OnResize") ? r : 0;
    }
    int OnCreate(CWnd* pVentana, PIXELFORMATDESCRIPTOR* pDescriptor) override {
        m_pVentana = pVentana;
        m_Descriptor = *pDescriptor;
        return Anota("OnCreate");
    }

    const Vertiz::CDataSemilla& DameSemilla() const override { return m_Semilla; }
    double Precision() const override { return m_Semilla.Precision(); }
    int GetMaximasObjeto(Maximas& m) const override {
        m = Maximas(Punto(0, 0, 0), Punto(100, 100, 0));
        return 1;
    }
    int GetMaximasSeleccion(Maximas&) const override { return 0; }
    bool DamePuntoSeleccion2(Punto&, int) override { return false; }

    using CGL::OnSeleccion;
    unsigned OnSeleccion(int x, int y, int desdeInicio, unsigned tipo, int acumular, int bReferencias, int bVinculos,
                         unsigned modo, int bPuntoLibre, int e, int f) override {
        m_UltimaSeleccion = {x,
                             y,
                             desdeInicio,
                             static_cast<int>(tipo),
                             acumular,
                             bReferencias,
                             bVinculos,
                             static_cast<int>(modo),
                             bPuntoLibre,
                             e,
                             f};
        if (m_nResponde == 0) {
            return CGL::OnSeleccion(x, y, desdeInicio, tipo, acumular, bReferencias, bVinculos, modo, bPuntoLibre, e,
                                    f);
        }
        Anota("OnSeleccion");
        if (modo != 0 && m_bDaPunto) m_PuntosSeleccion.push_back(m_PuntoQueDa);
        return m_nResponde;
    }

    Pasos& GetPasos() { return *m_pPasos; }

    Vertiz::CDataSemilla m_Semilla;
    std::string m_sFalla;  ///< the hook that returns 0
    GLuint m_nLista = 0;
    HGLRC m_hRCEnVista = nullptr;  ///< current when OnIniciarVista was last asked
    CWnd* m_pVentana = nullptr;
    PIXELFORMATDESCRIPTOR m_Descriptor{};
    unsigned m_nResponde = 0;  ///< what OnSeleccion answers; 0 as the base does
    bool m_bDaPunto = true;
    Punto m_PuntoQueDa{50, 50, 0};
    std::vector<int> m_UltimaSeleccion;
    inline static int s_nVivas = 0;

    using CGL::m_AngulosCamara;
    using CGL::m_bDCExterno;
    using CGL::m_bEsReferencia;
    using CGL::m_Camara;
    using CGL::m_dAspecto;
    using CGL::m_Data;
    using CGL::m_DataTransformacion;
    using CGL::m_dFactor;
    using CGL::m_fSizeCamara;
    using CGL::m_hRC;
    using CGL::m_LineaNueva;
    using CGL::m_LineaNuevaTerreno;
    using CGL::m_Marcas;
    using CGL::m_Maximas;
    using CGL::m_Medidas;
    using CGL::m_nAlto;
    using CGL::m_nAncho;
    using CGL::m_nHRCShared;
    using CGL::m_nListaCamara;
    using CGL::m_nListaCamaraPanoramica;
    using CGL::m_nListaCielo;
    using CGL::m_nListaEjes;
    using CGL::m_nListaLimites;
    using CGL::m_nListaLineaNueva;
    using CGL::m_nListaMarcas;
    using CGL::m_nListaMedidas;
    using CGL::m_nListaPuntosMarcasFoto;
    using CGL::m_nListaPuntosMarcasTerreno;
    using CGL::m_nListaReserva;
    using CGL::m_nTexturaFondo;
    using CGL::m_nTipoImagenFondo;
    using CGL::m_pBufferProfundidad;
    using CGL::m_pDC;
    using CGL::m_phRCShared;
    using CGL::m_pPalette;
    using CGL::m_PuntosCamara;
    using CGL::m_PuntosCamaraGL;
    using CGL::m_PuntosSeleccion;
    using CGL::m_Seleccion;
    using CGL::m_Seleccion2;
    using CGL::m_VistaSeleccion;

  private:
    int Anota(const std::string& paso) {
        const std::string nombre = GetNombre().Utf8();
        m_pPasos->push_back(nombre.empty() ? paso : nombre + "." + paso);
        return m_sFalla == paso ? 0 : 1;
    }

    Pasos m_Propios;
    Pasos* m_pPasos = &m_Propios;
};

/// A scene on a picture in memory, ready to draw.
class ConEscena : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(m_Escena.Monta(m_Tela));
        m_Escena.GetPasos().clear();
    }
    void TearDown() override { EXPECT_EQ(wglGetCurrentContext(), nullptr) << "a context was left current"; }

    Tela m_Tela;
    EscenaPrueba m_Escena;
};
