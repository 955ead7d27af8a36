#pragma once
// Dense matrices: heights of a grid, planes of an image, systems to solve.

#include "platform/CString.h"
#include "platform/Exporta.h"

#include <cstdint>

class CFile;

namespace Vertiz {

/// A matrix of T, float or double, addressed by (row, column) from 0.
///
/// Storage is a single block, one allocation for each row, or a temporary file. Below kElementosBloque elements a
/// matrix in memory is always a block. A matrix whose storage was freed has 0 rows and 0 columns; reading it gives 0.
/// Copies are deep, of the same storage kind. Assignment leaves the target as it was when it throws.
///
/// A failed allocation throws std::bad_alloc, a size that no machine can hold std::bad_array_new_length.
/// Reading from several threads at once is safe in memory, not in a file.
template <class T>
class LUMBRA_API CMatriz {
  public:
    /// From this number of elements on, the caller chooses between a block and rows.
    static constexpr std::uint64_t kElementosBloque = 100'000'000;

    /// All elements 0. A side of 0 becomes 1.
    /// @param unBloque  for kElementosBloque elements or more: not 0 one block, 0 an allocation for each row
    explicit CMatriz(unsigned filas = 1, unsigned columnas = 1, int unBloque = 0);
    CMatriz(const CMatriz& otra);
    CMatriz(CMatriz&& otra) noexcept;
    CMatriz& operator=(const CMatriz& otra);
    CMatriz& operator=(CMatriz&& otra) noexcept;
    virtual ~CMatriz();

    /// A matrix of zeros in a temporary file, for tables that memory shouldn't hold. The file goes with the matrix.
    /// Without a place to write the result has no storage (GetFilas() is 0).
    static CMatriz EnFichero(unsigned filas, unsigned columnas);

    /// Makes `destino` the transpose of this matrix; it may be this one.
    virtual void Traspuesta(CMatriz& destino) const;
    /// Adds n rows (takes away when negative, down to 1). Elements keep their indices, new ones are 0.
    virtual void AumentaFilas(int n);
    /// Adds n columns (takes away when negative, down to 1). Elements keep their indices, new ones are 0.
    virtual void AumentaColumnas(int n);
    /// New storage of the same kind (memory when it was a file); the contents are lost. The old storage is freed first,
    /// so a failed allocation leaves a freed matrix. A size of 0 frees only.
    /// @param limpiar  not 0: all elements 0; 0: undefined
    virtual void Redimensiona(unsigned filas, unsigned columnas, int limpiar);
    /// Frees the storage.
    void Redimensiona();

    unsigned GetFilas() const { return m_nFilas; }
    unsigned GetColumnas() const { return m_nColumnas; }
    bool EstaEnFichero() const { return m_bEnFichero != 0; }
    bool EsUnBloque() const { return m_pDatos != nullptr; }

    /// The element, or 0 out of range.
    T Get(unsigned fila, unsigned columna) const {
        if (fila >= m_nFilas || columna >= m_nColumnas) return T(0);
        if (m_pDatos) return m_pDatos[std::uint64_t(fila) * m_nColumnas + columna];
        if (m_ppFilas) return m_ppFilas[fila][columna];
        T valor;
        LeeFichero(fila, columna, &valor, 1);
        return valor;
    }
    /// Writes an element; nothing happens out of range.
    void Set(unsigned fila, unsigned columna, T valor) {
        if (fila >= m_nFilas || columna >= m_nColumnas) return;
        if (m_pDatos)
            m_pDatos[std::uint64_t(fila) * m_nColumnas + columna] = valor;
        else if (m_ppFilas)
            m_ppFilas[fila][columna] = valor;
        else
            EscribeFichero(fila, columna, &valor, 1);
    }
    /// Writes a whole row; nothing happens out of range.
    void SetFila(unsigned fila, const T* valores);
    /// Sets all elements.
    void Rellena(T valor);

    /// The elements of a row, for loops that can't pay the tests of Get: null out of range and for a matrix in a file.
    /// Valid until the size changes.
    T* Fila(unsigned fila) {
        if (fila >= m_nFilas) return nullptr;
        if (m_pDatos) return m_pDatos + std::uint64_t(fila) * m_nColumnas;
        return m_ppFilas ? m_ppFilas[fila] : nullptr;
    }
    const T* Fila(unsigned fila) const { return const_cast<CMatriz*>(this)->Fila(fila); }

  protected:
    /// Exchanges the contents of two matrices.
    void Intercambia(CMatriz& otra) noexcept;

  private:
    struct SinDatos {};
    explicit CMatriz(SinDatos) noexcept {}

    CMatriz Nueva(std::uint64_t filas, std::uint64_t columnas) const;
    void CopiaComun(const CMatriz& otra);
    void Crece(std::int64_t filas, std::int64_t columnas);
    void Reserva(bool unBloque, bool limpiar);
    void ReservaFichero(bool limpiar);
    void Libera() noexcept;
    void LeeFichero(unsigned fila, unsigned columna, T* datos, unsigned n) const;
    void EscribeFichero(unsigned fila, unsigned columna, const T* datos, unsigned n);

    std::uint32_t m_nFilas = 0, m_nColumnas = 0;
    T** m_ppFilas = nullptr;
    T* m_pDatos = nullptr;
    int m_bEnFichero = 0;
    CString m_sFichero;
    CFile* m_pFichero = nullptr;
};

extern template class CMatriz<double>;
extern template class CMatriz<float>;

/// A column vector of doubles: its width doesn't grow.
class LUMBRA_API CMatrizColumna : public CMatriz<double> {
  public:
    explicit CMatrizColumna(unsigned filas = 1) : CMatriz<double>(filas, 1, 0) {}

    /// Does nothing.
    void AumentaColumnas(int n) override;
};

}  // namespace Vertiz
