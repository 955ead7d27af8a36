#pragma once
// Any entity of a drawing: what lines, texts and clouds have in common. The points of all of them stand in one vector
// here, so that reading a point costs no virtual call.

#include "model/CAtrDigi.h"
#include "model/CCabDigi.h"

#include <memory>
#include <span>
#include <vector>

namespace Vertiz {

/// An entity: header, attributes and points. T is int (units of 1 / precision) or double. Copies are deep.
///
/// The box of the header follows the points through the operations of this class. Whoever writes to a point by
/// reference, or by ModificaPunto without bringing the box up to date, calls CalculaMaximas afterwards.
template <class T>
class LUMBRA_API CEntidadDigi : public CCabDigi<T> {
  public:
    virtual ~CEntidadDigi() = default;

    /// A copy of the whole entity, the caller's.
    [[nodiscard]] virtual std::unique_ptr<CEntidadDigi> Clona() const = 0;

    /// Takes over code, deletion mark, attributes and points of another entity; the kind stays this one's.
    virtual void Asigna(const CEntidadDigi& otra);
    /// Exchanges the same things.
    virtual void swap(CEntidadDigi& otra);

    [[nodiscard]] unsigned NPuntos() const { return static_cast<unsigned>(m_Puntos.size()); }
    /// A point by its index; the origin for an index out of range.
    [[nodiscard]] const CCoor3D<T>& Punto(int indice) const {
        return static_cast<std::size_t>(indice) < m_Puntos.size() ? m_Puntos[static_cast<std::size_t>(indice)]
                                                                  : s_Origen;
    }
    [[nodiscard]] std::span<const CCoor3D<T>> Puntos() const { return m_Puntos; }
    void Reserva(std::size_t cantidad) { m_Puntos.reserve(cantidad); }

    /// Replaces a point.
    /// @param bMaximas true brings the box up to date
    /// @return false for an index out of range
    bool ModificaPunto(unsigned indice, const CCoor3D<T>& punto, bool bMaximas);

    /// Deletes `cantidad` points from an index on.
    /// @return false, and nothing changes, when they aren't all there
    virtual bool BorraPunto(int indice, int cantidad);
    /// Deletes the points at the given indices, in ascending order, in one pass. Indices out of range are passed over.
    virtual void BorraPuntos(std::span<const int> indices);
    /// Deletes all points; header and attributes stay.
    virtual void Clear();

    /// Works the box out anew from the points.
    virtual void CalculaMaximas();

    /// Moves by real amounts in the drawing's units; integers are rounded.
    void Mover(double x, double y, double z);
    void Mover(const CCoor3D<double>& v) { Mover(v.x, v.y, v.z); }
    /// Multiplies the coordinates, about the origin.
    virtual void Escalar(double x, double y, double z);
    /// Similarity in plan: x' = a x - b y + tx, y' = b x + a y + ty; heights move by tz.
    virtual void Helmert(double a, double b, double tx, double ty, double tz = 0.0);

    /// Adds an attribute, unless the entity has the same one already.
    void InsertaAtr(const CAtrDigi& atributo);
    [[nodiscard]] bool TieneAtr(const CAtrDigi& atributo) const;
    [[nodiscard]] const std::vector<CAtrDigi>& Atributos() const { return m_Atributos; }
    /// Value of the attribute with a number, the last one added when there are several.
    /// @return -1 when the entity hasn't got it
    [[nodiscard]] int DameRegistro(short numero) const;

    /// At least three points, and the last one the same as the first in x, y and z.
    [[nodiscard]] bool EsCerrada() const { return m_Puntos.size() >= 3 && m_Puntos.front() == m_Puntos.back(); }

    /// By kind, then code, then the box's lowest and highest corner.
    [[nodiscard]] bool operator<(const CEntidadDigi& otra) const;

  protected:
    explicit CEntidadDigi(const CTipoDat& tipo) : CCabDigi<T>(tipo) {}
    CEntidadDigi(const CEntidadDigi&) = default;
    CEntidadDigi(CEntidadDigi&&) noexcept = default;
    CEntidadDigi& operator=(const CEntidadDigi&) = default;
    CEntidadDigi& operator=(CEntidadDigi&&) noexcept = default;

    /// Code, deletion mark, attributes and points of an entity of any coordinates, as one of the given kind.
    template <class U>
    CEntidadDigi(const CEntidadDigi<U>& otra, CTipoEntidad tipo)
        : CCabDigi<T>(CTipoDat(tipo, otra.GetCodigo()), otra.GetMaximas()),
          m_Puntos(otra.Puntos().begin(), otra.Puntos().end()),
          m_Atributos(otra.Atributos()) {
        this->SetBorrado(otra.EsBorrado());
    }

    void Agrega(const CCoor3D<T>& punto) {
        m_Puntos.push_back(punto);
        this->Nuevo(punto);
    }

    std::vector<CCoor3D<T>> m_Puntos;

  private:
    inline static const CCoor3D<T> s_Origen{};

    std::vector<CAtrDigi> m_Atributos;
};

extern template class CEntidadDigi<int>;
extern template class CEntidadDigi<double>;

}  // namespace Vertiz
