#pragma once
// An attribute of an entity.

#include "platform/CString.h"

namespace Vertiz {

/// A numbered value with a text: a record of the application's, a tree's height ... A plain value.
class CAtrDigi {
  public:
    CAtrDigi() = default;
    /// @param numero   which attribute it is
    /// @param registro its value
    /// @param texto    copied
    CAtrDigi(short numero, int registro, const CString& texto)
        : m_sTexto(texto), m_nRegistro(registro), m_nNumero(numero) {}

    [[nodiscard]] short GetNumero() const { return m_nNumero; }
    [[nodiscard]] int GetRegistro() const { return m_nRegistro; }
    [[nodiscard]] const CString& GetTexto() const { return m_sTexto; }

    [[nodiscard]] bool operator==(const CAtrDigi& otro) const {
        return m_nNumero == otro.m_nNumero && m_nRegistro == otro.m_nRegistro && m_sTexto == otro.m_sTexto;
    }

  private:
    CString m_sTexto;
    int m_nRegistro = 0;
    short m_nNumero = 0;
};

}  // namespace Vertiz
