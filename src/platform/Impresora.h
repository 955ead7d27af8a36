#pragma once
// Internal. What stands behind a printer's device context: the document being written, page by page, and where it goes
// when it is done.

#include "platform/CPrintInfo.h"
#include "platform/ImagenCairo.h"
#include "platform/Reemplazo.h"

#include <memory>
#include <optional>
#include <string>

namespace plataforma {

/// Size of a page.
struct Pagina {
    int m_nAncho = 0, m_nAlto = 0;         ///< pixels
    double m_dAncho = 0.0, m_dAlto = 0.0;  ///< millimetres
    int m_nResolucion = 0;                 ///< pixels an inch
};

/// The page that `datos` asks for, at a resolution; empty, with the reason noted, when it can't be had.
std::optional<Pagina> MidePagina(const CDataImpresion& datos, int resolucion);

/// Looks for a printer, and replaces an empty name by that of the user's default one.
/// @return false, with the reason noted, when there is none
bool BuscaImpresora(CString& nombre);

/// A document of PDF pages on its way to a file or a printer.
class Impresora {
  public:
    Impresora(const CDataImpresion& datos, const Pagina& pagina);
    ~Impresora();
    Impresora(const Impresora&) = delete;
    Impresora& operator=(const Impresora&) = delete;

    /// All tell by false, with the reason noted, that the document can't be had; it is given up then.
    bool EmpiezaDocumento(LPCWSTR titulo);
    bool EmpiezaPagina();
    bool AcabaPagina();
    bool EnPagina() const;
    bool AcabaDocumento();
    /// @return false when there was no document
    bool Aborta();

    /// Puts a picture on the page, stretched over a rectangle in pixels of the page.
    bool Pinta(cairo_surface_t* imagen, const CRect& donde);

  private:
    struct Documento;
    bool Falla();
    bool MandaACola(const std::string& ruta, const std::string& titulo) const;

    CDataImpresion m_Datos;
    Pagina m_Pagina;
    std::unique_ptr<Documento> m_Documento;
};

}  // namespace plataforma
