#pragma once
// What the tests of images over a grid share: rasters of given pixels, loading them, reading the file of tiles, and
// working out slowly and plainly what it should hold.

#include "EscenaTerreno.h"
#include "raster/CBmp.h"
#include "support/Temporales.h"

#include <array>
#include <functional>
#include <memory>
#include <vector>

using Color = std::array<BYTE, 3>;  ///< red, green, blue
/// Colour by row from the north and column from the west.
using Pintor = std::function<Color(int fila, int columna)>;

/// A picture of 24 bits. @param modo  not 0: pixels in a file
std::unique_ptr<Vertiz::CBmp> Pinta(int ancho, int alto, const Pintor& pintor, int modo = 0);
/// A picture of 8 bits, each pixel the red of the colour. @param paleta  1024 bytes, or null for greys
std::unique_ptr<Vertiz::CBmp> PintaGris(int ancho, int alto, const Pintor& pintor, int modo = 0,
                                        const BYTE* paleta = nullptr);
/// Colours that are all different in a small picture.
Color Abigarrado(int fila, int columna);

/// Where an image lies, and how it is loaded.
struct Carga {
    double oeste = 0, norte = 0, pixel = 1;
    double resolucion = 1;
    int piramide = 0;
    int tipo = Vertiz::CDataImagen::ABSOLUTA;
};

/// A record's layout and file, worked out pixel by pixel.
struct TeselasEsperadas {
    int tesela = 0, numFilas = 0, numCols = 0, celdasFila = 0, celdasCol = 0, altoUtil = 0, anchoUtil = 0;
    int despFila = 0, despCol = 0, anchoImagen = 0, altoImagen = 0;
    double origenX = 0, origenY = 0;
    std::vector<BYTE> fichero;  ///< slots that aren't written are 0

    /// @param pixeles  three bytes each (blue, green, red), rows from the bottom; 8 bits: one byte each
    TeselasEsperadas(const Vertiz::CDEM& dem, int maxTexDim, int ancho, int alto, int bytes, std::vector<BYTE> pixeles,
                     const Carga& carga);

  private:
    struct Imagen;
    void Dispone(const Vertiz::CDEM& dem, int maxTexDim, double resolucion);
    void Corta(std::size_t inicio, int nivel, const Imagen& imagen, double r, int sr, int sc);

    std::vector<bool> m_tocadas;  // tiles that have pixels of the image at level 0
};

/// A scene in quads with a folder for its files. Nothing may be left in it once the scene has gone.
class Drapeado : public Terreno {
  protected:
    using Terreno::Terreno;
    Drapeado() = default;
    void TearDown() override;

    /// Sets the largest tile: small ones give many tiles of a small picture. The scene has to have its contexts.
    void Tesela(int pixeles) { m_escena.SetMaxTexDim(pixeles); }
    /// Drapes a raster, which stays the caller's. @return as CargarImagen
    int Drapea(Vertiz::IRaster& raster, const Carga& carga, int nivel = 2);
    int Drapea(Vertiz::IRaster&& raster, const Carga& carga, int nivel = 2) { return Drapea(raster, carga, nivel); }
    CDataTexturas Registro(unsigned index = 0) const;
    std::size_t CuentaRegistros() const;
    /// The bytes of a record's file.
    std::vector<BYTE> Fichero(unsigned index = 0) const;
    CString Carpeta() const { return CString(m_carpeta.Ruta().c_str()); }

    CarpetaTemporal m_carpeta;
};
