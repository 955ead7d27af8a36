#pragma once
// The digitising table: which code is drawn how.

#include "model/CElementoDigiTab.h"

#include <vector>

namespace Vertiz {

/// A table of styles, looked up by the kind and code of an entity.
///
/// Rows keep the order in which they came. A look-up takes logarithmic time. It prefers a row of the very code to one
/// whose code is a pattern ("*" for any characters), and then a row of the very kind to one for lines, which serves the
/// kinds that have no row of their own. Among rows that serve equally well the first one counts.
/// @thread several threads may look up in a table at once while nobody changes it
class LUMBRA_API CDigiTab {
  public:
    unsigned Cantidad() const { return unsigned(m_Elementos.size()); }
    /// @param i below Cantidad(). The reference lasts until the table changes.
    const CElementoDigiTab& operator[](unsigned i) const { return m_Elementos[i]; }

    /// Adds a row at the end.
    /// @param sustituye  true: a row of the same kind and code is replaced where it stands; false: it stays as it is
    /// @return whether the element is now in the table
    bool Inserta(const CElementoDigiTab& elemento, bool sustituye);
    /// Replaces row i.
    /// @param repetido  whether the kind and code may be those of another row already
    /// @return false, with nothing changed, when there is no row i or the code would stand twice and may not
    bool ModificaElemento(unsigned i, const CElementoDigiTab& elemento, bool repetido);

    /// The style of an entity.
    /// @param elemento  out: the row found; when there is none, it stays as it was
    /// @return whether there is a row for it
    bool GetElemento(const CTipoDat& tipo, CElementoDigiTab& elemento) const;
    bool GetElemento(const CString& codigo, CTipoEntidad tipo, CElementoDigiTab& elemento) const;
    /// The same without copying: the row found, or null. It lasts until the table changes.
    const CElementoDigiTab* Busca(const CString& codigo, CTipoEntidad tipo) const;

    /// A table of the rows that are not visible.
    CDigiTab DameOcultos() const;
    void clear();

  private:
    auto Lugar(const CString& codigo, unsigned i) const;
    void Coloca(unsigned i);
    void Descoloca(unsigned i);
    int BuscaRepetido(const CTipoDat& tipo) const;

    std::vector<CElementoDigiTab> m_Elementos;
    std::vector<unsigned> m_Orden;     // rows by code, then by place
    std::vector<unsigned> m_Patrones;  // rows whose code is a pattern
};

}  // namespace Vertiz
