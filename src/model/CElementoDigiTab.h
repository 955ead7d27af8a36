#pragma once
// One row of a digitising table: how the entities of one code are drawn.

#include "model/CTipoDat.h"
#include "platform/CString.h"
#include "platform/Exporta.h"
#include "platform/Tipos.h"

namespace Vertiz {

/// One row of a digitising table: for the entities of one kind and code their colour, width and style of line, and
/// whether they are shown. Kind and code are those of CTipoDat; in the code "*" stands for any characters, or none.
class LUMBRA_API CElementoDigiTab : public CTipoDat {
  public:
    CElementoDigiTab() = default;
    /// @param r,g,b    colour, 0 to 255 each
    /// @param grosor   width of line in pixels; 0 leaves it to whoever draws
    /// @param estilo   style of line, see GetEstilo
    /// @param texto    description for people
    /// @param visible  0 hides the entities
    CElementoDigiTab(CTipoEntidad tipo, const CString& codigo, BYTE r, BYTE g, BYTE b, float grosor, int estilo,
                     const CString& texto, int visible);
    /// The kind by its number.
    CElementoDigiTab(int tipo, const CString& codigo, BYTE r, BYTE g, BYTE b, float grosor, int estilo,
                     const CString& texto, int visible);

    COLORREF GetColor() const { return m_nColor; }
    float GetGrosor() const { return m_fGrosor; }
    /// 0 solid, 1 long dashes, 2 dots, 3 dashes and dots, 4 dashes and two dots; others as the last style used.
    int GetEstilo() const { return m_nEstilo; }
    const CString& GetTexto() const { return m_sTexto; }
    bool EsVisible() const { return m_bVisible; }
    void SetVisible(int visible) { m_bVisible = visible != 0; }

  private:
    COLORREF m_nColor = 0;
    float m_fGrosor = 0;
    int m_nEstilo = 0;
    bool m_bVisible = true;
    CString m_sTexto;
};

}  // namespace Vertiz
