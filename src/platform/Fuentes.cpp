// Fonts by handle: what they were asked to be, and where they are selected. Their glyphs are made in GlifosGL.cpp.

#include "platform/Fuentes.h"

#include "platform/Conversiones.h"
#include "platform/Objetos.h"

#include <string>

namespace plataforma {

Tabla<HFONT, Fuente>& Fuentes() {
    static auto& t = *new Tabla<HFONT, Fuente>;
    return t;
}

}  // namespace plataforma

using namespace plataforma;

HFONT CreateFontW(int alto, int, int, int, int peso, DWORD cursiva, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD,
                  LPCWSTR cara) {
    constexpr int kAltoMaximo = 32767, kAltoPropio = -16;
    if (alto < -kAltoMaximo || alto > kAltoMaximo) {
        AnotaFallo("no font is " + std::to_string(alto) + " pixels high.");
        return nullptr;
    }
    auto fuente = std::make_shared<Fuente>();
    fuente->m_Cara = cara && *cara ? AUtf8(cara) : "Arial";
    fuente->m_nAlto = alto != 0 ? alto : kAltoPropio;
    fuente->m_nPeso = peso != FW_DONTCARE ? peso : FW_NORMAL;
    fuente->m_bCursiva = cursiva != 0;
    const HFONT h = Fuentes().Inserta(fuente);
    fuente->m_hFuente = h;  // nobody else knows the handle yet
    return h;
}

BOOL DeleteObject(HFONT fuente) {
    return Fuentes().Saca(fuente) != nullptr;
}

HFONT SelectObject(HDC hdc, HFONT fuente) {
    const auto dispositivo = Dispositivos().Busca(hdc);
    auto nueva = Fuentes().Busca(fuente);
    if (!dispositivo || !nueva) {
        AnotaFallo("there is no font to select, or no device context.");
        return nullptr;
    }
    const std::lock_guard cierre(CerrojoContextos());
    dispositivo->m_Fuente.swap(nueva);
    return Fuentes().Busca(nueva->m_hFuente) ? nueva->m_hFuente : dispositivo->m_FuentePropia.GetSafeHandle();
}

CFont* CDC::SelectObject(CFont* fuente) {
    const HFONT anterior = fuente ? ::SelectObject(m_hDC, fuente->GetSafeHandle()) : nullptr;
    const auto dispositivo = Dispositivos().Busca(m_hDC);
    const auto vieja = Fuentes().Busca(anterior);
    if (!dispositivo || !vieja) return nullptr;
    const std::lock_guard cierre(CerrojoContextos());
    return vieja->m_pClase ? vieja->m_pClase : &dispositivo->m_FuentePropia;
}
