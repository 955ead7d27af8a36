// The coordinate chain: terrain units to GL space and back, GL space to pixels and back, the projection, and the
// extents that the GL space is built on. Scale and exaggeration reach the vertices here alone, in TerrenoAGL.

#include "frame/CGL.h"
#include "frame/EsquinasCaja.h"
#include "frame/MatricesGL.h"
#include "model/CMatrizCuadrada.h"

#include <algorithm>
#include <cmath>
#include <span>

using Vertiz::CCoor3D;
using Vertiz::CMatrizCuadrada;
using Vertiz::CMaximas;

namespace {

constexpr int kConica = Vertiz::CDataTransformacion::CONICA;
constexpr int kEsferica = Vertiz::CDataTransformacion::ESFERICA;
constexpr double kSinCota = 2147483647.0;
constexpr double kRangoMinimo = 0.01;

double Rango(double minimo, double maximo) {
    return std::max(maximo < minimo ? 0.0 : maximo - minimo, kRangoMinimo);
}

// A square block of depths, of which a rectangle of cells lies in the window. Only that counts, and only that is looked
// at: the others hold what was there before.
struct Bloque {
    const float* celdas;
    int lado;
    int i0, i1, j0, j1;  // of the rectangle, the ends past it

    const float* Fila(int j) const { return celdas + static_cast<std::size_t>(j) * lado; }
    bool Dentro(int i, int j) const { return i >= i0 && i < i1 && j >= j0 && j < j1; }
};

// How far from the block's middle the nearest cell is that is so: the larger of its two distances, in cells; `lado`
// without any. Whole rows are looked at, since a compiler makes that quick.
template <class Condicion>
int Cercania(const Bloque& bloque, Condicion es) {
    const int medio = bloque.lado / 2;
    int cerca = bloque.lado;
    for (int d = 0; d < cerca && d <= medio; ++d)
        for (const int j : {medio - d, medio + d}) {
            if (j < bloque.j0 || j >= bloque.j1) continue;
            const float* fila = bloque.Fila(j);
            const int desde = std::max(bloque.i0, medio - cerca + 1), hasta = std::min(bloque.i1, medio + cerca);
            unsigned alguna = 0;
            for (int i = desde; i < hasta; ++i)
                alguna |= static_cast<unsigned>(es(fila[i]));
            for (int i = desde; alguna != 0 && i < hasta; ++i)
                if (es(fila[i])) cerca = std::min(cerca, std::max(d, std::abs(i - medio)));
        }
    return cerca;
}

// Looks for the first cell that is so, from the middle outwards, turn by turn: one to the right, one up, two left, two
// down, three right... Turns without such a cell are passed over.
// @return false when the walk leaves the block first
template <class Condicion>
bool BuscaEnEspiral(const Bloque& bloque, Condicion es, int& i, int& j) {
    const int lado = bloque.lado, cerca = Cercania(bloque, es);
    if (cerca == lado) return false;
    const int vueltas = std::max(0, cerca - 1);
    int x = lado / 2 - vueltas, y = x;
    int tramos[2] = {2 * vueltas + 1, 2 * vueltas + 1};
    for (int eje = 0; x >= 0 && x < lado && y >= 0 && y < lado; eje = 1 - eje) {
        int& tramo = tramos[eje];
        const int sentido = tramo > 0 ? 1 : -1;
        for (int paso = 0; paso != tramo && x >= 0 && x < lado && y >= 0 && y < lado; paso += sentido) {
            if (bloque.Dentro(x, y) && es(bloque.Fila(y)[x])) {
                i = x;
                j = y;
                return true;
            }
            (eje == 0 ? x : y) += sentido;
        }
        tramo = -(tramo + sentido);
    }
    return false;
}

}  // namespace

int CGL::EstableceMaxMin(const CMaximas<double>& m) {
    if (m_bEsReferencia != 0) return 0;
    int cambiadas = 0;
    if (!m_Maximas.EstanVacias(true)) {
        const auto difieren = [](const CCoor3D<double>& a, const CCoor3D<double>& b) {
            return std::abs(a.x - b.x) > 1e-7 || std::abs(a.y - b.y) > 1e-7 || std::abs(a.z - b.z) > 1e-7;
        };
        cambiadas = difieren(m_Maximas.Minima(), m.Minima()) || difieren(m_Maximas.Maxima(), m.Maxima());
    }
    m_Maximas = m;
    m_dRangoX = Rango(m.Minima().x, m.Maxima().x);
    m_dRangoY = Rango(m.Minima().y, m.Maxima().y);
    m_dRangoZ = Rango(m.Minima().z, m.Maxima().z);
    m_dFactor = FactorDeRangos();
    return cambiadas;
}

// TerrenoAGL where an image may take part.
bool CGL::TerrenoAGLConImagen(const CCoor3D<double>& p, double& x, double& y, double& z, double escala,
                              bool bSinLimite) const {
    const int fondo = m_nTipoImagenFondo;
    const bool hijo = m_bEsReferencia != 0;
    const bool esferica = m_DataTransformacion.GetTipo() == kEsferica;
    const bool porFoto = (hijo ? fondo != 2 : fondo == 1) && fondo != 5 && m_DataTransformacion.ExisteTransformacion();
    CCoor3D<double> q(0, 0, 0, 0);
    if (porFoto && !esferica) {
        const Vertiz::CDataSemilla& semilla = DameSemilla();
        CCoor3D<double> a(p.x * escala + semilla.GetX(), p.y * escala + semilla.GetY(), p.z * escala + semilla.GetZ(),
                          0);
        if (a.z < m_nCotaRaster + 1) a.z = m_DataTransformacion.m_dCotaReferencia;
        if (!TransformaConData(a, q)) return false;
        q.z = a.z;
    } else if (!porFoto) {
        q = CCoor3D<double>(p.x * escala, p.y * escala, p.z * escala, 0);
        const bool sobreOrto = fondo != 0 && fondo != 5 && (hijo ? fondo != 4 : fondo == 3);
        // A drawing lies just above the image.
        if (sobreOrto && m_Maximas.Minima().z >= q.z) q.z += 1.0;
    }
    if (!esferica) {
        CajaAGL(q.x, q.y, q.z, x, y, z);
        return true;
    }
    const Vertiz::CDataSemilla& semilla = DameSemilla();
    q += CCoor3D<double>(semilla.GetX(), semilla.GetY(), semilla.GetZ(), 0);
    const CCoor3D<double>& o = m_DataTransformacion.m_CentroProyeccion;
    if (!bSinLimite && o.Distancia(q, 1) > m_dDistanciaEsferica) return false;
    x = (q.x - o.x) * m_dFactor;
    y = (q.z - o.z) * m_dFactor;
    z = -(q.y - o.y) * m_dFactor;
    return true;
}

void CGL::GLATerreno(CCoor3D<double>& c, double x, double y, double z, double escala) const {
    const CCoor3D<double> t = CajaATerreno(x, y, z);
    c.x = t.x / escala;
    c.y = t.y / escala;
    c.z = t.z / escala;
    if (SobreFoto()) {
        const double cota = c.z;
        c = m_DataTransformacion.TransformaInversa(c, &cota, -1);
    } else if (m_DataTransformacion.GetTipo() == kEsferica) {
        // Multiplies by escala where the others divide: hosts pass 1.0 here.
        const CCoor3D<double>& centro = m_DataTransformacion.m_CentroProyeccion;
        c.x = (x / m_dFactor + centro.x) * escala;
        c.z = (y / m_dFactor + centro.z) * escala;
        c.y = (centro.y - z / m_dFactor) * escala;
    }
}

bool CGL::TransformaConData(const CCoor3D<double>& entra, CCoor3D<double>& sale) const {
    if (m_DataTransformacion.GetTipo() == kConica) {
        if (!m_DataTransformacion.Transforma(entra, sale)) return false;
        const double suelo = m_Maximas.Minima().z;
        if (entra.z <= suelo) sale.z = suelo + 1.0;
        return true;
    }
    // To the image, as a cloud's inverse transformation goes. Without a transformation the point stays as it is; one
    // without an image comes back as no number.
    sale = entra;
    m_DataTransformacion.Transforma(std::span(&sale, 1));
    if (!m_DataTransformacion.Es3D()) sale.z = entra.z;
    return std::isfinite(sale.x) && std::isfinite(sale.y) && std::isfinite(sale.z);
}

void CGL::SetDataTransformacion(const Vertiz::CDataTransformacion& data) {
    m_DataTransformacion = data;
    if (m_nTipoImagenFondo != 2 && m_nTipoImagenFondo != 5)
        for (CGL* hijo : Hijos())
            hijo->SetDataTransformacion(data);
    if (data.GetTipo() != kEsferica) return;

    double a = 0, b = 0, c = 0, sinUso = 0;
    data.GetAngulos(a, b, c, sinUso);
    CCoor3D<double> angulos(-b - 90.0, -(a + 180.0), -(c + 180.0), 0);
    if (data.m_nResta180 != 0) angulos.y += 180.0;
    CCamera camara;
    double ejes[16];
    camara.AnglesToAxes(angulos, ejes, 1);
    const CCoor3D<double> arriba = camara.UpVector(), frente = camara.View();
    camara.PositionCamera({0, 0, 0, 0}, arriba, frente);
    m_Camara = camara;
}

int CGL::OnResize(int cx, int cy) {
    if (m_bEsReferencia != 0) return 1;
    m_dAspecto = static_cast<double>(cx) / cy;
    GLdouble vieja[16];
    glMatrixMode(GL_PROJECTION);
    if (HayErrorGL()) return 0;
    glGetDoublev(GL_PROJECTION_MATRIX, vieja);
    if (HayErrorGL()) return 0;
    glLoadIdentity();
    if (HayErrorGL()) return 0;
    if (!EsOrtografica()) {
        gluPerspective(m_fAnguloVista, m_dAspecto, m_fPlanoCerca, m_fPlanoFondo);
        m_dFactorPantalla = 2.0 / cx;
    } else if (!ProyectaOrto(cx, cy, vieja)) {
        return 0;
    }
    glViewport(0, 0, cx, cy);
    return HayErrorGL() ? 0 : 1;
}

// Loads the orthographic projection, brings (cx, cy) within what a viewport can be, and carries over the zoom of the
// matrix that stood before.
int CGL::ProyectaOrto(int& cx, int& cy, const double* vieja) {
    const double w = m_dAspecto * 0.5;
    double h = 0.5;
    GLint limites[2] = {};
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, limites);
    if (HayErrorGL()) return 0;
    const double exceso = cx >= cy ? static_cast<double>(cx) / limites[0] : static_cast<double>(cy) / limites[1];
    if (exceso > 1.0) {
        cx = std::max(1, APixel(cx / exceso));
        cy = std::max(1, APixel(cy / exceso));
        m_dAspecto /= exceso;
        h = 0.5 / exceso;
    }
    m_dFactorPantalla = 1.0 / cx;
    glOrtho(-w, w, -h, h, -m_fPlanoFondo, m_fPlanoFondo);
    GLdouble nueva[16];
    glGetDoublev(GL_PROJECTION_MATRIX, nueva);
    if (HayErrorGL()) return 0;
    // Only an orthographic matrix has a zoom to keep. Zoom by steps leaves depth alone, so plan and depth are carried
    // each by its own element.
    const bool eraOrto = vieja[15] == 1.0 && vieja[11] == 0.0;
    const double plano = eraOrto ? std::abs(vieja[5] / nueva[5]) : 1.0;
    const double fondo = eraOrto ? std::abs(vieja[10] / nueva[10]) : 1.0;
    const GLdouble zoom[16] = {plano, 0, 0, 0, 0, plano, 0, 0, 0, 0, fondo, 0, 0, 0, 0, 1};
    glMultMatrixd(zoom);
    return 1;
}

int CGL::TerrenoAPantalla(CPoint& pt, const CCoor3D<double>& p, double* pz, bool bGL) {
    if (m_nAncho == 0 || m_nAlto == 0) return 0;
    if (!MakeCurrent(nullptr)) return 0;
    glMatrixMode(GL_MODELVIEW);
    if (HayErrorGL()) return 0;
    MatricesGL matrices;
    if (!matrices.Lee()) return 0;
    if (m_Maximas.EstanVacias(true)) return 0;
    CCoor3D<double> gl = p, ventana;
    if (!bGL && !TerrenoAGL(p, gl.x, gl.y, gl.z, 1.0, false)) return 0;
    if (!matrices.Proyecta(gl, ventana)) return 0;
    pt.x = APixel(ventana.x);
    pt.y = matrices.viewport[3] - APixel(ventana.y);
    if (pz != nullptr) *pz = ventana.z;
    wglMakeCurrent(nullptr, nullptr);
    return 1;
}

void CGL::TerrenoAPantalla(const CMaximas<double>& m, CMaximas<double>& salida, double escala, int* viewport,
                           double* modelview, double* proyeccion) {
    for (const CCoor3D<double>& esquina : EsquinasCaja(m)) {
        CCoor3D<double> gl, ventana;
        if (!TerrenoAGL(esquina, gl.x, gl.y, gl.z, escala, false)) continue;
        if (gluProject(gl.x, gl.y, gl.z, modelview, proyeccion, viewport, &ventana.x, &ventana.y, &ventana.z) ==
            GL_TRUE)
            salida.Nuevo(ventana);
    }
}

// Depths of a background image that tell what lies in front of it.
struct CGL::ProfundidadFondo {
    double centro = 0, suelo = 0, tolerancia = 0.001;
};

CGL::ProfundidadFondo CGL::MideFondo(const MatricesGL& matrices) const {
    ProfundidadFondo fondo;
    if (m_nTipoImagenFondo == 5 || m_nTipoImagenFondo == 6) {
        fondo.centro = 1.0;
    } else if (m_nTipoImagenFondo != 0) {
        CMaximas<double> caja;
        GetMaximasObjeto(caja);
        CCoor3D<double> centro = caja.Centro(true);
        if (m_nTipoImagenFondo != 1) centro.z = m_nCotaRaster + 1;
        const CCoor3D<double> suelo(centro.x, centro.y, caja.Minima().z, 0);
        const auto profundidad = [&](const CCoor3D<double>& punto, double& z) {
            CCoor3D<double> gl, ventana;
            if (!TerrenoAGL(punto, gl.x, gl.y, gl.z, 1.0, false) || !matrices.Proyecta(gl, ventana)) return false;
            z = ventana.z;
            return true;
        };
        const bool hayCentro = profundidad(centro, fondo.centro);
        const bool haySuelo = profundidad(suelo, fondo.suelo);
        if (hayCentro && haySuelo) fondo.tolerancia = std::abs(fondo.centro - fondo.suelo);
    }
    return fondo;
}

// The depth block round a window point, read. One without a cell in the window isn't read at all, since drivers go
// astray far from the window.
struct CGL::BloqueProfundidad : Bloque {
    BloqueProfundidad(float* destino, const MatricesGL& matrices, int x, int y) : Bloque{destino, kLado, 0, 0, 0, 0} {
        const int izquierda = x - kLado / 2, abajo = y - kLado / 2;
        i0 = std::clamp(-izquierda, 0, kLado);
        j0 = std::clamp(-abajo, 0, kLado);
        i1 = std::clamp(matrices.viewport[2] - izquierda, i0, kLado);
        j1 = std::clamp(matrices.viewport[3] - abajo, j0, kLado);
        if (i0 == i1 || j0 == j1) return;
        glReadPixels(izquierda, abajo, kLado, kLado, GL_DEPTH_COMPONENT, GL_FLOAT, destino);
    }
    static constexpr int kLado = kLadoProfundidad;
};

// Looks for geometry round the middle of the depth block. z is the depth that stands for an empty block, and comes back
// as that of the cell that was hit, or of the first one that holds anything.
bool CGL::BuscaPixel(const ProfundidadFondo& fondo, const BloqueProfundidad& bloque, float& z, int& i, int& j) const {
    const auto busca = [&](auto es, int& columna, int& fila) {
        if (!BuscaEnEspiral(bloque, es, columna, fila)) return false;
        z = bloque.Fila(fila)[columna];
        return true;
    };
    const auto hay = [](float v) { return std::abs(v) < 1.0F; };
    if (m_nTipoImagenFondo == 0) return busca(hay, i, j);
    const bool hallado =
        m_nTipoImagenFondo == 5 || m_nTipoImagenFondo == 6
            ? busca([&](float v) { return hay(v) && std::abs(v - fondo.centro) > fondo.tolerancia; }, i, j)
            : busca([&](float v) { return hay(v) && fondo.suelo > v; }, i, j);  // in front of the image
    int columna = 0, fila = 0;
    if (!hallado)
        busca([inicial = z, &hay](float v) { return hay(v) && std::abs(v - inicial) > 1e-7F; }, columna, fila);
    return hallado;
}

// Without a depth buffer that can be read: the pixel at the depth of the last point, laid on the surface by the scene.
// False when the matrices can't be inverted; bHallado tells whether the ray met the surface.
bool CGL::ProyectaPixel(const MatricesGL& matrices, int x, int y, CCoor3D<double>& c, bool& bHallado) const {
    CCoor3D<double> ventana;
    if (!matrices.Proyecta(m_PuntoGL, ventana) || !matrices.Desproyecta(x, y, ventana.z, c)) return false;
    const double escala = EscalaModelo(matrices.modelview);
    const CCoor3D<double> ojo = m_Camara.Position();
    bHallado = ProyectaVector(c, EsOrtografica() ? c + m_Camara.View() - ojo : ojo / escala);
    return true;
}

int CGL::PantallaATerreno(const CPoint& pt, CCoor3D<double>& c, bool bGL, bool bPixelHallado, bool bBuscarPunto) {
    if (!MakeCurrent(nullptr)) return 0;
    MatricesGL matrices;
    if (!matrices.Lee()) return 0;
    int x = std::clamp<int>(pt.x, -kPixelLejano, kPixelLejano);
    int y = matrices.viewport[3] - std::clamp<int>(pt.y, -kPixelLejano, kPixelLejano);
    int i = kLadoProfundidad / 2, j = kLadoProfundidad / 2;
    const ProfundidadFondo fondo = MideFondo(matrices);
    const BloqueProfundidad bloque(m_pBufferProfundidad.get(), matrices, x, y);
    bool hallado = true;
    if (!HayErrorGL()) {
        float z = 1.0F - m_fPlanoCerca;
        if (BuscaPixel(fondo, bloque, z, i, j) && bPixelHallado) {
            x += i - kLadoProfundidad / 2;
            y += j - kLadoProfundidad / 2;
        }
        if (!matrices.Desproyecta(x, y, z, c)) return 0;
    } else if (!ProyectaPixel(matrices, x, y, c, hallado)) {
        return 0;
    }
    m_PuntoGL = c;
    wglMakeCurrent(nullptr, nullptr);
    if (bGL) return hallado;
    if (bBuscarPunto) {
        CCoor3D<double> vertice;
        if (OnBuscaPunto(pt.x + (i - kLadoProfundidad / 2), pt.y + (kLadoProfundidad / 2 - j), vertice, 0) != 0)
            c.y = ((vertice.z - m_Maximas.Minima().z) - m_dRangoZ * 0.5) * m_dFactor * m_fExageracionVertical;
    }
    GLATerreno(c, c.x, c.y, c.z, 1.0);
    return hallado;
}

int CGL::PantallaZATerreno(const CPoint& pt, CCoor3D<double>& c, double winz, bool bGL) {
    if (!MakeCurrent(nullptr)) return 0;
    MatricesGL matrices;
    if (!matrices.Lee()) return 0;
    if (!matrices.Desproyecta(pt.x, matrices.viewport[3] - static_cast<double>(pt.y), winz, c)) return 0;
    m_PuntoGL = c;
    wglMakeCurrent(nullptr, nullptr);
    if (!bGL) GLATerreno(c, c.x, c.y, c.z, 1.0);
    return 1;
}

// A box of terrain coordinates as the box of its corners on the image. An empty one stays empty.
CMaximas<double> CGL::EnImagen(const CMaximas<double>& m) const {
    CMaximas<double> imagen;
    if (m.EstanVacias(true)) return imagen;
    for (const CCoor3D<double>& esquina : EsquinasCaja(m)) {
        CCoor3D<double> punto;
        if (TransformaConData(esquina, punto)) imagen.Nuevo(punto);
    }
    return imagen;
}

int CGL::GetMaximas(CMaximas<double>& m) const {
    if (TieneImagenEsferica() && m_bEsReferencia == 0) {
        CMaximas<double> fondo;
        if (!GetMaximasReferencia(fondo, 6) && !GetMaximasVinculos(fondo, 6)) return 0;
        m.Nuevo(fondo);
        return 1;
    }
    int resultado = 0;
    if (m_Data.m_bMaximasObjeto != 0) {
        CMaximas<double> objeto;
        resultado = GetMaximasObjeto(objeto);
        if (resultado != 0 && m_nTipoImagenFondo == 1 && m_DataTransformacion.ExisteTransformacion())
            objeto = EnImagen(objeto);
        m.Nuevo(objeto);
        if (GetMaximasVinculos(m, -1) != 0) resultado = 1;
    }
    if (m_Data.m_bReferencia != 0 && m_nTipo != 8 && GetMaximasReferencia(m, -1) != 0) resultado = 1;
    return resultado;
}

int CGL::GetMaximasReferencia(CMaximas<double>& m, int fondo) const {
    return GetMaximasHijos(m_Referencias, m, fondo);
}

int CGL::GetMaximasVinculos(CMaximas<double>& m, int fondo) const {
    return GetMaximasHijos(m_Vinculos, m, fondo);
}

int CGL::GetMaximasHijos(const std::vector<CGL*>& hijos, CMaximas<double>& m, int fondo) const {
    int resultado = 0;
    for (const CGL* hijo : hijos) {
        const int suyo = hijo->m_nTipoImagenFondo;
        if (fondo >= 0 && suyo != fondo) continue;
        CMaximas<double> caja;
        if (hijo->GetMaximasObjeto(caja) != 0) resultado = 1;
        if (suyo != 2 && suyo != 5 && suyo != 6 && hijo->m_DataTransformacion.ExisteTransformacion())
            caja = EnImagen(caja);
        m.Nuevo(caja);
    }
    return resultado;
}

void CGL::CalculaCamaraDesdeMatrices() {
    GLdouble m[16];
    glGetDoublev(GL_MODELVIEW_MATRIX, m);
    if (HayErrorGL()) return;
    CMatrizCuadrada a(4), inversa(4);
    for (unsigned i = 0; i < 4; ++i)
        for (unsigned j = 0; j < 4; ++j)
            a.Set(i, j, m[4 * i + j]);
    if (!a.InversaPivote(inversa)) return;
    const double escala = EscalaModelo(m);
    const CCoor3D<double> ojo = CCoor3D<double>(inversa.Get(3, 0), inversa.Get(3, 1), inversa.Get(3, 2), 0) * escala;
    const CCoor3D<double> atras = CCoor3D<double>(a.Get(0, 2), a.Get(1, 2), a.Get(2, 2), 0) / escala;
    const CCoor3D<double> derecha = CCoor3D<double>(a.Get(0, 0), a.Get(1, 0), a.Get(2, 0), 0) / escala;
    m_Camara.PositionCamera(ojo, ojo - atras, atras * derecha);
}

double CGL::BuscaCotaProxima(const CPoint& pt, CCoor3D<double>& c, bool bBuscarPunto) {
    if (PantallaATerreno(pt, c, false, false, bBuscarPunto) == 0) return kSinCota;
    const bool hayImagen = HayImagen();
    if (hayImagen && c.z < m_nCotaRaster + 1) c.z = 0;
    if (m_Maximas.Dentro(c, 1)) return 0.0;
    if (hayImagen)
        for (CGL* referencia : m_Referencias) {
            if (referencia->m_nTipo == 3 || referencia->m_nTipo == 8) continue;
            CCoor3D<double> suya;
            // A miss is a non-zero result too, and is copied like any other.
            if (referencia->BuscaCotaProxima(pt, suya, bBuscarPunto) != 0.0) c = suya;
        }
    return kSinCota;
}

double CGL::BuscaCotaProximaConReferencias(double& x, double& y, const CPoint& pt, bool bBuscarPunto) {
    const std::vector<CGL*> hijos = Hijos();
    CCoor3D<double> p(x, y, 0, 0);
    for (const CGL* hijo : hijos)
        if (hijo->Proyecta(p)) return p.z;
    p.z = 0;
    for (CGL* hijo : hijos)
        hijo->BuscaCotaProxima(pt, p, bBuscarPunto);
    return p.z;
}
