// Opening of pictures, and the depths of bitmaps that the library leaves to its hosts.

#include "Foto.h"

#include "raster/CBmp.h"
#include "raster/CECW.h"
#include "raster/Resultados.h"
#include "platform/Conversiones.h"

#include <algorithm>
#include <cwctype>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace {

// Bitmaps whose pixels the library leaves to its hosts: fewer than 8 bits, and 16 and 32.
class BmpEntero : public Vertiz::CBmp {
  public:
    bool EsEspecial() const { return m_Cabecera.biBitCount != 8 && m_Cabecera.biBitCount != 24; }

    void Fila(int fila, BYTE* bgr) const {
        std::vector<BYTE> copia;
        const std::span<const BYTE> bytes = FilaAlmacen(fila, copia);
        const unsigned bits = m_Cabecera.biBitCount;
        for (int c = 0; c < Ancho() && !bytes.empty(); ++c, bgr += 3) {
            const std::size_t bit = std::size_t(c) * bits;
            const BYTE* const p = &bytes[bit / 8];
            if (bits == 32)
                std::copy_n(p, 3, bgr);
            else if (bits == 16)
                QuinceBits(p[0] | p[1] << 8, bgr);
            else
                std::copy_n(&m_Paleta[4 * (p[0] >> (8 - bits - bit % 8) & ((1U << bits) - 1))], 3, bgr);
        }
    }

  private:
    // Three channels of 5 bits.
    static void QuinceBits(int v, BYTE* bgr) {
        for (int i = 0; i < 3; ++i, v >>= 5)
            bgr[i] = static_cast<BYTE>((v & 31) * 255 / 31);
    }
};

bool TerminaEn(const std::string& nombre, std::string_view fin) {
    constexpr auto minuscula = [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 'a' - 'A') : c; };
    return nombre.size() >= fin.size() &&
           std::equal(fin.rbegin(), fin.rend(), nombre.rbegin(), [=](char a, char b) { return a == minuscula(b); });
}

Vertiz::IRaster* NuevoRaster(const std::string& ruta) {
    if (TerminaEn(ruta, "bmp")) return new BmpEntero;
    if (TerminaEn(ruta, "j2k")) return new Vertiz::CECW;  // the bare codestream of a .jp2
    return Vertiz::CreaRaster(CString(DeUtf8(ruta)));
}

[[noreturn]] void Falla(const std::string& ruta, const std::string& motivo) {
    throw std::runtime_error(ruta + ": " + motivo);
}

// What the result means, with the library's own words where it had any.
std::string Motivo(int resultado, const std::vector<std::string>& mensajes) {
    std::string motivo = "it is damaged, or there is no room for its pixels";
    if (resultado == Vertiz::kCabeceraMala) motivo = "not a picture of the kind that its name says";
    if (resultado == Vertiz::kNoSoportado) motivo = "a kind of picture that can't be read, or a damaged one";
    return mensajes.empty() ? motivo : motivo + " (" + mensajes.back() + ")";
}

}  // namespace

Foto::Foto(const std::string& ruta, Progreso& progreso, Que que) : m_pRaster(NuevoRaster(ruta)) {
    if (m_pRaster == nullptr) Falla(ruta, "not a picture: the names of pictures end in bmp, tif, jpg, jp2 or ecw");
    const CString nombre(DeUtf8(ruta));
    if (!m_Fichero.Open(nombre, CFile::modeRead | CFile::typeBinary))
        Falla(ruta, AUtf8(TextoError(m_Fichero.GetError()).Texto()));
    m_pRaster->SetNombre(nombre);
    progreso.Calla();
    const int resultado =
        m_pRaster->SetFichero(&m_Fichero) ? m_pRaster->Leer(que == Que::kCabecera) : Vertiz::kCabeceraMala;
    m_pRaster->CierraFichero();
    const std::vector<std::string> mensajes = progreso.Habla();
    if (resultado != 1) Falla(ruta, Motivo(resultado, mensajes));
}

void Foto::Fila(int fila, BYTE* bgr) const {
    const int desdeAbajo = Alto() - 1 - fila;
    const auto* bmp = dynamic_cast<const BmpEntero*>(m_pRaster.get());
    if (bmp != nullptr && bmp->EsEspecial()) return bmp->Fila(desdeAbajo, bgr);
    m_pRaster->GetFila(bgr, desdeAbajo, 0, Ancho());
}

bool EsFoto(const std::string& ruta, Progreso& progreso) {
    for (const char* fin : {"bmp", "jpg", "jpeg", "jp2", "j2k", "ecw"})
        if (TerminaEn(ruta, fin)) return true;
    if (!TerminaEn(ruta, "tif") && !TerminaEn(ruta, "tiff")) return false;
    try {
        const Foto foto(ruta, progreso, Foto::Que::kCabecera);
        const int muestras = foto.Raster().NumMuestras();
        return foto.Raster().BytesPixel() <= std::min(muestras, 3) ||
               (muestras >= 3 && foto.Raster().BytesPixel() == 6);
    } catch (const std::runtime_error&) {
        return false;  // reading it as heights tells what is wrong with it
    }
}
