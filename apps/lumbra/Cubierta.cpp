// The picture over a terrain, with the surface's colours where it has none.

#include "Cubierta.h"

#include "Cuadro.h"
#include "Salida.h"
#include "platform/Conversiones.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace {

using Punto = Vertiz::CCoor3D<double>;

// The colour that the surface has at a height, red first, before light falls on it.
class ColorSuperficie {
  public:
    ColorSuperficie(const CDataGL& data, unsigned modo) : m_Data(data), m_nModo(modo) {}

    std::array<BYTE, 3> operator()(double altura) const {
        if (m_nModo == 2) return EnRampa(altura);
        int color = m_Data.m_nColorDEM;
        if (m_nModo == 6) color = altura > 0.0 ? m_Data.m_nColorTerraplen : m_Data.m_nColorDesmonte;
        return {BYTE(color), BYTE(color >> 8), BYTE(color >> 16)};
    }

  private:
    std::array<BYTE, 3> EnRampa(double altura) const {
        const std::vector<Vertiz::CColorCota>& paradas = m_Data.m_GamaColor.Paradas();
        const auto alta = std::ranges::upper_bound(paradas, altura, {}, &Vertiz::CColorCota::m_dCota);
        const Vertiz::CColorCota &b = alta == paradas.end() ? paradas.back() : *alta,
                                 &a = alta == paradas.begin() ? b : *(alta - 1);
        const double t =
            b.m_dCota > a.m_dCota ? std::clamp((altura - a.m_dCota) / (b.m_dCota - a.m_dCota), 0.0, 1.0) : 0.0;
        const auto mezcla = [t](BYTE desde, BYTE hasta) {
            return static_cast<BYTE>(std::lround(desde + (hasta - desde) * t));
        };
        return {mezcla(a.m_nRojo, b.m_nRojo), mezcla(a.m_nVerde, b.m_nVerde), mezcla(a.m_nAzul, b.m_nAzul)};
    }

    const CDataGL& m_Data;
    unsigned m_nModo;
};

// Where the image has no colour it takes that of the surface beneath, so that it has no edge of its own.
void RellenaHuecos(Vertiz::CResultadoImagen& imagen, const Vertiz::CDEM& dem, const ColorSuperficie& color) {
    Vertiz::IRaster& raster = *imagen.m_pRaster;
    const int ancho = raster.Ancho();
    const int alto = static_cast<int>(imagen.m_Cubiertos.size()) / ancho;
    const double pixel = imagen.m_Imagen.SizePixel(), sur = imagen.m_Imagen.m_dYNorte - alto * pixel;
    for (int f = 0; f < alto; ++f)
        for (int c = 0; c < ancho; ++c) {
            if (imagen.m_Cubiertos[static_cast<std::size_t>(f) * ancho + c] != 0) continue;
            Punto p(imagen.m_Imagen.m_dXOeste + (c + 0.5) * pixel, sur + (f + 0.5) * pixel, 0, 0);
            if (!dem.Proyecta(p, nullptr, true)) continue;
            const std::array<BYTE, 3> rgb = color(p.z);
            const BYTE bgr[] = {rgb[2], rgb[1], rgb[0]};
            raster.SetPixel(f, c, bgr);
        }
}

}  // namespace

void Cubre(CEscenaDEM& escena, Vertiz::CResultadoImagen& imagen) {
    if (imagen.m_pRaster == nullptr) return;
    const CDataGL data = escena.GetData();
    RellenaHuecos(imagen, *escena.GetDEM(), ColorSuperficie(data, data.m_nModoRelleno));
    CDataCargarImagen opciones;
    opciones.m_dResolucion = imagen.m_Imagen.SizePixel();
    opciones.m_bPiramidales = 1;
    opciones.m_nInterpolacion = 1;
    const std::string carpeta = CarpetaTemporal();
    if (!escena.CargarImagen(L"drape", imagen.m_pRaster.release(), imagen.m_Imagen, opciones, CString(DeUtf8(carpeta))))
        FallaGL("can't drape the image: no room for its tiles in " + carpeta);
}
