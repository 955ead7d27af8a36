// What stands round a window.

#include "Ventana.h"

#include "Ajustes.h"
#include "Visor.h"
#include "platform/CursorTeclas.h"
#include "platform/DiagnosticoGL.h"

#include <cstdio>
#include <stdexcept>

namespace {

// A user can only point where there is a display.
bool HayPantalla() {
    POINT puntero;
    return GetCursorPos(&puntero) != FALSE;
}

}  // namespace

void CompruebaPantalla() {
    const CDiagnosticoGL gl = DiagnosticoGL();
    if (gl.m_bVentanas) return;
    // The first way is the one that opens windows.
    const std::string motivo = gl.m_Vias.empty() ? "" : ": " + gl.m_Vias.front().m_Motivo;
    throw std::runtime_error("view needs a display" + motivo);
}

void Muestra(Contenido& contenido, const OpcionesMontaje& opciones) {
    Visor visor(contenido, {opciones.fichero, opciones.vista.lienzo.ancho, opciones.vista.lienzo.alto});
    visor.Abre();
    Visor::Atiende(visor);
    const bool bElegida = opciones.vista.exageracion > 0.0 || visor.ExageracionElegida();
    if (!contenido.EsPanorama() && !GuardaAjustes(visor.Escena(), visor.Ancho(), visor.Alto(),
                                                  bElegida ? visor.Escena().GetExageracionVertical() : 0.0))
        std::fprintf(stderr, "the settings of the window can't be saved\n");
    if (!HayPantalla()) throw std::runtime_error("the display went away");
}
