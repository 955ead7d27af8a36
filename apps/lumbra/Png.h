#pragma once
// Writing a picture as PNG.

#include <cstdint>
#include <string>
#include <vector>

/// A picture of 8-bit red, green, blue; rows from the top, without padding.
struct Imagen {
    int ancho = 0, alto = 0;
    std::vector<std::uint8_t> rgb;
};

/// Writes a PNG. The file appears whole or not at all: it is written beside its place and then renamed.
/// A link stays, and what it leads to is replaced; what isn't an ordinary file is refused.
/// @param ruta  UTF-8
/// @throw std::runtime_error with a sentence for the user
void EscribePng(const std::string& ruta, const Imagen& imagen);
