#pragma once
// What an entity of a drawing is: its kind, and the code under which the tables of styles know it.

#include "platform/CString.h"
#include "platform/Exporta.h"

namespace Vertiz {

/// Kinds of entities.
enum class CTipoEntidad : short {
    Linea = 0,  ///< a polyline, or a single point
    Texto = 1,
    SetPuntos = 2,  ///< a cloud
    Clotoide = 3,   ///< a horizontal alignment
    Parabola = 4,   ///< a vertical alignment
};

/// Kind, code and deletion mark of an entity. A plain value; the code is copied.
class LUMBRA_API CTipoDat {
  public:
    CTipoDat() = default;
    CTipoDat(CTipoEntidad tipo, const CString& codigo) : m_sCodigo(codigo), m_nTipoEntidad(tipo) {}
    /// The kind by its number; one out of range counts as a line.
    CTipoDat(int tipo, const CString& codigo);

    [[nodiscard]] CTipoEntidad GetTipoEntidad() const { return m_nTipoEntidad; }
    void SetTipoEntidad(CTipoEntidad tipo) { m_nTipoEntidad = tipo; }

    /// Made of lines: everything but texts and clouds. Says nothing of deletion.
    [[nodiscard]] bool EsGrafico() const { return !EsTexto() && !EsSetPuntos(); }
    [[nodiscard]] bool EsTexto() const { return m_nTipoEntidad == CTipoEntidad::Texto; }
    [[nodiscard]] bool EsSetPuntos() const { return m_nTipoEntidad == CTipoEntidad::SetPuntos; }
    [[nodiscard]] bool EsClotoide() const { return m_nTipoEntidad == CTipoEntidad::Clotoide; }
    [[nodiscard]] bool EsParabola() const { return m_nTipoEntidad == CTipoEntidad::Parabola; }

    /// Marked as deleted: it keeps its place in the drawing, and nothing shows it.
    [[nodiscard]] bool EsBorrado() const { return m_bBorrado; }
    void SetBorrado(bool bBorrado) { m_bBorrado = bBorrado; }

    [[nodiscard]] const CString& GetCodigo() const { return m_sCodigo; }
    void SetCodigo(const CString& codigo) { m_sCodigo = codigo; }

    /// The code fits a pattern, in which '*' stands for any characters, or none. Case counts.
    [[nodiscard]] bool ComparaCodigo(const CString& patron) const;

    /// Same kind, code and deletion mark.
    [[nodiscard]] bool operator==(const CTipoDat& otro) const {
        return m_nTipoEntidad == otro.m_nTipoEntidad && m_bBorrado == otro.m_bBorrado && m_sCodigo == otro.m_sCodigo;
    }

  private:
    CString m_sCodigo;
    CTipoEntidad m_nTipoEntidad = CTipoEntidad::Linea;
    bool m_bBorrado = false;
};

}  // namespace Vertiz
