#pragma once
// Pictures of a survey, as the host program opens them: rows of red, green and blue whatever the file holds.

#include "Progreso.h"
#include "raster/RasterPropio.h"

#include <cstdint>
#include <string>
#include <string_view>

/// A picture from a file of any format that the library reads.
class Foto {
  public:
    enum class Que { kTodo, kCabecera };

    /// Opens and reads a picture.
    /// @param ruta  UTF-8
    /// @throw std::runtime_error with a sentence for the user
    Foto(const std::string& ruta, Progreso& progreso, Que que = Que::kTodo);

    int Ancho() const { return m_pRaster->Ancho(); }
    int Alto() const { return m_pRaster->Alto100() / m_pRaster->Factor100(); }

    /// Writes a row, counted from the top, as blue, green, red.
    /// @param bgr  three bytes a pixel
    /// @throw std::runtime_error when the pixels lie in a temporary file that fails
    void Fila(int fila, BYTE* bgr) const;

    Vertiz::IRaster& Raster() const { return *m_pRaster; }

  private:
    CFile m_Fichero;
    Vertiz::RasterPropio m_pRaster;
};

/// Whether a name ends so, in capitals or not.
/// @param fin  small letters
bool TerminaEn(std::string_view nombre, std::string_view fin);

/// True when a file holds a picture rather than heights, by its name and, for TIFF, by its samples: those of 8 bits or
/// fewer and those in three bands of 16 are colours, wider ones heights.
bool EsFoto(const std::string& ruta, Progreso& progreso);
