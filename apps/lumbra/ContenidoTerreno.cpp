// The terrain's scene in a window: its frame, and what is under a pixel.

#include "ContenidoTerreno.h"

#include "Camara.h"
#include "Gestos.h"

#include <algorithm>
#include <cmath>

using Punto = Vertiz::CCoor3D<double>;

namespace {

// The main scene of a window is the one that HazEscena gave.
CEscenaDEM& Terreno(CGL& escena) {
    return static_cast<CEscenaDEM&>(escena);
}

}  // namespace

void ContenidoTerreno::Prepara(CGL& escena) {
    m_Montaje.Prepara(Terreno(escena));
}

void ContenidoTerreno::PonVista(CGL& escena) {
    PonCamara(escena, m_Vista.azimut, m_Vista.elevacion);
}

void ContenidoTerreno::Encuadra(CGL& escena, int ancho, int alto) {
    EncuadraVentana(Terreno(escena), m_Montaje.Extension(Terreno(escena)), ancho, alto);
}

bool ContenidoTerreno::Rehaz(CGL& escena) {
    escena.EstableceMaxMin(m_Montaje.Extension(Terreno(escena)));
    return escena.Iniciar() != 0;
}

int ContenidoTerreno::Decimales() const {
    return std::clamp(m_Montaje.Terreno().GetSemilla().GetDecimales(), 0, m_Montaje.EnGrados() ? 7 : 3);
}

std::optional<Senalado> ContenidoTerreno::Senala(CGL& escena, const CPoint& pt) {
    escena.Deselecciona(1, 1, 0);
    Punto gl, local;
    if (!HallaBajo(escena, pt, gl, nullptr)) return {};
    escena.GLATerreno(local, gl.x, gl.y, gl.z, 1.0);
    // A click is read from the depth buffer; where it lies on the surface, the surface knows its height better.
    Punto suelo = local;
    const double holgura = 0.002 / escena.GetFactor();
    if (escena.Proyecta(suelo) && std::abs(suelo.z - local.z) < holgura) local.z = suelo.z;

    const Vertiz::CDataSemilla& semilla = m_Montaje.Terreno().GetSemilla();
    const Punto absoluto(local.x + semilla.GetX(), local.y + semilla.GetY(), local.z + semilla.GetZ(), 0);
    Senalado s{TextoPunto(absoluto, Decimales()), ""};
    if (const auto celda = Celda(Terreno(escena), pt, local))
        s.detalle = "row " + std::to_string(celda->m_nFila) + " column " + std::to_string(celda->m_nColumna);
    return s;
}

// The cell of the grid that holds a point. Selections walk through all cells that are seen at a pixel, from the north,
// hidden ones too: the walk goes on until it comes to the one that the user sees.
std::optional<Vertiz::CDEM::CPosicion> ContenidoTerreno::Celda(CEscenaDEM& escena, const CPoint& pt,
                                                               const Punto& local) const {
    constexpr unsigned kCeldas = 2;
    constexpr int kVueltas = 64;
    const Vertiz::CDEM& dem = m_Montaje.Terreno();
    const Vertiz::CMaximas<double> m = dem.GetMaximasDouble();
    const double columna = (local.x - m.Minima().x) / dem.GetCeldaX(),
                 fila = (m.Maxima().y - local.y) / dem.GetCeldaY();
    for (int vuelta = 0; vuelta < kVueltas; ++vuelta) {
        if (escena.OnSeleccion(pt.x, pt.y, vuelta == 0, kCeldas, 0, 0, 0, 0, 0, 0, 0) == 0) break;
        const auto celdas = escena.GetSeleccionCeldas();
        if (celdas.empty()) break;
        constexpr double kHolgura = 0.05;  // of a cell: both are found by pixels
        const double df = fila - celdas.front().m_nFila, dc = columna - celdas.front().m_nColumna;
        if (df <= -kHolgura || df >= 1.0 + kHolgura || dc <= -kHolgura || dc >= 1.0 + kHolgura) continue;
        // A cell with a void corner is a hole: what is seen there are the walls or the floor.
        const auto [r, c] = celdas.front();
        if (dem.EsCeldaValida(dem.GetFilas() - 2 - r, c, 1)) return celdas.front();
    }
    escena.Deselecciona(0, 0, 0);
    return {};
}
