// The smallest scene: a tent of four coloured roofs with its name on top, drawn off-screen and written as a picture.
//
//     minimal_scene [tent.ppm]

#include "frame/CGL.h"
#include "model/CTexto.h"
#include "platform/CBitmap.h"
#include "platform/CDC.h"

#include <cstdio>
#include <vector>

using Punto = Vertiz::CCoor3D<double>;

// A scene says how large its model is, compiles it into a display list, and draws that list. The frame does the rest.
class EscenaTienda : public CGL {
  public:
    using CGL::operator=;
    EscenaTienda() {
        m_bFuentes = 1;  // texts need glyphs, which Iniciar makes only where this is set
        m_Data.m_bMarcasTerreno = 1;
    }
    ~EscenaTienda() override { Destruir(); }  // while OnLiberarContexto below can still be called

    int GetMaximasObjeto(Vertiz::CMaximas<double>& m) const override {
        m = Vertiz::CMaximas<double>(Punto(0, 0, 0), Punto(100, 100, 40));  // terrain units, Z upwards
        return 1;
    }
    int OnIniciar() override {
        if (!MakeCurrent(nullptr)) return 0;
        if (m_nLista == 0) m_nLista = glGenLists(1);
        glNewList(m_nLista, GL_COMPILE);
        const Punto esquinas[] = {{0, 0, 0}, {100, 0, 0}, {100, 100, 0}, {0, 100, 0}};
        const float colores[4][3] = {{0.9F, 0.3F, 0.2F}, {0.95F, 0.7F, 0.2F}, {0.3F, 0.6F, 0.3F}, {0.2F, 0.4F, 0.7F}};
        glBegin(GL_TRIANGLES);
        for (int i = 0; i < 4; ++i) {
            glColor3fv(colores[i]);
            for (const Punto& p : {esquinas[i], esquinas[(i + 1) % 4], Punto(50, 50, 40)}) {
                double x = 0, y = 0, z = 0;
                if (TerrenoAGL(p, x, y, z, 1.0, false)) glVertex3d(x, y, z);
            }
        }
        glEnd();
        glEndList();
        return glGetError() == GL_NO_ERROR;
    }
    int OnRender() override {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glEnable(GL_DEPTH_TEST);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        m_Camara.Look();
        glCallList(m_nLista);
        return glGetError() == GL_NO_ERROR;
    }
    void OnLiberarContexto(bool bBorrar) override {
        if (bBorrar && m_nLista != 0) glDeleteLists(m_nLista, 1);
        m_nLista = 0;
    }
    // Nothing here can be selected, and coordinates are real ones without an offset.
    int OnIniciarSeleccion() override { return 1; }
    int GetMaximasSeleccion(Vertiz::CMaximas<double>&) const override { return 0; }
    bool DamePuntoSeleccion2(Punto&, int) override { return false; }
    double Precision() const override { return 1.0; }
    const Vertiz::CDataSemilla& DameSemilla() const override { return m_Semilla; }

  private:
    GLuint m_nLista = 0;
    Vertiz::CDataSemilla m_Semilla;
};

int main(int argc, char** argv) {
    constexpr int ANCHO = 320, ALTO = 240;
    CBitmap bitmap;
    CDC dc;
    if (!bitmap.CreateBitmap(ANCHO, ALTO, 24) || !dc.CreateCompatibleDC(nullptr) || !dc.SelectObject(&bitmap)) return 1;

    EscenaTienda escena;
    if (!escena.Crear(&dc, PFD_TYPE_RGBA, PFD_DRAW_TO_BITMAP | PFD_SUPPORT_OPENGL)) {
        std::fprintf(stderr, "minimal_scene: no rendering context (lumbra info --gl tells why)\n");
        return 1;
    }
    escena.OnZoomExtension();
    escena.SetEjes(0);
    escena.SetColorFondo(RGB(40, 60, 90));
    escena.NuevaMarca({L"", Punto(50, 50, 41), L"Tent, 40 m", 8.0});  // letters 8 terrain units high
    if (!escena.Iniciar() || !escena.Resize(ANCHO, ALTO)) return 1;
    escena.OnZoomExtension();
    escena.GetCamara().PositionCamera(Punto(0.5, 0.6, 0.9), Punto(0, 0, 0), Punto(0, 1, 0));
    escena.SetZoom(0.8 * escena.GetZoom());  // seen from a corner it is wider than from above
    std::vector<char> pixeles(std::size_t(ANCHO) * ALTO * 3);
    if (!escena.SetBkColor() || !escena.Render() || escena.CapturaImagen(CSize(ANCHO, ALTO), pixeles.data()) != 0)
        return 1;

    const char* ruta = argc > 1 ? argv[1] : "tent.ppm";
    std::FILE* fichero = std::fopen(ruta, "wb");
    if (!fichero) return std::perror(ruta), 1;
    std::fprintf(fichero, "P6\n%d %d\n255\n", ANCHO, ALTO);
    for (int y = ALTO - 1; y >= 0; --y)  // the capture begins with the bottom row, and has blue first
        for (int x = 0; x < ANCHO; ++x)
            for (int canal = 2; canal >= 0; --canal)
                std::fputc(pixeles[std::size_t(y * ANCHO + x) * 3 + std::size_t(canal)], fichero);
    if (std::fclose(fichero) != 0) return std::perror(ruta), 1;
    std::printf("A tent of %d x %d pixels is in %s\n", ANCHO, ALTO, ruta);
    return 0;
}
