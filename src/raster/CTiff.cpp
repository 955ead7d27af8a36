// What a TIFF keeps beside its pixels, and how it gets room for them.

#include "raster/CTiff.h"

#include "raster/Resultados.h"
#include "raster/TiffPagina.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace Vertiz {

CTiff::~CTiff() = default;

bool CTiff::SetFichero(CFile* fichero) {
    m_nOffsetDirectorio = 0;
    m_DirectoriosLeidos.clear();
    if (!CRasterDIB::SetFichero(fichero)) return false;
    const std::optional<CabeceraTiff> cabecera = LeeCabeceraTiff(*fichero);
    if (!cabecera) return false;
    m_nOrdenBytes = cabecera->orden;
    m_nVersion = cabecera->version;
    m_nOffsetDirectorio = cabecera->directorio;
    return true;
}

void CTiff::Limpiar() {
    CRasterDIB::Limpiar();
    m_BitsMuestra.clear();
    m_nMuestrasPixel = 0;
    m_nBytesMuestra = 0;
    m_nFotometrica = 0;
    m_fResolucionImagen = 0.0F;
}

bool CTiff::TienePaleta() const {
    return m_nFotometrica == fotometrica::kPaleta && m_Cabecera.biBitCount == 8;
}

int CTiff::NumMuestras() const {
    if (m_BitsMuestra.empty()) return 0;
    return m_nBytesMuestra == m_BitsMuestra.front() / 8 ? 1 : m_nMuestrasPixel;
}

bool CTiff::Crear(int ancho, int alto, int bits, float resolucion, bool rellenar, CBloques* datos, const BYTE* paleta,
                  bool soloCabecera) {
    if (!CreaCabecera(ancho, alto, bits, resolucion, paleta)) return false;
    const bool unaMuestra = bits < 24;
    m_nMuestrasPixel = unaMuestra ? 1 : 3;
    m_BitsMuestra.assign(m_nMuestrasPixel, static_cast<std::uint16_t>(bits / m_nMuestrasPixel));
    m_nBytesMuestra = static_cast<std::uint16_t>(bits / 8);
    m_nFotometrica = !unaMuestra         ? fotometrica::kRGB
                     : paleta != nullptr ? fotometrica::kPaleta
                                         : fotometrica::kCeroNegro;
    m_fResolucionImagen = m_fResolucionX = m_fResolucionY = resolucion;
    m_nUnidadResolucion = 2;  // dots per inch
    if (soloCabecera) return true;

    m_Cabecera.biHeight = -AltoPixeles();
    const bool enteros = datos != nullptr && m_bModoFichero == 0 && datos->Tamano() == BytesFila() &&
                         datos->Cantidad() == static_cast<UINT>(AltoPixeles());
    if (enteros) m_Bloques = std::move(*datos);
    if (enteros || (ReservaPixeles() && LlenaAlmacen(rellenar, datos, 1))) return true;
    Limpiar();
    return false;
}

int CTiff::FalloAlmacen() const {
    return kNoSoportado;
}

void CTiff::HeredaAspecto(const CRasterDIB& otra) {
    CRasterDIB::HeredaAspecto(otra);
    const auto* tiff = dynamic_cast<const CTiff*>(&otra);
    if (tiff != nullptr && BytesPixel() == 1) m_nFotometrica = tiff->m_nFotometrica;
}

void CTiff::TomaImagen(CRasterDIB& otra) {
    auto& tiff = static_cast<CTiff&>(otra);
    const auto muestras = tiff.m_nMuestrasPixel, bytes = tiff.m_nBytesMuestra, fotometrica = tiff.m_nFotometrica;
    const float resolucion = tiff.m_fResolucionImagen;
    std::vector<std::uint16_t> bits = std::move(tiff.m_BitsMuestra);
    CRasterDIB::TomaImagen(otra);  // empties both
    m_BitsMuestra = std::move(bits);
    m_nMuestrasPixel = muestras;
    m_nBytesMuestra = bytes;
    m_nFotometrica = fotometrica;
    m_fResolucionImagen = resolucion;
}

std::unique_ptr<CRasterDIB> CTiff::Nuevo(int modoFichero) const {
    return std::make_unique<CTiff>(modoFichero);
}

}  // namespace Vertiz
