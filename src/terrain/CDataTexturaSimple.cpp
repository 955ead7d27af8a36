// The copy of an area's colour.

#include "terrain/CDataTexturaSimple.h"

void CDataTexturaSimple::Duplica(const CDataTexturaSimple& otra) {
    m_nColor = otra.m_nColor;
    m_pDibujo = otra.m_pDibujo ? otra.m_pDibujo->Clona() : nullptr;
}
