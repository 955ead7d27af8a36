#include "EscenaTerreno.h"

#include <algorithm>

namespace {

constexpr int kVentana = 4096;  // fine enough for its vertices not to be moved to a coarse raster
constexpr double kMedio = 4.0;  // half the side of the space that the feedback sees

}  // namespace

Terreno::Terreno(int ancho, int alto) : m_tela(ancho, alto) {
    m_escena.SetQuad(1);
    m_escena.SetEjes(0);
    m_escena.SetEdificios(0);
    m_escena.SetArboles(0);
    m_escena.SetRupturas(0);
    m_escena.SetPuntosCamara(0);
}

void Terreno::TearDown() {
    if (!m_escena.MakeCurrent(nullptr)) return;
    for (int i = 0; i < 8; ++i) {
        const GLenum error = glGetError();
        if (error == GL_NO_ERROR) break;
        ADD_FAILURE() << "the test left an OpenGL error behind: " << NombreGL(error);
    }
    wglMakeCurrent(nullptr, nullptr);
}

void Terreno::Crea() {
    ASSERT_EQ(m_escena.Crear(m_tela.DC(), PFD_TYPE_RGBA, PFD_DRAW_TO_BITMAP | PFD_SUPPORT_OPENGL), 1);
}

void Terreno::Toma(Vertiz::CDEM& dem, const Ajuste& ajuste) {
    Crea();
    m_escena.SetDEM(&dem);
    if (ajuste) ajuste(m_escena);
    m_escena.OnZoomExtension();
}

void Terreno::Monta(Vertiz::CDEM& dem, const Ajuste& ajuste) {
    Toma(dem, ajuste);
    ASSERT_EQ(m_escena.Iniciar(), 1);
    ASSERT_EQ(m_escena.Resize(120, 90), 1);
    m_escena.OnZoomExtension();
}

LlamadasGL Terreno::Superficie() {
    const RegistroGL registro;
    EXPECT_EQ(m_escena.OnIniciar(), 1);
    LlamadasGL lista = registro.Lista(m_escena.m_nListaSuperficie);
    const auto primera = std::ranges::find_if(lista, [](const auto& l) { return l.starts_with("glBegin"); });
    lista.erase(lista.begin(), primera);
    return lista;
}

std::vector<Vertice> Terreno::Vertices(GLuint lista) {
    std::vector<Vertice> vertices;
    EXPECT_TRUE(m_escena.MakeCurrent(nullptr));
    std::vector<GLfloat> datos(1 << 20);
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glViewport(0, 0, kVentana, kVentana);
    for (const GLenum modo : {GL_PROJECTION, GL_MODELVIEW}) {
        glMatrixMode(modo);
        glPushMatrix();
        glLoadIdentity();
    }
    glMatrixMode(GL_PROJECTION);
    glOrtho(-kMedio, kMedio, -kMedio, kMedio, -kMedio, kMedio);
    glDisable(GL_LIGHTING);
    glDisable(GL_CULL_FACE);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glFeedbackBuffer(GLsizei(datos.size()), GL_3D_COLOR, datos.data());
    glRenderMode(GL_FEEDBACK);
    glCallList(lista);
    const GLint cantidad = glRenderMode(GL_RENDER);
    for (const GLenum modo : {GL_PROJECTION, GL_MODELVIEW}) {
        glMatrixMode(modo);
        glPopMatrix();
    }
    glPopAttrib();
    const auto lee = [&](int i) {
        const GLfloat* v = &datos[std::size_t(i)];
        vertices.push_back({(2.0 * v[0] / kVentana - 1) * kMedio,
                            (2.0 * v[1] / kVentana - 1) * kMedio,
                            (1 - 2.0 * v[2]) * kMedio,
                            {v[3], v[4], v[5]}});
    };
    for (int i = 0; i < cantidad;) {
        const auto token = GLenum(datos[std::size_t(i++)]);
        int n = 1;
        if (token == GL_POLYGON_TOKEN) n = int(datos[std::size_t(i++)]);
        if (token == GL_LINE_TOKEN || token == GL_LINE_RESET_TOKEN) n = 2;
        // The driver hands a quad back as two triangles: 0 1 3 and 1 2 3.
        const bool quad =
            n == 3 && i + 44 <= cantidad && datos[std::size_t(i + 21)] == GLfloat(GL_POLYGON_TOKEN) &&
            std::equal(&datos[std::size_t(i + 7)], &datos[std::size_t(i + 10)], &datos[std::size_t(i + 23)]) &&
            std::equal(&datos[std::size_t(i + 14)], &datos[std::size_t(i + 17)], &datos[std::size_t(i + 37)]);
        if (quad) {
            for (const int lugar : {0, 7, 30, 14})
                lee(i + lugar);
            i += 44;
            continue;
        }
        for (; n > 0; --n, i += 7)
            lee(i);
    }
    EXPECT_GE(cantidad, 0) << "the feedback buffer is too small";
    wglMakeCurrent(nullptr, nullptr);
    return vertices;
}

long Terreno::LlamadasEnCuadro(GLuint lista) {
    EXPECT_TRUE(m_escena.MakeCurrent(nullptr));
    const RegistroGL registro;
    EXPECT_EQ(m_escena.OnRender(), 1);
    return std::ranges::count(registro.Ejecutadas(), "glCallList(" + std::to_string(lista) + ")");
}

std::array<double, 3> Terreno::EnGL(double x, double y, double z) const {
    const auto& o = m_escena.m_Maximas.Minima();
    const double f = m_escena.m_dFactor;
    return {(x - o.x - m_escena.m_dRangoX * 0.5) * f,
            (z - o.z - m_escena.m_dRangoZ * 0.5) * f * m_escena.GetExageracionVertical(),
            -(y - o.y - m_escena.m_dRangoY * 0.5) * f};
}
