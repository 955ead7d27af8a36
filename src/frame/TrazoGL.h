#pragma once
// Internal. Lines in the styles of the digitising tables.

#include "frame/ColorGL.h"
#include "frame/ContrastaColor.h"
#include "model/CElementoDigiTab.h"
#include "platform/OpenGL.h"

/// What is drawn when no table knows a code: dark grey, solid, of a width that the drawer decides.
inline Vertiz::CElementoDigiTab ElementoPorDefecto(const wchar_t* codigo) {
    return Vertiz::CElementoDigiTab(Vertiz::CTipoEntidad::Linea, codigo, 70, 70, 70, 0.0F, 0, L"", 1);
}

/// Makes an element's colour the current one, moved away from the background where it can't be told from it.
inline void FijaColorTrazo(const Vertiz::CElementoDigiTab& elemento, int nColorFondo) {
    COLORREF color = elemento.GetColor();
    ContrastaColor(color, static_cast<COLORREF>(nColorFondo));
    FijaColorGL(static_cast<int>(color));
}

/// Sets the stipple of a style: 0 solid, 1 to 4 patterns; any other keeps the pattern used before.
inline void FijaEstiloTrazo(int nEstilo) {
    constexpr GLushort kPatrones[] = {0x00FF, 0x0101, 0x1C47, 0x3927};
    if (nEstilo == 0) {
        glDisable(GL_LINE_STIPPLE);
        return;
    }
    glEnable(GL_LINE_STIPPLE);
    if (nEstilo >= 1 && nEstilo <= 4) glLineStipple(1, kPatrones[nEstilo - 1]);
}
