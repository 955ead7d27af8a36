// From what the user asks for to a picture: the settings of the scene, the camera that frames the model, the drawing,
// and the averaging of its pixels.

#include "Vista.h"

#include "terrain/CEscenaDEM.h"
#include "platform/CBitmap.h"
#include "platform/CDC.h"
#include "platform/Contextos.h"
#include "platform/Conversiones.h"
#include "platform/DiagnosticoGL.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <stdexcept>
#include <vector>

namespace {

using Punto = Vertiz::CCoor3D<double>;
using Caja = Vertiz::CMaximas<double>;

double ARadianes(double grados) {
    return grados * std::numbers::pi / 180.0;
}

// A direction by compass and height over the horizon, in GL space: x east, y up, z south.
Punto Direccion(double azimut, double elevacion) {
    const double a = ARadianes(azimut), e = ARadianes(elevacion);
    return {std::sin(a) * std::cos(e), std::sin(e), -std::cos(a) * std::cos(e), 0};
}

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

void PonCamara(CGL& escena, double azimut, double elevacion) {
    const Punto ojo = Direccion(azimut, elevacion);
    // Straight down the picture's top is what the viewer would have before him: north when he stands in the south.
    const double a = ARadianes(azimut);
    const bool cenital = std::cos(ARadianes(elevacion)) < 1e-6;
    const Punto arriba = cenital ? Punto(-std::sin(a), 0, std::cos(a), 0) : Punto(0, 1, 0, 0);
    const Punto lado = (ojo * -1.0) * arriba;
    Punto perpendicular = lado * (ojo * -1.0);
    perpendicular.Normaliza();
    escena.GetCamara().PositionCamera(ojo, {0, 0, 0, 0}, perpendicular);
}

double Producto(const Punto& a, const Punto& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

// The model's corners as the viewer has them: x to his right, y upwards, z away from him.
std::vector<Punto> EsquinasVistas(const CEscenaDEM& escena, const Caja& extension, const Punto& derecha,
                                  const Punto& arriba, const Punto& frente) {
    std::vector<Punto> vistas;
    const Punto &a = extension.Minima(), &b = extension.Maxima();
    for (int i = 0; i < 8; ++i) {
        Punto gl;
        if (escena.TerrenoAGL({i & 1 ? b.x : a.x, i & 2 ? b.y : a.y, i & 4 ? b.z : a.z, 0}, gl.x, gl.y, gl.z, 1.0,
                              true))
            vistas.emplace_back(Producto(gl, derecha), Producto(gl, arriba), Producto(gl, frente), 0);
    }
    return vistas;
}

// A corner as a picture has it in one of its directions: how far beside the model's middle, and how far behind.
struct Esquina {
    double lado, fondo;
};

// The least distance from which the corners fit into a view whose half is `media` wide at distance 1. The eye may move
// sideways: its place has to be at least `lado` - `media` (distance + `fondo`) for each corner, and at most
// `lado` + `media` (distance + `fondo`).
double DistanciaQueCabe(const std::vector<Esquina>& esquinas, double media) {
    double desde = -std::numeric_limits<double>::max(), hasta = -desde;
    for (const Esquina& e : esquinas) {
        desde = std::max(desde, e.lado - media * e.fondo);
        hasta = std::min(hasta, e.lado + media * e.fondo);
    }
    return (desde - hasta) / (2.0 * media);
}

// The eye's place sideways that leaves as much free on one side of the picture as on the other.
double Centro(const std::vector<Esquina>& esquinas, double distancia) {
    constexpr int kVueltas = 50;
    double desde = -2.0, hasta = 2.0;  // a model is about 1 across
    for (int vuelta = 0; vuelta < kVueltas; ++vuelta) {
        const double ojo = (desde + hasta) / 2.0;
        double menor = std::numeric_limits<double>::max(), mayor = -menor;
        for (const Esquina& e : esquinas) {
            menor = std::min(menor, (e.lado - ojo) / (distancia + e.fondo));
            mayor = std::max(mayor, (e.lado - ojo) / (distancia + e.fondo));
        }
        (menor + mayor > 0.0 ? desde : hasta) = ojo;
    }
    return (desde + hasta) / 2.0;
}

// Moves a camera in perspective to where the model just fills the picture, in its middle but for some margin. The
// scene's own fit is the distance of a sphere, and lets near corners leave the picture.
void EncuadraPerspectiva(CEscenaDEM& escena, const Caja& extension, double aspecto) {
    constexpr double kMargen = 0.94, kAntesDelOjo = 0.05;
    CCamera& camara = escena.GetCamara();
    Punto frente = camara.View() - camara.Position();
    frente.Normaliza();
    Punto derecha = frente * camara.UpVector();
    derecha.Normaliza();
    const Punto arriba = derecha * frente;
    const double alto = std::tan(ARadianes(escena.GetAnguloVista() / 2.0)) * kMargen, ancho = alto * aspecto;
    std::vector<Esquina> horizontal, vertical;
    double distancia = 0.0;
    for (const Punto& p : EsquinasVistas(escena, extension, derecha, arriba, frente)) {
        horizontal.push_back({p.x, p.z});
        vertical.push_back({p.y, p.z});
        distancia = std::max(distancia, kAntesDelOjo - p.z);
    }
    distancia = std::max({distancia, DistanciaQueCabe(horizontal, ancho), DistanciaQueCabe(vertical, alto)});
    const Punto vista = derecha * Centro(horizontal, distancia) + arriba * Centro(vertical, distancia);
    camara.PositionCamera(vista - frente * distancia, vista, camara.UpVector());
}

void Encuadra(CEscenaDEM& escena, const Caja& extension, double aspecto) {
    constexpr double kMargen = 0.94;
    if (escena.GetOrtogonal() != 0)
        escena.SetZoom(escena.GetZoom() * kMargen);
    else
        EncuadraPerspectiva(escena, extension, aspecto);
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

// The bitmap's pixels, averaged over squares of n x n.
Imagen Promedia(const BITMAP& mapa, int ancho, int alto, int n) {
    Imagen imagen{ancho, alto, std::vector<std::uint8_t>(std::size_t(3) * ancho * alto)};
    const int bytes = mapa.bmBitsPixel / 8;
    const auto* bits = static_cast<const std::uint8_t*>(mapa.bmBits);
    std::uint8_t* destino = imagen.rgb.data();
    for (int y = 0; y < alto; ++y)
        for (int x = 0; x < ancho; ++x, destino += 3) {
            int suma[3] = {0, 0, 0};
            for (int j = 0; j < n; ++j) {
                const std::size_t fila = std::size_t(mapa.bmHeight - 1 - (y * n + j)) * mapa.bmWidthBytes;
                const std::uint8_t* p = bits + fila + std::size_t(x) * n * bytes;
                for (int i = 0; i < n; ++i, p += bytes)
                    for (int canal = 0; canal < 3; ++canal)
                        suma[canal] += p[2 - canal];
            }
            for (int canal = 0; canal < 3; ++canal)
                destino[canal] = static_cast<std::uint8_t>((suma[canal] + n * n / 2) / (n * n));
        }
    return imagen;
}

void CompruebaPaso(const Vertiz::CDEM& dem, int paso) {
    if (static_cast<unsigned>(paso) < std::min(dem.GetFilas(), dem.GetColumnas())) return;
    throw std::runtime_error("one sample in " + std::to_string(paso) + " leaves no cell of a grid of " +
                             std::to_string(dem.GetColumnas()) + " x " + std::to_string(dem.GetFilas()) +
                             " samples; ask for a smaller --step");
}

[[noreturn]] void Falla(const std::string& que) {
    const std::string motivo = UltimoFalloGL();
    throw std::runtime_error(motivo.empty() ? que : que + ": " + motivo);
}

// How many times as large the picture is drawn: by default twice, and as it is where twice doesn't fit.
int Muestreo(const OpcionesVista& o) {
    constexpr int kLadoMaximo = 16384;  // drivers draw no larger
    const int lado = std::max(o.ancho, o.alto);
    const int muestreo = o.muestreo != 0 ? o.muestreo : lado > kLadoMaximo / 2 ? 1 : 2;
    if (lado <= kLadoMaximo / muestreo) return muestreo;
    const std::string suave = muestreo > 1 ? " smoothed " + std::to_string(muestreo) + " times" : "";
    throw std::runtime_error("a picture of " + std::to_string(o.ancho) + " x " + std::to_string(o.alto) + " pixels" +
                             suave + " is too large: at most " + std::to_string(kLadoMaximo / muestreo) +
                             " a side; ask for a smaller --size" + (muestreo > 1 ? " or --smooth" : ""));
}

}  // namespace

void CompruebaTamano(const OpcionesVista& opciones) {
    Muestreo(opciones);
}

ResultadoVista DibujaDEM(Vertiz::CDEM& dem, const OpcionesVista& opciones) {
    Caja extension = opciones.limites ? dem.GetMaximasDouble() : ExtensionConDatos(dem);
    ResultadoVista resultado;
    CompruebaPaso(dem, opciones.paso);
    const int muestreo = Muestreo(opciones);
    resultado.exageracion = opciones.exageracion != 0.0 ? opciones.exageracion : ExageracionNatural(extension);

    const int ancho = opciones.ancho * muestreo, alto = opciones.alto * muestreo;
    CBitmap mapa;
    CDC dc;
    if (!mapa.CreateBitmap(ancho, alto, 32) || !dc.CreateCompatibleDC(nullptr) || dc.SelectObject(&mapa) == nullptr)
        Falla("no room for a picture of " + std::to_string(ancho) + " x " + std::to_string(alto) + " pixels");
    CEscenaDEM escena(&dem);
    Ajusta(escena, opciones, extension);
    if (opciones.base) extension = ConPeana(extension, resultado.exageracion);
    escena.SetExageracionVertical(static_cast<float>(resultado.exageracion));
    if (!escena.Crear(&dc, PFD_TYPE_RGBA, PFD_DRAW_TO_BITMAP | PFD_SUPPORT_OPENGL)) Falla("can't draw");
    PonCamara(escena, opciones.azimut, opciones.elevacion);
    // The first fit fixes the space of the model, the second the view, once there is a projection.
    escena.ZoomExtension(extension);
    if (!escena.Iniciar()) Falla("can't build the picture");
    resultado.pasoMalla = escena.GetPasoMalla();
    if (!escena.Resize(ancho, alto)) Falla("can't draw a picture of this size");
    escena.ZoomExtension(extension);
    Encuadra(escena, extension, static_cast<double>(ancho) / alto);
    escena.SetBkColor();
    if (!escena.Render()) Falla("can't draw");

    BITMAP datos = {};
    mapa.GetBitmap(&datos);
    resultado.imagen = Promedia(datos, opciones.ancho, opciones.alto, muestreo);
    escena.Destruir();
    return resultado;
}
