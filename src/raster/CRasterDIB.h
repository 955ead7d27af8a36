#pragma once
// What every format of picture has in common: the stored picture under its header, access to its pixels, and the
// operations on the whole of it.

#include "raster/IRaster.h"
#include "platform/CabeceraDIB.h"

#include <cstdlib>
#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace Vertiz {

/// A picture stored as a device-independent bitmap: rows of BytesFila, padded to four bytes, the top one first. Row r
/// is found at stored row h - 1 - r. Formats derive from it and add reading and writing.
class LUMBRA_API CRasterDIB : public IRaster {
  public:
    ~CRasterDIB() override;

    void Limpiar() override;
    void SetNombre(const wchar_t* nombre) override;
    bool SetFichero(CFile* fichero) override;
    bool CierraFichero() override { return true; }

    int Alto100() const override;
    int Ancho100() const override;
    int Alto() const override { return m_Cabecera.biHeight; }
    int Ancho() const override { return m_nAncho; }
    UINT BytesFila() const override;
    const wchar_t* Nombre() const override { return m_szNombre; }
    int BytesPixel() const override { return m_Cabecera.biBitCount / 8; }
    const BYTE* Paleta() const override { return m_Paleta.empty() ? nullptr : m_Paleta.data(); }

    bool ReservaBuffer(int ancho, int alto) override;
    bool SetPixel(int fila, int columna, const BYTE* pixel) override;
    bool GetPixel(BYTE* pixel, int fila, int columna, int radio) const override;
    bool SetFila(const BYTE* pixeles, int fila, int columna, int n) override;
    bool GetFila(BYTE* pixeles, int fila, int columna, int n) const override;

    bool Rellena(int fila, int columna, const BYTE* pixel, std::vector<int>* pilaFilas,
                 std::vector<int>* pilaColumnas) override;
    int Recorta(int fila0, int col0, int fila1, int col1, IRaster* destino) override;
    int CambiaTamano(int filas, int columnas, IRaster* destino) override;
    int Escala(double factor, IRaster* destino = nullptr) override;
    int Reducir(int interpolacion, int nivel) override;
    void PasaAMemoria(bool rellenar) override;

    CGeorreferencia* Georreferencia() override { return &m_Georreferencia; }
    bool TieneGeorreferencia() const override { return m_bGeorreferenciada != 0; }
    void SetGeorreferencia(const CGeorreferencia& georreferencia) override { m_Georreferencia = georreferencia; }

    int Filtra(int tipo, int tamano) override;
    int Negativo() override;
    int AGrises(int desplazamiento = 256) override;
    int GrisesAColor() override;
    int Luminancia() override;
    int LuminanciaY() override;
    int Histograma(unsigned* cuentas, bool sinBlanco, bool sinNegro) override;
    int Histogramas(unsigned (*tablas)[256], int& minY, int& maxY, bool sinBlanco, bool sinNegro) override;
    int Estira(int minimo, int maximo, int banda, bool sinBlanco, bool sinNegro) override;
    int BrilloContraste(double brillo, double contraste) override;
    int IndiceNormalizado(int a, int b) override;
    int LeerReducido(unsigned reduccion) override;

  protected:
    explicit CRasterDIB(int modoFichero) : IRaster(modoFichero) {}

    /// An empty raster that pictures made of this one go to: of the same kind, in memory or file mode.
    virtual std::unique_ptr<CRasterDIB> Nuevo(int modoFichero) const = 0;

    // ---- The store, in bytes. The two homes of the pixels are told apart here and nowhere else.

    int AltoPixeles() const { return std::abs(m_Cabecera.biHeight); }
    /// Pixels exist, in memory or in the temporary file.
    bool TienePixeles() const { return !m_Bloques.EstaVacio() || (m_bModoFichero != 0 && m_pTemporal != nullptr); }
    /// Position in the store of a byte of a row counted from the bottom.
    ULONGLONG Posicion(int fila, ULONGLONG byte) const;
    bool LeeAlmacen(ULONGLONG p, BYTE* destino, std::size_t n) const;
    bool EscribeAlmacen(ULONGLONG p, const BYTE* origen, std::size_t n);
    /// The bytes of a row counted from the bottom, BytesFila of them: those in memory themselves, or a copy of those in
    /// the file. Empty when there is no such row.
    std::span<const BYTE> FilaAlmacen(int fila, std::vector<BYTE>& copia) const;
    /// The bytes of a row in memory, to write to; empty in file mode.
    std::span<BYTE> FilaEnMemoria(int fila);
    /// The bytes of a row counted from the bottom, to be written whole: those in memory themselves, or `copia`, which
    /// GuardaFila then puts into the file. `copia` keeps what it held, 0 at first. Empty when there is no such row.
    std::span<BYTE> FilaNueva(int fila, std::vector<BYTE>& copia);
    /// Ends the writing of a row that FilaNueva gave. @return false when it can't be written
    bool GuardaFila(int fila, const std::vector<BYTE>& copia);
    /// Room for the picture of the header by its mode, all 0: a block for each row, or a temporary file of full size.
    bool ReservaAlmacen();
    /// Header and palette of a new picture in place of what there was; Alto keeps its sign.
    /// @return false, with nothing changed, for a size or depth that no picture has
    bool CreaCabecera(int ancho, int alto, int bits, float resolucion, const BYTE* paleta);
    /// The pixels of a new picture. @param salto  row i comes from so many times i rows on in `datos`
    bool LlenaAlmacen(bool rellenar, const CBloques* datos, unsigned salto);
    /// ReservaAlmacen that, without memory, tells so and goes on in file mode.
    bool ReservaPixeles();
    /// What an operation gives when there is no room for pixels, or the temporary file can't be read or written.
    virtual int FalloAlmacen() const { return 2; }
    /// What the bytes of the pixels stand for, as in a picture of the same depth.
    virtual void HeredaAspecto(const CRasterDIB& otra);
    /// Shows a line of text to the user, unless the level of messages keeps them away.
    void Comunica(const CString& texto) const;
    /// Takes header, pixels, buffer, palette and mode of another of the same class; the other ends up empty.
    virtual void TomaImagen(CRasterDIB& otra);

    // ---- Operations on the whole picture, a row at a time from the bottom, under a stage of progress. A row comes as
    // the bytes of its pixels, without what pads it. The result is 1, or 2 when the user cancels, which leaves the rows
    // done so far.

    /// Hands over the rows for change. In file mode nothing happens, and the result is 1.
    int CambiaFilas(unsigned idTexto, const std::function<void(std::span<BYTE>)>& cambia);
    /// Hands over the rows to look at, in both modes; 2 also when the temporary file can't be read.
    int MiraFilas(unsigned idTexto, const std::function<void(std::span<const BYTE>)>& mira) const;
    /// Bytes of the pixels of a row; 0 for a depth without access to pixels.
    std::size_t BytesPixelesFila() const;

    BITMAPINFOHEADER m_Cabecera{};  ///< biSize 0 while the object is empty
    std::vector<BYTE> m_Paleta;     ///< entries of 4 bytes
    CFile* m_pFuente = nullptr;     ///< not owned
    std::vector<BYTE> m_Buffer;
    int m_nOscuro = 0;     ///< entry of the palette with the lowest mean
    int m_nBrillante = 0;  ///< entry of the palette with the highest sum
    wchar_t m_szNombre[256]{};
    CString m_sRuta;  ///< the whole of the name that m_szNombre holds the start of
    int m_nAncho = 0;
    CGeorreferencia m_Georreferencia;
    int m_bGeorreferenciada = 0;

  private:
    bool LeePixeles(int fila, int columna, int n, BYTE* pixeles) const;
    bool MediaVentana(BYTE* pixel, int fila, int columna, int radio) const;
    class FilasNuevas;
    std::size_t BytesElegibles() const;
    IRaster* CreaDestino(int ancho, int alto, int modoFichero, IRaster* destino,
                         std::unique_ptr<CRasterDIB>& propia) const;
    int Remuestrea(int filas, int columnas, double factorFilas, double factorColumnas, IRaster* destino);
    template <std::size_t kBytes>
    bool RellenaPixel(int fila, int columna, const BYTE* pixel, std::vector<int>& filas, std::vector<int>& columnas);
    template <std::size_t kBytes>
    bool RellenaRegion(int fila, int columna, const BYTE* pixel);
};

}  // namespace Vertiz
