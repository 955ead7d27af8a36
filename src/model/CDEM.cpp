// The grid's life, its extents, and which of its samples and cells are valid. Surface, ray, outline and the change of
// reference system have files of their own.

#include "model/CDEM.h"

#include "model/CIndiceCeldas.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Vertiz {

namespace {

bool EsTamano(double v) {
    return std::isfinite(v) && v > 0.0;
}

// Least and greatest of what it is shown.
struct Intervalo {
    double m_dMenor = std::numeric_limits<double>::infinity(), m_dMayor = -std::numeric_limits<double>::infinity();

    void Nuevo(double v) {
        m_dMenor = std::min(m_dMenor, v);
        m_dMayor = std::max(m_dMayor, v);
    }
    bool EstaVacio() const { return m_dMenor > m_dMayor; }
};

CMaximas<double> Caja(const Intervalo& x, const Intervalo& y, const Intervalo& z) {
    CMaximas<double> caja;
    if (x.EstaVacio() || y.EstaVacio() || z.EstaVacio()) return caja;
    caja.Nuevo(CCoor3D<double>(x.m_dMenor, y.m_dMenor, z.m_dMenor, 0));
    caja.Nuevo(CCoor3D<double>(x.m_dMayor, y.m_dMayor, z.m_dMayor, 0));
    return caja;
}

}  // namespace

CDEM::CDEM() {
    Clear();
}

CDEM::CDEM(unsigned filas, unsigned columnas, double celdaX, double celdaY, double oeste, double sur,
           const CDataSemilla& semilla)
    : m_Matriz(filas, columnas, 0), m_dOeste(oeste), m_dSur(sur), m_Semilla(semilla), m_Rupturas(semilla) {
    SetCelda(celdaX, celdaY);
    m_VectorX.Redimensiona();
    m_VectorY.Redimensiona();
    m_VectorZ.Redimensiona();
    m_Matriz.Rellena(float(m_dNulo));
}

bool CDEM::SetCelda(double celdaX, double celdaY) {
    if (!EsTamano(celdaX) || !EsTamano(celdaY)) return false;
    m_dCeldaX = celdaX;
    m_dCeldaY = celdaY;
    return true;
}

void CDEM::SetOrigen(double oeste, double sur) {
    m_dOeste = oeste;
    m_dSur = sur;
}

void CDEM::Clear() {
    for (CMatriz<float>* matriz : {&m_Matriz, &m_VectorX, &m_VectorY, &m_VectorZ})
        matriz->Redimensiona();
    m_Puntos.clear();
    m_ListaX.clear();
    m_ListaY.clear();
    m_Celdas.clear();
    m_pIndice.reset();
    m_Rupturas.Clear();
    m_Maximas.Borra();
    m_nCeldas = 0;
}

CMaximas<double> CDEM::GetMaximasDouble() const {
    CMaximas<double> locales = m_Maximas;
    locales -= CCoor3D<double>(m_Semilla.GetX(), m_Semilla.GetY(), m_Semilla.GetZ(), 0);
    return locales;
}

void CDEM::SetMaximasDouble(const CMaximas<double>& maximas) {
    m_Maximas = maximas;
    m_Maximas -= CCoor3D<double>(-m_Semilla.GetX(), -m_Semilla.GetY(), -m_Semilla.GetZ(), 0);
}

void CDEM::ActualizaCantidades() {
    m_nCeldas = 0;
    m_pIndice.reset();
    if (m_bListaCeldas)
        CuentaLista();
    else
        CuentaMatriz();
}

void CDEM::CuentaMatriz() {
    const unsigned filas = GetFilas(), columnas = GetColumnas();
    Intervalo x, y, z;
    std::vector<char> anterior(columnas, 0), valida(columnas, 0);
    for (unsigned f = 0; f < filas; ++f) {
        for (unsigned c = 0; c < columnas; ++c) {
            const float cota = m_Matriz.Get(f, c);
            valida[c] = EsCota(cota);
            if (valida[c]) z.Nuevo(cota);
            if (c > 0 && valida[c] && valida[c - 1] && anterior[c] && anterior[c - 1]) ++m_nCeldas;
        }
        anterior.swap(valida);
    }
    if (filas > 0) {
        x.Nuevo(m_dOeste), x.Nuevo(m_dOeste + (columnas - 1) * m_dCeldaX);
        y.Nuevo(m_dSur), y.Nuevo(m_dSur + (filas - 1) * m_dCeldaY);
    }
    m_Maximas = Caja(x, y, z);
}

void CDEM::CuentaLista() {
    Intervalo x, y, z;
    for (const CPunto& p : m_Puntos) {
        if (p.m_nX >= m_ListaX.size() || p.m_nY >= m_ListaY.size()) continue;
        x.Nuevo(m_ListaX[p.m_nX]);
        y.Nuevo(m_ListaY[p.m_nY]);
        if (EsCota(p.m_fCota)) z.Nuevo(p.m_fCota);
    }
    m_Maximas = Caja(x, y, z);

    // Cells with a void aren't to be found, so they have no place in the index.
    std::vector<RectanguloCelda> rectangulos(m_Celdas.size());
    for (unsigned i = 0; i < m_Celdas.size(); ++i)
        if (EsCeldaValida(i, 0, 1) && DameRectangulo(i, rectangulos[i])) ++m_nCeldas;
    m_pIndice = std::make_shared<const CIndiceCeldas>(rectangulos);
}

bool CDEM::EsCota(float cota) const {
    return std::isfinite(cota) && double(cota) > m_dNulo;
}

bool CDEM::EsValido(unsigned fila, unsigned columna) const {
    if (m_bListaCeldas) return fila < m_Puntos.size() && EsCota(m_Puntos[fila].m_fCota);
    return fila < GetFilas() && columna < GetColumnas() && EsCota(m_Matriz.Get(fila, columna));
}

bool CDEM::EsCeldaValida(unsigned fila, unsigned columna, unsigned paso) const {
    if (m_bListaCeldas) {
        return fila < m_Celdas.size() &&
               std::ranges::all_of(m_Celdas[fila].m_nPuntos, [this](std::uint32_t p) { return EsValido(p, 0); });
    }
    const std::uint64_t norte = std::uint64_t(fila) + paso, este = std::uint64_t(columna) + paso;
    if (norte >= GetFilas() || este >= GetColumnas()) return false;
    return EsValido(fila, columna) && EsValido(fila, unsigned(este)) && EsValido(unsigned(norte), columna) &&
           EsValido(unsigned(norte), unsigned(este));
}

// The place of a cell of the list. False, with the rectangle as it was, for indices that lead nowhere, sides that
// aren't finite, and a cell without area.
bool CDEM::DameRectangulo(unsigned celda, RectanguloCelda& rectangulo) const {
    const auto& p = m_Celdas[celda].m_nPuntos;
    for (const std::uint32_t i : p)
        if (i >= m_Puntos.size() || m_Puntos[i].m_nX >= m_ListaX.size() || m_Puntos[i].m_nY >= m_ListaY.size())
            return false;
    const RectanguloCelda r{m_ListaX[m_Puntos[p[0]].m_nX], m_ListaY[m_Puntos[p[0]].m_nY], m_ListaX[m_Puntos[p[3]].m_nX],
                            m_ListaY[m_Puntos[p[1]].m_nY]};
    if (!EsTamano(r.m_dEste - r.m_dOeste) || !EsTamano(r.m_dNorte - r.m_dSur)) return false;
    rectangulo = r;
    return true;
}

bool CDEM::InsertaRuptura(const CLinea<int>& linea) {
    if (linea.NPuntos() < 2) return false;
    m_Rupturas.Semilla() = m_Semilla;  // which may have been set since the grid was made
    m_Rupturas.Inserta(linea);
    return true;
}

}  // namespace Vertiz
