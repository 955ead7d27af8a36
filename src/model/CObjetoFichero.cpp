// What all models in files share.

#include "model/CObjetoFichero.h"

#include <utility>

namespace Vertiz {

CObjetoFichero::~CObjetoFichero() = default;

CNivelMensajes CObjetoFichero::Mensajes(CNivelMensajes nivel) {
    return std::exchange(m_nMensajes, nivel);
}

void CObjetoFichero::swap(CObjetoFichero& otro) noexcept {
    std::swap(m_sNombre, otro.m_sNombre);
    std::swap(m_nMensajes, otro.m_nMensajes);
}

}  // namespace Vertiz
