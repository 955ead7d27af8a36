#pragma once
// What every fuzz target of a picture does with its input.

#include "raster/IRaster.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

/// Reads the input as a file through new rasters, whole and its header alone, in memory and in file mode, and goes on
/// to use what came: pixels, a halved copy, writing. What a reader refuses is fine; what it takes has to be usable.
/// @param crea  a new raster of the format, in the given mode
void UsaRaster(const std::uint8_t* datos, std::size_t n,
               const std::function<std::unique_ptr<Vertiz::IRaster>(int modoFichero)>& crea);

/// A file in memory with these bytes, under a name that opens it; good until the next call.
CString FicheroEnMemoria(const std::uint8_t* datos, std::size_t n);

/// What every target defines, and libFuzzer calls with each input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t n);
