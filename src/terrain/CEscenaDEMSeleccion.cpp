// Picking cells and samples of the grid, and the list that shows them. Picking works on the screen: what may be meant
// is projected by gluProject and compared with the click, or with the sketch. Of a matrix a quick test first takes out
// what can't be meant (FiltroPantalla.h).

#include "terrain/CEscenaDEM.h"
#include "terrain/FiltroPantalla.h"
#include "frame/EntradaPublica.h"
#include "frame/ListaGL.h"
#include "frame/MaterialGL.h"
#include "frame/MatricesGL.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

using Vertiz::CCoor3D;
using Vertiz::CDEM;
using Vertiz::CLinea;

namespace {

constexpr double kPixelesMuestra = 8.0;  // a sample is met within so many pixels of the click, on each axis

bool EsFinito(const CCoor3D<double>& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

// @return false where GLU finds no place on the screen
bool EnVentana(const MatricesGL& matrices, const CCoor3D<double>& gl, CCoor3D<double>& ventana) {
    return matrices.Proyecta(gl, ventana) && EsFinito(ventana);
}

bool Encierra(const CLinea<double>& poligono, const CCoor3D<double>& ventana) {
    return poligono.EstaDentro(ventana, false) != Vertiz::TD_FUERA;
}

// Whether the window polygon of some GL points has the click in it or on its border.
bool Cubre(const MatricesGL& matrices, const std::array<CCoor3D<double>, 4>& gl, const CCoor3D<double>& clic) {
    CLinea<double> contorno;
    for (const CCoor3D<double>& p : gl) {
        CCoor3D<double> ventana;
        if (!EnVentana(matrices, p, ventana)) return false;
        contorno << ventana;
    }
    contorno.Cierra();
    return Encierra(contorno, clic);
}

bool EstaCerca(const MatricesGL& matrices, const CCoor3D<double>& gl, const CCoor3D<double>& clic) {
    constexpr double k = kPixelesMuestra;
    CCoor3D<double> v;
    return EnVentana(matrices, gl, v) && v.x > clic.x - k && v.x < clic.x + k && v.y > clic.y - k && v.y < clic.y + k;
}

CajaVentana CajaDe(const CLinea<double>& poligono) {
    constexpr double kInfinito = std::numeric_limits<double>::infinity();
    CajaVentana caja{kInfinito, -kInfinito, kInfinito, -kInfinito};
    for (const CCoor3D<double>& p : poligono.Puntos()) {
        caja = {std::min(caja.x0, p.x), std::max(caja.x1, p.x), std::min(caja.y0, p.y), std::max(caja.y1, p.y)};
    }
    return caja;
}

}  // namespace

// ---- The matrix, row by row -----------------------------------------------------------------------------------------

// The sides of a rectangle on the screen on which the samples of a row lie. Scenes with an image have no filter: there
// each sample goes through the image's transformation and GLU, once.
class CEscenaDEM::Muestras {
  public:
    Muestras(const CEscenaDEM& escena, const MatricesGL& matrices, const CajaVentana& caja)
        : m_Escena(escena), m_Matrices(matrices), m_Caja(caja), m_Marco(escena.DameMarco()) {
        const bool conImagen = escena.m_nTipoImagenFondo != 0 || escena.m_DataTransformacion.ExisteTransformacion() ||
                               escena.EsImagenEsferica();
        if (!conImagen) m_Filtro = std::make_unique<FiltroPantalla>(matrices, caja, Lugares());
    }

    void Fila(std::size_t r, std::vector<std::uint32_t>& lados) {
        lados.resize(m_Escena.m_pDEM->GetColumnas());
        if (m_Filtro) {
            const double y = m_Marco.norte - static_cast<double>(r) * m_Marco.celdaY;
            m_Filtro->Fila(EnGL(m_Marco.oeste, y).z, m_Escena.FilaAlturas(static_cast<int>(r), m_Copia), lados.data());
            return;
        }
        for (std::size_t c = 0; c < lados.size(); ++c) {
            CCoor3D<double> gl, ventana;
            const bool hay = m_Escena.MuestraAGL(m_Marco, r, c, gl) && EnVentana(m_Matrices, gl, ventana);
            lados[c] = hay ? LadosDe(m_Caja, ventana) : 0;
        }
    }

    const Marco& DameMarco() const { return m_Marco; }

  private:
    CCoor3D<double> EnGL(double x, double y) const {
        CCoor3D<double> gl;
        m_Escena.CajaAGL(x, y, 0.0, gl.x, gl.y, gl.z);
        return gl;
    }

    FiltroPantalla::Lugares Lugares() const {
        FiltroPantalla::Lugares lugares;
        const unsigned columnas = m_Escena.m_pDEM->GetColumnas();
        for (unsigned c = 0; c < columnas; ++c)
            lugares.columnas.push_back(EnGL(m_Marco.oeste + c * m_Marco.celdaX, 0.0).x);
        const double exageracion = m_Escena.m_fExageracionVertical, sz = m_Escena.DameSemilla().GetZ();
        lugares.alturaAGL = m_Escena.m_dFactor * exageracion;
        lugares.origenY = EnGL(0.0, 0.0).y - sz * lugares.alturaAGL;
        // Of the largest number that a coordinate is worked out from.
        constexpr double kRedondeo = 0x1p-45;
        const CCoor3D<double>& o = m_Escena.m_Maximas.Minima();
        const double largo = columnas * m_Marco.celdaX + m_Escena.m_pDEM->GetFilas() * m_Marco.celdaY;
        lugares.ruido = kRedondeo * std::abs(m_Escena.m_dFactor) * std::max(1.0, std::abs(exageracion)) *
                        (std::abs(m_Marco.oeste) + std::abs(m_Marco.norte) + largo + std::abs(o.x) + std::abs(o.y) +
                         std::abs(o.z) + std::abs(sz) + m_Escena.m_dRangoX + m_Escena.m_dRangoY + m_Escena.m_dRangoZ);
        return lugares;
    }

    const CEscenaDEM& m_Escena;
    const MatricesGL& m_Matrices;
    const CajaVentana m_Caja;
    const Marco m_Marco;
    std::unique_ptr<FiltroPantalla> m_Filtro;
    std::vector<float> m_Copia;
};

// A sample's place: row from the north. @return false where an image has no place for it
bool CEscenaDEM::MuestraAGL(const Marco& marco, std::size_t r, std::size_t c, CCoor3D<double>& gl) const {
    const auto m = static_cast<unsigned>(m_pDEM->GetFilas() - 1 - r);
    const auto h = static_cast<float>(m_pDEM->Matriz().Get(m, static_cast<unsigned>(c)) - m_pDEM->GetSemilla().GetZ());
    const CCoor3D<double> p(marco.oeste + static_cast<double>(c) * marco.celdaX,
                            marco.norte - static_cast<double>(r) * marco.celdaY, h, 0);
    return TerrenoAGL(p, gl.x, gl.y, gl.z, 1.0, false);
}

// The corners of a cell from the north-west one on round. @return false beyond the grid, without a valid first corner,
// and where a corner has no place
bool CEscenaDEM::CeldaAGL(const Marco& marco, std::size_t r, std::size_t c, Esquinas& gl) const {
    const std::size_t filas = m_pDEM->GetFilas();
    if (r + 1 >= filas || c + 1 >= m_pDEM->GetColumnas()) return false;
    if (!m_pDEM->EsValido(static_cast<unsigned>(filas - 1 - r), static_cast<unsigned>(c))) return false;
    return MuestraAGL(marco, r, c, gl[0]) && MuestraAGL(marco, r, c + 1, gl[1]) &&
           MuestraAGL(marco, r + 1, c + 1, gl[2]) && MuestraAGL(marco, r + 1, c, gl[3]);
}

// ---- The cell list --------------------------------------------------------------------------------------------------

bool CEscenaDEM::CeldaListaAGL(int i, Esquinas& gl) const {
    const auto lugar = static_cast<std::size_t>(i);
    CeldaGL celda;
    if (lugar >= m_pDEM->Celdas().size() || !ColocaCelda(m_pDEM->Celdas()[lugar], celda)) return false;
    gl = celda.v;
    return true;
}

bool CEscenaDEM::PuntoListaAGL(int i, CCoor3D<double>& gl) const {
    const auto lugar = static_cast<std::size_t>(i);
    float h = 0.0F;
    return lugar < m_pDEM->Puntos().size() && ColocaPunto(m_pDEM->Puntos()[lugar], gl, h);
}

// ---- A click --------------------------------------------------------------------------------------------------------

unsigned CEscenaDEM::OnSeleccion(int x, int y, int desdeInicio, unsigned tipo, int acumular, int bReferencias,
                                 int bVinculos, unsigned modo, int bPuntoLibre, int e, int f) {
    if (m_pDEM == nullptr) return 0;
    CDEM::CPosicion desde;
    std::int64_t indice = 0;
    if (desdeInicio == 0 && !m_SeleccionCeldas.empty())
        desde = {m_SeleccionCeldas[0].m_nFila, m_SeleccionCeldas[0].m_nColumna + 1};
    if (desdeInicio == 0 && !m_Seleccion.empty()) indice = std::int64_t{m_Seleccion[0].m_nEntidad} + 1;
    if (acumular == 0) Deselecciona(desdeInicio, 1, f);
    const std::size_t propias = SeleccionPropia();
    const unsigned antes = CantidadSeleccion();
    if ((m_Data.m_bMaximasObjeto != 0 || m_bEsReferencia != 0) && !Pulsa(x, y, tipo, desde, indice)) return 0;
    if (!OnIniciarSeleccion()) return 0;
    wglMakeCurrent(nullptr, nullptr);
    if (SeleccionPropia() == propias) {
        CGL::OnSeleccion(x, y, desdeInicio, tipo, acumular, bReferencias, bVinculos, modo, bPuntoLibre, e, 1);
    } else if (modo != 0) {
        CCoor3D<double> p;
        if (!DamePuntoSeleccion2(p, static_cast<int>(propias))) return 0;
        m_PuntosSeleccion.push_back(p);
        if (modo == 2) {
            CPoint pt(x, y);
            TerrenoAPantalla(pt, p, nullptr, false);
            SumaALineaNueva(pt);
        }
    }
    // A child that lets its former pick go for a new one, or for none, has no more than before.
    const unsigned ahora = CantidadSeleccion();
    return ahora > antes ? ahora - antes : 0;
}

// Looks for what is under a pixel. @return 0 no context, or a GL error
int CEscenaDEM::Pulsa(int x, int y, unsigned tipo, CDEM::CPosicion desde, std::int64_t indice) {
    if (!MakeCurrent(nullptr)) return 0;
    MatricesGL matrices;
    if (!matrices.Lee()) return 0;
    const CCoor3D<double> clic(x, matrices.viewport[3] - y, 0.0, 0);
    FijaTipoSeleccion(tipo);
    if (m_pDEM->EsListaCeldas())
        PulsaLista(matrices, clic, std::max<std::int64_t>(indice, 0));
    else if (GetTipoSeleccion() == 1)
        PulsaCeldas(matrices, clic, desde);
    else
        PulsaMuestras(matrices, clic, desde);
    return 1;
}

void CEscenaDEM::FijaTipoSeleccion(unsigned tipo) {
    const bool muestras = tipo == 1 || (tipo == 0 && GetQuad() == 2);
    m_nTipoSeleccion = muestras ? 0 : 1;
}

void CEscenaDEM::PulsaCeldas(const MatricesGL& matrices, const CCoor3D<double>& clic, CDEM::CPosicion desde) {
    Muestras muestras(*this, matrices, {clic.x, clic.x, clic.y, clic.y});
    const std::size_t filas = m_pDEM->GetFilas(), columnas = m_pDEM->GetColumnas();
    std::vector<std::uint32_t> norte, sur;
    if (desde.m_nFila < filas) muestras.Fila(desde.m_nFila, sur);
    for (std::size_t r = desde.m_nFila; r + 1 < filas; ++r) {
        std::swap(norte, sur);
        muestras.Fila(r + 1, sur);
        for (std::size_t c = r == desde.m_nFila ? desde.m_nColumna : 0; c + 1 < columnas; ++c) {
            // With its four corners on one side of the click a cell is elsewhere.
            if ((norte[c] & norte[c + 1] & sur[c] & sur[c + 1]) != 0) continue;
            Esquinas gl;
            if (!CeldaAGL(muestras.DameMarco(), r, c, gl) || !Cubre(matrices, gl, clic)) continue;
            m_SeleccionCeldas.push_back({static_cast<unsigned>(r), static_cast<unsigned>(c)});
            return;
        }
    }
}

void CEscenaDEM::PulsaMuestras(const MatricesGL& matrices, const CCoor3D<double>& clic, CDEM::CPosicion desde) {
    const double k = kPixelesMuestra;
    Muestras muestras(*this, matrices, {clic.x - k, clic.x + k, clic.y - k, clic.y + k});
    const std::size_t filas = m_pDEM->GetFilas(), columnas = m_pDEM->GetColumnas();
    std::vector<std::uint32_t> lados;
    for (std::size_t r = desde.m_nFila; r < filas; ++r) {
        muestras.Fila(r, lados);
        for (std::size_t c = r == desde.m_nFila ? desde.m_nColumna : 0; c < columnas; ++c) {
            if (lados[c] != 0) continue;
            const auto m = static_cast<unsigned>(filas - 1 - r), columna = static_cast<unsigned>(c);
            CCoor3D<double> gl;
            if (!m_pDEM->EsValido(m, columna) || !MuestraAGL(muestras.DameMarco(), r, c, gl)) continue;
            if (!EstaCerca(matrices, gl, clic)) continue;
            m_SeleccionCeldas.push_back({static_cast<unsigned>(r), columna});
            return;
        }
    }
}

void CEscenaDEM::PulsaLista(const MatricesGL& matrices, const CCoor3D<double>& clic, std::int64_t indice) {
    const bool celdas = GetTipoSeleccion() == 1;
    const auto cantidad = static_cast<std::int64_t>(celdas ? m_pDEM->Celdas().size() : m_pDEM->Puntos().size());
    for (std::int64_t i = indice; i < cantidad; ++i) {
        const int lugar = static_cast<int>(i);
        Esquinas gl;
        CCoor3D<double> punto;
        const bool hallado = celdas ? CeldaListaAGL(lugar, gl) && Cubre(matrices, gl, clic)
                                    : PuntoListaAGL(lugar, punto) && EstaCerca(matrices, punto, clic);
        if (!hallado) continue;
        m_Seleccion.emplace_back(lugar, -1);
        return;
    }
}

// ---- The sketch -----------------------------------------------------------------------------------------------------

unsigned CEscenaDEM::OnSeleccionConLineaNueva(unsigned tipo) {
    m_SeleccionCeldas.clear();
    if (m_pDEM == nullptr || SeleccionPropia() == 0) BorraListaSeleccion();
    if (m_LineaNueva.NPuntos() < 2 || GetQuad() == 3 || m_pDEM == nullptr) return 0;
    if (!MakeCurrent(nullptr)) return 0;
    MatricesGL matrices;
    if (!matrices.Lee()) return 0;
    FijaTipoSeleccion(tipo);
    CierraLineaNueva();
    CLinea<double> poligono;
    for (const CCoor3D<double>& p : m_LineaNueva.Puntos()) {
        CCoor3D<double> ventana;
        if (EnVentana(matrices, p, ventana)) poligono << ventana;
    }
    const std::size_t propias = SeleccionPropia();
    if (m_pDEM->EsListaCeldas())
        EncierraLista(matrices, poligono);
    else
        EncierraMatriz(matrices, poligono);
    if (!OnIniciarSeleccion()) return 0;
    wglMakeCurrent(nullptr, nullptr);
    return static_cast<unsigned>(SeleccionPropia() - propias);
}

void CEscenaDEM::EncierraMatriz(const MatricesGL& matrices, const CLinea<double>& poligono) {
    Muestras muestras(*this, matrices, CajaDe(poligono));
    const std::size_t filas = m_pDEM->GetFilas(), columnas = m_pDEM->GetColumnas();
    // Which samples of a row are inside; of a cell's corners only the first has to be valid.
    std::vector<std::uint32_t> lados;
    const auto dentro = [&](std::size_t r, std::vector<bool>& fila) {
        muestras.Fila(r, lados);
        fila.assign(columnas, false);
        for (std::size_t c = 0; c < columnas; ++c) {
            CCoor3D<double> gl, ventana;
            fila[c] = lados[c] == 0 && MuestraAGL(muestras.DameMarco(), r, c, gl) && EnVentana(matrices, gl, ventana) &&
                      Encierra(poligono, ventana);
        }
    };
    const bool celdas = GetTipoSeleccion() == 1;
    std::vector<bool> norte, sur;
    if (filas > 0) dentro(0, sur);
    for (std::size_t r = 0; r + (celdas ? 1 : 0) < filas; ++r) {
        std::swap(norte, sur);
        if (r + 1 < filas) dentro(r + 1, sur);
        for (std::size_t c = 0; c + (celdas ? 1 : 0) < columnas; ++c) {
            if (!norte[c] || (celdas && !(norte[c + 1] && sur[c] && sur[c + 1]))) continue;
            if (!m_pDEM->EsValido(static_cast<unsigned>(filas - 1 - r), static_cast<unsigned>(c))) continue;
            m_SeleccionCeldas.push_back({static_cast<unsigned>(r), static_cast<unsigned>(c)});
        }
    }
}

void CEscenaDEM::EncierraLista(const MatricesGL& matrices, const CLinea<double>& poligono) {
    const auto dentro = [&](const CCoor3D<double>& gl) {
        CCoor3D<double> ventana;
        return EnVentana(matrices, gl, ventana) && Encierra(poligono, ventana);
    };
    const bool celdas = GetTipoSeleccion() == 1;
    const std::size_t cantidad = celdas ? m_pDEM->Celdas().size() : m_pDEM->Puntos().size();
    for (int i = 0; static_cast<std::size_t>(i) < cantidad; ++i) {
        Esquinas gl;
        CCoor3D<double> punto;
        const bool hallado =
            celdas ? CeldaListaAGL(i, gl) && std::ranges::all_of(gl, dentro) : PuntoListaAGL(i, punto) && dentro(punto);
        if (hallado) m_Seleccion.emplace_back(i, -1);
    }
}

// ---- What is picked -------------------------------------------------------------------------------------------------

// What is picked in this scene. The grid is there.
std::size_t CEscenaDEM::SeleccionPropia() const {
    return m_pDEM->EsListaCeldas() ? m_Seleccion.size() : m_SeleccionCeldas.size();
}

unsigned CEscenaDEM::CantidadSeleccion() const {
    if (m_pDEM == nullptr) return 0;
    auto suma = static_cast<unsigned>(SeleccionPropia());
    for (const CGL* hijo : Hijos()) {
        // A grid's cells are none of the frame's list.
        const auto* rejilla = dynamic_cast<const CEscenaDEM*>(hijo);
        suma += rejilla != nullptr ? rejilla->CantidadSeleccion() : hijo->CantidadSeleccion(1, 1);
    }
    return suma;
}

bool CEscenaDEM::HaySeleccion(int bReferencias, int bVinculos) const {
    return CantidadSeleccion(bReferencias, bVinculos) != 0 || !m_SeleccionCeldas.empty();
}

void CEscenaDEM::Deselecciona(int bReferencias, int bVinculos, int bLinea) {
    CGL::Deselecciona(bReferencias, bVinculos, bLinea);
    m_SeleccionCeldas.clear();
    BorraListaSeleccion();
}

// Takes the context only where there is a list.
void CEscenaDEM::BorraListaSeleccion() {
    if (m_nListaSeleccion == 0) return;
    const EntradaPublica entrada;
    if (!MakeCurrent(nullptr)) return;
    BorraLista(m_nListaSeleccion);
    entrada.Acaba(1);
}

int CEscenaDEM::OnIniciarSeleccion() {
    if (m_pDEM == nullptr || SeleccionPropia() == 0) {
        BorraListaSeleccion();  // an undone pick shows no longer
        return 1;
    }
    if (!MakeCurrent(nullptr) || !AbreLista(m_nListaSeleccion)) return 0;
    glColor3f(1.0F, 0.0F, 0.0F);
    glDisable(GL_TEXTURE_2D);
    glEnable(GL_DEPTH_TEST);
    glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);
    glEnable(GL_COLOR_MATERIAL);
    glDisable(GL_LIGHTING);
    glDisable(GL_LIGHT0);
    if (!MaterialNulo()) return CierraLista(false);
    if (GetTipoSeleccion() == 1)
        CompilaCeldasSeleccion();
    else
        CompilaPuntosSeleccion();
    return CierraLista(!HayErrorGL());
}

void CEscenaDEM::CompilaCeldasSeleccion() const {
    const auto emite = [](const Esquinas& gl, const CCoor3D<double>& norteSur, const CCoor3D<double>& oesteEste) {
        CCoor3D<double> normal = norteSur * oesteEste;
        normal.Normaliza();
        glNormal3d(normal.x, normal.y, normal.z);
        for (const CCoor3D<double>& v : gl)
            glVertex3d(v.x, v.y, v.z);
    };
    // Normals point into the terrain, as those of the surface.
    Esquinas gl;
    glBegin(GL_QUADS);
    if (m_pDEM->EsListaCeldas()) {
        for (const Vertiz::CPosicionEntidad& posicion : m_Seleccion)
            if (CeldaListaAGL(posicion.m_nEntidad, gl)) emite(gl, gl[0] - gl[1], gl[3] - gl[0]);
    } else {
        const Marco marco = DameMarco();
        for (const CDEM::CPosicion& posicion : m_SeleccionCeldas)
            if (CeldaAGL(marco, posicion.m_nFila, posicion.m_nColumna, gl)) emite(gl, gl[0] - gl[3], gl[1] - gl[0]);
    }
    glEnd();
}

void CEscenaDEM::CompilaPuntosSeleccion() const {
    CCoor3D<double> gl;
    glBegin(GL_POINTS);
    if (m_pDEM->EsListaCeldas()) {
        for (const Vertiz::CPosicionEntidad& posicion : m_Seleccion)
            if (PuntoListaAGL(posicion.m_nEntidad, gl)) glVertex3d(gl.x, gl.y, gl.z);
    } else {
        const Marco marco = DameMarco();
        for (const CDEM::CPosicion& posicion : m_SeleccionCeldas) {
            const unsigned m = m_pDEM->GetFilas() - 1 - posicion.m_nFila;
            if (m_pDEM->EsValido(m, posicion.m_nColumna) &&
                MuestraAGL(marco, posicion.m_nFila, posicion.m_nColumna, gl))
                glVertex3d(gl.x, gl.y, gl.z);
        }
    }
    glEnd();
}
