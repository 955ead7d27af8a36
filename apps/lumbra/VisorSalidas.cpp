// What a window writes: pages and pictures, into files of the current folder that are new each time.

#include "Png.h"
#include "Visor.h"
#include "platform/CabeceraDIB.h"
#include "platform/Conversiones.h"
#include "platform/DiagnosticoGL.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <vector>

std::string Visor::Libre(const char* extension) const {
    return NombreLibre(m_Opciones.fichero, extension, [](const std::string& nombre) {
        std::error_code error;
        return std::filesystem::exists(std::filesystem::symlink_status(nombre, error));
    });
}

// Paper of the window's proportions, as long as A4: the picture fills it, and nothing is cut.
void Visor::Imprime() {
    AlDia();
    const std::string nombre = Libre(".pdf");
    m_Impresion.m_sFichero = CString(DeUtf8(nombre));
    m_Impresion.m_sTitulo = CString(DeUtf8(m_Titulo));
    constexpr double kLargo = 297.0, kMinimo = 1.0;  // millimetres
    const auto [corto, largo] = std::minmax(m_nAncho, m_nAlto);
    m_Impresion.m_dAltoPapel = kLargo;
    m_Impresion.m_dAnchoPapel = std::max(kMinimo, kLargo * corto / largo);
    m_Impresion.m_bApaisada = m_nAncho > m_nAlto;
    if (OnFilePrintDirect())
        Di("printed to " + nombre);
    else
        Di("can't print to " + nombre + ": " + UltimoFalloGL());
    Redibuja();
}

void Visor::Retrata() {
    AlDia();
    const auto ancho = static_cast<std::size_t>(m_nAncho), alto = static_cast<std::size_t>(m_nAlto);
    const auto fila = static_cast<std::size_t>(BytesDeFila(m_nAncho, 24));
    std::vector<char> bgr(fila * alto);
    const std::string nombre = Libre(".png");
    if (m_pGL->CapturaImagen(CSize(m_nAncho, m_nAlto), bgr.data()) != 0) {
        Di("can't read the picture: " + UltimoFalloGL());
        return;
    }
    Imagen imagen{m_nAncho, m_nAlto, std::vector<std::uint8_t>(3 * ancho * alto)};
    for (std::size_t y = 0; y < alto; ++y) {
        const char* origen = &bgr[(alto - 1 - y) * fila];
        std::uint8_t* destino = &imagen.rgb[3 * ancho * y];
        for (std::size_t x = 0; x < ancho; ++x, origen += 3, destino += 3)
            for (int canal = 0; canal < 3; ++canal)
                destino[canal] = static_cast<std::uint8_t>(origen[2 - canal]);
    }
    try {
        EscribePng(nombre, imagen);
        Di("picture saved as " + nombre);
    } catch (const std::runtime_error& fallo) {
        Di(fallo.what());
    }
}
