// From what the user asks for to the settings of a scene.

#include "Aspecto.h"

#include "Camara.h"
#include "platform/Conversiones.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

using Punto = Vertiz::CCoor3D<double>;
using Caja = Vertiz::CMaximas<double>;

namespace {

// The light's sliders for a light that comes from a direction. Normals point into the terrain, so the light stands on
// the opposite side.
void PonLuz(CGL& escena, double azimut, double elevacion) {
    const Punto d = Direccion(azimut, elevacion);
    const double mayor = std::max({std::abs(d.x), std::abs(d.y), std::abs(d.z)});
    const auto deslizador = [&](double v) { return static_cast<int>(std::lround(50.0 * v / mayor)); };
    escena.SetLightParam(50 + deslizador(d.x), 0);
    escena.SetLightParam(50 + deslizador(d.y), 2);
    escena.SetLightParam(50 - deslizador(d.z), 1);
    // Ambient, diffuse and specular such that the brightest slope just keeps its colour.
    escena.SetLightParam(59, 3);
    escena.SetLightParam(81, 4);
    escena.SetLightParam(50, 5);
}

// The ramp that is asked for. Its outer colours go on to the ends of the heights, which would be black otherwise.
Vertiz::CDataGamaColor Rampa(const std::string& texto, double minima, double maxima) {
    if (texto.empty()) return Vertiz::CDataGamaColor::Terreno(minima, maxima);
    Vertiz::CDataGamaColor rampa(CString(DeUtf8(texto)));
    if (rampa.EstaVacia()) throw std::runtime_error("'" + texto + "' is not a colour ramp");
    Vertiz::CColorCota primera = rampa.Paradas().front(), ultima = rampa.Paradas().back();
    const double holgura = 1.0 + std::abs(maxima - minima);
    primera.m_dCota = std::min(primera.m_dCota, minima) - holgura;
    ultima.m_dCota = std::max(ultima.m_dCota, maxima) + holgura;
    rampa.Inserta(primera);
    rampa.Inserta(ultima);
    return rampa;
}

}  // namespace

// None where heights span some share of the plan, and less than one only for
// heights that tower over it, as in grids whose plan isn't in their heights' unit.
double ExageracionNatural(const Caja& m) {
    constexpr double kRelieve = 0.07, kTorre = 0.7;
    const double plano = std::max(m.Maxima().x - m.Minima().x, m.Maxima().y - m.Minima().y);
    const double alto = m.Maxima().z - m.Minima().z;
    if (alto <= 0.0 || plano <= 0.0) return 1.0;
    const double pedida = (alto > kTorre * plano ? kTorre / 2.0 : kRelieve) * plano / alto;
    if (pedida >= 1.0)
        for (const double factor : {1.0, 1.5, 2.0, 3.0, 4.0, 5.0, 8.0, 10.0, 15.0, 20.0})
            if (pedida <= factor) return factor;
    if (pedida >= 1.0) return 20.0;
    if (alto <= kTorre * plano) return 1.0;
    const double decada = std::pow(10.0, std::floor(std::log10(pedida)));
    return std::max(1.0, std::floor(pedida / decada)) * decada;
}

void PonOpciones(CDataGL& data, const OpcionesVista& o) {
    data.m_nColorFondo = o.colorFondo;
    data.m_nColorDEM = o.colorDEM;
    data.m_nModoRelleno = o.color;
    data.m_nSombraCeldas = o.sombraCeldas ? 1 : 0;
    data.m_nQuad = o.malla;
    data.m_bBase = o.base ? 1 : 0;
    data.m_bLimites = o.limites ? 1 : 0;
    data.m_nEjes = o.ejes ? 1 : 0;
    data.m_bOrto = o.perspectiva ? 0 : 1;
    data.m_bRelleno = o.luz ? 1 : 0;
}

void Ajusta(CGL& escena, const OpcionesVista& o, const Caja& extension) {
    CDataGL data = escena.GetData();
    PonOpciones(data, o);
    data.m_nColorBase = 0xA8B0B4;
    data.m_GamaColor = Rampa(o.rampa, extension.Minima().z, extension.Maxima().z);
    escena.SetData(data);
    PonLuz(escena, o.luzAzimut, o.luzElevacion);
    escena.SetPuntosSuavizado(1 - o.paso);
    // A model is about 1 across: near planes, so that the depth buffer's steps are spent on it.
    escena.SetPlanoCerca(0.01F);
    escena.SetPlanoFondo(100.0F);
}
