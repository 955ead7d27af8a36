// What all entities do with their points, attributes and box.

#include "model/CEntidadDigi.h"

#include "model/BorraIndices.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <tuple>
#include <utility>

namespace Vertiz {

template <class T>
void CEntidadDigi<T>::Asigna(const CEntidadDigi& otra) {
    this->SetCodigo(otra.GetCodigo());
    this->SetBorrado(otra.EsBorrado());
    CMaximas<T>::operator=(otra);
    m_Puntos = otra.m_Puntos;
    m_Atributos = otra.m_Atributos;
}

template <class T>
void CEntidadDigi<T>::swap(CEntidadDigi& otra) {
    const CTipoEntidad tipo = this->GetTipoEntidad(), otroTipo = otra.GetTipoEntidad();
    std::swap(static_cast<CCabDigi<T>&>(*this), static_cast<CCabDigi<T>&>(otra));
    this->SetTipoEntidad(tipo);
    otra.SetTipoEntidad(otroTipo);
    m_Puntos.swap(otra.m_Puntos);
    m_Atributos.swap(otra.m_Atributos);
}

template <class T>
bool CEntidadDigi<T>::ModificaPunto(unsigned indice, const CCoor3D<T>& punto, bool bMaximas) {
    if (indice >= m_Puntos.size()) return false;
    m_Puntos[indice] = punto;
    if (bMaximas) CalculaMaximas();
    return true;
}

template <class T>
bool CEntidadDigi<T>::BorraPunto(int indice, int cantidad) {
    const auto total = static_cast<std::int64_t>(m_Puntos.size());
    if (indice < 0 || cantidad < 1 || static_cast<std::int64_t>(indice) + cantidad > total) return false;
    m_Puntos.erase(m_Puntos.begin() + indice, m_Puntos.begin() + indice + cantidad);
    CalculaMaximas();
    return true;
}

template <class T>
void CEntidadDigi<T>::BorraPuntos(std::span<const int> indices) {
    BorraIndices(m_Puntos, indices);
    CalculaMaximas();
}

template <class T>
void CEntidadDigi<T>::Clear() {
    m_Puntos.clear();
    this->Borra();
}

template <class T>
void CEntidadDigi<T>::CalculaMaximas() {
    this->Borra();
    for (const CCoor3D<T>& punto : m_Puntos)
        this->Nuevo(punto);
}

template <class T>
void CEntidadDigi<T>::Mover(double x, double y, double z) {
    for (CCoor3D<T>& punto : m_Puntos)
        punto.Actualiza(punto.x + x, punto.y + y, punto.z + z);
    CalculaMaximas();
}

template <class T>
void CEntidadDigi<T>::Escalar(double x, double y, double z) {
    for (CCoor3D<T>& punto : m_Puntos)
        punto.Actualiza(punto.x * x, punto.y * y, punto.z * z);
    CalculaMaximas();
}

template <class T>
void CEntidadDigi<T>::Helmert(double a, double b, double tx, double ty, double tz) {
    for (CCoor3D<T>& punto : m_Puntos) {
        const double x = punto.x, y = punto.y;
        punto.Actualiza(a * x - b * y + tx, b * x + a * y + ty, punto.z + tz);
    }
    CalculaMaximas();
}

template <class T>
void CEntidadDigi<T>::InsertaAtr(const CAtrDigi& atributo) {
    if (!TieneAtr(atributo)) m_Atributos.push_back(atributo);
}

template <class T>
bool CEntidadDigi<T>::TieneAtr(const CAtrDigi& atributo) const {
    return std::find(m_Atributos.begin(), m_Atributos.end(), atributo) != m_Atributos.end();
}

template <class T>
int CEntidadDigi<T>::DameRegistro(short numero) const {
    const auto tieneNumero = [numero](const CAtrDigi& atributo) { return atributo.GetNumero() == numero; };
    const auto ultimo = std::find_if(m_Atributos.rbegin(), m_Atributos.rend(), tieneNumero);
    return ultimo == m_Atributos.rend() ? -1 : ultimo->GetRegistro();
}

template <class T>
bool CEntidadDigi<T>::operator<(const CEntidadDigi& otra) const {
    const auto clave = [](const CEntidadDigi& e) {
        const CCoor3D<T>& minima = e.Minima();
        const CCoor3D<T>& maxima = e.Maxima();
        return std::tuple(e.GetTipoEntidad(), std::cref(e.GetCodigo()), minima.x, minima.y, minima.z, maxima.x,
                          maxima.y, maxima.z);
    };
    return clave(*this) < clave(otra);
}

template class CEntidadDigi<int>;
template class CEntidadDigi<double>;

}  // namespace Vertiz
