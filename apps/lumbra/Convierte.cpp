// Copies of a picture row by row.

#include "Convierte.h"

#include "Salida.h"
#include "raster/CBmp.h"
#include "raster/CJpeg.h"
#include "raster/CTiff.h"
#include "platform/Conversiones.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

namespace {

bool EsJpeg(const std::string& ruta) {
    return TerminaEn(ruta, ".jpg") || TerminaEn(ruta, ".jpeg");
}

bool EsTiff(const std::string& ruta) {
    return TerminaEn(ruta, ".tif") || TerminaEn(ruta, ".tiff");
}

// Nothing but greys: a third of the bytes holds them.
bool EsGris(const Foto& foto) {
    std::vector<BYTE> bgr(3 * std::size_t(foto.Ancho()));
    for (int f = 0; f < foto.Alto(); ++f) {
        foto.Fila(f, bgr.data());
        for (std::size_t i = 0; i < bgr.size(); i += 3)
            if (bgr[i] != bgr[i + 1] || bgr[i] != bgr[i + 2]) return false;
    }
    return true;
}

bool CopiaPixeles(const Foto& foto, Vertiz::IRaster& destino) {
    const int ancho = foto.Ancho(), alto = foto.Alto();
    std::vector<BYTE> bgr(3 * std::size_t(ancho));
    for (int f = 0; f < alto; ++f) {
        foto.Fila(f, bgr.data());
        if (destino.BytesPixel() == 1)
            for (std::size_t c = 0; c < std::size_t(ancho); ++c)
                bgr[c] = bgr[3 * c];
        if (!destino.SetFila(bgr.data(), alto - 1 - f, 0, ancho)) return false;
    }
    return true;
}

int Graba(const Foto& foto, Vertiz::IRaster& destino, CFile& fichero) {
    auto* tiff = dynamic_cast<Vertiz::CTiff*>(&destino);
    if (tiff != nullptr && tiff->Tipo() == 20 && foto.Raster().TieneGeorreferencia())
        return tiff->Grabar(&fichero, nullptr, foto.Raster().Georreferencia());
    return destino.Grabar(&fichero);
}

}  // namespace

bool EsSalidaFoto(const std::string& ruta) {
    return TerminaEn(ruta, ".bmp") || TerminaEn(ruta, ".png") || EsTiff(ruta) || EsJpeg(ruta);
}

void ConvierteFoto(const Foto& foto, const std::string& ruta, Progreso& progreso) {
    if (TerminaEn(ruta, ".png")) return EscribePng(ruta, ImagenDeFoto(foto));
    std::unique_ptr<Vertiz::IRaster> destino;
    if (EsJpeg(ruta))
        destino = std::make_unique<Vertiz::CJpeg>();
    else if (EsTiff(ruta))
        destino = std::make_unique<Vertiz::CTiff>();
    else
        destino = std::make_unique<Vertiz::CBmp>();
    const int bits = !EsJpeg(ruta) && EsGris(foto) ? 8 : 24;
    if (!destino->Crear(foto.Ancho(), foto.Alto(), bits, foto.Raster().Resolucion(), false, nullptr, nullptr, false) ||
        !CopiaPixeles(foto, *destino))
        FallaSalida(ruta, "there is no room for its pixels");
    Provisional provisional(ruta);
    CFile fichero;
    if (!fichero.Open(CString(DeUtf8(provisional.Nombre())), CFile::modeReadWrite | CFile::typeBinary))
        FallaSalida(ruta, AUtf8(TextoError(GetLastError()).Texto()));
    progreso.Calla();
    const bool grabada = Graba(foto, *destino, fichero) == 1 && fichero.Close();
    progreso.Habla();
    if (!grabada && fichero.GetError() == ERROR_SUCCESS)
        FallaSalida(ruta, "a picture of this size doesn't fit its format");
    if (!grabada) FallaSalida(ruta, AUtf8(TextoError(fichero.GetError()).Texto()));
    provisional.Nombra();
}

Imagen ImagenDeFoto(const Foto& foto, int ancho, int alto) {
    const int w = foto.Ancho(), h = foto.Alto();
    const double factor = ancho > 0 && alto > 0 ? std::min(double(ancho) / w, double(alto) / h) : 1.0;
    Imagen imagen{std::max(1, int(w * factor + 0.5)), std::max(1, int(h * factor + 0.5)), {}};
    imagen.rgb.resize(3 * std::size_t(imagen.ancho) * std::size_t(imagen.alto));
    // The pixels that one of the result stands for: at least one, and for all of them together each just once.
    const auto desde = [](int i, int n, int total) { return int(std::int64_t{i} * total / n); };
    std::vector<BYTE> bgr(3 * std::size_t(w));
    std::vector<std::uint64_t> sumas(3 * std::size_t(imagen.ancho));
    for (int i = 0; i < imagen.alto; ++i) {
        std::ranges::fill(sumas, std::uint64_t{0});
        const int f0 = desde(i, imagen.alto, h), f1 = std::max(f0 + 1, desde(i + 1, imagen.alto, h));
        for (int f = f0; f < f1; ++f) {
            foto.Fila(f, bgr.data());
            for (int j = 0; j < imagen.ancho; ++j) {
                const int c0 = desde(j, imagen.ancho, w), c1 = std::max(c0 + 1, desde(j + 1, imagen.ancho, w));
                for (int c = c0; c < c1; ++c)
                    for (int b = 0; b < 3; ++b)
                        sumas[std::size_t(3 * j + b)] += bgr[std::size_t(3 * c + 2 - b)];
            }
        }
        for (int j = 0; j < imagen.ancho; ++j) {
            const int c0 = desde(j, imagen.ancho, w), c1 = std::max(c0 + 1, desde(j + 1, imagen.ancho, w));
            const auto n = std::uint64_t(c1 - c0) * std::uint64_t(f1 - f0);
            for (std::size_t b = 0; b < 3; ++b)
                imagen.rgb[3 * (std::size_t(i) * std::size_t(imagen.ancho) + std::size_t(j)) + b] =
                    std::uint8_t((sumas[3 * std::size_t(j) + b] + n / 2) / n);
        }
    }
    return imagen;
}
