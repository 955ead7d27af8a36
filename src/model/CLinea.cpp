// Building, changing and measuring lines; how lines lie to each other stands in CLineaRelaciones.cpp.

#include "model/CLinea.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Vertiz {
namespace {

// Steps into which an arc is cut so that its chords stay within `flecha`; 0 when that can't be.
int PasosDeArco(double radio, double angulo, double flecha) {
    constexpr double kPasosMaximos = 100000.0;
    if (!(flecha > 0.0) || !(radio > 0.0) || !std::isfinite(radio) || !std::isfinite(angulo)) return 0;
    const double paso = flecha < radio ? 2.0 * std::acos(1.0 - flecha / radio) : std::numbers::pi / 2.0;
    const double pasos = std::ceil(std::abs(angulo) / std::min(paso, std::numbers::pi / 2.0));
    return static_cast<int>(std::clamp(pasos, 1.0, kPasosMaximos));
}

// Centre of the circle through the origin, b and c; false when they lie in line.
bool CentroCirculo(const CCoor3D<double>& b, const CCoor3D<double>& c, CCoor3D<double>& centro) {
    const double det = 2.0 * (b.x * c.y - b.y * c.x);
    const double b2 = b.x * b.x + b.y * b.y, c2 = c.x * c.x + c.y * c.y;
    centro = {(c.y * b2 - b.y * c2) / det, (b.x * c2 - c.x * b2) / det, 0.0};
    return det != 0.0 && centro.EsFinito();
}

// The points of an arc after `desde`, up to `hasta`, round `centro`; the last one is `hasta` itself.
void TrazaArco(const CCoor3D<double>& centro, const CCoor3D<double>& desde, const CCoor3D<double>& hasta,
               bool bIzquierda, double flecha, std::vector<CCoor3D<double>>& puntos) {
    constexpr double vuelta = 2.0 * std::numbers::pi;
    const double radio = centro.Distancia(desde, 0);
    const double inicio = std::atan2(desde.y - centro.y, desde.x - centro.x);
    double angulo = std::atan2(hasta.y - centro.y, hasta.x - centro.x) - inicio;
    if (bIzquierda && angulo <= 0.0) angulo += vuelta;
    if (!bIzquierda && angulo >= 0.0) angulo -= vuelta;
    const int pasos = PasosDeArco(radio, angulo, flecha);
    for (int i = 1; i < pasos; ++i) {
        const double parte = static_cast<double>(i) / pasos, a = inicio + angulo * parte;
        puntos.emplace_back(centro.x + radio * std::cos(a), centro.y + radio * std::sin(a),
                            desde.z + (hasta.z - desde.z) * parte);
    }
    puntos.push_back(hasta);
}

}  // namespace

template <class T>
CCoor3D<T>& CLinea<T>::end() {
    thread_local CCoor3D<T> perdido;
    if (!this->m_Puntos.empty()) return this->m_Puntos.back();
    return perdido = CCoor3D<T>();
}

template <class T>
bool CLinea<T>::Cierra() {
    if (this->NPuntos() < 2) return false;
    if (!this->EsCerrada()) this->Agrega(CCoor3D<T>(this->m_Puntos.front()));
    return true;
}

template <class T>
bool CLinea<T>::Une(const CLinea& otra, bool bTalCual) {
    std::vector<CCoor3D<T>>& puntos = this->m_Puntos;
    std::vector<CCoor3D<T>> nuevos = otra.m_Puntos;
    if (puntos.empty() || nuevos.empty()) {
        if (!bTalCual) return false;
    } else if (!bTalCual) {
        const bool bAlFinal = puntos.back() == nuevos.front() || puntos.back() == nuevos.back();
        if (!bAlFinal) {
            if (!(puntos.front() == nuevos.front() || puntos.front() == nuevos.back())) return false;
            std::reverse(puntos.begin(), puntos.end());
        }
        if (!(puntos.back() == nuevos.front())) std::reverse(nuevos.begin(), nuevos.end());
        nuevos.erase(nuevos.begin());
    }
    puntos.insert(puntos.end(), nuevos.begin(), nuevos.end());
    this->Nuevo(static_cast<const CMaximas<T>&>(otra));
    return true;
}

template <class T>
void CLinea<T>::Voltea() {
    std::reverse(this->m_Puntos.begin(), this->m_Puntos.end());
}

template <class T>
void CLinea<T>::ZFija(T z) {
    for (CCoor3D<T>& punto : this->m_Puntos)
        punto.z = z;
    this->CalculaMaximas();
}

template <class T>
unsigned CLinea<T>::BorraPuntosDobles(int dim) {
    const auto iguales = [dim](const CCoor3D<T>& a, const CCoor3D<T>& b) {
        return a.x == b.x && a.y == b.y && (dim == 0 || a.z == b.z);
    };
    const unsigned antes = this->NPuntos();
    this->m_Puntos.erase(std::unique(this->m_Puntos.begin(), this->m_Puntos.end(), iguales), this->m_Puntos.end());
    this->CalculaMaximas();
    return antes - this->NPuntos();
}

template <class T>
bool CLinea<T>::Arco(const CCoor3D<T>& a, const CCoor3D<T>& b, const CCoor3D<T>& c, double flecha) {
    const CCoor3D<double> desde(a), medio(b), hasta(c);
    if (!(flecha > 0.0) || !desde.EsFinito() || !medio.EsFinito() || !hasta.EsFinito()) return false;
    std::vector<CCoor3D<double>> puntos{desde};
    CCoor3D<double> centro;
    const CCoor3D<double> ab = medio - desde, ac = hasta - desde;
    if (CentroCirculo(ab, ac, centro)) {
        const bool bIzquierda = ab.x * ac.y - ab.y * ac.x > 0.0;
        centro += desde;
        TrazaArco(centro, desde, medio, bIzquierda, flecha, puntos);
        TrazaArco(centro, medio, hasta, bIzquierda, flecha, puntos);
    } else {
        puntos.insert(puntos.end(), {medio, hasta});
    }
    for (const CCoor3D<double>& punto : puntos)
        *this << CCoor3D<T>(punto);
    return true;
}

template <class T>
bool CLinea<T>::ArcoElipse(const CCoor3D<T>& centro, double semiejeA, double semiejeB, double giro, double desde,
                           double hasta, double flecha) {
    if (!(semiejeA > 0.0) || !(semiejeB > 0.0) || !std::isfinite(giro) || !CCoor3D<double>(centro).EsFinito()) {
        return false;
    }
    // A circle with the longer axis bends no less than the ellipse does for the same step of its auxiliary angle.
    const int pasos = PasosDeArco(std::max(semiejeA, semiejeB), hasta - desde, flecha);
    for (int i = 0; i <= pasos && pasos > 0; ++i) {
        const double angulo = desde + (hasta - desde) * i / pasos;
        const CCoor3D<double> v(semiejeA * std::cos(angulo), semiejeB * std::sin(angulo), 0.0);
        *this << CCoor3D<T>(CCoor3D<double>(centro) + v.Rotar(giro, {0.0, 0.0, 1.0}));
    }
    return pasos > 0;
}

template <class T>
double CLinea<T>::Superficie() const {
    double doble = 0.0;
    const CCoor3D<double> origen(this->Punto(0));
    for (std::size_t i = 1; i + 1 < this->m_Puntos.size(); ++i) {
        const CCoor3D<double> a = CCoor3D<double>(this->m_Puntos[i]) - origen;
        const CCoor3D<double> b = CCoor3D<double>(this->m_Puntos[i + 1]) - origen;
        doble += a.x * b.y - a.y * b.x;
    }
    return doble * 0.5;
}

template <class T>
double CLinea<T>::Longitud(int dim) const {
    double longitud = 0.0;
    for (std::size_t i = 1; i < this->m_Puntos.size(); ++i) {
        longitud += this->m_Puntos[i - 1].Distancia(this->m_Puntos[i], dim);
    }
    return longitud;
}

// All sums are taken from the first point, so that large coordinates cost no digits.
template <class T>
CCoor3D<T> CLinea<T>::Centroide() const {
    const std::size_t n = this->m_Puntos.size();
    if (n == 0) return {};
    const CCoor3D<double> origen(this->m_Puntos.front());
    const bool bCerrada = this->EsCerrada();
    const std::size_t vertices = bCerrada ? n - 1 : n;
    CCoor3D<double> deArea, deLongitud, dePuntos;
    double area = 0.0, longitud = 0.0;
    CCoor3D<double> a;
    for (std::size_t i = 0; i < n; ++i) {
        const CCoor3D<double> b = CCoor3D<double>(this->m_Puntos[i]) - origen;
        const double cruz = a.x * b.y - a.y * b.x, lado = a.Distancia(b, 0);
        area += cruz;
        longitud += lado;
        deArea += (a + b) * cruz;
        deLongitud += (a + b) * lado;
        if (i < vertices) dePuntos += b;
        a = b;
    }
    CCoor3D<double> centro = dePuntos / static_cast<double>(vertices);
    if (bCerrada && area != 0.0) {
        centro.ActualizaXY(deArea.x / (3.0 * area), deArea.y / (3.0 * area));
    } else if (longitud > 0.0) {
        centro.ActualizaXY(deLongitud.x / (2.0 * longitud), deLongitud.y / (2.0 * longitud));
    }
    return CCoor3D<T>(centro + origen);
}

template class CLinea<int>;
template class CLinea<double>;

}  // namespace Vertiz
