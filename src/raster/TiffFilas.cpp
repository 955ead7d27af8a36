// Bands of strips or tiles, opened one after the other; their rows are handed out by the header.

#include "raster/TiffFilas.h"

#include <utility>

namespace Vertiz {

FilasTiff::FilasTiff(CFile& fichero, const PaginaTiff& pagina, const VentanaTiff& ventana, std::vector<unsigned> planos)
    : m_Fichero(fichero),
      m_Pagina(pagina),
      m_Ventana(ventana),
      m_Planos(std::move(planos)),
      m_nPrimera(unsigned(ventana.col0) / pagina.anchoTrozo),
      m_nColumnas((unsigned(ventana.col1) - 1) / pagina.anchoTrozo + 1 - m_nPrimera),
      m_nFila(unsigned(ventana.fila0)),
      m_bBytesDeImagen(m_nColumnas * m_Planos.size() == 1 && ventana.Ancho() == pagina.ancho &&
                       pagina.BytesFila() == unsigned(pagina.ancho) && pagina.EsDeUnByte() && pagina.bits == 8),
      m_Lectores(m_nColumnas * m_Planos.size()),
      m_Filas(m_Planos.size()) {}

bool FilasTiff::AbreBanda() {
    constexpr std::size_t kTodos = std::size_t{1} << 20, kMinimo = 512;  // stays in the cache, also for many tiles
    const std::size_t bytes = std::max(kTodos / m_Lectores.size(), kMinimo);
    const std::uint64_t banda = m_nFila / m_Pagina.altoTrozo, salto = m_nFila % m_Pagina.altoTrozo;
    const std::uint64_t porFila = m_Pagina.TrozosAncho(), porPlano = porFila * m_Pagina.TrozosAlto();
    for (std::size_t t = 0; t < m_nColumnas; ++t)
        for (std::size_t i = 0; i < m_Planos.size(); ++i) {
            LectorTrozo& lector = m_Lectores[t * m_Planos.size() + i];
            const std::uint64_t trozo = m_Planos[i] * porPlano + banda * porFila + m_nPrimera + t;
            lector.Abre(m_Fichero, m_Pagina, m_Pagina.trozos[trozo], bytes);
            if (!lector.Salta(salto)) return false;
        }
    const std::uint64_t fin = std::min<std::uint64_t>((banda + 1) * m_Pagina.altoTrozo, unsigned(m_Ventana.fila1));
    m_nQuedanBanda = fin - m_nFila;
    m_nFila = fin;
    return true;
}

}  // namespace Vertiz
