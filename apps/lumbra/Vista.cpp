// From what the user asks for to a picture of a grid: the settings of the scene, and the order of the drawing.

#include "Vista.h"

#include "Camara.h"
#include "Salida.h"
#include "terrain/CEscenaDEM.h"
#include "model/CDigiTab.h"
#include "platform/Conversiones.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>
#include <vector>

namespace {

using Punto = Vertiz::CCoor3D<double>;
using Caja = Vertiz::CMaximas<double>;

// A factor that makes relief visible: none where heights span some share of the plan, and less than one only for
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

// The part of a grid that holds heights: many are a piece of country in a rectangle of voids.
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

// What the scene is built on: the grid's extents, with some thickness under the lowest height, so that the floor
// doesn't lie in the same plane as a sea or a lake.
Caja ConPeana(const Caja& m, double exageracion) {
    constexpr double kGrosor = 0.025;
    const double plano = std::max(m.Maxima().x - m.Minima().x, m.Maxima().y - m.Minima().y);
    Caja conPeana = m;
    Punto bajo = m.Minima();
    bajo.z -= kGrosor * plano / exageracion;
    conPeana.Nuevo(bajo);
    return conPeana;
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

void Ajusta(CEscenaDEM& escena, const OpcionesVista& o, const Caja& extension) {
    CDataGL data = escena.GetData();
    data.m_nColorFondo = o.colorFondo;
    data.m_nColorDEM = o.colorDEM;
    data.m_nColorBase = 0xA8B0B4;
    data.m_nModoRelleno = o.color;
    data.m_nSombraCeldas = o.sombraCeldas ? 1 : 0;
    data.m_nQuad = o.malla;
    data.m_bBase = o.base ? 1 : 0;
    data.m_bLimites = o.limites ? 1 : 0;
    data.m_nEjes = o.ejes ? 1 : 0;
    data.m_bOrto = o.perspectiva ? 0 : 1;
    data.m_bRelleno = o.luz ? 1 : 0;
    data.m_GamaColor = Rampa(o.rampa, extension.Minima().z, extension.Maxima().z);
    escena.SetData(data);
    PonLuz(escena, o.luzAzimut, o.luzElevacion);
    escena.SetPuntosSuavizado(1 - o.paso);
    // A model is about 1 across: near planes, so that the depth buffer's steps are spent on it.
    escena.SetPlanoCerca(0.01F);
    escena.SetPlanoFondo(100.0F);
}

void CompruebaPaso(const Vertiz::CDEM& dem, int paso) {
    if (static_cast<unsigned>(paso) < std::min(dem.GetFilas(), dem.GetColumnas())) return;
    throw std::runtime_error("one sample in " + std::to_string(paso) + " leaves no cell of a grid of " +
                             std::to_string(dem.GetColumnas()) + " x " + std::to_string(dem.GetFilas()) +
                             " samples; ask for a smaller --step");
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
            return static_cast<BYTE>(desde + (hasta - desde) * t + 0.5);
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

// Lays the image over the terrain. Its tiles go to a file that goes with the scene.
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

}  // namespace

double PixelMinimo(const Vertiz::CDEM& dem, const Lienzo& lienzo) {
    const Caja m = dem.GetMaximasDouble();
    const double terreno = std::max(m.Maxima().x - m.Minima().x, m.Maxima().y - m.Minima().y);
    return terreno / (2.0 * Muestreo(lienzo) * std::max(lienzo.ancho, lienzo.alto));
}

ResultadoVista DibujaDEM(Vertiz::CDEM& dem, const OpcionesVista& opciones, Escenario& escenario) {
    Caja extension = opciones.limites ? dem.GetMaximasDouble() : ExtensionConDatos(dem);
    ResultadoVista resultado;
    CompruebaPaso(dem, opciones.paso);
    resultado.exageracion = opciones.exageracion;
    // Houses and trees keep their proportions.
    if (resultado.exageracion == 0.0)
        resultado.exageracion = escenario.maximas.EstanVacias(true) ? ExageracionNatural(extension) : 1.0;

    Cuadro cuadro(opciones.lienzo);
    Vertiz::CDigiTab estilos = Estilos(Muestreo(opciones.lienzo));
    CEscenaDEM escena(&dem);
    Ajusta(escena, opciones, extension);
    Puebla(escena, escenario);
    escena.SetDigiTab(&estilos);
    extension.Nuevo(escenario.maximas);
    if (opciones.base) extension = ConPeana(extension, resultado.exageracion);
    escena.SetExageracionVertical(static_cast<float>(resultado.exageracion));
    cuadro.Crea(escena);
    PonCamara(escena, opciones.azimut, opciones.elevacion);
    // The first fit fixes the space of the model, the second the view, once there is a projection.
    escena.ZoomExtension(extension);
    Cubre(escena, escenario.imagen);
    if (!escena.Iniciar()) FallaGL("can't build the picture");
    escenario.cielo.reset();
    resultado.pasoMalla = escena.GetPasoMalla();
    cuadro.Ajusta(escena);
    escena.ZoomExtension(extension);
    Encuadra(escena, extension, cuadro.Aspecto());
    resultado.imagen = cuadro.Dibuja(escena);
    escena.Destruir();
    return resultado;
}
