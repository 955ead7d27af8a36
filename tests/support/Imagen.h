#pragma once
// Pictures of tests: held in memory, written and read as PNG, compared with a stated tolerance.

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

/// An RGB picture; the first row is the top one.
struct Imagen {
    int ancho = 0;
    int alto = 0;
    std::vector<std::uint8_t> bytes;  ///< 3 a pixel, rows without padding

    Imagen() = default;
    Imagen(int w, int h) : ancho(w), alto(h), bytes(std::size_t(3) * w * h) {}

    /// Red, green and blue of a pixel; y from the top. Outside the picture throws std::out_of_range.
    std::array<std::uint8_t, 3> Pixel(int x, int y) const;
    void Pinta(int x, int y, std::array<std::uint8_t, 3> color);

    bool operator==(const Imagen&) const = default;
};

/// What a comparison lets pass.
struct Tolerancia {
    int canal = 2;       ///< a pixel is the same when no channel differs by more than this (0 to 255)
    double parte = 0.0;  ///< pictures are the same when at most this share of the pixels differs (0 to 1)
};

/// Writes a PNG of 8 bits a channel; makes missing folders.
/// @return false when the file can't be written
bool EscribePng(const Imagen& imagen, const std::filesystem::path& ruta);

/// Reads a PNG as RGB, whatever it holds.
/// @return an empty picture when there is no file that can be read
Imagen LeePng(const std::filesystem::path& ruta);

/// White where pixels differ most, black where they are the same. Both of one size.
Imagen Diferencia(const Imagen& una, const Imagen& otra);

/// Compares two pictures; the message tells how many pixels differ, by how much, and where the worst is.
testing::AssertionResult IgualImagen(const Imagen& real, const Imagen& esperada, Tolerancia tolerancia = {});

/// Where stored pictures are, and where a failed comparison leaves what was seen.
struct CarpetasImagen {
    std::filesystem::path guardadas;
    std::filesystem::path salida;

    /// tests/pictures of the sources, tests/output of the build folder.
    static CarpetasImagen DelProyecto();
};

/// Compares a picture with the stored one `nombre` (as "terrain/quads", without ".png"). On failure
/// `nombre`.expected.png, .actual.png and .difference.png lie in the output folder. A missing stored picture is a
/// failure; tools/accept-picture takes the actual one over, after a look.
testing::AssertionResult ComoGuardada(const Imagen& real, const std::string& nombre, Tolerancia tolerancia = {},
                                      const CarpetasImagen& carpetas = CarpetasImagen::DelProyecto());
