// Display lists of glyphs: what lies in them, what they draw, and what they refuse.

#include "FuentesPrueba.h"
#include "platform/DiagnosticoGL.h"
#include "support/Contexto.h"
#include "support/RegistroGL.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <map>
#include <set>

namespace {

constexpr DWORD kCodigos = 1024;

class FuentesGL : public ConSans<Contexto> {
  protected:
    void SetUp() override {
        ConSans::SetUp();
        if (IsSkipped()) return;
        m_hFuente = CreaFuente(-20);
        m_hAnterior = SelectObject(hdc(), m_hFuente);
        m_nBase = glGenLists(kCodigos);
    }
    void TearDown() override {
        if (m_hFuente) {
            glDeleteLists(m_nBase, kCodigos);
            SelectObject(hdc(), m_hAnterior);
            DeleteObject(m_hFuente);
        }
        Contexto::TearDown();
    }
    HDC hdc() { return m_lienzo.DC().GetSafeHdc(); }
    BOOL Trazos(DWORD primero, DWORD cuantos, float extrusion = 0.1F, int formato = WGL_FONT_POLYGONS,
                float desviacion = 0.01F) {
        return wglUseFontOutlinesW(hdc(), primero, cuantos, m_nBase, desviacion, extrusion, formato, nullptr);
    }
    GLYPHMETRICSFLOAT Mide(DWORD codigo) {
        GLYPHMETRICSFLOAT m{};
        EXPECT_TRUE(wglUseFontOutlinesW(hdc(), codigo, 1, m_nBase, 0.01F, 0.0F, WGL_FONT_POLYGONS, &m));
        return m;
    }
    // Pixels as wide and high as the picture, the origin in its lower left corner; black, and white to draw with.
    void EnPixeles() {
        glViewport(0, 0, m_lienzo.Ancho(), m_lienzo.Alto());
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(0, m_lienzo.Ancho(), 0, m_lienzo.Alto(), -200, 200);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        glDisable(GL_LIGHTING);
        glClearColor(0, 0, 0, 0);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glColor3f(1, 1, 1);
    }
    bool Encendido(const Imagen& imagen, int x, int y) const { return imagen.Pixel(x, imagen.alto - 1 - y)[0] > 127; }

    HFONT m_hFuente = nullptr;
    HFONT m_hAnterior = nullptr;
    GLuint m_nBase = 0;
};

using Punto = std::array<double, 3>;

Punto Producto(const Punto& a, const Punto& b, const Punto& c) {
    const Punto u{b[0] - a[0], b[1] - a[1], b[2] - a[2]}, v{c[0] - a[0], c[1] - a[1], c[2] - a[2]};
    return {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
}

double Escalar(const Punto& a, const Punto& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

// The faces of a list: corners and their normals.
struct Cara3D {
    std::vector<Punto> m_Puntos, m_Normales;
};

std::vector<Cara3D> Caras(const LlamadasGL& lista) {
    std::vector<Cara3D> caras;
    Punto normal{};
    std::size_t lados = 0;
    bool nueva = true;
    const auto lee = [](const std::string& llamada) {
        Punto p{};
        const char *donde = llamada.data() + llamada.find('(') + 1, *fin = llamada.data() + llamada.size();
        for (double& v : p)
            donde = std::from_chars(donde, fin, v).ptr + 2;  // the comma and the blank behind it
        return p;
    };
    for (const std::string& l : lista) {
        if (l.starts_with("glBegin")) {
            lados = l == "glBegin(GL_QUADS)" ? 4 : 3;
            nueva = true;
        }
        if (l.starts_with("glNormal")) normal = lee(l);
        if (!l.starts_with("glVertex")) continue;
        if (nueva || caras.back().m_Puntos.size() == lados) caras.emplace_back();
        nueva = false;
        caras.back().m_Puntos.push_back(lee(l));
        caras.back().m_Normales.push_back(normal);
    }
    return caras;
}

}  // namespace

TEST_F(FuentesGL, EveryCodeOfABlockHasAList) {
    std::vector<GLYPHMETRICSFLOAT> medidas(kCodigos, {-1, -1, {-1, -1}, -1, -1});
    ASSERT_TRUE(wglUseFontOutlinesW(hdc(), 0, kCodigos, m_nBase, 0.0F, 0.1F, WGL_FONT_POLYGONS, medidas.data()))
        << UltimoFalloGL();
    for (DWORD i = 0; i < kCodigos; ++i) {
        EXPECT_TRUE(glIsList(m_nBase + i)) << i;
        EXPECT_GE(medidas[i].gmfCellIncX, 0.0F) << i;
        EXPECT_GE(medidas[i].gmfBlackBoxY, 0.0F) << i;
    }
    EXPECT_FLOAT_EQ(medidas['A'].gmfCellIncX, 1366.0F / 2048);
    EXPECT_TRUE(wglUseFontBitmapsW(hdc(), 0, kCodigos, m_nBase)) << UltimoFalloGL();
}

TEST_F(FuentesGL, NormalsOfEveryGlyphHaveLengthOne) {
    const RegistroGL registro;
    ASSERT_TRUE(Trazos(0, kCodigos, 0.1F, WGL_FONT_POLYGONS, 0.05F));
    for (const auto& n : registro.Numeros("glNormal3f"))
        ASSERT_NEAR(n[0] * n[0] + n[1] * n[1] + n[2] * n[2], 1.0, 1e-5);
}

TEST_F(FuentesGL, AFlatGlyphLiesAtZeroAndFacesTheViewer) {
    const RegistroGL registro;
    ASSERT_TRUE(Trazos('O', 1, 0.0F));
    const LlamadasGL lista = registro.Lista(m_nBase);
    EXPECT_EQ(lista.front(), "glNormal3f(0, 0, 1)");
    EXPECT_TRUE(lista.back().starts_with("glTranslatef(0.777")) << lista.back();
    EXPECT_EQ(Solo(lista, {"glNormal3f"}).size(), 1U);
    for (const Cara3D& cara : Caras(lista))
        for (const Punto& p : cara.m_Puntos)
            EXPECT_EQ(p[2], 0.0);
}

TEST_F(FuentesGL, ASolidGlyphIsClosedAndFacesOutwards) {
    for (DWORD codigo : {0x4FU, 0x69U, 0x42U, 0x38U, 0x26U, 0xF1U, 0x416U}) {  // O i B 8 & ñ Ж
        RegistroGL registro;
        ASSERT_TRUE(Trazos(codigo, 1, 0.25F));
        const auto caras = Caras(registro.Lista(m_nBase));
        std::map<std::pair<Punto, Punto>, int> aristas;
        double volumen = 0, area = 0;
        for (const Cara3D& cara : caras) {
            const auto& p = cara.m_Puntos;
            const Punto fuera = Producto(p[0], p[1], p[2]);
            for (std::size_t i = 0; i < p.size(); ++i) {
                const Punto& n = cara.m_Normales[i];
                EXPECT_GT(Escalar(fuera, n), -1e-7) << codigo << ": counter-clockwise seen from outside";
                EXPECT_NEAR(Escalar(n, n), 1.0, 1e-4);
                EXPECT_TRUE(p[i][2] == 0.0 || p[i][2] == -0.25) << "front and back alone";
                ++aristas[{p[i], p[(i + 1) % p.size()]}];
                --aristas[{p[(i + 1) % p.size()], p[i]}];
            }
            for (std::size_t i = 2; i < p.size(); ++i)
                volumen += Escalar(p[0], Producto({0, 0, 0}, p[i - 1], p[i])) / 6;
            if (fuera[2] > 0 && p[0][2] == 0.0) area += fuera[2] / 2;
        }
        for (const auto& [arista, cuenta] : aristas)
            ASSERT_EQ(cuenta, 0) << codigo << ": an edge without its other side";
        EXPECT_GT(area, 0.03);
        EXPECT_NEAR(volumen, area * 0.25, 1e-4) << codigo;
    }
}

TEST_F(FuentesGL, AHoleStaysOpen) {
    ASSERT_TRUE(Trazos('O', 1, 0.0F));
    EnPixeles();
    glTranslatef(20, 20, 0);
    glScalef(100, 100, 1);
    glCallList(m_nBase);
    const Imagen imagen = m_lienzo.Lee();
    const int x = 20 + 1593 * 100 / 2048 / 2, y = 20 + 35;
    EXPECT_FALSE(Encendido(imagen, x, y)) << "the middle";
    EXPECT_TRUE(Encendido(imagen, x, y - 33)) << "below it";
    EXPECT_TRUE(Encendido(imagen, x, y + 33));
    EXPECT_TRUE(Encendido(imagen, x - 31, y));
    EXPECT_TRUE(Encendido(imagen, x + 31, y));
    EXPECT_FALSE(Encendido(imagen, x - 36, y - 33)) << "outside";
}

TEST_F(FuentesGL, SidesOfRoundLettersAreShadedRoundThoseOfStraightOnesFlat) {
    const auto distintas = [&](DWORD codigo) {
        RegistroGL registro;
        EXPECT_TRUE(Trazos(codigo, 1, 0.1F, WGL_FONT_POLYGONS, 0.001F));
        std::size_t redondas = 0, planas = 0;
        for (const Cara3D& cara : Caras(registro.Lista(m_nBase)))
            if (cara.m_Puntos.size() == 4) ++(cara.m_Normales[0] == cara.m_Normales[2] ? planas : redondas);
        return std::pair(redondas, planas);
    };
    EXPECT_EQ(distintas('H').first, 0U);
    EXPECT_EQ(distintas('H').second, 12U);
    EXPECT_GT(distintas('O').first, 20U);
    EXPECT_EQ(distintas('O').second, 0U);
}

TEST_F(FuentesGL, LinesRunAlongTheOutlinesWithoutNormals) {
    const RegistroGL registro;
    ASSERT_TRUE(Trazos('I', 1, 0.0F, WGL_FONT_LINES));
    LlamadasGL lista = registro.Lista(m_nBase);
    EXPECT_EQ(lista.size(), 7U);
    EXPECT_EQ(lista.front(), "glBegin(GL_LINE_LOOP)");
    EXPECT_TRUE(lista.back().starts_with("glTranslatef("));
    ASSERT_TRUE(Trazos('I', 1, 0.5F, WGL_FONT_LINES));
    lista = registro.Lista(m_nBase);
    EXPECT_LLAMADAS(Solo(lista, {"glBegin"}), {"glBegin(GL_LINE_LOOP)", "glBegin(GL_LINE_LOOP)", "glBegin(GL_LINES)"});
    EXPECT_EQ(Solo(lista, {"glVertex3f"}).size(), 16U);
    EXPECT_TRUE(Solo(lista, {"glNormal3f"}).empty());
}

TEST_F(FuentesGL, ACoarserDeviationSendsFewerVertices) {
    std::size_t antes = std::numeric_limits<std::size_t>::max();
    for (float desviacion : {0.0F, 0.001F, 0.005F, 0.02F}) {
        const RegistroGL registro;
        ASSERT_TRUE(Trazos('S', 1, 0.1F, WGL_FONT_POLYGONS, desviacion));
        EXPECT_LT(registro.Cuenta("glVertex3f"), antes) << desviacion;
        antes = registro.Cuenta("glVertex3f");
    }
}

TEST_F(FuentesGL, ATextIsWrittenByOneCallAndThePenMovesOn) {
    ASSERT_TRUE(Trazos(0, 256));
    EnPixeles();
    glListBase(m_nBase);
    const unsigned short texto[] = {'A', ' ', 'O', 'i'};
    glCallLists(4, GL_UNSIGNED_SHORT, texto);
    glListBase(0);
    std::array<double, 16> m{};
    glGetDoublev(GL_MODELVIEW_MATRIX, m.data());
    EXPECT_NEAR(m[12], (1366 + 569 + 1593 + 455) / 2048.0, 1e-5);
    EXPECT_EQ(m[13], 0.0);
}

TEST_F(FuentesGL, ABlankIsATranslationAlone) {
    const RegistroGL registro;
    ASSERT_TRUE(Trazos(' ', 1));
    const LlamadasGL lista = registro.Lista(m_nBase);
    ASSERT_EQ(lista.size(), 1U);
    EXPECT_TRUE(lista[0].starts_with("glTranslatef(0.277")) << lista[0];
}

TEST_F(FuentesGL, TheFontThatIsSelectedServes) {
    EXPECT_FLOAT_EQ(Mide('A').gmfCellIncX, 1366.0F / 2048);
    const HFONT negrita = CreaFuente(-20, FW_BOLD);
    SelectObject(hdc(), negrita);
    EXPECT_FLOAT_EQ(Mide('A').gmfCellIncX, 1479.0F / 2048);
    DeleteObject(negrita);
    EXPECT_FLOAT_EQ(Mide('A').gmfCellIncX, 1479.0F / 2048) << "deleted, it serves on";
}

TEST_F(FuentesGL, TheHeightHasNoInfluenceOnOutlines) {
    const float ancho = Mide('A').gmfBlackBoxX;
    const HFONT alta = CreaFuente(-2000);
    SelectObject(hdc(), alta);
    EXPECT_EQ(Mide('A').gmfBlackBoxX, ancho);
    SelectObject(hdc(), m_hFuente);
    DeleteObject(alta);
}

TEST_F(FuentesGL, ABitmapIsDrawnUprightFromTheBaseLine) {
    ASSERT_TRUE(wglUseFontBitmapsW(hdc(), 'L', 1, m_nBase));
    EnPixeles();
    glRasterPos2i(50, 60);
    glCallList(m_nBase);
    GLfloat pluma[4] = {};
    glGetFloatv(GL_CURRENT_RASTER_POSITION, pluma);
    EXPECT_NEAR(pluma[0], 50 + 20 * 1139 / 2048.0, 0.6);
    EXPECT_EQ(pluma[1], 60.0F);
    const Imagen imagen = m_lienzo.Lee();
    int y0 = 1000, y1 = -1;
    std::map<int, int> enFila;
    for (int y = 0; y < imagen.alto; ++y)
        for (int x = 0; x < imagen.ancho; ++x)
            if (Encendido(imagen, x, y)) {
                ++enFila[y];
                y0 = std::min(y0, y), y1 = std::max(y1, y);
                EXPECT_GE(x, 50);
                EXPECT_LT(x, 50 + 12);
            }
    EXPECT_EQ(y0, 60);
    EXPECT_NEAR(y1 - y0 + 1, 14, 1);
    EXPECT_GT(enFila[y0], 2 * enFila[y1]) << "its foot is below";
}

TEST_F(FuentesGL, PixelStorageHasNoInfluenceOnBitmapsAndIsPutBack) {
    const auto dibuja = [&] {
        EXPECT_TRUE(wglUseFontBitmapsW(hdc(), 'g', 1, m_nBase));
        EnPixeles();
        glRasterPos2i(50, 60);
        glCallList(m_nBase);
        return m_lienzo.Lee();
    };
    const Imagen normal = dibuja();
    const std::pair<GLenum, GLint> ajustes[] = {{GL_UNPACK_ALIGNMENT, 8},
                                                {GL_UNPACK_ROW_LENGTH, 31},
                                                {GL_UNPACK_SKIP_ROWS, 2},
                                                {GL_UNPACK_SKIP_PIXELS, 3},
                                                {GL_UNPACK_LSB_FIRST, 1}};
    for (const auto& [cual, valor] : ajustes)
        glPixelStorei(cual, valor);
    EXPECT_EQ(dibuja(), normal);
    for (const auto& [cual, valor] : ajustes) {
        GLint ahora = 0;
        glGetIntegerv(cual, &ahora);
        EXPECT_EQ(ahora, valor);
        glPixelStorei(cual, cual == GL_UNPACK_ALIGNMENT ? 4 : 0);
    }
}

TEST_F(FuentesGL, ListsChangeNothingButThePen) {
    const RegistroGL registro;
    ASSERT_TRUE(Trazos('A', 26));
    const std::set<std::string> conocidas = {"glBegin", "glEnd", "glNormal3f", "glVertex3f", "glTranslatef"};
    for (GLuint lista : registro.Listas())
        for (const std::string& l : registro.Lista(lista))
            EXPECT_TRUE(conocidas.contains(l.substr(0, l.find('(')))) << l;
}

TEST_F(FuentesGL, ArgumentsWithoutSenseAreRefused) {
    const RegistroGL registro;
    EXPECT_FALSE(wglUseFontOutlinesW(nullptr, 'A', 1, m_nBase, 0, 0, WGL_FONT_POLYGONS, nullptr));
    EXPECT_FALSE(wglUseFontBitmapsW(nullptr, 'A', 1, m_nBase));
    EXPECT_FALSE(Trazos('A', 1, 0.1F, 2)) << "an unknown format";
    EXPECT_FALSE(Trazos('A', 1, -0.1F));
    EXPECT_FALSE(Trazos('A', 1, std::numeric_limits<float>::quiet_NaN()));
    EXPECT_FALSE(Trazos('A', 1, 0.1F, WGL_FONT_LINES, -1.0F));
    EXPECT_EQ(registro.Cuenta("glNewList"), 0U);
    EXPECT_TRUE(Trazos('A', 0)) << "none is none";
    const HFONT alta = CreaFuente(-1025);
    SelectObject(hdc(), alta);
    EXPECT_FALSE(wglUseFontBitmapsW(hdc(), 'A', 1, m_nBase)) << "bitmaps of that height would eat the memory";
    SelectObject(hdc(), m_hFuente);
    DeleteObject(alta);
}

TEST_F(FuentesGL, WithoutAContextNothingIsMade) {
    Lienzo::Suelta();
    EXPECT_FALSE(Trazos('A', 1));
    EXPECT_NE(UltimoFalloGL().find("current"), std::string::npos) << UltimoFalloGL();
    EXPECT_FALSE(wglUseFontBitmapsW(hdc(), 'A', 1, m_nBase));
    ASSERT_TRUE(m_lienzo.Actual());
}

TEST_F(FuentesGL, AnErrorEndsWithNoListOpen) {
    const auto abierta = [] {
        GLint lista = -1;
        glGetIntegerv(GL_LIST_INDEX, &lista);
        return lista;
    };
    for (const char* nombre : {"glNewList", "glEndList", "glVertex3f", "glTranslatef"}) {
        const FallaGL falla(nombre, 2);
        EXPECT_FALSE(Trazos('A', 3)) << nombre;
        EXPECT_TRUE(falla.Ocurrida());
        EXPECT_EQ(abierta(), nombre == std::string("glEndList") ? GLint(m_nBase) + 1 : 0);
        if (abierta() != 0) glEndList();  // the call itself was taken away
    }
    EXPECT_TRUE(glIsList(m_nBase)) << "those before the failure are good";
    const FallaGL falla("glBitmap", 1);
    EXPECT_FALSE(wglUseFontBitmapsW(hdc(), 'A', 3, m_nBase));
    EXPECT_EQ(abierta(), 0);
}

TEST_F(FuentesGL, AListOfTheHostsThatIsOpenStaysOpen) {
    glNewList(m_nBase + 9, GL_COMPILE);
    EXPECT_FALSE(Trazos('A', 1));
    GLint lista = 0;
    glGetIntegerv(GL_LIST_INDEX, &lista);
    EXPECT_EQ(lista, GLint(m_nBase) + 9);
    glEndList();
    EXPECT_FALSE(wglUseFontOutlinesW(hdc(), 'A', 1, 0, 0, 0, WGL_FONT_POLYGONS, nullptr)) << "0 is no list";
}
