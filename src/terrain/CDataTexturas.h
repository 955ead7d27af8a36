#pragma once
// What a scene knows of an image that is draped over it. The pixels are in a temporary file, cut into tiles; the record
// has all that is needed to read it (FicheroTexturas.h tells its layout).

#include "model/CDataTransformacion.h"
#include "model/CMaximas.h"
#include "platform/CFile.h"
#include "platform/CString.h"
#include "platform/Exporta.h"
#include "platform/OpenGL.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

/// The texture objects of an image, one for each tile. Records of copied scenes and of references share one such set;
/// it is emptied when the objects are deleted, so that nobody draws with names that stand for nothing.
///
/// Workers fill different tiles at the same time: each tile's mark is a byte of its own.
struct CTexturasGL {
    std::vector<GLuint> nombres;  ///< tile (row, col) at row * columns + col
    std::vector<char> llenas;     ///< 1 where the object holds its pixels
    unsigned duenos = 1;          ///< records that the objects belong to; whoever leaves last deletes them
};

/// An image draped over a terrain, cut into tiles of one size. Tile row 0 is the northernmost.
///
/// Plain copies look at the same file and the same texture objects; Duplica makes a record that has its own file.
struct LUMBRA_API CDataTexturas {
    int m_bPiramidales = 0;   ///< not 0: the file holds a pyramid, and filtering uses it
    int m_bCargada = 0;       ///< 1 once the scene has filled the texture objects; 0 on a new file
    int m_nAnchoTextura = 0;  ///< a tile, in pixels at level 0; powers of two when first cut
    int m_nAltoTextura = 0;
    int m_nAnchoImagen = 0;  ///< the image, in pixels of the texture
    int m_nAltoImagen = 0;
    int m_nSizeTextura = 0;          ///< bytes of a tile's slot at level 0
    std::int64_t m_nSizeNivel0 = 0;  ///< bytes of level 0
    int m_nNumFilas = 0;             ///< of tiles
    int m_nNumCols = 0;
    double m_dSizePixel = 1.0;                     ///< terrain units for a pixel at level 0
    double m_dOrigenX = 0.0;                       ///< terrain X of the tiled area's west edge
    double m_dOrigenY = 0.0;                       ///< terrain Y of its south edge
    Vertiz::CDataTransformacion m_Transformacion;  ///< of an image that a triangulated scene lays over its terrain

    /// The file, open; null when unloaded. See m_bPrestada for whose it is.
    std::shared_ptr<CFile> m_pFichero;
    CString m_sNombreFichero;  ///< its path
    CString m_sNombreImagen;   ///< name of the source image
    /// The texture objects; null when unloaded. IdTextura gives one safely.
    std::shared_ptr<CTexturasGL> m_pTexturas;
    /// Not 0: a copy of the scene has taken over the texture objects. Both go on drawing with them.
    mutable int m_bCompartida = 0;
    /// Not 0: file and texture objects are another record's, the one of the scene that this one's is a reference or
    /// link of: unloading leaves them alone.
    int m_bPrestada = 0;

    int m_nCeldasFila = 0;  ///< grid rows and columns that a tile covers
    int m_nCeldasCol = 0;
    int m_nDespCol = 0;    ///< where the tiles begin, in cells: grid column 0 lies so many cells east of tile column 0
    int m_nDespFila = 0;   ///< and grid row 0 so many cells south of tile row 0
    int m_nAnchoUtil = 0;  ///< pixels of a tile that hold image; the rest repeats the last column and row
    int m_nAltoUtil = 0;
    std::vector<Vertiz::CMaximas<int>> m_ZonasLibres;            ///< grid rectangles that are drawn without an image
    std::vector<std::vector<std::int32_t>> m_TriangulosTextura;  ///< for each tile, the triangles that show it

    /// Becomes a copy of `otra`: shares its texture objects, and has a file of its own in the same folder, open. When
    /// the file can't be copied, it has none and no name of one. The source is marked as shared.
    void Duplica(const CDataTexturas& otra);

    /// All tiles; 0 for a record without a layout.
    std::size_t NumTeselas() const;
    /// A tile's place among them. @param fila, col  within the layout
    std::size_t Tesela(unsigned fila, unsigned col) const { return std::size_t{fila} * unsigned(m_nNumCols) + col; }
    bool HayTesela(unsigned fila, unsigned col) const;
    /// The tile's texture object; 0 when unloaded or out of range.
    GLuint IdTextura(unsigned fila, unsigned col) const;
    /// The tile's texture object holds its pixels.
    bool EstaLlena(unsigned fila, unsigned col) const;
    bool TieneFichero() const { return m_pFichero && m_pFichero->IsOpen(); }
    /// File and texture objects are there.
    bool EstaDisponible() const { return TieneFichero() && m_pTexturas && !m_pTexturas->nombres.empty(); }
};
