#pragma once
// Results that operations of rasters share beyond 1 (done) and 2 (cancelled, or what the operation tells).

namespace Vertiz {

constexpr int kCabeceraMala = 15059;  ///< not a header of this format
constexpr int kNoSoportado = 15065;   ///< a file that the reader can't take, or no temporary file
constexpr int kTamanoMalo = 15105;    ///< a size or an argument out of range

}  // namespace Vertiz
