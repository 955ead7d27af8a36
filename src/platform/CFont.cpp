// Fonts as objects, over those by handle.

#include "platform/CFont.h"

#include "platform/Objetos.h"

using namespace plataforma;

CFont::CFont() = default;

CFont::~CFont() {
    DeleteObject();
}

BOOL CFont::CreateFontW(int alto, int ancho, int escape, int orientacion, int peso, BYTE cursiva, BYTE subrayada,
                        BYTE tachada, BYTE juego, BYTE salida, BYTE recorte, BYTE calidad, BYTE paso, LPCWSTR cara) {
    if (m_hObject) return AnotaFallo("the object has a font already.");
    return Attach(::CreateFontW(alto, ancho, escape, orientacion, peso, cursiva, subrayada, tachada, juego, salida,
                                recorte, calidad, paso, cara));
}

BOOL CFont::Attach(HFONT h) {
    const auto fuente = Fuentes().Busca(h);
    if (m_hObject || !fuente) return FALSE;
    const std::lock_guard cierre(CerrojoContextos());
    if (fuente->m_pClase) return FALSE;
    fuente->m_pClase = this;
    m_hObject = h;
    return TRUE;
}

HFONT CFont::Detach() {
    const HFONT h = m_hObject;
    if (const auto fuente = Fuentes().Busca(h)) {
        const std::lock_guard cierre(CerrojoContextos());
        fuente->m_pClase = nullptr;
    }
    m_hObject = nullptr;
    return h;
}

BOOL CFont::DeleteObject() {
    return ::DeleteObject(Detach());
}
