// A row of the table of styles.

#include "model/CElementoDigiTab.h"

namespace Vertiz {

CElementoDigiTab::CElementoDigiTab(CTipoEntidad tipo, const CString& codigo, BYTE r, BYTE g, BYTE b, float grosor,
                                   int estilo, const CString& texto, int visible)
    : CTipoDat(tipo, codigo),
      m_nColor(RGB(r, g, b)),
      m_fGrosor(grosor),
      m_nEstilo(estilo),
      m_bVisible(visible != 0),
      m_sTexto(texto) {}

CElementoDigiTab::CElementoDigiTab(int tipo, const CString& codigo, BYTE r, BYTE g, BYTE b, float grosor, int estilo,
                                   const CString& texto, int visible)
    : CElementoDigiTab(CTipoDat(tipo, codigo).GetTipoEntidad(), codigo, r, g, b, grosor, estilo, texto, visible) {}

}  // namespace Vertiz
