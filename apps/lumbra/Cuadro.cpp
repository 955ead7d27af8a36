// The bitmap behind a picture, and the averaging of its pixels.

#include "Cuadro.h"

#include "platform/Contextos.h"
#include "platform/DiagnosticoGL.h"

#include <algorithm>
#include <stdexcept>

namespace {

// The bitmap's pixels, averaged over squares of n x n.
Imagen Promedia(const BITMAP& mapa, int ancho, int alto, int n) {
    Imagen imagen{ancho, alto, std::vector<std::uint8_t>(std::size_t(3) * ancho * alto)};
    const int bytes = mapa.bmBitsPixel / 8;
    const auto* bits = static_cast<const std::uint8_t*>(mapa.bmBits);
    std::uint8_t* destino = imagen.rgb.data();
    for (int y = 0; y < alto; ++y)
        for (int x = 0; x < ancho; ++x, destino += 3) {
            int suma[3] = {0, 0, 0};
            for (int j = 0; j < n; ++j) {
                const std::size_t fila = std::size_t(mapa.bmHeight - 1 - (y * n + j)) * mapa.bmWidthBytes;
                const std::uint8_t* p = bits + fila + std::size_t(x) * n * bytes;
                for (int i = 0; i < n; ++i, p += bytes)
                    for (int canal = 0; canal < 3; ++canal)
                        suma[canal] += p[2 - canal];
            }
            for (int canal = 0; canal < 3; ++canal)
                destino[canal] = static_cast<std::uint8_t>((suma[canal] + n * n / 2) / (n * n));
        }
    return imagen;
}

}  // namespace

int Muestreo(const Lienzo& lienzo) {
    constexpr int kLadoMaximo = 16384;  // drivers draw no larger
    const int lado = std::max(lienzo.ancho, lienzo.alto);
    const int muestreo = lienzo.muestreo != 0 ? lienzo.muestreo : lado > kLadoMaximo / 2 ? 1 : 2;
    if (lado <= kLadoMaximo / muestreo) return muestreo;
    const std::string suave = muestreo > 1 ? " smoothed " + std::to_string(muestreo) + " times" : "";
    throw std::runtime_error("a picture of " + std::to_string(lienzo.ancho) + " x " + std::to_string(lienzo.alto) +
                             " pixels" + suave + " is too large: at most " + std::to_string(kLadoMaximo / muestreo) +
                             " a side; ask for a smaller --size" + (muestreo > 1 ? " or --smooth" : ""));
}

void FallaGL(const std::string& que) {
    const std::string motivo = UltimoFalloGL();
    throw std::runtime_error(motivo.empty() ? que : que + ": " + motivo);
}

Cuadro::Cuadro(const Lienzo& lienzo) : m_Lienzo(lienzo), m_nMuestreo(Muestreo(lienzo)) {
    const int ancho = lienzo.ancho * m_nMuestreo, alto = lienzo.alto * m_nMuestreo;
    if (!m_Mapa.CreateBitmap(ancho, alto, 32) || !m_DC.CreateCompatibleDC(nullptr) ||
        m_DC.SelectObject(&m_Mapa) == nullptr)
        FallaGL("no room for a picture of " + std::to_string(ancho) + " x " + std::to_string(alto) + " pixels");
}

void Cuadro::Crea(CGL& escena) {
    if (!escena.Crear(&m_DC, PFD_TYPE_RGBA, PFD_DRAW_TO_BITMAP | PFD_SUPPORT_OPENGL)) FallaGL("can't draw");
}

void Cuadro::Ajusta(CGL& escena) {
    if (!escena.Resize(m_Lienzo.ancho * m_nMuestreo, m_Lienzo.alto * m_nMuestreo))
        FallaGL("can't draw a picture of this size");
}

Imagen Cuadro::Dibuja(CGL& escena) {
    escena.SetBkColor();
    if (!escena.Render()) FallaGL("can't draw");
    BITMAP datos = {};
    m_Mapa.GetBitmap(&datos);
    return Promedia(datos, m_Lienzo.ancho, m_Lienzo.alto, m_nMuestreo);
}
