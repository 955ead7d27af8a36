// Single cells and samples of the grid: reading and writing them, and what picked ones are like.

#include "terrain/CEscenaDEM.h"

#include <algorithm>
#include <cmath>

using Vertiz::CCoor3D;
using Vertiz::CDEM;
using Vertiz::CMaximas;

namespace {

// The corners of a cell as DameCelda gives them, north-west, north-east, south-west, south-east: steps south and east
// of the first, and places in a cell of the list.
constexpr unsigned kSur[4] = {0, 0, 1, 1};
constexpr unsigned kEste[4] = {0, 1, 0, 1};
constexpr std::size_t kLugarLista[4] = {1, 2, 0, 3};

bool EsCota(double cota, double nulo) {
    return cota > nulo && std::isfinite(cota);
}

}  // namespace

// ---- The cell list, whose indices come from outside -----------------------------------------------------------------

// Null past the end, and for a point whose coordinates aren't there.
const CDEM::CPunto* CEscenaDEM::PuntoLista(std::size_t i) const {
    if (i >= m_pDEM->Puntos().size()) return nullptr;
    const CDEM::CPunto& punto = m_pDEM->Puntos()[i];
    return punto.m_nX < m_pDEM->ListaX().size() && punto.m_nY < m_pDEM->ListaY().size() ? &punto : nullptr;
}

// @param puntos out: south-west, north-west, north-east, south-east
bool CEscenaDEM::CeldaLista(std::size_t i, std::array<const CDEM::CPunto*, 4>& puntos) const {
    if (i >= m_pDEM->Celdas().size()) return false;
    std::ranges::transform(m_pDEM->Celdas()[i].m_nPuntos, puntos.begin(), [&](auto p) { return PuntoLista(p); });
    return std::ranges::none_of(puntos, [](const CDEM::CPunto* p) { return p == nullptr; });
}

// ---- Cells ----------------------------------------------------------------------------------------------------------

void CEscenaDEM::DameCelda(unsigned fila, unsigned col, double& yS, double& yN, double& xE, double& xW, float* z,
                           float* nx, float* ny, float* nz) const {
    if (m_pDEM == nullptr) return;
    for (float* n : {nx, ny, nz})
        std::fill_n(n, 4, 0.0F);
    if (m_pDEM->EsListaCeldas()) {
        std::array<const CDEM::CPunto*, 4> p{};
        if (!CeldaLista(fila, p)) return;
        for (std::size_t i = 0; i < 4; ++i)
            z[i] = p[kLugarLista[i]]->m_fCota;
        if (!std::all_of(z, z + 4, [&](float h) { return EsCota(h, m_pDEM->GetNulo()); })) return;
        yS = m_pDEM->ListaY()[p[0]->m_nY];
        yN = m_pDEM->ListaY()[p[1]->m_nY];
        xW = m_pDEM->ListaX()[p[0]->m_nX];
        xE = m_pDEM->ListaX()[p[3]->m_nX];
        if (!m_pDEM->HaySuavizado()) return;
        for (std::size_t i = 0; i < 4; ++i) {
            const CDEM::CPunto& punto = *p[kLugarLista[i]];
            nx[i] = punto.m_fVectorX, ny[i] = punto.m_fVectorY, nz[i] = punto.m_fVectorZ;
        }
        return;
    }
    const unsigned m = m_pDEM->GetFilas() - fila - 1;
    if (!EsCota(m_pDEM->Matriz().Get(m, col), m_pDEM->GetNulo())) return;
    const Vertiz::CDataSemilla& semilla = m_pDEM->GetSemilla();
    xW = col * m_pDEM->GetCeldaX() + m_pDEM->GetOeste() - semilla.GetX();
    xE = (col + 1.0) * m_pDEM->GetCeldaX() + m_pDEM->GetOeste() - semilla.GetX();
    yN = m * m_pDEM->GetCeldaY() + m_pDEM->GetSur() - semilla.GetY();
    yS = (m - 1.0) * m_pDEM->GetCeldaY() + m_pDEM->GetSur() - semilla.GetY();
    for (std::size_t i = 0; i < 4; ++i) {
        const unsigned f = m - kSur[i], c = col + kEste[i];
        z[i] = static_cast<float>(m_pDEM->Matriz().Get(f, c) - semilla.GetZ());
        if (!m_pDEM->HaySuavizado()) continue;
        nx[i] = m_pDEM->VectorX().Get(f, c);
        ny[i] = m_pDEM->VectorY().Get(f, c);
        nz[i] = m_pDEM->VectorZ().Get(f, c);
    }
}

void CEscenaDEM::ModificaCelda(unsigned fila, unsigned col, const float* z, const float* nx, const float* ny,
                               const float* nz) {
    if (m_pDEM == nullptr) return;
    if (m_pDEM->EsListaCeldas() && fila >= m_pDEM->Celdas().size()) return;
    const bool suave = m_pDEM->HaySuavizado();  // without it there may be no vectors to read
    for (std::size_t i = 0; i < 4; ++i) {
        const CCoor3D<double> n = suave ? CCoor3D<double>(nx[i], ny[i], nz[i], 0) : CCoor3D<double>();
        if (m_pDEM->EsListaCeldas())
            ModificaPunto(m_pDEM->Celdas()[fila].m_nPuntos[kLugarLista[i]], 0, z[i], n);
        else
            ModificaPunto(fila + kSur[i], col + kEste[i], z[i], n);
    }
}

// ---- Samples --------------------------------------------------------------------------------------------------------

void CEscenaDEM::DamePunto(unsigned fila, unsigned col, CCoor3D<double>& p, CCoor3D<double>& n) const {
    if (m_pDEM == nullptr) return;
    const bool suave = m_pDEM->HaySuavizado();
    if (m_pDEM->EsListaCeldas()) {
        const CDEM::CPunto* punto = PuntoLista(fila);
        if (punto == nullptr) return;
        p = {m_pDEM->ListaX()[punto->m_nX], m_pDEM->ListaY()[punto->m_nY], punto->m_fCota, 0};
        if (suave) n = {punto->m_fVectorX, punto->m_fVectorY, punto->m_fVectorZ, 0};
        return;
    }
    const unsigned m = m_pDEM->GetFilas() - fila - 1;
    const Vertiz::CDataSemilla& semilla = m_pDEM->GetSemilla();
    p = {col * m_pDEM->GetCeldaX() + m_pDEM->GetOeste() - semilla.GetX(),
         m * m_pDEM->GetCeldaY() + m_pDEM->GetSur() - semilla.GetY(), m_pDEM->Matriz().Get(m, col) - semilla.GetZ(), 0};
    if (suave) n = {m_pDEM->VectorX().Get(m, col), m_pDEM->VectorY().Get(m, col), m_pDEM->VectorZ().Get(m, col), 0};
}

void CEscenaDEM::ModificaPunto(unsigned fila, unsigned col, float z, const CCoor3D<double>& n) {
    if (m_pDEM == nullptr) return;
    const auto x = static_cast<float>(n.x), y = static_cast<float>(n.y), v = static_cast<float>(n.z);
    const bool suave = m_pDEM->HaySuavizado();
    if (m_pDEM->EsListaCeldas()) {
        if (fila >= m_pDEM->Puntos().size()) return;
        CDEM::CPunto& punto = m_pDEM->Puntos()[fila];
        punto.m_fCota = z;
        if (suave) punto.m_fVectorX = x, punto.m_fVectorY = y, punto.m_fVectorZ = v;
        return;
    }
    const unsigned m = m_pDEM->GetFilas() - fila - 1;
    m_pDEM->Matriz().Set(m, col, z);
    if (!suave) return;
    m_pDEM->VectorX().Set(m, col, x);
    m_pDEM->VectorY().Set(m, col, y);
    m_pDEM->VectorZ().Set(m, col, v);
}

// ---- What is picked -------------------------------------------------------------------------------------------------

bool CEscenaDEM::DamePuntoSeleccion2(CCoor3D<double>& c, int i) {
    if (m_pDEM == nullptr) return false;
    const auto lugar = static_cast<std::size_t>(i);  // a negative one is past the end too
    if (lugar >= SeleccionPropia()) return false;
    CCoor3D<double> n;
    if (m_pDEM->EsListaCeldas())
        DamePunto(static_cast<unsigned>(m_Seleccion[lugar].m_nEntidad), 0, c, n);
    else
        DamePunto(m_SeleccionCeldas[lugar].m_nFila, m_SeleccionCeldas[lugar].m_nColumna, c, n);
    return true;
}

int CEscenaDEM::GetMaximasSeleccion(CMaximas<double>& m) const {
    if (m_pDEM == nullptr || m_pDEM->DameCeldas() == 0) return 0;
    m_pDEM->EsListaCeldas() ? SumaLista(m) : SumaMatriz(m);
    return 1;
}

void CEscenaDEM::SumaMatriz(CMaximas<double>& m) const {
    const unsigned lado = GetTipoSeleccion() == 1 ? 2 : 1;  // samples of what is picked, each way
    for (const CDEM::CPosicion& posicion : m_SeleccionCeldas) {
        for (unsigned i = 0; i < lado * lado; ++i) {
            const unsigned fila = posicion.m_nFila + i / lado, columna = posicion.m_nColumna + i % lado;
            if (!m_pDEM->EsValido(m_pDEM->GetFilas() - 1 - fila, columna)) continue;
            CCoor3D<double> p, n;
            DamePunto(fila, columna, p, n);
            m.Nuevo(p);
        }
    }
}

void CEscenaDEM::SumaLista(CMaximas<double>& m) const {
    const auto suma = [&](std::uint32_t i) {
        CCoor3D<double> p, n;
        DamePunto(i, 0, p, n);
        m.Nuevo(p);
    };
    const auto valido = [&](std::uint32_t i) { return PuntoLista(i) != nullptr && m_pDEM->EsValido(i, 0); };
    for (const Vertiz::CPosicionEntidad& posicion : m_Seleccion) {
        const auto i = static_cast<std::uint32_t>(posicion.m_nEntidad);
        if (GetTipoSeleccion() != 1) {
            if (valido(i)) suma(i);
        } else if (i < m_pDEM->Celdas().size() && std::ranges::all_of(m_pDEM->Celdas()[i].m_nPuntos, valido)) {
            std::ranges::for_each(m_pDEM->Celdas()[i].m_nPuntos, suma);
        }
    }
}
