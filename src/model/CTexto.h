#pragma once
// Texts of a drawing, and the marks of a scene.

#include "model/CLinea.h"

namespace Vertiz {

/// Which place of a text its point is. Rows from the bottom, columns from the left.
enum class CJustificacion : std::uint8_t {
    AbajoIzquierda,
    AbajoCentro,
    AbajoDerecha,
    MedioIzquierda,
    MedioCentro,
    MedioDerecha,
    ArribaIzquierda,
    ArribaCentro,
    ArribaDerecha,
};

/// A text with one point, its anchor. T is int (units of 1 / precision) or double.
///
/// Its size without a font is reckoned at AnchoLetra heights for each character.
template <class T>
class LUMBRA_API CTexto : public CEntidadDigi<T> {
  public:
    /// Width of a character over its height.
    static constexpr double AnchoLetra = 0.6;

    CTexto() : CTexto(CString(), CCoor3D<T>(), CString(), 0.0) {}
    /// @param altura      height of the letters, units of the coordinates
    /// @param orientacion hundredths of a degree, counterclockwise from +x; 0 also means that it faces the viewer
    CTexto(const CString& codigo, const CCoor3D<T>& punto, const CString& texto, double altura,
           double orientacion = 0.0, CJustificacion justificacion = CJustificacion::AbajoIzquierda);
    /// From the other kind of coordinates.
    template <class U>
    explicit CTexto(const CTexto<U>& otro)
        : CEntidadDigi<T>(otro, CTipoEntidad::Texto),
          m_sTexto(otro.Texto()),
          m_dAltura(otro.GetAltura()),
          m_dOrientacion(otro.GetOrientacion()),
          m_nJustificacion(otro.GetJustificacion()) {
        CalculaMaximas();
    }

    [[nodiscard]] std::unique_ptr<CEntidadDigi<T>> Clona() const override { return std::make_unique<CTexto>(*this); }
    /// From another text, its string and size too.
    void Asigna(const CEntidadDigi<T>& otra) override;
    void swap(CEntidadDigi<T>& otra) override;

    [[nodiscard]] const CString& Texto() const { return m_sTexto; }
    [[nodiscard]] double GetAltura() const { return m_dAltura; }
    [[nodiscard]] double GetOrientacion() const { return m_dOrientacion; }
    [[nodiscard]] CJustificacion GetJustificacion() const { return m_nJustificacion; }
    /// These bring the box up to date.
    void SetTexto(const CString& texto);
    void SetAltura(double altura);
    void SetOrientacion(double orientacion);
    void SetJustificacion(CJustificacion justificacion);
    void SetPunto(const CCoor3D<T>& punto);

    /// Where painting starts: the lower left corner of the text.
    [[nodiscard]] CCoor3D<T> PuntoPintar() const;

    /// The frame: a line of four corners at the anchor's height, not closed.
    /// @param bGirado true turns it with the text, counterclockwise from where painting starts; false gives the
    ///                rectangle along the axes that holds it, from its lowest corner
    [[nodiscard]] CLinea<T> Limites(bool bGirado) const;

    /// The box holds the whole frame.
    void CalculaMaximas() override;
    /// The height of the letters goes with the mean scale in plan.
    void Escalar(double x, double y, double z) override;
    void Helmert(double a, double b, double tx, double ty, double tz = 0.0) override;

  private:
    [[nodiscard]] CCoor3D<double> Esquina(double ancho, double alto) const;

    CString m_sTexto;
    double m_dAltura = 0.0;
    double m_dOrientacion = 0.0;
    CJustificacion m_nJustificacion = CJustificacion::AbajoIzquierda;
};

extern template class CTexto<int>;
extern template class CTexto<double>;

}  // namespace Vertiz
