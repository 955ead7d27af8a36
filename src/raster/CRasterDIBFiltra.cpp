// Square convolution of a picture. Rows are read into a ring before they are written over, so that every sum is of
// the picture as it was.

#include "raster/CRasterDIB.h"
#include "raster/Resultados.h"
#include "raster/TextosProgreso.h"
#include "model/Etapa.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Vertiz {

namespace {

// The rows under a kernel, the lowest first, and what of them is to be filtered: bytes [inicio, fin), of pixels of
// `paso` bytes.
struct Ventana {
    std::vector<const BYTE*> filas;
    std::size_t inicio, fin, paso;
};

// ---- Edges: two small kernels that are known here, so that the compiler writes their sums out.

template <int kLado>
struct Nucleo {
    short peso[kLado][kLado];
};
constexpr Nucleo<2> kRoberts1{{{1, 0}, {0, -1}}}, kRoberts2{{{0, 1}, {-1, 0}}};
constexpr Nucleo<3> kPrewitt1{{{-1, 0, 1}, {-1, 0, 1}, {-1, 0, 1}}}, kPrewitt2{{{-1, -1, -1}, {0, 0, 0}, {1, 1, 1}}};
constexpr Nucleo<3> kSobel1{{{-1, 0, 1}, {-2, 0, 2}, {-1, 0, 1}}}, kSobel2{{{-1, -2, -1}, {0, 0, 0}, {1, 2, 1}}};

// The sum at the byte that `p` holds the window's first byte of, in each of its rows.
template <auto kNucleo, int kLado>
short Suma(const BYTE* const (&p)[kLado], std::size_t j, std::size_t paso) {
    short suma = 0;
    for (int f = 0; f < kLado; ++f)
        for (int c = 0; c < kLado; ++c)
            if (kNucleo.peso[f][c] != 0)
                suma = static_cast<short>(suma + kNucleo.peso[f][c] * p[f][j + std::size_t(c) * paso]);
    return suma;
}

template <int kLado, auto kPrimero, auto kSegundo>
void Bordes(const Ventana& v, BYTE* __restrict salida) {
    const BYTE* p[kLado];
    for (int f = 0; f < kLado; ++f)
        p[f] = v.filas[std::size_t(f)] + v.inicio - std::size_t(kLado / 2) * v.paso;
    const std::size_t n = v.fin - v.inicio, paso = v.paso;
    for (std::size_t j = 0; j < n; ++j) {
        const int suma = std::abs(Suma<kPrimero>(p, j, paso)) + std::abs(Suma<kSegundo>(p, j, paso));
        salida[j] = static_cast<BYTE>(std::min(suma, 255));
    }
}

// ---- Kernels of any side.

// One cell of a kernel that isn't 0.
struct Celda {
    int fila, columna;
    double peso;
};

std::vector<Celda> Celdas(int tipo, int lado) {
    const int medio = lado / 2;
    std::vector<Celda> celdas;
    for (int f = 0; f < lado; ++f)
        for (int c = 0; c < lado; ++c) {
            double peso = 0.0;
            if (tipo == 3)
                peso = 1 / 9.0;
            else if (tipo == 4)
                peso = (f == medio ? 2.0 : 1.0) * (c == medio ? 2.0 : 1.0);
            else if (f == medio && c == medio)
                peso = tipo == 6 ? 4.0 : 8.0;
            else if (tipo == 7 || f == medio || c == medio)
                peso = -1.0;
            if (peso != 0.0) celdas.push_back({f, c, peso});
        }
    return celdas;
}

// Adds up cell by cell over the whole row: each sum runs through the cells in their order, and the compiler does
// several at a time. T is double, or short where all sums are whole numbers that fit.
template <class T>
void Convoluciona(const Ventana& v, const std::vector<Celda>& celdas, std::vector<T>& sumas, BYTE* __restrict salida) {
    const std::size_t n = v.fin - v.inicio, medio = v.filas.size() / 2;
    sumas.assign(n, T(0));
    T* __restrict const s = sumas.data();
    for (const Celda& celda : celdas) {
        const BYTE* const p =
            v.filas[std::size_t(celda.fila)] + v.inicio + std::size_t(celda.columna) * v.paso - medio * v.paso;
        const T peso = static_cast<T>(celda.peso);
        for (std::size_t j = 0; j < n; ++j)
            s[j] = static_cast<T>(s[j] + peso * p[j]);
    }
    for (std::size_t j = 0; j < n; ++j)
        salida[j] = static_cast<BYTE>(std::min<T>(static_cast<T>(std::abs(s[j])), T(255)));
}

// The filter of a kind: filters the row in the middle of a window.
std::function<void(const Ventana&, BYTE*)> Filtro(int tipo, int lado) {
    if (tipo == 0) return Bordes<2, kRoberts1, kRoberts2>;
    if (tipo == 1) return Bordes<3, kPrewitt1, kPrewitt2>;
    if (tipo == 2) return Bordes<3, kSobel1, kSobel2>;
    std::vector<Celda> celdas = Celdas(tipo, lado);
    double pesos = 0.0;
    for (const Celda& celda : celdas)
        pesos += std::abs(celda.peso);
    if (tipo != 3 && pesos * 255.0 <= 32767.0)
        return [celdas = std::move(celdas), sumas = std::vector<short>()](const Ventana& v, BYTE* salida) mutable {
            Convoluciona(v, celdas, sumas, salida);
        };
    return [celdas = std::move(celdas), sumas = std::vector<double>()](const Ventana& v, BYTE* salida) mutable {
        Convoluciona(v, celdas, sumas, salida);
    };
}

}  // namespace

int CRasterDIB::Filtra(int tipo, int tamano) {
    if (tamano < 1) return kTamanoMalo;
    if (tipo < 0 || tipo == 5 || tipo > 7 || !TienePixeles() || BytesPixelesFila() == 0) return 1;
    const int lado = tipo == 0 ? 2 : tipo <= 2 ? 3 : tamano, margen = lado / 2;
    const int filas = AltoPixeles() - 2 * margen, columnas = Ancho() - 2 * margen;
    if (filas <= 0 || columnas <= 0) return 1;  // all is margin

    const Etapa etapa(m_nNivelMensajes, kTextoOperacion);
    const auto filtra = Filtro(tipo, lado);
    const std::size_t bytes = BytesPixelesFila(), paso = std::size_t(BytesPixel());
    const std::size_t inicio = std::size_t(margen) * paso, n = std::size_t(columnas) * paso;
    std::vector<BYTE> anillo(std::size_t(lado) * bytes), salida(n);
    const auto enAnillo = [&](int fila) { return &anillo[std::size_t(fila % lado) * bytes]; };
    const auto lee = [&](int fila) { return LeeAlmacen(Posicion(fila, 0), enAnillo(fila), bytes); };
    Ventana ventana{std::vector<const BYTE*>(std::size_t(lado)), inicio, inicio + n, paso};
    for (int fila = 0; fila < lado - 1; ++fila)
        if (!lee(fila)) return 2;
    for (int i = 0; i < filas; ++i) {  // the window's lowest row
        if (!lee(i + lado - 1)) return 2;
        for (int f = 0; f < lado; ++f)
            ventana.filas[std::size_t(f)] = enAnillo(i + f);
        filtra(ventana, salida.data());
        if (!EscribeAlmacen(Posicion(i + margen, inicio), salida.data(), n)) return 2;
        if (!etapa.Paso(i + 1, filas)) return 2;
    }
    return 1;
}

}  // namespace Vertiz
