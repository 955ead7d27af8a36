#pragma once
// Internal. Cutting an image into tiles that hold whole cells of a grid.

#include "terrain/CDataTexturas.h"
#include "raster/IRaster.h"
#include "model/CObjetoFichero.h"
#include "platform/CFile.h"

/// How an image lies in its tiles.
struct EncajeTeselas {
    double razon = 1.0;                               ///< pixels of the image for one of the texture
    double pixelesCeldaX = 1.0, pixelesCeldaY = 1.0;  ///< pixels of the texture for a cell
    /// Where the image's edge lies between two lines of the grid, as part of a cell: how far the image begins west of
    /// the first tile column, and how far the tiles would reach north of a line if they ended with the image.
    double fraccionX = 0.0, fraccionY = 0.0;

    /// The same in pixels of the image, at a level of the pyramid.
    int ColumnasFuera(unsigned nivel) const { return Desplazamiento(fraccionX, pixelesCeldaX, nivel); }
    int FilasFuera(unsigned nivel) const { return Desplazamiento(fraccionY, pixelesCeldaY, nivel); }

  private:
    int Desplazamiento(double fraccion, double pixelesCelda, unsigned nivel) const;
};

/// Fills a new file with the tiles of an image, all levels of the record. Slots that the image doesn't touch are left
/// out of it; the file has its full length all the same.
/// @param raster         halved in place for each level of the pyramid after the first
/// @param registro       the layout, complete
/// @param interpolacion  for IRaster::Reducir
/// @param nivel          of the progress; 0 shows none but that of halving, which has its own
/// @return 1 done, 2 cancelled, 0 the file doesn't take it, or the raster can't be halved
int CortaTeselas(Vertiz::IRaster& raster, const CDataTexturas& registro, const EncajeTeselas& encaje, int interpolacion,
                 CFile& fichero, Vertiz::CNivelMensajes nivel);
