// The grid in another reference system: a square lattice doesn't stay one, so a new one is laid over the terrain's new
// place and its heights are looked up in the old.

#include "model/CDEM.h"
#include "model/CDataHelmertNTV2.h"

#include <cmath>
#include <limits>
#include <utility>

namespace Vertiz {

namespace {

// Where the samples of the border come to lie, at a middle height.
CMaximas<double> NuevoSitio(const CDEM& dem, const CDataHelmertNTV2& data) {
    const CMaximas<double>& m = dem.GetMaximasTotalDouble();
    const double cota = 0.5 * (m.Minima().z + m.Maxima().z);
    std::vector<CCoor3D<double>> borde;
    for (unsigned c = 0; c < dem.GetColumnas(); ++c)
        for (const double y : {m.Minima().y, m.Maxima().y})
            borde.emplace_back(dem.GetOeste() + c * dem.GetCeldaX(), y, cota, 0);
    for (unsigned f = 0; f < dem.GetFilas(); ++f)
        for (const double x : {m.Minima().x, m.Maxima().x})
            borde.emplace_back(x, dem.GetSur() + f * dem.GetCeldaY(), cota, 0);

    CMaximas<double> sitio;
    const std::vector<CCoor3D<double>> antes = borde;
    if (!data.Transforma(borde) && borde == antes) return sitio;  // the change can't be made at all
    for (const CCoor3D<double>& p : borde)
        sitio.Nuevo(p);
    return sitio;
}

// Samples that cover a length; 0 when they would be too many for one side of a matrix.
unsigned Muestras(double largo, double celda) {
    const double n = std::ceil(largo / celda) + 1.0;
    return n < double(std::numeric_limits<std::int32_t>::max()) ? unsigned(n) : 0;
}

}  // namespace

int CDEM::Transformacion(const CDataHelmertNTV2& data) {
    if (m_bListaCeldas || m_Maximas.EstanVacias(true)) return 0;
    const CMaximas<double> sitio = NuevoSitio(*this, data);
    if (sitio.EstanVacias(true)) return 0;
    const unsigned filas = Muestras(sitio.Maxima().y - sitio.Minima().y, m_dCeldaY);
    const unsigned columnas = Muestras(sitio.Maxima().x - sitio.Minima().x, m_dCeldaX);
    // A change of datum keeps sizes; what blows the grid up is a mistake in its parameters.
    const double antes = double(GetFilas()) * GetColumnas();
    if (filas == 0 || columnas == 0 || double(filas) * columnas > 4.0 * antes + 1000.0) return 0;

    CDEM nuevo(filas, columnas, m_dCeldaX, m_dCeldaY, sitio.Minima().x, sitio.Minima().y, m_Semilla);
    nuevo.m_dNulo = m_dNulo;
    nuevo.m_Matriz.Rellena(float(m_dNulo));
    const double cotaMedia = 0.5 * (m_Maximas.Minima().z + m_Maximas.Maxima().z);
    std::vector<CCoor3D<double>> lugares(columnas), viejos;
    for (unsigned f = 0; f < filas; ++f) {
        for (unsigned c = 0; c < columnas; ++c)
            lugares[c] = {nuevo.m_dOeste + c * m_dCeldaX, nuevo.m_dSur + f * m_dCeldaY, cotaMedia, 0};
        // Where a place was depends a little on its height, which the first round finds.
        for (int vuelta = 0; vuelta < 2; ++vuelta) {
            viejos = lugares;
            data.TransformaInversa(viejos);
            for (CCoor3D<double>& p : viejos)
                if (!p.EsFinito() || !Proyecta(p, nullptr, true)) p.x = std::numeric_limits<double>::quiet_NaN();
            data.Transforma(viejos);
            for (unsigned c = 0; c < columnas; ++c)
                if (viejos[c].EsFinito()) lugares[c].z = viejos[c].z;
        }
        for (unsigned c = 0; c < columnas; ++c)
            if (viejos[c].EsFinito()) nuevo.m_Matriz.Set(f, c, float(viejos[c].z));
    }
    nuevo.ActualizaCantidades();
    nuevo.m_Rupturas = m_Rupturas;
    if (nuevo.m_Maximas.EstanVacias(true) || (m_Rupturas.Cantidad() > 0 && nuevo.m_Rupturas.Transformacion(data) == 0))
        return 0;

    const bool bSuavizado = TieneVectores();
    m_Matriz = std::move(nuevo.m_Matriz);
    m_dOeste = nuevo.m_dOeste;
    m_dSur = nuevo.m_dSur;
    m_Maximas = nuevo.m_Maximas;
    m_nCeldas = nuevo.m_nCeldas;
    m_Rupturas = std::move(nuevo.m_Rupturas);
    if (bSuavizado) CalculaVectores();
    return 1;
}

}  // namespace Vertiz
