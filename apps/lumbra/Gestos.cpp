// Arithmetic of gestures.

#include "Gestos.h"

#include "Camara.h"
#include "platform/CWnd.h"
#include "platform/Numeros.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <numbers>

using Punto = Vertiz::CCoor3D<double>;

namespace {

Punto Unidad(Punto v) {
    v.Normaliza();
    return v;
}

// A vector turned round an axis of length 1 (Rodrigues).
Punto Girado(const Punto& v, const Punto& eje, double angulo) {
    const double c = std::cos(angulo), s = std::sin(angulo);
    return v * c + (eje * v) * s + eje * (Producto(eje, v) * (1.0 - c));
}

double Grados(double radianes) {
    return radianes * 180.0 / std::numbers::pi;
}

}  // namespace

Mirada Gira(const Mirada& mirada, const Punto& pivote, double azimut, double elevacion, bool bLibre) {
    const Punto vertical(0, 1, 0, 0);
    Punto frente = mirada.vista - mirada.ojo, arriba = mirada.arriba, brazo = mirada.ojo - pivote;
    const double distancia = frente.Distancia(Punto(0, 0, 0, 0), 1);
    for (Punto* v : {&frente, &arriba, &brazo})
        *v = Girado(*v, vertical, ARadianes(azimut));
    frente = Unidad(frente);
    const Punto derecha = Unidad(frente * arriba);
    arriba = derecha * frente;
    if (!bLibre && arriba.y >= -1e-9) {
        const double actual = Grados(std::asin(std::clamp(-frente.y, -1.0, 1.0)));
        elevacion = std::clamp(actual + elevacion, -90.0, 90.0) - actual;
    }
    // The eye rises where the view turns down: against the right-handed turn round what is on the right.
    for (Punto* v : {&frente, &arriba, &brazo})
        *v = Girado(*v, derecha, -ARadianes(elevacion));
    Mirada nueva;
    nueva.ojo = pivote + brazo;
    nueva.vista = nueva.ojo + frente * distancia;
    nueva.arriba = Unidad(arriba);
    return nueva;
}

Mirada Acerca(const Mirada& mirada, const Punto& punto, double factor) {
    constexpr double kCerca = 0.02, kLejos = 50.0;  // a model is about 1 across
    const double distancia = mirada.ojo.Distancia(punto, 1);
    if (distancia <= 0.0) return mirada;
    const double f =
        std::clamp(distancia * factor, std::min(kCerca, distancia), std::max(kLejos, distancia)) / distancia;
    return {punto + (mirada.ojo - punto) * f, punto + (mirada.vista - punto) * f, mirada.arriba};
}

double GradosDeArrastre(int pixeles, int ancho, int alto) {
    return 180.0 * pixeles / std::max(1, std::min(ancho, alto));
}

double FactorDeRueda(int delta) {
    constexpr double kMuesca = 0.85;
    return std::pow(kMuesca, static_cast<double>(delta) / WHEEL_DELTA);
}

bool EsClic(const CPoint& pulsado, const CPoint& soltado) {
    constexpr int kHolgura = 4;
    return std::abs(soltado.x - pulsado.x) <= kHolgura && std::abs(soltado.y - pulsado.y) <= kHolgura;
}

double SiguienteExageracion(double actual, int sentido) {
    constexpr double kPasos[] = {0.1, 0.15, 0.2, 0.3, 0.5,  0.7,  1.0,  1.5,  2.0,  3.0,
                                 5.0, 7.0,  10., 15., 20.0, 30.0, 50.0, 70.0, 100.0};
    constexpr double kIgual = 1e-6;  // heights are scaled by a float
    if (sentido > 0) {
        for (const double paso : kPasos)
            if (paso > actual * (1.0 + kIgual)) return paso;
        return actual;
    }
    double menor = actual;
    for (const double paso : kPasos)
        if (paso < actual * (1.0 - kIgual)) menor = paso;
    return menor;
}

std::string NombreLibre(const std::string& entrada, const std::string& extension,
                        const std::function<bool(const std::string&)>& hay) {
    const std::string base = std::filesystem::path(entrada).stem().string();
    std::string nombre = base + extension;
    for (int n = 1; hay(nombre); ++n)
        nombre.assign(base).append("-").append(std::to_string(n)).append(extension);
    return nombre;
}

std::string TextoPunto(const Punto& p, int decimales) {
    return TextoReal(p.x, decimales) + " " + TextoReal(p.y, decimales) + " " + TextoReal(p.z, decimales);
}

Longitudes MideLinea(const Vertiz::CLinea<double>& linea) {
    Longitudes l;
    const auto& puntos = linea.Puntos();
    for (std::size_t i = 1; i < puntos.size(); ++i) {
        const Punto d = puntos[i] - puntos[i - 1];
        l.plana += std::hypot(d.x, d.y);
        l.real += std::hypot(d.x, d.y, d.z);
    }
    return l;
}
