#include "raster/ConversionColor.h"

namespace Vertiz {}  // namespace Vertiz
