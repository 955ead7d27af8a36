#pragma once
// A triangulated terrain.

#include "model/CDataSemilla.h"
#include "model/CDibujo.h"
#include "model/CTriangulo.h"
#include "platform/Exporta.h"

#include <vector>

namespace Vertiz {

/// A triangulated irregular network: points in plan, and triangles between them that know their neighbours. Integers on
/// its seed. It may be moved, not copied: triangles point to its points.
class LUMBRA_API CTIN {
  public:
    explicit CTIN(const CDataSemilla& semilla = CDataSemilla()) : m_Semilla(semilla) {}
    CTIN(CTIN&&) noexcept = default;
    CTIN& operator=(CTIN&&) noexcept = default;
    CTIN(const CTIN&) = delete;
    CTIN& operator=(const CTIN&) = delete;
    ~CTIN() = default;

    [[nodiscard]] const CDataSemilla& GetSemilla() const { return m_Semilla; }
    [[nodiscard]] unsigned CantidadPuntos() const { return static_cast<unsigned>(m_Puntos.size()); }
    /// @param i  below CantidadPuntos()
    [[nodiscard]] const CPuntoTIN& Punto(unsigned i) const { return m_Puntos[i]; }
    /// The deleted ones included.
    [[nodiscard]] unsigned CantidadTriangulos() const { return static_cast<unsigned>(m_Triangulos.size()); }
    /// @param i  below CantidadTriangulos()
    [[nodiscard]] const CTriangulo& Triangulo(unsigned i) const { return m_Triangulos[i]; }

    /// Takes over points and triangles in place of those that it has.
    /// @param triangulos  between points of `puntos`
    void Toma(std::vector<CPuntoTIN> puntos, std::vector<CTriangulo> triangulos);
    void Clear();

    /// Marks as deleted the triangles outside the limits: those from which an even number of limits has to be crossed
    /// to get out. So a limit inside another bounds a hole; without limits all triangles go.
    /// @return how many triangles are left
    unsigned BorraTriangulosSegunLimite();

    /// Appends a closed line of code "TRIANGULO" for each triangle that isn't deleted: its three points,
    /// counterclockwise in plan, and the first one again.
    /// @param dibujo  integers on this terrain's seed
    void DameTriangulos(CDibujo<int>& dibujo) const;

  private:
    CDataSemilla m_Semilla;
    std::vector<CPuntoTIN> m_Puntos;
    std::vector<CTriangulo> m_Triangulos;
};

}  // namespace Vertiz
