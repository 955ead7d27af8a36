#pragma once
// TIFF files for tests: made byte by byte, or by libtiff, and read by either.

#include "raster/CTiff.h"
#include "raster/Imagenes.h"
#include "support/Temporales.h"

#include <gtest/gtest.h>
#include <tiffio.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tiffs {

/// A TIFF put together entry by entry; nothing checks that it makes sense.
class Fabrica {
  public:
    enum Tipo : unsigned {
        Byte = 1,
        Ascii = 2,
        Short = 3,
        Long = 4,
        Rational = 5,
        Float = 11,
        Double = 12,
        Long8 = 16
    };
    struct Entrada {
        unsigned tipo;
        std::uint64_t cuenta;
        std::string datos;     ///< in the file's byte order
        bool directo = false;  ///< `datos` stands in the entry as it is
    };

    explicit Fabrica(bool grande = false, bool motorola = false) : m_bGrande(grande), m_bMotorola(motorola) {}

    /// A number in the file's byte order.
    std::string Numero(std::uint64_t v, unsigned bytes) const {
        std::string s;
        for (unsigned i = 0; i < bytes; ++i)
            s += char(v >> 8 * (m_bMotorola ? bytes - 1 - i : i));
        return s;
    }
    Fabrica& Pon(unsigned tag, unsigned tipo, const std::vector<std::uint64_t>& valores) {
        static const std::map<unsigned, unsigned> kBytes{{Byte, 1}, {Short, 2}, {Long, 4}, {Long8, 8}};
        Entrada e{tipo, valores.size(), {}};
        for (const auto v : valores)
            e.datos += Numero(v, kBytes.at(tipo));
        m_Entradas[tag] = e;
        return *this;
    }
    Fabrica& PonDobles(unsigned tag, const std::vector<double>& valores) {
        Entrada e{Double, valores.size(), {}};
        for (const double v : valores) {
            std::uint64_t bits = 0;
            std::memcpy(&bits, &v, sizeof v);
            e.datos += Numero(bits, 8);
        }
        m_Entradas[tag] = e;
        return *this;
    }
    Fabrica& PonFraccion(unsigned tag, unsigned arriba, unsigned abajo) {
        m_Entradas[tag] = {Rational, 1, Numero(arriba, 4) + Numero(abajo, 4)};
        return *this;
    }
    /// An entry whose count and value or offset are anything.
    Fabrica& PonCrudo(unsigned tag, unsigned tipo, std::uint64_t cuenta, std::uint64_t valor) {
        m_Entradas[tag] = {tipo, cuenta, Numero(valor, m_bGrande ? 8 : 4), true};
        return *this;
    }
    Fabrica& Quita(unsigned tag) {
        m_Entradas.erase(tag);
        return *this;
    }
    /// The usual entries of a picture in strips, whose pixels come with Trozos.
    Fabrica& Imagen(unsigned ancho, unsigned alto, unsigned muestras, unsigned bits, unsigned fotometrica) {
        Pon(256, Short, {ancho}).Pon(257, Short, {alto}).Pon(262, Short, {fotometrica}).Pon(277, Short, {muestras});
        Pon(258, Short, std::vector<std::uint64_t>(muestras, bits)).Pon(259, Short, {1}).Pon(278, Short, {alto});
        return *this;
    }
    /// The pieces, as strips or as tiles.
    Fabrica& Trozos(const std::vector<std::string>& trozos, bool teselas = false) {
        m_Trozos = trozos;
        m_bTeselas = teselas;
        return *this;
    }

    /// The page's bytes, for a place in the file. @param siguiente  the offset of the next directory
    std::string Pagina(std::uint64_t offset, std::uint64_t siguiente) const {
        const unsigned hueco = m_bGrande ? 8 : 4, porEntrada = m_bGrande ? 20 : 12;
        Fabrica f = *this;
        std::uint64_t datos = offset;
        std::string pixeles;
        std::vector<std::uint64_t> offsets, bytes;
        for (const auto& t : m_Trozos) {
            offsets.push_back(datos + pixeles.size());
            bytes.push_back(t.size());
            pixeles += t;
        }
        if (!m_Trozos.empty()) {
            const unsigned base = m_bTeselas ? 324 : 273;
            const unsigned tagBytes = m_bTeselas ? 325 : 279;
            if (!m_Entradas.count(base)) f.Pon(base, m_bGrande ? Long8 : Long, offsets);
            if (!m_Entradas.count(tagBytes)) f.Pon(tagBytes, m_bGrande ? Long8 : Long, bytes);
        }
        if (pixeles.size() % 2 != 0) pixeles += '\0';
        const std::uint64_t directorio = datos + pixeles.size();
        std::string s = pixeles + Numero(f.m_Entradas.size(), m_bGrande ? 8 : 2);
        std::uint64_t detras = directorio + (m_bGrande ? 8 : 2) + f.m_Entradas.size() * porEntrada + hueco;
        std::string fuera;
        for (const auto& [tag, e] : f.m_Entradas) {
            s += Numero(tag, 2) + Numero(e.tipo, 2) + Numero(e.cuenta, hueco);
            if (e.directo || e.datos.size() <= hueco) {
                s += e.datos + std::string(hueco - e.datos.size(), '\0');
            } else {
                s += Numero(detras + fuera.size(), hueco);
                fuera += e.datos;
            }
        }
        return s + Numero(siguiente, hueco) + fuera;
    }
    std::uint64_t BytesTrozos() const {
        std::uint64_t n = 0;
        for (const auto& t : m_Trozos)
            n += t.size();
        return n + n % 2;
    }
    std::string Header(std::uint64_t directorio) const {
        std::string s = m_bMotorola ? "MM" : "II";
        s += Numero(m_bGrande ? 43 : 42, 2);
        if (m_bGrande) s += Numero(8, 2) + Numero(0, 2);
        return s + Numero(directorio, m_bGrande ? 8 : 4);
    }
    /// A file of this page alone.
    std::string Bytes(std::uint64_t siguiente = 0) const {
        const std::uint64_t inicio = m_bGrande ? 16 : 8;
        return Header(inicio + BytesTrozos()) + Pagina(inicio, siguiente);
    }

    std::map<unsigned, Entrada> m_Entradas;

  private:
    bool m_bGrande, m_bMotorola;
    bool m_bTeselas = false;
    std::vector<std::string> m_Trozos;
};

/// A raster with its open file.
template <class T = Vertiz::CTiff>
struct Abierto {
    explicit Abierto(const std::filesystem::path& ruta, int modo = 0)
        : fichero(CString(ruta.string().c_str()), CFile::modeRead), raster(modo) {
        bCabecera = raster.SetFichero(&fichero);
    }
    CFile fichero;
    T raster;
    bool bCabecera = false;
};

struct CierraTiff {
    void operator()(TIFF* t) const { TIFFClose(t); }
};
using Tiff = std::unique_ptr<TIFF, CierraTiff>;

inline Tiff Abre(const std::filesystem::path& ruta, const char* modo = "r") {
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    return Tiff(TIFFOpen(ruta.c_str(), modo));
}

/// The first page as libtiff shows it, rows from the bottom, three bytes a pixel: blue, green, red. Empty when it
/// can't.
inline std::vector<BYTE> DeLibtiff(const std::filesystem::path& ruta, unsigned pagina = 0) {
    const Tiff t = Abre(ruta);
    std::uint32_t ancho = 0, alto = 0;
    if (!t || !TIFFSetDirectory(t.get(), std::uint16_t(pagina)) || !TIFFGetField(t.get(), TIFFTAG_IMAGEWIDTH, &ancho) ||
        !TIFFGetField(t.get(), TIFFTAG_IMAGELENGTH, &alto))
        return {};
    std::vector<std::uint32_t> rgba(std::size_t{ancho} * alto);
    if (!TIFFReadRGBAImage(t.get(), ancho, alto, rgba.data(), 1)) return {};
    std::vector<BYTE> pixeles;
    for (const std::uint32_t p : rgba) {
        pixeles.push_back(BYTE(TIFFGetB(p)));
        pixeles.push_back(BYTE(TIFFGetG(p)));
        pixeles.push_back(BYTE(TIFFGetR(p)));
    }
    return pixeles;
}

/// The pixels of a picture, three bytes each, whatever its depth.
inline std::vector<BYTE> EnColor(const Vertiz::IRaster& raster) {
    const std::vector<BYTE> pixeles = imagenes::Pixeles(raster);
    if (imagenes::Bandas(raster) == 3) return pixeles;
    std::vector<BYTE> color;
    for (const BYTE b : pixeles)
        color.insert(color.end(), 3, b);
    return color;
}

/// Tells the first byte that differs.
inline testing::AssertionResult Igual(const std::vector<BYTE>& a, const std::vector<BYTE>& b) {
    if (a.size() != b.size()) return testing::AssertionFailure() << a.size() << " bytes are not " << b.size();
    for (std::size_t i = 0; i < a.size(); ++i)
        if (a[i] != b[i])
            return testing::AssertionFailure() << "byte " << i << ": " << int(a[i]) << " is not " << int(b[i]);
    return testing::AssertionSuccess();
}

}  // namespace tiffs
