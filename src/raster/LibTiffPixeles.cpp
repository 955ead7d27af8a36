// Pictures through libtiff's RGBA interface, which knows every photometric interpretation: a strip, or a row of tiles,
// at a time, so that each is decoded once and no second picture stands in memory.

#include "raster/GeoTiff.h"
#include "raster/LibTiff.h"
#include "raster/LibTiffPagina.h"
#include "raster/Resultados.h"
#include "model/Etapa.h"
#include "platform/Memoria.h"

#include <tiffio.h>

#include <algorithm>
#include <span>

namespace Vertiz {

namespace {

// The RGBA interface on one page.
class Bandas {
  public:
    explicit Bandas(const LibTiff::Pagina& pagina) : m_Pagina(pagina) {}
    ~Bandas() {
        if (m_bAbierta) TIFFRGBAImageEnd(&m_Rgba);
    }
    Bandas(const Bandas&) = delete;
    Bandas& operator=(const Bandas&) = delete;

    /// @param fallo  out: why not
    bool Abre(TIFF* tiff, std::string& fallo) {
        char texto[1024]{};
        m_bAbierta = TIFFRGBAImageOK(tiff, texto) == 1 && TIFFRGBAImageBegin(&m_Rgba, tiff, 0, texto) == 1;
        if (!m_bAbierta) {
            if (fallo.empty()) fallo = texto;
            return false;
        }
        m_Rgba.req_orientation = ORIENTATION_TOPLEFT;
        m_nFilas = FilasBanda();
        m_bPorFilas = m_nFilas == 0;
        if (m_bPorFilas) m_nFilas = std::min(kFilas, m_Pagina.alto);
        if (!Reserva()) {
            fallo = "No memory for a strip of the file";
            return false;
        }
        return true;
    }

    std::uint32_t Filas() const { return m_nFilas; }

    /// Decodes the rows from `fila` on, in the order of the file, `n` of them. What is damaged comes as libtiff leaves
    /// it. @return false when nothing could be decoded
    bool Lee(std::uint32_t fila, std::uint32_t n) {
        std::ranges::fill(m_Pixeles, 0U);
        if (m_bPorFilas) return LeeFilas(fila, n);
        m_Rgba.row_offset = static_cast<int>(fila);
        m_Rgba.col_offset = 0;
        return TIFFRGBAImageGet(&m_Rgba, m_Pixeles.data(), m_Pagina.ancho, n) == 1;
    }

    /// Where the rows of the file from `fila` on, n of them, begin in the picture, and what lies in them.
    std::uint32_t PrimeraFila(std::uint32_t fila, std::uint32_t n) const {
        return EmpiezaAbajo() ? m_Pagina.alto - fila - n : fila;
    }
    std::span<const std::uint32_t> Fila(std::uint32_t i) const {
        return std::span(m_Pixeles).subspan(std::size_t{i} * m_Pagina.ancho, m_Pagina.ancho);
    }

  private:
    static constexpr std::uint32_t kFilas = 64;

    bool EmpiezaAbajo() const {
        const int o = m_Rgba.orientation;
        return o == ORIENTATION_BOTLEFT || o == ORIENTATION_BOTRIGHT || o == ORIENTATION_LEFTBOT ||
               o == ORIENTATION_RIGHTBOT;
    }

    // A strip or a row of tiles; 0 where the picture has strips so large that they are better read by rows.
    std::uint32_t FilasBanda() {
        if (m_Pagina.HayTeselas()) return std::min(m_Pagina.altoTesela, m_Pagina.alto);
        std::uint32_t filas = 0;
        TIFFGetFieldDefaulted(m_Rgba.tif, TIFFTAG_ROWSPERSTRIP, &filas);
        filas = std::clamp(filas, 1U, m_Pagina.alto);
        constexpr std::uint64_t kMuchos = 4U << 20;
        const bool sueltas = m_Rgba.isContig != 0 && m_Rgba.photometric != PHOTOMETRIC_YCBCR &&
                             (m_Rgba.orientation == ORIENTATION_TOPLEFT || m_Rgba.orientation == ORIENTATION_LEFTTOP);
        return sueltas && std::uint64_t{filas} * m_Pagina.ancho > kMuchos ? 0 : filas;
    }

    bool Reserva() {
        const std::uint64_t pixeles = std::uint64_t{m_nFilas} * m_Pagina.ancho;
        const std::uint64_t fila = m_bPorFilas ? TIFFScanlineSize64(m_Rgba.tif) : 0;
        constexpr std::uint64_t kImposible = std::uint64_t{1} << 48;
        if (pixeles > kImposible || fila > kImposible) return false;
        if (!HayMemoria(pixeles * sizeof(std::uint32_t) + fila * m_nFilas)) return false;
        m_Pixeles.resize(pixeles);
        m_Filas.resize(fila * m_nFilas);
        return true;
    }

    bool LeeFilas(std::uint32_t fila, std::uint32_t n) {
        const std::size_t bytes = m_Filas.size() / m_nFilas;
        std::ranges::fill(m_Filas, BYTE{0});
        std::uint32_t i = 0;
        while (i < n && TIFFReadScanline(m_Rgba.tif, m_Filas.data() + i * bytes, fila + i, 0) == 1)
            ++i;
        m_Rgba.put.contig(&m_Rgba, m_Pixeles.data(), 0, 0, m_Pagina.ancho, n, 0, 0, m_Filas.data());
        return i > 0;
    }

    const LibTiff::Pagina& m_Pagina;
    TIFFRGBAImage m_Rgba{};
    bool m_bAbierta = false;
    bool m_bPorFilas = false;
    std::uint32_t m_nFilas = 0;
    std::vector<std::uint32_t> m_Pixeles;  // alpha, blue, green, red from the highest byte on
    std::vector<BYTE> m_Filas;             // as in the file, when it is read by rows
};

// As a picture stores them.
void EnBGR(std::span<const std::uint32_t> pixeles, BYTE* destino) {
    for (const std::uint32_t p : pixeles) {
        destino[0] = static_cast<BYTE>(TIFFGetB(p));
        destino[1] = static_cast<BYTE>(TIFFGetG(p));
        destino[2] = static_cast<BYTE>(TIFFGetR(p));
        destino += 3;
    }
}

}  // namespace

int LibTiff::LeeImagen(const Pagina& pagina, const Ventana& v, const Etapa& etapa) {
    Bandas bandas(pagina);
    if (!bandas.Abre(m_pTiff, m_sFallo)) return kNoSoportado;
    const float resolucion = ResolucionPulgada(pagina.unidad, pagina.resolucionX);
    if (!Crear(v.Columnas(), v.Filas(), 24, resolucion, false, nullptr, nullptr, false)) return kNoSoportado;
    m_nUnidadResolucion = pagina.unidad;
    m_fResolucionX = pagina.resolucionX;
    m_fResolucionY = pagina.resolucionY;

    std::string primerFallo;
    bool alguna = false;
    int hechas = 0, intentos = 0;
    constexpr int kIntentos = 64;  // a directory without data behind it isn't worth going through
    std::vector<BYTE> copia;
    for (std::uint32_t fila = 0, n = 0; fila < pagina.alto; fila += n) {
        n = std::min(bandas.Filas(), pagina.alto - fila);
        const auto primera = static_cast<int>(bandas.PrimeraFila(fila, n));
        if (primera >= v.fila1 || primera + static_cast<int>(n) <= v.fila0) continue;
        m_sFallo.clear();
        const bool leida = bandas.Lee(fila, n);
        alguna = alguna || (leida && m_sFallo.empty());
        if (primerFallo.empty()) primerFallo = m_sFallo;
        if (!alguna && ++intentos == kIntentos) break;
        for (int i = std::max(v.fila0 - primera, 0); i < static_cast<int>(n) && primera + i < v.fila1; ++i) {
            const auto pixeles =
                bandas.Fila(static_cast<std::uint32_t>(i)).subspan(std::size_t(v.col0), std::size_t(v.Columnas()));
            const int destino = v.fila1 - 1 - primera - i;
            EnBGR(pixeles, FilaNueva(destino, copia).data());
            if (!GuardaFila(destino, copia)) return kNoSoportado;
            if (!etapa.Paso(++hechas, v.Filas())) return 2;
        }
    }
    m_sFallo = primerFallo;
    return alguna ? 1 : kNoSoportado;
}

}  // namespace Vertiz
