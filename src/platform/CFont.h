#pragma once
// A font and its handle.

#include "platform/Exporta.h"
#include "platform/Fuentes.h"
#include "platform/Tipos.h"

/// A font that is the owner of its handle.
class LUMBRA_API CFont {
  public:
    CFont();
    ~CFont();
    CFont(const CFont&) = delete;
    CFont& operator=(const CFont&) = delete;

    /// Describes a font: see the function of this name in Fuentes.h.
    /// @return FALSE when this object has a font already, or when the height is refused
    BOOL CreateFontW(int alto, int ancho, int escape, int orientacion, int peso, BYTE cursiva, BYTE subrayada,
                     BYTE tachada, BYTE juego, BYTE salida, BYTE recorte, BYTE calidad, BYTE paso, LPCWSTR cara);

    /// Takes a font over: it is deleted with this object. @return FALSE when it is another object's
    BOOL Attach(HFONT h);
    /// Gives the font up, undeleted.
    HFONT Detach();

    /// Deletes the font. One that is selected in a device context serves there until another is selected.
    BOOL DeleteObject();

    HFONT GetSafeHandle() const { return m_hObject; }
    operator HFONT() const { return m_hObject; }

    HFONT m_hObject = nullptr;
};
