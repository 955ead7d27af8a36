#pragma once
// Internal. What a picture is written through.

#include "platform/CFile.h"

#include <cstddef>

namespace Vertiz {

/// A picture on its way to a file. Unless Acaba is reached, what was written is cut off again: no half picture stays
/// behind after an error or a cancel.
class SalidaImagen {
  public:
    explicit SalidaImagen(CFile& fichero) : m_Fichero(fichero), m_nInicio(fichero.GetPosition()) {}
    ~SalidaImagen() {
        if (m_bAcabada) return;
        m_Fichero.SetLength(m_nInicio);
        m_Fichero.Seek(static_cast<LONGLONG>(m_nInicio), CFile::begin);
    }
    SalidaImagen(const SalidaImagen&) = delete;
    SalidaImagen& operator=(const SalidaImagen&) = delete;

    bool Escribe(const void* datos, std::size_t n) { return m_Fichero.Write(datos, n); }
    /// The picture is whole. @return false when the system lost some of it
    bool Acaba() { return m_bAcabada = m_Fichero.Flush(); }

  private:
    CFile& m_Fichero;
    ULONGLONG m_nInicio;
    bool m_bAcabada = false;
};

}  // namespace Vertiz
