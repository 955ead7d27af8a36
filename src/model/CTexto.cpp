// The text, and the box that it takes up.

#include "model/CTexto.h"

#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace Vertiz {
namespace {

constexpr double kCentesimas = 100.0 * 180.0 / std::numbers::pi;  // hundredths of a degree in a radian

}  // namespace

template <class T>
CTexto<T>::CTexto(const CString& codigo, const CCoor3D<T>& punto, const CString& texto, double altura,
                  double orientacion, CJustificacion justificacion)
    : CEntidadDigi<T>(CTipoDat(CTipoEntidad::Texto, codigo)),
      m_sTexto(texto),
      m_dAltura(altura),
      m_dOrientacion(orientacion),
      m_nJustificacion(justificacion) {
    this->m_Puntos.push_back(punto);
    CTexto::CalculaMaximas();
}

template <class T>
void CTexto<T>::Asigna(const CEntidadDigi<T>& otra) {
    if (const auto* texto = dynamic_cast<const CTexto*>(&otra)) {
        m_sTexto = texto->m_sTexto;
        m_dAltura = texto->m_dAltura;
        m_dOrientacion = texto->m_dOrientacion;
        m_nJustificacion = texto->m_nJustificacion;
    }
    CEntidadDigi<T>::Asigna(otra);
    CalculaMaximas();
}

template <class T>
void CTexto<T>::swap(CEntidadDigi<T>& otra) {
    CEntidadDigi<T>::swap(otra);
    if (auto* texto = dynamic_cast<CTexto*>(&otra)) {
        std::swap(m_sTexto, texto->m_sTexto);
        std::swap(m_dAltura, texto->m_dAltura);
        std::swap(m_dOrientacion, texto->m_dOrientacion);
        std::swap(m_nJustificacion, texto->m_nJustificacion);
    }
    CalculaMaximas();
    otra.CalculaMaximas();
}

template <class T>
void CTexto<T>::SetTexto(const CString& texto) {
    m_sTexto = texto;
    CalculaMaximas();
}

template <class T>
void CTexto<T>::SetAltura(double altura) {
    m_dAltura = altura;
    CalculaMaximas();
}

template <class T>
void CTexto<T>::SetOrientacion(double orientacion) {
    m_dOrientacion = orientacion;
    CalculaMaximas();
}

template <class T>
void CTexto<T>::SetJustificacion(CJustificacion justificacion) {
    m_nJustificacion = justificacion;
    CalculaMaximas();
}

template <class T>
void CTexto<T>::SetPunto(const CCoor3D<T>& punto) {
    this->m_Puntos.assign(1, punto);
    CalculaMaximas();
}

// A place of the text, from its lower left corner: `ancho` 0 to 1 along the line of writing, `alto` 0 to 1 across.
template <class T>
CCoor3D<double> CTexto<T>::Esquina(double ancho, double alto) const {
    const int justificacion = static_cast<int>(m_nJustificacion);
    const double largo = m_sTexto.GetLength() * AnchoLetra * m_dAltura;
    const CCoor3D<double> desde(this->Punto(0));
    const CCoor3D<double> v((ancho - justificacion % 3 * 0.5) * largo, (alto - justificacion / 3 * 0.5) * m_dAltura,
                            0.0);
    return desde + v.Rotar(m_dOrientacion / kCentesimas, {0.0, 0.0, 1.0});
}

template <class T>
CCoor3D<T> CTexto<T>::PuntoPintar() const {
    return CCoor3D<T>(Esquina(0.0, 0.0));
}

template <class T>
CLinea<T> CTexto<T>::Limites(bool bGirado) const {
    std::array<CCoor3D<double>, 4> esquinas{Esquina(0, 0), Esquina(1, 0), Esquina(1, 1), Esquina(0, 1)};
    if (!bGirado) {
        CMaximas<double> caja;
        for (const auto& esquina : esquinas)
            caja.Nuevo(esquina);
        const CCoor3D<double>&a = caja.Minima(), &b = caja.Maxima();
        esquinas = {CCoor3D<double>(a.x, a.y, a.z), {b.x, a.y, a.z}, {b.x, b.y, a.z}, {a.x, b.y, a.z}};
    }
    CLinea<T> marco(this->GetCodigo());
    for (const auto& esquina : esquinas)
        marco << CCoor3D<T>(esquina);
    return marco;
}

template <class T>
void CTexto<T>::CalculaMaximas() {
    CEntidadDigi<T>::CalculaMaximas();
    if (this->NPuntos() != 0) this->Nuevo(CMaximas<T>(Limites(true)));
}

template <class T>
void CTexto<T>::Escalar(double x, double y, double z) {
    m_dAltura *= std::sqrt(std::abs(x * y));
    CEntidadDigi<T>::Escalar(x, y, z);
}

template <class T>
void CTexto<T>::Helmert(double a, double b, double tx, double ty, double tz) {
    m_dAltura *= std::hypot(a, b);
    // A text that faces the viewer goes on doing so where nothing turns.
    m_dOrientacion += std::atan2(b, a) * kCentesimas;
    CEntidadDigi<T>::Helmert(a, b, tx, ty, tz);
}

template class CTexto<int>;
template class CTexto<double>;

}  // namespace Vertiz
