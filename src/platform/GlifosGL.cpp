// Display lists of glyphs: solids, outlines and bitmaps.

#include "platform/CaraFuente.h"
#include "platform/ContornoGlifo.h"
#include "platform/Fuentes.h"
#include "platform/Objetos.h"
#include "platform/OpenGL.h"

#include <cmath>

namespace plataforma {

namespace {

PuntoPlano NormalDeLado(const PuntoPlano& a, const PuntoPlano& b) {
    const double dx = b.x - a.x, dy = b.y - a.y, largo = std::hypot(dx, dy);
    return {dy / largo, -dx / largo};  // the inside is on the left
}

// The normal of a side at one of its ends, where the next side begins: common to both where the border is nearly
// smooth.
PuntoPlano NormalEn(const PuntoPlano& suya, const PuntoPlano& vecina) {
    constexpr double kCosenoArista = 0.8;
    if (suya.x * vecina.x + suya.y * vecina.y < kCosenoArista) return suya;
    const double x = suya.x + vecina.x, y = suya.y + vecina.y, largo = std::hypot(x, y);
    return {x / largo, y / largo};
}

// A glyph, ready to be sent.
struct Glifo {
    std::vector<Contorno> m_Bordes;
    std::vector<PuntoPlano> m_Triangulos;
    GLYPHMETRICSFLOAT m_Medidas{};
};

void Vertice(const PuntoPlano& p, float z) {
    glVertex3f(static_cast<float>(p.x), static_cast<float>(p.y), z);
}

void EnviaCara(const std::vector<PuntoPlano>& triangulos, float z, bool bFrente) {
    if (triangulos.empty()) return;
    glNormal3f(0.0F, 0.0F, bFrente ? 1.0F : -1.0F);
    glBegin(GL_TRIANGLES);
    for (std::size_t i = 0; i + 2 < triangulos.size(); i += 3) {
        Vertice(triangulos[i], z);
        Vertice(triangulos[i + (bFrente ? 1 : 2)], z);
        Vertice(triangulos[i + (bFrente ? 2 : 1)], z);
    }
    glEnd();
}

void EnviaLados(const Contorno& borde, float fondo) {
    const std::size_t n = borde.size();
    std::vector<PuntoPlano> normales(n);
    for (std::size_t i = 0; i < n; ++i)
        normales[i] = NormalDeLado(borde[i], borde[(i + 1) % n]);
    glBegin(GL_QUADS);
    for (std::size_t i = 0; i < n; ++i) {
        const PuntoPlano &a = borde[i], &b = borde[(i + 1) % n];
        const PuntoPlano na = NormalEn(normales[i], normales[(i + n - 1) % n]);
        const PuntoPlano nb = NormalEn(normales[i], normales[(i + 1) % n]);
        glNormal3f(static_cast<float>(na.x), static_cast<float>(na.y), 0.0F);
        Vertice(a, 0.0F);
        Vertice(a, fondo);
        glNormal3f(static_cast<float>(nb.x), static_cast<float>(nb.y), 0.0F);
        Vertice(b, fondo);
        Vertice(b, 0.0F);
    }
    glEnd();
}

void EnviaPoligonos(const Glifo& glifo, float extrusion) {
    EnviaCara(glifo.m_Triangulos, 0.0F, true);
    if (extrusion == 0.0F) return;
    EnviaCara(glifo.m_Triangulos, -extrusion, false);
    for (const Contorno& borde : glifo.m_Bordes)
        EnviaLados(borde, -extrusion);
}

void EnviaLineas(const Contorno& borde, float extrusion) {
    const auto vuelta = [&](float z) {
        glBegin(GL_LINE_LOOP);
        for (const PuntoPlano& p : borde)
            Vertice(p, z);
        glEnd();
    };
    vuelta(0.0F);
    if (extrusion == 0.0F) return;
    vuelta(-extrusion);
    glBegin(GL_LINES);
    for (const PuntoPlano& p : borde) {
        Vertice(p, 0.0F);
        Vertice(p, -extrusion);
    }
    glEnd();
}

bool PreparaGlifo(Cara& cara, DWORD codigo, double desviacion, bool bPoligonos, Glifo& glifo) {
    std::vector<Contorno> contornos;
    if (!cara.LeeContornos(codigo, desviacion, contornos, glifo.m_Medidas)) return false;
    if (HallaBordes(contornos, glifo.m_Bordes) && (!bPoligonos || Triangula(glifo.m_Bordes, glifo.m_Triangulos)))
        return true;
    return AnotaFallo("the outlines of code " + std::to_string(codigo) + " can't be filled.");
}

// Compiles one list. @return false on a GL error; the list is ended then, unless it couldn't be begun
template <class Envia>
bool CompilaGlifo(GLuint lista, Envia envia) {
    glNewList(lista, GL_COMPILE);
    if (HayErrorGL()) return AnotaFallo("list " + std::to_string(lista) + " can't be compiled.");
    envia();
    glEndList();
    return !HayErrorGL() || AnotaFallo("OpenGL refused the glyph in list " + std::to_string(lista) + ".");
}

// The face of the font selected in a device context; null, with the reason noted, when there is none.
std::unique_ptr<Cara> CaraDe(HDC hdc) {
    const auto dispositivo = Dispositivos().Busca(hdc);
    if (!dispositivo || !wglGetCurrentContext()) {
        AnotaFallo(dispositivo ? "no rendering context is current." : "unknown device context.");
        return nullptr;
    }
    std::shared_ptr<Fuente> fuente;
    {
        const std::lock_guard cierre(CerrojoContextos());
        fuente = dispositivo->m_Fuente;
    }
    return Cara::Abre(*fuente);
}

// Bitmaps of whole bytes a row, most significant bit first; what the host had set comes back at the end.
class EmpaquetadoBits {
  public:
    EmpaquetadoBits() {
        for (std::size_t i = 0; i < std::size(kAjustes); ++i) {
            glGetIntegerv(kAjustes[i], &m_Antes[i]);
            glPixelStorei(kAjustes[i], kAjustes[i] == GL_UNPACK_ALIGNMENT ? 1 : 0);
        }
    }
    ~EmpaquetadoBits() {
        for (std::size_t i = 0; i < std::size(kAjustes); ++i)
            glPixelStorei(kAjustes[i], m_Antes[i]);
    }
    EmpaquetadoBits(const EmpaquetadoBits&) = delete;
    EmpaquetadoBits& operator=(const EmpaquetadoBits&) = delete;

  private:
    static constexpr GLenum kAjustes[] = {GL_UNPACK_ALIGNMENT, GL_UNPACK_ROW_LENGTH, GL_UNPACK_SKIP_ROWS,
                                          GL_UNPACK_SKIP_PIXELS, GL_UNPACK_LSB_FIRST};
    GLint m_Antes[std::size(kAjustes)] = {};
};

}  // namespace

}  // namespace plataforma

using namespace plataforma;

BOOL wglUseFontOutlinesW(HDC hdc, DWORD primero, DWORD cuantos, DWORD base, float desviacion, float extrusion,
                         int formato, GLYPHMETRICSFLOAT* medidas) {
    const bool bPoligonos = formato == WGL_FONT_POLYGONS;
    if ((!bPoligonos && formato != WGL_FONT_LINES) || !(desviacion >= 0.0F) || !(extrusion >= 0.0F))
        return AnotaFallo("there are no such outlines.");
    const std::unique_ptr<Cara> cara = CaraDe(hdc);
    if (!cara) return FALSE;
    Glifo glifo;
    for (DWORD i = 0; i < cuantos; ++i) {
        if (!PreparaGlifo(*cara, primero + i, double{desviacion}, bPoligonos, glifo)) return FALSE;
        const GLYPHMETRICSFLOAT& m = glifo.m_Medidas;
        if (medidas) medidas[i] = m;
        const bool bien = CompilaGlifo(base + i, [&] {
            if (bPoligonos) {
                EnviaPoligonos(glifo, extrusion);
            } else {
                for (const Contorno& borde : glifo.m_Bordes)
                    EnviaLineas(borde, extrusion);
            }
            glTranslatef(m.gmfCellIncX, m.gmfCellIncY, 0.0F);
        });
        if (!bien) return FALSE;
    }
    return TRUE;
}

BOOL wglUseFontBitmapsW(HDC hdc, DWORD primero, DWORD cuantos, DWORD base) {
    constexpr int kAltoMaximo = 1024;  // a block of a thousand lists has a hundred megabytes then
    const std::unique_ptr<Cara> cara = CaraDe(hdc);
    if (!cara) return FALSE;
    if (cara->Alto() > kAltoMaximo) return AnotaFallo("the font is too high for bitmaps.");
    const EmpaquetadoBits empaquetado;
    MapaGlifo m;
    for (DWORD i = 0; i < cuantos; ++i) {
        if (!cara->LeeMapa(primero + i, m)) return FALSE;
        const bool bien = CompilaGlifo(base + i, [&] {
            glBitmap(m.m_nAncho, m.m_nAlto, m.m_fOrigenX, m.m_fOrigenY, m.m_fAvance, 0.0F, m.m_Bits.data());
        });
        if (!bien) return FALSE;
    }
    return TRUE;
}
