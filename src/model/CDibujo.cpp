// The drawing as a container: its entities, what it keeps count of, its extents.

#include "model/CDibujo.h"

#include "model/CDataHelmertNTV2.h"
#include "model/CSetPuntos.h"
#include "model/DibujoInterno.h"

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <utility>

namespace Vertiz {

template <class T>
CDibujo<T>::CDibujo(const CDataSemilla& semilla) : m_Semilla(semilla) {}

template <class T>
CDibujo<T>::CDibujo(const CDibujo& otro)
    : CObjetoFichero(otro),
      m_Semilla(otro.m_Semilla),
      m_Maximas(otro.m_Maximas),
      m_nPuntos(otro.m_nPuntos),
      m_nTextos(otro.m_nTextos),
      m_nIntensidadMin(otro.m_nIntensidadMin),
      m_nIntensidadMax(otro.m_nIntensidadMax),
      m_nTipoFichero(otro.m_nTipoFichero) {
    m_Entidades.reserve(otro.m_Entidades.size());
    for (const auto& e : otro.m_Entidades)
        m_Entidades.push_back(e->Clona());
}

template <class T>
CDibujo<T>::CDibujo(CDibujo&& otro) noexcept : CDibujo() {
    swap(otro);
}

template <class T>
CDibujo<T>& CDibujo<T>::operator=(CDibujo otro) noexcept {
    swap(otro);
    return *this;
}

template <class T>
CDibujo<T>::~CDibujo() = default;

template <class T>
void CDibujo<T>::swap(CDibujo& otro) noexcept {
    CObjetoFichero::swap(otro);
    std::swap(m_Semilla, otro.m_Semilla);
    m_Entidades.swap(otro.m_Entidades);
    std::swap(m_Maximas, otro.m_Maximas);
    std::swap(m_nPuntos, otro.m_nPuntos);
    std::swap(m_nTextos, otro.m_nTextos);
    std::swap(m_nIntensidadMin, otro.m_nIntensidadMin);
    std::swap(m_nIntensidadMax, otro.m_nIntensidadMax);
    std::swap(m_nTipoFichero, otro.m_nTipoFichero);
    m_pExtremos.swap(otro.m_pExtremos);
}

template <class T>
unsigned CDibujo<T>::Inserta(const CEntidadDigi<T>& entidad) {
    return Inserta(entidad.Clona());
}

template <class T>
unsigned CDibujo<T>::Inserta(std::unique_ptr<CEntidadDigi<T>> entidad) {
    m_Entidades.push_back(std::move(entidad));
    Cuenta(*m_Entidades.back());
    return Cantidad() - 1;
}

template <class T>
void CDibujo<T>::Clear() {
    m_Entidades.clear();
    Recuenta();
}

template <class T>
double CDibujo<T>::Precision() const {
    return std::is_integral_v<T> ? m_Semilla.Precision() : 1.0;
}

template <class T>
void CDibujo<T>::Cuenta(const CEntidadDigi<T>& entidad) {
    m_nPuntos += entidad.NPuntos();
    if (entidad.EsTexto()) m_nTextos++;
    if (!entidad.EsBorrado()) m_Maximas.Nuevo(entidad.GetMaximas());
    if (!entidad.EsSetPuntos()) return;
    for (const CCoor3D<T>& p : entidad.Puntos()) {
        const int intensidad = int(CSetPuntos<T>::Intensidad(p));
        m_nIntensidadMin = std::min(m_nIntensidadMin, intensidad);
        m_nIntensidadMax = std::max(m_nIntensidadMax, intensidad);
    }
}

// Counts from the entities as they are, whose own boxes are taken to be right.
template <class T>
void CDibujo<T>::Recuenta() {
    m_Maximas.Borra();
    m_nPuntos = 0;
    m_nTextos = 0;
    m_nIntensidadMin = kSinIntensidad;
    m_nIntensidadMax = 0;
    m_pExtremos.reset();
    for (const auto& e : m_Entidades)
        Cuenta(*e);
}

template <class T>
void CDibujo<T>::ActualizaCantidades() {
    for (const auto& e : m_Entidades)
        e->CalculaMaximas();
    Recuenta();
}

template <class T>
void CDibujo<T>::Quita(const std::vector<bool>& sobran) {
    std::size_t i = 0;
    std::erase_if(m_Entidades, [&](const auto&) { return sobran[i++]; });
}

template <class T>
bool CDibujo<T>::EsRecinto(unsigned i) const {
    const CEntidadDigi<T>& e = *m_Entidades[i];
    return EsLinea(e) && e.EsCerrada() && e.NPuntos() > 3;
}

template <class T>
CMaximas<double> CDibujo<T>::GetMaximasDouble() const {
    return CMaximas<double>(m_Maximas) / Precision();
}

template <class T>
CMaximas<double> CDibujo<T>::GetMaximasDouble(bool absolutas, const CDigiTab* digi, const CDigiTab* lidar,
                                              const CDigiTab* eco) const {
    const CVisibilidad visibilidad(digi, lidar, eco);
    CMaximas<T> vistas;
    if (!visibilidad.AlgoOculto()) {
        vistas = m_Maximas;
    } else {
        for (const auto& e : m_Entidades) {
            if (e->EsBorrado() || !visibilidad.Ve(*e)) continue;
            if (!e->EsSetPuntos() || !visibilidad.PuntosOcultos()) {
                vistas.Nuevo(e->GetMaximas());
                continue;
            }
            for (const CCoor3D<T>& p : e->Puntos()) {
                if (visibilidad.VePunto(p)) vistas.Nuevo(p);
            }
        }
    }
    auto maximas = CMaximas<double>(vistas) / Precision();
    if (absolutas) maximas -= CCoor3D<double>(-m_Semilla.GetX(), -m_Semilla.GetY(), -m_Semilla.GetZ());
    return maximas;
}

template <class T>
CMaximas<int> CDibujo<T>::GetMaximasInt() const {
    if constexpr (std::is_integral_v<T>) {
        return m_Maximas;
    } else {
        if (m_Maximas.EstanVacias(true)) return {};
        const auto &a = m_Maximas.Minima(), &b = m_Maximas.Maxima();
        return {CCoor3D<int>(std::floor(a.x), std::floor(a.y), std::floor(a.z)),
                CCoor3D<int>(std::ceil(b.x), std::ceil(b.y), std::ceil(b.z))};
    }
}

template <class T>
void CDibujo<T>::SetMaximasDouble(const CMaximas<double>& maximas) {
    m_Maximas = CMaximas<T>(CMaximas<double>(maximas) /= 1.0 / Precision());
}

template <class T>
int CDibujo<T>::Transformacion(const CDataHelmertNTV2& data) {
    const CCoor3D<double> origen(m_Semilla.GetX(), m_Semilla.GetY(), m_Semilla.GetZ());
    const double precision = Precision();
    std::vector<CCoor3D<double>> puntos;
    puntos.reserve(m_nPuntos);
    for (const auto& e : m_Entidades) {
        for (const CCoor3D<T>& p : e->Puntos())
            puntos.push_back(CCoor3D<double>(p) / precision + origen);
    }
    if (!data.Transforma(puntos)) return 0;
    if constexpr (std::is_integral_v<T>) {
        // An integer that stopped at the end of its range would be another place.
        for (const CCoor3D<double>& p : puntos) {
            if (!CabeEnEnteros((p - origen) * precision)) return 0;
        }
    }
    std::size_t siguiente = 0;
    for (const auto& e : m_Entidades) {
        for (unsigned i = 0; i < e->NPuntos(); i++) {
            const auto n = (puntos[siguiente++] - origen) * precision;
            e->ModificaPunto(i, CCoor3D<T>(n.x, n.y, n.z, e->Punto(int(i)).GetTipoCompleto()), false);
        }
    }
    ActualizaCantidades();
    return 1;
}

template class CDibujo<int>;
template class CDibujo<double>;

}  // namespace Vertiz
