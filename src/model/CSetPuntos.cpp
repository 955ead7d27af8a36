// The cloud: points, and beside them what a flight tells of each.

#include "model/CSetPuntos.h"

#include "model/BorraIndices.h"

namespace Vertiz {

template <class T>
void CSetPuntos<T>::Asigna(const CEntidadDigi<T>& otra) {
    CEntidadDigi<T>::Asigna(otra);
    const auto* set = dynamic_cast<const CSetPuntos*>(&otra);
    m_Info = set ? set->m_Info : std::vector<tipoAero3>();
}

template <class T>
void CSetPuntos<T>::swap(CEntidadDigi<T>& otra) {
    if (auto* set = dynamic_cast<CSetPuntos*>(&otra)) {
        m_Info.swap(set->m_Info);
    } else {
        m_Info.clear();
    }
    CEntidadDigi<T>::swap(otra);
}

template <class T>
void CSetPuntos<T>::Inserta(const CCoor3D<T>& punto, const tipoAero3& info) {
    m_Info.resize(this->NPuntos());
    this->Agrega(punto);
    m_Info.push_back(info);
}

template <class T>
bool CSetPuntos<T>::BorraPunto(int indice, int cantidad) {
    if (!CEntidadDigi<T>::BorraPunto(indice, cantidad)) return false;
    if (TieneInfo()) m_Info.erase(m_Info.begin() + indice, m_Info.begin() + indice + cantidad);
    return true;
}

template <class T>
void CSetPuntos<T>::BorraPuntos(std::span<const int> indices) {
    CEntidadDigi<T>::BorraPuntos(indices);
    BorraIndices(m_Info, indices);
}

template <class T>
void CSetPuntos<T>::Clear() {
    CEntidadDigi<T>::Clear();
    m_Info.clear();
}

template class CSetPuntos<int>;
template class CSetPuntos<double>;

}  // namespace Vertiz
