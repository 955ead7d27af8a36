// The work of draping that takes its time: every pixel of an image goes once from the raster to the tiles' file. In
// memory there are a tile and a row, whatever the size of the image.

#include "terrain/CorteTeselas.h"

#include "terrain/CeldasTextura.h"
#include "terrain/FicheroTexturas.h"
#include "raster/OrdenCanales.h"
#include "model/Etapa.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>
#include <vector>

using Vertiz::IRaster;

namespace {

constexpr unsigned kTextoCorte = 12194;

constexpr BYTE kBlanco = 255;

enum Resultado : int { kSinSitio = 0, kHecho = 1, kCancelado = 2 };

// Pixels of a tile that hold image, on one axis of a level.
int Util(int util0, unsigned nivel) {
    return std::max(util0 >> nivel, 1);
}

// Pixels from one tile to the next, on one axis of a level. Halving cuts off fractions, and these add up from tile to
// tile: where they come to more than a pixel over the image, tiles keep their true distance instead.
double Distancia(int util0, unsigned nivel, int teselas) {
    const double exacta = std::ldexp(util0, -static_cast<int>(nivel)), util = Util(util0, nivel);
    return exacta < 1.0 || std::abs(exacta - util) * teselas > 1.0 ? exacta : util;
}

// Truncates, for places in an image.
std::int64_t Entero(double v) {
    return static_cast<std::int64_t>(std::clamp(v, -4e18, 4e18));
}

// The cutting of an image, level by level.
class Corte {
  public:
    Corte(IRaster& raster, const CDataTexturas& registro, const EncajeTeselas& encaje, CFile& fichero, int nivel)
        : m_Raster(raster),
          m_Registro(registro),
          m_Encaje(encaje),
          m_Fichero(fichero),
          m_Niveles(NivelesTexturas(registro)) {
        for (unsigned l = 0; l < m_Niveles.size(); ++l)
            m_nTotal += static_cast<std::int64_t>(registro.NumTeselas()) * Util(registro.m_nAltoUtil, l);
        if (nivel > 0) m_Etapa.emplace(nivel, kTextoCorte);
    }

    int Corta(int interpolacion);

  private:
    int Reduce(int interpolacion);
    void EmpiezaNivel(unsigned l);
    int CortaTesela(int fila, int columna);
    int LlenaTesela(int fila, int columna, bool bSujeta);
    void BuscaColumnas(int columna, bool bSujeta);
    std::int64_t FilaFuente(int fila, int i, bool bSujeta) const;
    bool LeeFila(int fila, BYTE* pixeles);
    bool Avanza(int pasos);

    IRaster& m_Raster;
    const CDataTexturas& m_Registro;
    const EncajeTeselas& m_Encaje;
    CFile& m_Fichero;
    std::vector<CNivelTexturas> m_Niveles;
    std::optional<Vertiz::Etapa> m_Etapa;
    std::int64_t m_nTotal = 0, m_nHechos = 0;

    // The level being cut.
    CNivelTexturas m_Nivel;
    int m_nAnchoUtil = 0, m_nAltoUtil = 0;
    double m_dDistanciaX = 0, m_dDistanciaY = 0;
    int m_nFilas = 0, m_nColumnas = 0;            // of the image
    int m_nFilasFuera = 0, m_nColumnasFuera = 0;  // of the image, beyond the tiles' origin
    std::vector<BYTE> m_Tesela;
    bool m_bHayPixeles = false;   // the image has something for the tile
    std::vector<char> m_Tocadas;  // for each tile, whether it has at level 0

    // Columns of the image for the pixels of the tile from m_nPrimera on.
    int m_nPrimera = 0;
    std::vector<int> m_Columnas;
    std::vector<BYTE> m_Fuente;  // a span of the image's row
};

int Corte::Corta(int interpolacion) {
    for (unsigned l = 0; l < m_Niveles.size(); ++l) {
        if (const int resultado = l > 0 ? Reduce(interpolacion) : kHecho; resultado != kHecho) return resultado;
        EmpiezaNivel(l);
        for (int fila = 0; fila < m_Registro.m_nNumFilas; ++fila)
            for (int columna = 0; columna < m_Registro.m_nNumCols; ++columna)
                if (const int resultado = CortaTesela(fila, columna); resultado != kHecho) return resultado;
    }
    // The last slots may be holes: a hole at the end needs the length to be set.
    const auto largo = static_cast<ULONGLONG>(m_Niveles.back().Fin(m_Registro.NumTeselas()));
    return m_Fichero.SetLength(largo) && m_Fichero.Flush() ? kHecho : kSinSitio;
}

// Halves the image. Some pictures tell a want of room as they tell a cancel: where nobody could cancel, it was that.
int Corte::Reduce(int interpolacion) {
    const int resultado = m_Raster.Reducir(interpolacion, 1);
    if (resultado == 1) return kHecho;
    return resultado == 2 && Vertiz::PorcentajeActual() != nullptr ? kCancelado : kSinSitio;
}

void Corte::EmpiezaNivel(unsigned l) {
    m_Nivel = m_Niveles[l];
    m_Tocadas.resize(m_Registro.NumTeselas());
    m_nAnchoUtil = Util(m_Registro.m_nAnchoUtil, l);
    m_nAltoUtil = Util(m_Registro.m_nAltoUtil, l);
    m_dDistanciaX = Distancia(m_Registro.m_nAnchoUtil, l, m_Registro.m_nNumCols);
    m_dDistanciaY = Distancia(m_Registro.m_nAltoUtil, l, m_Registro.m_nNumFilas);
    m_nFilas = m_Raster.Alto100() / 100;
    m_nColumnas = m_Raster.Ancho100() / 100;
    m_nFilasFuera = m_Encaje.FilasFuera(l);
    m_nColumnasFuera = m_Encaje.ColumnasFuera(l);
    m_Tesela.assign(static_cast<std::size_t>(m_Nivel.bytes), kBlanco);
}

// Fills a tile and writes it, unless the image has nothing for it.
int Corte::CortaTesela(int fila, int columna) {
    if (const int resultado = LlenaTesela(fila, columna, false); resultado != kHecho) return resultado;
    const std::size_t tesela = m_Registro.Tesela(unsigned(fila), unsigned(columna));
    char& tocada = m_Tocadas[tesela];
    // From afar a tile that is covered in part may come to a few pixels that all lie beside the image.
    if (!m_bHayPixeles && tocada != 0) LlenaTesela(fila, columna, true);
    tocada = tocada != 0 || m_bHayPixeles;
    if (!m_bHayPixeles) return kHecho;
    m_Fichero.Seek(m_Nivel.Posicion(tesela), CFile::begin);
    return m_Fichero.Write(m_Tesela.data(), m_Tesela.size()) ? kHecho : kSinSitio;
}

// @param bSujeta  rows and columns are held to the image: a second try, without progress
int Corte::LlenaTesela(int fila, int columna, bool bSujeta) {
    BuscaColumnas(columna, bSujeta);
    const std::size_t bytesFila = m_Nivel.BytesFila();
    BYTE* pixeles = m_Tesela.data();
    m_bHayPixeles = false;
    int i = 0;
    for (; i < m_nAltoUtil; ++i, pixeles += bytesFila) {
        if (!bSujeta && !Avanza(1)) return kCancelado;
        const std::int64_t fuente = FilaFuente(fila, i, bSujeta);
        if (fuente < 0) {
            if (!Avanza(m_nAltoUtil - 1 - i)) return kCancelado;
            break;
        }
        if (fuente < m_nFilas && LeeFila(static_cast<int>(fuente), pixeles))
            m_bHayPixeles = true;
        else
            std::fill_n(pixeles, bytesFila, kBlanco);
    }
    const bool repite = i > 0 && m_nAltoUtil < m_Nivel.alto;
    for (; i < m_Nivel.alto; ++i, pixeles += bytesFila)
        if (repite)
            std::copy_n(pixeles - bytesFila, bytesFila, pixeles);
        else
            std::fill_n(pixeles, bytesFila, kBlanco);
    return kHecho;
}

// The row of the image, from the bottom, for row i of a tile; negative below the image.
std::int64_t Corte::FilaFuente(int fila, int i, bool bSujeta) const {
    const double altura = (m_Registro.m_nNumFilas - fila) * m_dDistanciaY - i;
    const std::int64_t fuente = Entero(altura * m_Encaje.razon + 0.5) - m_nFilasFuera - 1;
    return bSujeta ? std::clamp<std::int64_t>(fuente, 0, m_nFilas - 1) : fuente;
}

void Corte::BuscaColumnas(int columna, bool bSujeta) {
    m_nPrimera = 0;
    m_Columnas.clear();
    for (int j = 0; j < m_nAnchoUtil; ++j) {
        std::int64_t c = Entero((m_dDistanciaX * columna + j) * m_Encaje.razon + 0.5) + m_nColumnasFuera;
        if (bSujeta) c = std::clamp<std::int64_t>(c, 0, m_nColumnas - 1);
        if (c >= m_nColumnas) break;
        if (c < 0)
            ++m_nPrimera;
        else
            m_Columnas.push_back(static_cast<int>(c));
    }
}

// Fills a row of the tile from a row of the image, and repeats its last pixel to the tile's edge. A picture of one byte
// a pixel shows only when it is resampled, one of fewer bits never: its rows are white, as are those that can't be
// read.
// @return whether the image has something for the row, white or not; otherwise nothing is told of its pixels
bool Corte::LeeFila(int fila, BYTE* pixeles) {
    if (m_Columnas.empty()) return false;
    BYTE* const fin = pixeles + m_Nivel.BytesFila();
    const int bytes = m_Raster.BytesPixel();
    const bool enteros = m_Encaje.razon == 1.0;
    const int desde = m_Columnas.front(), cuantas = m_Columnas.back() - desde + 1;
    m_Fuente.resize(3 * static_cast<std::size_t>(cuantas));
    const bool muestra = bytes == 3 || (bytes == 1 && !enteros);
    if (!muestra || !m_Raster.GetFila(m_Fuente.data(), fila, desde, cuantas)) {
        std::fill(pixeles, fin, kBlanco);
        return true;
    }
    BYTE* pixel = std::fill_n(pixeles, 3 * m_nPrimera, kBlanco);
    if (enteros && static_cast<std::size_t>(cuantas) == m_Columnas.size()) {
        Vertiz::CopiaRojoAzul(m_Fuente.data(), m_Columnas.size(), pixel);
        pixel += 3 * m_Columnas.size();
    } else {
        const std::size_t paso = bytes == 3 || m_Raster.TienePaleta() ? 3 : 1, ultimo = bytes - 1;
        for (const int c : m_Columnas) {
            const BYTE* const fuente = &m_Fuente[paso * static_cast<std::size_t>(c - desde)];
            pixel[0] = fuente[ultimo], pixel[1] = fuente[ultimo / 2], pixel[2] = fuente[0];
            pixel += 3;
        }
    }
    for (; pixel < fin; ++pixel)
        *pixel = pixel[-3];
    return true;
}

// Tells of so many rows more. @return false when the user cancels
bool Corte::Avanza(int pasos) {
    m_nHechos += pasos;
    if (!m_Etapa || pasos == 0) return true;
    constexpr std::int64_t kMaximo = std::numeric_limits<int>::max();
    return m_Etapa->Paso(static_cast<int>(std::min(m_nHechos, kMaximo)), static_cast<int>(std::min(m_nTotal, kMaximo)));
}

}  // namespace

int EncajeTeselas::Desplazamiento(double fraccion, double pixelesCelda, unsigned nivel) const {
    const double pixeles = fraccion * std::ldexp(pixelesCelda, -static_cast<int>(nivel)) * razon;
    return Cuenta(pixeles + MedioSigno(fraccion));
}

int CortaTeselas(IRaster& raster, const CDataTexturas& registro, const EncajeTeselas& encaje, int interpolacion,
                 CFile& fichero, Vertiz::CNivelMensajes nivel) {
    return Corte(raster, registro, encaje, fichero, nivel).Corta(interpolacion);
}
