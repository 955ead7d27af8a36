// From options to the settings of a scene and back, through the settings file.

#include "Ajustes.h"

#include "platform/CWinApp.h"
#include "platform/Conversiones.h"
#include "platform/Numeros.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr const wchar_t* kSeccion = L"View";
constexpr const wchar_t* kVentana = L"Window";

// The reverse of PonOpciones. A settings file may hold anything: what the options have no place for stays as it was.
void Toma(OpcionesVista& o, const CDataGL& data) {
    constexpr int kRGB = 0xFFFFFF;
    o.colorFondo = data.m_nColorFondo & kRGB;
    o.colorDEM = data.m_nColorDEM & kRGB;
    if (const unsigned m = data.m_nModoRelleno; m <= 2 || m == 6) o.color = m;
    if (data.m_nQuad <= 2) o.malla = data.m_nQuad;
    o.sombraCeldas = data.m_nSombraCeldas != 0;
    o.base = data.m_bBase != 0;
    o.limites = data.m_bLimites != 0;
    o.ejes = data.m_nEjes != 0;
    o.perspectiva = data.m_bOrto == 0;
    o.luz = data.m_bRelleno != 0;
}

int Lado(CWinApp& app, const wchar_t* clave, int defecto) {
    constexpr int kMenor = 100, kMayor = 8192;
    const auto leido = static_cast<int>(app.GetProfileInt(kVentana, clave, defecto));
    return leido >= kMenor && leido <= kMayor ? leido : defecto;
}

double Exageracion(CWinApp& app) {
    const std::string texto = AUtf8(app.GetProfileString(kVentana, L"Exaggeration").Texto());
    double valor = 0.0;
    std::from_chars(texto.data(), texto.data() + texto.size(), valor);
    return valor >= 0.001 && valor <= 1000.0 ? valor : 0.0;
}

}  // namespace

void RecuerdaAjustes(OpcionesVista& opciones) {
    CDataGL data;
    PonOpciones(data, opciones);
    data.GetProfile(kSeccion);
    Toma(opciones, data);
    CWinApp& app = *AfxGetApp();
    opciones.lienzo.ancho = Lado(app, L"Width", opciones.lienzo.ancho);
    opciones.lienzo.alto = Lado(app, L"Height", opciones.lienzo.alto);
    opciones.exageracion = Exageracion(app);
}

bool GuardaAjustes(const CGL& escena, int ancho, int alto, double exageracion) {
    // The ramp and the sky are those of one model.
    CDataGL data = escena.GetData();
    data.m_GamaColor = CDataGL().m_GamaColor;
    data.m_SzImagenFondo = CString();
    data.m_bImagenFondo = 0;
    data.WriteProfile(kSeccion);
    CWinApp& app = *AfxGetApp();
    const CString factor = exageracion > 0.0 ? CString(TextoGeneral(exageracion, 6).c_str()) : CString();
    return app.WriteProfileInt(kVentana, L"Width", ancho) && app.WriteProfileInt(kVentana, L"Height", alto) &&
           app.WriteProfileString(kVentana, L"Exaggeration", factor);
}
