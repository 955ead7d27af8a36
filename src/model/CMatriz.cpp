// The three storages of a matrix: one block, rows, and a temporary file.

#include "model/CMatriz.h"

#include "platform/CFile.h"
#include "platform/Ficheros.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>
#include <utility>
#include <vector>

namespace Vertiz {

namespace {

// Memory for n elements. Zeroed pages come from the system as they are touched, so a large empty matrix costs nothing.
template <class T>
T* Elementos(std::uint64_t n, bool limpiar) {
    void* p = limpiar ? std::calloc(n, sizeof(T)) : std::malloc(n * sizeof(T));
    if (!p) throw std::bad_alloc();
    return static_cast<T*>(p);
}

// A side after n more, never below 1.
std::int64_t Crecido(unsigned lado, int n) {
    return std::max<std::int64_t>(1, std::int64_t(lado) + n);
}

CString NombreTemporal() {
    wchar_t carpeta[MAX_PATH] = L"", nombre[MAX_PATH] = L"";
    const DWORD n = GetTempPathW(MAX_PATH, carpeta);
    const bool bCarpeta = n > 0 && n < MAX_PATH;
    return GetTempFileNameW(bCarpeta ? carpeta : L".", L"Matrix", 0, nombre) != 0 ? nombre : L"Matrix.Tmp";
}

}  // namespace

template <class T>
CMatriz<T>::CMatriz(unsigned filas, unsigned columnas, int unBloque)
    : m_nFilas(std::max(filas, 1u)), m_nColumnas(std::max(columnas, 1u)) {
    Reserva(unBloque != 0, true);
}

template <class T>
CMatriz<T>::CMatriz(const CMatriz& otra) : m_nFilas(otra.m_nFilas), m_nColumnas(otra.m_nColumnas) {
    if (m_nFilas == 0) return;
    if (otra.m_bEnFichero)
        ReservaFichero(false);
    else
        Reserva(otra.EsUnBloque(), false);
    CopiaComun(otra);
}

template <class T>
CMatriz<T>::CMatriz(CMatriz&& otra) noexcept {
    Intercambia(otra);
}

template <class T>
CMatriz<T>& CMatriz<T>::operator=(const CMatriz& otra) {
    CMatriz copia(otra);
    Intercambia(copia);
    return *this;
}

template <class T>
CMatriz<T>& CMatriz<T>::operator=(CMatriz&& otra) noexcept {
    CMatriz tomada(std::move(otra));
    Intercambia(tomada);
    return *this;
}

template <class T>
CMatriz<T>::~CMatriz() {
    Libera();
}

template <class T>
CMatriz<T> CMatriz<T>::EnFichero(unsigned filas, unsigned columnas) {
    CMatriz m{SinDatos()};
    m.m_nFilas = std::max(filas, 1u);
    m.m_nColumnas = std::max(columnas, 1u);
    m.ReservaFichero(true);
    return m;
}

// A matrix of zeros of another size in the same kind of storage.
template <class T>
CMatriz<T> CMatriz<T>::Nueva(std::uint64_t filas, std::uint64_t columnas) const {
    constexpr std::uint64_t kMaximo = std::numeric_limits<std::uint32_t>::max();
    if (filas > kMaximo || columnas > kMaximo) throw std::bad_array_new_length();
    if (m_bEnFichero) return EnFichero(unsigned(filas), unsigned(columnas));
    return CMatriz(unsigned(filas), unsigned(columnas), m_ppFilas == nullptr);
}

template <class T>
void CMatriz<T>::Traspuesta(CMatriz& destino) const {
    if (m_nFilas == 0) {
        destino.Redimensiona();
        return;
    }
    CMatriz t = Nueva(m_nColumnas, m_nFilas);
    constexpr unsigned kLado = 32;  // both matrices are walked in squares that stay in the cache
    for (std::uint64_t f0 = 0; f0 < m_nFilas; f0 += kLado)
        for (std::uint64_t c0 = 0; c0 < m_nColumnas; c0 += kLado)
            for (std::uint64_t f = f0; f < std::min<std::uint64_t>(f0 + kLado, m_nFilas); ++f)
                for (std::uint64_t c = c0; c < std::min<std::uint64_t>(c0 + kLado, m_nColumnas); ++c)
                    t.Set(unsigned(c), unsigned(f), Get(unsigned(f), unsigned(c)));
    destino.Intercambia(t);
}

template <class T>
void CMatriz<T>::AumentaFilas(int n) {
    Crece(Crecido(m_nFilas, n), Crecido(m_nColumnas, 0));
}

template <class T>
void CMatriz<T>::AumentaColumnas(int n) {
    Crece(Crecido(m_nFilas, 0), Crecido(m_nColumnas, n));
}

template <class T>
void CMatriz<T>::Redimensiona(unsigned filas, unsigned columnas, int limpiar) {
    const bool unBloque = m_ppFilas == nullptr;
    Libera();
    if (filas == 0 || columnas == 0) return;
    m_nFilas = filas;
    m_nColumnas = columnas;
    Reserva(unBloque, limpiar != 0);
}

template <class T>
void CMatriz<T>::Redimensiona() {
    Libera();
}

template <class T>
void CMatriz<T>::Rellena(T valor) {
    const std::vector<T> fila(m_bEnFichero ? m_nColumnas : 0, valor);
    for (unsigned f = 0; f < m_nFilas; ++f) {
        if (T* p = Fila(f))
            std::fill_n(p, m_nColumnas, valor);
        else
            EscribeFichero(f, 0, fila.data(), m_nColumnas);
    }
}

template <class T>
void CMatriz<T>::SetFila(unsigned fila, const T* valores) {
    if (fila >= m_nFilas) return;
    if (T* destino = Fila(fila))
        std::copy_n(valores, m_nColumnas, destino);
    else
        EscribeFichero(fila, 0, valores, m_nColumnas);
}

template <class T>
void CMatriz<T>::Intercambia(CMatriz& otra) noexcept {
    std::swap(m_nFilas, otra.m_nFilas);
    std::swap(m_nColumnas, otra.m_nColumnas);
    std::swap(m_ppFilas, otra.m_ppFilas);
    std::swap(m_pDatos, otra.m_pDatos);
    std::swap(m_bEnFichero, otra.m_bEnFichero);
    std::swap(m_sFichero, otra.m_sFichero);
    std::swap(m_pFichero, otra.m_pFichero);
}

// Copies the elements that both matrices have.
template <class T>
void CMatriz<T>::CopiaComun(const CMatriz& otra) {
    const unsigned filas = std::min(m_nFilas, otra.m_nFilas);
    const unsigned columnas = std::min(m_nColumnas, otra.m_nColumnas);
    std::vector<T> leida(otra.m_bEnFichero ? columnas : 0);
    for (unsigned f = 0; f < filas; ++f) {
        const T* origen = otra.Fila(f);
        if (!origen) {
            otra.LeeFichero(f, 0, leida.data(), columnas);
            origen = leida.data();
        }
        if (T* destino = Fila(f))
            std::copy_n(origen, columnas, destino);
        else
            EscribeFichero(f, 0, origen, columnas);
    }
}

template <class T>
void CMatriz<T>::Crece(std::int64_t filas, std::int64_t columnas) {
    CMatriz mayor = Nueva(std::uint64_t(filas), std::uint64_t(columnas));
    mayor.CopiaComun(*this);
    Intercambia(mayor);
}

// Memory for the present size. When it throws, the matrix is a freed one.
template <class T>
void CMatriz<T>::Reserva(bool unBloque, bool limpiar) {
    const std::uint64_t filas = std::exchange(m_nFilas, 0), columnas = std::exchange(m_nColumnas, 0);
    const std::uint64_t n = filas * columnas;
    if (n > std::uint64_t(std::numeric_limits<std::ptrdiff_t>::max()) / sizeof(T)) throw std::bad_array_new_length();
    if (unBloque || n < kElementosBloque) {
        m_pDatos = Elementos<T>(n, limpiar);
    } else {
        m_ppFilas = new T*[filas];
        std::uint64_t hechas = 0;
        try {
            for (; hechas < filas; ++hechas)
                m_ppFilas[hechas] = Elementos<T>(columnas, limpiar);
        } catch (...) {
            while (hechas > 0)
                std::free(m_ppFilas[--hechas]);
            delete[] std::exchange(m_ppFilas, nullptr);
            throw;
        }
    }
    m_nFilas = std::uint32_t(filas);
    m_nColumnas = std::uint32_t(columnas);
}

// A temporary file for the present size. Without one the matrix is left without storage.
template <class T>
void CMatriz<T>::ReservaFichero(bool limpiar) {
    const std::uint64_t filas = std::exchange(m_nFilas, 0), columnas = std::exchange(m_nColumnas, 0);
    if (filas * columnas > std::uint64_t(std::numeric_limits<std::ptrdiff_t>::max()) / sizeof(T))
        throw std::bad_array_new_length();
    const std::vector<T> ceros(limpiar ? columnas : 0, T(0));
    m_sFichero = NombreTemporal();
    m_pFichero = new CFile;
    m_bEnFichero = 1;
    bool bHecho = m_pFichero->Open(m_sFichero, CFile::modeCreate | CFile::modeReadWrite);
    for (std::uint64_t f = 0; f < filas && limpiar && bHecho; ++f)
        bHecho = m_pFichero->Write(ceros.data(), columnas * sizeof(T));
    if (!bHecho) {
        Libera();
        return;
    }
    m_nFilas = std::uint32_t(filas);
    m_nColumnas = std::uint32_t(columnas);
}

template <class T>
void CMatriz<T>::Libera() noexcept {
    std::free(std::exchange(m_pDatos, nullptr));
    for (unsigned f = 0; m_ppFilas && f < m_nFilas; ++f)
        std::free(m_ppFilas[f]);
    delete[] std::exchange(m_ppFilas, nullptr);
    if (m_pFichero) {
        delete std::exchange(m_pFichero, nullptr);  // closes it
        DeleteFileW(m_sFichero);
    }
    m_sFichero = CString();
    m_bEnFichero = 0;
    m_nFilas = m_nColumnas = 0;
}

template <class T>
void CMatriz<T>::LeeFichero(unsigned fila, unsigned columna, T* datos, unsigned n) const {
    m_pFichero->Seek((LONGLONG(fila) * m_nColumnas + columna) * LONGLONG(sizeof(T)), CFile::begin);
    const std::size_t leidos = m_pFichero->Read(datos, n * sizeof(T)) / sizeof(T);
    std::fill(datos + leidos, datos + n, T(0));
}

template <class T>
void CMatriz<T>::EscribeFichero(unsigned fila, unsigned columna, const T* datos, unsigned n) {
    m_pFichero->Seek((LONGLONG(fila) * m_nColumnas + columna) * LONGLONG(sizeof(T)), CFile::begin);
    m_pFichero->Write(datos, n * sizeof(T));
}

template class CMatriz<double>;
template class CMatriz<float>;

void CMatrizColumna::AumentaColumnas(int) {}

}  // namespace Vertiz
