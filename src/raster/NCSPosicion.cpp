// Where a picture lies: the GeoTIFF of one pixel in its GeoJP2 box, or six numbers in a world file beside it.

#include "raster/NCSCajas.h"
#include "raster/TiffPagina.h"
#include "platform/Ficheros.h"
#include "platform/Numeros.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>

namespace NCS {

namespace {

/// Bytes in memory, as the TIFF reader takes them.
class CFicheroMemoria : public CFile {
  public:
    explicit CFicheroMemoria(const std::vector<BYTE>& bytes) : m_Bytes(bytes) {}

    bool IsOpen() const override { return true; }
    bool Close() override { return true; }
    size_t Read(void* datos, size_t n) override {
        if (m_nPosicion >= m_Bytes.size()) return 0;
        n = std::min(n, static_cast<size_t>(m_Bytes.size() - m_nPosicion));
        std::copy_n(m_Bytes.data() + m_nPosicion, n, static_cast<BYTE*>(datos));  // n may be 0, with nowhere to put it
        m_nPosicion += n;
        return n;
    }
    bool Write(const void*, size_t) override { return false; }
    ULONGLONG Seek(LONGLONG distancia, UINT desde) override {
        const ULONGLONG base = desde == begin ? 0 : desde == current ? m_nPosicion : m_Bytes.size();
        const LONGLONG nueva = static_cast<LONGLONG>(base) + distancia;
        if (nueva < 0) return posicionMala;
        return m_nPosicion = static_cast<ULONGLONG>(nueva);
    }
    ULONGLONG GetPosition() const override { return m_nPosicion; }
    ULONGLONG GetLength() const override { return m_Bytes.size(); }

  private:
    const std::vector<BYTE>& m_Bytes;
    ULONGLONG m_nPosicion = 0;
};

// Affine, from column and row of the outer corner of a pixel to the terrain.
struct Posicion {
    double celdaX, celdaY, origenX, origenY;

    bool EsBuena() const {
        return celdaX != 0.0 && celdaY != 0.0 && std::isfinite(celdaX) && std::isfinite(celdaY) &&
               std::isfinite(origenX) && std::isfinite(origenY);
    }
    void AEsquina() {  // from the centre of the first pixel to its outer corner
        origenX -= celdaX / 2.0;
        origenY -= celdaY / 2.0;
    }
};

std::optional<Posicion> DeGeoTIFF(const std::vector<BYTE>& bytes) {
    if (bytes.empty()) return std::nullopt;
    CFicheroMemoria fichero(bytes);
    const auto cabecera = Vertiz::LeeCabeceraTiff(fichero);
    Vertiz::PaginaTiff pagina;
    // A page without good pixels may still tell its place: the pixel is of no use.
    if (cabecera) Vertiz::LeePaginaTiff(fichero, *cabecera, cabecera->directorio, pagina);
    if (!pagina.georreferencia) return std::nullopt;

    const Vertiz::CGeorreferencia& g = *pagina.georreferencia;
    Posicion p{};
    const double* m = g.m_dTransformacion;
    if (m[0] != 0.0) {
        if (m[1] != 0.0 || m[4] != 0.0) return std::nullopt;  // turned: cell sizes and origin can't tell that
        p = {m[0], m[5], m[3], m[7]};
    } else if (!g.m_PuntosControl.empty()) {
        const auto& punto = g.m_PuntosControl.front();
        p = {g.m_dEscala[0], -g.m_dEscala[1], punto[3] - punto[0] * g.m_dEscala[0],
             punto[4] + punto[1] * g.m_dEscala[1]};
    }
    if (pagina.puntos) p.AEsquina();
    return p.EsBuena() ? std::optional(p) : std::nullopt;
}

// Names that programs give to the world file of a picture: first and last letter of its ending and a w, the ending and
// a w, or .wld.
std::vector<std::string> NombresMundo(const CString& ruta) {
    const std::size_t barra = ruta.find_last_of('/');
    const std::size_t punto = ruta.find_last_of('.');
    if (punto == std::string::npos || (barra != std::string::npos && punto < barra)) return {};
    const std::string base = ruta.substr(0, punto + 1);
    const std::string fin = ruta.substr(punto + 1);
    std::vector<std::string> nombres;
    if (!fin.empty()) nombres = {base + fin.front() + fin.back() + "w", base + fin + "w"};
    for (const char* otro : {"j2w", "jpw", "wld"})
        nombres.push_back(base + otro);
    const std::size_t hechos = nombres.size();
    for (std::size_t i = 0; i < hechos; i++) {
        std::string grande = nombres[i];
        std::transform(grande.begin() + static_cast<std::ptrdiff_t>(base.size()), grande.end(),
                       grande.begin() + static_cast<std::ptrdiff_t>(base.size()),
                       [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
        nombres.push_back(grande);
    }
    return nombres;
}

std::optional<Posicion> DeFicheroMundo(const CString& nombre) {
    CFile fichero;
    const ::CString ancho(nombre.c_str());
    if (!PathFileExists(ancho) || !fichero.Open(ancho, CFile::modeRead | CFile::shareDenyNone)) return std::nullopt;
    std::array<char, 4096> texto{};
    std::string_view resto(texto.data(), fichero.Read(texto.data(), texto.size()));
    std::array<double, 6> v{};  // x step, two turns, y step, centre of the first pixel
    for (double& numero : v) {
        const std::size_t inicio = resto.find_first_not_of(" \t\r\n");
        if (inicio == std::string_view::npos) return std::nullopt;
        resto.remove_prefix(inicio);
        const std::size_t final = std::min(resto.find_first_of(" \t\r\n"), resto.size());
        numero = LeeReal(resto.substr(0, final));
        resto.remove_prefix(final);
    }
    Posicion p{v[0], v[3], v[4], v[5]};
    if (v[1] != 0.0 || v[2] != 0.0 || !p.EsBuena()) return std::nullopt;
    p.AEsquina();
    return p;
}

}  // namespace

void LeePosicion(const CString& ruta, const std::vector<BYTE>& geotiff, CFileInfo& info) {
    std::optional<Posicion> p = DeGeoTIFF(geotiff);
    if (!p)
        for (const std::string& nombre : NombresMundo(ruta))
            if ((p = DeFicheroMundo(nombre))) break;
    if (!p) return;
    info.m_dCeldaX = p->celdaX;
    info.m_dCeldaY = p->celdaY;
    info.m_dOrigenX = p->origenX;
    info.m_dOrigenY = p->origenY;
}

}  // namespace NCS
