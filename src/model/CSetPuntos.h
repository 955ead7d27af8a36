#pragma once
// Point clouds as entities of a drawing. A point costs 16 bytes, 20 with colour.

#include "model/CEntidadDigi.h"

#include <cstdint>

namespace Vertiz {

/// What a cloud's point has beside its coordinates and its attribute word: four bytes, the last three its colour.
struct tipoAero3 {
    std::uint8_t reserva = 0;
    std::uint8_t rojo = 0;
    std::uint8_t verde = 0;
    std::uint8_t azul = 0;

    [[nodiscard]] bool operator==(const tipoAero3&) const = default;
};
static_assert(sizeof(tipoAero3) == 4);

/// A set of points. T is int (units of 1 / precision) or double.
///
/// A point's `Tipo` is its attribute word: bits 0 to 15 intensity, 16 to 18 return number, 19 to 21 number of returns,
/// 24 to 31 class.
template <class T>
class LUMBRA_API CSetPuntos : public CEntidadDigi<T> {
  public:
    CSetPuntos() : CSetPuntos(CString()) {}
    explicit CSetPuntos(const CString& codigo) : CEntidadDigi<T>(CTipoDat(CTipoEntidad::SetPuntos, codigo)) {}
    /// From the other kind of coordinates; reals are rounded to integers.
    template <class U>
    explicit CSetPuntos(const CSetPuntos<U>& otro)
        : CEntidadDigi<T>(otro, CTipoEntidad::SetPuntos), m_Info(otro.Infos().begin(), otro.Infos().end()) {}

    [[nodiscard]] std::unique_ptr<CEntidadDigi<T>> Clona() const override {
        return std::make_unique<CSetPuntos>(*this);
    }
    /// From another set, its records too; from any other entity, without records.
    void Asigna(const CEntidadDigi<T>& otra) override;
    void swap(CEntidadDigi<T>& otra) override;

    /// Appends a point without a record of its own.
    CSetPuntos& operator<<(const CCoor3D<T>& punto) {
        this->Agrega(punto);
        if (TieneInfo()) m_Info.emplace_back();
        return *this;
    }
    /// Appends a point with its record; from the first one on, all points of the set have one.
    void Inserta(const CCoor3D<T>& punto, const tipoAero3& info);

    /// The points have records.
    [[nodiscard]] bool TieneInfo() const { return !m_Info.empty(); }
    /// A point's record; all zeros when there is none.
    [[nodiscard]] const tipoAero3& Info(unsigned indice) const {
        return indice < m_Info.size() ? m_Info[indice] : s_SinInfo;
    }
    [[nodiscard]] std::span<const tipoAero3> Infos() const { return m_Info; }

    bool BorraPunto(int indice, int cantidad) override;
    void BorraPuntos(std::span<const int> indices) override;
    void Clear() override;

    /// The fields of an attribute word.
    [[nodiscard]] static unsigned Intensidad(const CCoor3D<T>& punto) { return Palabra(punto) & 0xFFFFU; }
    [[nodiscard]] static unsigned Eco(const CCoor3D<T>& punto) { return Palabra(punto) >> 16 & 7U; }
    [[nodiscard]] static unsigned NEcos(const CCoor3D<T>& punto) { return Palabra(punto) >> 19 & 7U; }
    [[nodiscard]] static unsigned Clase(const CCoor3D<T>& punto) { return Palabra(punto) >> 24; }

  private:
    [[nodiscard]] static std::uint32_t Palabra(const CCoor3D<T>& punto) {
        return static_cast<std::uint32_t>(punto.GetTipoCompleto());
    }

    inline static const tipoAero3 s_SinInfo{};

    std::vector<tipoAero3> m_Info;
};

extern template class CSetPuntos<int>;
extern template class CSetPuntos<double>;

}  // namespace Vertiz
