#pragma once
// A terrain with what stands on it.

#include "model/CObjetoFichero.h"
#include "model/CTIN.h"
#include "platform/Exporta.h"

#include <memory>
#include <utility>
#include <vector>

namespace Vertiz {

/// A triangulated terrain, and any number of objects on it (buildings, other solids), in the order in which they are
/// shown. It owns them all; copies are whole.
class LUMBRA_API CModeloDigital : public CObjetoFichero {
  public:
    CModeloDigital() = default;
    explicit CModeloDigital(std::unique_ptr<CTIN> tin) : m_pTIN(std::move(tin)) {}
    CModeloDigital(const CModeloDigital& otro);
    CModeloDigital(CModeloDigital&&) noexcept = default;
    CModeloDigital& operator=(const CModeloDigital& otro);
    CModeloDigital& operator=(CModeloDigital&&) noexcept = default;
    ~CModeloDigital() override;

    /// The terrain; null for none.
    [[nodiscard]] CTIN* GetTIN() { return m_pTIN.get(); }
    [[nodiscard]] const CTIN* GetTIN() const { return m_pTIN.get(); }
    void SetTIN(std::unique_ptr<CTIN> tin) { m_pTIN = std::move(tin); }

    [[nodiscard]] unsigned CantidadObjetos() const { return static_cast<unsigned>(m_Objetos.size()); }
    /// Null for an index out of range. The pointer lasts until the object is taken out.
    [[nodiscard]] CTIN* Objeto(unsigned i) { return i < m_Objetos.size() ? m_Objetos[i].get() : nullptr; }
    [[nodiscard]] const CTIN* Objeto(unsigned i) const { return i < m_Objetos.size() ? m_Objetos[i].get() : nullptr; }
    /// Adds an object after the others. @return its index
    unsigned InsertaObjeto(std::unique_ptr<CTIN> objeto);
    /// Takes an object out; those after it move up. @return false for an index out of range
    bool BorraObjeto(unsigned i);

    // ---- CObjetoFichero ----
    /// Without terrain and objects.
    void Clear() override;
    /// The extents of terrain and objects, local to the terrain, or each to its own origin without one.
    [[nodiscard]] CMaximas<double> GetMaximasDouble() const override;
    /// Those of the terrain alone.
    void SetMaximasDouble(const CMaximas<double>& maximas) override;
    int Transformacion(const CDataHelmertNTV2& data) override;
    void ActualizaCantidades() override;

    /// Puts convex pieces, closed and counterclockwise, in place of the closed lines of a drawing; see
    /// CDibujo::GeneraConvexos.
    /// @param dibujo  outlines, as CTIN::Limites gives them
    /// @return 1; 0, and the drawing stays as it was
    int Convexos(CDibujo<int>& dibujo) const;

  private:
    std::unique_ptr<CTIN> m_pTIN;
    std::vector<std::unique_ptr<CTIN>> m_Objetos;
};

}  // namespace Vertiz
