#include "model/CObjetoFichero.h"

#include <utility>

namespace Vertiz {

CObjetoFichero::~CObjetoFichero() = default;

CNivelMensajes CObjetoFichero::Mensajes(CNivelMensajes nivel) { return std::exchange(m_nMensajes, nivel); }

}  // namespace Vertiz
