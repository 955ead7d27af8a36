// The sky's file.

#include "Cielo.h"

#include "Convierte.h"
#include "Salida.h"
#include "raster/CBmp.h"
#include "platform/Conversiones.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

constexpr int kAncho = 1024, kAlto = 512;  // scenes thin out larger ones

// Columns against the compass, from the north.
bool Graba(const Imagen& imagen, CFile& fichero) {
    Vertiz::CBmp bmp;
    if (!bmp.Crear(imagen.ancho, imagen.alto, 24, 72.0F, false, nullptr, nullptr, false)) return false;
    const auto ancho = static_cast<std::size_t>(imagen.ancho);
    std::vector<BYTE> bgr(3 * ancho);
    for (int fila = 0; fila < imagen.alto; ++fila) {
        const std::uint8_t* rgb = imagen.rgb.data() + 3 * ancho * static_cast<std::size_t>(fila);
        for (std::size_t c = 0; c < ancho; ++c) {
            const std::size_t origen = (ancho + ancho / 2 - 1 - c) % ancho;
            std::reverse_copy(rgb + 3 * origen, rgb + 3 * origen + 3, &bgr[3 * c]);
        }
        bmp.SetFila(bgr.data(), imagen.alto - 1 - fila, 0, imagen.ancho);
    }
    return bmp.Grabar(&fichero) == 1;
}

}  // namespace

Cielo::Cielo(const Foto& foto) : m_Ruta(CarpetaTemporal() + "/lumbra-sky-XXXXXX.bmp") {
    const int descriptor = mkstemps(m_Ruta.data(), 4);
    if (descriptor < 0) FallaSalida(m_Ruta, std::strerror(errno));
    close(descriptor);
    CFile fichero;
    const bool grabado = fichero.Open(CString(DeUtf8(m_Ruta)), CFile::modeReadWrite | CFile::typeBinary) &&
                         Graba(ImagenDeFoto(foto, kAncho, kAlto), fichero) && fichero.Close();
    if (grabado) return;
    unlink(m_Ruta.c_str());
    FallaSalida(m_Ruta, AUtf8(TextoError(fichero.GetError()).Texto()));
}

Cielo::~Cielo() {
    unlink(m_Ruta.c_str());
}
