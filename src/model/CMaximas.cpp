// What boxes do that is no matter of a few comparisons.

#include "model/CMaximas.h"

#include <numeric>

namespace Vertiz {
namespace {

// Half way between the two; integers are rounded down, in 64 bits.
int Medio(int a, int b) {
    return static_cast<int>((static_cast<std::int64_t>(a) + b) >> 1);
}
double Medio(double a, double b) {
    return std::midpoint(a, b);
}

}  // namespace

template <class T>
CCoor3D<T> CMaximas<T>::Centro(bool bConCota) const {
    return {Medio(m_Minima.x, m_Maxima.x), Medio(m_Minima.y, m_Maxima.y),
            bConCota ? Medio(m_Minima.z, m_Maxima.z) : T{0}};
}

template <class T>
void CMaximas<T>::DameVertices(std::vector<CCoor3D<T>>& vertices) const {
    vertices.clear();
    if (EstanVacias(true)) return;
    for (const T z : {m_Minima.z, m_Maxima.z}) {
        vertices.emplace_back(m_Minima.x, m_Minima.y, z);
        vertices.emplace_back(m_Maxima.x, m_Minima.y, z);
        vertices.emplace_back(m_Maxima.x, m_Maxima.y, z);
        vertices.emplace_back(m_Minima.x, m_Maxima.y, z);
    }
}

template <class T>
CMaximas<T>& CMaximas<T>::operator/=(double k) {
    if (EstanVacias(true)) return *this;
    m_Maxima /= k;
    m_Minima /= k;
    if (k < 0.0) std::swap(m_Maxima, m_Minima);
    return *this;
}

template <class T>
CMaximas<T>& CMaximas<T>::operator-=(const CCoor3D<T>& c) {
    if (EstanVacias(true)) return *this;
    m_Maxima -= c;
    m_Minima -= c;
    return *this;
}

template class CMaximas<int>;
template class CMaximas<double>;

}  // namespace Vertiz
