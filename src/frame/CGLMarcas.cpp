// Marks and measures: texts at terrain points, each compiled into a list of its own beside two lists of their points. A
// mark at a height of -9989.0 or below is one on a photograph, at -9989.0 or above one on the terrain; exactly there it
// is both.

#include "frame/CGL.h"
#include "frame/ColorGL.h"
#include "frame/EntradaPublica.h"
#include "frame/ListaGL.h"
#include "frame/PuntoGL.h"
#include "platform/Conversiones.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

using Vertiz::CCoor3D;
using Vertiz::CTexto;

namespace {

// A mark without a place keeps its index in m_MarcasGL with this point.
const CCoor3D<double> kSinLugar(std::numeric_limits<double>::quiet_NaN(), 0, 0, 0);

bool TieneLugar(const CCoor3D<double>& p) {
    return !std::isnan(p.x);
}

constexpr double kCotaSinTerreno = -9989.0;

bool EsDeFoto(const CTexto<double>& marca) {
    return marca.Punto(0).z <= kCotaSinTerreno;
}

bool EsDeTerreno(const CTexto<double>& marca) {
    return marca.Punto(0).z >= kCotaSinTerreno;
}

// White, unless the background is.
void FijaColorMarcas(int nColorFondo) {
    COLORREF color = RGB(255, 255, 255);
    ContrastaColor(color, static_cast<COLORREF>(nColorFondo));
    FijaColorGL(static_cast<int>(color));
}

}  // namespace

// There are as many lists of texts as places, which need not be as many as there are marks: an assigned scene keeps its
// marks and takes the other's lists.
void CGL::BorraListasMarcas() {
    BorraLista(m_nListaPuntosMarcasFoto);
    BorraLista(m_nListaPuntosMarcasTerreno);
    BorraLista(m_nListaMarcas, static_cast<GLsizei>(m_MarcasGL.NPuntos()));
    m_MarcasGL.Clear();
}

// The points of the marks of one kind.
int CGL::CompilaPuntosMarcas(GLuint& lista, ClaseMarca esDeEstas) {
    if (!AbreLista(lista)) return 0;
    glPointSize(static_cast<GLfloat>(5 * m_Data.m_nGrosorPuntos));
    glBegin(GL_POINTS);
    for (const CTexto<double>& marca : m_Marcas) {
        if (!esDeEstas(marca) || marca.Texto().IsEmpty()) continue;
        CCoor3D<double> p;
        if (!TerrenoAGL(marca.Punto(0), p.x, p.y, p.z, 1.0, false)) continue;
        FijaColorMarcas(m_Data.m_nColorFondo);
        MandaVertice(p);
    }
    glEnd();
    glPointSize(1.0F);
    glEndList();
    return HayErrorGL() ? 0 : 1;
}

// The text of mark i, at the origin: its point is given when it is drawn.
int CGL::CompilaMarca(unsigned i) {
    const CTexto<double>& marca = m_Marcas[i];
    glNewList(m_nListaMarcas + i, GL_COMPILE);
    if (HayErrorGL()) return 0;
    FijaColorMarcas(m_Data.m_nColorFondo);
    glListBase(m_nListaFuentes);
    glPushMatrix();
    glPushAttrib(0xFFFFF);
    if (m_Data.m_bTextos3D != 0) {
        const auto h = static_cast<GLfloat>(marca.GetAltura() * m_dFactor / m_fEscalaFuente);
        glScalef(h, h, h);
        glLineWidth(1.0F);
        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    } else {
        glRasterPos3f(0.0F, 0.0F, 0.0F);
    }
    // Without fonts the codes would call whatever other lists have these numbers.
    if (m_nListaFuentes != 0) {
        std::u16string texto = AUtf16(marca.Texto().GetString());
        std::erase_if(texto, [](char16_t c) { return c >= kGlifos; });
        glCallLists(static_cast<GLsizei>(texto.size()), GL_UNSIGNED_SHORT, texto.data());
        if (HayErrorGL()) return 0;
    }
    glPopAttrib();
    glPopMatrix();
    glEndList();
    return HayErrorGL() ? 0 : 1;
}

// Where mark i stands in GL space, with its orientation.
CCoor3D<double> CGL::LugarMarca(unsigned i) const {
    const CTexto<double>& marca = m_Marcas[i];
    double x = 0, y = 0, z = 0;
    if (marca.Texto().IsEmpty() || !TerrenoAGL(marca.Punto(0), x, y, z, 1.0, false)) return kSinLugar;
    return CCoor3D<double>(x, y, z, static_cast<int>(marca.GetOrientacion()));
}

int CGL::CompilaMarcas() {
    if (!MakeCurrent(nullptr)) return 0;
    BorraListasMarcas();
    if (!CompilaPuntosMarcas(m_nListaPuntosMarcasFoto, EsDeFoto)) return 0;
    if (!CompilaPuntosMarcas(m_nListaPuntosMarcasTerreno, EsDeTerreno)) return 0;
    if (m_Marcas.empty()) return 1;
    m_nListaMarcas = glGenLists(static_cast<GLsizei>(m_Marcas.size()));
    if (m_nListaMarcas == 0) return 0;
    for (unsigned i = 0; i < m_Marcas.size(); ++i)
        m_MarcasGL << LugarMarca(i);
    for (unsigned i = 0; i < m_Marcas.size(); ++i)
        if (!m_Marcas[i].Texto().IsEmpty() && !CompilaMarca(i)) return 0;
    return 1;
}

int CGL::OnIniciarMarcas() {
    return m_Marcas.empty() ? 1 : CompilaMarcas();
}

int CGL::OnIniciarMedidas() {
    return m_Medidas.empty() ? 1 : CompilaMarcas();
}

int CGL::RenderTextosMarcas(GLuint listaPuntos, ClaseMarca esDeEstas) {
    if (listaPuntos != 0) glCallList(listaPuntos);
    const unsigned n = std::min(static_cast<unsigned>(m_Marcas.size()), m_MarcasGL.NPuntos());
    for (unsigned i = 0; i < n; ++i) {
        const CCoor3D<double>& p = m_MarcasGL.Punto(static_cast<int>(i));
        if (!esDeEstas(m_Marcas[i]) || !TieneLugar(p) || m_nListaMarcas == 0) continue;
        glPushMatrix();
        glTranslated(p.x, p.y, p.z);
        const int orientacion = p.GetTipoCompleto();
        if (orientacion == 0) {
            // Faces the viewer.
            glRotated(GetAnguloX() - 90.0, 1.0, 0.0, 0.0);
            glRotated(GetAnguloZ(), 0.0, 0.0, 1.0);
            glRotated(-GetAnguloY(), 0.0, 1.0, 0.0);
        } else {
            glRotated(orientacion / 100.0, 0.0, 1.0, 0.0);
            glRotated(GetAnguloX() - 90.0, 1.0, 0.0, 0.0);
        }
        glCallList(m_nListaMarcas + i);
        const bool error = HayErrorGL();
        glPopMatrix();  // also after an error: the pass goes on
        if (error) return 0;
    }
    return 1;
}

int CGL::OnRenderMarcasFoto() {
    return RenderTextosMarcas(m_nListaPuntosMarcasFoto, EsDeFoto);
}

// Measures have no geometry of their own: they draw the marks on photographs once more.
int CGL::OnRenderMedidas() {
    return OnRenderMarcasFoto();
}

int CGL::OnRenderMarcasTerreno() {
    return RenderTextosMarcas(m_nListaPuntosMarcasTerreno, EsDeTerreno);
}

// Deletes the lists of the marks as they are, changes the marks, and builds the lists anew.
template <class Cambio>
void CGL::CambiaMarcas(Cambio cambio) {
    const EntradaPublica entrada;
    if (MakeCurrent(nullptr)) BorraListasMarcas();
    cambio();
    entrada.Acaba(OnIniciarMarcas());
}

void CGL::NuevaMarca(const CTexto<double>& marca) {
    CambiaMarcas([&] { m_Marcas.push_back(marca); });
}

void CGL::ModificaMarca(unsigned i, const CTexto<double>& marca) {
    if (i < m_Marcas.size()) CambiaMarcas([&] { m_Marcas[i] = marca; });
}

void CGL::BorraMarca(unsigned i) {
    if (i < m_Marcas.size()) CambiaMarcas([&] { m_Marcas.erase(m_Marcas.begin() + i); });
}

void CGL::ClearMarcas() {
    CambiaMarcas([&] { m_Marcas.clear(); });
}

void CGL::ClearMedidas() {
    const EntradaPublica entrada;
    if (MakeCurrent(nullptr)) BorraLista(m_nListaMedidas);
    m_Medidas.clear();
    entrada.Acaba(OnIniciarMedidas());
}
