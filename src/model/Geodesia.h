#pragma once
// PROJ for the model: one context for each thread, and the operations made in it. Internal; no public header sees it.

#include "model/CCoor.h"
#include "model/CElipsoide.h"
#include "platform/CString.h"

#include <span>
#include <string>

struct PJconsts;

namespace Vertiz::geodesia {

enum class Sentido { Directo, Inverso };

/// A file name as the value of a PROJ parameter: UTF-8, in quotes.
std::string NombreFichero(const CString& nombre);

/// "proj=utm" on an ellipsoid: longitude and latitude in radians to metres.
std::string UTM(const CElipsoide& elipsoide, int huso, bool norte);

/// The calling thread's operation of this definition: made at the first call, kept for the thread's next ones, and
/// never given to another thread, since a PROJ object can't be shared. Null when PROJ refuses the definition.
/// The pointer is good until the next call on this thread.
PJconsts* Operacion(const std::string& definicion);

/// Puts points through an operation of this thread, in place: x and y (longitude and latitude where the operation's
/// end is angular), and z. A point without result gets NaN in all three.
/// @return false when a point had none
bool Aplica(PJconsts* operacion, Sentido sentido, std::span<CCoor3D<double>> puntos);

}  // namespace Vertiz::geodesia
