// From a picture of a sphere to a view: its pixels as OpenGL takes them, its place in the sphere, and the drawing.

#include "Panorama.h"

#include "Camara.h"
#include "Convierte.h"
#include "platform/DiagnosticoGL.h"
#include "platform/Tipos.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <vector>

namespace {

// The picture in a full turn, the rest of it in the background's colour, and no larger than OpenGL takes.
std::unique_ptr<Vertiz::CTiff> EnUnaVuelta(const Foto& foto, const Cobertura& cobertura, int ladoMaximo,
                                           int colorFondo) {
    const double ancho = foto.Ancho() / cobertura.ancho;
    const double factor = std::min({1.0, ladoMaximo / ancho, static_cast<double>(ladoMaximo) / foto.Alto()});
    const int columnas = std::max(1, static_cast<int>(ancho * factor));
    const int primera = std::min(columnas - 1, static_cast<int>(std::lround(cobertura.izquierda * columnas)));
    // Fitted in by its width: its own height is no bound.
    const Imagen imagen = ImagenDeFoto(foto, std::max(1, static_cast<int>(foto.Ancho() * factor)), foto.Alto());
    auto entera = std::make_unique<Vertiz::CTiff>();
    if (!entera->Crear(columnas, imagen.alto, 24, 72.0F, false, nullptr, nullptr, false))
        throw std::runtime_error("there is no room for the panorama's pixels");
    const auto fondo = static_cast<COLORREF>(colorFondo);
    std::vector<BYTE> fila(3 * static_cast<std::size_t>(columnas));
    for (int i = 0; i < imagen.alto; ++i) {
        for (std::size_t c = 0; c < fila.size(); c += 3) {
            fila[c] = GetBValue(fondo);
            fila[c + 1] = GetGValue(fondo);
            fila[c + 2] = GetRValue(fondo);
        }
        const std::uint8_t* rgb = imagen.rgb.data() + 3 * static_cast<std::size_t>(i) * imagen.ancho;
        for (std::ptrdiff_t c = 0; c < std::min(imagen.ancho, columnas - primera); ++c)
            std::reverse_copy(rgb + 3 * c, rgb + 3 * c + 3, fila.begin() + 3 * (primera + c));
        entera->SetFila(fila.data(), imagen.alto - 1 - i, 0, columnas);
    }
    return entera;
}

}  // namespace

Panorama::Panorama(const Foto& foto, const std::string& ruta, const OpcionesPanorama& opciones, int colorFondo)
    : m_Cobertura(LeeCobertura(ruta, foto.Ancho(), foto.Alto())),
      m_pRaster(&foto.Raster()),
      m_dCampo(opciones.campo),
      m_nColorFondo(colorFondo) {
    const CDiagnosticoGL gl = DiagnosticoGL();
    if (m_Cobertura.ancho < 1.0 || (gl.m_bHay && std::max(foto.Ancho(), foto.Alto()) > gl.m_nMaxTextura)) {
        m_pEntera = EnUnaVuelta(foto, m_Cobertura, gl.m_nMaxTextura, colorFondo);
        m_pRaster = m_pEntera.get();
    }
    m_nAncho = static_cast<int>(std::lround(m_pRaster->Ancho() * m_Cobertura.ancho));
    m_nAlto = m_pRaster->Alto100() / m_pRaster->Factor100();
    const double medio =
        m_Cobertura.rumbo.value_or(0.0) + 360.0 * (m_Cobertura.izquierda + m_Cobertura.ancho / 2.0 - 0.5);
    m_Mirada = opciones.mirada.value_or(OpcionesPanorama::Mirada{medio, 0.0});
}

std::unique_ptr<CEscenaImagen360> Panorama::HazEscena() const {
    auto escena = std::make_unique<CEscenaImagen360>(CEscenaImagen360(), m_pRaster, Vertiz::CDataImagen(), 0);
    Vertiz::CGeoImagen& imagen = *escena->GetImagen();
    imagen.m_bDirecta = true;
    imagen.m_Correcciones[2] = 180.0 - m_Cobertura.rumbo.value_or(0.0);
    imagen.m_dPolarInicio = 180.0 * m_Cobertura.abajo;
    imagen.m_dPolarFin = 180.0 * (m_Cobertura.abajo + m_Cobertura.alto);
    CDataGL data = escena->GetData();
    data.m_nColorFondo = m_nColorFondo;
    data.m_nEjes = 0;
    escena->SetData(data);
    escena->SetAnguloVista(static_cast<float>(m_dCampo));
    return escena;
}

void Panorama::PonMirada(CGL& escena) const {
    escena.GetCamara().PositionCamera({0, 0, 0, 0}, Direccion(m_Mirada.azimut, m_Mirada.elevacion),
                                      Arriba(m_Mirada.azimut, m_Mirada.elevacion));
}

Imagen DibujaPanorama(const Panorama& panorama, const Lienzo& lienzo) {
    Cuadro cuadro(lienzo);
    const std::unique_ptr<CEscenaImagen360> escena = panorama.HazEscena();
    cuadro.Crea(*escena);
    panorama.PonMirada(*escena);
    escena->OnZoomExtension();
    if (!escena->Iniciar()) FallaGL("can't build the panorama");
    cuadro.Ajusta(*escena);
    escena->OnZoomExtension();
    return cuadro.Dibuja(*escena);
}
