// Grids from files, with what their readers tell.

#include "Terreno.h"

#include "terrain/CEscenaDEM.h"
#include "platform/Conversiones.h"
#include "platform/Numeros.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

using Punto = Vertiz::CCoor3D<double>;
using Caja = Vertiz::CMaximas<double>;

namespace {

// A value that may stand for "no height": the user is asked, and told what it was taken for.
std::string Pregunta(const Vertiz::CMarcaDEM& marca) {
    const std::string valor = TextoGeneral(marca.m_dValor, 9);
    return "warning: " + std::to_string(marca.m_nMuestras) + " samples hold " + valor +
           ", far from all others, which the file doesn't declare as void; taken as " +
           (marca.m_bVacia ? "void" : "height") + ": say --nodata " + valor + " if it means no height";
}

}  // namespace

Vertiz::CResultadoDEM LeeTerreno(const std::string& ruta, const OpcionesTerreno& opciones, const CString& wkt,
                                 Progreso& progreso, const Aviso& avisa) {
    Vertiz::CDataLeeDEM lectura;
    lectura.m_Nulo = opciones.nulo;
    lectura.m_bConservaGrados = opciones.grados;
    lectura.m_WKT = wkt;
    Vertiz::CResultadoDEM leido = LeeDEM(CString(DeUtf8(ruta)), lectura, &progreso);
    progreso.Termina(1, 0);
    if (leido.m_nResultado != 1) throw std::runtime_error(AUtf8(leido.m_Error.Texto()));
    for (const CString& texto : leido.m_Mensajes)
        avisa(ruta + ": " + AUtf8(texto.Texto()));
    for (const CString& texto : leido.m_Avisos)
        avisa(ruta + ": warning: " + AUtf8(texto.Texto()));
    for (const Vertiz::CMarcaDEM& marca : leido.m_Marcas)
        avisa(ruta + ": " + Pregunta(marca));
    return leido;
}

void CompruebaCeldas(const Vertiz::CDEM& dem, const std::string& ruta) {
    if (dem.DameCeldas() == 0)
        throw std::runtime_error(ruta + ": no cell has heights at its four corners, so there is no surface");
}

void CompruebaPaso(const Vertiz::CDEM& dem, int paso) {
    if (static_cast<unsigned>(paso) < std::min(dem.GetFilas(), dem.GetColumnas())) return;
    throw std::runtime_error("one sample in " + std::to_string(paso) + " leaves no cell of a grid of " +
                             std::to_string(dem.GetColumnas()) + " x " + std::to_string(dem.GetFilas()) +
                             " samples; ask for a smaller --step");
}

Caja ExtensionConDatos(const Vertiz::CDEM& dem) {
    const unsigned filas = dem.GetFilas(), columnas = dem.GetColumnas();
    unsigned sur = filas, norte = 0, oeste = columnas, este = 0;
    for (unsigned i = 0; i < filas; ++i) {
        unsigned primera = 0, ultima = columnas;
        while (primera < columnas && !dem.EsValido(i, primera))
            ++primera;
        if (primera == columnas) continue;
        while (!dem.EsValido(i, ultima - 1))
            --ultima;
        sur = std::min(sur, i);
        norte = i;
        oeste = std::min(oeste, primera);
        este = std::max(este, ultima - 1);
    }
    const Caja todo = dem.GetMaximasDouble();
    if (sur == filas) return todo;
    const double x = todo.Minima().x, y = todo.Minima().y;
    Caja datos;
    datos.Nuevo(Punto(x + oeste * dem.GetCeldaX(), y + sur * dem.GetCeldaY(), todo.Minima().z, 0));
    datos.Nuevo(Punto(x + este * dem.GetCeldaX(), y + norte * dem.GetCeldaY(), todo.Maxima().z, 0));
    return datos;
}

std::unique_ptr<CGL> ModeloTerreno::HazEscena() {
    return std::make_unique<CEscenaDEM>(m_pDEM.get());
}

Caja ModeloTerreno::Extension(const OpcionesVista& opciones) const {
    CompruebaPaso(*m_pDEM, opciones.paso);
    return opciones.limites ? m_pDEM->GetMaximasDouble() : ExtensionConDatos(*m_pDEM);
}

std::unique_ptr<Modelo> ModeloTerreno::Lee(const std::string& ruta, const Marco& marco, Progreso& progreso,
                                           const Aviso& avisa) {
    Vertiz::CResultadoDEM leido = LeeTerreno(ruta, {marco.nulo, false}, marco.wkt, progreso, avisa);
    CompruebaCeldas(*leido.m_pDEM, ruta);
    if (marco.wkt.IsEmpty() && !leido.m_WKT.IsEmpty())
        avisa(ruta + ": the terrain gives no coordinate system; coordinates taken as they are");
    // Local coordinates are the frame's from here on; what the file holds is absolute.
    leido.m_pDEM->Semilla() = marco.semilla;
    return std::make_unique<ModeloTerreno>(std::move(leido.m_pDEM));
}
