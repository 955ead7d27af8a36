// Images over a grid: the tiles that an image is cut into, so that each holds whole cells and its edges fall on rows
// and columns of the mesh, and records whose files exist already. The cutting itself is in CorteTeselas.cpp, the part
// of the grid that each image covers in CEscenaDEMZonas.cpp.

#include "terrain/CEscenaDEM.h"
#include "terrain/CeldasTextura.h"
#include "terrain/CorteTeselas.h"
#include "terrain/FicheroTexturas.h"
#include "raster/IRaster.h"
#include "model/CDataImagen.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

using Vertiz::CDataImagen;
using Vertiz::CNivelMensajes;
using Vertiz::IRaster;

namespace {

constexpr CNivelMensajes kNivel = 2;

bool EsTamano(double v) {
    return std::isfinite(v) && v > 0.0;
}

// Pixels of a texture for so many of the image; 0 when an int doesn't hold them.
int PixelesTextura(int pixeles, double razon) {
    const double n = std::ceil(pixeles / razon - kBandaMuerta);
    return n <= std::numeric_limits<int>::max() ? std::max(static_cast<int>(n), 1) : 0;
}

// Takes more tiles, until they hold the image. @return false when there are too many
bool Cubre(int& teselas, int util, int imagen) {
    const std::int64_t n = (std::int64_t{imagen} + util - 1) / util;
    teselas = static_cast<int>(std::max<std::int64_t>(teselas, n));
    return n < kCuentaMaxima;
}

}  // namespace

// ---- Layout --------------------------------------------------------------------------------------------------------

bool CEscenaDEM::SetNumFilasCols(int& filasTextura, int& colsTextura, int filas, int cols, CDataTexturas& registro) {
    registro.m_nNumFilas = registro.m_nNumCols = 0;
    if (m_pDEM == nullptr || !EsTamano(registro.m_dSizePixel)) return false;
    const double px = m_pDEM->GetCeldaX() / registro.m_dSizePixel, py = m_pDEM->GetCeldaY() / registro.m_dSizePixel;
    const bool cambiado = CEscenaMDT::SetNumFilasCols(filasTextura, colsTextura, filas, cols, registro);
    int numFilas = registro.m_nNumFilas, numCols = registro.m_nNumCols;
    registro.m_nNumFilas = registro.m_nNumCols = 0;  // until all is well
    if (numFilas < 1 || numCols < 1) return cambiado;
    while (Trunca(colsTextura / px) < 1 || Trunca(filasTextura / py) < 1) {
        // OpenGL takes no larger tile: a cell of more pixels can't be shown.
        if (colsTextura > m_nMaxTexDim / 2 || filasTextura > m_nMaxTexDim / 2) return cambiado;
        colsTextura *= 2, filasTextura *= 2;
        numFilas = filas / filasTextura, numCols = cols / colsTextura;
    }
    registro.m_nCeldasCol = Trunca(colsTextura / px);
    registro.m_nCeldasFila = Trunca(filasTextura / py);
    registro.m_nAltoUtil = std::clamp(Trunca(registro.m_nCeldasFila * py), 1, filasTextura);
    registro.m_nAnchoUtil = std::clamp(Trunca(registro.m_nCeldasCol * px), 1, colsTextura);
    const bool bien = Cubre(numFilas, registro.m_nAltoUtil, filas) && Cubre(numCols, registro.m_nAnchoUtil, cols) &&
                      std::int64_t{numFilas} * registro.m_nCeldasFila <= kCuentaMaxima &&
                      std::int64_t{numCols} * registro.m_nCeldasCol <= kCuentaMaxima;
    if (bien) registro.m_nNumFilas = numFilas, registro.m_nNumCols = numCols;
    return cambiado;
}

// Finds size and number of the tiles for an image. @return false when it can't be draped
bool CEscenaDEM::DisponeTeselas(const IRaster& raster, const CDataImagen& imagen, CDataTexturas& registro) {
    if (!EsTamano(imagen.SizePixel()) || !std::isfinite(imagen.m_dXOeste) || !std::isfinite(imagen.m_dYNorte))
        return false;
    if (!EsTamano(registro.m_dSizePixel) || m_nMaxTexDim < 1) return false;
    const double razon = registro.m_dSizePixel / imagen.SizePixel();
    const int filas = raster.Alto100() / 100, columnas = raster.Ancho100() / 100;
    if (filas < 1 || columnas < 1 || !EsTamano(razon)) return false;
    registro.m_nAltoImagen = PixelesTextura(filas, razon);
    registro.m_nAnchoImagen = PixelesTextura(columnas, razon);
    // The largest power of two that OpenGL takes.
    registro.m_nAltoTextura = registro.m_nAnchoTextura =
        static_cast<int>(std::bit_floor(static_cast<unsigned>(m_nMaxTexDim)));
    SetNumFilasCols(registro.m_nAltoTextura, registro.m_nAnchoTextura, registro.m_nAltoImagen, registro.m_nAnchoImagen,
                    registro);
    return FijaTamanosTextura(registro);
}

// Places the tiles on the grid, so that their corners are samples, and the image in the tiles. The image stays where it
// is: the tiles, which end with it in the south and begin with it in the west, are moved by less than a cell, towards
// the grid's north-west corner where that lies beyond them, else away from it.
EncajeTeselas CEscenaDEM::ColocaTeselas(const IRaster& raster, const CDataImagen& imagen,
                                        CDataTexturas& registro) const {
    const double celdaX = m_pDEM->GetCeldaX(), celdaY = m_pDEM->GetCeldaY(), pixel = imagen.SizePixel();
    const bool local = imagen.m_nTipo == CDataImagen::LOCAL;
    const double oeste = imagen.m_dXOeste + (local ? m_pDEM->GetSemilla().GetX() : 0.0);
    const double norte = imagen.m_dYNorte + (local ? m_pDEM->GetSemilla().GetY() : 0.0);
    const double sur = norte - pixel * (raster.Alto100() / 100);
    EncajeTeselas encaje;
    encaje.razon = registro.m_dSizePixel / pixel;
    encaje.pixelesCeldaX = celdaX / registro.m_dSizePixel;
    encaje.pixelesCeldaY = celdaY / registro.m_dSizePixel;

    const double celdasX = (m_pDEM->GetOeste() - oeste) / celdaX;
    registro.m_nDespCol = Trunca(celdasX);
    encaje.fraccionX = celdasX - registro.m_nDespCol;
    registro.m_dOrigenX = m_pDEM->GetOeste() - registro.m_nDespCol * celdaX;

    const double alto = static_cast<double>(registro.m_nAltoUtil) * registro.m_nNumFilas * registro.m_dSizePixel;
    const double celdasY = (alto + sur - NorteRejilla()) / celdaY;
    registro.m_nDespFila = Trunca(celdasY);
    encaje.fraccionY = celdasY - registro.m_nDespFila;
    registro.m_dOrigenY = sur - pixel * encaje.FilasFuera(0);
    return encaje;
}

double CEscenaDEM::NorteRejilla() const {
    return m_pDEM->GetSur() + (static_cast<double>(m_pDEM->GetFilas()) - 1.0) * m_pDEM->GetCeldaY();
}

// ---- Loading -------------------------------------------------------------------------------------------------------

int CEscenaDEM::CargarImagen(IRaster* raster, CDataImagen& imagen, const CDataCargarImagen& opciones,
                             const CString& carpeta, CNivelMensajes nivel) {
    if (raster == nullptr || m_pDEM == nullptr || m_pDEM->EsListaCeldas()) return 0;
    CDataTexturas registro;
    registro.m_bPiramidales = opciones.m_bPiramidales;
    registro.m_dSizePixel = opciones.m_dResolucion;
    if (!DisponeTeselas(*raster, imagen, registro)) return 0;
    const EncajeTeselas encaje = ColocaTeselas(*raster, imagen, registro);

    FicheroPasajero fichero = CreaFicheroTexturas(carpeta);
    if (!fichero) return 0;
    const int corte = CortaTeselas(*raster, registro, encaje, opciones.m_nInterpolacion, *fichero, nivel);
    if (corte != 1) return corte == 2 ? 1 : 0;
    m_Texturas.push_back(registro);
    const auto index = static_cast<unsigned>(m_Texturas.size() - 1);
    if (CargarImagen(fichero.release(), index, nivel)) return 1;
    // An image that can't be shown leaves nothing behind, and gives back what it has taken from the others' bands.
    if (index < m_Texturas.size()) DescargarImagen(index, 1, 1, 1);
    AsignaDeNuevo();
    return 0;
}

int CEscenaDEM::CargarFicheroTexturasTemp(const std::vector<CDataTexturas>& registros) {
    if (!CEscenaMDT::CargarFicheroTexturasTemp(registros) || m_pDEM == nullptr) return 0;
    // The files may have been cut for another grid.
    for (CDataTexturas& registro : m_Texturas)
        AjustaTeselas(registro);
    return AsignaDeNuevo();
}

void CEscenaDEM::AjustaTeselas(CDataTexturas& registro) {
    if (m_pDEM == nullptr || !EsTamano(registro.m_dSizePixel)) return;
    const double celdaX = m_pDEM->GetCeldaX(), celdaY = m_pDEM->GetCeldaY(), pixel = registro.m_dSizePixel;
    const auto redondea = [](double celdas, double signo) { return Trunca(celdas + MedioSigno(signo)); };
    registro.m_nCeldasCol = std::max(Trunca(registro.m_nAnchoUtil / (celdaX / pixel) + 0.5), 1);
    registro.m_nCeldasFila = std::max(Trunca(registro.m_nAltoUtil / (celdaY / pixel) + 0.5), 1);
    const double dx = m_pDEM->GetOeste() - registro.m_dOrigenX;
    registro.m_nDespCol = redondea(dx / celdaX, dx);
    const double alto = static_cast<double>(registro.m_nAltoUtil) * registro.m_nNumFilas * pixel;
    const double dy = alto + registro.m_dOrigenY - NorteRejilla();
    registro.m_nDespFila = redondea(dy / celdaY, dy);
}

// Finds anew, for all images, what is drawn without one.
int CEscenaDEM::AsignaDeNuevo() {
    for (CDataTexturas& registro : m_Texturas)
        registro.m_ZonasLibres.clear();
    for (unsigned i = 0; i < m_Texturas.size(); ++i)
        if (!AsignaTexturas(i, kNivel)) return 0;
    return 1;
}

void CEscenaDEM::SetTexturas(const char* datos, int anchoTextura, int altoTextura, int sizeTextura, int sizeNivel0,
                             int numFilas, int numCols, int celdasFila, int celdasCol, int despCol, int despFila,
                             unsigned index, const CString& carpeta) {
    if (datos == nullptr) return;
    DescargarImagen(index, 1, 1, 1);
    if (index >= m_Texturas.size()) return;
    // What the record had is its own no more. Only then: a record that isn't loaded may name a file of somebody else.
    if (m_Texturas[index].TieneFichero()) DescargarImagen(index, 1, 0, 1);
    CDataTexturas& registro = m_Texturas[index];
    if (registro.m_bPrestada != 0) registro.m_pTexturas = nullptr;
    registro.m_bPrestada = 0;
    registro.m_nAnchoTextura = anchoTextura;
    registro.m_nAltoTextura = altoTextura;
    registro.m_nSizeTextura = sizeTextura;
    registro.m_nSizeNivel0 = sizeNivel0;
    registro.m_nNumFilas = numFilas;
    registro.m_nNumCols = numCols;
    registro.m_nCeldasFila = celdasFila;
    registro.m_nCeldasCol = celdasCol;
    registro.m_nDespCol = despCol;
    registro.m_nDespFila = despFila;
    registro.m_bCargada = 0;
    registro.m_pFichero = nullptr;
    FicheroPasajero fichero = CreaFicheroTexturas(carpeta, &registro.m_sNombreFichero);
    if (fichero && (sizeNivel0 <= 0 || fichero->Write(datos, static_cast<std::size_t>(sizeNivel0))))
        registro.m_pFichero.reset(fichero.release());
}
