// Directions, and the camera that frames a model.

#include "Camara.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <numbers>
#include <vector>

namespace {

using Punto = Vertiz::CCoor3D<double>;
using Caja = Vertiz::CMaximas<double>;

constexpr double kMargen = 0.94;  // of a picture that a model fills

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

// What is on the right, up and before a viewer.
struct Ejes {
    explicit Ejes(const CCamera& camara) : frente(camara.View() - camara.Position()) {
        frente.Normaliza();
        derecha = frente * camara.UpVector();
        derecha.Normaliza();
        arriba = derecha * frente;
    }
    Punto frente, derecha, arriba;
};

// Moves a camera in perspective to where the model just fills the picture, in its middle but for some margin. The
// scene's own fit is the distance of a sphere, and lets near corners leave the picture.
void EncuadraPerspectiva(CEscenaDEM& escena, const Caja& extension, double aspecto) {
    CCamera& camara = escena.GetCamara();
    const auto [frente, derecha, arriba] = Ejes(camara);
    constexpr double kAntesDelOjo = 0.05;
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

// Scales an orthographic view to where the model just fills it, in its middle but for some margin. What a pixel
// measures is read from the projection, so that it doesn't matter what was zoomed before.
void EncuadraOrto(CEscenaDEM& escena, const Caja& extension, int ancho, int alto) {
    CCamera& camara = escena.GetCamara();
    Punto a, b;
    if (!escena.PantallaZATerreno(CPoint(0, 0), a, 0.5, true) ||
        !escena.PantallaZATerreno(CPoint(0, alto), b, 0.5, true))
        return;
    const double pixel = a.Distancia(b, 1) / alto;
    const Ejes ejes(camara);
    Caja vista;
    for (const Punto& p : EsquinasVistas(escena, extension, ejes.derecha, ejes.arriba, ejes.frente))
        vista.Nuevo(p);
    const Punto lados = vista.Maxima() - vista.Minima(), medio = vista.Centro(true);
    const double pedido = std::max(lados.x / ancho, lados.y / alto) / kMargen;
    if (!(pixel > 0.0) || !(pedido > 0.0)) return;
    const double distancia = camara.Position().Distancia(camara.View(), 1);
    const Punto centro = ejes.derecha * medio.x + ejes.arriba * medio.y + ejes.frente * medio.z;
    camara.PositionCamera(centro - ejes.frente * distancia, centro, camara.UpVector());
    escena.SetZoom(escena.GetZoom() * pixel / pedido);
}

}  // namespace

double ARadianes(double grados) {
    return grados * std::numbers::pi / 180.0;
}

double Producto(const Punto& a, const Punto& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Punto Direccion(double azimut, double elevacion) {
    const double a = ARadianes(azimut), e = ARadianes(elevacion);
    return {std::sin(a) * std::cos(e), std::sin(e), -std::cos(a) * std::cos(e), 0};
}

Punto Arriba(double azimut, double elevacion) {
    const double a = ARadianes(azimut), e = ARadianes(elevacion);
    return {-std::sin(a) * std::sin(e), std::cos(e), std::cos(a) * std::sin(e), 0};
}

bool HallaBajo(CGL& escena, const CPoint& pt, Punto& gl, double* profundidad) {
    constexpr int kCerca = 3;  // pixels
    CPoint pixel;
    return escena.PantallaATerreno(pt, gl, true, true, false) != 0 &&
           escena.TerrenoAPantalla(pixel, gl, profundidad, true) != 0 &&
           std::max(std::abs(pixel.x - pt.x), std::abs(pixel.y - pt.y)) <= kCerca;
}

void PonCamara(CGL& escena, double azimut, double elevacion) {
    // The camera's angles, which skies turn by, are worked out from those before, and a half turn has no way.
    constexpr double kRodeo = 60.0;
    for (const double a : {azimut + kRodeo, azimut})
        escena.GetCamara().PositionCamera(Direccion(a, elevacion), {0, 0, 0, 0}, Arriba(a, elevacion));
}

void Encuadra(CEscenaDEM& escena, const Caja& extension, double aspecto) {
    if (escena.GetOrtogonal() != 0)
        escena.SetZoom(escena.GetZoom() * kMargen);
    else
        EncuadraPerspectiva(escena, extension, aspecto);
}

void EncuadraVentana(CEscenaDEM& escena, const Caja& extension, int ancho, int alto) {
    if (escena.GetOrtogonal() != 0)
        EncuadraOrto(escena, extension, ancho, alto);
    else
        EncuadraPerspectiva(escena, extension, static_cast<double>(ancho) / alto);
}
