// Printing: a document is a PDF file written by cairo. It becomes the file that the host asked for, or goes to the
// queue of a printer of CUPS.

#include "platform/Impresora.h"

#include "platform/Backend.h"
#include "platform/Conversiones.h"
#include "platform/Errores.h"
#include "platform/Ficheros.h"
#include "platform/Numeros.h"

#include <cairo-pdf.h>
#include <cups/cups.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace plataforma {

namespace {

constexpr double kMmPulgada = 25.4;
constexpr double kPuntosPulgada = 72.0;  // the unit of PDF
constexpr int kLadoMaximo = 65500;

// The sentence, and what the system says.
bool FallaFichero(const CString& fichero) {
    const DWORD codigo = GetLastError();
    return AnotaFallo(
        "the file " + AUtf8(fichero.Texto()) + " can't be written: " + AUtf8(TextoError(codigo).Texto()) + ".", codigo);
}

std::string MotivoCups() {
    const char* motivo = cupsLastErrorString();
    return motivo && *motivo ? std::string(" (") + motivo + ")" : std::string();
}

// A file for a document that goes to a printer; gone with the object.
class FicheroDePaso {
  public:
    FicheroDePaso() {
        wchar_t carpeta[MAX_PATH], fichero[MAX_PATH];
        const DWORD n = GetTempPathW(MAX_PATH, carpeta);
        if (n > 0 && n < MAX_PATH && GetTempFileNameW(carpeta, L"imp", 0, fichero)) m_Fichero = fichero;
    }
    ~FicheroDePaso() {
        if (!m_Fichero.IsEmpty()) DeleteFileW(m_Fichero);
    }
    FicheroDePaso(const FicheroDePaso&) = delete;
    FicheroDePaso& operator=(const FicheroDePaso&) = delete;

    CString m_Fichero;  // empty when none could be made
};

}  // namespace

std::optional<Pagina> MidePagina(const CDataImpresion& datos, int resolucion) {
    const bool vale = datos.m_dAnchoPapel >= 1.0 && datos.m_dAnchoPapel <= 5000.0 && datos.m_dAltoPapel >= 1.0 &&
                      datos.m_dAltoPapel <= 5000.0 && resolucion >= 36 && resolucion <= 2400;
    Pagina p;
    if (vale) {
        p = {0, 0, datos.m_dAnchoPapel, datos.m_dAltoPapel, resolucion};
        if (datos.m_bApaisada) std::swap(p.m_dAncho, p.m_dAlto);
        p.m_nAncho = std::max(1, static_cast<int>(std::lround(p.m_dAncho / kMmPulgada * resolucion)));
        p.m_nAlto = std::max(1, static_cast<int>(std::lround(p.m_dAlto / kMmPulgada * resolucion)));
    }
    if (vale && std::max(p.m_nAncho, p.m_nAlto) <= kLadoMaximo) return p;
    AnotaFallo("no page has " + TextoGeneral(datos.m_dAnchoPapel) + " x " + TextoGeneral(datos.m_dAltoPapel) +
                   " millimetres at " + std::to_string(resolucion) + " dots an inch.",
               ERROR_INVALID_PARAMETER);
    return std::nullopt;
}

bool BuscaImpresora(CString& nombre) {
    const std::string pedida = AUtf8(nombre.Texto());
    cups_dest_t* destino = cupsGetNamedDest(CUPS_HTTP_DEFAULT, pedida.empty() ? nullptr : pedida.c_str(), nullptr);
    if (!destino)
        return AnotaFallo((pedida.empty() ? "there is no default printer" : "there is no printer \"" + pedida + "\"") +
                              MotivoCups() + "; set one up in CUPS, or name a PDF file to print to.",
                          ERROR_FILE_NOT_FOUND);
    nombre = DeUtf8(destino->name).c_str();
    cupsFreeDests(1, destino);
    return true;
}

// A document that has begun. The members go in the reverse order: pen and surface before the file that they write.
struct Impresora::Documento {
    std::unique_ptr<FicheroDePaso> m_Paso;  // null when the host named a file
    CString m_Fichero;
    std::string m_Titulo;
    std::unique_ptr<Reemplazo> m_Salida;
    SuperficieCairo m_Pdf;
    LapizCairo m_Lapiz;  // within a page

    cairo_status_t Estado() const {
        const cairo_status_t lapiz = m_Lapiz ? cairo_status(m_Lapiz.get()) : CAIRO_STATUS_SUCCESS;
        return lapiz != CAIRO_STATUS_SUCCESS ? lapiz : cairo_surface_status(m_Pdf.get());
    }
};

Impresora::Impresora(const CDataImpresion& datos, const Pagina& pagina) : m_Datos(datos), m_Pagina(pagina) {}
Impresora::~Impresora() = default;

// Gives the document up when anything has gone wrong with it.
bool Impresora::Falla() {
    const cairo_status_t estado = m_Documento->Estado();
    if (estado == CAIRO_STATUS_SUCCESS) return false;
    if (estado == CAIRO_STATUS_WRITE_ERROR) {
        FallaFichero(m_Documento->m_Fichero);
    } else {
        AnotaFallo(std::string("the page can't be made: ") + cairo_status_to_string(estado) + ".",
                   estado == CAIRO_STATUS_NO_MEMORY ? ERROR_NOT_ENOUGH_MEMORY : ERROR_GEN_FAILURE);
    }
    m_Documento.reset();
    return true;
}

bool Impresora::EmpiezaDocumento(LPCWSTR titulo) {
    if (m_Documento) return AnotaFallo("a document is being printed already.", ERROR_ALREADY_EXISTS);
    auto nuevo = std::make_unique<Documento>();
    nuevo->m_Titulo = AUtf8(titulo ? titulo : m_Datos.m_sTitulo.Texto().c_str());
    if (m_Datos.m_sFichero.IsEmpty()) {
        nuevo->m_Paso = std::make_unique<FicheroDePaso>();
        if (nuevo->m_Paso->m_Fichero.IsEmpty()) return FallaFichero(L"for the printer");
        nuevo->m_Fichero = nuevo->m_Paso->m_Fichero;
    } else {
        nuevo->m_Fichero = m_Datos.m_sFichero;
    }
    nuevo->m_Salida = std::make_unique<Reemplazo>(RutaSistema(nuevo->m_Fichero));
    if (!*nuevo->m_Salida) return FallaFichero(nuevo->m_Fichero);
    const auto escribe = [](void* salida, const unsigned char* bytes, unsigned n) {
        return static_cast<Reemplazo*>(salida)->Escribe(bytes, n) ? CAIRO_STATUS_SUCCESS : CAIRO_STATUS_WRITE_ERROR;
    };
    nuevo->m_Pdf.reset(cairo_pdf_surface_create_for_stream(escribe, nuevo->m_Salida.get(),
                                                           m_Pagina.m_dAncho / kMmPulgada * kPuntosPulgada,
                                                           m_Pagina.m_dAlto / kMmPulgada * kPuntosPulgada));
    cairo_pdf_surface_set_metadata(nuevo->m_Pdf.get(), CAIRO_PDF_METADATA_TITLE, nuevo->m_Titulo.c_str());
    m_Documento = std::move(nuevo);
    return !Falla();
}

bool Impresora::EmpiezaPagina() {
    if (!m_Documento || m_Documento->m_Lapiz)
        return AnotaFallo("a page begins within a document, after the one before has ended.", ERROR_INVALID_HANDLE);
    m_Documento->m_Lapiz.reset(cairo_create(m_Documento->m_Pdf.get()));
    // From here on the unit is the page's pixel.
    cairo_scale(m_Documento->m_Lapiz.get(), m_Pagina.m_dAncho / kMmPulgada * kPuntosPulgada / m_Pagina.m_nAncho,
                m_Pagina.m_dAlto / kMmPulgada * kPuntosPulgada / m_Pagina.m_nAlto);
    return !Falla();
}

bool Impresora::EnPagina() const {
    return m_Documento && m_Documento->m_Lapiz;
}

bool Impresora::AcabaPagina() {
    if (!EnPagina()) return AnotaFallo("no page has begun.", ERROR_INVALID_HANDLE);
    cairo_show_page(m_Documento->m_Lapiz.get());
    if (Falla()) return false;
    m_Documento->m_Lapiz.reset();
    return true;
}

bool Impresora::AcabaDocumento() {
    if (!m_Documento || m_Documento->m_Lapiz)
        return AnotaFallo("a document ends after its last page has.", ERROR_INVALID_HANDLE);
    cairo_surface_finish(m_Documento->m_Pdf.get());
    if (Falla()) return false;
    const std::unique_ptr<Documento> hecho = std::move(m_Documento);
    if (!hecho->m_Salida->Termina()) return FallaFichero(hecho->m_Fichero);
    return !hecho->m_Paso || MandaACola(RutaSistema(hecho->m_Fichero), hecho->m_Titulo);
}

bool Impresora::Aborta() {
    if (!m_Documento) return AnotaFallo("no document has begun.", ERROR_INVALID_HANDLE);
    m_Documento.reset();
    return true;
}

bool Impresora::Pinta(cairo_surface_t* imagen, const CRect& donde) {
    if (!EnPagina()) return AnotaFallo("drawing on a page works between its begin and its end.", ERROR_INVALID_HANDLE);
    cairo_t* lapiz = m_Documento->m_Lapiz.get();
    cairo_save(lapiz);
    cairo_translate(lapiz, donde.left, donde.top);
    cairo_scale(lapiz, static_cast<double>(donde.Width()) / cairo_image_surface_get_width(imagen),
                static_cast<double>(donde.Height()) / cairo_image_surface_get_height(imagen));
    cairo_set_source_surface(lapiz, imagen, 0.0, 0.0);
    cairo_paint(lapiz);
    cairo_restore(lapiz);
    return !Falla();
}

bool Impresora::MandaACola(const std::string& ruta, const std::string& titulo) const {
    const std::string papel =
        "Custom." + TextoGeneral(m_Datos.m_dAnchoPapel) + "x" + TextoGeneral(m_Datos.m_dAltoPapel) + "mm";
    const std::string copias = std::to_string(std::max(1, m_Datos.m_nCopias));
    cups_option_t* opciones = nullptr;
    int cuantas = cupsAddOption("media", papel.c_str(), 0, &opciones);
    cuantas = cupsAddOption("copies", copias.c_str(), cuantas, &opciones);
    // The page reaches to the edges of the paper, where printers don't.
    cuantas = cupsAddOption("fit-to-page", "true", cuantas, &opciones);
    const std::string impresora = AUtf8(m_Datos.m_sImpresora.Texto());
    const int trabajo = cupsPrintFile(impresora.c_str(), ruta.c_str(), titulo.c_str(), cuantas, opciones);
    cupsFreeOptions(cuantas, opciones);
    return trabajo > 0 ||
           AnotaFallo("the printer \"" + impresora + "\" refuses the document" + MotivoCups() + ".", ERROR_GEN_FAILURE);
}

}  // namespace plataforma
