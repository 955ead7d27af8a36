// What every image shares: the temporary file's end, sampling between pixels, and opening by the end of a name.

#include "raster/IRaster.h"

#include "raster/CBmp.h"
#include "raster/CECW.h"
#include "raster/CJpeg.h"
#include "raster/LibTiff.h"
#include "platform/Conversiones.h"
#include "platform/Ficheros.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace Vertiz {

namespace {

// A position in hundredths of a pixel: the pixel that it lies in, and how far.
struct Lugar {
    int fila, columna;
    LONGLONG fy, fx;  // 0 to 99
};

// Everything below is worked out in whole numbers: what is truncated is the exact value, also of a picture of one
// colour, which fractions of binary numbers would darken by one here and there.

BYTE Byte(LONGLONG valor) {
    return static_cast<BYTE>(std::clamp<LONGLONG>(valor, 0, 255));
}

// How many bytes a pixel has for a caller of GetPixel; 0 for a depth without access.
int Bandas(const IRaster& imagen) {
    const int bytes = imagen.TienePaleta() ? 3 : imagen.BytesPixel();
    return bytes == 1 || bytes == 3 ? bytes : 0;
}

// Weights of neighbours -1 to 2 at f hundredths behind neighbour 0, times a million. Cubic convolution with a = -1
// (R. Keys, IEEE Trans. ASSP 29, 1981).
std::array<LONGLONG, 4> PesosCubicos(LONGLONG f) {
    const auto cerca = [](LONGLONG d) { return 1'000'000 - 200 * d * d + d * d * d; };               // d < 1
    const auto lejos = [](LONGLONG d) { return 4'000'000 - 80'000 * d + 500 * d * d - d * d * d; };  // 1 <= d < 2
    return {lejos(100 + f), cerca(f), cerca(100 - f), lejos(200 - f)};
}

// A window of n x n neighbours from `primera` on, with indices clamped to the picture, weighted by rows and columns.
template <std::size_t n>
void MuestraVentana(const IRaster& imagen, BYTE* pixel, const Lugar& lugar, int primera,
                    const std::array<LONGLONG, n>& pesosFilas, const std::array<LONGLONG, n>& pesosColumnas,
                    LONGLONG divisor) {
    const int alto = std::abs(imagen.Alto()), ancho = imagen.Ancho();
    LONGLONG sumas[3]{};
    for (std::size_t i = 0; i < n; ++i) {
        const int fila = std::clamp(lugar.fila + primera + int(i), 0, alto - 1);
        for (std::size_t j = 0; j < n; ++j) {
            BYTE vecino[3]{};
            const int columna = std::clamp(lugar.columna + primera + int(j), 0, ancho - 1);
            if (!imagen.GetPixel(vecino, fila, columna, 0)) return;
            for (int b = 0; b < 3; ++b)
                sumas[b] += pesosFilas[i] * pesosColumnas[j] * vecino[b];
        }
    }
    for (int b = 0; b < Bandas(imagen); ++b)
        pixel[b] = Byte(sumas[b] / divisor);
}

void MuestraCercano(const IRaster& imagen, BYTE* pixel, const Lugar& lugar) {
    const int fila = lugar.fila + (lugar.fy >= 50), columna = lugar.columna + (lugar.fx >= 50);
    if (fila < std::abs(imagen.Alto()) && columna < imagen.Ancho())
        imagen.GetPixel(pixel, fila, columna, 0);
    else
        std::fill_n(pixel, Bandas(imagen), BYTE{255});
}

bool AcabaEn(std::wstring_view nombre, std::wstring_view final) {
    return nombre.size() >= final.size() &&
           ComparaSinMayusculas(nombre.substr(nombre.size() - final.size()), final) == 0;
}

}  // namespace

IRaster::~IRaster() {
    LiberaTemporal();
}

void IRaster::LiberaTemporal() {
    if (m_pTemporal == nullptr) return;
    m_pTemporal->Close();
    m_pTemporal.reset();
    if (m_bCompartido == 0) CFile::Remove(m_sTemporal);
    m_sTemporal = L"";
}

void IRaster::Muestra(BYTE* pixel, int x100, int y100, int interpolacion) const {
    const int f = Factor100();
    const Lugar lugar{y100 / f, x100 / f, y100 % f, x100 % f};
    BYTE prueba[3]{};
    // Asked for a pixel, a raster tells whether there are pixels at all.
    if (x100 < 0 || y100 < 0 || lugar.fila >= std::abs(Alto()) || lugar.columna >= Ancho()) return;
    if (!GetPixel(prueba, lugar.fila, lugar.columna, 0)) return;
    switch (interpolacion) {
        case -1:
            GetPixel(pixel, lugar.fila, lugar.columna, 0);
            break;
        case 0:
            MuestraCercano(*this, pixel, lugar);
            break;
        case 1:
            MuestraVentana<2>(*this, pixel, lugar, 0, {f - lugar.fy, lugar.fy}, {f - lugar.fx, lugar.fx}, 10'000);
            break;
        case 2:
            MuestraVentana<4>(*this, pixel, lugar, -1, PesosCubicos(lugar.fy), PesosCubicos(lugar.fx),
                              1'000'000'000'000);
            break;
        default:
            break;
    }
}

IRaster* CreaRaster(const wchar_t* nombre) {
    if (nombre == nullptr) return nullptr;
    if (AcabaEn(nombre, L"tif") || AcabaEn(nombre, L"tiff")) return new LibTiff;
    if (AcabaEn(nombre, L"bmp")) return new CBmp;
    if (AcabaEn(nombre, L"jpg") || AcabaEn(nombre, L"jpeg")) return new CJpeg;
    if (AcabaEn(nombre, L"ecw") || AcabaEn(nombre, L"jp2")) return new CECW;
    return nullptr;
}

}  // namespace Vertiz
