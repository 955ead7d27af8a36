// The record of an image: its tiles, and its copy.

#include "terrain/CDataTexturas.h"

#include "terrain/FicheroTexturas.h"
#include "platform/Ficheros.h"

namespace {

// Makes `copia` the same file under a fresh name beside it.
void CopiaFichero(const CDataTexturas& otra, CDataTexturas& copia) {
    copia.m_pFichero = nullptr;
    copia.m_sNombreFichero.Empty();
    FicheroPasajero fichero = CreaFicheroTexturas(CarpetaRuta(otra.m_sNombreFichero));
    if (!fichero) return;
    const CString ruta = fichero->GetFilePath();
    if (!CopyFileW(otra.m_sNombreFichero, ruta, FALSE)) return;
    if (!fichero->Open(ruta, CFile::modeReadWrite | CFile::typeBinary)) return;  // the copy may be another file
    copia.m_sNombreFichero = ruta;
    copia.m_pFichero.reset(fichero.release());
}

}  // namespace

void CDataTexturas::Duplica(const CDataTexturas& otra) {
    if (&otra == this) return;
    *this = otra;
    m_bPrestada = 0;
    if (m_pTexturas) {
        ++m_pTexturas->duenos;
        otra.m_bCompartida = 1;
    }
    if (otra.TieneFichero() && !otra.m_sNombreFichero.IsEmpty()) {
        CopiaFichero(otra, *this);
        return;
    }
    m_pFichero = nullptr;
    if (!m_pTexturas) m_bPrestada = 1;  // nothing but the name of the source's file
}

std::size_t CDataTexturas::NumTeselas() const {
    return m_nNumFilas < 1 || m_nNumCols < 1 ? 0 : std::size_t(m_nNumFilas) * std::size_t(m_nNumCols);
}

bool CDataTexturas::HayTesela(unsigned fila, unsigned col) const {
    return NumTeselas() > 0 && fila < unsigned(m_nNumFilas) && col < unsigned(m_nNumCols);
}

GLuint CDataTexturas::IdTextura(unsigned fila, unsigned col) const {
    if (!m_pTexturas || !HayTesela(fila, col)) return 0;
    const std::size_t tesela = Tesela(fila, col);
    return tesela < m_pTexturas->nombres.size() ? m_pTexturas->nombres[tesela] : 0;
}

bool CDataTexturas::EstaLlena(unsigned fila, unsigned col) const {
    return IdTextura(fila, col) != 0 && m_pTexturas->llenas[Tesela(fila, col)] != 0;
}
