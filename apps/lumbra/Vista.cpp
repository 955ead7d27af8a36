// The order of the drawing.

#include "Vista.h"

#include "Camara.h"

ResultadoVista DibujaMontaje(Montaje& montaje, const Lienzo& lienzo) {
    Cuadro cuadro(lienzo);
    const std::unique_ptr<CEscenaDEM> escena = montaje.HazEscena();
    cuadro.Crea(*escena);
    montaje.Prepara(*escena);
    if (!escena->Iniciar()) FallaGL("can't build the picture");
    montaje.Aligera();
    cuadro.Ajusta(*escena);
    const Vertiz::CMaximas<double> extension = montaje.Extension(*escena);
    escena->ZoomExtension(extension);
    Encuadra(*escena, extension, cuadro.Aspecto());
    ResultadoVista resultado;
    resultado.exageracion = montaje.Exageracion();
    resultado.pasoMalla = escena->GetPasoMalla();
    resultado.imagen = cuadro.Dibuja(*escena);
    return resultado;
}
