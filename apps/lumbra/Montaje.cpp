// The order in which a scene is put together.

#include "Montaje.h"

#include "Camara.h"
#include "Cubierta.h"
#include "platform/Conversiones.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <utility>

using Punto = Vertiz::CCoor3D<double>;
using Caja = Vertiz::CMaximas<double>;

namespace {

// The longer side in plan.
double Ancho(const Caja& m) {
    return std::max(m.Maxima().x - m.Minima().x, m.Maxima().y - m.Minima().y);
}

// The smallest pixel of an image over a grid that a picture can show, terrain units: half of one that is drawn, when
// the grid fills the picture.
double PixelMinimo(const Vertiz::CDEM& dem, const Lienzo& lienzo) {
    return Ancho(dem.GetMaximasDouble()) / (2.0 * Muestreo(lienzo) * std::max(lienzo.ancho, lienzo.alto));
}

// What the scene is built on: the grid's extents, with some thickness under the lowest height, so that the floor
// doesn't lie in the same plane as a sea or a lake.
Caja ConPeana(const Caja& m, double exageracion) {
    constexpr double kGrosor = 0.025;
    Caja conPeana = m;
    Punto bajo = m.Minima();
    bajo.z -= kGrosor * Ancho(m) / exageracion;
    conPeana.Nuevo(bajo);
    return conPeana;
}

// Hands what stands on the terrain over to its scene. Buildings are borrowed.
void Puebla(CEscenaDEM& escena, const Escenario& escenario) {
    CDataGL data = escena.GetData();
    data.m_bImagenFondo = escenario.cielo != nullptr ? 1 : 0;
    if (escenario.cielo != nullptr) data.m_SzImagenFondo = CString(DeUtf8(escenario.cielo->Ruta()));
    escena.SetData(data);
    escena.RecargarEdificios(&escenario.edificios);
    for (const auto& [altura, pies] : escenario.arboles)
        escena.CargarArboles(pies, altura, escenario.coniferas ? 0 : 1, 1, nullptr);
}

// Styles of the lines on a terrain: breaklines of any code, and the limits as they are without a table.
Vertiz::CDigiTab Estilos(int muestreo) {
    const auto linea = [](const wchar_t* codigo, BYTE r, BYTE g, BYTE b, float grosor) {
        return Vertiz::CElementoDigiTab(Vertiz::CTipoEntidad::Linea, codigo, r, g, b, grosor, 0, CString(), 1);
    };
    Vertiz::CDigiTab tabla;
    tabla.Inserta(linea(L"*", 176, 32, 24, 1.5F * static_cast<float>(muestreo)), true);
    tabla.Inserta(linea(L"LIMITE", 70, 70, 70, 1.0F), true);
    return tabla;
}

// How far two boxes lie apart in plan.
double Hueco(const Caja& a, const Caja& b) {
    const auto lado = [](double minA, double maxA, double minB, double maxB) {
        return std::max({minB - maxA, minA - maxB, 0.0});
    };
    return std::max(lado(a.Minima().x, a.Maxima().x, b.Minima().x, b.Maxima().x),
                    lado(a.Minima().y, a.Maxima().y, b.Minima().y, b.Maxima().y));
}

}  // namespace

const char* OpcionesMontaje::DelTerreno() const {
    if (const char* opcion = escenario.Primera()) return opcion;
    if (!composicion.referencias.empty()) return "--reference";
    return composicion.vinculos.empty() ? nullptr : "--link";
}

Montaje::Montaje(const OpcionesMontaje& opciones, Progreso& progreso, const Aviso& avisa)
    : m_Vista(opciones.vista),
      m_Lectura(opciones.terreno),
      m_Leido(LeeTerreno(opciones.fichero, opciones.terreno, CString(), progreso, avisa)),
      m_Estilos(Estilos(Muestreo(opciones.vista.lienzo))) {
    const Vertiz::CDEM& dem = *m_Leido.m_pDEM;
    CompruebaCeldas(dem, opciones.fichero);
    CompruebaPaso(dem, m_Vista.paso);
    m_Escenario = LeeEscenario(opciones.escenario, m_Leido, PixelMinimo(dem, m_Vista.lienzo), progreso, avisa);
    m_Terreno = m_Vista.limites ? dem.GetMaximasDouble() : ExtensionConDatos(dem);
    LeeAcompanantes(opciones.composicion.referencias, true, progreso, avisa);
    LeeAcompanantes(opciones.composicion.vinculos, false, progreso, avisa);
    progreso.Termina(1, 0);

    Caja todo = m_Terreno;
    for (const Acompanante& a : m_Acompanantes)
        todo.Nuevo(a.extension);
    m_dExageracion = m_Vista.exageracion;
    // Houses and trees keep their proportions.
    if (m_dExageracion == 0.0) m_dExageracion = m_Escenario.maximas.EstanVacias(true) ? ExageracionNatural(todo) : 1.0;
    m_Terreno.Nuevo(m_Escenario.maximas);
}

void Montaje::LeeAcompanantes(const std::vector<std::string>& rutas, bool bReferencia, Progreso& progreso,
                              const Aviso& avisa) {
    constexpr double kLejos = 10.0;
    const Marco marco = {m_Leido.m_WKT, m_Leido.m_pDEM->GetSemilla(), m_Lectura.nulo};
    for (const std::string& ruta : rutas) {
        std::unique_ptr<Modelo> modelo = LeeModelo(ruta, marco, progreso, avisa);
        const Caja extension = modelo->Extension(m_Vista);
        if (Hueco(m_Terreno, extension) > kLejos * std::max(Ancho(m_Terreno), Ancho(extension)))
            avisa(ruta +
                  ": warning: it lies so far from the terrain that both look like dots; are they in the same "
                  "coordinates?");
        m_Acompanantes.push_back({ruta, std::move(modelo), extension, bReferencia});
    }
}

std::unique_ptr<CEscenaDEM> Montaje::HazEscena() {
    auto escena = std::make_unique<CEscenaDEM>(m_Leido.m_pDEM.get());
    Caja todo = m_Terreno;
    for (const Acompanante& a : m_Acompanantes)
        todo.Nuevo(a.extension);
    Ajusta(*escena, m_Vista, todo);
    Puebla(*escena, m_Escenario);
    escena->SetDigiTab(&m_Estilos);
    escena->SetExageracionVertical(static_cast<float>(m_dExageracion));
    return escena;
}

void Montaje::Prepara(CEscenaDEM& escena) {
    for (const Acompanante& a : m_Acompanantes) {
        std::unique_ptr<CGL> otra = a.modelo->HazEscena();
        otra->SetNombre(CString(DeUtf8(std::filesystem::path(a.ruta).filename().string())));
        if (a.bReferencia)
            escena.ReferenciaNuevo(otra.release());
        else
            escena.VinculoNuevo(otra.release());
    }
    PonCamara(escena, m_Vista.azimut, m_Vista.elevacion);
    // The first fit fixes the space of the model; the view is fitted once there is a projection.
    escena.ZoomExtension(Extension(escena));
    Cubre(escena, m_Escenario.imagen);
}

// As a scene counts its own extents: links with its model, references while they are shown.
Caja Montaje::Extension(const CEscenaDEM& escena) const {
    Caja todo;
    if (escena.GetData().m_bMaximasObjeto != 0) todo.Nuevo(m_Terreno);
    for (const Acompanante& a : m_Acompanantes)
        if (a.bReferencia ? escena.GetReferencia() != 0 : escena.GetData().m_bMaximasObjeto != 0)
            todo.Nuevo(a.extension);
    return escena.GetBase() != 0 ? ConPeana(todo, escena.GetExageracionVertical()) : todo;
}
