#pragma once
// What a report of a fault in the graphics needs to know: which way of getting a context serves here, what it can do,
// and why each other way doesn't.

#include "platform/Exporta.h"

#include <string>
#include <vector>

/// One way of getting a rendering context. Texts are UTF-8.
struct CViaGL {
    std::string m_Nombre;       ///< short name: "glx", "egl-device", "egl-surfaceless"
    std::string m_Descripcion;  ///< one line
    bool m_bSirve = false;      ///< this one serves the process
    std::string m_Motivo;       ///< when it doesn't: why, with what to install or set; empty when it serves
};

/// The rendering contexts of this machine.
struct CDiagnosticoGL {
    std::vector<CViaGL> m_Vias;  ///< in the order in which they are tried
    bool m_bHay = false;         ///< one of them serves; otherwise nothing below is filled in
    std::string m_Via;           ///< its name
    std::string m_Fabricante;    ///< GL_VENDOR
    std::string m_Renderizador;  ///< GL_RENDERER
    std::string m_Version;       ///< GL_VERSION
    std::string m_VersionGLU;    ///< version of the GLU library
    bool m_bDirecto = false;     ///< rendering doesn't go through a display server
    bool m_bVentanas = false;    ///< windows can be shown
    int m_nMaxTextura = 0;       ///< largest side of a texture, pixels
    int m_nMaxAnchoVista = 0;    ///< largest picture, pixels
    int m_nMaxAltoVista = 0;
    int m_nBitsProfundidad = 0;  ///< of the depth buffer
    int m_nBitsEstarcido = 0;    ///< of the stencil buffer
    int m_nMaxAnidamiento = 0;   ///< how deep display lists can call each other
    int m_nMaxLuces = 0;
    int m_nMaxPilaVista = 0;           ///< depth of the modelview stack
    bool m_bPresentaCopiando = false;  ///< windows are filled by copying: the driver's swap loses the front buffer
};

/// Looks at the contexts of this machine, trying also the ways that don't serve. Leaves current what was current.
LUMBRA_API CDiagnosticoGL DiagnosticoGL();

/// @return why the last function of Contextos.h, CDC.h or CBitmap.h that failed on this thread did; empty when none has
LUMBRA_API std::string UltimoFalloGL();
