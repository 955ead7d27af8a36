// Writing a TIFF: a classic little-endian file with its directory first and the pixels as one strip behind it, which
// every reader takes.

#include "raster/CTiff.h"
#include "raster/EtiquetasTiff.h"
#include "raster/OrdenCanales.h"
#include "raster/Resultados.h"
#include "raster/SalidaImagen.h"
#include "raster/TextosProgreso.h"
#include "raster/TiffEntradas.h"
#include "model/Etapa.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <span>
#include <utility>

namespace Vertiz {

namespace {

// The tags that pictures and tables share.
EntradasTiff EntradasComunes(unsigned ancho, unsigned alto, unsigned muestras, unsigned bits, unsigned colores) {
    EntradasTiff e;
    const std::vector<std::uint16_t> bitsMuestra(muestras, static_cast<std::uint16_t>(bits));
    e.Long(etiqueta::kImageWidth, ancho);
    e.Long(etiqueta::kImageLength, alto);
    e.Shorts(etiqueta::kBitsPerSample, bitsMuestra);
    e.Short(etiqueta::kCompression, 1);
    e.Short(etiqueta::kPhotometric, static_cast<std::uint16_t>(colores));
    e.Long(etiqueta::kStripOffsets, 0);
    e.Short(etiqueta::kSamplesPerPixel, static_cast<std::uint16_t>(muestras));
    if (alto <= 0xFFFF)
        e.Short(etiqueta::kRowsPerStrip, static_cast<std::uint16_t>(alto));
    else
        e.Long(etiqueta::kRowsPerStrip, alto);
    e.Long(etiqueta::kStripByteCounts, 0);
    e.Short(etiqueta::kPlanarConfiguration, 1);
    e.Texto(etiqueta::kSoftware, "Qartel");
    return e;
}

// Writes the header and then, from the top, the rows that `fila` makes.
template <class F>
int GrabaTira(CFile& fichero, EntradasTiff& entradas, int alto, std::uint64_t bytesFila, int nivel, F&& fila) {
    const std::uint64_t inicio = entradas.Bytes(), datos = bytesFila * unsigned(alto);
    if (inicio + datos > std::numeric_limits<std::uint32_t>::max()) return kNoSoportado;
    entradas.Long(etiqueta::kStripOffsets, static_cast<std::uint32_t>(inicio));
    entradas.Long(etiqueta::kStripByteCounts, static_cast<std::uint32_t>(datos));
    const std::vector<BYTE> cabecera = entradas.Cabecera();

    const Etapa etapa(nivel, kTextoGrabar);
    fichero.SeekToBegin();
    SalidaImagen salida(fichero);
    if (!salida.Escribe(cabecera.data(), cabecera.size())) return kNoSoportado;
    std::vector<BYTE> bytes(bytesFila);
    for (int i = 0; i < alto; ++i) {
        if (!fila(i, bytes) || !salida.Escribe(bytes.data(), bytes.size())) return kNoSoportado;
        if (!etapa.Paso(i + 1, alto)) return 2;
    }
    return salida.Acaba() ? 1 : kNoSoportado;
}

}  // namespace

int CTiff::Grabar(CFile* fichero) {
    return Grabar(fichero, nullptr, TieneGeorreferencia() ? &m_Georreferencia : nullptr);
}

int CTiff::Grabar(CFile* fichero, const CMatriz<float>* tabla, const CGeorreferencia* georreferencia) {
    if (fichero == nullptr) return kNoSoportado;
    if (tabla != nullptr && georreferencia != nullptr) return GrabaTabla(*fichero, *tabla, *georreferencia);
    return GrabaImagen(*fichero, georreferencia);
}

int CTiff::GrabaImagen(CFile& fichero, const CGeorreferencia* georreferencia) {
    const int alto = AltoPixeles();
    if (!TienePixeles() || alto == 0 || m_nAncho == 0) return 2;
    const int bytesPixel = BytesPixel();
    if (bytesPixel != 1 && bytesPixel != 3) return kNoSoportado;

    const unsigned colores = bytesPixel == 3 ? fotometrica::kRGB
                             : TienePaleta() ? fotometrica::kPaleta
                                             : fotometrica::kCeroNegro;
    EntradasTiff e = EntradasComunes(unsigned(m_nAncho), unsigned(alto), unsigned(bytesPixel), 8, colores);
    e.Fraccion(etiqueta::kXResolution, double{m_fResolucionX});
    e.Fraccion(etiqueta::kYResolution, double{m_fResolucionY});
    e.Short(etiqueta::kResolutionUnit, m_nUnidadResolucion);
    if (TienePaleta()) {
        std::vector<std::uint16_t> mapa;
        for (std::size_t banda = 0; banda < 3; ++banda)
            for (std::size_t i = 0; i < 256; ++i)
                mapa.push_back(static_cast<std::uint16_t>(m_Paleta[i * 4 + 2 - banda] * 257));
        e.Shorts(etiqueta::kColorMap, mapa);
    }
    if (georreferencia != nullptr) e.Georreferencia(*georreferencia);

    std::vector<BYTE> copia;
    return GrabaTira(fichero, e, alto, std::uint64_t(m_nAncho) * unsigned(bytesPixel), m_nNivelMensajes,
                     [&](int i, std::vector<BYTE>& bytes) {
                         const std::span<const BYTE> fila = FilaAlmacen(alto - 1 - i, copia);
                         if (fila.empty()) return false;
                         std::copy_n(fila.begin(), bytes.size(), bytes.begin());
                         if (bytesPixel == 3) CambiaRojoAzul(bytes);
                         return true;
                     });
}

int CTiff::GrabaTabla(CFile& fichero, const CMatriz<float>& tabla, const CGeorreferencia& georreferencia) {
    const unsigned filas = tabla.GetFilas(), columnas = tabla.GetColumnas();
    if (filas == 0 || columnas == 0) return 2;
    if (filas > unsigned(std::numeric_limits<int>::max())) return kNoSoportado;
    EntradasTiff e = EntradasComunes(columnas, filas, 1, 32, fotometrica::kCeroNegro);
    e.Fraccion(etiqueta::kXResolution, double{m_fResolucionX});
    e.Fraccion(etiqueta::kYResolution, double{m_fResolucionY});
    e.Short(etiqueta::kResolutionUnit, m_nUnidadResolucion);
    e.Short(etiqueta::kSampleFormat, 3);  // floats: without it they are taken for integers
    e.Georreferencia(georreferencia);
    return GrabaTira(fichero, e, int(filas), std::uint64_t{columnas} * 4, m_nNivelMensajes,
                     [&](int i, std::vector<BYTE>& bytes) {
                         for (unsigned c = 0; c < columnas; ++c) {
                             const auto v = std::bit_cast<std::uint32_t>(tabla.Get(filas - 1 - unsigned(i), c));
                             for (unsigned b = 0; b < 4; ++b)
                                 bytes[std::size_t{c} * 4 + b] = static_cast<BYTE>(v >> 8 * b);
                         }
                         return true;
                     });
}

}  // namespace Vertiz
